#ifndef KVL_STRINGUTILS_H
#define KVL_STRINGUTILS_H

#include <string>

// Trimming and the predicates that decide what a script accepts as an
// integer, a float and a boolean.
class StringUtils {
public:
    static bool charIsTrimable(char c);
    static std::string trim(std::string s);
    static bool isInt(std::string s);
    static bool isFloat(std::string s);
    static bool isBool(std::string s);
};

#endif
