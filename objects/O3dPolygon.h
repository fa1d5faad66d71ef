#ifndef KVL_O3DPOLYGON_H
#define KVL_O3DPOLYGON_H

#include "graphics/Vector.h"

class Material;
class O3dVertex;

// One triangle of an object. The corners and the material belong to others;
// the triangle only points at them. Texture coordinates and, after a crease
// computation, normals are kept per corner.
class O3dPolygon {
public:
    O3dPolygon();
    O3dPolygon(O3dVertex* a, O3dVertex* b, O3dVertex* c);
    ~O3dPolygon();

    // Corner indices other than 0, 1 and 2 read null and write nothing.
    O3dVertex* getVn(int i) const;
    void setVn(int i, O3dVertex* vertex);
    // True when all three corners are set. A triangle without them is
    // drawn as nothing and gets no face normal.
    bool isComplete() const;

    Vector<float, 3> getNormal() const;
    void setNormal(Vector<float, 3> value);

    void setMaterial(Material* value);
    Material* getMaterial() const;
    bool hasMaterial() const;
    void drawMaterial() const;

    // Corner indices other than 0, 1 and 2 read 0 and write nothing.
    void setU(int i, float value);
    void setV(int i, float value);
    float getU(int i) const;
    float getV(int i) const;

    void overrideVertexNormals(bool value);
    bool overrideVertexNormals() const;
    void setVertexNormal(int i, Vector<float, 3> value);
    // Any corner index but 0, 1 and 2 gives (0, 0, -1).
    Vector<float, 3> getVertexNormal(int i) const;

    void draw(bool textured, bool smooth, float scale) const;

private:
    static bool isCorner(int i) { return i >= 0 && i < 3; }

    O3dVertex* vn[3];
    Vector<float, 3> normal;
    Material* material;
    bool overrideVertexNormalsFlag;
    Vector<float, 3> vertexNormal[3];
    float u[3];
    float v[3];
};

#endif
