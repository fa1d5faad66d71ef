#include "script/EffectDefinitionParser.h"

#include "script/EffectDefinition.h"
#include "script/ParameterGroup.h"
#include "script/Parameters.h"
#include "support/ExampleDefinition.h"

#include "ScratchDirectory.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using Entries = std::vector<std::pair<std::string, std::string>>;

Entries entriesOf(const ParameterGroup* group) {
    Entries entries;
    for (int i = 0; i < group->size(); i++) {
        entries.emplace_back(group->getKey(i), group->getValue(i));
    }
    return entries;
}

std::vector<std::string> namesOf(const Parameters* store) {
    std::vector<std::string> names;
    for (int i = 0; i < store->size(); i++) {
        names.push_back(store->getKey(i));
    }
    return names;
}

// Parses text from a file of its own; definitions print a trace when deleted,
// which the fixture keeps out of the test output.
class EffectDefinitionParserTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(scratch.isReady()); }

    void TearDown() override {
        testing::internal::CaptureStdout();
        delete definition;
        testing::internal::GetCapturedStdout();
    }

    EffectDefinition* parseText(const std::string& text, const std::string& name = "Test.def") {
        std::string path = scratch.createFile(name, text);
        parser = std::make_unique<EffectDefinitionParser>(path);
        definition = parser->parse();
        return definition;
    }

    ParameterGroup* declaredParameter(const std::string& name) const {
        return definition->getParameter(name);
    }

    ScratchDirectory scratch;
    std::unique_ptr<EffectDefinitionParser> parser;
    EffectDefinition* definition = nullptr;
};

TEST_F(EffectDefinitionParserTest, ExampleFileGivesEveryDeclaredValue) {
    ASSERT_NE(nullptr, parseText(EXAMPLE_DEFINITION, "ExampleEffect.def"));
    EXPECT_TRUE(parser->isValid());
    EXPECT_EQ("", parser->getErrorMessage());
    ASSERT_TRUE(definition->hasParameters());
    ASSERT_TRUE(definition->hasMethods());

    std::vector<std::string> parameterOrder = {"count", "mode", "speed", "texture", "wrap"};
    EXPECT_EQ(parameterOrder, namesOf(definition->getParameters()));
    EXPECT_EQ((Entries{{"", ""}, {"default", "16"}, {"type", "int"}}),
              entriesOf(declaredParameter("count")));
    EXPECT_EQ((Entries{{"default", "blend"}, {"type", "string"}, {"values", "add,blend,replace"}}),
              entriesOf(declaredParameter("mode")));
    EXPECT_EQ((Entries{{"", ""}, {"default", "1.0"}, {"type", "float"}}),
              entriesOf(declaredParameter("speed")));
    EXPECT_EQ((Entries{{"default", "none"}, {"type", "string"}, {"values", "<string>"}}),
              entriesOf(declaredParameter("texture")));
    EXPECT_EQ((Entries{{"", ""}, {"default", "false"}, {"type", "bool"}}),
              entriesOf(declaredParameter("wrap")));
    for (const std::string& name : parameterOrder) {
        EXPECT_EQ(name, declaredParameter(name)->getGroupName());
    }

    std::vector<std::string> methodOrder = {"burst", "fade", "setSpeed", "setTexture"};
    EXPECT_EQ(methodOrder, namesOf(definition->getMethods()));
    EXPECT_EQ((Entries{{"00", "<event>"}, {"01", "<integer>"}, {"02", "<bool>"}}),
              entriesOf(definition->getMethod("burst")));
    EXPECT_EQ((Entries{{"00", "<event>"}, {"01", "<time>"}, {"02", "<time>"}, {"03", "<float>"}}),
              entriesOf(definition->getMethod("fade")));
    EXPECT_EQ((Entries{{"00", "<event>"}, {"01", "<float>"}}),
              entriesOf(definition->getMethod("setSpeed")));
    EXPECT_EQ((Entries{{"00", "<event>"}, {"01", "<string>"}}),
              entriesOf(definition->getMethod("setTexture")));
    for (const std::string& name : methodOrder) {
        EXPECT_EQ(name, definition->getMethod(name)->getGroupName());
    }
}

TEST_F(EffectDefinitionParserTest, ExampleFileGivesTheDeclaredDefaults) {
    ASSERT_NE(nullptr, parseText(EXAMPLE_DEFINITION, "ExampleEffect.def"));
    ParameterGroup* defaults = definition->getDefaults();
    ASSERT_NE(nullptr, defaults);
    EXPECT_EQ("parameters", defaults->getGroupName());
    EXPECT_EQ((Entries{{"count", "16"},
                       {"mode", "blend"},
                       {"speed", "1.0"},
                       {"texture", "none"},
                       {"wrap", "false"}}),
              entriesOf(defaults));
    delete defaults;
}

TEST_F(EffectDefinitionParserTest, ExampleFilePrintsAsADefinitionWithoutName) {
    ASSERT_NE(nullptr, parseText(EXAMPLE_DEFINITION, "ExampleEffect.def"));
    EXPECT_EQ("EffectDefinition {\n"
              "effect = \n"
              "count {\n"
              "     = ;\n"
              "    default = 16;\n"
              "    type = int;\n"
              "}\n"
              "mode {\n"
              "    default = blend;\n"
              "    type = string;\n"
              "    values = add,blend,replace;\n"
              "}\n"
              "speed {\n"
              "     = ;\n"
              "    default = 1.0;\n"
              "    type = float;\n"
              "}\n"
              "texture {\n"
              "    default = none;\n"
              "    type = string;\n"
              "    values = <string>;\n"
              "}\n"
              "wrap {\n"
              "     = ;\n"
              "    default = false;\n"
              "    type = bool;\n"
              "}\n"
              "\n"
              "burst {\n"
              "    00 = <event>;\n"
              "    01 = <integer>;\n"
              "    02 = <bool>;\n"
              "}\n"
              "fade {\n"
              "    00 = <event>;\n"
              "    01 = <time>;\n"
              "    02 = <time>;\n"
              "    03 = <float>;\n"
              "}\n"
              "setSpeed {\n"
              "    00 = <event>;\n"
              "    01 = <float>;\n"
              "}\n"
              "setTexture {\n"
              "    00 = <event>;\n"
              "    01 = <string>;\n"
              "}\n"
              "\n"
              "}\n",
              definition->toString());
}

TEST_F(EffectDefinitionParserTest, LastEntryWithoutSemicolonStillCounts) {
    ASSERT_NE(nullptr, parseText("parameters { speed[type=float][default=1.0] }"));
    ASSERT_TRUE(definition->hasParameter("speed"));
    EXPECT_EQ("float", declaredParameter("speed")->getParameter("type"));
    EXPECT_EQ("1.0", declaredParameter("speed")->getParameter("default"));
}

TEST_F(EffectDefinitionParserTest, BlanksAroundTheEqualsSignStayInNameAndValue) {
    ASSERT_NE(nullptr, parseText("parameters { a[type = float][default=1]; }"));
    ParameterGroup* a = declaredParameter("a");
    ASSERT_NE(nullptr, a);
    EXPECT_FALSE(a->exist("type"));
    EXPECT_TRUE(a->exist("type "));
    EXPECT_EQ(" float", a->getParameter("type "));
    EXPECT_TRUE(a->exist("default"));
    EXPECT_EQ("1", a->getParameter("default"));
}

TEST_F(EffectDefinitionParserTest, OnlyThreeBracketPairsAreRead) {
    ASSERT_NE(nullptr, parseText("parameters { a[x=1][y=2][z=3][w=4]; }"));
    ParameterGroup* a = declaredParameter("a");
    ASSERT_NE(nullptr, a);
    EXPECT_EQ((Entries{{"x", "1"}, {"y", "2"}, {"z", "3"}}), entriesOf(a));
    EXPECT_FALSE(a->exist("w"));
}

TEST_F(EffectDefinitionParserTest, FewerThanThreeBracketPairsAddOneEmptyAttribute) {
    ASSERT_NE(nullptr, parseText("parameters { a[default=1]; b; }"));
    EXPECT_EQ((Entries{{"", ""}, {"default", "1"}}), entriesOf(declaredParameter("a")));
    EXPECT_EQ((Entries{{"", ""}}), entriesOf(declaredParameter("b")));
}

TEST_F(EffectDefinitionParserTest, BracketWithoutEqualsSignIsAnAttributeWithEmptyValue) {
    ASSERT_NE(nullptr, parseText("parameters { a[flag][default=1]; }"));
    ParameterGroup* a = declaredParameter("a");
    ASSERT_NE(nullptr, a);
    EXPECT_TRUE(a->exist("flag"));
    EXPECT_EQ("", a->getParameter("flag"));
}

TEST_F(EffectDefinitionParserTest, ValueIsCutAtAFurtherEqualsSign) {
    ASSERT_NE(nullptr, parseText("parameters { a[default=x=y]; }"));
    EXPECT_EQ("x", declaredParameter("a")->getParameter("default"));
}

TEST_F(EffectDefinitionParserTest, WhiteSpaceAroundNameAndBracketsIsIgnored) {
    ASSERT_NE(nullptr, parseText("parameters {\n\t speed \t[ type=float ]\n [default=1.0]\t;\n}"));
    ParameterGroup* speed = declaredParameter("speed");
    ASSERT_NE(nullptr, speed);
    EXPECT_EQ("float", speed->getParameter("type"));
    EXPECT_EQ("1.0", speed->getParameter("default"));
}

TEST_F(EffectDefinitionParserTest, AttributeOrderIsFree) {
    ASSERT_NE(nullptr, parseText("parameters { a[default=x][values=<string>][type=string]; }"));
    EXPECT_EQ((Entries{{"default", "x"}, {"type", "string"}, {"values", "<string>"}}),
              entriesOf(declaredParameter("a")));
}

TEST_F(EffectDefinitionParserTest, ParameterDeclaredTwiceKeepsTheLaterDeclaration) {
    ASSERT_NE(nullptr, parseText("parameters { a[default=1]; a[default=2]; }"));
    EXPECT_EQ(1, definition->getParameters()->size());
    EXPECT_EQ("2", declaredParameter("a")->getParameter("default"));
}

TEST_F(EffectDefinitionParserTest, EmptyArgumentBetweenCommasDisappears) {
    ASSERT_NE(nullptr, parseText("methods { m(<event>,,<float>); }"));
    EXPECT_EQ((Entries{{"00", "<event>"}, {"01", "<float>"}}),
              entriesOf(definition->getMethod("m")));
}

TEST_F(EffectDefinitionParserTest, ElevenArgumentsAreKeyedZeroZeroToTenInOrder) {
    ASSERT_NE(nullptr, parseText("methods { m(t0, t1, t2, t3, t4, t5, t6, t7, t8, t9, t10); }"));
    ParameterGroup* m = definition->getMethod("m");
    ASSERT_NE(nullptr, m);
    ASSERT_EQ(11, m->size());
    for (int i = 0; i < 11; i++) {
        std::string key = (i < 10 ? "0" : "") + std::to_string(i);
        EXPECT_EQ(key, m->getKey(i));
        EXPECT_EQ("t" + std::to_string(i), m->getValue(i));
    }
}

TEST_F(EffectDefinitionParserTest, MethodWithoutArgumentsIsDeclaredEmpty) {
    ASSERT_NE(nullptr, parseText("methods { name(); other; }"));
    ASSERT_TRUE(definition->hasMethod("name"));
    EXPECT_EQ(0, definition->getMethod("name")->size());
    ASSERT_TRUE(definition->hasMethod("other"));
    EXPECT_EQ(0, definition->getMethod("other")->size());
}

TEST_F(EffectDefinitionParserTest, MethodNamesAndTypeWordsAreTrimmed) {
    ASSERT_NE(nullptr, parseText("methods {\n  setSpeed (\t<event> ,\n <float>\t) ;\n}"));
    ASSERT_TRUE(definition->hasMethod("setSpeed"));
    EXPECT_EQ((Entries{{"00", "<event>"}, {"01", "<float>"}}),
              entriesOf(definition->getMethod("setSpeed")));
}

TEST_F(EffectDefinitionParserTest, BlocksMayComeInEitherOrder) {
    ASSERT_NE(nullptr, parseText("methods { m(<event>); } parameters { a[default=1]; }"));
    EXPECT_TRUE(definition->hasMethod("m"));
    EXPECT_TRUE(definition->hasParameter("a"));
}

TEST_F(EffectDefinitionParserTest, BlockGivenTwiceKeepsTheLaterOne) {
    ASSERT_NE(nullptr, parseText("parameters { a[default=1]; } parameters { b[default=2]; }"));
    EXPECT_FALSE(definition->hasParameter("a"));
    EXPECT_TRUE(definition->hasParameter("b"));
}

TEST_F(EffectDefinitionParserTest, MethodsOnlyFileHasNoParameters) {
    ASSERT_NE(nullptr, parseText("methods { m(<event>); }"));
    EXPECT_TRUE(parser->isValid());
    EXPECT_FALSE(definition->hasParameters());
    EXPECT_TRUE(definition->hasMethods());
}

TEST_F(EffectDefinitionParserTest, DefaultsOfAMethodsOnlyFileEndTheProcess) {
    ASSERT_NE(nullptr, parseText("methods { m(<event>); }"));
    EXPECT_DEATH(definition->getDefaults(), "std::logic_error");
}

TEST_F(EffectDefinitionParserTest, EmptyFileIsAValidDefinitionOfNothing) {
    ASSERT_NE(nullptr, parseText(""));
    EXPECT_TRUE(parser->isValid());
    EXPECT_EQ("", parser->getErrorMessage());
    EXPECT_FALSE(definition->hasParameters());
    EXPECT_FALSE(definition->hasMethods());
}

TEST_F(EffectDefinitionParserTest, EmptyParametersBlockAtTheEndDeclaresNoParameters) {
    ASSERT_NE(nullptr, parseText("methods { m(<event>); }\nparameters { }\n"));
    EXPECT_TRUE(definition->hasParameters());
    EXPECT_EQ(0, definition->getParameters()->size());
    ParameterGroup* defaults = definition->getDefaults();
    ASSERT_NE(nullptr, defaults);
    EXPECT_EQ(0, defaults->size());
    delete defaults;
}

TEST_F(EffectDefinitionParserTest, UnknownBlockNameFailsWithTheFourLineMessage) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EffectDefinition* result = parseText("foo { }", "Foo.def");
    std::string out = testing::internal::GetCapturedStdout();
    std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(nullptr, result);
    EXPECT_FALSE(parser->isValid());
    EXPECT_EQ("EffectDefinitionParser : Invalid block name!\n"
              "File : " +
                  scratch.pathOf("Foo.def") +
                  "'\n"
                  "block name 'foo' is not valid\n"
                  "Valid blocks : parameters, methods\n",
              parser->getErrorMessage());
    EXPECT_EQ("", out);
    EXPECT_EQ("", err);
}

TEST_F(EffectDefinitionParserTest, UnknownBlockAfterAGoodOneStillFails) {
    EXPECT_EQ(nullptr, parseText("parameters { a[default=1]; } extra { }", "Extra.def"));
    EXPECT_FALSE(parser->isValid());
    EXPECT_EQ("EffectDefinitionParser : Invalid block name!\n"
              "File : " +
                  scratch.pathOf("Extra.def") +
                  "'\n"
                  "block name 'extra' is not valid\n"
                  "Valid blocks : parameters, methods\n",
              parser->getErrorMessage());
}

TEST_F(EffectDefinitionParserTest, EmptyParametersBlockAheadOfAnotherSwallowsItsName) {
    EXPECT_EQ(nullptr, parseText("parameters { }\nmethods { m(<event>); }\n", "Swallow.def"));
    EXPECT_FALSE(parser->isValid());
    EXPECT_EQ("EffectDefinitionParser : Invalid block name!\n"
              "File : " +
                  scratch.pathOf("Swallow.def") +
                  "'\n"
                  "block name 'm(<event>);' is not valid\n"
                  "Valid blocks : parameters, methods\n",
              parser->getErrorMessage());
}

TEST_F(EffectDefinitionParserTest, DoubleSlashIsNoCommentButPartOfTheBlockName) {
    EXPECT_EQ(nullptr, parseText("// speeds\nparameters { a[default=1]; }", "Comment.def"));
    EXPECT_FALSE(parser->isValid());
    EXPECT_EQ("EffectDefinitionParser : Invalid block name!\n"
              "File : " +
                  scratch.pathOf("Comment.def") +
                  "'\n"
                  "block name '// speeds\nparameters' is not valid\n"
                  "Valid blocks : parameters, methods\n",
              parser->getErrorMessage());
}

TEST_F(EffectDefinitionParserTest, MissingFileFailsWithNotFound) {
    std::string path = scratch.pathOf("Missing.def");
    EffectDefinitionParser missing(path);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EffectDefinition* result = missing.parse();
    std::string out = testing::internal::GetCapturedStdout();
    std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(nullptr, result);
    EXPECT_FALSE(missing.isValid());
    EXPECT_EQ("EffectDefinitionParser : '" + path + "' not found!", missing.getErrorMessage());
    EXPECT_EQ("", out);
    EXPECT_EQ("", err);
}

TEST_F(EffectDefinitionParserTest, NewParserIsValidWithoutMessage) {
    EffectDefinitionParser fresh(scratch.pathOf("Any.def"));
    EXPECT_TRUE(fresh.isValid());
    EXPECT_EQ("", fresh.getErrorMessage());
}

TEST_F(EffectDefinitionParserTest, LoadFileReportsWhetherTheFileIsThere) {
    std::string path = scratch.createFile("Load.def", "parameters { }");
    EffectDefinitionParser loader(path);
    EXPECT_TRUE(loader.loadFile(path));
    EXPECT_TRUE(loader.isValid());
    EXPECT_FALSE(loader.loadFile(scratch.pathOf("Gone.def")));
    EXPECT_FALSE(loader.isValid());
    EXPECT_EQ("EffectDefinitionParser : '" + scratch.pathOf("Gone.def") + "' not found!",
              loader.getErrorMessage());
}

TEST_F(EffectDefinitionParserTest, AttributeNameAndValueSplitAtTheFirstEqualsSign) {
    EffectDefinitionParser words(scratch.pathOf("Words.def"));
    EXPECT_EQ("type", words.getName("type=float"));
    EXPECT_EQ("float", words.getValue("type=float"));
    EXPECT_EQ("type ", words.getName("type = float"));
    EXPECT_EQ(" float", words.getValue("type = float"));
    EXPECT_EQ("flag", words.getName("flag"));
    EXPECT_EQ("", words.getValue("flag"));
    EXPECT_EQ("", words.getName(""));
    EXPECT_EQ("", words.getValue(""));
    EXPECT_EQ("b", words.getValue("a=b=c"));
    EXPECT_EQ("v", words.getName("=v"));
}

TEST_F(EffectDefinitionParserTest, BlockStepsCanBeUsedAlone) {
    EffectDefinitionParser steps(scratch.pathOf("Steps.def"));
    Parameters* parameters = steps.parseParameters("a[default=1]; b[default=2]");
    Parameters* methods = steps.parseMethods("m(<event>)");
    EXPECT_EQ((std::vector<std::string>{"a", "b"}), namesOf(parameters));
    EXPECT_EQ((std::vector<std::string>{"m"}), namesOf(methods));
    Parameters* empty = steps.parseParameters("");
    EXPECT_EQ(0, empty->size());
    delete parameters;
    delete methods;
    delete empty;
}

// Deterministic damage to the example file: whatever comes out, the parser
// either gives a definition and stays valid, or gives none and says why.
std::string mutate(std::string text, std::mt19937& random) {
    static const std::string alphabet = "{}[]();=,<> \n\tab0.-/";
    std::uniform_int_distribution<int> operation(0, 3);
    std::uniform_int_distribution<int> count(1, 4);
    std::uniform_int_distribution<int> byte(0, 255);
    std::uniform_int_distribution<size_t> symbol(0, alphabet.size() - 1);
    int steps = count(random);
    for (int step = 0; step < steps; step++) {
        std::uniform_int_distribution<size_t> place(0, text.empty() ? 0 : text.size() - 1);
        switch (operation(random)) {
        case 0:
            if (!text.empty()) {
                text[place(random)] ^= static_cast<char>(1 << (byte(random) % 8));
            }
            break;
        case 1:
            text.resize(text.empty() ? 0 : place(random));
            break;
        case 2: {
            char c =
                byte(random) % 2 == 0 ? alphabet[symbol(random)] : static_cast<char>(byte(random));
            text.insert(text.empty() ? 0 : place(random), 1, c);
            break;
        }
        default:
            if (!text.empty()) {
                text.erase(place(random), 1);
            }
            break;
        }
    }
    return text;
}

TEST_F(EffectDefinitionParserTest, DamagedFilesNeverCrashAndEitherParseOrExplain) {
    std::mt19937 random(20240611u);
    int parsed = 0;
    int refused = 0;
    std::vector<std::string> inconsistent;
    testing::internal::CaptureStdout();
    for (int round = 0; round < 3000; round++) {
        std::string text = mutate(EXAMPLE_DEFINITION, random);
        std::string path = scratch.createFile("Fuzz.def", text);
        EffectDefinitionParser fuzzed(path);
        EffectDefinition* result = fuzzed.parse();
        bool consistent;
        if (result != nullptr) {
            parsed++;
            consistent =
                fuzzed.isValid() && fuzzed.getErrorMessage().empty() && !result->toString().empty();
            delete result;
        } else {
            refused++;
            consistent = !fuzzed.isValid() && !fuzzed.getErrorMessage().empty();
        }
        if (!consistent) {
            inconsistent.push_back(text);
        }
    }
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(std::vector<std::string>(), inconsistent);
    EXPECT_EQ(3000, parsed + refused);
    EXPECT_GT(parsed, 0);
    EXPECT_GT(refused, 0);
}

} // namespace
