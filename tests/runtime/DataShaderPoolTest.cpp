#include "runtime/DataShaderPool.h"
#include "graphics/Shader.h"
#include "support/GLTestWindow.h"

#include <gtest/gtest.h>

#include <string>

// Shaders free their GL names when the pool deletes them.
class DataShaderPoolWithGL : public GLTestWindow {};

TEST(DataShaderPool, AskingForAMissingShaderGivesNullAndEntersTheName) {
    DataShaderPool pool;
    EXPECT_FALSE(pool.exists("blur"));
    EXPECT_EQ(nullptr, pool.getShader("blur"));
    EXPECT_TRUE(pool.exists("blur"));
    EXPECT_EQ(1, pool.size());
}

TEST(DataShaderPool, EmptyPoolPrintsEmptyAndLogsTheCountAtEveryCall) {
    DataShaderPool pool;
    testing::internal::CaptureStdout();
    std::string first = pool.toString();
    std::string second = pool.toString();
    EXPECT_EQ("Shaders in pool : 0\nShaders in pool : 0\n", testing::internal::GetCapturedStdout());
    EXPECT_EQ("ShaderPool {\n<Empty>\n}\n", first);
    EXPECT_EQ(first, second);
}

TEST_F(DataShaderPoolWithGL, PrintsEachShaderOnALineOfItsOwn) {
    DataShaderPool pool;
    Shader* glow = new Shader();
    Shader* blur = new Shader();
    pool.addShader("glow", glow);
    pool.addShader("blur", blur);
    testing::internal::CaptureStdout();
    std::string text = pool.toString();
    EXPECT_EQ("Shaders in pool : 2\n", testing::internal::GetCapturedStdout());
    EXPECT_EQ("ShaderPool {\n"
              "  blur = " +
                  blur->toString() + "\n  glow = " + glow->toString() + "\n}\n",
              text);
}

TEST_F(DataShaderPoolWithGL, DisposalWritesNothing) {
    DataShaderPool* pool = new DataShaderPool();
    pool->addShader("glow", new Shader());
    pool->getShader("missing");
    testing::internal::CaptureStdout();
    delete pool;
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
}
