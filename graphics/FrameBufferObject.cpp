#include "graphics/FrameBufferObject.h"

#include "script/KVLUtils.h"

FrameBufferObject::FrameBufferObject(int width, int height, bool depth, bool stencil)
    : depth(depth), stencil(stencil), width(width), height(height) {}

FrameBufferObject::~FrameBufferObject() {}

int FrameBufferObject::getWidth() const {
    return width;
}

int FrameBufferObject::getHeight() const {
    return height;
}

std::string FrameBufferObject::toString() const {
    std::string text = "FrameBufferObject(" + KVLUtils::int2string(width) + "," +
                       KVLUtils::int2string(height) + ",COLOR_BUFFER";
    if (depth) {
        text += ",DEPTH_BUFFER";
    }
    if (stencil) {
        text += ",STENCIL_BUFFER";
    }
    return text + ")";
}
