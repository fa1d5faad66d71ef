#include "animation/AnimationObjectController.h"

#include "animation/Animation.h"

#include <gtest/gtest.h>

#include <string>

TEST(AnimationObjectController, NewControllerHasNoAnimationAndZeroTimes) {
    AnimationObjectController controller;
    EXPECT_EQ(nullptr, controller.getAnimation());
    EXPECT_EQ(0u, controller.getStartTime().getTicks());
    EXPECT_EQ(0u, controller.getEndTime().getTicks());
}

TEST(AnimationObjectController, HoldsTheAnimationItIsGivenWithoutOwningIt) {
    Animation* animation = new Animation();
    {
        AnimationObjectController controller;
        controller.setAnimation(animation);
        EXPECT_EQ(animation, controller.getAnimation());
    }
    EXPECT_EQ("Animation { keyframes = 0 }\n", animation->toString());
    delete animation;
}

TEST(AnimationObjectController, SetStartTimeInMillisecondsReplacesWhateverTheFieldHeld) {
    AnimationObjectController controller;
    controller.setStartTime(KVLTime(3, 15, 999));
    controller.setStartTime(1500u);
    EXPECT_EQ(1500u, controller.getStartTime().getTicks());
    EXPECT_EQ(0, controller.getStartTime().getMinutes());
    EXPECT_EQ(1500, controller.getStartTime().getMilliseconds());
    controller.setEndTime(KVLTime(9, 0, 0));
    controller.setEndTime(2500u);
    EXPECT_EQ(2500u, controller.getEndTime().getTicks());
    EXPECT_EQ(0, controller.getEndTime().getMinutes());
}

TEST(AnimationObjectController, SetTimeValuesCopyTheWholeTime) {
    AnimationObjectController controller;
    controller.setStartTime(KVLTime(std::string("00:30:000")));
    controller.setEndTime(KVLTime(std::string("00:45:500")));
    EXPECT_EQ(30, controller.getStartTime().getSeconds());
    EXPECT_EQ(30000u, controller.getStartTime().getTicks());
    EXPECT_EQ(45, controller.getEndTime().getSeconds());
    EXPECT_EQ(500, controller.getEndTime().getMilliseconds());
    EXPECT_EQ(45500u, controller.getEndTime().getTicks());
}

TEST(AnimationObjectController, MadeByTheAnimationForThatAnimation) {
    Animation animation;
    AnimationObjectController* controller = animation.getObjectController();
    ASSERT_NE(nullptr, controller);
    EXPECT_EQ(&animation, controller->getAnimation());
    EXPECT_EQ(0u, controller->getStartTime().getTicks());
    delete controller;
}
