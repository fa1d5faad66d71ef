#include "animation/AnimationCameraController.h"

#include "animation/Animation.h"
#include "animation/AnimationParser.h"
#include "animation/Keyframe.h"
#include "runtime/KVLDemosys.h"
#include "support/GLTestWindow.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>

namespace {

// A straight flight from (0, 0, 0) to (20, 10, -40), pitch 0 to 30, heading
// 0 to 90: every t has its own pose.
void fillLine(Animation& animation) {
    animation.addKeyframe(new Keyframe(vec3(0.0f, 0.0f, 0.0f), 0.0f, 0.0f));
    animation.addKeyframe(new Keyframe(vec3(20.0f, 10.0f, -40.0f), 30.0f, 90.0f));
}

void expectCameraAt(const Vector<float, 3>& position, float pitch, float heading) {
    Camera& camera = KVLDemosys::camera;
    for (int e = 0; e < 3; e++) {
        EXPECT_EQ(position[e], camera.getPosition()[e]) << "element " << e;
    }
    EXPECT_EQ(pitch, camera.getPitch());
    EXPECT_EQ(heading, camera.getHeading());
}

void placeCamera(float x, float pitch, float heading) {
    KVLDemosys::camera.setPosition(vec3(x, -x, 2.0f * x));
    KVLDemosys::camera.setPitch(pitch);
    KVLDemosys::camera.setHeading(heading);
}

std::string animateLog(AnimationCameraController& controller, unsigned int ms) {
    testing::internal::CaptureStdout();
    controller.animate(ms);
    return testing::internal::GetCapturedStdout();
}

} // namespace

class AnimationCameraControllerTest : public ::testing::Test {
protected:
    void SetUp() override {
        KVLDemosys::resetState();
        fillLine(path);
        controller.setStartTime(1000u);
        controller.setEndTime(3000u);
    }
    void TearDown() override { KVLDemosys::resetState(); }

    Animation path;
    AnimationCameraController controller{&path};
};

TEST(AnimationCameraController, NewControllerHasNoAnimationAndZeroTimes) {
    AnimationCameraController controller;
    EXPECT_EQ(nullptr, controller.getAnimation());
    EXPECT_EQ(0u, controller.getStartTime().getTicks());
    EXPECT_EQ(0u, controller.getEndTime().getTicks());
    Animation animation;
    AnimationCameraController bound(&animation);
    EXPECT_EQ(&animation, bound.getAnimation());
    bound.setAnimation(nullptr);
    EXPECT_EQ(nullptr, bound.getAnimation());
}

TEST(AnimationCameraController, SetStartTimeInMillisecondsReplacesWhateverTheFieldHeld) {
    AnimationCameraController controller;
    controller.setStartTime(KVLTime(2, 30, 250));
    controller.setStartTime(1500u);
    EXPECT_EQ(1500u, controller.getStartTime().getTicks());
    EXPECT_EQ(0, controller.getStartTime().getMinutes());
    EXPECT_EQ(0, controller.getStartTime().getSeconds());
    EXPECT_EQ(1500, controller.getStartTime().getMilliseconds());
    controller.setEndTime(KVLTime(1, 0, 0));
    controller.setEndTime(4200u);
    EXPECT_EQ(4200u, controller.getEndTime().getTicks());
    EXPECT_EQ(0, controller.getEndTime().getMinutes());
}

TEST(AnimationCameraController, SetTimeValuesCopyTheWholeTime) {
    AnimationCameraController controller;
    controller.setStartTime(KVLTime(std::string("01:02:003")));
    controller.setEndTime(KVLTime(2, 0, 500));
    EXPECT_EQ(1, controller.getStartTime().getMinutes());
    EXPECT_EQ(2, controller.getStartTime().getSeconds());
    EXPECT_EQ(3, controller.getStartTime().getMilliseconds());
    EXPECT_EQ(62003u, controller.getStartTime().getTicks());
    EXPECT_EQ(120500u, controller.getEndTime().getTicks());
}

TEST_F(AnimationCameraControllerTest, AnimateOutsideTheRangeLeavesTheCameraUnchanged) {
    placeCamera(7.0f, 12.0f, 34.0f);
    for (unsigned int ms : {0u, 999u, 3001u, 100000u}) {
        EXPECT_EQ("", animateLog(controller, ms)) << ms;
        expectCameraAt(vec3(7.0f, -7.0f, 14.0f), 12.0f, 34.0f);
    }
}

TEST_F(AnimationCameraControllerTest, HalfwayThroughARangeOf1000To3000AsksThePathForHalfTime) {
    controller.animate(2000);
    Animation twin;
    fillLine(twin);
    twin.next(0.5);
    expectCameraAt(twin.getPosition(), twin.getPitch(), twin.getHeading());
    expectCameraAt(vec3(10.0f, 5.0f, -20.0f), 15.0f, 45.0f);
}

TEST_F(AnimationCameraControllerTest, TimeIsNormalizedOverTheRangeAndNarrowedToAFloat) {
    controller.animate(1234);
    Animation twin;
    fillLine(twin);
    twin.next(static_cast<double>(static_cast<float>(234.0 / 2000.0)));
    expectCameraAt(twin.getPosition(), twin.getPitch(), twin.getHeading());
}

TEST_F(AnimationCameraControllerTest, AtTheStartTimeTheCameraIsAtThePathsBeginning) {
    placeCamera(7.0f, 12.0f, 34.0f);
    EXPECT_EQ("", animateLog(controller, 1000));
    expectCameraAt(vec3(0.0f, 0.0f, 0.0f), 0.0f, 0.0f);
}

TEST_F(AnimationCameraControllerTest, AtTheEndTimeThePathIsOutOfRangeAndTheLastPoseStays) {
    controller.animate(2999);
    Vector<float, 3> last = path.getPosition();
    float pitch = path.getPitch();
    float heading = path.getHeading();
    placeCamera(7.0f, 12.0f, 34.0f);
    EXPECT_EQ("OUT OF RANGE 1\n", animateLog(controller, 3000));
    expectCameraAt(last, pitch, heading);
}

TEST_F(AnimationCameraControllerTest, ControllerWithoutAnAnimationIgnoresAnimate) {
    placeCamera(7.0f, 12.0f, 34.0f);
    AnimationCameraController empty;
    empty.setStartTime(1000u);
    empty.setEndTime(3000u);
    EXPECT_EQ("", animateLog(empty, 2000));
    expectCameraAt(vec3(7.0f, -7.0f, 14.0f), 12.0f, 34.0f);
}

TEST_F(AnimationCameraControllerTest, AnimateDependsOnlyOnItsArgumentSoEffectsMaySeek) {
    controller.animate(2500);
    Vector<float, 3> first = KVLDemosys::camera.getPosition();
    controller.animate(1200);
    EXPECT_NE(first[0], KVLDemosys::camera.getPosition()[0]);
    controller.animate(2500);
    expectCameraAt(first, path.getPitch(), path.getHeading());
    EXPECT_EQ(1000u, controller.getStartTime().getTicks());
}

TEST_F(AnimationCameraControllerTest, AnimateSetsTheCameraFieldsButNotItsMatrix) {
    Matrix before = KVLDemosys::camera.getMatrix();
    float velocity = KVLDemosys::camera.getVelocity();
    controller.animate(2000);
    Matrix after = KVLDemosys::camera.getMatrix();
    for (int i = 0; i < 16; i++) {
        EXPECT_EQ(before[i], after[i]) << i;
    }
    EXPECT_EQ(velocity, KVLDemosys::camera.getVelocity());
    EXPECT_EQ(10.0f, KVLDemosys::camera.getPosition()[0]);
}

TEST_F(AnimationCameraControllerTest, CatmullPathsPlayThroughTheControllerToo) {
    Animation spline;
    for (int k = 0; k < 5; k++) {
        spline.addKeyframe(new Keyframe(vec3(3.0f * k, 0.0f, 0.0f), 0.0f, 10.0f * k));
    }
    spline.setInterpolationType(Animation::CATMULL_ROM);
    controller.setAnimation(&spline);
    controller.animate(1000);
    // A spline path starts at its second keyframe.
    expectCameraAt(vec3(3.0f, 0.0f, 0.0f), 0.0f, 10.0f);
}

TEST_F(AnimationCameraControllerTest, EqualStartAndEndTimesDoNotMoveTheCamera) {
    controller.animate(1500);
    Vector<float, 3> before = KVLDemosys::camera.getPosition();
    controller.setStartTime(2000u);
    controller.setEndTime(2000u);
    testing::internal::CaptureStdout();
    controller.animate(2000);
    testing::internal::GetCapturedStdout();
    expectCameraAt(before, path.getPitch(), path.getHeading());
}

// The production's path played on the real camera: at every sampled moment
// the modelview puts the centre of the scene straight ahead of the viewer.
class AnimationCameraControllerOnScreen : public GLTestWindow {
protected:
    void SetUp() override {
        KVLDemosys::resetState();
        GLTestWindow::SetUp();
    }
    void TearDown() override {
        GLTestWindow::TearDown();
        KVLDemosys::resetState();
    }
};

TEST_F(AnimationCameraControllerOnScreen, ProductionPathKeepsTheCentreInFrontOfTheCamera) {
    AnimationParser parser(std::string(KVL_SOURCE_DIR) + "/resources/misc/camera.ani");
    testing::internal::CaptureStdout();
    std::unique_ptr<Animation> path(parser.parse());
    testing::internal::GetCapturedStdout();
    ASSERT_NE(nullptr, path) << parser.getErrorMessage();
    std::unique_ptr<AnimationCameraController> controller(path->getCameraController());
    controller->setStartTime(KVLTime(std::string("00:10:000")));
    controller->setEndTime(KVLTime(std::string("00:34:000")));
    for (unsigned int ms = 10000; ms < 34000; ms += 1700) {
        controller->animate(ms);
        testing::internal::CaptureStdout();
        KVLDemosys::camera.setGLMatrixes();
        testing::internal::GetCapturedStdout();
        GLfloat m[16];
        glGetFloatv(GL_MODELVIEW_MATRIX, m);
        // The point the flight aims at, half a unit above the origin, in eye space.
        float eye[3];
        for (int row = 0; row < 3; row++) {
            eye[row] = m[4 + row] * 0.5f + m[12 + row];
        }
        EXPECT_LT(eye[2], -5.0f) << ms;
        EXPECT_LT(std::fabs(eye[0]), 0.05f * -eye[2]) << ms;
        EXPECT_LT(std::fabs(eye[1]), 0.05f * -eye[2]) << ms;
    }
}
