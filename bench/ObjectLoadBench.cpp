#include "bench/QuietStreams.h"
#include "objects/KVL3dWriter.h"
#include "objects/O3dScene.h"
#include "objects/ObjectParser.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

// Loading one model of 100,000 triangles in each of the two model formats,
// the way the loader reads the objects block: reader made, file parsed,
// normals computed.

namespace {

// 250 by 200 quads of a gently waved sheet: 100,000 triangles on 50,451
// vertices.
const int COLUMNS = 250;
const int ROWS = 200;

KVL3dWriter sheetModel() {
    KVL3dWriter::ObjectRecord sheet;
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
            sheet.triangles.insert(sheet.triangles.end(), {a, b, c, 0, a, c, d, 0});
        }
    }
    KVL3dWriter model;
    model.addMaterial({"sheet",
                       {0.8f, 0.8f, 0.9f},
                       {0.2f, 0.2f, 0.2f},
                       {0.5f, 0.5f, 0.5f},
                       {0, 0, 0},
                       10.0f,
                       ""});
    model.addObject(sheet);
    return model;
}

// The two files, written once for the whole run.
class Models {
public:
    Models() {
        directory = (std::filesystem::temp_directory_path() / "kvl-object-bench").string();
        std::filesystem::create_directories(directory);
        KVL3dWriter sheet = sheetModel();
        text = directory + "/sheet.kvlc";
        binary = directory + "/sheet.kvlb";
        sheet.writeText(text);
        sheet.writeBinary(binary);
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
