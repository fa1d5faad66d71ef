// Frame times of each scene as a production sets it up: every script in
// resources/scripts/scenes/ is loaded the way the player loads it and played
// from its start to its stop time, one frame every 1/60 s of demo clock. Each
// frame is timed from the clock step to glFinish, so the figure is the GL
// work and not only its submission. Reports the median, the 99th percentile
// and the slowest frame in milliseconds, and the frames a second the median
// allows. Needs an X server with GLX (xvfb-run around the binary).
#include "bench/QuietStreams.h"
#include "runtime/Demo.h"
#include "runtime/KVLDemosys.h"
#include "runtime/SceneClasses.h"

#include <GL/glew.h>
#include <SDL/SDL.h>
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace {

const char* const SCENE_DIRECTORY = "resources/scripts/scenes/";

double percentile(std::vector<double> values, double fraction) {
    if (values.empty()) {
        return 0.0;
    }
    std::sort(values.begin(), values.end());
    size_t index = static_cast<size_t>(fraction * static_cast<double>(values.size() - 1) + 0.5);
    return values[std::min(index, values.size() - 1)];
}

void playScene(benchmark::State& state, const std::string& script) {
    if (chdir(KVL_SOURCE_DIR) != 0) {
        state.SkipWithError("cannot change to the repository root");
        return;
    }
    setenv("SDL_AUDIODRIVER", "dummy", 0);
    std::vector<double> frameTimes;
    for (auto _ : state) {
        QuietStreams quiet(true);
        KVLDemosys::resetState();
        std::string file = std::string("scenes/") + script;
        char name[] = "kvl_bench";
        std::vector<char> argument(file.begin(), file.end());
        argument.push_back('\0');
        char* argv[] = {name, argument.data(), nullptr};
        Demo demo(2, argv);
        SceneClasses::registerAll(demo);
        if (demo.load()) {
            state.SkipWithError(("the scene " + script + " failed to load").c_str());
            demo.dispose();
            break;
        }
        demo.init();
        demo.startClock();
        unsigned int base = KVLDemosys::startTime;
        double total = 0.0;
        for (unsigned int frame = 0; !KVLDemosys::checkQuit(); frame++) {
            unsigned int now = base + frame * 1000u / 60u;
            auto start = std::chrono::steady_clock::now();
            demo.frame(now);
            glFinish();
            double seconds =
                std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
            frameTimes.push_back(seconds * 1000.0);
            total += seconds;
        }
        state.SetIterationTime(total);
        demo.dispose();
        KVLDemosys::resetState();
    }
    double median = percentile(frameTimes, 0.5);
    state.counters["frames"] = static_cast<double>(frameTimes.size());
    state.counters["median_ms"] = median;
    state.counters["p99_ms"] = percentile(frameTimes, 0.99);
    state.counters["max_ms"] = percentile(frameTimes, 1.0);
    state.counters["median_fps"] = (median > 0.0) ? 1000.0 / median : 0.0;
}

// One benchmark per script, registered before main runs, in name order.
struct SceneRegistration {
    SceneRegistration() {
        std::filesystem::path directory = std::filesystem::path(KVL_SOURCE_DIR) / SCENE_DIRECTORY;
        std::vector<std::string> scripts;
        std::error_code error;
        for (const auto& entry : std::filesystem::directory_iterator(directory, error)) {
            if (entry.path().extension() == ".txt") {
                scripts.push_back(entry.path().filename().string());
            }
        }
        std::sort(scripts.begin(), scripts.end());
        for (const std::string& script : scripts) {
            std::string stem = script.substr(0, script.size() - 4);
            benchmark::RegisterBenchmark(("Scene/" + stem).c_str(), playScene, script)
                ->UseManualTime()
                ->Iterations(1)
                ->Unit(benchmark::kMillisecond);
        }
    }
};

SceneRegistration registration;

} // namespace
