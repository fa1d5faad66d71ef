#ifndef KVL_EFFECTDEFINITIONPARSER_H
#define KVL_EFFECTDEFINITIONPARSER_H

#include <string>

class EffectDefinition;
class ParameterGroup;
class Parameters;

// Reads one .def file: blocks "parameters" and "methods", in any order, each
// optional.
//
//     parameters { speed[type=float][default=1.0]; }
//     methods { setSpeed(<event>, <float>); }
//
// Only a missing file and an unknown block name are detected here; anything
// else wrong in a .def file shows up when the script is checked against it.
class EffectDefinitionParser {
public:
    explicit EffectDefinitionParser(const std::string& filename);

    EffectDefinition* parse();
    bool isValid() const;
    std::string getErrorMessage() const;

    bool loadFile(const std::string& name);
    Parameters* parseParameters(const std::string& body);
    Parameters* parseMethods(const std::string& body);
    std::string getName(const std::string& attribute) const;
    std::string getValue(const std::string& attribute) const;

private:
    static void addReplacing(Parameters* declared, const std::string& name, ParameterGroup* group);
    void failOnBlockName(const std::string& name);

    std::string filename;
    std::string fileContents;
    std::string errorMessage;
    bool valid;
};

#endif
