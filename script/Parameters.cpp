#include "script/Parameters.h"

#include "script/ParameterGroup.h"

Parameters::Parameters() {}

Parameters::~Parameters() {
    for (auto& entry : groups) {
        delete entry.second;
    }
}

// A group stored under a name that is already taken replaces the old pointer
// without releasing it: whoever put the old one there may still hold it.
void Parameters::addGroup(const std::string& name, ParameterGroup* group) {
    if (group != nullptr) {
        group->setGroupName(name);
    }
    groups[name] = group;
}

ParameterGroup* Parameters::getGroup(const std::string& name) const {
    auto entry = groups.find(name);
    return entry != groups.end() ? entry->second : nullptr;
}

bool Parameters::exist(const std::string& name) const {
    return groups.find(name) != groups.end();
}

int Parameters::size() const {
    return static_cast<int>(groups.size());
}

std::map<std::string, ParameterGroup*>::const_iterator Parameters::entryAt(int index) const {
    auto entry = groups.begin();
    for (int i = 0; i < index && entry != groups.end(); i++) {
        ++entry;
    }
    return entry;
}

std::string Parameters::getKey(int index) const {
    auto entry = entryAt(index);
    return entry != groups.end() ? entry->first : "";
}

ParameterGroup* Parameters::getValue(int index) const {
    auto entry = entryAt(index);
    return entry != groups.end() ? entry->second : nullptr;
}

std::string Parameters::toString() const {
    std::string text;
    for (const auto& entry : groups) {
        if (entry.second != nullptr) {
            text += entry.second->toString();
        }
    }
    return text;
}
