#include "timeline/EventModifyEffect.h"

#include "runtime/Data.h"
#include "runtime/DataEffectPool.h"
#include "runtime/KVLDemosys.h"
#include "runtime/KVLTime.h"
#include "script/ParameterGroup.h"
#include "timeline/Effect.h"

namespace {

DataEffectPool* effectPool() {
    if (KVLDemosys::data == nullptr) {
        return nullptr;
    }
    return dynamic_cast<DataEffectPool*>(KVLDemosys::data->getData("effectPool"));
}

} // namespace

EventModifyEffect::EventModifyEffect()
    : parameters(nullptr), time(nullptr), method("<method>"), effect(nullptr) {}

EventModifyEffect::EventModifyEffect(KVLTime* time)
    : parameters(nullptr), time(time), method("<method>"), effect(nullptr) {}

EventModifyEffect::EventModifyEffect(KVLTime* time, ParameterGroup* parameters)
    : parameters(parameters), time(time), method("<method>"), effect(nullptr) {
    init();
}

EventModifyEffect::~EventModifyEffect() {
    delete parameters;
    delete time;
}

// A group without "method" is fatal here, as every absent key is.
void EventModifyEffect::init() {
    if (parameters == nullptr) {
        return;
    }
    std::string object = parameters->getParameter("object");
    method = parameters->getParameter("method");
    DataEffectPool* effects = effectPool();
    effect = (effects != nullptr) ? effects->getEffect(object) : nullptr;
}

// The modify time is the one in the script, so that an effect counts from
// there however late in the frame the event fired.
void EventModifyEffect::execute() {
    if (effect == nullptr) {
        return;
    }
    effect->setModifyTime((time != nullptr) ? time->getTicks() : 0);
    effect->modify(method, parameters);
}

void EventModifyEffect::setParameters(ParameterGroup* parameters) {
    this->parameters = parameters;
    init();
}

ParameterGroup* EventModifyEffect::getParameters() const {
    return parameters;
}

void EventModifyEffect::setTime(KVLTime* time) {
    this->time = time;
}

KVLTime* EventModifyEffect::getTime() const {
    return time;
}

Event* EventModifyEffect::getInstance() const {
    return new EventModifyEffect();
}

std::string EventModifyEffect::toString() const {
    if (parameters == nullptr) {
        return "EventModifyEffect {  }\n";
    }
    return "EventModifyEffect {\n" + parameters->toString() + "}\n";
}

void EventModifyEffect::setMethod(const std::string& method) {
    this->method = method;
}

std::string EventModifyEffect::getMethod() const {
    return method;
}
