#include "script/EffectDefinition.h"

#include "script/ParameterGroup.h"
#include "script/Parameters.h"

#include <gtest/gtest.h>

namespace {

ParameterGroup* declaration(const std::string& type, const std::string& value) {
    ParameterGroup* group = new ParameterGroup();
    group->addParameter("type", type);
    group->addParameter("default", value);
    return group;
}

Parameters* twoParameters() {
    Parameters* parameters = new Parameters();
    parameters->addGroup("speed", declaration("float", "1.0"));
    parameters->addGroup("count", declaration("int", "16"));
    return parameters;
}

Parameters* oneMethod() {
    ParameterGroup* method = new ParameterGroup();
    method->addParameter("00", "<event>");
    method->addParameter("01", "<float>");
    Parameters* methods = new Parameters();
    methods->addGroup("setSpeed", method);
    return methods;
}

// Definitions trace their destruction on standard output.
class EffectDefinitionTest : public ::testing::Test {
protected:
    void TearDown() override {
        testing::internal::CaptureStdout();
        delete definition;
        testing::internal::GetCapturedStdout();
    }

    EffectDefinition* definition = new EffectDefinition("ExampleEffect");
};

TEST_F(EffectDefinitionTest, NewDefinitionDeclaresNothing) {
    EXPECT_FALSE(definition->hasParameters());
    EXPECT_FALSE(definition->hasMethods());
    EXPECT_EQ(nullptr, definition->getParameters());
    EXPECT_EQ(nullptr, definition->getMethods());
}

TEST_F(EffectDefinitionTest, UnnamedDefinitionPrintsAnEmptyName) {
    testing::internal::CaptureStdout();
    {
        EffectDefinition unnamed;
        EXPECT_FALSE(unnamed.hasParameters());
        EXPECT_FALSE(unnamed.hasMethods());
        EXPECT_EQ("EffectDefinition {\neffect = \nNo Parameters\nNo methods\n}\n",
                  unnamed.toString());
    }
    testing::internal::GetCapturedStdout();
}

TEST_F(EffectDefinitionTest, WithoutBlocksNoParameterOrMethodIsDeclared) {
    EXPECT_FALSE(definition->hasParameter("speed"));
    EXPECT_FALSE(definition->hasMethod("setSpeed"));
    EXPECT_EQ(nullptr, definition->getParameter("speed"));
    EXPECT_EQ(nullptr, definition->getMethod("setSpeed"));
}

TEST_F(EffectDefinitionTest, FindsDeclaredParametersAndMethods) {
    definition->setParameters(twoParameters());
    definition->setMethods(oneMethod());
    EXPECT_TRUE(definition->hasParameters());
    EXPECT_TRUE(definition->hasMethods());
    EXPECT_TRUE(definition->hasParameter("speed"));
    EXPECT_FALSE(definition->hasParameter("setSpeed"));
    EXPECT_TRUE(definition->hasMethod("setSpeed"));
    EXPECT_FALSE(definition->hasMethod("speed"));
    ASSERT_NE(nullptr, definition->getParameter("count"));
    EXPECT_EQ("int", definition->getParameter("count")->getParameter("type"));
    ASSERT_NE(nullptr, definition->getMethod("setSpeed"));
    EXPECT_EQ("<float>", definition->getMethod("setSpeed")->getParameter("01"));
    EXPECT_EQ(nullptr, definition->getParameter("nothing"));
    EXPECT_EQ(2, definition->getParameters()->size());
    EXPECT_EQ(1, definition->getMethods()->size());
}

TEST_F(EffectDefinitionTest, EmptyParametersBlockStillCountsAsPresent) {
    definition->setParameters(new Parameters());
    EXPECT_TRUE(definition->hasParameters());
    EXPECT_FALSE(definition->hasParameter("speed"));
}

TEST_F(EffectDefinitionTest, DefaultsHoldEveryDeclaredParameterWithItsDefault) {
    definition->setParameters(twoParameters());
    ParameterGroup* defaults = definition->getDefaults();
    ASSERT_NE(nullptr, defaults);
    EXPECT_EQ("parameters", defaults->getGroupName());
    EXPECT_EQ(2, defaults->size());
    EXPECT_EQ("count", defaults->getKey(0));
    EXPECT_EQ("16", defaults->getValue(0));
    EXPECT_EQ("speed", defaults->getKey(1));
    EXPECT_EQ("1.0", defaults->getValue(1));
    delete defaults;
}

TEST_F(EffectDefinitionTest, DefaultsOfAnEmptyParametersBlockAreEmpty) {
    definition->setParameters(new Parameters());
    ParameterGroup* defaults = definition->getDefaults();
    ASSERT_NE(nullptr, defaults);
    EXPECT_EQ(0, defaults->size());
    delete defaults;
}

TEST_F(EffectDefinitionTest, DefaultsWithoutParametersBlockEndTheProcess) {
    EXPECT_DEATH(definition->getDefaults(),
                 "terminate called after throwing an instance of 'std::logic_error'");
}

TEST_F(EffectDefinitionTest, PrintsNameAndMissingBlocks) {
    EXPECT_EQ("EffectDefinition {\n"
              "effect = ExampleEffect\n"
              "No Parameters\n"
              "No methods\n"
              "}\n",
              definition->toString());
}

TEST_F(EffectDefinitionTest, PrintsBothBlocksEachFollowedByALineEnd) {
    definition->setParameters(twoParameters());
    definition->setMethods(oneMethod());
    EXPECT_EQ("EffectDefinition {\n"
              "effect = ExampleEffect\n"
              "count {\n"
              "    default = 16;\n"
              "    type = int;\n"
              "}\n"
              "speed {\n"
              "    default = 1.0;\n"
              "    type = float;\n"
              "}\n"
              "\n"
              "setSpeed {\n"
              "    00 = <event>;\n"
              "    01 = <float>;\n"
              "}\n"
              "\n"
              "}\n",
              definition->toString());
}

TEST_F(EffectDefinitionTest, DestructorTracesMissingBlocks) {
    testing::internal::CaptureStdout();
    delete definition;
    definition = nullptr;
    EXPECT_EQ("EffectDefinition::~EffectDefinition()\n"
              "No Parameters\n"
              "No Methods\n",
              testing::internal::GetCapturedStdout());
}

TEST_F(EffectDefinitionTest, DestructorOfACompleteDefinitionTracesOneLine) {
    definition->setParameters(twoParameters());
    definition->setMethods(oneMethod());
    testing::internal::CaptureStdout();
    delete definition;
    definition = nullptr;
    EXPECT_EQ("EffectDefinition::~EffectDefinition()\n", testing::internal::GetCapturedStdout());
}

TEST_F(EffectDefinitionTest, DestructorTracesOnlyTheMissingBlock) {
    definition->setMethods(oneMethod());
    testing::internal::CaptureStdout();
    delete definition;
    definition = nullptr;
    EXPECT_EQ("EffectDefinition::~EffectDefinition()\n"
              "No Parameters\n",
              testing::internal::GetCapturedStdout());
}

TEST_F(EffectDefinitionTest, ParameterWithoutDefaultEndsTheProcess) {
    ParameterGroup* incomplete = new ParameterGroup();
    incomplete->addParameter("type", "int");
    Parameters* parameters = new Parameters();
    parameters->addGroup("count", incomplete);
    definition->setParameters(parameters);
    EXPECT_DEATH(definition->getDefaults(),
                 "terminate called after throwing an instance of 'std::out_of_range'");
}

} // namespace
