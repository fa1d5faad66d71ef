#ifndef KVL_KVL3DWRITER_H
#define KVL_KVL3DWRITER_H

#include <string>
#include <vector>

// Writer of the two model formats that ObjectParser reads: the text format
// "{KVLC01}" and the binary format "{KVLB01}". The model tools and the
// benchmarks make their files with it; a model gives the same bytes on every
// run.
class KVL3dWriter {
public:
    struct Colour {
        float r;
        float g;
        float b;
    };

    struct MaterialRecord {
        std::string name;
        Colour diffuse;
        Colour ambient;
        Colour specular;
        Colour emissive;
        // Kept by the binary format only.
        float shine;
        // A picture's file name, kept by the text format only; empty for none.
        std::string texture;
    };

    struct ObjectRecord {
        // x, y, z, u and v of each vertex in turn.
        std::vector<float> vertices;
        // Corners a, b and c and the number of the material of each triangle
        // in turn.
        std::vector<int> triangles;
    };

    void addMaterial(const MaterialRecord& material);
    void addObject(const ObjectRecord& object);

    int countMaterials() const;
    int countObjects() const;
    int countVertices() const;
    int countTriangles() const;

    // An object whose triangles share one material is written in material
    // mode "single", any other in mode "multi".
    std::string toText() const;
    // The binary format has no material per triangle: the player gives every
    // object the first material of the file.
    std::string toBinary() const;
    // False when the file cannot be written.
    bool writeText(const std::string& path) const;
    bool writeBinary(const std::string& path) const;

private:
    std::vector<MaterialRecord> materials;
    std::vector<ObjectRecord> objects;
};

#endif
