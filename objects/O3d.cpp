#include "objects/O3d.h"

#include "graphics/Texture.h"
#include "objects/Material.h"
#include "objects/O3dPolygon.h"
#include "objects/O3dVertex.h"

#include <GL/glew.h>

#include <algorithm>
#include <cmath>
#include <iostream>

namespace {

void emitVertex(Vector<float, 3> v) {
    glVertex3fv(v.data());
}

void disableTextures() {
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_TEXTURE_1D);
}

} // namespace

O3d::O3d()
    : vertices(), polygons(), kids(), scaleValue(1.0f), material(nullptr),
      hasObjectMaterialFlag(false), hasPolygonMaterialFlag(false), name(), location(), position(),
      pivotPoint(), bboxMin(), bboxMax() {}

O3d::~O3d() {
    for (O3dVertex* v : vertices) {
        delete v;
    }
    for (O3dPolygon* p : polygons) {
        delete p;
    }
    for (O3d* kid : kids) {
        delete kid;
    }
}

void O3d::setVertices(const std::vector<float>& coordinates) {
    for (size_t i = 0; i + 2 < coordinates.size(); i += 3) {
        vertices.push_back(new O3dVertex(coordinates[i], coordinates[i + 1], coordinates[i + 2]));
    }
}

void O3d::setPolygons(const std::vector<int>& indices, const std::vector<float>& us,
                      const std::vector<float>& vs) {
    if (indices.size() < 3) {
        return;
    }
    const int vertexCount = getVertexCount();
    for (size_t first = 0; first + 2 < indices.size(); first += 3) {
        O3dPolygon* polygon = new O3dPolygon();
        bool inRange = true;
        for (int c = 0; c < 3; c++) {
            int idx = indices[first + c];
            inRange = inRange && idx >= 0 && idx < vertexCount;
        }
        for (int c = 0; inRange && c < 3; c++) {
            size_t idx = static_cast<size_t>(indices[first + c]);
            polygon->setVn(c, vertices[idx]);
            vertices[idx]->addPolygonPointer(polygon);
            polygon->setU(c, idx < us.size() ? us[idx] : 0.0f);
            polygon->setV(c, idx < vs.size() ? vs[idx] : 0.0f);
        }
        polygons.push_back(polygon);
    }
}

void O3d::addKid(O3d* kid) {
    kids.push_back(kid);
}

int O3d::countKids() const {
    return static_cast<int>(kids.size());
}

std::vector<O3d*> O3d::getKids() const {
    return kids;
}

O3dVertex* O3d::getVertex(int i) const {
    if (i < 0 || i >= getVertexCount()) {
        return nullptr;
    }
    return vertices[i];
}

O3dPolygon* O3d::getPolygon(int i) const {
    if (i < 0 || i >= getPolyCount()) {
        return nullptr;
    }
    return polygons[i];
}

int O3d::getVertexCount() const {
    return static_cast<int>(vertices.size());
}

int O3d::getPolyCount() const {
    return static_cast<int>(polygons.size());
}

void O3d::setScaleValue(float value) {
    scaleValue = value;
    for (O3d* kid : kids) {
        kid->setScaleValue(value);
    }
}

float O3d::getScaleValue() const {
    return scaleValue;
}

void O3d::setLocation(Vector<float, 3> value) {
    location = value;
}

Vector<float, 3> O3d::getLocation() const {
    return location;
}

void O3d::setPosition(Vector<float, 3> value) {
    position = value;
}

Vector<float, 3> O3d::getPosition() const {
    return position;
}

void O3d::setPivotPoint(Vector<float, 3> value) {
    pivotPoint = value;
}

Vector<float, 3> O3d::getPivotPoint() const {
    return pivotPoint;
}

void O3d::setName(std::string text) {
    name = text;
}

std::string O3d::getName() const {
    return name;
}

void O3d::setMaterial(Material* value) {
    material = value;
    hasObjectMaterialFlag = true;
    hasPolygonMaterialFlag = false;
}

Material* O3d::getMaterial() const {
    return material;
}

void O3d::setPolygonMaterial(int i, Material* value) {
    O3dPolygon* polygon = getPolygon(i);
    if (polygon != nullptr) {
        polygon->setMaterial(value);
    }
    hasObjectMaterialFlag = false;
    hasPolygonMaterialFlag = true;
}

void O3d::hasObjectMaterial(bool value) {
    hasObjectMaterialFlag = value;
}

bool O3d::hasObjectMaterial() const {
    return hasObjectMaterialFlag;
}

void O3d::hasPolygonMaterial(bool value) {
    hasPolygonMaterialFlag = value;
}

bool O3d::hasPolygonMaterial() const {
    return hasPolygonMaterialFlag;
}

const float* O3d::getBBoxMin() const {
    return bboxMin.data();
}

const float* O3d::getBBoxMax() const {
    return bboxMax.data();
}

void O3d::print() const {
    for (int i = 0; i < getPolyCount(); i++) {
        const O3dPolygon* polygon = polygons[i];
        std::cout << "Poly[" << i << "]" << std::endl;
        for (int c = 0; c < 3; c++) {
            std::cout << "Vertex: " << static_cast<const void*>(polygon->getVn(c)) << std::endl;
            std::cout << "Tex: " << polygon->getU(c) << " " << polygon->getV(c) << std::endl;
        }
    }
}

void O3d::calculateNormals() {
    for (O3dPolygon* polygon : polygons) {
        if (!polygon->isComplete()) {
            continue;
        }
        Vector<float, 3> a = polygon->getVn(0)->getVertexCopy();
        Vector<float, 3> b = polygon->getVn(1)->getVertexCopy();
        Vector<float, 3> c = polygon->getVn(2)->getVertexCopy();
        // No test for a zero length: a degenerate triangle's normal is NaN.
        Vector<float, 3> n = cross(a - b, a - c);
        n.normalize();
        polygon->setNormal(n);
    }
}

void O3d::calculateVertexNormals() {
    for (O3dVertex* v : vertices) {
        const int k = v->countPolygons();
        if (k == 0) {
            continue;
        }
        Vector<float, 3> sum;
        for (int i = 0; i < k; i++) {
            sum = sum + v->getPolygon(i)->getNormal();
        }
        // The plain mean, not normalised again: corners on a sharp edge get
        // a shorter normal.
        Vector<float, 3> mean;
        for (int axis = 0; axis < 3; axis++) {
            mean[axis] = sum[axis] / static_cast<float>(k);
        }
        v->setNormal(mean);
    }
}

void O3d::calculateCrease(float degrees) {
    const float pi = 3.14159f;
    for (O3dPolygon* p : polygons) {
        Vector<float, 3> n = p->getNormal();
        p->overrideVertexNormals(true);
        for (int c = 0; c < 3; c++) {
            const O3dVertex* v = p->getVn(c);
            if (v == nullptr) {
                continue;
            }
            p->setVertexNormal(c, vec3(v->getNormal()));
            // The vertex gives the count, but the faces compared are the
            // first ones of the object's own list. A vertex used twice by one
            // triangle can count more faces than the object has; the
            // comparison stops at the end of the list.
            const int compared = std::min(v->countPolygons(), getPolyCount());
            for (int k = 0; k < compared; k++) {
                Vector<float, 3> m = polygons[k]->getNormal();
                float angle = static_cast<float>(acosf(dot(n, m)) * 180.0 / pi);
                if (angle > degrees) {
                    p->setVertexNormal(c, n);
                    break;
                }
            }
        }
    }
    for (O3d* kid : kids) {
        kid->calculateCrease(degrees);
    }
    std::cout << "O3d::calculateCrease(" << degrees << ") - END" << std::endl;
}

void O3d::calculateBBox() {
    // An object without vertices keeps the box it had.
    if (!vertices.empty()) {
        bboxMin = vertices[0]->getVertexCopy();
        bboxMax = bboxMin;
    }
    for (const O3dVertex* v : vertices) {
        const float* p = v->getVertex();
        for (int axis = 0; axis < 3; axis++) {
            if (p[axis] < bboxMin[axis]) {
                bboxMin[axis] = p[axis];
            }
            if (p[axis] > bboxMax[axis]) {
                bboxMax[axis] = p[axis];
            }
        }
    }
    std::cout << "Bounding box :" << std::endl;
    std::cout << "Min : " << bboxMin << std::endl;
    std::cout << "Max : " << bboxMax << std::endl;
}

void O3d::invertNormals() {
    for (O3dVertex* v : vertices) {
        v->setNormal(-vec3(v->getNormal()));
    }
    for (O3dPolygon* p : polygons) {
        p->setNormal(-p->getNormal());
    }
    for (O3d* kid : kids) {
        kid->invertNormals();
    }
}

void O3d::draw(int mode) const {
    glPushMatrix();
    if (mode == 1) {
        drawSmooth();
    } else if (mode == 4) {
        drawWire();
    }
    for (const O3d* kid : kids) {
        kid->draw(mode);
    }
    glPopMatrix();
}

void O3d::drawSmooth() const {
    glEnable(GL_LIGHTING);
    if (hasObjectMaterialFlag) {
        drawMaterial(material);
        // A null object material is reported by drawMaterial and then drawn
        // as one without a texture.
        if (material != nullptr && material->hasTexture()) {
            glTexEnvf(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
            material->getTexture1()->bind();
        } else {
            disableTextures();
        }
    }
    if (polygons.empty()) {
        disableTextures();
        return;
    }
    // Files group their triangles by material, so state changes only where
    // the material does.
    const Material* current = nullptr;
    for (const O3dPolygon* polygon : polygons) {
        if (hasPolygonMaterialFlag && polygon->hasMaterial() && polygon->getMaterial() != current) {
            polygon->drawMaterial();
            current = polygon->getMaterial();
            if (current->hasTexture()) {
                current->getTexture1()->bind();
            } else {
                glDisable(GL_TEXTURE_2D);
            }
        }
        polygon->draw(true, true, scaleValue);
    }
    disableTextures();
}

void O3d::drawFlat() const {}

void O3d::drawWire() const {
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glEnable(GL_COLOR_MATERIAL);
    glColor3f(0.7f, 0.7f, 0.7f);
    // One per cent outside the surface, so the wire wins the depth test
    // when drawn over the solid object.
    const float scale = scaleValue + scaleValue / 100;
    for (const O3dPolygon* polygon : polygons) {
        if (!polygon->isComplete()) {
            continue;
        }
        glBegin(GL_LINE_LOOP);
        for (int c = 0; c < 3; c++) {
            emitVertex(polygon->getVn(c)->getVertexCopy() * scale);
        }
        glEnd();
    }
    glDisable(GL_COLOR_MATERIAL);
    glEnable(GL_LIGHTING);
}

void O3d::drawMaterial(Material* m) const {
    if (m != nullptr) {
        m->drawMaterial();
    } else {
        std::cout << "ObjectMaterial is NULL" << std::endl;
    }
}

void O3d::drawNormals() const {
    // The translations stay on the modelview after the call; the caller
    // brackets it.
    glTranslatef(-pivotPoint[0], -pivotPoint[1], -pivotPoint[2]);
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glDisable(GL_TEXTURE_2D);
    glTranslatef(location[0] * scaleValue, location[1] * scaleValue, location[2] * scaleValue);
    glEnable(GL_COLOR_MATERIAL);
    glDisable(GL_LIGHTING);
    glColor3f(1.0f, 1.0f, 1.0f);
    glBegin(GL_LINES);
    for (const O3dPolygon* polygon : polygons) {
        if (!polygon->isComplete()) {
            continue;
        }
        Vector<float, 3> sum = polygon->getVn(0)->getVertexCopy() +
                               polygon->getVn(1)->getVertexCopy() +
                               polygon->getVn(2)->getVertexCopy();
        Vector<float, 3> centre;
        for (int axis = 0; axis < 3; axis++) {
            centre[axis] = sum[axis] / 3;
        }
        centre = centre * scaleValue;
        emitVertex(centre);
        emitVertex(centre + polygon->getNormal() * 0.5f);
    }
    glEnd();
    for (const O3d* kid : kids) {
        kid->drawNormals();
    }
    glPopAttrib();
}

void O3d::drawVertexNormals() const {
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glEnable(GL_COLOR_MATERIAL);
    glColor3f(0.0f, 1.0f, 0.0f);
    glBegin(GL_LINES);
    for (const O3dVertex* v : vertices) {
        Vector<float, 3> p = v->getVertexCopy() * scaleValue;
        emitVertex(p);
        emitVertex(p + vec3(v->getNormal()) * 0.5f);
    }
    glEnd();
    glDisable(GL_COLOR_MATERIAL);
    glEnable(GL_LIGHTING);
    glPopAttrib();
}

void O3d::drawVertexNormalsOverride() const {
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glEnable(GL_COLOR_MATERIAL);
    glColor3f(1.0f, 0.0f, 0.0f);
    glBegin(GL_LINES);
    for (const O3dPolygon* polygon : polygons) {
        if (!polygon->overrideVertexNormals() || !polygon->isComplete()) {
            continue;
        }
        for (int c = 0; c < 3; c++) {
            Vector<float, 3> p = polygon->getVn(c)->getVertexCopy() * scaleValue;
            emitVertex(p);
            emitVertex(p + polygon->getVertexNormal(c) * 0.5f);
        }
    }
    glEnd();
    glDisable(GL_COLOR_MATERIAL);
    glEnable(GL_LIGHTING);
    glPopAttrib();
}

void O3d::drawBBox() const {
    drawBox(bboxMin, bboxMax, scaleValue, 0.0f, 1.0f, 0.0f);
}

void O3d::drawBox(Vector<float, 3> min, Vector<float, 3> max, float scale, float r, float g,
                  float b) {
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glEnable(GL_COLOR_MATERIAL);
    glColor3f(r, g, b);
    glLineWidth(1.0f);
    const float x0 = min[0] * scale;
    const float y0 = min[1] * scale;
    const float z0 = min[2] * scale;
    const float x1 = max[0] * scale;
    const float y1 = max[1] * scale;
    const float z1 = max[2] * scale;
    const float loops[4][4][3] = {
        {{x0, y1, z1}, {x1, y1, z1}, {x1, y1, z0}, {x0, y1, z0}},
        {{x0, y0, z1}, {x1, y0, z1}, {x1, y0, z0}, {x0, y0, z0}},
        {{x0, y1, z1}, {x0, y1, z0}, {x0, y0, z0}, {x0, y0, z1}},
        {{x1, y1, z1}, {x1, y1, z0}, {x1, y0, z0}, {x1, y0, z1}},
    };
    for (const auto& loop : loops) {
        glBegin(GL_LINE_LOOP);
        for (const auto& corner : loop) {
            glVertex3fv(corner);
        }
        glEnd();
    }
    glLineWidth(1.0f);
    glDisable(GL_COLOR_MATERIAL);
    glEnable(GL_LIGHTING);
}
