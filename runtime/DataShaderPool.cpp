#include "runtime/DataShaderPool.h"

#include "graphics/Shader.h"

#include <iostream>

DataShaderPool::DataShaderPool() {}

DataShaderPool::~DataShaderPool() {
    for (auto& entry : shaders) {
        delete entry.second;
    }
}

void DataShaderPool::addShader(const std::string& name, Shader* shader) {
    shaders[name] = shader;
}

Shader* DataShaderPool::getShader(const std::string& name) {
    return shaders[name];
}

bool DataShaderPool::exists(const std::string& name) const {
    return shaders.find(name) != shaders.end();
}

int DataShaderPool::size() const {
    return static_cast<int>(shaders.size());
}

std::string DataShaderPool::toString() const {
    std::cout << "Shaders in pool : " << shaders.size() << std::endl;
    std::string text = "ShaderPool {\n";
    if (shaders.empty()) {
        text += "<Empty>\n";
    }
    for (const auto& entry : shaders) {
        text += "  " + entry.first + " = ";
        if (entry.second != nullptr) {
            text += entry.second->toString();
        }
        text += "\n";
    }
    return text + "}\n";
}
