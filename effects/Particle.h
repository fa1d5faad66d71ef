#ifndef KVL_PARTICLE_H
#define KVL_PARTICLE_H

#include "graphics/Vector.h"

// The textured sprite of the scenes: a small record that moves itself, turns
// itself, ages and draws itself as one quad around its position. The caller
// binds the texture and sets the blending; a sprite only sets its colour.
class Particle {
public:
    Particle();

    void setPosition(float x, float y, float z);
    void setDirection(float x, float y, float z);
    void setGravity(float x, float y, float z);
    void setAcceleration(float value);
    // Leaves the alpha as it is.
    void setColor(float r, float g, float b);
    void setColor(float r, float g, float b, float a);
    void setSize(float value);
    // Seconds left; -1.0 is immortal, 0.0 dead.
    void setLifespan(float value);
    void setEnergy(float value);
    // Degrees a second around z; the angle starts again from 0.
    void setRotation(float degreesPerSecond);

    Vector<float, 3> getPosition() const;
    Vector<float, 3> getDirection() const;
    Vector<float, 3> getGravity() const;
    float getAcceleration() const;
    Vector<float, 4> getColor() const;
    float getSize() const;
    float getLifespan() const;
    float getEnergy() const;
    float getAngle() const;
    float getSpin() const;

    bool isDead() const;
    void kill();

    // Steps the sprite by dt seconds and draws it. A mortal sprite is opaque
    // until its last second, in which its remaining life is its alpha.
    void draw(float dt);
    // The same in a frame rotated by angle around axis: the rotation is
    // undone for the quad, so the sprite keeps facing the viewer.
    void draw(float dt, float angle, Vector<int, 3> axis);

private:
    // Steps position, angle, energy and life; false for a dead sprite, which
    // is neither moved nor drawn.
    bool step(float dt);
    void beginQuad();
    void drawQuad();

    Vector<float, 3> position;
    Vector<float, 3> direction;
    // Kept for the scenes that set them; the sprite's own motion is its
    // direction alone.
    Vector<float, 3> gravity;
    float acceleration;
    float size;
    Vector<float, 4> color;
    float lifespan;
    float energy;
    float angle;
    float spin;
};

#endif
