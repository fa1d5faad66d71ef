#include "objects/O3dScene.h"
#include "objects/ObjectParser.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

// Loading one model of 100,000 triangles in each of the two model formats,
// the way the loader reads the objects block: reader made, file parsed,
// normals computed.

namespace {

// 250 by 200 quads of a gently waved sheet: 100,000 triangles on 50,451
// vertices.
const int COLUMNS = 250;
const int ROWS = 200;

class NullBuffer : public std::streambuf {
protected:
    int overflow(int c) override { return c; }
    std::streamsize xsputn(const char*, std::streamsize count) override { return count; }
};

// Swallows the readers' log while they are measured.
class QuietStreams {
public:
    QuietStreams() : out(std::cout.rdbuf(&sink)) {}
    ~QuietStreams() { std::cout.rdbuf(out); }
    QuietStreams(const QuietStreams&) = delete;
    QuietStreams& operator=(const QuietStreams&) = delete;

private:
    NullBuffer sink;
    std::streambuf* out;
};

struct Sheet {
    std::vector<float> vertices; // x, y, z, u, v
    std::vector<int> indices;
};

Sheet makeSheet() {
    Sheet sheet;
    for (int row = 0; row <= ROWS; row++) {
        for (int column = 0; column <= COLUMNS; column++) {
            float u = static_cast<float>(column) / COLUMNS;
            float v = static_cast<float>(row) / ROWS;
            float z = 0.1f * static_cast<float>((column * 7 + row * 3) % 11) / 11.0f;
            sheet.vertices.insert(sheet.vertices.end(), {u * 2 - 1, v * 2 - 1, z, u, v});
        }
    }
    for (int row = 0; row < ROWS; row++) {
        for (int column = 0; column < COLUMNS; column++) {
            int a = row * (COLUMNS + 1) + column;
            int b = a + 1;
            int c = a + COLUMNS + 2;
            int d = a + COLUMNS + 1;
            sheet.indices.insert(sheet.indices.end(), {a, b, c, a, c, d});
        }
    }
    return sheet;
}

std::string textModel(const Sheet& sheet) {
    std::ostringstream out;
    out << "{KVLC01}\nMaterial {\n  name = sheet;\n  diffuse = 0.8, 0.8, 0.9;\n}\n";
    out << "Object {\n  materialmode = single;\n  material = 0;\n  position = 0 0 0;\n"
        << "  pivot = 0 0 0;\n  vertex =";
    char number[32];
    for (size_t i = 0; i < sheet.vertices.size(); i++) {
        std::snprintf(number, sizeof(number), "%.7g", static_cast<double>(sheet.vertices[i]));
        out << (i == 0 ? " " : (i % 5 == 0 ? ",\n    " : ", ")) << number;
    }
    out << ";\n  polygons =";
    for (size_t i = 0; i < sheet.indices.size(); i++) {
        out << (i == 0 ? " " : (i % 3 == 0 ? ",\n    " : ", ")) << sheet.indices[i];
    }
    out << ";\n}\n";
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

std::string binaryModel(const Sheet& sheet) {
    std::string out = "{KVLB01}";
    putInt(out, 1);
    out += std::string("sheet") + '\0';
    const float colours[16] = {0.2f, 0.2f, 0.2f, 1, 0.8f, 0.8f, 0.9f, 1,
                               0.5f, 0.5f, 0.5f, 1, 0,    0,    0,    1};
    for (float c : colours) {
        putFloat(out, c);
    }
    putFloat(out, 10.0f);
    putInt(out, 1);
    putInt(out, static_cast<int32_t>(sheet.vertices.size() / 5));
    for (float value : sheet.vertices) {
        putFloat(out, value);
    }
    putInt(out, static_cast<int32_t>(sheet.indices.size() / 3));
    for (int index : sheet.indices) {
        putInt(out, index);
    }
    return out;
}

// The two files, written once for the whole run.
class Models {
public:
    Models() {
        directory = (std::filesystem::temp_directory_path() / "kvl-object-bench").string();
        std::filesystem::create_directories(directory);
        Sheet sheet = makeSheet();
        text = directory + "/sheet.kvlc";
        binary = directory + "/sheet.kvlb";
        std::ofstream(text, std::ios::binary) << textModel(sheet);
        std::ofstream(binary, std::ios::binary) << binaryModel(sheet);
    }
    ~Models() {
        std::error_code ignored;
        std::filesystem::remove_all(directory, ignored);
    }
    Models(const Models&) = delete;
    Models& operator=(const Models&) = delete;

    std::string directory;
    std::string text;
    std::string binary;
};

const Models& models() {
    static Models files;
    return files;
}

void loadModel(benchmark::State& state, const std::string& path) {
    QuietStreams quiet;
    int triangles = 0;
    for (auto _ : state) {
        ObjectParser parser(path);
        O3dScene* scene = parser.parse();
        state.PauseTiming();
        if (scene == nullptr) {
            state.SkipWithError("model did not load");
            break;
        }
        triangles = scene->countPolygons();
        delete scene;
        state.ResumeTiming();
    }
    state.counters["triangles"] = triangles;
    state.counters["bytes"] = static_cast<double>(std::filesystem::file_size(path));
}

void BM_LoadTextModel100kTriangles(benchmark::State& state) {
    loadModel(state, models().text);
}

void BM_LoadBinaryModel100kTriangles(benchmark::State& state) {
    loadModel(state, models().binary);
}

} // namespace

BENCHMARK(BM_LoadTextModel100kTriangles)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadBinaryModel100kTriangles)->Unit(benchmark::kMillisecond);
