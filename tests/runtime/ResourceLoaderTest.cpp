#include "runtime/ResourceLoader.h"

#include "effects/DisplayTexture.h"
#include "effects/FadeEffect.h"
#include "runtime/Data.h"
#include "runtime/DataAnimationPool.h"
#include "runtime/DataBinaryPool.h"
#include "runtime/DataEffectPool.h"
#include "runtime/DataEventPool.h"
#include "runtime/DataFBOPool.h"
#include "runtime/DataObjectPool.h"
#include "runtime/DataShaderPool.h"
#include "runtime/DataTexturePool.h"
#include "runtime/GLExtensions.h"
#include "runtime/KVLDemosys.h"
#include "runtime/ProgressBar.h"
#include "script/ParameterGroup.h"
#include "script/Parameters.h"
#include "support/GLTestWindow.h"
#include "support/LoaderFixture.h"
#include "support/LoaderInWindowFixture.h"
#include "support/LogLines.h"
#include "support/PlayerProcess.h"
#include "support/ProductionScript.h"
#include "support/StdoutCapture.h"
#include "support/TempDir.h"
#include "timeline/ActionPool.h"
#include "timeline/Effect.h"
#include "timeline/EventModifyEffect.h"
#include "timeline/EventStartEffect.h"
#include "timeline/EventStopEffect.h"
#include "timeline/Timeline.h"

#include <GL/glew.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

// The loader reads its files by relative paths, as the player does from its
// working directory: each test runs inside a directory of its own that holds
// the definition files and the script.

namespace {

const std::string RULE(64, '#');

// The paths of every script here; pictures go under resources/gfx/.
const std::string PATHS = "definition = resources/definitions/; gfx = resources/gfx/; "
                          "misc = resources/misc/; sound = resources/music/;";

std::string script(const std::string& blocks) {
    return "{KVLDS1}\npaths { " + PATHS + " }\n" + blocks;
}

// A production with one fade, no music and no data blocks.
std::string fadeScript(const std::string& system = "start = 00:00:000;",
                       const std::string& timeline = "fade.start(00:00:000, 10);") {
    ProductionScript production;
    production.paths = PATHS;
    production.system = system;
    production.timeline = timeline;
    return production.text();
}

// Counts what the loader does to each effect object.
class ProbeEffect : public Effect {
public:
    void init() override {
        inits++;
        initParameters = parameters;
    }
    void reset() override { resets++; }
    Effect* getInstance() override { return new ProbeEffect(); }

    int inits = 0;
    int resets = 0;
    ParameterGroup* initParameters = nullptr;
};

ProbeEffect* probe(const std::string& name) {
    return dynamic_cast<ProbeEffect*>(KVLDemosys::effectPool->getEffect(name));
}

} // namespace

// Steps that need no GL context, and the whole sequence, whose initScreen
// opens the window itself.
class ResourceLoaderSteps : public LoaderFixture {
protected:
    void makePools() {
        logOf([this] { loader.createDataPools(); });
    }
    // Demo::load and Demo::init, with the results of the steps.
    std::vector<bool> loadAll(std::vector<int>* ticks = nullptr) {
        std::vector<bool> results;
        auto record = [&](bool result) {
            results.push_back(result);
            if (ticks != nullptr && loader.getProgressBar() != nullptr) {
                ticks->push_back(loader.getProgressBar()->getTickCount());
            }
        };
        logOf([&] {
            record(loader.createDataPools());
            record(loader.parseConfig());
            record(loader.initScreen());
            record(glewInit() == GLEW_OK);
            record(loader.loadDataFiles());
            record(loader.loadSound());
            record(loader.createEffectObjects());
            record(loader.createTimeline());
            record(loader.initDemo());
        });
        return results;
    }
};

TEST_F(ResourceLoaderSteps, LoaderStartsValidWithTheUnknownMessage) {
    EXPECT_TRUE(loader.isValid());
    EXPECT_EQ("ResourceLoader : unknown", loader.getErrorMessage());
    EXPECT_EQ(nullptr, loader.getProgressBar());
}

TEST_F(ResourceLoaderSteps, CreateDataPoolsLogsItsPhaseHeadersAndReturnsTrue) {
    bool result = false;
    std::vector<std::string> lines = splitLines(logOf([&] { result = loader.createDataPools(); }));
    EXPECT_TRUE(result);
    ASSERT_GE(lines.size(), 4u);
    EXPECT_EQ("[Creating DataPools]", lines[0]);
    EXPECT_EQ("[Creating Pool objects]", lines[1]);
    EXPECT_EQ("[Adding effect templates]", lines[2]);
    // Between the two stand what the templates' constructors say.
    EXPECT_EQ("[Adding event templates]", lines.back());
    EXPECT_EQ(1, std::count(lines.begin(), lines.end(), "[Adding event templates]"));
}

TEST_F(ResourceLoaderSteps, CreateDataPoolsFilesTheNinePoolsInDataUnderTheirNames) {
    makePools();
    ASSERT_NE(nullptr, KVLDemosys::data);
    const std::vector<std::pair<std::string, DataPool*>> pools = {
        {"objectPool", KVLDemosys::objectPool},
        {"texturePool", KVLDemosys::texturePool},
        {"animationPool", KVLDemosys::animationPool},
        {"effectTemplatePool", KVLDemosys::effectTemplatePool},
        {"effectPool", KVLDemosys::effectPool},
        {"binaryPool", KVLDemosys::binaryPool},
        {"eventPool", KVLDemosys::eventPool},
        {"shaderPool", KVLDemosys::shaderPool},
        {"fboPool", KVLDemosys::fboPool}};
    std::vector<DataPool*> seen;
    for (const auto& [name, pool] : pools) {
        EXPECT_NE(nullptr, pool) << name;
        EXPECT_TRUE(KVLDemosys::data->exist(name)) << name;
        EXPECT_EQ(pool, KVLDemosys::data->getData(name)) << name;
        EXPECT_EQ(seen.end(), std::find(seen.begin(), seen.end(), pool)) << name;
        seen.push_back(pool);
    }
    ASSERT_NE(nullptr, KVLDemosys::action);
    EXPECT_EQ(0, KVLDemosys::action->countEffects());
    EXPECT_EQ(0, KVLDemosys::effectPool->size());
}

TEST_F(ResourceLoaderSteps, CreateDataPoolsAddsTheEffectTemplatesAndTheStartStopAndModifyEvents) {
    makePools();
    ASSERT_TRUE(KVLDemosys::effectTemplatePool->exist("DisplayTexture"));
    EXPECT_NE(nullptr, dynamic_cast<DisplayTexture*>(
                           KVLDemosys::effectTemplatePool->getEffect("DisplayTexture")));
    ASSERT_TRUE(KVLDemosys::effectTemplatePool->exist("FadeEffect"));
    EXPECT_NE(nullptr,
              dynamic_cast<FadeEffect*>(KVLDemosys::effectTemplatePool->getEffect("FadeEffect")));
    EXPECT_EQ(3, KVLDemosys::eventPool->size());
    EXPECT_NE(nullptr, dynamic_cast<EventStartEffect*>(KVLDemosys::eventPool->getEvent("start")));
    EXPECT_NE(nullptr, dynamic_cast<EventStopEffect*>(KVLDemosys::eventPool->getEvent("stop")));
    EXPECT_NE(nullptr, dynamic_cast<EventModifyEffect*>(KVLDemosys::eventPool->getEvent("modify")));
}

TEST_F(ResourceLoaderSteps, ScriptWithNoObjectsGraphicsOrAnimationGivesABarOfFourTicks) {
    space.write(fadeScript());
    makePools();
    bool result = false;
    logOf([&] { result = loader.parseConfig(); });
    ASSERT_TRUE(result) << loader.getErrorMessage();
    ASSERT_NE(nullptr, loader.getProgressBar());
    EXPECT_EQ(4, loader.getProgressBar()->getMaxTicks());
    EXPECT_EQ(0, loader.getProgressBar()->getTickCount());
    EXPECT_EQ(0.0f, loader.getProgressBar()->getProgress());
}

TEST_F(ResourceLoaderSteps, EachGraphicsObjectAndAnimationEntryAddsATickButOtherBlocksDoNot) {
    space.write(fadeScript() + "graphics { a = a.png; b = b.png, GL_TEXTURE_2D; }\n"
                               "objects { c = c.kvl; }\n"
                               "animation { d = d.ani; }\n"
                               "binary { e = e.bin; }\n"
                               "shaders { f = f; }\n"
                               "framebuffers { g = 64, 64, COLOR_BUFFER; }\n");
    makePools();
    bool result = false;
    logOf([&] { result = loader.parseConfig(); });
    ASSERT_TRUE(result) << loader.getErrorMessage();
    EXPECT_EQ(2 + 1 + 1 + 4, loader.getProgressBar()->getMaxTicks());
}

TEST_F(ResourceLoaderSteps, ParseConfigHandsTheParsersTwoStoresToTheSystem) {
    space.write(fadeScript());
    makePools();
    bool result = false;
    std::vector<std::string> lines = splitLines(logOf([&] { result = loader.parseConfig(); }));
    ASSERT_TRUE(result) << loader.getErrorMessage();
    ASSERT_GE(lines.size(), 3u);
    EXPECT_EQ("Parsing config", lines[0]);
    EXPECT_EQ("[Parsing defaults]", lines[1]);
    EXPECT_EQ("[Parsing demoscript]", lines[2]);
    ASSERT_NE(nullptr, KVLDemosys::parameters);
    ASSERT_NE(nullptr, KVLDemosys::effects);
    EXPECT_EQ("64", KVLDemosys::parameters->getGroup("screen")->getParameter("width"));
    ASSERT_TRUE(KVLDemosys::effects->exist("fade"));
    EXPECT_EQ("FadeEffect", KVLDemosys::effects->getGroup("fade")->getParameter("class"));
    EXPECT_TRUE(loader.isValid());
}

TEST_F(ResourceLoaderSteps, FailedParseCopiesTheParsersMessageClearsValidAndMakesNoBar) {
    makePools();
    bool result = true;
    logOf([&] { result = loader.parseConfig(); });
    EXPECT_FALSE(result);
    EXPECT_FALSE(loader.isValid());
    EXPECT_EQ("DemoScriptParser : 'resources/scripts/demoscript.txt' not found!",
              loader.getErrorMessage());
    EXPECT_EQ(nullptr, loader.getProgressBar());
    EXPECT_EQ(nullptr, KVLDemosys::parameters);
    EXPECT_EQ(nullptr, KVLDemosys::effects);
}

TEST_F(ResourceLoaderSteps, PrintWithNothingLoadedSaysNoDataInEverySection) {
    std::string report = logOf([this] { loader.print(); });
    EXPECT_EQ(RULE + "\n" + "# Resources                                                    #\n" +
                  RULE + "\n" +
                  "--------------------- System parameters ------------------------\n"
                  "No Data\n"
                  "--------------------- Effects parameters -----------------------\n"
                  "No Data\n"
                  "--------------------- DataPools --------------------------------\n"
                  "No Data\n"
                  "--------------------- Timeline ---------------------------------\n"
                  "No Data\n" +
                  RULE + "\n",
              report);
    // Rulers, title and section headers are 64 characters wide.
    for (const std::string& line : splitLines(report)) {
        if (line != "No Data") {
            EXPECT_EQ(64u, line.size()) << line;
        }
    }
}

TEST_F(ResourceLoaderSteps, DisposeWithNothingLoadedWritesItsLinesInOrderWithoutTheExtensions) {
    bool result = false;
    std::string log = logOf([&] { result = loader.dispose(); });
    space.disposed = true;
    EXPECT_TRUE(result);
    EXPECT_EQ("[Deleting Pools]\n"
              "delete KVLDemosys::parameters\n"
              "delete KVLDemosys::effects\n"
              "delete KVLDemosys::data\n"
              "delete KVLDemosys::timeline\n"
              "delete KVLDemosys::action\n",
              log);
}

TEST_F(ResourceLoaderSteps, DisposeFreesTheParserFirstAndEachPartRightAfterItsLine) {
    space.write(fadeScript());
    makePools();
    logOf([this] { loader.parseConfig(); });
    KVLDemosys::timeline = new Timeline();
    KVLDemosys::timeline->init();
    std::vector<std::string> lines = splitLines(space.dispose());

    // The parser's definitions go before the pools.
    int definitions = indexOf(lines, "EffectDefinition::~EffectDefinition()");
    int header = indexOf(lines, "[Deleting Pools]");
    EXPECT_GE(definitions, 0);
    EXPECT_GT(header, definitions);
    int data = indexOf(lines, "delete KVLDemosys::data");
    int firstPool = indexOf(lines, "[Dispose animationPool]");
    int lastPool = indexOf(lines, "[Dispose texturePool]");
    int timeline = indexOf(lines, "delete KVLDemosys::timeline");
    int events = indexOf(lines, "[Disposing Timeline Events]");
    int action = indexOf(lines, "delete KVLDemosys::action");
    EXPECT_EQ(header + 1, indexOf(lines, "delete KVLDemosys::parameters"));
    EXPECT_EQ(header + 2, indexOf(lines, "delete KVLDemosys::effects"));
    EXPECT_EQ(header + 3, data);
    EXPECT_EQ(data + 1, firstPool);
    EXPECT_GT(lastPool, firstPool);
    EXPECT_EQ(lastPool + 1, timeline);
    EXPECT_EQ(timeline + 1, events);
    EXPECT_EQ(events + 2, action);
    EXPECT_EQ(static_cast<int>(lines.size()) - 1, action);
}

TEST_F(ResourceLoaderSteps, WholeLoadingSequenceTicksOnceInEachStepFromTheSoundOn) {
    space.write(fadeScript() + "binary { blob = blob.bin; }\n");
    space.directory.write("resources/misc/blob.bin", "12345");
    std::vector<int> ticks;
    std::vector<bool> results = loadAll(&ticks);
    EXPECT_EQ(std::vector<bool>(9, true), results);
    ASSERT_NE(nullptr, loader.getProgressBar());
    EXPECT_EQ(4, loader.getProgressBar()->getMaxTicks());
    // After parseConfig, initScreen, glewInit, loadDataFiles (a binary entry
    // gives none), loadSound, createEffectObjects, createTimeline, initDemo.
    EXPECT_EQ((std::vector<int>{0, 0, 0, 0, 1, 2, 3, 4}), ticks);
    EXPECT_TRUE(loader.isValid());
}

// A 2x2 red RGB image.
const std::string
    DOT_PNG("\x89\x50\x4e\x47\x0d\x0a\x1a\x0a\x00\x00\x00\x0d\x49\x48\x44\x52\x00\x00\x00\x02"
            "\x00\x00\x00\x02\x08\x02\x00\x00\x00\xfd\xd4\x9a\x73\x00\x00\x00\x10\x49\x44\x41"
            "\x54\x78\x9c\x63\xf8\xcf\xc0\x00\x44\x0c\x10\x0a\x00\x1f\xee\x03\xfd\x8b\x5f\x14"
            "\xd4\x00\x00\x00\x00\x49\x45\x4e\x44\xae\x42\x60\x82",
            73);

TEST_F(ResourceLoaderSteps, GraphicsEntriesTickOnceEachAlsoWhenTheFileIsAlreadyLoaded) {
    space.write(fadeScript() + "graphics { a = dot.png; b = dot.png; }\n");
    space.directory.write("resources/gfx/dot.png", DOT_PNG);
    std::vector<int> ticks;
    std::vector<bool> results = loadAll(&ticks);
    ASSERT_EQ(std::vector<bool>(9, true), results) << loader.getErrorMessage();
    EXPECT_EQ(6, loader.getProgressBar()->getMaxTicks());
    EXPECT_EQ((std::vector<int>{0, 0, 0, 2, 3, 4, 5, 6}), ticks);
    EXPECT_FLOAT_EQ(5.0f / 6.0f, loader.getProgressBar()->getProgress());
    // The second entry names a file already in the pool: ticked, not loaded.
    EXPECT_EQ(1, KVLDemosys::texturePool->size());
}

TEST_F(ResourceLoaderSteps, BarNeverShowsFullAfterTheWholeSequence) {
    space.write(fadeScript());
    std::vector<bool> results = loadAll();
    ASSERT_EQ(std::vector<bool>(9, true), results) << loader.getErrorMessage();
    ProgressBar* bar = loader.getProgressBar();
    ASSERT_NE(nullptr, bar);
    EXPECT_EQ(bar->getMaxTicks(), bar->getTickCount());
    EXPECT_FLOAT_EQ(3.0f / 4.0f, bar->getProgress());
    bar->tick();
    EXPECT_EQ(4, bar->getTickCount());
    EXPECT_FLOAT_EQ(3.0f / 4.0f, bar->getProgress());
}

TEST_F(ResourceLoaderSteps, InitScreenLogsTheModeAndTheExtensionListAndSetsTheViewport) {
    space.write(script("system { start = 00:00:000; }\n"
                       "screen { width = 80; height = 60; bpp = 32; }\n"));
    makePools();
    logOf([this] { loader.parseConfig(); });
    bool result = false;
    std::string log = logOf([&] { result = loader.initScreen(); });
    ASSERT_TRUE(result) << loader.getErrorMessage();
    ASSERT_NE(nullptr, KVLDemosys::glExtensions);
    EXPECT_EQ("Open screen : 80x60,32\n[Supported OpenGL Extensions]\n" +
                  KVLDemosys::glExtensions->toString(),
              log);
    GLint viewport[4] = {};
    glGetIntegerv(GL_VIEWPORT, viewport);
    EXPECT_EQ(80, viewport[2]);
    EXPECT_EQ(60, viewport[3]);
    EXPECT_EQ(0, loader.getProgressBar()->getTickCount());
}

TEST_F(ResourceLoaderSteps, DisposeAfterInitScreenEndsWithTheExtensionsLine) {
    space.write(fadeScript());
    makePools();
    logOf([this] {
        loader.parseConfig();
        loader.initScreen();
    });
    ASSERT_NE(nullptr, KVLDemosys::glExtensions);
    std::vector<std::string> lines = splitLines(space.dispose());
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ("delete KVLDemosys::action", lines[lines.size() - 2]);
    EXPECT_EQ("delete KVLDemosys::glExtensions", lines.back());
}

// Steps that draw the bar but do not open the screen themselves.
class ResourceLoaderInWindow : public LoaderInWindowFixture {
protected:
    int ticks() const { return space.loader.getProgressBar()->getTickCount(); }
    // parseConfig, createEffectObjects and createTimeline, all of which must
    // succeed.
    void loadScript(const std::string& text) {
        space.write(text);
        bool parsed = false;
        bool created = false;
        bool timeline = false;
        logOf([&] {
            parsed = loader.parseConfig();
            created = parsed && loader.createEffectObjects();
            timeline = created && loader.createTimeline();
        });
        ASSERT_TRUE(parsed && created && timeline) << loader.getErrorMessage();
    }
    void addProbeTemplate() {
        KVLDemosys::effectTemplatePool->addEffect("ProbeEffect", new ProbeEffect());
        space.directory.write("resources/definitions/ProbeEffect.def", "parameters {\n}\n");
    }
};

TEST_F(ResourceLoaderInWindow, LoadSoundWithTheMusicOffLoadsNothingAndStillTicks) {
    space.write(fadeScript());
    logOf([this] { loader.parseConfig(); });
    bool result = false;
    std::string log = logOf([&] { result = loader.loadSound(); });
    EXPECT_TRUE(result);
    EXPECT_EQ("[Setting up sound]\n", log);
    EXPECT_FALSE(KVLDemosys::music);
    EXPECT_EQ(1, ticks());
}

TEST_F(ResourceLoaderInWindow, FailedMusicLoadGivesNoTick) {
    space.write(script("system { start = 00:00:000; }\n"
                       "screen { width = 64; height = 64; }\n"
                       "sound { file = none.ogg; play = 1; }\n"));
    logOf([this] { loader.parseConfig(); });
    bool result = true;
    std::string log = logOf([&] { result = loader.loadSound(); });
    EXPECT_FALSE(result);
    EXPECT_FALSE(loader.isValid());
    EXPECT_EQ("Failed to load sound!\nFile : 'resources/music/none.ogg'", loader.getErrorMessage());
    EXPECT_EQ("[Setting up sound]\nPlay : resources/music/none.ogg\nKVLDemosys::soundInit()\n",
              log);
    EXPECT_EQ(0, ticks());
}

TEST_F(ResourceLoaderInWindow, CreateEffectObjectsMakesAnInitialisedInstanceForEachEffectBlock) {
    addProbeTemplate();
    space.write(script("system { start = 00:00:000; }\n"
                       "a * ProbeEffect { ; }\n"
                       "b * ProbeEffect { ; }\n"));
    logOf([this] { loader.parseConfig(); });
    bool result = false;
    std::string log = logOf([&] { result = loader.createEffectObjects(); });
    EXPECT_TRUE(result);
    EXPECT_EQ("[Create effect objects]\nProbeEffect.init()\nProbeEffect.init()\n", log);
    ASSERT_NE(nullptr, probe("a"));
    ASSERT_NE(nullptr, probe("b"));
    EXPECT_NE(probe("a"), probe("b"));
    EXPECT_NE(KVLDemosys::effectTemplatePool->getEffect("ProbeEffect"), probe("a"));
    EXPECT_EQ(1, probe("a")->inits);
    EXPECT_EQ(1, probe("b")->inits);
    // Each instance has its own block's parameters before init runs.
    EXPECT_EQ(KVLDemosys::effects->getGroup("a"), probe("a")->initParameters);
    EXPECT_EQ(KVLDemosys::effects->getGroup("b"), probe("b")->initParameters);
    EXPECT_EQ(1, ticks());
}

TEST_F(ResourceLoaderInWindow, ResetAllEffectsResetsEveryEffectObjectOnce) {
    addProbeTemplate();
    loadScript(script("system { start = 00:00:000; }\n"
                      "a * ProbeEffect { ; }\n"
                      "b * ProbeEffect { ; }\n"
                      "c * ProbeEffect { ; }\n"));
    ASSERT_EQ(0, probe("a")->resets);
    loader.resetAllEffects();
    EXPECT_EQ(1, probe("a")->resets);
    EXPECT_EQ(1, probe("b")->resets);
    EXPECT_EQ(1, probe("c")->resets);
    EXPECT_EQ(0,
              dynamic_cast<ProbeEffect*>(KVLDemosys::effectTemplatePool->getEffect("ProbeEffect"))
                  ->resets);
}

TEST_F(ResourceLoaderInWindow, ResetAllEffectsLeavesRunningEffectsInTheActionPool) {
    addProbeTemplate();
    loadScript(script("system { start = 00:00:000; }\n"
                      "a * ProbeEffect { ; }\n"
                      "timeline { a.start(00:00:000, 20); }\n"));
    logOf([] { KVLDemosys::timeline->watch(); });
    ASSERT_EQ(1, KVLDemosys::action->countEffects());
    loader.resetAllEffects();
    EXPECT_EQ(1, probe("a")->resets);
    EXPECT_EQ(1, KVLDemosys::action->countEffects());
}

TEST_F(ResourceLoaderInWindow, CreateTimelineBuildsAndListsTheEventsAndTicks) {
    space.write(fadeScript("start = 00:00:000;", "fade.start(00:00:000, 10);\n"
                                                 "fade.stop(00:02:000);"));
    logOf([this] {
        loader.parseConfig();
        loader.createEffectObjects();
    });
    bool result = false;
    std::string log = logOf([&] { result = loader.createTimeline(); });
    EXPECT_TRUE(result);
    EXPECT_EQ("[Parsing timeline]\n[Parsing timeline - DONE]\n[Timeline init]\n", log);
    ASSERT_NE(nullptr, KVLDemosys::timeline);
    EXPECT_NE(std::string::npos,
              KVLDemosys::timeline->toString().find("(0000002000)-[00:02:000] = EventStopEffect"));
    EXPECT_EQ(2, ticks());
}

TEST_F(ResourceLoaderInWindow, TimelineErrorReturnsFalseButLeavesTheLoaderValid) {
    space.write(fadeScript("start = 00:00:000;", "nobody.start(00:00:000);"));
    logOf([this] {
        loader.parseConfig();
        loader.createEffectObjects();
    });
    bool result = true;
    std::string log = logOf([&] { result = loader.createTimeline(); });
    EXPECT_FALSE(result);
    EXPECT_TRUE(loader.isValid());
    EXPECT_EQ("Error Pasing Timeline!\nScript object 'nobody' not found\n"
              "Probable Cause : Spelling error?",
              loader.getErrorMessage());
    EXPECT_EQ(nullptr, KVLDemosys::timeline);
    EXPECT_EQ(std::string::npos, log.find("[Parsing timeline - DONE]"));
    EXPECT_EQ(1, ticks());
}

TEST_F(ResourceLoaderInWindow, InitDemoLogsTheStartPositionAndTicksButIgnoresItWithMusicOff) {
    loadScript(fadeScript("start = 00:02:500;"));
    bool result = false;
    std::string log = logOf([&] { result = loader.initDemo(); });
    EXPECT_TRUE(result);
    EXPECT_EQ("[Getting Startpos]\nstartpos = (0000002500)-[00:02:500]\n[Demo Init]\n", log);
    EXPECT_EQ(0u, KVLDemosys::timeline->getOffset());
    EXPECT_EQ(3, ticks());
    EXPECT_TRUE(loader.isValid());
}

TEST_F(ResourceLoaderInWindow, InitDemoWithoutASoundBlockIgnoresTheStartPosition) {
    loadScript(script("system { start = 00:04:000; }\n"
                      "fade * FadeEffect { ; }\n"
                      "timeline { fade.start(00:00:000, 10); }\n"));
    bool result = false;
    std::string log = logOf([&] { result = loader.initDemo(); });
    EXPECT_TRUE(result);
    EXPECT_EQ(std::string::npos, log.find("Timeline::moveTo("));
    EXPECT_EQ(0u, KVLDemosys::timeline->getOffset());
    EXPECT_EQ(0, KVLDemosys::action->countEffects());
}

TEST_F(ResourceLoaderInWindow, ReloadReplacesTheTimelineAndKeepsItsOffset) {
    loadScript(fadeScript());
    Timeline* before = KVLDemosys::timeline;
    before->setOffset(1234);
    space.write(fadeScript("start = 00:00:000;", "fade.start(00:00:000, 10);\n"
                                                 "fade.stop(00:05:000);"));
    bool result = false;
    logOf([&] { result = loader.reload(); });
    ASSERT_TRUE(result) << loader.getErrorMessage();
    ASSERT_NE(nullptr, KVLDemosys::timeline);
    EXPECT_NE(before, KVLDemosys::timeline);
    EXPECT_EQ(1234u, KVLDemosys::timeline->getOffset());
    EXPECT_NE(std::string::npos,
              KVLDemosys::timeline->toString().find("(0000005000)-[00:05:000] = EventStopEffect"));
    EXPECT_TRUE(loader.isValid());
}

TEST_F(ResourceLoaderInWindow, ReloadEmptiesTheActionPool) {
    loadScript(fadeScript());
    logOf([] { KVLDemosys::timeline->watch(); });
    ASSERT_EQ(1, KVLDemosys::action->countEffects());
    bool result = false;
    logOf([&] { result = loader.reload(); });
    EXPECT_TRUE(result);
    EXPECT_EQ(0, KVLDemosys::action->countEffects());
}

TEST_F(ResourceLoaderInWindow, ReloadLogsItsStepsAndDoneAfterTheOldTimelineIsGone) {
    loadScript(fadeScript());
    std::vector<std::string> lines = splitLines(logOf([this] { loader.reload(); }));
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ("ResourceLoader::reload()", lines[0]);
    EXPECT_EQ("Parsing demoscript...", lines[1]);
    int timeline = indexOf(lines, "Parsing timeline...");
    int disposed = indexOf(lines, "[Disposing Timeline Events]");
    int done = indexOf(lines, "ResourceLoader::reload() - Done");
    EXPECT_GT(timeline, 1);
    EXPECT_GT(disposed, timeline);
    EXPECT_GT(done, disposed);
}

TEST_F(ResourceLoaderInWindow, ReloadKeepsTheEffectObjectsAndTheStoresOfTheFirstLoad) {
    loadScript(fadeScript());
    Effect* fade = KVLDemosys::effectPool->getEffect("fade");
    Parameters* parameters = KVLDemosys::parameters;
    Parameters* effects = KVLDemosys::effects;
    space.write(fadeScript("start = 00:07:000;"));
    bool result = false;
    logOf([&] { result = loader.reload(); });
    ASSERT_TRUE(result);
    EXPECT_EQ(fade, KVLDemosys::effectPool->getEffect("fade"));
    EXPECT_EQ(parameters, KVLDemosys::parameters);
    EXPECT_EQ(effects, KVLDemosys::effects);
    EXPECT_EQ("00:00:000", KVLDemosys::parameters->getGroup("system")->getParameter("start"));
}

TEST_F(ResourceLoaderInWindow, ReloadOfABrokenTimelineKeepsTheOldOneAndTheLoaderValid) {
    loadScript(fadeScript());
    Timeline* before = KVLDemosys::timeline;
    logOf([] { KVLDemosys::timeline->watch(); });
    space.write(fadeScript("start = 00:00:000;", "fade.start(00:00:000, 10);\n"
                                                 "nobody.stop(00:01:000);"));
    bool result = true;
    std::string log = logOf([&] { result = loader.reload(); });
    EXPECT_FALSE(result);
    EXPECT_TRUE(loader.isValid());
    EXPECT_EQ("Error Pasing Timeline!\nScript object 'nobody' not found\n"
              "Probable Cause : Spelling error?",
              loader.getErrorMessage());
    EXPECT_EQ(before, KVLDemosys::timeline);
    EXPECT_EQ(1, KVLDemosys::action->countEffects());
    EXPECT_EQ(std::string::npos, log.find("ResourceLoader::reload() - Done"));
}

TEST_F(ResourceLoaderInWindow, ReloadOfAMissingScriptReturnsFalseAndKeepsTheLoaderValid) {
    loadScript(fadeScript());
    Timeline* before = KVLDemosys::timeline;
    std::filesystem::remove(ProductionScript::PATH);
    bool result = true;
    std::string log = logOf([&] { result = loader.reload(); });
    EXPECT_FALSE(result);
    EXPECT_TRUE(loader.isValid());
    EXPECT_EQ("DemoScriptParser : 'resources/scripts/demoscript.txt' not found!",
              loader.getErrorMessage());
    EXPECT_EQ(before, KVLDemosys::timeline);
    EXPECT_EQ(std::string::npos, log.find("Parsing timeline..."));
}

TEST_F(ResourceLoaderInWindow, DisposeWithExtensionsWritesTheirLineLast) {
    KVLDemosys::glExtensions = new GLExtensions();
    std::string log = space.dispose();
    std::vector<std::string> lines = splitLines(log);
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ("delete KVLDemosys::action", lines[lines.size() - 2]);
    EXPECT_EQ("delete KVLDemosys::glExtensions", lines.back());
    EXPECT_EQ(1, std::count(lines.begin(), lines.end(), "delete KVLDemosys::glExtensions"));
}
