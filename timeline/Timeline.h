#ifndef KVL_TIMELINE_H
#define KVL_TIMELINE_H

#include <map>
#include <string>
#include <vector>

class Event;
class KVLTime;

// The events of the script by time, fired as the demo clock passes them, and
// the offset that is added to the clock. init() flattens the events into a
// list, so that a frame in which nothing is due costs two comparisons.
class Timeline {
public:
    Timeline();
    ~Timeline();
    Timeline(const Timeline&) = delete;
    Timeline& operator=(const Timeline&) = delete;

    // Events of equal time keep the order in which they were added.
    void addEvent(unsigned int ticks, Event* event);
    // Takes over the time; one already at those ticks is replaced, not deleted.
    void addCheckpoint(KVLTime* time);
    bool checpointExists(const KVLTime* time) const;
    int countCheckpoints() const;
    KVLTime* getCheckpoint(unsigned int index) const;

    void init();
    void watch();
    void moveTo(unsigned int ticks);

    unsigned int getOffset() const;
    void setOffset(unsigned int value);
    std::string toString() const;

private:
    std::multimap<unsigned int, Event*> events;
    std::vector<Event*> eventList;
    std::map<unsigned int, KVLTime*> checkpoints;
    unsigned int nextEvent;
    unsigned int offset;
    bool suspended;
    unsigned int lastWatch;
};

#endif
