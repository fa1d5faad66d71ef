#include "script/StringTokenizer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<std::string> allTokens(StringTokenizer& tokens) {
    std::vector<std::string> result;
    while (tokens.hasMoreTokens()) {
        result.push_back(tokens.getNext());
    }
    return result;
}

TEST(StringTokenizer, DropsEmptyTokensBetweenAdjacentDelimiters) {
    StringTokenizer tokens("a,,b", ",");
    EXPECT_EQ(2, tokens.countTokens());
    EXPECT_EQ("a", tokens.getNext());
    EXPECT_EQ("b", tokens.getNext());
}

TEST(StringTokenizer, DelimitersSeparatedOnlyByBlanksGiveNoTokenAtAll) {
    StringTokenizer tokens(" , , ", ",");
    EXPECT_EQ(0, tokens.countTokens());
    EXPECT_FALSE(tokens.hasMoreTokens());
    EXPECT_EQ("", tokens.getNext());
}

TEST(StringTokenizer, WhiteSpaceOnlyPiecesVanishSoLaterFieldsMoveUp) {
    StringTokenizer tokens("a,\t\r\n,b, ,c", ",");
    std::vector<std::string> expected = {"a", "b", "c"};
    EXPECT_EQ(expected, allTokens(tokens));
}

TEST(StringTokenizer, TokensKeepTheirSurroundingWhiteSpace) {
    StringTokenizer tokens(" a , b ", ",");
    std::vector<std::string> expected = {" a ", " b "};
    EXPECT_EQ(expected, allTokens(tokens));
}

TEST(StringTokenizer, ReturnsEachDelimiterAsATokenOfItsOwn) {
    StringTokenizer tokens("a,b;", ",;", true);
    std::vector<std::string> expected = {"a", ",", "b", ";"};
    EXPECT_EQ(expected, allTokens(tokens));
}

TEST(StringTokenizer, ReturnedDelimitersAppearEvenWithoutTextBetweenThem) {
    StringTokenizer tokens(",,", ",", true);
    std::vector<std::string> expected = {",", ","};
    EXPECT_EQ(expected, allTokens(tokens));
}

TEST(StringTokenizer, DelimitersAreNotReturnedUnlessAsked) {
    StringTokenizer tokens("a,b;", ",;", false);
    std::vector<std::string> expected = {"a", "b"};
    EXPECT_EQ(expected, allTokens(tokens));
}

TEST(StringTokenizer, DefaultDelimiterIsOneBlank) {
    StringTokenizer tokens("Checkpoint  00:10:000\textra");
    std::vector<std::string> expected = {"Checkpoint", "00:10:000\textra"};
    EXPECT_EQ(expected, allTokens(tokens));
}

TEST(StringTokenizer, EmptyDelimiterSetGivesTheWholeSourceAsOneToken) {
    StringTokenizer tokens(" a, b ", "");
    EXPECT_EQ(1, tokens.countTokens());
    EXPECT_EQ(" a, b ", tokens.getNext());
}

TEST(StringTokenizer, DelimiterTextIsASetOfSingleCharacters) {
    StringTokenizer tokens("name[type=float][default=1.0]", "[]");
    std::vector<std::string> expected = {"name", "type=float", "default=1.0"};
    EXPECT_EQ(expected, allTokens(tokens));
}

TEST(StringTokenizer, EmptySourceHasNoTokens) {
    StringTokenizer tokens("", ",");
    EXPECT_EQ(0, tokens.countTokens());
    EXPECT_FALSE(tokens.hasMoreTokens());
}

TEST(StringTokenizer, GetNextPastTheEndReturnsEmptyWithoutFailing) {
    StringTokenizer tokens("a,b", ",");
    EXPECT_TRUE(tokens.hasMoreTokens());
    EXPECT_EQ("a", tokens.getNext());
    EXPECT_TRUE(tokens.hasMoreTokens());
    EXPECT_EQ("b", tokens.getNext());
    EXPECT_FALSE(tokens.hasMoreTokens());
    EXPECT_EQ("", tokens.getNext());
    EXPECT_EQ("", tokens.getNext());
    EXPECT_FALSE(tokens.hasMoreTokens());
}

TEST(StringTokenizer, SkippingTwoOfThreeTokensLeavesTheThird) {
    StringTokenizer tokens("a b c");
    tokens.getNext(2);
    EXPECT_TRUE(tokens.hasMoreTokens());
    EXPECT_EQ("c", tokens.getNext());
    EXPECT_FALSE(tokens.hasMoreTokens());
}

TEST(StringTokenizer, SkippingToOrPastTheEndRunsOut) {
    StringTokenizer exact("a b c");
    exact.getNext(3);
    EXPECT_FALSE(exact.hasMoreTokens());
    EXPECT_EQ("", exact.getNext());
    StringTokenizer beyond("a b c");
    beyond.getNext(2147483647);
    EXPECT_FALSE(beyond.hasMoreTokens());
    EXPECT_EQ("", beyond.getNext());
}

TEST(StringTokenizer, SkippingBackwardsBeforeTheStartIsHarmless) {
    StringTokenizer tokens("a b");
    tokens.getNext(-1);
    EXPECT_TRUE(tokens.hasMoreTokens());
    EXPECT_EQ("", tokens.getNext());
    EXPECT_EQ("a", tokens.getNext());
    EXPECT_EQ("b", tokens.getNext());
    EXPECT_FALSE(tokens.hasMoreTokens());
}

TEST(StringTokenizer, CountTokensGivesTheTotalEvenAfterAllAreHandedOut) {
    StringTokenizer tokens("a b c");
    EXPECT_EQ(3, tokens.countTokens());
    allTokens(tokens);
    EXPECT_FALSE(tokens.hasMoreTokens());
    EXPECT_EQ(3, tokens.countTokens());
}

TEST(StringTokenizer, ResetBeforeRunningOutRewinds) {
    StringTokenizer tokens("a b c");
    EXPECT_EQ("a", tokens.getNext());
    EXPECT_EQ("b", tokens.getNext());
    tokens.reset();
    EXPECT_TRUE(tokens.hasMoreTokens());
    EXPECT_EQ("a", tokens.getNext());
}

TEST(StringTokenizer, ResetAfterRunningOutStaysOut) {
    StringTokenizer tokens("a b");
    allTokens(tokens);
    tokens.reset();
    EXPECT_FALSE(tokens.hasMoreTokens());
    EXPECT_EQ("", tokens.getNext());
    EXPECT_EQ(2, tokens.countTokens());
}

} // namespace
