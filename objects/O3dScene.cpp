#include "objects/O3dScene.h"

#include "objects/DisplayList.h"
#include "objects/Material.h"
#include "objects/O3d.h"
#include "script/KVLUtils.h"

#include <GL/glew.h>

#include <iostream>

O3dScene::O3dScene()
    : objects(), materials(), scaleValue(1.0f), bboxMin(), bboxMax(), centerVector() {}

O3dScene::~O3dScene() {
    std::cout << " -> delete " << objects.size() << " root object(s) (with children)" << std::endl;
    for (O3d* object : objects) {
        delete object;
    }
    std::cout << " -> delete " << materials.size() << " material(s)" << std::endl;
    for (Material* material : materials) {
        delete material;
    }
}

void O3dScene::addObject(O3d* object) {
    objects.push_back(object);
}

void O3dScene::addMaterial(Material* material) {
    materials.push_back(material);
}

void O3dScene::setScene(std::vector<O3d*> list) {
    objects = list;
}

int O3dScene::countObjects() const {
    return static_cast<int>(objects.size());
}

int O3dScene::countMaterials() const {
    return static_cast<int>(materials.size());
}

O3d* O3dScene::getObject(int i) const {
    if (i < 0 || i >= countObjects()) {
        return nullptr;
    }
    return objects[i];
}

Material* O3dScene::getMaterial(int i) const {
    if (i < 0 || i >= countMaterials()) {
        return nullptr;
    }
    return materials[i];
}

int O3dScene::countVertices() const {
    int count = 0;
    for (const O3d* object : objects) {
        count += object->getVertexCount();
    }
    return count;
}

int O3dScene::countPolygons() const {
    int count = 0;
    for (const O3d* object : objects) {
        count += object->getPolyCount();
    }
    return count;
}

Vector<float, 3> O3dScene::getCenterVector() const {
    return centerVector;
}

float O3dScene::getScaleValue() const {
    return scaleValue;
}

void O3dScene::setScaleValue(float value) {
    scaleValue = value;
    for (O3d* object : objects) {
        object->setScaleValue(value);
    }
}

const float* O3dScene::getBBoxMin() const {
    return bboxMin.data();
}

const float* O3dScene::getBBoxMax() const {
    return bboxMax.data();
}

std::string O3dScene::toString() const {
    return "O3dScene{ objects in scene = " + KVLUtils::int2string(countObjects()) + " " +
           " polygons = " + KVLUtils::int2string(countPolygons()) + " " +
           " vertices = " + KVLUtils::int2string(countVertices()) + " }\n";
}

void O3dScene::draw() const {
    draw(-1);
}

void O3dScene::draw(int mode) const {
    for (const O3d* object : objects) {
        object->draw(mode);
    }
}

void O3dScene::drawWire() const {
    for (const O3d* object : objects) {
        object->drawWire();
    }
}

void O3dScene::drawNormals() const {
    for (const O3d* object : objects) {
        object->drawNormals();
    }
}

void O3dScene::drawVertexNormals() const {
    for (const O3d* object : objects) {
        object->drawVertexNormals();
    }
}

void O3dScene::drawVertexNormalsOverride() const {
    for (const O3d* object : objects) {
        object->drawVertexNormalsOverride();
    }
}

void O3dScene::drawBBox() const {
    for (const O3d* object : objects) {
        object->drawBBox();
    }
    O3d::drawBox(bboxMin, bboxMax, scaleValue, 1.0f, 0.0f, 0.0f);
}

DisplayList* O3dScene::createDisplayList(int mode) {
    unsigned int id = glGenLists(1);
    glNewList(id, GL_COMPILE);
    draw(mode);
    glEndList();
    return new DisplayList(this, id, mode);
}

namespace {

void widen(Vector<float, 3>& min, Vector<float, 3>& max, const float* point) {
    for (int axis = 0; axis < 3; axis++) {
        if (point[axis] < min[axis]) {
            min[axis] = point[axis];
        }
        if (point[axis] > max[axis]) {
            max[axis] = point[axis];
        }
    }
}

} // namespace

void O3dScene::calculateBBox() {
    for (O3d* object : objects) {
        object->calculateBBox();
    }
    // A scene without objects keeps the box it had.
    if (!objects.empty()) {
        bboxMin = vec3(objects[0]->getBBoxMin());
        bboxMax = vec3(objects[0]->getBBoxMax());
    }
    for (const O3d* object : objects) {
        widen(bboxMin, bboxMax, object->getBBoxMin());
    }
    for (const O3d* object : objects) {
        widen(bboxMin, bboxMax, object->getBBoxMax());
    }
    std::cout << "Bounding scene box :" << std::endl;
    std::cout << "Min : " << bboxMin << std::endl;
    std::cout << "Max : " << bboxMax << std::endl;
}

void O3dScene::calculateCrease(float degrees) {
    for (O3d* object : objects) {
        object->calculateCrease(degrees);
    }
}

void O3dScene::centerScene() {
    std::cout << "centerScene()" << std::endl;
    // The width in x alone sets the scale: the scene spans -1 to 1 in x.
    float scale = 2.0f / (bboxMax[0] - bboxMin[0]);
    setScaleValue(scale);
    std::cout << "Scene scale = " << scale << std::endl;
    Vector<float, 3> half = (bboxMax - bboxMin) * 0.5f;
    std::cout << "Local center = " << half << std::endl;
    Vector<float, 3> centre = half + bboxMin;
    std::cout << "Vector from Origo = " << centre << std::endl;
    // No vertex moves; a caller that wants the scene centred translates by
    // this vector.
    centerVector = -centre * scaleValue;
}

void O3dScene::invertNormals() {
    for (O3d* object : objects) {
        object->invertNormals();
    }
}
