#include "script/KVLUtils.h"

#include <sstream>

// Stream extraction reads the longest numeric prefix; a failed extraction
// (no digits at all, or empty text) is 0, and an overflow stores the nearest
// limit, which is what the stream does by itself since C++11.
int KVLUtils::string2Int(std::string s) {
    std::istringstream in(s);
    int value = 0;
    in >> value;
    return value;
}

float KVLUtils::string2Float(std::string s) {
    std::istringstream in(s);
    float value = 0.0f;
    in >> value;
    return value;
}

std::string KVLUtils::int2string(int value) {
    std::ostringstream out;
    out << value;
    return out.str();
}

std::string KVLUtils::uint2string(unsigned int value) {
    std::ostringstream out;
    out << value;
    return out.str();
}

std::string KVLUtils::float2string(float value) {
    std::ostringstream out;
    out << value;
    return out.str();
}
