#include "graphics/FrameBufferObject.h"
#include "graphics/ScreenQuad.h"
#include "graphics/Texture.h"
#include "runtime/KVLDemosys.h"
#include "support/GLState.h"
#include "support/GLTestWindow.h"
#include "timeline/ActionPool.h"
#include "timeline/Effect.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace {

// Fills whatever it is drawn into with one colour and notes where it was
// drawn: the framebuffer and the viewport at the moment of its draw.
class FillEffect : public Effect {
public:
    FillEffect(float red, float green, float blue) : colour{red, green, blue} {}

    void draw(unsigned int) override {
        GLint binding = -1;
        glGetIntegerv(GL_FRAMEBUFFER_BINDING_EXT, &binding);
        framebuffers.push_back(binding);
        std::array<GLint, 4> viewport{};
        glGetIntegerv(GL_VIEWPORT, viewport.data());
        viewports.push_back(viewport);
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        glColor3f(colour[0], colour[1], colour[2]);
        ScreenQuad::draw();
    }

    unsigned int lastDraw() const { return lastCalled; }

    std::array<float, 3> colour;
    std::vector<GLint> framebuffers;
    std::vector<std::array<GLint, 4>> viewports;
};

std::array<GLint, 4> viewport(GLint x, GLint y, GLint width, GLint height) {
    return {x, y, width, height};
}

} // namespace

class ActionPoolTarget : public GLTestWindow {
protected:
    void SetUp() override {
        GLTestWindow::SetUp();
        testing::internal::CaptureStdout();
        target = new FrameBufferObject(32, 16, false, false);
        testing::internal::GetCapturedStdout();
        ASSERT_TRUE(target->isValid());
    }
    void TearDown() override {
        testing::internal::CaptureStdout();
        delete target;
        testing::internal::GetCapturedStdout();
        GLTestWindow::TearDown();
    }

    FrameBufferObject* target = nullptr;
};

TEST_F(ActionPoolTarget, EffectStartedIntoATargetDrawsIntoTheTargetAndNotOnTheScreen) {
    FillEffect green(0, 1, 0);
    green.setRenderTarget(target);
    ActionPool pool;
    pool.addEffect("green", &green, 20);

    testing::internal::CaptureStdout();
    pool.execute(1234);
    EXPECT_EQ("", testing::internal::GetCapturedStdout());

    ASSERT_EQ(1u, green.framebuffers.size());
    EXPECT_EQ(target->getId(), green.framebuffers[0]);
    EXPECT_EQ(viewport(0, 0, 32, 16), green.viewports[0]);
    EXPECT_EQ(1234u, green.lastDraw());
    EXPECT_EQ((Rgb{0, 0, 0}), readRgb(32, 32)) << "the screen was drawn on";
    EXPECT_EQ((Rgb{0, 0, 0}), readRgb(5, 5)) << "the screen was drawn on";
    EXPECT_EQ((Rgb{0, 255, 0}), texel(*target, 0, 0));
    EXPECT_EQ((Rgb{0, 255, 0}), texel(*target, 31, 15));
}

TEST_F(ActionPoolTarget, ScreenFramebufferAndViewportAreBackAfterAnEffectInATarget) {
    FillEffect green(0, 1, 0);
    green.setRenderTarget(target);
    ActionPool pool;
    pool.addEffect("green", &green, 20);

    testing::internal::CaptureStdout();
    pool.execute(16);
    EXPECT_EQ("", testing::internal::GetCapturedStdout());

    EXPECT_EQ(0, currentFramebuffer());
    EXPECT_EQ(viewport(0, 0, WIDTH, HEIGHT), currentViewport());
    EXPECT_FALSE(KVLDemosys::system_error);
}

TEST_F(ActionPoolTarget, EffectAfterOneInATargetDrawsOnTheScreenWithTheScreensViewport) {
    FillEffect green(0, 1, 0);
    FillEffect blue(0, 0, 1);
    green.setRenderTarget(target);
    ActionPool pool;
    pool.addEffect("green", &green, 20);
    pool.addEffect("blue", &blue, 30);

    testing::internal::CaptureStdout();
    pool.execute(40);
    EXPECT_EQ("", testing::internal::GetCapturedStdout());

    ASSERT_EQ(1u, blue.framebuffers.size());
    EXPECT_EQ(0, blue.framebuffers[0]);
    EXPECT_EQ(viewport(0, 0, WIDTH, HEIGHT), blue.viewports[0]);
    EXPECT_EQ(40u, blue.lastDraw());
    EXPECT_EQ((Rgb{0, 0, 255}), readRgb(1, 1));
    EXPECT_EQ((Rgb{0, 0, 255}), readRgb(62, 62));
    EXPECT_EQ((Rgb{0, 255, 0}), texel(*target, 16, 8));
}

TEST_F(ActionPoolTarget, EffectWithoutTargetDrawsOnTheScreenAndTouchesNoTarget) {
    FillEffect red(1, 0, 0);
    ActionPool pool;
    pool.addEffect("red", &red, 50);
    glViewport(0, 0, 20, 20);

    testing::internal::CaptureStdout();
    pool.execute(7);
    EXPECT_EQ("", testing::internal::GetCapturedStdout());

    ASSERT_EQ(1u, red.framebuffers.size());
    EXPECT_EQ(0, red.framebuffers[0]);
    // No target, no release: the viewport the frame had stays.
    EXPECT_EQ(viewport(0, 0, 20, 20), red.viewports[0]);
    EXPECT_EQ(viewport(0, 0, 20, 20), currentViewport());
    EXPECT_EQ((Rgb{255, 0, 0}), readRgb(10, 10));
    EXPECT_EQ((Rgb{0, 0, 0}), readRgb(40, 40));
}
