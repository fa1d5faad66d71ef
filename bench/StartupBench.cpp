// Time from the start of a run to its first drawn frame, for the default
// production: everything main() does before the frame loop, then one frame.
// Run from anywhere; it changes to the repository root, as the player needs.
#include "bench/QuietStreams.h"
#include "runtime/Demo.h"
#include "runtime/KVLDemosys.h"
#include "runtime/SceneClasses.h"

#include <SDL/SDL.h>
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdlib>

namespace {

void startToFirstFrame(benchmark::State& state) {
    if (chdir(KVL_SOURCE_DIR) != 0) {
        state.SkipWithError("cannot change to the repository root");
        return;
    }
    setenv("SDL_AUDIODRIVER", "dummy", 0);
    QuietStreams quiet;
    for (auto _ : state) {
        KVLDemosys::resetState();
        char name[] = "kvldemo";
        char* argv[] = {name, nullptr};
        Demo demo(1, argv);
        SceneClasses::registerAll(demo);
        if (demo.load()) {
            state.SkipWithError("the default production failed to load");
            break;
        }
        demo.init();
        demo.startClock();
        demo.frame(SDL_GetTicks());
        state.PauseTiming();
        demo.dispose();
        state.ResumeTiming();
    }
}

} // namespace

BENCHMARK(startToFirstFrame)->Unit(benchmark::kMillisecond)->Iterations(5);
