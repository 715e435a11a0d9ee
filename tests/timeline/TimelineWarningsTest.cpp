#include "tools/timeline/TimelineWarnings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "schedule/ScheduleFunctions.h"
#include "schedule/YearScheduleFunctions.h"
#include "tools/timeline/TimelinePicture.h"

namespace vex {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

std::vector<std::string> Warnings(const std::string& szWeek, const std::string& szYear,
                                  const std::string& szFrom, const std::string& szTo) {
  return TimelineWarnings(*ScheduleFromText(szWeek), *YearScheduleFromText(szYear), ParseDateTime(szFrom),
                          ParseDateTime(szTo));
}

const char* const ThursdayEvening = "((424800,2,(,0,eve.shw),410400))";  // 18:00 to 22:00

TEST(TimelineWarnings, NoneWhereNothingIsInTheWay) {
  EXPECT_THAT(
      Warnings(ThursdayEvening, "((2026-12-23,((331200,2,(,0,x.shw),327600))))", "2026-12-20", "2026-12-31"),
      IsEmpty());
}

TEST(TimelineWarnings, ADatedShowPastMidnightIsCutOff) {
  EXPECT_THAT(
      Warnings("()", "((2026-12-24,((435600,2,(,0,x.shw),417600))))", "2026-12-20", "2026-12-31"),
      ElementsAre("dated show \"x.shw\" of 24 December 2026 ends at 01:00 the next day; it is cut off at "
                  "midnight"));
}

TEST(TimelineWarnings, ADatedShowUntilMidnightIsWhole) {
  EXPECT_THAT(Warnings("()", "((2026-12-24,((432000,2,(,0,x.shw),417600))))", "2026-12-20", "2026-12-31"),
              IsEmpty());
}

TEST(TimelineWarnings, ADatedShowOnAnotherWeekdayDoesNotPlay) {
  EXPECT_THAT(
      Warnings("()", "((2026-12-24,((90000,2,(,0,x.shw),86400))))", "2026-12-20", "2026-12-31"),
      ElementsAre("dated show \"x.shw\" of 24 December 2026 starts on another weekday (Mon 12:00:00 AM) and "
                  "does not play from there"));
}

TEST(TimelineWarnings, AWeeklyShowGivesWay) {
  EXPECT_THAT(
      Warnings(ThursdayEvening, "((2026-12-24,((428400,2,(,0,x.shw),417600))))", "2026-12-20", "2026-12-31"),
      ElementsAre(
          "weekly show \"eve.shw\" gives way to dated show \"x.shw\" on 24 December 2026 from 20:00 to "
          "22:00"));
}

TEST(TimelineWarnings, WhatLiesOutsideIsNotSpokenOf) {
  EXPECT_THAT(
      Warnings(ThursdayEvening, "((2026-12-24,((435600,2,(,0,x.shw),417600))))", "2026-12-25", "2026-12-31"),
      IsEmpty());
}

std::string Picture(const std::string& szWeek, const std::string& szYear, const std::string& szFrom,
                    const std::string& szTo) {
  const auto weekly = ScheduleFromText(szWeek);
  const auto year = YearScheduleFromText(szYear);
  return TimelinePicture(Timeline(*weekly, *year).Rows(ParseDateTime(szFrom), ParseDateTime(szTo)));
}

size_t Count(const std::string& szText, const std::string& szPart) {
  size_t count = 0;
  for (size_t at = szText.find(szPart); at != std::string::npos; at = szText.find(szPart, at + 1)) ++count;
  return count;
}

TEST(TimelinePicture, EachShowIsABoxAndALineOfTheLegend) {
  const std::string szPicture =
      Picture(ThursdayEvening, "((2026-12-23,((331200,2,(,0,x.shw),327600))))", "2026-12-20", "2027-01-03");
  EXPECT_EQ(Count(szPicture, "eve.shw, 24 December 2026 18:00 to 24 December 2026 22:00"), 1U);
  EXPECT_EQ(Count(szPicture, "eve.shw, 31 December 2026 18:00"), 1U);
  EXPECT_EQ(Count(szPicture, "x.shw, dated, 23 December 2026 19:00 to 23 December 2026 20:00"), 1U);
  EXPECT_THAT(szPicture, HasSubstr(">eve.shw, 8 h</text>"));
  EXPECT_THAT(szPicture, HasSubstr(">x.shw, 1 h (&#9733; in a black frame: dated)</text>"));
}

TEST(TimelinePicture, AShowOverTheWeeksEndIsDrawnInBothWeeks) {
  EXPECT_EQ(Count(Picture("((3600,2,(,0,eve.shw),601200))", "()", "2026-12-20", "2027-01-02"),
                  "eve.shw, 26 December 2026 23:00 to 27 December 2026 01:00"),
            2U);
}

TEST(TimelinePicture, NamesCannotBreakOutOfIt) {
  const std::string szPicture = Picture("((3600,2,(,0,<b>&\"\x80.shw),0))", "()", "2026-12-20", "2026-12-21");
  EXPECT_THAT(szPicture, Not(HasSubstr("<b>")));
  EXPECT_THAT(szPicture, HasSubstr("&lt;b&gt;&amp;&quot;\xE2\x82\xAC.shw"));
}

TEST(TimelinePicture, NoRowsAreAnEmptyPicture) {
  EXPECT_THAT(TimelinePicture({}), HasSubstr("<svg"));
}

}  // namespace
}  // namespace vex
