#include "runtime/KVLDemosys.h"
#include "runtime/KVLTime.h"
#include "timeline/Event.h"
#include "timeline/Timeline.h"

#include <benchmark/benchmark.h>

namespace {

// An event that lies in the future for the whole measurement.
class FutureEvent : public Event {
public:
    explicit FutureEvent(unsigned int ticks) : time(ticks) {}
    void execute() override { fired++; }
    KVLTime* getTime() const override { return &time; }

    static long fired;

private:
    mutable KVLTime time;
};

long FutureEvent::fired = 0;

// A frame in which no event is due: the cost must not depend on how many
// events the script holds.
void TimelineWatchWithoutDueEvent(benchmark::State& state) {
    KVLDemosys::resetState();
    Timeline* timeline = new Timeline();
    const unsigned int first = 600000;
    for (long i = 0; i < state.range(0); i++) {
        unsigned int ticks = first + static_cast<unsigned int>(i);
        timeline->addEvent(ticks, new FutureEvent(ticks));
    }
    timeline->init();
    KVLDemosys::timeline = timeline;
    KVLDemosys::updateTime(30000);
    for (auto _ : state) {
        timeline->watch();
        benchmark::ClobberMemory();
    }
    if (FutureEvent::fired != 0) {
        state.SkipWithError("an event fired although none was due");
    }
    state.counters["events"] = static_cast<double>(state.range(0));
    KVLDemosys::resetState();
    delete timeline;
}

} // namespace

BENCHMARK(TimelineWatchWithoutDueEvent)->Arg(10)->Arg(100000);
