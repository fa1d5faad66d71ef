#include "support/GLState.h"

#include "graphics/FrameBufferObject.h"
#include "graphics/Texture.h"

#include <vector>

Viewport currentViewport() {
    Viewport values{};
    glGetIntegerv(GL_VIEWPORT, values.data());
    return values;
}

GLint currentFramebuffer() {
    GLint binding = -1;
    glGetIntegerv(GL_FRAMEBUFFER_BINDING_EXT, &binding);
    return binding;
}

Matrix16 matrix(GLenum which) {
    Matrix16 values{};
    glGetFloatv(which, values.data());
    return values;
}

std::array<uint8_t, 3> texel(const FrameBufferObject& target, int x, int y) {
    std::vector<unsigned char> pixels(target.getWidth() * target.getHeight() * 4);
    glBindTexture(GL_TEXTURE_2D, target.getColorBuffer()->getID());
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    glBindTexture(GL_TEXTURE_2D, 0);
    size_t at = (static_cast<size_t>(y) * target.getWidth() + x) * 4;
    return {pixels[at], pixels[at + 1], pixels[at + 2]};
}
