#include "support/PlayerProcess.h"
#include "support/TempDir.h"

#include <GL/glew.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

// Whole runs of the built player on productions with a framebuffer block,
// each in a directory of its own with the production's definition files.
// From the framebuffer block on, the log is compared line by line to its end;
// what comes before it belongs to other parts of the player and is skipped.

namespace {

const std::string RULE(64, '#');

bool startsWith(const std::string& text, const std::string& prefix) {
    return text.compare(0, prefix.size(), prefix) == 0;
}

std::vector<std::string> operator+(std::vector<std::string> first,
                                   const std::vector<std::string>& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

// The expected log: exact lines, lines of a known start, or a skip to a
// given line over what other parts of the player write.
class LogPattern {
public:
    LogPattern& line(const std::string& text) { return add(EXACT, text); }
    LogPattern& lines(const std::vector<std::string>& texts) {
        for (const std::string& text : texts) {
            line(text);
        }
        return *this;
    }
    LogPattern& startingWith(const std::string& prefix) { return add(PREFIX, prefix); }
    LogPattern& skipTo(const std::string& text) { return add(SKIP_TO, text); }

    testing::AssertionResult matches(const std::vector<std::string>& log) const {
        size_t at = 0;
        for (const Step& step : steps) {
            if (step.kind == SKIP_TO) {
                auto found =
                    std::find(log.begin() + std::min(at, log.size()), log.end(), step.text);
                if (found == log.end()) {
                    return failure(log, at, "a later line '" + step.text + "'");
                }
                at = static_cast<size_t>(found - log.begin()) + 1;
                continue;
            }
            if (at >= log.size()) {
                return failure(log, at, "'" + step.text + "' after the end of the log");
            }
            bool ok = (step.kind == EXACT) ? log[at] == step.text : startsWith(log[at], step.text);
            if (!ok) {
                return failure(log, at,
                               (step.kind == EXACT ? "the line '" : "a line starting with '") +
                                   step.text + "'");
            }
            at++;
        }
        if (at != log.size()) {
            return failure(log, at, "the end of the log");
        }
        return testing::AssertionSuccess();
    }

private:
    enum Kind { EXACT, PREFIX, SKIP_TO };
    struct Step {
        Kind kind;
        std::string text;
    };

    LogPattern& add(Kind kind, const std::string& text) {
        steps.push_back({kind, text});
        return *this;
    }

    static testing::AssertionResult failure(const std::vector<std::string>& log, size_t at,
                                            const std::string& wanted) {
        std::ostringstream text;
        text << "expected " << wanted << " at line " << at << "; the log around it:\n";
        size_t first = (at > 8) ? at - 8 : 0;
        for (size_t i = first; i < log.size() && i < at + 8; i++) {
            text << (i == at ? ">> " : "   ") << i << ": " << log[i].substr(0, 120) << "\n";
        }
        return testing::AssertionFailure() << text.str();
    }

    std::vector<Step> steps;
};

// A production without music, so no sound file is needed, with one fade.
std::string production(const std::string& framebuffers, const std::string& timeline) {
    return "{KVLDS1}\n"
           "paths { definition = resources/definitions/; misc = resources/misc/; "
           "sound = resources/music/; }\n"
           "system { start = 00:00:000; stop = 00:00:300; }\n"
           "screen { width = 320; height = 240; bpp = 32; fullscreen = 0; near = 1.0; "
           "far = 100.0; }\n"
           "sound { play = 0; }\n"
           "framebuffers {\n" +
           framebuffers +
           "\n}\n"
           "fade * FadeEffect { ; }\n"
           "timeline {\n" +
           timeline + "\n}\n";
}

struct PlayerRun {
    int code;
    std::vector<std::string> lines;
};

PlayerRun run(const std::string& framebuffers,
              const std::string& timeline = "fade.start(00:00:000, 10);") {
    TempDir dir;
    dir.copyFromSource("resources/definitions");
    dir.write("resources/scripts/demoscript.txt", production(framebuffers, timeline));
    PlayerProcess player(dir.path(), {});
    PlayerRun result;
    result.code = player.waitForExit(60);
    result.lines = player.outputLines();
    return result;
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

std::vector<std::string> loaderMessageTwice(const std::string& message) {
    std::vector<std::string> once = splitLines("ResourceLoader:\nMessage :\n" + message + "\n\n");
    return once + once;
}

std::vector<std::string> systemParameters(const std::vector<std::string>& framebuffers) {
    std::vector<std::string> lines{"framebuffers {"};
    for (const std::string& entry : framebuffers) {
        lines.push_back("    " + entry + ";");
    }
    return lines + std::vector<std::string>{"}",
                                            "paths {",
                                            "    definition = resources/definitions/;",
                                            "    misc = resources/misc/;",
                                            "    sound = resources/music/;",
                                            "}",
                                            "screen {",
                                            "    bpp = 32;",
                                            "    far = 100.0;",
                                            "    fullscreen = 0;",
                                            "    height = 240;",
                                            "    near = 1.0;",
                                            "    width = 320;",
                                            "}",
                                            "sound {",
                                            "    file = kvltheme.ogg;",
                                            "    play = 0;",
                                            "}",
                                            "system {",
                                            "    start = 00:00:000;",
                                            "    stop = 00:00:300;",
                                            "}"};
}

std::vector<std::string> dataPools(const std::vector<std::string>& effects,
                                   const std::vector<std::string>& templates,
                                   const std::vector<std::string>& targets) {
    std::vector<std::string> lines{"Shaders in pool : 0", "AnimationPool {",      "}",
                                   "DataBinaryPool {",    "    num3dObjects = 0", "}",
                                   "EffectPool {"};
    for (const std::string& name : effects) {
        lines.push_back("    " + name + " = Effect");
    }
    lines = lines + std::vector<std::string>{"}", "EffectPool {"};
    for (const std::string& name : templates) {
        lines.push_back("    " + name + " = Effect");
    }
    lines = lines + std::vector<std::string>{"}",
                                             "EventPool {",
                                             "    modify = EventModifyEffect {  }",
                                             "    start = EventStartEffect {  }",
                                             "    stop = EventStopEffect {  }",
                                             "}",
                                             "FBOPool {"};
    for (const std::string& name : targets) {
        lines.push_back("  " + name + " = ");
    }
    return lines + std::vector<std::string>{"}",
                                            "DataObjectPool {",
                                            "    num3dObjects = 0",
                                            "}",
                                            "ShaderPool {",
                                            "<Empty>",
                                            "}",
                                            "DataTexturePool {",
                                            "    total memory size : 0 mb - 0 bytes",
                                            "    total file size : 0 mb - 0 bytes",
                                            "    numTextures = 0",
                                            "}"};
}

std::vector<std::string> report(const std::vector<std::string>& system,
                                const std::vector<std::string>& pools,
                                const std::vector<std::string>& timeline) {
    return std::vector<std::string>{
               RULE, "# Resources                                                    #", RULE,
               "--------------------- System parameters ------------------------"} +
           system +
           std::vector<std::string>{
               "--------------------- Effects parameters -----------------------", "fade {",
               "    class = FadeEffect;", "}",
               "--------------------- DataPools --------------------------------"} +
           pools +
           std::vector<std::string>{
               "--------------------- Timeline ---------------------------------"} +
           timeline + std::vector<std::string>{RULE};
}

// From the disposal of the pools to the last line. Each target deletes its
// colour texture with the texture's own message, in the pool's name order.
void expectDisposal(LogPattern& log, const std::vector<std::string>& effects,
                    const std::vector<std::string>& templates, int targets, bool timeline) {
    log.skipTo("[Deleting Pools]")
        .line("delete KVLDemosys::parameters")
        .line("delete KVLDemosys::effects")
        .line("delete KVLDemosys::data")
        .line("[Dispose animationPool]")
        .line("[Dispose binaryPool]")
        .line("[Dispose effectPool]");
    for (const std::string& name : effects) {
        log.line(" -> delete " + name);
    }
    log.line("[Dispose effectPool]");
    for (const std::string& name : templates) {
        log.line(" -> delete " + name);
    }
    log.line("[Dispose eventPool]")
        .line(" -> delete modify")
        .line(" -> delete start")
        .line(" -> delete stop");
    for (int i = 0; i < targets; i++) {
        log.startingWith("Texture::ID(");
    }
    log.line("[Dispose objectPool]")
        .line("[Dispose texturePool]")
        .line("delete KVLDemosys::timeline");
    if (timeline) {
        log.line("[Disposing Timeline Events]").line("[Disposing Timeline Checkpoints]");
    }
    log.line("delete KVLDemosys::action")
        .line("delete KVLDemosys::glExtensions")
        .line("KVLDemosys::shutdown()")
        .line("[Application End]");
}

std::string statusLine(GLenum status, const std::string& message, bool valid) {
    return "FBO " + message + "(" + std::to_string(status) + ") = " + (valid ? "true" : "false");
}

std::string allLines(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line.substr(0, 160) + "\n";
    }
    return text;
}

// A run that stops in the framebuffer block: its message twice, then the
// report with the block in the system parameters and no target made.
void expectRefusal(const PlayerRun& result, const std::string& entry, const std::string& message) {
    ASSERT_EQ(0, result.code) << allLines(result.lines);
    std::vector<std::string> templates = templatesOf(result.lines);
    ASSERT_FALSE(templates.empty()) << allLines(result.lines);

    LogPattern log;
    log.skipTo("[Loading Shaders]")
        .line("No shaders to load")
        .line("[Creating FramebufferObjects]")
        .line("[Shutting Down]")
        .lines(loaderMessageTwice(message))
        .lines(report(systemParameters({entry}), dataPools({}, templates, {}), {"No Data"}));
    expectDisposal(log, {}, templates, 0, false);
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

    LogPattern log;
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
        .lines(report(systemParameters({"glow = 128, 64, COLOR_BUFFER",
                                        "main = width, height, COLOR_BUFFER, DEPTH_BUFFER"}),
                      dataPools({"fade"}, templates, {"glow", "main"}),
                      {"(0000000000)-[00:00:000] = EventStartEffect {", "parameters {",
                       "    object = fade;", "    p1 = 00:00:000;", "    p2 = 10;",
                       "    p3 = main;", "}", "}", ""}));
    expectDisposal(log, {"fade"}, templates, 2, true);
    EXPECT_TRUE(log.matches(result.lines));
}
