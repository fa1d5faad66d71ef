#include "runtime/ResourceLoader.h"

#include "graphics/Texture.h"
#include "runtime/DataTexturePool.h"
#include "runtime/KVLDemosys.h"
#include "runtime/ProgressBar.h"
#include "script/ParameterGroup.h"
#include "script/Parameters.h"
#include "support/GLTestWindow.h"
#include "support/LoaderInWindowFixture.h"
#include "support/PlayerProcess.h"
#include "support/PngWriter.h"
#include "support/ProductionScript.h"
#include "support/StdoutCapture.h"
#include "support/TempDir.h"

#include <GL/glew.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

// The graphics block of a script, read by the loader in a window of its own.
// Each test works in a directory that holds the definition files, the script
// and the pictures under resources/graphics/, as the player finds them.

namespace {

const std::string GFX = "resources/graphics/";

std::string scriptWith(const std::string& blocks) {
    ProductionScript production;
    production.paths = "definition = resources/definitions/; misc = resources/misc/; "
                       "gfx = resources/graphics/; sound = resources/music/;";
    production.blocks = blocks;
    return production.text();
}

// The lines of the graphics block: from its header to the next block's.
std::vector<std::string> graphicsPart(const std::vector<std::string>& lines) {
    auto first = std::find(lines.begin(), lines.end(), "[Loading Graphics]");
    auto last = std::find(first, lines.end(), "[Loading Binary Data]");
    return std::vector<std::string>(first, last);
}

std::vector<uint8_t> picture(uint8_t r, uint8_t g, uint8_t b) {
    std::vector<uint8_t> pixels;
    for (int i = 0; i < 4 * 4; i++) {
        pixels.insert(pixels.end(), {r, g, b, 255});
    }
    return PngWriter::rgba(4, 4, pixels);
}

} // namespace

class GraphicsBlock : public LoaderInWindowFixture {
protected:
    void SetUp() override {
        LoaderInWindowFixture::SetUp();
        std::filesystem::create_directories(directory.file(GFX));
        PngWriter::save(directory.file(GFX + "a.png"), picture(255, 0, 0));
        PngWriter::save(directory.file(GFX + "b.png"), picture(0, 0, 255));
    }

    // Parses the script and runs the data blocks; the lines of the graphics
    // block come back, the result of the step in `result`.
    std::vector<std::string> loadGraphics(const std::string& blocks) {
        space.write(scriptWith(blocks));
        bool parsed = false;
        logOf([&] { parsed = loader.parseConfig(); });
        EXPECT_TRUE(parsed) << loader.getErrorMessage();
        if (!parsed) {
            return {};
        }
        return graphicsPart(splitLines(logOf([&] { result = loader.loadDataFiles(); })));
    }
    int ticks() const { return loader.getProgressBar()->getTickCount(); }
    Texture* texture(const std::string& name) const {
        return KVLDemosys::texturePool->getTexture(name);
    }

    bool result = false;
};

TEST_F(GraphicsBlock, ScriptWithoutGraphicsSaysNoImageDataAndGoesOn) {
    std::vector<std::string> lines = loadGraphics("");
    EXPECT_TRUE(result);
    EXPECT_EQ((std::vector<std::string>{"[Loading Graphics]", "No image data"}), lines);
    EXPECT_EQ(0, ticks());
    EXPECT_EQ(0, KVLDemosys::texturePool->size());
}

TEST_F(GraphicsBlock, EmptyGraphicsGroupLoadsNothingAndPrintsNothingButTheHeader) {
    std::vector<std::string> lines = loadGraphics("graphics { ; }\n");
    ASSERT_TRUE(KVLDemosys::parameters->exist("graphics"));
    EXPECT_EQ(0, KVLDemosys::parameters->getGroup("graphics")->size());
    EXPECT_TRUE(result);
    EXPECT_EQ((std::vector<std::string>{"[Loading Graphics]"}), lines);
    EXPECT_EQ(0, KVLDemosys::texturePool->size());
    EXPECT_EQ(0, ticks());
}

TEST_F(GraphicsBlock, FileAloneLoadsATwoDimensionalTextureWithoutMipmapsUnderItsName) {
    std::vector<std::string> lines = loadGraphics("graphics { logo = a.png; }\n");
    EXPECT_TRUE(result);
    EXPECT_EQ((std::vector<std::string>{"[Loading Graphics]", "Load : resources/graphics/a.png"}),
              lines);
    ASSERT_NE(nullptr, texture("logo"));
    EXPECT_EQ("a.png", texture("logo")->getFilename());
    EXPECT_EQ(static_cast<unsigned int>(GL_TEXTURE_2D), texture("logo")->getType());
    EXPECT_FALSE(texture("logo")->isMipmapped());
    EXPECT_EQ(4, texture("logo")->getWidth());
    EXPECT_TRUE(KVLDemosys::texturePool->isFileInPool("a.png"));
    EXPECT_EQ(1, ticks());
}

TEST_F(GraphicsBlock, LoadedTextureShowsThePicturesColours) {
    loadGraphics("graphics { logo = a.png; }\n");
    ASSERT_NE(nullptr, texture("logo"));
    loadIdentityMatrices();
    glColor4f(1, 1, 1, 1);
    texture("logo")->drawQuadFS();
    EXPECT_EQ((Rgb{255, 0, 0}), readRgb(32, 32));
}

TEST_F(GraphicsBlock, BlankBeforeTheCommaStaysInTheFileNameSoTheFileIsNotFound) {
    std::vector<std::string> lines = loadGraphics("graphics { logo = a.png ,GL_TEXTURE_2D; }\n");
    EXPECT_FALSE(result);
    EXPECT_FALSE(loader.isValid());
    EXPECT_EQ("Failed to load texture!\nFile : 'resources/graphics/a.png '",
              loader.getErrorMessage());
    EXPECT_EQ((std::vector<std::string>{"[Loading Graphics]", "Load : resources/graphics/a.png "}),
              lines);
    EXPECT_EQ(nullptr, texture("logo"));
    EXPECT_EQ(0, ticks());
}

TEST_F(GraphicsBlock, WordGenMipmapsThatTheMessageSuggestsIsRefused) {
    std::vector<std::string> lines =
        loadGraphics("graphics { logo = a.png, GL_TEXTURE_2D, GEN_MIPMAPS; }\n");
    EXPECT_FALSE(result);
    EXPECT_FALSE(loader.isValid());
    EXPECT_EQ("TexturePool: 'a.png' using wrong mipmap parameter 'GEN_MIPMAPS'\n"
              "Options : GEN_MIPMAPS",
              loader.getErrorMessage());
    EXPECT_EQ((std::vector<std::string>{"[Loading Graphics]"}), lines);
    EXPECT_EQ(0, KVLDemosys::texturePool->size());
}

TEST_F(GraphicsBlock, GenMipmapLoadsWithMipmapsAndReportsTheRefusedFilter) {
    std::vector<std::string> lines =
        loadGraphics("graphics { tex1 = a.png, GL_TEXTURE_2D, GEN_MIPMAP; }\n");
    EXPECT_TRUE(result);
    ASSERT_NE(nullptr, texture("tex1"));
    EXPECT_TRUE(texture("tex1")->isMipmapped());
    EXPECT_EQ((std::vector<std::string>{"[Loading Graphics]", "Load : resources/graphics/a.png",
                                        "[GL_ERROR] 'invalid enumerant' in "
                                        "->resources/graphics/a.png"}),
              lines);
}

TEST_F(GraphicsBlock, TargetWithoutAMipmapWordLoadsWithoutMipmaps) {
    std::vector<std::string> lines = loadGraphics("graphics { tex1 = a.png,GL_TEXTURE_2D; }\n");
    EXPECT_TRUE(result);
    ASSERT_NE(nullptr, texture("tex1"));
    EXPECT_FALSE(texture("tex1")->isMipmapped());
    EXPECT_EQ(2u, lines.size());
}

TEST_F(GraphicsBlock, TargetWordsAreTrimmedAndChooseTheTarget) {
    loadGraphics("graphics { one =a.png,   GL_TEXTURE_1D  ; three = b.png,GL_TEXTURE_3D; }\n");
    EXPECT_TRUE(result);
    ASSERT_NE(nullptr, texture("one"));
    ASSERT_NE(nullptr, texture("three"));
    EXPECT_EQ(static_cast<unsigned int>(GL_TEXTURE_1D), texture("one")->getType());
    EXPECT_EQ(static_cast<unsigned int>(GL_TEXTURE_3D), texture("three")->getType());
}

TEST_F(GraphicsBlock, UnknownTargetWordIsRefusedWithTheOptions) {
    std::vector<std::string> lines = loadGraphics("graphics { logo = a.png, GL_TEXTURE_4D; }\n");
    EXPECT_FALSE(result);
    EXPECT_FALSE(loader.isValid());
    EXPECT_EQ("TexturePool: 'a.png' using wrong texture parameter 'GL_TEXTURE_4D'\n"
              "Options : GL_TEXTURE_1D/2D/3D",
              loader.getErrorMessage());
    EXPECT_EQ((std::vector<std::string>{"[Loading Graphics]"}), lines);
}

TEST_F(GraphicsBlock, MipmapWordIsNotReadFromAValueOfMoreThanThreeTokens) {
    loadGraphics("graphics { logo = a.png, GL_TEXTURE_2D, nonsense, more; }\n");
    EXPECT_TRUE(result);
    ASSERT_NE(nullptr, texture("logo"));
    EXPECT_FALSE(texture("logo")->isMipmapped());
}

TEST_F(GraphicsBlock, SecondEntryForTheSameFileTicksButHasNoName) {
    std::vector<std::string> lines = loadGraphics("graphics { first = a.png; second = a.png; }\n");
    EXPECT_TRUE(result);
    EXPECT_EQ((std::vector<std::string>{"[Loading Graphics]", "Load : resources/graphics/a.png"}),
              lines);
    EXPECT_NE(nullptr, texture("first"));
    EXPECT_EQ(nullptr, texture("second"));
    EXPECT_FALSE(KVLDemosys::texturePool->exist("second"));
    EXPECT_EQ(1, KVLDemosys::texturePool->size());
    EXPECT_EQ(2, ticks());
}

TEST_F(GraphicsBlock, EntriesLoadInTheOrderOfTheirNames) {
    std::vector<std::string> lines = loadGraphics("graphics { zeta = b.png; alpha = a.png; }\n");
    EXPECT_TRUE(result);
    EXPECT_EQ((std::vector<std::string>{"[Loading Graphics]", "Load : resources/graphics/a.png",
                                        "Load : resources/graphics/b.png"}),
              lines);
}

TEST_F(GraphicsBlock, MissingFileStopsTheBlockAndKeepsTheTexturesLoadedBefore) {
    std::vector<std::string> lines =
        loadGraphics("graphics { a = a.png; b = missing.png; c = b.png; }\n");
    EXPECT_FALSE(result);
    EXPECT_FALSE(loader.isValid());
    EXPECT_EQ("Failed to load texture!\nFile : 'resources/graphics/missing.png'",
              loader.getErrorMessage());
    EXPECT_EQ((std::vector<std::string>{"[Loading Graphics]", "Load : resources/graphics/a.png",
                                        "Load : resources/graphics/missing.png"}),
              lines);
    EXPECT_NE(nullptr, texture("a"));
    EXPECT_FALSE(KVLDemosys::texturePool->exist("c"));
    EXPECT_EQ(1, ticks());
}

TEST_F(GraphicsBlock, BlockAfterAFailureIsNotRead) {
    std::vector<std::string> lines = splitLines(logOf([&] {
        space.write(scriptWith("graphics { b = missing.png; }\n"));
        loader.parseConfig();
        result = loader.loadDataFiles();
    }));
    EXPECT_FALSE(result);
    EXPECT_EQ(lines.end(), std::find(lines.begin(), lines.end(), "[Loading Binary Data]"));
}

TEST_F(GraphicsBlock, TexturesLoadedBeforeAFailureAreFreedWithThePools) {
    loadGraphics("graphics { a = a.png; b = missing.png; }\n");
    ASSERT_NE(nullptr, texture("a"));
    unsigned int id = texture("a")->getID();
    std::string log = space.dispose();
    EXPECT_NE(std::string::npos,
              log.find("[Dispose texturePool]\n -> delete texture 'a'\nTexture::ID(" +
                       std::to_string(id) + ") - deleted from graphics mem.\n"))
        << log;
    EXPECT_FALSE(glIsTexture(id));
}
