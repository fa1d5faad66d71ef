#include "graphics/FrameBufferObject.h"

#include "graphics/ScreenQuad.h"
#include "graphics/Texture.h"
#include "runtime/KVLDemosys.h"
#include "script/KVLUtils.h"

#include <GL/glew.h>

#include <iostream>

namespace {

const size_t STACK_LIMIT = 16;

} // namespace

std::stack<FrameBufferObject*> FrameBufferObject::fboStack;

FrameBufferObject::FrameBufferObject(int width, int height, bool depth, bool stencil)
    : colorBuffer(nullptr), renderBuffer(0), id(0), depth(depth), stencil(stencil), trace(false),
      width(width), height(height), valid(false) {
    glGenFramebuffersEXT(1, &id);
    colorBuffer = new Texture(width, height);
    colorBuffer->setType(GL_TEXTURE_2D);
    if (depth) {
        glGenRenderbuffersEXT(1, &renderBuffer);
    }
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, id);
    glFramebufferTexture2DEXT(GL_FRAMEBUFFER_EXT, GL_COLOR_ATTACHMENT0_EXT, GL_TEXTURE_2D,
                              colorBuffer->getID(), 0);
    if (depth) {
        glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, renderBuffer);
        glRenderbufferStorageEXT(GL_RENDERBUFFER_EXT, GL_DEPTH_COMPONENT24, width, height);
        glFramebufferRenderbufferEXT(GL_FRAMEBUFFER_EXT, GL_DEPTH_ATTACHMENT_EXT,
                                     GL_RENDERBUFFER_EXT, renderBuffer);
    }
    fboStatus();
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, 0);
}

// Destroying a target that is still bound is the caller's error; the stack
// is not consulted.
FrameBufferObject::~FrameBufferObject() {
    delete colorBuffer;
    if (depth) {
        glDeleteRenderbuffersEXT(1, &renderBuffer);
    }
    glDeleteFramebuffersEXT(1, &id);
}

void FrameBufferObject::bind() {
    if (trace) {
        std::cout << "FBO Bind " << KVLUtils::int2string(static_cast<int>(fboStack.size())) << " - "
                  << KVLUtils::uint2string(id) << std::endl;
    }
    if (!valid) {
        return;
    }
    fboStack.push(this);
    // Reported, not undone: the bind goes on.
    if (fboStack.size() > STACK_LIMIT) {
        KVLDemosys::system_error = true;
        std::cout << "FBO: Overflow? " << fboStack.size() << " in stack" << std::endl;
    }
    if (trace) {
        std::cout << std::string(fboStack.size(), ' ') << "Binding : (" << id << ") " << toString()
                  << std::endl;
    }
    glViewport(0, 0, width, height);
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, id);
}

void FrameBufferObject::release() {
    if (fboStack.empty()) {
        KVLDemosys::system_error = true;
        std::cout << "FBO : *** STACK ERROR : Stack is already empty. Possible underflow ***"
                  << std::endl;
        return;
    }
    if (fboStack.top() != this) {
        std::cout << "FBO : *** STACK ERROR : " << fboStack.top()->toString() << " is not "
                  << toString() << " ***" << std::endl;
        return;
    }
    fboStack.pop();
    if (fboStack.empty()) {
        if (trace) {
            std::cout << "Stack is empty, ok!" << std::endl;
        }
        glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, 0);
        KVLDemosys::setView();
        return;
    }
    FrameBufferObject* outer = fboStack.top();
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, outer->id);
    glViewport(0, 0, outer->width, outer->height);
}

void FrameBufferObject::draw() {
    if (!valid) {
        return;
    }
    GLint mode = GL_MODELVIEW;
    glGetIntegerv(GL_MATRIX_MODE, &mode);
    ScreenQuad::pushIdentities();

    colorBuffer->bind();
    // These stay on the texture after the call.
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    ScreenQuad::draw();
    colorBuffer->release();

    ScreenQuad::popIdentities();
    glMatrixMode(static_cast<GLenum>(mode));
}

void FrameBufferObject::clear() {
    if (depth) {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    } else {
        glClear(GL_COLOR_BUFFER_BIT);
    }
}

void FrameBufferObject::clearRenderBuffer() {
    glClear(GL_DEPTH_BUFFER_BIT);
}

void FrameBufferObject::clearColorBuffer() {
    glClear(GL_COLOR_BUFFER_BIT);
}

Texture* FrameBufferObject::getColorBuffer() const {
    return colorBuffer;
}

void FrameBufferObject::bindColorBuffer() {
    if (valid) {
        colorBuffer->bind();
    }
}

bool FrameBufferObject::isValid() const {
    return valid;
}

int FrameBufferObject::getWidth() const {
    return width;
}

int FrameBufferObject::getHeight() const {
    return height;
}

int FrameBufferObject::getId() const {
    return static_cast<int>(id);
}

void FrameBufferObject::fboStatus() {
    GLenum status = glCheckFramebufferStatusEXT(GL_FRAMEBUFFER_EXT);
    valid = false;
    switch (status) {
    case GL_FRAMEBUFFER_COMPLETE_EXT:
        statusMessage = "Framebuffer is complete.";
        valid = true;
        break;
    case GL_FRAMEBUFFER_INCOMPLETE_ATTACHMENT_EXT:
        statusMessage = "Framebuffer incomplete attachment";
        break;
    case GL_FRAMEBUFFER_INCOMPLETE_MISSING_ATTACHMENT_EXT:
        statusMessage = "Framebuffer missing attachment";
        break;
    case GL_FRAMEBUFFER_INCOMPLETE_DIMENSIONS_EXT:
        statusMessage = "Framebuffer unsupported dimension.";
        break;
    case GL_FRAMEBUFFER_INCOMPLETE_FORMATS_EXT:
        statusMessage = "Framebuffer incoplete formats.";
        break;
    case GL_FRAMEBUFFER_INCOMPLETE_DRAW_BUFFER_EXT:
        statusMessage = "Framebuffer incomplete draw buffer.";
        break;
    case GL_FRAMEBUFFER_INCOMPLETE_READ_BUFFER_EXT:
        statusMessage = "Framebuffer incomplete read buffer";
        break;
    case GL_FRAMEBUFFER_UNSUPPORTED_EXT:
        statusMessage = "Framebuffer unsupported. Try another format.";
        break;
    default:
        statusMessage = "Unknown framebuffer errror.";
        break;
    }
    std::cout << "FBO " << statusMessage << "(" << status << ")"
              << " = " << (valid ? "true" : "false") << std::endl;
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
