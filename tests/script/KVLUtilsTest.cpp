#include "script/KVLUtils.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(KVLUtils, LoneMinusConvertsToZero) {
    EXPECT_EQ(0, KVLUtils::string2Int("-"));
}

TEST(KVLUtils, IntConversionReadsTheLongestNumericPrefix) {
    EXPECT_EQ(12, KVLUtils::string2Int("12abc"));
    EXPECT_EQ(-7, KVLUtils::string2Int("-7;"));
    EXPECT_EQ(3, KVLUtils::string2Int("3.7"));
}

TEST(KVLUtils, IntConversionSkipsLeadingWhiteSpace) {
    EXPECT_EQ(42, KVLUtils::string2Int(" \t\n42"));
}

TEST(KVLUtils, NonNumericTextConvertsToZero) {
    EXPECT_EQ(0, KVLUtils::string2Int("x"));
    EXPECT_EQ(0.0f, KVLUtils::string2Float("x"));
}

TEST(KVLUtils, EmptyOrBlankTextConvertsToZero) {
    EXPECT_EQ(0, KVLUtils::string2Int(""));
    EXPECT_EQ(0, KVLUtils::string2Int("   "));
    EXPECT_EQ(0.0f, KVLUtils::string2Float(""));
    EXPECT_EQ(0.0f, KVLUtils::string2Float(" \r\n"));
}

TEST(KVLUtils, IntOutsideTheRangeGivesTheNearestLimit) {
    EXPECT_EQ(std::numeric_limits<int>::max(), KVLUtils::string2Int("99999999999"));
    EXPECT_EQ(std::numeric_limits<int>::min(), KVLUtils::string2Int("-99999999999"));
}

TEST(KVLUtils, FloatConversionReadsTheLongestNumericPrefix) {
    EXPECT_EQ(1.5f, KVLUtils::string2Float("1.5x"));
    EXPECT_EQ(1.0f, KVLUtils::string2Float("1..5"));
    EXPECT_EQ(-0.25f, KVLUtils::string2Float("-0.25"));
    EXPECT_EQ(2.0f, KVLUtils::string2Float(" 2"));
}

TEST(KVLUtils, IntegersPrintAsPlainDecimalDigits) {
    EXPECT_EQ("0", KVLUtils::int2string(0));
    EXPECT_EQ("-42", KVLUtils::int2string(-42));
    EXPECT_EQ("2147483647", KVLUtils::int2string(std::numeric_limits<int>::max()));
    EXPECT_EQ("4294967295", KVLUtils::uint2string(std::numeric_limits<unsigned int>::max()));
    EXPECT_EQ("1000000", KVLUtils::uint2string(1000000u));
}

TEST(KVLUtils, FloatPrintsWithSixSignificantDigitsInTheShorterForm) {
    EXPECT_EQ("1.5", KVLUtils::float2string(1.5f));
    EXPECT_EQ("0.1", KVLUtils::float2string(0.1f));
    EXPECT_EQ("1e+06", KVLUtils::float2string(1000000.0f));
    EXPECT_EQ("100000", KVLUtils::float2string(100000.0f));
    EXPECT_EQ("1", KVLUtils::float2string(1.0f));
    EXPECT_EQ("0", KVLUtils::float2string(0.0f));
    EXPECT_EQ("-2.25", KVLUtils::float2string(-2.25f));
    EXPECT_EQ("0.0001", KVLUtils::float2string(0.0001f));
    EXPECT_EQ("1e-05", KVLUtils::float2string(0.00001f));
    EXPECT_EQ("1.23457e+06", KVLUtils::float2string(1234567.0f));
    EXPECT_EQ("3.14159", KVLUtils::float2string(3.14159265f));
}

TEST(KVLUtils, PrintedNumbersConvertBack) {
    EXPECT_EQ(-123, KVLUtils::string2Int(KVLUtils::int2string(-123)));
    EXPECT_EQ(0.5f, KVLUtils::string2Float(KVLUtils::float2string(0.5f)));
}

} // namespace
