#include "time/WeekTime.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/basic/Raises.h"
#include "time/WeekTimeFunctions.h"

namespace vex::test {

namespace {

constexpr int32_t Week = 604800;
constexpr int32_t Sun = 0;
constexpr int32_t Mon = 1;
constexpr int32_t Sat = 6;
constexpr int32_t Greatest = std::numeric_limits<int32_t>::max();

using Reference = WeekTime::Reference;

Reference At(int32_t lTimeVal) {
  auto time = std::make_shared<WeekTime>();
  time->TimeVal(lTimeVal);
  return time;
}

void ExpectParts(const WeekTime& time, int32_t lDay, int32_t lHour, int32_t lMinute, int32_t lSecond) {
  EXPECT_EQ(time.Day(), lDay);
  EXPECT_EQ(time.Hour(), lHour);
  EXPECT_EQ(time.Minute(), lMinute);
  EXPECT_EQ(time.Second(), lSecond);
  EXPECT_EQ(time.TimeVal(), lDay * 86400 + lHour * 3600 + lMinute * 60 + lSecond);
}

}  // namespace

TEST(WeekTime, ANewOneIsSundayMidnight) {
  ExpectParts(WeekTime(), Sun, 0, 0, 0);
}

TEST(WeekTime, TimeValSetsTheParts) {
  ExpectParts(*At(133507), Mon, 13, 5, 7);
  ExpectParts(*At(604799), Sat, 23, 59, 59);
}

TEST(WeekTime, TimeValWrapsRoundTheWeek) {
  ExpectParts(*At(Week), Sun, 0, 0, 0);
  ExpectParts(*At(-1), Sat, 23, 59, 59);
  ExpectParts(*At(-Week), Sun, 0, 0, 0);
  ExpectParts(*At(3 * Week + 1), Sun, 0, 0, 1);
  EXPECT_EQ(At(-1)->WeekTimeToString(), "Sat 11:59:59 PM");
}

TEST(WeekTime, FarBelowTheWeekTimeValStaysNegative) {
  EXPECT_EQ(At(-Week - 1)->TimeVal(), -1);
  EXPECT_EQ(At(-Week - 1)->Second(), -1);
  EXPECT_EQ(At(-2 * Week - 86400)->Day(), -1);
  ExpectPlatformError([] { return At(-2 * Week - 86400)->ToString(); }, ErrorSubscript);
}

TEST(WeekTime, SettingsNearTheLimitOverflow) {
  WeekTime time;
  const auto setTimeVal = [&] {
    time.TimeVal(Greatest - Week + 1);
    return 0;
  };
  const auto setDay = [&] {
    time.Day(Greatest - 6);
    return 0;
  };
  time.TimeVal(133507);
  ExpectPlatformError(setTimeVal, ErrorOverflow);
  ExpectPlatformError(setDay, ErrorOverflow);
  ExpectParts(time, Mon, 13, 5, 7);
  time.TimeVal(Greatest - Week);
  EXPECT_EQ(time.TimeVal(), Greatest % Week);
}

TEST(WeekTime, DayWraps) {
  WeekTime time;
  time.TimeVal(133507);
  time.Day(7);
  ExpectParts(time, Sun, 13, 5, 7);
  time.Day(-1);
  ExpectParts(time, Sat, 13, 5, 7);
}

TEST(WeekTime, HourMinuteAndSecondStopAtTheirBounds) {
  WeekTime time;
  time.Hour(25);
  ExpectParts(time, Sun, 23, 0, 0);
  time.Minute(60);
  ExpectParts(time, Sun, 23, 59, 0);
  time.Second(Greatest);
  ExpectParts(time, Sun, 23, 59, 59);
  time.Hour(-1);
  time.Minute(-5);
  time.Second(std::numeric_limits<int32_t>::min());
  ExpectParts(time, Sun, 0, 0, 0);
}

TEST(WeekTime, DaySecondCountsFromThatDaysMidnight) {
  EXPECT_EQ(At(133507)->DaySecond(), 47107);
  EXPECT_EQ(At(604799)->DaySecond(), 86399);
  EXPECT_EQ(At(86400)->DaySecond(), 0);
}

TEST(WeekTime, ComparesByTimeVal) {
  const Reference early = At(10);
  const Reference late = At(20);
  EXPECT_TRUE(early->Equals(At(10)));
  EXPECT_FALSE(early->Equals(late));
  EXPECT_TRUE(early->Precedes(late));
  EXPECT_FALSE(late->Precedes(early));
  EXPECT_FALSE(early->Precedes(At(10)));
  EXPECT_TRUE(early->PrecedesEq(late));
  EXPECT_TRUE(early->PrecedesEq(At(10)));
  EXPECT_FALSE(late->PrecedesEq(early));
}

TEST(WeekTime, MemberwiseEqualsToleratesAnAbsentOther) {
  EXPECT_TRUE(At(133507)->MemberwiseEquals(NewWeekTime(Mon, 13, 5, 7)));
  EXPECT_FALSE(At(133507)->MemberwiseEquals(NewWeekTime(Mon, 13, 5, 8)));
  EXPECT_FALSE(At(0)->MemberwiseEquals(nullptr));
}

TEST(WeekTime, AnAbsentArgumentIsTheCallersError) {
  const WeekTime time;
  const Reference there = At(0);
  ExpectPlatformError([&] { return time.Equals(nullptr); }, ErrorObjectNotSet);
  ExpectPlatformError([&] { return time.Precedes(nullptr); }, ErrorObjectNotSet);
  ExpectPlatformError([&] { return time.PrecedesEq(nullptr); }, ErrorObjectNotSet);
  ExpectPlatformError([&] { return time.PlusTime(nullptr); }, ErrorObjectNotSet);
  ExpectPlatformError([&] { return time.Minus(nullptr); }, ErrorObjectNotSet);
  ExpectPlatformError([&] { return time.Between(nullptr, there); }, ErrorObjectNotSet);
  ExpectPlatformError([&] { return time.Between(there, nullptr); }, ErrorObjectNotSet);
  ExpectPlatformError([&] { return time.BetweenEquals(nullptr, there); }, ErrorObjectNotSet);
  ExpectPlatformError([&] { return time.BetweenEquals(there, nullptr); }, ErrorObjectNotSet);
  ExpectPlatformError([&] { return time.InRange(nullptr, there); }, ErrorObjectNotSet);
  ExpectPlatformError([&] { return time.InRange(there, nullptr); }, ErrorObjectNotSet);
}

TEST(WeekTime, RangesOverTheWeeksEnd) {
  const Reference lower = NewWeekTime(Sat, 22, 0, 0);
  const Reference upper = NewWeekTime(Sun, 2, 0, 0);
  for (const Reference& inside : {NewWeekTime(Sun, 0, 0, 0), NewWeekTime(Sat, 23, 59, 59)}) {
    EXPECT_TRUE(inside->Between(lower, upper));
    EXPECT_TRUE(inside->BetweenEquals(lower, upper));
    EXPECT_TRUE(inside->InRange(lower, upper));
  }
  EXPECT_FALSE(lower->Between(lower, upper));
  EXPECT_FALSE(upper->Between(lower, upper));
  EXPECT_TRUE(lower->InRange(lower, upper));
  EXPECT_FALSE(upper->InRange(lower, upper));
  EXPECT_TRUE(lower->BetweenEquals(lower, upper));
  EXPECT_TRUE(upper->BetweenEquals(lower, upper));
  for (const Reference& outside : {NewWeekTime(Sat, 21, 59, 59), NewWeekTime(Sun, 2, 0, 1)}) {
    EXPECT_FALSE(outside->Between(lower, upper));
    EXPECT_FALSE(outside->BetweenEquals(lower, upper));
    EXPECT_FALSE(outside->InRange(lower, upper));
  }
}

TEST(WeekTime, RangesWithinTheWeek) {
  const Reference lower = At(100);
  const Reference upper = At(200);
  EXPECT_TRUE(At(150)->Between(lower, upper));
  EXPECT_FALSE(At(100)->Between(lower, upper));
  EXPECT_FALSE(At(200)->Between(lower, upper));
  EXPECT_TRUE(At(100)->BetweenEquals(lower, upper));
  EXPECT_TRUE(At(200)->BetweenEquals(lower, upper));
  EXPECT_TRUE(At(100)->InRange(lower, upper));
  EXPECT_FALSE(At(200)->InRange(lower, upper));
  for (const int32_t lOutside : {99, 201}) {
    EXPECT_FALSE(At(lOutside)->Between(lower, upper));
    EXPECT_FALSE(At(lOutside)->BetweenEquals(lower, upper));
    EXPECT_FALSE(At(lOutside)->InRange(lower, upper));
  }
}

TEST(WeekTime, EqualBoundsAreTheWholeWeek) {
  for (const int32_t lTimeVal : {0, 99, 100, 101, 604799}) {
    EXPECT_TRUE(At(lTimeVal)->Between(At(100), At(100)));
    EXPECT_TRUE(At(lTimeVal)->BetweenEquals(At(100), At(100)));
    EXPECT_TRUE(At(lTimeVal)->InRange(At(100), At(100)));
  }
}

TEST(WeekTime, PlusMakesANewTimeRoundTheWeek) {
  const Reference late = NewWeekTime(Sat, 23, 0, 0);
  const Reference sum = late->PlusDuration(7200);
  EXPECT_EQ(sum->WeekTimeToString(), "Sun 1:00:00 AM");
  EXPECT_EQ(late->WeekTimeToString(), "Sat 11:00:00 PM");
  EXPECT_NE(late->PlusDuration(0), late);
  EXPECT_EQ(late->PlusTime(NewWeekTime(Sun, 2, 0, 0))->WeekTimeToString(), "Sun 1:00:00 AM");
  EXPECT_EQ(At(5)->PlusDuration(-6)->TimeVal(), 604799);
  ExpectPlatformError([] { return At(1)->PlusDuration(Greatest); }, ErrorOverflow);
  ExpectPlatformError([] { return At(0)->PlusDuration(Greatest); }, ErrorOverflow);
}

TEST(WeekTime, MinusCountsTheSecondsForward) {
  EXPECT_EQ(NewWeekTime(Sun, 1, 0, 0)->Minus(NewWeekTime(Sat, 23, 0, 0)), 7200);
  EXPECT_EQ(NewWeekTime(Sat, 23, 0, 0)->Minus(NewWeekTime(Sun, 1, 0, 0)), Week - 7200);
  EXPECT_EQ(At(100)->Minus(At(100)), 0);
}

TEST(WeekTime, MinusDurationAlwaysFails) {
  for (const int32_t lDuration : {0, 1, -1, Greatest, std::numeric_limits<int32_t>::min()}) {
    ExpectPlatformError([&] { return At(100)->MinusDuration(lDuration); }, ErrorObjectNotSet);
  }
}

TEST(WeekTime, ToStringIsAShortKeyWithoutPadding) {
  EXPECT_EQ(NewWeekTime(Mon, 13, 5, 7)->ToString(), "Mon1357");
  EXPECT_EQ(WeekTime().ToString(), "Sun000");
}

TEST(WeekTime, EveryDayHasItsName) {
  const char* names[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  for (int32_t lDay = 0; lDay < 7; ++lDay) {
    EXPECT_EQ(NewWeekTime(lDay, 1, 2, 3)->WeekTimeToString(), std::string(names[lDay]) + " 1:02:03 AM");
  }
}

TEST(WeekTime, TheTimeOfDayIsToldByThe12HourClock) {
  EXPECT_EQ(NewWeekTime(Mon, 0, 0, 0)->DayTimeToString(), "12:00:00 AM");
  EXPECT_EQ(NewWeekTime(Mon, 11, 59, 9)->DayTimeToString(), "11:59:09 AM");
  EXPECT_EQ(NewWeekTime(Mon, 12, 30, 5)->DayTimeToString(), "12:30:05 PM");
  EXPECT_EQ(NewWeekTime(Mon, 13, 5, 7)->DayTimeToString(), "1:05:07 PM");
  EXPECT_EQ(NewWeekTime(Mon, 23, 59, 59)->DayTimeToString(), "11:59:59 PM");
  EXPECT_EQ(WeekTime().WeekTimeToString(), "Sun 12:00:00 AM");
}

TEST(WeekTimeProperty, TheFieldsAlwaysAgree) {
  EXPECT_TRUE(rc::check("fields agree", [] {
    WeekTime time;
    for (const auto& [setter, lValue] : *rc::gen::arbitrary<std::vector<std::pair<unsigned, int16_t>>>()) {
      if (setter % 5 == 0) time.TimeVal(lValue * 18);
      if (setter % 5 == 1) time.Day(lValue % 8);
      if (setter % 5 == 2) time.Hour(lValue);
      if (setter % 5 == 3) time.Minute(lValue);
      if (setter % 5 == 4) time.Second(lValue);
      RC_ASSERT(time.TimeVal() ==
                time.Day() * 86400 + time.Hour() * 3600 + time.Minute() * 60 + time.Second());
      RC_ASSERT(time.TimeVal() >= 0 && time.TimeVal() < Week);
      RC_ASSERT(time.Hour() >= 0 && time.Hour() < 24 && time.Minute() >= 0 && time.Minute() < 60);
    }
  }));
}

// Going forward second by second from the lower bound: what is met before the upper bound is inside.
TEST(WeekTimeProperty, RangesRunForwardFromTheLowerBound) {
  EXPECT_TRUE(rc::check("forward", [] {
    const auto near =
        rc::gen::oneOf(rc::gen::inRange(0, Week), rc::gen::inRange(0, 4), rc::gen::inRange(Week - 4, Week));
    const Reference time = At(*near);
    const Reference lower = At(*near);
    const Reference upper = At(*near);
    RC_PRE(lower->TimeVal() != upper->TimeVal());
    const int32_t lLength = upper->Minus(lower);
    const int32_t lAway = time->Minus(lower);
    RC_ASSERT(time->InRange(lower, upper) == (lAway < lLength));
    RC_ASSERT(time->Between(lower, upper) == (lAway > 0 && lAway < lLength));
    RC_ASSERT(time->BetweenEquals(lower, upper) == (lAway <= lLength));
  }));
}

TEST(WeekTimeProperty, MinusUndoesPlus) {
  EXPECT_TRUE(rc::check("minus undoes plus", [] {
    const auto lTime = *rc::gen::inRange(0, Week);
    const auto lDuration = *rc::gen::inRange(0, Week);
    RC_ASSERT(At(lTime)->PlusDuration(lDuration)->Minus(At(lTime)) == lDuration);
    RC_ASSERT(At(lTime)->PlusTime(At(lDuration))->Equals(At(lTime)->PlusDuration(lDuration)));
  }));
}

}  // namespace vex::test
