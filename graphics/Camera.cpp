#include "graphics/Camera.h"

#include <GL/glew.h>

#include <cmath>

namespace {

const double PI = 3.141592653589793;

} // namespace

Camera::Camera()
    : pitch(0.0f), heading(0.0f), maxPitchRate(5.0f), maxHeadingRate(5.0f), maxVelocity(100.0f),
      velocity(0.0f), direction(), up(vec3(0.0f, 1.0f, 0.0f)), right(vec3(1.0f, 0.0f, 0.0f)),
      pitchRotation(), headingRotation(), rotation(), position(), matrix() {}

void Camera::changePitch(float delta) {
    if (std::fabs(maxPitchRate) > std::fabs(delta)) {
        pitch += delta;
    } else if (delta < 0.0f) {
        pitch -= maxPitchRate;
    } else {
        pitch += maxPitchRate;
    }
}

void Camera::changeHeading(float delta) {
    if (std::fabs(delta) > std::fabs(maxHeadingRate)) {
        heading += maxHeadingRate;
    } else {
        heading += delta;
    }
}

void Camera::changeVelocity(float delta) {
    if (std::fabs(maxVelocity) > std::fabs(delta)) {
        velocity += delta;
    } else {
        velocity += maxVelocity;
    }
}

float Camera::getPitch() const {
    return pitch;
}

float Camera::getHeading() const {
    return heading;
}

void Camera::setPitch(float degrees) {
    pitch = degrees;
}

void Camera::setHeading(float degrees) {
    heading = degrees;
}

float Camera::getVelocity() const {
    return velocity;
}

Vector<float, 3> Camera::getPosition() const {
    return position;
}

void Camera::setPosition(Vector<float, 3> place) {
    position = place;
}

Vector<float, 3> Camera::getDirection() const {
    return direction;
}

Vector<float, 3> Camera::getUp() const {
    return up;
}

Vector<float, 3> Camera::getRight() const {
    return right;
}

Matrix Camera::getMatrix() const {
    return matrix;
}

void Camera::reset() {
    pitch = 0.0f;
    heading = 0.0f;
    velocity = 0.0f;
    position = Vector<float, 3>();
}

void Camera::setGLMatrixes() {
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();

    float a = static_cast<float>(pitch / 180 * PI);
    double halfA = static_cast<double>(a) * 0.5;
    pitchRotation = Quaternion(static_cast<float>(std::cos(halfA)),
                               static_cast<float>(std::sin(halfA)), 0.0f, 0.0f);

    float b = static_cast<float>(heading / 180 * PI);
    double halfB = static_cast<double>(b) * 0.5;
    headingRotation = Quaternion(static_cast<float>(std::cos(halfB)), 0.0f,
                                 static_cast<float>(std::sin(halfB)), 0.0f);

    Quaternion q = pitchRotation * headingRotation;
    matrix = q.getMatrix();
    glMultMatrixf(matrix.data());
    matrix.print();

    direction = vec3(matrix[8], matrix[9], -matrix[10]);
    direction.normalize();
    position = position + direction * velocity;
    glTranslatef(-position[0], -position[1], -position[2]);
}

void Camera::drawVectors() const {
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    glTranslatef(0.0f, 0.0f, -1.0f);
    glDisable(GL_LIGHTING);
    glEnable(GL_COLOR_MATERIAL);

    glBegin(GL_LINES);
    glColor4f(1.0f, 1.0f, 1.0f, 1.0f);
    glVertex3f(0.0f, 0.0f, 0.0f);
    glVertex3fv(direction.data());
    glEnd();

    glBegin(GL_LINES);
    glColor4f(1.0f, 0.0f, 0.0f, 1.0f);
    glVertex3f(0.0f, 0.0f, 0.0f);
    glVertex3fv(up.data());
    glEnd();

    glBegin(GL_LINES);
    glColor4f(0.0f, 0.0f, 1.0f, 1.0f);
    glVertex3f(0.0f, 0.0f, 0.0f);
    glVertex3fv(right.data());
    glEnd();

    glDisable(GL_COLOR_MATERIAL);
    glPopMatrix();
}

// Kept for a camera that rolls; nothing calls them.
void Camera::gramSchmidt() {}

void Camera::tiltLeft() {}

void Camera::tiltRight() {}
