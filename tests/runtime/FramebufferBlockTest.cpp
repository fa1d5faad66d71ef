#include "runtime/ResourceLoader.h"

#include "graphics/FrameBufferObject.h"
#include "graphics/Texture.h"
#include "runtime/DataFBOPool.h"
#include "runtime/KVLDemosys.h"
#include "support/GLState.h"
#include "support/LoaderFixture.h"
#include "support/ProductionScript.h"
#include "support/StdoutCapture.h"
#include "support/TempDir.h"

#include <GL/glew.h>
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

// The framebuffer block as the loader reads it: a script in a directory of
// its own with the production's definition files, loaded up to its data
// blocks with a real window of 64 by 48 pixels.

namespace {

std::string script(const std::string& framebuffers) {
    ProductionScript production;
    production.screen = "width = 64; height = 48; near = 1.0; far = 100.0;";
    production.blocks = framebuffers;
    return production.text();
}

std::string block(const std::string& entries) {
    return "framebuffers {\n" + entries + "\n}\n";
}

std::string completeLine() {
    return "FBO Framebuffer is complete.(" + std::to_string(GL_FRAMEBUFFER_COMPLETE_EXT) +
           ") = true\n";
}

// The lines the framebuffer block wrote: from its header to the header of
// the graphics block, or to the end when the load stopped in it.
std::string blockLog(const std::string& log) {
    size_t from = log.find("[Creating FramebufferObjects]\n");
    if (from == std::string::npos) {
        return "<no framebuffer block in the log>";
    }
    size_t to = log.find("[Loading Graphics]\n", from);
    return log.substr(from, (to == std::string::npos) ? std::string::npos : to - from);
}

} // namespace

class FramebufferBlock : public LoaderFixture {
protected:
    // Runs the loader up to and through its data blocks; the log of the
    // data blocks comes back, the result in `loaded`.
    std::string load(const std::string& framebuffers) {
        space.write(script(framebuffers));
        bool ready = space.openScreen();
        EXPECT_TRUE(ready) << loader.getErrorMessage();
        if (!ready) {
            return "";
        }
        glClearColor(0.2f, 0.4f, 0.6f, 1.0f);
        return logOf([&] { loaded = loader.loadDataFiles(); });
    }

    FrameBufferObject* target(const std::string& name) const {
        return KVLDemosys::fboPool->exists(name) ? KVLDemosys::fboPool->getFBO(name) : nullptr;
    }

    bool loaded = false;
};

TEST_F(FramebufferBlock, SizeWordsGiveAScreenSizedColourOnlyTargetWithoutTheMarkerLine) {
    std::string log = load(block("main = width, height, COLOR_BUFFER;"));
    EXPECT_TRUE(loaded);
    EXPECT_EQ("[Creating FramebufferObjects]\n" + completeLine() +
                  "FrameBufferObject(64,48,COLOR_BUFFER)\n",
              blockLog(log));
    FrameBufferObject* main = target("main");
    ASSERT_NE(nullptr, main);
    EXPECT_EQ(64, main->getWidth());
    EXPECT_EQ(48, main->getHeight());
    EXPECT_TRUE(main->isValid());
}

TEST_F(FramebufferBlock, DepthBufferWritesTheMarkerLineBeforeTheTargetIsMade) {
    std::string log = load(block("main = width, height, COLOR_BUFFER, DEPTH_BUFFER;"));
    EXPECT_TRUE(loaded);
    EXPECT_EQ("[Creating FramebufferObjects]\nmoo \n" + completeLine() +
                  "FrameBufferObject(64,48,COLOR_BUFFER,DEPTH_BUFFER)\n",
              blockLog(log));
    ASSERT_NE(nullptr, target("main"));
}

TEST_F(FramebufferBlock, StencilInThePlaceOfDepthIsRefusedExpectingDepth) {
    std::string log = load(block("main = 512, 256, COLOR_BUFFER, STENCIL_BUFFER;"));
    EXPECT_FALSE(loaded);
    EXPECT_FALSE(loader.isValid());
    EXPECT_EQ("Wrong parameter for framebuffer 'main'\n"
              "value: 'STENCIL_BUFFER'\n"
              "expected : 'DEPTH_BUFFER'\n",
              loader.getErrorMessage());
    EXPECT_EQ("[Creating FramebufferObjects]\n", blockLog(log));
    EXPECT_EQ(0, KVLDemosys::fboPool->size());
}

TEST_F(FramebufferBlock, SingleNumberIsRefusedWithTheValueRepeated) {
    load(block("main = 512;"));
    EXPECT_FALSE(loaded);
    EXPECT_FALSE(loader.isValid());
    EXPECT_EQ("Wrong number of parameters in framebuffer block\n"
              "Framebuffer: main\n"
              "defined as : 512\n"
              "Valid syntax: width, height, COLOR_BUFFER [,DEPTH_BUFFER][,STENCIL_BUFFER]",
              loader.getErrorMessage());
}

TEST_F(FramebufferBlock, SixWordsAreTooManyAndTheValueIsRepeated) {
    load(block("main = 32, 32, COLOR_BUFFER, DEPTH_BUFFER, STENCIL_BUFFER, COLOR_BUFFER;"));
    EXPECT_FALSE(loaded);
    EXPECT_EQ("Wrong number of parameters in framebuffer block\n"
              "Framebuffer: main\n"
              "defined as : 32, 32, COLOR_BUFFER, DEPTH_BUFFER, STENCIL_BUFFER, COLOR_BUFFER\n"
              "Valid syntax: width, height, COLOR_BUFFER [,DEPTH_BUFFER][,STENCIL_BUFFER]",
              loader.getErrorMessage());
    EXPECT_EQ(0, KVLDemosys::fboPool->size());
}

TEST_F(FramebufferBlock, BlanksAroundTheWordsDoNotMatter) {
    std::string log =
        load(block("main =   32 ,16,   COLOR_BUFFER ,DEPTH_BUFFER   ,  STENCIL_BUFFER  ;"));
    EXPECT_TRUE(loaded) << loader.getErrorMessage();
    EXPECT_EQ("[Creating FramebufferObjects]\nmoo \n" + completeLine() +
                  "FrameBufferObject(32,16,COLOR_BUFFER,DEPTH_BUFFER,STENCIL_BUFFER)\n",
              blockLog(log));
}

TEST_F(FramebufferBlock, WordsAreCaseSensitive) {
    load(block("main = 32, 32, color_buffer;"));
    EXPECT_FALSE(loaded);
    EXPECT_EQ("Wrong parameter for framebuffer 'main'\n"
              "value: 'color_buffer'\n"
              "expected : 'COLOR_BUFFER'\n",
              loader.getErrorMessage());
}

TEST_F(FramebufferBlock, WidthThatIsNoIntegerIsRefusedWithItsValue) {
    load(block("main = wide, 32, COLOR_BUFFER;"));
    EXPECT_FALSE(loaded);
    EXPECT_FALSE(loader.isValid());
    EXPECT_EQ("Frambuffer width is not an int\n"
              "FBO: main\n"
              "value : wide\n"
              "Valid syntax: 'width' or unsinged integer",
              loader.getErrorMessage());
}

TEST_F(FramebufferBlock, HeightThatIsNoIntegerIsRefusedWithItsValue) {
    load(block("main = width, 1.5, COLOR_BUFFER;"));
    EXPECT_FALSE(loaded);
    EXPECT_EQ("Frambuffer height is not an int\n"
              "FBO: main\n"
              "value : 1.5\n"
              "Valid syntax: 'height' or unsinged integer",
              loader.getErrorMessage());
}

TEST_F(FramebufferBlock, SizeWordsInEachOthersPlaceAreNoIntegers) {
    load(block("main = height, width, COLOR_BUFFER;"));
    EXPECT_FALSE(loaded);
    EXPECT_EQ("Frambuffer width is not an int\n"
              "FBO: main\n"
              "value : height\n"
              "Valid syntax: 'width' or unsinged integer",
              loader.getErrorMessage());
}

TEST_F(FramebufferBlock, WrongFifthWordFailsAfterTheMarkerLineExpectingStencil) {
    std::string log = load(block("main = 32, 32, COLOR_BUFFER, DEPTH_BUFFER, DEPTH_BUFFER;"));
    EXPECT_FALSE(loaded);
    EXPECT_EQ("Wrong parameter for framebuffer 'main'\n"
              "value: 'DEPTH_BUFFER'\n"
              "expected : 'STENCIL_BUFFER'\n",
              loader.getErrorMessage());
    EXPECT_EQ("[Creating FramebufferObjects]\nmoo \n", blockLog(log));
}

TEST_F(FramebufferBlock, NegativeSizePassesTheIntegerTestAndReachesTheTargetUnchecked) {
    std::string log = load(block("main = -5, 16, COLOR_BUFFER;"));
    while (glGetError() != GL_NO_ERROR) {
    }
    EXPECT_TRUE(loaded);
    EXPECT_TRUE(loader.isValid());
    FrameBufferObject* main = target("main");
    ASSERT_NE(nullptr, main);
    EXPECT_EQ(-5, main->getWidth());
    EXPECT_FALSE(main->isValid());
    // The incomplete target was never bound, so its release finds the
    // stack empty.
    EXPECT_EQ("[Creating FramebufferObjects]\n"
              "FBO Framebuffer incomplete attachment(" +
                  std::to_string(GL_FRAMEBUFFER_INCOMPLETE_ATTACHMENT_EXT) +
                  ") = false\n"
                  "FrameBufferObject(-5,16,COLOR_BUFFER)\n"
                  "FBO : *** STACK ERROR : Stack is already empty. Possible underflow ***\n",
              blockLog(log));
}

TEST_F(FramebufferBlock, ScriptWithoutTheBlockSaysSoAndGoesOn) {
    std::string log = load("");
    EXPECT_TRUE(loaded);
    EXPECT_EQ("[Creating FramebufferObjects]\nNo framebuffers to create\n", blockLog(log));
    EXPECT_NE(std::string::npos, log.find("[Loading Graphics]\n"));
    EXPECT_EQ(0, KVLDemosys::fboPool->size());
}

TEST_F(FramebufferBlock, TargetsStartClearedAndTheScreenIsBoundAfterwardsWithIdentityMatrices) {
    load(block("main = 16, 8, COLOR_BUFFER, DEPTH_BUFFER;"));
    ASSERT_TRUE(loaded);
    FrameBufferObject* main = target("main");
    ASSERT_NE(nullptr, main);

    EXPECT_EQ(0, currentFramebuffer());
    EXPECT_EQ((std::array<GLint, 4>{0, 0, 64, 48}), currentViewport());
    GLint mode = 0;
    glGetIntegerv(GL_MATRIX_MODE, &mode);
    EXPECT_EQ(GL_MODELVIEW, mode);
    std::array<GLfloat, 16> projection{};
    glGetFloatv(GL_PROJECTION_MATRIX, projection.data());
    for (int i = 0; i < 16; i++) {
        EXPECT_EQ((i % 5 == 0) ? 1.0f : 0.0f, projection[i]) << "element " << i;
    }

    std::vector<unsigned char> pixels(16 * 8 * 4);
    glBindTexture(GL_TEXTURE_2D, main->getColorBuffer()->getID());
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    for (size_t at = 0; at < pixels.size(); at += 4) {
        ASSERT_EQ(51, pixels[at]) << "texel " << at / 4;
        ASSERT_EQ(102, pixels[at + 1]) << "texel " << at / 4;
        ASSERT_EQ(153, pixels[at + 2]) << "texel " << at / 4;
    }
}

TEST_F(FramebufferBlock, EntriesAreMadeInKeyOrderAndAFailureKeepsTheOnesBefore) {
    std::string log = load(block("b = 8;\na = 8, 4, COLOR_BUFFER;"));
    EXPECT_FALSE(loaded);
    EXPECT_EQ("[Creating FramebufferObjects]\n" + completeLine() +
                  "FrameBufferObject(8,4,COLOR_BUFFER)\n",
              blockLog(log));
    EXPECT_EQ("Wrong number of parameters in framebuffer block\n"
              "Framebuffer: b\n"
              "defined as : 8\n"
              "Valid syntax: width, height, COLOR_BUFFER [,DEPTH_BUFFER][,STENCIL_BUFFER]",
              loader.getErrorMessage());
    EXPECT_TRUE(KVLDemosys::fboPool->exists("a"));
    EXPECT_FALSE(KVLDemosys::fboPool->exists("b"));
}
