#include "script/ParameterGroup.h"

ParameterGroup::ParameterGroup() : groupName("parameters") {}

ParameterGroup::ParameterGroup(const std::string& name) : groupName(name) {}

void ParameterGroup::addParameter(const std::string& key, const std::string& value) {
    parameters[key] = value;
}

// There is no path for a missing parameter: an absent key ends the process
// with the logic error of the lookup, which noexcept keeps anyone from
// catching. Callers test exist() first or rely on the defaults of the .def
// files having put every declared key in place.
std::string ParameterGroup::getParameter(const std::string& key) const noexcept {
    return parameters.at(key);
}

bool ParameterGroup::exist(const std::string& key) const {
    return parameters.find(key) != parameters.end();
}

int ParameterGroup::size() const {
    return static_cast<int>(parameters.size());
}

// An index of 0 or below means the first entry; past the last there is none.
std::map<std::string, std::string>::const_iterator ParameterGroup::entryAt(int index) const {
    auto entry = parameters.begin();
    for (int i = 0; i < index && entry != parameters.end(); i++) {
        ++entry;
    }
    return entry;
}

std::string ParameterGroup::getKey(int index) const {
    auto entry = entryAt(index);
    return entry != parameters.end() ? entry->first : "";
}

std::string ParameterGroup::getValue(int index) const {
    auto entry = entryAt(index);
    return entry != parameters.end() ? entry->second : "";
}

std::string ParameterGroup::getGroupName() const {
    return groupName;
}

void ParameterGroup::setGroupName(const std::string& name) {
    groupName = name;
}

std::string ParameterGroup::toString() const {
    if (parameters.empty()) {
        return "ParameterGroup{ EMPTY }\n";
    }
    std::string text = groupName + " {\n";
    for (const auto& entry : parameters) {
        text += "    " + entry.first + " = " + entry.second + ";\n";
    }
    text += "}\n";
    return text;
}
