#ifndef KVL_PARAMETERGROUP_H
#define KVL_PARAMETERGROUP_H

#include <map>
#include <string>

// One named set of key/value texts: a script block, one entry of a .def file
// or the arguments of one timeline call. Values stay text until the code that
// needs them converts them. Keys are kept in byte-wise order, which is the
// order of index access and of toString().
class ParameterGroup {
public:
    ParameterGroup();
    explicit ParameterGroup(const std::string& name);

    void addParameter(const std::string& key, const std::string& value);
    std::string getParameter(const std::string& key) const noexcept;
    bool exist(const std::string& key) const;
    int size() const;
    std::string getKey(int index) const;
    std::string getValue(int index) const;
    std::string getGroupName() const;
    void setGroupName(const std::string& name);
    std::string toString() const;

private:
    std::map<std::string, std::string>::const_iterator entryAt(int index) const;

    std::string groupName;
    std::map<std::string, std::string> parameters;
};

#endif
