#include "script/DemoScriptParserTest.h"

#include "script/EffectDefinition.h"
#include "script/ScriptDefaults.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <string>

using Entries = std::map<std::string, std::string>;

namespace {

const std::string SCRIPT_OPENING = "Error while parsing demoscript!\n";

std::string openingA(const std::string& block) {
    return SCRIPT_OPENING + "Block : '" + block + "'\n";
}

std::string openingB(const std::string& object) {
    return SCRIPT_OPENING + "Block : '" + object + "' (Effect Definition)\n";
}

std::string openingC(const std::string& object, const std::string& key) {
    return openingB(object) + "Parameter :  '" + key + "'\n";
}

std::string openingD(const std::string& object, const std::string& key, const std::string& value) {
    return openingC(object, key) + "Value :  '" + value + "'\n";
}

std::string mismatchingBrackets(const std::string& block) {
    return "Error parsing demoscript!\nBlock have mismatching brackets\nBlock : '" + block + "'\n";
}

std::string defaultsNotFound(const std::string& block) {
    return "Error parsing demoscript!\nDefaults for block '" + block +
           "' not found!\nPossible Cause :\n- There is no .def file for the block\n"
           "- Block name have a spelling error?\n"
           "- paths { } is not the first block in the demoscript?\n";
}

const std::string GRAPHICS_NOTICE = "ScriptDefaults::exists(graphics) - dont exist\n";

} // namespace

// ---------------------------------------------------------------------------
// The complete example script with the example definition file

TEST_F(DemoScriptParserTest, CompleteExampleScriptGivesEveryStoredValue) {
    std::string text = exampleScript("    Checkpoint 00:10:000;\n"
                                     "    intro.start(00:00:000);\n"
                                     "    intro.stop(00:20:000);\n");
    ASSERT_TRUE(parseText(text)) << parser->getErrorMessage();
    EXPECT_EQ("", parser->getErrorMessage());

    ASSERT_NE(nullptr, effectStore);
    EXPECT_EQ(1, effectStore->size());
    EXPECT_EQ((Entries{{"class", "ExampleEffect"},
                       {"count", "16"},
                       {"wrap", "false"},
                       {"mode", "add"},
                       {"speed", "2.5"},
                       {"texture", "logo"}}),
              effectGroup("intro"));

    ASSERT_NE(nullptr, systemStore);
    EXPECT_EQ(3, systemStore->size());
    EXPECT_EQ((Entries{{"definition", definitionDirectory()}, {"gfx", "resources/graphics/"}}),
              systemGroup("paths"));
    EXPECT_EQ((Entries{{"width", "800"}, {"height", "600"}, {"near", "0.1"}, {"far", "100.0"}}),
              systemGroup("screen"));
    EXPECT_EQ((Entries{{"logo", "logo.png, GL_TEXTURE_2D"}}), systemGroup("graphics"));

    EXPECT_EQ("[Parsing .def files]\npath = " + definitionDirectory() + "\n-> ExampleEffect\n",
              out);
    EXPECT_EQ(GRAPHICS_NOTICE, err);

    // The timeline block was set aside for the second step.
    createEffectObjects();
    testing::internal::CaptureStdout();
    timeline = parser->parseTimeline();
    std::string timelineOut = testing::internal::GetCapturedStdout();
    ASSERT_NE(nullptr, timeline);
    EXPECT_EQ("timeline.addCheckpoint(00:10:000)\n", timelineOut);
    EXPECT_EQ(1, timeline->countCheckpoints());
    EXPECT_EQ(2u, journal.size());
}

TEST_F(DemoScriptParserTest, DefinitionsAreLoadedForEveryTemplateAndTheThreeSystemBlocks) {
    ASSERT_TRUE(parseText(script("")));
    ScriptDefaults* defaults = parser->getScriptDefaults();
    ASSERT_NE(nullptr, defaults);
    EXPECT_EQ(4, defaults->size());
    EXPECT_TRUE(defaults->exists("ExampleEffect"));
    EXPECT_TRUE(defaults->exists("system"));
    EXPECT_TRUE(defaults->exists("screen"));
    EXPECT_TRUE(defaults->exists("sound"));
    EXPECT_TRUE(defaults->getEffectDefinition("ExampleEffect")->hasMethod("burst"));
}

TEST_F(DemoScriptParserTest, DefinitionsAreListedInThePoolsOrder) {
    templates->addEffect("AnotherEffect", new ExampleEffect());
    writeDefinition("AnotherEffect", "parameters { }");
    ASSERT_TRUE(parseText(script("")));
    EXPECT_EQ("[Parsing .def files]\npath = " + definitionDirectory() +
                  "\n-> AnotherEffect\n-> ExampleEffect\n",
              out);
    EXPECT_EQ(5, parser->getScriptDefaults()->size());
}

TEST_F(DemoScriptParserTest, DebugNamesEveryDefinitionFileAndTheDefaultsOfABlock) {
    ASSERT_TRUE(parseText(script("sound {\n file = music.ogg;\n}\n"), true, true));
    std::string directory = definitionDirectory();
    EXPECT_EQ("[Parsing .def files]\npath = " + directory + "\n-> ExampleEffect\n" +
                  "Loading definition : '" + directory + "ExampleEffect.def\n" +
                  "Loading definition : '" + directory + "system.def\n" + "Loading definition : '" +
                  directory + "screen.def\n" + "Loading definition : '" + directory +
                  "sound.def\n" + "block name : sound\nparameters {\n    file = none;\n}\n\n",
              out);
    EXPECT_EQ((Entries{{"file", "music.ogg"}}), systemGroup("sound"));
}

TEST_F(DemoScriptParserTest, WithoutDefaultsBlocksStartEmptyAndNothingIsChecked) {
    ASSERT_TRUE(parseText(script("screen { width = 800; }\n"
                                 "intro * ExampleEffect { speed = fast; colour = red; }\n"),
                          false));
    EXPECT_EQ(nullptr, parser->getScriptDefaults());
    EXPECT_EQ("", out);
    EXPECT_EQ("", err);
    EXPECT_EQ((Entries{{"width", "800"}}), systemGroup("screen"));
    EXPECT_EQ((Entries{{"class", "ExampleEffect"}, {"speed", "fast"}, {"colour", "red"}}),
              effectGroup("intro"));
}

TEST_F(DemoScriptParserTest, ParserLeavesBothStoresAliveWhenItGoes) {
    ASSERT_TRUE(parseText(script("screen { width = 800; }\n")));
    testing::internal::CaptureStdout();
    delete parser;
    parser = nullptr;
    testing::internal::GetCapturedStdout();
    // The fixture deletes the stores after this; they must still be whole.
    EXPECT_EQ("800", systemStore->getGroup("screen")->getParameter("width"));
}

// ---------------------------------------------------------------------------
// Steps of the parse, used alone

TEST_F(DemoScriptParserTest, HeaderMatchesOnlyTheExactEightCharacters) {
    DemoScriptParser steps("unused");
    EXPECT_EQ("{KVLDS1}", DemoScriptParser::header);
    EXPECT_TRUE(steps.checkHeader("{KVLDS1}"));
    EXPECT_FALSE(steps.checkHeader("{KVLDS1 }"));
    EXPECT_FALSE(steps.checkHeader("{kvlds1}"));
    EXPECT_FALSE(steps.checkHeader(""));
}

TEST_F(DemoScriptParserTest, StrippedTextHasOneLinePerCarriageReturnWithoutCommentsOrIndentation) {
    DemoScriptParser steps("unused");
    EXPECT_EQ("a = 1;\rb = 2;\rc",
              steps.stripComments("  // head\r\n\n   a = 1; // one\n\tb = 2;\r\r//\n  c  \n\n"));
    EXPECT_EQ("", steps.stripComments("// only a comment\n   \n"));
    EXPECT_EQ("x", steps.stripComments("x//y//z"));
}

TEST_F(DemoScriptParserTest, EffectBlockNameSplitsAtTheStarWithOptionalBlanks) {
    DemoScriptParser steps("unused");
    EXPECT_TRUE(steps.isEffectDefinition("intro*ExampleEffect"));
    EXPECT_FALSE(steps.isEffectDefinition("graphics"));
    EXPECT_EQ("intro", steps.getEffectName("intro*ExampleEffect"));
    EXPECT_EQ("ExampleEffect", steps.getEffectClass("intro*ExampleEffect"));
    EXPECT_EQ("intro", steps.getEffectName("  intro  *  ExampleEffect  "));
    EXPECT_EQ("ExampleEffect", steps.getEffectClass("  intro  *  ExampleEffect  "));
    EXPECT_EQ("ExampleEffect", steps.getEffectClass("intro * ExampleEffect * ignored"));
}

TEST_F(DemoScriptParserTest, ForcedLengthPutsZerosInFrontOnly) {
    DemoScriptParser steps("unused");
    EXPECT_EQ("03", steps.forceStringLength("3", 2));
    EXPECT_EQ("12", steps.forceStringLength("12", 2));
    EXPECT_EQ("12345", steps.forceStringLength("12345", 2));
    EXPECT_EQ("0000", steps.forceStringLength("", 4));
}

TEST_F(DemoScriptParserTest, UnknownStoreNameIsEnteredEmpty) {
    DemoScriptParser steps("unused");
    EXPECT_EQ(nullptr, steps.getParameterGroup("nothing"));
    Parameters store;
    steps.addParameterGroup("mine", &store);
    EXPECT_EQ(&store, steps.getParameterGroup("mine"));
    EXPECT_EQ(nullptr, steps.getScriptDefaults());
    EXPECT_TRUE(steps.isValid());
    EXPECT_EQ("", steps.getErrorMessage());
}

TEST_F(DemoScriptParserTest, ReverseLookupGivesTheKeyOfAnEntryOfABlockSeenSoFar) {
    DemoScriptParser steps("unused");
    Parameters* store = new Parameters();
    ParameterGroup* graphics = new ParameterGroup();
    graphics->addParameter("logo", "logo.png, GL_TEXTURE_2D");
    store->addGroup("graphics", graphics);
    steps.addParameterGroup("system_parameters", store);

    EXPECT_EQ("logo", steps.reverseLookup("graphics[logo]"));
    EXPECT_EQ("", steps.reverseLookup("graphics[nothing]"));
    EXPECT_EQ("", steps.reverseLookup("shaders[logo]"));
    // Block and key are not trimmed.
    EXPECT_EQ("", steps.reverseLookup("graphics [logo]"));
    EXPECT_EQ("", steps.reverseLookup("graphics[ logo]"));
    // Without both brackets the text stands for itself.
    EXPECT_EQ("logo", steps.reverseLookup("logo"));
    EXPECT_EQ("graphics[logo", steps.reverseLookup("graphics[logo"));
    EXPECT_EQ("graphicslogo]", steps.reverseLookup("graphicslogo]"));
    EXPECT_EQ("", steps.reverseLookup("a]b[c"));
    delete store;
}

// ---------------------------------------------------------------------------
// Comments and the header

TEST_F(DemoScriptParserTest, CommentLinesAndBlankLinesAheadOfTheHeaderAreAccepted) {
    EXPECT_TRUE(
        parseText("// a demo\n\n   // by someone\r\n\r\n" + script("screen { width = 1; }")));
    EXPECT_EQ("1", systemGroup("screen")["width"]);
}

TEST_F(DemoScriptParserTest, HeaderWithBlanksInsideIsRefusedAsWritten) {
    EXPECT_FALSE(parseText("{ KVLDS1 }\n" + pathsBlock()));
    std::string expected = "Error while parsing demoscript!\nInvalid Script Header\n"
                           "Header : '{ KVLDS1 }'\n";
    EXPECT_EQ(expected, parser->getErrorMessage());
    EXPECT_EQ(expected + "\n", err);
}

TEST_F(DemoScriptParserTest, ScriptWithoutHeaderReportsItsFirstThreeTokens) {
    EXPECT_FALSE(parseText(pathsBlock()));
    std::string expected = "Error while parsing demoscript!\nInvalid Script Header\n"
                           "Header : 'paths {\rdefinition = " +
                           definitionDirectory() + ";\r'\n";
    EXPECT_EQ(expected, parser->getErrorMessage());
    EXPECT_EQ(expected + "\n", err);
}

TEST_F(DemoScriptParserTest, MissingScriptFileIsReported) {
    parser = new DemoScriptParser(dir.file("absent.txt"));
    parser->parseDefaults(true);
    runParse();
    std::string expected = "DemoScriptParser : '" + dir.file("absent.txt") + "' not found!";
    EXPECT_FALSE(parser->isValid());
    EXPECT_EQ(expected, parser->getErrorMessage());
    EXPECT_EQ(expected + "\n", err);
    EXPECT_EQ(nullptr, systemStore);
    EXPECT_EQ(nullptr, effectStore);
}

TEST_F(DemoScriptParserTest, CommentBehindAValueIsCutOff) {
    ASSERT_TRUE(parseText(script("graphics {\n a = 1 // note\n}\n")));
    EXPECT_EQ((Entries{{"a", "1"}}), systemGroup("graphics"));
}

TEST_F(DemoScriptParserTest, DoubleSlashInsideAValueLosesTheSemicolonAndTheRestOfTheLine) {
    ASSERT_TRUE(parseText(script("graphics {\n url = x//y;\n}\n")));
    EXPECT_EQ((Entries{{"url", "x"}}), systemGroup("graphics"));
}

TEST_F(DemoScriptParserTest, DoubleSlashInsideAValueJoinsTheNextLineToTheStatement) {
    EXPECT_FALSE(parseText(script("graphics {\n url = x//y;\n b = 2;\n}\n")));
    std::string expected = openingA("graphics") +
                           "Error: Parameter 'url' have too many tokens.\nValue : 'x\rb'\n"
                           "Probable cause: Semocolon forgotten or misplaced";
    EXPECT_EQ(expected, parser->getErrorMessage());
    EXPECT_EQ(GRAPHICS_NOTICE + expected + "\n", err);
}

TEST_F(DemoScriptParserTest, LineEndInsideAValueStaysAsOneCarriageReturn) {
    ASSERT_TRUE(parseText(script("graphics {\n list = a,\r\n   b;\n}\n")));
    EXPECT_EQ((Entries{{"list", "a,\rb"}}), systemGroup("graphics"));
}

// ---------------------------------------------------------------------------
// Blocks and brackets

TEST_F(DemoScriptParserTest, EmptyOrdinaryBlockAddsNoGroup) {
    ASSERT_TRUE(parseText(script("foo { }\nscreen { width = 1; }\n")));
    EXPECT_FALSE(systemStore->exist("foo"));
    EXPECT_EQ(2, systemStore->size());
    EXPECT_EQ("", err);
}

TEST_F(DemoScriptParserTest, EmptyEffectBlockCreatesNoObjectAndSaysNothing) {
    ASSERT_TRUE(parseText(script("x * ExampleEffect { }\n")));
    EXPECT_EQ(0, effectStore->size());
    EXPECT_EQ("", err);
}

TEST_F(DemoScriptParserTest, StrayClosingBracketIsABlockNamedBracket) {
    EXPECT_FALSE(parseText(script("foo { a = 1; } }\n")));
    EXPECT_EQ(mismatchingBrackets("}"), parser->getErrorMessage());
    EXPECT_EQ("ScriptDefaults::exists(foo) - dont exist\n" + mismatchingBrackets("}") + "\n", err);
    // What came before the fault stays stored.
    EXPECT_EQ((Entries{{"a", "1"}}), systemGroup("foo"));
}

TEST_F(DemoScriptParserTest, ScriptEndingAfterABlockNameHasMismatchingBrackets) {
    EXPECT_FALSE(parseText(script("screen { width = 1; }\ngraphics\n")));
    EXPECT_EQ(mismatchingBrackets("graphics"), parser->getErrorMessage());
    EXPECT_EQ(mismatchingBrackets("graphics") + "\n", err);
}

TEST_F(DemoScriptParserTest, BlockWithoutClosingBracketHasMismatchingBrackets) {
    EXPECT_FALSE(parseText(script("screen { width = 1; \ngraphics { logo = a; }\n")));
    EXPECT_EQ(mismatchingBrackets("screen"), parser->getErrorMessage());
    EXPECT_EQ(mismatchingBrackets("screen") + "\n", err);
}

TEST_F(DemoScriptParserTest, LastSemicolonOfABodyMayBeLeftOut) {
    ASSERT_TRUE(parseText(script("graphics { a = 1; ;; b = 2 }\n")));
    EXPECT_EQ((Entries{{"a", "1"}, {"b", "2"}}), systemGroup("graphics"));
}

TEST_F(DemoScriptParserTest, ValueKeepsWhiteSpaceInsideAndLosesItAtTheEnds) {
    ASSERT_TRUE(parseText(script("graphics {\n   logo   =   logo.png,  GL_TEXTURE_2D   ;\n}\n")));
    EXPECT_EQ((Entries{{"logo", "logo.png,  GL_TEXTURE_2D"}}), systemGroup("graphics"));
}

TEST_F(DemoScriptParserTest, SecondTimelineBlockReplacesTheFirst) {
    Timeline* result = parseTimelineOf(script("intro * ExampleEffect { }\n"
                                              "timeline { Checkpoint 00:01:000; }\n"
                                              "timeline { Checkpoint 00:02:000; }\n"));
    ASSERT_NE(nullptr, result);
    EXPECT_EQ("timeline.addCheckpoint(00:02:000)\n", out);
}

// ---------------------------------------------------------------------------
// Statements

TEST_F(DemoScriptParserTest, KeyOfTwoWordsIsNotASingleWord) {
    EXPECT_FALSE(parseText(script("graphics {\n a b = 1;\n}\n")));
    std::string expected = openingA("graphics") +
                           "Error: Parameter 'a b' is not a single word.\n"
                           "Probable cause: Semocolon forgotten or misplaced";
    EXPECT_EQ(expected, parser->getErrorMessage());
    EXPECT_EQ(GRAPHICS_NOTICE + expected + "\n", err);
    EXPECT_FALSE(systemStore->exist("graphics"));
}

TEST_F(DemoScriptParserTest, ForgottenSemicolonGivesTooManyTokensWithTheFirstValue) {
    EXPECT_FALSE(parseText(script("graphics {\n a = 1 = 2;\n}\n")));
    std::string expected = openingA("graphics") +
                           "Error: Parameter 'a' have too many tokens.\nValue : '1'\n"
                           "Probable cause: Semocolon forgotten or misplaced";
    EXPECT_EQ(expected, parser->getErrorMessage());
    EXPECT_EQ(GRAPHICS_NOTICE + expected + "\n", err);
}

TEST_F(DemoScriptParserTest, KeyWithEmptyValueHasNoValue) {
    EXPECT_FALSE(parseText(script("graphics {\n a = ;\n}\n")));
    std::string expected = openingA("graphics") +
                           "Error: Parameter 'a' dont seem to have a value\n"
                           "Probable cause: Semocolon misplaced or no assigned value ('a = ;')";
    EXPECT_EQ(expected, parser->getErrorMessage());
    EXPECT_EQ(GRAPHICS_NOTICE + expected + "\n", err);
}

TEST_F(DemoScriptParserTest, KeyWithoutEqualsSignHasNoValue) {
    EXPECT_FALSE(parseText(script("graphics {\n a;\n}\n")));
    std::string expected = openingA("graphics") +
                           "Error: Parameter 'a' dont seem to have a value\n"
                           "Probable cause: Semocolon misplaced or no assigned value ('a = ;')";
    EXPECT_EQ(expected, parser->getErrorMessage());
}

TEST_F(DemoScriptParserTest, StatementErrorInAnEffectBlockNamesTheBlockWithItsStar) {
    EXPECT_FALSE(parseText(script("intro * ExampleEffect {\n speed 2.5;\n}\n")));
    std::string expected = openingA("intro * ExampleEffect") +
                           "Error: Parameter 'speed 2.5' is not a single word.\n"
                           "Probable cause: Semocolon forgotten or misplaced";
    EXPECT_EQ(expected, parser->getErrorMessage());
    EXPECT_EQ(expected + "\n", err);
}

TEST_F(DemoScriptParserTest, SameKeyTwiceInABlockKeepsTheLastValue) {
    ASSERT_TRUE(parseText(script("graphics { a = 1; a = 2; }\n")));
    EXPECT_EQ((Entries{{"a", "2"}}), systemGroup("graphics"));
}

TEST_F(DemoScriptParserTest, SameBlockTwiceKeepsOnlyTheLastBlocksKeys) {
    ASSERT_TRUE(parseText(script("graphics { a = 1; b = 2; }\ngraphics { c = 3; }\n")));
    EXPECT_EQ((Entries{{"c", "3"}}), systemGroup("graphics"));
}

TEST_F(DemoScriptParserTest, OrdinaryBlockStartsFromTheDefaultsOfItsDefinition) {
    ASSERT_TRUE(parseText(script("screen { width = 800; }\n")));
    EXPECT_EQ((Entries{{"width", "800"}, {"height", "480"}, {"near", "0.1"}, {"far", "100.0"}}),
              systemGroup("screen"));
}

TEST_F(DemoScriptParserTest, OrdinaryBlockWithADefinitionAcceptsAnyKey) {
    ASSERT_TRUE(parseText(script("screen { width = wide; depth = 3; }\n")));
    EXPECT_EQ("wide", systemGroup("screen")["width"]);
    EXPECT_EQ("3", systemGroup("screen")["depth"]);
}

TEST_F(DemoScriptParserTest, ScreenBlockWithADefinitionPrintsNoNotice) {
    EXPECT_FALSE(parseText(script("screen { a b = 1; }\n")));
    std::string expected = openingA("screen") + "Error: Parameter 'a b' is not a single word.\n"
                                                "Probable cause: Semocolon forgotten or misplaced";
    EXPECT_EQ(expected, parser->getErrorMessage());
    EXPECT_EQ(expected + "\n", err);
}

TEST_F(DemoScriptParserTest, GraphicsBlockWithoutADefinitionPrintsTheNoticeAndGoesOn) {
    ASSERT_TRUE(parseText(script("graphics { logo = logo.png; }\nscreen { width = 1; }\n")));
    EXPECT_EQ(GRAPHICS_NOTICE, err);
    EXPECT_EQ((Entries{{"logo", "logo.png"}}), systemGroup("graphics"));
}

// ---------------------------------------------------------------------------
// Effect blocks

TEST_F(DemoScriptParserTest, EffectBlockIsCompletedWithTheDefaultsOfItsClass) {
    ASSERT_TRUE(parseText(script("intro*ExampleEffect { count = 3; }\n")));
    EXPECT_EQ((Entries{{"class", "ExampleEffect"},
                       {"count", "3"},
                       {"wrap", "false"},
                       {"mode", "blend"},
                       {"speed", "1.0"},
                       {"texture", "none"}}),
              effectGroup("intro"));
    EXPECT_EQ("", err);
}

TEST_F(DemoScriptParserTest, SeveralObjectsOfOneClassAreAllowed) {
    ASSERT_TRUE(parseText(script("a * ExampleEffect { count = 1; }\nb * ExampleEffect { }\n"
                                 "c * ExampleEffect { count = 3; }\n")));
    EXPECT_EQ(2, effectStore->size());
    EXPECT_EQ("1", effectGroup("a")["count"]);
    EXPECT_EQ("3", effectGroup("c")["count"]);
}

TEST_F(DemoScriptParserTest, MisspeltClassHasNoDefaults) {
    EXPECT_FALSE(parseText(script("intro * ExampelEffect { speed = 2.5; }\n")));
    std::string expected = defaultsNotFound("intro * ExampelEffect");
    EXPECT_EQ(expected, parser->getErrorMessage());
    EXPECT_EQ("ScriptDefaults::exists(ExampelEffect) - dont exist\n" + expected + "\n", err);
}

TEST_F(DemoScriptParserTest, EffectBlockAheadOfPathsHasNoDefaults) {
    EXPECT_FALSE(parseText(
        "{KVLDS1}\nintro * ExampleEffect { }\nintro * ExampleEffect { a = 1; }\n" + pathsBlock()));
    std::string expected = defaultsNotFound("intro * ExampleEffect");
    EXPECT_EQ(expected, parser->getErrorMessage());
    EXPECT_EQ(expected + "\n", err);
    EXPECT_EQ(nullptr, parser->getScriptDefaults());
}

TEST_F(DemoScriptParserTest, ScriptWithoutPathsFailsAtItsFirstBlock) {
    EXPECT_FALSE(parseText("{KVLDS1}\nscreen { width = 1; }\n"));
    std::string expected = defaultsNotFound("screen");
    EXPECT_EQ(expected, parser->getErrorMessage());
    EXPECT_EQ(expected + "\n", err);
    EXPECT_EQ(0, systemStore->size());
}

TEST_F(DemoScriptParserTest, SystemBlockClassIsNoTemplate) {
    EXPECT_FALSE(parseText(script("intro * screen { width = 1; }\n")));
    std::string expected = openingB("intro") +
                           "Error : Effect template 'screen' do not exist!\n"
                           "Probable cause : Spelling error or your effect template is not added "
                           "to the Demosys.\n";
    EXPECT_EQ(expected, parser->getErrorMessage());
    EXPECT_EQ(expected + "\n", err);
    EXPECT_EQ(0, effectStore->size());
}

TEST_F(DemoScriptParserTest, WithoutDefaultsAMisspeltClassIsAMissingTemplate) {
    EXPECT_FALSE(parseText(script("intro * ExampelEffect { speed = 2.5; }\n"), false));
    std::string expected = openingB("intro") +
                           "Error : Effect template 'ExampelEffect' do not exist!\n"
                           "Probable cause : Spelling error or your effect template is not added "
                           "to the Demosys.\n";
    EXPECT_EQ(expected, parser->getErrorMessage());
    EXPECT_EQ(expected + "\n", err);
}

TEST_F(DemoScriptParserTest, TwoEffectBlocksWithOneObjectNameAreARedefinition) {
    templates->addEffect("OtherEffect", new ExampleEffect());
    writeDefinition("OtherEffect", "parameters { }");
    EXPECT_FALSE(parseText(script("intro * ExampleEffect { speed = 2.5; }\n"
                                  "intro * OtherEffect { }\nintro * OtherEffect { x = 1; }\n")));
    std::string expected = openingB("intro") + "Error : Redefinition of scriptobject 'intro'\n" +
                           "Probable cause : You have two or more effects with identical names\n" +
                           "Effect names must be unique.\n";
    EXPECT_EQ(expected, parser->getErrorMessage());
    EXPECT_EQ(expected + "\n", err);
    EXPECT_EQ("ExampleEffect", effectGroup("intro")["class"]);
}

TEST_F(DemoScriptParserTest, EffectBlockRejectsAKeyNotInTheDefinition) {
    EXPECT_FALSE(parseText(script("intro * ExampleEffect { colour = red; }\n")));
    std::string expected = openingC("intro", "colour") +
                           "Error :  Not defined as a valid parameter for ExampleEffect\n";
    EXPECT_EQ(expected, parser->getErrorMessage());
    EXPECT_EQ(expected + "\n", err);
    EXPECT_EQ(0, effectStore->size());
}

TEST_F(DemoScriptParserTest, FloatParameterNeedsAPointWithDigitsOnBothSides) {
    EXPECT_FALSE(parseText(script("intro * ExampleEffect { speed = 2; }\n")));
    std::string expected = openingD("intro", "speed", "2") +
                           "Error :  value is not a float as defined in ExampleEffect.def\n";
    EXPECT_EQ(expected, parser->getErrorMessage());
    EXPECT_EQ(expected + "\n", err);
}

TEST_F(DemoScriptParserTest, IntParameterRefusesAFloat) {
    EXPECT_FALSE(parseText(script("intro * ExampleEffect { count = 1.5; }\n")));
    std::string expected = openingD("intro", "count", "1.5") +
                           "Error :  value is not an int as defined in ExampleEffect.def\n";
    EXPECT_EQ(expected, parser->getErrorMessage());
    EXPECT_EQ(expected + "\n", err);
}

TEST_F(DemoScriptParserTest, BoolParameterTakesOnlyTrueAndFalse) {
    EXPECT_FALSE(parseText(script("intro * ExampleEffect { wrap = yes; }\n")));
    std::string expected = openingD("intro", "wrap", "yes") +
                           "Error :  value is not a bool as defined in ExampleEffect.def\n";
    EXPECT_EQ(expected, parser->getErrorMessage());
    EXPECT_EQ(expected + "\n", err);
}

TEST_F(DemoScriptParserTest, StringParameterWithAValuesListTakesOnlyItsOptions) {
    EXPECT_FALSE(parseText(script("intro * ExampleEffect { mode = Add; }\n")));
    std::string expected = openingD("intro", "mode", "Add") +
                           "Error :  value is not a valid option\n"
                           "Defined options are : add,blend,replace\n";
    EXPECT_EQ(expected, parser->getErrorMessage());
    EXPECT_EQ(expected + "\n", err);
}

TEST_F(DemoScriptParserTest, ValuesListIsComparedTrimmed) {
    writeDefinition("ExampleEffect",
                    "parameters { mode[type=string][values= add , blend][default=blend]; }");
    ASSERT_TRUE(parseText(script("intro * ExampleEffect { mode = add; }\n")));
    EXPECT_EQ("add", effectGroup("intro")["mode"]);
}

TEST_F(DemoScriptParserTest, CrossReferenceToAnEntryStoresItsKey) {
    ASSERT_TRUE(parseText(script("graphics { logo = logo.png; }\n"
                                 "intro * ExampleEffect { texture = graphics[logo]; }\n")));
    EXPECT_EQ("logo", effectGroup("intro")["texture"]);
}

TEST_F(DemoScriptParserTest, CrossReferenceToAMissingEntryFailsTheLookup) {
    EXPECT_FALSE(parseText(script("graphics { logo = logo.png; }\n"
                                  "intro * ExampleEffect { texture = graphics[nothing]; }\n")));
    std::string expected =
        openingD("intro", "texture", "graphics[nothing]") + "Error : Reverse lookup failed\n";
    EXPECT_EQ(expected, parser->getErrorMessage());
    EXPECT_EQ(GRAPHICS_NOTICE + expected + "\n", err);
}

TEST_F(DemoScriptParserTest, CrossReferenceToABlockFurtherDownFailsTheLookup) {
    EXPECT_FALSE(parseText(script("intro * ExampleEffect { texture = graphics[logo]; }\n"
                                  "graphics { logo = logo.png; }\n")));
    EXPECT_EQ(openingD("intro", "texture", "graphics[logo]") + "Error : Reverse lookup failed\n",
              parser->getErrorMessage());
}

TEST_F(DemoScriptParserTest, PlainStringIsStoredUnchecked) {
    ASSERT_TRUE(parseText(script("intro * ExampleEffect { texture = logo; }\n")));
    EXPECT_EQ("logo", effectGroup("intro")["texture"]);
}

TEST_F(DemoScriptParserTest, CrossReferenceMustBeListedWhereAValuesListExists) {
    writeDefinition("ExampleEffect",
                    "parameters { texture[type=string][values=logo,none][default=none]; }");
    // The list is compared with the text as written, before the lookup.
    EXPECT_FALSE(parseText(script("graphics { logo = logo.png; }\n"
                                  "intro * ExampleEffect { texture = graphics[logo]; }\n")));
    std::string expected =
        openingD("intro", "texture", "graphics[logo]") +
        "Error :  value is not a valid option\nDefined options are : logo,none\n";
    EXPECT_EQ(expected, parser->getErrorMessage());
    EXPECT_EQ(GRAPHICS_NOTICE + expected + "\n", err);
}

TEST_F(DemoScriptParserTest, ListedPlainOptionIsStoredAsWritten) {
    writeDefinition("ExampleEffect", "parameters { texture[type=string][values=a,b][default=a]; }");
    ASSERT_TRUE(parseText(script("intro * ExampleEffect { texture = b; }\n")));
    EXPECT_EQ("b", effectGroup("intro")["texture"]);
}

TEST_F(DemoScriptParserTest, FloatDefaultWithoutPointFailsEveryBlockThatKeepsIt) {
    writeDefinition("ExampleEffect",
                    "parameters { speed[type=float][default=1]; count[type=int][default=16]; }");
    ASSERT_TRUE(parseText(script("a * ExampleEffect { speed = 1.0; }\n")));
    EXPECT_EQ("1.0", effectGroup("a")["speed"]);
    nextRun();
    EXPECT_FALSE(parseText(script("b * ExampleEffect { count = 2; }\n")));
    std::string expected = openingD("b", "speed", "1") +
                           "Error :  value is not a float as defined in ExampleEffect.def\n";
    EXPECT_EQ(expected, parser->getErrorMessage());
    EXPECT_EQ(expected + "\n", err);
}

TEST_F(DemoScriptParserTest, UnknownParameterTypeIsNotSupported) {
    writeDefinition("ExampleEffect", "parameters { speed[type=double][default=1.0]; }");
    EXPECT_FALSE(parseText(script("intro * ExampleEffect { speed = 2.5; }\n")));
    std::string expected = openingD("intro", "speed", "2.5") +
                           "Param type : param_type\nError : Parameter type is not supported!";
    EXPECT_EQ(expected, parser->getErrorMessage());
    EXPECT_EQ(expected + "\n", err);
}

TEST_F(DemoScriptParserTest, MissingDefinitionFileIsReportedWithoutPrinting) {
    std::remove(dir.file("definitions/sound.def").c_str());
    EXPECT_FALSE(parseText(script("screen { width = 1; }\n")));
    std::string expected =
        "EffectDefinitionParser : '" + definitionDirectory() + "sound.def' not found!";
    EXPECT_EQ(expected, parser->getErrorMessage());
    EXPECT_EQ("", err);
    EXPECT_FALSE(systemStore->exist("screen"));
    EXPECT_TRUE(systemStore->exist("paths"));
}

TEST_F(DemoScriptParserTest, BrokenDefinitionFileIsReportedWithItsOwnMessage) {
    writeDefinition("ExampleEffect", "foo { }");
    EXPECT_FALSE(parseText(script("")));
    std::string expected = "EffectDefinitionParser : Invalid block name!\n"
                           "File : " +
                           definitionDirectory() +
                           "ExampleEffect.def'\n"
                           "block name 'foo' is not valid\n"
                           "Valid blocks : parameters, methods\n";
    EXPECT_EQ(expected, parser->getErrorMessage());
    EXPECT_EQ("", err);
}

TEST_F(DemoScriptParserTest, MissingDefinitionKeyInPathsIsFatal) {
    EXPECT_DEATH(
        {
            createParser("{KVLDS1}\npaths { gfx = x/; }\n");
            [this]() noexcept { parser->parse(); }();
        },
        "terminate called after throwing");
}
