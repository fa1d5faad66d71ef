#include "objects/KVL3dLoader_V1.h"

#include "graphics/Vector.h"
#include "objects/Material.h"
#include "objects/O3d.h"
#include "objects/O3dScene.h"
#include "script/File.h"
#include "script/KVLUtils.h"

#include <algorithm>
#include <iostream>
#include <vector>

namespace {

// The cursor stands behind the header when the file is handed over.
const unsigned long long HEADER_SIZE = 8;

const char* const DASHES = "----------------";
const char* const SHORT_DASHES = "-------------";

std::string joined(const Vector<float, 4>& c) {
    std::string text;
    for (int i = 0; i < 4; i++) {
        if (i > 0) {
            text += ",";
        }
        text += KVLUtils::float2string(c[i]);
    }
    return text;
}

} // namespace

KVL3dLoader_V1::KVL3dLoader_V1()
    : file(nullptr), scene(new O3dScene()), errorMessage("KVL3dLoader_V1 : Unknown error"),
      valid(true), trace(false), position(HEADER_SIZE) {}

// The scene belongs to whoever asked for it.
KVL3dLoader_V1::~KVL3dLoader_V1() {}

bool KVL3dLoader_V1::recordCanStart() const {
    return position < file->getFileSize();
}

int KVL3dLoader_V1::readInt() {
    position += 4;
    return file->readInt();
}

float KVL3dLoader_V1::readFloat() {
    position += 4;
    return file->readFloat();
}

O3dScene* KVL3dLoader_V1::parse(File* source) {
    file = source;
    position = HEADER_SIZE;
    std::cout << "Reading binary kvl file" << std::endl;
    int materialCount = readInt();
    if (trace) {
        std::cout << DASHES << std::endl;
        std::cout << "NumMaterials: " << materialCount << std::endl;
        std::cout << DASHES << std::endl;
    }
    for (int i = 0; i < materialCount && recordCanStart(); i++) {
        scene->addMaterial(parseMaterial());
    }
    int objectCount = readInt();
    if (trace) {
        std::cout << DASHES << std::endl;
        std::cout << "NumObjects: " << objectCount << std::endl;
        std::cout << DASHES << std::endl;
    }
    for (int i = 0; i < objectCount && recordCanStart(); i++) {
        scene->addObject(parseObject());
    }
    std::cout << "Done!" << std::endl;
    return scene;
}

Material* KVL3dLoader_V1::parseMaterial() {
    if (trace) {
        std::cout << SHORT_DASHES << std::endl;
        std::cout << "Material " << std::endl;
        std::cout << SHORT_DASHES << std::endl;
    }
    Material* material = new Material();
    std::string name = file->readString();
    // A name of no characters reads as "Object" but took one byte; a name
    // that really is "Object" counted so only leaves the bound looser.
    position += (name == "Object") ? 1 : name.size() + 1;
    std::cout << "MatName : " << name << std::endl;
    Vector<float, 4> colours[4];
    for (Vector<float, 4>& colour : colours) {
        for (int i = 0; i < 4; i++) {
            colour[i] = readFloat();
        }
    }
    float shine = readFloat();
    material->setAmbience(colours[0]);
    material->setDiffuse(colours[1]);
    material->setSpecular(colours[2]);
    material->setEmissive(colours[3]);
    if (trace) {
        std::cout << "ambient : " << joined(colours[0]) << std::endl;
        std::cout << "diffuse : " << joined(colours[1]) << std::endl;
        std::cout << "specular : " << joined(colours[2]) << std::endl;
        std::cout << "emissive : " << joined(colours[3]) << std::endl;
        std::cout << "Shine : " << shine << std::endl;
    }
    return material;
}

O3d* KVL3dLoader_V1::parseObject() {
    O3d* object = new O3d();
    object->hasObjectMaterial(false);
    object->hasPolygonMaterial(false);
    if (scene->countMaterials() > 0) {
        object->hasObjectMaterial(true);
        object->setMaterial(scene->getMaterial(0));
    }

    int numVertices = readInt();
    if (trace) {
        std::cout << DASHES << std::endl;
        std::cout << "NumVertices: " << numVertices << std::endl;
        std::cout << DASHES << std::endl;
    }
    std::vector<float> coordinates;
    std::vector<float> us;
    std::vector<float> vs;
    unsigned long long room = file->getFileSize() / 20 + 1;
    size_t expected = static_cast<size_t>(std::min<unsigned long long>(
        room, static_cast<unsigned long long>(std::max(numVertices, 0))));
    coordinates.reserve(expected * 3);
    us.reserve(expected);
    vs.reserve(expected);
    for (int i = 0; i < numVertices && recordCanStart(); i++) {
        float x = readFloat();
        float y = readFloat();
        float z = readFloat();
        float u = readFloat();
        float v = readFloat();
        coordinates.push_back(x);
        coordinates.push_back(y);
        coordinates.push_back(z);
        us.push_back(u);
        vs.push_back(v);
        if (trace) {
            std::cout << "V" << i << ": " << x << "," << y << "," << z << " - " << u << "," << v
                      << std::endl;
        }
    }

    int numPolys = readInt();
    if (trace) {
        std::cout << DASHES << std::endl;
        std::cout << "NumPolys : " << numPolys << std::endl;
        std::cout << DASHES << std::endl;
    }
    std::vector<int> indices;
    room = file->getFileSize() / 12 + 1;
    expected = static_cast<size_t>(
        std::min<unsigned long long>(room, static_cast<unsigned long long>(std::max(numPolys, 0))));
    indices.reserve(expected * 3);
    for (int i = 0; i < numPolys && recordCanStart(); i++) {
        int a = readInt();
        int b = readInt();
        int c = readInt();
        indices.push_back(a);
        indices.push_back(b);
        indices.push_back(c);
        if (trace) {
            std::cout << "P" << i << ": " << a << "," << b << "," << c << std::endl;
        }
    }

    if (trace) {
        std::cout << "setVertices()" << std::endl;
    }
    object->setVertices(coordinates);
    if (trace) {
        std::cout << "setPolygons()" << std::endl;
    }
    object->setPolygons(indices, us, vs);
    if (trace) {
        std::cout << "calculateNormals()" << std::endl;
    }
    object->calculateNormals();
    if (trace) {
        std::cout << "calculateVertexNormals();" << std::endl;
    }
    object->calculateVertexNormals();
    return object;
}

bool KVL3dLoader_V1::isValid() const {
    return valid;
}

std::string KVL3dLoader_V1::getErrorMessage() const {
    return errorMessage;
}

void KVL3dLoader_V1::setTrace(bool value) {
    trace = value;
}
