#include "runtime/Data.h"

#include "runtime/DataPool.h"

Data::Data() {}

Data::~Data() {
    for (auto& entry : pools) {
        delete entry.second;
    }
}

void Data::addData(const std::string& name, DataPool* pool) {
    pools[name] = pool;
}

DataPool* Data::getData(const std::string& name) const {
    auto entry = pools.find(name);
    if (entry == pools.end()) {
        return nullptr;
    }
    return entry->second;
}

bool Data::exist(const std::string& name) const {
    return pools.find(name) != pools.end();
}

std::string Data::toString() const {
    std::string text;
    for (const auto& entry : pools) {
        if (entry.second != nullptr) {
            text += entry.second->toString();
        }
    }
    return text;
}
