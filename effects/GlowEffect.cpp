#include "effects/GlowEffect.h"

#include "graphics/FrameBufferObject.h"
#include "graphics/Shader.h"
#include "runtime/DataFBOPool.h"
#include "runtime/DataShaderPool.h"
#include "runtime/KVLDemosys.h"
#include "script/ParameterGroup.h"

#include <GL/glew.h>

namespace {

std::string describe(const FrameBufferObject* buffer) {
    return (buffer != nullptr) ? buffer->toString() : "null";
}

} // namespace

GlowEffect::GlowEffect()
    : buffersSet(false), blurShader(nullptr), contrastBrightnessShader(nullptr), contrast(0.5f),
      brightness(2.6f), glowMagnitude(1.0f), renderBuffer(nullptr), scratchBuffer(nullptr),
      glowBuffer(nullptr) {}

// Shaders and buffers belong to their pools.
GlowEffect::~GlowEffect() {}

Effect* GlowEffect::getInstance() {
    return new GlowEffect();
}

void GlowEffect::init() {
    reset();
    buffersSet = false;
    std::string blurKey = parameters->getParameter("blur_shader");
    std::string brightKey = parameters->getParameter("c_b_shader");
    blurShader = KVLDemosys::shaderPool->getShader(blurKey);
    contrastBrightnessShader = KVLDemosys::shaderPool->getShader(brightKey);
}

void GlowEffect::reset() {
    contrast = 0.5f;
    brightness = 2.6f;
    glowMagnitude = 1.0f;
}

void GlowEffect::modify(std::string method, ParameterGroup* group) {
    if (method == "setBuffers") {
        buffersSet = true;
        FrameBufferObject** targets[3] = {&renderBuffer, &scratchBuffer, &glowBuffer};
        const char* keys[3] = {"p2", "p3", "p4"};
        for (int i = 0; i < 3; i++) {
            std::string key = group->getParameter(keys[i]);
            if (!KVLDemosys::fboPool->exists(key)) {
                // The buffers fetched so far stay.
                buffersSet = false;
                return;
            }
            *targets[i] = KVLDemosys::fboPool->getFBO(key);
        }
    } else if (method == "setRenderTarget") {
        setRenderTarget(KVLDemosys::fboPool->getFBO(group->getParameter("p2")));
    } else if (method == "setContrast") {
        contrast = floatOf(group, "p2");
    } else if (method == "setBrightness") {
        brightness = floatOf(group, "p2");
    } else if (method == "setGlowMagnitude") {
        glowMagnitude = floatOf(group, "p2");
    }
}

void GlowEffect::setBuffers(FrameBufferObject* render, FrameBufferObject* scratch,
                            FrameBufferObject* glow) {
    renderBuffer = render;
    scratchBuffer = scratch;
    glowBuffer = glow;
    buffersSet = true;
}

FrameBufferObject* GlowEffect::getRenderBuffer() const {
    return renderBuffer;
}

FrameBufferObject* GlowEffect::getGlowBuffer() const {
    return glowBuffer;
}

// Bright pass into the glow buffer, then a blur of one direction a pass:
// vertically into the scratch buffer, horizontally back into the glow buffer.
// Both steps are one texel of the render buffer's width, whatever its height.
void GlowEffect::passes() {
    glDisable(GL_DEPTH_TEST);
    glBindTexture(GL_TEXTURE_2D, 0);
    glEnable(GL_TEXTURE_2D);
    glDisable(GL_BLEND);
    glDisable(GL_ALPHA_TEST);

    glowBuffer->bind();
    glowBuffer->clear();
    contrastBrightnessShader->use();
    contrastBrightnessShader->setTextureUnit0("Texture0", renderBuffer->getColorBuffer());
    contrastBrightnessShader->setUniform1f("brightness", brightness);
    contrastBrightnessShader->setUniform1f("contrast", contrast);
    renderBuffer->draw();
    glowBuffer->release();

    float step = glowMagnitude / static_cast<float>(renderBuffer->getWidth());

    scratchBuffer->bind();
    scratchBuffer->clear();
    blurShader->use();
    blurShader->setTextureUnit0("Texture0", glowBuffer->getColorBuffer());
    blurShader->setUniform4f("blurstep", 0.0f, step, 0.0f, 0.0f);
    glowBuffer->draw();
    blurShader->release();
    scratchBuffer->release();

    glowBuffer->bind();
    glowBuffer->clear();
    blurShader->use();
    blurShader->setTextureUnit0("Texture0", scratchBuffer->getColorBuffer());
    blurShader->setUniform4f("blurstep", step, 0.0f, 0.0f, 0.0f);
    scratchBuffer->draw();
    blurShader->release();
    glowBuffer->release();
}

void GlowEffect::genBuffers() {
    if (!buffersSet) {
        return;
    }
    passes();
}

void GlowEffect::draw(unsigned int) {
    if (!buffersSet) {
        return;
    }
    passes();

    renderBuffer->draw();
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE);
    glowBuffer->draw();
    glDisable(GL_BLEND);
    glEnable(GL_DEPTH_TEST);

    // Next frame's scenes start from an empty picture.
    renderBuffer->bind();
    renderBuffer->clear();
    renderBuffer->release();
}

std::string GlowEffect::toString() const {
    return "GlowEffect {\n" + describe(renderBuffer) + ", " + describe(scratchBuffer) + "," +
           describe(glowBuffer) + " }\n";
}

bool GlowEffect::hasBuffers() const {
    return buffersSet;
}

float GlowEffect::getContrast() const {
    return contrast;
}

float GlowEffect::getBrightness() const {
    return brightness;
}

float GlowEffect::getGlowMagnitude() const {
    return glowMagnitude;
}
