#include "objects/DisplayList.h"

#include <GL/glew.h>

// The mode of an empty list is never read; 0 is as good as any.
DisplayList::DisplayList() : id(0), scene(nullptr), mode(0) {}

DisplayList::DisplayList(O3dScene* scene, unsigned int id, int mode)
    : id(id), scene(scene), mode(mode) {}

DisplayList::~DisplayList() {
    // GL never names a list 0, so an empty one needs no GL call, nor a
    // context.
    if (id != 0) {
        glDeleteLists(id, 1);
    }
}

void DisplayList::setScene(O3dScene* value) {
    scene = value;
}

O3dScene* DisplayList::getScene() const {
    return scene;
}

void DisplayList::setId(unsigned int value) {
    id = value;
}

unsigned int DisplayList::getId() const {
    return id;
}

int DisplayList::getMode() const {
    return mode;
}

void DisplayList::draw() const {
    glCallList(id);
}
