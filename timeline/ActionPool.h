#ifndef KVL_ACTIONPOOL_H
#define KVL_ACTIONPOOL_H

#include <map>
#include <string>

class Effect;

// The effects that run at this moment, in drawing order. The order key is
// the three-digit priority, "_" and the effect's name, so a map walk draws
// lower priorities first and equal priorities by name. Owns no effect.
class ActionPool {
public:
    ActionPool();
    ~ActionPool();

    void addEffect(std::string name, Effect* effect, int priority);
    void removeEffect(std::string name);
    void removeAll();
    int countEffects() const;
    void execute(unsigned int ticks);
    std::string toString() const;

private:
    std::map<std::string, Effect*> effects;
    std::map<std::string, std::string> aliases;
};

#endif
