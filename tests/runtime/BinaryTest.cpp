#include "runtime/Binary.h"

#include <gtest/gtest.h>

#include <vector>

TEST(Binary, CopiesTheBytesAndReportsTheirCount) {
    std::vector<unsigned char> bytes = {0x01, 0xFF, 0x7F};
    Binary binary(bytes);
    bytes[0] = 0x55;
    EXPECT_EQ(3u, binary.size());
    EXPECT_EQ(0x01, binary.getData(0));
    EXPECT_EQ(0xFF, binary.getData(1));
    EXPECT_EQ(0x7F, binary.getData(2));
}

TEST(Binary, PrintsItsSize) {
    Binary binary(std::vector<unsigned char>(1234, 0));
    EXPECT_EQ("Binary { size = 1234 }\n", binary.toString());
}

TEST(Binary, EmptyFilePrintsSizeZero) {
    Binary binary(std::vector<unsigned char>{});
    EXPECT_EQ(0u, binary.size());
    EXPECT_EQ("Binary { size = 0 }\n", binary.toString());
}

TEST(Binary, ReadingOutsideTheBytesGivesZero) {
    Binary binary(std::vector<unsigned char>{9, 8});
    EXPECT_EQ(0, binary.getData(2));
    EXPECT_EQ(0, binary.getData(-1));
    EXPECT_EQ(8, binary.getData(1));
}
