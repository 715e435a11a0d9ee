#include "time/WeekTimeFunctions.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <limits>

#include "tests/basic/Raises.h"

namespace vex::test {

TEST(WeekTimeFunctions, NewWeekTimeNormalisesItsParts) {
  EXPECT_EQ(NewWeekTime(1, 13, 5, 7)->TimeVal(), 133507);
  EXPECT_EQ(NewWeekTime(7, 25, -5, 99)->WeekTimeToString(), "Sun 11:00:59 PM");
  ExpectPlatformError([] { return NewWeekTime(std::numeric_limits<int32_t>::max(), 0, 0, 0); },
                      ErrorOverflow);
}

TEST(WeekTimeFunctions, FromADateItKeepsDayAndClock) {
  EXPECT_EQ(WeekTimeFromDate(DateTime::FromParts(2026, 12, 24, 18, 30, 5))->WeekTimeToString(),
            "Thu 6:30:05 PM");
  EXPECT_EQ(WeekTimeFromDate(DateTime::FromParts(2026, 12, 27))->TimeVal(), 0);
  EXPECT_EQ(WeekTimeFromDate(DateTime())->Day(), 6);
}

TEST(WeekTimeFunctions, ToADateItTakesTheWeekFromSunday) {
  const auto monday = NewWeekTime(1, 13, 5, 7);
  const DateTime dtExpected = DateTime::FromParts(2026, 12, 21, 13, 5, 7);
  EXPECT_EQ(WeekTimeToDate(monday, DateTime::FromParts(2026, 12, 20, 21, 0, 0)), dtExpected);
  EXPECT_EQ(WeekTimeToDate(monday, DateTime::FromParts(2026, 12, 21)), dtExpected);
  EXPECT_EQ(WeekTimeToDate(monday, DateTime::FromParts(2026, 12, 26, 23, 59, 59)), dtExpected);
  EXPECT_NE(WeekTimeToDate(monday, DateTime::FromParts(2026, 12, 27)), dtExpected);
  ExpectPlatformError([] { return WeekTimeToDate(nullptr, DateTime()); }, ErrorObjectNotSet);
}

TEST(WeekTimeFunctions, ToTextIsTheTimeVal) {
  EXPECT_EQ(WeekTimeToText(NewWeekTime(1, 13, 5, 7)), "133507");
  EXPECT_EQ(WeekTimeToText(NewWeekTime(0, 0, 0, 0)), "0");
  ExpectPlatformError([] { return WeekTimeToText(nullptr); }, ErrorObjectNotSet);
}

TEST(WeekTimeFunctions, FromTextTakesTheLeadingNumberRounded) {
  EXPECT_EQ(WeekTimeFromText("133507")->ToString(), "Mon1357");
  EXPECT_EQ(WeekTimeFromText(" 12abc")->TimeVal(), 12);
  EXPECT_EQ(WeekTimeFromText("2.5")->TimeVal(), 2);
  EXPECT_EQ(WeekTimeFromText("3.5")->TimeVal(), 4);
  EXPECT_EQ(WeekTimeFromText("-1")->TimeVal(), 604799);
  EXPECT_EQ(WeekTimeFromText("604800")->TimeVal(), 0);
}

TEST(WeekTimeFunctions, FromTextWithoutANumberIsSundayMidnight) {
  for (const char* szText : {"", "x", "*O1", "()"})
    EXPECT_EQ(WeekTimeFromText(szText)->TimeVal(), 0) << szText;
}

TEST(WeekTimeFunctions, FromTextUnescapesFirst) {
  EXPECT_EQ(WeekTimeFromText("7*S5")->TimeVal(), 7);
}

TEST(WeekTimeFunctions, FromTextOverflowsBeyond32Bits) {
  for (const char* szText : {"2147483648", "1e999", "2147483647"}) {
    ExpectPlatformError([&] { return WeekTimeFromText(szText); }, ErrorOverflow);
  }
}

TEST(WeekTimeFunctionsProperty, TextAndDateComeBack) {
  EXPECT_TRUE(rc::check("round trips", [] {
    const auto lTimeVal = *rc::gen::inRange(0, 604800);
    const auto lReference = *rc::gen::inRange(-1'000'000'000, 2'000'000'000);
    const auto time = NewWeekTime(0, 0, 0, 0)->PlusDuration(lTimeVal);
    RC_ASSERT(WeekTimeFromText(WeekTimeToText(time))->MemberwiseEquals(time));
    const DateTime dtReference = DateTime().PlusSeconds(lReference);
    const DateTime dtTime = WeekTimeToDate(time, dtReference);
    RC_ASSERT(WeekTimeFromDate(dtTime)->MemberwiseEquals(time));
    RC_ASSERT(WeekTimeToDate(WeekTimeFromDate(dtReference), dtReference) == dtReference);
  }));
}

}  // namespace vex::test
