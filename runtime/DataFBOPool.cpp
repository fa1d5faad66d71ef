#include "runtime/DataFBOPool.h"

#include "graphics/FrameBufferObject.h"

#include <iostream>

DataFBOPool::DataFBOPool() {}

DataFBOPool::~DataFBOPool() {
    for (auto& entry : fbos) {
        delete entry.second;
    }
}

void DataFBOPool::addFBO(const std::string& name, FrameBufferObject* fbo) {
    fbos[name] = fbo;
}

FrameBufferObject* DataFBOPool::getFBO(const std::string& name) const {
    auto entry = fbos.find(name);
    if (entry == fbos.end()) {
        std::cout << "FrameBufferObject::getFBO(" << name << ")" << std::endl;
        return nullptr;
    }
    return entry->second;
}

bool DataFBOPool::exists(const std::string& name) const {
    return fbos.find(name) != fbos.end();
}

int DataFBOPool::size() const {
    return static_cast<int>(fbos.size());
}

// Only the names: the targets themselves are not described here.
std::string DataFBOPool::toString() const {
    std::string text = "FBOPool {\n";
    for (const auto& entry : fbos) {
        text += "  " + entry.first + " = \n";
    }
    return text + "}\n";
}
