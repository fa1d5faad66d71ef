#include "graphics/Quaternion.h"

#include "support/GLTestWindow.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

namespace {

const double PI = 3.141592653589793;

Quaternion axisRotation(float degrees, float ax, float ay, float az) {
    double half = degrees / 180.0 * PI * 0.5;
    float s = static_cast<float>(sin(half));
    return Quaternion(static_cast<float>(cos(half)), s * ax, s * ay, s * az);
}

void expectQuaternionNear(const Quaternion& expected, const Quaternion& actual) {
    EXPECT_NEAR(expected.getW(), actual.getW(), 1e-6);
    EXPECT_NEAR(expected.getX(), actual.getX(), 1e-6);
    EXPECT_NEAR(expected.getY(), actual.getY(), 1e-6);
    EXPECT_NEAR(expected.getZ(), actual.getZ(), 1e-6);
}

} // namespace

TEST(Quaternion, NewQuaternionIsTheIdentity) {
    Quaternion q;
    EXPECT_EQ(1.0f, q.getW());
    EXPECT_EQ(0.0f, q.getX());
    EXPECT_EQ(0.0f, q.getY());
    EXPECT_EQ(0.0f, q.getZ());
}

TEST(Quaternion, HoldsFourFloatsInTheOrderWXYZ) {
    EXPECT_EQ(4 * sizeof(float), sizeof(Quaternion));
    Quaternion q(0.1f, 0.2f, 0.3f, 0.4f);
    float fields[4];
    std::memcpy(fields, &q, sizeof(fields));
    EXPECT_EQ(0.1f, fields[0]);
    EXPECT_EQ(0.2f, fields[1]);
    EXPECT_EQ(0.3f, fields[2]);
    EXPECT_EQ(0.4f, fields[3]);
}

TEST(Quaternion, ProductOfIAndJIsKButJAndIGivesMinusK) {
    Quaternion i(0, 1, 0, 0);
    Quaternion j(0, 0, 1, 0);
    expectQuaternionNear(Quaternion(0, 0, 0, 1), i * j);
    expectQuaternionNear(Quaternion(0, 0, 0, -1), j * i);
}

TEST(Quaternion, ProductFollowsHamiltonsRuleForGeneralValues) {
    Quaternion a(1, 2, 3, 4);
    Quaternion b(5, 6, 7, 8);
    Quaternion p = a * b;
    EXPECT_FLOAT_EQ(1 * 5 - 2 * 6 - 3 * 7 - 4 * 8, p.getW());
    EXPECT_FLOAT_EQ(1 * 6 + 2 * 5 + 3 * 8 - 4 * 7, p.getX());
    EXPECT_FLOAT_EQ(1 * 7 + 3 * 5 + 4 * 6 - 2 * 8, p.getY());
    EXPECT_FLOAT_EQ(1 * 8 + 4 * 5 + 2 * 7 - 3 * 6, p.getZ());
}

TEST(Quaternion, IdentityTimesAnyRotationIsThatRotation) {
    Quaternion r = axisRotation(37.0f, 0, 1, 0);
    expectQuaternionNear(r, Quaternion() * r);
    expectQuaternionNear(r, r * Quaternion());
}

TEST(Quaternion, IdentityGivesTheIdentityMatrix) {
    Matrix m = Quaternion().getMatrix();
    for (int i = 0; i < 16; i++) {
        EXPECT_EQ((i % 5 == 0) ? 1.0f : 0.0f, m[i]) << "element " << i;
    }
}

class QuaternionGL : public GLTestWindow {
protected:
    static void expectMatchesGlRotate(const Matrix& m, float degrees, float ax, float ay,
                                      float az) {
        GLfloat expected[16];
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        glRotatef(degrees, ax, ay, az);
        glGetFloatv(GL_MODELVIEW_MATRIX, expected);
        for (int i = 0; i < 16; i++) {
            EXPECT_NEAR(expected[i], m[i], 1e-6) << "element " << i;
        }
    }
};

TEST_F(QuaternionGL, MatrixRotatesLikeGlRotateAboutEachAxis) {
    expectMatchesGlRotate(axisRotation(30.0f, 1, 0, 0).getMatrix(), 30.0f, 1, 0, 0);
    expectMatchesGlRotate(axisRotation(-75.0f, 0, 1, 0).getMatrix(), -75.0f, 0, 1, 0);
    expectMatchesGlRotate(axisRotation(120.0f, 0, 0, 1).getMatrix(), 120.0f, 0, 0, 1);
}

TEST_F(QuaternionGL, MatrixOfAProductAppliesTheLeftRotationLast) {
    Matrix m = (axisRotation(20.0f, 1, 0, 0) * axisRotation(50.0f, 0, 1, 0)).getMatrix();
    GLfloat expected[16];
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glRotatef(20.0f, 1, 0, 0);
    glRotatef(50.0f, 0, 1, 0);
    glGetFloatv(GL_MODELVIEW_MATRIX, expected);
    for (int i = 0; i < 16; i++) {
        EXPECT_NEAR(expected[i], m[i], 1e-6) << "element " << i;
    }
}
