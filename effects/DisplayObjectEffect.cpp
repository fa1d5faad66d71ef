#include "effects/DisplayObjectEffect.h"

#include "objects/DisplayList.h"
#include "objects/O3dScene.h"
#include "runtime/Data.h"
#include "runtime/DataObjectPool.h"
#include "runtime/KVLDemosys.h"
#include "runtime/KVLTime.h"
#include "script/ParameterGroup.h"

#include <GL/glew.h>

#include <cstring>
#include <iostream>

namespace {

// 2.7777777 as the 32-bit float with the bits 0x4031C71C: a speed of 1 is
// 360 degrees a second.
float stepDivisor() {
    const unsigned int bits = 0x4031C71Cu;
    float divisor;
    std::memcpy(&divisor, &bits, sizeof divisor);
    return divisor;
}

int shadingCode(const std::string& text) {
    if (text == "smooth") {
        return 1;
    }
    if (text == "smoothsphere") {
        return 2;
    }
    if (text == "wire") {
        return 4;
    }
    if (text == "flatsphere") {
        return 6;
    }
    if (text == "flat") {
        return 0;
    }
    if (text == "cartoon") {
        return 7;
    }
    return 4;
}

DataObjectPool* objectPool() {
    return static_cast<DataObjectPool*>(KVLDemosys::data->getData("objectPool"));
}

} // namespace

DisplayObjectEffect::DisplayObjectEffect()
    : rotationAngle{0, 0, 0}, position{0, 0, 0}, rotationSpeed{0, 0, 0}, rotationCenter{0, 0, 0},
      scene(nullptr), displayList(nullptr), shading(0), scale(1.0f), normalsForward(true),
      drawNormals(false), moveEndTicks(0), moveTo{0, 0, 0}, moveFrom{0, 0, 0}, moveProgress(1.0f) {
    std::cout << "DisplayObjectEffect()" << std::endl;
}

DisplayObjectEffect::~DisplayObjectEffect() {
    delete displayList;
}

Effect* DisplayObjectEffect::getInstance() {
    return new DisplayObjectEffect();
}

// Wipes what init read from the script as well; the scene, the display list
// and the start of a move stay.
void DisplayObjectEffect::reset() {
    for (int i = 0; i < 3; i++) {
        rotationAngle[i] = 0.0f;
        position[i] = 0.0f;
        rotationSpeed[i] = 0.0f;
        rotationCenter[i] = 0.0f;
        moveTo[i] = 0.0f;
    }
    shading = 0;
    scale = 1.0f;
    normalsForward = true;
    drawNormals = false;
    moveEndTicks = 0;
    moveProgress = 1.0f;
    lastCalled = 0;
}

void DisplayObjectEffect::init() {
    reset();
    floatsOf(parameters, {"xpos", "ypos", "zpos"}, position);
    floatsOf(parameters, {"xrot", "yrot", "zrot"}, rotationSpeed);
    floatsOf(parameters, {"rcx", "rcy", "rcz"}, rotationCenter);
    scene = KVLDemosys::objectPool->getObject(parameters->getParameter("object"));
    shading = shadingCode(parameters->getParameter("shading"));
    if (parameters->exist("scale")) {
        scale = floatOf(parameters, "scale");
        if (scene != nullptr) {
            scene->setScaleValue(scale);
        }
    }
    if (parameters->exist("normals")) {
        normalsForward = parameters->getParameter("normals") != "reverse";
        if (!normalsForward && scene != nullptr) {
            scene->invertNormals();
        }
    }
    if (parameters->exist("drawnormals")) {
        std::string text = parameters->getParameter("drawnormals");
        drawNormals = (text == "1" || text == "true");
    }
    // The shading code is part of the vocabulary only: the list is always
    // compiled in the same mode.
    delete displayList;
    displayList = (scene != nullptr) ? scene->createDisplayList(1) : nullptr;
}

void DisplayObjectEffect::modify(std::string method, ParameterGroup* group) {
    if (method == "setScaleValue") {
        scale = floatOf(group, "p2");
        if (scene != nullptr) {
            scene->setScaleValue(scale);
        }
    } else if (method == "drawNormals") {
        drawNormals = group->getParameter("p2") == "true";
    } else if (method == "setObject") {
        // The display list is not rebuilt: the old shape goes on being drawn
        // and only the overlay follows the new scene.
        std::string name = group->getParameter("p2");
        if (objectPool()->exists(name)) {
            scene = objectPool()->getObject(name);
        }
    } else if (method == "setRotation") {
        floatsOf(group, {"p2", "p3", "p4"}, rotationSpeed);
        std::cout << "setRotation(" << rotationSpeed[0] << "," << rotationSpeed[1] << ","
                  << rotationSpeed[2] << ")" << std::endl;
    } else if (method == "setPosition") {
        floatsOf(group, {"p2", "p3", "p4"}, position);
    } else if (method == "moveTo") {
        moveProgress = 0.0f;
        for (int i = 0; i < 3; i++) {
            moveFrom[i] = position[i];
        }
        moveEndTicks = KVLTime(group->getParameter("p2")).getTicks();
        floatsOf(group, {"p3", "p4", "p5"}, moveTo);
    }
}

void DisplayObjectEffect::interpolateLinear(float x0, float y0, float z0, float x1, float y1,
                                            float z1, float p) {
    if (p > 1.0f) {
        moveProgress = 1.0f;
        p = 1.0f;
    }
    position[0] = x0 + (x1 - x0) * p;
    position[1] = y0 + (y1 - y0) * p;
    position[2] = z0 + (z1 - z0) * p;
}

float DisplayObjectEffect::stepOf(unsigned int frameTicks) {
    float step = static_cast<float>(frameTicks) / stepDivisor();
    return (step > 5.0f) ? 5.0f : step;
}

void DisplayObjectEffect::draw(unsigned int ticks) {
    // A step is cut to 5 degrees: below 72 frames a second the object turns
    // slower than its speed says, on purpose.
    float step = stepOf(ticks - lastCalled);
    glClearColor(0, 0, 0, 0);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glEnable(GL_CULL_FACE);
    glCullFace(GL_BACK);

    // The position lags one frame behind the progress, so the last frame
    // lands exactly on the target.
    if (moveProgress != 1.0f) {
        if (moveProgress > 1.0f) {
            moveProgress = 1.0f;
        }
        for (int i = 0; i < 3; i++) {
            position[i] = moveFrom[i] + (moveTo[i] - moveFrom[i]) * moveProgress;
        }
        // Both spans count from the modify time in unsigned milliseconds, so
        // an end set before the order itself leaves the object near its start.
        unsigned int span = moveEndTicks - modifyTime;
        moveProgress = static_cast<float>(getModifyTime(ticks) / static_cast<double>(span));
    }

    glPushMatrix();
    glTranslatef(position[0], position[1], position[2]);
    glRotatef(rotationAngle[0], 1, 0, 0);
    glRotatef(rotationAngle[1], 0, 1, 0);
    glRotatef(rotationAngle[2], 0, 0, 1);

    glDisable(GL_LIGHTING);
    glColor3f(1, 1, 1);
    glBegin(GL_LINES);
    glVertex3f(-20, 0, 0);
    glVertex3f(20, 0, 0);
    glVertex3f(0, -20, 0);
    glVertex3f(0, 20, 0);
    glVertex3f(0, 0, 20);
    glVertex3f(0, 0, -20);
    glEnd();
    glEnable(GL_LIGHTING);

    if (displayList != nullptr) {
        displayList->draw();
    }
    if (drawNormals && scene != nullptr) {
        scene->drawNormals();
        scene->drawWire();
        scene->drawVertexNormals();
    }
    glPopMatrix();

    for (int i = 0; i < 3; i++) {
        rotationAngle[i] += rotationSpeed[i] * step;
    }
    // Only x wraps, and at 359: the other angles grow without bound.
    while (rotationAngle[0] >= 359.0f) {
        rotationAngle[0] -= 359.0f;
    }
}

const float* DisplayObjectEffect::getRotationAngle() const {
    return rotationAngle;
}

const float* DisplayObjectEffect::getPosition() const {
    return position;
}

const float* DisplayObjectEffect::getRotationSpeed() const {
    return rotationSpeed;
}

const float* DisplayObjectEffect::getRotationCenter() const {
    return rotationCenter;
}

float DisplayObjectEffect::getMoveProgress() const {
    return moveProgress;
}

bool DisplayObjectEffect::isDrawingNormals() const {
    return drawNormals;
}

bool DisplayObjectEffect::areNormalsForward() const {
    return normalsForward;
}

int DisplayObjectEffect::getShading() const {
    return shading;
}

float DisplayObjectEffect::getScale() const {
    return scale;
}

O3dScene* DisplayObjectEffect::getScene() const {
    return scene;
}

DisplayList* DisplayObjectEffect::getDisplayList() const {
    return displayList;
}
