#include "runtime/KVLDemosys.h"
#include "support/GLTestWindow.h"
#include "timeline/ActionPool.h"
#include "timeline/Effect.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// Records the order in which the pool draws it.
class RecordingEffect : public Effect {
public:
    RecordingEffect(std::string name, std::vector<std::string>* journal)
        : name(std::move(name)), journal(journal) {}
    void draw(unsigned int ticks) override {
        journal->push_back(name + "@" + std::to_string(ticks) + " last " +
                           std::to_string(lastCalled));
    }
    std::string name;
    std::vector<std::string>* journal;
};

std::string capture(const ActionPool& pool) { return pool.toString(); }

} // namespace

TEST(ActionPool, PrioritiesGiveThreeDigitOrderKeys) {
    ActionPool pool;
    Effect a;
    Effect b;
    Effect c;
    pool.addEffect("seven", &a, 7);
    pool.addEffect("fifty", &b, 50);
    pool.addEffect("hundred", &c, 100);
    EXPECT_EQ("ActionPool {\n"
              "    Effects:\n"
              "        007_seven - Effect\n"
              "        050_fifty - Effect\n"
              "        100_hundred - Effect\n"
              "    AliasTable:\n"
              "        fifty - 050_fifty\n"
              "        hundred - 100_hundred\n"
              "        seven - 007_seven\n"
              "}\n",
              capture(pool));
}

TEST(ActionPool, PriorityAboveHundredOrNegativeLeavesThePoolUnchangedAndSilent) {
    ActionPool pool;
    Effect effect;
    testing::internal::CaptureStdout();
    pool.addEffect("high", &effect, 101);
    pool.addEffect("negative", &effect, -1);
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
    EXPECT_EQ(0, pool.countEffects());
    EXPECT_EQ("ActionPool {\n    Effects:\n    AliasTable:\n}\n", capture(pool));
}

TEST(ActionPool, LowerPriorityDrawsFirstAndEqualPrioritiesByName) {
    std::vector<std::string> journal;
    RecordingEffect top("top", &journal);
    RecordingEffect beta("beta", &journal);
    RecordingEffect alpha("alpha", &journal);
    ActionPool pool;
    pool.addEffect("top", &top, 90);
    pool.addEffect("beta", &beta, 10);
    pool.addEffect("alpha", &alpha, 10);
    pool.execute(40);
    EXPECT_EQ((std::vector<std::string>{"alpha@40 last 0", "beta@40 last 0", "top@40 last 0"}),
              journal);
}

TEST(ActionPool, ExecuteStoresTheTicksOfTheDrawAsLastCalled) {
    std::vector<std::string> journal;
    RecordingEffect scene("scene", &journal);
    ActionPool pool;
    pool.addEffect("scene", &scene, 50);
    pool.execute(100);
    pool.execute(116);
    EXPECT_EQ((std::vector<std::string>{"scene@100 last 0", "scene@116 last 100"}), journal);
    EXPECT_EQ(4u, scene.getFrameTicks(120));
}

TEST(ActionPool, StartingTheSameEffectTwiceAtOnePriorityKeepsOneEntry) {
    ActionPool pool;
    Effect effect;
    pool.addEffect("scene", &effect, 30);
    pool.addEffect("scene", &effect, 30);
    EXPECT_EQ(1, pool.countEffects());
}

TEST(ActionPool, TwoPrioritiesDrawOneEffectTwiceAndAStopRemovesOnlyTheLater) {
    std::vector<std::string> journal;
    RecordingEffect scene("scene", &journal);
    ActionPool pool;
    pool.addEffect("scene", &scene, 30);
    pool.addEffect("scene", &scene, 60);
    EXPECT_EQ(2, pool.countEffects());
    pool.execute(10);
    EXPECT_EQ(2u, journal.size());
    pool.removeEffect("scene");
    EXPECT_EQ(1, pool.countEffects());
    EXPECT_EQ("ActionPool {\n    Effects:\n        030_scene - Effect\n    AliasTable:\n}\n",
              capture(pool));
    journal.clear();
    pool.execute(20);
    EXPECT_EQ(1u, journal.size());
    // The alias is gone, so the remaining entry cannot be stopped by name.
    testing::internal::CaptureStdout();
    pool.removeEffect("scene");
    EXPECT_EQ("ERROR: ActionPool - error removing 'scene' from ActonPool\n",
              testing::internal::GetCapturedStdout());
    EXPECT_EQ(1, pool.countEffects());
}

TEST(ActionPool, RemovingANameThatNeverRanPrintsTheErrorLine) {
    ActionPool pool;
    testing::internal::CaptureStdout();
    pool.removeEffect("ghost");
    EXPECT_EQ("ERROR: ActionPool - error removing 'ghost' from ActonPool\n",
              testing::internal::GetCapturedStdout());
}

TEST(ActionPool, RemoveAllEmptiesBothTablesWithoutDeletingEffects) {
    ActionPool pool;
    Effect effect;
    pool.addEffect("a", &effect, 1);
    pool.addEffect("b", &effect, 2);
    pool.removeAll();
    EXPECT_EQ(0, pool.countEffects());
    EXPECT_EQ("ActionPool {\n    Effects:\n    AliasTable:\n}\n", capture(pool));
    effect.setLastCalled(3); // still alive
}

namespace {

class ClearToColour : public Effect {
public:
    ClearToColour(float r, float g, float b) : r(r), g(g), b(b) {}
    void draw(unsigned int) override {
        glClearColor(r, g, b, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    float r, g, b;
};

// Fills the left half of the screen.
class LeftHalf : public Effect {
public:
    void draw(unsigned int) override {
        glColor4f(0.0f, 0.0f, 1.0f, 1.0f);
        glBegin(GL_QUADS);
        glVertex2f(-1.0f, -1.0f);
        glVertex2f(0.0f, -1.0f);
        glVertex2f(0.0f, 1.0f);
        glVertex2f(-1.0f, 1.0f);
        glEnd();
    }
};

} // namespace

using ActionPoolDrawing = GLTestWindow;

TEST_F(ActionPoolDrawing, EmptyPoolDrawsNothingAndTheClearedScreenShows) {
    ActionPool pool;
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT);
    pool.execute(100);
    EXPECT_EQ((Rgb{0, 0, 0}), readRgb(10, 10));
    EXPECT_EQ((Rgb{0, 0, 0}), readRgb(50, 50));
}

TEST_F(ActionPoolDrawing, EffectInThePoolClearsTheScreenToItsColour) {
    ActionPool pool;
    ClearToColour green(0.0f, 1.0f, 0.0f);
    pool.addEffect("green", &green, 50);
    pool.execute(100);
    EXPECT_EQ((Rgb{0, 255, 0}), readRgb(32, 32));
}

TEST_F(ActionPoolDrawing, HigherPriorityDrawsOnTop) {
    ActionPool pool;
    ClearToColour red(1.0f, 0.0f, 0.0f);
    LeftHalf blue;
    pool.addEffect("overlay", &blue, 60);
    pool.addEffect("background", &red, 40);
    pool.execute(100);
    EXPECT_EQ((Rgb{0, 0, 255}), readRgb(10, 32));
    EXPECT_EQ((Rgb{255, 0, 0}), readRgb(50, 32));
}
