#include "runtime/KVLDemosys.h"
#include "support/GLTestWindow.h"
#include "timeline/ActionPool.h"
#include "timeline/Effect.h"

#include <SDL/SDL.h>
#include <gtest/gtest.h>

TEST(KVLDemosysScreen, FullscreenValueTwoFailsWithScreenModeMessageAndSdlError) {
    KVLDemosys::resetState();
    EXPECT_FALSE(KVLDemosys::screenOpen(64, 48, 32, 1, 2));
    EXPECT_EQ(nullptr, KVLDemosys::screen);
    EXPECT_EQ(std::string("Failed to set screenmode!\n") + SDL_GetError(), KVLDemosys::getMessage());
    EXPECT_EQ(64, KVLDemosys::screenWidth);
    EXPECT_EQ(48, KVLDemosys::screenHeight);
    SDL_Quit();
    KVLDemosys::resetState();
}

TEST(KVLDemosysScreen, WindowedOpenGlModeOpensADoubleBufferedContext) {
    KVLDemosys::resetState();
    ASSERT_TRUE(KVLDemosys::screenOpen(80, 60, 32, 1, 0)) << KVLDemosys::getMessage();
    ASSERT_NE(nullptr, KVLDemosys::screen);
    EXPECT_TRUE(KVLDemosys::screen->flags & SDL_OPENGL);
    int doubleBuffer = 0;
    SDL_GL_GetAttribute(SDL_GL_DOUBLEBUFFER, &doubleBuffer);
    EXPECT_EQ(1, doubleBuffer);
    EXPECT_EQ(80, KVLDemosys::screen->w);
    EXPECT_EQ(60, KVLDemosys::screen->h);
    SDL_Quit();
    KVLDemosys::resetState();
}

TEST(KVLDemosysScreen, OlderFormWithAnUnknownModeOpensNothing) {
    KVLDemosys::resetState();
    char title[] = "title";
    char icon[] = "icon";
    EXPECT_FALSE(KVLDemosys::screenOpen(64, 64, 32, 5, title, icon));
    EXPECT_EQ(0u, KVLDemosys::getMessage().find("Failed to set screenmode!\n"));
    SDL_Quit();
    KVLDemosys::resetState();
}

TEST(KVLDemosysScreen, OlderFormOpensAnOpenGlWindowWithItsCaption) {
    KVLDemosys::resetState();
    char title[] = "kvl caption";
    char icon[] = "kvl";
    ASSERT_TRUE(KVLDemosys::screenOpen(64, 64, 32, 1, title, icon)) << KVLDemosys::getMessage();
    char* shownTitle = nullptr;
    char* shownIcon = nullptr;
    SDL_WM_GetCaption(&shownTitle, &shownIcon);
    ASSERT_NE(nullptr, shownTitle);
    EXPECT_STREQ("kvl caption", shownTitle);
    SDL_Quit();
    KVLDemosys::resetState();
}

using KVLDemosysGL = GLTestWindow;

TEST_F(KVLDemosysGL, GlErrorIsLoggedWithTheRunningEffectsAndReportedOnce) {
    ActionPool pool;
    Effect effect;
    pool.addEffect("intro", &effect, 20);
    KVLDemosys::action = &pool;
    glEnable(0xFFFF); // not a capability: GL_INVALID_ENUM
    testing::internal::CaptureStdout();
    EXPECT_FALSE(KVLDemosys::glErrPrint("main()"));
    std::string log = testing::internal::GetCapturedStdout();
    EXPECT_EQ("[GL_ERROR LOCATION = 'main()']\n"
              "[GL_ERROR CODE 1280] 'invalid enumerant' in ->\n"
              "ActionPool {\n"
              "    Effects:\n"
              "        020_intro - Effect\n"
              "    AliasTable:\n"
              "        intro - 020_intro\n"
              "}\n",
              log);
    EXPECT_TRUE(KVLDemosys::system_error);
    // The error has been taken: the next check is clean and says nothing.
    testing::internal::CaptureStdout();
    EXPECT_TRUE(KVLDemosys::glErrPrint("main()"));
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
    KVLDemosys::action = nullptr;
}

TEST_F(KVLDemosysGL, SetViewMakesAFrustumFromTheScreenAspect) {
    KVLDemosys::screenWidth = 64;
    KVLDemosys::screenHeight = 32;
    KVLDemosys::setView();
    EXPECT_DOUBLE_EQ(0.49999999999999994, KVLDemosys::frustumHeight);
    EXPECT_DOUBLE_EQ(0.49999999999999994 * 2.0, KVLDemosys::frustumWidth);
    GLint viewport[4];
    glGetIntegerv(GL_VIEWPORT, viewport);
    EXPECT_EQ(64, viewport[2]);
    EXPECT_EQ(32, viewport[3]);
    GLint mode = 0;
    glGetIntegerv(GL_MATRIX_MODE, &mode);
    EXPECT_EQ(GL_MODELVIEW, mode);
    GLfloat projection[16];
    glGetFloatv(GL_PROJECTION_MATRIX, projection);
    // glFrustum: m[0] = 2n / (r - l), m[5] = 2n / (t - b).
    double n = KVLDemosys::frustumNear;
    EXPECT_NEAR(2 * n / (2 * KVLDemosys::frustumWidth), projection[0], 1e-5);
    EXPECT_NEAR(2 * n / (2 * KVLDemosys::frustumHeight), projection[5], 1e-5);
}
