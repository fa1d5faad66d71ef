#include "timeline/EventStartEffect.h"

#include "graphics/FrameBufferObject.h"
#include "runtime/Data.h"
#include "runtime/DataEffectPool.h"
#include "runtime/DataFBOPool.h"
#include "runtime/KVLDemosys.h"
#include "runtime/KVLTime.h"
#include "script/KVLUtils.h"
#include "script/ParameterGroup.h"
#include "script/StringUtils.h"
#include "timeline/ActionPool.h"
#include "timeline/Effect.h"

#include <iostream>

namespace {

const int DEFAULT_PRIORITY = 50;

template <typename Pool> Pool* poolNamed(const std::string& name) {
    if (KVLDemosys::data == nullptr) {
        return nullptr;
    }
    return dynamic_cast<Pool*>(KVLDemosys::data->getData(name));
}

} // namespace

EventStartEffect::EventStartEffect()
    : parameters(nullptr), time(nullptr), priority(DEFAULT_PRIORITY), effect(nullptr) {}

EventStartEffect::EventStartEffect(KVLTime* time)
    : parameters(nullptr), time(time), priority(DEFAULT_PRIORITY), effect(nullptr) {}

EventStartEffect::EventStartEffect(KVLTime* time, ParameterGroup* parameters)
    : parameters(parameters), time(time), priority(DEFAULT_PRIORITY), effect(nullptr) {
    init();
}

EventStartEffect::~EventStartEffect() {
    delete parameters;
    delete time;
}

// An unknown name leaves a null entry in the effect pool, as every
// getEffect does; the parser has checked the names before.
void EventStartEffect::init() {
    if (parameters == nullptr) {
        return;
    }
    priority = DEFAULT_PRIORITY;
    if (parameters->exist("p2") && StringUtils::isInt(parameters->getParameter("p2"))) {
        priority = KVLUtils::string2Int(parameters->getParameter("p2"));
    }
    object = parameters->getParameter("object");
    DataEffectPool* effects = poolNamed<DataEffectPool>("effectPool");
    effect = (effects != nullptr) ? effects->getEffect(object) : nullptr;
}

// The start time is the one in the script, not the clock of the frame, so
// that time differences stay in step with the music when an event fires
// late. Every start sets the target anew: a target does not survive a start
// without one.
void EventStartEffect::execute() {
    if (effect == nullptr) {
        return;
    }
    effect->setStartTime((time != nullptr) ? time->getTicks() : 0);
    FrameBufferObject* target = nullptr;
    if (parameters->exist("p3")) {
        std::string name = parameters->getParameter("p3");
        DataFBOPool* fbos = poolNamed<DataFBOPool>("fboPool");
        if (fbos != nullptr && fbos->exists(name)) {
            target = fbos->getFBO(name);
        }
    }
    effect->setRenderTarget(target);
    if (effect->getRenderTarget() != nullptr) {
        std::cout << effect->getRenderTarget()->toString() << std::endl;
    }
    if (KVLDemosys::action != nullptr) {
        KVLDemosys::action->addEffect(object, effect, priority);
    }
}

void EventStartEffect::setParameters(ParameterGroup* parameters) {
    this->parameters = parameters;
    init();
}

ParameterGroup* EventStartEffect::getParameters() const {
    return parameters;
}

void EventStartEffect::setTime(KVLTime* time) {
    this->time = time;
}

KVLTime* EventStartEffect::getTime() const {
    return time;
}

Event* EventStartEffect::getInstance() const {
    return new EventStartEffect();
}

std::string EventStartEffect::toString() const {
    if (parameters == nullptr) {
        return "EventStartEffect {  }\n";
    }
    return "EventStartEffect {\n" + parameters->toString() + "}\n";
}
