#include "runtime/Demo.h"
#include "runtime/KVLDemosys.h"
#include "runtime/ResourceLoader.h"
#include "script/ParameterGroup.h"
#include "script/Parameters.h"
#include "timeline/Timeline.h"
#include "support/GLTestWindow.h"
#include "timeline/ActionPool.h"
#include "timeline/Effect.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

struct Arguments {
    explicit Arguments(std::vector<std::string> words) : storage(std::move(words)) {
        for (std::string& word : storage) {
            pointers.push_back(word.data());
        }
        pointers.push_back(nullptr);
    }
    int argc() const { return static_cast<int>(storage.size()); }
    char** argv() { return pointers.data(); }

    std::vector<std::string> storage;
    std::vector<char*> pointers;
};

void pushKey(SDLKey key) {
    SDL_Event event{};
    event.type = SDL_KEYDOWN;
    event.key.type = SDL_KEYDOWN;
    event.key.state = SDL_PRESSED;
    event.key.keysym.sym = key;
    ASSERT_EQ(0, SDL_PushEvent(&event));
}

} // namespace

// Frees what a Demo's constructor made (the pools), quietly.
void disposeQuietly(Demo& demo) {
    testing::internal::CaptureStdout();
    demo.getLoader()->dispose();
    testing::internal::GetCapturedStdout();
}

class DemoScript : public ::testing::Test {
protected:
    void SetUp() override { KVLDemosys::resetState(); }
    void TearDown() override { KVLDemosys::resetState(); }
};

TEST_F(DemoScript, WithoutAnArgumentTheScriptIsTheDefaultDemoscript) {
    Arguments args({"kvldemo"});
    Demo demo(args.argc(), args.argv());
    EXPECT_EQ("resources/scripts/demoscript.txt", demo.getScriptPath() + demo.getScriptFile());
    disposeQuietly(demo);
}

TEST_F(DemoScript, ArgumentIsAFileNameInsideTheScriptsDirectory) {
    Arguments args({"kvldemo", "a.txt"});
    Demo demo(args.argc(), args.argv());
    EXPECT_EQ("resources/scripts/a.txt", demo.getScriptPath() + demo.getScriptFile());
    disposeQuietly(demo);
}

TEST_F(DemoScript, EmptyArgumentCountsAsNone) {
    Arguments args({"kvldemo", ""});
    Demo demo(args.argc(), args.argv());
    EXPECT_EQ("resources/scripts/demoscript.txt", demo.getScriptPath() + demo.getScriptFile());
    disposeQuietly(demo);
}

TEST_F(DemoScript, DebugReturnsTheDemoItself) {
    Arguments args({"kvldemo"});
    Demo demo(args.argc(), args.argv());
    EXPECT_EQ(&demo, demo.debug(true));
    EXPECT_TRUE(demo.isValid());
    disposeQuietly(demo);
}

TEST_F(DemoScript, ConstructorMakesThePoolsBeforeEffectsAreRegistered) {
    Arguments args({"kvldemo"});
    Demo demo(args.argc(), args.argv());
    EXPECT_NE(nullptr, KVLDemosys::data);
    EXPECT_NE(nullptr, KVLDemosys::effectTemplatePool);
    EXPECT_NE(nullptr, KVLDemosys::action);
    disposeQuietly(demo);
}

// A frame driven with explicit clock values in a real window.
class DemoFrame : public GLTestWindow {
protected:
    void SetUp() override {
        GLTestWindow::SetUp();
        KVLDemosys::screenWidth = WIDTH;
        KVLDemosys::screenHeight = HEIGHT;
        testing::internal::CaptureStdout();
        demo = new Demo(args.argc(), args.argv());
        testing::internal::GetCapturedStdout();
        KVLDemosys::timeline = new Timeline();
        KVLDemosys::timeline->init();
        demo->startClock();
        KVLDemosys::startTime = 0;
        // As after Demo::init: the free camera is off.
        KVLDemosys::cameraActive = false;
    }
    void TearDown() override {
        disposeQuietly(*demo);
        delete demo;
        GLTestWindow::TearDown();
    }

    Arguments args{{"kvldemo"}};
    Demo* demo = nullptr;
};

TEST_F(DemoFrame, WithoutAStopTimeTheRunEndsOnceTheClockPassesThirtyMinutes) {
    EXPECT_EQ(1800000u, KVLDemosys::stopTime.getTicks());
    demo->frame(1800000);
    EXPECT_FALSE(KVLDemosys::checkQuit());
    demo->frame(1800001);
    EXPECT_TRUE(KVLDemosys::checkQuit());
}

TEST_F(DemoFrame, ClockEqualToTheStopTimeDoesNotEndTheRunOneMillisecondMoreDoes) {
    KVLDemosys::stopTime = KVLTime(0, 2, 0);
    demo->frame(2000);
    EXPECT_FALSE(KVLDemosys::checkQuit());
    demo->frame(2001);
    EXPECT_TRUE(KVLDemosys::checkQuit());
}

TEST_F(DemoFrame, EveryFrameCountsOne) {
    demo->frame(10);
    demo->frame(20);
    demo->frame(30);
    EXPECT_EQ(3u, KVLDemosys::frames);
}

TEST_F(DemoFrame, ClosingTheWindowDoesNotEndTheRun) {
    SDL_Event close{};
    close.type = SDL_QUIT;
    ASSERT_EQ(0, SDL_PushEvent(&close));
    demo->frame(100);
    EXPECT_FALSE(KVLDemosys::checkQuit());
}

TEST_F(DemoFrame, EscapeEndsTheRun) {
    pushKey(SDLK_ESCAPE);
    demo->frame(100);
    EXPECT_TRUE(KVLDemosys::checkQuit());
}

TEST_F(DemoFrame, OtherKeysDoNothing) {
    pushKey(SDLK_q);
    pushKey(SDLK_RETURN);
    testing::internal::CaptureStdout();
    demo->frame(100);
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
    EXPECT_FALSE(KVLDemosys::checkQuit());
    EXPECT_FALSE(KVLDemosys::pause);
}

TEST_F(DemoFrame, SpacePausesAndTheNextSpaceResumes) {
    pushKey(SDLK_SPACE);
    testing::internal::CaptureStdout();
    demo->frame(500);
    EXPECT_EQ("--> Stop Timeline\n", testing::internal::GetCapturedStdout());
    EXPECT_TRUE(KVLDemosys::pause);
    demo->frame(900);
    EXPECT_EQ(500u, KVLDemosys::getMillisecondsElapsed());
    pushKey(SDLK_SPACE);
    testing::internal::CaptureStdout();
    demo->frame(1300);
    EXPECT_EQ("--> Star Timeline\n", testing::internal::GetCapturedStdout());
    EXPECT_FALSE(KVLDemosys::pause);
    demo->frame(1400);
    EXPECT_EQ(600u, KVLDemosys::getMillisecondsElapsed());
}

TEST_F(DemoFrame, TwoSpacePressesInOneFramePauseAndResumeWithTwoLogLines) {
    pushKey(SDLK_SPACE);
    pushKey(SDLK_SPACE);
    testing::internal::CaptureStdout();
    demo->frame(700);
    EXPECT_EQ("--> Stop Timeline\n--> Star Timeline\n", testing::internal::GetCapturedStdout());
    EXPECT_FALSE(KVLDemosys::pause);
}

TEST_F(DemoFrame, EscapeWhilePausedEndsTheRunAndDurationShowsTheFrozenClock) {
    demo->frame(1000);
    pushKey(SDLK_SPACE);
    testing::internal::CaptureStdout();
    demo->frame(1234);
    demo->frame(4000);
    pushKey(SDLK_ESCAPE);
    demo->frame(9000);
    EXPECT_TRUE(KVLDemosys::checkQuit());
    demo->reportDuration();
    std::string log = testing::internal::GetCapturedStdout();
    EXPECT_NE(std::string::npos, log.find("Duration : (0000001234)-[00:01:234]\n")) << log;
}

TEST_F(DemoFrame, FpsLineIsTheFrameRateOverUnpausedTime) {
    for (unsigned int now = 0; now < 2000; now += 20) {
        demo->frame(now + 20);
    }
    testing::internal::CaptureStdout();
    demo->reportDuration();
    EXPECT_EQ("Duration : (0000002000)-[00:02:000]\nFPS = 50\n", testing::internal::GetCapturedStdout());
}

namespace {

// Fills the screen with one colour, as the simplest possible scene.
class ClearEffect : public Effect {
public:
    explicit ClearEffect(float red) : red(red) {}
    void draw(unsigned int ticks) override {
        drawnAt.push_back(ticks);
        glClearColor(red, 0.0f, 0.0f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    float red;
    std::vector<unsigned int> drawnAt;
};

} // namespace

TEST_F(DemoFrame, FrameDrawsTheRunningEffectsWithTheFramesClock) {
    ClearEffect scene(1.0f);
    KVLDemosys::action->addEffect("scene", &scene, 10);
    demo->frame(250);
    demo->frame(266);
    EXPECT_EQ((std::vector<unsigned int>{250, 266}), scene.drawnAt);
    EXPECT_EQ(1u, scene.getFrameTicks(267));
}

TEST_F(DemoFrame, PlainWhiteQuadShowsWhilePausedWithoutAPauseIcon) {
    KVLDemosys::pause = true;
    loadIdentityMatrices();
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT);
    demo->drawPauseSymbol();
    // The quad spans x 0.825..0.975 and y -0.955..-0.765 in clip space.
    EXPECT_EQ((Rgb{255, 255, 255}), readRgb(60, 4));
    EXPECT_EQ((Rgb{0, 0, 0}), readRgb(32, 32));
    EXPECT_EQ((Rgb{0, 0, 0}), readRgb(50, 4));
    EXPECT_FALSE(glIsEnabled(GL_DEPTH_TEST));
    EXPECT_FALSE(glIsEnabled(GL_COLOR_MATERIAL));
}

TEST_F(DemoFrame, NothingIsDrawnForPauseWhileRunning) {
    KVLDemosys::pause = false;
    loadIdentityMatrices();
    glClear(GL_COLOR_BUFFER_BIT);
    demo->drawPauseSymbol();
    EXPECT_EQ((Rgb{0, 0, 0}), readRgb(60, 4));
}

namespace {

// Asks GL for something that is not a capability in every draw.
class FaultyEffect : public Effect {
public:
    void draw(unsigned int) override {
        draws++;
        glEnable(0xFFFF);
    }
    int draws = 0;
};

} // namespace

TEST_F(DemoFrame, GlErrorInAnEffectIsLoggedWithThePoolAndTheRunGoesOn) {
    FaultyEffect faulty;
    KVLDemosys::action->addEffect("faulty", &faulty, 50);
    testing::internal::CaptureStdout();
    demo->frame(100);
    demo->frame(116);
    std::string log = testing::internal::GetCapturedStdout();
    EXPECT_EQ(2, faulty.draws);
    EXPECT_FALSE(KVLDemosys::checkQuit());
    std::string report = "[GL_ERROR LOCATION = 'main()']\n"
                         "[GL_ERROR CODE 1280] 'invalid enumerant' in ->\n"
                         "ActionPool {\n"
                         "    Effects:\n"
                         "        050_faulty - Effect\n"
                         "    AliasTable:\n"
                         "        faulty - 050_faulty\n"
                         "}\n";
    EXPECT_EQ(report + report, log);
    EXPECT_EQ(2u, KVLDemosys::frames);
}

// The stop time read from the script's block "system".
class DemoStopTime : public DemoFrame {
protected:
    void startWithStop(const char* stop) {
        store = new Parameters();
        ParameterGroup* system = new ParameterGroup();
        system->addParameter("start", "00:00:000");
        if (stop != nullptr) {
            system->addParameter("stop", stop);
        }
        store->addGroup("system", system);
        ParameterGroup* screen = new ParameterGroup();
        screen->addParameter("near", "1.0");
        screen->addParameter("far", "100.0");
        store->addGroup("screen", screen);
        KVLDemosys::parameters = store;
        demo->startClock();
        KVLDemosys::startTime = 0;
    }
    void TearDown() override {
        KVLDemosys::parameters = nullptr;
        delete store;
        DemoFrame::TearDown();
    }
    Parameters* store = nullptr;
};

TEST_F(DemoStopTime, StopTimeOfTheScriptEndsTheRunOnceTheClockPassesIt) {
    startWithStop("00:01:500");
    EXPECT_EQ(1500u, KVLDemosys::stopTime.getTicks());
    demo->frame(1500);
    EXPECT_FALSE(KVLDemosys::checkQuit());
    demo->frame(1501);
    EXPECT_TRUE(KVLDemosys::checkQuit());
}

TEST_F(DemoStopTime, MalformedStopTimeEndsTheRunAtTheFirstFrameWhoseClockExceedsZero) {
    startWithStop("soon");
    EXPECT_EQ(0u, KVLDemosys::stopTime.getTicks());
    demo->frame(0);
    EXPECT_FALSE(KVLDemosys::checkQuit());
    demo->frame(1);
    EXPECT_TRUE(KVLDemosys::checkQuit());
}

TEST_F(DemoStopTime, SystemBlockWithoutStopRunsThirtyMinutes) {
    startWithStop(nullptr);
    EXPECT_EQ(1800000u, KVLDemosys::stopTime.getTicks());
}

TEST_F(DemoFrame, CheckKeyPressFindsTheKeyAndSwallowsWhatCameBefore) {
    pushKey(SDLK_q);
    pushKey(SDLK_SPACE);
    pushKey(SDLK_ESCAPE);
    EXPECT_TRUE(KVLDemosys::checkKeyPress(SDLK_SPACE));
    // Escape is still queued, the q before Space is gone.
    EXPECT_FALSE(KVLDemosys::checkKeyPress(SDLK_q));
    pushKey(SDLK_ESCAPE);
    EXPECT_TRUE(KVLDemosys::checkKeyPress(SDLK_ESCAPE));
    EXPECT_FALSE(KVLDemosys::checkKeyPress(SDLK_ESCAPE));
}
