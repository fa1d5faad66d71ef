#include "graphics/Lightsource.h"

#include "objects/Material.h"

#include <GL/glew.h>

Lightsource::Lightsource() : pos(), material(new Material()) {
    pos[2] = 2.0f;
}

Lightsource::Lightsource(const Lightsource& other)
    : pos(other.pos), material(new Material(*other.material)) {}

Lightsource& Lightsource::operator=(const Lightsource& other) {
    pos = other.pos;
    *material = *other.material;
    return *this;
}

Lightsource::~Lightsource() {
    delete material;
}

void Lightsource::setPos(Vector<float, 3> position) {
    pos = position;
}

void Lightsource::setPos(float x, float y, float z) {
    pos[0] = x;
    pos[1] = y;
    pos[2] = z;
}

Vector<float, 3> Lightsource::getPos() const {
    return pos;
}

Material* Lightsource::getMaterial() const {
    return material;
}

void Lightsource::update() const {
    Vector<float, 4> ambient = material->getAmbient();
    Vector<float, 4> diffuse = material->getDiffuse();
    GLfloat position[4] = {pos[0], pos[1], pos[2], POSITION_W};
    glLightfv(GL_LIGHT0, GL_AMBIENT, ambient.data());
    glLightfv(GL_LIGHT0, GL_DIFFUSE, diffuse.data());
    glLightfv(GL_LIGHT0, GL_POSITION, position);
}

void Lightsource::enable() const {
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0);
}

void Lightsource::disable() const {
    glDisable(GL_LIGHTING);
    glDisable(GL_LIGHT0);
}
