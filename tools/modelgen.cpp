// modelgen: writes the production's model, a (2, 3) torus knot tube in three
// coloured bands, in both model formats of the player.

#include "objects/KVL3dWriter.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iostream>
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

// Binary files keep the shine, text files drop it.
const KVL3dWriter::MaterialRecord MATERIALS[3] = {
    {"copper",
     {0.85f, 0.45f, 0.2f},
     {0.25f, 0.12f, 0.05f},
     {1.0f, 0.8f, 0.6f},
     {0, 0, 0},
     10.0f,
     ""},
    {"steel", {0.55f, 0.6f, 0.7f}, {0.15f, 0.15f, 0.18f}, {1.0f, 1.0f, 1.0f}, {0, 0, 0}, 10.0f, ""},
    {"ice",
     {0.3f, 0.75f, 1.0f},
     {0.05f, 0.15f, 0.25f},
     {0.8f, 0.9f, 1.0f},
     {0.0f, 0.1f, 0.2f},
     10.0f,
     ""},
};

KVL3dWriter::ObjectRecord makeKnot(int segments, int sides) {
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

    KVL3dWriter::ObjectRecord mesh;
    for (int i = 0; i < segments; i++) {
        double correction = twist * i / segments;
        Vec3 n = normal[i];
        Vec3 b = cross(tangent[i], n);
        Vec3 turned = n * std::cos(correction) + b * std::sin(correction);
        Vec3 binormal = cross(tangent[i], turned);
        for (int j = 0; j < sides; j++) {
            double a = 2.0 * PI * j / sides;
            Vec3 p = centre[i] + (turned * std::cos(a) + binormal * std::sin(a)) * tube;
            mesh.vertices.insert(mesh.vertices.end(),
                                 {static_cast<float>(p.x), static_cast<float>(p.y),
                                  static_cast<float>(p.z), static_cast<float>(i) / segments,
                                  static_cast<float>(j) / sides});
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

bool save(const KVL3dWriter& writer, const std::string& path, bool binary) {
    if (!(binary ? writer.writeBinary(path) : writer.writeText(path))) {
        std::cerr << "modelgen: cannot write '" << path << "'" << std::endl;
        return false;
    }
    std::cout << path << ": " << writer.countVertices() << " vertices, " << writer.countTriangles()
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
    KVL3dWriter writer;
    for (const KVL3dWriter::MaterialRecord& material : MATERIALS) {
        writer.addMaterial(material);
    }
    writer.addObject(makeKnot(segments, sides));
    bool written = save(writer, directory + name + ".kvlc", false) &&
                   save(writer, directory + name + ".kvlb", true);
    return written ? 0 : 1;
}
