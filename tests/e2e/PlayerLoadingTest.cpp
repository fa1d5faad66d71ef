#include "e2e/PlayerLog.h"
#include "support/PlayerProcess.h"
#include "support/ProductionScript.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

// Whole runs of the built player on small productions, each in a directory of
// its own with a resources/ tree. The log is compared line by line; only the
// lines that depend on the machine (the driver's extension list, the clock)
// are matched by their form.

namespace {

// The effect templates the player registers, in name order. They show in the
// parser's list, in the template pool of the report and in its disposal.
const std::vector<std::string> TEMPLATES = {"DisplayObject", "DisplayTexture", "FadeEffect",
                                            "GlowEffect"};

// The ticks of a log time "(0000001501)-[00:01:501]" at the end of a line.
long ticksOf(const std::string& line) {
    size_t open = line.find('(');
    if (open == std::string::npos || line.size() < open + 11) {
        return -1;
    }
    return std::strtol(line.substr(open + 1, 10).c_str(), nullptr, 10);
}

// The clock of the run's "Duration : " line lies between the two ticks.
void expectDurationBetween(const PlayerRun& run, long above, long below) {
    int duration = findLine(run.lines, "Duration : ");
    ASSERT_GE(duration, 0) << allLines(run.lines);
    EXPECT_GT(ticksOf(run.lines[duration]), above) << run.lines[duration];
    EXPECT_LT(ticksOf(run.lines[duration]), below) << run.lines[duration];
}

// One fade over the production's music. Every key of "screen" is given, so
// the report does not depend on the defaults of the definition files.
ProductionScript fadeWithMusic() {
    ProductionScript script;
    script.system = "start = 00:00:000; stop = 00:01:500;";
    script.screen = SCREEN;
    script.sound = "file = kvltheme.ogg; play = 1;";
    script.timeline = "fade.start(00:00:000, 10);\n"
                      "fade.fade(00:00:100, 00:01:000, 0.0, 0.0, 0.0, 0.0, 1.0, 1.0, 1.0, 0.5);";
    return script;
}

void writeLittleEndian(std::ofstream& out, uint32_t value, int bytes) {
    for (int i = 0; i < bytes; i++) {
        out.put(static_cast<char>((value >> (8 * i)) & 0xff));
    }
}

// Three seconds of a quiet tone, as 16-bit mono PCM.
void writeWave(const std::string& path) {
    const uint32_t rate = 22050;
    const uint32_t samples = rate * 3;
    std::ofstream out(path, std::ios::binary);
    out << "RIFF";
    writeLittleEndian(out, 36 + samples * 2, 4);
    out << "WAVEfmt ";
    writeLittleEndian(out, 16, 4);
    writeLittleEndian(out, 1, 2);
    writeLittleEndian(out, 1, 2);
    writeLittleEndian(out, rate, 4);
    writeLittleEndian(out, rate * 2, 4);
    writeLittleEndian(out, 2, 2);
    writeLittleEndian(out, 16, 2);
    out << "data";
    writeLittleEndian(out, samples * 2, 4);
    for (uint32_t i = 0; i < samples; i++) {
        double value = 2000.0 * std::sin(i * 440.0 * 6.283185307179586 / rate);
        writeLittleEndian(out, static_cast<uint32_t>(static_cast<int16_t>(value)) & 0xffff, 2);
    }
}

// The production's music when it is there, otherwise a short piece made for
// the test.
void provideMusic(const TempDir& dir) {
    const std::string music = "resources/music/kvltheme.ogg";
    if (std::filesystem::exists(std::filesystem::path(KVL_SOURCE_DIR) / music)) {
        dir.copyFromSource(music);
        return;
    }
    dir.write("resources/music/tone.wav", "");
    writeWave(dir.file("resources/music/tone.wav"));
    std::string command = "oggenc -Q -o '" + dir.file(music) + "' '" +
                          dir.file("resources/music/tone.wav") + "' >/dev/null 2>&1";
    ASSERT_EQ(0, std::system(command.c_str())) << "cannot make an OGG file with oggenc";
}

void writeProduction(const TempDir& dir, const ProductionScript& script) {
    dir.copyFromSource("resources/definitions");
    provideMusic(dir);
    script.writeTo(dir);
}

// ---------------------------------------------------------------- pieces

void expectStartup(ExpectedLog& log) {
    log.line("[Creating DataPools]")
        .line("[Creating Pool objects]")
        .line("[Adding effect templates]")
        // The templates' constructors may speak here.
        .skipTo("[Adding event templates]")
        .skipTo("Parsing config")
        .line("[Parsing defaults]")
        .line("[Parsing demoscript]");
}

void expectDefinitions(ExpectedLog& log) {
    log.line("[Parsing .def files]").line("path = resources/definitions/");
    for (const std::string& name : TEMPLATES) {
        log.line("-> " + name);
    }
}

void expectScreen(ExpectedLog& log) {
    log.line("Open screen : 320x240,32").line("[Supported OpenGL Extensions]").startingWith("GL_");
}

// The binary block comes after the shader, framebuffer and graphics blocks,
// and the object and animation blocks follow it.
void expectNoBinaryData(ExpectedLog& log) {
    log.skipTo("[Loading Binary Data]").line("No binary data").skipTo("[Setting up sound]");
}

void expectMusic(ExpectedLog& log) {
    log.line("Play : resources/music/kvltheme.ogg")
        .line("KVLDemosys::soundInit()")
        .line("No sound");
}

void expectEffectsAndTimeline(ExpectedLog& log, const std::string& start) {
    log.line("[Create effect objects]")
        .line("DisplayTexture") // the fade effect's constructor says so
        .line("FadeEffect.init()")
        .line("[Parsing timeline]")
        .line("[Parsing timeline - DONE]")
        .line("[Timeline init]")
        .line("[Getting Startpos]")
        .line("startpos = " + start)
        .line("[Demo Init]");
}

// The timeline section of the default script, with the empty line that ends it.
const std::vector<std::string> FADE_TIMELINE = {"(0000000000)-[00:00:000] = EventStartEffect {",
                                                "parameters {",
                                                "    object = fade;",
                                                "    p1 = 00:00:000;",
                                                "    p2 = 10;",
                                                "}",
                                                "}",
                                                "(0000000100)-[00:00:100] = EventModifyEffect {",
                                                "parameters {",
                                                "    method = fade;",
                                                "    object = fade;",
                                                "    p1 = 00:00:100;",
                                                "    p10 = 0.5;",
                                                "    p2 = 00:01:000;",
                                                "    p3 = 0.0;",
                                                "    p4 = 0.0;",
                                                "    p5 = 0.0;",
                                                "    p6 = 0.0;",
                                                "    p7 = 1.0;",
                                                "    p8 = 1.0;",
                                                "    p9 = 1.0;",
                                                "}",
                                                "}",
                                                ""};

const std::vector<std::string> NO_DATA = {"No Data"};

} // namespace

// ---------------------------------------------------------------- a whole run

TEST(PlayerLoading, WholeRunWithFadeAndMusicLogsEveryPhaseInOrderAndEndsAtTheStopTime) {
    TempDir dir;
    writeProduction(dir, fadeWithMusic());
    PlayerRun run = runToEnd(dir.path());
    ASSERT_EQ(0, run.code) << allLines(run.lines) << run.errors;

    ExpectedLog log;
    expectStartup(log);
    expectDefinitions(log);
    expectScreen(log);
    expectNoBinaryData(log);
    expectMusic(log);
    expectEffectsAndTimeline(log, "(0000000000)-[00:00:000]");
    log.line("fade from [0,0,0,0] -> [1,1,1,0.5]")
        .startingWith("Duration : ")
        .startingWith("FPS = ")
        .line("[Shutting Down]")
        .lines(
            report(systemParameters("kvltheme.ogg", "1", {"start = 00:00:000", "stop = 00:01:500"}),
                   FADE_PARAMETERS, dataPools({"fade"}, TEMPLATES), FADE_TIMELINE));
    expectDisposal(log, {"fade"}, TEMPLATES, {}, 0, true, true);
    EXPECT_TRUE(log.matches(run.lines));

    // The first frame whose clock passes 1500 ms ends the run.
    expectDurationBetween(run, 1500, 2000);
}

// ---------------------------------------------------------------- failures of the script

TEST(PlayerLoading, MissingScriptIsReportedTwiceAfterShuttingDownAndNothingElseLoads) {
    TempDir dir;
    writeProduction(dir, fadeWithMusic());
    PlayerRun run = runToEnd(dir.path(), {"x.txt"});
    ASSERT_EQ(0, run.code);

    ExpectedLog log;
    expectStartup(log);
    log.line("[Shutting Down]")
        .lines(loaderMessageTwice("DemoScriptParser : 'resources/scripts/x.txt' not found!"))
        .lines(report(NO_DATA, NO_DATA, dataPools({}, TEMPLATES), NO_DATA));
    expectDisposal(log, {}, TEMPLATES, {}, 0, false, false);
    EXPECT_TRUE(log.matches(run.lines));
    EXPECT_NE(std::string::npos,
              run.errors.find("DemoScriptParser : 'resources/scripts/x.txt' not found!\n"))
        << run.errors;
}

TEST(PlayerLoading, BadScriptHeaderIsReportedWithTheHeaderFound) {
    TempDir dir;
    ProductionScript script = fadeWithMusic();
    script.header = "{KVLDS0}";
    writeProduction(dir, script);
    PlayerRun run = runToEnd(dir.path());
    ASSERT_EQ(0, run.code);

    ExpectedLog log;
    expectStartup(log);
    log.line("[Shutting Down]")
        .lines(loaderMessageTwice(
            "Error while parsing demoscript!\nInvalid Script Header\nHeader : '{KVLDS0}'\n"))
        .lines(report(NO_DATA, NO_DATA, dataPools({}, TEMPLATES), NO_DATA));
    expectDisposal(log, {}, TEMPLATES, {}, 0, false, false);
    EXPECT_TRUE(log.matches(run.lines));
}

TEST(PlayerLoading, MissingDefinitionFileStopsTheLoadRightAfterTheTemplateList) {
    TempDir dir;
    writeProduction(dir, fadeWithMusic());
    std::filesystem::remove(dir.file("resources/definitions/sound.def"));
    PlayerRun run = runToEnd(dir.path());
    ASSERT_EQ(0, run.code);

    ExpectedLog log;
    expectStartup(log);
    expectDefinitions(log);
    log.line("[Shutting Down]")
        .lines(loaderMessageTwice(
            "EffectDefinitionParser : 'resources/definitions/sound.def' not found!"))
        .lines(report(NO_DATA, NO_DATA, dataPools({}, TEMPLATES), NO_DATA));
    expectDisposal(log, {}, TEMPLATES, {}, 0, false, false);
    EXPECT_TRUE(log.matches(run.lines));
}

TEST(PlayerLoading, TimelineErrorShowsOnlyAnEmptyLineInTheReportAndNoTimeline) {
    TempDir dir;
    ProductionScript script = fadeWithMusic();
    script.timeline = "fade.start(00:00:000, 10);\nfaed.start(00:00:500);";
    writeProduction(dir, script);
    PlayerRun run = runToEnd(dir.path());
    ASSERT_EQ(0, run.code);

    ExpectedLog log;
    expectStartup(log);
    expectDefinitions(log);
    expectScreen(log);
    expectNoBinaryData(log);
    expectMusic(log);
    log.line("[Create effect objects]")
        .line("DisplayTexture")
        .line("FadeEffect.init()")
        .line("[Parsing timeline]")
        // The parser lists and frees the events it had placed.
        .line("[Disposing Timeline Events]")
        .line("[Disposing Timeline Checkpoints]")
        .line("[Shutting Down]")
        .line("")
        .lines(
            report(systemParameters("kvltheme.ogg", "1", {"start = 00:00:000", "stop = 00:01:500"}),
                   FADE_PARAMETERS, dataPools({"fade"}, TEMPLATES), NO_DATA));
    expectDisposal(log, {"fade"}, TEMPLATES, {}, 0, false, true);
    EXPECT_TRUE(log.matches(run.lines));
    // The parser's words go to the error stream only.
    EXPECT_NE(std::string::npos, run.errors.find("Error Pasing Timeline!\nScript object 'faed' "
                                                 "not found\nProbable Cause : Spelling error?\n"))
        << run.errors;
    EXPECT_EQ(-1, findLine(run.lines, "Error Pasing Timeline!"));
}

// ---------------------------------------------------------------- failures of the resources

TEST(PlayerLoading, MissingMusicFileStopsTheLoadWithTheFileName) {
    TempDir dir;
    ProductionScript script = fadeWithMusic();
    script.sound = "file = missing.ogg; play = 1;";
    writeProduction(dir, script);
    PlayerRun run = runToEnd(dir.path());
    ASSERT_EQ(0, run.code);

    ExpectedLog log;
    expectStartup(log);
    expectDefinitions(log);
    expectScreen(log);
    expectNoBinaryData(log);
    log.line("Play : resources/music/missing.ogg")
        .line("KVLDemosys::soundInit()")
        .line("[Shutting Down]")
        .lines(loaderMessageTwice("Failed to load sound!\nFile : 'resources/music/missing.ogg'"))
        .lines(
            report(systemParameters("missing.ogg", "1", {"start = 00:00:000", "stop = 00:01:500"}),
                   FADE_PARAMETERS, dataPools({}, TEMPLATES), NO_DATA));
    expectDisposal(log, {}, TEMPLATES, {}, 0, false, true);
    EXPECT_TRUE(log.matches(run.lines));
}

TEST(PlayerLoading, FullscreenTwoFailsWithModeNoneFollowedBySdlsError) {
    TempDir dir;
    ProductionScript script = fadeWithMusic();
    script.screen = "width = 320; height = 240; bpp = 32; fullscreen = 2; near = 1.0; far = 100.0;";
    writeProduction(dir, script);
    PlayerRun run = runToEnd(dir.path());
    ASSERT_EQ(0, run.code);

    // SDL's own words stand on the line after "Failed to set screenmode!".
    int screenmode = findLine(run.lines, "Failed to set screenmode!");
    ASSERT_GE(screenmode, 0) << allLines(run.lines);
    ASSERT_LT(screenmode + 1, static_cast<int>(run.lines.size()));
    std::string sdlError = run.lines[screenmode + 1];

    ExpectedLog log;
    expectStartup(log);
    expectDefinitions(log);
    log.line("Open screen : 320x240,32")
        .line("[Shutting Down]")
        .lines(loaderMessageTwice("Failed to open screen : 320x240 bpp=32 fullscreen=none\n"
                                  "Failed to set screenmode!\n" +
                                  sdlError))
        .lines(report(group("paths", {"definition = resources/definitions/",
                                      "misc = resources/misc/", "sound = resources/music/"}) +
                          group("screen", {"bpp = 32", "far = 100.0", "fullscreen = 2",
                                           "height = 240", "near = 1.0", "width = 320"}) +
                          group("sound", {"file = kvltheme.ogg", "play = 1"}) +
                          group("system", {"start = 00:00:000", "stop = 00:01:500"}),
                      FADE_PARAMETERS, dataPools({}, TEMPLATES), NO_DATA));
    expectDisposal(log, {}, TEMPLATES, {}, 0, false, false);
    EXPECT_TRUE(log.matches(run.lines));
}

TEST(PlayerLoading, MissingBinaryFileStopsTheLoadWithTheFileName) {
    TempDir dir;
    ProductionScript script = fadeWithMusic();
    script.blocks = "binary { blob = data.bin; }";
    writeProduction(dir, script);
    PlayerRun run = runToEnd(dir.path());
    ASSERT_EQ(0, run.code);

    ExpectedLog log;
    expectStartup(log);
    expectDefinitions(log);
    expectScreen(log);
    log.skipTo("[Loading Binary Data]")
        .line("Loading binary : 'resources/misc/data.bin'")
        .line("[Shutting Down]")
        .lines(loaderMessageTwice("Failed to binary data!\nFile : 'resources/misc/data.bin'"))
        .lines(report(
            group("binary", {"blob = data.bin"}) +
                systemParameters("kvltheme.ogg", "1", {"start = 00:00:000", "stop = 00:01:500"}),
            FADE_PARAMETERS, dataPools({}, TEMPLATES), NO_DATA));
    expectDisposal(log, {}, TEMPLATES, {}, 0, false, true);
    EXPECT_TRUE(log.matches(run.lines));
}

TEST(PlayerLoading, LoadedBinaryStandsInThePoolOfTheReport) {
    TempDir dir;
    ProductionScript script = fadeWithMusic();
    script.system = "start = 00:00:000; stop = 00:00:300;";
    script.sound = "file = kvltheme.ogg; play = 0;";
    script.blocks = "binary { blob = data.bin; }";
    script.timeline = "fade.start(00:00:000, 10);";
    writeProduction(dir, script);
    dir.write("resources/misc/data.bin", std::string("\x01\x02\x00\xfe\xff", 5));
    PlayerRun run = runToEnd(dir.path());
    ASSERT_EQ(0, run.code) << allLines(run.lines);

    ExpectedLog log;
    expectStartup(log);
    expectDefinitions(log);
    expectScreen(log);
    log.skipTo("[Loading Binary Data]")
        .line("Loading binary : 'resources/misc/data.bin'")
        .skipTo("[Setting up sound]");
    expectEffectsAndTimeline(log, "(0000000000)-[00:00:000]");
    log.startingWith("Duration : ")
        .startingWith("FPS = ")
        .line("[Shutting Down]")
        .lines(report(
            group("binary", {"blob = data.bin"}) +
                systemParameters("kvltheme.ogg", "0", {"start = 00:00:000", "stop = 00:00:300"}),
            FADE_PARAMETERS, dataPools({"fade"}, TEMPLATES, {}, {"    blob = Binary { size = 5 }"}),
            {"(0000000000)-[00:00:000] = EventStartEffect {", "parameters {", "    object = fade;",
             "    p1 = 00:00:000;", "    p2 = 10;", "}", "}", ""}));
    expectDisposal(log, {"fade"}, TEMPLATES, {"blob"}, 0, true, true);
    EXPECT_TRUE(log.matches(run.lines));
}

// ---------------------------------------------------------------- the start position

TEST(PlayerLoading, StartPositionWithMusicRunsTheDemoAndReportsFailedToPlaySoundTwice) {
    TempDir dir;
    ProductionScript script = fadeWithMusic();
    script.system = "start = 00:01:000; stop = 00:01:600;";
    writeProduction(dir, script);
    PlayerRun run = runToEnd(dir.path());
    ASSERT_EQ(0, run.code);

    ExpectedLog log;
    expectStartup(log);
    expectDefinitions(log);
    expectScreen(log);
    expectNoBinaryData(log);
    expectMusic(log);
    expectEffectsAndTimeline(log, "(0000001000)-[00:01:000]");
    // The replay up to the start position fires the fade before the first frame.
    log.line("Timeline::moveTo(1000)")
        .line("fade from [0,0,0,0] -> [1,1,1,0.5]")
        .startingWith("Duration : ")
        .startingWith("FPS = ")
        .line("[Shutting Down]")
        .lines(loaderMessageTwice("Failed to play sound"))
        .lines(
            report(systemParameters("kvltheme.ogg", "1", {"start = 00:01:000", "stop = 00:01:600"}),
                   FADE_PARAMETERS, dataPools({"fade"}, TEMPLATES), FADE_TIMELINE));
    expectDisposal(log, {"fade"}, TEMPLATES, {}, 0, true, true);
    EXPECT_TRUE(log.matches(run.lines));

    // The clock started at the start position and the run went on to the stop time.
    expectDurationBetween(run, 1600, 2100);
}

TEST(PlayerLoading, StartPositionWithoutMusicIsIgnoredAndTheDemoRunsFromZero) {
    TempDir dir;
    ProductionScript script = fadeWithMusic();
    script.system = "start = 00:01:000; stop = 00:00:600;";
    script.sound = "file = kvltheme.ogg; play = 0;";
    writeProduction(dir, script);
    PlayerRun run = runToEnd(dir.path());
    ASSERT_EQ(0, run.code);

    ExpectedLog log;
    expectStartup(log);
    expectDefinitions(log);
    expectScreen(log);
    expectNoBinaryData(log);
    expectEffectsAndTimeline(log, "(0000001000)-[00:01:000]");
    // The fade at 100 ms fires in a frame, not in a replay.
    log.line("fade from [0,0,0,0] -> [1,1,1,0.5]")
        .startingWith("Duration : ")
        .startingWith("FPS = ")
        .line("[Shutting Down]")
        .lines(
            report(systemParameters("kvltheme.ogg", "0", {"start = 00:01:000", "stop = 00:00:600"}),
                   FADE_PARAMETERS, dataPools({"fade"}, TEMPLATES), FADE_TIMELINE));
    expectDisposal(log, {"fade"}, TEMPLATES, {}, 0, true, true);
    EXPECT_TRUE(log.matches(run.lines));
    EXPECT_EQ(-1, findLine(run.lines, "Timeline::moveTo("));

    expectDurationBetween(run, 600, 1000);
}

// ---------------------------------------------------------------- the stop time

TEST(PlayerLoading, MalformedStopTimeEndsTheRunAtTheFirstFrame) {
    TempDir dir;
    ProductionScript script = fadeWithMusic();
    script.system = "start = 00:00:000; stop = soon;";
    script.sound = "file = kvltheme.ogg; play = 0;";
    script.timeline = "fade.start(00:00:000, 10);";
    writeProduction(dir, script);
    PlayerRun run = runToEnd(dir.path());
    ASSERT_EQ(0, run.code);

    int demoInit = findLine(run.lines, "[Demo Init]");
    ASSERT_GE(demoInit, 0) << allLines(run.lines);
    ASSERT_LT(demoInit + 3, static_cast<int>(run.lines.size()));
    EXPECT_TRUE(startsWith(run.lines[demoInit + 1], "Duration : ")) << run.lines[demoInit + 1];
    EXPECT_TRUE(startsWith(run.lines[demoInit + 2], "FPS = ")) << run.lines[demoInit + 2];
    EXPECT_EQ("[Shutting Down]", run.lines[demoInit + 3]);
    long ticks = ticksOf(run.lines[demoInit + 1]);
    EXPECT_GT(ticks, 0);
    EXPECT_LT(ticks, 500) << run.lines[demoInit + 1];
}

TEST(PlayerLoading, WithoutAStopTimeTheRunDoesNotEndByItself) {
    TempDir dir;
    ProductionScript script = fadeWithMusic();
    script.system = "start = 00:00:000;";
    script.sound = "file = kvltheme.ogg; play = 0;";
    script.timeline = "fade.start(00:00:000, 10);";
    writeProduction(dir, script);
    PlayerProcess player(dir.path(), {});
    ASSERT_TRUE(player.waitForWindow(60)) << player.output() << player.errorOutput();
    std::this_thread::sleep_for(std::chrono::milliseconds(1500));
    EXPECT_EQ(-1, findLine(player.outputLines(), "Duration : "));
    ASSERT_TRUE(player.pressKey("Escape"));
    ASSERT_EQ(0, player.waitForExit(60)) << player.output();

    std::vector<std::string> lines = player.outputLines();
    int duration = findLine(lines, "Duration : ");
    ASSERT_GE(duration, 0) << player.output();
    // The clock starts after loading, a little after the window appeared.
    EXPECT_GE(ticksOf(lines[duration]), 1000) << lines[duration];
    EXPECT_EQ("[Application End]", lines.back());
}
