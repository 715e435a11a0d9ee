#include "tools/authoring/Moments.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "basic/Error.h"
#include "time/WeekTimeFunctions.h"

namespace vex {
namespace {

TEST(Moments, AWeekTimeIsADayAndATimeOfDay) {
  EXPECT_EQ(ParseWeekTime("Sun 00:00")->TimeVal(), 0);
  EXPECT_EQ(ParseWeekTime("Mon 18:00")->TimeVal(), 151200);
  EXPECT_EQ(ParseWeekTime("Mon 18:00:05")->TimeVal(), 151205);
  EXPECT_EQ(ParseWeekTime("Sat 23:59:59")->TimeVal(), 604799);
  EXPECT_EQ(ParseWeekTime("sAT 9:00")->TimeVal(), 550800);
}

TEST(Moments, WhatIsNoWeekTimeIsRefused) {
  for (const char* szText :
       {"", "Mon", "Mon ", "Mon 18", "Mon18:00", "Monday 18:00", "Mo 18:00", "Mon 24:00", "Mon 18:60",
        "Mon 18:00:60", "18:00", "Xxx 18:00", "Mon 18:00 Tue", "Mon -1:00", "2026-12-24 18:00"}) {
    EXPECT_THROW(static_cast<void>(ParseWeekTime(szText)), Error) << szText;
  }
}

TEST(Moments, WhatIsPrintedCanBeTypedAgain) {
  EXPECT_TRUE(rc::check("week times", [] {
    const auto time = std::make_shared<WeekTime>();
    time->TimeVal(*rc::gen::inRange(0, 604800));
    RC_ASSERT(ParseWeekTime(WeekTimeToWords(*time))->TimeVal() == time->TimeVal());
  }));
  EXPECT_TRUE(rc::check("moments", [] {
    const DateTime dtTime = DateTime::FromParts(2026, 1, 1).PlusSeconds(*rc::gen::inRange(0, 100'000'000));
    RC_ASSERT(ParseDateTime(MomentToWords(dtTime)) == dtTime);
  }));
}

TEST(Moments, SecondsAreLeftOutWhereTheyAreNone) {
  EXPECT_EQ(WeekTimeToWords(*NewWeekTime(1, 9, 5, 0)), "Mon 09:05");
  EXPECT_EQ(WeekTimeToWords(*NewWeekTime(1, 9, 5, 7)), "Mon 09:05:07");
  EXPECT_EQ(MomentToWords(DateTime::FromParts(2026, 12, 24, 18, 0, 0)), "2026-12-24 18:00");
  EXPECT_EQ(MomentToWords(DateTime::FromParts(2026, 12, 24, 18, 0, 1)), "2026-12-24 18:00:01");
}

TEST(Moments, ATimeBeforeTheWeekHasADayToo) {
  WeekTime time;
  time.TimeVal(-604800 - 3600);
  EXPECT_EQ(WeekTimeToWords(time), "Sat 23:00");
}

}  // namespace
}  // namespace vex
