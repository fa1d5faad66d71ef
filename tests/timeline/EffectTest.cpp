#include "timeline/Effect.h"

#include "runtime/KVLTime.h"
#include "script/ParameterGroup.h"

#include <gtest/gtest.h>

#include <memory>

TEST(Effect, FirstDrawWithinTheFirstSecondGivesTheTicksThemselves) {
    Effect effect;
    EXPECT_EQ(700u, effect.getFrameTicks(700));
    EXPECT_DOUBLE_EQ(700.0, effect.getFrameTime(700));
}

TEST(Effect, FirstDrawLongAfterTheClockBeganGivesOneNominalFrame) {
    Effect effect;
    EXPECT_EQ(16u, effect.getFrameTicks(90000));
    EXPECT_DOUBLE_EQ(16.0, effect.getFrameTime(90000));
}

TEST(Effect, FrameTimeOfExactlyOneSecondIsKeptOneMoreGivesSixteen) {
    Effect effect;
    effect.setLastCalled(5000);
    EXPECT_EQ(1000u, effect.getFrameTicks(6000));
    EXPECT_DOUBLE_EQ(1000.0, effect.getFrameTime(6000));
    EXPECT_EQ(16u, effect.getFrameTicks(6001));
    EXPECT_DOUBLE_EQ(16.0, effect.getFrameTime(6001));
}

TEST(Effect, ClockThatMovesBackGivesSixteen) {
    Effect effect;
    effect.setLastCalled(5000);
    EXPECT_EQ(16u, effect.getFrameTicks(4990));
    EXPECT_DOUBLE_EQ(16.0, effect.getFrameTime(4990));
}

TEST(Effect, StoppedClockGivesZeroFrameTime) {
    Effect effect;
    effect.setLastCalled(5000);
    EXPECT_EQ(0u, effect.getFrameTicks(5000));
    EXPECT_DOUBLE_EQ(0.0, effect.getFrameTime(5000));
}

TEST(Effect, ModifyTimeCountsFromTheScheduledTime) {
    Effect effect;
    effect.setModifyTime(30000);
    EXPECT_EQ(250u, effect.getModifyTicks(30250));
    EXPECT_DOUBLE_EQ(250.0, effect.getModifyTime(30250));
}

TEST(Effect, ModifyTicksBeforeTheModifyWrapAsUnsigned) {
    Effect effect;
    effect.setModifyTime(100);
    EXPECT_EQ(0xFFFFFFFFu, effect.getModifyTicks(99));
    EXPECT_DOUBLE_EQ(4294967295.0, effect.getModifyTime(99));
}

TEST(Effect, NewEffectDrawsToTheScreen) {
    Effect effect;
    EXPECT_EQ(nullptr, effect.getRenderTarget());
}

TEST(Effect, RenderTargetIsStoredAsGiven) {
    Effect effect;
    auto* target = reinterpret_cast<FrameBufferObject*>(&effect);
    effect.setRenderTarget(target);
    EXPECT_EQ(target, effect.getRenderTarget());
}

TEST(Effect, GetInstanceGivesANewObject) {
    Effect effect;
    std::unique_ptr<Effect> instance(effect.getInstance());
    ASSERT_NE(nullptr, instance);
    EXPECT_NE(&effect, instance.get());
}

namespace {

// Opens the helpers that the effects share.
class HelperEffect : public Effect {
public:
    using Effect::floatOf;
    using Effect::floatsOf;
    using Effect::progressAt;
};

} // namespace

TEST(Effect, TimedChangeProgressStopsAtOneButRunsBelowZero) {
    KVLTime start(0, 2, 0);
    KVLTime end(0, 4, 0);
    EXPECT_DOUBLE_EQ(0.25, HelperEffect::progressAt(2500, start, end));
    EXPECT_DOUBLE_EQ(1.0, HelperEffect::progressAt(9000, start, end));
    EXPECT_DOUBLE_EQ(-0.5, HelperEffect::progressAt(1000, start, end));
}

TEST(Effect, ParameterReadsAsAFloatAndTextThatIsNoNumberAsZero) {
    ParameterGroup group;
    group.addParameter("p2", "-1.5");
    group.addParameter("p3", "fast");
    EXPECT_FLOAT_EQ(-1.5f, HelperEffect::floatOf(&group, "p2"));
    EXPECT_FLOAT_EQ(0.0f, HelperEffect::floatOf(&group, "p3"));
}

TEST(Effect, KeysReadInTurnIntoTheValues) {
    ParameterGroup group;
    group.addParameter("xpos", "1");
    group.addParameter("ypos", "-2.5");
    group.addParameter("zpos", "0.25");
    float values[3] = {9, 9, 9};
    HelperEffect::floatsOf(&group, {"xpos", "ypos", "zpos"}, values);
    EXPECT_FLOAT_EQ(1.0f, values[0]);
    EXPECT_FLOAT_EQ(-2.5f, values[1]);
    EXPECT_FLOAT_EQ(0.25f, values[2]);
}
