#include "runtime/DataAnimationPool.h"
#include "animation/Animation.h"

#include <gtest/gtest.h>

#include <string>

TEST(DataAnimationPool, CountsEveryAddAndShowsOneEntryPerName) {
    DataAnimationPool pool;
    Animation* first = new Animation();
    Animation* second = new Animation();
    pool.addAnimation("flight", first);
    pool.addAnimation("flight", second);
    EXPECT_EQ(2, pool.size());
    EXPECT_EQ(second, pool.getAnimation("flight"));
    EXPECT_EQ("AnimationPool {\n    flight = " + second->toString() + "}\n", pool.toString());
    delete first;
}

TEST(DataAnimationPool, LookingUpAMissingNameGivesNullAndCreatesNoEntry) {
    DataAnimationPool pool;
    EXPECT_EQ(nullptr, pool.getAnimation("missing"));
    EXPECT_FALSE(pool.exist("missing"));
    EXPECT_EQ(0, pool.size());
    EXPECT_EQ("AnimationPool {\n}\n", pool.toString());
}

TEST(DataAnimationPool, DisposalNamesEachAnimation) {
    DataAnimationPool* pool = new DataAnimationPool();
    pool->addAnimation("path2", new Animation());
    pool->addAnimation("path1", new Animation());
    testing::internal::CaptureStdout();
    delete pool;
    EXPECT_EQ("[Dispose animationPool]\n -> delete path1\n -> delete path2\n",
              testing::internal::GetCapturedStdout());
}
