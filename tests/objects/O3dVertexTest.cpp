#include "objects/O3dVertex.h"

#include "ObjectTestSupport.h"
#include "objects/O3dPolygon.h"

#include <gtest/gtest.h>

TEST(O3dVertex, StartsAtTheOriginWithAZeroNormalAndNoTriangles) {
    O3dVertex vertex;
    for (int i = 0; i < 3; i++) {
        EXPECT_EQ(0.0f, vertex.getVertex()[i]);
        EXPECT_EQ(0.0f, vertex.getNormal()[i]);
    }
    EXPECT_EQ(0, vertex.countPolygons());
}

TEST(O3dVertex, ThreeFloatsGiveThePosition) {
    O3dVertex vertex(1.0f, -2.5f, 3.0f);
    EXPECT_EQ(1.0f, vertex.getVertex()[0]);
    EXPECT_EQ(-2.5f, vertex.getVertex()[1]);
    EXPECT_EQ(3.0f, vertex.getVertex()[2]);
    Vector<float, 3> copy = vertex.getVertexCopy();
    EXPECT_EQ(-2.5f, copy[1]);
}

TEST(O3dVertex, ACopyOfThePositionDoesNotChangeTheVertex) {
    O3dVertex vertex(1.0f, 2.0f, 3.0f);
    Vector<float, 3> copy = vertex.getVertexCopy();
    copy[0] = 9.0f;
    EXPECT_EQ(1.0f, vertex.getVertex()[0]);
    vertex.setVertex(vec3(4.0f, 5.0f, 6.0f));
    EXPECT_EQ(4.0f, vertex.getVertex()[0]);
    EXPECT_EQ(9.0f, copy[0]);
}

TEST(O3dVertex, KeepsItsTrianglesInTheOrderTheyWereAdded) {
    O3dVertex vertex;
    O3dPolygon first;
    O3dPolygon second;
    vertex.addPolygonPointer(&first);
    vertex.addPolygonPointer(&second);
    vertex.addPolygonPointer(&first);
    ASSERT_EQ(3, vertex.countPolygons());
    EXPECT_EQ(&first, vertex.getPolygon(0));
    EXPECT_EQ(&second, vertex.getPolygon(1));
    EXPECT_EQ(&first, vertex.getPolygon(2));
}

TEST(O3dVertex, ATriangleNumberOutsideTheListGivesNull) {
    O3dVertex vertex;
    O3dPolygon only;
    vertex.addPolygonPointer(&only);
    EXPECT_EQ(nullptr, vertex.getPolygon(1));
    EXPECT_EQ(nullptr, vertex.getPolygon(-1));
}

TEST(O3dVertex, TextFormShowsPositionAndNormal) {
    O3dVertex vertex(1.0f, 2.5f, -3.0f);
    vertex.setNormal(vec3(0.0f, 0.5f, 1.0f));
    EXPECT_EQ("vertex{ v[1,2.5,-3] n[0,0.5,1] }", vertex.toString());
}
