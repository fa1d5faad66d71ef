#ifndef KVL_KEYFRAME_H
#define KVL_KEYFRAME_H

#include "graphics/Vector.h"

// One pose of a path: a place and the two angles the Camera steers by. A
// keyframe has no time of its own; its index in the Animation gives it one.
class Keyframe {
public:
    Keyframe();
    Keyframe(Vector<float, 3> position, float pitch, float heading);

    Vector<float, 3> getPosition() const;
    void setPosition(Vector<float, 3> value);
    float getPitch() const;
    void setPitch(float value);
    float getHeading() const;
    void setHeading(float value);

    // The two lines of this keyframe in the animation file format.
    void print() const;

private:
    Vector<float, 3> position;
    float heading;
    float pitch;
};

#endif
