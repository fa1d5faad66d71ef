#ifndef KVL_EVENTSTARTEFFECT_H
#define KVL_EVENTSTARTEFFECT_H

#include "timeline/Event.h"

#include <string>

class Effect;

// Puts an effect into the action pool at its scheduled time, with the
// priority "p2" (50 by default) and the render target "p3" (the screen if
// absent or unknown).
class EventStartEffect : public Event {
public:
    EventStartEffect();
    explicit EventStartEffect(KVLTime* time);
    EventStartEffect(KVLTime* time, ParameterGroup* parameters);
    ~EventStartEffect() override;
    EventStartEffect(const EventStartEffect&) = delete;
    EventStartEffect& operator=(const EventStartEffect&) = delete;

    void execute() override;
    // Resolves the effect at once: the effect objects must exist by then.
    void setParameters(ParameterGroup* parameters) override;
    ParameterGroup* getParameters() const override;
    void setTime(KVLTime* time) override;
    KVLTime* getTime() const override;
    Event* getInstance() const override;
    std::string toString() const override;

    void init();

private:
    ParameterGroup* parameters;
    KVLTime* time;
    int priority;
    std::string object;
    Effect* effect;
};

#endif
