#include "objects/KVL3dParser.h"

#include "LoadedScenes.h"
#include "ObjectTestSupport.h"
#include "graphics/Texture.h"
#include "objects/Material.h"
#include "objects/O3d.h"
#include "objects/O3dPolygon.h"
#include "objects/O3dScene.h"
#include "objects/O3dVertex.h"
#include "runtime/Data.h"
#include "runtime/DataTexturePool.h"
#include "runtime/KVLDemosys.h"
#include "script/File.h"
#include "script/ParameterGroup.h"
#include "script/Parameters.h"
#include "support/GLTestWindow.h"
#include "support/PngWriter.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

// The text model format, read from files written by the tests.

namespace {

const std::string WORKED_EXAMPLE = "{KVLC01}\n"
                                   "Material {\n"
                                   "name = steel;\n"
                                   "diffuse = 0.8, 0.8, 0.9;\n"
                                   "ambient = 0.2, 0.2, 0.2;\n"
                                   "specular = 1, 1, 1;\n"
                                   "emissive = 0, 0, 0;\n"
                                   "texture1 = steel.png;\n"
                                   "}\n"
                                   "Object {\n"
                                   "materialmode = single;\n"
                                   "material = 0;\n"
                                   "position = 0 0 0;\n"
                                   "pivot = 0 0 0;\n"
                                   "vertex = -1, -1, 0, 0, 0,\n"
                                   "1, -1, 0, 1, 0,\n"
                                   "1, 1, 0, 1, 1,\n"
                                   "-1, 1, 0, 0, 1;\n"
                                   "polygons = 0, 1, 2,\n"
                                   "0, 2, 3;\n"
                                   "}\n";

const std::string TRIANGLE = "vertex = 0,0,0,0,0, 1,0,0,1,0, 0,1,0,0,1; polygons = 0,1,2;";

// Which vertex of the object each corner of a polygon is, -1 for none.
std::vector<int> cornersOf(const O3d* object, int polygon) {
    std::vector<int> corners;
    for (int c = 0; c < 3; c++) {
        const O3dVertex* vertex = object->getPolygon(polygon)->getVn(c);
        int found = -1;
        for (int i = 0; i < object->getVertexCount(); i++) {
            if (object->getVertex(i) == vertex) {
                found = i;
            }
        }
        corners.push_back(found);
    }
    return corners;
}

void replaceOnce(std::string& text, const std::string& from, const std::string& to) {
    size_t at = text.find(from);
    ASSERT_NE(std::string::npos, at) << from;
    text.replace(at, from.size(), to);
}

} // namespace

class KVL3dParserTest : public ::testing::Test {
protected:
    void SetUp() override { KVLDemosys::resetState(); }
    void TearDown() override {
        scenes.clear();
        KVLDemosys::resetState();
    }

    // Parses the text as a whole file; the scene is freed with the test.
    O3dScene* parseText(const std::string& text, KVL3dParser* reader = nullptr) {
        directory.write("model.kvlc", text);
        File file(directory.file("model.kvlc"), 0);
        KVL3dParser own;
        KVL3dParser* parser = (reader != nullptr) ? reader : &own;
        O3dScene* scene = nullptr;
        log = logOf([&] { scene = parser->parse(&file); });
        scenes.keep(scene);
        valid = parser->isValid();
        return scene;
    }

    TempDir directory;
    LoadedScenes scenes;
    std::string log;
    bool valid = false;
};

TEST_F(KVL3dParserTest, HeaderWithNoBlocksGivesAnEmptyScene) {
    O3dScene* scene = parseText("{KVLC01}");
    ASSERT_NE(nullptr, scene);
    EXPECT_TRUE(valid);
    EXPECT_EQ(0, scene->countObjects());
    EXPECT_EQ(0, scene->countMaterials());
    EXPECT_EQ("", log);
}

TEST_F(KVL3dParserTest, WorkedExampleWithMultiModeGivesEveryPolygonItsOwnMaterial) {
    std::string text = WORKED_EXAMPLE;
    replaceOnce(text, "texture1 = steel.png;\n", "");
    replaceOnce(text, "materialmode = single;", "materialmode = multi;");
    replaceOnce(text, "polygons = 0, 1, 2,\n0, 2, 3;", "polygons = 0, 1, 2, 0, 0, 2, 3, 0;");
    O3dScene* scene = parseText(text);
    ASSERT_EQ(1, scene->countObjects());
    ASSERT_EQ(1, scene->countMaterials());
    O3d* object = scene->getObject(0);
    ASSERT_EQ(2, object->getPolyCount());
    EXPECT_TRUE(object->hasPolygonMaterial());
    EXPECT_FALSE(object->hasObjectMaterial());
    // The key "material" has no effect in this mode.
    EXPECT_EQ(nullptr, object->getMaterial());
    EXPECT_EQ(scene->getMaterial(0), object->getPolygon(0)->getMaterial());
    EXPECT_EQ(scene->getMaterial(0), object->getPolygon(1)->getMaterial());
    EXPECT_EQ((std::vector<int>{0, 1, 2}), cornersOf(object, 0));
    EXPECT_EQ((std::vector<int>{0, 2, 3}), cornersOf(object, 1));
}

TEST_F(KVL3dParserTest, LightBlockBetweenOthersIsSkippedAndTheBlocksBehindItAreRead) {
    O3dScene* scene = parseText("{KVLC01}\n"
                                "Material { name = first; }\n"
                                "Light { position = 0 10 0; colour = 1, 1, 1; }\n"
                                "Material { name = second; }\n"
                                "Object { " +
                                TRIANGLE + " }\n");
    ASSERT_EQ(2, scene->countMaterials());
    EXPECT_EQ("first", scene->getMaterial(0)->getName());
    EXPECT_EQ("second", scene->getMaterial(1)->getName());
    EXPECT_EQ(1, scene->countObjects());
    EXPECT_EQ(1, scene->countPolygons());
}

TEST_F(KVL3dParserTest, BlockHeadsAreComparedWithTheirCase) {
    O3dScene* scene = parseText("{KVLC01}\nobject { " + TRIANGLE +
                                " }\nmaterial { name = m; }\nMATERIAL { name = n; }\n");
    EXPECT_EQ(0, scene->countObjects());
    EXPECT_EQ(0, scene->countMaterials());
}

TEST_F(KVL3dParserTest, BlockHeadsAreTrimmedAndLineEndsAreWhiteSpace) {
    O3dScene* scene = parseText(
        "{KVLC01}\r\n\t  Material\r\n{\r\nname\r\n=\r\nm\r\n;}\n  Object\n\n{" + TRIANGLE + "}");
    ASSERT_EQ(1, scene->countMaterials());
    EXPECT_EQ("m", scene->getMaterial(0)->getName());
    EXPECT_EQ(1, scene->countPolygons());
}

TEST_F(KVL3dParserTest, BlockWithAnEmptyBodyShiftsTheBlocksBehindIt) {
    O3dScene* scene = parseText("{KVLC01}\nLight { }\nMaterial { name = lost; }\n"
                                "Object { " +
                                TRIANGLE + " }\n");
    // "Light", "{", "}" and "Material" make the first block; the material's
    // body then stands where a head is expected.
    EXPECT_EQ(0, scene->countMaterials());
    EXPECT_EQ(0, scene->countObjects());
}

TEST_F(KVL3dParserTest, MultiModeWrittenAfterPolygonsReadsThreeNumbersAPolygonSoAFourthShifts) {
    O3dScene* scene = parseText("{KVLC01}\nMaterial { name = m; }\n"
                                "Object { vertex = 0,0,0,0,0, 1,0,0,1,0, 1,1,0,1,1, 0,1,0,0,1;\n"
                                "polygons = 0, 1, 2, 0, 0, 2, 3, 0;\n"
                                "materialmode = multi; }\n");
    ASSERT_EQ(1, scene->countObjects());
    O3d* object = scene->getObject(0);
    // Eight numbers in threes: (0, 1, 2), (0, 0, 2), and the rest unused.
    ASSERT_EQ(2, object->getPolyCount());
    EXPECT_EQ((std::vector<int>{0, 1, 2}), cornersOf(object, 0));
    EXPECT_EQ((std::vector<int>{0, 0, 2}), cornersOf(object, 1));
    // No polygon materials were read, and none is given out.
    EXPECT_TRUE(object->hasPolygonMaterial());
    EXPECT_FALSE(object->hasObjectMaterial());
    EXPECT_EQ(nullptr, object->getPolygon(0)->getMaterial());
    EXPECT_EQ(nullptr, object->getPolygon(1)->getMaterial());
}

TEST_F(KVL3dParserTest, MultiModeBeforePolygonsTakesEveryFourthNumberAsAMaterial) {
    O3dScene* scene = parseText("{KVLC01}\nMaterial { name = a; }\nMaterial { name = b; }\n"
                                "Object { materialmode = multi;\n"
                                "vertex = 0,0,0,0,0, 1,0,0,1,0, 1,1,0,1,1, 0,1,0,0,1;\n"
                                "polygons = 0,1,2,1, 0,2,3,0; }\n");
    O3d* object = scene->getObject(0);
    ASSERT_EQ(2, object->getPolyCount());
    EXPECT_EQ((std::vector<int>{0, 2, 3}), cornersOf(object, 1));
    EXPECT_EQ(scene->getMaterial(1), object->getPolygon(0)->getMaterial());
    EXPECT_EQ(scene->getMaterial(0), object->getPolygon(1)->getMaterial());
}

TEST_F(KVL3dParserTest, PolygonMaterialIndexThatNamesNoMaterialLeavesThatPolygonWithout) {
    O3dScene* scene = parseText("{KVLC01}\nMaterial { name = a; }\n"
                                "Object { materialmode = multi;\n"
                                "vertex = 0,0,0,0,0, 1,0,0,1,0, 1,1,0,1,1, 0,1,0,0,1;\n"
                                "polygons = 0,1,2,7, 0,2,3,-1, 1,2,3,0; }\n");
    O3d* object = scene->getObject(0);
    ASSERT_EQ(3, object->getPolyCount());
    EXPECT_EQ(nullptr, object->getPolygon(0)->getMaterial());
    EXPECT_EQ(nullptr, object->getPolygon(1)->getMaterial());
    EXPECT_EQ(scene->getMaterial(0), object->getPolygon(2)->getMaterial());
}

TEST_F(KVL3dParserTest, PositionWrittenWithCommasGivesXOnlyAndZeroForYAndZ) {
    O3dScene* scene =
        parseText("{KVLC01}\nObject { position = 1,2,3; pivot = 4,5,6; " + TRIANGLE + " }\n");
    O3d* object = scene->getObject(0);
    EXPECT_EQ((std::vector<float>{1, 0, 0}), values3(object->getPosition()));
    EXPECT_EQ((std::vector<float>{4, 0, 0}), values3(object->getPivotPoint()));
}

TEST_F(KVL3dParserTest, PositionAndPivotAreThreeNumbersCutAtBlanks) {
    O3dScene* scene =
        parseText("{KVLC01}\nObject { position =  1.5  -2 3 ; pivot = 4 5;" + TRIANGLE + " }\n");
    O3d* object = scene->getObject(0);
    EXPECT_EQ((std::vector<float>{1.5f, -2, 3}), values3(object->getPosition()));
    EXPECT_EQ((std::vector<float>{4, 5, 0}), values3(object->getPivotPoint()));
    // The placement has no effect on the vertices.
    EXPECT_EQ((std::vector<float>{1, 0, 0}), values3(object->getVertex(1)->getVertex()));
}

TEST_F(KVL3dParserTest, MaterialColoursSetRedGreenBlueAndKeepTheirAlpha) {
    O3dScene* scene = parseText("{KVLC01}\nMaterial { name =  shiny metal ;\n"
                                "diffuse = 0.1, 0.2, 0.3; ambient = 0.4,0.5,0.6;\n"
                                "specular = 0.7, 0.8, 0.9; emissive = 1, 0.5, 0.25; }\n");
    ASSERT_EQ(1, scene->countMaterials());
    Material* m = scene->getMaterial(0);
    EXPECT_EQ("shiny metal", m->getName());
    EXPECT_EQ((std::vector<float>{0.1f, 0.2f, 0.3f, 1.0f}), values(m->getDiffuse()));
    EXPECT_EQ((std::vector<float>{0.4f, 0.5f, 0.6f, 1.0f}), values(m->getAmbient()));
    EXPECT_EQ((std::vector<float>{0.7f, 0.8f, 0.9f, 1.0f}), values(m->getSpecular()));
    EXPECT_EQ((std::vector<float>{1.0f, 0.5f, 0.25f, 1.0f}), values(m->getEmissive()));
    EXPECT_EQ(10.0f, m->getShinyness());
    EXPECT_EQ(0.0f, m->getTransparency());
    EXPECT_EQ(nullptr, m->getTexture1());
    EXPECT_EQ(nullptr, m->getTexture2());
}

TEST_F(KVL3dParserTest, MaterialWithoutKeysKeepsTheDefaultColours) {
    O3dScene* scene = parseText("{KVLC01}\nMaterial { shinyness = 99; alpha = 0.5; }\n");
    ASSERT_EQ(1, scene->countMaterials());
    Material* m = scene->getMaterial(0);
    Material defaults;
    EXPECT_EQ(values(defaults.getDiffuse()), values(m->getDiffuse()));
    EXPECT_EQ(values(defaults.getAmbient()), values(m->getAmbient()));
    EXPECT_EQ(10.0f, m->getShinyness());
    EXPECT_EQ("", m->getName());
}

TEST_F(KVL3dParserTest, AnythingBehindASecondEqualsSignIsIgnored) {
    O3dScene* scene = parseText("{KVLC01}\nMaterial { name = a = b; diffuse = 1, 0, 0 = 5; }\n");
    Material* m = scene->getMaterial(0);
    EXPECT_EQ("a", m->getName());
    EXPECT_EQ((std::vector<float>{1, 0, 0, 1}), values(m->getDiffuse()));
}

TEST_F(KVL3dParserTest, UnknownKeysAndStatementsWithoutValueAreSkippedInSilence) {
    O3dScene* scene = parseText("{KVLC01}\nMaterial { colour = 1, 0, 0; Name = x; ;; }\n"
                                "Object { smoothing = 30; normals; " +
                                TRIANGLE + " }\n");
    EXPECT_TRUE(valid);
    EXPECT_EQ("", log);
    EXPECT_EQ("", scene->getMaterial(0)->getName());
    EXPECT_EQ(1, scene->countPolygons());
}

TEST_F(KVL3dParserTest, TextureNameListsStayParallelToTheMaterials) {
    KVL3dParser parser;
    parser.parseMaterial("name = a; texture2 = b.png;");
    parser.parseMaterial("name = c;");
    parser.parseMaterial("texture1 = d.png ; texture2 = e.png;");
    EXPECT_EQ((std::vector<std::string>{"", "", "d.png"}), parser.getTexture1Names());
    EXPECT_EQ((std::vector<std::string>{"b.png", "", "e.png"}), parser.getTexture2Names());
    EXPECT_EQ((std::vector<std::string>{"b.png", "d.png", "e.png"}), parser.getTextureNames());
    ASSERT_EQ(3u, parser.getMaterials().size());
    for (Material* m : parser.getMaterials()) {
        EXPECT_EQ(nullptr, m->getTexture1());
        delete m;
    }
}

TEST_F(KVL3dParserTest, SingleModeWithoutAMaterialIndexLeavesBothFlagsFalse) {
    O3dScene* scene = parseText("{KVLC01}\nMaterial { name = a; }\n"
                                "Object { materialmode = single; " +
                                TRIANGLE + " }\n");
    O3d* object = scene->getObject(0);
    EXPECT_FALSE(object->hasObjectMaterial());
    EXPECT_FALSE(object->hasPolygonMaterial());
    EXPECT_EQ(nullptr, object->getMaterial());
}

TEST_F(KVL3dParserTest, ObjectWithoutAModeIgnoresItsMaterialIndex) {
    O3dScene* scene = parseText("{KVLC01}\nMaterial { name = a; }\n"
                                "Object { material = 0; " +
                                TRIANGLE + " }\nObject { materialmode = Single; material = 0; " +
                                TRIANGLE + " }\n");
    for (int i = 0; i < 2; i++) {
        O3d* object = scene->getObject(i);
        EXPECT_FALSE(object->hasObjectMaterial());
        EXPECT_FALSE(object->hasPolygonMaterial());
        EXPECT_EQ(nullptr, object->getMaterial());
    }
}

TEST_F(KVL3dParserTest, SingleModeMaterialIndexThatNamesNoMaterialGivesTheObjectNone) {
    O3dScene* scene = parseText("{KVLC01}\nMaterial { name = a; }\n"
                                "Object { materialmode = single; material = 1; " +
                                TRIANGLE + " }\n");
    O3d* object = scene->getObject(0);
    EXPECT_FALSE(object->hasObjectMaterial());
    EXPECT_FALSE(object->hasPolygonMaterial());
    EXPECT_EQ(nullptr, object->getMaterial());
}

TEST_F(KVL3dParserTest, MaterialThatStandsBehindTheObjectIsNotFoundByIt) {
    O3dScene* scene = parseText("{KVLC01}\nObject { materialmode = single; material = 0; " +
                                TRIANGLE + " }\nMaterial { name = late; }\n");
    ASSERT_EQ(1, scene->countMaterials());
    EXPECT_EQ(nullptr, scene->getObject(0)->getMaterial());
    EXPECT_FALSE(scene->getObject(0)->hasObjectMaterial());
}

TEST_F(KVL3dParserTest, VertexIndexBeyondTheVerticesMakesATriangleWithoutCorners) {
    O3dScene* scene = parseText("{KVLC01}\nObject { vertex = 0,0,0,0,0, 1,0,0,1,0, 0,1,0,0,1;\n"
                                "polygons = 0,1,3, 0,-1,2, 0,1,2; }\n");
    O3d* object = scene->getObject(0);
    ASSERT_EQ(3, object->getPolyCount());
    EXPECT_EQ((std::vector<int>{-1, -1, -1}), cornersOf(object, 0));
    EXPECT_EQ((std::vector<int>{-1, -1, -1}), cornersOf(object, 1));
    EXPECT_EQ((std::vector<int>{0, 1, 2}), cornersOf(object, 2));
    EXPECT_EQ(1, object->getVertex(0)->countPolygons());
}

TEST_F(KVL3dParserTest, VertexAndPolygonStatementsAddUpAndAShortRestStaysUnused) {
    O3dScene* scene = parseText("{KVLC01}\nObject { vertex = 0,0,0,0,0, 1,0,0,1,0;\n"
                                "vertex = 0,1,0,0,1, 5,5;\n"
                                "polygons = 0,1; polygons = 2, 0,2,1, 1; }\n");
    O3d* object = scene->getObject(0);
    // The numbers of all statements go into one list each: "5, 5" is too
    // short to make a vertex, and the last index is a rest of one.
    EXPECT_EQ(3, object->getVertexCount());
    ASSERT_EQ(2, object->getPolyCount());
    EXPECT_EQ((std::vector<int>{0, 1, 2}), cornersOf(object, 0));
    EXPECT_EQ((std::vector<int>{0, 2, 1}), cornersOf(object, 1));
}

TEST_F(KVL3dParserTest, TextureCoordinatesComeFromTheVerticesIntoEachCorner) {
    O3dScene* scene = parseText("{KVLC01}\nObject { vertex = 0,0,0,0.25,0.5, 1,0,0,0.75,0, "
                                "0,1,0,1,0.125; polygons = 2,0,1; }\n");
    O3dPolygon* p = scene->getObject(0)->getPolygon(0);
    EXPECT_EQ(1.0f, p->getU(0));
    EXPECT_EQ(0.125f, p->getV(0));
    EXPECT_EQ(0.25f, p->getU(1));
    EXPECT_EQ(0.5f, p->getV(1));
    EXPECT_EQ(0.75f, p->getU(2));
    EXPECT_EQ(0.0f, p->getV(2));
}

TEST_F(KVL3dParserTest, FaceAndVertexNormalsAreComputedForEveryObject) {
    O3dScene* scene = parseText("{KVLC01}\nObject { " + TRIANGLE +
                                " }\nObject { vertex = 0,0,0,0,0, 0,1,0,0,0, 1,0,0,0,0; "
                                "polygons = 0,1,2; }\n");
    ASSERT_EQ(2, scene->countObjects());
    EXPECT_EQ((std::vector<float>{0, 0, 1}),
              values3(scene->getObject(0)->getPolygon(0)->getNormal()));
    EXPECT_EQ((std::vector<float>{0, 0, -1}),
              values3(scene->getObject(1)->getPolygon(0)->getNormal()));
    EXPECT_EQ((std::vector<float>{0, 0, -1}),
              values3(scene->getObject(1)->getVertex(2)->getNormal()));
}

TEST_F(KVL3dParserTest, ObjectsAndMaterialsKeepTheOrderOfTheFile) {
    O3dScene* scene = parseText("{KVLC01}\nMaterial { name = one; }\nObject { vertex = 0,0,0,0,0, "
                                "1,0,0,0,0, 0,1,0,0,0; polygons = 0,1,2; }\n"
                                "Material { name = two; }\nObject { " +
                                TRIANGLE + " polygons = 0,2,1; }\n");
    ASSERT_EQ(2, scene->countMaterials());
    EXPECT_EQ("one", scene->getMaterial(0)->getName());
    EXPECT_EQ("two", scene->getMaterial(1)->getName());
    ASSERT_EQ(2, scene->countObjects());
    EXPECT_EQ(1, scene->getObject(0)->getPolyCount());
    EXPECT_EQ(2, scene->getObject(1)->getPolyCount());
}

// Textures need the texture pool, the "gfx" path and a GL context.
class KVL3dParserTextures : public GLTestWindow {
protected:
    void SetUp() override {
        GLTestWindow::SetUp();
        KVLDemosys::resetState();
        KVLDemosys::parameters = new Parameters();
        ParameterGroup* paths = new ParameterGroup("paths");
        paths->addParameter("gfx", directory.file("gfx/"));
        KVLDemosys::parameters->addGroup("paths", paths);
        KVLDemosys::data = new Data();
        pool = new DataTexturePool();
        KVLDemosys::data->addData("texturePool", pool);
        KVLDemosys::texturePool = pool;
        std::filesystem::create_directories(directory.file("gfx"));
        std::vector<uint8_t> pixels;
        for (int i = 0; i < 4; i++) {
            pixels.insert(pixels.end(), {200, 100, 50});
        }
        PngWriter::save(directory.file("gfx/steel.png"), PngWriter::rgb(2, 2, pixels));
        PngWriter::save(directory.file("gfx/a.png"), PngWriter::rgb(2, 2, pixels));
        PngWriter::save(directory.file("gfx/b.png"), PngWriter::rgb(2, 2, pixels));
    }
    void TearDown() override {
        scenes.clear();
        logOf([] { delete KVLDemosys::data; });
        delete KVLDemosys::parameters;
        KVLDemosys::resetState();
        GLTestWindow::TearDown();
    }

    O3dScene* parseText(const std::string& text, KVL3dParser& parser) {
        directory.write("model.kvlc", text);
        File file(directory.file("model.kvlc"), 0);
        O3dScene* scene = nullptr;
        log = logOf([&] { scene = parser.parse(&file); });
        scenes.keep(scene);
        return scene;
    }

    TempDir directory;
    DataTexturePool* pool = nullptr;
    LoadedScenes scenes;
    std::string log;
};

TEST_F(KVL3dParserTextures, WorkedExampleGivesOneMaterialAndASquareOfTwoTriangles) {
    KVL3dParser parser;
    O3dScene* scene = parseText(WORKED_EXAMPLE, parser);
    EXPECT_TRUE(parser.isValid());
    EXPECT_EQ("", parser.getErrorMessage());
    // Textures of models are always mipmapped, and the loader's filter order
    // makes GL refuse one of them.
    EXPECT_EQ("[GL_ERROR] 'invalid enumerant' in ->" + directory.file("gfx/steel.png") + "\n", log);
    ASSERT_NE(nullptr, scene);
    ASSERT_EQ(1, scene->countMaterials());
    ASSERT_EQ(1, scene->countObjects());

    Material* steel = scene->getMaterial(0);
    EXPECT_EQ("steel", steel->getName());
    EXPECT_EQ((std::vector<float>{0.8f, 0.8f, 0.9f, 1.0f}), values(steel->getDiffuse()));
    EXPECT_EQ((std::vector<float>{0.2f, 0.2f, 0.2f, 1.0f}), values(steel->getAmbient()));
    EXPECT_EQ((std::vector<float>{1, 1, 1, 1}), values(steel->getSpecular()));
    EXPECT_EQ((std::vector<float>{0, 0, 0, 1}), values(steel->getEmissive()));
    EXPECT_EQ(10.0f, steel->getShinyness());
    EXPECT_EQ(0.0f, steel->getTransparency());
    ASSERT_NE(nullptr, steel->getTexture1());
    EXPECT_EQ(pool->getTexture("steel.png"), steel->getTexture1());
    EXPECT_EQ("steel.png", steel->getTexture1()->getFilename());
    EXPECT_TRUE(steel->getTexture1()->isMipmapped());
    EXPECT_EQ(static_cast<unsigned int>(GL_TEXTURE_2D), steel->getTexture1()->getType());
    EXPECT_EQ(nullptr, steel->getTexture2());

    O3d* square = scene->getObject(0);
    EXPECT_EQ("", square->getName());
    EXPECT_EQ(steel, square->getMaterial());
    EXPECT_TRUE(square->hasObjectMaterial());
    EXPECT_FALSE(square->hasPolygonMaterial());
    EXPECT_EQ((std::vector<float>{0, 0, 0}), values3(square->getPosition()));
    EXPECT_EQ((std::vector<float>{0, 0, 0}), values3(square->getPivotPoint()));
    EXPECT_EQ(1.0f, square->getScaleValue());
    EXPECT_EQ(0, square->countKids());

    ASSERT_EQ(4, square->getVertexCount());
    const std::vector<std::vector<float>> positions = {
        {-1, -1, 0}, {1, -1, 0}, {1, 1, 0}, {-1, 1, 0}};
    const std::vector<int> uses = {2, 1, 2, 1};
    for (int i = 0; i < 4; i++) {
        EXPECT_EQ(positions[i], values3(square->getVertex(i)->getVertex())) << i;
        EXPECT_EQ((std::vector<float>{0, 0, 1}), values3(square->getVertex(i)->getNormal())) << i;
        EXPECT_EQ(uses[i], square->getVertex(i)->countPolygons()) << i;
    }

    ASSERT_EQ(2, square->getPolyCount());
    const std::vector<std::vector<int>> corners = {{0, 1, 2}, {0, 2, 3}};
    const std::vector<std::vector<float>> us = {{0, 1, 1}, {0, 1, 0}};
    const std::vector<std::vector<float>> vs = {{0, 0, 1}, {0, 1, 1}};
    for (int p = 0; p < 2; p++) {
        O3dPolygon* polygon = square->getPolygon(p);
        EXPECT_EQ(corners[p], cornersOf(square, p));
        EXPECT_EQ((std::vector<float>{0, 0, 1}), values3(polygon->getNormal()));
        EXPECT_EQ(nullptr, polygon->getMaterial());
        EXPECT_FALSE(polygon->overrideVertexNormals());
        for (int c = 0; c < 3; c++) {
            EXPECT_EQ(us[p][c], polygon->getU(c));
            EXPECT_EQ(vs[p][c], polygon->getV(c));
        }
    }
    EXPECT_EQ(square->getPolygon(0), square->getVertex(0)->getPolygon(0));
    EXPECT_EQ(square->getPolygon(1), square->getVertex(0)->getPolygon(1));
}

TEST_F(KVL3dParserTextures, TwoMaterialsWithOneTextureLoadTheFileOnce) {
    KVL3dParser parser;
    O3dScene* scene = parseText("{KVLC01}\nMaterial { texture1 = a.png; }\n"
                                "Material { texture1 = a.png; texture2 = a.png; }\n",
                                parser);
    EXPECT_TRUE(parser.isValid());
    ASSERT_EQ(2, scene->countMaterials());
    EXPECT_EQ(1, pool->size());
    ASSERT_NE(nullptr, scene->getMaterial(0)->getTexture1());
    EXPECT_EQ(scene->getMaterial(0)->getTexture1(), scene->getMaterial(1)->getTexture1());
    EXPECT_EQ(scene->getMaterial(0)->getTexture1(), scene->getMaterial(1)->getTexture2());
    EXPECT_TRUE(scene->getMaterial(1)->hasMultiTexture());
}

TEST_F(KVL3dParserTextures, TextureIsKeptInThePoolUnderTheNameAsWrittenWithoutThePath) {
    KVL3dParser parser;
    parseText("{KVLC01}\nMaterial { texture1 =  a.png ; }\n", parser);
    EXPECT_TRUE(pool->exist("a.png"));
    EXPECT_TRUE(pool->isFileInPool("a.png"));
    EXPECT_EQ((std::map<std::string, std::string>{{"a.png", "a.png"}}), pool->getFilemap());
}

TEST_F(KVL3dParserTextures, SecondModelFindsATextureOfTheFirstInThePool) {
    KVL3dParser first;
    O3dScene* one = parseText("{KVLC01}\nMaterial { texture1 = b.png; }\n", first);
    KVL3dParser second;
    O3dScene* two = parseText("{KVLC01}\nMaterial { texture1 = b.png; }\n", second);
    EXPECT_EQ(1, pool->size());
    ASSERT_NE(nullptr, one->getMaterial(0)->getTexture1());
    EXPECT_EQ(one->getMaterial(0)->getTexture1(), two->getMaterial(0)->getTexture1());
}

TEST_F(KVL3dParserTextures, TextureOfAMaterialIsMissingDuringParseObjectAndPresentAfterParse) {
    KVL3dParser reading;
    reading.parseMaterial("name = m; texture1 = a.png;");
    reading.parseObject("materialmode = single; material = 0; " + TRIANGLE);
    ASSERT_EQ(1u, reading.getObjects().size());
    Material* material = reading.getObjects()[0]->getMaterial();
    ASSERT_NE(nullptr, material);
    EXPECT_EQ(nullptr, material->getTexture1());
    EXPECT_EQ(0, pool->size());
    delete reading.getObjects()[0];
    delete material;

    KVL3dParser parser;
    O3dScene* scene = parseText("{KVLC01}\nMaterial { name = m; texture1 = a.png; }\n"
                                "Object { materialmode = single; material = 0; " +
                                    TRIANGLE + " }\n",
                                parser);
    ASSERT_NE(nullptr, scene->getObject(0)->getMaterial());
    EXPECT_NE(nullptr, scene->getObject(0)->getMaterial()->getTexture1());
    EXPECT_EQ(pool->getTexture("a.png"), scene->getObject(0)->getMaterial()->getTexture1());
}

TEST_F(KVL3dParserTextures, TextureThatDoesNotLoadLeavesItsMaterialWithoutAndTheRestLoads) {
    KVL3dParser parser;
    O3dScene* scene = parseText("{KVLC01}\nMaterial { texture1 = lost.png; }\n"
                                "Material { texture1 = a.png; }\n",
                                parser);
    EXPECT_FALSE(parser.isValid());
    std::string expected = "Error loading texture!\nTexture file : '" +
                           directory.file("gfx/lost.png") + "'\nObject : '" +
                           directory.file("model.kvlc") + "'\n";
    EXPECT_EQ(expected, parser.getErrorMessage());
    EXPECT_EQ(expected + "\n[GL_ERROR] 'invalid enumerant' in ->" + directory.file("gfx/a.png") +
                  "\n",
              log);
    ASSERT_EQ(2, scene->countMaterials());
    EXPECT_EQ(nullptr, scene->getMaterial(0)->getTexture1());
    EXPECT_NE(nullptr, scene->getMaterial(1)->getTexture1());
    EXPECT_FALSE(pool->isFileInPool("lost.png"));
}
