#include "objects/Material.h"

#include "ObjectTestSupport.h"
#include "graphics/Texture.h"
#include "support/GLTestWindow.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>

namespace {

void expectColour(float r, float g, float b, float a, Vector<float, 4> colour) {
    EXPECT_FLOAT_EQ(r, colour[0]);
    EXPECT_FLOAT_EQ(g, colour[1]);
    EXPECT_FLOAT_EQ(b, colour[2]);
    EXPECT_FLOAT_EQ(a, colour[3]);
}

const std::string DEFAULT_COLOURS = "Material {\n"
                                    "  diffuse = 0.75,0.75,0.75;\n"
                                    "  ambient = 0.75,0.75,0.75;\n"
                                    "  specular = 0.5,0.5,0.5;\n"
                                    "  emission = 0,0,0;\n";

} // namespace

TEST(Material, StartsGreyWithShinynessTenAndNoTextures) {
    Material material;
    expectColour(0.75f, 0.75f, 0.75f, 1.0f, material.getDiffuse());
    expectColour(0.0f, 0.0f, 0.0f, 1.0f, material.getEmissive());
    expectColour(0.5f, 0.5f, 0.5f, 1.0f, material.getSpecular());
    expectColour(0.75f, 0.75f, 0.75f, 1.0f, material.getAmbient());
    EXPECT_EQ(10.0f, material.getShinyness());
    EXPECT_EQ(0.0f, material.getTransparency());
    EXPECT_EQ(nullptr, material.getTexture1());
    EXPECT_EQ(nullptr, material.getTexture2());
    EXPECT_FALSE(material.hasTexture());
    EXPECT_FALSE(material.hasMultiTexture());
    EXPECT_EQ("", material.getName());
}

TEST(Material, ThreeNumberSettersKeepTheAlpha) {
    Material material;
    material.setDiffuse(0.1f, 0.2f, 0.3f, 0.4f);
    material.setDiffuse(0.5f, 0.6f, 0.7f);
    expectColour(0.5f, 0.6f, 0.7f, 0.4f, material.getDiffuse());
    material.setAmbience(0.1f, 0.2f, 0.3f, 0.5f);
    material.setAmbience(0.9f, 0.8f, 0.7f);
    expectColour(0.9f, 0.8f, 0.7f, 0.5f, material.getAmbient());
    material.setEmissive(0.1f, 0.2f, 0.3f, 0.6f);
    material.setEmissive(0.4f, 0.4f, 0.4f);
    expectColour(0.4f, 0.4f, 0.4f, 0.6f, material.getEmissive());
    material.setSpecular(0.1f, 0.2f, 0.3f, 0.7f);
    material.setSpecular(1.0f, 1.0f, 1.0f);
    expectColour(1.0f, 1.0f, 1.0f, 0.7f, material.getSpecular());
}

TEST(Material, VectorSettersTakeAllFourValues) {
    Material material;
    material.setDiffuse(vec4(0.1f, 0.2f, 0.3f, 0.4f));
    material.setAmbience(vec4(0.2f, 0.3f, 0.4f, 0.5f));
    material.setEmissive(vec4(0.3f, 0.4f, 0.5f, 0.6f));
    material.setSpecular(vec4(0.4f, 0.5f, 0.6f, 0.7f));
    expectColour(0.1f, 0.2f, 0.3f, 0.4f, material.getDiffuse());
    expectColour(0.2f, 0.3f, 0.4f, 0.5f, material.getAmbient());
    expectColour(0.3f, 0.4f, 0.5f, 0.6f, material.getEmissive());
    expectColour(0.4f, 0.5f, 0.6f, 0.7f, material.getSpecular());
}

TEST(Material, ShinynessIsGivenAsAWholeNumberAndReadAsAFloat) {
    Material material;
    material.setShinyness(64);
    EXPECT_EQ(64.0f, material.getShinyness());
}

TEST(Material, TransparencyAndNameAreKept) {
    Material material;
    material.setTransparency(0.25f);
    material.setName("steel");
    EXPECT_EQ(0.25f, material.getTransparency());
    EXPECT_EQ("steel", material.getName());
}

TEST(Material, ACopyHasColoursOfItsOwn) {
    Material material;
    Material copy(material);
    copy.setDiffuse(0.1f, 0.2f, 0.3f);
    EXPECT_FLOAT_EQ(0.75f, material.getDiffuse()[0]);
    EXPECT_FLOAT_EQ(0.1f, copy.getDiffuse()[0]);
}

TEST(Material, TextFormShowsRedGreenAndBlueOfEachColourAndNoneForTheTextures) {
    Material material;
    material.setDiffuse(0.5f, 0.25f, 1.0f, 0.125f);
    material.setEmissive(0.1f, 0.2f, 0.3f);
    EXPECT_EQ("Material {\n"
              "  diffuse = 0.5,0.25,1;\n"
              "  ambient = 0.75,0.75,0.75;\n"
              "  specular = 0.5,0.5,0.5;\n"
              "  emission = 0.1,0.2,0.3;\n"
              "  texture1 = none\n"
              "  texture2 = none;\n"
              "}\n",
              material.toString());
}

class MaterialWithTextures : public GLTestWindow {
protected:
    void SetUp() override {
        GLTestWindow::SetUp();
        const unsigned char texels[12] = {};
        first = makeTexture(texels);
        second = makeTexture(texels);
        first->setFilename("first.png");
        second->setFilename("second.png");
    }

    void TearDown() override {
        testing::internal::CaptureStdout();
        delete first;
        delete second;
        testing::internal::GetCapturedStdout();
        GLTestWindow::TearDown();
    }

    Texture* first = nullptr;
    Texture* second = nullptr;
};

TEST_F(MaterialWithTextures, ASecondTextureWithoutAFirstReadsNoneTwiceAndIsNoMultiTexture) {
    Material material;
    material.setTexture2(second);
    EXPECT_EQ(second, material.getTexture2());
    EXPECT_FALSE(material.hasTexture());
    EXPECT_FALSE(material.hasMultiTexture());
    EXPECT_EQ(DEFAULT_COLOURS + "  texture1 = none\n  texture2 = none;\n}\n", material.toString());
}

TEST_F(MaterialWithTextures, AFirstTextureAloneIsShownAndTheSecondReadsNone) {
    Material material;
    material.setTexture1(first);
    EXPECT_TRUE(material.hasTexture());
    EXPECT_FALSE(material.hasMultiTexture());
    EXPECT_EQ(DEFAULT_COLOURS + "  texture1 = " + first->toString() + "  texture2 = none;\n}\n",
              material.toString());
}

TEST_F(MaterialWithTextures, BothTexturesAreShownAndMakeAMultiTexture) {
    Material material;
    material.setTexture1(first);
    material.setTexture2(second);
    EXPECT_TRUE(material.hasMultiTexture());
    EXPECT_EQ(DEFAULT_COLOURS + "  texture1 = " + first->toString() +
                  "  texture2 = " + second->toString() + ";\n}\n",
              material.toString());
}

TEST_F(MaterialWithTextures, DestroyingAMaterialLeavesItsTextures) {
    Material* material = new Material();
    material->setTexture1(first);
    material->setTexture2(second);
    delete material;
    EXPECT_TRUE(glIsTexture(first->getID()));
    EXPECT_TRUE(glIsTexture(second->getID()));
    EXPECT_EQ("first.png", first->getFilename());
}

TEST_F(MaterialWithTextures, DrawMaterialHandsColoursAndShininessToTheFrontFacesOnly) {
    Material material;
    material.setAmbience(0.1f, 0.2f, 0.3f, 0.4f);
    material.setDiffuse(0.5f, 0.6f, 0.7f, 0.8f);
    material.setSpecular(0.9f, 0.8f, 0.7f, 0.6f);
    material.setEmissive(0.05f, 0.15f, 0.25f, 0.35f);
    material.setShinyness(42);
    material.setTexture1(first);
    std::array<float, 4> backBefore{};
    glGetMaterialfv(GL_BACK, GL_DIFFUSE, backBefore.data());

    material.drawMaterial();

    const GLenum names[4] = {GL_AMBIENT, GL_DIFFUSE, GL_SPECULAR, GL_EMISSION};
    const Vector<float, 4> colours[4] = {material.getAmbient(), material.getDiffuse(),
                                         material.getSpecular(), material.getEmissive()};
    for (int i = 0; i < 4; i++) {
        std::array<float, 4> value{};
        glGetMaterialfv(GL_FRONT, names[i], value.data());
        for (int c = 0; c < 4; c++) {
            EXPECT_FLOAT_EQ(colours[i][c], value[c]) << "colour " << i << " element " << c;
        }
    }
    float shininess = 0.0f;
    glGetMaterialfv(GL_FRONT, GL_SHININESS, &shininess);
    EXPECT_FLOAT_EQ(42.0f, shininess);
    std::array<float, 4> backAfter{};
    glGetMaterialfv(GL_BACK, GL_DIFFUSE, backAfter.data());
    EXPECT_EQ(backBefore, backAfter);
    GLint bound = -1;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
    EXPECT_EQ(0, bound) << "the textures are not touched";
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D));
}
