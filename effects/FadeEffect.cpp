#include "effects/FadeEffect.h"

#include "graphics/ScreenQuad.h"
#include "runtime/KVLTime.h"
#include "script/ParameterGroup.h"

#include <GL/glew.h>

#include <iostream>

FadeEffect::FadeEffect()
    : fadeProgress(1.0), fadeProgress2(1.0), fadeStart(new KVLTime()),
      fadeEnd(new KVLTime()), color{0, 0, 0, 0}, fromColor{0, 0, 0, 0}, toColor{0, 0, 0, 0} {
    std::cout << "DisplayTexture" << std::endl;
}

FadeEffect::~FadeEffect() {
    delete fadeStart;
    delete fadeEnd;
}

Effect* FadeEffect::getInstance() {
    return new FadeEffect();
}

void FadeEffect::init() {
    reset();
}

// The colours stay: a reset effect keeps showing its last colour.
void FadeEffect::reset() {
    fadeProgress = 1.0;
    fadeProgress2 = 1.0;
}

void FadeEffect::modify(std::string method, ParameterGroup* group) {
    if (method != "fade") {
        return;
    }
    fadeProgress = 0.0;
    fadeStart->setTimeAsString(group->getParameter("p1"));
    fadeEnd->setTimeAsString(group->getParameter("p2"));
    floatsOf(group, {"p3", "p4", "p5", "p6"}, fromColor);
    floatsOf(group, {"p7", "p8", "p9", "p10"}, toColor);
    std::cout << "fade from [" << fromColor[0] << "," << fromColor[1] << "," << fromColor[2] << ","
              << fromColor[3] << "] -> [" << toColor[0] << "," << toColor[1] << "," << toColor[2]
              << "," << toColor[3] << "]" << std::endl;
}

// Only the absolute clock counts.
void FadeEffect::draw(unsigned int ticks) {
    if (fadeProgress != 1.0) {
        fadeProgress = progressAt(ticks, *fadeStart, *fadeEnd);
        float p = static_cast<float>(fadeProgress);
        for (int i = 0; i < 4; i++) {
            color[i] = fromColor[i] * (1.0f - p) + toColor[i] * p;
        }
    }
    ScreenQuad::pushIdentities();

    glDisable(GL_LIGHTING);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_ALPHA_TEST);
    glDisable(GL_TEXTURE_2D);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glEnable(GL_COLOR_MATERIAL);

    glPushMatrix();
    glColor4fv(color);
    glBegin(GL_QUADS);
    glTexCoord2f(0, 0);
    glVertex2f(-2, -2);
    glTexCoord2f(1, 0);
    glVertex2f(2, -2);
    glTexCoord2f(1, 1);
    glVertex2f(2, 2);
    glTexCoord2f(0, 1);
    glVertex2f(-2, 2);
    glEnd();
    glPopMatrix();

    glDisable(GL_BLEND);
    glDisable(GL_ALPHA_TEST);
    glDisable(GL_COLOR_MATERIAL);
    ScreenQuad::popIdentities();
}

double FadeEffect::getFadeProgress() const {
    return fadeProgress;
}

const float* FadeEffect::getColor() const {
    return color;
}
