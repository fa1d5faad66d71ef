#include "graphics/ScreenQuad.h"
#include "graphics/Shader.h"
#include "runtime/DataShaderPool.h"
#include "runtime/KVLDemosys.h"
#include "runtime/ProgressBar.h"
#include "runtime/ResourceLoader.h"
#include "support/GLTestWindow.h"
#include "support/LoaderInWindowFixture.h"
#include "support/PlayerProcess.h"
#include "support/ProductionScript.h"
#include "support/ShaderSources.h"
#include "support/StdoutCapture.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

// The "shaders" block of a script, read by the loader inside a directory of
// its own that holds the definition files, the script and the shader files.

namespace {

// Red as strong as the uniform "level".
const std::string FRAGMENT = "#version 110\n"
                             "uniform float level;\n"
                             "void main() {\n"
                             "    gl_FragColor = vec4(level, 0.0, 0.0, 1.0);\n"
                             "}\n";

std::string script(const std::string& shaders) {
    ProductionScript production;
    production.paths = "definition = resources/definitions/; shaders = resources/shaders/; "
                       "misc = resources/misc/; sound = resources/music/;";
    production.blocks = shaders;
    return production.text();
}

std::vector<std::string> lines(const std::string& text) {
    return splitLines(text);
}

// The lines of the shader block: from its header to the next phase header.
std::vector<std::string> shaderBlockLines(const std::vector<std::string>& log) {
    std::vector<std::string> block;
    bool inside = false;
    for (const std::string& line : log) {
        if (line == "[Loading Shaders]") {
            inside = true;
        } else if (inside && !line.empty() && line[0] == '[') {
            break;
        }
        if (inside) {
            block.push_back(line);
        }
    }
    return block;
}

} // namespace

class ShaderBlock : public LoaderInWindowFixture {
protected:
    void writeShader(const std::string& stem, const std::string& vertex,
                     const std::string& fragment) {
        writeShaderPair(directory, stem, vertex, fragment);
    }

    // Parses the script and reads the data blocks; the log of the data blocks.
    std::vector<std::string> load(const std::string& shaders) {
        space.write(script(shaders));
        bool parsed = false;
        logOf([&] { parsed = loader.parseConfig(); });
        EXPECT_TRUE(parsed) << loader.getErrorMessage();
        return lines(logOf([&] { result = parsed && loader.loadDataFiles(); }));
    }

    bool result = false;
};

TEST_F(ShaderBlock, ScriptWithoutAShadersBlockSaysThereAreNoShadersToLoad) {
    std::vector<std::string> log = load("");
    EXPECT_TRUE(result) << loader.getErrorMessage();
    EXPECT_EQ((std::vector<std::string>{"[Loading Shaders]", "No shaders to load"}),
              shaderBlockLines(log));
    ASSERT_FALSE(log.empty());
    EXPECT_EQ("[Loading Shaders]", log.front());
    EXPECT_EQ(0, KVLDemosys::shaderPool->size());
}

TEST_F(ShaderBlock, EachEntryIsCompiledLinkedAndStoredUnderItsName) {
    writeShader("red", PASS_VERTEX, FRAGMENT);
    writeShader("blue", PASS_VERTEX, FRAGMENT);
    std::vector<std::string> log = load("shaders { second = blue; first = red; }");
    EXPECT_TRUE(result) << loader.getErrorMessage();
    EXPECT_TRUE(loader.isValid());
    EXPECT_EQ(
        (std::vector<std::string>{"[Loading Shaders]", "Shader path = resources/shaders/",
                                  "Loading shader first = red", "Loading shader second = blue"}),
        shaderBlockLines(log));
    ASSERT_EQ(2, KVLDemosys::shaderPool->size());
    ASSERT_TRUE(KVLDemosys::shaderPool->exists("first"));
    ASSERT_TRUE(KVLDemosys::shaderPool->exists("second"));
    EXPECT_EQ("Shader(Vertex source length = " + std::to_string(PASS_VERTEX.size()) +
                  ", Fragment source length = " + std::to_string(FRAGMENT.size()) + ")",
              KVLDemosys::shaderPool->getShader("first")->toString());
}

TEST_F(ShaderBlock, LoadedShaderIsReadyToDrawWithItsUniforms) {
    writeShader("red", PASS_VERTEX, FRAGMENT);
    load("shaders { red = red; }");
    ASSERT_TRUE(result) << loader.getErrorMessage();
    Shader* shader = KVLDemosys::shaderPool->getShader("red");
    ASSERT_NE(nullptr, shader);
    loadIdentityMatrices();
    glViewport(0, 0, WIDTH, HEIGHT);
    glClear(GL_COLOR_BUFFER_BIT);
    shader->use();
    shader->setUniform1f("level", 1.0f);
    ScreenQuad::draw();
    shader->release();
    EXPECT_EQ((Rgb{255, 0, 0}), readRgb(32, 32));
}

TEST_F(ShaderBlock, StemIsUsedAsItStandsBelowTheShaderPath) {
    writeShader("post/glow", PASS_VERTEX, FRAGMENT);
    std::vector<std::string> log = load("shaders { glow = post/glow; }");
    EXPECT_TRUE(result) << loader.getErrorMessage();
    EXPECT_EQ("Loading shader glow = post/glow", shaderBlockLines(log).back());
    EXPECT_TRUE(KVLDemosys::shaderPool->exists("glow"));
}

TEST_F(ShaderBlock, ShaderEntriesGiveNoTicks) {
    writeShader("red", PASS_VERTEX, FRAGMENT);
    writeShader("blue", PASS_VERTEX, FRAGMENT);
    load("shaders { a = red; b = blue; }");
    ASSERT_TRUE(result) << loader.getErrorMessage();
    ASSERT_NE(nullptr, loader.getProgressBar());
    EXPECT_EQ(0, loader.getProgressBar()->getTickCount());
}

TEST_F(ShaderBlock, MissingVertexFileStopsTheLoadAndMakesTheLoaderInvalid) {
    writeShader("glow", "", FRAGMENT);
    std::vector<std::string> log = load("shaders { glow = glow; }");
    EXPECT_FALSE(result);
    EXPECT_FALSE(loader.isValid());
    EXPECT_EQ("Vertex shader 'glow.vert' not found", loader.getErrorMessage());
    EXPECT_EQ((std::vector<std::string>{"[Loading Shaders]", "Shader path = resources/shaders/",
                                        "Loading shader glow = glow"}),
              log);
    EXPECT_FALSE(KVLDemosys::shaderPool->exists("glow"));
}

TEST_F(ShaderBlock, MissingFragmentFileStopsTheLoadButLeavesTheLoaderValid) {
    writeShader("glow", PASS_VERTEX, "");
    std::vector<std::string> log = load("shaders { glow = glow; }");
    EXPECT_FALSE(result);
    EXPECT_TRUE(loader.isValid());
    EXPECT_EQ("Fragement shader 'glow.frag' not found", loader.getErrorMessage());
    EXPECT_EQ((std::vector<std::string>{"[Loading Shaders]", "Shader path = resources/shaders/",
                                        "Loading shader glow = glow"}),
              log);
    EXPECT_FALSE(KVLDemosys::shaderPool->exists("glow"));
}

TEST_F(ShaderBlock, VertexCompileErrorNamesTheVertFileAndAppendsTheCompilerLog) {
    writeShader("glow", BROKEN_FRAGMENT, FRAGMENT);
    load("shaders { glow = glow; }");
    EXPECT_FALSE(result);
    EXPECT_FALSE(loader.isValid());
    const std::string fixed = "Error while compiling vertex shader\nShader: glow.vert\n";
    std::string message = loader.getErrorMessage();
    ASSERT_EQ(fixed, message.substr(0, fixed.size())) << message;
    EXPECT_GT(message.size(), fixed.size()) << "no compiler log";
}

TEST_F(ShaderBlock, FragmentCompileErrorNamesTheFragFileAndAppendsTheCompilerLog) {
    writeShader("glow", PASS_VERTEX, BROKEN_FRAGMENT);
    load("shaders { glow = glow; }");
    EXPECT_FALSE(result);
    EXPECT_FALSE(loader.isValid());
    const std::string fixed = "Error while compiling fragment shader\nShader: glow.frag\n";
    std::string message = loader.getErrorMessage();
    ASSERT_EQ(fixed, message.substr(0, fixed.size())) << message;
    EXPECT_NE(std::string::npos, message.find("notDeclaredAnywhere", fixed.size())) << message;
}

TEST_F(ShaderBlock, LinkErrorNamesTheStemWithoutAnExtension) {
    writeShader("glow", PASS_VERTEX, UNRESOLVED_FRAGMENT);
    load("shaders { glow = glow; }");
    EXPECT_FALSE(result);
    EXPECT_FALSE(loader.isValid());
    const std::string fixed = "Error while linking shader pair\nShader: glow\n";
    std::string message = loader.getErrorMessage();
    EXPECT_EQ(fixed, message.substr(0, fixed.size())) << message;
    EXPECT_FALSE(KVLDemosys::shaderPool->exists("glow"));
}

TEST_F(ShaderBlock, FirstFailingEntryStopsTheBlockAndLaterEntriesAreNeverRead) {
    writeShader("good", PASS_VERTEX, FRAGMENT);
    writeShader("bad", BROKEN_FRAGMENT, FRAGMENT);
    // Entries go in name order: a, b, c.
    std::vector<std::string> log = load("shaders { c = good; b = bad; a = good; }");
    EXPECT_FALSE(result);
    EXPECT_EQ((std::vector<std::string>{"[Loading Shaders]", "Shader path = resources/shaders/",
                                        "Loading shader a = good", "Loading shader b = bad"}),
              log);
    EXPECT_TRUE(KVLDemosys::shaderPool->exists("a"));
    EXPECT_FALSE(KVLDemosys::shaderPool->exists("b"));
    EXPECT_FALSE(KVLDemosys::shaderPool->exists("c"));
}
