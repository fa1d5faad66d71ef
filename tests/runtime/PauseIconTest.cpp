#include "runtime/Demo.h"

#include "graphics/Texture.h"
#include "runtime/DataTexturePool.h"
#include "runtime/KVLDemosys.h"
#include "runtime/ResourceLoader.h"
#include "support/GLTestWindow.h"
#include "support/PngWriter.h"
#include "support/TempDir.h"
#include "timeline/Timeline.h"

#include <GL/glew.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

// The pause symbol in the lower right corner, drawn with the script's icon.

namespace {

// 16 x 16 in four quadrants, as the file stores them: top row first.
const GLTestWindow::Rgb TOP_LEFT{255, 0, 0};
const GLTestWindow::Rgb TOP_RIGHT{0, 255, 0};
const GLTestWindow::Rgb BOTTOM_LEFT{0, 0, 255};
const GLTestWindow::Rgb BOTTOM_RIGHT{255, 255, 0};

std::vector<uint8_t> quadrantIcon() {
    std::vector<uint8_t> pixels;
    for (int y = 0; y < 16; y++) {
        for (int x = 0; x < 16; x++) {
            const GLTestWindow::Rgb& colour =
                (y < 8) ? (x < 8 ? TOP_LEFT : TOP_RIGHT) : (x < 8 ? BOTTOM_LEFT : BOTTOM_RIGHT);
            pixels.insert(pixels.end(), {colour[0], colour[1], colour[2], 255});
        }
    }
    return PngWriter::rgba(16, 16, pixels);
}

} // namespace

class PauseIcon : public GLTestWindow {
protected:
    void SetUp() override {
        GLTestWindow::SetUp();
        KVLDemosys::screenWidth = WIDTH;
        KVLDemosys::screenHeight = HEIGHT;
        testing::internal::CaptureStdout();
        demo = new Demo(1, arguments);
        testing::internal::GetCapturedStdout();
        KVLDemosys::timeline = new Timeline();
        KVLDemosys::timeline->init();
    }
    void TearDown() override {
        testing::internal::CaptureStdout();
        demo->getLoader()->dispose();
        testing::internal::GetCapturedStdout();
        delete demo;
        GLTestWindow::TearDown();
    }

    void loadIcon() {
        std::string path = directory.file("sysicon_pause.png");
        ASSERT_TRUE(PngWriter::save(path, quadrantIcon()));
        testing::internal::CaptureStdout();
        Texture* icon = KVLDemosys::loadTexture(path, GL_TEXTURE_2D, false);
        testing::internal::GetCapturedStdout();
        ASSERT_NE(nullptr, icon);
        KVLDemosys::texturePool->addTexture("sysicon_pause", icon);
    }

    void drawPaused() {
        KVLDemosys::pause = true;
        loadIdentityMatrices();
        glClearColor(0, 0, 0, 0);
        glClear(GL_COLOR_BUFFER_BIT);
        demo->drawPauseSymbol();
    }

    char program[8] = "kvldemo";
    char* arguments[2] = {program, nullptr};
    Demo* demo = nullptr;
    TempDir directory;
};

// The quad spans x 0.825..0.975 and y -0.955..-0.765 in clip space, that is
// pixels 58.4..63.2 across and 1.4..7.5 up in the 64 x 64 window.
TEST_F(PauseIcon, PauseQuadShowsTheIconsColoursTheRightWayUp) {
    loadIcon();
    drawPaused();
    EXPECT_EQ(TOP_LEFT, readRgb(59, 6));
    EXPECT_EQ(TOP_RIGHT, readRgb(62, 6));
    EXPECT_EQ(BOTTOM_LEFT, readRgb(59, 2));
    EXPECT_EQ(BOTTOM_RIGHT, readRgb(62, 2));
    EXPECT_EQ((Rgb{0, 0, 0}), readRgb(50, 4));
}

TEST_F(PauseIcon, IconIsReleasedAfterThePauseQuad) {
    loadIcon();
    drawPaused();
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D));
    EXPECT_FALSE(glIsEnabled(GL_COLOR_MATERIAL));
    EXPECT_FALSE(glIsEnabled(GL_DEPTH_TEST));
}

TEST_F(PauseIcon, NoIconIsDrawnWhileRunning) {
    loadIcon();
    KVLDemosys::pause = false;
    loadIdentityMatrices();
    glClear(GL_COLOR_BUFFER_BIT);
    demo->drawPauseSymbol();
    EXPECT_EQ((Rgb{0, 0, 0}), readRgb(59, 6));
    EXPECT_EQ((Rgb{0, 0, 0}), readRgb(62, 2));
}
