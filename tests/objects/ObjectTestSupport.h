#ifndef KVL_OBJECTTESTSUPPORT_H
#define KVL_OBJECTTESTSUPPORT_H

#include "graphics/Texture.h"
#include "graphics/Vector.h"
#include "objects/Material.h"
#include "objects/O3d.h"
#include "objects/O3dPolygon.h"
#include "objects/O3dVertex.h"

#include <GL/glew.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <vector>

// Scenes for the object tests are built in code, the way the file readers
// build them: vertices, then triangles, then normals.

// Vectors as lists, so that a failed comparison shows every value.
inline std::vector<float> values(const Vector<float, 4>& v) {
    return {v[0], v[1], v[2], v[3]};
}

inline std::vector<float> values3(const Vector<float, 3>& v) {
    return {v[0], v[1], v[2]};
}

inline std::vector<float> values3(const float* v) {
    return {v[0], v[1], v[2]};
}

// Red, green and blue of a colour, without its alpha.
inline std::vector<float> rgb(const Vector<float, 4>& c) {
    return {c[0], c[1], c[2]};
}

// An upright square from (x - half, y - half) to (x + half, y + half), facing
// the viewer, with u and v running from 0 to 1 across it. Triangle 0 is the
// lower right half, triangle 1 the upper left.
inline O3d* makeSquareAt(float x, float y, float half) {
    O3d* square = new O3d();
    square->setVertices({x - half, y - half, 0.0f, x + half, y - half, 0.0f, x + half, y + half,
                         0.0f, x - half, y + half, 0.0f});
    square->setPolygons({0, 1, 2, 0, 2, 3}, {0, 1, 1, 0}, {0, 0, 1, 1});
    square->calculateNormals();
    square->calculateVertexNormals();
    return square;
}

inline O3d* makeSquare(float half) {
    return makeSquareAt(0.0f, 0.0f, half);
}

// One triangle with the given corners, normals computed.
inline O3d* makeTriangle(Vector<float, 3> a, Vector<float, 3> b, Vector<float, 3> c) {
    O3d* triangle = new O3d();
    triangle->setVertices({a[0], a[1], a[2], b[0], b[1], b[2], c[0], c[1], c[2]});
    triangle->setPolygons({0, 1, 2}, {0, 1, 0}, {0, 0, 1});
    triangle->calculateNormals();
    triangle->calculateVertexNormals();
    return triangle;
}

// A GL texture of 2 by 2 RGB texels, bottom row first, wrapped in a Texture
// that samples the nearest texel.
inline Texture* makeTexture(const unsigned char (&texels)[12]) {
    GLuint id = 0;
    glGenTextures(1, &id);
    glBindTexture(GL_TEXTURE_2D, id);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 2, 2, 0, GL_RGB, GL_UNSIGNED_BYTE, texels);
    glBindTexture(GL_TEXTURE_2D, 0);
    Texture* texture = new Texture("test", id);
    texture->setSize(2, 2);
    texture->setBPP(24);
    texture->setInterpolation(GL_NEAREST);
    return texture;
}

// GL_LIGHT0 as a white directional light falling from the given direction,
// with no ambient or specular light anywhere, so a lit colour is exactly the
// diffuse colour times the cosine of the angle of incidence.
inline void useDiffuseLight(Vector<float, 3> towardsLight) {
    const float none[4] = {0.0f, 0.0f, 0.0f, 1.0f};
    const float white[4] = {1.0f, 1.0f, 1.0f, 1.0f};
    const float direction[4] = {towardsLight[0], towardsLight[1], towardsLight[2], 0.0f};
    glLightModelfv(GL_LIGHT_MODEL_AMBIENT, none);
    glLightfv(GL_LIGHT0, GL_AMBIENT, none);
    glLightfv(GL_LIGHT0, GL_DIFFUSE, white);
    glLightfv(GL_LIGHT0, GL_SPECULAR, none);
    glLightfv(GL_LIGHT0, GL_POSITION, direction);
    glEnable(GL_LIGHT0);
}

// A material that shows its diffuse colour and nothing else.
inline Material* makeMatteMaterial(float r, float g, float b) {
    Material* material = new Material();
    material->setDiffuse(r, g, b);
    material->setAmbience(0.0f, 0.0f, 0.0f);
    material->setSpecular(0.0f, 0.0f, 0.0f);
    material->setEmissive(0.0f, 0.0f, 0.0f);
    return material;
}

// What GL made of a drawing, read through feedback mode: every vertex in
// window coordinates with its final colour and texture coordinate.
struct FeedbackVertex {
    float x;
    float y;
    float z;
    float colour[4];
    float texture[4];
};

struct FeedbackPrimitive {
    // GL_POLYGON_TOKEN or GL_LINE_TOKEN (a line that restarts the stipple
    // counts as a line too).
    GLenum kind;
    std::vector<FeedbackVertex> vertices;
};

inline std::vector<FeedbackPrimitive> feedbackOf(const std::function<void()>& drawing) {
    std::vector<GLfloat> buffer(1 << 16);
    glFeedbackBuffer(static_cast<GLsizei>(buffer.size()), GL_3D_COLOR_TEXTURE, buffer.data());
    glRenderMode(GL_FEEDBACK);
    drawing();
    GLint used = glRenderMode(GL_RENDER);
    std::vector<FeedbackPrimitive> primitives;
    EXPECT_GE(used, 0) << "feedback buffer too small";
    auto readVertex = [&buffer](GLint& at) {
        FeedbackVertex v{};
        v.x = buffer[at++];
        v.y = buffer[at++];
        v.z = buffer[at++];
        for (float& c : v.colour) {
            c = buffer[at++];
        }
        for (float& t : v.texture) {
            t = buffer[at++];
        }
        return v;
    };
    GLint at = 0;
    while (at < used) {
        GLenum token = static_cast<GLenum>(buffer[at++]);
        FeedbackPrimitive primitive{token, {}};
        int count = 0;
        if (token == GL_POLYGON_TOKEN) {
            count = static_cast<int>(buffer[at++]);
        } else if (token == GL_LINE_TOKEN || token == GL_LINE_RESET_TOKEN) {
            primitive.kind = GL_LINE_TOKEN;
            count = 2;
        } else if (token == GL_PASS_THROUGH_TOKEN) {
            at++;
            continue;
        } else {
            count = 1;
        }
        for (int i = 0; i < count; i++) {
            primitive.vertices.push_back(readVertex(at));
        }
        primitives.push_back(primitive);
    }
    return primitives;
}

// Window coordinates back to the object's own, for identity matrices and the
// test window's viewport.
inline float objectX(const FeedbackVertex& v) {
    return v.x / 32.0f - 1.0f;
}

inline float objectY(const FeedbackVertex& v) {
    return v.y / 32.0f - 1.0f;
}

inline float objectZ(const FeedbackVertex& v) {
    return v.z * 2.0f - 1.0f;
}

#endif
