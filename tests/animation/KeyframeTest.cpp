#include "animation/Keyframe.h"

#include <gtest/gtest.h>

#include <string>

TEST(Keyframe, NewKeyframeStandsAtTheOriginWithBothAnglesZero) {
    Keyframe keyframe;
    EXPECT_EQ(0.0f, keyframe.getPosition()[0]);
    EXPECT_EQ(0.0f, keyframe.getPosition()[1]);
    EXPECT_EQ(0.0f, keyframe.getPosition()[2]);
    EXPECT_EQ(0.0f, keyframe.getPitch());
    EXPECT_EQ(0.0f, keyframe.getHeading());
}

TEST(Keyframe, ConstructorTakesPitchBeforeHeading) {
    Keyframe keyframe(vec3(1.5f, -2.0f, 3.25f), 10.0f, 45.0f);
    EXPECT_EQ(1.5f, keyframe.getPosition()[0]);
    EXPECT_EQ(-2.0f, keyframe.getPosition()[1]);
    EXPECT_EQ(3.25f, keyframe.getPosition()[2]);
    EXPECT_EQ(10.0f, keyframe.getPitch());
    EXPECT_EQ(45.0f, keyframe.getHeading());
}

TEST(Keyframe, SettersReplaceEachValueOnItsOwn) {
    Keyframe keyframe(vec3(1.0f, 2.0f, 3.0f), 4.0f, 5.0f);
    keyframe.setPitch(-30.0f);
    EXPECT_EQ(-30.0f, keyframe.getPitch());
    EXPECT_EQ(5.0f, keyframe.getHeading());
    keyframe.setHeading(270.0f);
    EXPECT_EQ(-30.0f, keyframe.getPitch());
    EXPECT_EQ(270.0f, keyframe.getHeading());
    keyframe.setPosition(vec3(7.0f, 8.0f, 9.0f));
    EXPECT_EQ(7.0f, keyframe.getPosition()[0]);
    EXPECT_EQ(8.0f, keyframe.getPosition()[1]);
    EXPECT_EQ(9.0f, keyframe.getPosition()[2]);
}

TEST(Keyframe, PositionIsHandedOutAsACopy) {
    Keyframe keyframe(vec3(1.0f, 2.0f, 3.0f), 0.0f, 0.0f);
    Vector<float, 3> copy = keyframe.getPosition();
    copy[0] = 100.0f;
    EXPECT_EQ(1.0f, keyframe.getPosition()[0]);
}

TEST(Keyframe, PrintWritesThePosAndRotLinesOfTheFileFormat) {
    Keyframe keyframe(vec3(5.0f, 1.5f, -5.0f), 10.0f, 45.0f);
    testing::internal::CaptureStdout();
    keyframe.print();
    EXPECT_EQ("pos 5 1.5 -5\nrot 10 45\n", testing::internal::GetCapturedStdout());
}
