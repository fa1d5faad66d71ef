#include "effects/DisplayTexture.h"

#include "graphics/FrameBufferObject.h"
#include "graphics/Texture.h"
#include "runtime/Data.h"
#include "runtime/DataFBOPool.h"
#include "runtime/DataTexturePool.h"
#include "runtime/KVLDemosys.h"
#include "runtime/KVLTime.h"
#include "script/ParameterGroup.h"

#include <GL/glew.h>

DisplayTexture::DisplayTexture()
    : rotationSpeed{0, 0, 0}, rotationAngle{0, 0, 0}, position{0, 0, 0}, scale{1, 1},
      texture(nullptr), alphaBlend(false), alpha(1.0f), fadeUpProgress(1.0), fadeDownProgress(1.0),
      fadeStart(new KVLTime()), fadeEnd(new KVLTime()), moveProgress(1.0), moveStart(new KVLTime()),
      moveEnd(new KVLTime()), moveFrom{0, 0, 0}, moveTo{0, 0, 0} {}

DisplayTexture::~DisplayTexture() {
    delete fadeStart;
    delete fadeEnd;
    delete moveStart;
    delete moveEnd;
}

Effect* DisplayTexture::getInstance() {
    return new DisplayTexture();
}

void DisplayTexture::reset() {
    fadeUpProgress = 1.0;
    fadeDownProgress = 1.0;
    moveProgress = 1.0;
    for (float& angle : rotationAngle) {
        angle = 0.0f;
    }
}

void DisplayTexture::init() {
    reset();
    floatsOf(parameters, {"xpos", "ypos", "zpos"}, position);
    floatsOf(parameters, {"xrot", "yrot", "zrot"}, rotationSpeed);
    texture = KVLDemosys::texturePool->getTexture(parameters->getParameter("texture"));
    floatsOf(parameters, {"xscale", "yscale"}, scale);
    std::string blend = parameters->getParameter("alphablend");
    alphaBlend = (blend == "1" || blend == "true");
    alpha = 1.0f;
}

void DisplayTexture::modify(std::string method, ParameterGroup* group) {
    if (method == "setRenderTarget") {
        DataFBOPool* targets = static_cast<DataFBOPool*>(KVLDemosys::data->getData("fboPool"));
        std::string name = group->getParameter("p2");
        setRenderTarget(targets->exists(name) ? targets->getFBO(name) : nullptr);
    } else if (method == "fadeUp") {
        fadeUpProgress = 0.0;
        fadeDownProgress = 1.0;
        alpha = 0.0f;
        fadeStart->setTimeAsString(group->getParameter("p1"));
        fadeEnd->setTimeAsString(group->getParameter("p2"));
    } else if (method == "fadeDown") {
        alpha = 1.0f;
        fadeUpProgress = 1.0;
        fadeDownProgress = 0.0;
        fadeStart->setTimeAsString(group->getParameter("p1"));
        fadeEnd->setTimeAsString(group->getParameter("p2"));
    } else if (method == "moveTo") {
        moveProgress = 0.0;
        for (int i = 0; i < 3; i++) {
            moveFrom[i] = position[i];
        }
        moveStart->setTimeAsString(group->getParameter("p1"));
        moveEnd->setTimeAsString(group->getParameter("p2"));
        floatsOf(group, {"p3", "p4", "p5"}, moveTo);
    } else if (method == "setScaleValue") {
        floatsOf(group, {"p2", "p3"}, scale);
    } else if (method == "setTexture") {
        DataTexturePool* textures =
            static_cast<DataTexturePool*>(KVLDemosys::data->getData("texturePool"));
        texture = textures->getTexture(group->getParameter("p2"));
    } else if (method == "setRotation") {
        floatsOf(group, {"p2", "p3", "p4"}, rotationSpeed);
    } else if (method == "setPosition") {
        floatsOf(group, {"p2", "p3", "p4"}, position);
    } else if (method == "setTransparency") {
        alpha = floatOf(group, "p2");
    }
}

void DisplayTexture::draw(unsigned int ticks) {
    double frameTime = getFrameTime(ticks);
    if (fadeUpProgress != 1.0) {
        fadeUpProgress = progressAt(ticks, *fadeStart, *fadeEnd);
        alpha = static_cast<float>(fadeUpProgress);
    }
    if (fadeDownProgress != 1.0) {
        fadeDownProgress = progressAt(ticks, *fadeStart, *fadeEnd);
        alpha = static_cast<float>(1.0 - fadeDownProgress);
    }
    if (moveProgress != 1.0) {
        moveProgress = progressAt(ticks, *moveStart, *moveEnd);
        float p = static_cast<float>(moveProgress);
        for (int i = 0; i < 3; i++) {
            position[i] = moveFrom[i] * (1.0f - p) + moveTo[i] * p;
        }
    }

    // The projection in force stays, so "zpos" decides how large the quad
    // looks; the camera has no say.
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();

    glDisable(GL_DEPTH_TEST);
    glDisable(GL_BLEND);
    glDisable(GL_CULL_FACE);
    glDisable(GL_ALPHA_TEST);
    glDisable(GL_LIGHTING);
    if (alphaBlend) {
        glEnable(GL_BLEND);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
        glEnable(GL_ALPHA_TEST);
        glAlphaFunc(GL_GREATER, 0);
    }

    // A texture name the pool does not know draws the quad untextured.
    if (texture != nullptr) {
        texture->bind();
    }
    glPushMatrix();
    glTranslatef(position[0], position[1], position[2]);
    glRotatef(rotationAngle[0], 1, 0, 0);
    glRotatef(rotationAngle[1], 0, 1, 0);
    glRotatef(rotationAngle[2], 0, 0, 1);
    glEnable(GL_COLOR_MATERIAL);
    glColorMaterial(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE);
    glColor4f(1, 1, 1, alpha);
    glBegin(GL_QUADS);
    glTexCoord2f(0, 0);
    glVertex2f(-scale[0], -scale[1]);
    glTexCoord2f(1, 0);
    glVertex2f(scale[0], -scale[1]);
    glTexCoord2f(1, 1);
    glVertex2f(scale[0], scale[1]);
    glTexCoord2f(0, 1);
    glVertex2f(-scale[0], scale[1]);
    glEnd();
    glPopMatrix();

    // The angle changes after drawing, so the first frame shows the start.
    float steps = static_cast<float>(frameTime / 20.0);
    for (int i = 0; i < 3; i++) {
        rotationAngle[i] += rotationSpeed[i] * steps;
    }

    glDisable(GL_BLEND);
    glDisable(GL_ALPHA_TEST);
    if (texture != nullptr) {
        texture->release();
    }
    glDisable(GL_COLOR_MATERIAL);
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
}

float DisplayTexture::getAlpha() const {
    return alpha;
}

const float* DisplayTexture::getPosition() const {
    return position;
}

const float* DisplayTexture::getRotationAngle() const {
    return rotationAngle;
}

const float* DisplayTexture::getRotationSpeed() const {
    return rotationSpeed;
}

const float* DisplayTexture::getScale() const {
    return scale;
}

Texture* DisplayTexture::getTexture() const {
    return texture;
}

bool DisplayTexture::isAlphaBlending() const {
    return alphaBlend;
}

double DisplayTexture::getFadeUpProgress() const {
    return fadeUpProgress;
}

double DisplayTexture::getFadeDownProgress() const {
    return fadeDownProgress;
}

double DisplayTexture::getMoveProgress() const {
    return moveProgress;
}
