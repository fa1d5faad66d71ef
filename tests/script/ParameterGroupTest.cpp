#include "script/ParameterGroup.h"

#include <gtest/gtest.h>

namespace {

TEST(ParameterGroup, NewGroupIsCalledParametersAndIsEmpty) {
    ParameterGroup group;
    EXPECT_EQ("parameters", group.getGroupName());
    EXPECT_EQ(0, group.size());
}

TEST(ParameterGroup, NamedGroupKeepsItsName) {
    ParameterGroup group("screen");
    EXPECT_EQ("screen", group.getGroupName());
    group.setGroupName("sound");
    EXPECT_EQ("sound", group.getGroupName());
}

TEST(ParameterGroup, EmptyGroupPrintsTheFixedTextWhateverItsName) {
    ParameterGroup group;
    group.setGroupName("renamed");
    EXPECT_EQ("ParameterGroup{ EMPTY }\n", group.toString());
    ParameterGroup named("screen");
    EXPECT_EQ("ParameterGroup{ EMPTY }\n", named.toString());
}

TEST(ParameterGroup, PrintsNameAndEntriesInKeyOrder) {
    ParameterGroup group("screen");
    group.addParameter("width", "800");
    group.addParameter("height", "600");
    group.addParameter("title", "a b");
    EXPECT_EQ("screen {\n"
              "    height = 600;\n"
              "    title = a b;\n"
              "    width = 800;\n"
              "}\n",
              group.toString());
}

TEST(ParameterGroup, AddingAKeyAgainReplacesItsValue) {
    ParameterGroup group;
    group.addParameter("a", "1");
    group.addParameter("a", "2");
    EXPECT_EQ(1, group.size());
    EXPECT_EQ("2", group.getParameter("a"));
}

TEST(ParameterGroup, EmptyKeyIsAnOrdinaryKey) {
    ParameterGroup group;
    group.addParameter("", "");
    EXPECT_TRUE(group.exist(""));
    EXPECT_EQ(1, group.size());
    EXPECT_EQ("", group.getParameter(""));
}

TEST(ParameterGroup, ExistTellsPresentFromAbsentKeys) {
    ParameterGroup group;
    group.addParameter("speed", "1.0");
    EXPECT_TRUE(group.exist("speed"));
    EXPECT_FALSE(group.exist("Speed"));
    EXPECT_FALSE(group.exist("speed "));
}

TEST(ParameterGroup, IndexAccessWalksKeysInByteOrder) {
    ParameterGroup group;
    group.addParameter("b", "B");
    group.addParameter("a", "A");
    group.addParameter("00", "zero");
    EXPECT_EQ("00", group.getKey(0));
    EXPECT_EQ("a", group.getKey(1));
    EXPECT_EQ("b", group.getKey(2));
    EXPECT_EQ("zero", group.getValue(0));
    EXPECT_EQ("A", group.getValue(1));
    EXPECT_EQ("B", group.getValue(2));
}

TEST(ParameterGroup, UpperCaseSortsBeforeLowerCaseAndShorterBeforeLonger) {
    ParameterGroup group;
    group.addParameter("ab", "3");
    group.addParameter("a", "2");
    group.addParameter("B", "1");
    EXPECT_EQ("B", group.getKey(0));
    EXPECT_EQ("a", group.getKey(1));
    EXPECT_EQ("ab", group.getKey(2));
}

TEST(ParameterGroup, ArgumentKeysSortInArgumentOrder) {
    ParameterGroup group;
    for (int i = 12; i >= 0; i--) {
        std::string key = (i < 10 ? "0" : "") + std::to_string(i);
        group.addParameter(key, "arg" + std::to_string(i));
    }
    for (int i = 0; i <= 12; i++) {
        EXPECT_EQ("arg" + std::to_string(i), group.getValue(i));
    }
}

TEST(ParameterGroup, IndexOfZeroOrBelowGivesTheFirstEntry) {
    ParameterGroup group;
    group.addParameter("x", "1");
    group.addParameter("y", "2");
    EXPECT_EQ("x", group.getKey(-3));
    EXPECT_EQ("1", group.getValue(-1));
}

TEST(ParameterGroup, IndexPastTheLastEntryGivesEmptyText) {
    ParameterGroup group;
    EXPECT_EQ("", group.getKey(0));
    EXPECT_EQ("", group.getValue(0));
    group.addParameter("x", "1");
    EXPECT_EQ("", group.getKey(1));
    EXPECT_EQ("", group.getValue(5));
}

TEST(ParameterGroupDeathTest, AbsentKeyEndsTheProcessWithAnUncaughtLogicError) {
    ParameterGroup group;
    group.addParameter("present", "1");
    EXPECT_DEATH(group.getParameter("absent"),
                 "terminate called after throwing an instance of 'std::out_of_range'");
}

TEST(ParameterGroupDeathTest, AbsentKeyIsFatalEvenInsideACatchAll) {
    ParameterGroup group;
    EXPECT_DEATH(
        {
            try {
                group.getParameter("absent");
            } catch (...) {
            }
        },
        "std::out_of_range");
}

} // namespace
