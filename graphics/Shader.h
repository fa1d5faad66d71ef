#ifndef KVL_SHADER_H
#define KVL_SHADER_H

#include <string>

class Shader {
public:
    Shader();
    ~Shader();

    std::string toString() const;

private:
    std::string vertexSource;
    std::string fragmentSource;
};

#endif
