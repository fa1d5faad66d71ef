#include "script/Parameters.h"

#include "script/ParameterGroup.h"

#include <gtest/gtest.h>

namespace {

ParameterGroup* groupWith(const std::string& key, const std::string& value) {
    ParameterGroup* group = new ParameterGroup("original");
    group->addParameter(key, value);
    return group;
}

TEST(Parameters, NewStoreIsEmptyAndPrintsNothing) {
    Parameters store;
    EXPECT_EQ(0, store.size());
    EXPECT_EQ("", store.toString());
}

TEST(Parameters, AddingAGroupRenamesItToItsKey) {
    Parameters store;
    ParameterGroup* group = groupWith("k", "v");
    store.addGroup("x", group);
    EXPECT_EQ("x", group->getGroupName());
    EXPECT_EQ(group, store.getGroup("x"));
    EXPECT_TRUE(store.exist("x"));
    EXPECT_EQ(1, store.size());
}

TEST(Parameters, UnknownGroupIsNullAndPrintsNothing) {
    Parameters store;
    store.addGroup("paths", new ParameterGroup());
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    ParameterGroup* missing = store.getGroup("screen");
    std::string out = testing::internal::GetCapturedStdout();
    std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(nullptr, missing);
    EXPECT_FALSE(store.exist("screen"));
    EXPECT_EQ("", out);
    EXPECT_EQ("", err);
}

TEST(Parameters, ReplacingAGroupKeepsTheOldOneAlive) {
    Parameters store;
    ParameterGroup* first = groupWith("a", "1");
    ParameterGroup* second = groupWith("b", "2");
    store.addGroup("x", first);
    store.addGroup("x", second);
    EXPECT_EQ(1, store.size());
    EXPECT_EQ(second, store.getGroup("x"));
    // Still readable: the store did not release it.
    EXPECT_EQ("1", first->getParameter("a"));
    delete first;
}

TEST(Parameters, IndexAccessWalksNamesInByteOrder) {
    Parameters store;
    ParameterGroup* sound = new ParameterGroup();
    ParameterGroup* paths = new ParameterGroup();
    ParameterGroup* Screen = new ParameterGroup();
    store.addGroup("sound", sound);
    store.addGroup("paths", paths);
    store.addGroup("Screen", Screen);
    EXPECT_EQ("Screen", store.getKey(0));
    EXPECT_EQ("paths", store.getKey(1));
    EXPECT_EQ("sound", store.getKey(2));
    EXPECT_EQ(Screen, store.getValue(0));
    EXPECT_EQ(paths, store.getValue(1));
    EXPECT_EQ(sound, store.getValue(2));
}

TEST(Parameters, IndexOfZeroOrBelowGivesTheFirstGroup) {
    Parameters store;
    ParameterGroup* first = new ParameterGroup();
    store.addGroup("a", first);
    store.addGroup("b", new ParameterGroup());
    EXPECT_EQ("a", store.getKey(-1));
    EXPECT_EQ(first, store.getValue(-7));
}

TEST(Parameters, IndexPastTheLastGroupGivesNothing) {
    Parameters store;
    EXPECT_EQ("", store.getKey(0));
    EXPECT_EQ(nullptr, store.getValue(0));
    store.addGroup("a", new ParameterGroup());
    EXPECT_EQ("", store.getKey(1));
    EXPECT_EQ(nullptr, store.getValue(3));
}

TEST(Parameters, PrintsEveryGroupInOrderWithNothingBetween) {
    Parameters store;
    store.addGroup("b", new ParameterGroup());
    store.addGroup("a", groupWith("x", "1"));
    EXPECT_EQ("a {\n"
              "    x = 1;\n"
              "}\n"
              "ParameterGroup{ EMPTY }\n",
              store.toString());
}

} // namespace
