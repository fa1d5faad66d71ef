// modelgen: writes the production's model, a (2, 3) torus knot tube in three
// coloured bands, in both model formats of the player.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

namespace {

const char* const HELP =
    "modelgen - writes the production's model in both model formats\n"
    "\n"
    "Usage: modelgen [--segments N] [--sides M] [--name NAME] [directory]\n"
    "\n"
    "  --segments N  steps along the knot (default 240, at least 3)\n"
    "  --sides M     steps around the tube (default 10, at least 3)\n"
    "  --name NAME   file name stem (default knot)\n"
    "  directory     where the files go (default resources/objects/)\n"
    "  --help        show this text\n"
    "\n"
    "The model is a (2, 3) torus knot: a tube of N x M quads, 2 x N x M\n"
    "triangles, about 3 units across in x and y, with its faces turned\n"
    "outwards. Its triangles fall into bands of three materials, copper,\n"
    "steel and ice, grouped by material. Two files are written:\n"
    "  NAME.kvlc  text format \"{KVLC01}\", one object in material mode multi\n"
    "  NAME.kvlb  binary format \"{KVLB01}\", the same object and materials; the\n"
    "             player gives a binary object the first material, copper\n"
    "The output is the same on every run.\n"
    "\n"
    "Example:\n"
    "  $ modelgen resources/objects/\n"
    "  resources/objects/knot.kvlc: 2400 vertices, 4800 triangles, 3 materials\n"
    "  resources/objects/knot.kvlb: 2400 vertices, 4800 triangles, 3 materials\n"
    "and in the script:  objects { knot = knot.kvlc; }\n";

struct Vec3 {
    double x;
    double y;
    double z;
};

Vec3 operator+(Vec3 a, Vec3 b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

Vec3 operator-(Vec3 a, Vec3 b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

Vec3 operator*(Vec3 a, double s) {
    return {a.x * s, a.y * s, a.z * s};
}

double dot(Vec3 a, Vec3 b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Vec3 cross(Vec3 a, Vec3 b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

Vec3 normalized(Vec3 a) {
    double length = std::sqrt(dot(a, a));
    return a * (1.0 / length);
}

const double PI = 3.14159265358979323846;

// The centre line of the tube.
Vec3 knot(double t) {
    const double p = 2.0;
    const double q = 3.0;
    double r = 1.0 + 0.45 * std::cos(q * t);
    return {r * std::cos(p * t), r * std::sin(p * t), 0.45 * std::sin(q * t)};
}

struct Material {
    const char* name;
    float diffuse[3];
    float ambient[3];
    float specular[3];
    float emissive[3];
};

const Material MATERIALS[3] = {
    {"copper", {0.85f, 0.45f, 0.2f}, {0.25f, 0.12f, 0.05f}, {1.0f, 0.8f, 0.6f}, {0, 0, 0}},
    {"steel", {0.55f, 0.6f, 0.7f}, {0.15f, 0.15f, 0.18f}, {1.0f, 1.0f, 1.0f}, {0, 0, 0}},
    {"ice", {0.3f, 0.75f, 1.0f}, {0.05f, 0.15f, 0.25f}, {0.8f, 0.9f, 1.0f}, {0.0f, 0.1f, 0.2f}},
};

struct Mesh {
    std::vector<float> positions;
    std::vector<float> us;
    std::vector<float> vs;
    // a, b, c and the material, grouped by material.
    std::vector<int> triangles;
};

Mesh makeKnot(int segments, int sides) {
    const double tube = 0.18;
    std::vector<Vec3> centre(segments);
    std::vector<Vec3> tangent(segments);
    for (int i = 0; i < segments; i++) {
        double t = 2.0 * PI * i / segments;
        centre[i] = knot(t);
        tangent[i] = normalized(knot(t + 1e-4) - knot(t - 1e-4));
    }
    // A frame carried along the curve without turning about the tangent;
    // the twist it has gathered on return is spread over the whole length
    // so that the tube closes on itself.
    std::vector<Vec3> normal(segments + 1);
    Vec3 seed = std::fabs(tangent[0].z) < 0.9 ? Vec3{0, 0, 1} : Vec3{1, 0, 0};
    normal[0] = normalized(seed - tangent[0] * dot(seed, tangent[0]));
    for (int i = 1; i <= segments; i++) {
        Vec3 t = tangent[i % segments];
        Vec3 n = normal[i - 1];
        normal[i] = normalized(n - t * dot(n, t));
    }
    Vec3 back = normal[segments];
    double twist = std::atan2(dot(cross(back, normal[0]), tangent[0]), dot(back, normal[0]));

    Mesh mesh;
    for (int i = 0; i < segments; i++) {
        double correction = twist * i / segments;
        Vec3 n = normal[i];
        Vec3 b = cross(tangent[i], n);
        Vec3 turned = n * std::cos(correction) + b * std::sin(correction);
        Vec3 binormal = cross(tangent[i], turned);
        for (int j = 0; j < sides; j++) {
            double a = 2.0 * PI * j / sides;
            Vec3 p = centre[i] + (turned * std::cos(a) + binormal * std::sin(a)) * tube;
            mesh.positions.push_back(static_cast<float>(p.x));
            mesh.positions.push_back(static_cast<float>(p.y));
            mesh.positions.push_back(static_cast<float>(p.z));
            mesh.us.push_back(static_cast<float>(i) / segments);
            mesh.vs.push_back(static_cast<float>(j) / sides);
        }
    }
    // Bands of a twelfth of the knot each, in the three materials in turn.
    int band = std::max(1, segments / 12);
    for (int material = 0; material < 3; material++) {
        for (int i = 0; i < segments; i++) {
            if ((i / band) % 3 != material) {
                continue;
            }
            for (int j = 0; j < sides; j++) {
                int a = i * sides + j;
                int b = i * sides + (j + 1) % sides;
                int c = ((i + 1) % segments) * sides + (j + 1) % sides;
                int d = ((i + 1) % segments) * sides + j;
                // Counter-clockwise seen from outside the tube.
                mesh.triangles.insert(mesh.triangles.end(), {a, b, c, material, a, c, d, material});
            }
        }
    }
    return mesh;
}

std::string number(float value) {
    char text[32];
    std::snprintf(text, sizeof(text), "%.7g", static_cast<double>(value));
    return text;
}

std::string colour(const float (&c)[3]) {
    return number(c[0]) + ", " + number(c[1]) + ", " + number(c[2]);
}

std::string textFormat(const Mesh& mesh) {
    std::ostringstream out;
    out << "{KVLC01}\n";
    for (const Material& m : MATERIALS) {
        out << "Material {\n";
        out << "  name = " << m.name << ";\n";
        out << "  diffuse = " << colour(m.diffuse) << ";\n";
        out << "  ambient = " << colour(m.ambient) << ";\n";
        out << "  specular = " << colour(m.specular) << ";\n";
        out << "  emissive = " << colour(m.emissive) << ";\n";
        out << "}\n";
    }
    out << "Object {\n";
    out << "  materialmode = multi;\n";
    out << "  position = 0 0 0;\n";
    out << "  pivot = 0 0 0;\n";
    out << "  vertex =";
    for (size_t i = 0; i < mesh.us.size(); i++) {
        out << (i == 0 ? " " : ",\n    ") << number(mesh.positions[3 * i]) << ", "
            << number(mesh.positions[3 * i + 1]) << ", " << number(mesh.positions[3 * i + 2])
            << ", " << number(mesh.us[i]) << ", " << number(mesh.vs[i]);
    }
    out << ";\n";
    out << "  polygons =";
    for (size_t i = 0; i + 3 < mesh.triangles.size(); i += 4) {
        out << (i == 0 ? " " : ",\n    ") << mesh.triangles[i] << ", " << mesh.triangles[i + 1]
            << ", " << mesh.triangles[i + 2] << ", " << mesh.triangles[i + 3];
    }
    out << ";\n";
    out << "}\n";
    return out.str();
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

void putColour(std::string& out, const float (&c)[3]) {
    for (float value : c) {
        putFloat(out, value);
    }
    putFloat(out, 1.0f);
}

std::string binaryFormat(const Mesh& mesh) {
    std::string out = "{KVLB01}";
    putInt(out, 3);
    for (const Material& m : MATERIALS) {
        out += m.name;
        out += '\0';
        putColour(out, m.ambient);
        putColour(out, m.diffuse);
        putColour(out, m.specular);
        putColour(out, m.emissive);
        putFloat(out, 10.0f);
    }
    putInt(out, 1);
    putInt(out, static_cast<int32_t>(mesh.us.size()));
    for (size_t i = 0; i < mesh.us.size(); i++) {
        putFloat(out, mesh.positions[3 * i]);
        putFloat(out, mesh.positions[3 * i + 1]);
        putFloat(out, mesh.positions[3 * i + 2]);
        putFloat(out, mesh.us[i]);
        putFloat(out, mesh.vs[i]);
    }
    putInt(out, static_cast<int32_t>(mesh.triangles.size() / 4));
    for (size_t i = 0; i + 3 < mesh.triangles.size(); i += 4) {
        putInt(out, mesh.triangles[i]);
        putInt(out, mesh.triangles[i + 1]);
        putInt(out, mesh.triangles[i + 2]);
    }
    return out;
}

bool save(const std::string& path, const std::string& bytes, const Mesh& mesh) {
    std::ofstream out(path, std::ios::binary);
    out << bytes;
    out.close();
    if (!out) {
        std::cerr << "modelgen: cannot write '" << path << "'" << std::endl;
        return false;
    }
    std::cout << path << ": " << mesh.us.size() << " vertices, " << mesh.triangles.size() / 4
              << " triangles, 3 materials" << std::endl;
    return true;
}

bool readCount(int argc, char** argv, int& i, int& value) {
    if (i + 1 >= argc) {
        return false;
    }
    char* end = nullptr;
    long number = std::strtol(argv[++i], &end, 10);
    if (*end != '\0' || number < 3 || number > 4096) {
        return false;
    }
    value = static_cast<int>(number);
    return true;
}

} // namespace

int main(int argc, char** argv) {
    int segments = 240;
    int sides = 10;
    std::string name = "knot";
    std::string directory = "resources/objects/";
    for (int i = 1; i < argc; i++) {
        std::string arg = argv[i];
        if (arg == "--help" || arg == "-h") {
            std::cout << HELP;
            return 0;
        } else if (arg == "--segments" || arg == "--sides") {
            if (!readCount(argc, argv, i, arg == "--segments" ? segments : sides)) {
                std::cerr << "modelgen: " << arg << " needs a whole number from 3 to 4096"
                          << std::endl;
                return 2;
            }
        } else if (arg == "--name" && i + 1 < argc) {
            name = argv[++i];
        } else if (!arg.empty() && arg[0] == '-') {
            std::cerr << "modelgen: unknown option '" << arg << "' (see --help)" << std::endl;
            return 2;
        } else {
            directory = arg;
        }
    }
    if (!directory.empty() && directory.back() != '/') {
        directory += '/';
    }
    Mesh mesh = makeKnot(segments, sides);
    bool written = save(directory + name + ".kvlc", textFormat(mesh), mesh) &&
                   save(directory + name + ".kvlb", binaryFormat(mesh), mesh);
    return written ? 0 : 1;
}
