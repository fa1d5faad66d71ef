#include "graphics/Shader.h"
#include "graphics/ScreenQuad.h"
#include "graphics/Texture.h"
#include "support/GLTestWindow.h"
#include "support/ShaderSources.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

// Paints the uniform colour; every uniform below is used, so none is
// optimised away.
const char* UNIFORM_FRAGMENT = "#version 110\n"
                               "uniform float x;\n"
                               "uniform int count;\n"
                               "uniform vec4 tint;\n"
                               "uniform vec4 rows[4];\n"
                               "void main() {\n"
                               "    float c = float(count);\n"
                               "    gl_FragColor = tint * x + rows[0] + rows[3] + vec4(c);\n"
                               "}\n";

const char* TEXTURE_FRAGMENT = "#version 110\n"
                               "uniform sampler2D picture;\n"
                               "void main() {\n"
                               "    gl_FragColor = texture2D(picture, gl_TexCoord[0].st);\n"
                               "}\n";

const char* BROKEN_SOURCE = "#version 110\n"
                            "void main() {\n"
                            "    gl_FragColor = undefinedThing;\n"
                            "}\n";

void drainGlErrors() {
    while (glGetError() != GL_NO_ERROR) {
    }
}

// A driver whose failed compile comes with an empty log.
void GLAPIENTRY emptyInfoLog(GLuint, GLsizei size, GLsizei* length, GLchar* log) {
    if (length != nullptr) {
        *length = 0;
    }
    if (log != nullptr && size > 0) {
        log[0] = '\0';
    }
}

// Stands in for the driver's shader log queries. An answering driver gives
// a fixed log; a strict one refuses the length query on a program name and
// leaves the length alone, and then writes into whatever buffer it is given.
struct LogQueries {
    static void install(bool answer) {
        answers = answer;
        lengthName = 0;
        logName = 0;
        realShaderiv = __glewGetShaderiv;
        realInfoLog = __glewGetShaderInfoLog;
        __glewGetShaderiv = shaderiv;
        __glewGetShaderInfoLog = infoLog;
    }
    static void uninstall() {
        __glewGetShaderiv = realShaderiv;
        __glewGetShaderInfoLog = realInfoLog;
    }
    static void GLAPIENTRY shaderiv(GLuint name, GLenum query, GLint* value) {
        if (query != GL_INFO_LOG_LENGTH) {
            realShaderiv(name, query, value);
            return;
        }
        lengthName = name;
        if (answers) {
            *value = static_cast<GLint>(LOG.size() + 1);
        }
    }
    static void GLAPIENTRY infoLog(GLuint name, GLsizei size, GLsizei* length, GLchar* log) {
        logName = name;
        std::string text = answers ? LOG : "stray bytes";
        GLsizei written = 0;
        for (; written + 1 < size && written < static_cast<GLsizei>(text.size()); written++) {
            log[written] = text[written];
        }
        if (size > 0) {
            log[written] = '\0';
        }
        if (length != nullptr) {
            *length = written;
        }
    }

    static inline const std::string LOG = "link log of the pair";
    static inline bool answers = true;
    static inline GLuint lengthName = 0;
    static inline GLuint logName = 0;
    static inline PFNGLGETSHADERIVPROC realShaderiv = nullptr;
    static inline PFNGLGETSHADERINFOLOGPROC realInfoLog = nullptr;
};

// A one-texel texture of the given colour, wrapped as the pools wrap theirs.
Texture* solidTexture(unsigned char r, unsigned char g, unsigned char b) {
    GLuint id = 0;
    glGenTextures(1, &id);
    glBindTexture(GL_TEXTURE_2D, id);
    unsigned char texel[4] = {r, g, b, 255};
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, texel);
    glBindTexture(GL_TEXTURE_2D, 0);
    Texture* texture = new Texture("solid", id);
    texture->setSize(1, 1);
    return texture;
}

} // namespace

class ShaderTest : public GLTestWindow {
protected:
    void TearDown() override {
        glUseProgram(0);
        shader.reset();
        if (texture != nullptr) {
            testing::internal::CaptureStdout();
            delete texture;
            testing::internal::GetCapturedStdout();
        }
        GLTestWindow::TearDown();
    }

    Shader& build(const char* fragment) {
        shader.reset(new Shader());
        EXPECT_TRUE(shader->setVertexSource(PASS_VERTEX)) << shader->getErrorMessage();
        EXPECT_TRUE(shader->setFragmentSource(fragment)) << shader->getErrorMessage();
        EXPECT_TRUE(shader->link()) << shader->getErrorMessage();
        return *shader;
    }

    GLint currentProgram() const {
        GLint name = 0;
        glGetIntegerv(GL_CURRENT_PROGRAM, &name);
        return name;
    }

    float readFloat(const char* name) {
        GLfloat value = -1.0f;
        glGetUniformfv(currentProgram(), glGetUniformLocation(currentProgram(), name), &value);
        return value;
    }

    std::unique_ptr<Shader> shader;
    Texture* texture = nullptr;
};

TEST_F(ShaderTest, FreshShaderShowsZeroForBothSourceLengths) {
    shader.reset(new Shader());
    EXPECT_EQ("Shader(Vertex source length = 0, Fragment source length = 0)", shader->toString());
    EXPECT_EQ("", shader->getErrorMessage());
}

TEST_F(ShaderTest, ToStringCountsTheCharactersOfEachSource) {
    build(TEXTURE_FRAGMENT);
    EXPECT_EQ("Shader(Vertex source length = " + std::to_string(std::string(PASS_VERTEX).size()) +
                  ", Fragment source length = " +
                  std::to_string(std::string(TEXTURE_FRAGMENT).size()) + ")",
              shader->toString());
}

TEST_F(ShaderTest, LinkedProgramDrawsWithTheUniformsSet) {
    Shader& s = build(UNIFORM_FRAGMENT);
    s.use();
    s.setUniform1f("x", 1.0f);
    s.setUniform4f("tint", 0.0f, 1.0f, 0.0f, 1.0f);
    ScreenQuad::draw();
    EXPECT_EQ((Rgb{0, 255, 0}), readRgb(10, 10));
    s.setUniform4f("tint", 1.0f, 0.0f, 0.0f, 1.0f);
    s.setUniform1f("x", 0.5f);
    ScreenQuad::draw();
    Rgb pixel = readRgb(10, 10);
    EXPECT_NEAR(128, pixel[0], 1);
    EXPECT_EQ(0, pixel[1]);
}

TEST_F(ShaderTest, FailedVertexCompileReturnsFalseWithTheCompilerLog) {
    shader.reset(new Shader());
    EXPECT_FALSE(shader->setVertexSource(BROKEN_SOURCE));
    EXPECT_NE("", shader->getErrorMessage());
    EXPECT_NE(std::string::npos, shader->getErrorMessage().find("undefinedThing"))
        << shader->getErrorMessage();
}

TEST_F(ShaderTest, LogsOfTwoFailedCompilesFollowEachOtherWithoutASeparator) {
    Shader single;
    EXPECT_FALSE(single.setFragmentSource(BROKEN_SOURCE));
    std::string once = single.getErrorMessage();
    ASSERT_NE("", once);

    shader.reset(new Shader());
    EXPECT_FALSE(shader->setVertexSource(BROKEN_SOURCE));
    EXPECT_FALSE(shader->setFragmentSource(BROKEN_SOURCE));
    std::string vertexLog =
        shader->getErrorMessage().substr(0, shader->getErrorMessage().size() - once.size());
    EXPECT_NE("", vertexLog);
    EXPECT_EQ(vertexLog + once, shader->getErrorMessage());
}

TEST_F(ShaderTest, FailedCompileWithAnEmptyLogLeavesTheMessageUnchangedButReturnsFalse) {
    shader.reset(new Shader());
    EXPECT_TRUE(shader->setVertexSource(PASS_VERTEX));
    PFNGLGETSHADERINFOLOGPROC real = __glewGetShaderInfoLog;
    __glewGetShaderInfoLog = emptyInfoLog;
    bool compiled = shader->setFragmentSource(BROKEN_SOURCE);
    __glewGetShaderInfoLog = real;
    EXPECT_FALSE(compiled);
    EXPECT_EQ("", shader->getErrorMessage());
}

TEST_F(ShaderTest, FailedLinkReturnsFalseAndLeavesNoProgramCurrent) {
    shader.reset(new Shader());
    ASSERT_TRUE(shader->setVertexSource(PASS_VERTEX));
    ASSERT_TRUE(shader->setFragmentSource(UNRESOLVED_FRAGMENT)) << shader->getErrorMessage();
    EXPECT_FALSE(shader->link());
    EXPECT_EQ(0, currentProgram());
    EXPECT_EQ(std::string::npos, shader->getErrorMessage().find('\0'));
}

TEST_F(ShaderTest, FailedLinkReadsItsLogThroughTheShaderCallsWithTheProgramName) {
    shader.reset(new Shader());
    ASSERT_TRUE(shader->setVertexSource(PASS_VERTEX));
    ASSERT_TRUE(shader->setFragmentSource(UNRESOLVED_FRAGMENT));
    LogQueries::install(true);
    bool linked = shader->link();
    LogQueries::uninstall();
    EXPECT_FALSE(linked);
    ASSERT_NE(0u, LogQueries::lengthName);
    EXPECT_TRUE(glIsProgram(LogQueries::lengthName));
    EXPECT_EQ(LogQueries::lengthName, LogQueries::logName);
    EXPECT_EQ("link log of the pair", shader->getErrorMessage());
}

TEST_F(ShaderTest, RefusedLogLengthQueryAfterAFailedLinkCountsAsAnEmptyLog) {
    shader.reset(new Shader());
    ASSERT_TRUE(shader->setVertexSource(PASS_VERTEX));
    ASSERT_TRUE(shader->setFragmentSource(UNRESOLVED_FRAGMENT));
    LogQueries::install(false);
    bool linked = shader->link();
    LogQueries::uninstall();
    EXPECT_FALSE(linked);
    EXPECT_NE(0u, LogQueries::logName);
    EXPECT_EQ("", shader->getErrorMessage());
}

TEST_F(ShaderTest, MissingUniformIsReportedOnEveryCallOfTheFloatSetter) {
    Shader& s = build(UNIFORM_FRAGMENT);
    s.use();
    testing::internal::CaptureStdout();
    s.setUniform1f("glow", 1.0f);
    s.setUniform1f("glow", 2.0f);
    EXPECT_EQ("Error: Uniform variable 'glow' not found!\n"
              "Error: Uniform variable 'glow' not found!\n",
              testing::internal::GetCapturedStdout());
    EXPECT_EQ(static_cast<GLenum>(GL_NO_ERROR), glGetError());
}

TEST_F(ShaderTest, MissingUniformIsReportedByTheIntegerSetterToo) {
    Shader& s = build(UNIFORM_FRAGMENT);
    s.use();
    testing::internal::CaptureStdout();
    s.setUniform1i("steps", 3);
    EXPECT_EQ("Error: Uniform variable 'steps' not found!\n",
              testing::internal::GetCapturedStdout());
}

TEST_F(ShaderTest, UniformOptimisedAwayByTheCompilerCountsAsMissing) {
    const char* unused = "#version 110\n"
                         "uniform float ignored;\n"
                         "void main() { gl_FragColor = vec4(1.0); }\n";
    Shader& s = build(unused);
    s.use();
    testing::internal::CaptureStdout();
    s.setUniform1f("ignored", 1.0f);
    EXPECT_EQ("Error: Uniform variable 'ignored' not found!\n",
              testing::internal::GetCapturedStdout());
}

TEST_F(ShaderTest, IntegerSetterOnAFloatUniformGivesThreePointZero) {
    Shader& s = build(UNIFORM_FRAGMENT);
    s.use();
    s.setUniform1i("x", 3);
    EXPECT_EQ(static_cast<GLenum>(GL_NO_ERROR), glGetError());
    EXPECT_FLOAT_EQ(3.0f, readFloat("x"));
}

TEST_F(ShaderTest, IntegerSetterOnAnIntegerUniformRaisesAGLError) {
    Shader& s = build(UNIFORM_FRAGMENT);
    s.use();
    drainGlErrors();
    s.setUniform1i("count", 3);
    EXPECT_EQ(static_cast<GLenum>(GL_INVALID_OPERATION), glGetError());
    GLint value = -1;
    glGetUniformiv(currentProgram(), glGetUniformLocation(currentProgram(), "count"), &value);
    EXPECT_EQ(0, value);
}

TEST_F(ShaderTest, FourFloatSettersStaySilentOnAMissingUniform) {
    Shader& s = build(UNIFORM_FRAGMENT);
    s.use();
    drainGlErrors();
    testing::internal::CaptureStdout();
    s.setUniform4f("blurstep", 1.0f, 2.0f, 3.0f, 4.0f);
    s.setUniform4fv("blurstep", Vector<float, 4>());
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
    EXPECT_EQ(static_cast<GLenum>(GL_NO_ERROR), glGetError());
}

TEST_F(ShaderTest, FourFloatSetterSetsAllFourComponents) {
    Shader& s = build(UNIFORM_FRAGMENT);
    s.use();
    s.setUniform4f("tint", 0.25f, 0.5f, 0.75f, 1.0f);
    GLfloat values[4] = {};
    glGetUniformfv(currentProgram(), glGetUniformLocation(currentProgram(), "tint"), values);
    EXPECT_FLOAT_EQ(0.25f, values[0]);
    EXPECT_FLOAT_EQ(0.5f, values[1]);
    EXPECT_FLOAT_EQ(0.75f, values[2]);
    EXPECT_FLOAT_EQ(1.0f, values[3]);
}

TEST_F(ShaderTest, VectorSetterSendsFourVectorsSoAPlainVec4RefusesIt) {
    Shader& s = build(UNIFORM_FRAGMENT);
    s.use();
    drainGlErrors();
    Vector<float, 4> v;
    v[0] = 1.0f;
    s.setUniform4fv("tint", v);
    EXPECT_EQ(static_cast<GLenum>(GL_INVALID_OPERATION), glGetError());
}

TEST_F(ShaderTest, VectorSetterFillsTheFirstOfFourArrayElementsAndZeroesTheOthers) {
    Shader& s = build(UNIFORM_FRAGMENT);
    s.use();
    GLint program = currentProgram();
    glUniform4f(glGetUniformLocation(program, "rows[3]"), 9.0f, 9.0f, 9.0f, 9.0f);
    Vector<float, 4> v;
    v[0] = 0.1f;
    v[1] = 0.2f;
    v[2] = 0.3f;
    v[3] = 0.4f;
    s.setUniform4fv("rows", v);
    EXPECT_EQ(static_cast<GLenum>(GL_NO_ERROR), glGetError());
    GLfloat first[4] = {};
    GLfloat last[4] = {-1, -1, -1, -1};
    glGetUniformfv(program, glGetUniformLocation(program, "rows[0]"), first);
    glGetUniformfv(program, glGetUniformLocation(program, "rows[3]"), last);
    for (int i = 0; i < 4; i++) {
        EXPECT_FLOAT_EQ(v[i], first[i]);
        EXPECT_FLOAT_EQ(0.0f, last[i]);
    }
}

TEST_F(ShaderTest, TextureOnUnitZeroIsSampledByTheNamedSampler) {
    Shader& s = build(TEXTURE_FRAGMENT);
    texture = solidTexture(200, 40, 90);
    s.use();
    s.setTextureUnit0("picture", texture);
    ScreenQuad::draw();
    EXPECT_EQ((Rgb{200, 40, 90}), readRgb(32, 32));
}

TEST_F(ShaderTest, TextureSetterBindsEvenWhenTheSamplerIsMissing) {
    Shader& s = build(UNIFORM_FRAGMENT);
    texture = solidTexture(1, 2, 3);
    s.use();
    drainGlErrors();
    testing::internal::CaptureStdout();
    s.setTextureUnit0("picture", texture);
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
    GLint bound = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
    EXPECT_EQ(static_cast<GLint>(texture->getID()), bound);
    EXPECT_TRUE(glIsEnabled(GL_TEXTURE_2D));
    EXPECT_EQ(static_cast<GLenum>(GL_NO_ERROR), glGetError());
}

TEST_F(ShaderTest, AfterTheSecondUnitIsSetUnitZeroIsActiveAndUnitOneTexturesUntilRelease) {
    Shader& s = build(TEXTURE_FRAGMENT);
    texture = solidTexture(10, 20, 30);
    s.use();
    s.setTextureUnit1("picture", texture);
    GLint active = 0;
    glGetIntegerv(GL_ACTIVE_TEXTURE, &active);
    EXPECT_EQ(GL_TEXTURE0, active);
    glActiveTexture(GL_TEXTURE1);
    EXPECT_TRUE(glIsEnabled(GL_TEXTURE_2D));
    GLint bound = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
    EXPECT_EQ(static_cast<GLint>(texture->getID()), bound);
    glActiveTexture(GL_TEXTURE0);

    GLint sampler = -1;
    glGetUniformiv(currentProgram(), glGetUniformLocation(currentProgram(), "picture"), &sampler);
    EXPECT_EQ(1, sampler);

    s.release();
    glActiveTexture(GL_TEXTURE1);
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D));
    glActiveTexture(GL_TEXTURE0);
}

TEST_F(ShaderTest, ReleaseLeavesNoProgramNoTexturingAndUnitZeroActive) {
    Shader& s = build(TEXTURE_FRAGMENT);
    s.use();
    EXPECT_NE(0, currentProgram());
    glActiveTexture(GL_TEXTURE0);
    glEnable(GL_TEXTURE_2D);
    glActiveTexture(GL_TEXTURE1);
    glEnable(GL_TEXTURE_2D);
    s.release();
    EXPECT_EQ(0, currentProgram());
    GLint active = 0;
    glGetIntegerv(GL_ACTIVE_TEXTURE, &active);
    EXPECT_EQ(GL_TEXTURE0, active);
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D));
    glActiveTexture(GL_TEXTURE1);
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D));
    glActiveTexture(GL_TEXTURE0);
}

TEST_F(ShaderTest, DestructorDeletesTheProgramAndBothShadersSilently) {
    Shader& s = build(UNIFORM_FRAGMENT);
    s.use();
    GLint program = currentProgram();
    GLuint attached[2] = {0, 0};
    GLsizei count = 0;
    glGetAttachedShaders(program, 2, &count, attached);
    ASSERT_EQ(2, count);
    glUseProgram(0);
    testing::internal::CaptureStdout();
    shader.reset();
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
    EXPECT_FALSE(glIsProgram(program));
    EXPECT_FALSE(glIsShader(attached[0]));
    EXPECT_FALSE(glIsShader(attached[1]));
}
