#include "graphics/FrameBufferObject.h"
#include "runtime/Data.h"
#include "runtime/DataEffectPool.h"
#include "runtime/DataEventPool.h"
#include "runtime/DataFBOPool.h"
#include "runtime/KVLDemosys.h"
#include "runtime/KVLTime.h"
#include "script/ParameterGroup.h"
#include "support/GLTestWindow.h"
#include "timeline/ActionPool.h"
#include "timeline/Effect.h"
#include "timeline/EventModifyEffect.h"
#include "timeline/EventStartEffect.h"
#include "timeline/EventStopEffect.h"
#include "timeline/Timeline.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Journal = std::vector<std::string>;

// Writes every draw and every modify into one journal shared by all effects,
// so the order across effects shows.
class JournalEffect : public Effect {
public:
    JournalEffect(std::string name, Journal* journal) : name(std::move(name)), journal(journal) {}
    void draw(unsigned int ticks) override {
        journal->push_back(name + "@" + std::to_string(ticks));
    }
    void modify(std::string method, ParameterGroup* group) override {
        journal->push_back(name + "." + method + "(" + group->getParameter("p2") + ") at " +
                           std::to_string(modifyTime));
    }
    unsigned int scheduledStart() const { return startTime; }

private:
    std::string name;
    Journal* journal;
};

} // namespace

// A script's timeline built the way the parser builds it: a clone of the
// template per statement, its group of arguments, its time. Then frames are
// run the way the frame loop runs them: clock, watch, draw.
class EventScriptedSequence : public GLTestWindow {
protected:
    void SetUp() override {
        GLTestWindow::SetUp();
        KVLDemosys::data = new Data();
        KVLDemosys::effectPool = new DataEffectPool();
        KVLDemosys::fboPool = new DataFBOPool();
        KVLDemosys::eventPool = new DataEventPool();
        KVLDemosys::data->addData("effectPool", KVLDemosys::effectPool);
        KVLDemosys::data->addData("fboPool", KVLDemosys::fboPool);
        KVLDemosys::data->addData("eventPool", KVLDemosys::eventPool);
        KVLDemosys::action = new ActionPool();
        KVLDemosys::eventPool->addEvent("start", new EventStartEffect());
        KVLDemosys::eventPool->addEvent("stop", new EventStopEffect());
        KVLDemosys::eventPool->addEvent("modify", new EventModifyEffect());

        intro = new JournalEffect("intro", &journal);
        city = new JournalEffect("city", &journal);
        glow = new JournalEffect("glow", &journal);
        KVLDemosys::effectPool->addEffect("intro", intro);
        KVLDemosys::effectPool->addEffect("city", city);
        KVLDemosys::effectPool->addEffect("glow", glow);
        mainBuffer = new FrameBufferObject(32, 32, true, false);
        KVLDemosys::fboPool->addFBO("mainBuffer", mainBuffer);

        timeline = new Timeline();
        KVLDemosys::timeline = timeline;
    }

    void TearDown() override {
        testing::internal::CaptureStdout();
        delete timeline;
        delete KVLDemosys::action;
        delete KVLDemosys::data;
        testing::internal::GetCapturedStdout();
        GLTestWindow::TearDown();
    }

    // object.word(args...) with word "start" or "stop".
    void call(const std::string& object, const std::string& word,
              const std::vector<std::string>& args) {
        ParameterGroup* group = arguments(args);
        group->addParameter("object", object);
        Event* event = KVLDemosys::eventPool->getEvent(word)->getInstance();
        event->setParameters(group);
        KVLTime* time = new KVLTime(args[0]);
        event->setTime(time);
        timeline->addEvent(time->getTicks(), event);
    }

    // object.method(args...) for a method of the effect's class.
    void method(const std::string& object, const std::string& name,
                const std::vector<std::string>& args) {
        ParameterGroup* group = arguments(args);
        group->addParameter("object", object);
        group->addParameter("method", name);
        Event* event = KVLDemosys::eventPool->getEvent("modify")->getInstance();
        event->setTime(new KVLTime(args[0]));
        event->setParameters(group);
        timeline->addEvent(event->getTime()->getTicks(), event);
    }

    static ParameterGroup* arguments(const std::vector<std::string>& args) {
        ParameterGroup* group = new ParameterGroup();
        for (size_t i = 0; i < args.size(); i++) {
            group->addParameter("p" + std::to_string(i + 1), args[i]);
        }
        return group;
    }

    // One frame: the journal of that frame only.
    Journal frame(unsigned int wallTicks) {
        journal.clear();
        KVLDemosys::updateTime(wallTicks);
        timeline->watch();
        KVLDemosys::action->execute(KVLDemosys::getMillisecondsElapsed());
        return journal;
    }

    static std::string pool(const std::vector<std::string>& keys,
                            const std::vector<std::string>& aliases) {
        std::string text = "ActionPool {\n    Effects:\n";
        for (const std::string& key : keys) {
            text += "        " + key + " - Effect\n";
        }
        text += "    AliasTable:\n";
        for (const std::string& alias : aliases) {
            text += "        " + alias + "\n";
        }
        return text + "}\n";
    }

    Journal journal;
    JournalEffect* intro = nullptr;
    JournalEffect* city = nullptr;
    JournalEffect* glow = nullptr;
    FrameBufferObject* mainBuffer = nullptr;
    Timeline* timeline = nullptr;
};

TEST_F(EventScriptedSequence, StartsModifiesAndStopsDriveTheDrawingOrderFrameByFrame) {
    call("intro", "start", {"00:00:000"});
    call("city", "start", {"00:00:000", "20", "mainBuffer"});
    call("glow", "start", {"00:01:000", "90"});
    method("intro", "fade", {"00:01:000", "0.5"});
    call("intro", "start", {"00:02:000", "10"});
    method("city", "setColor", {"00:02:000", "red"});
    method("intro", "fade", {"00:02:000", "0.8"});
    call("intro", "stop", {"00:03:000"});
    call("city", "stop", {"00:03:000"});
    method("city", "setColor", {"00:03:500", "blue"});
    call("glow", "start", {"00:04:000", "90", "nowhere"});
    timeline->init();

    testing::internal::CaptureStdout();
    EXPECT_EQ((Journal{"city@0", "intro@0"}), frame(0));
    EXPECT_EQ(mainBuffer->toString() + "\n", testing::internal::GetCapturedStdout());
    EXPECT_EQ(pool({"020_city", "050_intro"}, {"city - 020_city", "intro - 050_intro"}),
              KVLDemosys::action->toString());
    EXPECT_EQ(mainBuffer, city->getRenderTarget());
    EXPECT_EQ(nullptr, intro->getRenderTarget());

    EXPECT_EQ((Journal{"city@16", "intro@16"}), frame(16));
    EXPECT_EQ((Journal{"city@999", "intro@999"}), frame(999));

    EXPECT_EQ((Journal{"intro.fade(0.5) at 1000", "city@1003", "intro@1003", "glow@1003"}),
              frame(1003));
    EXPECT_EQ(pool({"020_city", "050_intro", "090_glow"},
                   {"city - 020_city", "glow - 090_glow", "intro - 050_intro"}),
              KVLDemosys::action->toString());
    EXPECT_EQ(1000u, glow->scheduledStart());

    EXPECT_EQ((Journal{"city.setColor(red) at 2000", "intro.fade(0.8) at 2000", "intro@2000",
                       "city@2000", "intro@2000", "glow@2000"}),
              frame(2000));
    EXPECT_EQ(pool({"010_intro", "020_city", "050_intro", "090_glow"},
                   {"city - 020_city", "glow - 090_glow", "intro - 010_intro"}),
              KVLDemosys::action->toString());
    EXPECT_EQ(2000u, intro->scheduledStart());

    EXPECT_EQ((Journal{"intro@2990", "city@2990", "intro@2990", "glow@2990"}), frame(2990));

    EXPECT_EQ((Journal{"intro@3000", "glow@3000"}), frame(3000));
    EXPECT_EQ(pool({"050_intro", "090_glow"}, {"glow - 090_glow"}), KVLDemosys::action->toString());

    EXPECT_EQ((Journal{"city.setColor(blue) at 3500", "intro@3600", "glow@3600"}), frame(3600));

    testing::internal::CaptureStdout();
    EXPECT_EQ((Journal{"intro@4000", "glow@4000"}), frame(4000));
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
    EXPECT_EQ(pool({"050_intro", "090_glow"}, {"glow - 090_glow"}), KVLDemosys::action->toString());
    EXPECT_EQ(4000u, glow->scheduledStart());
    EXPECT_EQ(nullptr, glow->getRenderTarget());

    EXPECT_EQ((Journal{"intro@9000", "glow@9000"}), frame(9000));
}

TEST_F(EventScriptedSequence, MovingToAPositionReplaysTheScriptUpToThereInOneCall) {
    call("intro", "start", {"00:00:000", "30"});
    method("intro", "fade", {"00:05:000", "0.5"});
    call("city", "start", {"00:10:000", "20", "mainBuffer"});
    call("intro", "stop", {"00:12:000"});
    call("glow", "start", {"00:12:000", "90"});
    call("glow", "stop", {"00:30:000"});
    timeline->init();

    testing::internal::CaptureStdout();
    timeline->moveTo(12000);
    EXPECT_EQ("Timeline::moveTo(12000)\n" + mainBuffer->toString() + "\n",
              testing::internal::GetCapturedStdout());
    EXPECT_EQ((Journal{"intro.fade(0.5) at 5000"}), journal);
    EXPECT_EQ(pool({"020_city", "090_glow"}, {"city - 020_city", "glow - 090_glow"}),
              KVLDemosys::action->toString());
    EXPECT_EQ(10000u, city->scheduledStart());

    EXPECT_EQ((Journal{"city@12016", "glow@12016"}), frame(16));
}
