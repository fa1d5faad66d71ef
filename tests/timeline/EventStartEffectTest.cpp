#include "timeline/EventStartEffect.h"

#include "EventPools.h"
#include "graphics/FrameBufferObject.h"
#include "runtime/Data.h"
#include "runtime/DataEffectPool.h"
#include "runtime/DataFBOPool.h"
#include "runtime/KVLDemosys.h"
#include "runtime/KVLTime.h"
#include "script/ParameterGroup.h"
#include "support/GLTestWindow.h"
#include "timeline/ActionPool.h"
#include "timeline/Effect.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// Records its draws and exposes what the start event set.
class RecordingEffect : public Effect {
public:
    explicit RecordingEffect(std::vector<unsigned int>* draws) : draws(draws) {}
    void draw(unsigned int ticks) override { draws->push_back(ticks); }
    unsigned int scheduledStart() const { return startTime; }

private:
    std::vector<unsigned int>* draws;
};

ParameterGroup* startGroup(const std::string& object, const std::string& time,
                           const std::string& priority = "", const std::string& target = "") {
    ParameterGroup* group = new ParameterGroup();
    group->addParameter("p1", time);
    group->addParameter("object", object);
    if (!priority.empty()) {
        group->addParameter("p2", priority);
    }
    if (!target.empty()) {
        group->addParameter("p3", target);
    }
    return group;
}

} // namespace

class EventStartEffectTest : public ::testing::Test {
protected:
    void SetUp() override {
        createEventPools();
        intro = new RecordingEffect(&draws);
        KVLDemosys::effectPool->addEffect("intro", intro);
    }
    void TearDown() override { deleteEventPools(); }

    RecordingEffect* intro = nullptr;
    std::vector<unsigned int> draws;
};

// Render targets are GL objects, so these tests run with a window.
class EventStartEffectWithTargets : public GLTestWindow {
protected:
    void SetUp() override {
        GLTestWindow::SetUp();
        createEventPools();
        intro = new RecordingEffect(&draws);
        KVLDemosys::effectPool->addEffect("intro", intro);
        mainBuffer = new FrameBufferObject(32, 32, true, false);
        KVLDemosys::fboPool->addFBO("mainBuffer", mainBuffer);
    }
    void TearDown() override {
        deleteEventPools();
        GLTestWindow::TearDown();
    }

    RecordingEffect* intro = nullptr;
    FrameBufferObject* mainBuffer = nullptr;
    std::vector<unsigned int> draws;
};

TEST_F(EventStartEffectTest, PriorityTextThatIsNoIntegerGivesPriorityFifty) {
    EventStartEffect event(new KVLTime(0u), startGroup("intro", "00:00:000", "abc"));
    event.execute();
    EXPECT_EQ("ActionPool {\n"
              "    Effects:\n"
              "        050_intro - Effect\n"
              "    AliasTable:\n"
              "        intro - 050_intro\n"
              "}\n",
              KVLDemosys::action->toString());
}

TEST_F(EventStartEffectTest, MissingPriorityGivesPriorityFifty) {
    EventStartEffect event(new KVLTime(0u), startGroup("intro", "00:00:000"));
    event.execute();
    EXPECT_EQ("ActionPool {\n"
              "    Effects:\n"
              "        050_intro - Effect\n"
              "    AliasTable:\n"
              "        intro - 050_intro\n"
              "}\n",
              KVLDemosys::action->toString());
}

TEST_F(EventStartEffectTest, PriorityTwentyGivesTheOrderKeyOfTwenty) {
    EventStartEffect event(new KVLTime(0u), startGroup("intro", "00:00:000", "20"));
    event.execute();
    EXPECT_EQ("ActionPool {\n"
              "    Effects:\n"
              "        020_intro - Effect\n"
              "    AliasTable:\n"
              "        intro - 020_intro\n"
              "}\n",
              KVLDemosys::action->toString());
}

TEST_F(EventStartEffectTest, PriorityTwoHundredFiresButTheEffectNeverDraws) {
    EventStartEffect event(new KVLTime(4000u), startGroup("intro", "00:04:000", "200"));
    testing::internal::CaptureStdout();
    event.execute();
    KVLDemosys::action->execute(4016);
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
    EXPECT_EQ(4000u, intro->scheduledStart());
    EXPECT_EQ(0, KVLDemosys::action->countEffects());
    EXPECT_TRUE(draws.empty());
}

TEST_F(EventStartEffectTest, StartTimeIsTheScriptTimeNotTheFrameClock) {
    EventStartEffect event(new KVLTime(std::string("00:30:000")),
                           startGroup("intro", "00:30:000", "20"));
    KVLDemosys::updateTime(30041);
    event.execute();
    EXPECT_EQ(30000u, intro->scheduledStart());
    KVLDemosys::action->execute(30041);
    EXPECT_EQ((std::vector<unsigned int>{30041}), draws);
}

TEST_F(EventStartEffectTest, StartWithoutTargetDrawsToTheScreenAndWritesNothing) {
    EventStartEffect event(new KVLTime(0u), startGroup("intro", "00:00:000", "10"));
    testing::internal::CaptureStdout();
    event.execute();
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
    EXPECT_EQ(nullptr, intro->getRenderTarget());
}

TEST_F(EventStartEffectTest, UnknownEffectNameLeavesANullEntryAndTheStartDoesNothing) {
    EventStartEffect event(new KVLTime(0u), startGroup("nobody", "00:00:000"));
    EXPECT_TRUE(KVLDemosys::effectPool->exist("nobody"));
    event.execute();
    EXPECT_EQ(0, KVLDemosys::action->countEffects());
}

TEST_F(EventStartEffectTest, SetParametersResolvesTheEffectAtThatMoment) {
    EventStartEffect event;
    event.setTime(new KVLTime(100u));
    event.setParameters(startGroup("later", "00:00:100"));
    KVLDemosys::effectPool->addEffect("later", new RecordingEffect(&draws));
    event.execute();
    EXPECT_EQ(0, KVLDemosys::action->countEffects());
}

TEST_F(EventStartEffectTest, TemplateAndItsInstancesAreEmptyStartEvents) {
    EventStartEffect templ;
    Event* instance = templ.getInstance();
    ASSERT_NE(nullptr, instance);
    EXPECT_NE(&templ, instance);
    EXPECT_EQ("EventStartEffect {  }\n", instance->toString());
    EXPECT_EQ(nullptr, instance->getTime());
    EXPECT_EQ(nullptr, instance->getParameters());
    delete instance;
}

TEST_F(EventStartEffectTest, PrintsItsArgumentsInsideItsName) {
    ParameterGroup* group = startGroup("intro", "00:01:000", "30");
    EventStartEffect event(new KVLTime(1000u), group);
    EXPECT_EQ("EventStartEffect {\n" + group->toString() + "}\n", event.toString());
    EXPECT_EQ("EventStartEffect {\n"
              "parameters {\n"
              "    object = intro;\n"
              "    p1 = 00:01:000;\n"
              "    p2 = 30;\n"
              "}\n"
              "}\n",
              event.toString());
}

TEST_F(EventStartEffectTest, TimeConstructorKeepsTheTimeAndHasNoArguments) {
    KVLTime* time = new KVLTime(2500u);
    EventStartEffect event(time);
    EXPECT_EQ(time, event.getTime());
    EXPECT_EQ(nullptr, event.getParameters());
    EXPECT_EQ("EventStartEffect {  }\n", event.toString());
}

TEST_F(EventStartEffectWithTargets, KnownRenderTargetIsSetAndWrittenAsALine) {
    EventStartEffect event(new KVLTime(0u), startGroup("intro", "00:00:000", "20", "mainBuffer"));
    testing::internal::CaptureStdout();
    event.execute();
    EXPECT_EQ(mainBuffer->toString() + "\n", testing::internal::GetCapturedStdout());
    EXPECT_EQ(mainBuffer, intro->getRenderTarget());
}

TEST_F(EventStartEffectWithTargets, UnknownRenderTargetDrawsToTheScreenWithoutMessage) {
    intro->setRenderTarget(mainBuffer);
    EventStartEffect event(new KVLTime(0u), startGroup("intro", "00:00:000", "20", "nowhere"));
    testing::internal::CaptureStdout();
    event.execute();
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
    EXPECT_EQ(nullptr, intro->getRenderTarget());
    EXPECT_EQ(1, KVLDemosys::action->countEffects());
}

TEST_F(EventStartEffectWithTargets, StartWithoutTargetClearsThePreviousTarget) {
    EventStartEffect first(new KVLTime(0u), startGroup("intro", "00:00:000", "20", "mainBuffer"));
    EventStartEffect second(new KVLTime(500u), startGroup("intro", "00:00:500", "20"));
    testing::internal::CaptureStdout();
    first.execute();
    second.execute();
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(nullptr, intro->getRenderTarget());
}

TEST_F(EventStartEffectWithTargets,
       SecondStartOfARunningEffectAtTheSamePriorityUpdatesStartAndTargetAndKeepsOneEntry) {
    EventStartEffect first(new KVLTime(1000u), startGroup("intro", "00:01:000", "40"));
    EventStartEffect second(new KVLTime(3000u),
                            startGroup("intro", "00:03:000", "40", "mainBuffer"));
    testing::internal::CaptureStdout();
    first.execute();
    EXPECT_EQ(1000u, intro->scheduledStart());
    second.execute();
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(3000u, intro->scheduledStart());
    EXPECT_EQ(mainBuffer, intro->getRenderTarget());
    EXPECT_EQ("ActionPool {\n"
              "    Effects:\n"
              "        040_intro - Effect\n"
              "    AliasTable:\n"
              "        intro - 040_intro\n"
              "}\n",
              KVLDemosys::action->toString());
}
