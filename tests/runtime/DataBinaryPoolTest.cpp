#include "runtime/DataBinaryPool.h"
#include "runtime/Binary.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

Binary* bytes(unsigned int count) {
    return new Binary(std::vector<unsigned char>(count, 1));
}

} // namespace

TEST(DataBinaryPool, PrintKeepsTheObjectPoolsCountWord) {
    DataBinaryPool pool;
    pool.addData("sunmap", bytes(256));
    pool.addData("noise", bytes(3));
    EXPECT_EQ("DataBinaryPool {\n"
              "    num3dObjects = 2\n"
              "    noise = Binary { size = 3 }\n"
              "    sunmap = Binary { size = 256 }\n"
              "}\n",
              pool.toString());
}

TEST(DataBinaryPool, AddingOneNameTwiceCountsTwiceAndKeepsTheLaterBlob) {
    DataBinaryPool pool;
    Binary* first = bytes(1);
    Binary* second = bytes(2);
    pool.addData("map", first);
    pool.addData("map", second);
    EXPECT_EQ(2, pool.size());
    EXPECT_EQ(second, pool.getData("map"));
    delete first;
}

TEST(DataBinaryPool, LookingUpAMissingNameGivesNullAndCreatesNoEntry) {
    DataBinaryPool pool;
    EXPECT_EQ(nullptr, pool.getData("missing"));
    EXPECT_FALSE(pool.exist("missing"));
    EXPECT_EQ("DataBinaryPool {\n    num3dObjects = 0\n}\n", pool.toString());
}

TEST(DataBinaryPool, IndexWalksTheNamesInByteOrderAndGivesNullOutside) {
    DataBinaryPool pool;
    Binary* b = bytes(1);
    Binary* a = bytes(1);
    pool.addData("b", b);
    pool.addData("a", a);
    EXPECT_EQ(a, pool.getData(0));
    EXPECT_EQ(b, pool.getData(1));
    EXPECT_EQ(nullptr, pool.getData(2));
}

TEST(DataBinaryPool, DisposalNamesEachBlob) {
    DataBinaryPool* pool = new DataBinaryPool();
    pool->addData("sunmap", bytes(4));
    pool->addData("noise", bytes(4));
    testing::internal::CaptureStdout();
    delete pool;
    EXPECT_EQ("[Dispose binaryPool]\n -> delete noise\n -> delete sunmap\n",
              testing::internal::GetCapturedStdout());
}
