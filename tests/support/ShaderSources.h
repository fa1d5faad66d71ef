#ifndef KVL_SHADERSOURCES_H
#define KVL_SHADERSOURCES_H

#include "support/TempDir.h"

#include <string>

// GLSL sources the shader tests share, and where a production keeps them.

// Hands on the texture coordinate and the vertex as it is, without matrices.
const std::string PASS_VERTEX = "#version 110\n"
                                "void main() {\n"
                                "    gl_TexCoord[0] = gl_MultiTexCoord0;\n"
                                "    gl_Position = gl_Vertex;\n"
                                "}\n";

// Does not compile: it reads a name that is declared nowhere.
const std::string BROKEN_FRAGMENT = "#version 110\n"
                                    "void main() {\n"
                                    "    gl_FragColor = notDeclaredAnywhere;\n"
                                    "}\n";

// Compiles, but calls a function that neither shader of the pair defines.
const std::string UNRESOLVED_FRAGMENT = "#version 110\n"
                                        "vec4 elsewhere();\n"
                                        "void main() {\n"
                                        "    gl_FragColor = elsewhere();\n"
                                        "}\n";

// Writes resources/shaders/<stem>.vert and .frag below the directory; an
// empty source leaves its file out.
inline void writeShaderPair(const TempDir& directory, const std::string& stem,
                            const std::string& vertex, const std::string& fragment) {
    if (!vertex.empty()) {
        directory.write("resources/shaders/" + stem + ".vert", vertex);
    }
    if (!fragment.empty()) {
        directory.write("resources/shaders/" + stem + ".frag", fragment);
    }
}

#endif
