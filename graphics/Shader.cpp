#include "graphics/Shader.h"

#include "script/KVLUtils.h"

Shader::Shader() {}

Shader::~Shader() {}

std::string Shader::toString() const {
    return "Shader(Vertex source length = " +
           KVLUtils::uint2string(static_cast<unsigned int>(vertexSource.length())) +
           ", Fragment source length = " +
           KVLUtils::uint2string(static_cast<unsigned int>(fragmentSource.length())) + ")";
}
