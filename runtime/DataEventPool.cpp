#include "runtime/DataEventPool.h"

#include "timeline/Event.h"

#include <iostream>

DataEventPool::DataEventPool() {}

DataEventPool::~DataEventPool() {
    std::cout << "[Dispose eventPool]" << std::endl;
    for (auto& entry : events) {
        std::cout << " -> delete " << entry.first << std::endl;
        delete entry.second;
    }
}

void DataEventPool::addEvent(const std::string& name, Event* event) {
    events[name] = event;
}

Event* DataEventPool::getEvent(const std::string& name) const {
    auto entry = events.find(name);
    if (entry == events.end()) {
        return nullptr;
    }
    return entry->second;
}

bool DataEventPool::exist(const std::string& name) const {
    return events.find(name) != events.end();
}

int DataEventPool::size() const {
    return static_cast<int>(events.size());
}

std::string DataEventPool::toString() const {
    if (events.empty()) {
        return "EventPool { EMPTY }\n";
    }
    std::string text = "EventPool {\n";
    for (const auto& entry : events) {
        text += "    " + entry.first + " = ";
        if (entry.second != nullptr) {
            text += entry.second->toString();
        }
    }
    return text + "}\n";
}
