#include "animation/Keyframe.h"

#include <iostream>

Keyframe::Keyframe() : heading(0.0f), pitch(0.0f) {}

Keyframe::Keyframe(Vector<float, 3> position, float pitch, float heading)
    : position(position), heading(heading), pitch(pitch) {}

Vector<float, 3> Keyframe::getPosition() const {
    return position;
}

void Keyframe::setPosition(Vector<float, 3> value) {
    position = value;
}

float Keyframe::getPitch() const {
    return pitch;
}

void Keyframe::setPitch(float value) {
    pitch = value;
}

float Keyframe::getHeading() const {
    return heading;
}

void Keyframe::setHeading(float value) {
    heading = value;
}

void Keyframe::print() const {
    std::cout << "pos " << position[0] << " " << position[1] << " " << position[2] << std::endl;
    std::cout << "rot " << pitch << " " << heading << std::endl;
}
