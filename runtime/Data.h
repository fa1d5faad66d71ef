#ifndef KVL_DATA_H
#define KVL_DATA_H

#include <map>
#include <string>

class DataPool;

// The container of all pools, by name. Owns them.
class Data {
public:
    Data();
    ~Data();
    Data(const Data&) = delete;
    Data& operator=(const Data&) = delete;

    // A pool already stored under the name is replaced, not deleted.
    void addData(const std::string& name, DataPool* pool);
    DataPool* getData(const std::string& name) const;
    bool exist(const std::string& name) const;
    std::string toString() const;

private:
    std::map<std::string, DataPool*> pools;
};

#endif
