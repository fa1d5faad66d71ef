#include "graphics/Shader.h"

#include "graphics/Texture.h"
#include "script/KVLUtils.h"

#include <GL/glew.h>

#include <iostream>
#include <vector>

namespace {

// The info log of a shader object. A driver that refuses the length query
// leaves it at zero, and then nothing is read.
std::string shaderInfoLog(GLuint name) {
    GLint length = 0;
    glGetShaderiv(name, GL_INFO_LOG_LENGTH, &length);
    if (length < 0) {
        length = 0;
    }
    std::vector<GLchar> buffer(static_cast<size_t>(length) + 1, '\0');
    glGetShaderInfoLog(name, length, nullptr, buffer.data());
    buffer.back() = '\0';
    return std::string(buffer.data());
}

} // namespace

Shader::Shader() : vertexShader(0), fragmentShader(0), program(0), valid(true) {}

Shader::~Shader() {
    glDetachShader(program, vertexShader);
    glDetachShader(program, fragmentShader);
    glDeleteShader(vertexShader);
    glDeleteShader(fragmentShader);
    glDeleteProgram(program);
}

bool Shader::setVertexSource(std::string source) {
    vertexSource = std::move(source);
    return compile(GL_VERTEX_SHADER, vertexSource, &vertexShader);
}

bool Shader::setFragmentSource(std::string source) {
    fragmentSource = std::move(source);
    return compile(GL_FRAGMENT_SHADER, fragmentSource, &fragmentShader);
}

bool Shader::compile(unsigned int type, const std::string& source, unsigned int* shader) {
    *shader = glCreateShader(type);
    const GLchar* text = source.c_str();
    glShaderSource(*shader, 1, &text, nullptr);
    glCompileShader(*shader);
    GLint status = 0;
    glGetShaderiv(*shader, GL_COMPILE_STATUS, &status);
    if (status != 0) {
        return true;
    }
    errorMessage += shaderInfoLog(*shader);
    valid = false;
    return false;
}

// The log of a failed link is asked of the shader-object calls with the
// program's name; strict drivers refuse that and the log stays empty.
bool Shader::link() {
    program = glCreateProgram();
    glAttachShader(program, vertexShader);
    glAttachShader(program, fragmentShader);
    glLinkProgram(program);
    GLint status = 0;
    glGetProgramiv(program, GL_LINK_STATUS, &status);
    if (status != 0) {
        return true;
    }
    std::string log = shaderInfoLog(program);
    valid = false;
    errorMessage += log;
    return false;
}

std::string Shader::getErrorMessage() const {
    return errorMessage;
}

void Shader::use() {
    glUseProgram(program);
}

void Shader::release() {
    glUseProgram(0);
    glActiveTexture(GL_TEXTURE1);
    glDisable(GL_TEXTURE_2D);
    glActiveTexture(GL_TEXTURE0);
    glDisable(GL_TEXTURE_2D);
}

void Shader::setUniform1f(std::string name, float value) {
    GLint location = glGetUniformLocation(program, name.c_str());
    if (location == -1) {
        std::cout << "Error: Uniform variable '" << name << "' not found!" << std::endl;
        return;
    }
    glUniform1f(location, value);
}

void Shader::setUniform1i(std::string name, int value) {
    GLint location = glGetUniformLocation(program, name.c_str());
    if (location == -1) {
        std::cout << "Error: Uniform variable '" << name << "' not found!" << std::endl;
        return;
    }
    glUniform1f(location, static_cast<float>(value));
}

void Shader::setUniform4f(std::string name, float x, float y, float z, float w) {
    GLint location = glGetUniformLocation(program, name.c_str());
    if (location == -1) {
        return;
    }
    glUniform4f(location, x, y, z, w);
}

// A count of 4 reads four vec4s. The vector holds one; the other three go
// out as zeros rather than as whatever lies beyond it.
void Shader::setUniform4fv(std::string name, Vector<float, 4> values) {
    GLint location = glGetUniformLocation(program, name.c_str());
    if (location == -1) {
        return;
    }
    GLfloat block[16] = {};
    for (int i = 0; i < 4; i++) {
        block[i] = values[i];
    }
    glUniform4fv(location, 4, block);
}

// A missing sampler still binds the texture: GL ignores location -1.
void Shader::setTextureUnit0(std::string name, Texture* texture) {
    GLint location = glGetUniformLocation(program, name.c_str());
    glActiveTexture(GL_TEXTURE0);
    texture->bind();
    glUniform1i(location, 0);
}

void Shader::setTextureUnit1(std::string name, Texture* texture) {
    GLint location = glGetUniformLocation(program, name.c_str());
    glActiveTexture(GL_TEXTURE1);
    texture->bind();
    glUniform1i(location, 1);
    glActiveTexture(GL_TEXTURE0);
}

std::string Shader::toString() const {
    return "Shader(Vertex source length = " +
           KVLUtils::uint2string(static_cast<unsigned int>(vertexSource.length())) +
           ", Fragment source length = " +
           KVLUtils::uint2string(static_cast<unsigned int>(fragmentSource.length())) + ")";
}
