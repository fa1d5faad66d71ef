#include "runtime/DataObjectPool.h"
#include "objects/O3dScene.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// What deleting one scene writes, so pool logs can be checked around it.
std::string sceneDisposalLog() {
    O3dScene* probe = new O3dScene();
    testing::internal::CaptureStdout();
    delete probe;
    return testing::internal::GetCapturedStdout();
}

} // namespace

TEST(DataObjectPool, AddingOneNameTwiceCountsTwoShowsOneEntryAndLeaksTheFirstScene) {
    O3dScene* first = new O3dScene();
    O3dScene* second = new O3dScene();
    std::string disposal = sceneDisposalLog();
    DataObjectPool* pool = new DataObjectPool();
    pool->addObject("ship", first);
    pool->addObject("ship", second);

    EXPECT_EQ(2, pool->size());
    EXPECT_EQ("DataObjectPool {\n"
              "    num3dObjects = 2\n"
              "    ship = " +
                  second->toString() + "}\n",
              pool->toString());
    EXPECT_EQ(second, pool->getObject("ship"));

    testing::internal::CaptureStdout();
    delete pool;
    EXPECT_EQ("[Dispose objectPool]\n -> delete ship\n" + disposal,
              testing::internal::GetCapturedStdout());

    testing::internal::CaptureStdout();
    delete first;
    EXPECT_EQ(disposal, testing::internal::GetCapturedStdout());
}

TEST(DataObjectPool, LookingUpAMissingNameDoesNotCreateAnEntry) {
    DataObjectPool pool;
    EXPECT_EQ(nullptr, pool.getObject("missing"));
    EXPECT_FALSE(pool.exists("missing"));
    EXPECT_EQ(0, pool.size());
    EXPECT_EQ("DataObjectPool {\n    num3dObjects = 0\n}\n", pool.toString());
}

TEST(DataObjectPool, IndexWalksTheNamesInByteOrder) {
    DataObjectPool pool;
    O3dScene* lower = new O3dScene();
    O3dScene* upper = new O3dScene();
    O3dScene* other = new O3dScene();
    pool.addObject("ship", lower);
    pool.addObject("Ship", upper);
    pool.addObject("arch", other);
    EXPECT_EQ(upper, pool.getObject(0));
    EXPECT_EQ(other, pool.getObject(1));
    EXPECT_EQ(lower, pool.getObject(2));
}

TEST(DataObjectPool, IndexOutsideThePoolGivesNull) {
    DataObjectPool pool;
    pool.addObject("only", new O3dScene());
    EXPECT_EQ(nullptr, pool.getObject(1));
    EXPECT_EQ(nullptr, pool.getObject(-1));
}

TEST(DataObjectPool, DisposalNamesEachSceneInOrderAndDeletesIt) {
    std::string disposal = sceneDisposalLog();
    DataObjectPool* pool = new DataObjectPool();
    pool->addObject("b", new O3dScene());
    pool->addObject("a", new O3dScene());
    testing::internal::CaptureStdout();
    delete pool;
    EXPECT_EQ("[Dispose objectPool]\n -> delete a\n" + disposal + " -> delete b\n" + disposal,
              testing::internal::GetCapturedStdout());
}
