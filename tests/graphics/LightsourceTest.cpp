#include "graphics/Lightsource.h"

#include "objects/Material.h"
#include "support/GLTestWindow.h"

#include <gtest/gtest.h>

#include <array>

namespace {

std::array<float, 4> lightValue(GLenum name) {
    std::array<float, 4> value{};
    glGetLightfv(GL_LIGHT0, name, value.data());
    return value;
}

void expectColour(Vector<float, 4> expected, std::array<float, 4> actual) {
    for (int i = 0; i < 4; i++) {
        EXPECT_FLOAT_EQ(expected[i], actual[i]) << "element " << i;
    }
}

} // namespace

TEST(Lightsource, StartsAtZeroZeroTwoWithTheDefaultGreyMaterial) {
    Lightsource light;
    Vector<float, 3> pos = light.getPos();
    EXPECT_EQ(0.0f, pos[0]);
    EXPECT_EQ(0.0f, pos[1]);
    EXPECT_EQ(2.0f, pos[2]);
    ASSERT_NE(nullptr, light.getMaterial());
    Vector<float, 4> ambient = light.getMaterial()->getAmbient();
    Vector<float, 4> diffuse = light.getMaterial()->getDiffuse();
    for (int i = 0; i < 3; i++) {
        EXPECT_FLOAT_EQ(0.75f, ambient[i]);
        EXPECT_FLOAT_EQ(0.75f, diffuse[i]);
    }
    EXPECT_FLOAT_EQ(1.0f, ambient[3]);
    EXPECT_FLOAT_EQ(1.0f, diffuse[3]);
}

TEST(Lightsource, SetPosTakesAVectorOrThreeFloats) {
    Lightsource light;
    light.setPos(vec3(1, -2, 3));
    EXPECT_EQ(1.0f, light.getPos()[0]);
    EXPECT_EQ(-2.0f, light.getPos()[1]);
    EXPECT_EQ(3.0f, light.getPos()[2]);
    light.setPos(4, 5, -6);
    EXPECT_EQ(4.0f, light.getPos()[0]);
    EXPECT_EQ(5.0f, light.getPos()[1]);
    EXPECT_EQ(-6.0f, light.getPos()[2]);
}

TEST(Lightsource, EachLightOwnsItsOwnMaterial) {
    Lightsource first;
    first.getMaterial()->setDiffuse(0.1f, 0.2f, 0.3f);
    first.setPos(7, 8, 9);

    Lightsource copy(first);
    EXPECT_NE(first.getMaterial(), copy.getMaterial());
    EXPECT_FLOAT_EQ(0.2f, copy.getMaterial()->getDiffuse()[1]);
    EXPECT_EQ(8.0f, copy.getPos()[1]);

    Lightsource fresh;
    Material* kept = first.getMaterial();
    first = fresh;
    EXPECT_EQ(kept, first.getMaterial());
    EXPECT_FLOAT_EQ(0.75f, first.getMaterial()->getDiffuse()[1]);
    EXPECT_EQ(2.0f, first.getPos()[2]);
    EXPECT_FLOAT_EQ(0.2f, copy.getMaterial()->getDiffuse()[1]);
}

TEST(Lightsource, FourthPositionElementIsASmallPositiveNumber) {
    EXPECT_GT(Lightsource::POSITION_W, 0.0f);
    EXPECT_LT(Lightsource::POSITION_W, 1.0e-3f);
}

class LightsourceGL : public GLTestWindow {
protected:
    // A quad over the whole window, facing +z, with GL's default front
    // material: ambient 0.2, diffuse 0.8, no specular, no emission.
    static void drawLitQuad() {
        loadIdentityMatrices();
        glClear(GL_COLOR_BUFFER_BIT);
        glBegin(GL_QUADS);
        glNormal3f(0.0f, 0.0f, 1.0f);
        glVertex3f(-1.0f, -1.0f, 0.0f);
        glVertex3f(1.0f, -1.0f, 0.0f);
        glVertex3f(1.0f, 1.0f, 0.0f);
        glVertex3f(-1.0f, 1.0f, 0.0f);
        glEnd();
    }

    // The red channel the fixed pipeline gives the quad for a light of grey
    // ambient and diffuse that falls in at an angle whose cosine is given.
    static int expectedRed(float ambient, float diffuse, float cosine) {
        const float sceneAmbient = 0.2f;
        const float materialAmbient = 0.2f;
        const float materialDiffuse = 0.8f;
        float red = sceneAmbient * materialAmbient + ambient * materialAmbient +
                    diffuse * materialDiffuse * cosine;
        return static_cast<int>(red * 255.0f + 0.5f);
    }
};

TEST_F(LightsourceGL, BuildingALightTouchesNoGLState) {
    std::array<float, 4> diffuseBefore = lightValue(GL_DIFFUSE);
    std::array<float, 4> positionBefore = lightValue(GL_POSITION);
    Lightsource light;
    light.setPos(5, 5, 5);
    EXPECT_EQ(diffuseBefore, lightValue(GL_DIFFUSE));
    EXPECT_EQ(positionBefore, lightValue(GL_POSITION));
    EXPECT_FALSE(glIsEnabled(GL_LIGHTING));
}

TEST_F(LightsourceGL, UpdateHandsAmbientDiffuseAndPositionToLightZero) {
    Lightsource light;
    light.update();
    expectColour(light.getMaterial()->getAmbient(), lightValue(GL_AMBIENT));
    expectColour(light.getMaterial()->getDiffuse(), lightValue(GL_DIFFUSE));
    std::array<float, 4> position = lightValue(GL_POSITION);
    EXPECT_FLOAT_EQ(0.0f, position[0]);
    EXPECT_FLOAT_EQ(0.0f, position[1]);
    EXPECT_FLOAT_EQ(2.0f, position[2]);
    EXPECT_FLOAT_EQ(Lightsource::POSITION_W, position[3]);
}

TEST_F(LightsourceGL, UpdateLeavesTheSpecularColourOfTheLightAlone) {
    std::array<float, 4> specularBefore = lightValue(GL_SPECULAR);
    Lightsource light;
    light.getMaterial()->setSpecular(0.1f, 0.2f, 0.3f, 0.4f);
    light.update();
    EXPECT_EQ(specularBefore, lightValue(GL_SPECULAR));
}

TEST_F(LightsourceGL, ColoursChangedThroughTheMaterialReachGLAtTheNextUpdate) {
    Lightsource light;
    light.update();
    light.getMaterial()->setAmbience(0.1f, 0.2f, 0.3f, 0.5f);
    light.getMaterial()->setDiffuse(0.6f, 0.7f, 0.8f);
    light.setPos(-1, 4, 0.5f);
    expectColour(Material().getAmbient(), lightValue(GL_AMBIENT));

    light.update();
    expectColour(light.getMaterial()->getAmbient(), lightValue(GL_AMBIENT));
    expectColour(light.getMaterial()->getDiffuse(), lightValue(GL_DIFFUSE));
    std::array<float, 4> position = lightValue(GL_POSITION);
    EXPECT_FLOAT_EQ(-1.0f, position[0]);
    EXPECT_FLOAT_EQ(4.0f, position[1]);
    EXPECT_FLOAT_EQ(0.5f, position[2]);
}

TEST_F(LightsourceGL, PositionIsTakenThroughTheModelviewInForce) {
    Lightsource light;
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glRotatef(90.0f, 0.0f, 1.0f, 0.0f);
    light.update();
    std::array<float, 4> position = lightValue(GL_POSITION);
    EXPECT_NEAR(2.0f, position[0], 1e-5);
    EXPECT_NEAR(0.0f, position[1], 1e-5);
    EXPECT_NEAR(0.0f, position[2], 1e-5);
}

TEST_F(LightsourceGL, EnableSwitchesOnLightingAndLightZero) {
    Lightsource light;
    light.enable();
    EXPECT_TRUE(glIsEnabled(GL_LIGHTING));
    EXPECT_TRUE(glIsEnabled(GL_LIGHT0));
}

TEST_F(LightsourceGL, DisableSwitchesOffLightingAndLightZero) {
    Lightsource light;
    light.enable();
    light.disable();
    EXPECT_FALSE(glIsEnabled(GL_LIGHTING));
    EXPECT_FALSE(glIsEnabled(GL_LIGHT0));
}

TEST_F(LightsourceGL, QuadFacingTheLightGetsAmbientAndFullDiffuse) {
    Lightsource light;
    light.enable();
    light.update();
    drawLitQuad();
    int expected = expectedRed(0.75f, 0.75f, 1.0f);
    for (int x : {2, 32, 61}) {
        GLTestWindow::Rgba pixel = readPixel(x, 32);
        EXPECT_NEAR(expected, pixel[0], 2) << "x " << x;
        EXPECT_EQ(pixel[0], pixel[1]);
        EXPECT_EQ(pixel[0], pixel[2]);
    }
}

TEST_F(LightsourceGL, LightFallsInParallelRaysFromTheSideOfItsPosition) {
    Lightsource light;
    light.setPos(1, 0, 1);
    light.enable();
    light.update();
    drawLitQuad();
    int left = readPixel(1, 32)[0];
    int right = readPixel(62, 32)[0];
    EXPECT_NEAR(left, right, 1);
    EXPECT_NEAR(expectedRed(0.75f, 0.75f, 0.70710678f), left, 2);

    // A lamp standing at the same place would light the near side more.
    GLfloat lamp[4] = {1.0f, 0.0f, 1.0f, 1.0f};
    glLightfv(GL_LIGHT0, GL_POSITION, lamp);
    drawLitQuad();
    EXPECT_GT(readPixel(62, 32)[0] - readPixel(1, 32)[0], 20);
}

TEST_F(LightsourceGL, DisabledLightLeavesTheQuadInItsPlainColour) {
    Lightsource light;
    light.enable();
    light.update();
    light.disable();
    glColor3f(0.0f, 1.0f, 0.0f);
    drawLitQuad();
    GLTestWindow::Rgba pixel = readPixel(32, 32);
    EXPECT_EQ(0, pixel[0]);
    EXPECT_EQ(255, pixel[1]);
    EXPECT_EQ(0, pixel[2]);
}
