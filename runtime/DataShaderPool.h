#ifndef KVL_DATASHADERPOOL_H
#define KVL_DATASHADERPOOL_H

#include "runtime/DataPool.h"

#include <map>
#include <string>

class Shader;

// Linked shader programs by name. getShader indexes the map, so asking for a
// missing name enters it with a null shader; test exists() first.
class DataShaderPool : public DataPool {
public:
    DataShaderPool();
    ~DataShaderPool() override;
    DataShaderPool(const DataShaderPool&) = delete;
    DataShaderPool& operator=(const DataShaderPool&) = delete;

    // A shader already stored under the name is replaced, not deleted.
    void addShader(const std::string& name, Shader* shader);
    Shader* getShader(const std::string& name);
    bool exists(const std::string& name) const;
    int size() const override;
    // Also writes the number of shaders to the log, at every call.
    std::string toString() const override;

private:
    std::map<std::string, Shader*> shaders;
};

#endif
