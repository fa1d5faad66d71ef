#include "timeline/Timeline.h"
#include "runtime/KVLDemosys.h"
#include "runtime/KVLTime.h"
#include "timeline/Event.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// Writes its name into a shared journal when it fires.
class JournalEvent : public Event {
public:
    JournalEvent(std::string name, unsigned int ticks, std::vector<std::string>* journal,
                 int* deaths = nullptr)
        : name(std::move(name)), time(new KVLTime(ticks)), journal(journal), deaths(deaths) {}
    ~JournalEvent() override {
        delete time;
        if (deaths != nullptr) {
            ++*deaths;
        }
    }
    void execute() override { journal->push_back(name); }
    KVLTime* getTime() const override { return time; }
    std::string toString() const override { return "Journal " + name + "\n"; }

private:
    std::string name;
    KVLTime* time;
    std::vector<std::string>* journal;
    int* deaths;
};

using Journal = std::vector<std::string>;

} // namespace

// The clock is fed by hand: startTime is 0, so the demo clock is the value
// given to updateTime plus the timeline's offset.
class TimelineTest : public ::testing::Test {
protected:
    void SetUp() override {
        KVLDemosys::resetState();
        timeline = new Timeline();
        KVLDemosys::timeline = timeline;
    }
    void TearDown() override {
        testing::internal::CaptureStdout();
        delete timeline;
        testing::internal::GetCapturedStdout();
        KVLDemosys::resetState();
    }

    void add(const std::string& name, unsigned int ticks) {
        timeline->addEvent(ticks, new JournalEvent(name, ticks, &journal));
    }

    void frame(unsigned int now) {
        KVLDemosys::updateTime(now);
        timeline->watch();
    }

    Timeline* timeline = nullptr;
    Journal journal;
};

TEST_F(TimelineTest, EmptyTimelineLeavesAnEmptyListAndWatchReturnsAtOnce) {
    timeline->setOffset(1234);
    timeline->init();
    EXPECT_EQ(0u, timeline->getOffset());
    frame(0);
    frame(5000);
    EXPECT_TRUE(journal.empty());
    EXPECT_EQ("", timeline->toString());
}

TEST_F(TimelineTest, ThreeEventsWithOneTimeFireInScriptOrderInOneFrame) {
    add("first", 2000);
    add("second", 2000);
    add("third", 2000);
    timeline->init();
    frame(1990);
    EXPECT_TRUE(journal.empty());
    frame(2006);
    EXPECT_EQ((Journal{"first", "second", "third"}), journal);
}

TEST_F(TimelineTest, EventsAddedOutOfOrderFireInTimeOrder) {
    add("late", 3000);
    add("early", 1000);
    add("middle", 2000);
    timeline->init();
    frame(1000);
    frame(2000);
    frame(3000);
    EXPECT_EQ((Journal{"early", "middle", "late"}), journal);
}

TEST_F(TimelineTest, EventAtZeroFiresInTheFirstFrame) {
    add("intro", 0);
    add("later", 17);
    timeline->init();
    frame(0);
    EXPECT_EQ((Journal{"intro"}), journal);
}

TEST_F(TimelineTest, EventFiresInTheFrameWhoseClockEqualsItsTime) {
    add("exact", 500);
    timeline->init();
    frame(499);
    EXPECT_TRUE(journal.empty());
    frame(500);
    EXPECT_EQ((Journal{"exact"}), journal);
}

TEST_F(TimelineTest, EachEventFiresOnlyOnce) {
    add("once", 100);
    timeline->init();
    frame(100);
    frame(100);
    frame(200);
    EXPECT_EQ((Journal{"once"}), journal);
}

TEST_F(TimelineTest, ClockJumpForwardFiresAllPassedEventsInOrder) {
    add("a", 1000);
    add("b", 5000);
    add("c", 9000);
    add("d", 20000);
    timeline->init();
    frame(16);
    EXPECT_TRUE(journal.empty());
    frame(12000);
    EXPECT_EQ((Journal{"a", "b", "c"}), journal);
    frame(20000);
    EXPECT_EQ((Journal{"a", "b", "c", "d"}), journal);
}

TEST_F(TimelineTest, PausedClockFiresNothingNew) {
    add("due", 1000);
    add("after", 1100);
    timeline->init();
    frame(1000);
    KVLDemosys::stopTimer();
    frame(1500);
    frame(2000);
    EXPECT_EQ((Journal{"due"}), journal);
    EXPECT_EQ(1000u, KVLDemosys::getMillisecondsElapsed());
}

TEST_F(TimelineTest, MoveToTheTimeOfAnEventFiresThatEvent) {
    add("before", 500);
    add("target", 1000);
    add("after", 1001);
    timeline->init();
    testing::internal::CaptureStdout();
    timeline->moveTo(1000);
    EXPECT_EQ("Timeline::moveTo(1000)\n", testing::internal::GetCapturedStdout());
    EXPECT_EQ((Journal{"before", "target"}), journal);
    EXPECT_EQ(1000u, timeline->getOffset());
    EXPECT_EQ(1000u, KVLDemosys::getMillisecondsElapsed());
}

TEST_F(TimelineTest, MoveBackwardsReplaysTheEarlierEventsAgain) {
    add("a", 100);
    add("b", 200);
    add("c", 300);
    timeline->init();
    frame(300);
    testing::internal::CaptureStdout();
    KVLDemosys::updateTime(0);
    timeline->moveTo(150);
    testing::internal::GetCapturedStdout();
    EXPECT_EQ((Journal{"a", "b", "c", "a"}), journal);
    frame(50);
    EXPECT_EQ((Journal{"a", "b", "c", "a", "b"}), journal);
}

TEST_F(TimelineTest, EventBehindTheWindowIsNotFiredAndHoldsBackTheRest) {
    JournalEvent* moved = new JournalEvent("moved", 200, &journal);
    add("first", 100);
    timeline->addEvent(200, moved);
    add("last", 400);
    timeline->init();
    frame(150);
    moved->getTime()->setMilliseconds(120);
    frame(300);
    frame(500);
    EXPECT_EQ((Journal{"first"}), journal);
}

TEST_F(TimelineTest, InitRestartsTheClockOffsetAndTheList) {
    add("a", 100);
    timeline->setOffset(5000);
    timeline->init();
    EXPECT_EQ(0u, timeline->getOffset());
    frame(100);
    EXPECT_EQ((Journal{"a"}), journal);
}

TEST_F(TimelineTest, SecondInitListsEveryEventTwice) {
    add("a", 100);
    timeline->init();
    timeline->init();
    frame(100);
    EXPECT_EQ((Journal{"a", "a"}), journal);
}

TEST_F(TimelineTest, GetCheckpointWithIndexEqualToTheCountPrintsTwoLinesAndGivesNull) {
    timeline->addCheckpoint(new KVLTime(10000u));
    timeline->addCheckpoint(new KVLTime(60000u));
    testing::internal::CaptureStdout();
    KVLTime* found = timeline->getCheckpoint(2);
    EXPECT_EQ("Timeline::moveToCheckpoint(2)\nCheckpoint 2 dont exist!\n",
              testing::internal::GetCapturedStdout());
    EXPECT_EQ(nullptr, found);
}

TEST_F(TimelineTest, GetCheckpointWalksTheCheckpointsInTimeOrder) {
    KVLTime* late = new KVLTime(60000u);
    KVLTime* early = new KVLTime(10000u);
    timeline->addCheckpoint(late);
    timeline->addCheckpoint(early);
    testing::internal::CaptureStdout();
    EXPECT_EQ(early, timeline->getCheckpoint(0));
    EXPECT_EQ(late, timeline->getCheckpoint(1));
    EXPECT_EQ("Timeline::moveToCheckpoint(0)\nTimeline::moveToCheckpoint(1)\n",
              testing::internal::GetCapturedStdout());
}

TEST_F(TimelineTest, AddCheckpointWithAnExistingTimeKeepsOneEntry) {
    KVLTime* first = new KVLTime(std::string("00:10:000"));
    KVLTime* second = new KVLTime(std::string("0:10:0"));
    timeline->addCheckpoint(first);
    EXPECT_TRUE(timeline->checpointExists(second));
    timeline->addCheckpoint(second);
    EXPECT_EQ(1, timeline->countCheckpoints());
    testing::internal::CaptureStdout();
    EXPECT_EQ(second, timeline->getCheckpoint(0));
    testing::internal::GetCapturedStdout();
    delete first;
}

TEST_F(TimelineTest, CheckpointExistsComparesTicks) {
    timeline->addCheckpoint(new KVLTime(1, 0, 0));
    KVLTime same(0, 60, 0);
    KVLTime other(0, 59, 999);
    EXPECT_TRUE(timeline->checpointExists(&same));
    EXPECT_FALSE(timeline->checpointExists(&other));
}

TEST_F(TimelineTest, ToStringOfATimelineWithoutEventsIsEmpty) {
    timeline->addCheckpoint(new KVLTime(10000u));
    EXPECT_EQ("", timeline->toString());
}

TEST_F(TimelineTest, ToStringListsEachEventUnderItsLogTime) {
    add("b", 65123);
    add("a", 0);
    EXPECT_EQ("(0000000000)-[00:00:000] = Journal a\n"
              "(0000065123)-[01:05:123] = Journal b\n",
              timeline->toString());
}

TEST_F(TimelineTest, BaseEventTextHasNoLineEnd) {
    Event* plain = new Event();
    timeline->addEvent(1000, plain);
    EXPECT_EQ("(0000001000)-[00:01:000] = Event {...}", timeline->toString());
    timeline->init();
}

TEST(Timeline, DestructorDeletesListedEventsAndCheckpointsWithItsLog) {
    KVLDemosys::resetState();
    Journal journal;
    int deaths = 0;
    int strayDeaths = 0;
    Timeline* timeline = new Timeline();
    timeline->addEvent(10, new JournalEvent("a", 10, &journal, &deaths));
    timeline->addEvent(20, new JournalEvent("b", 20, &journal, &deaths));
    timeline->addCheckpoint(new KVLTime(10u));
    timeline->init();
    JournalEvent* stray = new JournalEvent("stray", 30, &journal, &strayDeaths);
    timeline->addEvent(30, stray);
    testing::internal::CaptureStdout();
    delete timeline;
    EXPECT_EQ("[Disposing Timeline Events]\n[Disposing Timeline Checkpoints]\n",
              testing::internal::GetCapturedStdout());
    EXPECT_EQ(2, deaths);
    EXPECT_EQ(0, strayDeaths);
    delete stray;
}

TEST(Timeline, OffsetIsAddedToTheDemoClock) {
    KVLDemosys::resetState();
    Timeline timeline;
    KVLDemosys::timeline = &timeline;
    timeline.setOffset(30000);
    KVLDemosys::updateTime(250);
    EXPECT_EQ(30000u, timeline.getOffset());
    EXPECT_EQ(30250u, KVLDemosys::getMillisecondsElapsed());
    KVLDemosys::resetState();
}
