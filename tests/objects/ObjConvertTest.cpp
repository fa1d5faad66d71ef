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

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

// The OBJ converter of tools/, run as a program; its output is read back
// through the player's own model reader.

namespace {

// The tools are built next to the player.
std::string toolPath() {
    return (std::filesystem::path(KVL_PLAYER).parent_path() / "tools" / "objconvert").string();
}

const std::string CUBE = "# a cube of eight corners and six quads\n"
                         "v -1 -1 -1\nv 1 -1 -1\nv 1 1 -1\nv -1 1 -1\n"
                         "v -1 -1 1\nv 1 -1 1\nv 1 1 1\nv -1 1 1\n"
                         "f 1 4 3 2\nf 5 6 7 8\nf 1 2 6 5\nf 2 3 7 6\nf 3 4 8 7\nf 4 1 5 8\n";

} // namespace

class ObjConvertTest : public ::testing::Test {
protected:
    void SetUp() override {
        KVLDemosys::resetState();
        ASSERT_TRUE(std::filesystem::exists(toolPath())) << "build the objconvert tool first";
    }
    void TearDown() override {
        scenes.clear();
        KVLDemosys::resetState();
    }

    // Runs the tool in the test's directory; the exit code.
    int run(const std::string& arguments) {
        std::string command = "cd '" + directory.path() + "' && '" + toolPath() + "' " + arguments +
                              " > out.txt 2> err.txt";
        int status = std::system(command.c_str());
        out = directory.read("out.txt");
        err = directory.read("err.txt");
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    int convert(const std::string& obj, const std::string& output,
                const std::string& options = "") {
        directory.write("model.obj", obj);
        return run(options + " model.obj " + output);
    }

    // The file read the way the player reads it.
    O3dScene* load(const std::string& name) {
        return scenes.read(directory.file(name), &parserLog);
    }

    TempDir directory;
    LoadedScenes scenes;
    std::string out;
    std::string err;
    std::string parserLog;
};

TEST_F(ObjConvertTest, HelpShowsTheUsageAndOneWorkedExample) {
    EXPECT_EQ(0, run("--help"));
    EXPECT_NE(std::string::npos,
              out.find("Usage: objconvert [--text | --binary] input.obj output"));
    EXPECT_NE(std::string::npos, out.find("Example:\n"));
    EXPECT_EQ("", err);
}

TEST_F(ObjConvertTest, WorkedExampleOfTheHelpGivesASquareOfTwoTriangles) {
    run("--help");
    std::string help = out;
    std::string command = "printf 'v -1 -1 0\\nv 1 -1 0\\nv 1 1 0\\nv -1 1 0\\nf 1 2 3 4\\n'";
    ASSERT_NE(std::string::npos, help.find(command));
    std::filesystem::create_directories(directory.file("resources/objects"));
    ASSERT_EQ(
        0, std::system(("cd '" + directory.path() + "' && " + command + " > square.obj").c_str()));
    EXPECT_EQ(0, run("square.obj resources/objects/square.kvlc"));
    // The summary line the help shows is the one the tool prints.
    EXPECT_NE(std::string::npos, help.find("  " + out));
    EXPECT_EQ("resources/objects/square.kvlc (text): 1 object(s), 1 material(s), 4 vertices, 2 "
              "triangles\n",
              out);
    O3dScene* scene = load("resources/objects/square.kvlc");
    ASSERT_NE(nullptr, scene);
    EXPECT_EQ(4, scene->countVertices());
    EXPECT_EQ(2, scene->countPolygons());
    EXPECT_EQ((std::vector<float>{0, 0, 1}),
              values3(scene->getObject(0)->getPolygon(1)->getNormal()));
}

TEST_F(ObjConvertTest, KnownObjLoadsWithTheSameVertexAndTriangleCountsInBothFormats) {
    ASSERT_EQ(0, convert(CUBE, "cube.kvlc"));
    ASSERT_EQ(0, convert(CUBE, "cube.kvlb"));
    O3dScene* text = load("cube.kvlc");
    O3dScene* binary = load("cube.kvlb");
    ASSERT_NE(nullptr, text);
    ASSERT_NE(nullptr, binary);
    for (O3dScene* scene : {text, binary}) {
        EXPECT_EQ(1, scene->countObjects());
        EXPECT_EQ(8, scene->countVertices());
        EXPECT_EQ(12, scene->countPolygons());
        EXPECT_EQ(1, scene->countMaterials());
        O3d* cube = scene->getObject(0);
        EXPECT_EQ(scene->getMaterial(0), cube->getMaterial());
        EXPECT_EQ((std::vector<float>{1, 1, 1}), values3(cube->getVertex(6)->getVertex()));
        // Faces written counter-clockwise from outside point outwards.
        EXPECT_EQ((std::vector<float>{0, 0, -1}), values3(cube->getPolygon(0)->getNormal()));
        EXPECT_EQ((std::vector<float>{0, 0, 1}), values3(cube->getPolygon(2)->getNormal()));
    }
}

TEST_F(ObjConvertTest, FormatFollowsTheOutputNameUnlessAnOptionChoosesIt) {
    ASSERT_EQ(0, convert(CUBE, "a.kvlb"));
    ASSERT_EQ(0, convert(CUBE, "b.kvlb", "--text"));
    ASSERT_EQ(0, convert(CUBE, "c.model", "--binary"));
    ASSERT_EQ(0, convert(CUBE, "d.model"));
    EXPECT_EQ("{KVLB01}", directory.read("a.kvlb").substr(0, 8));
    EXPECT_EQ("{KVLC01}", directory.read("b.kvlb").substr(0, 8));
    EXPECT_EQ("{KVLB01}", directory.read("c.model").substr(0, 8));
    EXPECT_EQ("{KVLC01}", directory.read("d.model").substr(0, 8));
    EXPECT_EQ("d.model (text): 1 object(s), 1 material(s), 8 vertices, 12 triangles\n", out);
}

TEST_F(ObjConvertTest, CornersInAllFourFormsGiveTheirTextureCoordinates) {
    const std::string obj = "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n"
                            "vt 0.25 0.5\nvt 0.75 0.5\nvt 0.75 1\n"
                            "vn 0 0 1\n"
                            "f 1/1 2/2/1 3/3\n"
                            "f 1//1 3 4/1/1\n";
    for (const char* name : {"m.kvlc", "m.kvlb"}) {
        ASSERT_EQ(0, convert(obj, name));
        O3dScene* scene = load(name);
        ASSERT_NE(nullptr, scene);
        O3d* object = scene->getObject(0);
        ASSERT_EQ(2, object->getPolyCount());
        // Position 1 comes with vt 1 and without: two vertices. Position 3
        // likewise, and position 4 once.
        EXPECT_EQ(6, object->getVertexCount());
        O3dPolygon* first = object->getPolygon(0);
        EXPECT_EQ(0.25f, first->getU(0));
        EXPECT_EQ(0.5f, first->getV(0));
        EXPECT_EQ(0.75f, first->getU(1));
        EXPECT_EQ(1.0f, first->getV(2));
        O3dPolygon* second = object->getPolygon(1);
        EXPECT_EQ(0.0f, second->getU(0));
        EXPECT_EQ(0.0f, second->getU(1));
        EXPECT_EQ(0.25f, second->getU(2));
        EXPECT_EQ((std::vector<float>{0, 1, 0}), values3(second->getVn(2)->getVertex()));
    }
}

TEST_F(ObjConvertTest, NegativeIndicesCountBackFromTheLastElementRead) {
    const std::string obj = "v 5 5 5\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf -3 -2 -1\n"
                            "v 0 0 2\nv 1 0 2\nv 0 1 2\nf -3 -2 -1\n";
    ASSERT_EQ(0, convert(obj, "m.kvlc"));
    O3dScene* scene = load("m.kvlc");
    ASSERT_NE(nullptr, scene);
    O3d* object = scene->getObject(0);
    ASSERT_EQ(2, object->getPolyCount());
    EXPECT_EQ(6, object->getVertexCount());
    EXPECT_EQ((std::vector<float>{0, 0, 0}), values3(object->getPolygon(0)->getVn(0)->getVertex()));
    EXPECT_EQ((std::vector<float>{0, 1, 2}), values3(object->getPolygon(1)->getVn(2)->getVertex()));
}

TEST_F(ObjConvertTest, FaceOfFiveCornersBecomesAFanOfThreeTriangles) {
    const std::string obj = "v 0 0 0\nv 2 0 0\nv 3 1 0\nv 1 2 0\nv -1 1 0\nf 1 2 3 4 5\n";
    ASSERT_EQ(0, convert(obj, "m.kvlb"));
    O3dScene* scene = load("m.kvlb");
    ASSERT_NE(nullptr, scene);
    O3d* object = scene->getObject(0);
    ASSERT_EQ(3, object->getPolyCount());
    const std::vector<std::vector<int>> fan = {{0, 1, 2}, {0, 2, 3}, {0, 3, 4}};
    for (int p = 0; p < 3; p++) {
        for (int c = 0; c < 3; c++) {
            EXPECT_EQ(object->getVertex(fan[p][c]), object->getPolygon(p)->getVn(c));
        }
        EXPECT_EQ((std::vector<float>{0, 0, 1}), values3(object->getPolygon(p)->getNormal()));
    }
}

TEST_F(ObjConvertTest, ObjectsAndGroupsStartNewObjectsAndEmptyOnesAreDropped) {
    const std::string obj = "o empty\n"
                            "o first\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n"
                            "g second\nv 0 0 1\nv 1 0 1\nv 0 1 1\nf 4 5 6\nf 1 5 6\n"
                            "g\n";
    for (const char* name : {"m.kvlc", "m.kvlb"}) {
        ASSERT_EQ(0, convert(obj, name));
        O3dScene* scene = load(name);
        ASSERT_NE(nullptr, scene);
        ASSERT_EQ(2, scene->countObjects());
        EXPECT_EQ(3, scene->getObject(0)->getVertexCount());
        EXPECT_EQ(1, scene->getObject(0)->getPolyCount());
        // Each object keeps only the vertices its faces use.
        EXPECT_EQ(4, scene->getObject(1)->getVertexCount());
        EXPECT_EQ(2, scene->getObject(1)->getPolyCount());
    }
}

TEST_F(ObjConvertTest, MaterialsComeFromTheLibraryAndSeveralInOneObjectAreGivenPerTriangle) {
    directory.write("model.mtl", "newmtl red\nKd 1 0 0\nKa 0.1 0 0\nKs 0.5 0.5 0.5\n"
                                 "newmtl blue\nKd 0 0 1\nKe 0 0 0.25\nmap_Kd -bm 1 blue.png\n");
    const std::string obj = "mtllib model.mtl\n"
                            "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n"
                            "o both\nusemtl blue\nf 1 2 3\nusemtl red\nf 1 3 4\nusemtl blue\n"
                            "f 2 3 4\n"
                            "o one\nf 4 3 2\n";
    ASSERT_EQ(0, convert(obj, "m.kvlc"));
    std::string text = directory.read("m.kvlc");
    EXPECT_NE(std::string::npos, text.find("texture1 = blue.png;"));
    // The texture would be loaded with the model: leave it out for reading.
    directory.write("m.kvlc", text.replace(text.find("texture1 = blue.png;"), 20, ""));
    O3dScene* scene = load("m.kvlc");
    ASSERT_NE(nullptr, scene);
    ASSERT_EQ(2, scene->countMaterials());
    Material* blue = scene->getMaterial(0);
    Material* red = scene->getMaterial(1);
    EXPECT_EQ("blue", blue->getName());
    EXPECT_EQ((std::vector<float>{0, 0, 1}), rgb(blue->getDiffuse()));
    EXPECT_EQ((std::vector<float>{0, 0, 0.25f}), rgb(blue->getEmissive()));
    EXPECT_EQ("red", red->getName());
    EXPECT_EQ((std::vector<float>{1, 0, 0}), rgb(red->getDiffuse()));
    EXPECT_EQ((std::vector<float>{0.1f, 0, 0}), rgb(red->getAmbient()));
    EXPECT_EQ((std::vector<float>{0.5f, 0.5f, 0.5f}), rgb(red->getSpecular()));

    ASSERT_EQ(2, scene->countObjects());
    O3d* both = scene->getObject(0);
    EXPECT_TRUE(both->hasPolygonMaterial());
    EXPECT_FALSE(both->hasObjectMaterial());
    ASSERT_EQ(3, both->getPolyCount());
    // Grouped by material: the two blue triangles first.
    EXPECT_EQ(blue, both->getPolygon(0)->getMaterial());
    EXPECT_EQ(blue, both->getPolygon(1)->getMaterial());
    EXPECT_EQ(red, both->getPolygon(2)->getMaterial());
    O3d* one = scene->getObject(1);
    EXPECT_TRUE(one->hasObjectMaterial());
    EXPECT_EQ(blue, one->getMaterial());

    ASSERT_EQ(0, convert(obj, "m.kvlb"));
    EXPECT_NE(std::string::npos, err.find("first material"));
    EXPECT_NE(std::string::npos, err.find("no textures"));
    O3dScene* binary = load("m.kvlb");
    ASSERT_NE(nullptr, binary);
    EXPECT_EQ(2, binary->countMaterials());
    EXPECT_NE(std::string::npos, parserLog.find("MatName : blue\nMatName : red\n"));
    EXPECT_EQ((std::vector<float>{1, 0, 0}), rgb(binary->getMaterial(1)->getDiffuse()));
}

TEST_F(ObjConvertTest, IndexOutOfRangeIsRefusedWithItsLineAndNoFileIsWritten) {
    EXPECT_EQ(1, convert("v 0 0 0\nv 1 0 0\nv 0 1 0\n\nf 1 2 4\n", "m.kvlc"));
    EXPECT_EQ("objconvert: model.obj:5: index 4 out of range (3 defined)\n", err);
    EXPECT_FALSE(std::filesystem::exists(directory.file("m.kvlc")));
    EXPECT_EQ(1, convert("v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 -4\n", "m.kvlc"));
    EXPECT_EQ("objconvert: model.obj:4: index -4 out of range (3 defined)\n", err);
    EXPECT_EQ(1, convert("v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1/2 2/2 3/2\n", "m.kvlc"));
    EXPECT_EQ("objconvert: model.obj:4: index 2 out of range (0 defined)\n", err);
}

TEST_F(ObjConvertTest, DamagedLinesAreRefusedWithTheirReason) {
    EXPECT_EQ(1, convert("v 0 0\n", "m.kvlc"));
    EXPECT_EQ("objconvert: model.obj:1: a vertex needs three numbers\n", err);
    EXPECT_EQ(1, convert("v 0 0 0\nv 1 0 0\nf 1 2\n", "m.kvlc"));
    EXPECT_EQ("objconvert: model.obj:3: a face needs three corners\n", err);
    EXPECT_EQ(1, convert("v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 x 3\n", "m.kvlc"));
    EXPECT_EQ("objconvert: model.obj:4: bad index 'x'\n", err);
}

TEST_F(ObjConvertTest, ModelWithoutFacesIsRefused) {
    EXPECT_EQ(1, convert("v 0 0 0\nv 1 0 0\nv 0 1 0\nl 1 2\n", "m.kvlb"));
    EXPECT_EQ("objconvert: 'model.obj' has no faces\n", err);
    EXPECT_FALSE(std::filesystem::exists(directory.file("m.kvlb")));
}

TEST_F(ObjConvertTest, MissingInputAndWrongArgumentsEndWithAnError) {
    EXPECT_EQ(1, run("absent.obj m.kvlc"));
    EXPECT_EQ("objconvert: cannot open 'absent.obj'\n", err);
    EXPECT_EQ(2, run("--fast a.obj b.kvlc"));
    EXPECT_EQ("objconvert: unknown option '--fast' (see --help)\n", err);
    EXPECT_EQ(2, run("a.obj"));
    EXPECT_NE(std::string::npos, err.find("Usage: objconvert"));
}
