#include "objects/O3dVertex.h"

#include "script/KVLUtils.h"

#include <GL/glew.h>

O3dVertex::O3dVertex() : polygons(), vertex(), normal() {}

O3dVertex::O3dVertex(float x, float y, float z) : polygons(), vertex(), normal() {
    vertex[0] = x;
    vertex[1] = y;
    vertex[2] = z;
}

O3dVertex::~O3dVertex() {}

void O3dVertex::setVertex(Vector<float, 3> position) {
    vertex = position;
}

const float* O3dVertex::getVertex() const {
    return vertex.data();
}

Vector<float, 3> O3dVertex::getVertexCopy() const {
    return vertex;
}

void O3dVertex::setNormal(Vector<float, 3> value) {
    normal = value;
}

const float* O3dVertex::getNormal() const {
    return normal.data();
}

void O3dVertex::addPolygonPointer(O3dPolygon* polygon) {
    polygons.push_back(polygon);
}

int O3dVertex::countPolygons() const {
    return static_cast<int>(polygons.size());
}

O3dPolygon* O3dVertex::getPolygon(int i) const {
    if (i < 0 || i >= countPolygons()) {
        return nullptr;
    }
    return polygons[i];
}

void O3dVertex::drawVertex() const {
    glVertex3fv(vertex.data());
}

void O3dVertex::drawNormal() const {
    glNormal3fv(normal.data());
}

std::string O3dVertex::toString() const {
    return "vertex{ v[" + KVLUtils::float2string(vertex[0]) + "," +
           KVLUtils::float2string(vertex[1]) + "," + KVLUtils::float2string(vertex[2]) + "]" +
           " n[" + KVLUtils::float2string(normal[0]) + "," + KVLUtils::float2string(normal[1]) +
           "," + KVLUtils::float2string(normal[2]) + "]" + " }";
}
