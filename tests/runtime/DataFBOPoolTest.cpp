#include "runtime/DataFBOPool.h"
#include "graphics/FrameBufferObject.h"
#include "support/GLTestWindow.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

// Render targets are GL objects: they are made and deleted with a context.
class DataFBOPoolWithGL : public GLTestWindow {};

TEST(DataFBOPool, GettingAMissingTargetLogsTheNameAndGivesNull) {
    DataFBOPool pool;
    testing::internal::CaptureStdout();
    FrameBufferObject* target = pool.getFBO("mainBuffer");
    EXPECT_EQ("FrameBufferObject::getFBO(mainBuffer)\n", testing::internal::GetCapturedStdout());
    EXPECT_EQ(nullptr, target);
    EXPECT_FALSE(pool.exists("mainBuffer"));
    EXPECT_EQ(0, pool.size());
}

TEST(DataFBOPool, EmptyPoolPrintsAnEmptyBlock) {
    DataFBOPool pool;
    EXPECT_EQ("FBOPool {\n}\n", pool.toString());
}

TEST_F(DataFBOPoolWithGL, PrintsTheNamesWithoutTheTargets) {
    DataFBOPool pool;
    FrameBufferObject* main = new FrameBufferObject(64, 64, true, false);
    FrameBufferObject* glow = new FrameBufferObject(32, 32, false, false);
    pool.addFBO("mainBuffer", main);
    pool.addFBO("glowBuffer", glow);
    EXPECT_EQ("FBOPool {\n  glowBuffer = \n  mainBuffer = \n}\n", pool.toString());
    EXPECT_EQ(2, pool.size());
    testing::internal::CaptureStdout();
    EXPECT_EQ(main, pool.getFBO("mainBuffer"));
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
}

TEST_F(DataFBOPoolWithGL, DisposalWritesNoLinesOfItsOwn) {
    DataFBOPool* pool = new DataFBOPool();
    pool->addFBO("mainBuffer", new FrameBufferObject(16, 16, true, false));
    testing::internal::CaptureStdout();
    delete pool;
    std::string log = testing::internal::GetCapturedStdout();
    EXPECT_EQ(std::string::npos, log.find("Dispose"));
    EXPECT_EQ(std::string::npos, log.find("mainBuffer"));
    // Whatever is written comes from the target's own colour texture.
    std::istringstream lines(log);
    std::string line;
    while (std::getline(lines, line)) {
        EXPECT_EQ(0u, line.rfind("Texture::ID(", 0)) << "unexpected line: " << line;
    }
}
