#include "timeline/EventModifyEffect.h"

#include "EventPools.h"
#include "runtime/Data.h"
#include "runtime/DataEffectPool.h"
#include "runtime/KVLDemosys.h"
#include "runtime/KVLTime.h"
#include "script/ParameterGroup.h"
#include "timeline/ActionPool.h"
#include "timeline/Effect.h"
#include "timeline/Timeline.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// Records each modify with the group it was given.
class RecordingEffect : public Effect {
public:
    void modify(std::string method, ParameterGroup* group) override {
        calls.push_back(method + "(" + group->getParameter("p2") + ")");
        groups.push_back(group);
    }
    unsigned int scheduledModify() const { return modifyTime; }

    std::vector<std::string> calls;
    std::vector<ParameterGroup*> groups;
};

ParameterGroup* modifyGroup(const std::string& object, const std::string& method,
                            const std::string& time, const std::string& value) {
    ParameterGroup* group = new ParameterGroup();
    group->addParameter("p1", time);
    group->addParameter("p2", value);
    group->addParameter("object", object);
    group->addParameter("method", method);
    return group;
}

} // namespace

class EventModifyEffectTest : public ::testing::Test {
protected:
    void SetUp() override {
        createEventPools();
        effect = new RecordingEffect();
        KVLDemosys::effectPool->addEffect("intro", effect);
    }
    void TearDown() override { deleteEventPools(); }

    RecordingEffect* effect = nullptr;
};

TEST_F(EventModifyEffectTest, ModifyOnAnEffectThatIsNotRunningStillCallsModify) {
    ParameterGroup* group = modifyGroup("intro", "setSpeed", "00:02:500", "4.0");
    EventModifyEffect event(new KVLTime(2500u), group);
    event.execute();
    EXPECT_EQ(0, KVLDemosys::action->countEffects());
    EXPECT_EQ((std::vector<std::string>{"setSpeed(4.0)"}), effect->calls);
    EXPECT_EQ(2500u, effect->scheduledModify());
}

TEST_F(EventModifyEffectTest, ModifyHandsTheEffectTheEventsOwnGroup) {
    ParameterGroup* group = modifyGroup("intro", "fade", "00:04:000", "00:04:000");
    EventModifyEffect event(new KVLTime(4000u), group);
    event.execute();
    ASSERT_EQ(1u, effect->groups.size());
    EXPECT_EQ(group, effect->groups[0]);
    EXPECT_EQ("intro", effect->groups[0]->getParameter("object"));
    EXPECT_EQ("fade", effect->groups[0]->getParameter("method"));
}

TEST_F(EventModifyEffectTest, ModifyTicksCountFromTheScriptTimeNotFromTheLateFrame) {
    Timeline timeline;
    KVLDemosys::timeline = &timeline;
    timeline.addEvent(1000,
                      new EventModifyEffect(new KVLTime(1000u),
                                            modifyGroup("intro", "burst", "00:01:000", "12")));
    timeline.init();
    KVLDemosys::updateTime(990);
    timeline.watch();
    EXPECT_TRUE(effect->calls.empty());
    KVLDemosys::updateTime(1037);
    timeline.watch();
    ASSERT_EQ(1u, effect->calls.size());
    EXPECT_EQ(1000u, effect->scheduledModify());
    EXPECT_EQ(37u, effect->getModifyTicks(KVLDemosys::getMillisecondsElapsed()));
    EXPECT_DOUBLE_EQ(237.0, effect->getModifyTime(1237));
}

TEST_F(EventModifyEffectTest, MethodIsAPlaceholderUntilSet) {
    EventModifyEffect templ;
    EXPECT_EQ("<method>", templ.getMethod());
    templ.setMethod("setTexture");
    EXPECT_EQ("setTexture", templ.getMethod());
}

TEST_F(EventModifyEffectTest, MethodComesFromTheGroup) {
    EventModifyEffect event(new KVLTime(0u), modifyGroup("intro", "burst", "00:00:000", "3"));
    EXPECT_EQ("burst", event.getMethod());
}

TEST_F(EventModifyEffectTest, UnknownEffectNameLeavesANullEntryAndTheModifyDoesNothing) {
    EventModifyEffect event(new KVLTime(0u), modifyGroup("ghost", "burst", "00:00:000", "3"));
    EXPECT_TRUE(KVLDemosys::effectPool->exist("ghost"));
    event.execute();
    EXPECT_TRUE(effect->calls.empty());
}

TEST_F(EventModifyEffectTest, PrintsItsArgumentsInsideItsName) {
    ParameterGroup* group = modifyGroup("intro", "setSpeed", "00:02:500", "4.0");
    EventModifyEffect event(new KVLTime(2500u), group);
    EXPECT_EQ("EventModifyEffect {\n"
              "parameters {\n"
              "    method = setSpeed;\n"
              "    object = intro;\n"
              "    p1 = 00:02:500;\n"
              "    p2 = 4.0;\n"
              "}\n"
              "}\n",
              event.toString());
}

TEST_F(EventModifyEffectTest, TemplateMakesEmptyModifyEvents) {
    EventModifyEffect templ;
    Event* instance = templ.getInstance();
    ASSERT_NE(nullptr, instance);
    EXPECT_EQ("EventModifyEffect {  }\n", instance->toString());
    EXPECT_EQ(nullptr, instance->getTime());
    EXPECT_EQ(nullptr, instance->getParameters());
    delete instance;
}

TEST_F(EventModifyEffectTest, TimeConstructorKeepsTheTime) {
    KVLTime* time = new KVLTime(800u);
    EventModifyEffect event(time);
    EXPECT_EQ(time, event.getTime());
    EXPECT_EQ("<method>", event.getMethod());
}
