#include "script/ScriptDefaults.h"

#include "script/EffectDefinition.h"
#include "script/ParameterGroup.h"
#include "script/Parameters.h"

#include <gtest/gtest.h>

namespace {

const char* const DESTRUCTOR_TRACE_OF_EMPTY_DEFINITION = "EffectDefinition::~EffectDefinition()\n"
                                                         "No Parameters\n"
                                                         "No Methods\n";

EffectDefinition* definitionWithDefault(const std::string& name, const std::string& value) {
    ParameterGroup* declaration = new ParameterGroup();
    declaration->addParameter("type", "int");
    declaration->addParameter("default", value);
    Parameters* parameters = new Parameters();
    parameters->addGroup(name, declaration);
    EffectDefinition* definition = new EffectDefinition();
    definition->setParameters(parameters);
    return definition;
}

void deleteQuietly(EffectDefinition* definition) {
    testing::internal::CaptureStdout();
    delete definition;
    testing::internal::GetCapturedStdout();
}

class ScriptDefaultsTest : public ::testing::Test {
protected:
    void TearDown() override {
        testing::internal::CaptureStdout();
        delete defaults;
        testing::internal::GetCapturedStdout();
    }

    ScriptDefaults* defaults = new ScriptDefaults();
};

TEST_F(ScriptDefaultsTest, StartsEmpty) {
    EXPECT_EQ(0, defaults->size());
    EXPECT_EQ("ScriptDefaults {\n}\n", defaults->toString());
}

TEST_F(ScriptDefaultsTest, StoresDefinitionsByName) {
    EffectDefinition* screen = new EffectDefinition();
    defaults->addEffectDefinition("screen", screen);
    EXPECT_EQ(1, defaults->size());
    EXPECT_EQ(screen, defaults->getEffectDefinition("screen"));
    EXPECT_TRUE(defaults->exists("screen"));
}

TEST_F(ScriptDefaultsTest, ReplacingADefinitionDoesNotReleaseTheOldOne) {
    EffectDefinition* first = new EffectDefinition();
    EffectDefinition* second = new EffectDefinition();
    defaults->addEffectDefinition("fx", first);
    testing::internal::CaptureStdout();
    defaults->addEffectDefinition("fx", second);
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
    EXPECT_EQ(1, defaults->size());
    EXPECT_EQ(second, defaults->getEffectDefinition("fx"));
    deleteQuietly(first);
}

TEST_F(ScriptDefaultsTest, LookingUpAnUnknownDefinitionEntersItAsNull) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EffectDefinition* unknown = defaults->getEffectDefinition("nothing");
    std::string out = testing::internal::GetCapturedStdout();
    std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(nullptr, unknown);
    EXPECT_EQ(1, defaults->size());
    EXPECT_EQ("", out);
    EXPECT_EQ("", err);
    testing::internal::CaptureStderr();
    EXPECT_TRUE(defaults->exists("nothing"));
    EXPECT_EQ("", testing::internal::GetCapturedStderr());
}

TEST_F(ScriptDefaultsTest, UnknownNameIsReportedOnTheErrorStream) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    bool found = defaults->exists("graphics");
    std::string out = testing::internal::GetCapturedStdout();
    std::string err = testing::internal::GetCapturedStderr();
    EXPECT_FALSE(found);
    EXPECT_EQ("ScriptDefaults::exists(graphics) - dont exist\n", err);
    EXPECT_EQ("", out);
}

TEST_F(ScriptDefaultsTest, DefaultsOfAnUnknownNamePrintTheNoticeAndAreNull) {
    testing::internal::CaptureStderr();
    ParameterGroup* group = defaults->getDefaults("textures");
    std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(nullptr, group);
    EXPECT_EQ("ScriptDefaults::exists(textures) - dont exist\n", err);
    EXPECT_EQ(0, defaults->size());
}

TEST_F(ScriptDefaultsTest, DefaultsOfAKnownNameAreANewGroupForTheCaller) {
    defaults->addEffectDefinition("screen", definitionWithDefault("width", "640"));
    testing::internal::CaptureStderr();
    ParameterGroup* first = defaults->getDefaults("screen");
    ParameterGroup* second = defaults->getDefaults("screen");
    EXPECT_EQ("", testing::internal::GetCapturedStderr());
    ASSERT_NE(nullptr, first);
    ASSERT_NE(nullptr, second);
    EXPECT_NE(first, second);
    EXPECT_EQ("parameters", first->getGroupName());
    EXPECT_EQ(1, first->size());
    EXPECT_EQ("640", first->getParameter("width"));
    first->addParameter("width", "800");
    EXPECT_EQ("640", second->getParameter("width"));
    delete first;
    delete second;
}

TEST_F(ScriptDefaultsTest, DefaultsOfANameEnteredAsNullAreNull) {
    defaults->getEffectDefinition("ghost");
    EXPECT_EQ(nullptr, defaults->getDefaults("ghost"));
}

TEST_F(ScriptDefaultsTest, PrintsEveryDefinitionUnderItsName) {
    defaults->addEffectDefinition("sound", new EffectDefinition());
    defaults->addEffectDefinition("screen", definitionWithDefault("width", "640"));
    EXPECT_EQ("ScriptDefaults {\n"
              "Definition : screen\n"
              "EffectDefinition {\n"
              "effect = \n"
              "width {\n"
              "    default = 640;\n"
              "    type = int;\n"
              "}\n"
              "\n"
              "No methods\n"
              "}\n"
              "\n"
              "Definition : sound\n"
              "EffectDefinition {\n"
              "effect = \n"
              "No Parameters\n"
              "No methods\n"
              "}\n"
              "\n"
              "}\n",
              defaults->toString());
}

TEST_F(ScriptDefaultsTest, DestructorDeletesEveryDefinition) {
    defaults->addEffectDefinition("a", new EffectDefinition());
    defaults->addEffectDefinition("b", new EffectDefinition());
    testing::internal::CaptureStdout();
    delete defaults;
    defaults = nullptr;
    std::string out = testing::internal::GetCapturedStdout();
    EXPECT_EQ(std::string(DESTRUCTOR_TRACE_OF_EMPTY_DEFINITION) +
                  DESTRUCTOR_TRACE_OF_EMPTY_DEFINITION,
              out);
}

} // namespace
