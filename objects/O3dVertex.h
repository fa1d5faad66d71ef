#ifndef KVL_O3DVERTEX_H
#define KVL_O3DVERTEX_H

#include "graphics/Vector.h"

#include <string>
#include <vector>

class O3dPolygon;

// One corner position of an object, shared by the triangles around it. It
// keeps pointers to those triangles, in the order they were made, so that
// the smooth normal can be worked out from their face normals.
class O3dVertex {
public:
    O3dVertex();
    O3dVertex(float x, float y, float z);
    ~O3dVertex();

    void setVertex(Vector<float, 3> position);
    // The three floats themselves, ready for glVertex3fv.
    const float* getVertex() const;
    Vector<float, 3> getVertexCopy() const;
    void setNormal(Vector<float, 3> value);
    // The three floats themselves, ready for glNormal3fv.
    const float* getNormal() const;

    void addPolygonPointer(O3dPolygon* polygon);
    int countPolygons() const;
    // Null for an index outside the list.
    O3dPolygon* getPolygon(int i) const;

    void drawVertex() const;
    void drawNormal() const;
    std::string toString() const;

private:
    std::vector<O3dPolygon*> polygons;
    Vector<float, 3> vertex;
    Vector<float, 3> normal;
};

#endif
