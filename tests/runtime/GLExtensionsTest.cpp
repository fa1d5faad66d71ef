#include "runtime/GLExtensions.h"
#include "support/GLTestWindow.h"

#include <gtest/gtest.h>

using GLExtensionsList = GLTestWindow;

TEST_F(GLExtensionsList, FramebufferObjectExtensionOfTheDriverIsSupported) {
    GLExtensions extensions;
    EXPECT_TRUE(extensions.isSupported("GL_EXT_framebuffer_object"));
    EXPECT_FALSE(extensions.isSupported("GL_KVL_no_such_extension"));
}

TEST_F(GLExtensionsList, EmptyNameIsNotSupported) {
    GLExtensions extensions;
    EXPECT_FALSE(extensions.isSupported(""));
}

TEST_F(GLExtensionsList, DriverStringWithTrailingBlankGivesNoEmptyName) {
    std::string driver = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
    ASSERT_FALSE(driver.empty());
    GLExtensions extensions;
    std::string text = extensions.toString();
    EXPECT_NE(' ', text.front());
    EXPECT_EQ(std::string::npos, text.find("  "));
    EXPECT_EQ(" \n", text.substr(text.size() - 2));
}

TEST_F(GLExtensionsList, ListIsSortedByName) {
    GLExtensions extensions;
    std::string text = extensions.toString();
    EXPECT_LT(text.find("GL_ARB_"), text.find("GL_EXT_"));
}

TEST_F(GLExtensionsList, EmptyChecklistPasses) {
    GLExtensions extensions;
    EXPECT_TRUE(extensions.isSupported());
}

TEST_F(GLExtensionsList, ChecklistReportsEveryMissingNameNotOnlyTheFirst) {
    GLExtensions extensions;
    extensions.addToChecklist("GL_KVL_first");
    extensions.addToChecklist("GL_EXT_framebuffer_object");
    extensions.addToChecklist("GL_KVL_second");
    EXPECT_FALSE(extensions.isSupported());
    EXPECT_EQ("Error: Your OpenGL implementation is missing the following extensions :\n"
              " - GL_KVL_first\n"
              " - GL_KVL_second\n",
              extensions.getErrorMessage());
}
