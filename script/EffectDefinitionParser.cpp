#include "script/EffectDefinitionParser.h"

#include "script/EffectDefinition.h"
#include "script/File.h"
#include "script/KVLUtils.h"
#include "script/ParameterGroup.h"
#include "script/Parameters.h"
#include "script/StringTokenizer.h"
#include "script/StringUtils.h"

EffectDefinitionParser::EffectDefinitionParser(const std::string& filename)
    : filename(filename), valid(true) {}

bool EffectDefinitionParser::isValid() const {
    return valid;
}

std::string EffectDefinitionParser::getErrorMessage() const {
    return errorMessage;
}

bool EffectDefinitionParser::loadFile(const std::string& name) {
    File file(name, 0);
    if (!file.exists()) {
        errorMessage = "EffectDefinitionParser : '" + name + "' not found!";
        valid = false;
        return false;
    }
    fileContents = file.getAsString();
    return true;
}

// Brackets are not matched: tokens alternate between block name and body by
// position, and an empty body yields no token, so "parameters { }" ahead of
// another block swallows that block's name.
EffectDefinition* EffectDefinitionParser::parse() {
    if (!loadFile(filename)) {
        return nullptr;
    }
    Parameters* parameters = nullptr;
    Parameters* methods = nullptr;
    StringTokenizer blocks(fileContents, "{}");
    while (blocks.hasMoreTokens()) {
        std::string name = StringUtils::trim(blocks.getNext());
        std::string body = StringUtils::trim(blocks.getNext());
        if (name == "parameters") {
            delete parameters;
            parameters = parseParameters(body);
        } else if (name == "methods") {
            delete methods;
            methods = parseMethods(body);
        } else {
            failOnBlockName(name);
            delete parameters;
            delete methods;
            return nullptr;
        }
    }
    EffectDefinition* definition = new EffectDefinition();
    definition->setParameters(parameters);
    definition->setMethods(methods);
    return definition;
}

void EffectDefinitionParser::failOnBlockName(const std::string& name) {
    valid = false;
    errorMessage = "EffectDefinitionParser : Invalid block name!\n";
    errorMessage += "File : " + filename + "'\n";
    errorMessage += "block name '" + name + "' is not valid\n";
    errorMessage += "Valid blocks : parameters, methods\n";
}

// A name given twice keeps the later entry; the earlier one is this parser's
// own and goes.
void EffectDefinitionParser::addReplacing(Parameters* declared, const std::string& name,
                                          ParameterGroup* group) {
    ParameterGroup* earlier = declared->getGroup(name);
    if (earlier != group) {
        delete earlier;
    }
    declared->addGroup(name, group);
}

// name[attribute=value][attribute=value][attribute=value]; only three bracket
// pairs are read, and white space around "=" belongs to the name and value.
Parameters* EffectDefinitionParser::parseParameters(const std::string& body) {
    Parameters* declared = new Parameters();
    StringTokenizer entries(body, ";");
    while (entries.hasMoreTokens()) {
        StringTokenizer parts(StringUtils::trim(entries.getNext()), "[]");
        std::string name = StringUtils::trim(parts.getNext());
        ParameterGroup* group = new ParameterGroup(name);
        for (int i = 0; i < 3; i++) {
            std::string attribute = StringUtils::trim(parts.getNext());
            group->addParameter(getName(attribute), getValue(attribute));
        }
        addReplacing(declared, name, group);
    }
    return declared;
}

// name(type, type, ...); the argument keys "00", "01", ... keep the argument
// order in the group's key order.
Parameters* EffectDefinitionParser::parseMethods(const std::string& body) {
    Parameters* declared = new Parameters();
    StringTokenizer declarations(body, ";");
    while (declarations.hasMoreTokens()) {
        StringTokenizer parts(declarations.getNext(), "()");
        std::string name = StringUtils::trim(parts.getNext());
        ParameterGroup* group = new ParameterGroup(name);
        StringTokenizer arguments(StringUtils::trim(parts.getNext()), ",");
        int index = 0;
        while (arguments.hasMoreTokens()) {
            std::string key = KVLUtils::int2string(index);
            if (key.length() == 1) {
                key = "0" + key;
            }
            group->addParameter(key, StringUtils::trim(arguments.getNext()));
            index++;
        }
        addReplacing(declared, name, group);
    }
    return declared;
}

std::string EffectDefinitionParser::getName(const std::string& attribute) const {
    StringTokenizer parts(attribute, "=");
    return parts.getNext();
}

std::string EffectDefinitionParser::getValue(const std::string& attribute) const {
    StringTokenizer parts(attribute, "=");
    parts.getNext();
    return parts.getNext();
}
