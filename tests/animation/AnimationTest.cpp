#include "animation/Animation.h"

#include "animation/AnimationCameraController.h"
#include "animation/AnimationObjectController.h"
#include "animation/Keyframe.h"
#include "support/GLTestWindow.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace {

// Keyframe k sits at (10k, 100 + k, -k) with pitch k and heading 10k, so any
// pose names the keyframes it came from.
void fill(Animation& animation, int count) {
    for (int k = 0; k < count; k++) {
        animation.addKeyframe(
            new Keyframe(vec3(10.0f * k, 100.0f + k, -1.0f * k), static_cast<float>(k), 10.0f * k));
    }
}

void expectPoseIsKeyframe(const Animation& animation, const Keyframe* keyframe) {
    ASSERT_NE(nullptr, keyframe);
    for (int e = 0; e < 3; e++) {
        EXPECT_EQ(keyframe->getPosition()[e], animation.getPosition()[e]) << "element " << e;
    }
    EXPECT_EQ(keyframe->getPitch(), animation.getPitch());
    EXPECT_EQ(keyframe->getHeading(), animation.getHeading());
}

std::string outputOf(Animation& animation, double t) {
    testing::internal::CaptureStdout();
    animation.next(t);
    return testing::internal::GetCapturedStdout();
}

float catmullValue(float a, float b, float c, float d, float t) {
    float c0 = -t * t * t + 2 * t * t - t;
    float c1 = 3 * t * t * t - 5 * t * t + 2;
    float c2 = -3 * t * t * t + 4 * t * t + t;
    float c3 = t * t * t - t * t;
    return 0.5f * (c0 * a + c1 * b + c2 * c + c3 * d);
}

} // namespace

TEST(Animation, NewAnimationHasNoKeyframesAndInterpolatesLinearly) {
    Animation animation;
    EXPECT_EQ(0, animation.countKeyFrames());
    EXPECT_EQ(Animation::LINEAR, animation.getInterpolationType());
    EXPECT_EQ(0.0f, animation.getPosition()[0]);
    EXPECT_EQ("Animation { keyframes = 0 }\n", animation.toString());
}

TEST(Animation, KeyframesKeepTheOrderOfAdding) {
    Animation animation;
    Keyframe* first = new Keyframe();
    Keyframe* second = new Keyframe();
    animation.addKeyframe(first);
    animation.addKeyframe(second);
    EXPECT_EQ(2, animation.countKeyFrames());
    EXPECT_EQ(first, animation.getKeyFrame(0));
    EXPECT_EQ(second, animation.getKeyFrame(1));
    EXPECT_EQ("Animation { keyframes = 2 }\n", animation.toString());
}

TEST(Animation, KeyframeIndexOutsideTheListGivesNull) {
    Animation animation;
    fill(animation, 3);
    EXPECT_EQ(nullptr, animation.getKeyFrame(3));
    EXPECT_EQ(nullptr, animation.getKeyFrame(-1));
}

TEST(Animation, LinearAtTimeZeroIsTheFirstKeyframe) {
    Animation animation;
    fill(animation, 5);
    EXPECT_EQ("", outputOf(animation, 0.0));
    expectPoseIsKeyframe(animation, animation.getKeyFrame(0));
}

TEST(Animation, LinearAtAWholeKeyframeTimeJumpsOneKeyframeAhead) {
    Animation animation;
    fill(animation, 5);
    // x is 2.0: the index is 2 and the fraction stops at 1.0, so the pose is
    // keyframe 3, not keyframe 2.
    animation.next(0.5);
    expectPoseIsKeyframe(animation, animation.getKeyFrame(3));
}

TEST(Animation, LinearJustBeforeAndAfterAWholeKeyframeTimeStaysNearThatKeyframe) {
    Animation animation;
    fill(animation, 5);
    animation.next(0.5 - 1e-6);
    EXPECT_NEAR(20.0f, animation.getPosition()[0], 1e-3);
    animation.next(0.5 + 1e-6);
    EXPECT_NEAR(20.0f, animation.getPosition()[0], 1e-3);
    animation.next(0.5);
    EXPECT_EQ(30.0f, animation.getPosition()[0]);
}

TEST(Animation, LinearBetweenKeyframesBlendsTheTwoAroundIt) {
    Animation animation;
    fill(animation, 5);
    // x is 1.6: between keyframes 1 and 2, about 0.6 of the way.
    animation.next(0.4);
    EXPECT_NEAR(16.0f, animation.getPosition()[0], 1e-4);
    EXPECT_NEAR(101.6f, animation.getPosition()[1], 1e-4);
    EXPECT_NEAR(-1.6f, animation.getPosition()[2], 1e-4);
    EXPECT_NEAR(1.6f, animation.getPitch(), 1e-5);
    EXPECT_NEAR(16.0f, animation.getHeading(), 1e-4);
}

TEST(Animation, LinearPoseFollowsTheBlendFormulaExactly) {
    Animation animation;
    Keyframe* k0 = new Keyframe(vec3(1.0f, 2.0f, 3.0f), 5.0f, 7.0f);
    Keyframe* k1 = new Keyframe(vec3(-3.0f, 8.5f, 0.25f), 11.0f, -13.0f);
    animation.addKeyframe(k0);
    animation.addKeyframe(k1);
    float t = 0.3f;
    animation.interpolateLinear(k0, k1, t);
    EXPECT_EQ(1.0f * (1 - t) + -3.0f * t, animation.getPosition()[0]);
    EXPECT_EQ(2.0f * (1 - t) + 8.5f * t, animation.getPosition()[1]);
    EXPECT_EQ(3.0f * (1 - t) + 0.25f * t, animation.getPosition()[2]);
    EXPECT_EQ(5.0f + (11.0f - 5.0f) * t, animation.getPitch());
    EXPECT_EQ(7.0f + (-13.0f - 7.0f) * t, animation.getHeading());
}

TEST(Animation, LinearAtTheEndPrintsOutOfRangeAndKeepsThePose) {
    Animation animation;
    fill(animation, 5);
    animation.next(0.3);
    Vector<float, 3> before = animation.getPosition();
    float pitch = animation.getPitch();
    float heading = animation.getHeading();
    EXPECT_EQ("OUT OF RANGE 4\n", outputOf(animation, 1.0));
    EXPECT_EQ(before[0], animation.getPosition()[0]);
    EXPECT_EQ(before[1], animation.getPosition()[1]);
    EXPECT_EQ(before[2], animation.getPosition()[2]);
    EXPECT_EQ(pitch, animation.getPitch());
    EXPECT_EQ(heading, animation.getHeading());
}

TEST(Animation, OutOfRangeLineIsPrintedOnEveryCall) {
    Animation animation;
    fill(animation, 3);
    testing::internal::CaptureStdout();
    animation.next(1.0);
    animation.next(1.0);
    animation.next(1.7);
    EXPECT_EQ("OUT OF RANGE 2\nOUT OF RANGE 2\nOUT OF RANGE 3\n",
              testing::internal::GetCapturedStdout());
}

TEST(Animation, LinearWithFewerThanTwoKeyframesIsAlwaysOutOfRange) {
    Animation single;
    fill(single, 1);
    EXPECT_EQ("OUT OF RANGE 0\n", outputOf(single, 0.0));
    EXPECT_EQ("OUT OF RANGE 0\n", outputOf(single, 0.5));
    Animation empty;
    EXPECT_EQ("OUT OF RANGE 0\n", outputOf(empty, 0.0));
    EXPECT_EQ("OUT OF RANGE -1\n", outputOf(empty, 1.0));
}

TEST(Animation, CatmullAtTimeZeroIsTheSecondKeyframe) {
    Animation animation;
    fill(animation, 5);
    animation.setInterpolationType(Animation::CATMULL_ROM);
    EXPECT_EQ("", outputOf(animation, 0.0));
    expectPoseIsKeyframe(animation, animation.getKeyFrame(1));
}

TEST(Animation, CatmullAtTheEndPrintsTheLastSegmentAndTheIndex) {
    Animation animation;
    fill(animation, 6);
    animation.setInterpolationType(Animation::CATMULL_ROM);
    EXPECT_EQ("OUT OF RANGE [2] -> 3\n", outputOf(animation, 1.0));
}

TEST(Animation, CatmullWithFewerThanFourKeyframesIsAlwaysOutOfRange) {
    Animation animation;
    fill(animation, 3);
    animation.setInterpolationType(Animation::CATMULL_ROM);
    EXPECT_EQ("OUT OF RANGE [-1] -> 0\n", outputOf(animation, 0.0));
    EXPECT_EQ("OUT OF RANGE [-1] -> 0\n", outputOf(animation, 0.99));
}

TEST(Animation, CatmullPathEndsAtTheLastButOneKeyframe) {
    Animation animation;
    fill(animation, 6);
    animation.setInterpolationType(Animation::CATMULL_ROM);
    // Just before the end the pose is close to keyframe 4 = n - 2.
    animation.next(1.0 - 1e-7);
    EXPECT_NEAR(40.0f, animation.getPosition()[0], 1e-3);
    EXPECT_NEAR(104.0f, animation.getPosition()[1], 1e-3);
}

TEST(Animation, CatmullUsesTheUniformSplineWeights) {
    Animation animation;
    Keyframe* k0 = new Keyframe(vec3(0.0f, 3.0f, -1.0f), 0.0f, 0.0f);
    Keyframe* k1 = new Keyframe(vec3(5.0f, 1.0f, 2.0f), 10.0f, 45.0f);
    Keyframe* k2 = new Keyframe(vec3(10.0f, 7.0f, 0.5f), 10.0f, 90.0f);
    Keyframe* k3 = new Keyframe(vec3(5.0f, -2.0f, 4.0f), 30.0f, 135.0f);
    for (Keyframe* k : {k0, k1, k2, k3}) {
        animation.addKeyframe(k);
    }
    for (float t : {0.25f, 0.5f, 0.8f}) {
        animation.interpolateCatmull(k0, k1, k2, k3, t);
        for (int e = 0; e < 3; e++) {
            EXPECT_FLOAT_EQ(catmullValue(k0->getPosition()[e], k1->getPosition()[e],
                                         k2->getPosition()[e], k3->getPosition()[e], t),
                            animation.getPosition()[e]);
        }
        EXPECT_FLOAT_EQ(catmullValue(0.0f, 10.0f, 10.0f, 30.0f, t), animation.getPitch());
        EXPECT_FLOAT_EQ(catmullValue(0.0f, 45.0f, 90.0f, 135.0f, t), animation.getHeading());
    }
    animation.interpolateCatmull(k0, k1, k2, k3, 1.0f);
    expectPoseIsKeyframe(animation, k2);
    animation.interpolateCatmull(k0, k1, k2, k3, 0.0f);
    expectPoseIsKeyframe(animation, k1);
}

TEST(Animation, CatmullAtAWholeKeyframeTimeJumpsOneKeyframeAhead) {
    Animation animation;
    fill(animation, 5);
    animation.setInterpolationType(Animation::CATMULL_ROM);
    // Two segments: x is 1.0 at t 0.5, index 1, fraction 1.0: keyframe 3.
    animation.next(0.5);
    expectPoseIsKeyframe(animation, animation.getKeyFrame(3));
}

TEST(Animation, HeadingFrom350To10PassesThrough180) {
    Animation animation;
    animation.addKeyframe(new Keyframe(vec3(0.0f, 0.0f, 0.0f), 0.0f, 350.0f));
    animation.addKeyframe(new Keyframe(vec3(0.0f, 0.0f, 0.0f), 0.0f, 10.0f));
    animation.next(0.5);
    EXPECT_EQ(180.0f, animation.getHeading());
    animation.next(0.25);
    EXPECT_EQ(265.0f, animation.getHeading());
}

TEST(Animation, OtherInterpolationTypesMakeNextDoNothing) {
    Animation animation;
    fill(animation, 5);
    animation.next(0.25);
    Vector<float, 3> before = animation.getPosition();
    for (int type : {2, -1}) {
        animation.setInterpolationType(type);
        EXPECT_EQ("", outputOf(animation, 0.75));
        EXPECT_EQ("", outputOf(animation, 1.0));
        EXPECT_EQ(before[0], animation.getPosition()[0]);
    }
}

TEST(Animation, TimesBelowZeroOrNotANumberLeaveThePose) {
    Animation animation;
    fill(animation, 5);
    animation.next(0.25);
    float x = animation.getPosition()[0];
    EXPECT_EQ("OUT OF RANGE -1\n", outputOf(animation, -0.1));
    EXPECT_EQ(x, animation.getPosition()[0]);
    outputOf(animation, std::nan(""));
    EXPECT_EQ(x, animation.getPosition()[0]);
    outputOf(animation, 1e300);
    EXPECT_EQ(x, animation.getPosition()[0]);
    animation.setInterpolationType(Animation::CATMULL_ROM);
    outputOf(animation, -5.0);
    outputOf(animation, std::nan(""));
    EXPECT_EQ(x, animation.getPosition()[0]);
}

TEST(Animation, PrintWritesTheAnimationFileFormat) {
    Animation animation;
    animation.addKeyframe(new Keyframe(vec3(0.0f, 0.0f, 10.0f), 0.0f, 0.0f));
    animation.addKeyframe(new Keyframe(vec3(5.0f, 1.0f, 5.0f), 10.0f, 45.0f));
    testing::internal::CaptureStdout();
    animation.print();
    EXPECT_EQ("KVLANI1\nkeyframes 2\npos 0 0 10\nrot 0 0\npos 5 1 5\nrot 10 45\n",
              testing::internal::GetCapturedStdout());
}

TEST(Animation, ControllersAreNewEachTimeAndBoundToThisAnimation) {
    Animation animation;
    AnimationCameraController* camera = animation.getCameraController();
    AnimationCameraController* other = animation.getCameraController();
    AnimationObjectController* object = animation.getObjectController();
    EXPECT_NE(camera, other);
    EXPECT_EQ(&animation, camera->getAnimation());
    EXPECT_EQ(&animation, other->getAnimation());
    EXPECT_EQ(&animation, object->getAnimation());
    EXPECT_EQ(0u, camera->getStartTime().getTicks());
    EXPECT_EQ(0u, object->getEndTime().getTicks());
    delete camera;
    delete other;
    delete object;
}

// Debug drawing, read back from a real window. Identity matrices make the
// keyframe positions clip coordinates.
class AnimationDrawing : public GLTestWindow {
protected:
    void SetUp() override {
        GLTestWindow::SetUp();
        loadIdentityMatrices();
        glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glDisable(GL_DEPTH_TEST);
        glColor3f(1.0f, 1.0f, 1.0f);
    }

    // Keyframes along the middle row, from the left edge to the right one.
    static void fillRow(Animation& animation, int count) {
        for (int k = 0; k < count; k++) {
            float x = -0.9f + 1.8f * k / (count - 1);
            animation.addKeyframe(new Keyframe(vec3(x, 0.0f, 0.0f), 0.0f, 0.0f));
        }
    }

    static int litPixels() {
        int lit = 0;
        for (int y = 0; y < HEIGHT; y++) {
            for (int x = 0; x < WIDTH; x++) {
                Rgb pixel = readRgb(x, y);
                if (pixel[0] > 128 && pixel[1] > 128 && pixel[2] > 128) {
                    lit++;
                }
            }
        }
        return lit;
    }
};

TEST_F(AnimationDrawing, DrawLinksTheKeyframesWithLines) {
    Animation animation;
    fillRow(animation, 3);
    animation.draw();
    EXPECT_EQ(Rgb({255, 255, 255}), readRgb(WIDTH / 2, HEIGHT / 2));
    EXPECT_EQ(Rgb({0, 0, 0}), readRgb(WIDTH / 2, HEIGHT - 4));
    EXPECT_EQ(GL_NO_ERROR, glGetError());
    EXPECT_TRUE(glIsEnabled(GL_LIGHTING));
    GLfloat width = 0.0f;
    glGetFloatv(GL_LINE_WIDTH, &width);
    EXPECT_EQ(1.0f, width);
}

TEST_F(AnimationDrawing, DrawCatmulWithFourKeyframesDrawsNothingThoughNextWorks) {
    Animation animation;
    fillRow(animation, 4);
    animation.setInterpolationType(Animation::CATMULL_ROM);
    animation.drawCatmul();
    EXPECT_EQ(0, litPixels());
    testing::internal::CaptureStdout();
    animation.next(0.25);
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
    EXPECT_GT(animation.getPosition()[0], animation.getKeyFrame(1)->getPosition()[0]);
    EXPECT_LT(animation.getPosition()[0], animation.getKeyFrame(2)->getPosition()[0]);
}

TEST_F(AnimationDrawing, DrawCatmulWithFiveKeyframesDrawsTheSplineAndOverwritesThePose) {
    Animation animation;
    fillRow(animation, 5);
    animation.next(0.0);
    animation.drawCatmul();
    EXPECT_GT(litPixels(), 0);
    EXPECT_EQ(Rgb({255, 255, 255}), readRgb(WIDTH / 2, HEIGHT / 2));
    // The last sample is s = 0.9 of the last segment, between keyframes 2 and 3.
    Animation probe;
    fillRow(probe, 5);
    probe.interpolateCatmull(probe.getKeyFrame(1), probe.getKeyFrame(2), probe.getKeyFrame(3),
                             probe.getKeyFrame(4), 0.9f);
    EXPECT_FLOAT_EQ(probe.getPosition()[0], animation.getPosition()[0]);
    EXPECT_NE(animation.getKeyFrame(0)->getPosition()[0], animation.getPosition()[0]);
    EXPECT_EQ(GL_NO_ERROR, glGetError());
}
