#include "support/LogLines.h"
#include "support/PlayerProcess.h"
#include "support/ProductionScript.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

namespace {

void pauseFor(int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

// A production of nothing: the real definition files, a small window, no
// music, no effects.
void writeQuietScript(const TempDir& dir) {
    dir.copyFromSource("resources/definitions");
    ProductionScript script;
    script.paths = "definition = resources/definitions/; sound = resources/music/;";
    script.screen = "width = 320; height = 240;";
    script.effects = "";
    script.timeline = "";
    script.writeTo(dir);
}

} // namespace

TEST(PlayerKeys, SpacePausesAndResumesAndEscapeEndsTheRunWithTheClosingLines) {
    TempDir dir;
    writeQuietScript(dir);
    PlayerProcess player(dir.path(), {});
    ASSERT_TRUE(player.waitForWindow(60)) << player.output() << player.errorOutput();
    pauseFor(300);
    ASSERT_TRUE(player.pressKey("space"));
    pauseFor(300);
    ASSERT_TRUE(player.pressKey("space"));
    pauseFor(300);
    ASSERT_TRUE(player.pressKey("Escape"));
    ASSERT_EQ(0, player.waitForExit(60)) << player.output();

    std::vector<std::string> lines = player.outputLines();
    int stop = findLine(lines, "--> Stop Timeline");
    int star = findLine(lines, "--> Star Timeline", stop + 1);
    int duration = findLine(lines, "Duration : ", star + 1);
    ASSERT_GE(stop, 0) << player.output();
    ASSERT_GT(star, stop) << player.output();
    ASSERT_GT(duration, star) << player.output();
    ASSERT_GE(lines.size(), static_cast<size_t>(duration + 5));
    EXPECT_TRUE(startsWith(lines[duration + 1], "FPS = ")) << lines[duration + 1];
    EXPECT_EQ("[Shutting Down]", lines[duration + 2]);
    EXPECT_EQ("KVLDemosys::shutdown()", lines[lines.size() - 2]);
    EXPECT_EQ("KVLDemosys::shutdown()", lines[lines.size() - 2]);
    EXPECT_EQ("[Application End]", lines.back());
    EXPECT_EQ(1, std::count(lines.begin(), lines.end(), "--> Stop Timeline"));
    EXPECT_EQ(1, std::count(lines.begin(), lines.end(), "--> Star Timeline"));
}

TEST(PlayerKeys, DurationLineShowsTheClockInTheLogForm) {
    TempDir dir;
    writeQuietScript(dir);
    PlayerProcess player(dir.path(), {});
    ASSERT_TRUE(player.waitForWindow(60)) << player.output();
    pauseFor(500);
    ASSERT_TRUE(player.pressKey("Escape"));
    ASSERT_EQ(0, player.waitForExit(60)) << player.output();
    std::vector<std::string> lines = player.outputLines();
    int duration = findLine(lines, "Duration : ");
    ASSERT_GE(duration, 0) << player.output();
    const std::string& line = lines[duration];
    // "Duration : (0000001234)-[00:01:234]"
    ASSERT_EQ(std::string("Duration : (0000000000)-[00:00:000]").size(), line.size()) << line;
    EXPECT_EQ('(', line[11]);
    EXPECT_EQ(")-[", line.substr(22, 3));
    EXPECT_EQ(']', line.back());
}

TEST(PlayerKeys, FailedLoadRunsNoFrameAndStillReportsAndExitsZero) {
    TempDir dir;
    writeQuietScript(dir);
    // SDL's dummy video driver has no OpenGL, so opening the screen fails.
    std::vector<std::string> lines;
    int code = runPlayer(dir.path(), {}, &lines, 60, {"SDL_VIDEODRIVER=dummy"});
    EXPECT_EQ(0, code);
    EXPECT_EQ(-1, findLine(lines, "Duration : "));
    EXPECT_EQ(-1, findLine(lines, "FPS = "));
    int shutting = findLine(lines, "[Shutting Down]");
    ASSERT_GE(shutting, 0);
    EXPECT_GE(
        findLine(lines, "Failed to open screen : 320x240 bpp=32 fullscreen=windowed", shutting), 0);
    EXPECT_GE(findLine(lines, "Failed to set screenmode!", shutting), 0);
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ("KVLDemosys::shutdown()", lines[lines.size() - 2]);
    EXPECT_EQ("[Application End]", lines.back());
}

TEST(PlayerGate, DriverWithoutOpenGl20StopsTheLoadWithItsMessageAndNoFrameRuns) {
    TempDir dir;
    writeQuietScript(dir);
    std::vector<std::string> lines;
    // Mesa reports whatever version it is told to: here one below 2.0.
    int code = runPlayer(dir.path(), {}, &lines, 60, {"MESA_GL_VERSION_OVERRIDE=1.5"});
    EXPECT_EQ(0, code);
    EXPECT_EQ(-1, findLine(lines, "Duration : "));
    EXPECT_EQ(-1, findLine(lines, "[Loading Shaders]"));
    int shutting = findLine(lines, "[Shutting Down]");
    ASSERT_GE(shutting, 0);
    ASSERT_GT(lines.size(), static_cast<size_t>(shutting + 4));
    EXPECT_EQ("No OpenGL 2.0 support found!", lines[shutting + 1]);
    EXPECT_EQ("Your graphics card is probably crappy", lines[shutting + 2]);
    EXPECT_EQ("or you are using drivers from the stoneage.", lines[shutting + 3]);
    EXPECT_EQ(std::string(64, '#'), lines[shutting + 4]);
    EXPECT_EQ("[Application End]", lines.back());
}
