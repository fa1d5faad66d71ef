#ifndef KVL_GLSTATE_H
#define KVL_GLSTATE_H

#include <GL/glew.h>

#include <array>
#include <cstdint>

class FrameBufferObject;

// Parts of the GL state read back, for tests of what the player leaves set.

using Viewport = std::array<GLint, 4>;
using Matrix16 = std::array<GLfloat, 16>;

Viewport currentViewport();
// The framebuffer object bound for drawing, 0 for the window.
GLint currentFramebuffer();
// GL_PROJECTION_MATRIX, GL_MODELVIEW_MATRIX or another matrix, column by
// column.
Matrix16 matrix(GLenum which);
// The red, green and blue of one texel of a render target's colour texture,
// read from the texture itself; (0, 0) is the lower left corner.
std::array<uint8_t, 3> texel(const FrameBufferObject& target, int x, int y);

#endif
