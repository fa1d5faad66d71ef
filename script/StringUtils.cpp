#include "script/StringUtils.h"

#include "script/StringTokenizer.h"

bool StringUtils::charIsTrimable(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

std::string StringUtils::trim(std::string s) {
    size_t begin = 0;
    while (begin < s.length() && charIsTrimable(s[begin])) {
        begin++;
    }
    size_t end = s.length();
    while (end > begin && charIsTrimable(s[end - 1])) {
        end--;
    }
    return s.substr(begin, end - begin);
}

// Deliberately permissive: a lone "-" counts, and there is no length limit.
bool StringUtils::isInt(std::string s) {
    if (s.empty()) {
        return false;
    }
    size_t start = (s[0] == '-') ? 1 : 0;
    for (size_t i = start; i < s.length(); i++) {
        if (s[i] < '0' || s[i] > '9') {
            return false;
        }
    }
    return true;
}

// A float of the script language is two integers around one point; the
// tokenizer's rules make "1..5" a float and "1." not.
bool StringUtils::isFloat(std::string s) {
    if (s.empty()) {
        return false;
    }
    if (s[0] == '-') {
        s = s.substr(1);
    }
    StringTokenizer parts(s, ".");
    if (parts.countTokens() != 2) {
        return false;
    }
    return isInt(parts.getNext()) && isInt(parts.getNext());
}

bool StringUtils::isBool(std::string s) {
    return s == "true" || s == "false";
}
