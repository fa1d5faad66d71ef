#include "script/StringUtils.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(StringUtils, BlankTabLineFeedAndCarriageReturnAreTrimable) {
    EXPECT_TRUE(StringUtils::charIsTrimable(' '));
    EXPECT_TRUE(StringUtils::charIsTrimable('\t'));
    EXPECT_TRUE(StringUtils::charIsTrimable('\n'));
    EXPECT_TRUE(StringUtils::charIsTrimable('\r'));
    EXPECT_FALSE(StringUtils::charIsTrimable('\v'));
    EXPECT_FALSE(StringUtils::charIsTrimable('\f'));
    EXPECT_FALSE(StringUtils::charIsTrimable('\0'));
    EXPECT_FALSE(StringUtils::charIsTrimable('a'));
}

TEST(StringUtils, TrimOfOnlyBlanksAndLineEndsIsEmpty) {
    EXPECT_EQ("", StringUtils::trim("  \r\n \t\n  "));
    EXPECT_EQ("", StringUtils::trim(""));
}

TEST(StringUtils, TrimRemovesBothEndsAndKeepsTheInside) {
    EXPECT_EQ("a \t b", StringUtils::trim("\r\n\t a \t b \n"));
    EXPECT_EQ("x", StringUtils::trim("x"));
}

TEST(StringUtils, TrimLeavesOtherControlCharactersAlone) {
    EXPECT_EQ("\va\f", StringUtils::trim(" \va\f "));
}

TEST(StringUtils, IntIsDigitsWithAnOptionalLeadingMinus) {
    EXPECT_TRUE(StringUtils::isInt("0"));
    EXPECT_TRUE(StringUtils::isInt("123"));
    EXPECT_TRUE(StringUtils::isInt("-42"));
    EXPECT_TRUE(StringUtils::isInt("0012"));
}

TEST(StringUtils, LoneMinusCountsAsAnInt) {
    EXPECT_TRUE(StringUtils::isInt("-"));
}

TEST(StringUtils, EmptyTextIsNoInt) {
    EXPECT_FALSE(StringUtils::isInt(""));
}

TEST(StringUtils, PlusSignAndSurroundingBlanksAreNoInt) {
    EXPECT_FALSE(StringUtils::isInt("+1"));
    EXPECT_FALSE(StringUtils::isInt(" 1"));
    EXPECT_FALSE(StringUtils::isInt("1 "));
    EXPECT_FALSE(StringUtils::isInt("--1"));
    EXPECT_FALSE(StringUtils::isInt("1-"));
    EXPECT_FALSE(StringUtils::isInt("1.0"));
    EXPECT_FALSE(StringUtils::isInt("12a"));
}

TEST(StringUtils, IntHasNoLengthLimit) {
    EXPECT_TRUE(StringUtils::isInt(std::string(200, '9')));
}

TEST(StringUtils, FloatIsTwoIntegersAroundAPoint) {
    EXPECT_TRUE(StringUtils::isFloat("1.5"));
    EXPECT_TRUE(StringUtils::isFloat("-1.5"));
    EXPECT_TRUE(StringUtils::isFloat("0.0"));
}

TEST(StringUtils, NumberWithoutPointIsNoFloat) {
    EXPECT_FALSE(StringUtils::isFloat("1"));
    EXPECT_FALSE(StringUtils::isFloat("-1"));
}

TEST(StringUtils, FloatNeedsDigitsOnBothSidesOfThePoint) {
    EXPECT_FALSE(StringUtils::isFloat("1."));
    EXPECT_FALSE(StringUtils::isFloat(".5"));
    EXPECT_FALSE(StringUtils::isFloat("-.5"));
    EXPECT_FALSE(StringUtils::isFloat("."));
}

TEST(StringUtils, FloatWithThreePartsIsRejected) {
    EXPECT_FALSE(StringUtils::isFloat("1.2.3"));
}

TEST(StringUtils, ExponentFormIsNoFloat) {
    EXPECT_FALSE(StringUtils::isFloat("1e3"));
    EXPECT_FALSE(StringUtils::isFloat("1.5e3"));
}

TEST(StringUtils, DoublePointCountsAsOnePoint) {
    EXPECT_TRUE(StringUtils::isFloat("1..5"));
}

TEST(StringUtils, FloatAcceptsAMinusAtTheHeadOfEachPart) {
    EXPECT_TRUE(StringUtils::isFloat("1.-5"));
    EXPECT_TRUE(StringUtils::isFloat("--1.5"));
    EXPECT_FALSE(StringUtils::isFloat("---1.5"));
}

TEST(StringUtils, BlankInsideAFloatIsRejected) {
    EXPECT_FALSE(StringUtils::isFloat("1. 5"));
    EXPECT_FALSE(StringUtils::isFloat(" 1.5"));
}

TEST(StringUtils, EmptyTextIsNoFloat) {
    EXPECT_FALSE(StringUtils::isFloat(""));
    EXPECT_FALSE(StringUtils::isFloat("-"));
}

TEST(StringUtils, BoolIsExactlyLowerCaseTrueOrFalse) {
    EXPECT_TRUE(StringUtils::isBool("true"));
    EXPECT_TRUE(StringUtils::isBool("false"));
    EXPECT_FALSE(StringUtils::isBool("True"));
    EXPECT_FALSE(StringUtils::isBool("FALSE"));
    EXPECT_FALSE(StringUtils::isBool("1"));
    EXPECT_FALSE(StringUtils::isBool(" true"));
    EXPECT_FALSE(StringUtils::isBool(""));
}

} // namespace
