#include "support/GLTestWindow.h"

#include "runtime/KVLDemosys.h"

#include <SDL/SDL.h>

#include <ostream>

void GLTestWindow::SetUp() {
    KVLDemosys::resetState();
    ASSERT_TRUE(KVLDemosys::screenOpen(WIDTH, HEIGHT, 32, 1, 0)) << KVLDemosys::getMessage();
    ASSERT_EQ(GLEW_OK, glewInit());
    ASSERT_TRUE(GLEW_VERSION_2_0) << "no OpenGL 2.0: is this running under Xvfb with Mesa?";
    glViewport(0, 0, WIDTH, HEIGHT);
    loadIdentityMatrices();
    glDisable(GL_DEPTH_TEST);
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

void GLTestWindow::TearDown() {
    SDL_Quit();
    KVLDemosys::resetState();
}

GLTestWindow::Rgb GLTestWindow::readRgb(int x, int y) {
    Rgb pixel{};
    glFinish();
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadBuffer(GL_BACK);
    glReadPixels(x, y, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, pixel.data());
    return pixel;
}

GLTestWindow::Rgba GLTestWindow::readPixel(int x, int y) {
    Rgba pixel{};
    glFinish();
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadBuffer(GL_BACK);
    glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel.data());
    return pixel;
}

void GLTestWindow::loadIdentityMatrices() {
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
}

std::ostream& operator<<(std::ostream& out, const GLTestWindow::Rgb& pixel) {
    return out << pixelText(pixel);
}

std::string pixelText(const GLTestWindow::Rgb& pixel) {
    return "(" + std::to_string(pixel[0]) + ", " + std::to_string(pixel[1]) + ", " +
           std::to_string(pixel[2]) + ")";
}
