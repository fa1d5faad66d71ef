#ifndef KVL_EVENTSTOPEFFECT_H
#define KVL_EVENTSTOPEFFECT_H

#include "timeline/Event.h"

#include <string>

// Takes an effect out of the action pool. The effect keeps its state and
// stays in the effect pool.
class EventStopEffect : public Event {
public:
    EventStopEffect();
    explicit EventStopEffect(KVLTime* time);
    EventStopEffect(KVLTime* time, ParameterGroup* parameters);
    ~EventStopEffect() override;
    EventStopEffect(const EventStopEffect&) = delete;
    EventStopEffect& operator=(const EventStopEffect&) = delete;

    void execute() override;
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
    std::string object;
};

#endif
