#include "objects/KVL3dLoader_V1.h"

#include "LoadedScenes.h"
#include "ModelBytes.h"
#include "ObjectTestSupport.h"
#include "objects/Material.h"
#include "objects/O3d.h"
#include "objects/O3dPolygon.h"
#include "objects/O3dScene.h"
#include "objects/O3dVertex.h"
#include "runtime/KVLDemosys.h"
#include "script/File.h"
#include "support/PlayerProcess.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

// The binary model format, read from files built byte by byte.

namespace {

// The worked example of the format: one material, one object of one
// triangle, 170 bytes.
const std::vector<uint8_t> WORKED_EXAMPLE = {
    0x7B, 0x4B, 0x56, 0x4C, 0x42, 0x30, 0x31, 0x7D, // {KVLB01}
    0x01, 0x00, 0x00, 0x00,                         // materialCount 1
    0x73, 0x74, 0x65, 0x65, 0x6C, 0x00,             // steel
    0xCD, 0xCC, 0x4C, 0x3E, 0xCD, 0xCC, 0x4C, 0x3E, // ambient
    0xCD, 0xCC, 0x4C, 0x3E, 0x00, 0x00, 0x80, 0x3F, //
    0xCD, 0xCC, 0x4C, 0x3F, 0xCD, 0xCC, 0x4C, 0x3F, // diffuse
    0xCD, 0xCC, 0x4C, 0x3F, 0x00, 0x00, 0x80, 0x3F, //
    0x00, 0x00, 0x80, 0x3F, 0x00, 0x00, 0x80, 0x3F, // specular
    0x00, 0x00, 0x80, 0x3F, 0x00, 0x00, 0x80, 0x3F, //
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, // emissive
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x80, 0x3F, //
    0x00, 0x00, 0x20, 0x41,                         // shine 10
    0x01, 0x00, 0x00, 0x00,                         // objectCount 1
    0x03, 0x00, 0x00, 0x00,                         // numVertices 3
    0x00, 0x00, 0x80, 0xBF, 0x00, 0x00, 0x80, 0xBF, // vertex 0
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, //
    0x00, 0x00, 0x00, 0x00,                         //
    0x00, 0x00, 0x80, 0x3F, 0x00, 0x00, 0x80, 0xBF, // vertex 1
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x80, 0x3F, //
    0x00, 0x00, 0x00, 0x00,                         //
    0x00, 0x00, 0x80, 0x3F, 0x00, 0x00, 0x80, 0x3F, // vertex 2
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x80, 0x3F, //
    0x00, 0x00, 0x80, 0x3F,                         //
    0x01, 0x00, 0x00, 0x00,                         // numPolys 1
    0x00, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, // polygon 0, 1, 2
    0x02, 0x00, 0x00, 0x00,
};

} // namespace

class KVL3dLoaderTest : public ::testing::Test {
protected:
    void SetUp() override { KVLDemosys::resetState(); }
    void TearDown() override {
        scenes.clear();
        KVLDemosys::resetState();
    }

    // Reads the bytes the way the front end hands them over: the header
    // already consumed.
    O3dScene* load(const std::string& bytes, bool trace = false) {
        directory.write("model.kvlb", bytes);
        File file(directory.file("model.kvlb"), 0);
        file.readString(8);
        KVL3dLoader_V1 loader;
        loader.setTrace(trace);
        testing::internal::CaptureStdout();
        O3dScene* scene = loader.parse(&file);
        lines = splitLines(testing::internal::GetCapturedStdout());
        valid = loader.isValid();
        message = loader.getErrorMessage();
        return scenes.keep(scene);
    }

    TempDir directory;
    LoadedScenes scenes;
    std::vector<std::string> lines;
    bool valid = false;
    std::string message;
};

TEST_F(KVL3dLoaderTest, WorkedExampleOf170BytesGivesOneMaterialAndOneTriangle) {
    ASSERT_EQ(170u, WORKED_EXAMPLE.size());
    O3dScene* scene = load(std::string(WORKED_EXAMPLE.begin(), WORKED_EXAMPLE.end()));
    EXPECT_TRUE(valid);
    EXPECT_EQ("KVL3dLoader_V1 : Unknown error", message);
    EXPECT_EQ((std::vector<std::string>{"Reading binary kvl file", "MatName : steel", "Done!"}),
              lines);
    ASSERT_NE(nullptr, scene);

    ASSERT_EQ(1, scene->countMaterials());
    Material* steel = scene->getMaterial(0);
    // The name is printed, not stored.
    EXPECT_EQ("", steel->getName());
    EXPECT_EQ((std::vector<float>{0.2f, 0.2f, 0.2f, 1.0f}), values(steel->getAmbient()));
    EXPECT_EQ((std::vector<float>{0.8f, 0.8f, 0.8f, 1.0f}), values(steel->getDiffuse()));
    EXPECT_EQ((std::vector<float>{1, 1, 1, 1}), values(steel->getSpecular()));
    EXPECT_EQ((std::vector<float>{0, 0, 0, 1}), values(steel->getEmissive()));
    EXPECT_EQ(10.0f, steel->getShinyness());
    EXPECT_EQ(0.0f, steel->getTransparency());
    EXPECT_EQ(nullptr, steel->getTexture1());
    EXPECT_EQ(nullptr, steel->getTexture2());

    ASSERT_EQ(1, scene->countObjects());
    O3d* object = scene->getObject(0);
    EXPECT_EQ(steel, object->getMaterial());
    EXPECT_TRUE(object->hasObjectMaterial());
    EXPECT_FALSE(object->hasPolygonMaterial());
    EXPECT_EQ("", object->getName());
    EXPECT_EQ((std::vector<float>{0, 0, 0}), values3(object->getPosition()));
    EXPECT_EQ((std::vector<float>{0, 0, 0}), values3(object->getPivotPoint()));
    EXPECT_EQ(0, object->countKids());
    ASSERT_EQ(3, object->getVertexCount());
    EXPECT_EQ((std::vector<float>{-1, -1, 0}), values3(object->getVertex(0)->getVertex()));
    EXPECT_EQ((std::vector<float>{1, -1, 0}), values3(object->getVertex(1)->getVertex()));
    EXPECT_EQ((std::vector<float>{1, 1, 0}), values3(object->getVertex(2)->getVertex()));
    for (int i = 0; i < 3; i++) {
        EXPECT_EQ((std::vector<float>{0, 0, 1}), values3(object->getVertex(i)->getNormal()));
        EXPECT_EQ(1, object->getVertex(i)->countPolygons());
    }
    ASSERT_EQ(1, object->getPolyCount());
    O3dPolygon* polygon = object->getPolygon(0);
    for (int c = 0; c < 3; c++) {
        EXPECT_EQ(object->getVertex(c), polygon->getVn(c));
    }
    EXPECT_EQ(0.0f, polygon->getU(0));
    EXPECT_EQ(0.0f, polygon->getV(0));
    EXPECT_EQ(1.0f, polygon->getU(1));
    EXPECT_EQ(0.0f, polygon->getV(1));
    EXPECT_EQ(1.0f, polygon->getU(2));
    EXPECT_EQ(1.0f, polygon->getV(2));
    EXPECT_EQ((std::vector<float>{0, 0, 1}), values3(polygon->getNormal()));
    EXPECT_EQ(nullptr, polygon->getMaterial());
}

TEST_F(KVL3dLoaderTest, ShineIsReadAndDroppedSoTheNextFieldsStayInPlace) {
    ModelBytes b;
    b.i32(1).material("m", 0.75f, 64.0f).i32(1).triangle(0);
    O3dScene* scene = load(b.data);
    ASSERT_EQ(1, scene->countMaterials());
    EXPECT_EQ(10.0f, scene->getMaterial(0)->getShinyness());
    EXPECT_EQ((std::vector<float>{0.75f, 0, 0, 1}), values(scene->getMaterial(0)->getDiffuse()));
    EXPECT_EQ(1, scene->countPolygons());
}

TEST_F(KVL3dLoaderTest, MaterialCountZeroGivesObjectsWithBothMaterialFlagsFalse) {
    ModelBytes b;
    b.i32(0).i32(2).triangle(0).triangle(5);
    O3dScene* scene = load(b.data);
    EXPECT_EQ(0, scene->countMaterials());
    ASSERT_EQ(2, scene->countObjects());
    for (int i = 0; i < 2; i++) {
        EXPECT_FALSE(scene->getObject(i)->hasObjectMaterial());
        EXPECT_FALSE(scene->getObject(i)->hasPolygonMaterial());
        EXPECT_EQ(nullptr, scene->getObject(i)->getMaterial());
    }
    EXPECT_EQ((std::vector<std::string>{"Reading binary kvl file", "Done!"}), lines);
}

TEST_F(KVL3dLoaderTest, MaterialNameOfNoCharactersPrintsObject) {
    ModelBytes b;
    b.i32(2).material("", 0.5f).material("second", 0.25f).i32(0);
    O3dScene* scene = load(b.data);
    EXPECT_EQ((std::vector<std::string>{"Reading binary kvl file", "MatName : Object",
                                        "MatName : second", "Done!"}),
              lines);
    ASSERT_EQ(2, scene->countMaterials());
    // The empty name took one byte: the second record is read in place.
    EXPECT_EQ((std::vector<float>{0.25f, 0, 0, 1}), values(scene->getMaterial(1)->getDiffuse()));
}

TEST_F(KVL3dLoaderTest, EveryObjectTakesTheFirstMaterialAndTheOthersAreCarried) {
    ModelBytes b;
    b.i32(3).material("a", 0.1f).material("b", 0.2f).material("c", 0.3f);
    b.i32(2).triangle(0).triangle(2);
    O3dScene* scene = load(b.data);
    ASSERT_EQ(3, scene->countMaterials());
    ASSERT_EQ(2, scene->countObjects());
    for (int i = 0; i < 2; i++) {
        EXPECT_EQ(scene->getMaterial(0), scene->getObject(i)->getMaterial());
        EXPECT_TRUE(scene->getObject(i)->hasObjectMaterial());
        EXPECT_FALSE(scene->getObject(i)->hasPolygonMaterial());
    }
    EXPECT_EQ((std::vector<float>{2, 0, 0}),
              values3(scene->getObject(1)->getVertex(0)->getVertex()));
}

TEST_F(KVL3dLoaderTest, NegativeCountsReadNoRecords) {
    ModelBytes b;
    b.i32(-1).i32(1).i32(-5).i32(-2);
    O3dScene* scene = load(b.data);
    EXPECT_EQ(0, scene->countMaterials());
    ASSERT_EQ(1, scene->countObjects());
    EXPECT_EQ(0, scene->getObject(0)->getVertexCount());
    EXPECT_EQ(0, scene->getObject(0)->getPolyCount());
}

TEST_F(KVL3dLoaderTest, BytesBehindTheLastObjectAreIgnored) {
    ModelBytes b;
    b.i32(0).i32(1).triangle(0).i32(1).triangle(9).name("trailing text");
    O3dScene* scene = load(b.data);
    EXPECT_EQ(1, scene->countObjects());
    EXPECT_EQ(3, scene->countVertices());
    EXPECT_EQ(1, scene->countPolygons());
}

TEST_F(KVL3dLoaderTest, RecordCutShortByTheEndOfTheFileReadsZerosForItsMissingBytes) {
    ModelBytes b;
    b.i32(0).i32(1).i32(3).vertex(1, 2, 3, 4, 5).f32(6).f32(7);
    O3dScene* scene = load(b.data);
    ASSERT_EQ(1, scene->countObjects());
    O3d* object = scene->getObject(0);
    // Vertex 1 starts inside the file and is completed with zeros; vertex 2
    // would start behind the end and is not read.
    ASSERT_EQ(2, object->getVertexCount());
    EXPECT_EQ((std::vector<float>{1, 2, 3}), values3(object->getVertex(0)->getVertex()));
    EXPECT_EQ((std::vector<float>{6, 7, 0}), values3(object->getVertex(1)->getVertex()));
    EXPECT_EQ(0, object->getPolyCount());
    EXPECT_EQ((std::vector<std::string>{"Reading binary kvl file", "Done!"}), lines);
}

TEST_F(KVL3dLoaderTest, HugeCountsInAShortFileStopAtTheEndOfTheBuffer) {
    ModelBytes b;
    b.i32(0x7fffffff).material("a", 0.5f);
    O3dScene* scene = load(b.data);
    EXPECT_EQ(1, scene->countMaterials());
    EXPECT_EQ(0, scene->countObjects());

    ModelBytes objects;
    objects.i32(0).i32(0x7ffffff0).triangle(0);
    scene = load(objects.data);
    // The first object reads the triangle; the cursor is then at the end,
    // and no further object is begun.
    ASSERT_EQ(1, scene->countObjects());
    EXPECT_EQ(1, scene->countPolygons());

    ModelBytes polygons;
    polygons.i32(0).i32(1).i32(0).i32(0x40000000).i32(0).i32(0).i32(0);
    scene = load(polygons.data);
    ASSERT_EQ(1, scene->countObjects());
    EXPECT_EQ(1, scene->countPolygons());
}

TEST_F(KVL3dLoaderTest, VertexIndexBeyondTheVerticesGivesATriangleWithoutCorners) {
    ModelBytes b;
    b.i32(0).i32(1).i32(3).vertex(0, 0, 0, 0, 0).vertex(1, 0, 0, 0, 0).vertex(0, 1, 0, 0, 0);
    b.i32(3).i32(0).i32(1).i32(3).i32(-1).i32(1).i32(2).i32(0).i32(1).i32(2);
    O3dScene* scene = load(b.data);
    O3d* object = scene->getObject(0);
    ASSERT_EQ(3, object->getPolyCount());
    EXPECT_EQ(nullptr, object->getPolygon(0)->getVn(0));
    EXPECT_EQ(nullptr, object->getPolygon(1)->getVn(1));
    EXPECT_EQ(object->getVertex(2), object->getPolygon(2)->getVn(2));
    EXPECT_EQ(1, object->getVertex(0)->countPolygons());
    EXPECT_EQ((std::vector<float>{0, 0, 1}), values3(object->getVertex(0)->getNormal()));
}

TEST_F(KVL3dLoaderTest, TraceWritesEveryRecordAsItIsRead) {
    ModelBytes b;
    b.i32(1).name("red").colour(0.5f, 0.25f, 0, 1).colour(1, 0, 0, 1).colour(1, 1, 1, 1);
    b.colour(0, 0, 0, 1).f32(20.0f);
    b.i32(1).i32(3).vertex(0, 0, 0, 0, 0).vertex(1.5f, 0, 0, 1, 0).vertex(0, 1, 0, 0, 0.5f);
    b.i32(1).i32(0).i32(1).i32(2);
    load(b.data, true);
    EXPECT_EQ((std::vector<std::string>{"Reading binary kvl file",
                                        "----------------",
                                        "NumMaterials: 1",
                                        "----------------",
                                        "-------------",
                                        "Material ",
                                        "-------------",
                                        "MatName : red",
                                        "ambient : 0.5,0.25,0,1",
                                        "diffuse : 1,0,0,1",
                                        "specular : 1,1,1,1",
                                        "emissive : 0,0,0,1",
                                        "Shine : 20",
                                        "----------------",
                                        "NumObjects: 1",
                                        "----------------",
                                        "----------------",
                                        "NumVertices: 3",
                                        "----------------",
                                        "V0: 0,0,0 - 0,0",
                                        "V1: 1.5,0,0 - 1,0",
                                        "V2: 0,1,0 - 0,0.5",
                                        "----------------",
                                        "NumPolys : 1",
                                        "----------------",
                                        "P0: 0,1,2",
                                        "setVertices()",
                                        "setPolygons()",
                                        "calculateNormals()",
                                        "calculateVertexNormals();",
                                        "Done!"}),
              lines);
}

TEST_F(KVL3dLoaderTest, WithoutTraceOnlyTheMaterialNamesAreLogged) {
    ModelBytes b;
    b.i32(2).material("a", 0.5f).material("b", 0.5f).i32(1).triangle(0);
    load(b.data);
    EXPECT_EQ((std::vector<std::string>{"Reading binary kvl file", "MatName : a", "MatName : b",
                                        "Done!"}),
              lines);
}
