#include "runtime/ResourceLoader.h"

#include "graphics/Texture.h"
#include "objects/KVL3dWriter.h"
#include "objects/Material.h"
#include "objects/O3d.h"
#include "objects/O3dScene.h"
#include "runtime/DataObjectPool.h"
#include "runtime/DataTexturePool.h"
#include "runtime/KVLDemosys.h"
#include "runtime/ProgressBar.h"
#include "support/LoaderFixture.h"
#include "support/PlayerProcess.h"
#include "support/PngWriter.h"
#include "support/ProductionScript.h"
#include "support/StdoutCapture.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

// The objects block read by the loader from a script in a directory of its
// own, the way the player reads it from its working directory.

namespace {

const std::string SQUARE = "{KVLC01}\n"
                           "Material { name = grey; diffuse = 0.5, 0.5, 0.5; }\n"
                           "Object { materialmode = single; material = 0;\n"
                           "vertex = -1,-1,0,0,0, 1,-1,0,1,0, 1,1,0,1,1, -1,1,0,0,1;\n"
                           "polygons = 0,1,2, 0,2,3; }\n";

std::string binaryTriangle() {
    KVL3dWriter model;
    model.addObject({{0, 0, 0, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1}, {0, 1, 2, 0}});
    return model.toBinary();
}

std::string script(const std::string& blocks, const std::string& object = "resources/objects/") {
    ProductionScript production;
    production.paths = "definition = resources/definitions/; misc = resources/misc/; "
                       "gfx = resources/graphics/; object = " +
                       object + ";";
    production.blocks = blocks;
    return production.text();
}

std::string pointerText(const void* pointer) {
    std::ostringstream out;
    out << pointer;
    return out.str();
}

} // namespace

class ObjectBlock : public LoaderFixture {
protected:
    // Script, screen and the loader's data blocks; the lines of loadDataFiles
    // from the objects header up to the animation header.
    std::vector<std::string> load(const std::string& text) {
        all = splitLines(loadDataFiles(text));
        auto first = std::find(all.begin(), all.end(), "[Loading 3D Objects]");
        auto last = std::find(first, all.end(), "[Loading Animation Data]");
        EXPECT_NE(all.end(), first);
        return std::vector<std::string>(first, last);
    }

    std::vector<std::string> all;
};

TEST_F(ObjectBlock, ScriptWithoutObjectAndAnimationBlocksPassesBothHeadersWithTheirLines) {
    std::vector<std::string> lines = load(script(""));
    EXPECT_TRUE(result);
    EXPECT_TRUE(loader.isValid());
    EXPECT_EQ((std::vector<std::string>{"[Loading 3D Objects]", "No objects"}), lines);
    auto animation = std::find(all.begin(), all.end(), "[Loading Animation Data]");
    ASSERT_NE(all.end(), animation);
    ASSERT_NE(all.end(), animation + 1);
    EXPECT_EQ("No animation data", *(animation + 1));
    EXPECT_EQ(0, KVLDemosys::objectPool->size());
    EXPECT_EQ(ticksBefore, ticksAfter);
}

TEST_F(ObjectBlock, EmptyObjectsGroupGivesNoLineBeyondTheHeader) {
    std::vector<std::string> lines = load(script("objects { ; }\n"));
    EXPECT_TRUE(result);
    EXPECT_EQ((std::vector<std::string>{"[Loading 3D Objects]"}), lines);
    EXPECT_EQ(0, KVLDemosys::objectPool->size());
    EXPECT_EQ(ticksBefore, ticksAfter);
}

TEST_F(ObjectBlock, EachEntryLoadsFromTheObjectPathIntoThePoolUnderItsName) {
    directory.write("resources/objects/square.kvlc", SQUARE);
    directory.write("resources/objects/parts/triangle.kvlb", binaryTriangle());
    std::vector<std::string> lines =
        load(script("objects { square = square.kvlc; triangle = parts/triangle.kvlb; }\n"));
    EXPECT_TRUE(result) << loader.getErrorMessage();
    EXPECT_TRUE(loader.isValid());
    EXPECT_EQ(2, KVLDemosys::objectPool->size());
    O3dScene* square = KVLDemosys::objectPool->getObject("square");
    O3dScene* triangle = KVLDemosys::objectPool->getObject("triangle");
    ASSERT_NE(nullptr, square);
    ASSERT_NE(nullptr, triangle);
    EXPECT_EQ(2, square->countPolygons());
    EXPECT_EQ("grey", square->getObject(0)->getMaterial()->getName());
    EXPECT_EQ(1, triangle->countPolygons());
    EXPECT_EQ((std::vector<std::string>{
                  "[Loading 3D Objects]",
                  "Loading : 'resources/objects/square.kvlc'",
                  "ObjectParser::ObjectParser()",
                  "Header = '{KVLC01}'",
                  "Filetype = KVL_ASCII_01",
                  "ObjectParser::ObjectParser() - END",
                  "ObjectParser::parseKVL()",
                  "ObjectParser::parseKVL_01() returning " + pointerText(square),
                  "Loading : 'resources/objects/parts/triangle.kvlb'",
                  "ObjectParser::ObjectParser()",
                  "Header = '{KVLB01}'",
                  "Filetype = KVL_BINARY_01",
                  "ObjectParser::ObjectParser() - END",
                  "ObjectParser::loadKVL()",
                  "Reading binary kvl file",
                  "Done!",
                  "ObjectParser::loadKVL_01() returning " + pointerText(triangle),
              }),
              lines);
}

TEST_F(ObjectBlock, EachObjectFileGivesOneTickOfTheBar) {
    directory.write("resources/objects/square.kvlc", SQUARE);
    directory.write("resources/objects/triangle.kvlb", binaryTriangle());
    load(script("objects { a = square.kvlc; b = triangle.kvlb; c = square.kvlc; }\n"));
    EXPECT_TRUE(result);
    EXPECT_EQ(3, ticksAfter - ticksBefore);
    EXPECT_EQ(3 + 4, loader.getProgressBar()->getMaxTicks());
    // The same file under two names is read twice: two scenes.
    EXPECT_NE(KVLDemosys::objectPool->getObject("a"), KVLDemosys::objectPool->getObject("c"));
}

TEST_F(ObjectBlock, FilesAreLookedUpUnderTheObjectPathOfTheScript) {
    directory.write("models/square.kvlc", SQUARE);
    directory.write("resources/objects/square.kvlb", binaryTriangle());
    std::vector<std::string> lines = load(script("objects { square = square.kvlc; }\n", "models/"));
    EXPECT_TRUE(result) << loader.getErrorMessage();
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ("Loading : 'models/square.kvlc'", lines[1]);
    ASSERT_NE(nullptr, KVLDemosys::objectPool->getObject("square"));
    EXPECT_EQ(2, KVLDemosys::objectPool->getObject("square")->countPolygons());
}

TEST_F(ObjectBlock, MissingFileStopsLoadingWithTheReadersNotFoundMessage) {
    directory.write("resources/objects/square.kvlc", SQUARE);
    std::vector<std::string> lines =
        load(script("objects { a = square.kvlc; b = lost.kvlc; c = square.kvlc; }\n"));
    EXPECT_FALSE(result);
    EXPECT_FALSE(loader.isValid());
    EXPECT_EQ("ObjectParser: 'resources/objects/lost.kvlc' not found!", loader.getErrorMessage());
    EXPECT_EQ(1, ticksAfter - ticksBefore);
    EXPECT_TRUE(KVLDemosys::objectPool->exists("a"));
    EXPECT_FALSE(KVLDemosys::objectPool->exists("b"));
    EXPECT_FALSE(KVLDemosys::objectPool->exists("c"));
    // Loading ends with the objects block: the animation block is not read.
    EXPECT_EQ(all.end(), std::find(all.begin(), all.end(), "[Loading Animation Data]"));
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ("ObjectParser::ObjectParser() - END", lines.back());
}

TEST_F(ObjectBlock, FileWithAnUnknownHeaderStopsLoadingWithUnsupportedFormat) {
    directory.write("resources/objects/model.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    load(script("objects { model = model.obj; }\n"));
    EXPECT_FALSE(result);
    EXPECT_FALSE(loader.isValid());
    EXPECT_EQ("Unsupported format\nObject file : 'resources/objects/model.obj'\nUnknown header : "
              "resources/objects/model.obj\n",
              loader.getErrorMessage());
    EXPECT_FALSE(KVLDemosys::objectPool->exists("model"));
    EXPECT_EQ(ticksBefore, ticksAfter);
}

TEST_F(ObjectBlock, TextureThatDoesNotLoadStopsLoadingWithTheReadersMessage) {
    directory.write("resources/objects/model.kvlc",
                    "{KVLC01}\nMaterial { texture1 = lost.png; }\n"
                    "Object { vertex = 0,0,0,0,0, 1,0,0,0,0, 0,1,0,0,0; polygons = 0,1,2; }\n");
    std::vector<std::string> lines = load(script("objects { model = model.kvlc; }\n"));
    EXPECT_FALSE(result);
    EXPECT_FALSE(loader.isValid());
    EXPECT_EQ("Error loading texture!\nTexture file : 'resources/graphics/lost.png'\n"
              "Object : 'resources/objects/model.kvlc'\n",
              loader.getErrorMessage());
    EXPECT_FALSE(KVLDemosys::objectPool->exists("model"));
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ("Error", lines.back());
}

TEST_F(ObjectBlock, TexturesOfAModelGoIntoTheTexturePoolUnderTheirNames) {
    std::vector<uint8_t> pixels(2 * 2 * 3, 128);
    std::filesystem::create_directories(directory.file("resources/graphics"));
    PngWriter::save(directory.file("resources/graphics/skin.png"), PngWriter::rgb(2, 2, pixels));
    directory.write("resources/objects/model.kvlc",
                    "{KVLC01}\nMaterial { texture1 = skin.png; }\n"
                    "Object { materialmode = single; material = 0;\n"
                    "vertex = 0,0,0,0,0, 1,0,0,1,0, 0,1,0,0,1; polygons = 0,1,2; }\n");
    load(script("objects { model = model.kvlc; }\n"));
    EXPECT_TRUE(result) << loader.getErrorMessage();
    ASSERT_TRUE(KVLDemosys::texturePool->exist("skin.png"));
    O3dScene* model = KVLDemosys::objectPool->getObject("model");
    ASSERT_NE(nullptr, model);
    EXPECT_EQ(KVLDemosys::texturePool->getTexture("skin.png"),
              model->getMaterial(0)->getTexture1());
}

TEST_F(ObjectBlock, ObjectsLoadedBeforeAFailureStayInThePoolAndTheReportListsThem) {
    directory.write("resources/objects/square.kvlc", SQUARE);
    directory.write("resources/objects/bad.kvlc", "{KVLX01}");
    load(script("objects { a_square = square.kvlc; b_bad = bad.kvlc; }\n"));
    EXPECT_FALSE(result);
    ASSERT_TRUE(KVLDemosys::objectPool->exists("a_square"));
    std::string report = logOf([this] { loader.print(); });
    EXPECT_NE(std::string::npos,
              report.find("DataObjectPool {\n    num3dObjects = 1\n    a_square = O3dScene{ "
                          "objects in scene = 1  polygons = 2  vertices = 4 }\n}\n"))
        << report;
}

TEST_F(ObjectBlock, ProductionModelsLoadThroughTheBlockInBothFormats) {
    directory.copyFromSource("resources/objects");
    load(script("objects { knot = knot.kvlc; knotb = knot.kvlb; }\n"));
    EXPECT_TRUE(result) << loader.getErrorMessage();
    O3dScene* text = KVLDemosys::objectPool->getObject("knot");
    O3dScene* binary = KVLDemosys::objectPool->getObject("knotb");
    ASSERT_NE(nullptr, text);
    ASSERT_NE(nullptr, binary);
    EXPECT_GT(text->countPolygons(), 1000);
    EXPECT_EQ(text->countPolygons(), binary->countPolygons());
    EXPECT_EQ(text->countVertices(), binary->countVertices());
    EXPECT_GE(text->countMaterials(), 2);
    EXPECT_EQ(text->countMaterials(), binary->countMaterials());
}
