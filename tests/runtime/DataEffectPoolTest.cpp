#include "runtime/DataEffectPool.h"
#include "timeline/Effect.h"

#include <gtest/gtest.h>

namespace {

class CountingEffect : public Effect {
public:
    explicit CountingEffect(int* deaths) : deaths(deaths) {}
    ~CountingEffect() override { ++*deaths; }

private:
    int* deaths;
};

} // namespace

TEST(DataEffectPool, AskingForAMissingEffectGivesNullAndEntersTheName) {
    DataEffectPool pool;
    EXPECT_FALSE(pool.exist("x"));
    EXPECT_EQ(nullptr, pool.getEffect("x"));
    EXPECT_TRUE(pool.exist("x"));
    EXPECT_EQ(1, pool.size());
    EXPECT_EQ("EffectPool {\n    x = Effect\n}\n", pool.toString());
}

TEST(DataEffectPool, EmptyPoolPrintsABlockWithNothingInside) {
    DataEffectPool pool;
    EXPECT_EQ("EffectPool {\n}\n", pool.toString());
    EXPECT_EQ(0, pool.size());
}

TEST(DataEffectPool, PrintsEveryNameInByteOrder) {
    DataEffectPool pool;
    pool.addEffect("intro", new Effect());
    pool.addEffect("City", new Effect());
    pool.addEffect("glow", new Effect());
    EXPECT_EQ("EffectPool {\n"
              "    City = Effect\n"
              "    glow = Effect\n"
              "    intro = Effect\n"
              "}\n",
              pool.toString());
    EXPECT_EQ("City", pool.getKey(0));
    EXPECT_EQ("intro", pool.getKey(2));
}

TEST(DataEffectPool, KeyOutsideThePoolIsEmpty) {
    DataEffectPool pool;
    pool.addEffect("only", new Effect());
    EXPECT_EQ("", pool.getKey(1));
    EXPECT_EQ("", pool.getKey(-1));
}

TEST(DataEffectPool, RemovingAnEffectErasesTheNameAndLeavesTheEffectAlive) {
    int deaths = 0;
    CountingEffect* effect = new CountingEffect(&deaths);
    {
        DataEffectPool pool;
        pool.addEffect("intro", effect);
        pool.removeEffect("intro");
        pool.removeEffect("never");
        EXPECT_FALSE(pool.exist("intro"));
        EXPECT_EQ(0, pool.size());
    }
    EXPECT_EQ(0, deaths);
    delete effect;
}

TEST(DataEffectPool, DisposalNamesEveryEntryAndDeletesEachEffectOnce) {
    int deaths = 0;
    DataEffectPool* pool = new DataEffectPool();
    pool->addEffect("intro", new CountingEffect(&deaths));
    pool->addEffect("city", new CountingEffect(&deaths));
    pool->getEffect("ghost");
    testing::internal::CaptureStdout();
    delete pool;
    EXPECT_EQ("[Dispose effectPool]\n -> delete city\n -> delete ghost\n -> delete intro\n",
              testing::internal::GetCapturedStdout());
    EXPECT_EQ(2, deaths);
}
