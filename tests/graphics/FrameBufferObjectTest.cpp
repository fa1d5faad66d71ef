#include "graphics/FrameBufferObject.h"

#include "graphics/Texture.h"
#include "runtime/KVLDemosys.h"
#include "support/GLState.h"
#include "support/GLTestWindow.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace {

Viewport viewport(GLint width, GLint height) {
    return {0, 0, width, height};
}

std::string statusLine(const std::string& message, GLenum status, bool valid) {
    return "FBO " + message + "(" + std::to_string(status) + ") = " + (valid ? "true" : "false") +
           "\n";
}

// Every target of these tests is made through here, so that the status
// line of its construction stays out of the test's own log.
std::unique_ptr<FrameBufferObject> makeTarget(int width, int height, bool depth = false,
                                              bool stencil = false) {
    testing::internal::CaptureStdout();
    auto target = std::make_unique<FrameBufferObject>(width, height, depth, stencil);
    testing::internal::GetCapturedStdout();
    return target;
}

template <class Step> std::string logOf(Step step) {
    testing::internal::CaptureStdout();
    step();
    return testing::internal::GetCapturedStdout();
}

GLint attachmentType(GLenum attachment) {
    GLint type = -1;
    glGetFramebufferAttachmentParameterivEXT(GL_FRAMEBUFFER_EXT, attachment,
                                             GL_FRAMEBUFFER_ATTACHMENT_OBJECT_TYPE_EXT, &type);
    return type;
}

float depthAt(int x, int y) {
    float value = -1.0f;
    glFinish();
    glReadPixels(x, y, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &value);
    return value;
}

void quad(float left, float bottom, float right, float top) {
    glBegin(GL_QUADS);
    glVertex2f(left, bottom);
    glVertex2f(right, bottom);
    glVertex2f(right, top);
    glVertex2f(left, top);
    glEnd();
}

} // namespace

class FrameBufferObjectTest : public GLTestWindow {
protected:
    void TearDown() override {
        // A failed test may leave the GL error flag set; nothing else is shared.
        while (glGetError() != GL_NO_ERROR) {
        }
        GLTestWindow::TearDown();
    }
};

// ---------------------------------------------------------------- construction

TEST_F(FrameBufferObjectTest, CompleteTargetPrintsItsStatusLineAndIsValid) {
    std::unique_ptr<FrameBufferObject> target;
    std::string log =
        logOf([&] { target = std::make_unique<FrameBufferObject>(32, 16, true, false); });
    EXPECT_EQ(statusLine("Framebuffer is complete.", GL_FRAMEBUFFER_COMPLETE_EXT, true), log);
    EXPECT_TRUE(target->isValid());
    EXPECT_EQ(32, target->getWidth());
    EXPECT_EQ(16, target->getHeight());
    EXPECT_NE(0, target->getId());
    EXPECT_EQ(GL_NO_ERROR, glGetError());
}

TEST_F(FrameBufferObjectTest, TargetOfNoSizeIsIncompleteAndSaysSo) {
    std::unique_ptr<FrameBufferObject> target;
    std::string log =
        logOf([&] { target = std::make_unique<FrameBufferObject>(0, 0, false, false); });
    EXPECT_EQ(statusLine("Framebuffer incomplete attachment",
                         GL_FRAMEBUFFER_INCOMPLETE_ATTACHMENT_EXT, false),
              log);
    EXPECT_FALSE(target->isValid());
    EXPECT_FALSE(KVLDemosys::system_error);
}

TEST_F(FrameBufferObjectTest, ConstructionLeavesTheScreenBound) {
    auto target = makeTarget(32, 32, true);
    EXPECT_EQ(0, currentFramebuffer());
    EXPECT_EQ(viewport(WIDTH, HEIGHT), currentViewport());
}

TEST_F(FrameBufferObjectTest, ColourTextureIsAnRgbaTextureOfTheTargetsSize) {
    auto target = makeTarget(48, 24);
    Texture* colour = target->getColorBuffer();
    ASSERT_NE(nullptr, colour);
    EXPECT_EQ(48, colour->getWidth());
    EXPECT_EQ(24, colour->getHeight());
    EXPECT_EQ(static_cast<unsigned int>(GL_TEXTURE_2D), colour->getType());
    GLint width = 0;
    GLint format = 0;
    glBindTexture(GL_TEXTURE_2D, colour->getID());
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &width);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_INTERNAL_FORMAT, &format);
    EXPECT_EQ(48, width);
    EXPECT_EQ(GL_RGBA, format);
}

TEST_F(FrameBufferObjectTest, SizeNeedNotBeAPowerOfTwoNorThatOfTheScreen) {
    auto target = makeTarget(50, 30, true);
    EXPECT_TRUE(target->isValid());
    target->bind();
    EXPECT_EQ(viewport(50, 30), currentViewport());
    testing::internal::CaptureStdout();
    target->release();
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
}

TEST_F(FrameBufferObjectTest, TargetWithDepthHasADepthRenderbufferOfTwentyFourBits) {
    auto target = makeTarget(32, 32, true);
    target->bind();
    EXPECT_EQ(GL_TEXTURE, attachmentType(GL_COLOR_ATTACHMENT0_EXT));
    EXPECT_EQ(GL_RENDERBUFFER_EXT, attachmentType(GL_DEPTH_ATTACHMENT_EXT));
    GLint depthBits = 0;
    glGetIntegerv(GL_DEPTH_BITS, &depthBits);
    EXPECT_EQ(24, depthBits);
    target->release();
}

TEST_F(FrameBufferObjectTest, StencilWithoutDepthGivesAColourAttachmentOnlyButShowsInTheText) {
    auto target = makeTarget(32, 32, false, true);
    EXPECT_TRUE(target->isValid());
    EXPECT_EQ("FrameBufferObject(32,32,COLOR_BUFFER,STENCIL_BUFFER)", target->toString());
    target->bind();
    EXPECT_EQ(GL_TEXTURE, attachmentType(GL_COLOR_ATTACHMENT0_EXT));
    EXPECT_EQ(GL_NONE, attachmentType(GL_DEPTH_ATTACHMENT_EXT));
    EXPECT_EQ(GL_NONE, attachmentType(GL_STENCIL_ATTACHMENT_EXT));
    GLint stencilBits = -1;
    glGetIntegerv(GL_STENCIL_BITS, &stencilBits);
    EXPECT_EQ(0, stencilBits);
    target->release();
}

TEST_F(FrameBufferObjectTest, TextNamesTheSizeAndTheBuffersAskedFor) {
    auto colourOnly = makeTarget(32, 16);
    auto withDepth = makeTarget(8, 4, true);
    auto withBoth = makeTarget(64, 64, true, true);
    EXPECT_EQ("FrameBufferObject(32,16,COLOR_BUFFER)", colourOnly->toString());
    EXPECT_EQ("FrameBufferObject(8,4,COLOR_BUFFER,DEPTH_BUFFER)", withDepth->toString());
    EXPECT_EQ("FrameBufferObject(64,64,COLOR_BUFFER,DEPTH_BUFFER,STENCIL_BUFFER)",
              withBoth->toString());
}

TEST_F(FrameBufferObjectTest, DeletingATargetDeletesItsColourTextureWithTheTexturesMessage) {
    auto target = makeTarget(16, 16, true);
    unsigned int texture = target->getColorBuffer()->getID();
    unsigned int framebuffer = static_cast<unsigned int>(target->getId());
    std::string log = logOf([&] { target.reset(); });
    EXPECT_EQ("Texture::ID(" + std::to_string(texture) + ") - deleted from graphics mem.\n", log);
    EXPECT_FALSE(glIsTexture(texture));
    EXPECT_FALSE(glIsFramebufferEXT(framebuffer));
}

// ---------------------------------------------------------------- the stack

TEST_F(FrameBufferObjectTest, SixteenNestedBindsAreSilentAndTheSeventeenthReportsOverflow) {
    std::vector<std::unique_ptr<FrameBufferObject>> targets;
    for (int i = 0; i < 17; i++) {
        targets.push_back(makeTarget(4 + i, 4));
    }
    for (int i = 0; i < 16; i++) {
        EXPECT_EQ("", logOf([&] { targets[i]->bind(); })) << "bind number " << i + 1;
    }
    EXPECT_FALSE(KVLDemosys::system_error);

    EXPECT_EQ("FBO: Overflow? 17 in stack\n", logOf([&] { targets[16]->bind(); }));
    EXPECT_TRUE(KVLDemosys::system_error);
    // Carried out all the same.
    EXPECT_EQ(targets[16]->getId(), currentFramebuffer());
    EXPECT_EQ(viewport(20, 4), currentViewport());

    // The overflowing entry stands on the stack and is released like any other.
    for (int i = 16; i >= 0; i--) {
        EXPECT_EQ("", logOf([&] { targets[i]->release(); })) << "release number " << 17 - i;
    }
    EXPECT_EQ(0, currentFramebuffer());
}

TEST_F(FrameBufferObjectTest, NestedTargetsRestoreTheOuterViewportAndThenTheScreensView) {
    auto outer = makeTarget(32, 16, true);
    auto inner = makeTarget(8, 4);

    outer->bind();
    EXPECT_EQ(viewport(32, 16), currentViewport());
    EXPECT_EQ(outer->getId(), currentFramebuffer());
    inner->bind();
    EXPECT_EQ(viewport(8, 4), currentViewport());
    EXPECT_EQ(inner->getId(), currentFramebuffer());

    // Matrices belong to the caller: a release between targets keeps them.
    loadIdentityMatrices();
    const Matrix16 identity = matrix(GL_PROJECTION_MATRIX);
    EXPECT_EQ("", logOf([&] { inner->release(); }));
    EXPECT_EQ(viewport(32, 16), currentViewport());
    EXPECT_EQ(outer->getId(), currentFramebuffer());
    EXPECT_EQ(identity, matrix(GL_PROJECTION_MATRIX));

    EXPECT_EQ("", logOf([&] { outer->release(); }));
    EXPECT_EQ(0, currentFramebuffer());
    EXPECT_EQ(viewport(WIDTH, HEIGHT), currentViewport());
    // The last release hands over to the screen's own view.
    const Matrix16 afterRelease = matrix(GL_PROJECTION_MATRIX);
    EXPECT_NE(identity, afterRelease);
    loadIdentityMatrices();
    KVLDemosys::setView();
    EXPECT_EQ(matrix(GL_PROJECTION_MATRIX), afterRelease);
    EXPECT_FALSE(KVLDemosys::system_error);
}

TEST_F(FrameBufferObjectTest, ReleaseOfTheWrongTargetChangesNothingSoTheRightReleasesStillWork) {
    auto outer = makeTarget(32, 32, true);
    auto inner = makeTarget(16, 16);
    outer->bind();
    inner->bind();

    EXPECT_EQ("FBO : *** STACK ERROR : FrameBufferObject(16,16,COLOR_BUFFER) is not "
              "FrameBufferObject(32,32,COLOR_BUFFER,DEPTH_BUFFER) ***\n",
              logOf([&] { outer->release(); }));
    EXPECT_FALSE(KVLDemosys::system_error);
    EXPECT_EQ(inner->getId(), currentFramebuffer());
    EXPECT_EQ(viewport(16, 16), currentViewport());

    EXPECT_EQ("", logOf([&] { inner->release(); }));
    EXPECT_EQ(outer->getId(), currentFramebuffer());
    EXPECT_EQ(viewport(32, 32), currentViewport());
    EXPECT_EQ("", logOf([&] { outer->release(); }));
    EXPECT_EQ(0, currentFramebuffer());
    EXPECT_FALSE(KVLDemosys::system_error);
}

TEST_F(FrameBufferObjectTest, BindOfAnInvalidTargetPushesNothingSoItsReleaseIsAnUnderflow) {
    auto broken = makeTarget(0, 0);
    ASSERT_FALSE(broken->isValid());
    glViewport(0, 0, 10, 20);

    EXPECT_EQ("", logOf([&] { broken->bind(); }));
    EXPECT_EQ(0, currentFramebuffer());
    EXPECT_EQ(viewport(10, 20), currentViewport());
    EXPECT_FALSE(KVLDemosys::system_error);

    EXPECT_EQ("FBO : *** STACK ERROR : Stack is already empty. Possible underflow ***\n",
              logOf([&] { broken->release(); }));
    EXPECT_TRUE(KVLDemosys::system_error);
    EXPECT_EQ(viewport(10, 20), currentViewport());
}

TEST_F(FrameBufferObjectTest, ReleaseOfATargetThatWasNeverBoundIsAnUnderflow) {
    auto target = makeTarget(16, 16);
    EXPECT_EQ("FBO : *** STACK ERROR : Stack is already empty. Possible underflow ***\n",
              logOf([&] { target->release(); }));
    EXPECT_TRUE(KVLDemosys::system_error);
    EXPECT_EQ(0, currentFramebuffer());
}

TEST_F(FrameBufferObjectTest, TargetBoundTwiceStandsTwiceAndNeedsTwoReleases) {
    auto target = makeTarget(16, 8);
    target->bind();
    EXPECT_EQ("", logOf([&] { target->bind(); }));

    EXPECT_EQ("", logOf([&] { target->release(); }));
    EXPECT_EQ(target->getId(), currentFramebuffer());
    EXPECT_EQ(viewport(16, 8), currentViewport());

    EXPECT_EQ("", logOf([&] { target->release(); }));
    EXPECT_EQ(0, currentFramebuffer());
    EXPECT_EQ(viewport(WIDTH, HEIGHT), currentViewport());

    EXPECT_EQ("FBO : *** STACK ERROR : Stack is already empty. Possible underflow ***\n",
              logOf([&] { target->release(); }));
}

TEST_F(FrameBufferObjectTest, BindAndReleaseLeaveClearColourAndMatricesAlone) {
    auto target = makeTarget(16, 16);
    glClearColor(0.25f, 0.5f, 0.75f, 1.0f);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(-2, 2, -2, 2, -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glTranslatef(0.5f, 0, 0);
    const Matrix16 projection = matrix(GL_PROJECTION_MATRIX);
    const Matrix16 modelview = matrix(GL_MODELVIEW_MATRIX);

    target->bind();
    std::array<GLfloat, 4> clearColour{};
    glGetFloatv(GL_COLOR_CLEAR_VALUE, clearColour.data());
    EXPECT_EQ((std::array<GLfloat, 4>{0.25f, 0.5f, 0.75f, 1.0f}), clearColour);
    EXPECT_EQ(projection, matrix(GL_PROJECTION_MATRIX));
    EXPECT_EQ(modelview, matrix(GL_MODELVIEW_MATRIX));
    target->release();
}

// ---------------------------------------------------------------- drawing

TEST_F(FrameBufferObjectTest, WhatIsDrawnIntoATargetComesBackThroughItsColourTexture) {
    auto target = makeTarget(32, 32, true);
    target->bind();
    glClearColor(1, 0, 0, 1);
    target->clear();
    loadIdentityMatrices();
    glColor3f(0, 1, 0);
    quad(-1, -1, 0, 1); // the left half
    target->release();

    EXPECT_EQ((Rgb{0, 255, 0}), texel(*target, 4, 16));
    EXPECT_EQ((Rgb{255, 0, 0}), texel(*target, 28, 16));
    // Nothing reached the screen.
    EXPECT_EQ((Rgb{0, 0, 0}), readRgb(8, 32));

    glColor3f(1, 1, 1);
    target->draw();
    EXPECT_EQ((Rgb{0, 255, 0}), readRgb(8, 32));
    EXPECT_EQ((Rgb{255, 0, 0}), readRgb(56, 32));
}

TEST_F(FrameBufferObjectTest, DrawCoversTheViewportWithTheTextureTheRightWayUp) {
    auto target = makeTarget(16, 16);
    target->bind();
    glClearColor(0, 0, 1, 1);
    target->clear();
    loadIdentityMatrices();
    glColor3f(1, 1, 0);
    quad(-1, 0, 1, 1); // the upper half
    target->release();

    glViewport(0, 0, 32, 32);
    glColor3f(1, 1, 1);
    target->draw();
    EXPECT_EQ((Rgb{255, 255, 0}), readRgb(16, 28));
    EXPECT_EQ((Rgb{0, 0, 255}), readRgb(16, 4));
    // Outside the viewport the screen stays as it was.
    EXPECT_EQ((Rgb{0, 0, 0}), readRgb(48, 48));
}

TEST_F(FrameBufferObjectTest, DrawKeepsTheCallersMatricesAndMatrixMode) {
    auto target = makeTarget(16, 16);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glRotatef(30, 0, 0, 1);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(-3, 3, -3, 3, -1, 1);
    const Matrix16 projection = matrix(GL_PROJECTION_MATRIX);
    const Matrix16 modelview = matrix(GL_MODELVIEW_MATRIX);

    target->draw();
    GLint mode = 0;
    glGetIntegerv(GL_MATRIX_MODE, &mode);
    EXPECT_EQ(GL_PROJECTION, mode);
    EXPECT_EQ(projection, matrix(GL_PROJECTION_MATRIX));
    EXPECT_EQ(modelview, matrix(GL_MODELVIEW_MATRIX));
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D));
    EXPECT_EQ(GL_NO_ERROR, glGetError());
}

TEST_F(FrameBufferObjectTest, DrawLeavesTheColourTextureClampedToItsEdge) {
    auto target = makeTarget(16, 16);
    GLint wrapS = 0;
    GLint wrapT = 0;
    glBindTexture(GL_TEXTURE_2D, target->getColorBuffer()->getID());
    glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, &wrapS);
    EXPECT_EQ(GL_REPEAT, wrapS);

    target->draw();
    glBindTexture(GL_TEXTURE_2D, target->getColorBuffer()->getID());
    glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, &wrapS);
    glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, &wrapT);
    EXPECT_EQ(GL_CLAMP_TO_EDGE, wrapS);
    EXPECT_EQ(GL_CLAMP_TO_EDGE, wrapT);
}

TEST_F(FrameBufferObjectTest, DrawOfAnInvalidTargetDrawsNothingAndChangesNoState) {
    auto broken = makeTarget(0, 0);
    ASSERT_FALSE(broken->isValid());
    glClearColor(0, 0, 1, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glColor3f(1, 1, 1);
    glMatrixMode(GL_PROJECTION);
    glBindTexture(GL_TEXTURE_2D, 0);
    const Matrix16 projection = matrix(GL_PROJECTION_MATRIX);

    broken->draw();
    EXPECT_EQ((Rgb{0, 0, 255}), readRgb(32, 32));
    GLint mode = 0;
    glGetIntegerv(GL_MATRIX_MODE, &mode);
    EXPECT_EQ(GL_PROJECTION, mode);
    GLint texture = -1;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &texture);
    EXPECT_EQ(0, texture);
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D));
    EXPECT_EQ(projection, matrix(GL_PROJECTION_MATRIX));
    EXPECT_EQ(GL_NO_ERROR, glGetError());
}

TEST_F(FrameBufferObjectTest, ColourBufferIsBoundOnlyForAValidTarget) {
    auto target = makeTarget(16, 16);
    auto broken = makeTarget(0, 0);
    GLint texture = -1;

    broken->bindColorBuffer();
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &texture);
    EXPECT_EQ(0, texture);
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D));

    target->bindColorBuffer();
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &texture);
    EXPECT_EQ(static_cast<GLint>(target->getColorBuffer()->getID()), texture);
    EXPECT_TRUE(glIsEnabled(GL_TEXTURE_2D));
    glDisable(GL_TEXTURE_2D);
}

// ---------------------------------------------------------------- clearing

TEST_F(FrameBufferObjectTest, ClearOfATargetWithoutDepthLeavesTheBoundDepthUntouched) {
    auto deep = makeTarget(16, 16, true);
    auto flat = makeTarget(16, 16);
    deep->bind();
    glClearDepth(0.25);
    glClear(GL_DEPTH_BUFFER_BIT);
    glClearDepth(1.0);
    glClearColor(0, 1, 0, 1);

    // The clears act on whatever is bound, here the deep target.
    flat->clear();
    EXPECT_NEAR(0.25, depthAt(8, 8), 1e-4);
    GLTestWindow::Rgb colour{};
    glReadPixels(8, 8, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, colour.data());
    EXPECT_EQ((Rgb{0, 255, 0}), colour);

    deep->clear();
    EXPECT_NEAR(1.0, depthAt(8, 8), 1e-4);
    deep->release();
}

TEST_F(FrameBufferObjectTest, ClearingOneBufferLeavesTheOtherAlone) {
    auto target = makeTarget(16, 16, true);
    target->bind();
    glClearColor(1, 0, 0, 1);
    glClearDepth(0.5);
    target->clear();
    GLTestWindow::Rgb colour{};

    glClearColor(0, 0, 1, 1);
    glClearDepth(0.75);
    target->clearRenderBuffer();
    glReadPixels(4, 4, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, colour.data());
    EXPECT_EQ((Rgb{255, 0, 0}), colour);
    EXPECT_NEAR(0.75, depthAt(4, 4), 1e-4);

    glClearDepth(0.125);
    target->clearColorBuffer();
    glReadPixels(4, 4, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, colour.data());
    EXPECT_EQ((Rgb{0, 0, 255}), colour);
    EXPECT_NEAR(0.75, depthAt(4, 4), 1e-4);
    target->release();
}
