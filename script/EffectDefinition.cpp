#include "script/EffectDefinition.h"

#include "script/ParameterGroup.h"
#include "script/Parameters.h"

#include <iostream>
#include <stdexcept>

// The same kind of failure as an absent parameter key, for a definition that
// has no parameters block at all.
[[noreturn]] [[gnu::noinline]] static void failWithoutParametersBlock() {
    throw std::logic_error("EffectDefinition::getDefaults() : no parameters block");
}

EffectDefinition::EffectDefinition() : parameters(nullptr), methods(nullptr) {}

EffectDefinition::EffectDefinition(const std::string& name)
    : effectName(name), parameters(nullptr), methods(nullptr) {}

EffectDefinition::~EffectDefinition() {
    std::cout << "EffectDefinition::~EffectDefinition()" << std::endl;
    if (parameters != nullptr) {
        delete parameters;
    } else {
        std::cout << "No Parameters" << std::endl;
    }
    if (methods != nullptr) {
        delete methods;
    } else {
        std::cout << "No Methods" << std::endl;
    }
}

void EffectDefinition::setParameters(Parameters* declared) {
    if (declared != parameters) {
        delete parameters;
    }
    parameters = declared;
}

void EffectDefinition::setMethods(Parameters* declared) {
    if (declared != methods) {
        delete methods;
    }
    methods = declared;
}

Parameters* EffectDefinition::getParameters() const {
    return parameters;
}

Parameters* EffectDefinition::getMethods() const {
    return methods;
}

bool EffectDefinition::hasParameters() const {
    return parameters != nullptr;
}

bool EffectDefinition::hasMethods() const {
    return methods != nullptr;
}

bool EffectDefinition::hasParameter(const std::string& name) const {
    return parameters != nullptr && parameters->exist(name);
}

bool EffectDefinition::hasMethod(const std::string& name) const {
    return methods != nullptr && methods->exist(name);
}

ParameterGroup* EffectDefinition::getParameter(const std::string& name) const {
    return parameters != nullptr ? parameters->getGroup(name) : nullptr;
}

ParameterGroup* EffectDefinition::getMethod(const std::string& name) const {
    return methods != nullptr ? methods->getGroup(name) : nullptr;
}

// Every declared parameter must carry a default and an effect class must have
// a parameters block, even an empty one; either fault ends the process, as an
// absent key does.
ParameterGroup* EffectDefinition::getDefaults() const noexcept {
    if (parameters == nullptr) {
        failWithoutParametersBlock();
    }
    ParameterGroup* defaults = new ParameterGroup();
    for (int i = 0; i < parameters->size(); i++) {
        std::string key = parameters->getKey(i);
        std::string value = parameters->getGroup(key)->getParameter("default");
        defaults->addParameter(key, value);
    }
    return defaults;
}

std::string EffectDefinition::toString() const {
    std::string text = "EffectDefinition {\n";
    text += "effect = " + effectName + "\n";
    if (parameters != nullptr) {
        text += parameters->toString() + "\n";
    } else {
        text += "No Parameters\n";
    }
    if (methods != nullptr) {
        text += methods->toString() + "\n";
    } else {
        text += "No methods\n";
    }
    text += "}\n";
    return text;
}
