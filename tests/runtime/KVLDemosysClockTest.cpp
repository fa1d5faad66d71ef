#include "runtime/KVLDemosys.h"
#include "timeline/Timeline.h"

#include <SDL/SDL.h>
#include <gtest/gtest.h>

// The clock is driven with explicit tick values, the way the frame loop
// feeds it SDL_GetTicks() once per frame.
class KVLDemosysClock : public ::testing::Test {
protected:
    void SetUp() override {
        KVLDemosys::resetState();
        KVLDemosys::timeline = &timeline;
    }
    void TearDown() override { KVLDemosys::resetState(); }

    Timeline timeline;
};

TEST_F(KVLDemosysClock, ClockIsWallTimeSinceStart) {
    KVLDemosys::startTime = 1000;
    KVLDemosys::updateTime(1500);
    EXPECT_EQ(500u, KVLDemosys::getMillisecondsElapsed());
}

TEST_F(KVLDemosysClock, ClockBeforeTheRunStartsIsTheOffset) {
    timeline.setOffset(4000);
    EXPECT_EQ(4000u, KVLDemosys::getMillisecondsElapsed());
}

TEST_F(KVLDemosysClock, TimelineOffsetIsAddedToTheClock) {
    timeline.setOffset(60000);
    KVLDemosys::startTime = 100;
    KVLDemosys::updateTime(350);
    EXPECT_EQ(60250u, KVLDemosys::getMillisecondsElapsed());
}

TEST_F(KVLDemosysClock, ClockIsOnlyTheOffsetWhenOffsetPlusStartWraps) {
    timeline.setOffset(0xFFFFFF00u);
    KVLDemosys::startTime = 0x200;
    KVLDemosys::updateTime(0x300);
    EXPECT_EQ(0xFFFFFF00u, KVLDemosys::getMillisecondsElapsed());
    EXPECT_EQ(KVLDemosys::startTime, KVLDemosys::currentTime);
}

TEST_F(KVLDemosysClock, ClockWithoutATimelineHasNoOffset) {
    KVLDemosys::timeline = nullptr;
    KVLDemosys::startTime = 10;
    KVLDemosys::updateTime(30);
    EXPECT_EQ(20u, KVLDemosys::getMillisecondsElapsed());
}

TEST_F(KVLDemosysClock, ClockStandsStillDuringPauseAndGoesOnFromThereAfterResume) {
    KVLDemosys::updateTime(1000);
    EXPECT_EQ(1000u, KVLDemosys::getMillisecondsElapsed());
    KVLDemosys::stopTimer();
    for (unsigned int now = 1016; now <= 5000; now += 16) {
        KVLDemosys::updateTime(now);
        EXPECT_EQ(1000u, KVLDemosys::getMillisecondsElapsed()) << "at wall time " << now;
    }
    KVLDemosys::updateTime(5000);
    KVLDemosys::startTimer();
    EXPECT_EQ(1000u, KVLDemosys::getMillisecondsElapsed());
    KVLDemosys::updateTime(5100);
    EXPECT_EQ(1100u, KVLDemosys::getMillisecondsElapsed());
}

TEST_F(KVLDemosysClock, PausedFramesStillCountButPausedTimeDoesNot) {
    KVLDemosys::updateTime(1000);
    KVLDemosys::frames = 50;
    KVLDemosys::stopTimer();
    KVLDemosys::updateTime(9000);
    KVLDemosys::frames = 100;
    EXPECT_FLOAT_EQ(100.0f, static_cast<float>(KVLDemosys::getFPS()));
}

TEST_F(KVLDemosysClock, FpsRightAfterStartIsZero) {
    KVLDemosys::startTime = 700;
    KVLDemosys::updateTime(700);
    KVLDemosys::frames = 3;
    EXPECT_EQ(0.0, KVLDemosys::getFPS());
}

TEST_F(KVLDemosysClock, FpsLeavesTheOffsetOut) {
    timeline.setOffset(30000);
    KVLDemosys::updateTime(2000);
    KVLDemosys::frames = 120;
    EXPECT_FLOAT_EQ(60.0f, static_cast<float>(KVLDemosys::getFPS()));
}

TEST_F(KVLDemosysClock, PauseWithTheMusicSwitchedOffLeavesTheStopFailureAndStillStops) {
    KVLDemosys::updateTime(400);
    EXPECT_FALSE(KVLDemosys::stopTimer());
    EXPECT_TRUE(KVLDemosys::pause);
    EXPECT_EQ(400u, KVLDemosys::pauseTime);
    EXPECT_EQ("Failed to stop playing sound!", KVLDemosys::getMessage());
}

TEST_F(KVLDemosysClock, ResumeWithTheMusicSwitchedOffLeavesThePlayFailure) {
    KVLDemosys::stopTimer();
    EXPECT_FALSE(KVLDemosys::startTimer());
    EXPECT_FALSE(KVLDemosys::pause);
    EXPECT_EQ("Failed to play sound!", KVLDemosys::getMessage());
}

TEST_F(KVLDemosysClock, SetStartTimeTakesTheCurrentTicksNotItsArgument) {
    ASSERT_EQ(0, SDL_Init(SDL_INIT_TIMER));
    SDL_Delay(20);
    unsigned int before = SDL_GetTicks();
    KVLDemosys::setStartTime(5);
    unsigned int after = SDL_GetTicks();
    EXPECT_GE(KVLDemosys::getStartTime(), before);
    EXPECT_LE(KVLDemosys::getStartTime(), after);
    EXPECT_NE(5u, KVLDemosys::getStartTime());
    SDL_Quit();
}

TEST_F(KVLDemosysClock, QuitFlagIsSetAndRead) {
    EXPECT_FALSE(KVLDemosys::checkQuit());
    KVLDemosys::setQuit(true);
    EXPECT_TRUE(KVLDemosys::checkQuit());
}

TEST_F(KVLDemosysClock, ShowMessageWritesTheTextAndANewline) {
    testing::internal::CaptureStdout();
    KVLDemosys::showMessage("hello\nworld");
    KVLDemosys::showMessage();
    EXPECT_EQ("hello\nworld\n", testing::internal::GetCapturedStdout());
}

#include "runtime/Binary.h"
#include "support/TempDir.h"

#include <memory>

TEST(KVLDemosysBinary, LoadBinaryReadsTheWholeFile) {
    TempDir dir;
    dir.write("blob.bin", std::string("\x01\x00\xff\x7f", 4));
    std::unique_ptr<Binary> blob(KVLDemosys::loadBinary(dir.file("blob.bin")));
    ASSERT_NE(nullptr, blob);
    ASSERT_EQ(4u, blob->size());
    EXPECT_EQ(0x01, blob->getData(0));
    EXPECT_EQ(0x00, blob->getData(1));
    EXPECT_EQ(0xff, blob->getData(2));
    EXPECT_EQ(0x7f, blob->getData(3));
}

TEST(KVLDemosysBinary, LoadBinaryOfAMissingFileIsNullAndSilent) {
    TempDir dir;
    testing::internal::CaptureStdout();
    EXPECT_EQ(nullptr, KVLDemosys::loadBinary(dir.file("missing.bin")));
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
}
