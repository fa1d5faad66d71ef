#ifndef KVL_EXAMPLEDEFINITION_H
#define KVL_EXAMPLEDEFINITION_H

// The definition file of an example effect: a parameter of every type, one
// with a list of values and one that takes any text, and methods of every
// argument kind.
const char* const EXAMPLE_DEFINITION =
    "parameters {\n"
    "    speed[type=float][default=1.0];\n"
    "    count[type=int][default=16];\n"
    "    wrap[type=bool][default=false];\n"
    "    mode[type=string][values=add,blend,replace][default=blend];\n"
    "    texture[type=string][values=<string>][default=none];\n"
    "}\n"
    "methods {\n"
    "    setSpeed(<event>, <float>);\n"
    "    setTexture(<event>, <string>);\n"
    "    fade(<event>, <time>, <time>, <float>);\n"
    "    burst(<event>, <integer>, <bool>);\n"
    "}\n";

#endif
