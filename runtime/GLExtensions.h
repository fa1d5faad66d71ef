#ifndef KVL_GLEXTENSIONS_H
#define KVL_GLEXTENSIONS_H

#include <map>
#include <string>
#include <vector>

// The driver's OpenGL extensions, for the log, with a check against a list
// of names that a production could require.
class GLExtensions {
public:
    // Needs a current GL context.
    GLExtensions();

    bool isSupported(std::string name) const;
    void addToChecklist(std::string name);
    // Tests every name of the checklist and remembers all that are missing.
    bool isSupported();
    std::string getErrorMessage() const;
    std::string toString() const;

private:
    std::map<std::string, bool> extensions;
    std::vector<std::string> checklist;
    std::vector<std::string> missing;
};

#endif
