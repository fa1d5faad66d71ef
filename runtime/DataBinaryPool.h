#ifndef KVL_DATABINARYPOOL_H
#define KVL_DATABINARYPOOL_H

#include "runtime/DataPool.h"

#include <map>
#include <string>

class Binary;

// Binary blobs by name. size() counts the adds, as in the object pool.
class DataBinaryPool : public DataPool {
public:
    DataBinaryPool();
    ~DataBinaryPool() override;
    DataBinaryPool(const DataBinaryPool&) = delete;
    DataBinaryPool& operator=(const DataBinaryPool&) = delete;

    // A blob already stored under the name is replaced, not deleted.
    void addData(const std::string& name, Binary* binary);
    Binary* getData(const std::string& name) const;
    Binary* getData(int index) const;
    bool exist(const std::string& name) const;
    int size() const override;
    std::string toString() const override;

private:
    std::map<std::string, Binary*> binaries;
};

#endif
