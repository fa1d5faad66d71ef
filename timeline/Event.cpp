#include "timeline/Event.h"

Event::Event() {}

Event::~Event() {}

void Event::execute() {}

void Event::setParameters(ParameterGroup*) {}

ParameterGroup* Event::getParameters() const {
    return nullptr;
}

void Event::setTime(KVLTime*) {}

KVLTime* Event::getTime() const {
    return nullptr;
}

Event* Event::getInstance() const {
    return nullptr;
}

std::string Event::toString() const {
    return "Event {...}";
}
