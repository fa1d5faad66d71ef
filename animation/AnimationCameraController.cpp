#include "animation/AnimationCameraController.h"

#include "animation/Animation.h"
#include "runtime/KVLDemosys.h"

AnimationCameraController::AnimationCameraController() : animation(nullptr) {}

AnimationCameraController::AnimationCameraController(Animation* animation) : animation(animation) {}

void AnimationCameraController::setAnimation(Animation* value) {
    animation = value;
}

Animation* AnimationCameraController::getAnimation() const {
    return animation;
}

void AnimationCameraController::setStartTime(KVLTime time) {
    startTime = time;
}

void AnimationCameraController::setStartTime(unsigned int milliseconds) {
    startTime.reset();
    startTime.setMilliseconds(static_cast<int>(milliseconds));
}

void AnimationCameraController::setEndTime(KVLTime time) {
    endTime = time;
}

void AnimationCameraController::setEndTime(unsigned int milliseconds) {
    endTime.reset();
    endTime.setMilliseconds(static_cast<int>(milliseconds));
}

KVLTime AnimationCameraController::getStartTime() const {
    return startTime;
}

KVLTime AnimationCameraController::getEndTime() const {
    return endTime;
}

void AnimationCameraController::animate(unsigned int milliseconds) {
    if (animation == nullptr) {
        return;
    }
    if (startTime.getTicks() > milliseconds) {
        return;
    }
    if (milliseconds > endTime.getTicks()) {
        return;
    }
    double span = endTime.getTicksAsDouble() - startTime.getTicksAsDouble();
    // Narrowed to a float on the way, as the paths were always timed.
    float t = static_cast<float>(
        (static_cast<double>(milliseconds) - static_cast<double>(startTime.getTicks())) / span);
    animation->next(static_cast<double>(t));
    // Only the fields: the matrices follow at the next Camera::setGLMatrixes.
    KVLDemosys::camera.setPosition(animation->getPosition());
    KVLDemosys::camera.setPitch(animation->getPitch());
    KVLDemosys::camera.setHeading(animation->getHeading());
}
