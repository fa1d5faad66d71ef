#include "effects/GlowEffect.h"

#include "TimelineCall.h"
#include "graphics/FrameBufferObject.h"
#include "graphics/Shader.h"
#include "runtime/DataFBOPool.h"
#include "runtime/DataShaderPool.h"
#include "runtime/KVLDemosys.h"
#include "script/EffectDefinition.h"
#include "script/EffectDefinitionParser.h"
#include "script/File.h"
#include "script/ParameterGroup.h"
#include "support/GLTestWindow.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

// The glow is checked on real framebuffers: a picture is put into the render
// buffer pixel by pixel, the passes run, and the buffers are read back.

namespace {

const std::string SHADERS = std::string(KVL_SOURCE_DIR) + "/resources/shaders/";

std::string sourceOf(const std::string& file) {
    File text(SHADERS + file, 0);
    EXPECT_TRUE(text.exists()) << file;
    return text.getAsString();
}

// A blur that is no blur: each pixel takes the one a step away, so the
// passes show exactly how far each step goes.
const char* SHIFT_FRAGMENT = "#version 110\n"
                             "uniform sampler2D Texture0;\n"
                             "uniform vec4 blurstep;\n"
                             "void main() {\n"
                             "    gl_FragColor = texture2D(Texture0, gl_TexCoord[0].st + "
                             "blurstep.xy);\n"
                             "}\n";

Shader* makeShader(const std::string& vertex, const std::string& fragment) {
    Shader* shader = new Shader();
    EXPECT_TRUE(shader->setVertexSource(vertex)) << shader->getErrorMessage();
    EXPECT_TRUE(shader->setFragmentSource(fragment)) << shader->getErrorMessage();
    EXPECT_TRUE(shader->link()) << shader->getErrorMessage();
    return shader;
}

ParameterGroup call(const std::string& method, std::initializer_list<const char*> arguments) {
    return timelineCall("glow", method, "00:01:000", arguments);
}

} // namespace

// The template side: nothing of this touches GL or the pools.
TEST(GlowEffect, NewEffectHasTheDefaultNumbersAndNoBuffers) {
    GlowEffect glow;
    EXPECT_FALSE(glow.hasBuffers());
    EXPECT_FLOAT_EQ(0.5f, glow.getContrast());
    EXPECT_FLOAT_EQ(2.6f, glow.getBrightness());
    EXPECT_FLOAT_EQ(1.0f, glow.getGlowMagnitude());
    EXPECT_EQ(nullptr, glow.getRenderBuffer());
    EXPECT_EQ(nullptr, glow.getGlowBuffer());
    EXPECT_EQ(nullptr, glow.getRenderTarget());
}

TEST(GlowEffect, GetInstanceMakesAFreshGlowEffect) {
    GlowEffect glow;
    ParameterGroup group = call("setContrast", {"0.9"});
    glow.modify("setContrast", &group);
    std::unique_ptr<Effect> instance(glow.getInstance());
    GlowEffect* copy = dynamic_cast<GlowEffect*>(instance.get());
    ASSERT_NE(nullptr, copy);
    EXPECT_NE(&glow, copy);
    EXPECT_FLOAT_EQ(0.5f, copy->getContrast());
}

TEST(GlowEffect, NumbersComeFromTheirMethodsAndResetRestoresThem) {
    GlowEffect glow;
    ParameterGroup contrast = call("setContrast", {"0.25"});
    ParameterGroup brightness = call("setBrightness", {"4.5"});
    ParameterGroup magnitude = call("setGlowMagnitude", {"3"});
    glow.modify("setContrast", &contrast);
    glow.modify("setBrightness", &brightness);
    glow.modify("setGlowMagnitude", &magnitude);
    EXPECT_FLOAT_EQ(0.25f, glow.getContrast());
    EXPECT_FLOAT_EQ(4.5f, glow.getBrightness());
    EXPECT_FLOAT_EQ(3.0f, glow.getGlowMagnitude());
    glow.reset();
    EXPECT_FLOAT_EQ(0.5f, glow.getContrast());
    EXPECT_FLOAT_EQ(2.6f, glow.getBrightness());
    EXPECT_FLOAT_EQ(1.0f, glow.getGlowMagnitude());
}

TEST(GlowEffect, UnknownMethodIsIgnored) {
    GlowEffect glow;
    ParameterGroup group = call("setContrast", {"0.9"});
    testing::internal::CaptureStdout();
    glow.modify("setcontrast", &group);
    glow.modify("blink", &group);
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
    EXPECT_FLOAT_EQ(0.5f, glow.getContrast());
    EXPECT_FALSE(glow.hasBuffers());
}

TEST(GlowEffect, DefinitionDeclaresBothShaderKeysWithDefaultsAndEveryMethod) {
    EffectDefinitionParser parser(std::string(KVL_SOURCE_DIR) +
                                  "/resources/definitions/GlowEffect.def");
    std::unique_ptr<EffectDefinition> definition(parser.parse());
    ASSERT_NE(nullptr, definition) << parser.getErrorMessage();
    std::unique_ptr<ParameterGroup> defaults(definition->getDefaults());
    EXPECT_EQ("blur", defaults->getParameter("blur_shader"));
    EXPECT_EQ("brightpass", defaults->getParameter("c_b_shader"));
    for (const char* file : {"blur.vert", "blur.frag", "brightpass.vert", "brightpass.frag"}) {
        EXPECT_TRUE(File(SHADERS + file, 0).exists()) << file;
    }
    for (const char* method :
         {"setBuffers", "setRenderTarget", "setContrast", "setBrightness", "setGlowMagnitude"}) {
        ASSERT_TRUE(definition->hasMethod(method)) << method;
        EXPECT_EQ("<event>", definition->getMethod(method)->getParameter("00")) << method;
    }
    EXPECT_EQ(4, definition->getMethod("setBuffers")->size());
    EXPECT_EQ("<string>", definition->getMethod("setBuffers")->getParameter("03"));
    EXPECT_EQ("<float>", definition->getMethod("setGlowMagnitude")->getParameter("01"));
    testing::internal::CaptureStdout();
    definition.reset();
    testing::internal::GetCapturedStdout();
}

class GlowEffectDrawing : public GLTestWindow {
protected:
    void SetUp() override {
        GLTestWindow::SetUp();
        KVLDemosys::shaderPool = new DataShaderPool();
        KVLDemosys::fboPool = new DataFBOPool();
        testing::internal::CaptureStdout();
        render = addBuffer("render", WIDTH, HEIGHT);
        scratch = addBuffer("scratch", WIDTH, HEIGHT);
        glowBuffer = addBuffer("glowbuffer", WIDTH, HEIGHT);
        testing::internal::GetCapturedStdout();
        KVLDemosys::shaderPool->addShader("blur",
                                          makeShader(sourceOf("blur.vert"), sourceOf("blur.frag")));
        KVLDemosys::shaderPool->addShader(
            "brightpass", makeShader(sourceOf("brightpass.vert"), sourceOf("brightpass.frag")));
        KVLDemosys::shaderPool->addShader("shift",
                                          makeShader(sourceOf("blur.vert"), SHIFT_FRAGMENT));
        parameters.addParameter("blur_shader", "blur");
        parameters.addParameter("c_b_shader", "brightpass");
        glow.setParameters(&parameters);
        glow.init();
    }
    void TearDown() override {
        glUseProgram(0);
        testing::internal::CaptureStdout();
        delete KVLDemosys::shaderPool;
        delete KVLDemosys::fboPool;
        testing::internal::GetCapturedStdout();
        KVLDemosys::shaderPool = nullptr;
        KVLDemosys::fboPool = nullptr;
        GLTestWindow::TearDown();
    }

    FrameBufferObject* addBuffer(const std::string& name, int width, int height) {
        FrameBufferObject* buffer = new FrameBufferObject(width, height, false, false);
        EXPECT_TRUE(buffer->isValid());
        KVLDemosys::fboPool->addFBO(name, buffer);
        return buffer;
    }

    void order(const std::string& method, std::initializer_list<const char*> arguments) {
        ParameterGroup group = call(method, arguments);
        glow.modify(method, &group);
    }

    // A black buffer with one pixel of the given grey.
    static void paint(FrameBufferObject* buffer, int x, int y, float level) {
        buffer->bind();
        glClearColor(0, 0, 0, 1);
        buffer->clear();
        glEnable(GL_SCISSOR_TEST);
        glScissor(x, y, 1, 1);
        glClearColor(level, level, level, 1);
        glClear(GL_COLOR_BUFFER_BIT);
        glDisable(GL_SCISSOR_TEST);
        glClearColor(0, 0, 0, 1);
        buffer->release();
    }

    static Rgb read(FrameBufferObject* buffer, int x, int y) {
        buffer->bind();
        Rgb pixel{};
        glFinish();
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glReadPixels(x, y, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, pixel.data());
        buffer->release();
        return pixel;
    }

    // Runs the passes with nothing else on standard output.
    std::string generate() {
        testing::internal::CaptureStdout();
        glow.genBuffers();
        return testing::internal::GetCapturedStdout();
    }

    ParameterGroup parameters;
    GlowEffect glow;
    FrameBufferObject* render = nullptr;
    FrameBufferObject* scratch = nullptr;
    FrameBufferObject* glowBuffer = nullptr;
};

TEST_F(GlowEffectDrawing, InitTakesBothShadersFromThePoolAndForgetsEarlierBuffers) {
    glow.setBuffers(render, scratch, glowBuffer);
    order("setBrightness", {"9"});
    glow.init();
    EXPECT_FALSE(glow.hasBuffers());
    EXPECT_FLOAT_EQ(2.6f, glow.getBrightness());
    // With its shaders the effect draws once it has buffers again.
    paint(render, 32, 32, 1.0f);
    order("setBuffers", {"render", "scratch", "glowbuffer"});
    EXPECT_EQ("", generate());
    EXPECT_GT(read(glowBuffer, 32, 32)[0], 0);
}

TEST_F(GlowEffectDrawing, SetBuffersFetchesTheThreeTargetsByName) {
    order("setBuffers", {"render", "scratch", "glowbuffer"});
    EXPECT_TRUE(glow.hasBuffers());
    EXPECT_EQ(render, glow.getRenderBuffer());
    EXPECT_EQ(glowBuffer, glow.getGlowBuffer());
}

TEST_F(GlowEffectDrawing, SetBuffersWithAnUnknownKeyKeepsWhatWasFetchedAndClearsTheFlag) {
    testing::internal::CaptureStdout();
    order("setBuffers", {"render", "nothere", "glowbuffer"});
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
    EXPECT_FALSE(glow.hasBuffers());
    EXPECT_EQ(render, glow.getRenderBuffer());
    EXPECT_EQ(nullptr, glow.getGlowBuffer());
}

TEST_F(GlowEffectDrawing, BeforeSetBuffersTheEffectDrawsNothing) {
    glClearColor(0.2f, 0.2f, 0.2f, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glEnable(GL_BLEND);
    glow.draw(1000);
    glow.genBuffers();
    EXPECT_EQ((Rgb{51, 51, 51}), readRgb(32, 32));
    EXPECT_TRUE(glIsEnabled(GL_BLEND));
}

TEST_F(GlowEffectDrawing, AfterSetBuffersWithAnUnknownKeyTheEffectDrawsNothingAndKeepsThePicture) {
    paint(render, 32, 32, 1.0f);
    paint(glowBuffer, 5, 5, 1.0f);
    testing::internal::CaptureStdout();
    order("setBuffers", {"render", "scratch", "unknown"});
    testing::internal::GetCapturedStdout();
    glClearColor(0.2f, 0.2f, 0.2f, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glow.draw(1000);
    EXPECT_EQ((Rgb{51, 51, 51}), readRgb(32, 32));
    // The render buffer was not cleared, the glow buffer not touched.
    EXPECT_EQ((Rgb{255, 255, 255}), read(render, 32, 32));
    EXPECT_EQ((Rgb{255, 255, 255}), read(glowBuffer, 5, 5));
}

TEST_F(GlowEffectDrawing, SingleBrightPixelGlowsIntoItsNeighboursAndDarkAreasStayDark) {
    paint(render, 32, 32, 1.0f);
    glow.setBuffers(render, scratch, glowBuffer);
    EXPECT_EQ("", generate());
    Rgb centre = read(glowBuffer, 32, 32);
    EXPECT_GT(centre[0], 0) << pixelText(centre);
    for (const auto& offset : {std::pair<int, int>{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {2, 2}}) {
        Rgb neighbour = read(glowBuffer, 32 + offset.first, 32 + offset.second);
        EXPECT_GT(neighbour[0], 0)
            << offset.first << "," << offset.second << " " << pixelText(neighbour);
        EXPECT_EQ(neighbour[0], neighbour[1]);
        EXPECT_LE(neighbour[0], centre[0]);
    }
    EXPECT_EQ((Rgb{0, 0, 0}), read(glowBuffer, 10, 10));
    EXPECT_EQ((Rgb{0, 0, 0}), read(glowBuffer, 32, 50));
    EXPECT_EQ((Rgb{0, 0, 0}), read(glowBuffer, 50, 32));
}

TEST_F(GlowEffectDrawing, DimPixelBelowTheContrastLevelGivesNoGlow) {
    paint(render, 32, 32, 0.4f);
    glow.setBuffers(render, scratch, glowBuffer);
    generate();
    EXPECT_EQ((Rgb{0, 0, 0}), read(glowBuffer, 32, 32));
    EXPECT_EQ((Rgb{0, 0, 0}), read(glowBuffer, 33, 32));
}

TEST_F(GlowEffectDrawing, GenBuffersLeavesThePictureAndTheDepthTestOff) {
    paint(render, 32, 32, 1.0f);
    glEnable(GL_DEPTH_TEST);
    glow.setBuffers(render, scratch, glowBuffer);
    generate();
    EXPECT_FALSE(glIsEnabled(GL_DEPTH_TEST));
    EXPECT_EQ((Rgb{255, 255, 255}), read(render, 32, 32));
    GLint program = -1;
    glGetIntegerv(GL_CURRENT_PROGRAM, &program);
    EXPECT_EQ(0, program);
}

TEST_F(GlowEffectDrawing, DrawAddsTheHaloOnTopOfThePictureAndEmptiesTheRenderBuffer) {
    paint(render, 32, 32, 1.0f);
    order("setBuffers", {"render", "scratch", "glowbuffer"});
    glColor4f(1, 1, 1, 1);
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    testing::internal::CaptureStdout();
    glow.draw(5000);
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
    EXPECT_EQ((Rgb{255, 255, 255}), readRgb(32, 32));
    Rgb halo = readRgb(33, 32);
    EXPECT_GT(halo[0], 0) << pixelText(halo);
    EXPECT_LT(halo[0], 255) << pixelText(halo);
    EXPECT_EQ((Rgb{0, 0, 0}), readRgb(10, 10));
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
    EXPECT_EQ((Rgb{0, 0, 0}), read(render, 32, 32));
}

TEST_F(GlowEffectDrawing, MagnitudeZeroMakesBothBlursCopiesSoTheHaloIsThePlainBrightPass) {
    render->bind();
    glClearColor(0, 0, 0, 1);
    render->clear();
    glEnable(GL_SCISSOR_TEST);
    const float levels[3] = {1.0f, 0.75f, 0.6f};
    for (int i = 0; i < 3; i++) {
        glScissor(10 + 10 * i, 20, 1, 1);
        glClearColor(levels[i], levels[i], levels[i], 1);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    glDisable(GL_SCISSOR_TEST);
    glClearColor(0, 0, 0, 1);
    render->release();

    order("setGlowMagnitude", {"0"});
    glow.setBuffers(render, scratch, glowBuffer);
    generate();
    for (int i = 0; i < 3; i++) {
        // The stored texel, not the float that was asked for.
        float stored = read(render, 10 + 10 * i, 20)[0] / 255.0f;
        float expected = std::min(1.0f, std::max(0.0f, (stored - 0.5f) * 2.6f)) * 255.0f;
        Rgb pixel = read(glowBuffer, 10 + 10 * i, 20);
        EXPECT_NEAR(expected, pixel[0], 1.5) << i;
        EXPECT_EQ((Rgb{0, 0, 0}), read(glowBuffer, 11 + 10 * i, 20)) << i;
        EXPECT_EQ((Rgb{0, 0, 0}), read(glowBuffer, 10 + 10 * i, 21)) << i;
    }
}

TEST_F(GlowEffectDrawing, MagnitudeOneStepsOneTexelOfTheWidthInBothDirectionsOfANarrowBuffer) {
    testing::internal::CaptureStdout();
    FrameBufferObject* tallRender = addBuffer("tall_render", 32, 64);
    FrameBufferObject* tallScratch = addBuffer("tall_scratch", 32, 64);
    FrameBufferObject* tallGlow = addBuffer("tall_glow", 32, 64);
    testing::internal::GetCapturedStdout();
    parameters.addParameter("blur_shader", "shift");
    glow.init();
    // Contrast 0 and brightness 1 let the picture through the bright pass.
    order("setContrast", {"0"});
    order("setBrightness", {"1"});
    paint(tallRender, 10, 20, 1.0f);
    order("setBuffers", {"tall_render", "tall_scratch", "tall_glow"});
    generate();
    // Each pass takes the pixel one step further on: 1/32 of the texture is
    // two rows of 64 upwards and one column of 32 sideways.
    EXPECT_EQ((Rgb{255, 255, 255}), read(tallGlow, 9, 18));
    EXPECT_EQ((Rgb{0, 0, 0}), read(tallGlow, 10, 20));
    EXPECT_EQ((Rgb{0, 0, 0}), read(tallGlow, 10, 19));
    EXPECT_EQ((Rgb{0, 0, 0}), read(tallGlow, 9, 19));
    EXPECT_EQ((Rgb{255, 255, 255}), read(tallScratch, 10, 18));
}

TEST_F(GlowEffectDrawing, LargerMagnitudeTakesMoreTexelsAStep) {
    parameters.addParameter("blur_shader", "shift");
    glow.init();
    order("setContrast", {"0"});
    order("setBrightness", {"1"});
    order("setGlowMagnitude", {"3"});
    paint(render, 30, 30, 1.0f);
    glow.setBuffers(render, scratch, glowBuffer);
    generate();
    EXPECT_EQ((Rgb{255, 255, 255}), read(glowBuffer, 27, 27));
    EXPECT_EQ((Rgb{0, 0, 0}), read(glowBuffer, 30, 30));
}

TEST_F(GlowEffectDrawing, ProductionShadersHaveEveryUniformTheGlowSets) {
    glow.setBuffers(render, scratch, glowBuffer);
    EXPECT_EQ("", generate());
    testing::internal::CaptureStdout();
    glow.draw(0);
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
    EXPECT_EQ(static_cast<GLenum>(GL_NO_ERROR), glGetError());
}

TEST_F(GlowEffectDrawing, SetRenderTargetTakesTheNamedBufferWithoutATest) {
    order("setRenderTarget", {"scratch"});
    EXPECT_EQ(scratch, glow.getRenderTarget());
    testing::internal::CaptureStdout();
    order("setRenderTarget", {"nothere"});
    EXPECT_EQ("FrameBufferObject::getFBO(nothere)\n", testing::internal::GetCapturedStdout());
    EXPECT_EQ(nullptr, glow.getRenderTarget());
}

TEST_F(GlowEffectDrawing, ToStringListsTheThreeBuffersWithItsTwoSeparators) {
    testing::internal::CaptureStdout();
    FrameBufferObject* deep = addBuffer("deep", 16, 8);
    FrameBufferObject* wide = new FrameBufferObject(32, 4, true, false);
    KVLDemosys::fboPool->addFBO("wide", wide);
    testing::internal::GetCapturedStdout();
    glow.setBuffers(deep, wide, render);
    EXPECT_EQ("GlowEffect {\n" + deep->toString() + ", " + wide->toString() + "," +
                  render->toString() + " }\n",
              glow.toString());
    EXPECT_EQ("GlowEffect {\nFrameBufferObject(16,8,COLOR_BUFFER), "
              "FrameBufferObject(32,4,COLOR_BUFFER,DEPTH_BUFFER),FrameBufferObject(64,64,COLOR_"
              "BUFFER) }\n",
              glow.toString());
}
