#include "timeline/ActionPool.h"

#include "graphics/FrameBufferObject.h"
#include "timeline/Effect.h"

#include <iostream>

ActionPool::ActionPool() {}

ActionPool::~ActionPool() { removeAll(); }

void ActionPool::addEffect(std::string name, Effect* effect, int priority) {
    // Compared unsigned: a negative priority is out of range as well.
    if (static_cast<unsigned int>(priority) > 100) {
        return;
    }
    std::string key = std::to_string(priority);
    while (key.length() < 3) {
        key = "0" + key;
    }
    key += "_" + name;
    effects[key] = effect;
    aliases[name] = key;
}

void ActionPool::removeEffect(std::string name) {
    auto alias = aliases.find(name);
    if (alias == aliases.end()) {
        std::cout << "ERROR: ActionPool - error removing '" << name << "' from ActonPool"
                  << std::endl;
        return;
    }
    std::string key = alias->second;
    aliases.erase(alias);
    auto entry = effects.find(key);
    if (entry == effects.end()) {
        std::cout << "ERROR: ActionPool - error removing '" << name << "' from ActonPool"
                  << std::endl;
        return;
    }
    effects.erase(entry);
}

void ActionPool::removeAll() {
    effects.clear();
    aliases.clear();
}

int ActionPool::countEffects() const { return static_cast<int>(effects.size()); }

void ActionPool::execute(unsigned int ticks) {
    for (auto& entry : effects) {
        Effect* effect = entry.second;
        FrameBufferObject* target = effect->getRenderTarget();
        if (target != nullptr) {
            target->bind();
        }
        effect->draw(ticks);
        effect->setLastCalled(ticks);
        if (target != nullptr) {
            target->release();
        }
    }
}

std::string ActionPool::toString() const {
    std::string text = "ActionPool {\n";
    text += "    Effects:\n";
    for (const auto& entry : effects) {
        text += "        " + entry.first + " - Effect\n";
    }
    text += "    AliasTable:\n";
    for (const auto& alias : aliases) {
        text += "        " + alias.first + " - " + alias.second + "\n";
    }
    text += "}\n";
    return text;
}
