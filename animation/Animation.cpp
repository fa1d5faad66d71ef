#include "animation/Animation.h"

Animation::Animation() {}

Animation::~Animation() {}

std::string Animation::toString() const {
    return "Animation { keyframes = 0 }\n";
}
