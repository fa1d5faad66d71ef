#include "objects/DisplayList.h"

#include "ObjectTestSupport.h"
#include "objects/O3dScene.h"
#include "support/GLTestWindow.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

TEST(DisplayList, AnEmptyListHoldsNoNameAndNoSceneAndGoesWithoutGL) {
    DisplayList* list = new DisplayList();
    EXPECT_EQ(0u, list->getId());
    EXPECT_EQ(nullptr, list->getScene());
    delete list;
}

TEST(DisplayList, SceneAndNameCanBeSet) {
    O3dScene scene;
    DisplayList list;
    list.setScene(&scene);
    EXPECT_EQ(&scene, list.getScene());
    DisplayList given(&scene, 0, 4);
    EXPECT_EQ(&scene, given.getScene());
    EXPECT_EQ(4, given.getMode());
    given.setId(0);
    EXPECT_EQ(0u, given.getId());
}

class DisplayListDrawing : public GLTestWindow {
protected:
    void SetUp() override {
        GLTestWindow::SetUp();
        scene = new O3dScene();
        O3d* square = makeSquare(0.5f);
        Material* material = makeMatteMaterial(0.25f, 0.5f, 1.0f);
        scene->addMaterial(material);
        square->setMaterial(material);
        scene->addObject(square);
        useDiffuseLight(vec3(0, 0, 1));
    }

    void TearDown() override {
        testing::internal::CaptureStdout();
        delete scene;
        testing::internal::GetCapturedStdout();
        GLTestWindow::TearDown();
    }

    Rgb drawnCentre(const DisplayList& list) {
        glClear(GL_COLOR_BUFFER_BIT);
        list.draw();
        return readRgb(32, 40);
    }

    O3dScene* scene = nullptr;
};

TEST_F(DisplayListDrawing, CreateDisplayListGivesAGLListThatKnowsItsSceneAndMode) {
    std::unique_ptr<DisplayList> list(scene->createDisplayList(1));
    ASSERT_NE(nullptr, list);
    EXPECT_NE(0u, list->getId());
    EXPECT_TRUE(glIsList(list->getId()));
    EXPECT_EQ(scene, list->getScene());
    EXPECT_EQ(1, list->getMode());
}

TEST_F(DisplayListDrawing, EachListGetsANameOfItsOwn) {
    std::unique_ptr<DisplayList> first(scene->createDisplayList(1));
    std::unique_ptr<DisplayList> second(scene->createDisplayList(4));
    EXPECT_NE(first->getId(), second->getId());
}

TEST_F(DisplayListDrawing, DeletingTheListFreesTheGLNameAndLeavesTheScene) {
    DisplayList* list = scene->createDisplayList(1);
    unsigned int id = list->getId();
    delete list;
    EXPECT_FALSE(glIsList(id));
    EXPECT_EQ(1, scene->countObjects());
    EXPECT_EQ(2, scene->countPolygons());
}

TEST_F(DisplayListDrawing, AListKeepsTheScaleAndMaterialOfTheMomentItWasCompiled) {
    std::unique_ptr<DisplayList> list(scene->createDisplayList(1));
    Rgb compiled = drawnCentre(*list);
    ASSERT_NE(Rgb({0, 0, 0}), compiled);
    scene->setScaleValue(0.1f);
    scene->getMaterial(0)->setDiffuse(1.0f, 0.0f, 0.0f);
    EXPECT_EQ(compiled, drawnCentre(*list));
    glClear(GL_COLOR_BUFFER_BIT);
    scene->draw(1);
    EXPECT_EQ(Rgb({0, 0, 0}), readRgb(32, 40)) << "drawn now, the square is smaller";
}

TEST_F(DisplayListDrawing, AListCompiledWithAModeThatDrawsNothingDrawsNothing) {
    std::unique_ptr<DisplayList> list(scene->createDisplayList(-1));
    EXPECT_EQ(Rgb({0, 0, 0}), drawnCentre(*list));
    EXPECT_TRUE(glIsList(list->getId()));
}
