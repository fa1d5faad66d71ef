#ifndef KVL_DATAEVENTPOOL_H
#define KVL_DATAEVENTPOOL_H

#include "runtime/DataPool.h"

#include <map>
#include <string>

class Event;

// The event templates ("start", "stop", "modify") that the timeline parser
// clones.
class DataEventPool : public DataPool {
public:
    DataEventPool();
    ~DataEventPool() override;
    DataEventPool(const DataEventPool&) = delete;
    DataEventPool& operator=(const DataEventPool&) = delete;

    // An event already stored under the name is replaced, not deleted.
    void addEvent(const std::string& name, Event* event);
    Event* getEvent(const std::string& name) const;
    bool exist(const std::string& name) const;
    int size() const override;
    std::string toString() const override;

private:
    std::map<std::string, Event*> events;
};

#endif
