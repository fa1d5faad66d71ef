#ifndef KVL_GLOWEFFECT_H
#define KVL_GLOWEFFECT_H

#include "timeline/Effect.h"

#include <string>

class FrameBufferObject;
class Shader;

// A soft halo around the bright parts of a picture. The picture is drawn into
// the render buffer by the scenes before this effect; the bright pass goes to
// the glow buffer, is blurred vertically into the scratch buffer and
// horizontally back into the glow buffer, and is added on top of the picture.
// Scenes that compose the picture themselves call genBuffers() and read the
// two buffers.
class GlowEffect : public Effect {
public:
    GlowEffect();
    ~GlowEffect() override;

    void draw(unsigned int ticks) override;
    void init() override;
    void reset() override;
    void modify(std::string method, ParameterGroup* parameters) override;
    Effect* getInstance() override;

    void setBuffers(FrameBufferObject* render, FrameBufferObject* scratch, FrameBufferObject* glow);
    FrameBufferObject* getRenderBuffer() const;
    FrameBufferObject* getGlowBuffer() const;
    // The three passes only; the depth test stays off afterwards.
    void genBuffers();
    std::string toString() const;

    bool hasBuffers() const;
    float getContrast() const;
    float getBrightness() const;
    float getGlowMagnitude() const;

private:
    void passes();

    bool buffersSet;
    Shader* blurShader;
    Shader* contrastBrightnessShader;
    float contrast;
    float brightness;
    float glowMagnitude;
    FrameBufferObject* renderBuffer;
    FrameBufferObject* scratchBuffer;
    FrameBufferObject* glowBuffer;
};

#endif
