#include "graphics/ScreenQuad.h"

#include "support/GLState.h"
#include "support/GLTestWindow.h"

#include <GL/glew.h>
#include <gtest/gtest.h>

namespace {

using Rgb = GLTestWindow::Rgb;

GLint matrixMode() {
    GLint mode = 0;
    glGetIntegerv(GL_MATRIX_MODE, &mode);
    return mode;
}

} // namespace

class ScreenQuadTest : public GLTestWindow {};

TEST_F(ScreenQuadTest, QuadCoversTheWholeViewportUnderIdentities) {
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glScalef(0.25f, 0.25f, 1.0f);
    ScreenQuad::pushIdentities();
    glColor3f(0, 1, 0);
    ScreenQuad::draw();
    ScreenQuad::popIdentities();
    for (int xy : {0, 31, 63}) {
        EXPECT_EQ((Rgb{0, 255, 0}), readRgb(xy, xy));
        EXPECT_EQ((Rgb{0, 255, 0}), readRgb(63 - xy, xy));
    }
}

TEST_F(ScreenQuadTest, TextureRunsFromZeroAtTheLowerLeftToOneAtTheUpperRight) {
    // Red grows with s, blue with t; nearest texels of a 2 x 2 texture.
    const unsigned char texels[12] = {0, 0, 0, 255, 0, 0, 0, 0, 255, 255, 0, 255};
    GLuint id = 0;
    glGenTextures(1, &id);
    glBindTexture(GL_TEXTURE_2D, id);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 2, 2, 0, GL_RGB, GL_UNSIGNED_BYTE, texels);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glEnable(GL_TEXTURE_2D);
    glColor3f(1, 1, 1);
    ScreenQuad::pushIdentities();
    ScreenQuad::draw();
    ScreenQuad::popIdentities();
    glDisable(GL_TEXTURE_2D);
    glDeleteTextures(1, &id);
    EXPECT_EQ((Rgb{0, 0, 0}), readRgb(8, 8));
    EXPECT_EQ((Rgb{255, 0, 0}), readRgb(56, 8));
    EXPECT_EQ((Rgb{0, 0, 255}), readRgb(8, 56));
    EXPECT_EQ((Rgb{255, 0, 255}), readRgb(56, 56));
}

TEST_F(ScreenQuadTest, PoppingGivesBackBothMatricesAndLeavesTheModelviewMode) {
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glTranslatef(0.5f, 0, 0);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glTranslatef(0, 0.25f, 0);
    glMatrixMode(GL_PROJECTION);
    ScreenQuad::pushIdentities();
    EXPECT_EQ(GL_MODELVIEW, matrixMode());
    EXPECT_EQ(0.0f, matrix(GL_PROJECTION_MATRIX)[12]);
    EXPECT_EQ(0.0f, matrix(GL_MODELVIEW_MATRIX)[13]);
    ScreenQuad::popIdentities();
    EXPECT_EQ(GL_MODELVIEW, matrixMode());
    EXPECT_EQ(0.5f, matrix(GL_PROJECTION_MATRIX)[12]);
    EXPECT_EQ(0.25f, matrix(GL_MODELVIEW_MATRIX)[13]);
}
