#include "effects/Particle.h"

#include <GL/glew.h>

Particle::Particle()
    : acceleration(0.0f), size(0.0f), lifespan(-1.0f), energy(1.0f), angle(0.0f), spin(0.0f) {
    color[0] = 1.0f;
    color[1] = 1.0f;
    color[2] = 1.0f;
    color[3] = 0.0f;
}

void Particle::setPosition(float x, float y, float z) {
    position[0] = x;
    position[1] = y;
    position[2] = z;
}

void Particle::setDirection(float x, float y, float z) {
    direction[0] = x;
    direction[1] = y;
    direction[2] = z;
}

void Particle::setGravity(float x, float y, float z) {
    gravity[0] = x;
    gravity[1] = y;
    gravity[2] = z;
}

void Particle::setAcceleration(float value) {
    acceleration = value;
}

void Particle::setColor(float r, float g, float b) {
    color[0] = r;
    color[1] = g;
    color[2] = b;
}

void Particle::setColor(float r, float g, float b, float a) {
    setColor(r, g, b);
    color[3] = a;
}

void Particle::setSize(float value) {
    size = value;
}

void Particle::setLifespan(float value) {
    lifespan = value;
}

void Particle::setEnergy(float value) {
    energy = value;
}

void Particle::setRotation(float degreesPerSecond) {
    spin = degreesPerSecond;
    angle = 0.0f;
}

Vector<float, 3> Particle::getPosition() const {
    return position;
}

Vector<float, 3> Particle::getDirection() const {
    return direction;
}

Vector<float, 3> Particle::getGravity() const {
    return gravity;
}

float Particle::getAcceleration() const {
    return acceleration;
}

Vector<float, 4> Particle::getColor() const {
    return color;
}

float Particle::getSize() const {
    return size;
}

float Particle::getLifespan() const {
    return lifespan;
}

float Particle::getEnergy() const {
    return energy;
}

float Particle::getAngle() const {
    return angle;
}

float Particle::getSpin() const {
    return spin;
}

bool Particle::isDead() const {
    return lifespan == 0.0f;
}

void Particle::kill() {
    lifespan = 0.0f;
}

bool Particle::step(float dt) {
    if (lifespan == 0.0f) {
        return false;
    }
    position = position + direction * dt;
    angle += spin * dt;
    if (angle > 360.0f) {
        angle -= 360.0f;
    }
    if (angle < 0.0f) {
        angle += 360.0f;
    }
    energy -= dt;
    if (energy < 0.0f) {
        energy = 0.0f;
    }
    // A sprite that dies in this step is still drawn once, with alpha 0.
    if (lifespan != -1.0f) {
        lifespan -= dt;
        if (lifespan < 0.0f) {
            lifespan = 0.0f;
        }
    }
    return true;
}

void Particle::beginQuad() {
    glPushMatrix();
    if (lifespan == -1.0f) {
        glColor4fv(color.data());
    } else {
        glColor4f(color[0], color[1], color[2], lifespan);
    }
    glTranslatef(position[0], position[1], position[2]);
    glRotatef(angle, 0.0f, 0.0f, 1.0f);
}

void Particle::drawQuad() {
    glBegin(GL_QUADS);
    glTexCoord2f(0.0f, 1.0f);
    glVertex3f(-size, -size, 0.0f);
    glTexCoord2f(1.0f, 1.0f);
    glVertex3f(size, -size, 0.0f);
    glTexCoord2f(1.0f, 0.0f);
    glVertex3f(size, size, 0.0f);
    glTexCoord2f(0.0f, 0.0f);
    glVertex3f(-size, size, 0.0f);
    glEnd();
    glPopMatrix();
}

void Particle::draw(float dt) {
    if (!step(dt)) {
        return;
    }
    beginQuad();
    drawQuad();
}

void Particle::draw(float dt, float frameAngle, Vector<int, 3> axis) {
    if (!step(dt)) {
        return;
    }
    beginQuad();
    glRotatef(-frameAngle, static_cast<float>(axis[0]), static_cast<float>(axis[1]),
              static_cast<float>(axis[2]));
    drawQuad();
}
