#include "tools/timeline/Timeline.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <string>
#include <vector>

#include "schedule/ScheduleFunctions.h"
#include "schedule/YearScheduleFunctions.h"
#include "time/WeekTimeFunctions.h"

namespace vex {
namespace {

using testing::ElementsAre;

/// "from to event" for each row.
std::vector<std::string> Lines(const std::vector<TimelineRow>& rows) {
  std::vector<std::string> lines;
  for (const TimelineRow& row : rows)
    lines.push_back(FormatDateTime(row.From) + " " + FormatDateTime(row.To) + " " + row.Event->Serialize());
  return lines;
}

std::vector<std::string> Lines(const std::string& szWeek, const std::string& szYear,
                               const std::string& szFrom, const std::string& szTo) {
  const auto weekly = ScheduleFromText(szWeek);
  const auto year = YearScheduleFromText(szYear);
  return Lines(Timeline(*weekly, *year).Rows(ParseDateTime(szFrom), ParseDateTime(szTo)));
}

// Thursday 18:00 to 22:00; 24 December 2026 is a Thursday.
const char* const ThursdayEvening = "((424800,2,(,0,eve.shw),410400))";

TEST(Timeline, EmptySchedulesAreOneRow) {
  EXPECT_THAT(Lines("()", "()", "2026-01-01 00:00", "2027-01-01 00:00"),
              ElementsAre("2026-01-01 00:00:00 2027-01-01 00:00:00 (,(F,,F,),0,F)"));
}

TEST(Timeline, NothingUnlessFromIsBeforeTo) {
  EXPECT_TRUE(Lines(ThursdayEvening, "()", "2026-12-24 18:00", "2026-12-24 18:00").empty());
  EXPECT_TRUE(Lines(ThursdayEvening, "()", "2026-12-25 18:00", "2026-12-24 18:00").empty());
}

TEST(Timeline, OneSecondIsARow) {
  EXPECT_THAT(Lines(ThursdayEvening, "()", "2026-12-24 21:59:59", "2026-12-24 22:00:00"),
              ElementsAre("2026-12-24 21:59:59 2026-12-24 22:00:00 "
                          "(eve.shw,(T,2026-12-24 18:00:00,T,2026-12-24 22:00:00),0,F)"));
}

TEST(Timeline, AShowStartsAtItsStartAndIsOverAtItsEnd) {
  EXPECT_THAT(Lines(ThursdayEvening, "()", "2026-12-24 17:59:59", "2026-12-24 22:00:01"),
              ElementsAre("2026-12-24 17:59:59 2026-12-24 18:00:00 "
                          "(,(T,2026-12-17 22:00:00,T,2026-12-24 18:00:00),0,F)",
                          "2026-12-24 18:00:00 2026-12-24 22:00:00 "
                          "(eve.shw,(T,2026-12-24 18:00:00,T,2026-12-24 22:00:00),0,F)",
                          "2026-12-24 22:00:00 2026-12-24 22:00:01 "
                          "(,(T,2026-12-24 22:00:00,T,2026-12-31 18:00:00),0,F)"));
}

TEST(Timeline, AGapOverTheWeeksEndIsOneRow) {
  const auto lines = Lines(ThursdayEvening, "()", "2026-12-24 22:00", "2026-12-31 18:00");
  EXPECT_THAT(lines, ElementsAre("2026-12-24 22:00:00 2026-12-31 18:00:00 "
                                 "(,(T,2026-12-24 22:00:00,T,2026-12-31 18:00:00),0,F)"));
}

TEST(Timeline, ADatedShowInterruptsAndIsCutOffAtMidnight) {
  // Dated Thursday 20:00 to Friday 01:00.
  const std::string szYear = "((2026-12-24,((435600,2,(,0,x.shw),417600))))";
  EXPECT_THAT(Lines(ThursdayEvening, szYear, "2026-12-24 18:00", "2026-12-25 02:00"),
              ElementsAre("2026-12-24 18:00:00 2026-12-24 20:00:00 "
                          "(eve.shw,(T,2026-12-24 18:00:00,T,2026-12-24 22:00:00),0,F)",
                          "2026-12-24 20:00:00 2026-12-25 00:00:00 "
                          "(x.shw,(T,2026-12-24 20:00:00,T,2026-12-25 01:00:00),1,F)",
                          "2026-12-25 00:00:00 2026-12-25 02:00:00 "
                          "(,(T,2026-12-24 22:00:00,T,2026-12-31 18:00:00),0,F)"));
}

TEST(Timeline, EachOccurrenceOfAWeeklyShowIsARowOfItsOwn) {
  // One show that fills all of the week but its last second, so its occurrences nearly touch.
  EXPECT_EQ(Lines("((604799,2,(,0,all.shw),0))", "()", "2026-12-20 00:00", "2027-01-03 00:00").size(), 4U);
}

TEST(Timeline, AnswersAtTheEndOfTheCalendar) {
  EXPECT_EQ(Lines("()", "((9999-12-31,()))", "9999-12-31 00:00", "9999-12-31 23:59:59").size(), 1U);
}

/// A schedule's text of shows that do not overlap, all within the hours looked at, in steps of some seconds.
std::string RandomShows(int32_t lFirst, int32_t lSpan) {
  std::string szText = "(";
  int32_t lAt = lFirst + *rc::gen::inRange(0, 200);
  const int32_t lCount = *rc::gen::inRange(0, 12);
  for (int32_t i = 0; i < lCount; ++i) {
    const int32_t lEnd = lAt + *rc::gen::inRange(1, lSpan / 8);
    if (lEnd >= lFirst + lSpan) break;
    if (i > 0) szText += ",";
    szText += "(" + std::to_string(lEnd % 604800) + ",2,(,0,s" + std::to_string(*rc::gen::inRange(0, 3)) +
              ".shw)," + std::to_string(lAt % 604800) + ")";
    lAt = lEnd + *rc::gen::element(0, 1, 60, 900);
  }
  return szText + ")";
}

TEST(TimelineProperty, GivesWhatALookAtEverySecondGives) {
  EXPECT_TRUE(rc::check([] {
    const DateTime dtDay = ParseDateTime("2026-12-20").PlusDays(*rc::gen::inRange(0, 8));
    const int32_t lDay = WeekTimeFromDate(dtDay)->TimeVal();
    constexpr int32_t Hours = 3600;
    // Around the day's midnight: shows of the week from before it, dated ones behind it and before.
    const auto weekly = ScheduleFromText(RandomShows((lDay + 604800 - Hours / 2) % 604800, Hours));
    const std::string szYear = "((" + FormatDate(dtDay) + "," + RandomShows(lDay, Hours) + "),(" +
                               FormatDate(dtDay.PlusDays(-1)) + "," +
                               RandomShows((lDay + 604800 - Hours / 2) % 604800, Hours) + "))";
    const auto year = YearScheduleFromText(szYear);
    const Timeline timeline(*weekly, *year);
    const DateTime from = dtDay.PlusSeconds(*rc::gen::inRange(-Hours / 2, 0));
    const DateTime to = dtDay.PlusSeconds(*rc::gen::inRange(1, Hours / 2));
    std::vector<TimelineRow> plain;
    for (DateTime at = from; at < to; at = at.PlusSeconds(1)) {
      const auto event = timeline.At(at);
      if (!plain.empty() && plain.back().Event->Serialize() == event->Serialize())
        plain.back().To = at.PlusSeconds(1);
      else
        plain.push_back({at, at.PlusSeconds(1), event});
    }
    RC_ASSERT(Lines(timeline.Rows(from, to)) == Lines(plain));
  }));
}

}  // namespace
}  // namespace vex
