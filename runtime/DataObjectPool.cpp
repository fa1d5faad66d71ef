#include "runtime/DataObjectPool.h"

#include "objects/O3dScene.h"
#include "script/KVLUtils.h"

#include <iostream>
#include <iterator>

DataObjectPool::DataObjectPool() {}

DataObjectPool::~DataObjectPool() {
    std::cout << "[Dispose objectPool]" << std::endl;
    for (auto& entry : objects) {
        std::cout << " -> delete " << entry.first << std::endl;
        delete entry.second;
    }
}

void DataObjectPool::addObject(const std::string& name, O3dScene* scene) {
    count++;
    objects[name] = scene;
}

O3dScene* DataObjectPool::getObject(const std::string& name) const {
    auto entry = objects.find(name);
    if (entry == objects.end()) {
        return nullptr;
    }
    return entry->second;
}

O3dScene* DataObjectPool::getObject(int index) const {
    if (index < 0 || static_cast<size_t>(index) >= objects.size()) {
        return nullptr;
    }
    return std::next(objects.begin(), index)->second;
}

bool DataObjectPool::exists(const std::string& name) const {
    return objects.find(name) != objects.end();
}

int DataObjectPool::size() const {
    return count;
}

std::string DataObjectPool::toString() const {
    std::string text = "DataObjectPool {\n";
    text += "    num3dObjects = " + KVLUtils::int2string(count) + "\n";
    for (const auto& entry : objects) {
        text += "    " + entry.first + " = ";
        if (entry.second != nullptr) {
            text += entry.second->toString();
        }
    }
    return text + "}\n";
}
