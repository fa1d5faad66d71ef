#include "runtime/KVLTime.h"

#include <gtest/gtest.h>

TEST(KVLTime, DefaultTimeIsZeroAndValid) {
    KVLTime time;
    EXPECT_EQ(0u, time.getTicks());
    EXPECT_TRUE(time.isValid());
    EXPECT_EQ("(0000000000)-[00:00:000]", time.toString());
}

TEST(KVLTime, ScriptTextOneTwoThreeGivesSixtyTwoThousandAndThreeTicks) {
    KVLTime time(std::string("1:2:3"));
    EXPECT_TRUE(time.isValid());
    EXPECT_EQ(62003u, time.getTicks());
    EXPECT_EQ(1, time.getMinutes());
    EXPECT_EQ(2, time.getSeconds());
    EXPECT_EQ(3, time.getMilliseconds());
}

TEST(KVLTime, TextWithTwoFieldsIsInvalidWithZeroTicks) {
    KVLTime time(std::string("1:2"));
    EXPECT_FALSE(time.isValid());
    EXPECT_EQ(0u, time.getTicks());
}

TEST(KVLTime, TextWithALetterIsInvalidWithZeroTicksAndZeroFields) {
    KVLTime time(std::string("a:2:3"));
    EXPECT_FALSE(time.isValid());
    EXPECT_EQ(0u, time.getTicks());
    EXPECT_EQ(0, time.getMinutes());
    EXPECT_EQ(0, time.getSeconds());
    EXPECT_EQ(0, time.getMilliseconds());
}

TEST(KVLTime, BadMillisecondsClearEveryField) {
    KVLTime time(std::string("01:02:x"));
    EXPECT_FALSE(time.isValid());
    EXPECT_EQ(0, time.getMinutes());
    EXPECT_EQ(0, time.getSeconds());
    EXPECT_EQ(0u, time.getTicks());
}

TEST(KVLTime, FieldsAreNotCarriedOrRangeChecked) {
    KVLTime time(std::string("01:75:2000"));
    EXPECT_TRUE(time.isValid());
    EXPECT_EQ(75, time.getSeconds());
    EXPECT_EQ(2000, time.getMilliseconds());
    EXPECT_EQ(137000u, time.getTicks());
}

TEST(KVLTime, ValidTextAfterInvalidTextIsValidAgain) {
    KVLTime time(std::string("x"));
    EXPECT_FALSE(time.isValid());
    time.setTimeAsString("00:01:500");
    EXPECT_TRUE(time.isValid());
    EXPECT_EQ(1500u, time.getTicks());
}

TEST(KVLTime, TicksJustBelowAnHourPrintWithCarriedFields) {
    KVLTime time(3599999u);
    EXPECT_EQ(59, time.getMinutes());
    EXPECT_EQ(59, time.getSeconds());
    EXPECT_EQ(999, time.getMilliseconds());
    EXPECT_EQ("(0003599999)-[59:59:999]", time.toString());
}

TEST(KVLTime, LogFormOfSixtyFiveSeconds) {
    EXPECT_EQ("(0000065123)-[01:05:123]", KVLTime(65123u).toString());
}

TEST(KVLTime, MinutesAboveNinetyNinePrintInFull) {
    EXPECT_EQ("12345", KVLTime::forceStringLength("12345", 2));
    KVLTime time(123, 0, 0);
    EXPECT_EQ("(0007380000)-[123:00:000]", time.toString());
}

TEST(KVLTime, ForceStringLengthPadsWithZeros) {
    EXPECT_EQ("007", KVLTime::forceStringLength("7", 3));
    EXPECT_EQ("", KVLTime::forceStringLength("", 0));
}

TEST(KVLTime, SettersRecomputeTicksFromAllFields) {
    KVLTime time;
    time.setMinutes(30);
    EXPECT_EQ(1800000u, time.getTicks());
    time.setSeconds(1);
    EXPECT_EQ(1801000u, time.getTicks());
    time.setMilliseconds(5);
    EXPECT_EQ(1801005u, time.getTicks());
}

TEST(KVLTime, Time2UintIgnoresItsArguments) {
    KVLTime time(1, 2, 3);
    EXPECT_EQ(62003u, time.time2uint(9, 9, 9));
}

TEST(KVLTime, ResetClearsNumbersButNotValidity) {
    KVLTime time(std::string("1:2"));
    time.reset();
    EXPECT_FALSE(time.isValid());
    KVLTime other(1, 2, 3);
    other.reset();
    EXPECT_TRUE(other.isValid());
    EXPECT_EQ(0u, other.getTicks());
    EXPECT_EQ(0, other.getMinutes());
}

TEST(KVLTime, TicksAsDoubleIsUnsigned) {
    KVLTime time(4000000000u);
    EXPECT_DOUBLE_EQ(4000000000.0, time.getTicksAsDouble());
}
