#ifndef KVL_DATAANIMATIONPOOL_H
#define KVL_DATAANIMATIONPOOL_H

#include "runtime/DataPool.h"

#include <map>
#include <string>

class Animation;

// Camera paths by name. size() counts the adds.
class DataAnimationPool : public DataPool {
public:
    DataAnimationPool();
    ~DataAnimationPool() override;
    DataAnimationPool(const DataAnimationPool&) = delete;
    DataAnimationPool& operator=(const DataAnimationPool&) = delete;

    // An animation already stored under the name is replaced, not deleted.
    void addAnimation(const std::string& name, Animation* animation);
    Animation* getAnimation(const std::string& name) const;
    bool exist(const std::string& name) const;
    int size() const override;
    std::string toString() const override;

private:
    std::map<std::string, Animation*> animations;
    int numAnimations;
};

#endif
