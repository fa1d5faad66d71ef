#include "e2e/PlayerLog.h"
#include "support/PlayerProcess.h"
#include "support/ProductionScript.h"
#include "support/TempDir.h"

#include <GL/glew.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

// Whole runs of the built player on productions with a framebuffer block,
// each in a directory of its own with the production's definition files.
// From the framebuffer block on, the log is compared line by line to its end;
// what comes before it belongs to other parts of the player and is skipped.

namespace {

// A production without music, so no sound file is needed, with one fade.
PlayerRun run(const std::string& framebuffers,
              const std::string& timeline = "fade.start(00:00:000, 10);") {
    TempDir dir;
    dir.copyFromSource("resources/definitions");
    ProductionScript script;
    script.system = "start = 00:00:000; stop = 00:00:300;";
    script.screen = SCREEN;
    script.blocks = "framebuffers {\n" + framebuffers + "\n}";
    script.timeline = timeline;
    script.writeTo(dir);
    return runToEnd(dir.path());
}

// The effect templates the player has, as the parser lists them ("-> Name").
std::vector<std::string> templatesOf(const std::vector<std::string>& log) {
    std::vector<std::string> names;
    auto at = std::find(log.begin(), log.end(), "path = resources/definitions/");
    for (at = (at == log.end()) ? at : at + 1; at != log.end() && startsWith(*at, "-> "); ++at) {
        names.push_back(at->substr(3));
    }
    return names;
}

// The system parameters with the framebuffer block first.
std::vector<std::string> parametersWith(const std::vector<std::string>& framebuffers) {
    return group("framebuffers", framebuffers) +
           systemParameters("kvltheme.ogg", "0", {"start = 00:00:000", "stop = 00:00:300"});
}

std::string statusLine(GLenum status, const std::string& message, bool valid) {
    return "FBO " + message + "(" + std::to_string(status) + ") = " + (valid ? "true" : "false");
}

// A run that stops in the framebuffer block: its message twice, then the
// report with the block in the system parameters and no target made.
void expectRefusal(const PlayerRun& result, const std::string& entry, const std::string& message) {
    ASSERT_EQ(0, result.code) << allLines(result.lines);
    std::vector<std::string> templates = templatesOf(result.lines);
    ASSERT_FALSE(templates.empty()) << allLines(result.lines);

    ExpectedLog log;
    log.skipTo("[Loading Shaders]")
        .line("No shaders to load")
        .line("[Creating FramebufferObjects]")
        .line("[Shutting Down]")
        .lines(loaderMessageTwice(message))
        .lines(report(parametersWith({entry}), FADE_PARAMETERS, dataPools({}, templates),
                      {"No Data"}));
    expectDisposal(log, {}, templates, {}, 0, false, true);
    EXPECT_TRUE(log.matches(result.lines));
}

} // namespace

TEST(PlayerFramebufferBlock, EntryOfTwoWordsStopsTheLoadWithTheValueRepeatedInTheMessage) {
    PlayerRun result = run("main = 512, 256;");
    expectRefusal(result, "main = 512, 256",
                  "Wrong number of parameters in framebuffer block\n"
                  "Framebuffer: main\n"
                  "defined as : 512, 256\n"
                  "Valid syntax: width, height, COLOR_BUFFER [,DEPTH_BUFFER][,STENCIL_BUFFER]");
}

TEST(PlayerFramebufferBlock, EntryOfSixWordsStopsTheLoadWithTheValueRepeatedInTheMessage) {
    PlayerRun result =
        run("main = 32, 32, COLOR_BUFFER, DEPTH_BUFFER, STENCIL_BUFFER, COLOR_BUFFER;");
    expectRefusal(result, "main = 32, 32, COLOR_BUFFER, DEPTH_BUFFER, STENCIL_BUFFER, COLOR_BUFFER",
                  "Wrong number of parameters in framebuffer block\n"
                  "Framebuffer: main\n"
                  "defined as : 32, 32, COLOR_BUFFER, DEPTH_BUFFER, STENCIL_BUFFER, COLOR_BUFFER\n"
                  "Valid syntax: width, height, COLOR_BUFFER [,DEPTH_BUFFER][,STENCIL_BUFFER]");
}

TEST(PlayerFramebufferBlock, StencilInThePlaceOfDepthStopsTheLoadExpectingDepth) {
    PlayerRun result = run("main = 512, 256, COLOR_BUFFER, STENCIL_BUFFER;");
    expectRefusal(result, "main = 512, 256, COLOR_BUFFER, STENCIL_BUFFER",
                  "Wrong parameter for framebuffer 'main'\n"
                  "value: 'STENCIL_BUFFER'\n"
                  "expected : 'DEPTH_BUFFER'\n");
}

TEST(PlayerFramebufferBlock, EffectStartedIntoATargetRunsToTheStopTimeWithoutStackErrors) {
    PlayerRun result = run("glow = 128, 64, COLOR_BUFFER;\n"
                           "main = width, height, COLOR_BUFFER, DEPTH_BUFFER;",
                           "fade.start(00:00:000, 10, main);");
    ASSERT_EQ(0, result.code) << allLines(result.lines);
    std::vector<std::string> templates = templatesOf(result.lines);
    ASSERT_FALSE(templates.empty()) << allLines(result.lines);
    const std::string complete =
        statusLine(GL_FRAMEBUFFER_COMPLETE_EXT, "Framebuffer is complete.", true);

    ExpectedLog log;
    log.skipTo("[Loading Shaders]")
        .line("No shaders to load")
        .line("[Creating FramebufferObjects]")
        .line(complete)
        .line("FrameBufferObject(128,64,COLOR_BUFFER)")
        .line("moo ")
        .line(complete)
        .line("FrameBufferObject(320,240,COLOR_BUFFER,DEPTH_BUFFER)")
        .line("[Loading Graphics]")
        .skipTo("[Demo Init]")
        // The start event names the target it gives the effect.
        .line("FrameBufferObject(320,240,COLOR_BUFFER,DEPTH_BUFFER)")
        .startingWith("Duration : ")
        .startingWith("FPS = ")
        .line("[Shutting Down]")
        .lines(report(parametersWith({"glow = 128, 64, COLOR_BUFFER",
                                      "main = width, height, COLOR_BUFFER, DEPTH_BUFFER"}),
                      FADE_PARAMETERS, dataPools({"fade"}, templates, {"glow", "main"}),
                      {"(0000000000)-[00:00:000] = EventStartEffect {", "parameters {",
                       "    object = fade;", "    p1 = 00:00:000;", "    p2 = 10;",
                       "    p3 = main;", "}", "}", ""}));
    expectDisposal(log, {"fade"}, templates, {}, 2, true, true);
    EXPECT_TRUE(log.matches(result.lines));
}
