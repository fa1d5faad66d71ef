#include "e2e/PlayerLog.h"
#include "script/KVLUtils.h"
#include "support/PlayerProcess.h"
#include "support/PngWriter.h"
#include "support/ProductionScript.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

// Whole runs of the player on productions with a graphics block. The lines
// from the block's header to the end of the closing message are compared
// exactly; the rest of the log belongs to other parts of the player.

namespace {

PlayerRun runWith(const std::string& graphics) {
    TempDir dir;
    dir.copyFromSource("resources/definitions");
    dir.copyFromSource("resources/graphics/kvllogo.png");
    dir.copyFromSource("resources/graphics/sysicon_pause.png");
    ProductionScript script;
    script.paths = "definition = resources/definitions/; misc = resources/misc/; "
                   "gfx = resources/graphics/; sound = resources/music/;";
    script.system = "start = 00:00:000; stop = 00:00:300;";
    script.screen = SCREEN;
    script.blocks = "graphics { " + graphics + " }";
    script.writeTo(dir);
    return runToEnd(dir.path());
}

// A failed load ends its graphics block, shuts down and prints the loader's
// message, then shows it once more.
std::vector<std::string> failedBlock(const std::vector<std::string>& loads,
                                     const std::string& message) {
    std::vector<std::string> lines{"[Loading Graphics]"};
    lines.insert(lines.end(), loads.begin(), loads.end());
    lines.push_back("[Shutting Down]");
    return lines + loaderMessageTwice(message);
}

void expectFailure(const PlayerRun& run, const std::vector<std::string>& expected) {
    ASSERT_EQ(0, run.code) << allLines(run.lines);
    EXPECT_EQ(expected, linesFrom(run.lines, "[Loading Graphics]", expected.size()))
        << allLines(run.lines);
    EXPECT_EQ(-1, indexOf(run.lines, "[Loading Binary Data]"));
    EXPECT_EQ(-1, indexOf(run.lines, "[Create effect objects]"));
    EXPECT_NE(-1, indexOf(run.lines, "[Application End]"));
}

} // namespace

TEST(PlayerGraphicsBlock, UnknownTargetWordEndsTheLoadWithTheOptions) {
    PlayerRun run = runWith("logo = kvllogo.png, GL_TEXTURE_CUBE;");
    expectFailure(run, failedBlock({}, "TexturePool: 'kvllogo.png' using wrong texture parameter "
                                       "'GL_TEXTURE_CUBE'\nOptions : GL_TEXTURE_1D/2D/3D"));
}

TEST(PlayerGraphicsBlock, WordGenMipmapsEndsTheLoadWithTheMipmapOptions) {
    PlayerRun run = runWith("logo = kvllogo.png, GL_TEXTURE_2D, GEN_MIPMAPS;");
    expectFailure(run, failedBlock({}, "TexturePool: 'kvllogo.png' using wrong mipmap parameter "
                                       "'GEN_MIPMAPS'\nOptions : GEN_MIPMAPS"));
}

TEST(PlayerGraphicsBlock, MissingPictureEndsTheLoadWithItsPathAndKeepsWhatWasLoaded) {
    PlayerRun run = runWith("a = kvllogo.png; b = missing.png;");
    expectFailure(run, failedBlock({"Load : resources/graphics/kvllogo.png",
                                    "Load : resources/graphics/missing.png"},
                                   "Failed to load texture!\nFile : "
                                   "'resources/graphics/missing.png'"));
    // The texture loaded before the failure is freed with the pools.
    int pool = indexOf(run.lines, "[Dispose texturePool]");
    ASSERT_GE(pool, 0) << allLines(run.lines);
    ASSERT_LT(pool + 2, static_cast<int>(run.lines.size()));
    EXPECT_EQ(" -> delete texture 'a'", run.lines[pool + 1]);
    EXPECT_EQ(0u, run.lines[pool + 2].rfind("Texture::ID(", 0)) << run.lines[pool + 2];
}

TEST(PlayerGraphicsBlock, LoadedPicturesStandInTheReportAndAreFreedAtTheEnd) {
    PlayerRun run = runWith("logo = kvllogo.png; sysicon_pause = sysicon_pause.png, GL_TEXTURE_2D, "
                            "GEN_MIPMAP; again = kvllogo.png;");
    ASSERT_EQ(0, run.code) << allLines(run.lines);
    std::vector<std::string> expected = {
        "[Loading Graphics]",
        // Names come in byte order; "again" is read first and loads the file.
        "Load : resources/graphics/kvllogo.png",
        "Load : resources/graphics/sysicon_pause.png",
        "[GL_ERROR] 'invalid enumerant' in ->resources/graphics/sysicon_pause.png",
        "[Loading Binary Data]",
    };
    EXPECT_EQ(expected, linesFrom(run.lines, "[Loading Graphics]", expected.size()))
        << allLines(run.lines);
    EXPECT_NE(-1, indexOf(run.lines, "[Application End]"));

    // The report: both textures with their base levels and file sizes.
    int report = indexOf(run.lines, "DataTexturePool {");
    ASSERT_GE(report, 0) << allLines(run.lines);
    ASSERT_LT(report + 5, static_cast<int>(run.lines.size()));
    unsigned int memory = 256 * 128 * 4 + 64 * 64 * 4;
    unsigned int files = static_cast<unsigned int>(
        std::filesystem::file_size(std::string(KVL_SOURCE_DIR) +
                                   "/resources/graphics/kvllogo.png") +
        std::filesystem::file_size(std::string(KVL_SOURCE_DIR) +
                                   "/resources/graphics/sysicon_pause.png"));
    EXPECT_EQ("    total memory size : " +
                  KVLUtils::float2string(static_cast<float>(memory * 0.0009765625 * 0.0009765625)) +
                  " mb - " + std::to_string(memory) + " bytes",
              run.lines[report + 1]);
    EXPECT_EQ("    total file size : " +
                  KVLUtils::float2string(static_cast<float>(files * 0.0009765625 * 0.0009765625)) +
                  " mb - " + std::to_string(files) + " bytes",
              run.lines[report + 2]);
    EXPECT_EQ("    numTextures = 2", run.lines[report + 3]);
    EXPECT_EQ(0u, run.lines[report + 4].rfind("    again = Texture {file='kvllogo.png',id=", 0))
        << run.lines[report + 4];
    EXPECT_NE(std::string::npos, run.lines[report + 4].find("',size='256,128',bpp='32'}"));
    EXPECT_EQ(0u, run.lines[report + 5].rfind(
                      "    sysicon_pause = Texture {file='sysicon_pause.png',id=", 0))
        << run.lines[report + 5];
    EXPECT_NE(std::string::npos, run.lines[report + 5].find("',size='64,64',bpp='32' mipmapped }"));

    int pool = indexOf(run.lines, "[Dispose texturePool]");
    ASSERT_GE(pool, 0);
    ASSERT_LT(pool + 4, static_cast<int>(run.lines.size()));
    EXPECT_EQ(" -> delete texture 'again'", run.lines[pool + 1]);
    EXPECT_EQ(0u, run.lines[pool + 2].rfind("Texture::ID(", 0));
    EXPECT_EQ(" -> delete texture 'sysicon_pause'", run.lines[pool + 3]);
    EXPECT_EQ(0u, run.lines[pool + 4].rfind("Texture::ID(", 0));
    EXPECT_EQ(-1, indexOf(run.lines, " -> delete texture 'logo'"));
}
