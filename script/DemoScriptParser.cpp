#include "script/DemoScriptParser.h"

#include "runtime/Data.h"
#include "runtime/DataEffectPool.h"
#include "runtime/DataEventPool.h"
#include "runtime/KVLDemosys.h"
#include "runtime/KVLTime.h"
#include "script/EffectDefinition.h"
#include "script/EffectDefinitionParser.h"
#include "script/File.h"
#include "script/KVLUtils.h"
#include "script/ParameterGroup.h"
#include "script/Parameters.h"
#include "script/ScriptDefaults.h"
#include "script/StringTokenizer.h"
#include "script/StringUtils.h"
#include "timeline/Event.h"
#include "timeline/Timeline.h"

#include <iostream>
#include <stdexcept>
#include <utility>
#include <vector>

const std::string DemoScriptParser::header = "{KVLDS1}";

DemoScriptParser::DemoScriptParser(std::string filename)
    : filename(std::move(filename)), valid(true), scriptDefaults(nullptr), useDefaults(false),
      debug(false) {}

// The stores belong to whoever took them over; only the definitions go.
DemoScriptParser::~DemoScriptParser() {
    parameterGroups.clear();
    delete scriptDefaults;
}

void DemoScriptParser::parseDefaults(bool use) {
    useDefaults = use;
}

void DemoScriptParser::setDebug(bool on) {
    debug = on;
}

bool DemoScriptParser::isValid() const {
    return valid;
}

std::string DemoScriptParser::getErrorMessage() const {
    return errorMessage;
}

Parameters* DemoScriptParser::getParameterGroup(const std::string& name) {
    return parameterGroups[name];
}

void DemoScriptParser::addParameterGroup(const std::string& name, Parameters* store) {
    parameterGroups[name] = store;
}

ScriptDefaults* DemoScriptParser::getScriptDefaults() const {
    return scriptDefaults;
}

void DemoScriptParser::fail(const std::string& message) {
    valid = false;
    errorMessage = message;
}

void DemoScriptParser::failAndPrint(const std::string& message) {
    fail(message);
    std::cerr << message << std::endl;
}

Parameters* DemoScriptParser::systemParameters() const {
    auto entry = parameterGroups.find("system_parameters");
    return (entry != parameterGroups.end()) ? entry->second : nullptr;
}

Parameters* DemoScriptParser::effectParameters() const {
    auto entry = parameterGroups.find("effect_parameters");
    return (entry != parameterGroups.end()) ? entry->second : nullptr;
}

DataEffectPool* DemoScriptParser::templatePool() {
    if (KVLDemosys::data == nullptr) {
        return nullptr;
    }
    return dynamic_cast<DataEffectPool*>(KVLDemosys::data->getData("effectTemplatePool"));
}

DataEventPool* DemoScriptParser::eventPool() {
    if (KVLDemosys::data == nullptr) {
        return nullptr;
    }
    return dynamic_cast<DataEventPool*>(KVLDemosys::data->getData("eventPool"));
}

bool DemoScriptParser::checkHeader(const std::string& text) const {
    return text == header;
}

// Leaves one line per CR, without comments, blank lines or indentation. There
// is no quoting, so "//" ends a value as well.
std::string DemoScriptParser::stripComments(const std::string& text) const {
    StringTokenizer lines(text, "\n\r");
    std::string result;
    while (lines.hasMoreTokens()) {
        std::string line = lines.getNext();
        size_t comment = line.find("//");
        if (comment != std::string::npos) {
            line.erase(comment);
        }
        line = StringUtils::trim(line);
        if (!line.empty()) {
            result += line;
            result += '\r';
        }
    }
    return StringUtils::trim(result);
}

bool DemoScriptParser::isEffectDefinition(const std::string& blockName) const {
    return blockName.find('*') != std::string::npos;
}

std::string DemoScriptParser::getEffectName(const std::string& blockName) const {
    StringTokenizer parts(blockName, "*");
    return StringUtils::trim(parts.getNext());
}

std::string DemoScriptParser::getEffectClass(const std::string& blockName) const {
    StringTokenizer parts(blockName, "*");
    parts.getNext();
    return StringUtils::trim(parts.getNext());
}

// "block[key]" proves that the ordinary block seen so far has the entry and
// gives the key, under which the resource is found in its pool. Anything
// without both brackets stands for itself.
std::string DemoScriptParser::reverseLookup(const std::string& value) const {
    size_t open = value.find('[');
    size_t close = value.find(']');
    if (open == std::string::npos || close == std::string::npos) {
        return value;
    }
    std::string block = value.substr(0, open);
    // A "]" ahead of the "[" lets the key run to the end of the text.
    std::string key =
        (close > open) ? value.substr(open + 1, close - open - 1) : value.substr(open + 1);
    Parameters* system = systemParameters();
    ParameterGroup* group = (system != nullptr) ? system->getGroup(block) : nullptr;
    if (group == nullptr || !group->exist(key)) {
        return "";
    }
    return key;
}

std::string DemoScriptParser::forceStringLength(std::string text, unsigned int length) const {
    if (text.length() < length) {
        text.insert(0, length - text.length(), '0');
    }
    return text;
}

void DemoScriptParser::parse() {
    File file(filename, 0);
    if (!file.exists()) {
        failAndPrint("DemoScriptParser : '" + filename + "' not found!");
        return;
    }
    parameterGroups["system_parameters"] = new Parameters();
    parameterGroups["effect_parameters"] = new Parameters();

    StringTokenizer tokens(stripComments(file.getAsString()), "{}", true);
    std::string head = tokens.getNext();
    head += tokens.getNext();
    head += tokens.getNext();
    if (!checkHeader(head)) {
        failAndPrint("Error while parsing demoscript!\nInvalid Script Header\nHeader : '" + head +
                     "'\n");
        return;
    }

    while (tokens.hasMoreTokens()) {
        std::string name = stripComments(tokens.getNext());
        std::string mismatch =
            "Error parsing demoscript!\nBlock have mismatching brackets\nBlock : '" + name + "'\n";
        if (StringUtils::trim(tokens.getNext()) != "{") {
            failAndPrint(mismatch);
            return;
        }
        std::string body = stripComments(tokens.getNext());
        if (body == "}") {
            continue;
        }
        if (StringUtils::trim(tokens.getNext()) != "}") {
            failAndPrint(mismatch);
            return;
        }
        if (!parseBlock(name, body)) {
            return;
        }
    }
}

bool DemoScriptParser::parseBlock(const std::string& name, const std::string& body) {
    if (name == "timeline") {
        timelineText = body;
        return true;
    }
    ParameterGroup* group = startingGroup(name);
    if (group == nullptr) {
        return false;
    }
    if (!readStatements(name, body, group)) {
        return false;
    }
    if (isEffectDefinition(name)) {
        return addEffectObject(name, group);
    }
    // A block given twice counts with its last text only.
    Parameters* system = systemParameters();
    ParameterGroup* earlier = system->getGroup(name);
    system->addGroup(name, group);
    if (earlier != group) {
        delete earlier;
    }
    if (name == "paths" && useDefaults) {
        parseDefaults();
        return valid;
    }
    return true;
}

// Without definitions loaded yet (`paths` not first, or missing) no block but
// `paths` has anything to start from; that ends the script at its first block.
ParameterGroup* DemoScriptParser::startingGroup(const std::string& name) {
    if (name == "paths" || !useDefaults) {
        return new ParameterGroup();
    }
    std::string definitionName = isEffectDefinition(name) ? getEffectClass(name) : name;
    if (scriptDefaults == nullptr ||
        (isEffectDefinition(name) && !scriptDefaults->exists(definitionName))) {
        failAndPrint("Error parsing demoscript!\nDefaults for block '" + name +
                     "' not found!\nPossible Cause :\n- There is no .def file for the block\n"
                     "- Block name have a spelling error?\n"
                     "- paths { } is not the first block in the demoscript?\n");
        return nullptr;
    }
    if (isEffectDefinition(name)) {
        ParameterGroup* defaults = scriptDefaults->getDefaults(definitionName);
        return (defaults != nullptr) ? defaults : new ParameterGroup();
    }
    if (!scriptDefaults->exists(name)) {
        return new ParameterGroup();
    }
    ParameterGroup* defaults = scriptDefaults->getDefaults(name);
    if (defaults == nullptr) {
        defaults = new ParameterGroup();
    }
    if (debug) {
        std::cout << "block name : " << name << std::endl;
        std::cout << defaults->toString() << std::endl;
    }
    return defaults;
}

// Line ends are white space, so a forgotten ";" joins the next line to the
// statement and shows up as a second "=" or as a key of two words.
bool DemoScriptParser::readStatements(const std::string& name, const std::string& body,
                                      ParameterGroup* group) {
    std::string opening = "Error while parsing demoscript!\nBlock : '" + name + "'\n";
    StringTokenizer statements(body, ";");
    while (statements.hasMoreTokens()) {
        StringTokenizer parts(StringUtils::trim(statements.getNext()), "=");
        std::string key = StringUtils::trim(parts.getNext());
        std::string value = StringUtils::trim(parts.getNext());
        std::string message;
        if (StringTokenizer(key, " \n\t\r").countTokens() != 1) {
            message = opening + "Error: Parameter '" + key + "' is not a single word.\n" +
                      "Probable cause: Semocolon forgotten or misplaced";
        } else if (parts.countTokens() > 2) {
            message = opening + "Error: Parameter '" + key + "' have too many tokens.\n" +
                      "Value : '" + value + "'\n" +
                      "Probable cause: Semocolon forgotten or misplaced";
        } else if (parts.countTokens() < 2) {
            message = opening + "Error: Parameter '" + key + "' dont seem to have a value\n" +
                      "Probable cause: Semocolon misplaced or no assigned value ('" + key +
                      " = ;')";
        }
        if (!message.empty()) {
            delete group;
            failAndPrint(message);
            return false;
        }
        group->addParameter(key, value);
    }
    return true;
}

bool DemoScriptParser::addEffectObject(const std::string& name, ParameterGroup* group) {
    std::string objectName = getEffectName(name);
    std::string className = getEffectClass(name);
    std::string opening =
        "Error while parsing demoscript!\nBlock : '" + objectName + "' (Effect Definition)\n";
    DataEffectPool* templates = templatePool();
    Parameters* effects = effectParameters();
    std::string message;
    if (templates == nullptr || !templates->exist(className)) {
        message = opening + "Error : Effect template '" + className + "' do not exist!\n" +
                  "Probable cause : Spelling error or your effect template is not added to the "
                  "Demosys.\n";
    } else if (effects->exist(objectName)) {
        message = opening + "Error : Redefinition of scriptobject '" + objectName + "'\n" +
                  "Probable cause : You have two or more effects with identical names\n" +
                  "Effect names must be unique.\n";
    }
    if (!message.empty()) {
        delete group;
        failAndPrint(message);
        return false;
    }
    if (useDefaults && !validateEffect(objectName, className, group)) {
        delete group;
        return false;
    }
    group->addParameter("class", className);
    effects->addGroup(objectName, group);
    return true;
}

// Defaults and script values alike are checked, so a default of the wrong
// form in a .def file fails every block that does not replace it.
bool DemoScriptParser::validateEffect(const std::string& objectName, const std::string& className,
                                      ParameterGroup* group) {
    EffectDefinition* definition =
        (scriptDefaults != nullptr) ? scriptDefaults->getEffectDefinition(className) : nullptr;
    for (int i = 0; i < group->size(); i++) {
        std::string key = group->getKey(i);
        std::string value = group->getValue(i);
        std::string withKey = "Error while parsing demoscript!\nBlock : '" + objectName +
                              "' (Effect Definition)\nParameter :  '" + key + "'\n";
        if (definition == nullptr || !definition->hasParameter(key)) {
            failAndPrint(withKey + "Error :  Not defined as a valid parameter for " + className +
                         "\n");
            return false;
        }
        ParameterGroup* declaration = definition->getParameter(key);
        std::string type = declaration->getParameter("type");
        std::string withValue = withKey + "Value :  '" + value + "'\n";
        if (type == "float") {
            if (!StringUtils::isFloat(value)) {
                failAndPrint(withValue + "Error :  value is not a float as defined in " +
                             className + ".def\n");
                return false;
            }
        } else if (type == "int") {
            if (!StringUtils::isInt(value)) {
                failAndPrint(withValue + "Error :  value is not an int as defined in " + className +
                             ".def\n");
                return false;
            }
        } else if (type == "bool") {
            if (!StringUtils::isBool(value)) {
                failAndPrint(withValue + "Error :  value is not a bool as defined in " + className +
                             ".def\n");
                return false;
            }
        } else if (type == "string") {
            if (!validateString(withValue, declaration, key, value, group)) {
                return false;
            }
        } else {
            failAndPrint(withValue + "Param type : param_type\n" +
                         "Error : Parameter type is not supported!");
            return false;
        }
    }
    return true;
}

bool DemoScriptParser::validateString(const std::string& opening, ParameterGroup* declaration,
                                      const std::string& key, const std::string& value,
                                      ParameterGroup* group) {
    std::string values = declaration->getParameter("values");
    if (values != "<string>") {
        bool listed = false;
        StringTokenizer options(values, ",");
        while (options.hasMoreTokens()) {
            if (StringUtils::trim(options.getNext()) == value) {
                listed = true;
            }
        }
        if (!listed) {
            failAndPrint(opening + "Error :  value is not a valid option\n" +
                         "Defined options are : " + values + "\n");
            return false;
        }
    }
    std::string found = reverseLookup(value);
    if (found.empty()) {
        failAndPrint(opening + "Error : Reverse lookup failed\n");
        return false;
    }
    group->addParameter(key, found);
    return true;
}

// A definitions directory is what `paths` is for: without "definition" the
// lookup is fatal, as every absent key is.
void DemoScriptParser::parseDefaults() {
    std::cout << "[Parsing .def files]" << std::endl;
    delete scriptDefaults;
    scriptDefaults = new ScriptDefaults();

    const ParameterGroup noPaths;
    Parameters* system = systemParameters();
    const ParameterGroup* paths = (system != nullptr) ? system->getGroup("paths") : nullptr;
    if (paths == nullptr) {
        paths = &noPaths;
    }
    std::string directory = paths->getParameter("definition");
    std::cout << "path = " << directory << std::endl;

    std::vector<std::string> names;
    DataEffectPool* templates = templatePool();
    int count = (templates != nullptr) ? templates->size() : 0;
    for (int i = 0; i < count; i++) {
        names.push_back(templates->getKey(i));
        std::cout << "-> " << names.back() << std::endl;
    }
    names.push_back("system");
    names.push_back("screen");
    names.push_back("sound");

    for (const std::string& name : names) {
        if (debug) {
            std::cout << "Loading definition : '" << directory << name << ".def" << std::endl;
        }
        EffectDefinitionParser parser(directory + name + ".def");
        EffectDefinition* definition = parser.parse();
        if (definition == nullptr) {
            valid = false;
            errorMessage = parser.getErrorMessage();
            return;
        }
        // A template named like a system block would otherwise leave the
        // first definition behind.
        EffectDefinition* earlier = scriptDefaults->getEffectDefinition(name);
        scriptDefaults->addEffectDefinition(name, definition);
        if (earlier != definition) {
            delete earlier;
        }
    }
}

Timeline* DemoScriptParser::parseTimeline() {
    Timeline* timeline = new Timeline();
    DataEventPool* events = eventPool();
    StringTokenizer statements(timelineText, ";");
    while (statements.hasMoreTokens()) {
        if (!parseStatement(StringUtils::trim(statements.getNext()), timeline, events)) {
            // Listed, the events placed so far go with the timeline.
            timeline->init();
            delete timeline;
            return nullptr;
        }
    }
    return timeline;
}

// Anything up to a "<" is a note. With a second "<" the statement proper is
// the text up to the first one.
bool DemoScriptParser::parseStatement(const std::string& statement, Timeline* timeline,
                                      DataEventPool* events) {
    StringTokenizer labelled(statement, "<");
    if (labelled.countTokens() == 2) {
        labelled.getNext();
    }
    StringTokenizer pieces(labelled.getNext(), ".");
    if (pieces.countTokens() == 1) {
        return parseDeclaration(pieces.getNext(), timeline);
    }
    std::string object = StringUtils::trim(pieces.getNext());
    Parameters* effects = effectParameters();
    if (effects == nullptr || !effects->exist(object)) {
        failAndPrint("Error Pasing Timeline!\nScript object '" + object +
                     "' not found\nProbable Cause : Spelling error?");
        return false;
    }
    // Dots inside arguments ("0.5") were split off with the object; put the
    // call back together before it is taken apart at its brackets.
    std::string call = StringUtils::trim(pieces.getNext());
    while (pieces.hasMoreTokens()) {
        call += ".";
        call += pieces.getNext();
    }
    return parseCall(object, call, timeline, events);
}

// Only checkpoints are declared; any other pair of words is passed over.
bool DemoScriptParser::parseDeclaration(const std::string& declaration, Timeline* timeline) {
    StringTokenizer words(declaration, " ");
    if (words.countTokens() < 2) {
        failAndPrint("Error Pasing Timeline!\nDeclaration '" + declaration +
                     "' invalid\nProbable Cause : Spelling error?");
        return false;
    }
    if (words.getNext() != "Checkpoint") {
        return true;
    }
    std::string word = words.getNext();
    KVLTime* time = new KVLTime(word);
    if (!time->isValid()) {
        delete time;
        failAndPrint("Error while parsing Timeline!\nobject : Checkpoint\nparameter : " + word +
                     "\nParameter is not a valid (mm:ss:mmm)\n");
        return false;
    }
    if (timeline->checpointExists(time)) {
        std::cout << "duplicate checkpoint ignored : " << word << ")" << std::endl;
        delete time;
    } else {
        std::cout << "timeline.addCheckpoint(" << word << ")" << std::endl;
        timeline->addCheckpoint(time);
    }
    return true;
}

// Brackets and commas are one and the same separator: the first piece is the
// method, every later piece one argument, "p1", "p2", ...
bool DemoScriptParser::parseCall(const std::string& object, const std::string& call,
                                 Timeline* timeline, DataEventPool* events) {
    std::string className = effectParameters()->getGroup(object)->getParameter("class");
    StringTokenizer parts(call, "(),");
    if (parts.countTokens() < 2) {
        fail("Timeline : Error near ''" + object + "." + call +
             "\nPossible reason : Missing parameter(s)");
        return false;
    }
    std::string method = StringUtils::trim(parts.getNext());
    ParameterGroup* group = new ParameterGroup();
    int position = 1;
    while (parts.hasMoreTokens()) {
        group->addParameter("p" + KVLUtils::int2string(position),
                            StringUtils::trim(parts.getNext()));
        position++;
    }

    // Pool events come first: a method declared as "start" is never reached.
    // Their time is not checked; an invalid one places the event at 0.
    if (events != nullptr && events->exist(method)) {
        Event* pattern = events->getEvent(method);
        Event* event = (pattern != nullptr) ? pattern->getInstance() : nullptr;
        if (event == nullptr) {
            delete group;
            return true;
        }
        KVLTime* time = new KVLTime(group->getParameter("p1"));
        group->addParameter("object", object);
        event->setParameters(group);
        event->setTime(time);
        timeline->addEvent(time->getTicks(), event);
        return true;
    }
    return addMethodCall(object, className, method, group, timeline, events);
}

bool DemoScriptParser::addMethodCall(const std::string& object, const std::string& className,
                                     const std::string& method, ParameterGroup* group,
                                     Timeline* timeline, DataEventPool* events) {
    EffectDefinition* definition =
        (scriptDefaults != nullptr) ? scriptDefaults->getEffectDefinition(className) : nullptr;
    if (definition == nullptr || !definition->hasMethod(method)) {
        delete group;
        fail("Timeline : method '" + method + "' dont exist!");
        return false;
    }
    ParameterGroup* declaration = definition->getMethod(method);
    if (group->size() != declaration->size()) {
        failAndPrint("Error while parsing Timeline!\nobject : " + object + "\nmethod : " + method +
                     "\nCause : Wrong number of arguments (" + KVLUtils::int2string(group->size()) +
                     ")\n");
        delete group;
        return false;
    }
    KVLTime* eventTime = nullptr;
    for (int i = 0; i < declaration->size(); i++) {
        std::string type = declaration->getParameter(forceStringLength(KVLUtils::int2string(i), 2));
        if (!checkArgument(object, className, method, type, i, group, &eventTime)) {
            delete eventTime;
            delete group;
            return false;
        }
    }
    group->addParameter("object", object);
    group->addParameter("method", method);

    Event* pattern = (events != nullptr) ? events->getEvent("modify") : nullptr;
    Event* event = (pattern != nullptr) ? pattern->getInstance() : nullptr;
    if (event == nullptr) {
        delete eventTime;
        delete group;
        return true;
    }
    if (eventTime != nullptr) {
        event->setTime(eventTime);
    }
    event->setParameters(group);
    // Nothing but an "<event>" argument times a modify event.
    if (event->getTime() == nullptr) {
        delete event;
        throw std::logic_error("DemoScriptParser::parseTimeline() : method '" + method +
                               "' has no <event> argument");
    }
    timeline->addEvent(event->getTime()->getTicks(), event);
    return true;
}

bool DemoScriptParser::checkArgument(const std::string& object, const std::string& className,
                                     const std::string& method, const std::string& type,
                                     int position, ParameterGroup* group, KVLTime** eventTime) {
    std::string key = "p" + KVLUtils::int2string(position + 1);
    std::string argument = group->getParameter(key);
    std::string opening = "Error while parsing Timeline!\nobject : " + object +
                          "\nmethod : " + method + "\nparameter : " + argument + " (" +
                          KVLUtils::int2string(position) + ")\n";
    if (type == "<event>" || type == "<time>") {
        KVLTime* time = new KVLTime(argument);
        if (!time->isValid()) {
            delete time;
            failAndPrint(opening + "Parameter is not a valid (mm:ss:mmm) timestamp as defined in " +
                         className + ".def\n");
            return false;
        }
        if (type == "<event>") {
            delete *eventTime;
            *eventTime = time;
        } else {
            delete time;
        }
    } else if (type == "<integer>") {
        if (!StringUtils::isInt(argument)) {
            failAndPrint(opening + "Parameter is not an integer as defined in " + className +
                         ".def\n");
            return false;
        }
    } else if (type == "<bool>") {
        if (!StringUtils::isBool(argument)) {
            failAndPrint(opening + "Parameter is not a boolean as defined in " + className +
                         ".def\n");
            return false;
        }
    } else if (type == "<float>") {
        if (!StringUtils::isFloat(argument)) {
            failAndPrint(opening + "Parameter is not a float as defined in " + className +
                         ".def\n");
            return false;
        }
    } else if (type == "<string>") {
        std::string found = reverseLookup(argument);
        if (found.empty()) {
            failAndPrint(opening + "Reverse lookup failed");
            return false;
        }
        group->addParameter(key, found);
    }
    return true;
}
