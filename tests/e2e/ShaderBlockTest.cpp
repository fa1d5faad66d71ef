#include "e2e/PlayerLog.h"
#include "support/PlayerProcess.h"
#include "support/ProductionScript.h"
#include "support/ShaderSources.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

// Whole runs of the built player whose script names shader files. The lines
// of the shaders block and the closing text are compared exactly; compiler
// logs are the driver's words, so only their presence is checked.

namespace {

const std::string FRAGMENT = "#version 110\n"
                             "uniform sampler2D Texture0;\n"
                             "void main() {\n"
                             "    gl_FragColor = texture2D(Texture0, gl_TexCoord[0].st);\n"
                             "}\n";

class ShaderRun {
public:
    ShaderRun() { directory.copyFromSource("resources/definitions"); }

    void shader(const std::string& stem, const std::string& vertex, const std::string& fragment) {
        writeShaderPair(directory, stem, vertex, fragment);
    }

    PlayerRun run(const std::string& shaders) {
        ProductionScript script;
        script.paths = "definition = resources/definitions/; shaders = resources/shaders/; "
                       "misc = resources/misc/; sound = resources/music/;";
        script.system = "start = 00:00:000; stop = 00:00:300;";
        script.screen = SCREEN;
        script.sound = "file = kvltheme.ogg; play = 0;";
        script.blocks = shaders;
        script.writeTo(directory);
        return runToEnd(directory.path());
    }

private:
    TempDir directory;
};

// The lines from "[Loading Shaders]" up to "[Shutting Down]", both included.
std::vector<std::string> blockToShutdown(const std::vector<std::string>& log) {
    int block = indexOf(log, "[Loading Shaders]");
    int shutdown = indexOf(log, "[Shutting Down]", std::max(block, 0));
    if (block < 0 || shutdown < 0) {
        return {};
    }
    return slice(log, block, shutdown + 1);
}

// The closing text of the loader: what stands between "[Shutting Down]" and
// the first line of the report.
std::vector<std::string> closingText(const std::vector<std::string>& log) {
    int shutdown = indexOf(log, "[Shutting Down]");
    int report = indexOf(log, RULE, std::max(shutdown, 0));
    if (shutdown < 0 || report < 0) {
        return {};
    }
    return slice(log, shutdown + 1, report);
}

// Checks a closing text that holds a fixed start and a driver's log: both
// copies must be equal and begin with the fixed lines. Returns the driver's
// part of one copy.
std::vector<std::string> driverPart(const std::vector<std::string>& closing,
                                    const std::string& fixedMessage) {
    std::vector<std::string> fixed = splitLines("ResourceLoader:\nMessage :\n" + fixedMessage);
    EXPECT_EQ(0u, closing.size() % 2) << allLines(closing);
    size_t half = closing.size() / 2;
    std::vector<std::string> first = slice(closing, 0, static_cast<int>(half));
    std::vector<std::string> second =
        slice(closing, static_cast<int>(half), static_cast<int>(closing.size()));
    EXPECT_EQ(first, second);
    if (first.size() < fixed.size() + 2) {
        ADD_FAILURE() << "closing text too short:\n" << allLines(closing);
        return {};
    }
    EXPECT_EQ(fixed, slice(first, 0, static_cast<int>(fixed.size())));
    // Each copy ends in the empty line of its second line end.
    EXPECT_EQ("", first.back());
    return slice(first, static_cast<int>(fixed.size()), static_cast<int>(first.size()) - 1);
}

bool hasText(const std::vector<std::string>& lines) {
    return std::any_of(lines.begin(), lines.end(),
                       [](const std::string& line) { return !line.empty(); });
}

const std::vector<std::string> EMPTY_SHADER_POOL = {"ShaderPool {", "<Empty>", "}"};

// The shaders block of a script with the one pair "glow", up to the end of a
// load that stopped in it.
const std::vector<std::string> GLOW_BLOCK = {"[Loading Shaders]",
                                             "Shader path = resources/shaders/",
                                             "Loading shader glow = glow", "[Shutting Down]"};

bool contains(const std::vector<std::string>& log, const std::vector<std::string>& run) {
    return std::search(log.begin(), log.end(), run.begin(), run.end()) != log.end();
}

} // namespace

TEST(PlayerShaderBlock, LoadedShaderPairStandsInThePoolOfTheReportAndTheRunGoesOn) {
    ShaderRun production;
    production.shader("post/copy", PASS_VERTEX, FRAGMENT);
    PlayerRun run = production.run("shaders { copy = post/copy; }");
    ASSERT_EQ(0, run.code) << allLines(run.lines) << run.errors;

    int block = indexOf(run.lines, "[Loading Shaders]");
    ASSERT_GE(block, 0) << allLines(run.lines);
    EXPECT_EQ((std::vector<std::string>{"[Loading Shaders]", "Shader path = resources/shaders/",
                                        "Loading shader copy = post/copy"}),
              slice(run.lines, block, block + 3));
    EXPECT_GE(indexOf(run.lines, "[Demo Init]", block), 0) << allLines(run.lines);
    // A run that loaded goes straight from shutting down to the report.
    EXPECT_TRUE(contains(run.lines, {"[Shutting Down]", RULE})) << allLines(run.lines);
    EXPECT_TRUE(contains(run.lines, {"Shaders in pool : 1"})) << allLines(run.lines);
    EXPECT_TRUE(contains(
        run.lines, {"ShaderPool {",
                    "  copy = Shader(Vertex source length = " + std::to_string(PASS_VERTEX.size()) +
                        ", Fragment source length = " + std::to_string(FRAGMENT.size()) + ")",
                    "}"}))
        << allLines(run.lines);
    EXPECT_EQ("[Application End]", run.lines.back());
}

TEST(PlayerShaderBlock, MissingVertexFileIsReportedTwiceAndNothingLaterLoads) {
    ShaderRun production;
    production.shader("glow", "", FRAGMENT);
    PlayerRun run = production.run("shaders { glow = glow; }");
    ASSERT_EQ(0, run.code) << allLines(run.lines) << run.errors;

    EXPECT_EQ(GLOW_BLOCK, blockToShutdown(run.lines)) << allLines(run.lines);
    EXPECT_EQ(loaderMessageTwice("Vertex shader 'glow.vert' not found"), closingText(run.lines));
    EXPECT_TRUE(contains(run.lines, EMPTY_SHADER_POOL)) << allLines(run.lines);
    EXPECT_EQ(-1, indexOf(run.lines, "[Setting up sound]"));
    EXPECT_EQ("[Application End]", run.lines.back());
}

TEST(PlayerShaderBlock, MissingFragmentFileStopsTheLoadButTheReportShowsNoErrorText) {
    ShaderRun production;
    production.shader("glow", PASS_VERTEX, "");
    PlayerRun run = production.run("shaders { glow = glow; }");
    ASSERT_EQ(0, run.code) << allLines(run.lines) << run.errors;

    EXPECT_EQ(GLOW_BLOCK, blockToShutdown(run.lines)) << allLines(run.lines);
    // Only the empty line of the demo's own message.
    EXPECT_EQ(std::vector<std::string>{""}, closingText(run.lines));
    for (const std::string& line : run.lines) {
        EXPECT_EQ(std::string::npos, line.find("Fragement shader")) << line;
        EXPECT_NE("ResourceLoader:", line);
    }
    EXPECT_TRUE(contains(run.lines, EMPTY_SHADER_POOL)) << allLines(run.lines);
    EXPECT_EQ(-1, indexOf(run.lines, "[Setting up sound]"));
    EXPECT_EQ("[Application End]", run.lines.back());
}

TEST(PlayerShaderBlock, FragmentCompileErrorIsReportedWithTheFileAndTheCompilerLog) {
    ShaderRun production;
    production.shader("glow", PASS_VERTEX, BROKEN_FRAGMENT);
    PlayerRun run = production.run("shaders { glow = glow; }");
    ASSERT_EQ(0, run.code) << allLines(run.lines) << run.errors;

    EXPECT_EQ(GLOW_BLOCK, blockToShutdown(run.lines)) << allLines(run.lines);
    std::vector<std::string> log =
        driverPart(closingText(run.lines), "Error while compiling fragment shader\n"
                                           "Shader: glow.frag\n");
    EXPECT_TRUE(hasText(log)) << allLines(run.lines);
    EXPECT_TRUE(contains(run.lines, EMPTY_SHADER_POOL)) << allLines(run.lines);
    EXPECT_EQ("[Application End]", run.lines.back());
}

TEST(PlayerShaderBlock, VertexCompileErrorIsReportedWithTheFileAndTheCompilerLog) {
    ShaderRun production;
    production.shader("glow", BROKEN_FRAGMENT, FRAGMENT);
    PlayerRun run = production.run("shaders { glow = glow; }");
    ASSERT_EQ(0, run.code) << allLines(run.lines) << run.errors;

    std::vector<std::string> log =
        driverPart(closingText(run.lines), "Error while compiling vertex shader\n"
                                           "Shader: glow.vert\n");
    EXPECT_TRUE(hasText(log)) << allLines(run.lines);
    EXPECT_EQ("[Application End]", run.lines.back());
}

// The link log is asked of the shader-object calls with the program's name;
// a strict driver refuses, and then the message ends after the fixed lines.
TEST(PlayerShaderBlock, LinkErrorIsReportedWithTheStemOfThePair) {
    ShaderRun production;
    production.shader("glow", PASS_VERTEX, UNRESOLVED_FRAGMENT);
    PlayerRun run = production.run("shaders { glow = glow; }");
    ASSERT_EQ(0, run.code) << allLines(run.lines) << run.errors;

    EXPECT_EQ(GLOW_BLOCK, blockToShutdown(run.lines)) << allLines(run.lines);
    std::vector<std::string> closing = closingText(run.lines);
    std::vector<std::string> fixed =
        splitLines("ResourceLoader:\nMessage :\nError while linking shader pair\nShader: glow\n");
    ASSERT_GE(closing.size(), fixed.size()) << allLines(run.lines);
    EXPECT_EQ(fixed, slice(closing, 0, static_cast<int>(fixed.size())));
    driverPart(closing, "Error while linking shader pair\nShader: glow\n");
    EXPECT_TRUE(contains(run.lines, EMPTY_SHADER_POOL)) << allLines(run.lines);
    EXPECT_EQ("[Application End]", run.lines.back());
}
