#include "support/GLState.h"

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
