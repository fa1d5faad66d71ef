#ifndef KVL_DATAEFFECTPOOL_H
#define KVL_DATAEFFECTPOOL_H

#include "runtime/DataPool.h"

#include <map>
#include <string>

class Effect;

// Effects by name: one pool holds the templates, one the instances of the
// script. getEffect indexes the map, so asking for a missing name enters it
// with a null effect; callers that may ask for one test exist() first.
class DataEffectPool : public DataPool {
public:
    DataEffectPool();
    ~DataEffectPool() override;
    DataEffectPool(const DataEffectPool&) = delete;
    DataEffectPool& operator=(const DataEffectPool&) = delete;

    // An effect already stored under the name is replaced, not deleted.
    void addEffect(const std::string& name, Effect* effect);
    Effect* getEffect(const std::string& name);
    bool exist(const std::string& name) const;
    // Erases the entry and leaves the effect alive.
    void removeEffect(const std::string& name);
    std::string getKey(int index) const;
    int size() const override;
    std::string toString() const override;

private:
    std::map<std::string, Effect*> effects;
};

#endif
