#ifndef KVL_EFFECTDEFINITION_H
#define KVL_EFFECTDEFINITION_H

#include <string>

class ParameterGroup;
class Parameters;

// What a .def file declares for one effect class: its parameters (one group
// per parameter, holding the attributes type, default and values) and its
// methods (one group per method, arguments keyed "00", "01", ...). Owns both.
class EffectDefinition {
public:
    EffectDefinition();
    explicit EffectDefinition(const std::string& name);
    ~EffectDefinition();

    EffectDefinition(const EffectDefinition&) = delete;
    EffectDefinition& operator=(const EffectDefinition&) = delete;

    void setParameters(Parameters* declared);
    void setMethods(Parameters* declared);
    Parameters* getParameters() const;
    Parameters* getMethods() const;
    bool hasParameters() const;
    bool hasMethods() const;
    bool hasParameter(const std::string& name) const;
    bool hasMethod(const std::string& name) const;
    ParameterGroup* getParameter(const std::string& name) const;
    ParameterGroup* getMethod(const std::string& name) const;
    ParameterGroup* getDefaults() const noexcept;
    std::string toString() const;

private:
    std::string effectName;
    Parameters* parameters;
    Parameters* methods;
};

#endif
