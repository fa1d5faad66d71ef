#include "runtime/DataEffectPool.h"

#include "timeline/Effect.h"

#include <iostream>
#include <iterator>

DataEffectPool::DataEffectPool() {}

// Both pools of this class log as the effect pool.
DataEffectPool::~DataEffectPool() {
    std::cout << "[Dispose effectPool]" << std::endl;
    for (auto& entry : effects) {
        std::cout << " -> delete " << entry.first << std::endl;
        delete entry.second;
    }
}

void DataEffectPool::addEffect(const std::string& name, Effect* effect) {
    effects[name] = effect;
}

Effect* DataEffectPool::getEffect(const std::string& name) {
    return effects[name];
}

bool DataEffectPool::exist(const std::string& name) const {
    return effects.find(name) != effects.end();
}

void DataEffectPool::removeEffect(const std::string& name) {
    effects.erase(name);
}

std::string DataEffectPool::getKey(int index) const {
    if (index < 0 || static_cast<size_t>(index) >= effects.size()) {
        return "";
    }
    return std::next(effects.begin(), index)->first;
}

int DataEffectPool::size() const {
    return static_cast<int>(effects.size());
}

std::string DataEffectPool::toString() const {
    std::string text = "EffectPool {\n";
    for (const auto& entry : effects) {
        text += "    " + entry.first + " = Effect\n";
    }
    return text + "}\n";
}
