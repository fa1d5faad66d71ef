#include "effects/DisplayTexture.h"

#include "ProductionDefinition.h"
#include "TimelineCall.h"
#include "graphics/FrameBufferObject.h"
#include "graphics/Texture.h"
#include "runtime/Data.h"
#include "runtime/DataFBOPool.h"
#include "runtime/DataTexturePool.h"
#include "runtime/KVLDemosys.h"
#include "script/ParameterGroup.h"
#include "support/GLTestWindow.h"
#include "support/PngWriter.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

// The textured quad is checked through its fields with a clock fed by hand,
// the way ActionPool feeds it (draw, then setLastCalled), and on the screen
// under the player's own perspective projection with a 2 x 2 picture loaded
// from a PNG file.

namespace {

const ProductionDefinition DEFINITION("DisplayTexture");

// A script block: the definition's defaults with some values replaced.
std::unique_ptr<ParameterGroup> block(const std::map<std::string, std::string>& values) {
    std::unique_ptr<ParameterGroup> group = DEFINITION.defaults();
    if (group == nullptr) {
        ADD_FAILURE() << "no definition " << DEFINITION.getPath();
        group.reset(new ParameterGroup());
    }
    for (const auto& entry : values) {
        group->addParameter(entry.first, entry.second);
    }
    return group;
}

// The arguments of a timeline call: "p1" is the event's own time.
ParameterGroup call(const std::string& method, const std::string& time,
                    std::initializer_list<const char*> arguments) {
    return timelineCall("plate", method, time, arguments);
}

// The four texels of the test pictures, as the PNG file stores them: top
// row first.
const GLTestWindow::Rgb RED = {255, 0, 0};
const GLTestWindow::Rgb GREEN = {0, 255, 0};
const GLTestWindow::Rgb BLUE = {0, 0, 255};
const GLTestWindow::Rgb YELLOW = {255, 255, 0};
const GLTestWindow::Rgb WHITE = {255, 255, 255};

} // namespace

// ---------------------------------------------------------------- template

TEST(DisplayTexture, TemplateIsMadeWithoutAWindowAndGetInstanceMakesANewQuad) {
    DisplayTexture plate;
    std::unique_ptr<Effect> instance(plate.getInstance());
    EXPECT_NE(nullptr, dynamic_cast<DisplayTexture*>(instance.get()));
    EXPECT_NE(&plate, instance.get());
    EXPECT_EQ(nullptr, plate.getRenderTarget());
}

TEST(DisplayTexture, NewQuadIsOpaqueStillAndUnturnedWithNothingRunning) {
    DisplayTexture plate;
    EXPECT_EQ(1.0f, plate.getAlpha());
    EXPECT_EQ(1.0, plate.getFadeUpProgress());
    EXPECT_EQ(1.0, plate.getFadeDownProgress());
    EXPECT_EQ(1.0, plate.getMoveProgress());
    for (int i = 0; i < 3; i++) {
        EXPECT_EQ(0.0f, plate.getRotationAngle()[i]);
        EXPECT_EQ(0.0f, plate.getRotationSpeed()[i]);
        EXPECT_EQ(0.0f, plate.getPosition()[i]);
    }
}

TEST(DisplayTexture, DefinitionDeclaresEveryKeyThatInitReads) {
    std::unique_ptr<ParameterGroup> defaults = DEFINITION.defaults();
    ASSERT_NE(nullptr, defaults);
    for (const char* key : {"xpos", "ypos", "zpos", "xrot", "yrot", "zrot", "texture", "xscale",
                            "yscale", "alphablend"}) {
        EXPECT_TRUE(defaults->exist(key)) << key;
    }
}

TEST(DisplayTexture, DefinitionDeclaresTheNineMethodsWithTheirArguments) {
    DEFINITION.expectMethods({{"setRenderTarget", {"<event>", "<string>"}},
                              {"fadeUp", {"<event>", "<time>"}},
                              {"fadeDown", {"<event>", "<time>"}},
                              {"moveTo", {"<event>", "<time>", "<float>", "<float>", "<float>"}},
                              {"setScaleValue", {"<event>", "<float>", "<float>"}},
                              {"setTexture", {"<event>", "<string>"}},
                              {"setRotation", {"<event>", "<float>", "<float>", "<float>"}},
                              {"setPosition", {"<event>", "<float>", "<float>", "<float>"}},
                              {"setTransparency", {"<event>", "<float>"}}});
}

// ---------------------------------------------------------------- with GL and pools

class DisplayTextureScene : public GLTestWindow {
protected:
    void SetUp() override {
        GLTestWindow::SetUp();
        KVLDemosys::data = new Data();
        KVLDemosys::texturePool = new DataTexturePool();
        KVLDemosys::fboPool = new DataFBOPool();
        KVLDemosys::data->addData("texturePool", KVLDemosys::texturePool);
        KVLDemosys::data->addData("fboPool", KVLDemosys::fboPool);
        // The player's own projection for the 64 x 64 window: near 1, far 80.
        // At z = -2 one unit is 32 pixels, so a quad of half extent 0.5
        // spans pixels 16 to 48 and each texel of a 2 x 2 picture 16 pixels.
        KVLDemosys::setView();
        glLoadIdentity();
        grey = background();
    }

    void TearDown() override {
        testing::internal::CaptureStdout();
        plates.clear();
        delete KVLDemosys::data;
        testing::internal::GetCapturedStdout();
        KVLDemosys::data = nullptr;
        KVLDemosys::texturePool = nullptr;
        KVLDemosys::fboPool = nullptr;
        GLTestWindow::TearDown();
    }

    // A 2 x 2 RGBA picture, top row first, loaded the way the graphics block
    // loads it and sampled at the nearest texel.
    Texture* loadPicture(const std::string& name, const std::vector<uint8_t>& rgba) {
        std::string path = directory.file(name + ".png");
        EXPECT_TRUE(PngWriter::save(path, PngWriter::rgba(2, 2, rgba)));
        testing::internal::CaptureStdout();
        Texture* texture = KVLDemosys::loadTexture(path, GL_TEXTURE_2D, false);
        testing::internal::GetCapturedStdout();
        EXPECT_NE(nullptr, texture);
        if (texture != nullptr) {
            texture->setInterpolation(GL_NEAREST);
            KVLDemosys::texturePool->addTexture(name, texture);
        }
        return texture;
    }

    // Red, green / blue, yellow, all opaque.
    Texture* loadQuadrants(const std::string& name = "quadrants") {
        return loadPicture(name,
                           {255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255, 255, 0, 255});
    }

    // Opaque red, half transparent green / invisible blue, opaque white.
    Texture* loadTranslucent() {
        return loadPicture("translucent",
                           {255, 0, 0, 255, 0, 255, 0, 128, 0, 0, 255, 0, 255, 255, 255, 255});
    }

    DisplayTexture* make(const std::map<std::string, std::string>& values) {
        std::map<std::string, std::string> all = {{"xscale", "0.5"}, {"yscale", "0.5"}};
        for (const auto& entry : values) {
            all[entry.first] = entry.second;
        }
        blocks.push_back(block(all));
        DisplayTexture* plate = new DisplayTexture();
        plate->setParameters(blocks.back().get());
        testing::internal::CaptureStdout();
        plate->init();
        testing::internal::GetCapturedStdout();
        plates.emplace_back(plate);
        return plate;
    }

    // One frame as the action pool runs it, over a grey background.
    void frame(DisplayTexture* plate, unsigned int ticks) {
        glClearColor(0.5f, 0.5f, 0.5f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        plate->draw(ticks);
        plate->setLastCalled(ticks);
    }

    std::string order(DisplayTexture* plate, const std::string& method, const std::string& time,
                      std::initializer_list<const char*> arguments) {
        ParameterGroup group = call(method, time, arguments);
        testing::internal::CaptureStdout();
        plate->modify(method, &group);
        return testing::internal::GetCapturedStdout();
    }

    // The fragments that pass every test in one draw; the quad covers 1024
    // pixels when it is whole.
    static GLuint fragmentsOf(DisplayTexture* plate, unsigned int ticks) {
        GLuint query = 0;
        glGenQueries(1, &query);
        glBeginQuery(GL_SAMPLES_PASSED, query);
        plate->draw(ticks);
        plate->setLastCalled(ticks);
        glEndQuery(GL_SAMPLES_PASSED);
        GLuint passed = 0;
        glGetQueryObjectuiv(query, GL_QUERY_RESULT, &passed);
        glDeleteQueries(1, &query);
        return passed;
    }

    // The grey that the frames are drawn over.
    static Rgb background() {
        glClearColor(0.5f, 0.5f, 0.5f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
        return readRgb(0, 0);
    }

    // `colour` drawn with the given alpha over `under`, as blending does it.
    static Rgb blended(const Rgb& colour, float alpha, const Rgb& under) {
        Rgb result{};
        for (int c = 0; c < 3; c++) {
            result[c] = static_cast<uint8_t>(colour[c] * alpha + under[c] * (1.0f - alpha) + 0.5f);
        }
        return result;
    }

    static void expectNear(const Rgb& expected, const Rgb& actual, int tolerance = 2) {
        for (int c = 0; c < 3; c++) {
            EXPECT_NEAR(expected[c], actual[c], tolerance)
                << "expected " << pixelText(expected) << ", got " << pixelText(actual);
        }
    }

    // The centres of the quarters of a quad of half extent 0.5 at z = -2.
    static Rgb upperLeft() { return readRgb(24, 40); }
    static Rgb upperRight() { return readRgb(40, 40); }
    static Rgb lowerLeft() { return readRgb(24, 24); }
    static Rgb lowerRight() { return readRgb(40, 24); }

    TempDir directory;
    Rgb grey{};
    std::vector<std::unique_ptr<ParameterGroup>> blocks;
    std::vector<std::unique_ptr<DisplayTexture>> plates;
};

// ---------------------------------------------------------------- init

TEST_F(DisplayTextureScene, InitReadsEveryKeyOfTheBlock) {
    Texture* picture = loadQuadrants();
    DisplayTexture* plate = make({{"xpos", "1.5"},
                                  {"ypos", "-0.5"},
                                  {"zpos", "-7"},
                                  {"xrot", "0.25"},
                                  {"yrot", "-1"},
                                  {"zrot", "2"},
                                  {"texture", "quadrants"},
                                  {"xscale", "3"},
                                  {"yscale", "0.75"},
                                  {"alphablend", "0"}});
    EXPECT_EQ(1.5f, plate->getPosition()[0]);
    EXPECT_EQ(-0.5f, plate->getPosition()[1]);
    EXPECT_EQ(-7.0f, plate->getPosition()[2]);
    EXPECT_EQ(0.25f, plate->getRotationSpeed()[0]);
    EXPECT_EQ(-1.0f, plate->getRotationSpeed()[1]);
    EXPECT_EQ(2.0f, plate->getRotationSpeed()[2]);
    EXPECT_EQ(picture, plate->getTexture());
    EXPECT_EQ(3.0f, plate->getScale()[0]);
    EXPECT_EQ(0.75f, plate->getScale()[1]);
    EXPECT_FALSE(plate->isAlphaBlending());
    EXPECT_EQ(1.0f, plate->getAlpha());
}

TEST_F(DisplayTextureScene, AlphablendOneOrTrueTurnsBlendingOnAndAnythingElseOff) {
    const std::map<std::string, bool> words = {{"1", true},      {"true", true},  {"0", false},
                                               {"false", false}, {"TRUE", false}, {"yes", false},
                                               {"", false}};
    for (const auto& word : words) {
        EXPECT_EQ(word.second, make({{"alphablend", word.first}})->isAlphaBlending())
            << "'" << word.first << "'";
    }
}

TEST_F(DisplayTextureScene, InitEndsWithAlphaOneWhateverCameBefore) {
    DisplayTexture* plate = make({{"alphablend", "false"}});
    order(plate, "setTransparency", "00:01:000", {"0.25"});
    order(plate, "fadeUp", "00:01:000", {"00:02:000"});
    ASSERT_EQ(0.0f, plate->getAlpha());
    testing::internal::CaptureStdout();
    plate->init();
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(1.0f, plate->getAlpha());
    EXPECT_EQ(1.0, plate->getFadeUpProgress()) << "init starts with reset";
}

TEST_F(DisplayTextureScene, TextureNameMissingFromThePoolDrawsAPlainWhiteQuad) {
    DisplayTexture* plate = make({{"texture", "nothing"}});
    EXPECT_EQ(nullptr, plate->getTexture());
    frame(plate, 0);
    EXPECT_EQ(WHITE, readRgb(32, 32));
    EXPECT_EQ(WHITE, upperLeft());
    EXPECT_EQ(grey, readRgb(8, 32));
}

// ---------------------------------------------------------------- reset

TEST_F(DisplayTextureScene, ResetStopsFadesAndMoveAndZeroesTheAnglesButKeepsPlaceAndAlpha) {
    DisplayTexture* plate = make({{"zrot", "1"}});
    frame(plate, 500);
    order(plate, "setPosition", "00:00:500", {"0.25", "0.5", "-3"});
    order(plate, "moveTo", "00:01:000", {"00:02:000", "1", "1", "-1"});
    order(plate, "fadeDown", "00:01:000", {"00:02:000"});
    order(plate, "setTransparency", "00:01:000", {"0.75"});
    ASSERT_NE(0.0f, plate->getRotationAngle()[2]);
    plate->reset();
    EXPECT_EQ(1.0, plate->getFadeUpProgress());
    EXPECT_EQ(1.0, plate->getFadeDownProgress());
    EXPECT_EQ(1.0, plate->getMoveProgress());
    EXPECT_EQ(0.0f, plate->getRotationAngle()[2]);
    EXPECT_EQ(1.0f, plate->getRotationSpeed()[2]);
    EXPECT_EQ(0.75f, plate->getAlpha());
    EXPECT_EQ(0.25f, plate->getPosition()[0]);
    EXPECT_EQ(-3.0f, plate->getPosition()[2]);
    frame(plate, 1500);
    EXPECT_EQ(0.75f, plate->getAlpha()) << "no fade runs after reset";
    EXPECT_EQ(0.25f, plate->getPosition()[0]) << "no move runs after reset";
}

// ---------------------------------------------------------------- modify

TEST_F(DisplayTextureScene,
       SetRenderTargetTakesAKnownBufferAndAnUnknownNameSendsTheQuadToTheScreen) {
    testing::internal::CaptureStdout();
    FrameBufferObject* buffer = new FrameBufferObject(16, 16, false, false);
    testing::internal::GetCapturedStdout();
    KVLDemosys::fboPool->addFBO("scene", buffer);
    DisplayTexture* plate = make({});
    EXPECT_EQ("", order(plate, "setRenderTarget", "00:01:000", {"scene"}));
    EXPECT_EQ(buffer, plate->getRenderTarget());
    EXPECT_EQ("", order(plate, "setRenderTarget", "00:02:000", {"screen"}));
    EXPECT_EQ(nullptr, plate->getRenderTarget());
}

TEST_F(DisplayTextureScene, FadeUpStartsAtAlphaZeroAndStopsAFadeDown) {
    DisplayTexture* plate = make({});
    order(plate, "fadeDown", "00:01:000", {"00:02:000"});
    order(plate, "fadeUp", "00:03:000", {"00:04:000"});
    EXPECT_EQ(0.0f, plate->getAlpha());
    EXPECT_EQ(0.0, plate->getFadeUpProgress());
    EXPECT_EQ(1.0, plate->getFadeDownProgress());
}

TEST_F(DisplayTextureScene, FadeDownStartsAtAlphaOneAndStopsAFadeUp) {
    DisplayTexture* plate = make({});
    order(plate, "fadeUp", "00:01:000", {"00:02:000"});
    order(plate, "fadeDown", "00:03:000", {"00:04:000"});
    EXPECT_EQ(1.0f, plate->getAlpha());
    EXPECT_EQ(1.0, plate->getFadeUpProgress());
    EXPECT_EQ(0.0, plate->getFadeDownProgress());
}

TEST_F(DisplayTextureScene, SetScaleValueSetsBothHalfExtents) {
    loadQuadrants();
    DisplayTexture* plate = make({{"texture", "quadrants"}});
    order(plate, "setScaleValue", "00:01:000", {"0.25", "1.5"});
    EXPECT_EQ(0.25f, plate->getScale()[0]);
    EXPECT_EQ(1.5f, plate->getScale()[1]);
    frame(plate, 0);
    // Now 16 pixels wide and taller than the window.
    EXPECT_EQ(grey, readRgb(22, 32));
    EXPECT_EQ(RED, readRgb(26, 62));
    EXPECT_EQ(BLUE, readRgb(26, 1));
}

TEST_F(DisplayTextureScene, SetTextureSwapsThePictureAndAnUnknownNameLeavesNone) {
    loadQuadrants();
    Texture* other = loadPicture("plain", std::vector<uint8_t>(16, 255));
    DisplayTexture* plate = make({{"texture", "quadrants"}});
    order(plate, "setTexture", "00:01:000", {"plain"});
    EXPECT_EQ(other, plate->getTexture());
    order(plate, "setTexture", "00:02:000", {"missing"});
    EXPECT_EQ(nullptr, plate->getTexture());
}

TEST_F(DisplayTextureScene, SetPositionMovesTheQuadAtOnce) {
    loadQuadrants();
    DisplayTexture* plate = make({{"texture", "quadrants"}});
    order(plate, "setPosition", "00:01:000", {"0.5", "0", "-2"});
    EXPECT_EQ(0.5f, plate->getPosition()[0]);
    frame(plate, 0);
    // Half a unit to the right: pixels 32 to 64.
    EXPECT_EQ(grey, readRgb(24, 40));
    EXPECT_EQ(RED, readRgb(40, 40));
    EXPECT_EQ(GREEN, readRgb(56, 40));
}

TEST_F(DisplayTextureScene, SetTransparencyBlendsTheQuadOverWhatIsBehind) {
    loadQuadrants();
    DisplayTexture* plate = make({{"texture", "quadrants"}, {"alphablend", "1"}});
    order(plate, "setTransparency", "00:01:000", {"0.5"});
    EXPECT_EQ(0.5f, plate->getAlpha());
    EXPECT_EQ(1024u, fragmentsOf(plate, 0));
    frame(plate, 0);
    expectNear(blended(RED, 0.5f, grey), upperLeft());
    expectNear(blended(YELLOW, 0.5f, grey), lowerRight());
}

TEST_F(DisplayTextureScene, UnknownMethodIsIgnored) {
    DisplayTexture* plate = make({});
    EXPECT_EQ("", order(plate, "fadeOut", "00:01:000", {"00:02:000"}));
    EXPECT_EQ("", order(plate, "settransparency", "00:01:000", {"0.5"}));
    EXPECT_EQ(1.0f, plate->getAlpha());
    EXPECT_EQ(1.0, plate->getFadeDownProgress());
}

// ---------------------------------------------------------------- fades

TEST_F(DisplayTextureScene, FadeUpRaisesAlphaFromZeroToOneBetweenItsTimes) {
    loadQuadrants();
    DisplayTexture* plate = make({{"texture", "quadrants"}});
    order(plate, "fadeUp", "00:02:000", {"00:04:000"});
    frame(plate, 2000);
    EXPECT_EQ(0.0f, plate->getAlpha());
    frame(plate, 2500);
    EXPECT_EQ(0.25f, plate->getAlpha());
    frame(plate, 3000);
    EXPECT_EQ(0.5f, plate->getAlpha());
    expectNear(blended(RED, 0.5f, grey), upperLeft());
    frame(plate, 4500);
    EXPECT_EQ(1.0f, plate->getAlpha());
    EXPECT_EQ(1.0, plate->getFadeUpProgress());
    EXPECT_EQ(RED, upperLeft());
    // Once at 1.0 the fade no longer reads the clock.
    frame(plate, 3000);
    EXPECT_EQ(1.0f, plate->getAlpha());
}

TEST_F(DisplayTextureScene, FadeDownLowersAlphaFromOneToZeroBetweenItsTimes) {
    loadQuadrants();
    DisplayTexture* plate = make({{"texture", "quadrants"}});
    order(plate, "fadeDown", "00:02:000", {"00:04:000"});
    frame(plate, 3500);
    EXPECT_EQ(0.25f, plate->getAlpha());
    expectNear(blended(GREEN, 0.25f, grey), upperRight());
    frame(plate, 4000);
    EXPECT_EQ(0.0f, plate->getAlpha());
    EXPECT_EQ(1.0, plate->getFadeDownProgress());
    EXPECT_EQ(grey, upperRight());
    frame(plate, 2500);
    EXPECT_EQ(0.0f, plate->getAlpha());
}

TEST_F(DisplayTextureScene, FadeUpOrderedDuringAFadeDownTakesOverItsTimes) {
    DisplayTexture* plate = make({});
    order(plate, "fadeDown", "00:01:000", {"00:03:000"});
    frame(plate, 2000);
    ASSERT_EQ(0.5f, plate->getAlpha());
    order(plate, "fadeUp", "00:02:000", {"00:06:000"});
    frame(plate, 3000);
    EXPECT_EQ(0.25f, plate->getAlpha());
    EXPECT_EQ(1.0, plate->getFadeDownProgress());
}

TEST_F(DisplayTextureScene, BeforeTheFadeUpTimeAlphaIsBelowZeroAndBlendingDropsTheWholeQuad) {
    loadQuadrants();
    DisplayTexture* plate = make({{"texture", "quadrants"}, {"alphablend", "true"}});
    order(plate, "fadeUp", "00:02:000", {"00:04:000"});
    EXPECT_EQ(0u, fragmentsOf(plate, 1000)) << "the alpha test lets no fragment through";
    EXPECT_EQ(-0.5f, plate->getAlpha());
    frame(plate, 1000);
    EXPECT_EQ(grey, upperLeft());
    EXPECT_EQ(grey, upperRight());
    EXPECT_EQ(grey, lowerLeft());
    EXPECT_EQ(grey, lowerRight());
}

TEST_F(DisplayTextureScene, BeforeTheFadeUpTimeWithoutBlendingTheQuadIsDrawnOpaque) {
    loadQuadrants();
    DisplayTexture* plate = make({{"texture", "quadrants"}, {"alphablend", "false"}});
    order(plate, "fadeUp", "00:02:000", {"00:04:000"});
    frame(plate, 1000);
    EXPECT_EQ(-0.5f, plate->getAlpha());
    EXPECT_EQ(RED, upperLeft());
    EXPECT_EQ(GREEN, upperRight());
    EXPECT_EQ(BLUE, lowerLeft());
    EXPECT_EQ(YELLOW, lowerRight());
}

TEST_F(DisplayTextureScene, QuadWithAlphablendOffIgnoresTransparencyAndFadesThoughAlphaChanges) {
    loadQuadrants();
    DisplayTexture* plate = make({{"texture", "quadrants"}, {"alphablend", "0"}});
    order(plate, "setTransparency", "00:01:000", {"0.25"});
    frame(plate, 1000);
    EXPECT_EQ(0.25f, plate->getAlpha());
    EXPECT_EQ(RED, upperLeft());
    order(plate, "fadeDown", "00:01:000", {"00:03:000"});
    frame(plate, 2000);
    EXPECT_EQ(0.5f, plate->getAlpha());
    EXPECT_EQ(GREEN, upperRight());
    frame(plate, 3000);
    EXPECT_EQ(0.0f, plate->getAlpha());
    EXPECT_EQ(BLUE, lowerLeft());
    EXPECT_EQ(YELLOW, lowerRight());
}

// ---------------------------------------------------------------- transparency of the picture

TEST_F(DisplayTextureScene, BlendingShowsThePicturesOwnTransparency) {
    loadTranslucent();
    DisplayTexture* plate = make({{"texture", "translucent"}, {"alphablend", "true"}});
    frame(plate, 0);
    EXPECT_EQ(RED, upperLeft());
    expectNear(blended(GREEN, 128.0f / 255.0f, grey), upperRight());
    EXPECT_EQ(grey, lowerLeft());
    EXPECT_EQ(WHITE, lowerRight());
}

TEST_F(DisplayTextureScene, QuadWithAlphablendOffDrawsTransparentTexelsOpaque) {
    loadTranslucent();
    DisplayTexture* plate = make({{"texture", "translucent"}, {"alphablend", "false"}});
    frame(plate, 0);
    EXPECT_EQ(RED, upperLeft());
    EXPECT_EQ(GREEN, upperRight());
    EXPECT_EQ(BLUE, lowerLeft());
    EXPECT_EQ(WHITE, lowerRight());
}

// ---------------------------------------------------------------- moves

TEST_F(DisplayTextureScene, MoveToGlidesBetweenItsTimesAndStaysOnTheTarget) {
    DisplayTexture* plate = make({{"xpos", "0"}, {"ypos", "0"}, {"zpos", "-2"}});
    order(plate, "moveTo", "00:01:000", {"00:03:000", "1", "0.5", "-4"});
    EXPECT_EQ(0.0, plate->getMoveProgress());
    EXPECT_EQ(0.0f, plate->getPosition()[0]) << "the order itself moves nothing";
    frame(plate, 2000);
    EXPECT_EQ(0.5f, plate->getPosition()[0]);
    EXPECT_EQ(0.25f, plate->getPosition()[1]);
    EXPECT_EQ(-3.0f, plate->getPosition()[2]);
    frame(plate, 3000);
    EXPECT_EQ(1.0f, plate->getPosition()[0]);
    EXPECT_EQ(0.5f, plate->getPosition()[1]);
    EXPECT_EQ(-4.0f, plate->getPosition()[2]);
    EXPECT_EQ(1.0, plate->getMoveProgress());
    order(plate, "setPosition", "00:03:500", {"-1", "0", "-2"});
    frame(plate, 4000);
    EXPECT_EQ(-1.0f, plate->getPosition()[0]) << "a finished move holds nothing in place";
}

TEST_F(DisplayTextureScene, MoveToStartsFromWhereTheQuadIsAtTheEventNotWhereTheScriptPutIt) {
    DisplayTexture* plate = make({{"xpos", "0"}, {"zpos", "-2"}});
    order(plate, "moveTo", "00:01:000", {"00:03:000", "2", "0", "-2"});
    frame(plate, 2000);
    ASSERT_EQ(1.0f, plate->getPosition()[0]);
    order(plate, "moveTo", "00:02:000", {"00:04:000", "-1", "0", "-2"});
    frame(plate, 3000);
    EXPECT_EQ(0.0f, plate->getPosition()[0]);
    frame(plate, 4000);
    EXPECT_EQ(-1.0f, plate->getPosition()[0]);
}

TEST_F(DisplayTextureScene, MoveDrawnBeforeItsStartReachesBackPastTheStartPoint) {
    DisplayTexture* plate = make({{"xpos", "0"}, {"zpos", "-2"}});
    order(plate, "moveTo", "00:01:000", {"00:03:000", "2", "0", "-2"});
    frame(plate, 500);
    EXPECT_EQ(-0.5f, plate->getPosition()[0]);
}

TEST_F(DisplayTextureScene, MovedQuadIsDrawnAtItsNewPlace) {
    loadQuadrants();
    DisplayTexture* plate = make({{"texture", "quadrants"}, {"zpos", "-2"}});
    order(plate, "moveTo", "00:01:000", {"00:02:000", "0", "-0.5", "-2"});
    frame(plate, 2000);
    // Half a unit down: pixels 0 to 32.
    EXPECT_EQ(RED, readRgb(24, 24));
    EXPECT_EQ(BLUE, readRgb(24, 8));
    EXPECT_EQ(grey, readRgb(24, 40));
}

// ---------------------------------------------------------------- rotation

TEST_F(DisplayTextureScene, SpeedsAreDegreesPerTwentyMillisecondsOfFrameTime) {
    DisplayTexture* plate = make({{"xrot", "1"}, {"yrot", "-2"}, {"zrot", "0.5"}});
    frame(plate, 500);
    EXPECT_EQ(25.0f, plate->getRotationAngle()[0]);
    EXPECT_EQ(-50.0f, plate->getRotationAngle()[1]);
    EXPECT_EQ(12.5f, plate->getRotationAngle()[2]);
    frame(plate, 540);
    EXPECT_EQ(27.0f, plate->getRotationAngle()[0]);
    EXPECT_EQ(-54.0f, plate->getRotationAngle()[1]);
    EXPECT_EQ(13.5f, plate->getRotationAngle()[2]);
}

TEST_F(DisplayTextureScene, FirstFrameLongAfterTheClockBeganTurnsBySixteenMilliseconds) {
    DisplayTexture* plate = make({{"zrot", "5"}});
    frame(plate, 60000);
    EXPECT_EQ(4.0f, plate->getRotationAngle()[2]);
}

TEST_F(DisplayTextureScene, StoppedClockTurnsNothing) {
    DisplayTexture* plate = make({{"zrot", "5"}});
    frame(plate, 60000);
    frame(plate, 60000);
    EXPECT_EQ(4.0f, plate->getRotationAngle()[2]);
}

TEST_F(DisplayTextureScene, AnglesGrowWithoutWrap) {
    DisplayTexture* plate = make({{"xrot", "20"}});
    frame(plate, 1000);
    frame(plate, 2000);
    EXPECT_EQ(2000.0f, plate->getRotationAngle()[0]);
}

TEST_F(DisplayTextureScene, AfterSetRotationToZeroTheQuadStaysAtTheAngleReachedUntilReset) {
    DisplayTexture* plate = make({{"zrot", "1"}});
    frame(plate, 400);
    ASSERT_EQ(20.0f, plate->getRotationAngle()[2]);
    order(plate, "setRotation", "00:00:400", {"0", "0", "0"});
    EXPECT_EQ(20.0f, plate->getRotationAngle()[2]);
    frame(plate, 800);
    EXPECT_EQ(20.0f, plate->getRotationAngle()[2]);
    plate->reset();
    EXPECT_EQ(0.0f, plate->getRotationAngle()[2]);
}

TEST_F(DisplayTextureScene, FirstFrameShowsTheStartAngleAndTheTurnShowsFromTheNext) {
    loadQuadrants();
    DisplayTexture* plate = make({{"texture", "quadrants"}, {"zrot", "4.5"}});
    frame(plate, 400);
    EXPECT_EQ(RED, upperLeft());
    ASSERT_EQ(90.0f, plate->getRotationAngle()[2]);
    frame(plate, 400);
    // A quarter turn counter-clockwise: the upper right quarter is now upper
    // left, the upper left one lower left.
    EXPECT_EQ(GREEN, upperLeft());
    EXPECT_EQ(RED, lowerLeft());
    EXPECT_EQ(BLUE, lowerRight());
    EXPECT_EQ(YELLOW, upperRight());
}

TEST_F(DisplayTextureScene, AnglesTurnTheQuadAroundXThenYThenZ) {
    loadQuadrants();
    DisplayTexture* plate = make({{"texture", "quadrants"}, {"xrot", "9"}, {"zrot", "4.5"}});
    frame(plate, 400);
    ASSERT_EQ(180.0f, plate->getRotationAngle()[0]);
    ASSERT_EQ(90.0f, plate->getRotationAngle()[2]);
    frame(plate, 400);
    // The quarter turn about z comes first, then half a turn about x turns
    // top and bottom over.
    EXPECT_EQ(RED, upperLeft());
    EXPECT_EQ(GREEN, lowerLeft());
    EXPECT_EQ(BLUE, upperRight());
    EXPECT_EQ(YELLOW, lowerRight());
}

// ---------------------------------------------------------------- picture and view

TEST_F(DisplayTextureScene, QuadShowsThePictureTheRightWayUpWhereItsPositionPutsIt) {
    loadQuadrants();
    DisplayTexture* plate = make({{"texture", "quadrants"}, {"zpos", "-2"}});
    frame(plate, 0);
    EXPECT_EQ(RED, upperLeft());
    EXPECT_EQ(GREEN, upperRight());
    EXPECT_EQ(BLUE, lowerLeft());
    EXPECT_EQ(YELLOW, lowerRight());
    frame(plate, 0);
    EXPECT_EQ(grey, readRgb(12, 32));
    EXPECT_EQ(grey, readRgb(52, 32));
    EXPECT_EQ(grey, readRgb(32, 12));
    EXPECT_EQ(grey, readRgb(32, 52));
    EXPECT_EQ(RED, readRgb(17, 46));
    EXPECT_EQ(YELLOW, readRgb(46, 17));
}

TEST_F(DisplayTextureScene, DepthDecidesHowLargeTheQuadLooks) {
    loadQuadrants();
    DisplayTexture* plate = make({{"texture", "quadrants"}, {"zpos", "-4"}});
    frame(plate, 0);
    // Twice as far, half as large: pixels 24 to 40.
    EXPECT_EQ(grey, readRgb(20, 32));
    frame(plate, 0);
    EXPECT_EQ(RED, readRgb(28, 36));
    EXPECT_EQ(YELLOW, readRgb(36, 28));
}

TEST_F(DisplayTextureScene, TheCameraHasNoSayButTheProjectionInForceDoes) {
    loadQuadrants();
    DisplayTexture* plate = make({{"texture", "quadrants"}, {"zpos", "-2"}});
    glTranslatef(0.5f, 0.5f, -3.0f);
    frame(plate, 0);
    EXPECT_EQ(RED, upperLeft());
    EXPECT_EQ(YELLOW, lowerRight());
    // A projection that halves everything in x.
    glMatrixMode(GL_PROJECTION);
    glScalef(0.5f, 1.0f, 1.0f);
    glMatrixMode(GL_MODELVIEW);
    frame(plate, 0);
    EXPECT_EQ(grey, readRgb(20, 40));
    frame(plate, 0);
    EXPECT_EQ(RED, readRgb(26, 40));
}

TEST_F(DisplayTextureScene, DrawRestoresBothMatricesAndLeavesTheModelviewSelected) {
    loadQuadrants();
    DisplayTexture* plate = make({{"texture", "quadrants"}, {"zrot", "1"}});
    glTranslatef(0.25f, 0.5f, -1.0f);
    GLfloat modelview[16];
    GLfloat projection[16];
    glGetFloatv(GL_MODELVIEW_MATRIX, modelview);
    glGetFloatv(GL_PROJECTION_MATRIX, projection);
    plate->draw(100);
    GLfloat after[16];
    glGetFloatv(GL_MODELVIEW_MATRIX, after);
    for (int i = 0; i < 16; i++) {
        EXPECT_EQ(modelview[i], after[i]) << i;
    }
    glGetFloatv(GL_PROJECTION_MATRIX, after);
    for (int i = 0; i < 16; i++) {
        EXPECT_EQ(projection[i], after[i]) << i;
    }
    GLint mode = 0;
    glGetIntegerv(GL_MATRIX_MODE, &mode);
    EXPECT_EQ(GL_MODELVIEW, mode);
    EXPECT_EQ(static_cast<GLenum>(GL_NO_ERROR), glGetError());
}

TEST_F(DisplayTextureScene, DrawLeavesLightingDepthCullingBlendingAndTexturingOff) {
    loadQuadrants();
    DisplayTexture* plate = make({{"texture", "quadrants"}, {"alphablend", "true"}});
    glEnable(GL_LIGHTING);
    glEnable(GL_DEPTH_TEST);
    glEnable(GL_CULL_FACE);
    plate->draw(0);
    EXPECT_FALSE(glIsEnabled(GL_LIGHTING));
    EXPECT_FALSE(glIsEnabled(GL_DEPTH_TEST));
    EXPECT_FALSE(glIsEnabled(GL_CULL_FACE));
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
    EXPECT_FALSE(glIsEnabled(GL_ALPHA_TEST));
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D));
    EXPECT_FALSE(glIsEnabled(GL_COLOR_MATERIAL));
}

TEST_F(DisplayTextureScene, QuadIsSeenFromBehindAndDrawnOverWhatIsNearer) {
    loadQuadrants();
    // Half a turn about y shows the back, mirrored left to right.
    DisplayTexture* plate = make({{"texture", "quadrants"}, {"yrot", "9"}});
    frame(plate, 400);
    // Something nearer in the depth buffer does not hide the quad.
    glClearColor(0.5f, 0.5f, 0.5f, 1.0f);
    glClearDepth(0.0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glClearDepth(1.0);
    glEnable(GL_DEPTH_TEST);
    glEnable(GL_CULL_FACE);
    plate->draw(400);
    EXPECT_EQ(GREEN, upperLeft());
    EXPECT_EQ(RED, upperRight());
    EXPECT_EQ(YELLOW, lowerLeft());
    EXPECT_EQ(BLUE, lowerRight());
}
