#include "timeline/Effect.h"

#include "runtime/KVLTime.h"
#include "script/KVLUtils.h"
#include "script/ParameterGroup.h"

Effect::Effect()
    : parameters(nullptr), startTime(0), modifyTime(0), lastCalled(0), renderTarget(nullptr) {}

Effect::~Effect() {}

void Effect::draw(unsigned int) {}

void Effect::init() {}

void Effect::reset() {}

void Effect::modify(std::string, ParameterGroup*) {}

Effect* Effect::getInstance() {
    return new Effect();
}

void Effect::setParameters(ParameterGroup* group) {
    parameters = group;
}

void Effect::setStartTime(unsigned int ticks) {
    startTime = ticks;
}

void Effect::setModifyTime(unsigned int ticks) {
    modifyTime = ticks;
}

void Effect::setLastCalled(unsigned int ticks) {
    lastCalled = ticks;
}

void Effect::setRenderTarget(FrameBufferObject* target) {
    renderTarget = target;
}

FrameBufferObject* Effect::getRenderTarget() const {
    return renderTarget;
}

unsigned int Effect::getFrameTicks(unsigned int ticks) const {
    unsigned int d = ticks - lastCalled;
    return (d <= 1000) ? d : 16;
}

double Effect::getFrameTime(unsigned int ticks) const {
    double d = static_cast<double>(ticks - lastCalled);
    return (d <= 1000.0) ? d : 16.0;
}

unsigned int Effect::getModifyTicks(unsigned int ticks) const {
    return ticks - modifyTime;
}

double Effect::getModifyTime(unsigned int ticks) const {
    return static_cast<double>(ticks - modifyTime);
}

float Effect::floatOf(const ParameterGroup* group, const std::string& key) {
    return KVLUtils::string2Float(group->getParameter(key));
}

double Effect::progressAt(unsigned int ticks, const KVLTime& start, const KVLTime& end) {
    double from = start.getTicksAsDouble();
    double to = end.getTicksAsDouble();
    double progress = (static_cast<double>(ticks) - from) / (to - from);
    return (progress > 1.0) ? 1.0 : progress;
}
