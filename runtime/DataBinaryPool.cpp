#include "runtime/DataBinaryPool.h"

#include "runtime/Binary.h"
#include "script/KVLUtils.h"

#include <iostream>
#include <iterator>

DataBinaryPool::DataBinaryPool() {}

DataBinaryPool::~DataBinaryPool() {
    std::cout << "[Dispose binaryPool]" << std::endl;
    for (auto& entry : binaries) {
        std::cout << " -> delete " << entry.first << std::endl;
        delete entry.second;
    }
}

void DataBinaryPool::addData(const std::string& name, Binary* binary) {
    count++;
    binaries[name] = binary;
}

Binary* DataBinaryPool::getData(const std::string& name) const {
    auto entry = binaries.find(name);
    if (entry == binaries.end()) {
        return nullptr;
    }
    return entry->second;
}

Binary* DataBinaryPool::getData(int index) const {
    if (index < 0 || static_cast<size_t>(index) >= binaries.size()) {
        return nullptr;
    }
    return std::next(binaries.begin(), index)->second;
}

bool DataBinaryPool::exist(const std::string& name) const {
    return binaries.find(name) != binaries.end();
}

int DataBinaryPool::size() const {
    return count;
}

// The count is labelled like the object pool's; the word stays.
std::string DataBinaryPool::toString() const {
    std::string text = "DataBinaryPool {\n";
    text += "    num3dObjects = " + KVLUtils::int2string(count) + "\n";
    for (const auto& entry : binaries) {
        text += "    " + entry.first + " = ";
        if (entry.second != nullptr) {
            text += entry.second->toString();
        }
    }
    return text + "}\n";
}
