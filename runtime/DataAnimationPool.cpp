#include "runtime/DataAnimationPool.h"

#include "animation/Animation.h"

#include <iostream>

DataAnimationPool::DataAnimationPool() : numAnimations(0) {}

DataAnimationPool::~DataAnimationPool() {
    std::cout << "[Dispose animationPool]" << std::endl;
    for (auto& entry : animations) {
        std::cout << " -> delete " << entry.first << std::endl;
        delete entry.second;
    }
}

void DataAnimationPool::addAnimation(const std::string& name, Animation* animation) {
    numAnimations++;
    animations[name] = animation;
}

Animation* DataAnimationPool::getAnimation(const std::string& name) const {
    auto entry = animations.find(name);
    if (entry == animations.end()) {
        return nullptr;
    }
    return entry->second;
}

bool DataAnimationPool::exist(const std::string& name) const {
    return animations.find(name) != animations.end();
}

int DataAnimationPool::size() const {
    return numAnimations;
}

std::string DataAnimationPool::toString() const {
    std::string text = "AnimationPool {\n";
    for (const auto& entry : animations) {
        text += "    " + entry.first + " = ";
        if (entry.second != nullptr) {
            text += entry.second->toString();
        }
    }
    return text + "}\n";
}
