#include "objects/O3dPolygon.h"

#include "objects/Material.h"
#include "objects/O3dVertex.h"

#include <GL/glew.h>

O3dPolygon::O3dPolygon()
    : vn{nullptr, nullptr, nullptr}, normal(), material(nullptr), overrideVertexNormalsFlag(false),
      vertexNormal(), u{0.0f, 0.0f, 0.0f}, v{0.0f, 0.0f, 0.0f} {}

O3dPolygon::O3dPolygon(O3dVertex* a, O3dVertex* b, O3dVertex* c) : O3dPolygon() {
    vn[0] = a;
    vn[1] = b;
    vn[2] = c;
}

O3dPolygon::~O3dPolygon() {
    material = nullptr;
}

O3dVertex* O3dPolygon::getVn(int i) const {
    if (!isCorner(i)) {
        return nullptr;
    }
    return vn[i];
}

void O3dPolygon::setVn(int i, O3dVertex* vertex) {
    if (isCorner(i)) {
        vn[i] = vertex;
    }
}

bool O3dPolygon::isComplete() const {
    return vn[0] != nullptr && vn[1] != nullptr && vn[2] != nullptr;
}

Vector<float, 3> O3dPolygon::getNormal() const {
    return normal;
}

void O3dPolygon::setNormal(Vector<float, 3> value) {
    normal = value;
}

void O3dPolygon::setMaterial(Material* value) {
    material = value;
}

Material* O3dPolygon::getMaterial() const {
    return material;
}

bool O3dPolygon::hasMaterial() const {
    return material != nullptr;
}

void O3dPolygon::drawMaterial() const {
    if (material != nullptr) {
        material->drawMaterial();
    }
}

void O3dPolygon::setU(int i, float value) {
    if (isCorner(i)) {
        u[i] = value;
    }
}

void O3dPolygon::setV(int i, float value) {
    if (isCorner(i)) {
        v[i] = value;
    }
}

float O3dPolygon::getU(int i) const {
    return isCorner(i) ? u[i] : 0.0f;
}

float O3dPolygon::getV(int i) const {
    return isCorner(i) ? v[i] : 0.0f;
}

void O3dPolygon::overrideVertexNormals(bool value) {
    overrideVertexNormalsFlag = value;
}

bool O3dPolygon::overrideVertexNormals() const {
    return overrideVertexNormalsFlag;
}

void O3dPolygon::setVertexNormal(int i, Vector<float, 3> value) {
    if (isCorner(i)) {
        vertexNormal[i] = value;
    }
}

Vector<float, 3> O3dPolygon::getVertexNormal(int i) const {
    if (isCorner(i)) {
        return vertexNormal[i];
    }
    Vector<float, 3> away;
    away[2] = -1.0f;
    return away;
}

void O3dPolygon::draw(bool textured, bool smooth, float scale) const {
    if (!isComplete()) {
        return;
    }
    glBegin(GL_TRIANGLES);
    if (!smooth) {
        glNormal3fv(normal.data());
    }
    for (int i = 0; i < 3; i++) {
        if (smooth) {
            if (!overrideVertexNormalsFlag) {
                vn[i]->drawNormal();
            } else {
                glNormal3fv(vertexNormal[i].data());
            }
        }
        if (textured) {
            glTexCoord2f(u[i], v[i]);
        }
        if (scale == 1.0f) {
            vn[i]->drawVertex();
        } else {
            Vector<float, 3> scaled = vn[i]->getVertexCopy() * scale;
            glVertex3fv(scaled.data());
        }
    }
    glEnd();
}
