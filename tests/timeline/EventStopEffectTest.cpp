#include "timeline/EventStopEffect.h"

#include "EventPools.h"
#include "runtime/Data.h"
#include "runtime/DataEffectPool.h"
#include "runtime/KVLDemosys.h"
#include "runtime/KVLTime.h"
#include "script/ParameterGroup.h"
#include "timeline/ActionPool.h"
#include "timeline/Effect.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class CountingEffect : public Effect {
public:
    void draw(unsigned int) override { drawn++; }
    int drawn = 0;
};

ParameterGroup* stopGroup(const std::string& object, const std::string& time) {
    ParameterGroup* group = new ParameterGroup();
    group->addParameter("p1", time);
    group->addParameter("object", object);
    return group;
}

} // namespace

class EventStopEffectTest : public ::testing::Test {
protected:
    void SetUp() override {
        createEventPools();
        effect = new CountingEffect();
        KVLDemosys::effectPool->addEffect("intro", effect);
    }
    void TearDown() override { deleteEventPools(); }

    CountingEffect* effect = nullptr;
};

TEST_F(EventStopEffectTest, StopTakesTheEffectOutOfTheActionPoolAndLeavesItInTheEffectPool) {
    KVLDemosys::action->addEffect("intro", effect, 50);
    EventStopEffect stop(new KVLTime(20000u), stopGroup("intro", "00:20:000"));
    stop.execute();
    KVLDemosys::action->execute(20016);
    EXPECT_EQ(0, KVLDemosys::action->countEffects());
    EXPECT_EQ(0, effect->drawn);
    EXPECT_TRUE(KVLDemosys::effectPool->exist("intro"));
    EXPECT_EQ(effect, KVLDemosys::effectPool->getEffect("intro"));
}

TEST_F(EventStopEffectTest, StopOfAnEffectThatIsNotRunningPrintsTheActionPoolError) {
    EventStopEffect stop(new KVLTime(20000u), stopGroup("intro", "00:20:000"));
    testing::internal::CaptureStdout();
    stop.execute();
    EXPECT_EQ("ERROR: ActionPool - error removing 'intro' from ActonPool\n",
              testing::internal::GetCapturedStdout());
}

TEST_F(EventStopEffectTest, ExtraArgumentsStayInTheGroupUnused) {
    ParameterGroup* group = stopGroup("intro", "00:20:000");
    group->addParameter("p2", "extra");
    KVLDemosys::action->addEffect("intro", effect, 50);
    EventStopEffect stop(new KVLTime(20000u), group);
    stop.execute();
    EXPECT_EQ(0, KVLDemosys::action->countEffects());
    EXPECT_EQ("extra", stop.getParameters()->getParameter("p2"));
}

TEST_F(EventStopEffectTest, StopAfterTwoStartsAtDifferentPrioritiesRemovesOnlyTheLaterOne) {
    KVLDemosys::action->addEffect("intro", effect, 10);
    KVLDemosys::action->addEffect("intro", effect, 60);
    EventStopEffect stop(new KVLTime(1000u), stopGroup("intro", "00:01:000"));
    stop.execute();
    EXPECT_EQ("ActionPool {\n"
              "    Effects:\n"
              "        010_intro - Effect\n"
              "    AliasTable:\n"
              "}\n",
              KVLDemosys::action->toString());
}

TEST_F(EventStopEffectTest, PrintsNoArgumentsWithOrWithoutAGroup) {
    EventStopEffect stop(new KVLTime(1000u), stopGroup("intro", "00:01:000"));
    EventStopEffect templ;
    EXPECT_EQ("EventStopEffect {  }\n", stop.toString());
    EXPECT_EQ("EventStopEffect {  }\n", templ.toString());
}

TEST_F(EventStopEffectTest, TemplateMakesEmptyStopEvents) {
    EventStopEffect templ;
    Event* instance = templ.getInstance();
    ASSERT_NE(nullptr, instance);
    EXPECT_EQ(nullptr, instance->getTime());
    EXPECT_EQ(nullptr, instance->getParameters());
    EXPECT_EQ("EventStopEffect {  }\n", instance->toString());
    delete instance;
}

TEST_F(EventStopEffectTest, TimeAndGroupSetLaterAreKept) {
    EventStopEffect stop;
    KVLTime* time = new KVLTime(500u);
    ParameterGroup* group = stopGroup("intro", "00:00:500");
    stop.setTime(time);
    stop.setParameters(group);
    EXPECT_EQ(time, stop.getTime());
    EXPECT_EQ(group, stop.getParameters());
}
