#include "objects/O3dPolygon.h"

#include "ObjectTestSupport.h"
#include "objects/Material.h"
#include "objects/O3dVertex.h"
#include "support/GLTestWindow.h"

#include <gtest/gtest.h>

TEST(O3dPolygon, StartsWithoutCornersMaterialOrCornerNormals) {
    O3dPolygon polygon;
    for (int c = 0; c < 3; c++) {
        EXPECT_EQ(nullptr, polygon.getVn(c));
        EXPECT_EQ(0.0f, polygon.getU(c));
        EXPECT_EQ(0.0f, polygon.getV(c));
    }
    EXPECT_FALSE(polygon.isComplete());
    EXPECT_FALSE(polygon.hasMaterial());
    EXPECT_FALSE(polygon.overrideVertexNormals());
    EXPECT_EQ(0.0f, polygon.getNormal()[2]);
}

TEST(O3dPolygon, ThreeVerticesBecomeTheCornersInOrder) {
    O3dVertex a;
    O3dVertex b;
    O3dVertex c;
    O3dPolygon polygon(&a, &b, &c);
    EXPECT_EQ(&a, polygon.getVn(0));
    EXPECT_EQ(&b, polygon.getVn(1));
    EXPECT_EQ(&c, polygon.getVn(2));
    EXPECT_TRUE(polygon.isComplete());
    polygon.setVn(1, &c);
    EXPECT_EQ(&c, polygon.getVn(1));
}

TEST(O3dPolygon, CornerNumbersOutsideZeroToTwoReadNothingAndWriteNothing) {
    O3dVertex a;
    O3dPolygon polygon(&a, &a, &a);
    O3dVertex other;
    polygon.setVn(3, &other);
    polygon.setVn(-1, &other);
    polygon.setU(3, 5.0f);
    polygon.setV(-1, 5.0f);
    EXPECT_EQ(nullptr, polygon.getVn(3));
    EXPECT_EQ(nullptr, polygon.getVn(-1));
    EXPECT_EQ(0.0f, polygon.getU(3));
    EXPECT_EQ(0.0f, polygon.getV(-1));
    for (int c = 0; c < 3; c++) {
        EXPECT_EQ(&a, polygon.getVn(c));
        EXPECT_EQ(0.0f, polygon.getU(c));
        EXPECT_EQ(0.0f, polygon.getV(c));
    }
}

TEST(O3dPolygon, VertexNormalOfCornerThreeIsZeroZeroMinusOne) {
    O3dPolygon polygon;
    polygon.setVertexNormal(0, vec3(1.0f, 2.0f, 3.0f));
    Vector<float, 3> outside = polygon.getVertexNormal(3);
    EXPECT_EQ(0.0f, outside[0]);
    EXPECT_EQ(0.0f, outside[1]);
    EXPECT_EQ(-1.0f, outside[2]);
    Vector<float, 3> below = polygon.getVertexNormal(-1);
    EXPECT_EQ(-1.0f, below[2]);
}

TEST(O3dPolygon, VertexNormalsAreKeptPerCornerAndOtherCornersAreIgnored) {
    O3dPolygon polygon;
    polygon.setVertexNormal(0, vec3(1.0f, 0.0f, 0.0f));
    polygon.setVertexNormal(2, vec3(0.0f, 0.0f, 1.0f));
    polygon.setVertexNormal(3, vec3(7.0f, 7.0f, 7.0f));
    EXPECT_EQ(1.0f, polygon.getVertexNormal(0)[0]);
    EXPECT_EQ(0.0f, polygon.getVertexNormal(1)[0]);
    EXPECT_EQ(0.0f, polygon.getVertexNormal(1)[2]);
    EXPECT_EQ(1.0f, polygon.getVertexNormal(2)[2]);
    EXPECT_EQ(-1.0f, polygon.getVertexNormal(3)[2]);
}

TEST(O3dPolygon, HasMaterialOnlyWhenOneIsSet) {
    O3dPolygon polygon;
    Material material;
    polygon.setMaterial(&material);
    EXPECT_TRUE(polygon.hasMaterial());
    EXPECT_EQ(&material, polygon.getMaterial());
    polygon.setMaterial(nullptr);
    EXPECT_FALSE(polygon.hasMaterial());
}

TEST(O3dPolygon, DestroyingATriangleLeavesItsMaterialAndCorners) {
    Material material;
    material.setName("kept");
    O3dVertex a(1.0f, 2.0f, 3.0f);
    O3dPolygon* polygon = new O3dPolygon(&a, &a, &a);
    polygon->setMaterial(&material);
    delete polygon;
    EXPECT_EQ("kept", material.getName());
    EXPECT_EQ(2.0f, a.getVertex()[1]);
}

class O3dPolygonDrawing : public GLTestWindow {
protected:
    void SetUp() override {
        GLTestWindow::SetUp();
        a.setVertex(vec3(-0.5f, -0.5f, 0.0f));
        b.setVertex(vec3(0.5f, -0.5f, 0.0f));
        c.setVertex(vec3(0.0f, 0.5f, 0.0f));
        a.setNormal(vec3(0.0f, 0.0f, 0.2f));
        b.setNormal(vec3(0.0f, 0.0f, 0.4f));
        c.setNormal(vec3(0.0f, 0.0f, 0.6f));
        polygon = O3dPolygon(&a, &b, &c);
        polygon.setNormal(vec3(0.0f, 0.0f, 0.9f));
        polygon.setVertexNormal(0, vec3(0.0f, 0.0f, 0.3f));
        polygon.setVertexNormal(1, vec3(0.0f, 0.0f, 0.5f));
        polygon.setVertexNormal(2, vec3(0.0f, 0.0f, 0.7f));
        for (int i = 0; i < 3; i++) {
            polygon.setU(i, 0.1f * (i + 1));
            polygon.setV(i, 0.2f * (i + 1));
        }
        // Lit red is then the z of the normal each corner got.
        useDiffuseLight(vec3(0.0f, 0.0f, 1.0f));
        Material* matte = makeMatteMaterial(1.0f, 1.0f, 1.0f);
        matte->drawMaterial();
        delete matte;
        glEnable(GL_LIGHTING);
    }

    std::vector<FeedbackVertex> drawn(bool textured, bool smooth, float scale) {
        std::vector<FeedbackPrimitive> primitives =
            feedbackOf([&]() { polygon.draw(textured, smooth, scale); });
        EXPECT_EQ(1u, primitives.size());
        if (primitives.size() != 1) {
            return {};
        }
        EXPECT_EQ(static_cast<GLenum>(GL_POLYGON_TOKEN), primitives[0].kind);
        return primitives[0].vertices;
    }

    O3dVertex a;
    O3dVertex b;
    O3dVertex c;
    O3dPolygon polygon;
};

TEST_F(O3dPolygonDrawing, SmoothCornersTakeTheNormalsOfTheirVertices) {
    std::vector<FeedbackVertex> corners = drawn(false, true, 1.0f);
    ASSERT_EQ(3u, corners.size());
    EXPECT_NEAR(0.2f, corners[0].colour[0], 1e-3);
    EXPECT_NEAR(0.4f, corners[1].colour[0], 1e-3);
    EXPECT_NEAR(0.6f, corners[2].colour[0], 1e-3);
}

TEST_F(O3dPolygonDrawing, OverriddenCornersTakeTheirOwnNormals) {
    polygon.overrideVertexNormals(true);
    std::vector<FeedbackVertex> corners = drawn(false, true, 1.0f);
    ASSERT_EQ(3u, corners.size());
    EXPECT_NEAR(0.3f, corners[0].colour[0], 1e-3);
    EXPECT_NEAR(0.5f, corners[1].colour[0], 1e-3);
    EXPECT_NEAR(0.7f, corners[2].colour[0], 1e-3);
}

TEST_F(O3dPolygonDrawing, FlatDrawingGivesEveryCornerTheFaceNormal) {
    polygon.overrideVertexNormals(true);
    std::vector<FeedbackVertex> corners = drawn(false, false, 1.0f);
    ASSERT_EQ(3u, corners.size());
    for (const FeedbackVertex& corner : corners) {
        EXPECT_NEAR(0.9f, corner.colour[0], 1e-3);
    }
}

TEST_F(O3dPolygonDrawing, TexturedDrawingSendsTheCornerCoordinates) {
    std::vector<FeedbackVertex> corners = drawn(true, true, 1.0f);
    ASSERT_EQ(3u, corners.size());
    for (int i = 0; i < 3; i++) {
        EXPECT_NEAR(polygon.getU(i), corners[i].texture[0], 1e-6);
        EXPECT_NEAR(polygon.getV(i), corners[i].texture[1], 1e-6);
    }
}

TEST_F(O3dPolygonDrawing, UntexturedDrawingLeavesTheCurrentTextureCoordinate) {
    glTexCoord2f(0.75f, 0.25f);
    std::vector<FeedbackVertex> corners = drawn(false, true, 1.0f);
    ASSERT_EQ(3u, corners.size());
    for (const FeedbackVertex& corner : corners) {
        EXPECT_FLOAT_EQ(0.75f, corner.texture[0]);
        EXPECT_FLOAT_EQ(0.25f, corner.texture[1]);
    }
}

TEST_F(O3dPolygonDrawing, ScaleOfExactlyOneDrawsTheStoredPositions) {
    std::vector<FeedbackVertex> corners = drawn(false, true, 1.0f);
    ASSERT_EQ(3u, corners.size());
    const O3dVertex* vertices[3] = {&a, &b, &c};
    for (int i = 0; i < 3; i++) {
        EXPECT_FLOAT_EQ(vertices[i]->getVertex()[0], objectX(corners[i]));
        EXPECT_FLOAT_EQ(vertices[i]->getVertex()[1], objectY(corners[i]));
    }
}

TEST_F(O3dPolygonDrawing, AnyOtherScaleDrawsScaledCopiesAndLeavesTheVerticesAlone) {
    std::vector<FeedbackVertex> corners = drawn(false, true, 0.5f);
    ASSERT_EQ(3u, corners.size());
    const O3dVertex* vertices[3] = {&a, &b, &c};
    const float stored[3][2] = {{-0.5f, -0.5f}, {0.5f, -0.5f}, {0.0f, 0.5f}};
    for (int i = 0; i < 3; i++) {
        EXPECT_FLOAT_EQ(stored[i][0] * 0.5f, objectX(corners[i]));
        EXPECT_FLOAT_EQ(stored[i][1] * 0.5f, objectY(corners[i]));
        EXPECT_EQ(stored[i][0], vertices[i]->getVertex()[0]);
        EXPECT_EQ(stored[i][1], vertices[i]->getVertex()[1]);
    }
}

TEST_F(O3dPolygonDrawing, ATriangleWithoutAllCornersDrawsNothing) {
    O3dPolygon open(&a, nullptr, &c);
    std::vector<FeedbackPrimitive> primitives = feedbackOf([&]() { open.draw(true, true, 1.0f); });
    EXPECT_TRUE(primitives.empty());
    EXPECT_EQ(static_cast<GLenum>(GL_NO_ERROR), glGetError());
}

TEST_F(O3dPolygonDrawing, DrawMaterialHandsTheMaterialToGLAndWithoutOneDoesNothing) {
    Material* red = makeMatteMaterial(1.0f, 0.0f, 0.0f);
    polygon.drawMaterial();
    float diffuse[4] = {};
    glGetMaterialfv(GL_FRONT, GL_DIFFUSE, diffuse);
    EXPECT_FLOAT_EQ(1.0f, diffuse[1]);
    polygon.setMaterial(red);
    polygon.drawMaterial();
    glGetMaterialfv(GL_FRONT, GL_DIFFUSE, diffuse);
    EXPECT_FLOAT_EQ(1.0f, diffuse[0]);
    EXPECT_FLOAT_EQ(0.0f, diffuse[1]);
    delete red;
}
