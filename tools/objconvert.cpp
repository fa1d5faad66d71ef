// objconvert: turns a Wavefront OBJ model into a model file of the player,
// in the text format "{KVLC01}" or the binary format "{KVLB01}".

#include "objects/KVL3dWriter.h"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

const char* const HELP =
    "objconvert - converts a Wavefront OBJ model into a model file of the player\n"
    "\n"
    "Usage: objconvert [--text | --binary] input.obj output\n"
    "\n"
    "  --text    write the text format \"{KVLC01}\" (the default, unless the output\n"
    "            name ends in .kvlb)\n"
    "  --binary  write the binary format \"{KVLB01}\" (the default for .kvlb)\n"
    "  --help    show this text\n"
    "\n"
    "What is read from the OBJ file:\n"
    "  v x y z        positions (a fourth value is ignored)\n"
    "  vt u v         texture coordinates\n"
    "  vn x y z       accepted and dropped: the player computes its own normals\n"
    "  f a b c ...    faces of three or more corners, each corner written as v,\n"
    "                 v/vt, v//vn or v/vt/vn; negative indices count back from the\n"
    "                 last element read; larger faces are cut into triangles as a fan\n"
    "  o, g name      start a new object (objects without faces are dropped)\n"
    "  usemtl name    material of the faces that follow\n"
    "  mtllib file    materials, read from next to the OBJ file: newmtl, Kd, Ka,\n"
    "                 Ks, Ke and map_Kd (a texture, kept by the text format only)\n"
    "Anything else (s, l, p, comments) is skipped.\n"
    "\n"
    "Each object becomes one object of the model. A position used with two\n"
    "texture coordinates becomes two vertices, since the player keeps u and v per\n"
    "vertex. In the text format an object with one material is written in mode\n"
    "\"single\", one with several in mode \"multi\" with its triangles grouped by\n"
    "material. The binary format has no textures, and the player gives every\n"
    "object of a binary model the first material of the file. A model without\n"
    "usemtl gets one grey material.\n"
    "\n"
    "Example:\n"
    "  $ printf 'v -1 -1 0\\nv 1 -1 0\\nv 1 1 0\\nv -1 1 0\\nf 1 2 3 4\\n' > square.obj\n"
    "  $ objconvert square.obj resources/objects/square.kvlc\n"
    "  resources/objects/square.kvlc (text): 1 object(s), 1 material(s), 4 vertices, 2 triangles\n"
    "and in the script:  objects { square = square.kvlc; }\n";

// What a material that the library does not describe looks like.
KVL3dWriter::MaterialRecord greyMaterial(const std::string& name) {
    return {name,
            {0.75f, 0.75f, 0.75f},
            {0.2f, 0.2f, 0.2f},
            {0.5f, 0.5f, 0.5f},
            {0.0f, 0.0f, 0.0f},
            10.0f,
            ""};
}

// One object of the output: vertices with their own u and v, triangles.
struct Part {
    KVL3dWriter::ObjectRecord object;
    std::map<std::pair<int, int>, int> vertexOf;
};

struct Model {
    std::vector<KVL3dWriter::MaterialRecord> materials;
    std::vector<Part> parts;
};

class Converter {
public:
    bool read(const std::string& path);
    const Model& model() const { return result; }

private:
    bool fail(const std::string& text) {
        std::cerr << "objconvert: " << file << ":" << line << ": " << text << std::endl;
        return false;
    }
    bool corner(const std::string& token, int& vertex);
    bool resolve(const std::string& text, int count, int& index);
    int materialIndex(const std::string& name);
    void readMaterials(const std::string& path);
    Part& current();

    std::string file;
    int line = 0;
    std::vector<float> positions;
    std::vector<float> texcoords;
    int normals = 0;
    std::map<std::string, KVL3dWriter::MaterialRecord> library;
    std::map<std::string, int> usedMaterials;
    int material = -1;
    bool newPart = true;
    Model result;
};

std::string directoryOf(const std::string& path) {
    size_t slash = path.find_last_of('/');
    return (slash == std::string::npos) ? "" : path.substr(0, slash + 1);
}

std::string restOf(std::istringstream& in) {
    std::string rest;
    std::getline(in, rest);
    size_t first = rest.find_first_not_of(" \t\r");
    size_t last = rest.find_last_not_of(" \t\r");
    return (first == std::string::npos) ? "" : rest.substr(first, last - first + 1);
}

KVL3dWriter::Colour readColour(std::istringstream& in) {
    KVL3dWriter::Colour c{0.0f, 0.0f, 0.0f};
    in >> c.r >> c.g >> c.b;
    return c;
}

void Converter::readMaterials(const std::string& path) {
    std::ifstream in(path);
    if (!in) {
        std::cerr << "objconvert: material library '" << path << "' not found, using grey"
                  << std::endl;
        return;
    }
    std::string text;
    KVL3dWriter::MaterialRecord* open = nullptr;
    while (std::getline(in, text)) {
        std::istringstream words(text);
        std::string word;
        words >> word;
        if (word == "newmtl") {
            std::string name = restOf(words);
            library[name] = greyMaterial(name);
            open = &library[name];
        } else if (open == nullptr) {
            continue;
        } else if (word == "Kd") {
            open->diffuse = readColour(words);
        } else if (word == "Ka") {
            open->ambient = readColour(words);
        } else if (word == "Ks") {
            open->specular = readColour(words);
        } else if (word == "Ke") {
            open->emissive = readColour(words);
        } else if (word == "Ns") {
            words >> open->shine;
        } else if (word == "map_Kd") {
            // Options of the map come before the file name, which is last.
            std::string name;
            while (words >> name) {
                open->texture = name;
            }
        }
    }
}

int Converter::materialIndex(const std::string& name) {
    auto used = usedMaterials.find(name);
    if (used != usedMaterials.end()) {
        return used->second;
    }
    KVL3dWriter::MaterialRecord m = greyMaterial(name);
    auto known = library.find(name);
    if (known != library.end()) {
        m = known->second;
    }
    m.name = name;
    int index = static_cast<int>(result.materials.size());
    result.materials.push_back(m);
    usedMaterials[name] = index;
    return index;
}

Part& Converter::current() {
    if (newPart || result.parts.empty()) {
        result.parts.emplace_back();
        newPart = false;
    }
    return result.parts.back();
}

// OBJ counts from 1; a negative index counts back from the last element.
bool Converter::resolve(const std::string& text, int count, int& index) {
    char* end = nullptr;
    long value = std::strtol(text.c_str(), &end, 10);
    if (text.empty() || *end != '\0' || value == 0) {
        return fail("bad index '" + text + "'");
    }
    long resolved = (value > 0) ? value - 1 : count + value;
    if (resolved < 0 || resolved >= count) {
        return fail("index " + text + " out of range (" + std::to_string(count) + " defined)");
    }
    index = static_cast<int>(resolved);
    return true;
}

bool Converter::corner(const std::string& token, int& vertex) {
    std::string parts[3];
    int slot = 0;
    for (char c : token) {
        if (c == '/') {
            if (++slot > 2) {
                return fail("bad face corner '" + token + "'");
            }
        } else {
            parts[slot] += c;
        }
    }
    int position = 0;
    if (!resolve(parts[0], static_cast<int>(positions.size() / 3), position)) {
        return false;
    }
    int texcoord = -1;
    if (slot >= 1 && !parts[1].empty() &&
        !resolve(parts[1], static_cast<int>(texcoords.size() / 2), texcoord)) {
        return false;
    }
    int normal = 0;
    if (slot == 2 && !parts[2].empty() && !resolve(parts[2], normals, normal)) {
        return false;
    }
    Part& part = current();
    auto key = std::make_pair(position, texcoord);
    auto found = part.vertexOf.find(key);
    if (found != part.vertexOf.end()) {
        vertex = found->second;
        return true;
    }
    std::vector<float>& vertices = part.object.vertices;
    vertex = static_cast<int>(vertices.size() / 5);
    part.vertexOf[key] = vertex;
    for (int i = 0; i < 3; i++) {
        vertices.push_back(positions[3 * position + i]);
    }
    vertices.push_back(texcoord >= 0 ? texcoords[2 * texcoord] : 0.0f);
    vertices.push_back(texcoord >= 0 ? texcoords[2 * texcoord + 1] : 0.0f);
    return true;
}

bool Converter::read(const std::string& path) {
    file = path;
    std::ifstream in(path);
    if (!in) {
        std::cerr << "objconvert: cannot open '" << path << "'" << std::endl;
        return false;
    }
    std::string text;
    while (std::getline(in, text)) {
        line++;
        std::istringstream words(text);
        std::string word;
        words >> word;
        if (word == "v") {
            float x = 0.0f;
            float y = 0.0f;
            float z = 0.0f;
            if (!(words >> x >> y >> z)) {
                return fail("a vertex needs three numbers");
            }
            positions.insert(positions.end(), {x, y, z});
        } else if (word == "vt") {
            float u = 0.0f;
            float v = 0.0f;
            if (!(words >> u)) {
                return fail("a texture coordinate needs a number");
            }
            words >> v;
            texcoords.insert(texcoords.end(), {u, v});
        } else if (word == "vn") {
            normals++;
        } else if (word == "f") {
            std::vector<int> corners;
            std::string token;
            while (words >> token) {
                int vertex = 0;
                if (!corner(token, vertex)) {
                    return false;
                }
                corners.push_back(vertex);
            }
            if (corners.size() < 3) {
                return fail("a face needs three corners");
            }
            if (material < 0) {
                material = materialIndex("default");
            }
            Part& part = current();
            for (size_t i = 1; i + 1 < corners.size(); i++) {
                part.object.triangles.insert(part.object.triangles.end(),
                                             {corners[0], corners[i], corners[i + 1], material});
            }
        } else if (word == "o" || word == "g") {
            // A group name that repeats the object's name starts nothing.
            if (!result.parts.empty() && !result.parts.back().object.triangles.empty()) {
                newPart = true;
            }
        } else if (word == "usemtl") {
            material = materialIndex(restOf(words));
        } else if (word == "mtllib") {
            readMaterials(directoryOf(path) + restOf(words));
        }
    }
    std::vector<Part> kept;
    for (Part& part : result.parts) {
        if (!part.object.triangles.empty()) {
            kept.push_back(std::move(part));
        }
    }
    result.parts = std::move(kept);
    if (result.parts.empty()) {
        std::cerr << "objconvert: '" << path << "' has no faces" << std::endl;
        return false;
    }
    return true;
}

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

} // namespace

int main(int argc, char** argv) {
    std::vector<std::string> names;
    int binary = -1;
    for (int i = 1; i < argc; i++) {
        std::string arg = argv[i];
        if (arg == "--help" || arg == "-h") {
            std::cout << HELP;
            return 0;
        } else if (arg == "--text") {
            binary = 0;
        } else if (arg == "--binary") {
            binary = 1;
        } else if (arg.size() > 1 && arg[0] == '-') {
            std::cerr << "objconvert: unknown option '" << arg << "' (see --help)" << std::endl;
            return 2;
        } else {
            names.push_back(arg);
        }
    }
    if (names.size() != 2) {
        std::cerr << "Usage: objconvert [--text | --binary] input.obj output (see --help)"
                  << std::endl;
        return 2;
    }
    if (binary < 0) {
        binary = endsWith(names[1], ".kvlb") ? 1 : 0;
    }

    Converter converter;
    if (!converter.read(names[0])) {
        return 1;
    }
    KVL3dWriter writer;
    bool textures = false;
    for (const KVL3dWriter::MaterialRecord& m : converter.model().materials) {
        writer.addMaterial(m);
        textures = textures || !m.texture.empty();
    }
    for (const Part& part : converter.model().parts) {
        writer.addObject(part.object);
    }
    if (!(binary ? writer.writeBinary(names[1]) : writer.writeText(names[1]))) {
        std::cerr << "objconvert: cannot write '" << names[1] << "'" << std::endl;
        return 1;
    }

    std::cout << names[1] << (binary ? " (binary)" : " (text)") << ": " << writer.countObjects()
              << " object(s), " << writer.countMaterials() << " material(s), "
              << writer.countVertices() << " vertices, " << writer.countTriangles() << " triangles"
              << std::endl;
    if (binary && writer.countMaterials() > 1) {
        std::cerr << "objconvert: note: the player gives every object of a binary model the "
                     "first material"
                  << std::endl;
    }
    if (binary && textures) {
        std::cerr << "objconvert: note: the binary format keeps no textures" << std::endl;
    }
    return 0;
}
