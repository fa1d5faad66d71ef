#include "bench/QuietStreams.h"
#include "runtime/Data.h"
#include "runtime/DataEffectPool.h"
#include "runtime/DataEventPool.h"
#include "runtime/KVLDemosys.h"
#include "script/DemoScriptParser.h"
#include "script/ParameterGroup.h"
#include "script/Parameters.h"
#include "support/ExampleDefinition.h"
#include "timeline/Effect.h"
#include "timeline/EventModifyEffect.h"
#include "timeline/EventStartEffect.h"
#include "timeline/EventStopEffect.h"
#include "timeline/Timeline.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

class BenchEffect : public Effect {
public:
    Effect* getInstance() override { return new BenchEffect(); }
};

const int OBJECTS = 4;

void writeFile(const std::filesystem::path& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text;
}

std::string scriptTime(unsigned int ticks) {
    char text[32];
    std::snprintf(text, sizeof(text), "%02u:%02u:%03u", ticks / 60000, (ticks / 1000) % 60,
                  ticks % 1000);
    return text;
}

// A script with a few effect objects and a timeline of the given number of
// statements: starts and stops, and method calls with float, time, integer,
// bool and string arguments, with a checkpoint now and then.
std::string generateScript(const std::string& definitions, int statements) {
    std::ostringstream text;
    text << "// generated\n{KVLDS1}\n"
         << "paths {\n    definition = " << definitions << ";\n}\n"
         << "screen {\n    width = 800;\n    height = 600;\n}\n"
         << "graphics {\n    logo = logo.png, GL_TEXTURE_2D;\n    sky = sky.png, "
            "GL_TEXTURE_2D;\n}\n";
    for (int i = 0; i < OBJECTS; i++) {
        text << "fx" << i
             << " * BenchEffect {\n    speed = 2.5;\n    texture = graphics[logo];\n}\n";
    }
    text << "timeline {\n";
    for (int i = 0; i < statements; i++) {
        std::string object = "fx" + std::to_string(i % OBJECTS);
        std::string at = scriptTime(static_cast<unsigned int>(i) * 10);
        switch (i % 7) {
        case 0:
            text << "    " << object << ".start(" << at << ", " << (i % 100) << ");\n";
            break;
        case 1:
            text << "    " << object << ".setSpeed(" << at << ", " << (i % 10) << ".5);\n";
            break;
        case 2:
            text << "    note < " << object << ".fade(" << at << ", " << at << ", "
                 << scriptTime(static_cast<unsigned int>(i) * 10 + 500) << ", 0.25);\n";
            break;
        case 3:
            text << "    " << object << ".burst(" << at << ", " << i << ", true);\n";
            break;
        case 4:
            text << "    " << object << ".setTexture(" << at << ", graphics[sky]);\n";
            break;
        case 5:
            text << "    Checkpoint " << at << "; // mark\n";
            break;
        default:
            text << "    " << object << ".stop(" << at << ");\n";
            break;
        }
    }
    text << "}\n";
    return text.str();
}

// The pools, templates and files of one benchmark run; removed at the end.
class ParserWorld {
public:
    explicit ParserWorld(int statements) {
        std::string pattern = (std::filesystem::temp_directory_path() / "kvlbench-XXXXXX").string();
        if (mkdtemp(pattern.data()) != nullptr) {
            root = pattern;
        }
        std::filesystem::create_directories(root / "definitions");
        writeFile(root / "definitions" / "BenchEffect.def", EXAMPLE_DEFINITION);
        writeFile(root / "definitions" / "system.def", "parameters { }");
        writeFile(root / "definitions" / "screen.def",
                  "parameters { width[type=int][default=640]; height[type=int][default=480]; }");
        writeFile(root / "definitions" / "sound.def", "parameters { }");
        script = (root / "demo.txt").string();
        writeFile(script, generateScript((root / "definitions").string() + "/", statements));

        KVLDemosys::resetState();
        KVLDemosys::data = new Data();
        KVLDemosys::effectTemplatePool = new DataEffectPool();
        KVLDemosys::effectPool = new DataEffectPool();
        KVLDemosys::eventPool = new DataEventPool();
        KVLDemosys::effectTemplatePool->addEffect("BenchEffect", new BenchEffect());
        KVLDemosys::eventPool->addEvent("start", new EventStartEffect());
        KVLDemosys::eventPool->addEvent("stop", new EventStopEffect());
        KVLDemosys::eventPool->addEvent("modify", new EventModifyEffect());
        KVLDemosys::data->addData("effectTemplatePool", KVLDemosys::effectTemplatePool);
        KVLDemosys::data->addData("effectPool", KVLDemosys::effectPool);
        KVLDemosys::data->addData("eventPool", KVLDemosys::eventPool);
    }

    ~ParserWorld() {
        delete KVLDemosys::data;
        KVLDemosys::resetState();
        std::error_code ignored;
        std::filesystem::remove_all(root, ignored);
    }

    // The effect objects, as the loader makes them before the timeline.
    void createEffects(Parameters* store) {
        for (int i = 0; i < store->size(); i++) {
            std::string name = store->getKey(i);
            ParameterGroup* group = store->getValue(i);
            Effect* effect = KVLDemosys::effectTemplatePool->getEffect(group->getParameter("class"))
                                 ->getInstance();
            effect->setParameters(group);
            KVLDemosys::effectPool->addEffect(name, effect);
            names.push_back(name);
        }
    }

    void releaseEffects() {
        for (const std::string& name : names) {
            delete KVLDemosys::effectPool->getEffect(name);
            KVLDemosys::effectPool->removeEffect(name);
        }
        names.clear();
    }

    std::string script;

private:
    std::filesystem::path root;
    std::vector<std::string> names;
};

void BM_DemoScriptParse(benchmark::State& state) {
    const int statements = static_cast<int>(state.range(0));
    // The parser's log, errors included, is not measured.
    QuietStreams quiet(true);
    ParserWorld world(statements);
    for (auto _ : state) {
        DemoScriptParser parser(world.script);
        parser.parseDefaults(true);
        parser.parse();
        Parameters* system = parser.getParameterGroup("system_parameters");
        Parameters* effects = parser.getParameterGroup("effect_parameters");
        if (!parser.isValid()) {
            state.SkipWithError(parser.getErrorMessage().c_str());
            break;
        }
        world.createEffects(effects);
        Timeline* timeline = parser.parseTimeline();
        if (timeline == nullptr) {
            state.SkipWithError(parser.getErrorMessage().c_str());
            break;
        }

        state.PauseTiming();
        timeline->init();
        delete timeline;
        world.releaseEffects();
        delete system;
        delete effects;
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * statements);
    state.counters["per_statement"] = benchmark::Counter(
        static_cast<double>(statements),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

} // namespace

BENCHMARK(BM_DemoScriptParse)
    ->ArgName("statements")
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond);
