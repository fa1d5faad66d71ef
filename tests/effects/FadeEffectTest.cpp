#include "effects/FadeEffect.h"
#include "script/ParameterGroup.h"
#include "support/GLTestWindow.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

ParameterGroup fadeCall(const std::string& from, const std::string& to,
                        std::initializer_list<const char*> colours) {
    ParameterGroup group;
    group.addParameter("p1", from);
    group.addParameter("p2", to);
    int key = 3;
    for (const char* value : colours) {
        group.addParameter("p" + std::to_string(key++), value);
    }
    group.addParameter("object", "fade");
    group.addParameter("method", "fade");
    return group;
}

} // namespace

class FadeEffectDrawing : public GLTestWindow {
protected:
    void SetUp() override {
        GLTestWindow::SetUp();
        testing::internal::CaptureStdout();
        fade.reset(new FadeEffect());
        fade->init();
        testing::internal::GetCapturedStdout();
    }
    // A grey background, then the effect on top.
    Rgb drawAt(unsigned int ticks) {
        glClearColor(0.5f, 0.5f, 0.5f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
        fade->draw(ticks);
        return readRgb(32, 32);
    }
    void order(ParameterGroup group) {
        testing::internal::CaptureStdout();
        fade->modify("fade", &group);
        lastLine = testing::internal::GetCapturedStdout();
    }

    std::unique_ptr<FadeEffect> fade;
    std::string lastLine;
};

TEST(FadeEffect, ConstructorPrintsTheWordDisplayTexture) {
    testing::internal::CaptureStdout();
    FadeEffect fade;
    EXPECT_EQ("DisplayTexture\n", testing::internal::GetCapturedStdout());
}

TEST(FadeEffect, GetInstanceMakesANewFadeEffect) {
    testing::internal::CaptureStdout();
    FadeEffect fade;
    std::unique_ptr<Effect> instance(fade.getInstance());
    testing::internal::GetCapturedStdout();
    EXPECT_NE(nullptr, dynamic_cast<FadeEffect*>(instance.get()));
}

TEST_F(FadeEffectDrawing, BeforeAnyFadeTheQuadHasAlphaZeroAndThePictureDoesNotChange) {
    EXPECT_EQ((Rgb{128, 128, 128}), drawAt(5000));
    EXPECT_DOUBLE_EQ(1.0, fade->getFadeProgress());
}

TEST_F(FadeEffectDrawing, FadeToWhiteIsClearAtTheStartHalfwayInTheMiddleAndWhiteAtTheEnd) {
    order(fadeCall("00:01:000", "00:03:000", {"1.0", "1.0", "1.0", "0.0", "1.0", "1.0", "1.0", "1.0"}));
    EXPECT_EQ("fade from [1,1,1,0] -> [1,1,1,1]\n", lastLine);
    EXPECT_EQ((Rgb{128, 128, 128}), drawAt(1000));
    Rgb middle = drawAt(2000);
    EXPECT_NEAR(191, middle[0], 1);
    EXPECT_EQ((Rgb{255, 255, 255}), drawAt(3000));
}

TEST_F(FadeEffectDrawing, FadeFromBlackRevealsThePicture) {
    order(fadeCall("00:00:000", "00:00:100", {"0.0", "0.0", "0.0", "1.0", "0.0", "0.0", "0.0", "0.0"}));
    EXPECT_EQ((Rgb{0, 0, 0}), drawAt(0));
    Rgb middle = drawAt(50);
    EXPECT_NEAR(64, middle[0], 1);
    EXPECT_EQ((Rgb{128, 128, 128}), drawAt(100));
}

TEST_F(FadeEffectDrawing, PastTheEndProgressLocksAtOneAndTheColourIsExactlyTheTarget) {
    order(fadeCall("00:01:000", "00:02:000", {"0.0", "0.0", "1.0", "0.0", "0.25", "0.5", "0.75", "1.0"}));
    drawAt(9000);
    EXPECT_DOUBLE_EQ(1.0, fade->getFadeProgress());
    EXPECT_FLOAT_EQ(0.25f, fade->getColor()[0]);
    EXPECT_FLOAT_EQ(0.5f, fade->getColor()[1]);
    EXPECT_FLOAT_EQ(0.75f, fade->getColor()[2]);
    EXPECT_FLOAT_EQ(1.0f, fade->getColor()[3]);
    // No further arithmetic: an earlier clock no longer moves the colour.
    drawAt(1500);
    EXPECT_FLOAT_EQ(0.25f, fade->getColor()[0]);
    EXPECT_DOUBLE_EQ(1.0, fade->getFadeProgress());
}

TEST_F(FadeEffectDrawing, FadeWhoseStartEqualsItsEndEndsOnTheFirstFrameAfterThatTime) {
    order(fadeCall("00:02:000", "00:02:000", {"0.0", "0.0", "0.0", "0.0", "1.0", "0.0", "0.0", "1.0"}));
    drawAt(2001);
    EXPECT_DOUBLE_EQ(1.0, fade->getFadeProgress());
    EXPECT_EQ((Rgb{255, 0, 0}), drawAt(2002));
}

TEST_F(FadeEffectDrawing, FadeOrderedBeforeItsStartExtrapolatesBackwards) {
    order(fadeCall("00:02:000", "00:03:000", {"0.0", "0.0", "0.0", "0.5", "0.0", "0.0", "0.0", "1.0"}));
    drawAt(1000);
    EXPECT_DOUBLE_EQ(-1.0, fade->getFadeProgress());
    EXPECT_FLOAT_EQ(0.0f, fade->getColor()[3]);
}

TEST_F(FadeEffectDrawing, NewFadeWhileAnotherRunsRestartsFromZeroWithTheNewColours) {
    order(fadeCall("00:00:000", "00:01:000", {"0.0", "0.0", "0.0", "0.0", "0.0", "0.0", "0.0", "1.0"}));
    drawAt(500);
    order(fadeCall("00:00:500", "00:01:500", {"1.0", "0.0", "0.0", "1.0", "0.0", "1.0", "0.0", "1.0"}));
    EXPECT_DOUBLE_EQ(0.0, fade->getFadeProgress());
    EXPECT_EQ((Rgb{255, 0, 0}), drawAt(500));
}

TEST_F(FadeEffectDrawing, AlphaOutsideZeroToOneGoesToGlAsItStands) {
    order(fadeCall("00:00:000", "00:00:010", {"1.0", "1.0", "1.0", "2.0", "1.0", "1.0", "1.0", "2.0"}));
    drawAt(20);
    EXPECT_FLOAT_EQ(2.0f, fade->getColor()[3]);
    GLfloat current[4];
    glGetFloatv(GL_CURRENT_COLOR, current);
    EXPECT_FLOAT_EQ(2.0f, current[3]);
}

TEST_F(FadeEffectDrawing, UnknownMethodIsIgnored) {
    ParameterGroup group;
    testing::internal::CaptureStdout();
    fade->modify("sparkle", &group);
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
    EXPECT_DOUBLE_EQ(1.0, fade->getFadeProgress());
}

TEST_F(FadeEffectDrawing, ResetStopsTheFadeButKeepsTheColour) {
    order(fadeCall("00:00:000", "00:01:000", {"0.0", "0.0", "1.0", "1.0", "0.0", "0.0", "1.0", "1.0"}));
    drawAt(500);
    fade->reset();
    EXPECT_DOUBLE_EQ(1.0, fade->getFadeProgress());
    EXPECT_EQ((Rgb{0, 0, 255}), drawAt(800));
}

TEST_F(FadeEffectDrawing, DrawLeavesLightingDepthAndTexturingOffAndBlendingOff) {
    glEnable(GL_DEPTH_TEST);
    glEnable(GL_LIGHTING);
    glEnable(GL_TEXTURE_2D);
    fade->draw(0);
    EXPECT_FALSE(glIsEnabled(GL_DEPTH_TEST));
    EXPECT_FALSE(glIsEnabled(GL_LIGHTING));
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D));
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
    EXPECT_FALSE(glIsEnabled(GL_COLOR_MATERIAL));
    GLint depth = 0;
    glGetIntegerv(GL_MODELVIEW_STACK_DEPTH, &depth);
    EXPECT_EQ(1, depth);
    glGetIntegerv(GL_PROJECTION_STACK_DEPTH, &depth);
    EXPECT_EQ(1, depth);
}
