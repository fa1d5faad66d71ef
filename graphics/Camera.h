#ifndef KVL_CAMERA_H
#define KVL_CAMERA_H

#include "graphics/Matrix.h"
#include "graphics/Quaternion.h"
#include "graphics/Vector.h"

// The free-flying viewer. It steers by pitch, heading and velocity and fills
// the modelview matrix in setGLMatrixes(); it touches GL nowhere else, so a
// Camera can be built before any window exists.
class Camera {
public:
    Camera();

    // Steps limited by maxPitchRate, maxHeadingRate and maxVelocity. The
    // three rules differ for large negative steps: pitch keeps the sign,
    // heading and velocity take the positive limit.
    void changePitch(float delta);
    void changeHeading(float delta);
    void changeVelocity(float delta);

    float getPitch() const;
    float getHeading() const;
    void setPitch(float degrees);
    void setHeading(float degrees);
    float getVelocity() const;
    Vector<float, 3> getPosition() const;
    void setPosition(Vector<float, 3> place);
    Vector<float, 3> getDirection() const;
    Vector<float, 3> getUp() const;
    Vector<float, 3> getRight() const;
    Matrix getMatrix() const;

    void reset();

    // Loads the camera into GL_MODELVIEW (rotation times translation), traces
    // the rotation matrix to standard output and moves the viewer by one
    // velocity step along its line of sight.
    void setGLMatrixes();
    void drawVectors() const;

    void gramSchmidt();
    void tiltLeft();
    void tiltRight();

private:
    float pitch;
    float heading;
    float maxPitchRate;
    float maxHeadingRate;
    float maxVelocity;
    float velocity;
    Vector<float, 3> direction;
    Vector<float, 3> up;
    Vector<float, 3> right;
    Quaternion pitchRotation;
    Quaternion headingRotation;
    Quaternion rotation;
    Vector<float, 3> position;
    Matrix matrix;
};

#endif
