#include "script/StringTokenizer.h"

#include <gtest/gtest.h>

TEST(StringTokenizer, DropsEmptyTokensBetweenAdjacentDelimiters) {
    StringTokenizer tokens("a,,b", ",");
    EXPECT_EQ(2, tokens.countTokens());
    EXPECT_EQ("a", tokens.getNext());
    EXPECT_EQ("b", tokens.getNext());
}
