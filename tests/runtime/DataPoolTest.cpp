#include "runtime/DataPool.h"

#include <gtest/gtest.h>

TEST(DataPool, BasePoolIsEmptyAndPrintsItsSize) {
    DataPool pool;
    EXPECT_EQ(0, pool.size());
    EXPECT_EQ("DataPool { size = 0 }\n", pool.toString());
}

TEST(DataPool, DeletingThroughTheBaseRunsTheConcretePoolsDestructor) {
    struct CountingPool : DataPool {
        explicit CountingPool(int* deaths) : deaths(deaths) {}
        ~CountingPool() override { ++*deaths; }
        int* deaths;
    };
    int deaths = 0;
    DataPool* pool = new CountingPool(&deaths);
    delete pool;
    EXPECT_EQ(1, deaths);
}
