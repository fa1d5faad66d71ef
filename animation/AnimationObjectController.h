#ifndef KVL_ANIMATIONOBJECTCONTROLLER_H
#define KVL_ANIMATIONOBJECTCONTROLLER_H

#include "runtime/KVLTime.h"

class Animation;

// The sibling of AnimationCameraController for objects: it holds an
// animation and a span of demo time, and moves nothing by itself.
class AnimationObjectController {
public:
    AnimationObjectController();

    // Not owned.
    void setAnimation(Animation* value);
    Animation* getAnimation() const;
    void setStartTime(KVLTime time);
    void setStartTime(unsigned int milliseconds);
    void setEndTime(KVLTime time);
    void setEndTime(unsigned int milliseconds);
    KVLTime getStartTime() const;
    KVLTime getEndTime() const;

private:
    Animation* animation;
    KVLTime startTime;
    KVLTime endTime;
};

#endif
