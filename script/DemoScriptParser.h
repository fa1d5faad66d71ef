#ifndef KVL_DEMOSCRIPTPARSER_H
#define KVL_DEMOSCRIPTPARSER_H

#include <map>
#include <string>

class DataEffectPool;
class DataEventPool;
class EffectDefinition;
class Event;
class KVLTime;
class ParameterGroup;
class Parameters;
class ScriptDefaults;
class Timeline;

// Reads the demoscript:
//
//     {KVLDS1}
//     paths { definition = resources/definitions/; }
//     screen { width = 800; }
//     intro * ExampleEffect { speed = 2.5; }
//     timeline { Checkpoint 00:10:000; intro.start(00:00:000); }
//
// parse() fills the stores "system_parameters" (one group per ordinary block)
// and "effect_parameters" (one group per effect object), loading the .def
// files as soon as `paths` has been seen, so that every effect block is
// completed with defaults and checked. The timeline block is only set aside;
// parseTimeline() turns it into events later, once the effect objects exist.
//
// The parser does not own the two stores; it owns the definitions. The first
// fault ends a run, with the text in getErrorMessage().
class DemoScriptParser {
public:
    static const std::string header;

    explicit DemoScriptParser(std::string filename);
    ~DemoScriptParser();

    DemoScriptParser(const DemoScriptParser&) = delete;
    DemoScriptParser& operator=(const DemoScriptParser&) = delete;

    void parseDefaults(bool use);
    void setDebug(bool on);
    void parse();
    Timeline* parseTimeline();

    bool isValid() const;
    std::string getErrorMessage() const;
    // An unknown name is entered with a null store.
    Parameters* getParameterGroup(const std::string& name);
    void addParameterGroup(const std::string& name, Parameters* store);
    ScriptDefaults* getScriptDefaults() const;

    bool checkHeader(const std::string& text) const;
    std::string stripComments(const std::string& text) const;
    bool isEffectDefinition(const std::string& blockName) const;
    std::string getEffectName(const std::string& blockName) const;
    std::string getEffectClass(const std::string& blockName) const;
    std::string reverseLookup(const std::string& value) const;
    void parseDefaults();
    std::string forceStringLength(std::string text, unsigned int length) const;

private:
    bool parseBlock(const std::string& name, const std::string& body);
    ParameterGroup* startingGroup(const std::string& name);
    bool readStatements(const std::string& name, const std::string& body, ParameterGroup* group);
    bool addEffectObject(const std::string& name, ParameterGroup* group);
    bool validateEffect(const std::string& objectName, const std::string& className,
                        ParameterGroup* group);
    bool validateString(const std::string& opening, ParameterGroup* declaration,
                        const std::string& key, const std::string& value, ParameterGroup* group);

    bool parseStatement(const std::string& statement, Timeline* timeline, DataEventPool* events);
    bool parseDeclaration(const std::string& declaration, Timeline* timeline);
    bool parseCall(const std::string& object, const std::string& call, Timeline* timeline,
                   DataEventPool* events);
    bool addMethodCall(const std::string& object, const std::string& className,
                       const std::string& method, ParameterGroup* group, Timeline* timeline,
                       DataEventPool* events);
    bool checkArgument(const std::string& object, const std::string& className,
                       const std::string& method, const std::string& type, int position,
                       ParameterGroup* group, KVLTime** eventTime);

    Parameters* systemParameters() const;
    Parameters* effectParameters() const;
    static DataEffectPool* templatePool();
    static DataEventPool* eventPool();

    void fail(const std::string& message);
    void failAndPrint(const std::string& message);

    std::string filename;
    std::string timelineText;
    std::string errorMessage;
    bool valid;
    std::map<std::string, Parameters*> parameterGroups;
    ScriptDefaults* scriptDefaults;
    bool useDefaults;
    bool debug;
};

#endif
