#include "graphics/Image.h"

#include "support/PngWriter.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <png.h>

#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

// A picture whose every byte tells where it came from: row y, column x and
// channel c of the file hold (y * 16 + x * 4 + c) modulo 256 plus the seed.
std::vector<uint8_t> labelledPixels(int width, int height, int channels, int seed = 0) {
    std::vector<uint8_t> pixels;
    for (int y = 0; y < height; y++) {
        for (int x = 0; x < width; x++) {
            for (int c = 0; c < channels; c++) {
                pixels.push_back(static_cast<uint8_t>(y * 16 + x * 4 + c + seed));
            }
        }
    }
    return pixels;
}

class ImageFiles : public ::testing::Test {
protected:
    std::string save(const std::string& name, const std::vector<uint8_t>& bytes) {
        std::string path = dir.file(name);
        EXPECT_FALSE(bytes.empty()) << "the test picture " << name << " did not encode";
        EXPECT_TRUE(PngWriter::save(path, bytes));
        return path;
    }

    TempDir dir;
};

// Compares row r of the image's block with row `fileRow` of the file's pixels.
void expectRow(const Image& image, int r, const std::vector<uint8_t>& pixels, int fileRow,
               int rowBytes) {
    std::vector<uint8_t> stored(image.getData() + r * rowBytes,
                                image.getData() + (r + 1) * rowBytes);
    std::vector<uint8_t> expected(pixels.begin() + fileRow * rowBytes,
                                  pixels.begin() + (fileRow + 1) * rowBytes);
    EXPECT_EQ(expected, stored) << "row " << r << " of the block";
}

} // namespace

TEST_F(ImageFiles, RgbaPictureOf256By128Has32BitsAndFourBytesPerPixel) {
    std::vector<uint8_t> bytes = PngWriter::rgba(256, 128, labelledPixels(256, 128, 4));
    std::string path = save("big.png", bytes);
    Image image(path);
    EXPECT_TRUE(image.exists());
    EXPECT_EQ(256, image.getWidth());
    EXPECT_EQ(128, image.getHeight());
    EXPECT_EQ(32, image.getBpp());
    EXPECT_EQ(4, image.getPixelSize());
    EXPECT_EQ(static_cast<int>(bytes.size()), image.getFileSize());
    EXPECT_NE(nullptr, image.getData());
}

TEST_F(ImageFiles, RowThatTheFileStoresFirstEndsUpLastInTheBlock) {
    const int width = 256;
    const int height = 128;
    std::vector<uint8_t> pixels = labelledPixels(width, height, 4);
    Image image(save("rows.png", PngWriter::rgba(width, height, pixels)));
    ASSERT_NE(nullptr, image.getData());
    expectRow(image, height - 1, pixels, 0, width * 4);
    expectRow(image, 0, pixels, height - 1, width * 4);
    expectRow(image, 40, pixels, height - 1 - 40, width * 4);
}

TEST_F(ImageFiles, RgbPictureHas24BitsAndThreeBytesPerPixelWithRowsPackedTightly) {
    // Five pixels: rows of 15 bytes, not a multiple of four.
    std::vector<uint8_t> pixels = labelledPixels(5, 3, 3);
    Image image(save("rgb.png", PngWriter::rgb(5, 3, pixels)));
    EXPECT_EQ(24, image.getBpp());
    EXPECT_EQ(3, image.getPixelSize());
    ASSERT_NE(nullptr, image.getData());
    expectRow(image, 0, pixels, 2, 15);
    expectRow(image, 1, pixels, 1, 15);
    expectRow(image, 2, pixels, 0, 15);
}

TEST_F(ImageFiles, PathAsCharactersLoadsTheSameAsAsAString) {
    std::string path = save("same.png", PngWriter::rgb(2, 2, labelledPixels(2, 2, 3)));
    Image fromString(path);
    Image fromChars(path.c_str());
    EXPECT_TRUE(fromChars.exists());
    EXPECT_EQ(fromString.getBpp(), fromChars.getBpp());
    EXPECT_EQ(0, std::memcmp(fromString.getData(), fromChars.getData(), 12));
}

TEST_F(ImageFiles, GreyPictureHas8BitsAndStaysGrey) {
    std::vector<uint8_t> pixels = labelledPixels(3, 2, 1);
    Image image(save("grey.png", PngWriter::grey(3, 2, pixels)));
    EXPECT_EQ(8, image.getBpp());
    EXPECT_EQ(1, image.getPixelSize());
    ASSERT_NE(nullptr, image.getData());
    expectRow(image, 0, pixels, 1, 3);
    expectRow(image, 1, pixels, 0, 3);
}

TEST_F(ImageFiles, GreyWithAlphaHas16Bits) {
    Image image(save("ga.png", PngWriter::greyAlpha(4, 4, labelledPixels(4, 4, 2))));
    EXPECT_EQ(16, image.getBpp());
    EXPECT_EQ(2, image.getPixelSize());
}

TEST_F(ImageFiles, SixteenBitRgbHas48BitsOfTheFileAndItsRowsShrinkToEightBitSamples) {
    std::vector<uint16_t> samples;
    for (int i = 0; i < 4 * 2 * 3; i++) {
        samples.push_back(static_cast<uint16_t>((i + 1) * 0x0101 * 10));
    }
    Image image(save("rgb16.png", PngWriter::rgb16(4, 2, samples)));
    EXPECT_EQ(48, image.getBpp());
    EXPECT_EQ(6, image.getPixelSize());
    ASSERT_NE(nullptr, image.getData());
    // The last row of the file comes first, with its samples cut to 8 bits,
    // filling the first half of a row of the file's length.
    for (int i = 0; i < 12; i++) {
        EXPECT_EQ((13 + i) * 10, image.getData()[i]) << "sample " << i;
    }
}

TEST_F(ImageFiles, SixteenBitRgbaHas64Bits) {
    std::vector<uint16_t> samples(3 * 3 * 4, 0x8000);
    Image image(save("rgba16.png", PngWriter::rgba16(3, 3, samples)));
    EXPECT_EQ(64, image.getBpp());
    EXPECT_EQ(8, image.getPixelSize());
}

TEST_F(ImageFiles, PalettePictureHas8BitsAndItsGrownRowsStayInsideTheBlock) {
    // Rows triple in decoding; the block holds one byte per pixel.
    std::vector<uint8_t> colours = {10, 20, 30, 40, 50, 60, 70, 80, 90};
    std::vector<uint8_t> indices = {0, 1, 2, 2, 1, 0, 1, 1, 1, 0, 0, 2};
    Image image(save("palette.png", PngWriter::palette(4, 3, colours, indices)));
    EXPECT_EQ(8, image.getBpp());
    EXPECT_EQ(1, image.getPixelSize());
    ASSERT_NE(nullptr, image.getData());
    // The first row in the block is the file's last row (indices 1, 0, 0, 2),
    // as far as its expansion fits into the row.
    std::vector<uint8_t> first(image.getData(), image.getData() + 4);
    EXPECT_EQ((std::vector<uint8_t>{40, 50, 60, 10}), first);
    EXPECT_NE(nullptr, image.getFloatData());
}

TEST_F(ImageFiles, PaletteWithTransparencyGrowsFourfoldAndStillStaysInsideTheBlock) {
    std::vector<uint8_t> colours = {255, 0, 0, 0, 255, 0};
    std::vector<uint8_t> indices(16 * 16, 1);
    indices[0] = 0;
    Image image(save("trns.png", PngWriter::palette(16, 16, colours, indices, 8, {0, 128})));
    EXPECT_EQ(8, image.getBpp());
    ASSERT_NE(nullptr, image.getData());
    // Last row of the file, first pixel: green with the alpha of entry 1.
    std::vector<uint8_t> first(image.getData(), image.getData() + 4);
    EXPECT_EQ((std::vector<uint8_t>{0, 255, 0, 128}), first);
}

TEST_F(ImageFiles, PackedDepthsBelowEightBitsGetABlockForTheirRows) {
    std::vector<uint8_t> bits = {1, 0, 1, 1, 0, 0, 0, 1, 1, 0, 1};
    Image grey(
        save("grey1.png", PngWriter::encode(11, 1, {PNG_COLOR_TYPE_GRAY, 1, false, {}, {}},
                                            std::vector<uint16_t>(bits.begin(), bits.end()))));
    EXPECT_EQ(1, grey.getBpp());
    EXPECT_EQ(0, grey.getPixelSize());
    ASSERT_NE(nullptr, grey.getData());
    // 11 one-bit pixels packed into two bytes: 10110001 101xxxxx.
    EXPECT_EQ(0xB1, grey.getData()[0]);
    EXPECT_EQ(0xA0, grey.getData()[1] & 0xE0);

    std::vector<uint8_t> colours = {0, 0, 0, 255, 255, 255, 9, 9, 9};
    std::vector<uint8_t> indices(7 * 5, 2);
    Image palette(save("pal4.png", PngWriter::palette(7, 5, colours, indices, 4)));
    EXPECT_EQ(4, palette.getBpp());
    EXPECT_EQ(0, palette.getPixelSize());
    EXPECT_NE(nullptr, palette.getData());
    EXPECT_NE(nullptr, palette.getFloatData());
}

TEST_F(ImageFiles, InterlacedPictureIsReadWithoutOverrunningItsBlock) {
    std::vector<uint8_t> pixels = labelledPixels(13, 9, 4);
    Image image(
        save("adam7.png", PngWriter::encode(13, 9, {PNG_COLOR_TYPE_RGB_ALPHA, 8, true, {}, {}},
                                            std::vector<uint16_t>(pixels.begin(), pixels.end()))));
    EXPECT_TRUE(image.exists());
    EXPECT_EQ(13, image.getWidth());
    EXPECT_EQ(32, image.getBpp());
    EXPECT_NE(nullptr, image.getData());
}

TEST_F(ImageFiles, MissingFileDoesNotExistAndHasNoPixels) {
    Image image(dir.file("nothing.png"));
    EXPECT_FALSE(image.exists());
    EXPECT_EQ(nullptr, image.getData());
}

TEST_F(ImageFiles, DirectoryIsNoPicture) {
    Image image(dir.path());
    EXPECT_FALSE(image.exists());
    EXPECT_EQ(nullptr, image.getData());
}

TEST_F(ImageFiles, FileThatIsNoPngExistsWithNothingDecodedAndLibpngSaysWhy) {
    std::string path = dir.file("text.png");
    dir.write("text.png", "this is a text, not a picture\n");
    testing::internal::CaptureStderr();
    Image image(path);
    std::string errors = testing::internal::GetCapturedStderr();
    EXPECT_TRUE(image.exists());
    EXPECT_EQ(30, image.getFileSize());
    EXPECT_EQ(nullptr, image.getData());
    EXPECT_EQ(0, image.getBpp());
    EXPECT_EQ(0, image.getWidth());
    EXPECT_NE(std::string::npos, errors.find("libpng error")) << errors;
}

TEST_F(ImageFiles, TruncatedPictureKeepsItsSizeAndTheRowsDecodedBeforeTheEnd) {
    const int width = 64;
    const int height = 64;
    std::vector<uint8_t> pixels;
    std::mt19937 random(7);
    for (int i = 0; i < width * height * 4; i++) {
        pixels.push_back(static_cast<uint8_t>(random()));
    }
    std::vector<uint8_t> bytes = PngWriter::rgba(width, height, pixels);
    bytes.resize(bytes.size() / 2);
    std::string path = save("half.png", bytes);
    testing::internal::CaptureStderr();
    Image image(path);
    testing::internal::GetCapturedStderr();
    EXPECT_TRUE(image.exists());
    EXPECT_EQ(width, image.getWidth());
    EXPECT_EQ(height, image.getHeight());
    EXPECT_EQ(32, image.getBpp());
    ASSERT_NE(nullptr, image.getData());
    // The file's first row was decoded and sits last in the block; the
    // file's last row never came and its place stays empty.
    expectRow(image, height - 1, pixels, 0, width * 4);
    std::vector<uint8_t> missing(image.getData(), image.getData() + width * 4);
    EXPECT_EQ(std::vector<uint8_t>(width * 4, 0), missing);
}

TEST_F(ImageFiles, HeaderPromisingFarMorePixelsThanTheFileHoldsAllocatesNothing) {
    // A whole, valid header for 60000 x 60000 RGBA followed by no pixel data.
    std::vector<uint8_t> bytes = PngWriter::rgba(1, 1, {1, 2, 3, 4});
    // Width and height of the IHDR chunk start at byte 16; its CRC follows
    // the 13 bytes of data.
    uint8_t size[4] = {0x00, 0x00, 0xEA, 0x60};
    std::memcpy(&bytes[16], size, 4);
    std::memcpy(&bytes[20], size, 4);
    uint32_t crc = 0xffffffffu;
    for (int i = 12; i < 12 + 4 + 13; i++) {
        crc ^= bytes[i];
        for (int k = 0; k < 8; k++) {
            crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
        }
    }
    crc ^= 0xffffffffu;
    for (int k = 0; k < 4; k++) {
        bytes[29 + k] = static_cast<uint8_t>(crc >> (24 - 8 * k));
    }
    Image image(save("huge.png", bytes));
    EXPECT_TRUE(image.exists());
    EXPECT_EQ(60000, image.getWidth());
    EXPECT_EQ(60000, image.getHeight());
    EXPECT_EQ(32, image.getBpp());
    EXPECT_EQ(nullptr, image.getData());
    ASSERT_NE(nullptr, image.getFloatData());
}

TEST_F(ImageFiles, FloatDataAskedTwiceIsTheSameBlock) {
    Image image(save("twice.png", PngWriter::rgb(2, 2, labelledPixels(2, 2, 3))));
    float* first = image.getFloatData();
    ASSERT_NE(nullptr, first);
    EXPECT_EQ(first, image.getFloatData());
}

TEST_F(ImageFiles, FloatDataIsEachByteOver256SoByte128IsOneHalfAnd255NeverOne) {
    std::vector<uint8_t> pixels = {128, 255, 0, 64, 1, 200};
    Image image(save("floats.png", PngWriter::rgb(2, 1, pixels)));
    float* values = image.getFloatData();
    ASSERT_NE(nullptr, values);
    EXPECT_EQ(0.5f, values[0]);
    EXPECT_EQ(0.99609375f, values[1]);
    EXPECT_EQ(0.0f, values[2]);
    EXPECT_EQ(0.25f, values[3]);
    EXPECT_EQ(0.00390625f, values[4]);
    EXPECT_EQ(200.0f / 256.0f, values[5]);
}

TEST_F(ImageFiles, FloatDataDoesNotSeeLaterChangesOfThePixels) {
    Image image(save("later.png", PngWriter::grey(1, 1, {128})));
    float* values = image.getFloatData();
    image.getData()[0] = 0;
    EXPECT_EQ(0.5f, image.getFloatData()[0]);
    EXPECT_EQ(values, image.getFloatData());
}

// Damaged files of every kind of picture: cut short anywhere and with single
// bits flipped anywhere. Each must come back as an image of the file (it
// opened), with either nothing decoded or the size of the original.
TEST_F(ImageFiles, TruncatedAndBitFlippedFilesNeverCrashTheDecoder) {
    std::vector<std::vector<uint8_t>> originals = {
        PngWriter::rgba(9, 7, labelledPixels(9, 7, 4)),
        PngWriter::rgb(5, 6, labelledPixels(5, 6, 3)),
        PngWriter::grey(7, 3, labelledPixels(7, 3, 1)),
        PngWriter::palette(6, 5, {1, 2, 3, 200, 100, 50}, std::vector<uint8_t>(30, 1), 8, {255, 7}),
        PngWriter::rgb16(3, 4, std::vector<uint16_t>(36, 0x1234)),
        PngWriter::encode(11, 9, {PNG_COLOR_TYPE_RGB, 8, true, {}, {}},
                          std::vector<uint16_t>(11 * 9 * 3, 77)),
    };
    const int sizes[][2] = {{9, 7}, {5, 6}, {7, 3}, {6, 5}, {3, 4}, {11, 9}};
    std::mt19937 random(20240611);
    std::string path = dir.file("damaged.png");
    int cases = 0;
    int refused = 0;
    testing::internal::CaptureStderr();
    for (size_t o = 0; o < originals.size(); o++) {
        const std::vector<uint8_t>& original = originals[o];
        for (int n = 0; n < 60; n++) {
            std::vector<uint8_t> bytes = original;
            if (n % 2 == 0) {
                bytes.resize(random() % original.size());
            } else {
                int flips = 1 + static_cast<int>(random() % 3);
                for (int f = 0; f < flips; f++) {
                    bytes[random() % bytes.size()] ^= static_cast<uint8_t>(1u << (random() % 8));
                }
            }
            PngWriter::save(path, bytes);
            Image image(path);
            cases++;
            EXPECT_TRUE(image.exists()) << "original " << o << ", case " << n;
            EXPECT_EQ(static_cast<int>(bytes.size()), image.getFileSize());
            if (image.getData() == nullptr) {
                refused++;
            } else {
                EXPECT_EQ(sizes[o][0], image.getWidth()) << "original " << o << ", case " << n;
                EXPECT_EQ(sizes[o][1], image.getHeight()) << "original " << o << ", case " << n;
            }
            EXPECT_NE(nullptr, image.getFloatData());
        }
    }
    std::string errors = testing::internal::GetCapturedStderr();
    EXPECT_EQ(360, cases);
    // Damage in the header leaves nothing; damage in the pixel data leaves
    // a picture of the original size, partly filled.
    EXPECT_GT(refused, 0);
    EXPECT_LT(refused, cases);
    EXPECT_NE(std::string::npos, errors.find("libpng error")) << errors.substr(0, 400);
}
