#include "effects/DisplayObjectEffect.h"

#include "ProductionDefinition.h"
#include "TimelineCall.h"
#include "objects/DisplayList.h"
#include "objects/O3dScene.h"
#include "objects/ObjectTestSupport.h"
#include "runtime/Data.h"
#include "runtime/DataObjectPool.h"
#include "runtime/KVLDemosys.h"
#include "script/ParameterGroup.h"
#include "support/GLTestWindow.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

// The object viewer is checked through its fields with a clock fed by hand,
// the way ActionPool feeds it (draw, then setLastCalled), and on the screen
// under the player's own perspective projection.

namespace {

// What the script parser puts into every DisplayObject block before the
// script's own values.
const ProductionDefinition DEFINITION("DisplayObject");

// The divisor of the angle step, taken from its bit pattern.
float divisorFromBits() {
    const unsigned int bits = 0x4031C71Cu;
    float divisor;
    std::memcpy(&divisor, &bits, sizeof divisor);
    return divisor;
}

// A script block: the definition's defaults, some replaced, some left out.
std::unique_ptr<ParameterGroup> block(const std::map<std::string, std::string>& values,
                                      const std::set<std::string>& leftOut = {}) {
    std::unique_ptr<ParameterGroup> defaults = DEFINITION.defaults();
    std::unique_ptr<ParameterGroup> group(new ParameterGroup("viewer"));
    if (defaults == nullptr) {
        ADD_FAILURE() << "no definition " << DEFINITION.getPath();
        return group;
    }
    for (int i = 0; i < defaults->size(); i++) {
        if (leftOut.count(defaults->getKey(i)) == 0) {
            group->addParameter(defaults->getKey(i), defaults->getValue(i));
        }
    }
    for (const auto& entry : values) {
        group->addParameter(entry.first, entry.second);
    }
    return group;
}

// The arguments of a timeline call: "p1" is the event's own time.
ParameterGroup call(const std::string& method, std::initializer_list<const char*> arguments,
                    const std::string& time = "00:01:000") {
    return timelineCall("viewer", method, time, arguments);
}

std::string modifyAndCapture(Effect& effect, const std::string& method, ParameterGroup group) {
    testing::internal::CaptureStdout();
    effect.modify(method, &group);
    return testing::internal::GetCapturedStdout();
}

} // namespace

// ---------------------------------------------------------------- template

TEST(DisplayObjectEffect, ConstructorPrintsItsNameAndHoldsNoListAndNoScene) {
    testing::internal::CaptureStdout();
    DisplayObjectEffect viewer;
    EXPECT_EQ("DisplayObjectEffect()\n", testing::internal::GetCapturedStdout());
    EXPECT_EQ(nullptr, viewer.getDisplayList());
    EXPECT_EQ(nullptr, viewer.getScene());
}

TEST(DisplayObjectEffect, GetInstanceMakesANewViewerThatPrintsItsNameToo) {
    testing::internal::CaptureStdout();
    DisplayObjectEffect viewer;
    std::unique_ptr<Effect> instance(viewer.getInstance());
    EXPECT_EQ("DisplayObjectEffect()\nDisplayObjectEffect()\n",
              testing::internal::GetCapturedStdout());
    EXPECT_NE(nullptr, dynamic_cast<DisplayObjectEffect*>(instance.get()));
    EXPECT_NE(&viewer, instance.get());
}

TEST(DisplayObjectEffect, NewViewerStandsStillAtTheOriginWithScaleOneAndNoMove) {
    testing::internal::CaptureStdout();
    DisplayObjectEffect viewer;
    testing::internal::GetCapturedStdout();
    for (int i = 0; i < 3; i++) {
        EXPECT_EQ(0.0f, viewer.getPosition()[i]);
        EXPECT_EQ(0.0f, viewer.getRotationAngle()[i]);
        EXPECT_EQ(0.0f, viewer.getRotationSpeed()[i]);
        EXPECT_EQ(0.0f, viewer.getRotationCenter()[i]);
    }
    EXPECT_EQ(1.0f, viewer.getScale());
    EXPECT_EQ(1.0f, viewer.getMoveProgress());
    EXPECT_EQ(0, viewer.getShading());
    EXPECT_TRUE(viewer.areNormalsForward());
    EXPECT_FALSE(viewer.isDrawingNormals());
}

TEST(DisplayObjectEffect, DefinitionDeclaresEveryKeyThatInitReads) {
    std::unique_ptr<ParameterGroup> defaults = DEFINITION.defaults();
    ASSERT_NE(nullptr, defaults);
    for (const char* key : {"xpos", "ypos", "zpos", "xrot", "yrot", "zrot", "rcx", "rcy", "rcz",
                            "object", "shading", "scale", "normals", "drawnormals"}) {
        EXPECT_TRUE(defaults->exist(key)) << key;
    }
}

TEST(DisplayObjectEffect, DefinitionDeclaresTheSixMethodsWithTheirArguments) {
    DEFINITION.expectMethods({{"setScaleValue", {"<event>", "<float>"}},
                              {"drawNormals", {"<event>", "<string>"}},
                              {"setObject", {"<event>", "<string>"}},
                              {"setRotation", {"<event>", "<float>", "<float>", "<float>"}},
                              {"setPosition", {"<event>", "<float>", "<float>", "<float>"}},
                              {"moveTo", {"<event>", "<time>", "<float>", "<float>", "<float>"}}});
}

// ---------------------------------------------------------------- step rule

TEST(DisplayObjectEffect, StepIsTheFrameTimeOverTheFloatWithBits4031C71C) {
    float divisor = divisorFromBits();
    EXPECT_NEAR(2.7777777, divisor, 1e-6);
    EXPECT_EQ(0.0f, DisplayObjectEffect::stepOf(0));
    EXPECT_EQ(1.0f / divisor, DisplayObjectEffect::stepOf(1));
    EXPECT_EQ(10.0f / divisor, DisplayObjectEffect::stepOf(10));
    EXPECT_EQ(13.0f / divisor, DisplayObjectEffect::stepOf(13));
}

TEST(DisplayObjectEffect, StepAboveFiveIsCutToFive) {
    ASSERT_GT(14.0f / divisorFromBits(), 5.0f);
    EXPECT_EQ(5.0f, DisplayObjectEffect::stepOf(14));
    EXPECT_EQ(5.0f, DisplayObjectEffect::stepOf(1000));
    EXPECT_EQ(5.0f, DisplayObjectEffect::stepOf(0xFFFFFFFFu));
}

// ---------------------------------------------------------------- modify without GL

class DisplayObjectOrders : public ::testing::Test {
protected:
    void SetUp() override {
        testing::internal::CaptureStdout();
        viewer.reset(new DisplayObjectEffect());
        testing::internal::GetCapturedStdout();
    }

    std::unique_ptr<DisplayObjectEffect> viewer;
};

TEST_F(DisplayObjectOrders, SetRotationSetsTheSpeedsAndPrintsThem) {
    std::string printed =
        modifyAndCapture(*viewer, "setRotation", call("setRotation", {"0.5", "-2", "1.25"}));
    EXPECT_EQ("setRotation(0.5,-2,1.25)\n", printed);
    EXPECT_EQ(0.5f, viewer->getRotationSpeed()[0]);
    EXPECT_EQ(-2.0f, viewer->getRotationSpeed()[1]);
    EXPECT_EQ(1.25f, viewer->getRotationSpeed()[2]);
}

TEST_F(DisplayObjectOrders, SetPositionMovesTheObjectAtOnce) {
    EXPECT_EQ("",
              modifyAndCapture(*viewer, "setPosition", call("setPosition", {"1.5", "-2", "-7"})));
    EXPECT_EQ(1.5f, viewer->getPosition()[0]);
    EXPECT_EQ(-2.0f, viewer->getPosition()[1]);
    EXPECT_EQ(-7.0f, viewer->getPosition()[2]);
}

TEST_F(DisplayObjectOrders, DrawNormalsTakesOnlyTheWordTrue) {
    modifyAndCapture(*viewer, "drawNormals", call("drawNormals", {"true"}));
    EXPECT_TRUE(viewer->isDrawingNormals());
    modifyAndCapture(*viewer, "drawNormals", call("drawNormals", {"1"}));
    EXPECT_FALSE(viewer->isDrawingNormals());
    modifyAndCapture(*viewer, "drawNormals", call("drawNormals", {"true"}));
    modifyAndCapture(*viewer, "drawNormals", call("drawNormals", {"TRUE"}));
    EXPECT_FALSE(viewer->isDrawingNormals());
}

TEST_F(DisplayObjectOrders, SetScaleValueWithoutASceneKeepsTheScale) {
    modifyAndCapture(*viewer, "setScaleValue", call("setScaleValue", {"2.5"}));
    EXPECT_EQ(2.5f, viewer->getScale());
}

TEST_F(DisplayObjectOrders, MoveToStartsAMoveButDoesNotMoveTheObjectYet) {
    modifyAndCapture(*viewer, "setPosition", call("setPosition", {"1", "2", "3"}));
    modifyAndCapture(*viewer, "moveTo", call("moveTo", {"00:02:000", "4", "5", "6"}));
    EXPECT_EQ(0.0f, viewer->getMoveProgress());
    EXPECT_EQ(1.0f, viewer->getPosition()[0]);
    EXPECT_EQ(2.0f, viewer->getPosition()[1]);
    EXPECT_EQ(3.0f, viewer->getPosition()[2]);
}

TEST_F(DisplayObjectOrders, UnknownMethodIsIgnoredInSilence) {
    modifyAndCapture(*viewer, "setRotation", call("setRotation", {"1", "2", "3"}));
    EXPECT_EQ("", modifyAndCapture(*viewer, "spin", call("spin", {"9", "9", "9"})));
    EXPECT_EQ("", modifyAndCapture(*viewer, "setrotation", call("setrotation", {"9", "9", "9"})));
    EXPECT_EQ(1.0f, viewer->getRotationSpeed()[0]);
    EXPECT_EQ(1.0f, viewer->getMoveProgress());
    EXPECT_FALSE(viewer->isDrawingNormals());
}

TEST_F(DisplayObjectOrders, InterpolateLinearPlacesTheObjectBetweenTwoPoints) {
    viewer->interpolateLinear(0, 2, -4, 4, 6, -8, 0.25f);
    EXPECT_EQ(1.0f, viewer->getPosition()[0]);
    EXPECT_EQ(3.0f, viewer->getPosition()[1]);
    EXPECT_EQ(-5.0f, viewer->getPosition()[2]);
    EXPECT_EQ(1.0f, viewer->getMoveProgress());
}

TEST_F(DisplayObjectOrders, InterpolateLinearBeyondOneEndsTheMoveOnTheEndPoint) {
    modifyAndCapture(*viewer, "moveTo", call("moveTo", {"00:02:000", "4", "5", "6"}));
    viewer->interpolateLinear(0, 0, 0, 4, 6, -8, 0.5f);
    EXPECT_EQ(0.0f, viewer->getMoveProgress()) << "a progress up to 1 leaves the move running";
    viewer->interpolateLinear(0, 0, 0, 4, 6, -8, 3.0f);
    EXPECT_EQ(1.0f, viewer->getMoveProgress());
    EXPECT_EQ(4.0f, viewer->getPosition()[0]);
    EXPECT_EQ(6.0f, viewer->getPosition()[1]);
    EXPECT_EQ(-8.0f, viewer->getPosition()[2]);
}

TEST_F(DisplayObjectOrders, InterpolateLinearBelowZeroReachesBackPastTheStart) {
    viewer->interpolateLinear(1, 1, 1, 3, 5, 9, -0.5f);
    EXPECT_EQ(0.0f, viewer->getPosition()[0]);
    EXPECT_EQ(-1.0f, viewer->getPosition()[1]);
    EXPECT_EQ(-3.0f, viewer->getPosition()[2]);
}

// ---------------------------------------------------------------- with GL and pools

class DisplayObjectScene : public GLTestWindow {
protected:
    void SetUp() override {
        GLTestWindow::SetUp();
        KVLDemosys::data = new Data();
        KVLDemosys::objectPool = new DataObjectPool();
        KVLDemosys::data->addData("objectPool", KVLDemosys::objectPool);
        // The player's own projection for the 64 x 64 window: near 1, far 80.
        KVLDemosys::setView();
        glLoadIdentity();
        useDiffuseLight(vec3(0, 0, 1));
        glClearColor(0, 0, 0, 0);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    }

    void TearDown() override {
        testing::internal::CaptureStdout();
        viewers.clear();
        delete KVLDemosys::data;
        testing::internal::GetCapturedStdout();
        KVLDemosys::data = nullptr;
        KVLDemosys::objectPool = nullptr;
        GLTestWindow::TearDown();
    }

    // A red square facing the viewer, half as wide as `half` says, centred
    // at (x, y) in the object's own coordinates.
    O3dScene* addSquare(const std::string& name, float x, float y, float half, float r = 1.0f,
                        float g = 0.0f, float b = 0.0f) {
        O3dScene* scene = new O3dScene();
        O3d* square = makeSquareAt(x, y, half);
        Material* material = makeMatteMaterial(r, g, b);
        scene->addMaterial(material);
        square->setMaterial(material);
        scene->addObject(square);
        KVLDemosys::objectPool->addObject(name, scene);
        return scene;
    }

    DisplayObjectEffect* make(const std::map<std::string, std::string>& values,
                              const std::set<std::string>& leftOut = {}) {
        blocks.push_back(block(values, leftOut));
        testing::internal::CaptureStdout();
        DisplayObjectEffect* viewer = new DisplayObjectEffect();
        viewer->setParameters(blocks.back().get());
        viewer->init();
        initOutput = testing::internal::GetCapturedStdout();
        viewers.emplace_back(viewer);
        return viewer;
    }

    // One frame as the action pool runs it.
    void frame(DisplayObjectEffect* viewer, unsigned int ticks) {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        viewer->draw(ticks);
        viewer->setLastCalled(ticks);
    }

    void order(DisplayObjectEffect* viewer, const std::string& method,
               std::initializer_list<const char*> arguments, unsigned int ticks = 1000) {
        viewer->setModifyTime(ticks);
        lastOutput = modifyAndCapture(*viewer, method, call(method, arguments));
    }

    static bool isRed(const Rgb& pixel) { return pixel[0] >= 250 && pixel[1] < 5 && pixel[2] < 5; }

    // Pixels of the columns from `left` up to `right` whose three values lie
    // within 1 of `colour`.
    static int countPixels(const Rgb& colour, int left = 0, int right = WIDTH) {
        std::vector<uint8_t> pixels(WIDTH * HEIGHT * 3);
        glFinish();
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glReadBuffer(GL_BACK);
        glReadPixels(0, 0, WIDTH, HEIGHT, GL_RGB, GL_UNSIGNED_BYTE, pixels.data());
        int count = 0;
        for (size_t i = 0; i < pixels.size(); i += 3) {
            int x = static_cast<int>((i / 3) % WIDTH);
            bool same = x >= left && x < right;
            for (int c = 0; c < 3; c++) {
                same = same && std::abs(int(pixels[i + c]) - int(colour[c])) <= 1;
            }
            count += same ? 1 : 0;
        }
        return count;
    }

    std::vector<std::unique_ptr<ParameterGroup>> blocks;
    std::vector<std::unique_ptr<DisplayObjectEffect>> viewers;
    std::string initOutput;
    std::string lastOutput;
};

const GLTestWindow::Rgb WHITE = {255, 255, 255};
const GLTestWindow::Rgb BLACK = {0, 0, 0};
// The colour of the wire frame overlay, 0.7 grey.
const GLTestWindow::Rgb WIRE_GREY = {178, 178, 178};

// ---------------------------------------------------------------- init

TEST_F(DisplayObjectScene, InitReadsPositionSpeedsAndCentreOfTheBlock) {
    addSquare("cube", 0, 0, 0.5f);
    DisplayObjectEffect* viewer = make({{"object", "cube"},
                                        {"xpos", "1.5"},
                                        {"ypos", "-2"},
                                        {"zpos", "-12"},
                                        {"xrot", "0.25"},
                                        {"yrot", "-0.5"},
                                        {"zrot", "3"},
                                        {"rcx", "7"},
                                        {"rcy", "8"},
                                        {"rcz", "-9"}});
    EXPECT_EQ(1.5f, viewer->getPosition()[0]);
    EXPECT_EQ(-2.0f, viewer->getPosition()[1]);
    EXPECT_EQ(-12.0f, viewer->getPosition()[2]);
    EXPECT_EQ(0.25f, viewer->getRotationSpeed()[0]);
    EXPECT_EQ(-0.5f, viewer->getRotationSpeed()[1]);
    EXPECT_EQ(3.0f, viewer->getRotationSpeed()[2]);
    EXPECT_EQ(7.0f, viewer->getRotationCenter()[0]);
    EXPECT_EQ(8.0f, viewer->getRotationCenter()[1]);
    EXPECT_EQ(-9.0f, viewer->getRotationCenter()[2]);
    EXPECT_EQ(KVLDemosys::objectPool->getObject("cube"), viewer->getScene());
}

TEST_F(DisplayObjectScene, ShadingWordsGiveTheirCodesAndAnyOtherWordGivesFour) {
    addSquare("cube", 0, 0, 0.5f);
    const std::map<std::string, int> codes = {
        {"smooth", 1},  {"smoothsphere", 2}, {"wire", 4}, {"flatsphere", 6}, {"flat", 0},
        {"cartoon", 7}, {"Smooth", 4},       {"", 4},     {"gouraud", 4}};
    for (const auto& code : codes) {
        DisplayObjectEffect* viewer = make({{"object", "cube"}, {"shading", code.first}});
        EXPECT_EQ(code.second, viewer->getShading()) << "'" << code.first << "'";
    }
}

TEST_F(DisplayObjectScene, DisplayListIsCompiledSmoothWhateverTheShadingSays) {
    O3dScene* cube = addSquare("cube", 0, 0, 0.5f);
    DisplayObjectEffect* viewer = make(
        {{"object", "cube"}, {"shading", "wire"}, {"xpos", "1"}, {"ypos", "1"}, {"zpos", "-5"}});
    ASSERT_NE(nullptr, viewer->getDisplayList());
    EXPECT_EQ(1, viewer->getDisplayList()->getMode());
    EXPECT_EQ(cube, viewer->getDisplayList()->getScene());
    EXPECT_TRUE(glIsList(viewer->getDisplayList()->getId()));
    frame(viewer, 0);
    // The middle of a face is filled, not only its edges.
    EXPECT_TRUE(isRed(readRgb(48, 40))) << pixelText(readRgb(48, 40));
}

TEST_F(DisplayObjectScene, ScaleInTheBlockGoesToTheScene) {
    O3dScene* cube = addSquare("cube", 0, 0, 0.5f);
    DisplayObjectEffect* viewer = make({{"object", "cube"}, {"scale", "0.5"}});
    EXPECT_EQ(0.5f, viewer->getScale());
    EXPECT_EQ(0.5f, cube->getScaleValue());
}

TEST_F(DisplayObjectScene, BlockWithoutScaleLeavesTheScenesScale) {
    O3dScene* cube = addSquare("cube", 0, 0, 0.5f);
    cube->setScaleValue(3.0f);
    DisplayObjectEffect* viewer = make({{"object", "cube"}}, {"scale"});
    EXPECT_EQ(1.0f, viewer->getScale());
    EXPECT_EQ(3.0f, cube->getScaleValue());
}

TEST_F(DisplayObjectScene, NormalsReverseTurnsTheScenesNormalsAround) {
    O3dScene* cube = addSquare("cube", 0, 0, 0.5f);
    DisplayObjectEffect* viewer = make({{"object", "cube"}, {"normals", "reverse"}});
    EXPECT_FALSE(viewer->areNormalsForward());
    EXPECT_EQ(-1.0f, cube->getObject(0)->getVertex(0)->getNormal()[2]);
    EXPECT_EQ(-1.0f, cube->getObject(0)->getPolygon(0)->getNormal()[2]);
}

TEST_F(DisplayObjectScene, ReversedNormalsTurnTheLitSideDark) {
    addSquare("cube", 0, 0, 0.5f);
    DisplayObjectEffect* viewer = make(
        {{"object", "cube"}, {"normals", "reverse"}, {"xpos", "1"}, {"ypos", "1"}, {"zpos", "-5"}});
    frame(viewer, 0);
    EXPECT_EQ(BLACK, readRgb(48, 40));
}

TEST_F(DisplayObjectScene, AnyOtherNormalsWordKeepsTheNormalsAsTheyAre) {
    O3dScene* cube = addSquare("cube", 0, 0, 0.5f);
    for (const char* word : {"forward", "Reverse", "inverted"}) {
        DisplayObjectEffect* viewer = make({{"object", "cube"}, {"normals", word}});
        EXPECT_TRUE(viewer->areNormalsForward()) << word;
        EXPECT_EQ(1.0f, cube->getObject(0)->getVertex(0)->getNormal()[2]) << word;
    }
    DisplayObjectEffect* without = make({{"object", "cube"}}, {"normals"});
    EXPECT_TRUE(without->areNormalsForward());
}

TEST_F(DisplayObjectScene, DrawnormalsOneOrTrueTurnsTheOverlayOnAndAnythingElseOff) {
    addSquare("cube", 0, 0, 0.5f);
    const std::map<std::string, bool> words = {{"1", true},      {"true", true}, {"0", false},
                                               {"false", false}, {"yes", false}, {"TRUE", false}};
    for (const auto& word : words) {
        DisplayObjectEffect* viewer = make({{"object", "cube"}, {"drawnormals", word.first}});
        EXPECT_EQ(word.second, viewer->isDrawingNormals()) << word.first;
    }
    EXPECT_FALSE(make({{"object", "cube"}}, {"drawnormals"})->isDrawingNormals());
}

TEST_F(DisplayObjectScene, ObjectMissingFromThePoolGivesNoSceneAndNoListButTheAxesStillShow) {
    DisplayObjectEffect* viewer = make(
        {{"object", "nothing"}, {"xpos", "1.4453125"}, {"ypos", "-0.8984375"}, {"zpos", "-5"}});
    EXPECT_EQ(nullptr, viewer->getScene());
    EXPECT_EQ(nullptr, viewer->getDisplayList());
    frame(viewer, 0);
    EXPECT_EQ(WHITE, readRgb(10, 20));
    EXPECT_EQ(WHITE, readRgb(50, 5));
}

TEST_F(DisplayObjectScene, InitStartsFromResetSoASecondInitForgetsTheTurnSoFar) {
    addSquare("cube", 0, 0, 0.5f);
    DisplayObjectEffect* viewer = make({{"object", "cube"}, {"zrot", "1"}});
    frame(viewer, 5000);
    frame(viewer, 5010);
    ASSERT_NE(0.0f, viewer->getRotationAngle()[2]);
    testing::internal::CaptureStdout();
    viewer->init();
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(0.0f, viewer->getRotationAngle()[2]);
    ASSERT_NE(nullptr, viewer->getDisplayList());
    frame(viewer, 5020);
    EXPECT_EQ(5.0f, viewer->getRotationAngle()[2]) << "the clock of the last draw is forgotten too";
}

TEST_F(DisplayObjectScene, ResetAfterInitWipesThePositionAndSpeedsThatTheScriptGave) {
    O3dScene* cube = addSquare("cube", 0, 0, 0.5f);
    DisplayObjectEffect* viewer = make({{"object", "cube"},
                                        {"xpos", "2"},
                                        {"zpos", "-6"},
                                        {"yrot", "0.5"},
                                        {"rcx", "1"},
                                        {"scale", "2"},
                                        {"shading", "wire"},
                                        {"drawnormals", "1"}});
    DisplayList* list = viewer->getDisplayList();
    viewer->reset();
    for (int i = 0; i < 3; i++) {
        EXPECT_EQ(0.0f, viewer->getPosition()[i]);
        EXPECT_EQ(0.0f, viewer->getRotationSpeed()[i]);
        EXPECT_EQ(0.0f, viewer->getRotationCenter()[i]);
    }
    EXPECT_EQ(1.0f, viewer->getScale());
    EXPECT_EQ(0, viewer->getShading());
    EXPECT_FALSE(viewer->isDrawingNormals());
    EXPECT_EQ(cube, viewer->getScene());
    EXPECT_EQ(list, viewer->getDisplayList());
}

TEST_F(DisplayObjectScene, ResetEndsARunningMove) {
    addSquare("cube", 0, 0, 0.5f);
    DisplayObjectEffect* viewer = make({{"object", "cube"}, {"xpos", "2"}});
    order(viewer, "moveTo", {"00:02:000", "4", "0", "0"}, 1000);
    frame(viewer, 1500);
    frame(viewer, 1500);
    ASSERT_EQ(3.0f, viewer->getPosition()[0]);
    viewer->reset();
    EXPECT_EQ(1.0f, viewer->getMoveProgress());
    frame(viewer, 1800);
    EXPECT_EQ(0.0f, viewer->getPosition()[0]);
}

// ---------------------------------------------------------------- turning

TEST_F(DisplayObjectScene, FirstFrameAfterResetTakesAStepOfExactlyFive) {
    DisplayObjectEffect* viewer =
        make({{"object", "none"}, {"xrot", "1"}, {"yrot", "2"}, {"zrot", "-3"}});
    frame(viewer, 99990);
    viewer->reset();
    // reset() wiped the speeds: give them again.
    order(viewer, "setRotation", {"1", "2", "-3"});
    frame(viewer, 100000);
    EXPECT_EQ(5.0f, viewer->getRotationAngle()[0]);
    EXPECT_EQ(10.0f, viewer->getRotationAngle()[1]);
    EXPECT_EQ(-15.0f, viewer->getRotationAngle()[2]);
}

TEST_F(DisplayObjectScene, FrameOfTenMillisecondsTurnsBySpeedTimesTenOverTheDivisor) {
    DisplayObjectEffect* viewer = make({{"object", "none"}, {"yrot", "2"}});
    frame(viewer, 60000);
    ASSERT_EQ(10.0f, viewer->getRotationAngle()[1]);
    frame(viewer, 60010);
    EXPECT_EQ(10.0f + 2.0f * (10.0f / divisorFromBits()), viewer->getRotationAngle()[1]);
}

TEST_F(DisplayObjectScene, FramesLongerThanThirteenMillisecondsTurnFiveDegreesAtSpeedOne) {
    DisplayObjectEffect* viewer = make({{"object", "none"}, {"yrot", "1"}});
    frame(viewer, 60000);
    frame(viewer, 60013);
    float afterThirteen = viewer->getRotationAngle()[1];
    EXPECT_FLOAT_EQ(5.0f + 13.0f / divisorFromBits(), afterThirteen);
    frame(viewer, 60027);
    EXPECT_EQ(afterThirteen + 5.0f, viewer->getRotationAngle()[1]);
    frame(viewer, 61027);
    EXPECT_EQ(afterThirteen + 10.0f, viewer->getRotationAngle()[1]);
}

TEST_F(DisplayObjectScene, StoppedClockTurnsNothing) {
    DisplayObjectEffect* viewer = make({{"object", "none"}, {"xrot", "1"}, {"zrot", "1"}});
    frame(viewer, 60000);
    frame(viewer, 60000);
    frame(viewer, 60000);
    EXPECT_EQ(5.0f, viewer->getRotationAngle()[0]);
    EXPECT_EQ(5.0f, viewer->getRotationAngle()[2]);
}

TEST_F(DisplayObjectScene, ClockThatMovesBackTakesAFullStep) {
    DisplayObjectEffect* viewer = make({{"object", "none"}, {"zrot", "1"}});
    frame(viewer, 60000);
    frame(viewer, 59000);
    EXPECT_EQ(10.0f, viewer->getRotationAngle()[2]);
}

TEST_F(DisplayObjectScene, XAngleWrapsBy359WhileYAndZGrowWithoutBound) {
    DisplayObjectEffect* viewer =
        make({{"object", "none"}, {"xrot", "72"}, {"yrot", "72"}, {"zrot", "72"}});
    frame(viewer, 60000);
    EXPECT_EQ(360.0f - 359.0f, viewer->getRotationAngle()[0]);
    EXPECT_EQ(360.0f, viewer->getRotationAngle()[1]);
    EXPECT_EQ(360.0f, viewer->getRotationAngle()[2]);
    order(viewer, "setRotation", {"200", "200", "200"});
    frame(viewer, 61000);
    EXPECT_EQ(1.0f + 1000.0f - 2 * 359.0f, viewer->getRotationAngle()[0]);
    EXPECT_EQ(1360.0f, viewer->getRotationAngle()[1]);
    EXPECT_EQ(1360.0f, viewer->getRotationAngle()[2]);
}

TEST_F(DisplayObjectScene, XAngleOfExactly359WrapsToZero) {
    DisplayObjectEffect* viewer = make({{"object", "none"}, {"xrot", "71.75"}});
    frame(viewer, 60000);
    ASSERT_EQ(358.75f, viewer->getRotationAngle()[0]);
    order(viewer, "setRotation", {"0.05", "0", "0"});
    ASSERT_EQ(0.25f, 0.05f * 5.0f);
    frame(viewer, 61000);
    EXPECT_EQ(0.0f, viewer->getRotationAngle()[0]);
}

TEST_F(DisplayObjectScene, NegativeXSpeedRunsTheXAngleBelowZeroWithoutWrap) {
    DisplayObjectEffect* viewer = make({{"object", "none"}, {"xrot", "-100"}});
    frame(viewer, 60000);
    EXPECT_EQ(-500.0f, viewer->getRotationAngle()[0]);
    frame(viewer, 61000);
    EXPECT_EQ(-1000.0f, viewer->getRotationAngle()[0]);
}

TEST_F(DisplayObjectScene, SetRotationKeepsTheAnglesReached) {
    DisplayObjectEffect* viewer = make({{"object", "none"}, {"yrot", "2"}});
    frame(viewer, 60000);
    order(viewer, "setRotation", {"0", "0", "0"});
    EXPECT_EQ("setRotation(0,0,0)\n", lastOutput);
    frame(viewer, 61000);
    EXPECT_EQ(10.0f, viewer->getRotationAngle()[1]);
}

// ---------------------------------------------------------------- moving

TEST_F(DisplayObjectScene, MoveLagsOneFrameBehindItsProgress) {
    DisplayObjectEffect* viewer = make({{"object", "none"}, {"xpos", "0"}, {"zpos", "-10"}});
    order(viewer, "moveTo", {"00:03:000", "4", "2", "-20"}, 1000);
    frame(viewer, 1000);
    EXPECT_EQ(0.0f, viewer->getPosition()[0]);
    EXPECT_EQ(0.0f, viewer->getMoveProgress());
    frame(viewer, 2000);
    EXPECT_EQ(0.0f, viewer->getPosition()[0]) << "drawn with the progress of the frame before";
    EXPECT_EQ(0.5f, viewer->getMoveProgress());
    frame(viewer, 2500);
    EXPECT_EQ(2.0f, viewer->getPosition()[0]);
    EXPECT_EQ(1.0f, viewer->getPosition()[1]);
    EXPECT_EQ(-15.0f, viewer->getPosition()[2]);
    EXPECT_EQ(0.75f, viewer->getMoveProgress());
    frame(viewer, 3100);
    EXPECT_EQ(3.0f, viewer->getPosition()[0]);
    EXPECT_GT(viewer->getMoveProgress(), 1.0f);
    frame(viewer, 3116);
    EXPECT_EQ(4.0f, viewer->getPosition()[0]);
    EXPECT_EQ(2.0f, viewer->getPosition()[1]);
    EXPECT_EQ(-20.0f, viewer->getPosition()[2]);
}

TEST_F(DisplayObjectScene, MoveToWithATimeAlreadyPastFinishesInTwoFrames) {
    DisplayObjectEffect* viewer = make({{"object", "none"}, {"xpos", "1"}, {"zpos", "-10"}});
    order(viewer, "moveTo", {"00:01:200", "5", "3", "-2"}, 1000);
    frame(viewer, 9000);
    EXPECT_EQ(1.0f, viewer->getPosition()[0]);
    EXPECT_GT(viewer->getMoveProgress(), 1.0f);
    frame(viewer, 9016);
    EXPECT_EQ(5.0f, viewer->getPosition()[0]);
    EXPECT_EQ(3.0f, viewer->getPosition()[1]);
    EXPECT_EQ(-2.0f, viewer->getPosition()[2]);
    frame(viewer, 9032);
    EXPECT_EQ(5.0f, viewer->getPosition()[0]) << "later frames stay on the target";
}

TEST_F(DisplayObjectScene, FrameExactlyAtTheEndOfAMoveStopsItAtThePlaceOfTheFrameBefore) {
    DisplayObjectEffect* viewer = make({{"object", "none"}, {"xpos", "0"}});
    order(viewer, "moveTo", {"00:03:000", "8", "0", "0"}, 1000);
    frame(viewer, 1000);
    frame(viewer, 2000);
    frame(viewer, 3000);
    EXPECT_EQ(1.0f, viewer->getMoveProgress());
    EXPECT_EQ(4.0f, viewer->getPosition()[0]);
    frame(viewer, 3016);
    EXPECT_EQ(4.0f, viewer->getPosition()[0]);
}

TEST_F(DisplayObjectScene, MoveRunsFromWhereTheObjectIsWhenOrdered) {
    DisplayObjectEffect* viewer = make({{"object", "none"}, {"xpos", "0"}, {"ypos", "0"}});
    order(viewer, "setPosition", {"2", "4", "-6"}, 500);
    order(viewer, "moveTo", {"00:02:000", "4", "0", "-6"}, 1000);
    frame(viewer, 1000);
    frame(viewer, 1500);
    EXPECT_EQ(2.0f, viewer->getPosition()[0]);
    EXPECT_EQ(4.0f, viewer->getPosition()[1]);
    frame(viewer, 1600);
    EXPECT_EQ(3.0f, viewer->getPosition()[0]);
    EXPECT_EQ(2.0f, viewer->getPosition()[1]);
}

TEST_F(DisplayObjectScene, MoveWhoseEndLiesBeforeTheOrderStaysNearItsStart) {
    DisplayObjectEffect* viewer = make({{"object", "none"}, {"xpos", "1"}});
    order(viewer, "moveTo", {"00:00:500", "100", "0", "0"}, 1000);
    frame(viewer, 1000);
    frame(viewer, 5000);
    frame(viewer, 9000);
    EXPECT_NEAR(1.0f, viewer->getPosition()[0], 0.001f);
    EXPECT_GE(viewer->getMoveProgress(), 0.0f);
    EXPECT_LT(viewer->getMoveProgress(), 0.001f);
}

// ---------------------------------------------------------------- overlay

TEST_F(DisplayObjectScene, DrawnormalsOneInTheBlockShowsTheOverlayAndDrawNormalsOneHidesIt) {
    addSquare("cube", 0, 0, 0.9f);
    DisplayObjectEffect* viewer = make({{"object", "cube"}, {"drawnormals", "1"}, {"zpos", "-5"}});
    ASSERT_TRUE(viewer->isDrawingNormals());
    frame(viewer, 0);
    EXPECT_GT(countPixels(WIRE_GREY), 20) << "the wire frame is drawn over the square";
    order(viewer, "drawNormals", {"1"});
    EXPECT_FALSE(viewer->isDrawingNormals());
    frame(viewer, 16);
    EXPECT_EQ(0, countPixels(WIRE_GREY));
    order(viewer, "drawNormals", {"true"});
    frame(viewer, 32);
    EXPECT_GT(countPixels(WIRE_GREY), 20);
}

TEST_F(DisplayObjectScene, SetObjectKeepsDrawingTheOldShapeWhileTheOverlayFollowsTheNewScene) {
    O3dScene* right = addSquare("right", 1.0f, 0.0f, 0.5f);
    O3dScene* left = addSquare("left", -1.0f, 0.0f, 0.5f);
    DisplayObjectEffect* viewer =
        make({{"object", "right"}, {"drawnormals", "true"}, {"zpos", "-5"}});
    order(viewer, "setObject", {"left"});
    EXPECT_EQ(left, viewer->getScene());
    EXPECT_EQ(right, viewer->getDisplayList()->getScene());
    frame(viewer, 0);
    // Right of the centre the old square, filled; left of it only the wire
    // frame of the new one.
    EXPECT_TRUE(isRed(readRgb(45, 36))) << pixelText(readRgb(45, 36));
    EXPECT_EQ(BLACK, readRgb(19, 36));
    EXPECT_GT(countPixels(WIRE_GREY, 0, 32), 20);
    EXPECT_EQ(0, countPixels(WIRE_GREY, 32, WIDTH));
}

TEST_F(DisplayObjectScene, SetObjectWithANameNotInThePoolChangesNothing) {
    O3dScene* cube = addSquare("cube", 0, 0, 0.5f);
    DisplayObjectEffect* viewer = make({{"object", "cube"}});
    order(viewer, "setObject", {"sphere"});
    EXPECT_EQ(cube, viewer->getScene());
    EXPECT_EQ("", lastOutput);
}

TEST_F(DisplayObjectScene, SetScaleValueGoesToTheScene) {
    O3dScene* cube = addSquare("cube", 0, 0, 0.5f);
    DisplayObjectEffect* viewer = make({{"object", "cube"}});
    order(viewer, "setScaleValue", {"0.25"});
    EXPECT_EQ(0.25f, viewer->getScale());
    EXPECT_EQ(0.25f, cube->getScaleValue());
}

// ---------------------------------------------------------------- on the screen

// At z = -5 under the player's projection one unit is 12.8 pixels, and the
// window's centre is the line of sight.
TEST_F(DisplayObjectScene, LitObjectShowsItsColourWhereItsPositionPutsIt) {
    addSquare("cube", 0, 0, 0.5f);
    DisplayObjectEffect* viewer =
        make({{"object", "cube"}, {"xpos", "1"}, {"ypos", "1"}, {"zpos", "-5"}});
    frame(viewer, 0);
    // The square spans pixels 38.4 to 51.2 on both axes.
    EXPECT_TRUE(isRed(readRgb(48, 40))) << pixelText(readRgb(48, 40));
    EXPECT_TRUE(isRed(readRgb(41, 48))) << pixelText(readRgb(41, 48));
    EXPECT_EQ(BLACK, readRgb(30, 48));
    EXPECT_EQ(BLACK, readRgb(48, 30));
    EXPECT_EQ(BLACK, readRgb(54, 40));
}

TEST_F(DisplayObjectScene, ObjectIsLitOnlyByTheLightsThatAreOn) {
    addSquare("cube", 0, 0, 0.5f);
    DisplayObjectEffect* viewer =
        make({{"object", "cube"}, {"xpos", "1"}, {"ypos", "1"}, {"zpos", "-5"}});
    glDisable(GL_LIGHT0);
    frame(viewer, 0);
    EXPECT_EQ(BLACK, readRgb(48, 40));
    glEnable(GL_LIGHT0);
    frame(viewer, 16);
    EXPECT_TRUE(isRed(readRgb(48, 40))) << pixelText(readRgb(48, 40));
}

// The axes cross at pixel centres: x 50.5 and y 20.5.
TEST_F(DisplayObjectScene, WhiteAxisLinesRunThroughTheObjectsCentre) {
    addSquare("cube", 0, 0, 0.2f);
    DisplayObjectEffect* viewer =
        make({{"object", "cube"}, {"xpos", "1.4453125"}, {"ypos", "-0.8984375"}, {"zpos", "-5"}});
    frame(viewer, 0);
    EXPECT_EQ(WHITE, readRgb(2, 20));
    EXPECT_EQ(WHITE, readRgb(30, 20));
    EXPECT_EQ(WHITE, readRgb(62, 20));
    EXPECT_EQ(WHITE, readRgb(50, 2));
    EXPECT_EQ(WHITE, readRgb(50, 60));
    EXPECT_EQ(BLACK, readRgb(30, 24));
    EXPECT_EQ(BLACK, readRgb(46, 2));
    EXPECT_EQ(BLACK, readRgb(54, 60));
}

TEST_F(DisplayObjectScene, AxisLinesAreFortyLongAndDrawnWhiteWithoutLight) {
    DisplayObjectEffect* viewer = make({{"object", "none"}, {"zpos", "0"}});
    loadIdentityMatrices();
    glScalef(0.01f, 0.01f, 0.01f);
    std::vector<FeedbackPrimitive> drawn = feedbackOf([&] { viewer->draw(0); });
    ASSERT_EQ(3u, drawn.size());
    const float ends[3][2][3] = {{{-0.2f, 0, 0}, {0.2f, 0, 0}},
                                 {{0, -0.2f, 0}, {0, 0.2f, 0}},
                                 {{0, 0, 0.2f}, {0, 0, -0.2f}}};
    for (int line = 0; line < 3; line++) {
        ASSERT_EQ(static_cast<GLenum>(GL_LINE_TOKEN), drawn[line].kind);
        for (int end = 0; end < 2; end++) {
            const FeedbackVertex& v = drawn[line].vertices[end];
            EXPECT_NEAR(ends[line][end][0], objectX(v), 1e-5) << line << "/" << end;
            EXPECT_NEAR(ends[line][end][1], objectY(v), 1e-5) << line << "/" << end;
            EXPECT_NEAR(ends[line][end][2], objectZ(v), 1e-5) << line << "/" << end;
            for (int c = 0; c < 4; c++) {
                EXPECT_EQ(1.0f, v.colour[c]);
            }
        }
    }
}

TEST_F(DisplayObjectScene, AnglesTurnTheObjectAroundXThenYThenZ) {
    DisplayObjectEffect* viewer =
        make({{"object", "none"}, {"zpos", "0"}, {"xrot", "18"}, {"yrot", "18"}});
    loadIdentityMatrices();
    glScalef(0.01f, 0.01f, 0.01f);
    feedbackOf([&] { viewer->draw(60000); });
    viewer->setLastCalled(60000);
    ASSERT_EQ(90.0f, viewer->getRotationAngle()[0]);
    ASSERT_EQ(90.0f, viewer->getRotationAngle()[1]);
    std::vector<FeedbackPrimitive> drawn = feedbackOf([&] { viewer->draw(60000); });
    ASSERT_EQ(3u, drawn.size());
    // The x axis, turned by y onto -z and by x from there onto +y.
    EXPECT_NEAR(0.0f, objectX(drawn[0].vertices[1]), 1e-5);
    EXPECT_NEAR(0.2f, objectY(drawn[0].vertices[1]), 1e-5);
    EXPECT_NEAR(0.0f, objectZ(drawn[0].vertices[1]), 1e-5);
}

TEST_F(DisplayObjectScene, FirstFrameShowsTheStartAngleAndTheTurnShowsFromTheNext) {
    // A square to the right of the object's centre, turned 90 degrees about
    // z by the first step.
    addSquare("cube", 0.6f, 0.0f, 0.3f);
    DisplayObjectEffect* viewer = make({{"object", "cube"}, {"zpos", "-5"}, {"zrot", "18"}});
    frame(viewer, 60000);
    EXPECT_TRUE(isRed(readRgb(40, 30))) << pixelText(readRgb(40, 30));
    EXPECT_EQ(BLACK, readRgb(30, 40));
    EXPECT_EQ(90.0f, viewer->getRotationAngle()[2]);
    frame(viewer, 60000);
    EXPECT_EQ(BLACK, readRgb(40, 30));
    EXPECT_TRUE(isRed(readRgb(30, 40))) << pixelText(readRgb(30, 40));
}

TEST_F(DisplayObjectScene, DrawBuildsOnTheModelviewInForce) {
    DisplayObjectEffect* viewer =
        make({{"object", "none"}, {"xpos", "1.4453125"}, {"ypos", "-0.8984375"}, {"zpos", "-5"}});
    glTranslatef(-1.0f, 0.0f, 0.0f);
    frame(viewer, 0);
    // 12.8 pixels further left: the upright axis moves from column 50 to 37.
    EXPECT_EQ(WHITE, readRgb(37, 2));
    EXPECT_EQ(BLACK, readRgb(50, 2));
}

TEST_F(DisplayObjectScene, DrawLeavesDepthTestCullingAndLightingOnAndTheModelviewAsItWas) {
    addSquare("cube", 0, 0, 0.5f);
    DisplayObjectEffect* viewer = make({{"object", "cube"}, {"drawnormals", "1"}});
    glTranslatef(0.5f, 0.25f, -1.0f);
    GLfloat before[16];
    glGetFloatv(GL_MODELVIEW_MATRIX, before);
    glClearColor(0.5f, 0.5f, 0.5f, 0.5f);
    glDisable(GL_LIGHTING);
    glDepthFunc(GL_ALWAYS);
    viewer->draw(0);
    GLfloat after[16];
    glGetFloatv(GL_MODELVIEW_MATRIX, after);
    for (int i = 0; i < 16; i++) {
        EXPECT_EQ(before[i], after[i]) << i;
    }
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
    EXPECT_TRUE(glIsEnabled(GL_CULL_FACE));
    EXPECT_TRUE(glIsEnabled(GL_LIGHTING));
    GLint value = 0;
    glGetIntegerv(GL_DEPTH_FUNC, &value);
    EXPECT_EQ(GL_LEQUAL, value);
    glGetIntegerv(GL_CULL_FACE_MODE, &value);
    EXPECT_EQ(GL_BACK, value);
    GLfloat clear[4];
    glGetFloatv(GL_COLOR_CLEAR_VALUE, clear);
    for (float channel : clear) {
        EXPECT_EQ(0.0f, channel);
    }
    EXPECT_EQ(static_cast<GLenum>(GL_NO_ERROR), glGetError());
}

TEST_F(DisplayObjectScene, LightingIsOnAgainAfterTheAxesEvenWithoutAnObject) {
    DisplayObjectEffect* viewer = make({{"object", "none"}});
    glDisable(GL_LIGHTING);
    viewer->draw(0);
    EXPECT_TRUE(glIsEnabled(GL_LIGHTING));
}
