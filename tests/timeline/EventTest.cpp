#include "timeline/Event.h"
#include "runtime/KVLTime.h"
#include "script/ParameterGroup.h"

#include <gtest/gtest.h>

TEST(Event, BaseEventHoldsNothingAndMakesNoInstance) {
    Event event;
    KVLTime time(1000u);
    ParameterGroup group;
    event.setTime(&time);
    event.setParameters(&group);
    event.execute();
    EXPECT_EQ(nullptr, event.getTime());
    EXPECT_EQ(nullptr, event.getParameters());
    EXPECT_EQ(nullptr, event.getInstance());
}

TEST(Event, BaseEventPrintsAPlaceholderWithoutLineEnd) {
    Event event;
    EXPECT_EQ("Event {...}", event.toString());
}
