#include "animation/AnimationObjectController.h"

AnimationObjectController::AnimationObjectController() : animation(nullptr) {}

void AnimationObjectController::setAnimation(Animation* value) {
    animation = value;
}

Animation* AnimationObjectController::getAnimation() const {
    return animation;
}

void AnimationObjectController::setStartTime(KVLTime time) {
    startTime = time;
}

void AnimationObjectController::setStartTime(unsigned int milliseconds) {
    startTime.reset();
    startTime.setMilliseconds(static_cast<int>(milliseconds));
}

void AnimationObjectController::setEndTime(KVLTime time) {
    endTime = time;
}

void AnimationObjectController::setEndTime(unsigned int milliseconds) {
    endTime.reset();
    endTime.setMilliseconds(static_cast<int>(milliseconds));
}

KVLTime AnimationObjectController::getStartTime() const {
    return startTime;
}

KVLTime AnimationObjectController::getEndTime() const {
    return endTime;
}
