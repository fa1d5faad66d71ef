#include "script/ScriptDefaults.h"

#include "script/EffectDefinition.h"
#include "script/ParameterGroup.h"

#include <iostream>

ScriptDefaults::ScriptDefaults() {}

ScriptDefaults::~ScriptDefaults() {
    for (auto& entry : definitions) {
        delete entry.second;
    }
}

void ScriptDefaults::addEffectDefinition(const std::string& name, EffectDefinition* definition) {
    definitions[name] = definition;
}

// An unknown name is entered with a null definition.
EffectDefinition* ScriptDefaults::getEffectDefinition(const std::string& name) {
    return definitions[name];
}

// The script parser asks this of every block, so blocks without a .def file
// (lists of textures and the like) print the notice in every normal run.
bool ScriptDefaults::exists(const std::string& name) const {
    if (definitions.find(name) == definitions.end()) {
        std::cerr << "ScriptDefaults::exists(" << name << ") - dont exist" << std::endl;
        return false;
    }
    return true;
}

ParameterGroup* ScriptDefaults::getDefaults(const std::string& name) const {
    if (!exists(name)) {
        return nullptr;
    }
    const EffectDefinition* definition = definitions.at(name);
    if (definition == nullptr) {
        return nullptr;
    }
    return definition->getDefaults();
}

int ScriptDefaults::size() const {
    return static_cast<int>(definitions.size());
}

std::string ScriptDefaults::toString() const {
    std::string text = "ScriptDefaults {\n";
    for (const auto& entry : definitions) {
        text += "Definition : " + entry.first + "\n";
        if (entry.second != nullptr) {
            text += entry.second->toString();
        }
        text += "\n";
    }
    text += "}\n";
    return text;
}
