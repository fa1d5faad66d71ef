#include "objects/ObjectParser.h"

#include "ModelBytes.h"
#include "objects/Material.h"
#include "objects/O3d.h"
#include "objects/O3dScene.h"
#include "runtime/Data.h"
#include "runtime/DataTexturePool.h"
#include "runtime/KVLDemosys.h"
#include "script/ParameterGroup.h"
#include "script/Parameters.h"
#include "support/PlayerProcess.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

// The front end of the model readers, on files in a directory of their own.

namespace {

template <class Step> std::vector<std::string> linesOf(Step step) {
    testing::internal::CaptureStdout();
    step();
    return splitLines(testing::internal::GetCapturedStdout());
}

std::string pointerText(const void* pointer) {
    std::ostringstream out;
    out << pointer;
    return out.str();
}

// One material, one object of two triangles.
std::string binaryModel() {
    ModelBytes b;
    b.i32(1).name("grey");
    b.colour(0.2f, 0.2f, 0.2f, 1.0f).colour(0.5f, 0.5f, 0.5f, 1.0f);
    b.colour(1.0f, 1.0f, 1.0f, 1.0f).colour(0.0f, 0.0f, 0.0f, 1.0f).f32(10.0f);
    b.i32(1).i32(4);
    const float corners[4][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
    for (const auto& c : corners) {
        b.f32(c[0]).f32(c[1]).f32(0.0f).f32(c[0] * 0.5f + 0.5f).f32(c[1] * 0.5f + 0.5f);
    }
    b.i32(2).i32(0).i32(1).i32(2).i32(0).i32(2).i32(3);
    return b.data;
}

// Two materials and two objects, the second with per-polygon materials.
const std::string TEXT_MODEL = "{KVLC01}\n"
                               "Material { name = red; diffuse = 1, 0, 0; }\n"
                               "Material { name = blue; diffuse = 0, 0, 1; }\n"
                               "Object { materialmode = single; material = 1;\n"
                               "  position = 1 2 3; pivot = 0 0 0;\n"
                               "  vertex = 0,0,0,0,0, 1,0,0,1,0, 0,1,0,0,1;\n"
                               "  polygons = 0,1,2; }\n"
                               "Object { materialmode = multi;\n"
                               "  vertex = 0,0,0,0,0, 1,0,0,1,0, 1,1,0,1,1, 0,1,0,0,1;\n"
                               "  polygons = 0,1,2,0, 0,2,3,1; }\n";

} // namespace

class ObjectParserTest : public ::testing::Test {
protected:
    void SetUp() override { KVLDemosys::resetState(); }
    void TearDown() override { KVLDemosys::resetState(); }

    TempDir directory;
};

TEST_F(ObjectParserTest, TextHeaderIsLoggedAndGivesTheAsciiFiletype) {
    directory.write("m.kvlc", "{KVLC01}\n");
    std::string path = directory.file("m.kvlc");
    std::vector<std::string> lines;
    lines = linesOf([&] {
        ObjectParser parser(path);
        EXPECT_TRUE(parser.isValid());
        EXPECT_EQ("KVL_ASCII_01", parser.getFiletype());
        EXPECT_EQ("ObjectParser : unknown", parser.getErrorMessage());
    });
    EXPECT_EQ(
        (std::vector<std::string>{"ObjectParser::ObjectParser()", "Header = '{KVLC01}'",
                                  "Filetype = KVL_ASCII_01", "ObjectParser::ObjectParser() - END"}),
        lines);
}

TEST_F(ObjectParserTest, BinaryHeaderGivesTheBinaryFiletype) {
    directory.write("m.kvlb", binaryModel());
    std::string path = directory.file("m.kvlb");
    std::vector<std::string> lines = linesOf([&] {
        ObjectParser parser(path);
        EXPECT_TRUE(parser.isValid());
        EXPECT_EQ("KVL_BINARY_01", parser.getFiletype());
    });
    EXPECT_EQ((std::vector<std::string>{"ObjectParser::ObjectParser()", "Header = '{KVLB01}'",
                                        "Filetype = KVL_BINARY_01",
                                        "ObjectParser::ObjectParser() - END"}),
              lines);
}

TEST_F(ObjectParserTest, MissingFileKeepsTheParserInvalidWithTheNotFoundMessage) {
    std::string path = directory.file("absent.kvlc");
    std::vector<std::string> lines = linesOf([&] {
        ObjectParser parser(path);
        EXPECT_FALSE(parser.isValid());
        EXPECT_EQ("ObjectParser: '" + path + "' not found!", parser.getErrorMessage());
        EXPECT_EQ("", parser.getFiletype());
        EXPECT_EQ(nullptr, parser.parse());
        EXPECT_FALSE(parser.isValid());
        EXPECT_EQ("ObjectParser: '" + path + "' not found!", parser.getErrorMessage());
    });
    EXPECT_EQ((std::vector<std::string>{"ObjectParser::ObjectParser()",
                                        "ObjectParser: '" + path + "' not found!", "Header = ''",
                                        "Filetype = ", "ObjectParser::ObjectParser() - END",
                                        "ObjectParser::parse() - NULL"}),
              lines);
}

TEST_F(ObjectParserTest, UnknownHeaderGivesUnsupportedFormatNamingTheFileInPlaceOfTheHeader) {
    directory.write("m.obj", "# Wavefront\nv 0 0 0\n");
    std::string path = directory.file("m.obj");
    std::string expected =
        "Unsupported format\nObject file : '" + path + "'\nUnknown header : " + path + "\n";
    std::vector<std::string> lines = linesOf([&] {
        ObjectParser parser(path);
        EXPECT_FALSE(parser.isValid());
        EXPECT_EQ(expected, parser.getErrorMessage());
        EXPECT_EQ(nullptr, parser.parse());
    });
    EXPECT_EQ((std::vector<std::string>{"ObjectParser::ObjectParser()", "Header = '# Wavefr'",
                                        "Unsupported format", "Object file : '" + path + "'",
                                        "Unknown header : " + path, "",
                                        "Filetype = ", "ObjectParser::ObjectParser() - END",
                                        "ObjectParser::parse() - NULL"}),
              lines);
}

TEST_F(ObjectParserTest, HeaderIsComparedWithItsCase) {
    directory.write("m.kvlc", "{kvlc01}\nObject { vertex = 0,0,0,0,0; }\n");
    std::string path = directory.file("m.kvlc");
    linesOf([&] {
        ObjectParser parser(path);
        EXPECT_FALSE(parser.isValid());
        EXPECT_EQ(0u, parser.getErrorMessage().find("Unsupported format\n"));
    });
}

TEST_F(ObjectParserTest, FileShorterThanAHeaderIsUnsupported) {
    directory.write("m.kvlb", "{KVLB0");
    std::string path = directory.file("m.kvlb");
    std::vector<std::string> lines = linesOf([&] {
        ObjectParser parser(path);
        EXPECT_FALSE(parser.isValid());
        EXPECT_EQ(nullptr, parser.parse());
    });
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ("Header = '{KVLB0'", lines[1]);
}

TEST_F(ObjectParserTest, EmptyFileIsFoundButUnsupported) {
    directory.write("m.kvlc", "");
    std::string path = directory.file("m.kvlc");
    linesOf([&] {
        ObjectParser parser(path);
        EXPECT_FALSE(parser.isValid());
        EXPECT_EQ(0u, parser.getErrorMessage().find("Unsupported format\n"));
    });
}

TEST_F(ObjectParserTest, TextFileParsesThroughTheTextReaderAndLogsTheScenePointer) {
    directory.write("m.kvlc", TEXT_MODEL);
    std::string path = directory.file("m.kvlc");
    O3dScene* scene = nullptr;
    std::vector<std::string> lines = linesOf([&] {
        ObjectParser parser(path);
        scene = parser.parse();
        EXPECT_TRUE(parser.isValid());
    });
    ASSERT_NE(nullptr, scene);
    EXPECT_EQ((std::vector<std::string>{
                  "ObjectParser::ObjectParser()", "Header = '{KVLC01}'", "Filetype = KVL_ASCII_01",
                  "ObjectParser::ObjectParser() - END", "ObjectParser::parseKVL()",
                  "ObjectParser::parseKVL_01() returning " + pointerText(scene)}),
              lines);
    EXPECT_EQ(2, scene->countObjects());
    EXPECT_EQ(2, scene->countMaterials());
    EXPECT_EQ(3, scene->countPolygons());
    EXPECT_EQ(7, scene->countVertices());
    EXPECT_EQ("blue", scene->getObject(0)->getMaterial()->getName());
    EXPECT_TRUE(scene->getObject(1)->hasPolygonMaterial());
    linesOf([&] { delete scene; });
}

TEST_F(ObjectParserTest, BinaryFileParsesThroughTheBinaryReaderAndLogsTheScenePointer) {
    directory.write("m.kvlb", binaryModel());
    std::string path = directory.file("m.kvlb");
    O3dScene* scene = nullptr;
    std::vector<std::string> lines = linesOf([&] {
        ObjectParser parser(path);
        scene = parser.parse();
        EXPECT_TRUE(parser.isValid());
    });
    ASSERT_NE(nullptr, scene);
    EXPECT_EQ((std::vector<std::string>{
                  "ObjectParser::ObjectParser()", "Header = '{KVLB01}'", "Filetype = KVL_BINARY_01",
                  "ObjectParser::ObjectParser() - END", "ObjectParser::loadKVL()",
                  "Reading binary kvl file", "MatName : grey", "Done!",
                  "ObjectParser::loadKVL_01() returning " + pointerText(scene)}),
              lines);
    EXPECT_EQ(1, scene->countObjects());
    EXPECT_EQ(2, scene->countPolygons());
    EXPECT_EQ(4, scene->countVertices());
    linesOf([&] { delete scene; });
}

TEST_F(ObjectParserTest, TextureThatDoesNotLoadMakesParseReturnNullWithTheReadersMessage) {
    KVLDemosys::parameters = new Parameters();
    ParameterGroup* paths = new ParameterGroup("paths");
    paths->addParameter("gfx", "pictures/");
    KVLDemosys::parameters->addGroup("paths", paths);
    KVLDemosys::data = new Data();
    DataTexturePool* pool = new DataTexturePool();
    KVLDemosys::data->addData("texturePool", pool);
    directory.write("m.kvlc", "{KVLC01}\nMaterial { name = m; texture1 = lost.png; }\n"
                              "Object { materialmode = single; material = 0;\n"
                              " vertex = 0,0,0,0,0, 1,0,0,1,0, 0,1,0,0,1; polygons = 0,1,2; }\n");
    std::string path = directory.file("m.kvlc");
    std::string expected = "Error loading texture!\nTexture file : 'pictures/lost.png'\n"
                           "Object : '" +
                           path + "'\n";
    std::vector<std::string> lines = linesOf([&] {
        ObjectParser parser(path);
        EXPECT_EQ(nullptr, parser.parse());
        EXPECT_FALSE(parser.isValid());
        EXPECT_EQ(expected, parser.getErrorMessage());
    });
    EXPECT_EQ((std::vector<std::string>{
                  "ObjectParser::ObjectParser()", "Header = '{KVLC01}'", "Filetype = KVL_ASCII_01",
                  "ObjectParser::ObjectParser() - END", "ObjectParser::parseKVL()",
                  "Error loading texture!", "Texture file : 'pictures/lost.png'",
                  "Object : '" + path + "'", "", "Error"}),
              lines);
    EXPECT_EQ(0, pool->size());
    linesOf([] { delete KVLDemosys::data; });
    delete KVLDemosys::parameters;
}

TEST_F(ObjectParserTest, SecondParseAfterAFailedOneReturnsNullWithoutReadingAgain) {
    KVLDemosys::parameters = new Parameters();
    ParameterGroup* paths = new ParameterGroup("paths");
    paths->addParameter("gfx", "");
    KVLDemosys::parameters->addGroup("paths", paths);
    KVLDemosys::data = new Data();
    KVLDemosys::data->addData("texturePool", new DataTexturePool());
    directory.write("t.kvlc", "{KVLC01}\nMaterial { texture2 = lost.png; }\n");
    std::string path = directory.file("t.kvlc");
    std::unique_ptr<ObjectParser> parser;
    linesOf([&] {
        parser = std::make_unique<ObjectParser>(path);
        EXPECT_EQ(nullptr, parser->parse());
    });
    EXPECT_FALSE(parser->isValid());
    std::vector<std::string> again = linesOf([&] { EXPECT_EQ(nullptr, parser->parse()); });
    EXPECT_TRUE(again.empty());
    EXPECT_FALSE(parser->isValid());
    linesOf([&] { parser.reset(); });
    linesOf([] { delete KVLDemosys::data; });
    delete KVLDemosys::parameters;
}

// Damaged files of both formats: cut at every length and with bits flipped
// at random. Nothing may crash, loop for long or read outside the buffer.
TEST_F(ObjectParserTest, TruncatedAndBitFlippedModelFilesNeverCrashTheReaders) {
    std::srand(1234);
    const std::vector<std::string> models = {TEXT_MODEL, binaryModel()};
    int parsed = 0;
    int scenes = 0;
    for (const std::string& model : models) {
        std::vector<std::string> damaged;
        for (size_t length = 0; length <= model.size(); length++) {
            damaged.push_back(model.substr(0, length));
        }
        for (int i = 0; i < 1500; i++) {
            std::string copy = model;
            int flips = 1 + std::rand() % 4;
            for (int f = 0; f < flips; f++) {
                // The header stays intact in most copies so that the readers
                // get to see the damage.
                size_t at =
                    (i % 8 == 0) ? std::rand() % copy.size() : 8 + std::rand() % (copy.size() - 8);
                copy[at] = static_cast<char>(copy[at] ^ (1 << (std::rand() % 8)));
            }
            damaged.push_back(copy);
        }
        linesOf([&] {
            for (const std::string& bytes : damaged) {
                // A new file each time: rewriting one file makes the file
                // system flush it, which is slow.
                std::string name = "damaged-" + std::to_string(parsed);
                directory.write(name, bytes);
                ObjectParser parser(directory.file(name));
                O3dScene* scene = parser.parse();
                if (scene != nullptr) {
                    scenes++;
                    EXPECT_GE(scene->countVertices(), 0);
                    EXPECT_LE(scene->countVertices(), static_cast<int>(bytes.size()));
                    EXPECT_LE(scene->countPolygons(), static_cast<int>(bytes.size()));
                    scene->calculateCrease(30.0f);
                    delete scene;
                }
                parsed++;
            }
        });
    }
    EXPECT_GT(parsed, 3000);
    EXPECT_GT(scenes, 1000);
}

// A count of about two thousand million in front of a few bytes.
TEST_F(ObjectParserTest, HugeCountsInAShortBinaryFileReadOnlyWhatTheFileHolds) {
    ModelBytes b;
    b.i32(0).i32(1).i32(0x7fffffff).f32(1.0f).f32(2.0f).f32(3.0f).f32(0.5f);
    directory.write("m.kvlb", b.data);
    O3dScene* scene = nullptr;
    linesOf([&] {
        ObjectParser parser(directory.file("m.kvlb"));
        scene = parser.parse();
    });
    ASSERT_NE(nullptr, scene);
    ASSERT_EQ(1, scene->countObjects());
    EXPECT_EQ(1, scene->countVertices());
    EXPECT_EQ(0, scene->countPolygons());
    linesOf([&] { delete scene; });
}
