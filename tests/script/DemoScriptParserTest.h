#ifndef KVL_DEMOSCRIPTPARSERTEST_H
#define KVL_DEMOSCRIPTPARSERTEST_H

#include "runtime/Data.h"
#include "runtime/DataEffectPool.h"
#include "runtime/DataEventPool.h"
#include "runtime/KVLDemosys.h"
#include "script/DemoScriptParser.h"
#include "script/ParameterGroup.h"
#include "script/Parameters.h"
#include "support/ExampleDefinition.h"
#include "support/TempDir.h"
#include "timeline/Effect.h"
#include "timeline/EventModifyEffect.h"
#include "timeline/EventStartEffect.h"
#include "timeline/EventStopEffect.h"
#include "timeline/Timeline.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

// The effect class of the example definition file; it draws nothing.
class ExampleEffect : public Effect {
public:
    Effect* getInstance() override { return new ExampleEffect(); }
};

// A real event template that notes every event it makes, so that a test can
// read the time and the arguments of each event the parser placed.
template <class Base> class JournaledEvent : public Base {
public:
    explicit JournaledEvent(std::vector<Event*>* journal) : journal(journal) {}
    Event* getInstance() const override {
        Event* event = new JournaledEvent<Base>(journal);
        journal->push_back(event);
        return event;
    }

private:
    std::vector<Event*>* journal;
};

// The timeline of the worked example: three checkpoints, one of them twice,
// and an event of every kind.
const char* const EXAMPLE_TIMELINE =
    "    Checkpoint 00:10:000;\n"
    "    Checkpoint 01:00:000;\n"
    "    Checkpoint 00:10:000;\n"
    "    intro.start(00:00:000);\n"
    "    first fade < intro.fade(00:04:000, 00:04:000, 00:06:000, 0.5);\n"
    "    intro.setSpeed(00:02:500, 4.0);\n"
    "    intro.setTexture(00:03:000, graphics[logo]);\n"
    "    intro.burst(00:05:000, 12, true);\n"
    "    intro.stop(00:20:000);\n";

const char* const SYSTEM_DEFINITION = "parameters {\n"
                                      "    stop[type=string][values=<string>][default=30:00:000];\n"
                                      "}\n";

const char* const SCREEN_DEFINITION = "parameters {\n"
                                      "    width[type=int][default=640];\n"
                                      "    height[type=int][default=480];\n"
                                      "    near[type=float][default=0.1];\n"
                                      "    far[type=float][default=100.0];\n"
                                      "}\n";

const char* const SOUND_DEFINITION = "parameters {\n"
                                     "    file[type=string][values=<string>][default=none];\n"
                                     "}\n";

// The pools as the resource loader makes them, the definition files in a
// fresh directory, and a parser of "demo.txt" in that directory.
class DemoScriptParserTest : public ::testing::Test {
protected:
    void SetUp() override {
        KVLDemosys::resetState();
        templates = new DataEffectPool();
        effects = new DataEffectPool();
        events = new DataEventPool();
        templates->addEffect("ExampleEffect", new ExampleEffect());
        events->addEvent("start", new JournaledEvent<EventStartEffect>(&journal));
        events->addEvent("stop", new JournaledEvent<EventStopEffect>(&journal));
        events->addEvent("modify", new JournaledEvent<EventModifyEffect>(&journal));
        KVLDemosys::data = new Data();
        KVLDemosys::data->addData("effectTemplatePool", templates);
        KVLDemosys::data->addData("effectPool", effects);
        KVLDemosys::data->addData("eventPool", events);
        KVLDemosys::effectTemplatePool = templates;
        KVLDemosys::effectPool = effects;
        KVLDemosys::eventPool = events;
        writeDefinition("ExampleEffect", EXAMPLE_DEFINITION);
        writeDefinition("system", SYSTEM_DEFINITION);
        writeDefinition("screen", SCREEN_DEFINITION);
        writeDefinition("sound", SOUND_DEFINITION);
    }

    void TearDown() override {
        testing::internal::CaptureStdout();
        releaseRun();
        delete KVLDemosys::data;
        testing::internal::GetCapturedStdout();
        KVLDemosys::resetState();
    }

    // Frees what one parse made: timeline, parser, the two stores and the
    // effect objects made from them.
    void releaseRun() {
        if (timeline != nullptr) {
            timeline->init();
            delete timeline;
            timeline = nullptr;
        }
        delete parser;
        parser = nullptr;
        delete systemStore;
        systemStore = nullptr;
        delete effectStore;
        effectStore = nullptr;
        for (const std::string& name : objects) {
            delete effects->getEffect(name);
            effects->removeEffect(name);
        }
        objects.clear();
        journal.clear();
    }

    // Lets a test parse a second script.
    void nextRun() {
        testing::internal::CaptureStdout();
        releaseRun();
        testing::internal::GetCapturedStdout();
    }

    std::string definitionDirectory() const { return dir.file("definitions/"); }

    void writeDefinition(const std::string& name, const std::string& text) const {
        dir.write("definitions/" + name + ".def", text);
    }

    std::string pathsBlock() const {
        return "paths {\n    definition = " + definitionDirectory() + ";\n}\n";
    }

    // Header and paths block, then the given blocks.
    std::string script(const std::string& blocks) const {
        return "{KVLDS1}\n" + pathsBlock() + blocks;
    }

    // The worked example: a comment, the paths, a screen that overrides a
    // default, the picture "logo" and the example effect object "intro",
    // then the timeline of the given body.
    std::string exampleScript(const std::string& timeline = EXAMPLE_TIMELINE) const {
        return "// Everything behind two slashes is ignored\n"
               "{KVLDS1}\n"
               "\n"
               "paths {\n"
               "    definition = " +
               definitionDirectory() +
               ";\n"
               "    gfx = resources/graphics/;\n"
               "}\n"
               "\n"
               "screen {\n"
               "    width = 800;   // overrides the default of screen.def\n"
               "    height = 600;\n"
               "}\n"
               "\n"
               "graphics {\n"
               "    logo = logo.png, GL_TEXTURE_2D;\n"
               "}\n"
               "\n"
               "intro * ExampleEffect {\n"
               "    speed = 2.5;\n"
               "    mode = add;\n"
               "    texture = graphics[logo];\n"
               "}\n"
               "\n"
               "timeline {\n" +
               timeline + "}\n";
    }

    // A script with the example effect object "intro" and the given
    // timeline body.
    std::string scriptWithTimeline(const std::string& body) const {
        return script("graphics {\n    logo = logo.png, GL_TEXTURE_2D;\n}\n"
                      "intro * ExampleEffect {\n    speed = 2.5;\n}\n"
                      "timeline {\n" +
                      body + "\n}\n");
    }

    void createParser(const std::string& text, bool useDefaults = true) {
        dir.write("demo.txt", text);
        parser = new DemoScriptParser(dir.file("demo.txt"));
        parser->parseDefaults(useDefaults);
    }

    // Parses the text with defaults and keeps both output streams.
    bool parseText(const std::string& text, bool useDefaults = true, bool debug = false) {
        createParser(text, useDefaults);
        parser->setDebug(debug);
        runParse();
        return parser->isValid();
    }

    void runParse() {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        parser->parse();
        err = testing::internal::GetCapturedStderr();
        out = testing::internal::GetCapturedStdout();
        systemStore = parser->getParameterGroup("system_parameters");
        effectStore = parser->getParameterGroup("effect_parameters");
    }

    // Effect objects the way the loader makes them: an instance of the
    // template of the block's class, given its group, under the object name.
    void createEffectObjects() {
        for (int i = 0; effectStore != nullptr && i < effectStore->size(); i++) {
            std::string name = effectStore->getKey(i);
            ParameterGroup* group = effectStore->getValue(i);
            Effect* effect = templates->getEffect(group->getParameter("class"))->getInstance();
            effect->setParameters(group);
            effect->init();
            effects->addEffect(name, effect);
            objects.push_back(name);
        }
    }

    // Parses the script, makes its effect objects and then the timeline,
    // keeping both output streams of the timeline run.
    Timeline* parseTimelineOf(const std::string& text) {
        if (!parseText(text)) {
            ADD_FAILURE() << "script refused: " << parser->getErrorMessage();
            return nullptr;
        }
        createEffectObjects();
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        timeline = parser->parseTimeline();
        err = testing::internal::GetCapturedStderr();
        out = testing::internal::GetCapturedStdout();
        return timeline;
    }

    Timeline* parseTimelineBody(const std::string& body) {
        return parseTimelineOf(scriptWithTimeline(body));
    }

    static std::map<std::string, std::string> entries(const ParameterGroup* group) {
        std::map<std::string, std::string> result;
        for (int i = 0; group != nullptr && i < group->size(); i++) {
            result[group->getKey(i)] = group->getValue(i);
        }
        return result;
    }

    std::map<std::string, std::string> systemGroup(const std::string& name) const {
        EXPECT_NE(nullptr, systemStore);
        if (systemStore == nullptr || !systemStore->exist(name)) {
            ADD_FAILURE() << "no system group " << name;
            return {};
        }
        return entries(systemStore->getGroup(name));
    }

    std::map<std::string, std::string> effectGroup(const std::string& name) const {
        EXPECT_NE(nullptr, effectStore);
        if (effectStore == nullptr || !effectStore->exist(name)) {
            ADD_FAILURE() << "no effect group " << name;
            return {};
        }
        return entries(effectStore->getGroup(name));
    }

    TempDir dir;
    DataEffectPool* templates = nullptr;
    DataEffectPool* effects = nullptr;
    DataEventPool* events = nullptr;
    std::vector<Event*> journal;
    std::vector<std::string> objects;
    DemoScriptParser* parser = nullptr;
    Parameters* systemStore = nullptr;
    Parameters* effectStore = nullptr;
    Timeline* timeline = nullptr;
    std::string out;
    std::string err;
};

#endif
