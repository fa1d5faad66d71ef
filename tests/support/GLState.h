#ifndef KVL_GLSTATE_H
#define KVL_GLSTATE_H

#include <GL/glew.h>

#include <array>

// Parts of the GL state read back, for tests of what the player leaves set.

using Viewport = std::array<GLint, 4>;
using Matrix16 = std::array<GLfloat, 16>;

Viewport currentViewport();
// The framebuffer object bound for drawing, 0 for the window.
GLint currentFramebuffer();
// GL_PROJECTION_MATRIX, GL_MODELVIEW_MATRIX or another matrix, column by
// column.
Matrix16 matrix(GLenum which);

#endif
