#ifndef KVL_SHADER_H
#define KVL_SHADER_H

#include "graphics/Vector.h"

#include <string>

class Texture;

// One GLSL program of exactly one vertex and one fragment shader. Sources are
// compiled as they are handed in, then linked; while drawing, use() makes the
// program current and the setters reach its uniforms by name. The setters act
// on whatever program is current, so use() comes first.
class Shader {
public:
    // Touches no GL state.
    Shader();
    ~Shader();
    Shader(const Shader&) = delete;
    Shader& operator=(const Shader&) = delete;

    bool setVertexSource(std::string source);
    bool setFragmentSource(std::string source);
    bool link();
    std::string getErrorMessage() const;

    void use();
    // Leaves no program current, texturing off on units 1 and 0, and unit 0
    // active, whichever shader it is called on.
    void release();

    // Locations are looked up on every call. The single-value setters report
    // a missing uniform on every call; the four-float ones are silent.
    void setUniform1f(std::string name, float value);
    // Sent as a float: serves float uniforms only, never a sampler.
    void setUniform1i(std::string name, int value);
    void setUniform4f(std::string name, float x, float y, float z, float w);
    // Sends a count of 4 from the vector's four elements.
    void setUniform4fv(std::string name, Vector<float, 4> values);
    void setTextureUnit0(std::string name, Texture* texture);
    // Unit 0 is the active unit again afterwards.
    void setTextureUnit1(std::string name, Texture* texture);

    std::string toString() const;

private:
    bool compile(unsigned int type, const std::string& source, unsigned int* shader);

    std::string vertexSource;
    std::string fragmentSource;
    unsigned int vertexShader;
    unsigned int fragmentShader;
    unsigned int program;
    bool valid;
    std::string errorMessage;
};

#endif
