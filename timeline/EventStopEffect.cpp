#include "timeline/EventStopEffect.h"

#include "runtime/KVLDemosys.h"
#include "runtime/KVLTime.h"
#include "script/ParameterGroup.h"
#include "timeline/ActionPool.h"

EventStopEffect::EventStopEffect() : parameters(nullptr), time(nullptr) {}

EventStopEffect::EventStopEffect(KVLTime* time) : parameters(nullptr), time(time) {}

EventStopEffect::EventStopEffect(KVLTime* time, ParameterGroup* parameters)
    : parameters(parameters), time(time) {
    init();
}

EventStopEffect::~EventStopEffect() {
    delete parameters;
    delete time;
}

void EventStopEffect::init() {
    if (parameters == nullptr) {
        return;
    }
    object = parameters->getParameter("object");
}

// A stop of an effect that is not running gets the action pool's error
// line, which is harmless.
void EventStopEffect::execute() {
    if (parameters != nullptr) {
        parameters->getParameter("object");
    }
    if (KVLDemosys::action != nullptr) {
        KVLDemosys::action->removeEffect(object);
    }
}

void EventStopEffect::setParameters(ParameterGroup* parameters) {
    this->parameters = parameters;
    init();
}

ParameterGroup* EventStopEffect::getParameters() const {
    return parameters;
}

void EventStopEffect::setTime(KVLTime* time) {
    this->time = time;
}

KVLTime* EventStopEffect::getTime() const {
    return time;
}

Event* EventStopEffect::getInstance() const {
    return new EventStopEffect();
}

// The arguments are not shown, with or without a group.
std::string EventStopEffect::toString() const {
    return "EventStopEffect {  }\n";
}
