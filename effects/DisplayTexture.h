#ifndef KVL_DISPLAYTEXTURE_H
#define KVL_DISPLAYTEXTURE_H

#include "timeline/Effect.h"

class KVLTime;
class Texture;

// One texture on a flat quad in front of the viewer: a picture, a caption, a
// logo plate. It spins, fades in and out, glides between two points of demo
// time and swaps its texture. It saves the matrices, draws and restores them.
class DisplayTexture : public Effect {
public:
    DisplayTexture();
    ~DisplayTexture() override;
    DisplayTexture(const DisplayTexture&) = delete;
    DisplayTexture& operator=(const DisplayTexture&) = delete;

    void draw(unsigned int ticks) override;
    void init() override;
    void reset() override;
    void modify(std::string method, ParameterGroup* parameters) override;
    Effect* getInstance() override;

    float getAlpha() const;
    const float* getPosition() const;
    const float* getRotationAngle() const;
    const float* getRotationSpeed() const;
    const float* getScale() const;
    Texture* getTexture() const;
    bool isAlphaBlending() const;
    double getFadeUpProgress() const;
    double getFadeDownProgress() const;
    double getMoveProgress() const;

private:
    float rotationSpeed[3];
    float rotationAngle[3];
    float position[3];
    float scale[2];
    Texture* texture;
    bool alphaBlend;
    float alpha;
    double fadeUpProgress;
    double fadeDownProgress;
    KVLTime* fadeStart;
    KVLTime* fadeEnd;
    double moveProgress;
    KVLTime* moveStart;
    KVLTime* moveEnd;
    float moveFrom[3];
    float moveTo[3];
};

#endif
