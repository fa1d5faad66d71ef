#ifndef KVL_ANIMATION_H
#define KVL_ANIMATION_H

#include "graphics/Vector.h"

#include <string>
#include <vector>

class AnimationCameraController;
class AnimationObjectController;
class Keyframe;

// A path of keyframes, evenly spaced over a normalized time from 0 to 1.
// next(t) computes the pose for t, which the getters then give back; a time
// outside the path prints its line and leaves the pose where it was, which
// is how the end of a path is held.
class Animation {
public:
    static constexpr int LINEAR = 0;
    static constexpr int CATMULL_ROM = 1;

    Animation();
    ~Animation();
    Animation(const Animation&) = delete;
    Animation& operator=(const Animation&) = delete;

    // Ownership of the keyframe passes to the animation.
    void addKeyframe(Keyframe* keyframe);
    int countKeyFrames() const;
    // Null for an index outside the list.
    Keyframe* getKeyFrame(int index) const;
    // Any value but LINEAR and CATMULL_ROM makes next() do nothing.
    void setInterpolationType(int type);
    int getInterpolationType() const;

    void next(double t);
    void interpolateLinear(Keyframe* k0, Keyframe* k1, float t);
    void interpolateCatmull(Keyframe* k0, Keyframe* k1, Keyframe* k2, Keyframe* k3, float t);

    Vector<float, 3> getPosition() const;
    float getPitch() const;
    float getHeading() const;

    // New controllers for this animation; the caller owns them.
    AnimationCameraController* getCameraController();
    AnimationObjectController* getObjectController();

    // Debug drawing of the path through its keyframes, and of the spline
    // sampled ten times a segment. drawCatmul() overwrites the pose.
    void draw() const;
    void drawCatmul();

    std::string toString() const;
    // The whole path in the animation file format, to standard output.
    void print() const;

private:
    void nextLinear(double t);
    void nextCatmull(double t);

    std::vector<Keyframe*> keyframes;
    Vector<float, 3> position;
    float pitch;
    float heading;
    int interpolationType;
};

#endif
