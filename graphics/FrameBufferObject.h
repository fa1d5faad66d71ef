#ifndef KVL_FRAMEBUFFEROBJECT_H
#define KVL_FRAMEBUFFEROBJECT_H

#include <string>

class FrameBufferObject {
public:
    FrameBufferObject(int width, int height, bool depth, bool stencil);
    ~FrameBufferObject();

    int getWidth() const;
    int getHeight() const;
    std::string toString() const;

private:
    bool depth;
    bool stencil;
    int width;
    int height;
};

#endif
