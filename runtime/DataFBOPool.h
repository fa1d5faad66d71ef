#ifndef KVL_DATAFBOPOOL_H
#define KVL_DATAFBOPOOL_H

#include "runtime/DataPool.h"

#include <map>
#include <string>

class FrameBufferObject;

// Render targets by name.
class DataFBOPool : public DataPool {
public:
    DataFBOPool();
    ~DataFBOPool() override;
    DataFBOPool(const DataFBOPool&) = delete;
    DataFBOPool& operator=(const DataFBOPool&) = delete;

    // A target already stored under the name is replaced, not deleted.
    void addFBO(const std::string& name, FrameBufferObject* fbo);
    // Logs a missing name and gives null.
    FrameBufferObject* getFBO(const std::string& name) const;
    bool exists(const std::string& name) const;
    int size() const override;
    std::string toString() const override;

private:
    std::map<std::string, FrameBufferObject*> fbos;
};

#endif
