#include "timeline/Timeline.h"

#include "runtime/KVLDemosys.h"
#include "runtime/KVLTime.h"
#include "timeline/Event.h"

#include <iostream>
#include <iterator>
#include <set>

namespace {

// An event without a time belongs at the start.
unsigned int ticksOf(const Event* event) {
    const KVLTime* time = event->getTime();
    return (time != nullptr) ? time->getTicks() : 0;
}

} // namespace

Timeline::Timeline() : nextEvent(0), offset(0), suspended(false), lastWatch(0) {}

// Events that never went through init() are not in the list and stay. A
// second init() lists events twice; each is deleted once all the same.
Timeline::~Timeline() {
    std::cout << "[Disposing Timeline Events]" << std::endl;
    events.clear();
    std::set<Event*> deleted;
    for (Event* event : eventList) {
        if (deleted.insert(event).second) {
            delete event;
        }
    }
    eventList.clear();
    std::cout << "[Disposing Timeline Checkpoints]" << std::endl;
    for (auto& entry : checkpoints) {
        delete entry.second;
    }
    checkpoints.clear();
}

void Timeline::addEvent(unsigned int ticks, Event* event) {
    if (event == nullptr) {
        return;
    }
    events.insert(std::make_pair(ticks, event));
}

void Timeline::addCheckpoint(KVLTime* time) {
    if (time == nullptr) {
        return;
    }
    checkpoints[time->getTicks()] = time;
}

bool Timeline::checpointExists(const KVLTime* time) const {
    if (time == nullptr) {
        return false;
    }
    return checkpoints.find(time->getTicks()) != checkpoints.end();
}

int Timeline::countCheckpoints() const {
    return static_cast<int>(checkpoints.size());
}

KVLTime* Timeline::getCheckpoint(unsigned int index) const {
    std::cout << "Timeline::moveToCheckpoint(" << index << ")" << std::endl;
    if (index >= checkpoints.size()) {
        std::cout << "Checkpoint " << index << " dont exist!" << std::endl;
        return nullptr;
    }
    return std::next(checkpoints.begin(), index)->second;
}

// Runs once: a second run would list every event twice.
void Timeline::init() {
    nextEvent = 0;
    lastWatch = 0;
    offset = 0;
    for (auto& entry : events) {
        eventList.push_back(entry.second);
    }
}

// Fires, in order, every event in the closed window from the previous watch
// to now. An event before the window is not skipped but blocks the list:
// running forward, windows join up, so that never happens.
void Timeline::watch() {
    if (suspended || nextEvent >= eventList.size()) {
        return;
    }
    unsigned int prev = lastWatch;
    unsigned int now = KVLDemosys::getMillisecondsElapsed();
    lastWatch = now;
    while (true) {
        Event* event = eventList[nextEvent];
        unsigned int t = ticksOf(event);
        if (now < t) {
            return;
        }
        if (prev > t) {
            return;
        }
        event->execute();
        nextEvent++;
        if (nextEvent >= eventList.size()) {
            return;
        }
    }
}

// Seeking replays the list from the start up to the clock, in one call. It
// resets no effect and leaves the action pool as it is.
void Timeline::moveTo(unsigned int ticks) {
    std::cout << "Timeline::moveTo(" << ticks << ")" << std::endl;
    offset = ticks;
    nextEvent = 0;
    lastWatch = 0;
    watch();
}

unsigned int Timeline::getOffset() const {
    return offset;
}

void Timeline::setOffset(unsigned int value) {
    offset = value;
}

std::string Timeline::toString() const {
    std::string text;
    for (const auto& entry : events) {
        text += KVLTime(entry.first).toString() + " = " + entry.second->toString();
    }
    return text;
}
