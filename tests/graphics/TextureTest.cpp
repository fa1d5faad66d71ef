#include "graphics/Texture.h"

#include "runtime/KVLDemosys.h"
#include "support/GLTestWindow.h"
#include "support/PngWriter.h"
#include "support/TempDir.h"

#include <GL/glew.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using Rgb = GLTestWindow::Rgb;

// A 4 x 4 picture with a colour of its own in every cell, listed as the file
// stores them: top row first.
const std::vector<Rgb> CELLS = {
    {255, 0, 0},   {0, 255, 0},   {0, 0, 255},    {255, 255, 0},  // top row of the file
    {255, 0, 255}, {0, 255, 255}, {128, 0, 0},    {0, 128, 0},    //
    {0, 0, 128},   {128, 128, 0}, {128, 0, 128},  {0, 128, 128},  //
    {64, 32, 16},  {16, 64, 32},  {200, 100, 50}, {255, 255, 255} // bottom row of the file
};

std::vector<uint8_t> cellsAsRgba() {
    std::vector<uint8_t> pixels;
    for (const Rgb& cell : CELLS) {
        pixels.insert(pixels.end(), {cell[0], cell[1], cell[2], 255});
    }
    return pixels;
}

// Five pixels a row, three rows: 15 bytes a row, which is no multiple of 4.
std::vector<uint8_t> oddRgbPixels() {
    std::vector<uint8_t> pixels;
    for (int y = 0; y < 3; y++) {
        for (int x = 0; x < 5; x++) {
            pixels.insert(pixels.end(),
                          {static_cast<uint8_t>(40 * x + 20), static_cast<uint8_t>(80 * y + 40),
                           static_cast<uint8_t>(255 - 50 * x)});
        }
    }
    return pixels;
}

GLint textureParameter(unsigned int target, unsigned int id, GLenum name) {
    GLint value = 0;
    glBindTexture(target, id);
    glGetTexParameteriv(target, name, &value);
    return value;
}

GLint levelParameter(unsigned int target, unsigned int id, GLenum name) {
    GLint value = 0;
    glBindTexture(target, id);
    glGetTexLevelParameteriv(target, 0, name, &value);
    return value;
}

GLint unpackAlignment() {
    GLint value = 0;
    glGetIntegerv(GL_UNPACK_ALIGNMENT, &value);
    return value;
}

} // namespace

class TextureInWindow : public GLTestWindow {
protected:
    void TearDown() override {
        testing::internal::CaptureStdout();
        textures.clear();
        testing::internal::GetCapturedStdout();
        GLTestWindow::TearDown();
    }

    std::string save(const std::string& name, const std::vector<uint8_t>& bytes) {
        std::string path = dir.file(name);
        EXPECT_FALSE(bytes.empty()) << "the test picture " << name << " did not encode";
        EXPECT_TRUE(PngWriter::save(path, bytes));
        return path;
    }

    // loadTexture with its output captured into `log`; the texture is freed
    // with the window.
    Texture* load(const std::string& path, unsigned int type, bool mipmap,
                  std::string* log = nullptr) {
        testing::internal::CaptureStdout();
        Texture* texture = KVLDemosys::loadTexture(path, type, mipmap);
        std::string output = testing::internal::GetCapturedStdout();
        if (log != nullptr) {
            *log = output;
        }
        if (texture != nullptr) {
            textures.emplace_back(texture);
        }
        return texture;
    }

    static void clearTo(float r, float g, float b) {
        glClearColor(r, g, b, 1);
        glClear(GL_COLOR_BUFFER_BIT);
    }

    TempDir dir;
    std::vector<std::unique_ptr<Texture>> textures;
};

// ---------------------------------------------------------------- loading

TEST_F(TextureInWindow, RgbaPictureOf256By128CountsAsAnImageOf131072Bytes) {
    std::vector<uint8_t> pixels(256 * 128 * 4, 90);
    std::vector<uint8_t> bytes = PngWriter::rgba(256, 128, pixels);
    std::string path = save("big.png", bytes);
    std::string log;
    Texture* texture = load(path, GL_TEXTURE_2D, false, &log);
    ASSERT_NE(nullptr, texture);
    EXPECT_EQ("", log);
    EXPECT_EQ(256, texture->getWidth());
    EXPECT_EQ(128, texture->getHeight());
    EXPECT_EQ(32, texture->getBPP());
    EXPECT_EQ(131072, texture->getMemorySize());
    EXPECT_EQ(static_cast<int>(bytes.size()), texture->getFileSize());
    EXPECT_EQ(static_cast<unsigned int>(GL_TEXTURE_2D), texture->getType());
    EXPECT_FALSE(texture->isMipmapped());
    EXPECT_EQ(path, texture->getFilename());
    EXPECT_NE(0u, texture->getID());
    EXPECT_EQ(256, levelParameter(GL_TEXTURE_2D, texture->getID(), GL_TEXTURE_WIDTH));
    EXPECT_EQ(128, levelParameter(GL_TEXTURE_2D, texture->getID(), GL_TEXTURE_HEIGHT));
}

TEST_F(TextureInWindow, KnownPictureDrawnFullScreenShowsTheFilesFirstRowAtTheTop) {
    Texture* texture =
        load(save("cells.png", PngWriter::rgba(4, 4, cellsAsRgba())), GL_TEXTURE_2D, false);
    ASSERT_NE(nullptr, texture);
    texture->setInterpolation(GL_NEAREST);
    glColor4f(1, 1, 1, 1);
    texture->drawQuadFS();
    for (int row = 0; row < 4; row++) {
        for (int column = 0; column < 4; column++) {
            // Row 0 of the file is the top band of the window.
            int x = column * 16 + 8;
            int y = (3 - row) * 16 + 8;
            EXPECT_EQ(CELLS[row * 4 + column], readRgb(x, y))
                << "file row " << row << ", column " << column;
        }
    }
}

TEST_F(TextureInWindow, RgbRowsThatAreNoMultipleOfFourBytesUploadOnlyThePicturesOwnBytes) {
    std::vector<uint8_t> pixels = oddRgbPixels();
    Texture* texture = load(save("odd.png", PngWriter::rgb(5, 3, pixels)), GL_TEXTURE_2D, false);
    ASSERT_NE(nullptr, texture);
    EXPECT_EQ(24, texture->getBPP());
    EXPECT_EQ(4, unpackAlignment());
    texture->setInterpolation(GL_NEAREST);
    glColor4f(1, 1, 1, 1);
    texture->drawQuadFS();
    for (int row = 0; row < 3; row++) {
        for (int column = 0; column < 5; column++) {
            int x = static_cast<int>((column + 0.5) * 64 / 5);
            int y = static_cast<int>((2 - row + 0.5) * 64 / 3);
            const uint8_t* p = &pixels[(row * 5 + column) * 3];
            EXPECT_EQ((Rgb{p[0], p[1], p[2]}), readRgb(x, y))
                << "file row " << row << ", column " << column;
        }
    }
}

TEST_F(TextureInWindow, TwoPixelWideRgbPictureShowsBothRowsRight) {
    std::vector<uint8_t> pixels = {255, 0, 0, 0, 255, 0, 0, 0, 255, 255, 255, 255};
    Texture* texture = load(save("two.png", PngWriter::rgb(2, 2, pixels)), GL_TEXTURE_2D, false);
    ASSERT_NE(nullptr, texture);
    texture->setInterpolation(GL_NEAREST);
    glColor4f(1, 1, 1, 1);
    texture->drawQuadFS();
    EXPECT_EQ((Rgb{255, 0, 0}), readRgb(16, 48));
    EXPECT_EQ((Rgb{0, 255, 0}), readRgb(48, 48));
    EXPECT_EQ((Rgb{0, 0, 255}), readRgb(16, 16));
    EXPECT_EQ((Rgb{255, 255, 255}), readRgb(48, 16));
}

TEST_F(TextureInWindow, UnpackAlignmentOfTheCallerIsRestoredAfterTheUpload) {
    glPixelStorei(GL_UNPACK_ALIGNMENT, 8);
    Texture* texture =
        load(save("odd.png", PngWriter::rgb(5, 3, oddRgbPixels())), GL_TEXTURE_2D, false);
    ASSERT_NE(nullptr, texture);
    EXPECT_EQ(8, unpackAlignment());
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
}

TEST_F(TextureInWindow, GreyPictureLoadsSilentlyWithBpp8AndNoImageInItsGlObject) {
    std::string log;
    Texture* texture = load(save("grey.png", PngWriter::grey(4, 4, std::vector<uint8_t>(16, 99))),
                            GL_TEXTURE_2D, false, &log);
    ASSERT_NE(nullptr, texture);
    EXPECT_EQ("", log);
    EXPECT_EQ(8, texture->getBPP());
    EXPECT_EQ(4, texture->getWidth());
    EXPECT_EQ(0, levelParameter(GL_TEXTURE_2D, texture->getID(), GL_TEXTURE_WIDTH));
}

TEST_F(TextureInWindow, SixteenBitRgbPictureGivesBpp48AndNoImage) {
    std::string log;
    Texture* texture =
        load(save("rgb16.png", PngWriter::rgb16(4, 4, std::vector<uint16_t>(48, 0xffff))),
             GL_TEXTURE_2D, false, &log);
    ASSERT_NE(nullptr, texture);
    EXPECT_EQ("", log);
    EXPECT_EQ(48, texture->getBPP());
    EXPECT_EQ(0, levelParameter(GL_TEXTURE_2D, texture->getID(), GL_TEXTURE_WIDTH));
}

TEST_F(TextureInWindow, PalettePictureGivesBpp8AndNoImage) {
    Texture* texture = load(save("palette.png", PngWriter::palette(3, 3, {1, 2, 3, 4, 5, 6},
                                                                   std::vector<uint8_t>(9, 1))),
                            GL_TEXTURE_2D, false);
    ASSERT_NE(nullptr, texture);
    EXPECT_EQ(8, texture->getBPP());
    EXPECT_EQ(0, levelParameter(GL_TEXTURE_2D, texture->getID(), GL_TEXTURE_WIDTH));
}

TEST_F(TextureInWindow, MissingFileGivesNullAndPrintsNothing) {
    std::string log = "untouched";
    EXPECT_EQ(nullptr, load(dir.file("absent.png"), GL_TEXTURE_2D, false, &log));
    EXPECT_EQ("", log);
}

TEST_F(TextureInWindow,
       MipmappedLoadPrintsOneGlErrorForTheMagnificationFilterAndDrawsRightAfterBind) {
    // Four quadrants at the window's own size: every pixel is one texel.
    std::vector<uint8_t> pixels;
    for (int y = 0; y < 64; y++) {
        for (int x = 0; x < 64; x++) {
            bool top = y < 32;
            bool left = x < 32;
            pixels.insert(pixels.end(), {static_cast<uint8_t>(left ? 255 : 0),
                                         static_cast<uint8_t>(top ? 255 : 0),
                                         static_cast<uint8_t>(top && left ? 0 : 200), 255});
        }
    }
    std::string path = save("quadrants.png", PngWriter::rgba(64, 64, pixels));
    std::string log;
    Texture* texture = load(path, GL_TEXTURE_2D, true, &log);
    ASSERT_NE(nullptr, texture);
    EXPECT_EQ("[GL_ERROR] 'invalid enumerant' in ->" + path + "\n", log);
    EXPECT_TRUE(texture->isMipmapped());
    // Refused, so the texture still has the filter it was born with.
    EXPECT_EQ(GL_LINEAR, textureParameter(GL_TEXTURE_2D, texture->getID(), GL_TEXTURE_MAG_FILTER));
    EXPECT_EQ(GL_LINEAR_MIPMAP_LINEAR,
              textureParameter(GL_TEXTURE_2D, texture->getID(), GL_TEXTURE_MIN_FILTER));
    EXPECT_GT(levelParameter(GL_TEXTURE_2D, texture->getID(), GL_TEXTURE_WIDTH), 0);

    glColor4f(1, 1, 1, 1);
    texture->drawQuadFS();
    EXPECT_EQ(GL_LINEAR, textureParameter(GL_TEXTURE_2D, texture->getID(), GL_TEXTURE_MAG_FILTER));
    EXPECT_EQ((Rgb{255, 255, 0}), readRgb(16, 48));
    EXPECT_EQ((Rgb{0, 255, 200}), readRgb(48, 48));
    EXPECT_EQ((Rgb{255, 0, 200}), readRgb(16, 16));
    EXPECT_EQ((Rgb{0, 0, 200}), readRgb(48, 16));
    EXPECT_EQ(static_cast<GLenum>(GL_NO_ERROR), glGetError());
}

TEST_F(TextureInWindow, MipmappedRgbPictureOfOddWidthBuildsItsLevelsFromItsOwnBytes) {
    std::vector<uint8_t> pixels = oddRgbPixels();
    std::string log;
    Texture* texture =
        load(save("oddmip.png", PngWriter::rgb(5, 3, pixels)), GL_TEXTURE_2D, true, &log);
    ASSERT_NE(nullptr, texture);
    EXPECT_EQ(0u, log.find("[GL_ERROR] '")) << log;
    EXPECT_EQ(4, unpackAlignment());
    EXPECT_GT(levelParameter(GL_TEXTURE_2D, texture->getID(), GL_TEXTURE_WIDTH), 0);
}

TEST_F(TextureInWindow, OneDimensionalTextureUsesTheLastRowOfTheFile) {
    std::vector<uint8_t> pixels = {9, 9, 9, 9, 9, 9, 9, 9, 9, 255, 0, 0, 0, 255, 0, 0, 0, 255};
    Texture* texture = load(save("ramp.png", PngWriter::rgb(3, 2, pixels)), GL_TEXTURE_1D, false);
    ASSERT_NE(nullptr, texture);
    EXPECT_EQ(static_cast<unsigned int>(GL_TEXTURE_1D), texture->getType());
    EXPECT_EQ(3, levelParameter(GL_TEXTURE_1D, texture->getID(), GL_TEXTURE_WIDTH));
    texture->setInterpolation(GL_NEAREST);
    glColor4f(1, 1, 1, 1);
    texture->drawQuadFS();
    EXPECT_EQ((Rgb{255, 0, 0}), readRgb(10, 32));
    EXPECT_EQ((Rgb{0, 255, 0}), readRgb(32, 50));
    EXPECT_EQ((Rgb{0, 0, 255}), readRgb(54, 10));
}

TEST_F(TextureInWindow, MipmapRequestOnAOneDimensionalTextureIsOnlyRemembered) {
    std::string log;
    Texture* texture =
        load(save("ramp.png", PngWriter::rgba(4, 1, cellsAsRgba())), GL_TEXTURE_1D, true, &log);
    ASSERT_NE(nullptr, texture);
    EXPECT_EQ("", log);
    EXPECT_TRUE(texture->isMipmapped());
    EXPECT_EQ(GL_LINEAR, textureParameter(GL_TEXTURE_1D, texture->getID(), GL_TEXTURE_MIN_FILTER));
}

TEST_F(TextureInWindow, UnknownTargetStillGetsAGlNameAndATexture) {
    std::string log;
    Texture* texture =
        load(save("cells.png", PngWriter::rgba(4, 4, cellsAsRgba())), GL_TEXTURE_3D, false, &log);
    ASSERT_NE(nullptr, texture);
    EXPECT_EQ("", log);
    EXPECT_NE(0u, texture->getID());
    EXPECT_EQ(static_cast<unsigned int>(GL_TEXTURE_3D), texture->getType());
    EXPECT_EQ(32, texture->getBPP());
}

TEST_F(TextureInWindow, FileThatIsNoPngStillGivesATextureWithoutAnImage) {
    std::string path = dir.file("fake.png");
    dir.write("fake.png", "GIF89a, not a PNG at all");
    std::string log;
    testing::internal::CaptureStderr();
    Texture* texture = load(path, GL_TEXTURE_2D, false, &log);
    std::string errors = testing::internal::GetCapturedStderr();
    ASSERT_NE(nullptr, texture);
    EXPECT_EQ("", log);
    EXPECT_NE(std::string::npos, errors.find("libpng error")) << errors;
    EXPECT_EQ(0, texture->getBPP());
    EXPECT_EQ(0, texture->getWidth());
    EXPECT_EQ(24, texture->getFileSize());
    EXPECT_EQ(0, levelParameter(GL_TEXTURE_2D, texture->getID(), GL_TEXTURE_WIDTH));
    EXPECT_EQ(4, unpackAlignment());
    EXPECT_EQ(static_cast<GLenum>(GL_NO_ERROR), glGetError());
}

TEST_F(TextureInWindow, TruncatedPictureStillUploadsAnImageOfItsFullSize) {
    std::vector<uint8_t> pixels;
    std::mt19937 random(3);
    for (int i = 0; i < 32 * 32 * 4; i++) {
        pixels.push_back(static_cast<uint8_t>(random()));
    }
    std::vector<uint8_t> bytes = PngWriter::rgba(32, 32, pixels);
    bytes.resize(bytes.size() * 2 / 3);
    testing::internal::CaptureStderr();
    Texture* texture = load(save("cut.png", bytes), GL_TEXTURE_2D, false);
    testing::internal::GetCapturedStderr();
    ASSERT_NE(nullptr, texture);
    EXPECT_EQ(32, texture->getWidth());
    EXPECT_EQ(32, levelParameter(GL_TEXTURE_2D, texture->getID(), GL_TEXTURE_WIDTH));
}

// ---------------------------------------------------------------- the object

TEST_F(TextureInWindow, TextTellsFileIdSizeAndBppWithItsUnbalancedQuote) {
    Texture texture("gfx/logo.png", 7);
    texture.setSize(256, 128);
    texture.setBPP(24);
    EXPECT_EQ("Texture {file='gfx/logo.png',id=7',size='256,128',bpp='24'}\n", texture.toString());
}

TEST_F(TextureInWindow, TextOfAMipmappedTextureEndsInTheQuoteMipmappedAndTheBrace) {
    Texture* texture =
        load(save("cells.png", PngWriter::rgba(4, 4, cellsAsRgba())), GL_TEXTURE_2D, true);
    ASSERT_NE(nullptr, texture);
    std::string text = texture->toString();
    const std::string ending = "',bpp='32' mipmapped }\n";
    ASSERT_GE(text.size(), ending.size());
    EXPECT_EQ(ending, text.substr(text.size() - ending.size())) << text;
}

TEST_F(TextureInWindow, WrappedNameKeepsTheDefaultsUntilTheSettersChangeThem) {
    std::unique_ptr<Texture> texture(new Texture("name", 0));
    EXPECT_EQ(32, texture->getBPP());
    EXPECT_EQ(0, texture->getFileSize());
    EXPECT_EQ(static_cast<unsigned int>(GL_TEXTURE_2D), texture->getType());
    EXPECT_FALSE(texture->isMipmapped());
    texture->setFilename("other.png");
    texture->setType(GL_TEXTURE_1D);
    texture->isMipmapped(true);
    texture->setFileSize(1234);
    EXPECT_EQ("other.png", texture->getFilename());
    EXPECT_EQ(static_cast<unsigned int>(GL_TEXTURE_1D), texture->getType());
    EXPECT_TRUE(texture->isMipmapped());
    EXPECT_EQ(1234, texture->getFileSize());
    testing::internal::CaptureStdout();
    texture.reset();
    testing::internal::GetCapturedStdout();
}

TEST_F(TextureInWindow, MemorySizeCountsTheBaseLevelOnlyAndTruncates) {
    Texture texture("x", 0);
    texture.setSize(3, 3);
    texture.setBPP(4);
    EXPECT_EQ(4, texture.getMemorySize());
    texture.isMipmapped(true);
    texture.setSize(64, 64);
    texture.setBPP(32);
    EXPECT_EQ(16384, texture.getMemorySize());
}

TEST_F(TextureInWindow, RenderTargetHasBpp32AnEmptyNameAndFourBytesPerTexel) {
    std::unique_ptr<Texture> target(new Texture(64, 32));
    EXPECT_EQ(32, target->getBPP());
    EXPECT_EQ("", target->getFilename());
    EXPECT_EQ(64 * 32 * 4, target->getMemorySize());
    EXPECT_EQ(0, target->getFileSize());
    EXPECT_FALSE(target->isMipmapped());
    EXPECT_EQ(static_cast<unsigned int>(GL_TEXTURE_2D), target->getType());
    GLint bound = -1;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
    EXPECT_EQ(0, bound);
    unsigned int id = target->getID();
    EXPECT_TRUE(glIsTexture(id));
    EXPECT_EQ(64, levelParameter(GL_TEXTURE_2D, id, GL_TEXTURE_WIDTH));
    EXPECT_EQ(32, levelParameter(GL_TEXTURE_2D, id, GL_TEXTURE_HEIGHT));
    EXPECT_EQ(GL_REPEAT, textureParameter(GL_TEXTURE_2D, id, GL_TEXTURE_WRAP_S));
    EXPECT_EQ(GL_REPEAT, textureParameter(GL_TEXTURE_2D, id, GL_TEXTURE_WRAP_T));
    EXPECT_EQ(GL_LINEAR, textureParameter(GL_TEXTURE_2D, id, GL_TEXTURE_MIN_FILTER));
    EXPECT_EQ(static_cast<GLenum>(GL_NO_ERROR), glGetError());
    testing::internal::CaptureStdout();
    target.reset();
    testing::internal::GetCapturedStdout();
}

TEST_F(TextureInWindow, DestructorSaysWhichNameItFreesAndFreesIt) {
    Texture* target = new Texture(8, 8);
    unsigned int id = target->getID();
    testing::internal::CaptureStdout();
    delete target;
    EXPECT_EQ("Texture::ID(" + std::to_string(id) + ") - deleted from graphics mem.\n",
              testing::internal::GetCapturedStdout());
    EXPECT_FALSE(glIsTexture(id));
}

TEST_F(TextureInWindow, BindEnablesTheTargetAndSetsFiltersEveryTimeSoAChangeShowsAtOnce) {
    std::unique_ptr<Texture> target(new Texture(8, 8));
    target->bind();
    GLint bound = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
    EXPECT_EQ(static_cast<GLint>(target->getID()), bound);
    EXPECT_TRUE(glIsEnabled(GL_TEXTURE_2D));
    GLint mode = 0;
    glGetTexEnviv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, &mode);
    EXPECT_EQ(GL_MODULATE, mode);
    target->setInterpolation(GL_NEAREST);
    EXPECT_EQ(GL_LINEAR, textureParameter(GL_TEXTURE_2D, target->getID(), GL_TEXTURE_MAG_FILTER));
    target->bind();
    EXPECT_EQ(GL_NEAREST, textureParameter(GL_TEXTURE_2D, target->getID(), GL_TEXTURE_MAG_FILTER));
    EXPECT_EQ(GL_NEAREST, textureParameter(GL_TEXTURE_2D, target->getID(), GL_TEXTURE_MIN_FILTER));
    target->isMipmapped(true);
    target->bind();
    EXPECT_EQ(GL_LINEAR, textureParameter(GL_TEXTURE_2D, target->getID(), GL_TEXTURE_MAG_FILTER));
    EXPECT_EQ(GL_LINEAR_MIPMAP_LINEAR,
              textureParameter(GL_TEXTURE_2D, target->getID(), GL_TEXTURE_MIN_FILTER));
    testing::internal::CaptureStdout();
    target.reset();
    testing::internal::GetCapturedStdout();
}

TEST_F(TextureInWindow, ReleaseDisablesTheTargetButLeavesTheTextureBound) {
    std::unique_ptr<Texture> target(new Texture(8, 8));
    target->bind();
    target->release();
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D));
    GLint bound = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
    EXPECT_EQ(static_cast<GLint>(target->getID()), bound);
    testing::internal::CaptureStdout();
    target.reset();
    testing::internal::GetCapturedStdout();
}

TEST_F(TextureInWindow, FullScreenQuadKeepsBothMatricesAndLeavesBlendingAndColourAlone) {
    Texture* texture =
        load(save("cells.png", PngWriter::rgba(4, 4, cellsAsRgba())), GL_TEXTURE_2D, false);
    ASSERT_NE(nullptr, texture);
    texture->setInterpolation(GL_NEAREST);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glScalef(0.1f, 0.1f, 0.1f);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glTranslatef(5, 0, 0);
    glMatrixMode(GL_PROJECTION);
    glEnable(GL_BLEND);
    glColor4f(1, 1, 1, 1);
    std::array<GLfloat, 16> projectionBefore{};
    std::array<GLfloat, 16> modelviewBefore{};
    glGetFloatv(GL_PROJECTION_MATRIX, projectionBefore.data());
    glGetFloatv(GL_MODELVIEW_MATRIX, modelviewBefore.data());

    texture->drawQuadFS();

    std::array<GLfloat, 16> projectionAfter{};
    std::array<GLfloat, 16> modelviewAfter{};
    glGetFloatv(GL_PROJECTION_MATRIX, projectionAfter.data());
    glGetFloatv(GL_MODELVIEW_MATRIX, modelviewAfter.data());
    EXPECT_EQ(projectionBefore, projectionAfter);
    EXPECT_EQ(modelviewBefore, modelviewAfter);
    GLint mode = 0;
    glGetIntegerv(GL_MATRIX_MODE, &mode);
    EXPECT_EQ(GL_MODELVIEW, mode);
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D));
    EXPECT_TRUE(glIsEnabled(GL_BLEND));
    // The quad covered the whole viewport despite the matrices set before.
    EXPECT_EQ(CELLS[0], readRgb(2, 61));
    EXPECT_EQ(CELLS[15], readRgb(61, 2));
}

TEST_F(TextureInWindow, BlendedQuadDropsClearTexelsAndLeavesAlphaAndDepthTestsOn) {
    // Left half clear green, right half half-transparent blue.
    std::vector<uint8_t> pixels;
    for (int i = 0; i < 2; i++) {
        pixels.insert(pixels.end(), {0, 255, 0, 0, 0, 0, 255, 128});
    }
    Texture* texture =
        load(save("halves.png", PngWriter::rgba(2, 2, pixels)), GL_TEXTURE_2D, false);
    ASSERT_NE(nullptr, texture);
    texture->setInterpolation(GL_NEAREST);
    clearTo(1, 0, 0);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_ALPHA_TEST);
    glColor4f(1, 1, 1, 1);

    texture->drawQuadBlendFS(GL_ONE, GL_ONE);

    // Added on top of the red ground where alpha is above 0, nothing elsewhere.
    EXPECT_EQ((Rgb{255, 0, 0}), readRgb(16, 32));
    EXPECT_EQ((Rgb{255, 0, 255}), readRgb(48, 32));
    EXPECT_TRUE(glIsEnabled(GL_ALPHA_TEST));
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D));
    GLint mode = 0;
    glGetIntegerv(GL_MATRIX_MODE, &mode);
    EXPECT_EQ(GL_MODELVIEW, mode);
}

TEST_F(TextureInWindow, BlendedQuadMixesByTheGivenFactors) {
    std::vector<uint8_t> pixels = {0, 0, 255, 128};
    Texture* texture = load(save("one.png", PngWriter::rgba(1, 1, pixels)), GL_TEXTURE_2D, false);
    ASSERT_NE(nullptr, texture);
    clearTo(1, 0, 0);
    glColor4f(1, 1, 1, 1);
    texture->drawQuadBlendFS(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    Rgb mixed = readRgb(32, 32);
    EXPECT_NEAR(127, mixed[0], 2);
    EXPECT_EQ(0, mixed[1]);
    EXPECT_NEAR(128, mixed[2], 2);
}

// ---------------------------------------------------------------- damaged files

TEST_F(TextureInWindow, TruncatedAndBitFlippedFilesNeverCrashTheUploadNorLeakItsState) {
    std::vector<uint8_t> rgbPixels;
    for (int i = 0; i < 7 * 5 * 3; i++) {
        rgbPixels.push_back(static_cast<uint8_t>(i * 37));
    }
    std::vector<std::vector<uint8_t>> originals = {
        PngWriter::rgb(7, 5, rgbPixels),
        PngWriter::rgba(4, 4, cellsAsRgba()),
        PngWriter::palette(5, 5, {1, 2, 3, 4, 5, 6}, std::vector<uint8_t>(25, 1)),
    };
    std::mt19937 random(977);
    std::string path = dir.file("damaged.png");
    int cases = 0;
    std::string log;
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    for (const std::vector<uint8_t>& original : originals) {
        for (int n = 0; n < 80; n++) {
            std::vector<uint8_t> bytes = original;
            if (n % 2 == 0) {
                bytes.resize(random() % original.size());
            } else {
                bytes[random() % bytes.size()] ^= static_cast<uint8_t>(1u << (random() % 8));
            }
            PngWriter::save(path, bytes);
            Texture* texture = KVLDemosys::loadTexture(path, GL_TEXTURE_2D, n % 4 == 1);
            cases++;
            EXPECT_NE(nullptr, texture) << "case " << cases;
            if (texture != nullptr) {
                EXPECT_NE(0u, texture->getID());
            }
            EXPECT_EQ(4, unpackAlignment());
            delete texture;
        }
    }
    log = testing::internal::GetCapturedStdout();
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(240, cases);
    // The mipmapped loads report their refused filter; nothing else goes wrong in GL.
    for (const std::string& line : {std::string("[GL_ERROR] 'invalid value'"),
                                    std::string("[GL_ERROR] 'invalid operation'")}) {
        EXPECT_EQ(std::string::npos, log.find(line)) << log.substr(0, 2000);
    }
    EXPECT_EQ(static_cast<GLenum>(GL_NO_ERROR), glGetError());
}
