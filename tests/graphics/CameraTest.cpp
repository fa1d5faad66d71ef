#include "graphics/Camera.h"

#include "support/GLTestWindow.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>

namespace {

const double PI = 3.141592653589793;

// The window may have no alpha channel, so pixels are compared by colour.
std::array<int, 3> rgb(GLTestWindow::Rgba pixel) {
    return {pixel[0], pixel[1], pixel[2]};
}

const std::array<int, 3> WHITE = {255, 255, 255};
const std::array<int, 3> RED = {255, 0, 0};
const std::array<int, 3> BLUE = {0, 0, 255};
const std::array<int, 3> BLACK = {0, 0, 0};

void expectVectorNear(Vector<float, 3> expected, Vector<float, 3> actual, double tolerance) {
    for (int i = 0; i < 3; i++) {
        EXPECT_NEAR(expected[i], actual[i], tolerance) << "element " << i;
    }
}

} // namespace

TEST(Camera, StartsAtRestAtTheOriginWithUpAndRightAlongYAndX) {
    Camera camera;
    EXPECT_EQ(0.0f, camera.getPitch());
    EXPECT_EQ(0.0f, camera.getHeading());
    EXPECT_EQ(0.0f, camera.getVelocity());
    expectVectorNear(vec3(0, 0, 0), camera.getPosition(), 0.0);
    expectVectorNear(vec3(0, 0, 0), camera.getDirection(), 0.0);
    expectVectorNear(vec3(0, 1, 0), camera.getUp(), 0.0);
    expectVectorNear(vec3(1, 0, 0), camera.getRight(), 0.0);
    Matrix matrix = camera.getMatrix();
    for (int i = 0; i < 16; i++) {
        EXPECT_EQ(0.0f, matrix[i]);
    }
}

TEST(Camera, SmallStepsPassUnchangedInBothDirections) {
    Camera camera;
    camera.changePitch(3.0f);
    camera.changePitch(-1.5f);
    camera.changeHeading(-4.0f);
    camera.changeHeading(2.5f);
    camera.changeVelocity(-50.0f);
    camera.changeVelocity(0.25f);
    EXPECT_FLOAT_EQ(1.5f, camera.getPitch());
    EXPECT_FLOAT_EQ(-1.5f, camera.getHeading());
    EXPECT_FLOAT_EQ(-49.75f, camera.getVelocity());
}

TEST(Camera, LargeNegativePitchStepSubtractsTheLimit) {
    Camera camera;
    camera.changePitch(-10.0f);
    EXPECT_FLOAT_EQ(-5.0f, camera.getPitch());
}

TEST(Camera, LargeNegativeHeadingStepTurnsThePositiveWayByTheLimit) {
    Camera camera;
    camera.changeHeading(-10.0f);
    EXPECT_FLOAT_EQ(5.0f, camera.getHeading());
}

TEST(Camera, LargeNegativeVelocityStepAddsThePositiveLimit) {
    Camera camera;
    camera.changeVelocity(-200.0f);
    EXPECT_FLOAT_EQ(100.0f, camera.getVelocity());
}

TEST(Camera, AllThreeStepsAgreeOnAPositiveStepAtTheLimit) {
    Camera camera;
    camera.changePitch(5.0f);
    camera.changeHeading(5.0f);
    camera.changeVelocity(100.0f);
    EXPECT_FLOAT_EQ(5.0f, camera.getPitch());
    EXPECT_FLOAT_EQ(5.0f, camera.getHeading());
    EXPECT_FLOAT_EQ(100.0f, camera.getVelocity());
}

TEST(Camera, NegativeStepsAtTheLimitDifferBetweenPitchHeadingAndVelocity) {
    Camera camera;
    camera.changePitch(-5.0f);
    camera.changeHeading(-5.0f);
    camera.changeVelocity(-100.0f);
    EXPECT_FLOAT_EQ(-5.0f, camera.getPitch());
    EXPECT_FLOAT_EQ(-5.0f, camera.getHeading());
    EXPECT_FLOAT_EQ(100.0f, camera.getVelocity());
}

TEST(Camera, AccumulatedPitchAndVelocityAreNotClamped) {
    Camera camera;
    for (int i = 0; i < 100; i++) {
        camera.changePitch(50.0f);
        camera.changeVelocity(500.0f);
    }
    EXPECT_FLOAT_EQ(500.0f, camera.getPitch());
    EXPECT_FLOAT_EQ(10000.0f, camera.getVelocity());
}

TEST(Camera, SetPitchAndHeadingTakeAnyValue) {
    Camera camera;
    camera.setPitch(-400.0f);
    camera.setHeading(725.5f);
    EXPECT_EQ(-400.0f, camera.getPitch());
    EXPECT_EQ(725.5f, camera.getHeading());
}

TEST(Camera, PositionIsACopy) {
    Camera camera;
    Vector<float, 3> place = vec3(1, 2, 3);
    camera.setPosition(place);
    place[0] = 100;
    Vector<float, 3> copy = camera.getPosition();
    copy[1] = 100;
    expectVectorNear(vec3(1, 2, 3), camera.getPosition(), 0.0);
}

TEST(Camera, ResetReturnsToTheOriginAtRestAndKeepsTheLimits) {
    Camera camera;
    camera.setPitch(30.0f);
    camera.setHeading(40.0f);
    camera.changeVelocity(2.0f);
    camera.setPosition(vec3(5, 6, 7));
    camera.reset();
    EXPECT_EQ(0.0f, camera.getPitch());
    EXPECT_EQ(0.0f, camera.getHeading());
    EXPECT_EQ(0.0f, camera.getVelocity());
    expectVectorNear(vec3(0, 0, 0), camera.getPosition(), 0.0);
    camera.changePitch(-10.0f);
    camera.changeHeading(-10.0f);
    EXPECT_FLOAT_EQ(-5.0f, camera.getPitch());
    EXPECT_FLOAT_EQ(5.0f, camera.getHeading());
}

TEST(Camera, UnusedTiltAndOrthogonaliseOperationsChangeNothing) {
    Camera camera;
    camera.setPitch(12.0f);
    camera.setHeading(-7.0f);
    camera.setPosition(vec3(1, 2, 3));
    camera.gramSchmidt();
    camera.tiltLeft();
    camera.tiltRight();
    EXPECT_EQ(12.0f, camera.getPitch());
    EXPECT_EQ(-7.0f, camera.getHeading());
    expectVectorNear(vec3(1, 2, 3), camera.getPosition(), 0.0);
    expectVectorNear(vec3(0, 1, 0), camera.getUp(), 0.0);
    expectVectorNear(vec3(1, 0, 0), camera.getRight(), 0.0);
}

class CameraGL : public GLTestWindow {
protected:
    // setGLMatrixes traces its matrix on every call; keep it out of the
    // test log and hand it back for the tests that check it.
    static std::string applyCamera(Camera& camera) {
        testing::internal::CaptureStdout();
        camera.setGLMatrixes();
        return testing::internal::GetCapturedStdout();
    }

    static void readModelview(GLfloat* m) { glGetFloatv(GL_MODELVIEW_MATRIX, m); }

    // Orthographic view whose origin falls on the centre of pixel (32, 32),
    // 16 pixels a unit, so the gizmo's lines run along pixel centres.
    static void gizmoProjection() {
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glOrtho(-2.03125, 1.96875, -2.03125, 1.96875, 0.5, 10.0);
        glMatrixMode(GL_MODELVIEW);
    }
};

TEST_F(CameraGL, AtRestItLooksDownNegativeZAndMovesOneUnitThatWay) {
    Camera camera;
    camera.changeVelocity(1.0f);
    applyCamera(camera);
    expectVectorNear(vec3(0, 0, -1), camera.getDirection(), 1e-6);
    expectVectorNear(vec3(0, 0, -1), camera.getPosition(), 1e-6);

    GLfloat m[16];
    readModelview(m);
    for (int i = 0; i < 12; i++) {
        EXPECT_NEAR((i % 5 == 0) ? 1.0f : 0.0f, m[i], 1e-6) << "element " << i;
    }
    EXPECT_NEAR(0.0f, m[12], 1e-6);
    EXPECT_NEAR(0.0f, m[13], 1e-6);
    EXPECT_NEAR(1.0f, m[14], 1e-6);
    EXPECT_NEAR(1.0f, m[15], 1e-6);
}

TEST_F(CameraGL, ModelviewIsPitchThenHeadingRotationTimesTranslation) {
    Camera camera;
    camera.setPitch(30.0f);
    camera.setHeading(-50.0f);
    camera.setPosition(vec3(1, 2, 3));
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glTranslatef(9.0f, 9.0f, 9.0f);
    applyCamera(camera);
    GLfloat actual[16];
    readModelview(actual);

    GLfloat expected[16];
    glLoadIdentity();
    glRotatef(30.0f, 1, 0, 0);
    glRotatef(-50.0f, 0, 1, 0);
    glTranslatef(-1.0f, -2.0f, -3.0f);
    readModelview(expected);
    for (int i = 0; i < 16; i++) {
        EXPECT_NEAR(expected[i], actual[i], 1e-5) << "element " << i;
    }
}

TEST_F(CameraGL, SetGLMatrixesSelectsTheModelviewMatrix) {
    Camera camera;
    glMatrixMode(GL_PROJECTION);
    applyCamera(camera);
    GLint mode = 0;
    glGetIntegerv(GL_MATRIX_MODE, &mode);
    EXPECT_EQ(GL_MODELVIEW, mode);
}

TEST_F(CameraGL, DirectionIsTheThirdRotationColumnWithZNegated) {
    Camera camera;
    float pitch = 30.0f;
    float heading = 60.0f;
    camera.setPitch(pitch);
    camera.setHeading(heading);
    applyCamera(camera);
    double p = pitch / 180.0 * PI;
    double h = heading / 180.0 * PI;
    Vector<float, 3> expected =
        vec3(float(sin(h)), float(-sin(p) * cos(h)), float(-cos(p) * cos(h)));
    expectVectorNear(expected, camera.getDirection(), 1e-6);
    EXPECT_NEAR(1.0f, camera.getDirection().length(), 1e-6);
    Matrix matrix = camera.getMatrix();
    expectVectorNear(vec3(matrix[8], matrix[9], -matrix[10]), camera.getDirection(), 1e-6);
}

TEST_F(CameraGL, ItMovesAlongItsLineOfSightByTheVelocityOnEveryCall) {
    Camera camera;
    camera.setHeading(90.0f);
    camera.changeVelocity(0.5f);
    camera.setPosition(vec3(1, 1, 1));
    applyCamera(camera);
    applyCamera(camera);
    applyCamera(camera);
    expectVectorNear(vec3(1, 0, 0), camera.getDirection(), 1e-6);
    expectVectorNear(vec3(2.5f, 1, 1), camera.getPosition(), 1e-5);
    EXPECT_FLOAT_EQ(0.5f, camera.getVelocity());

    GLfloat m[16];
    readModelview(m);
    // A quarter turn of heading carries world x onto view -z, so the
    // translation by -position arrives rotated in the last column.
    EXPECT_NEAR(-1.0f, m[12], 1e-5);
    EXPECT_NEAR(-1.0f, m[13], 1e-5);
    EXPECT_NEAR(2.5f, m[14], 1e-5);
}

TEST_F(CameraGL, SetGLMatrixesTracesItsRotationMatrixOnEveryCall) {
    Camera camera;
    std::string identity = "Matrix {\n"
                           "  [1, 0, 0, 0]\n"
                           "  [0, 1, 0, 0]\n"
                           "  [0, 0, 1, 0]\n"
                           "  [0, 0, 0, 1]\n"
                           "}\n"
                           "\n";
    testing::internal::CaptureStdout();
    camera.setGLMatrixes();
    camera.setGLMatrixes();
    EXPECT_EQ(identity + identity, testing::internal::GetCapturedStdout());

    camera.setHeading(45.0f);
    std::string trace = applyCamera(camera);
    EXPECT_EQ(camera.getMatrix().toString(), trace);
}

TEST_F(CameraGL, TraceShowsTheMatrixThatWentToGL) {
    Camera camera;
    camera.setPitch(-20.0f);
    camera.setHeading(135.0f);
    applyCamera(camera);
    GLfloat m[16];
    readModelview(m);
    Matrix matrix = camera.getMatrix();
    for (int i = 0; i < 16; i++) {
        EXPECT_NEAR(matrix[i], m[i], 1e-6) << "element " << i;
    }
}

TEST_F(CameraGL, ResetLeavesTheDirectionSoTheGizmoShowsTheOldOne) {
    Camera camera;
    camera.setPitch(90.0f);
    applyCamera(camera);
    camera.reset();
    expectVectorNear(vec3(0, -1, 0), camera.getDirection(), 1e-6);

    gizmoProjection();
    glClear(GL_COLOR_BUFFER_BIT);
    camera.drawVectors();
    // The white direction line runs down from the centre.
    for (int y = 20; y < 30; y++) {
        EXPECT_EQ(WHITE, rgb(readPixel(32, y))) << "y " << y;
    }

    applyCamera(camera);
    expectVectorNear(vec3(0, 0, -1), camera.getDirection(), 1e-6);
    gizmoProjection();
    glClear(GL_COLOR_BUFFER_BIT);
    camera.drawVectors();
    EXPECT_EQ(BLACK, rgb(readPixel(32, 24)));
}

TEST_F(CameraGL, GizmoDrawsUpInRedAndRightInBlue) {
    Camera camera;
    camera.setPitch(90.0f);
    applyCamera(camera);
    gizmoProjection();
    glClear(GL_COLOR_BUFFER_BIT);
    camera.drawVectors();
    EXPECT_EQ(RED, rgb(readPixel(32, 40)));
    EXPECT_EQ(BLUE, rgb(readPixel(40, 32)));
    EXPECT_EQ(BLACK, rgb(readPixel(24, 32)));
}

TEST_F(CameraGL, GizmoLeavesLightingOffAndTheModelviewAsItWas) {
    Camera camera;
    applyCamera(camera);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glTranslatef(1.0f, 2.0f, 3.0f);
    GLfloat before[16];
    readModelview(before);
    glEnable(GL_LIGHTING);
    glEnable(GL_COLOR_MATERIAL);
    camera.drawVectors();
    EXPECT_FALSE(glIsEnabled(GL_LIGHTING));
    EXPECT_FALSE(glIsEnabled(GL_COLOR_MATERIAL));
    GLfloat after[16];
    readModelview(after);
    for (int i = 0; i < 16; i++) {
        EXPECT_EQ(before[i], after[i]) << "element " << i;
    }
}
