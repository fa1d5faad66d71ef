#ifndef KVL_KVLUTILS_H
#define KVL_KVLUTILS_H

#include <string>

// Conversions between script text and numbers. Bad text gives 0 and no
// error: the parsers validate before anything is converted.
class KVLUtils {
public:
    static int string2Int(std::string s);
    static float string2Float(std::string s);
    static std::string int2string(int value);
    static std::string uint2string(unsigned int value);
    static std::string float2string(float value);
};

#endif
