#include "e2e/PlayerLog.h"
#include "graphics/Image.h"
#include "objects/O3dScene.h"
#include "objects/ObjectParser.h"
#include "support/PlayerProcess.h"
#include "support/ProductionScript.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

// Whole runs of the player on small productions with the two scene effects
// of the player itself: the object viewer on the production's torus knot
// and the textured quad on its pictures, each ordered about by the timeline.

namespace {

std::string script(const std::string& blocks, const std::string& effects,
                   const std::string& timeline) {
    ProductionScript production;
    production.paths = "definition = resources/definitions/; misc = resources/misc/; "
                       "gfx = resources/graphics/; object = resources/objects/; "
                       "sound = resources/music/;";
    production.system = "start = 00:00:000; stop = 00:00:700;";
    production.screen = SCREEN;
    production.blocks = blocks;
    production.effects = effects;
    production.timeline = timeline;
    return production.text();
}

// Both forms of the knot, three pictures, two viewers and a quad, and
// orders for every method of both effects but the render target.
const std::string RESOURCES =
    "objects { knot = knot.kvlc; copper = knot.kvlb; }\n"
    "graphics { sysicon_pause = sysicon_pause.png, GL_TEXTURE_2D; logo = kvllogo.png, "
    "GL_TEXTURE_2D; grid = grid.png, GL_TEXTURE_2D; }\n";

const std::string EFFECTS =
    "knot * DisplayObject { object = objects[knot]; zpos = -8.0; yrot = 0.2; drawnormals = 1; }\n"
    "copper * DisplayObject { object = objects[copper]; zpos = -12.0; xrot = 0.1; "
    "normals = reverse; shading = wire; scale = 0.5; }\n"
    "logo * DisplayTexture { texture = graphics[logo]; zpos = -3.0; xscale = 1.2; "
    "yscale = 0.6; }\n";

const std::string TIMELINE = "knot.start(00:00:000, 20);\n"
                             "copper.start(00:00:000, 25);\n"
                             "logo.start(00:00:000, 30);\n"
                             "logo.fadeUp(00:00:000, 00:00:300);\n"
                             "knot.setRotation(00:00:100, 0.0, 0.5, -1.25);\n"
                             "knot.moveTo(00:00:100, 00:00:400, 1.0, 0.0, -9.0);\n"
                             "copper.setObject(00:00:200, objects[knot]);\n"
                             "copper.setScaleValue(00:00:200, 0.75);\n"
                             "copper.setPosition(00:00:250, 0.0, 1.0, -10.0);\n"
                             "logo.moveTo(00:00:200, 00:00:500, 0.0, 1.0, -3.0);\n"
                             "logo.setTexture(00:00:300, graphics[grid]);\n"
                             "logo.setRotation(00:00:300, 0.0, 0.0, 1.0);\n"
                             "logo.setScaleValue(00:00:350, 1.0, 1.0);\n"
                             "logo.setPosition(00:00:350, 0.0, 0.0, -4.0);\n"
                             "logo.setTransparency(00:00:400, 0.5);\n"
                             "logo.fadeDown(00:00:450, 00:00:650);\n"
                             "knot.drawNormals(00:00:400, false);\n";

PlayerRun runWith(const std::string& text) {
    TempDir dir;
    dir.copyFromSource("resources/definitions");
    dir.copyFromSource("resources/graphics");
    dir.copyFromSource("resources/objects");
    dir.write(ProductionScript::PATH, text);
    return runToEnd(dir.path(), {}, 90);
}

// How the report shows a model of the production, read here the way the
// player reads it.
std::string sceneLine(const std::string& name, const std::string& file) {
    testing::internal::CaptureStdout();
    ObjectParser parser(std::string(KVL_SOURCE_DIR) + "/resources/objects/" + file);
    std::unique_ptr<O3dScene> scene(parser.isValid() ? parser.parse() : nullptr);
    std::string text = (scene != nullptr) ? scene->toString() : "";
    scene.reset();
    testing::internal::GetCapturedStdout();
    EXPECT_FALSE(text.empty()) << file;
    return "    " + name + " = " + text.substr(0, text.size() - 1);
}

// The start and the end of a texture's line in the report; the GL name
// between them depends on the order of loading.
void expectTextureLine(const std::vector<std::string>& lines, const std::string& name,
                       const std::string& file) {
    Image picture(std::string(KVL_SOURCE_DIR) + "/resources/graphics/" + file);
    std::string start = "    " + name + " = Texture {file='" + file + "',id=";
    std::string end = "',size='" + std::to_string(picture.getWidth()) + "," +
                      std::to_string(picture.getHeight()) + "',bpp='" +
                      std::to_string(picture.getBpp()) + "'}";
    auto found = std::find_if(lines.begin(), lines.end(),
                              [&](const std::string& line) { return line.rfind(start, 0) == 0; });
    ASSERT_NE(lines.end(), found) << start;
    ASSERT_GE(found->size(), end.size());
    EXPECT_EQ(end, found->substr(found->size() - end.size())) << *found;
}

// Loading went through and frames were drawn: a failed load also ends with
// exit code 0, but without these lines.
void expectFramesDrawn(const PlayerRun& run) {
    ASSERT_EQ(0, run.code) << allLines(run.lines);
    int init = indexOf(run.lines, "[Demo Init]");
    EXPECT_GE(init, 0) << allLines(run.lines);
    EXPECT_NE(-1, findLine(run.lines, "Duration : ")) << allLines(run.lines);
    EXPECT_NE(-1, indexOf(run.lines, "[Application End]")) << allLines(run.lines);
    for (const std::string& line : run.lines) {
        EXPECT_NE(0u, line.rfind("[GL_ERROR", 0)) << line;
    }
}

} // namespace

TEST(PlayerSceneEffects, ProductionWithObjectsPicturesAndBothSceneEffectsRunsToItsEnd) {
    PlayerRun run = runWith(script(RESOURCES, EFFECTS, TIMELINE));
    expectFramesDrawn(run);
}

TEST(PlayerSceneEffects, ObjectsBlockLoadsBothFormsOfTheKnotInNameOrder) {
    PlayerRun run = runWith(script(RESOURCES, EFFECTS, TIMELINE));
    ASSERT_EQ(0, run.code) << allLines(run.lines);
    int header = indexOf(run.lines, "[Loading 3D Objects]");
    int binary = indexOf(run.lines, "Loading : 'resources/objects/knot.kvlb'");
    int text = indexOf(run.lines, "Loading : 'resources/objects/knot.kvlc'");
    int next = indexOf(run.lines, "[Loading Animation Data]");
    ASSERT_GE(header, 0) << allLines(run.lines);
    EXPECT_EQ(header + 1, binary) << "copper comes before knot";
    EXPECT_LT(binary, text);
    EXPECT_LT(text, next);
    ASSERT_GE(next, 0);
    EXPECT_EQ("No animation data", run.lines[next + 1]);
}

TEST(PlayerSceneEffects, GraphicsBlockLoadsThePicturesInNameOrder) {
    PlayerRun run = runWith(script(RESOURCES, EFFECTS, TIMELINE));
    ASSERT_EQ(0, run.code) << allLines(run.lines);
    std::vector<std::string> expected = {"[Loading Graphics]", "Load : resources/graphics/grid.png",
                                         "Load : resources/graphics/kvllogo.png",
                                         "Load : resources/graphics/sysicon_pause.png",
                                         "[Loading Binary Data]"};
    EXPECT_EQ(expected, linesFrom(run.lines, "[Loading Graphics]", expected.size()))
        << allLines(run.lines);
}

TEST(PlayerSceneEffects, EveryViewerAndTheTemplatePrintTheirConstructorLine) {
    PlayerRun run = runWith(script(RESOURCES, EFFECTS, TIMELINE));
    ASSERT_EQ(0, run.code) << allLines(run.lines);
    EXPECT_EQ(3, count(run.lines, "DisplayObjectEffect()")) << allLines(run.lines);
    int templates = indexOf(run.lines, "[Adding effect templates]");
    ASSERT_GE(templates, 0);
    ASSERT_LT(templates + 1, static_cast<int>(run.lines.size()));
    EXPECT_EQ("DisplayObjectEffect()", run.lines[templates + 1]);
    // Effect blocks are made in name order: copper, knot, logo.
    std::vector<std::string> expected = {"[Create effect objects]", "DisplayObjectEffect()",
                                         "DisplayObject.init()",    "DisplayObjectEffect()",
                                         "DisplayObject.init()",    "DisplayTexture.init()",
                                         "[Parsing timeline]"};
    EXPECT_EQ(expected, linesFrom(run.lines, "[Create effect objects]", expected.size()))
        << allLines(run.lines);
}

TEST(PlayerSceneEffects, SetRotationPrintsTheNewSpeedsWhileTheDemoRuns) {
    PlayerRun run = runWith(script(RESOURCES, EFFECTS, TIMELINE));
    ASSERT_EQ(0, run.code) << allLines(run.lines);
    int init = indexOf(run.lines, "[Demo Init]");
    int rotation = indexOf(run.lines, "setRotation(0,0.5,-1.25)");
    int end = indexOf(run.lines, "[Shutting Down]");
    ASSERT_GE(init, 0) << allLines(run.lines);
    EXPECT_LT(init, rotation) << allLines(run.lines);
    EXPECT_LT(rotation, end);
    EXPECT_EQ(1, count(run.lines, "setRotation(0,0.5,-1.25)"));
    // The quad's own setRotation prints nothing.
    int printed = 0;
    for (const std::string& line : run.lines) {
        printed += (line.rfind("setRotation(", 0) == 0) ? 1 : 0;
    }
    EXPECT_EQ(1, printed);
}

TEST(PlayerSceneEffects, ReportListsTheModelsThePicturesAndTheEffects) {
    PlayerRun run = runWith(script(RESOURCES, EFFECTS, TIMELINE));
    ASSERT_EQ(0, run.code) << allLines(run.lines);
    std::vector<std::string> objects = {"DataObjectPool {", "    num3dObjects = 2",
                                        sceneLine("copper", "knot.kvlb"),
                                        sceneLine("knot", "knot.kvlc"), "}"};
    EXPECT_EQ(objects, linesFrom(run.lines, "DataObjectPool {", objects.size()))
        << allLines(run.lines);

    int textures = indexOf(run.lines, "DataTexturePool {");
    ASSERT_GE(textures, 0) << allLines(run.lines);
    ASSERT_LT(textures + 3, static_cast<int>(run.lines.size()));
    EXPECT_EQ("    numTextures = 3", run.lines[textures + 3]);
    expectTextureLine(run.lines, "grid", "grid.png");
    expectTextureLine(run.lines, "logo", "kvllogo.png");
    expectTextureLine(run.lines, "sysicon_pause", "sysicon_pause.png");

    std::vector<std::string> effects = {"EffectPool {", "    copper = Effect", "    knot = Effect",
                                        "    logo = Effect", "}"};
    EXPECT_EQ(effects, linesFrom(run.lines, "EffectPool {", effects.size())) << allLines(run.lines);

    // The pools free the models and the effects at the end.
    int pool = indexOf(run.lines, "[Dispose objectPool]");
    ASSERT_GE(pool, 0) << allLines(run.lines);
    EXPECT_NE(-1, indexOf(run.lines, " -> delete copper", pool));
    EXPECT_NE(-1, indexOf(run.lines, " -> delete knot", pool));
}

TEST(PlayerSceneEffects, ViewerWithoutAModelAndQuadWithoutAPictureRunToTheEnd) {
    // Neither name is looked up by the script: "none" is what the
    // definitions give, and the pools hold nothing of that name.
    PlayerRun run = runWith(script("",
                                   "empty * DisplayObject { zrot = 1.0; }\n"
                                   "blank * DisplayTexture { zpos = -4.0; }\n",
                                   "empty.start(00:00:000, 20);\n"
                                   "blank.start(00:00:000, 30);\n"
                                   "empty.setScaleValue(00:00:100, 2.0);\n"
                                   "empty.setObject(00:00:100, nothing);\n"
                                   "empty.drawNormals(00:00:100, true);\n"
                                   "empty.moveTo(00:00:100, 00:00:300, 1.0, 1.0, -5.0);\n"
                                   "blank.setTexture(00:00:200, nothing);\n"
                                   "blank.fadeDown(00:00:200, 00:00:400);\n"));
    expectFramesDrawn(run);
    EXPECT_NE(-1, indexOf(run.lines, "No objects")) << allLines(run.lines);
}
