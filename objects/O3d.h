#ifndef KVL_O3D_H
#define KVL_O3D_H

#include "graphics/Vector.h"

#include <string>
#include <vector>

class Material;
class O3dPolygon;
class O3dVertex;

// One object of a model: its own vertices and triangles, and child objects
// that are drawn with it. The scale is applied while drawing, never stored
// into the vertices, so it may change at any time.
class O3d {
public:
    O3d();
    ~O3d();
    O3d(const O3d&) = delete;
    O3d& operator=(const O3d&) = delete;

    // x, y, z triples; a rest of one or two values is left unused.
    void setVertices(const std::vector<float>& coordinates);
    // Index triples into the vertices, and u and v per vertex. A triple
    // with an index outside the vertices still makes its triangle, so that
    // the triangles after it keep their numbers for setPolygonMaterial, but
    // that triangle gets no corners: it takes no part in any normal and
    // draws as nothing. A vertex beyond the u or v list reads 0.
    void setPolygons(const std::vector<int>& indices, const std::vector<float>& us,
                     const std::vector<float>& vs);

    void addKid(O3d* kid);
    int countKids() const;
    std::vector<O3d*> getKids() const;
    // Null for an index outside the list.
    O3dVertex* getVertex(int i) const;
    O3dPolygon* getPolygon(int i) const;
    int getVertexCount() const;
    int getPolyCount() const;

    void setScaleValue(float value);
    float getScaleValue() const;

    void setLocation(Vector<float, 3> value);
    Vector<float, 3> getLocation() const;
    void setPosition(Vector<float, 3> value);
    Vector<float, 3> getPosition() const;
    void setPivotPoint(Vector<float, 3> value);
    Vector<float, 3> getPivotPoint() const;
    void setName(std::string text);
    std::string getName() const;

    void setMaterial(Material* value);
    Material* getMaterial() const;
    // A polygon number outside the list gets nothing; the flags change all
    // the same.
    void setPolygonMaterial(int i, Material* value);
    void hasObjectMaterial(bool value);
    bool hasObjectMaterial() const;
    void hasPolygonMaterial(bool value);
    bool hasPolygonMaterial() const;

    const float* getBBoxMin() const;
    const float* getBBoxMax() const;

    void print() const;

    void calculateNormals();
    void calculateVertexNormals();
    void calculateCrease(float degrees);
    void calculateBBox();
    void invertNormals();

    // 1 draws smooth and 4 draws the wire frame; other modes draw nothing.
    void draw(int mode) const;
    void drawSmooth() const;
    void drawFlat() const;
    void drawWire() const;
    void drawMaterial(Material* m) const;
    void drawNormals() const;
    void drawVertexNormals() const;
    void drawVertexNormalsOverride() const;
    void drawBBox() const;

    // The box frame of drawBBox in any colour; the scene draws its own box
    // with it.
    static void drawBox(Vector<float, 3> min, Vector<float, 3> max, float scale, float r, float g,
                        float b);

private:
    std::vector<O3dVertex*> vertices;
    std::vector<O3dPolygon*> polygons;
    std::vector<O3d*> kids;
    float scaleValue;
    Material* material;
    bool hasObjectMaterialFlag;
    bool hasPolygonMaterialFlag;
    std::string name;
    Vector<float, 3> location;
    Vector<float, 3> position;
    Vector<float, 3> pivotPoint;
    Vector<float, 3> bboxMin;
    Vector<float, 3> bboxMax;
};

#endif
