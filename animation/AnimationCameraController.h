#ifndef KVL_ANIMATIONCAMERACONTROLLER_H
#define KVL_ANIMATIONCAMERACONTROLLER_H

#include "runtime/KVLTime.h"

class Animation;

// Plays an Animation on the global camera between two demo times. Both ends
// are inclusive; outside them the camera is not touched. animate() depends
// on its argument alone, so an effect may seek freely.
class AnimationCameraController {
public:
    AnimationCameraController();
    explicit AnimationCameraController(Animation* animation);

    // Not owned.
    void setAnimation(Animation* value);
    Animation* getAnimation() const;
    void setStartTime(KVLTime time);
    void setStartTime(unsigned int milliseconds);
    void setEndTime(KVLTime time);
    void setEndTime(unsigned int milliseconds);
    KVLTime getStartTime() const;
    KVLTime getEndTime() const;

    void animate(unsigned int milliseconds);

private:
    Animation* animation;
    KVLTime startTime;
    KVLTime endTime;
};

#endif
