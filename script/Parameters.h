#ifndef KVL_PARAMETERS_H
#define KVL_PARAMETERS_H

#include <map>
#include <string>

class ParameterGroup;

// Named parameter groups, owned. The running system has two of these: the
// system parameters (one group per ordinary script block) and the effect
// parameters (one group per effect object).
class Parameters {
public:
    Parameters();
    ~Parameters();

    Parameters(const Parameters&) = delete;
    Parameters& operator=(const Parameters&) = delete;

    void addGroup(const std::string& name, ParameterGroup* group);
    ParameterGroup* getGroup(const std::string& name) const;
    bool exist(const std::string& name) const;
    int size() const;
    std::string getKey(int index) const;
    ParameterGroup* getValue(int index) const;
    std::string toString() const;

private:
    std::map<std::string, ParameterGroup*>::const_iterator entryAt(int index) const;

    std::map<std::string, ParameterGroup*> groups;
};

#endif
