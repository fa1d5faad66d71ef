#ifndef KVL_DATAOBJECTPOOL_H
#define KVL_DATAOBJECTPOOL_H

#include "runtime/DataPool.h"

#include <map>
#include <string>

class O3dScene;

// The loaded models by name. size() counts the adds, so a name added twice
// counts twice although the pool keeps one entry.
class DataObjectPool : public DataPool {
public:
    DataObjectPool();
    ~DataObjectPool() override;
    DataObjectPool(const DataObjectPool&) = delete;
    DataObjectPool& operator=(const DataObjectPool&) = delete;

    // A scene already stored under the name is replaced, not deleted.
    void addObject(const std::string& name, O3dScene* scene);
    O3dScene* getObject(const std::string& name) const;
    O3dScene* getObject(int index) const;
    bool exists(const std::string& name) const;
    int size() const override;
    std::string toString() const override;

private:
    std::map<std::string, O3dScene*> objects;
};

#endif
