#include "graphics/Image.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

// The pictures that the production ships in resources/graphics/, read as
// the player reads them.

namespace {

std::string source(const std::string& name) {
    return std::string(KVL_SOURCE_DIR) + "/resources/graphics/" + name;
}

// The pixel at column x of file row y (0 is the top row of the picture).
const uint8_t* pixelAt(const Image& image, int x, int y) {
    int row = image.getHeight() - 1 - y;
    return image.getData() + (row * image.getWidth() + x) * image.getPixelSize();
}

} // namespace

TEST(ProductionImages, PauseIconIsA64By64RgbaPicture) {
    Image image(source("sysicon_pause.png"));
    ASSERT_TRUE(image.exists());
    EXPECT_EQ(64, image.getWidth());
    EXPECT_EQ(64, image.getHeight());
    EXPECT_EQ(32, image.getBpp());
    EXPECT_EQ(4, image.getPixelSize());
    ASSERT_NE(nullptr, image.getData());
}

TEST(ProductionImages, PauseIconHasTwoOpaqueWhiteBarsOnAClearGround) {
    Image image(source("sysicon_pause.png"));
    ASSERT_NE(nullptr, image.getData());
    for (int x : {22, 42}) {
        const uint8_t* bar = pixelAt(image, x, 32);
        EXPECT_EQ(255, bar[0]) << "bar at column " << x;
        EXPECT_EQ(255, bar[1]) << "bar at column " << x;
        EXPECT_EQ(255, bar[2]) << "bar at column " << x;
        EXPECT_EQ(255, bar[3]) << "bar at column " << x;
    }
    // Between the bars the outline is dark, and far from them nothing shows.
    const uint8_t* between = pixelAt(image, 32, 32);
    EXPECT_LT(between[0], 64);
    EXPECT_EQ(0, pixelAt(image, 0, 0)[3]);
    EXPECT_EQ(0, pixelAt(image, 63, 63)[3]);
    EXPECT_EQ(0, pixelAt(image, 32, 2)[3]);
}

TEST(ProductionImages, LogoIsA256By128RgbaPicture) {
    Image image(source("kvllogo.png"));
    ASSERT_TRUE(image.exists());
    EXPECT_EQ(256, image.getWidth());
    EXPECT_EQ(128, image.getHeight());
    EXPECT_EQ(32, image.getBpp());
    ASSERT_NE(nullptr, image.getData());
}

TEST(ProductionImages, LogoHasBrightOpaqueLettersOnAClearGround) {
    Image image(source("kvllogo.png"));
    ASSERT_NE(nullptr, image.getData());
    EXPECT_EQ(0, pixelAt(image, 0, 0)[3]);
    EXPECT_EQ(0, pixelAt(image, 255, 127)[3]);
    int opaque = 0;
    int bright = 0;
    for (int y = 0; y < 128; y++) {
        for (int x = 0; x < 256; x++) {
            const uint8_t* p = pixelAt(image, x, y);
            if (p[3] == 255) {
                opaque++;
                if (p[0] > 200 && p[1] > 200 && p[2] > 200) {
                    bright++;
                }
            }
        }
    }
    // Three letters of 12-pixel blocks, with a near-white core in their strokes.
    EXPECT_GT(opaque, 2000);
    EXPECT_LT(opaque, 256 * 128 / 2);
    EXPECT_GT(bright, 200);
}

TEST(ProductionImages, GridIsA256By256RgbPicture) {
    Image image(source("grid.png"));
    ASSERT_TRUE(image.exists());
    EXPECT_EQ(256, image.getWidth());
    EXPECT_EQ(256, image.getHeight());
    EXPECT_EQ(24, image.getBpp());
    EXPECT_EQ(3, image.getPixelSize());
    ASSERT_NE(nullptr, image.getData());
}

TEST(ProductionImages, GridTilesWithoutASeam) {
    Image image(source("grid.png"));
    ASSERT_NE(nullptr, image.getData());
    for (int i = 0; i < 256; i += 5) {
        for (int c = 0; c < 3; c++) {
            EXPECT_EQ(pixelAt(image, 0, i)[c], pixelAt(image, 255, i)[c]) << "row " << i;
            EXPECT_EQ(pixelAt(image, i, 0)[c], pixelAt(image, i, 255)[c]) << "column " << i;
        }
    }
    // Lines glow against a dark ground.
    EXPECT_LT(pixelAt(image, 16, 16)[1], 80);
    EXPECT_GT(pixelAt(image, 32, 16)[1], 200);
}
