#include "objects/KVL3dWriter.h"

#include "LoadedScenes.h"
#include "ObjectTestSupport.h"
#include "objects/Material.h"
#include "objects/O3d.h"
#include "objects/O3dPolygon.h"
#include "objects/O3dScene.h"
#include "objects/O3dVertex.h"
#include "runtime/KVLDemosys.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

const KVL3dWriter::MaterialRecord RED = {
    "red", {1, 0, 0}, {0.25f, 0, 0}, {0.5f, 0.5f, 0.5f}, {0, 0, 0.125f}, 20.0f, "red.png"};
const KVL3dWriter::MaterialRecord BLUE = {"blue", {0, 0, 1}, {0, 0, 0.25f}, {1, 1, 1}, {0, 0, 0},
                                          10.0f,  ""};

// A unit square of two triangles; the first takes material `first`, the
// second material `second`.
KVL3dWriter::ObjectRecord square(int first, int second) {
    return {{0, 0, 0, 0, 0, 1, 0, 0, 1, 0, 1, 1, 0, 1, 1, 0, 1, 0, 0, 1},
            {0, 1, 2, first, 0, 2, 3, second}};
}

} // namespace

class KVL3dWriterTest : public ::testing::Test {
protected:
    void SetUp() override { KVLDemosys::resetState(); }
    void TearDown() override {
        scenes.clear();
        KVLDemosys::resetState();
    }

    O3dScene* load(const std::string& name) { return scenes.read(directory.file(name)); }

    TempDir directory;
    LoadedScenes scenes;
};

TEST_F(KVL3dWriterTest, ObjectOfOneMaterialIsWrittenInSingleMode) {
    KVL3dWriter writer;
    writer.addMaterial(BLUE);
    writer.addObject(square(0, 0));
    EXPECT_EQ("{KVLC01}\n"
              "Material {\n"
              "  name = blue;\n"
              "  diffuse = 0, 0, 1;\n"
              "  ambient = 0, 0, 0.25;\n"
              "  specular = 1, 1, 1;\n"
              "  emissive = 0, 0, 0;\n"
              "}\n"
              "Object {\n"
              "  materialmode = single;\n"
              "  material = 0;\n"
              "  position = 0 0 0;\n"
              "  pivot = 0 0 0;\n"
              "  vertex = 0, 0, 0, 0, 0,\n"
              "    1, 0, 0, 1, 0,\n"
              "    1, 1, 0, 1, 1,\n"
              "    0, 1, 0, 0, 1;\n"
              "  polygons = 0, 1, 2,\n"
              "    0, 2, 3;\n"
              "}\n",
              writer.toText());
}

TEST_F(KVL3dWriterTest, TextFormatGroupsTrianglesByMaterialAndKeepsTheirOrderWithinAGroup) {
    KVL3dWriter writer;
    writer.addMaterial(RED);
    writer.addMaterial(BLUE);
    writer.addObject({{0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 1, 0, 0, 0, 0, 1, 0, 0, 0},
                      {0, 1, 2, 1, 0, 2, 3, 0, 1, 2, 3, 1}});
    std::string text = writer.toText();
    EXPECT_NE(std::string::npos, text.find("  materialmode = multi;\n  position"));
    EXPECT_NE(std::string::npos, text.find("  polygons = 0, 2, 3, 0,\n"
                                           "    0, 1, 2, 1,\n"
                                           "    1, 2, 3, 1;\n"));
}

TEST_F(KVL3dWriterTest, OnlyTheTextFormatKeepsATexture) {
    KVL3dWriter writer;
    writer.addMaterial(RED);
    writer.addObject(square(0, 0));
    EXPECT_NE(std::string::npos, writer.toText().find("  texture1 = red.png;\n}\n"));
    EXPECT_EQ(std::string::npos, writer.toBinary().find("red.png"));
}

TEST_F(KVL3dWriterTest, BinaryFormatWritesMaterialsThenObjectsLittleEndian) {
    KVL3dWriter writer;
    writer.addMaterial(BLUE);
    writer.addObject(square(0, 0));
    std::string bytes = writer.toBinary();
    // Header, count, name, four colours of four floats and the shine; count,
    // vertex count, 4 x 5 floats, triangle count, 2 x 3 corners.
    ASSERT_EQ(8u + 4 + 5 + 17 * 4 + 4 + 4 + 20 * 4 + 4 + 6 * 4, bytes.size());
    EXPECT_EQ("{KVLB01}", bytes.substr(0, 8));
    EXPECT_EQ(std::string("\x01\0\0\0blue\0", 9), bytes.substr(8, 9));
    EXPECT_EQ(std::string("\x01\0\0\0\x04\0\0\0", 8), bytes.substr(85, 8));
    EXPECT_EQ(std::string("\x02\0\0\0", 4), bytes.substr(173, 4));
}

TEST_F(KVL3dWriterTest, BothFormatsReadBackAsTheSameModel) {
    KVL3dWriter writer;
    writer.addMaterial(RED);
    writer.addMaterial(BLUE);
    writer.addObject(square(1, 1));
    writer.addObject(square(0, 1));
    // The reader loads textures through the pool; this test is about geometry.
    KVL3dWriter untextured;
    KVL3dWriter::MaterialRecord red = RED;
    red.texture = "";
    untextured.addMaterial(red);
    untextured.addMaterial(BLUE);
    untextured.addObject(square(1, 1));
    untextured.addObject(square(0, 1));
    ASSERT_TRUE(untextured.writeText(directory.file("m.kvlc")));
    ASSERT_TRUE(writer.writeBinary(directory.file("m.kvlb")));
    for (const char* name : {"m.kvlc", "m.kvlb"}) {
        O3dScene* scene = load(name);
        ASSERT_NE(nullptr, scene) << name;
        EXPECT_EQ(2, scene->countObjects());
        EXPECT_EQ(2, scene->countMaterials());
        EXPECT_EQ(8, scene->countVertices());
        EXPECT_EQ(4, scene->countPolygons());
        EXPECT_EQ((std::vector<float>{0, 0, 1}), rgb(scene->getMaterial(1)->getDiffuse()));
        EXPECT_EQ((std::vector<float>{0.25f, 0, 0}), rgb(scene->getMaterial(0)->getAmbient()));
        EXPECT_EQ((std::vector<float>{0, 0, 0.125f}), rgb(scene->getMaterial(0)->getEmissive()));
        O3dPolygon* polygon = scene->getObject(1)->getPolygon(1);
        EXPECT_EQ(1.0f, polygon->getU(1));
        EXPECT_EQ(1.0f, polygon->getV(1));
        EXPECT_EQ(1.0f, polygon->getVn(2)->getVertex()[1]);
    }
}

TEST_F(KVL3dWriterTest, CountsAddUpOverAllObjects) {
    KVL3dWriter writer;
    writer.addMaterial(BLUE);
    writer.addObject(square(0, 0));
    writer.addObject({{0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0}, {0, 1, 2, 0}});
    EXPECT_EQ(1, writer.countMaterials());
    EXPECT_EQ(2, writer.countObjects());
    EXPECT_EQ(7, writer.countVertices());
    EXPECT_EQ(3, writer.countTriangles());
}

TEST_F(KVL3dWriterTest, FileThatCannotBeWrittenIsReported) {
    KVL3dWriter writer;
    writer.addMaterial(BLUE);
    writer.addObject(square(0, 0));
    EXPECT_FALSE(writer.writeText(directory.file("missing/m.kvlc")));
    EXPECT_FALSE(writer.writeBinary(directory.file("missing/m.kvlb")));
    EXPECT_TRUE(writer.writeText(directory.file("m.kvlc")));
    EXPECT_EQ(writer.toText(), directory.read("m.kvlc"));
}

TEST_F(KVL3dWriterTest, ObjectWithoutTrianglesIsWrittenWithTheFirstMaterial) {
    KVL3dWriter writer;
    writer.addObject({{}, {}});
    EXPECT_NE(std::string::npos, writer.toText().find("  materialmode = single;\n"
                                                      "  material = 0;\n"));
    EXPECT_EQ(std::string("{KVLB01}\0\0\0\0\x01\0\0\0\0\0\0\0\0\0\0\0", 24), writer.toBinary());
}
