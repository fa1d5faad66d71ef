#include "objects/O3d.h"

#include "ObjectTestSupport.h"
#include "objects/Material.h"
#include "objects/O3dPolygon.h"
#include "objects/O3dVertex.h"
#include "support/GLTestWindow.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <sstream>
#include <string>

namespace {

void expectVector(Vector<float, 3> expected, const float* actual) {
    for (int i = 0; i < 3; i++) {
        EXPECT_FLOAT_EQ(expected[i], actual[i]) << "element " << i;
    }
}

void expectVector(Vector<float, 3> expected, Vector<float, 3> actual) {
    expectVector(expected, actual.data());
}

float lengthOf(const float* v) {
    return std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
}

std::string pointerText(const void* pointer) {
    std::ostringstream out;
    out << pointer;
    return out.str();
}

// Two triangles on the edge from (0, 0, 0) to (0, 1, 0): the first in the
// plane z = 0 facing +z, the second in the plane x = 0 facing +x.
O3d* makeRightAngle() {
    O3d* object = new O3d();
    object->setVertices({0, 0, 0, 0, 1, 0, -1, 0, 0, 0, 0, 1});
    object->setPolygons({0, 1, 2, 0, 1, 3}, {}, {});
    object->calculateNormals();
    object->calculateVertexNormals();
    return object;
}

// Calls a crease computation and swallows its line.
void crease(O3d& object, float degrees) {
    testing::internal::CaptureStdout();
    object.calculateCrease(degrees);
    testing::internal::GetCapturedStdout();
}

} // namespace

TEST(O3d, StartsEmptyWithScaleOneAndNoMaterial) {
    O3d object;
    EXPECT_EQ(0, object.getVertexCount());
    EXPECT_EQ(0, object.getPolyCount());
    EXPECT_EQ(0, object.countKids());
    EXPECT_EQ(1.0f, object.getScaleValue());
    EXPECT_EQ(nullptr, object.getMaterial());
    EXPECT_FALSE(object.hasObjectMaterial());
    EXPECT_FALSE(object.hasPolygonMaterial());
    EXPECT_EQ("", object.getName());
}

TEST(O3d, SetVerticesMakesOneVertexPerTripleAndIgnoresARest) {
    O3d object;
    object.setVertices({1, 2, 3, 4, 5, 6, 7, 8});
    ASSERT_EQ(2, object.getVertexCount());
    expectVector(vec3(1, 2, 3), object.getVertex(0)->getVertex());
    expectVector(vec3(4, 5, 6), object.getVertex(1)->getVertex());
    object.setVertices({});
    EXPECT_EQ(2, object.getVertexCount());
}

TEST(O3d, SetPolygonsMakesOneTrianglePerTripleWithCornersAndTextureCoordinates) {
    O3d object;
    object.setVertices({0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0});
    object.setPolygons({0, 1, 2, 0, 2, 3, 1}, {0.0f, 0.25f, 0.5f, 0.75f}, {1.0f, 0.9f, 0.8f, 0.7f});
    ASSERT_EQ(2, object.getPolyCount());
    O3dPolygon* second = object.getPolygon(1);
    EXPECT_EQ(object.getVertex(0), second->getVn(0));
    EXPECT_EQ(object.getVertex(2), second->getVn(1));
    EXPECT_EQ(object.getVertex(3), second->getVn(2));
    EXPECT_EQ(0.5f, second->getU(1));
    EXPECT_EQ(0.8f, second->getV(1));
    EXPECT_EQ(0.75f, second->getU(2));
    EXPECT_EQ(0.7f, second->getV(2));
}

TEST(O3d, SetPolygonsWithFewerThanThreeIndicesDoesNothing) {
    O3d object;
    object.setVertices({0, 0, 0, 1, 0, 0});
    object.setPolygons({0, 1}, {0, 0}, {0, 0});
    EXPECT_EQ(0, object.getPolyCount());
    EXPECT_EQ(0, object.getVertex(0)->countPolygons());
}

TEST(O3d, VerticesPointBackAtEveryTriangleThatUsesThemTwiceForATriangleUsingOneTwice) {
    O3d object;
    object.setVertices({0, 0, 0, 1, 0, 0, 0, 1, 0});
    object.setPolygons({0, 1, 2, 2, 1, 2}, {}, {});
    EXPECT_EQ(1, object.getVertex(0)->countPolygons());
    ASSERT_EQ(2, object.getVertex(1)->countPolygons());
    EXPECT_EQ(object.getPolygon(0), object.getVertex(1)->getPolygon(0));
    EXPECT_EQ(object.getPolygon(1), object.getVertex(1)->getPolygon(1));
    ASSERT_EQ(3, object.getVertex(2)->countPolygons());
    EXPECT_EQ(object.getPolygon(1), object.getVertex(2)->getPolygon(1));
    EXPECT_EQ(object.getPolygon(1), object.getVertex(2)->getPolygon(2));
}

TEST(O3d, ATripleWithAVertexOutsideTheListMakesATriangleWithoutCorners) {
    O3d object;
    object.setVertices({0, 0, 0, 1, 0, 0, 0, 1, 0});
    object.setPolygons({0, 1, 3, 0, -1, 2, 0, 1, 2}, {0, 0, 0}, {0, 0, 0});
    ASSERT_EQ(3, object.getPolyCount());
    EXPECT_FALSE(object.getPolygon(0)->isComplete());
    EXPECT_EQ(nullptr, object.getPolygon(0)->getVn(0));
    EXPECT_FALSE(object.getPolygon(1)->isComplete());
    EXPECT_TRUE(object.getPolygon(2)->isComplete());
    EXPECT_EQ(1, object.getVertex(0)->countPolygons());
    EXPECT_EQ(object.getPolygon(2), object.getVertex(0)->getPolygon(0));
}

TEST(O3d, ATriangleWithoutCornersTakesNoPartInTheNormals) {
    O3d object;
    object.setVertices({0, 0, 0, 1, 0, 0, 0, 1, 0});
    object.setPolygons({0, 1, 99, 0, 1, 2}, {}, {});
    object.calculateNormals();
    object.calculateVertexNormals();
    crease(object, 10.0f);
    expectVector(vec3(0, 0, 0), object.getPolygon(0)->getNormal());
    expectVector(vec3(0, 0, 1), object.getPolygon(1)->getNormal());
    expectVector(vec3(0, 0, 1), object.getVertex(0)->getNormal());
}

TEST(O3d, TextureCoordinatesBeyondTheirListsReadZero) {
    O3d object;
    object.setVertices({0, 0, 0, 1, 0, 0, 0, 1, 0});
    object.setPolygons({0, 1, 2}, {0.5f}, {});
    O3dPolygon* polygon = object.getPolygon(0);
    EXPECT_EQ(0.5f, polygon->getU(0));
    EXPECT_EQ(0.0f, polygon->getU(1));
    EXPECT_EQ(0.0f, polygon->getV(0));
    EXPECT_TRUE(polygon->isComplete());
}

TEST(O3d, VertexAndTriangleNumbersOutsideTheListsGiveNull) {
    std::unique_ptr<O3d> square(makeSquare(0.5f));
    EXPECT_EQ(nullptr, square->getVertex(4));
    EXPECT_EQ(nullptr, square->getVertex(-1));
    EXPECT_EQ(nullptr, square->getPolygon(2));
    EXPECT_EQ(nullptr, square->getPolygon(-1));
}

TEST(O3d, SetScaleValueReachesEveryKidButNotTheVertices) {
    O3d object;
    object.setVertices({1, 2, 3});
    O3d* kid = new O3d();
    O3d* grandKid = new O3d();
    kid->addKid(grandKid);
    object.addKid(kid);
    object.setScaleValue(0.25f);
    EXPECT_EQ(0.25f, object.getScaleValue());
    EXPECT_EQ(0.25f, kid->getScaleValue());
    EXPECT_EQ(0.25f, grandKid->getScaleValue());
    expectVector(vec3(1, 2, 3), object.getVertex(0)->getVertex());
}

TEST(O3d, GetKidsGivesACopyOfTheList) {
    O3d object;
    O3d* kid = new O3d();
    object.addKid(kid);
    std::vector<O3d*> kids = object.getKids();
    kids.push_back(nullptr);
    EXPECT_EQ(1, object.countKids());
    ASSERT_EQ(2u, kids.size());
    EXPECT_EQ(kid, kids[0]);
}

TEST(O3d, PlacementNameAndPivotAreKeptAsGiven) {
    O3d object;
    object.setName("door");
    object.setLocation(vec3(1, 2, 3));
    object.setPosition(vec3(4, 5, 6));
    object.setPivotPoint(vec3(7, 8, 9));
    EXPECT_EQ("door", object.getName());
    expectVector(vec3(1, 2, 3), object.getLocation());
    expectVector(vec3(4, 5, 6), object.getPosition());
    expectVector(vec3(7, 8, 9), object.getPivotPoint());
}

TEST(O3d, SetMaterialTurnsObjectMaterialOnAndPolygonMaterialsOff) {
    O3d object;
    Material material;
    object.hasPolygonMaterial(true);
    object.setMaterial(&material);
    EXPECT_EQ(&material, object.getMaterial());
    EXPECT_TRUE(object.hasObjectMaterial());
    EXPECT_FALSE(object.hasPolygonMaterial());
}

TEST(O3d, SetMaterialAfterSetPolygonMaterialTurnsPerPolygonMaterialsOffWhileThePolygonsKeepTheirs) {
    std::unique_ptr<O3d> square(makeSquare(0.5f));
    Material first;
    Material second;
    Material whole;
    square->setPolygonMaterial(0, &first);
    square->setPolygonMaterial(1, &second);
    EXPECT_TRUE(square->hasPolygonMaterial());
    EXPECT_FALSE(square->hasObjectMaterial());
    square->setMaterial(&whole);
    EXPECT_FALSE(square->hasPolygonMaterial());
    EXPECT_TRUE(square->hasObjectMaterial());
    EXPECT_EQ(&first, square->getPolygon(0)->getMaterial());
    EXPECT_EQ(&second, square->getPolygon(1)->getMaterial());
}

TEST(O3d, APolygonMaterialForATriangleThatDoesNotExistIsDroppedButSetsTheFlags) {
    std::unique_ptr<O3d> square(makeSquare(0.5f));
    Material material;
    square->setMaterial(&material);
    square->setPolygonMaterial(2, &material);
    square->setPolygonMaterial(-1, &material);
    EXPECT_TRUE(square->hasPolygonMaterial());
    EXPECT_FALSE(square->hasObjectMaterial());
    EXPECT_FALSE(square->getPolygon(0)->hasMaterial());
    EXPECT_FALSE(square->getPolygon(1)->hasMaterial());
}

TEST(O3d, ANullPolygonMaterialLeavesTheTriangleWithoutOne) {
    std::unique_ptr<O3d> square(makeSquare(0.5f));
    Material material;
    square->setPolygonMaterial(0, &material);
    square->setPolygonMaterial(0, nullptr);
    EXPECT_FALSE(square->getPolygon(0)->hasMaterial());
    EXPECT_TRUE(square->hasPolygonMaterial());
}

TEST(O3d, MaterialFlagsCanBeSetDirectly) {
    O3d object;
    object.hasObjectMaterial(true);
    object.hasPolygonMaterial(true);
    EXPECT_TRUE(object.hasObjectMaterial());
    EXPECT_TRUE(object.hasPolygonMaterial());
    object.hasObjectMaterial(false);
    EXPECT_FALSE(object.hasObjectMaterial());
    EXPECT_TRUE(object.hasPolygonMaterial());
}

TEST(O3d, DestroyingAnObjectLeavesItsMaterial) {
    Material material;
    material.setName("shared");
    O3d* object = makeSquare(0.5f);
    object->setMaterial(&material);
    object->setPolygonMaterial(0, &material);
    delete object;
    EXPECT_EQ("shared", material.getName());
}

TEST(O3d, PrintListsEachTriangleWithItsCornersAndTextureCoordinates) {
    O3d object;
    object.setVertices({0, 0, 0, 1, 0, 0, 0, 1, 0});
    object.setPolygons({0, 1, 2, 2, 1, 0}, {0.0f, 0.5f, 1.0f}, {0.25f, 0.0f, 1.0f});
    std::string expected;
    const int order[2][3] = {{0, 1, 2}, {2, 1, 0}};
    const char* tex[3] = {"0 0.25", "0.5 0", "1 1"};
    for (int p = 0; p < 2; p++) {
        expected += "Poly[" + std::to_string(p) + "]\n";
        for (int c = 0; c < 3; c++) {
            expected += "Vertex: " + pointerText(object.getVertex(order[p][c])) + "\n";
            expected += std::string("Tex: ") + tex[order[p][c]] + "\n";
        }
    }
    testing::internal::CaptureStdout();
    object.print();
    EXPECT_EQ(expected, testing::internal::GetCapturedStdout());
}

TEST(O3d, TriangleCounterClockwiseInTheXyPlaneGetsTheFaceNormalPlusZ) {
    std::unique_ptr<O3d> triangle(makeTriangle(vec3(0, 0, 0), vec3(1, 0, 0), vec3(0, 1, 0)));
    expectVector(vec3(0, 0, 1), triangle->getPolygon(0)->getNormal());
}

TEST(O3d, FaceNormalsHaveUnitLength) {
    std::unique_ptr<O3d> triangle(makeTriangle(vec3(0, 0, 0), vec3(3, 0, 0), vec3(0, 0, -5)));
    Vector<float, 3> n = triangle->getPolygon(0)->getNormal();
    expectVector(vec3(0, 1, 0), n);
}

TEST(O3d, ADegenerateTriangleGetsANormalThatIsNotANumber) {
    std::unique_ptr<O3d> triangle(makeTriangle(vec3(0, 0, 0), vec3(1, 1, 1), vec3(2, 2, 2)));
    EXPECT_TRUE(std::isnan(triangle->getPolygon(0)->getNormal()[0]));
}

TEST(O3d, NormalsOfKidsAreLeftToTheKids) {
    O3d* kid = makeTriangle(vec3(0, 0, 0), vec3(1, 0, 0), vec3(0, 1, 0));
    kid->getPolygon(0)->setNormal(vec3(5, 5, 5));
    O3d object;
    object.addKid(kid);
    object.calculateNormals();
    object.calculateVertexNormals();
    expectVector(vec3(5, 5, 5), kid->getPolygon(0)->getNormal());
}

TEST(O3d, TwoTrianglesFacingTheSameWayGiveTheirSharedVertexTheirCommonNormal) {
    std::unique_ptr<O3d> square(makeSquare(0.5f));
    ASSERT_EQ(2, square->getVertex(0)->countPolygons());
    expectVector(vec3(0, 0, 1), square->getVertex(0)->getNormal());
    expectVector(vec3(0, 0, 1), square->getVertex(2)->getNormal());
    expectVector(vec3(0, 0, 1), square->getVertex(1)->getNormal());
}

TEST(O3d, TwoTrianglesAtRightAnglesGiveTheSharedVertexAMeanOfLengthAboutPointSevenOOSeven) {
    std::unique_ptr<O3d> object(makeRightAngle());
    expectVector(vec3(0, 0, 1), object->getPolygon(0)->getNormal());
    expectVector(vec3(1, 0, 0), object->getPolygon(1)->getNormal());
    const float* shared = object->getVertex(0)->getNormal();
    expectVector(vec3(0.5f, 0, 0.5f), shared);
    EXPECT_NEAR(0.7071f, lengthOf(shared), 1e-4);
}

TEST(O3d, AVertexThatNoTriangleUsesKeepsTheNormalItHad) {
    O3d object;
    object.setVertices({0, 0, 0, 1, 0, 0, 0, 1, 0, 5, 5, 5, 6, 6, 6});
    object.setPolygons({0, 1, 2}, {}, {});
    object.getVertex(4)->setNormal(vec3(0, 1, 0));
    object.calculateNormals();
    object.calculateVertexNormals();
    expectVector(vec3(0, 0, 0), object.getVertex(3)->getNormal());
    expectVector(vec3(0, 1, 0), object.getVertex(4)->getNormal());
}

TEST(O3d, CreaseOf180MakesNoCornerFlat) {
    // Faces at right angles and at 135 degrees around vertex 0.
    O3d object;
    object.setVertices({0, 0, 0, 0, 1, 0, -1, 0, 0, 0, 0, 1, 1, 0, -1});
    object.setPolygons({0, 1, 2, 0, 1, 3, 0, 1, 4}, {}, {});
    object.calculateNormals();
    object.calculateVertexNormals();
    O3d* kid = makeTriangle(vec3(0, 0, 0), vec3(1, 0, 0), vec3(0, 1, 0));
    object.addKid(kid);
    crease(object, 180.0f);
    for (int p = 0; p < object.getPolyCount(); p++) {
        O3dPolygon* polygon = object.getPolygon(p);
        EXPECT_TRUE(polygon->overrideVertexNormals());
        for (int c = 0; c < 3; c++) {
            expectVector(vec3(polygon->getVn(c)->getNormal()), polygon->getVertexNormal(c));
        }
    }
    EXPECT_TRUE(kid->getPolygon(0)->overrideVertexNormals());
}

TEST(O3d, CreaseOf180StillFlattensBackToBackTrianglesSinceTheirAngleComesOutAbove180) {
    // acosf(-1) is the float nearest pi, a little more than 3.14159, so the
    // angle of opposite faces is 180.00015.
    O3d object;
    object.setVertices({0, 0, 0, 1, 0, 0, 0, 1, 0});
    object.setPolygons({0, 1, 2, 0, 2, 1}, {}, {});
    object.calculateNormals();
    object.calculateVertexNormals();
    crease(object, 180.0f);
    expectVector(vec3(0, 0, 1), object.getPolygon(0)->getVertexNormal(0));
    expectVector(vec3(0, 0, -1), object.getPolygon(1)->getVertexNormal(0));
}

TEST(O3d, CreaseOfZeroFlattensACornerAsSoonAsAComparedTriangleDiffers) {
    std::unique_ptr<O3d> object(makeRightAngle());
    crease(*object, 0.0f);
    O3dPolygon* first = object->getPolygon(0);
    O3dPolygon* second = object->getPolygon(1);
    // The corners on the shared edge compare both triangles, and one of
    // them differs: each triangle gets its own face normal there.
    for (int c = 0; c < 2; c++) {
        expectVector(vec3(0, 0, 1), first->getVertexNormal(c));
        expectVector(vec3(1, 0, 0), second->getVertexNormal(c));
    }
    expectVector(vec3(0.5f, 0, 0.5f), object->getVertex(0)->getNormal());
}

TEST(O3d, CreaseComparesTheObjectsFirstTrianglesNotTheVertexsOwn) {
    std::unique_ptr<O3d> object(makeRightAngle());
    // Vertex 3 belongs to the second triangle alone, but its one comparison
    // is with the object's first triangle, which stands at right angles.
    object->getVertex(3)->setNormal(vec3(0.6f, 0.8f, 0));
    crease(*object, 45.0f);
    expectVector(vec3(1, 0, 0), object->getPolygon(1)->getVertexNormal(2));
    // Vertex 2 belongs to the first triangle and is compared with it alone.
    object->getVertex(2)->setNormal(vec3(0, 0.6f, 0.8f));
    crease(*object, 45.0f);
    expectVector(vec3(0, 0.6f, 0.8f), object->getPolygon(0)->getVertexNormal(2));
}

TEST(O3d, CreaseOfZeroLeavesACornerSmoothWhenTheFirstTrianglesOfTheObjectAreCoplanarWithIt) {
    // Triangles 0 and 1 lie flat in z = 0; triangle 2 stands up along the
    // edge of triangle 0 from (0, 0, 0) to (0, 1, 0).
    O3d object;
    object.setVertices({0, 0, 0, 0, 1, 0, -1, 0, 0, 5, 5, 0, 6, 5, 0, 5, 6, 0, 0, 0, 1});
    object.setPolygons({0, 1, 2, 3, 4, 5, 0, 1, 6}, {}, {});
    object.calculateNormals();
    object.calculateVertexNormals();
    crease(object, 0.0f);
    O3dPolygon* flat = object.getPolygon(0);
    O3dPolygon* upright = object.getPolygon(2);
    // Vertex 0 has two triangles, so triangles 0 and 1 are compared with
    // triangle 0: both coplanar, so its corner keeps the smooth mean,
    // although triangle 2 at the same vertex stands at right angles.
    Vector<float, 3> smooth = vec3(object.getVertex(0)->getNormal());
    expectVector(vec3(0.5f, 0, 0.5f), smooth);
    expectVector(smooth, flat->getVertexNormal(0));
    expectVector(smooth, flat->getVertexNormal(1));
    expectVector(vec3(1, 0, 0), upright->getVertexNormal(0));
    expectVector(vec3(1, 0, 0), upright->getVertexNormal(1));
}

TEST(O3d, CreaseCornersStayWithinTheObjectsTrianglesWhenAVertexCountsMoreTrianglesThanThereAre) {
    O3d object;
    object.setVertices({0, 0, 0, 1, 0, 0});
    object.setPolygons({0, 0, 1}, {}, {});
    object.calculateNormals();
    object.calculateVertexNormals();
    ASSERT_EQ(2, object.getVertex(0)->countPolygons());
    crease(object, 0.0f);
    EXPECT_TRUE(object.getPolygon(0)->overrideVertexNormals());
    // NaN angles are never greater: the corners keep their vertex normals.
    EXPECT_TRUE(std::isnan(object.getPolygon(0)->getVertexNormal(0)[0]));
}

TEST(O3d, CreasePrintsItsEndLineOncePerObjectKidsIncluded) {
    O3d object;
    object.addKid(new O3d());
    testing::internal::CaptureStdout();
    object.calculateCrease(45.5f);
    EXPECT_EQ("O3d::calculateCrease(45.5) - END\nO3d::calculateCrease(45.5) - END\n",
              testing::internal::GetCapturedStdout());
}

TEST(O3d, BoundingBoxSpansTheVerticesAxisByAxisAndIsPrinted) {
    O3d object;
    object.setVertices({1, 5, -2, 3, -1, 0, 2, 2, 4});
    testing::internal::CaptureStdout();
    object.calculateBBox();
    EXPECT_EQ("Bounding box :\nMin : [1,-1,-2]\nMax : [3,5,4]\n",
              testing::internal::GetCapturedStdout());
    expectVector(vec3(1, -1, -2), object.getBBoxMin());
    expectVector(vec3(3, 5, 4), object.getBBoxMax());
}

TEST(O3d, BoundingBoxLeavesKidsOut) {
    O3d object;
    object.setVertices({0, 0, 0, 1, 1, 1});
    O3d* kid = new O3d();
    kid->setVertices({10, 10, 10});
    object.addKid(kid);
    testing::internal::CaptureStdout();
    object.calculateBBox();
    testing::internal::GetCapturedStdout();
    expectVector(vec3(1, 1, 1), object.getBBoxMax());
}

TEST(O3d, BoundingBoxOfAnObjectWithoutVerticesStaysAtZero) {
    O3d object;
    testing::internal::CaptureStdout();
    object.calculateBBox();
    EXPECT_EQ("Bounding box :\nMin : [0,0,0]\nMax : [0,0,0]\n",
              testing::internal::GetCapturedStdout());
}

TEST(O3d, InvertNormalsTwiceRestoresTheNormals) {
    std::unique_ptr<O3d> object(makeRightAngle());
    object->addKid(makeTriangle(vec3(0, 0, 0), vec3(1, 0, 0), vec3(0, 1, 0)));
    object->invertNormals();
    expectVector(vec3(-0.5f, 0, -0.5f), object->getVertex(0)->getNormal());
    expectVector(vec3(0, 0, -1), object->getPolygon(0)->getNormal());
    expectVector(vec3(0, 0, -1), object->getKids()[0]->getPolygon(0)->getNormal());
    object->invertNormals();
    expectVector(vec3(0.5f, 0, 0.5f), object->getVertex(0)->getNormal());
    expectVector(vec3(0, 0, 1), object->getPolygon(0)->getNormal());
    expectVector(vec3(1, 0, 0), object->getPolygon(1)->getNormal());
    expectVector(vec3(0, 0, 1), object->getKids()[0]->getPolygon(0)->getNormal());
}

TEST(O3d, InvertNormalsLeavesTheCreaseCornerNormals) {
    std::unique_ptr<O3d> object(makeRightAngle());
    crease(*object, 0.0f);
    object->invertNormals();
    expectVector(vec3(0, 0, 1), object->getPolygon(0)->getVertexNormal(0));
}

TEST(O3d, DrawMaterialWithoutAMaterialPrintsThatItIsNull) {
    O3d object;
    testing::internal::CaptureStdout();
    object.drawMaterial(nullptr);
    EXPECT_EQ("ObjectMaterial is NULL\n", testing::internal::GetCapturedStdout());
}

namespace {

// Bottom row first: red, green; then blue, white.
const unsigned char QUADRANT_TEXELS[12] = {255, 0, 0, 0, 255, 0, 0, 0, 255, 255, 255, 255};

// The centres of the four quarters of a square of half size 0.5 in the
// test window, in the order of the texels above.
const int QUARTER_X[4] = {24, 40, 24, 40};
const int QUARTER_Y[4] = {24, 24, 40, 40};

bool isLit(const GLTestWindow::Rgb& pixel) {
    return pixel[0] != 0 || pixel[1] != 0 || pixel[2] != 0;
}

void expectPixelNear(float r, float g, float b, const GLTestWindow::Rgb& pixel) {
    EXPECT_NEAR(r, pixel[0], 2.0) << "red";
    EXPECT_NEAR(g, pixel[1], 2.0) << "green";
    EXPECT_NEAR(b, pixel[2], 2.0) << "blue";
}

} // namespace

class O3dDrawing : public GLTestWindow {
protected:
    void TearDown() override {
        testing::internal::CaptureStdout();
        delete texture;
        testing::internal::GetCapturedStdout();
        GLTestWindow::TearDown();
    }

    Texture* texture = nullptr;
};

TEST_F(O3dDrawing, ALitTexturedSquareAppearsWhereAndInTheColourExpected) {
    texture = makeTexture(QUADRANT_TEXELS);
    std::unique_ptr<Material> material(makeMatteMaterial(0.8f, 0.6f, 0.4f));
    material->setTexture1(texture);
    std::unique_ptr<O3d> square(makeSquare(0.5f));
    square->setMaterial(material.get());
    // Light at 60 degrees from the square's normal: half the diffuse colour.
    useDiffuseLight(vec3(0.0f, std::sqrt(3.0f), 1.0f));
    const float cosine = 0.5f;

    square->draw(1);

    Vector<float, 4> diffuse = material->getDiffuse();
    for (int q = 0; q < 4; q++) {
        float lit[3];
        for (int c = 0; c < 3; c++) {
            lit[c] = QUADRANT_TEXELS[3 * q + c] * diffuse[c] * cosine;
        }
        SCOPED_TRACE("quarter " + std::to_string(q));
        expectPixelNear(lit[0], lit[1], lit[2], readRgb(QUARTER_X[q], QUARTER_Y[q]));
    }
    EXPECT_FALSE(isLit(readRgb(8, 8)));
    EXPECT_FALSE(isLit(readRgb(56, 32)));
    EXPECT_FALSE(isLit(readRgb(32, 56)));
}

TEST_F(O3dDrawing, SmoothDrawingLeavesLightingOnAndBothTextureTargetsOff) {
    texture = makeTexture(QUADRANT_TEXELS);
    Material material;
    material.setTexture1(texture);
    std::unique_ptr<O3d> square(makeSquare(0.5f));
    square->setMaterial(&material);
    glEnable(GL_TEXTURE_1D);
    square->drawSmooth();
    EXPECT_TRUE(glIsEnabled(GL_LIGHTING));
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D));
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_1D));
}

TEST_F(O3dDrawing, AnObjectWithoutTrianglesTurnsBothTextureTargetsOff) {
    O3d empty;
    glEnable(GL_TEXTURE_1D);
    glEnable(GL_TEXTURE_2D);
    glDisable(GL_LIGHTING);
    empty.drawSmooth();
    EXPECT_TRUE(glIsEnabled(GL_LIGHTING));
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D));
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_1D));
}

TEST_F(O3dDrawing, EachTriangleDrawsWithItsOwnMaterialAndTexture) {
    texture = makeTexture(QUADRANT_TEXELS);
    std::unique_ptr<Material> textured(makeMatteMaterial(1.0f, 1.0f, 1.0f));
    textured->setTexture1(texture);
    std::unique_ptr<Material> blue(makeMatteMaterial(0.0f, 0.0f, 1.0f));
    std::unique_ptr<O3d> square(makeSquare(0.5f));
    square->setPolygonMaterial(0, textured.get());
    square->setPolygonMaterial(1, blue.get());
    useDiffuseLight(vec3(0.0f, 0.0f, 1.0f));

    square->draw(1);

    // The lower right triangle shows the green texel, the upper left is
    // plain blue with the texture turned off.
    expectPixelNear(0, 255, 0, readRgb(40, 24));
    expectPixelNear(0, 0, 255, readRgb(24, 40));
}

TEST_F(O3dDrawing, ATriangleWithoutMaterialDrawsWithTheOneBeforeIt) {
    std::unique_ptr<Material> red(makeMatteMaterial(1.0f, 0.0f, 0.0f));
    std::unique_ptr<O3d> square(makeSquare(0.5f));
    square->setPolygonMaterial(0, red.get());
    useDiffuseLight(vec3(0.0f, 0.0f, 1.0f));
    square->draw(1);
    expectPixelNear(255, 0, 0, readRgb(40, 24));
    expectPixelNear(255, 0, 0, readRgb(24, 40));
}

TEST_F(O3dDrawing, WithoutObjectMaterialTheCallersTextureStaysInUse) {
    texture = makeTexture(QUADRANT_TEXELS);
    std::unique_ptr<O3d> square(makeSquare(0.5f));
    useDiffuseLight(vec3(0.0f, 0.0f, 1.0f));
    float diffuse[4] = {};
    glGetMaterialfv(GL_FRONT, GL_DIFFUSE, diffuse);
    texture->bind();
    square->draw(1);
    for (int q = 0; q < 4; q++) {
        SCOPED_TRACE("quarter " + std::to_string(q));
        expectPixelNear(
            QUADRANT_TEXELS[3 * q] * diffuse[0], QUADRANT_TEXELS[3 * q + 1] * diffuse[1],
            QUADRANT_TEXELS[3 * q + 2] * diffuse[2], readRgb(QUARTER_X[q], QUARTER_Y[q]));
    }
}

TEST_F(O3dDrawing, ANullObjectMaterialIsReportedAndDrawnWithoutTexture) {
    texture = makeTexture(QUADRANT_TEXELS);
    std::unique_ptr<O3d> square(makeSquare(0.5f));
    square->setMaterial(nullptr);
    useDiffuseLight(vec3(0.0f, 0.0f, 1.0f));
    texture->bind();
    testing::internal::CaptureStdout();
    square->draw(1);
    EXPECT_EQ("ObjectMaterial is NULL\n", testing::internal::GetCapturedStdout());
    GLTestWindow::Rgb blue = readRgb(QUARTER_X[2], QUARTER_Y[2]);
    GLTestWindow::Rgb red = readRgb(QUARTER_X[0], QUARTER_Y[0]);
    EXPECT_TRUE(isLit(red));
    EXPECT_EQ(red, blue) << "the texture is off, so the square is one colour";
}

TEST_F(O3dDrawing, WireModeDrawsTheEdgesAndLeavesTheInsideEmpty) {
    std::unique_ptr<O3d> square(makeSquare(0.5f));
    glEnable(GL_TEXTURE_2D);
    square->draw(4);
    const float grey = 0.7f * 255.0f;
    auto isWire = [grey](const Rgb& pixel) {
        return std::abs(pixel[0] - grey) <= 1.5f && std::abs(pixel[1] - grey) <= 1.5f &&
               std::abs(pixel[2] - grey) <= 1.5f;
    };
    auto wireNear = [&](int x, int y, bool alongX) {
        for (int d = -2; d <= 2; d++) {
            if (isWire(alongX ? readRgb(x + d, y) : readRgb(x, y + d))) {
                return true;
            }
        }
        return false;
    };
    EXPECT_TRUE(wireNear(16, 32, true)) << "left edge";
    EXPECT_TRUE(wireNear(48, 32, true)) << "right edge";
    EXPECT_TRUE(wireNear(32, 16, false)) << "bottom edge";
    EXPECT_TRUE(wireNear(32, 48, false)) << "top edge";
    EXPECT_TRUE(wireNear(24, 24, true)) << "diagonal";
    EXPECT_FALSE(isLit(readRgb(24, 40))) << "inside the upper left triangle";
    EXPECT_FALSE(isLit(readRgb(40, 24))) << "inside the lower right triangle";
    EXPECT_FALSE(isLit(readRgb(8, 8))) << "outside";
    EXPECT_TRUE(glIsEnabled(GL_LIGHTING));
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D));
    EXPECT_FALSE(glIsEnabled(GL_COLOR_MATERIAL));
}

TEST_F(O3dDrawing, WireLiesOnePerCentOutsideTheScaledSurface) {
    std::unique_ptr<O3d> square(makeSquare(0.5f));
    square->setScaleValue(0.5f);
    std::vector<FeedbackPrimitive> lines = feedbackOf([&]() { square->drawWire(); });
    ASSERT_EQ(6u, lines.size());
    const float factor = 0.5f + 0.5f / 100;
    for (const FeedbackPrimitive& line : lines) {
        EXPECT_EQ(static_cast<GLenum>(GL_LINE_TOKEN), line.kind);
        for (const FeedbackVertex& end : line.vertices) {
            EXPECT_NEAR(0.5f * factor, std::abs(objectX(end)), 1e-5);
            EXPECT_NEAR(0.5f * factor, std::abs(objectY(end)), 1e-5);
            EXPECT_NEAR(0.7f, end.colour[0], 1e-3);
        }
    }
}

TEST_F(O3dDrawing, DrawingWalksTheKidsInEveryModeWithTheMatrixStackBalanced) {
    std::unique_ptr<O3d> parent(
        makeTriangle(vec3(-0.9f, -0.9f, 0), vec3(-0.5f, -0.9f, 0), vec3(-0.9f, -0.5f, 0)));
    parent->addKid(makeTriangle(vec3(0.5f, 0.5f, 0), vec3(0.9f, 0.5f, 0), vec3(0.5f, 0.9f, 0)));
    GLint depthBefore = 0;
    glGetIntegerv(GL_MODELVIEW_STACK_DEPTH, &depthBefore);
    std::vector<FeedbackPrimitive> smooth = feedbackOf([&]() { parent->draw(1); });
    std::vector<FeedbackPrimitive> wire = feedbackOf([&]() { parent->draw(4); });
    std::vector<FeedbackPrimitive> other = feedbackOf([&]() {
        parent->draw(0);
        parent->draw(2);
        parent->draw(-1);
    });
    GLint depthAfter = 0;
    glGetIntegerv(GL_MODELVIEW_STACK_DEPTH, &depthAfter);
    EXPECT_EQ(2u, smooth.size());
    EXPECT_EQ(6u, wire.size());
    EXPECT_TRUE(other.empty());
    EXPECT_EQ(depthBefore, depthAfter);
}

TEST_F(O3dDrawing, FlatDrawingDrawsNothing) {
    std::unique_ptr<O3d> square(makeSquare(0.5f));
    std::vector<FeedbackPrimitive> drawn = feedbackOf([&]() { square->drawFlat(); });
    EXPECT_TRUE(drawn.empty());
}

TEST_F(O3dDrawing, VertexNormalsAreGreenLinesOfHalfALengthFromTheScaledVertices) {
    std::unique_ptr<O3d> object(makeRightAngle());
    object->setScaleValue(0.5f);
    glEnable(GL_TEXTURE_2D);
    glDisable(GL_LIGHTING);
    std::vector<FeedbackPrimitive> lines = feedbackOf([&]() { object->drawVertexNormals(); });
    ASSERT_EQ(4u, lines.size());
    for (int i = 0; i < 4; i++) {
        Vector<float, 3> from = object->getVertex(i)->getVertexCopy() * 0.5f;
        Vector<float, 3> to = from + vec3(object->getVertex(i)->getNormal()) * 0.5f;
        const FeedbackVertex* ends = lines[i].vertices.data();
        EXPECT_NEAR(from[0], objectX(ends[0]), 1e-5);
        EXPECT_NEAR(from[1], objectY(ends[0]), 1e-5);
        EXPECT_NEAR(from[2], objectZ(ends[0]), 1e-5);
        EXPECT_NEAR(to[0], objectX(ends[1]), 1e-5);
        EXPECT_NEAR(to[1], objectY(ends[1]), 1e-5);
        EXPECT_NEAR(to[2], objectZ(ends[1]), 1e-5);
        EXPECT_FLOAT_EQ(0.0f, ends[0].colour[0]);
        EXPECT_FLOAT_EQ(1.0f, ends[0].colour[1]);
    }
    EXPECT_FALSE(glIsEnabled(GL_LIGHTING)) << "the attributes come back";
    EXPECT_TRUE(glIsEnabled(GL_TEXTURE_2D)) << "the attributes come back";
}

TEST_F(O3dDrawing, OverriddenCornerNormalsAreRedLinesForCreasedTrianglesOnly) {
    std::unique_ptr<O3d> object(makeRightAngle());
    crease(*object, 0.0f);
    object->getPolygon(1)->overrideVertexNormals(false);
    glEnable(GL_LIGHTING);
    std::vector<FeedbackPrimitive> lines =
        feedbackOf([&]() { object->drawVertexNormalsOverride(); });
    ASSERT_EQ(3u, lines.size());
    O3dPolygon* creased = object->getPolygon(0);
    for (int c = 0; c < 3; c++) {
        Vector<float, 3> from = creased->getVn(c)->getVertexCopy();
        Vector<float, 3> to = from + creased->getVertexNormal(c) * 0.5f;
        EXPECT_NEAR(from[0], objectX(lines[c].vertices[0]), 1e-5);
        EXPECT_NEAR(from[1], objectY(lines[c].vertices[0]), 1e-5);
        EXPECT_NEAR(to[0], objectX(lines[c].vertices[1]), 1e-5);
        EXPECT_NEAR(to[1], objectY(lines[c].vertices[1]), 1e-5);
        EXPECT_FLOAT_EQ(1.0f, lines[c].vertices[0].colour[0]);
        EXPECT_FLOAT_EQ(0.0f, lines[c].vertices[0].colour[1]);
    }
    EXPECT_TRUE(glIsEnabled(GL_LIGHTING));
}

TEST_F(O3dDrawing, FaceNormalsAreWhiteLinesFromTheCentresAndTheTranslationsStay) {
    std::unique_ptr<O3d> object(makeTriangle(vec3(0, 0, 0), vec3(0.6f, 0, 0), vec3(0, 0.6f, 0)));
    object->setScaleValue(0.5f);
    object->setPivotPoint(vec3(0.1f, 0, 0));
    object->setLocation(vec3(0, 0.4f, 0));
    std::vector<FeedbackPrimitive> lines = feedbackOf([&]() { object->drawNormals(); });
    ASSERT_EQ(1u, lines.size());
    // Centre (0.2, 0.2, 0) times 0.5, moved by -pivot and location * 0.5.
    const FeedbackVertex* ends = lines[0].vertices.data();
    EXPECT_NEAR(0.1f - 0.1f, objectX(ends[0]), 1e-5);
    EXPECT_NEAR(0.1f + 0.2f, objectY(ends[0]), 1e-5);
    EXPECT_NEAR(0.0f, objectZ(ends[0]), 1e-5);
    EXPECT_NEAR(0.5f, objectZ(ends[1]), 1e-5);
    EXPECT_FLOAT_EQ(1.0f, ends[0].colour[0]);
    EXPECT_FLOAT_EQ(1.0f, ends[0].colour[2]);
    float modelview[16] = {};
    glGetFloatv(GL_MODELVIEW_MATRIX, modelview);
    EXPECT_NEAR(-0.1f, modelview[12], 1e-6);
    EXPECT_NEAR(0.2f, modelview[13], 1e-6);
}

TEST_F(O3dDrawing, FaceNormalsOfKidsAddTheirTranslationsToTheParents) {
    std::unique_ptr<O3d> object(makeTriangle(vec3(0, 0, 0), vec3(0.3f, 0, 0), vec3(0, 0.3f, 0)));
    O3d* kid = makeTriangle(vec3(0, 0, 0), vec3(0.3f, 0, 0), vec3(0, 0.3f, 0));
    object->addKid(kid);
    object->setLocation(vec3(0.2f, 0, 0));
    kid->setLocation(vec3(0.2f, 0, 0));
    std::vector<FeedbackPrimitive> lines = feedbackOf([&]() { object->drawNormals(); });
    ASSERT_EQ(2u, lines.size());
    EXPECT_NEAR(0.1f + 0.2f, objectX(lines[0].vertices[0]), 1e-5);
    EXPECT_NEAR(0.1f + 0.4f, objectX(lines[1].vertices[0]), 1e-5);
}

TEST_F(O3dDrawing, BoundingBoxIsFourGreenLoopsThroughTheScaledCorners) {
    O3d object;
    object.setVertices({-0.4f, -0.2f, -0.6f, 0.8f, 0.6f, 0.4f});
    object.setScaleValue(0.5f);
    testing::internal::CaptureStdout();
    object.calculateBBox();
    testing::internal::GetCapturedStdout();
    glEnable(GL_TEXTURE_2D);
    std::vector<FeedbackPrimitive> lines = feedbackOf([&]() { object.drawBBox(); });
    ASSERT_EQ(16u, lines.size());
    const float xs[2] = {-0.2f, 0.4f};
    const float ys[2] = {-0.1f, 0.3f};
    const float zs[2] = {-0.3f, 0.2f};
    for (const FeedbackPrimitive& line : lines) {
        for (const FeedbackVertex& end : line.vertices) {
            float x = objectX(end);
            float y = objectY(end);
            float z = objectZ(end);
            EXPECT_TRUE(std::abs(x - xs[0]) < 1e-5 || std::abs(x - xs[1]) < 1e-5) << x;
            EXPECT_TRUE(std::abs(y - ys[0]) < 1e-5 || std::abs(y - ys[1]) < 1e-5) << y;
            EXPECT_TRUE(std::abs(z - zs[0]) < 1e-5 || std::abs(z - zs[1]) < 1e-5) << z;
            EXPECT_FLOAT_EQ(1.0f, end.colour[1]);
            EXPECT_FLOAT_EQ(0.0f, end.colour[0]);
        }
    }
    // The top loop comes first: all of its corners lie at the top.
    for (int i = 0; i < 4; i++) {
        EXPECT_NEAR(ys[1], objectY(lines[i].vertices[0]), 1e-5);
    }
    EXPECT_TRUE(glIsEnabled(GL_LIGHTING));
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D));
    EXPECT_FALSE(glIsEnabled(GL_COLOR_MATERIAL));
}

TEST_F(O3dDrawing, TrianglesWithoutCornersAreSkippedInEveryDrawing) {
    O3d object;
    object.setVertices({0, 0, 0, 0.5f, 0, 0, 0, 0.5f, 0});
    object.setPolygons({0, 1, 7, 0, 1, 2}, {}, {});
    object.calculateNormals();
    object.calculateVertexNormals();
    crease(object, 10.0f);
    std::vector<FeedbackPrimitive> smooth = feedbackOf([&]() { object.draw(1); });
    std::vector<FeedbackPrimitive> wire = feedbackOf([&]() { object.draw(4); });
    std::vector<FeedbackPrimitive> normals = feedbackOf([&]() {
        glPushMatrix();
        object.drawNormals();
        glPopMatrix();
    });
    std::vector<FeedbackPrimitive> corners =
        feedbackOf([&]() { object.drawVertexNormalsOverride(); });
    EXPECT_EQ(1u, smooth.size());
    EXPECT_EQ(3u, wire.size());
    EXPECT_EQ(1u, normals.size());
    EXPECT_EQ(3u, corners.size());
    EXPECT_EQ(static_cast<GLenum>(GL_NO_ERROR), glGetError());
}
