#ifndef KVL_FRAMEBUFFEROBJECT_H
#define KVL_FRAMEBUFFEROBJECT_H

#include <stack>
#include <string>

class Texture;

// An off-screen render target: a framebuffer with a colour texture and, on
// request, a depth renderbuffer. Targets nest, so all of them share one stack
// of what is bound; the bottom of that stack is the screen. Every bind needs
// one release in strictly nested order, and a mistake in that order is
// reported, not obeyed.
class FrameBufferObject {
public:
    FrameBufferObject(int width, int height, bool depth, bool stencil);
    ~FrameBufferObject();
    FrameBufferObject(const FrameBufferObject&) = delete;
    FrameBufferObject& operator=(const FrameBufferObject&) = delete;

    void bind();
    void release();
    // Draws the colour texture over the whole viewport of whatever is bound.
    void draw();
    // The clears act on whatever framebuffer is bound: bind first.
    void clear();
    void clearRenderBuffer();
    void clearColorBuffer();
    // Stays owned by this target.
    Texture* getColorBuffer() const;
    void bindColorBuffer();
    bool isValid() const;
    int getWidth() const;
    int getHeight() const;
    int getId() const;
    void fboStatus();
    std::string toString() const;

private:
    // Bound targets, not owned. More than 16 is reported as an overflow.
    static std::stack<FrameBufferObject*> fboStack;

    Texture* colorBuffer;
    unsigned int renderBuffer;
    unsigned int id;
    bool depth;
    // Shows in toString only: no stencil attachment is ever made.
    bool stencil;
    // A switch for the developer: traces bind and release.
    bool trace;
    int width;
    int height;
    std::string statusMessage;
    bool valid;
};

#endif
