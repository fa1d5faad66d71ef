#ifndef KVL_TIMELINECALL_H
#define KVL_TIMELINECALL_H

#include "script/ParameterGroup.h"

#include <initializer_list>
#include <string>

// The arguments of a timeline call as an effect's modify() gets them: the
// object, the method, "p1" the event's own time and the arguments from "p2"
// on.
inline ParameterGroup timelineCall(const std::string& object, const std::string& method,
                                   const std::string& time,
                                   std::initializer_list<const char*> arguments) {
    ParameterGroup group;
    group.addParameter("object", object);
    group.addParameter("method", method);
    group.addParameter("p1", time);
    int key = 2;
    for (const char* value : arguments) {
        group.addParameter("p" + std::to_string(key++), value);
    }
    return group;
}

#endif
