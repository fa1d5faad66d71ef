#include "objects/O3dScene.h"

#include "ObjectTestSupport.h"
#include "objects/DisplayList.h"
#include "objects/Material.h"
#include "objects/O3d.h"
#include "objects/O3dPolygon.h"
#include "objects/O3dVertex.h"
#include "support/GLTestWindow.h"

#include <gtest/gtest.h>

#include <malloc.h>

#include <memory>
#include <string>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
// The address sanitizer keeps its own heap, which mallinfo2 does not see.
extern "C" size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace {

// Bytes the program holds on the heap right now.
size_t heapInUse() {
#if defined(__SANITIZE_ADDRESS__)
    return __sanitizer_get_current_allocated_bytes();
#else
    struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
#endif
}

// Deletes a scene and swallows its lines.
void dispose(O3dScene* scene) {
    testing::internal::CaptureStdout();
    delete scene;
    testing::internal::GetCapturedStdout();
}

std::string quietly(const std::function<void()>& action) {
    testing::internal::CaptureStdout();
    action();
    return testing::internal::GetCapturedStdout();
}

// An object of two vertices that span the given box.
O3d* makeBoxCorners(Vector<float, 3> min, Vector<float, 3> max) {
    O3d* object = new O3d();
    object->setVertices({min[0], min[1], min[2], max[0], max[1], max[2]});
    return object;
}

void expectVector(Vector<float, 3> expected, const float* actual) {
    for (int i = 0; i < 3; i++) {
        EXPECT_FLOAT_EQ(expected[i], actual[i]) << "element " << i;
    }
}

} // namespace

TEST(O3dScene, StartsEmptyWithScaleOne) {
    O3dScene scene;
    EXPECT_EQ(0, scene.countObjects());
    EXPECT_EQ(0, scene.countMaterials());
    EXPECT_EQ(0, scene.countVertices());
    EXPECT_EQ(0, scene.countPolygons());
    EXPECT_EQ(1.0f, scene.getScaleValue());
    expectVector(vec3(0, 0, 0), scene.getCenterVector().data());
    expectVector(vec3(0, 0, 0), scene.getBBoxMin());
    expectVector(vec3(0, 0, 0), scene.getBBoxMax());
    EXPECT_EQ("O3dScene{ objects in scene = 0  polygons = 0  vertices = 0 }\n", scene.toString());
}

TEST(O3dScene, TextFormCountsObjectsTrianglesAndVertices) {
    O3dScene scene;
    scene.addObject(makeSquare(0.5f));
    scene.addObject(makeTriangle(vec3(0, 0, 0), vec3(1, 0, 0), vec3(0, 1, 0)));
    EXPECT_EQ("O3dScene{ objects in scene = 2  polygons = 3  vertices = 7 }\n", scene.toString());
}

TEST(O3dScene, DestructorNamesTheCountsOfObjectsAndMaterials) {
    O3dScene* scene = new O3dScene();
    scene->addObject(new O3d());
    scene->addObject(new O3d());
    scene->addMaterial(new Material());
    scene->addMaterial(new Material());
    scene->addMaterial(new Material());
    testing::internal::CaptureStdout();
    delete scene;
    EXPECT_EQ(" -> delete 2 root object(s) (with children)\n -> delete 3 material(s)\n",
              testing::internal::GetCapturedStdout());
}

TEST(O3dScene, ARootWithAKidCountsOnlyTheRootsTrianglesWhileScaleAndDeletionReachTheKid) {
    const int kidVertices = 20000;
    O3dScene* scene = new O3dScene();
    O3d* root = makeSquare(0.5f);
    O3d* kid = new O3d();
    kid->setVertices(std::vector<float>(3 * kidVertices, 1.0f));
    kid->setPolygons({0, 1, 2, 3, 4, 5}, {}, {});
    root->addKid(kid);
    scene->addObject(root);

    EXPECT_EQ(2, scene->countPolygons());
    EXPECT_EQ(4, scene->countVertices());
    scene->setScaleValue(0.3f);
    EXPECT_EQ(0.3f, root->getScaleValue());
    EXPECT_EQ(0.3f, kid->getScaleValue());

    testing::internal::CaptureStdout();
    size_t before = heapInUse();
    delete scene;
    size_t after = heapInUse();
    EXPECT_EQ(" -> delete 1 root object(s) (with children)\n -> delete 0 material(s)\n",
              testing::internal::GetCapturedStdout());
    ASSERT_GT(before, after);
    EXPECT_GE(before - after, kidVertices * sizeof(O3dVertex)) << "the kid's vertices are freed";
}

TEST(O3dScene, SetSceneWithItsOwnListLeavesItUnchanged) {
    O3dScene scene;
    O3d* first = makeSquare(0.5f);
    O3d* second = new O3d();
    scene.addObject(first);
    scene.addObject(second);
    std::vector<O3d*> own;
    for (int i = 0; i < scene.countObjects(); i++) {
        own.push_back(scene.getObject(i));
    }
    scene.setScene(own);
    ASSERT_EQ(2, scene.countObjects());
    EXPECT_EQ(first, scene.getObject(0));
    EXPECT_EQ(second, scene.getObject(1));
    EXPECT_EQ(2, scene.countPolygons());
    EXPECT_EQ(2, first->getPolyCount()) << "the objects were not deleted";
}

TEST(O3dScene, SetSceneReplacesTheObjectsWithoutDeletingTheOldOnes) {
    O3dScene* scene = new O3dScene();
    O3d* old = makeSquare(0.5f);
    scene->addObject(old);
    O3d* replacement = makeTriangle(vec3(0, 0, 0), vec3(1, 0, 0), vec3(0, 1, 0));
    scene->setScene({replacement});
    ASSERT_EQ(1, scene->countObjects());
    EXPECT_EQ(replacement, scene->getObject(0));
    dispose(scene);
    EXPECT_EQ(2, old->getPolyCount());
    delete old;
}

TEST(O3dScene, ObjectsAndMaterialsAreKeptInOrder) {
    O3dScene scene;
    O3d* object = new O3d();
    Material* first = new Material();
    Material* second = new Material();
    scene.addObject(object);
    scene.addMaterial(first);
    scene.addMaterial(second);
    EXPECT_EQ(object, scene.getObject(0));
    EXPECT_EQ(first, scene.getMaterial(0));
    EXPECT_EQ(second, scene.getMaterial(1));
}

TEST(O3dScene, ObjectAndMaterialNumbersOutsideTheListsGiveNull) {
    O3dScene scene;
    scene.addObject(new O3d());
    scene.addMaterial(new Material());
    EXPECT_EQ(nullptr, scene.getObject(1));
    EXPECT_EQ(nullptr, scene.getObject(-1));
    EXPECT_EQ(nullptr, scene.getMaterial(1));
    EXPECT_EQ(nullptr, scene.getMaterial(-1));
}

TEST(O3dScene, BoundingBoxWidensOverAllRootObjectsAndIsPrintedAfterTheirs) {
    O3dScene scene;
    scene.addObject(makeBoxCorners(vec3(0, 0, 0), vec3(1, 1, 1)));
    scene.addObject(makeBoxCorners(vec3(-2, 0.5f, 0.5f), vec3(0.5f, 3, 0.5f)));
    std::string log = quietly([&]() { scene.calculateBBox(); });
    EXPECT_EQ("Bounding box :\nMin : [0,0,0]\nMax : [1,1,1]\n"
              "Bounding box :\nMin : [-2,0.5,0.5]\nMax : [0.5,3,0.5]\n"
              "Bounding scene box :\nMin : [-2,0,0]\nMax : [1,3,1]\n",
              log);
    expectVector(vec3(-2, 0, 0), scene.getBBoxMin());
    expectVector(vec3(1, 3, 1), scene.getBBoxMax());
}

TEST(O3dScene, BoundingBoxOfASceneWithoutObjectsStaysAtZero) {
    O3dScene scene;
    std::string log = quietly([&]() { scene.calculateBBox(); });
    EXPECT_EQ("Bounding scene box :\nMin : [0,0,0]\nMax : [0,0,0]\n", log);
}

TEST(O3dScene, CenterSceneOnABoxFromTwoZeroZeroToSixTwoTwoGivesScaleHalfAndTheVectorToTheCentre) {
    O3dScene scene;
    O3d* object = makeBoxCorners(vec3(2, 0, 0), vec3(6, 2, 2));
    scene.addObject(object);
    quietly([&]() { scene.calculateBBox(); });
    std::string log = quietly([&]() { scene.centerScene(); });
    EXPECT_EQ("centerScene()\nScene scale = 0.5\nLocal center = [2,1,1]\n"
              "Vector from Origo = [4,1,1]\n",
              log);
    EXPECT_EQ(0.5f, scene.getScaleValue());
    EXPECT_EQ(0.5f, object->getScaleValue());
    expectVector(vec3(-2, -0.5f, -0.5f), scene.getCenterVector().data());
    // No vertex moves.
    expectVector(vec3(2, 0, 0), object->getVertex(0)->getVertex());
}

TEST(O3dScene, InvertNormalsTwiceRestoresTheNormalsOfEveryRootObject) {
    O3dScene scene;
    O3d* square = makeSquare(0.5f);
    O3d* triangle = makeTriangle(vec3(0, 0, 0), vec3(0, 0, 1), vec3(1, 0, 0));
    scene.addObject(square);
    scene.addObject(triangle);
    scene.invertNormals();
    expectVector(vec3(0, 0, -1), square->getVertex(0)->getNormal());
    EXPECT_FLOAT_EQ(-1.0f, triangle->getPolygon(0)->getNormal()[1]);
    scene.invertNormals();
    expectVector(vec3(0, 0, 1), square->getVertex(0)->getNormal());
    EXPECT_FLOAT_EQ(1.0f, square->getPolygon(1)->getNormal()[2]);
    EXPECT_FLOAT_EQ(1.0f, triangle->getPolygon(0)->getNormal()[1]);
}

TEST(O3dScene, CreaseReachesEveryRootObject) {
    O3dScene scene;
    scene.addObject(makeSquare(0.5f));
    scene.addObject(makeSquare(0.25f));
    std::string log = quietly([&]() { scene.calculateCrease(30.0f); });
    EXPECT_EQ("O3d::calculateCrease(30) - END\nO3d::calculateCrease(30) - END\n", log);
    EXPECT_TRUE(scene.getObject(1)->getPolygon(0)->overrideVertexNormals());
}

class O3dSceneDrawing : public GLTestWindow {
protected:
    void SetUp() override {
        GLTestWindow::SetUp();
        scene = new O3dScene();
        // Two squares in opposite quarters of the window.
        O3d* lower = makeSquareAt(-0.5f, -0.5f, 0.25f);
        O3d* upper = makeSquareAt(0.5f, 0.5f, 0.25f);
        scene->addObject(lower);
        scene->addObject(upper);
        for (O3d* object : {lower, upper}) {
            Material* material = makeMatteMaterial(1.0f, 0.5f, 0.25f);
            scene->addMaterial(material);
            object->setMaterial(material);
        }
        useDiffuseLight(vec3(0, 0, 1));
    }

    void TearDown() override {
        dispose(scene);
        GLTestWindow::TearDown();
    }

    std::vector<Rgb> picture() {
        std::vector<Rgb> pixels;
        for (int y = 0; y < HEIGHT; y++) {
            for (int x = 0; x < WIDTH; x++) {
                pixels.push_back(readRgb(x, y));
            }
        }
        return pixels;
    }

    void clear() {
        glClearColor(0.1f, 0.2f, 0.3f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
    }

    O3dScene* scene = nullptr;
};

TEST_F(O3dSceneDrawing, DrawWithoutAModeOnAFullSceneLeavesThePictureUnchanged) {
    clear();
    std::vector<Rgb> before = picture();
    scene->draw();
    EXPECT_EQ(before, picture());
    scene->draw(1);
    EXPECT_NE(before, picture()) << "mode 1 draws the same scene";
}

TEST_F(O3dSceneDrawing, DrawPassesTheModeToEveryRootObject) {
    std::vector<FeedbackPrimitive> smooth = feedbackOf([&]() { scene->draw(1); });
    std::vector<FeedbackPrimitive> wire = feedbackOf([&]() { scene->draw(4); });
    EXPECT_EQ(4u, smooth.size());
    EXPECT_EQ(12u, wire.size());
}

TEST_F(O3dSceneDrawing, DebugDrawingsPassToEveryRootObject) {
    std::vector<FeedbackPrimitive> wire = feedbackOf([&]() { scene->drawWire(); });
    std::vector<FeedbackPrimitive> vertexNormals =
        feedbackOf([&]() { scene->drawVertexNormals(); });
    std::vector<FeedbackPrimitive> faceNormals = feedbackOf([&]() {
        glPushMatrix();
        scene->drawNormals();
        glPopMatrix();
    });
    quietly([&]() { scene->calculateCrease(0.0f); });
    std::vector<FeedbackPrimitive> corners =
        feedbackOf([&]() { scene->drawVertexNormalsOverride(); });
    EXPECT_EQ(12u, wire.size());
    EXPECT_EQ(8u, vertexNormals.size());
    EXPECT_EQ(4u, faceNormals.size());
    EXPECT_EQ(12u, corners.size());
}

TEST_F(O3dSceneDrawing, BoundingBoxesOfTheObjectsAreGreenAndTheScenesIsRed) {
    quietly([&]() { scene->calculateBBox(); });
    scene->setScaleValue(0.5f);
    std::vector<FeedbackPrimitive> lines = feedbackOf([&]() { scene->drawBBox(); });
    ASSERT_EQ(48u, lines.size());
    for (size_t i = 0; i < lines.size(); i++) {
        const FeedbackVertex& end = lines[i].vertices[0];
        float x = std::abs(objectX(end));
        if (i < 32) {
            EXPECT_FLOAT_EQ(0.0f, end.colour[0]) << "line " << i;
            EXPECT_FLOAT_EQ(1.0f, end.colour[1]) << "line " << i;
            EXPECT_TRUE(std::abs(x - 0.125f) < 1e-5 || std::abs(x - 0.375f) < 1e-5) << x;
        } else {
            EXPECT_FLOAT_EQ(1.0f, end.colour[0]) << "line " << i;
            EXPECT_FLOAT_EQ(0.0f, end.colour[1]) << "line " << i;
            EXPECT_NEAR(0.375f, x, 1e-5) << "line " << i;
        }
    }
}

TEST_F(O3dSceneDrawing, ADisplayListDrawsTheSamePictureAsImmediateDrawing) {
    const unsigned char texels[12] = {255, 0, 0, 0, 255, 0, 0, 0, 255, 255, 255, 255};
    std::unique_ptr<Texture> texture(makeTexture(texels));
    scene->getMaterial(1)->setTexture1(texture.get());
    std::unique_ptr<DisplayList> list(scene->createDisplayList(1));
    clear();
    scene->draw(1);
    std::vector<Rgb> immediate = picture();
    clear();
    list->draw();
    std::vector<Rgb> compiled = picture();
    clear();
    ASSERT_NE(picture(), immediate) << "the scene must show something";
    for (int i = 0; i < WIDTH * HEIGHT; i++) {
        ASSERT_EQ(immediate[i], compiled[i]) << "pixel " << i % WIDTH << ", " << i / WIDTH;
    }
    quietly([&]() { texture.reset(); });
}

TEST_F(O3dSceneDrawing, AWireDisplayListDrawsTheSamePictureAsImmediateWireDrawing) {
    std::unique_ptr<DisplayList> list(scene->createDisplayList(4));
    clear();
    scene->draw(4);
    std::vector<Rgb> immediate = picture();
    clear();
    list->draw();
    EXPECT_EQ(immediate, picture());
    clear();
    EXPECT_NE(immediate, picture());
}
