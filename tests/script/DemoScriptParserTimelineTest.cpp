#include "script/DemoScriptParserTest.h"

#include "runtime/KVLTime.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

using Entries = std::map<std::string, std::string>;

namespace {

// The one parameter that the scripts of these tests set.
const std::string SPEED_ONLY = "parameters { speed[type=float][default=1.0]; }";

std::string invalidDeclaration(const std::string& declaration) {
    return "Error Pasing Timeline!\nDeclaration '" + declaration +
           "' invalid\nProbable Cause : Spelling error?";
}

std::string invalidCheckpoint(const std::string& word) {
    return "Error while parsing Timeline!\nobject : Checkpoint\nparameter : " + word +
           "\nParameter is not a valid (mm:ss:mmm)\n";
}

std::string objectNotFound(const std::string& object) {
    return "Error Pasing Timeline!\nScript object '" + object +
           "' not found\nProbable Cause : Spelling error?";
}

std::string errorNear(const std::string& object, const std::string& call) {
    return "Timeline : Error near ''" + object + "." + call +
           "\nPossible reason : Missing parameter(s)";
}

std::string noSuchMethod(const std::string& method) {
    return "Timeline : method '" + method + "' dont exist!";
}

std::string opening(const std::string& object, const std::string& method) {
    return "Error while parsing Timeline!\nobject : " + object + "\nmethod : " + method + "\n";
}

std::string argumentLine(const std::string& argument, int position) {
    return "parameter : " + argument + " (" + std::to_string(position) + ")\n";
}

// Time and class of every event in the timeline's order, read from its text.
std::vector<std::pair<std::string, std::string>> listing(const Timeline* timeline) {
    std::vector<std::pair<std::string, std::string>> result;
    std::istringstream lines(timeline->toString());
    std::string line;
    while (std::getline(lines, line)) {
        size_t separator = line.find(" = ");
        if (line.empty() || line[0] != '(' || separator == std::string::npos) {
            continue;
        }
        std::string rest = line.substr(separator + 3);
        result.emplace_back(line.substr(0, separator), rest.substr(0, rest.find(' ')));
    }
    return result;
}

std::string logTime(const std::string& scriptTime) {
    return KVLTime(scriptTime).toString();
}

} // namespace

class DemoScriptParserTimelineTest : public DemoScriptParserTest {
protected:
    // The event the parser made n-th, in the order of the text.
    Event* made(size_t n) const {
        EXPECT_LT(n, journal.size());
        return (n < journal.size()) ? journal[n] : nullptr;
    }

    Entries argumentsOf(size_t n) const {
        Event* event = made(n);
        return (event != nullptr) ? entries(event->getParameters()) : Entries{};
    }

    unsigned int ticksOf(size_t n) const {
        Event* event = made(n);
        if (event == nullptr || event->getTime() == nullptr) {
            ADD_FAILURE() << "event " << n << " has no time";
            return 0;
        }
        return event->getTime()->getTicks();
    }

    void expectRefused(const std::string& message, bool printed) {
        EXPECT_EQ(nullptr, timeline);
        EXPECT_FALSE(parser->isValid());
        EXPECT_EQ(message, parser->getErrorMessage());
        EXPECT_EQ(printed ? message + "\n" : "", err);
    }

    // The parse of the script before the timeline, for the fatal cases:
    // those must not run under an output capture.
    void prepareScript(const std::string& text) {
        ASSERT_TRUE(parseText(text)) << parser->getErrorMessage();
        createEffectObjects();
    }
};

// ---------------------------------------------------------------------------
// The worked example

TEST_F(DemoScriptParserTimelineTest, ExampleTimelineGivesTwoCheckpointsAndSixEvents) {
    std::string text = exampleScript();
    ASSERT_NE(nullptr, parseTimelineOf(text)) << parser->getErrorMessage();
    EXPECT_TRUE(parser->isValid());
    EXPECT_EQ("timeline.addCheckpoint(00:10:000)\n"
              "timeline.addCheckpoint(01:00:000)\n"
              "duplicate checkpoint ignored : 00:10:000)\n",
              out);
    EXPECT_EQ("", err);

    ASSERT_EQ(2, timeline->countCheckpoints());
    testing::internal::CaptureStdout();
    unsigned int first = timeline->getCheckpoint(0)->getTicks();
    unsigned int second = timeline->getCheckpoint(1)->getTicks();
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(10000u, first);
    EXPECT_EQ(60000u, second);

    // Made in the order of the text, filed by time.
    ASSERT_EQ(6u, journal.size());
    std::vector<std::pair<std::string, std::string>> expectedListing = {
        {logTime("00:00:000"), "EventStartEffect"},  {logTime("00:02:500"), "EventModifyEffect"},
        {logTime("00:03:000"), "EventModifyEffect"}, {logTime("00:04:000"), "EventModifyEffect"},
        {logTime("00:05:000"), "EventModifyEffect"}, {logTime("00:20:000"), "EventStopEffect"}};
    EXPECT_EQ(expectedListing, listing(timeline));

    EXPECT_NE(nullptr, dynamic_cast<EventStartEffect*>(made(0)));
    EXPECT_EQ(0u, ticksOf(0));
    EXPECT_EQ((Entries{{"p1", "00:00:000"}, {"object", "intro"}}), argumentsOf(0));

    EXPECT_NE(nullptr, dynamic_cast<EventModifyEffect*>(made(1)));
    EXPECT_EQ(4000u, ticksOf(1));
    EXPECT_EQ((Entries{{"p1", "00:04:000"},
                       {"p2", "00:04:000"},
                       {"p3", "00:06:000"},
                       {"p4", "0.5"},
                       {"object", "intro"},
                       {"method", "fade"}}),
              argumentsOf(1));

    EXPECT_NE(nullptr, dynamic_cast<EventModifyEffect*>(made(2)));
    EXPECT_EQ(2500u, ticksOf(2));
    EXPECT_EQ(
        (Entries{{"p1", "00:02:500"}, {"p2", "4.0"}, {"object", "intro"}, {"method", "setSpeed"}}),
        argumentsOf(2));

    EXPECT_NE(nullptr, dynamic_cast<EventModifyEffect*>(made(3)));
    EXPECT_EQ(3000u, ticksOf(3));
    EXPECT_EQ(
        (Entries{
            {"p1", "00:03:000"}, {"p2", "logo"}, {"object", "intro"}, {"method", "setTexture"}}),
        argumentsOf(3));

    EXPECT_NE(nullptr, dynamic_cast<EventModifyEffect*>(made(4)));
    EXPECT_EQ(5000u, ticksOf(4));
    EXPECT_EQ((Entries{{"p1", "00:05:000"},
                       {"p2", "12"},
                       {"p3", "true"},
                       {"object", "intro"},
                       {"method", "burst"}}),
              argumentsOf(4));

    EXPECT_NE(nullptr, dynamic_cast<EventStopEffect*>(made(5)));
    EXPECT_EQ(20000u, ticksOf(5));
    EXPECT_EQ((Entries{{"p1", "00:20:000"}, {"object", "intro"}}), argumentsOf(5));

    // Each modify event found its effect object at once.
    EXPECT_EQ("setSpeed", dynamic_cast<EventModifyEffect*>(made(2))->getMethod());
}

TEST_F(DemoScriptParserTimelineTest, ScriptWithoutTimelineGivesAnEmptyTimeline) {
    ASSERT_NE(nullptr, parseTimelineOf(script("intro * ExampleEffect { speed = 2.5; }\n")));
    EXPECT_TRUE(parser->isValid());
    EXPECT_EQ("", timeline->toString());
    EXPECT_EQ(0, timeline->countCheckpoints());
    EXPECT_EQ("", out);
}

TEST_F(DemoScriptParserTimelineTest, EventsOfEqualTimeKeepTheOrderOfTheText) {
    ASSERT_NE(nullptr, parseTimelineBody("intro.stop(00:01:000); intro.start(00:01:000);\n"
                                         "intro.setSpeed(00:01:000, 1.0); intro.start(00:00:500)"));
    std::vector<std::pair<std::string, std::string>> expected = {
        {logTime("00:00:500"), "EventStartEffect"},
        {logTime("00:01:000"), "EventStopEffect"},
        {logTime("00:01:000"), "EventStartEffect"},
        {logTime("00:01:000"), "EventModifyEffect"}};
    EXPECT_EQ(expected, listing(timeline));
}

TEST_F(DemoScriptParserTimelineTest, StatementsMayRunOverSeveralLines) {
    ASSERT_NE(nullptr,
              parseTimelineBody("intro.setSpeed(00:02:500,\n   4.0\n);\nintro\n.stop(00:03:000)"));
    EXPECT_EQ(
        (Entries{{"p1", "00:02:500"}, {"p2", "4.0"}, {"object", "intro"}, {"method", "setSpeed"}}),
        argumentsOf(0));
    EXPECT_EQ((Entries{{"p1", "00:03:000"}, {"object", "intro"}}), argumentsOf(1));
}

TEST_F(DemoScriptParserTimelineTest, LabelInFrontOfAStatementIsThrownAway) {
    ASSERT_NE(nullptr, parseTimelineBody("opening < Checkpoint 00:01:000;\n"
                                         "the start < intro.start(00:00:000)"));
    EXPECT_EQ("timeline.addCheckpoint(00:01:000)\n", out);
    EXPECT_EQ((Entries{{"p1", "00:00:000"}, {"object", "intro"}}), argumentsOf(0));
}

TEST_F(DemoScriptParserTimelineTest, WithoutDefinitionsOnlyPoolEventsCanBeCalled) {
    ASSERT_TRUE(parseText(
        scriptWithTimeline("intro.start(00:00:000); intro.setSpeed(00:01:000, 1.0);"), false));
    createEffectObjects();
    testing::internal::CaptureStderr();
    timeline = parser->parseTimeline();
    err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(1u, journal.size());
    expectRefused(noSuchMethod("setSpeed"), false);
}

// ---------------------------------------------------------------------------
// Declarations and checkpoints

TEST_F(DemoScriptParserTimelineTest, CheckpointAloneIsAnInvalidDeclaration) {
    parseTimelineBody("Checkpoint;");
    expectRefused(invalidDeclaration("Checkpoint"), true);
}

TEST_F(DemoScriptParserTimelineTest, OtherPairOfWordsIsSkippedWithoutAMessage) {
    ASSERT_NE(nullptr, parseTimelineBody("Foo bar; Checkpoint 00:01:000; Start 00:02:000 now;"));
    EXPECT_EQ("timeline.addCheckpoint(00:01:000)\n", out);
    EXPECT_EQ("", err);
    EXPECT_EQ(1, timeline->countCheckpoints());
}

TEST_F(DemoScriptParserTimelineTest, SingleWordIsAnInvalidDeclaration) {
    parseTimelineBody("foo;");
    expectRefused(invalidDeclaration("foo"), true);
}

TEST_F(DemoScriptParserTimelineTest, CheckpointWordsAreSeparatedByBlanksOnly) {
    parseTimelineBody("Checkpoint\t00:01:000;");
    expectRefused(invalidDeclaration("Checkpoint\t00:01:000"), true);
    nextRun();
    parseTimelineBody("Checkpoint\n00:01:000;");
    expectRefused(invalidDeclaration("Checkpoint\r00:01:000"), true);
}

TEST_F(DemoScriptParserTimelineTest, CheckpointWithTwoFieldsIsInvalid) {
    parseTimelineBody("Checkpoint 1:2;");
    expectRefused(invalidCheckpoint("1:2"), true);
}

TEST_F(DemoScriptParserTimelineTest, CheckpointIsAcceptedAndPrintedAsWritten) {
    ASSERT_NE(nullptr, parseTimelineBody("Checkpoint 1:2:3;"));
    EXPECT_EQ("timeline.addCheckpoint(1:2:3)\n", out);
    ASSERT_EQ(1, timeline->countCheckpoints());
    testing::internal::CaptureStdout();
    unsigned int ticks = timeline->getCheckpoint(0)->getTicks();
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(62003u, ticks);
}

TEST_F(DemoScriptParserTimelineTest, WordsBehindTheCheckpointTimeAreIgnored) {
    ASSERT_NE(nullptr, parseTimelineBody("Checkpoint 00:10:000 extra;"));
    EXPECT_EQ("timeline.addCheckpoint(00:10:000)\n", out);
    EXPECT_EQ(1, timeline->countCheckpoints());
}

TEST_F(DemoScriptParserTimelineTest, CheckpointOfEqualTicksWrittenDifferentlyIsADuplicate) {
    ASSERT_NE(nullptr, parseTimelineBody("Checkpoint 00:10:000; Checkpoint 0:10:0;"));
    EXPECT_EQ("timeline.addCheckpoint(00:10:000)\nduplicate checkpoint ignored : 0:10:0)\n", out);
    EXPECT_EQ(1, timeline->countCheckpoints());
}

TEST_F(DemoScriptParserTimelineTest, SecondLabelMarkerLeavesOnlyTheFirstNote) {
    parseTimelineBody("note < note2 < intro.start(00:00:000);");
    expectRefused(invalidDeclaration("note "), true);
}

// ---------------------------------------------------------------------------
// Objects and pool events

TEST_F(DemoScriptParserTimelineTest, UnknownObjectIsNotFound) {
    parseTimelineBody("intro.start(00:00:000); nobody.start(00:00:000);");
    expectRefused(objectNotFound("nobody"), true);
}

TEST_F(DemoScriptParserTimelineTest, ObjectOfAnEmptyEffectBlockIsNotFound) {
    parseTimelineOf(script("ghost * ExampleEffect { }\ntimeline { ghost.start(00:00:000); }\n"));
    expectRefused(objectNotFound("ghost"), true);
}

TEST_F(DemoScriptParserTimelineTest, EventCallWithoutBracketsFailsNearTheCall) {
    parseTimelineBody("intro.start;");
    expectRefused(errorNear("intro", "start"), false);
}

TEST_F(DemoScriptParserTimelineTest, EventCallWithEmptyBracketsFailsNearTheCall) {
    parseTimelineBody("intro.start();");
    expectRefused(errorNear("intro", "start()"), false);
}

TEST_F(DemoScriptParserTimelineTest, StartWithAGarbageTimeFiresAtZero) {
    ASSERT_NE(nullptr, parseTimelineBody("intro.stop(00:20:000); intro.start(garbage);"));
    EXPECT_EQ(0u, ticksOf(1));
    EXPECT_EQ((Entries{{"p1", "garbage"}, {"object", "intro"}}), argumentsOf(1));
    std::vector<std::pair<std::string, std::string>> expected = {
        {logTime("00:00:000"), "EventStartEffect"}, {logTime("00:20:000"), "EventStopEffect"}};
    EXPECT_EQ(expected, listing(timeline));
}

TEST_F(DemoScriptParserTimelineTest, StopWithAnExtraArgumentKeepsItAsSecondArgument) {
    ASSERT_NE(nullptr, parseTimelineBody("intro.stop(00:20:000, extra);"));
    EXPECT_EQ((Entries{{"p1", "00:20:000"}, {"p2", "extra"}, {"object", "intro"}}), argumentsOf(0));
    EXPECT_EQ(20000u, ticksOf(0));
}

TEST_F(DemoScriptParserTimelineTest, StartArgumentsBehindTheTimeAreNotChecked) {
    ASSERT_NE(nullptr, parseTimelineBody("intro.start(00:01:000, 20, mainBuffer, more);"));
    EXPECT_EQ((Entries{{"p1", "00:01:000"},
                       {"p2", "20"},
                       {"p3", "mainBuffer"},
                       {"p4", "more"},
                       {"object", "intro"}}),
              argumentsOf(0));
}

TEST_F(DemoScriptParserTimelineTest, ModifyCalledAsAPoolEventIsFatal) {
    prepareScript(scriptWithTimeline("intro.modify(00:01:000);"));
    EXPECT_DEATH([this]() noexcept { timeline = parser->parseTimeline(); }(),
                 "terminate called after throwing");
}

TEST_F(DemoScriptParserTimelineTest, MethodNamedLikeAPoolEventIsNeverReached) {
    std::string definition = EXAMPLE_DEFINITION;
    writeDefinition("ExampleEffect", definition.replace(definition.find("burst"), 5, "start"));
    ASSERT_NE(nullptr, parseTimelineBody("intro.start(00:01:000, many, maybe);"));
    EXPECT_NE(nullptr, dynamic_cast<EventStartEffect*>(made(0)));
    EXPECT_EQ((Entries{{"p1", "00:01:000"}, {"p2", "many"}, {"p3", "maybe"}, {"object", "intro"}}),
              argumentsOf(0));
}

// ---------------------------------------------------------------------------
// Method calls

TEST_F(DemoScriptParserTimelineTest, UndeclaredMethodDoesNotExist) {
    parseTimelineBody("intro.nothing(00:01:000);");
    expectRefused(noSuchMethod("nothing"), false);
}

TEST_F(DemoScriptParserTimelineTest, TooFewArgumentsAreTheWrongNumber) {
    parseTimelineBody("intro.setSpeed(00:02:500);");
    expectRefused(opening("intro", "setSpeed") + "Cause : Wrong number of arguments (1)\n", true);
}

TEST_F(DemoScriptParserTimelineTest, TextBehindTheClosingBracketIsOneMoreArgument) {
    parseTimelineBody("intro.setSpeed(00:02:500, 4.0) now;");
    expectRefused(opening("intro", "setSpeed") + "Cause : Wrong number of arguments (3)\n", true);
}

TEST_F(DemoScriptParserTimelineTest, IntegerGivenForAFloatFails) {
    parseTimelineBody("intro.setSpeed(00:02:500, 4);");
    expectRefused(opening("intro", "setSpeed") + argumentLine("4", 1) +
                      "Parameter is not a float as defined in ExampleEffect.def\n",
                  true);
}

TEST_F(DemoScriptParserTimelineTest, NonBooleanFailsAtPositionTwo) {
    parseTimelineBody("intro.burst(00:05:000, 12, yes);");
    expectRefused(opening("intro", "burst") + argumentLine("yes", 2) +
                      "Parameter is not a boolean as defined in ExampleEffect.def\n",
                  true);
}

TEST_F(DemoScriptParserTimelineTest, NonIntegerFails) {
    parseTimelineBody("intro.burst(00:05:000, 1.5, true);");
    expectRefused(opening("intro", "burst") + argumentLine("1.5", 1) +
                      "Parameter is not an integer as defined in ExampleEffect.def\n",
                  true);
}

TEST_F(DemoScriptParserTimelineTest, InvalidEventTimeFails) {
    parseTimelineBody("intro.setSpeed(soon, 4.0);");
    expectRefused(opening("intro", "setSpeed") + argumentLine("soon", 0) +
                      "Parameter is not a valid (mm:ss:mmm) timestamp as defined in "
                      "ExampleEffect.def\n",
                  true);
}

TEST_F(DemoScriptParserTimelineTest, InvalidTimeArgumentFails) {
    parseTimelineBody("intro.fade(00:04:000, 4:00, 00:06:000, 0.5);");
    expectRefused(opening("intro", "fade") + argumentLine("4:00", 1) +
                      "Parameter is not a valid (mm:ss:mmm) timestamp as defined in "
                      "ExampleEffect.def\n",
                  true);
}

TEST_F(DemoScriptParserTimelineTest, CrossReferenceToAMissingEntryFailsTheLookup) {
    parseTimelineBody("intro.setTexture(00:03:000, graphics[none]);");
    expectRefused(opening("intro", "setTexture") + argumentLine("graphics[none]", 1) +
                      "Reverse lookup failed",
                  true);
}

TEST_F(DemoScriptParserTimelineTest, PlainStringArgumentIsKeptUnchanged) {
    ASSERT_NE(nullptr, parseTimelineBody("intro.setTexture(00:03:000, plain);"));
    EXPECT_EQ(
        (Entries{
            {"p1", "00:03:000"}, {"p2", "plain"}, {"object", "intro"}, {"method", "setTexture"}}),
        argumentsOf(0));
}

TEST_F(DemoScriptParserTimelineTest, FloatArgumentSurvivesTheSplitAtDots) {
    ASSERT_NE(nullptr, parseTimelineBody("intro.setSpeed(00:02:500, 0.25);"));
    EXPECT_EQ("0.25", argumentsOf(0)["p2"]);
}

TEST_F(DemoScriptParserTimelineTest, EmptyPieceBetweenTwoDotsDisappears) {
    ASSERT_NE(nullptr, parseTimelineBody("intro.setSpeed(00:02:500, 1..5);"));
    EXPECT_EQ("1.5", argumentsOf(0)["p2"]);
}

TEST_F(DemoScriptParserTimelineTest, BracketsAndCommasAreOneAndTheSameSeparator) {
    ASSERT_NE(nullptr, parseTimelineBody("intro.burst(00:05:000)(12)(true);\n"
                                         "intro.burst,00:05:000,12,true;\n"
                                         "intro.burst(00:05:000, ,12, true);"));
    Entries expected = {{"p1", "00:05:000"},
                        {"p2", "12"},
                        {"p3", "true"},
                        {"object", "intro"},
                        {"method", "burst"}};
    EXPECT_EQ(expected, argumentsOf(0));
    EXPECT_EQ(expected, argumentsOf(1));
    EXPECT_EQ(expected, argumentsOf(2));
}

TEST_F(DemoScriptParserTimelineTest, ArgumentsPastNineAreNumberedInPlainDecimal) {
    writeDefinition("ExampleEffect",
                    "methods { many(<event>, a, b, c, d, e, f, g, h, i, j); }\n" + SPEED_ONLY);
    ASSERT_NE(nullptr, parseTimelineBody("intro.many(00:01:000, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11);"));
    Entries arguments = argumentsOf(0);
    EXPECT_EQ(13u, arguments.size());
    EXPECT_EQ("10", arguments["p10"]);
    EXPECT_EQ("11", arguments["p11"]);
}

TEST_F(DemoScriptParserTimelineTest, UnknownTypeWordChecksNothing) {
    writeDefinition("ExampleEffect", "methods { paint(<event>, <colour>); }\n" + SPEED_ONLY);
    ASSERT_NE(nullptr, parseTimelineBody("intro.paint(00:01:000, graphics[none]);"));
    EXPECT_EQ("graphics[none]", argumentsOf(0)["p2"]);
}

TEST_F(DemoScriptParserTimelineTest, LaterEventArgumentDecidesTheTime) {
    writeDefinition("ExampleEffect", "methods { twice(<event>, <event>); }\n" + SPEED_ONLY);
    ASSERT_NE(nullptr, parseTimelineBody("intro.twice(00:01:000, 00:02:000);"));
    EXPECT_EQ(2000u, ticksOf(0));
    std::vector<std::pair<std::string, std::string>> expected = {
        {logTime("00:02:000"), "EventModifyEffect"}};
    EXPECT_EQ(expected, listing(timeline));
}

TEST_F(DemoScriptParserTimelineTest, MethodWithoutAnEventArgumentIsFatal) {
    writeDefinition("ExampleEffect", "methods { still(<float>); }\n" + SPEED_ONLY);
    prepareScript(scriptWithTimeline("intro.still(1.0);"));
    EXPECT_DEATH([this]() noexcept { timeline = parser->parseTimeline(); }(),
                 "terminate called after throwing");
}

TEST_F(DemoScriptParserTimelineTest, FailureDeletesTheTimelineBuiltSoFar) {
    parseTimelineBody("Checkpoint 00:01:000; intro.start(00:00:000); intro.nothing(00:01:000);");
    expectRefused(noSuchMethod("nothing"), false);
    EXPECT_EQ("timeline.addCheckpoint(00:01:000)\n"
              "[Disposing Timeline Events]\n[Disposing Timeline Checkpoints]\n",
              out);
}
