#include "runtime/DataPool.h"

#include "script/KVLUtils.h"

DataPool::DataPool() : count(0) {}

DataPool::~DataPool() {}

int DataPool::size() const {
    return count;
}

std::string DataPool::toString() const {
    return "DataPool { size = " + KVLUtils::int2string(count) + " }\n";
}
