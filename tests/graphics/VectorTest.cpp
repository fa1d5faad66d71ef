#include "graphics/Vector.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

namespace {

std::string streamed(Vector<float, 3> v) {
    std::ostringstream out;
    out << v;
    return out.str();
}

} // namespace

TEST(Vector, NewVectorsAreFilledWithZeros) {
    Vector<float, 3> position;
    Vector<float, 4> colour;
    Vector<int, 3> axis;
    for (int i = 0; i < 3; i++) {
        EXPECT_EQ(0.0f, position[i]);
        EXPECT_EQ(0, axis[i]);
    }
    for (int i = 0; i < 4; i++) {
        EXPECT_EQ(0.0f, colour[i]);
    }
}

TEST(Vector, HoldsNothingButItsElements) {
    EXPECT_EQ(3 * sizeof(float), sizeof(Vector<float, 3>));
    EXPECT_EQ(4 * sizeof(float), sizeof(Vector<float, 4>));
    EXPECT_EQ(3 * sizeof(int), sizeof(Vector<int, 3>));
}

TEST(Vector, CopiesAreIndependentOfTheOriginal) {
    Vector<float, 3> original = vec3(1, 2, 3);
    Vector<float, 3> copy = original;
    copy[0] = 9;
    EXPECT_EQ(1.0f, original[0]);
    EXPECT_EQ(9.0f, copy[0]);
}

TEST(Vector, ElementPointerReachesTheSameStorageAsIndexing) {
    Vector<float, 3> v = vec3(4, 5, 6);
    float* elements = v.data();
    elements[1] = 7;
    EXPECT_EQ(7.0f, v[1]);
    EXPECT_EQ(&v[0], elements);
}

TEST(Vector, AddsAndSubtractsElementByElement) {
    Vector<float, 3> a = vec3(1, 2, 3);
    Vector<float, 3> b = vec3(0.5f, -4, 10);
    Vector<float, 3> sum = a + b;
    Vector<float, 3> difference = a - b;
    for (int i = 0; i < 3; i++) {
        EXPECT_FLOAT_EQ(a[i] + b[i], sum[i]);
        EXPECT_FLOAT_EQ(a[i] - b[i], difference[i]);
    }
}

TEST(Vector, MultipliesEveryElementByAScalar) {
    Vector<float, 3> scaled = vec3(1, -2, 0.25f) * 4.0f;
    EXPECT_FLOAT_EQ(4.0f, scaled[0]);
    EXPECT_FLOAT_EQ(-8.0f, scaled[1]);
    EXPECT_FLOAT_EQ(1.0f, scaled[2]);
}

TEST(Vector, UnaryMinusNegatesEveryElement) {
    Vector<float, 4> colour;
    colour[0] = 0.1f;
    colour[1] = -0.2f;
    colour[3] = 1.0f;
    Vector<float, 4> negated = -colour;
    for (int i = 0; i < 4; i++) {
        EXPECT_EQ(-colour[i], negated[i]);
    }
}

TEST(Vector, DotSumsTheProductsOfTheElements) {
    EXPECT_FLOAT_EQ(1 * 4 + 2 * -5 + 3 * 6, dot(vec3(1, 2, 3), vec3(4, -5, 6)));
    Vector<int, 3> a;
    a[0] = 2;
    a[1] = 3;
    a[2] = 4;
    EXPECT_EQ(2 * 2 + 3 * 3 + 4 * 4, dot(a, a));
}

TEST(Vector, CrossOfXAndYIsZ) {
    Vector<float, 3> z = cross(vec3(1, 0, 0), vec3(0, 1, 0));
    EXPECT_FLOAT_EQ(0.0f, z[0]);
    EXPECT_FLOAT_EQ(0.0f, z[1]);
    EXPECT_FLOAT_EQ(1.0f, z[2]);
}

TEST(Vector, CrossIsPerpendicularToBothFactors) {
    Vector<float, 3> a = vec3(1, 2, 3);
    Vector<float, 3> b = vec3(4, 5, 6);
    Vector<float, 3> c = cross(a, b);
    EXPECT_FLOAT_EQ(2 * 6 - 3 * 5, c[0]);
    EXPECT_FLOAT_EQ(3 * 4 - 1 * 6, c[1]);
    EXPECT_FLOAT_EQ(1 * 5 - 2 * 4, c[2]);
    EXPECT_NEAR(0.0f, dot(a, c), 1e-5);
    EXPECT_NEAR(0.0f, dot(b, c), 1e-5);
}

TEST(Vector, LengthIsTheSquareRootOfTheDotWithItself) {
    EXPECT_FLOAT_EQ(5.0f, vec3(3, 0, -4).length());
    Vector<float, 3> v = vec3(1, 2, 2);
    EXPECT_FLOAT_EQ(sqrtf(dot(v, v)), v.length());
}

TEST(Vector, NormalizeDividesByTheLengthAndKeepsTheDirection) {
    Vector<float, 3> v = vec3(0, 3, -4);
    v.normalize();
    EXPECT_NEAR(1.0f, v.length(), 1e-6);
    EXPECT_FLOAT_EQ(0.0f, v[0]);
    EXPECT_FLOAT_EQ(0.6f, v[1]);
    EXPECT_FLOAT_EQ(-0.8f, v[2]);
}

TEST(Vector, NormalizingAZeroVectorGivesNotANumber) {
    Vector<float, 3> v;
    v.normalize();
    EXPECT_TRUE(std::isnan(v[0]));
    EXPECT_TRUE(std::isnan(v[2]));
}

TEST(Vector, StreamsNumbersBetweenBracketsWithCommasAndNoBlanks) {
    EXPECT_EQ("[1,2.5,0]", streamed(vec3(1, 2.5f, 0)));
}

TEST(Vector, StreamsWithTheDefaultFloatFormatAndNoLineEnd) {
    std::string text = streamed(vec3(-0.125f, 1234567.0f, 1e-7f));
    std::ostringstream expected;
    expected << "[" << -0.125f << "," << 1234567.0f << "," << 1e-7f << "]";
    EXPECT_EQ(expected.str(), text);
    EXPECT_EQ(std::string::npos, text.find('\n'));
    EXPECT_EQ(std::string::npos, text.find(' '));
}

TEST(Vector, IndexOutsideTheArrayStaysInsideIt) {
    Vector<float, 3> v = vec3(7, 8, 9);
    EXPECT_EQ(7.0f, v[3]);
    EXPECT_EQ(7.0f, v[-1]);
    v[5] = 1;
    EXPECT_EQ(1.0f, v[0]);
    EXPECT_EQ(8.0f, v[1]);
    EXPECT_EQ(9.0f, v[2]);
}
