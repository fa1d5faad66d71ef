#include "objects/KVL3dParser.h"

#include "graphics/Texture.h"
#include "graphics/Vector.h"
#include "objects/Material.h"
#include "objects/O3d.h"
#include "objects/O3dScene.h"
#include "runtime/Data.h"
#include "runtime/DataTexturePool.h"
#include "runtime/KVLDemosys.h"
#include "script/File.h"
#include "script/KVLUtils.h"
#include "script/ParameterGroup.h"
#include "script/Parameters.h"
#include "script/StringTokenizer.h"
#include "script/StringUtils.h"

#include <GL/glew.h>

#include <iostream>

namespace {

struct Statement {
    std::string key;
    std::string value;
};

// "key = value": the key trimmed, the value as written; anything behind a
// second "=" is dropped.
Statement splitStatement(const std::string& text) {
    StringTokenizer pieces(text, "=");
    Statement statement;
    statement.key = StringUtils::trim(pieces.getNext());
    statement.value = pieces.getNext();
    return statement;
}

std::vector<Statement> statementsOf(const std::string& body) {
    std::vector<Statement> statements;
    StringTokenizer tokens(body, ";");
    while (tokens.hasMoreTokens()) {
        statements.push_back(splitStatement(tokens.getNext()));
    }
    return statements;
}

// Three numbers; the ones that are missing read as 0.
Vector<float, 3> threeFloats(const std::string& value, const std::string& delimiters) {
    StringTokenizer tokens(value, delimiters);
    Vector<float, 3> result;
    for (int i = 0; i < 3; i++) {
        result[i] = KVLUtils::string2Float(tokens.getNext());
    }
    return result;
}

} // namespace

KVL3dParser::KVL3dParser()
    : materials(), objects(), scene(new O3dScene()), texture1Names(), texture2Names(),
      textureNames(), filename(), valid(true), errorMessage() {}

// The scene belongs to whoever asked for it.
KVL3dParser::~KVL3dParser() {}

O3dScene* KVL3dParser::parse(File* file) {
    filename = file->getFilename();
    valid = true;
    StringTokenizer tokens(file->getAsString(), "{}", true);
    // "{", "KVLC01", "}"
    tokens.getNext(3);
    while (tokens.hasMoreTokens()) {
        std::string head = StringUtils::trim(tokens.getNext());
        tokens.getNext();
        std::string body = tokens.getNext();
        tokens.getNext();
        if (head == "Object") {
            parseObject(body);
        } else if (head == "Material") {
            parseMaterial(body);
        }
    }
    for (size_t i = 0; i < materials.size(); i++) {
        Material* material = materials[i];
        if (i < texture1Names.size() && !texture1Names[i].empty()) {
            material->setTexture1(loadTexture(texture1Names[i]));
        }
        if (i < texture2Names.size() && !texture2Names[i].empty()) {
            material->setTexture2(loadTexture(texture2Names[i]));
        }
        scene->addMaterial(material);
    }
    scene->setScene(objects);
    return scene;
}

void KVL3dParser::parseMaterial(std::string body) {
    Material* material = new Material();
    bool hasTexture1 = false;
    bool hasTexture2 = false;
    for (const Statement& statement : statementsOf(body)) {
        const std::string& key = statement.key;
        if (key == "name") {
            material->setName(StringUtils::trim(statement.value));
        } else if (key == "diffuse") {
            Vector<float, 3> c = threeFloats(statement.value, ",");
            material->setDiffuse(c[0], c[1], c[2]);
        } else if (key == "ambient") {
            Vector<float, 3> c = threeFloats(statement.value, ",");
            material->setAmbience(c[0], c[1], c[2]);
        } else if (key == "specular") {
            Vector<float, 3> c = threeFloats(statement.value, ",");
            material->setSpecular(c[0], c[1], c[2]);
        } else if (key == "emissive") {
            Vector<float, 3> c = threeFloats(statement.value, ",");
            material->setEmissive(c[0], c[1], c[2]);
        } else if (key == "texture1") {
            std::string name = StringUtils::trim(statement.value);
            texture1Names.push_back(name);
            textureNames.push_back(name);
            hasTexture1 = true;
        } else if (key == "texture2") {
            std::string name = StringUtils::trim(statement.value);
            texture2Names.push_back(name);
            textureNames.push_back(name);
            hasTexture2 = true;
        }
    }
    // The name lists stay parallel to the materials.
    if (!hasTexture1) {
        texture1Names.push_back("");
    }
    if (!hasTexture2) {
        texture2Names.push_back("");
    }
    materials.push_back(material);
}

void KVL3dParser::parseObject(std::string body) {
    O3d* object = new O3d();
    std::string materialMode;
    int materialIndex = -1;
    Vector<float, 3> position;
    Vector<float, 3> pivot;
    std::vector<float> coordinates;
    std::vector<float> us;
    std::vector<float> vs;
    std::vector<int> indices;
    std::vector<Material*> polygonMaterials;
    const int materialCount = static_cast<int>(materials.size());

    for (const Statement& statement : statementsOf(body)) {
        const std::string& key = statement.key;
        if (key == "materialmode") {
            materialMode = StringUtils::trim(statement.value);
        } else if (key == "position") {
            position = threeFloats(statement.value, " ");
        } else if (key == "pivot") {
            pivot = threeFloats(statement.value, " ");
        } else if (key == "material") {
            materialIndex = KVLUtils::string2Int(statement.value);
        } else if (key == "vertex") {
            StringTokenizer tokens(statement.value, ",");
            for (int n = 0; tokens.hasMoreTokens(); n = (n + 1) % 5) {
                float value = KVLUtils::string2Float(tokens.getNext());
                if (n < 3) {
                    coordinates.push_back(value);
                } else if (n == 3) {
                    us.push_back(value);
                } else {
                    vs.push_back(value);
                }
            }
        } else if (key == "polygons") {
            // The mode in force when the statement is read decides whether
            // every fourth number is a material.
            int groupSize = (materialMode == "multi") ? 4 : 3;
            StringTokenizer tokens(statement.value, ",");
            for (int n = 0; tokens.hasMoreTokens(); n = (n + 1) % groupSize) {
                int value = KVLUtils::string2Int(tokens.getNext());
                if (n < 3) {
                    indices.push_back(value);
                } else {
                    bool known = value >= 0 && value < materialCount;
                    polygonMaterials.push_back(known ? materials[value] : nullptr);
                }
            }
        }
    }

    object->setVertices(coordinates);
    object->setPolygons(indices, us, vs);
    object->setPivotPoint(pivot);
    object->setPosition(position);
    if (materialMode == "multi") {
        for (size_t i = 0; i < polygonMaterials.size(); i++) {
            object->setPolygonMaterial(static_cast<int>(i), polygonMaterials[i]);
        }
        object->hasPolygonMaterial(true);
        object->hasObjectMaterial(false);
    } else if (materialMode == "single") {
        // An index that names no material counts as none.
        if (materialIndex >= 0 && materialIndex < materialCount) {
            object->setMaterial(materials[materialIndex]);
            object->hasPolygonMaterial(false);
            object->hasObjectMaterial(true);
        } else {
            object->hasPolygonMaterial(false);
            object->hasObjectMaterial(false);
        }
    }
    object->calculateNormals();
    object->calculateVertexNormals();
    objects.push_back(object);
}

Texture* KVL3dParser::loadTexture(std::string name) {
    std::string path;
    ParameterGroup* paths =
        (KVLDemosys::parameters != nullptr) ? KVLDemosys::parameters->getGroup("paths") : nullptr;
    if (paths != nullptr) {
        path = paths->getParameter("gfx");
    }
    DataTexturePool* pool = nullptr;
    if (KVLDemosys::data != nullptr) {
        pool = dynamic_cast<DataTexturePool*>(KVLDemosys::data->getData("texturePool"));
    }
    if (pool != nullptr && pool->isFileInPool(name)) {
        return pool->getTexture(name);
    }
    // Without a pool nothing would own the texture: it is not loaded at all.
    Texture* texture =
        (pool != nullptr) ? KVLDemosys::loadTexture(path + name, GL_TEXTURE_2D, true) : nullptr;
    if (texture == nullptr) {
        valid = false;
        errorMessage = "Error loading texture!\nTexture file : '" + path + name + "'\n" +
                       "Object : '" + filename + "'\n";
        std::cout << errorMessage << std::endl;
        return nullptr;
    }
    texture->setFilename(name);
    pool->addTexture(name, texture);
    return texture;
}

bool KVL3dParser::isValid() const {
    return valid;
}

std::string KVL3dParser::getErrorMessage() const {
    return errorMessage;
}

std::vector<Material*> KVL3dParser::getMaterials() const {
    return materials;
}

std::vector<O3d*> KVL3dParser::getObjects() const {
    return objects;
}

std::vector<std::string> KVL3dParser::getTexture1Names() const {
    return texture1Names;
}

std::vector<std::string> KVL3dParser::getTexture2Names() const {
    return texture2Names;
}

std::vector<std::string> KVL3dParser::getTextureNames() const {
    return textureNames;
}
