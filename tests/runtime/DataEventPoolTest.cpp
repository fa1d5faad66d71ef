#include "runtime/DataEventPool.h"
#include "timeline/Event.h"

#include <gtest/gtest.h>

namespace {

class CountingEvent : public Event {
public:
    explicit CountingEvent(int* deaths) : deaths(deaths) {}
    ~CountingEvent() override { ++*deaths; }

private:
    int* deaths;
};

} // namespace

TEST(DataEventPool, EmptyPoolPrintsTheEmptyMarker) {
    DataEventPool pool;
    EXPECT_EQ("EventPool { EMPTY }\n", pool.toString());
    EXPECT_EQ(0, pool.size());
}

TEST(DataEventPool, PrintsEachTemplateWithItsOwnText) {
    DataEventPool pool;
    pool.addEvent("stop", new Event());
    pool.addEvent("start", new Event());
    EXPECT_EQ("EventPool {\n"
              "    start = Event {...}"
              "    stop = Event {...}"
              "}\n",
              pool.toString());
}

TEST(DataEventPool, LookingUpAMissingNameGivesNullAndCreatesNoEntry) {
    DataEventPool pool;
    EXPECT_EQ(nullptr, pool.getEvent("start"));
    EXPECT_FALSE(pool.exist("start"));
    EXPECT_EQ(0, pool.size());
}

TEST(DataEventPool, SizeCountsEntriesNotAdds) {
    DataEventPool pool;
    Event* first = new Event();
    Event* second = new Event();
    pool.addEvent("start", first);
    pool.addEvent("start", second);
    EXPECT_EQ(1, pool.size());
    EXPECT_EQ(second, pool.getEvent("start"));
    EXPECT_TRUE(pool.exist("start"));
    delete first;
}

TEST(DataEventPool, DisposalNamesEachTemplateAndDeletesItThroughItsOwnDestructor) {
    int deaths = 0;
    DataEventPool* pool = new DataEventPool();
    pool->addEvent("stop", new CountingEvent(&deaths));
    pool->addEvent("modify", new CountingEvent(&deaths));
    testing::internal::CaptureStdout();
    delete pool;
    EXPECT_EQ("[Dispose eventPool]\n -> delete modify\n -> delete stop\n",
              testing::internal::GetCapturedStdout());
    EXPECT_EQ(2, deaths);
}
