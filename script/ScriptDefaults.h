#ifndef KVL_SCRIPTDEFAULTS_H
#define KVL_SCRIPTDEFAULTS_H

#include <map>
#include <string>

class EffectDefinition;
class ParameterGroup;

// The parsed .def files by name: one for each effect class and for the
// blocks system, screen and sound. Owns the definitions.
class ScriptDefaults {
public:
    ScriptDefaults();
    ~ScriptDefaults();

    ScriptDefaults(const ScriptDefaults&) = delete;
    ScriptDefaults& operator=(const ScriptDefaults&) = delete;

    void addEffectDefinition(const std::string& name, EffectDefinition* definition);
    EffectDefinition* getEffectDefinition(const std::string& name);
    bool exists(const std::string& name) const;
    ParameterGroup* getDefaults(const std::string& name) const;
    int size() const;
    std::string toString() const;

private:
    std::map<std::string, EffectDefinition*> definitions;
};

#endif
