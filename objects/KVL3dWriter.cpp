#include "objects/KVL3dWriter.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>

namespace {

std::string number(float value) {
    char text[32];
    std::snprintf(text, sizeof(text), "%.7g", static_cast<double>(value));
    return text;
}

std::string colourText(const KVL3dWriter::Colour& c) {
    return number(c.r) + ", " + number(c.g) + ", " + number(c.b);
}

void putInt(std::string& out, int32_t value) {
    uint32_t bits = static_cast<uint32_t>(value);
    for (int i = 0; i < 4; i++) {
        out += static_cast<char>((bits >> (8 * i)) & 0xff);
    }
}

void putFloat(std::string& out, float value) {
    int32_t bits;
    std::memcpy(&bits, &value, sizeof(bits));
    putInt(out, bits);
}

void putColour(std::string& out, const KVL3dWriter::Colour& c) {
    putFloat(out, c.r);
    putFloat(out, c.g);
    putFloat(out, c.b);
    putFloat(out, 1.0f);
}

void textMaterial(std::ostringstream& out, const KVL3dWriter::MaterialRecord& m) {
    out << "Material {\n";
    out << "  name = " << m.name << ";\n";
    out << "  diffuse = " << colourText(m.diffuse) << ";\n";
    out << "  ambient = " << colourText(m.ambient) << ";\n";
    out << "  specular = " << colourText(m.specular) << ";\n";
    out << "  emissive = " << colourText(m.emissive) << ";\n";
    if (!m.texture.empty()) {
        out << "  texture1 = " << m.texture << ";\n";
    }
    out << "}\n";
}

void textObject(std::ostringstream& out, const KVL3dWriter::ObjectRecord& object) {
    const std::vector<int>& corners = object.triangles;
    size_t triangles = corners.size() / 4;
    std::vector<size_t> order;
    bool single = true;
    for (size_t t = 0; t < triangles; t++) {
        order.push_back(t);
        single = single && corners[4 * t + 3] == corners[3];
    }
    // Grouped by material, the player changes its state once a group.
    std::stable_sort(order.begin(), order.end(), [&corners](size_t a, size_t b) {
        return corners[4 * a + 3] < corners[4 * b + 3];
    });
    out << "Object {\n";
    if (single) {
        out << "  materialmode = single;\n";
        out << "  material = " << (triangles > 0 ? corners[3] : 0) << ";\n";
    } else {
        out << "  materialmode = multi;\n";
    }
    out << "  position = 0 0 0;\n";
    out << "  pivot = 0 0 0;\n";
    out << "  vertex =";
    for (size_t i = 0; i < object.vertices.size() / 5; i++) {
        const float* v = &object.vertices[5 * i];
        out << (i == 0 ? " " : ",\n    ") << number(v[0]) << ", " << number(v[1]) << ", "
            << number(v[2]) << ", " << number(v[3]) << ", " << number(v[4]);
    }
    out << ";\n";
    out << "  polygons =";
    for (size_t i = 0; i < order.size(); i++) {
        const int* t = &corners[4 * order[i]];
        out << (i == 0 ? " " : ",\n    ") << t[0] << ", " << t[1] << ", " << t[2];
        if (!single) {
            out << ", " << t[3];
        }
    }
    out << ";\n";
    out << "}\n";
}

bool save(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary);
    out << bytes;
    out.close();
    return static_cast<bool>(out);
}

} // namespace

void KVL3dWriter::addMaterial(const MaterialRecord& material) {
    materials.push_back(material);
}

void KVL3dWriter::addObject(const ObjectRecord& object) {
    objects.push_back(object);
}

int KVL3dWriter::countMaterials() const {
    return static_cast<int>(materials.size());
}

int KVL3dWriter::countObjects() const {
    return static_cast<int>(objects.size());
}

int KVL3dWriter::countVertices() const {
    size_t count = 0;
    for (const ObjectRecord& object : objects) {
        count += object.vertices.size() / 5;
    }
    return static_cast<int>(count);
}

int KVL3dWriter::countTriangles() const {
    size_t count = 0;
    for (const ObjectRecord& object : objects) {
        count += object.triangles.size() / 4;
    }
    return static_cast<int>(count);
}

std::string KVL3dWriter::toText() const {
    std::ostringstream out;
    out << "{KVLC01}\n";
    for (const MaterialRecord& m : materials) {
        textMaterial(out, m);
    }
    for (const ObjectRecord& object : objects) {
        textObject(out, object);
    }
    return out.str();
}

std::string KVL3dWriter::toBinary() const {
    std::string out = "{KVLB01}";
    putInt(out, countMaterials());
    for (const MaterialRecord& m : materials) {
        out += m.name;
        out += '\0';
        putColour(out, m.ambient);
        putColour(out, m.diffuse);
        putColour(out, m.specular);
        putColour(out, m.emissive);
        putFloat(out, m.shine);
    }
    putInt(out, countObjects());
    for (const ObjectRecord& object : objects) {
        size_t vertices = object.vertices.size() / 5;
        putInt(out, static_cast<int32_t>(vertices));
        for (size_t i = 0; i < 5 * vertices; i++) {
            putFloat(out, object.vertices[i]);
        }
        size_t triangles = object.triangles.size() / 4;
        putInt(out, static_cast<int32_t>(triangles));
        for (size_t t = 0; t < triangles; t++) {
            for (int corner = 0; corner < 3; corner++) {
                putInt(out, object.triangles[4 * t + corner]);
            }
        }
    }
    return out;
}

bool KVL3dWriter::writeText(const std::string& path) const {
    return save(path, toText());
}

bool KVL3dWriter::writeBinary(const std::string& path) const {
    return save(path, toBinary());
}
