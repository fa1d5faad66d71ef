#include "graphics/Matrix.h"

#include "support/GLTestWindow.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

Matrix countingMatrix() {
    Matrix m;
    for (int i = 0; i < 16; i++) {
        m[i] = static_cast<float>(i);
    }
    return m;
}

std::string printed(const Matrix& m) {
    testing::internal::CaptureStdout();
    m.print();
    return testing::internal::GetCapturedStdout();
}

} // namespace

TEST(Matrix, NewMatrixIsAllZeros) {
    Matrix m;
    for (int i = 0; i < 16; i++) {
        EXPECT_EQ(0.0f, m[i]);
    }
}

TEST(Matrix, HoldsSixteenFloatsAndNothingElse) {
    EXPECT_EQ(16 * sizeof(float), sizeof(Matrix));
    Matrix m = countingMatrix();
    const float* elements = m.data();
    for (int i = 0; i < 16; i++) {
        EXPECT_EQ(m[i], elements[i]);
    }
}

TEST(Matrix, PrintsFourGroupsOfFourConsecutiveElementsBetweenBraces) {
    EXPECT_EQ("Matrix {\n"
              "  [0, 1, 2, 3]\n"
              "  [4, 5, 6, 7]\n"
              "  [8, 9, 10, 11]\n"
              "  [12, 13, 14, 15]\n"
              "}\n"
              "\n",
              printed(countingMatrix()));
}

TEST(Matrix, PrintsValuesInTheDefaultFloatFormat) {
    Matrix m;
    m[0] = 0.5f;
    m[1] = -1234567.0f;
    m[2] = 1e-7f;
    m[3] = 1.0f / 3.0f;
    std::ostringstream firstRow;
    firstRow << "  [" << m[0] << ", " << m[1] << ", " << m[2] << ", " << m[3] << "]\n";
    std::string text = printed(m);
    EXPECT_EQ("Matrix {\n" + firstRow.str(), text.substr(0, 9 + firstRow.str().size()));
}

TEST(Matrix, TextFormIsWhatPrintWrites) {
    Matrix m = countingMatrix();
    m[5] = -0.25f;
    EXPECT_EQ(printed(m), m.toString());
}

TEST(Matrix, IndexOutsideTheElementsStaysInsideThem) {
    Matrix m = countingMatrix();
    EXPECT_EQ(0.0f, m[16]);
    EXPECT_EQ(0.0f, m[-1]);
    m[99] = 42.0f;
    EXPECT_EQ(42.0f, m[0]);
    EXPECT_EQ(15.0f, m[15]);
}

class MatrixGL : public GLTestWindow {};

TEST_F(MatrixGL, ElementsAreInTheOrderGlMultMatrixfReads) {
    Matrix m;
    m[0] = 1.0f;
    m[5] = 1.0f;
    m[10] = 1.0f;
    m[15] = 1.0f;
    m[12] = 3.0f;
    m[13] = -2.0f;
    m[14] = 0.5f;
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glMultMatrixf(m.data());
    GLfloat expected[16];
    glLoadIdentity();
    glTranslatef(3.0f, -2.0f, 0.5f);
    glGetFloatv(GL_MODELVIEW_MATRIX, expected);
    for (int i = 0; i < 16; i++) {
        EXPECT_FLOAT_EQ(expected[i], m[i]) << "element " << i;
    }
    GLfloat loaded[16];
    glLoadIdentity();
    glMultMatrixf(m.data());
    glGetFloatv(GL_MODELVIEW_MATRIX, loaded);
    for (int i = 0; i < 16; i++) {
        EXPECT_FLOAT_EQ(m[i], loaded[i]) << "element " << i;
    }
}
