#ifndef KVL_O3DSCENE_H
#define KVL_O3DSCENE_H

#include "graphics/Vector.h"

#include <string>
#include <vector>

class DisplayList;
class Material;
class O3d;

// What one model file becomes: root objects and all the materials of the
// file, both owned. Most operations pass on to the root objects in order.
class O3dScene {
public:
    O3dScene();
    ~O3dScene();
    O3dScene(const O3dScene&) = delete;
    O3dScene& operator=(const O3dScene&) = delete;

    void addObject(O3d* object);
    void addMaterial(Material* material);
    // Objects held before are neither kept nor deleted.
    void setScene(std::vector<O3d*> list);

    int countObjects() const;
    int countMaterials() const;
    // Null for an index outside the list.
    O3d* getObject(int i) const;
    Material* getMaterial(int i) const;
    // Root objects only; their kids are not counted.
    int countVertices() const;
    int countPolygons() const;

    Vector<float, 3> getCenterVector() const;
    float getScaleValue() const;
    void setScaleValue(float value);
    const float* getBBoxMin() const;
    const float* getBBoxMax() const;

    std::string toString() const;

    // The mode is required in all but name: draw() passes -1 and draws
    // nothing.
    void draw() const;
    void draw(int mode) const;
    void drawWire() const;
    void drawNormals() const;
    void drawVertexNormals() const;
    void drawVertexNormalsOverride() const;
    void drawBBox() const;
    // Compiles draw(mode) into a new list that the caller owns.
    DisplayList* createDisplayList(int mode);

    void calculateBBox();
    void calculateCrease(float degrees);
    void centerScene();
    void invertNormals();

private:
    std::vector<O3d*> objects;
    std::vector<Material*> materials;
    float scaleValue;
    Vector<float, 3> bboxMin;
    Vector<float, 3> bboxMax;
    Vector<float, 3> centerVector;
};

#endif
