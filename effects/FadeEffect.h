#ifndef KVL_FADEEFFECT_H
#define KVL_FADEEFFECT_H

#include "timeline/Effect.h"

class KVLTime;

// Covers the screen with one flat translucent colour that moves from a
// start colour to an end colour between two points of demo time. Stacked
// last, it fades to and from black or white. Everything it does is ordered
// by the timeline through the method "fade".
class FadeEffect : public Effect {
public:
    FadeEffect();
    ~FadeEffect() override;

    void draw(unsigned int ticks) override;
    void init() override;
    void reset() override;
    void modify(std::string method, ParameterGroup* parameters) override;
    Effect* getInstance() override;

    double getFadeProgress() const;
    const float* getColor() const;

private:
    double fadeProgress;
    double fadeProgress2;
    KVLTime* fadeStart;
    KVLTime* fadeEnd;
    float color[4];
    float fromColor[4];
    float toColor[4];
};

#endif
