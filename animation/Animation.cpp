#include "animation/Animation.h"

#include "animation/AnimationCameraController.h"
#include "animation/AnimationObjectController.h"
#include "animation/Keyframe.h"

#include <GL/glew.h>

#include <climits>
#include <cmath>
#include <iostream>

namespace {

// floor(x) as an int. Times far outside the path, and the NaN of an empty
// time span, come out below 0 or at the int limit, so that they count as out
// of range instead of overflowing the conversion.
int floorIndex(double x) {
    double whole = std::floor(x);
    if (std::isnan(whole) || whole < static_cast<double>(INT_MIN)) {
        return INT_MIN;
    }
    if (whole > static_cast<double>(INT_MAX)) {
        return INT_MAX;
    }
    return static_cast<int>(whole);
}

// The fraction runs above 0 and up to and including 1: at a whole x the
// subtraction stops at 1.0, one keyframe ahead of the index. That one-sample
// jump at each keyframe time is how paths have always played.
double fraction(double x) {
    double f = x;
    while (f > 1.0) {
        f -= 1.0;
    }
    return f;
}

void vertex(const Vector<float, 3>& v) {
    glVertex3f(v[0], v[1], v[2]);
}

} // namespace

Animation::Animation() : pitch(0.0f), heading(0.0f), interpolationType(LINEAR) {}

Animation::~Animation() {
    for (Keyframe* keyframe : keyframes) {
        delete keyframe;
    }
}

void Animation::addKeyframe(Keyframe* keyframe) {
    keyframes.push_back(keyframe);
}

int Animation::countKeyFrames() const {
    return static_cast<int>(keyframes.size());
}

Keyframe* Animation::getKeyFrame(int index) const {
    if (index < 0 || index >= countKeyFrames()) {
        return nullptr;
    }
    return keyframes[index];
}

void Animation::setInterpolationType(int type) {
    interpolationType = type;
}

int Animation::getInterpolationType() const {
    return interpolationType;
}

void Animation::next(double t) {
    if (interpolationType == LINEAR) {
        nextLinear(t);
    } else if (interpolationType == CATMULL_ROM) {
        nextCatmull(t);
    }
}

void Animation::nextLinear(double t) {
    int segments = countKeyFrames() - 1;
    double x = t * segments;
    int i = floorIndex(x);
    if (i >= segments || i < 0) {
        std::cout << "OUT OF RANGE " << i << std::endl;
        return;
    }
    interpolateLinear(keyframes[i], keyframes[i + 1], static_cast<float>(fraction(x)));
}

void Animation::nextCatmull(double t) {
    int n = countKeyFrames();
    int segments = n - 3;
    double x = segments * t;
    int i = floorIndex(x);
    if (i >= segments || i < 0) {
        std::cout << "OUT OF RANGE [" << n - 4 << "] -> " << i << std::endl;
        return;
    }
    interpolateCatmull(keyframes[i], keyframes[i + 1], keyframes[i + 2], keyframes[i + 3],
                       static_cast<float>(fraction(x)));
}

void Animation::interpolateLinear(Keyframe* k0, Keyframe* k1, float t) {
    if (k0 == nullptr || k1 == nullptr) {
        return;
    }
    float p0 = k0->getPitch();
    float p1 = k1->getPitch();
    float h0 = k0->getHeading();
    float h1 = k1->getHeading();
    // Angles go the direct way by their numbers: no wrap at 360.
    pitch = p0 + (p1 - p0) * t;
    heading = h0 + (h1 - h0) * t;
    Vector<float, 3> a = k0->getPosition();
    Vector<float, 3> b = k1->getPosition();
    for (int e = 0; e < 3; e++) {
        position[e] = a[e] * (1.0f - t) + b[e] * t;
    }
}

void Animation::interpolateCatmull(Keyframe* k0, Keyframe* k1, Keyframe* k2, Keyframe* k3,
                                   float t) {
    if (k0 == nullptr || k1 == nullptr || k2 == nullptr || k3 == nullptr) {
        return;
    }
    double td = t;
    float c0 = static_cast<float>(-td * td * td + 2.0 * td * td - td);
    float c1 = static_cast<float>(3.0 * td * td * td - 5.0 * td * td + 2.0);
    float c2 = static_cast<float>(-3.0 * td * td * td + 4.0 * td * td + td);
    float c3 = static_cast<float>(td * td * td - td * td);
    auto spline = [&](float a, float b, float c, float d) {
        return 0.5f * (c0 * a + c1 * b + c2 * c + c3 * d);
    };
    Vector<float, 3> p0 = k0->getPosition();
    Vector<float, 3> p1 = k1->getPosition();
    Vector<float, 3> p2 = k2->getPosition();
    Vector<float, 3> p3 = k3->getPosition();
    for (int e = 0; e < 3; e++) {
        position[e] = spline(p0[e], p1[e], p2[e], p3[e]);
    }
    pitch = spline(k0->getPitch(), k1->getPitch(), k2->getPitch(), k3->getPitch());
    heading = spline(k0->getHeading(), k1->getHeading(), k2->getHeading(), k3->getHeading());
}

Vector<float, 3> Animation::getPosition() const {
    return position;
}

float Animation::getPitch() const {
    return pitch;
}

float Animation::getHeading() const {
    return heading;
}

AnimationCameraController* Animation::getCameraController() {
    return new AnimationCameraController(this);
}

AnimationObjectController* Animation::getObjectController() {
    AnimationObjectController* controller = new AnimationObjectController();
    controller->setAnimation(this);
    return controller;
}

void Animation::draw() const {
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glDisable(GL_LIGHTING);
    glLineWidth(2.0f);
    glBegin(GL_LINES);
    for (int i = 0; i + 1 < countKeyFrames(); i++) {
        vertex(keyframes[i]->getPosition());
        vertex(keyframes[i + 1]->getPosition());
    }
    glEnd();
    glEnable(GL_LIGHTING);
    glLineWidth(1.0f);
    glPopMatrix();
}

void Animation::drawCatmul() {
    int n = countKeyFrames();
    if (n < 5) {
        return;
    }
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glDisable(GL_LIGHTING);
    glLineWidth(2.0f);
    glBegin(GL_LINES);
    // The first line runs from keyframe 0 to keyframe 1, which the path
    // itself never flies.
    Vector<float, 3> previous = keyframes[0]->getPosition();
    for (int i = 0; i < n - 3; i++) {
        for (int s = 0; s < 10; s++) {
            interpolateCatmull(keyframes[i], keyframes[i + 1], keyframes[i + 2], keyframes[i + 3],
                               static_cast<float>(s * 0.1));
            vertex(previous);
            vertex(position);
            previous = position;
        }
    }
    glEnd();
    glEnable(GL_LIGHTING);
    glLineWidth(1.0f);
    glPopMatrix();
}

std::string Animation::toString() const {
    return "Animation { keyframes = " + std::to_string(countKeyFrames()) + " }\n";
}

void Animation::print() const {
    std::cout << "KVLANI1" << std::endl;
    std::cout << "keyframes " << countKeyFrames() << std::endl;
    for (const Keyframe* keyframe : keyframes) {
        keyframe->print();
    }
}
