#include "runtime/DataTexturePool.h"
#include "graphics/Texture.h"
#include "support/GLTestWindow.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace {

Texture* texture(const std::string& file, unsigned int id, int width, int height, int fileSize) {
    Texture* result = new Texture(file, id);
    result->setSize(width, height);
    result->setBPP(32);
    result->setFileSize(fileSize);
    return result;
}

} // namespace

// Textures free their GL names when the pool deletes them.
class DataTexturePoolWithGL : public GLTestWindow {};

TEST(DataTexturePool, EmptyPoolReportsZeroForBothTotals) {
    DataTexturePool pool;
    EXPECT_EQ(0u, pool.getTextureTotalFilesize());
    EXPECT_EQ(0u, pool.getTextureTotalMemsize());
    EXPECT_EQ(0, pool.size());
    EXPECT_EQ("DataTexturePool {\n"
              "    total memory size : 0 mb - 0 bytes\n"
              "    total file size : 0 mb - 0 bytes\n"
              "    numTextures = 0\n"
              "}\n",
              pool.toString());
}

TEST(DataTexturePool, LookingUpAMissingAliasGivesNullAndCreatesNoEntry) {
    DataTexturePool pool;
    EXPECT_EQ(nullptr, pool.getTexture("logo"));
    EXPECT_FALSE(pool.exist("logo"));
    EXPECT_FALSE(pool.isFileInPool("logo.png"));
}

TEST_F(DataTexturePoolWithGL, FileUsedUnderTwoAliasesKeepsOnlyTheLastAliasInTheFileMap) {
    DataTexturePool pool;
    pool.addTexture("first", texture("gfx/logo.png", 11, 4, 4, 10));
    pool.addTexture("second", texture("gfx/logo.png", 12, 4, 4, 10));
    std::map<std::string, std::string> files = pool.getFilemap();
    ASSERT_EQ(1u, files.size());
    EXPECT_EQ("second", files["gfx/logo.png"]);
    EXPECT_TRUE(pool.exist("first"));
    EXPECT_TRUE(pool.exist("second"));
    EXPECT_EQ(12u, pool.getTextureIDbyFilename("gfx/logo.png"));
    EXPECT_EQ(11u, pool.getTextureIDbyAlias("first"));
    EXPECT_EQ(2, pool.size());
}

TEST_F(DataTexturePoolWithGL, AddingByFileNameMakesATextureThatCarriesTheThirdArgumentAsItsId) {
    DataTexturePool pool;
    pool.addTexture("ramp", "gfx/ramp.png", GL_TEXTURE_1D);
    ASSERT_NE(nullptr, pool.getTexture("ramp"));
    EXPECT_EQ("gfx/ramp.png", pool.getTexture("ramp")->getFilename());
    EXPECT_EQ(static_cast<unsigned int>(GL_TEXTURE_1D), pool.getTextureIDbyAlias("ramp"));
    EXPECT_TRUE(pool.isFileInPool("gfx/ramp.png"));
    EXPECT_EQ(1, pool.size());
}

TEST_F(DataTexturePoolWithGL, OverwritingAnAliasCountsTwiceAndLeavesTheOldTextureAlive) {
    Texture* old = texture("a.png", 3, 2, 2, 1);
    {
        DataTexturePool pool;
        pool.addTexture("tex", old);
        pool.addTexture("tex", texture("b.png", 4, 2, 2, 1));
        EXPECT_EQ(2, pool.size());
        EXPECT_EQ(4u, pool.getTextureIDbyAlias("tex"));
        EXPECT_EQ(1u, pool.getTexVector().size());
    }
    EXPECT_EQ("a.png", old->getFilename());
    delete old;
}

TEST_F(DataTexturePoolWithGL, TotalsSumFileAndMemorySizesAndPrintThemInMegabytes) {
    DataTexturePool pool;
    Texture* big = texture("big.png", 21, 1024, 512, 393216);
    Texture* small = texture("small.png", 22, 256, 256, 131072);
    pool.addTexture("big", big);
    pool.addTexture("small", small);
    EXPECT_EQ(2359296u, pool.getTextureTotalMemsize());
    EXPECT_EQ(524288u, pool.getTextureTotalFilesize());
    EXPECT_EQ("DataTexturePool {\n"
              "    total memory size : 2.25 mb - 2359296 bytes\n"
              "    total file size : 0.5 mb - 524288 bytes\n"
              "    numTextures = 2\n"
              "    big = " +
                  big->toString() + "    small = " + small->toString() + "}\n",
              pool.toString());
}

TEST_F(DataTexturePoolWithGL, TextureIdsComeInAliasOrder) {
    DataTexturePool pool;
    pool.addTexture("zeta", texture("z.png", 5, 1, 1, 1));
    pool.addTexture("alpha", texture("a.png", 9, 1, 1, 1));
    pool.addTexture("mid", texture("m.png", 7, 1, 1, 1));
    EXPECT_EQ((std::vector<unsigned int>{9, 7, 5}), pool.getTexVector());
}

TEST_F(DataTexturePoolWithGL, AskingForTheIdOfAnUnknownAliasEntersTheAlias) {
    DataTexturePool pool;
    EXPECT_EQ(0u, pool.getTextureIDbyAlias("nothing"));
    EXPECT_TRUE(pool.exist("nothing"));
    EXPECT_EQ(0u, pool.getTextureTotalMemsize());
    EXPECT_TRUE(pool.getTexVector().empty());
}

TEST_F(DataTexturePoolWithGL, DisposalNamesEachAliasAndDeletesItsTexture) {
    DataTexturePool* pool = new DataTexturePool();
    pool->addTexture("sky", texture("sky.png", 31, 1, 1, 1));
    pool->addTexture("logo", texture("logo.png", 32, 1, 1, 1));
    testing::internal::CaptureStdout();
    delete pool;
    EXPECT_EQ("[Dispose texturePool]\n"
              " -> delete texture 'logo'\n"
              "Texture::ID(32) - deleted from graphics mem.\n"
              " -> delete texture 'sky'\n"
              "Texture::ID(31) - deleted from graphics mem.\n",
              testing::internal::GetCapturedStdout());
}
