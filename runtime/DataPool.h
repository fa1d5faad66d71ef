#ifndef KVL_DATAPOOL_H
#define KVL_DATAPOOL_H

#include <string>

// Base of the resource pools. Each pool keeps one kind of resource by name
// and owns what it keeps; Data reaches them all through this base.
class DataPool {
public:
    DataPool();
    virtual ~DataPool();

    virtual int size() const;
    virtual std::string toString() const;

protected:
    int count;
};

#endif
