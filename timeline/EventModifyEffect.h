#ifndef KVL_EVENTMODIFYEFFECT_H
#define KVL_EVENTMODIFYEFFECT_H

#include "timeline/Event.h"

#include <string>

class Effect;

// Calls a method of an effect, running or not, with the event's own group of
// arguments.
class EventModifyEffect : public Event {
public:
    EventModifyEffect();
    explicit EventModifyEffect(KVLTime* time);
    EventModifyEffect(KVLTime* time, ParameterGroup* parameters);
    ~EventModifyEffect() override;
    EventModifyEffect(const EventModifyEffect&) = delete;
    EventModifyEffect& operator=(const EventModifyEffect&) = delete;

    void execute() override;
    // Resolves the effect at once: the effect objects must exist by then.
    void setParameters(ParameterGroup* parameters) override;
    ParameterGroup* getParameters() const override;
    void setTime(KVLTime* time) override;
    KVLTime* getTime() const override;
    Event* getInstance() const override;
    std::string toString() const override;

    void init();
    void setMethod(const std::string& method);
    std::string getMethod() const;

private:
    ParameterGroup* parameters;
    KVLTime* time;
    std::string method;
    Effect* effect;
};

#endif
