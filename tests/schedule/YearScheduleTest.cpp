#include "schedule/YearSchedule.h"

#include <gtest/gtest.h>

#include "schedule/YearScheduleFunctions.h"
#include "tests/schedule/ScheduleWords.h"

namespace vex {
namespace {

// 24 December 2026 is a Thursday.
DateTime On(int32_t lDay, int32_t lHour, int32_t lMinute = 0) {
  return DateTime::FromParts(2026, 12, lDay, lHour, lMinute);
}

Lines Keys(const YearSchedule& year) {
  return {year.Keys().begin(), year.Keys().end()};
}

std::string Refused(const std::string& szNumberAndText) {
  const size_t slash = szNumberAndText.find('/');
  return szNumberAndText.substr(0, slash) + "/Schedule.AddShowEventByFile" + szNumberAndText.substr(slash);
}

class Year : public testing::Test {
 protected:
  std::string Add(DateTime dtStart, DateTime dtEnd, const std::string& szName = "a") {
    return RaisedError([&] { m_Year.AddShowEventByFile(szName, dtStart, dtEnd); });
  }
  std::string First(const TimeRange& range) {
    DateTime dtStart;
    const auto event = m_Year.FirstShowWithinRange(range, dtStart);
    return event ? event->Filename() + " " + FormatDateTime(dtStart) : "none";
  }
  static TimeRange Between(DateTime dtStart, DateTime dtEnd) {
    TimeRange range;
    range.StartTime(dtStart);
    range.EndTime(dtEnd);
    return range;
  }

  YearSchedule m_Year;
};

TEST_F(Year, IsEmptyWhenNew) {
  EXPECT_EQ(Lines{}, Keys(m_Year));
  EXPECT_FALSE(m_Year.Modified());
  EXPECT_EQ(nullptr, m_Year.DateSchedule(On(24, 0)));
  EXPECT_EQ(nullptr, m_Year.ScheduleByKey("2026-12-24"));
  EXPECT_EQ("none", First(TimeRange()));
}

TEST_F(Year, WritesDates) {
  EXPECT_EQ("2026-12-24", YearSchedule::DateToString(On(24, 18)));
  EXPECT_EQ("0100-01-02", YearSchedule::DateToString(DateTime::FromParts(100, 1, 2)));
}

TEST_F(Year, ReadsDates) {
  EXPECT_EQ(On(24, 0), YearSchedule::DateStringToDate("2026-12-24"));
  EXPECT_EQ(On(4, 0), YearSchedule::DateStringToDate(" 2026-12-4 "));
}

TEST_F(Year, ADateTextNeedsThreeParts) {
  const std::string szPrefix = "37//Unexpected date string format: ";
  const auto read = [](const char* szText) {
    return RaisedError([&] { (void)YearSchedule::DateStringToDate(szText); });
  };
  EXPECT_EQ(szPrefix + "2026-12", read("2026-12"));
  EXPECT_EQ(szPrefix, read(""));
  EXPECT_EQ(szPrefix + "2026-12-24-1", read("2026-12-24-1"));
  EXPECT_EQ(szPrefix + "-2026-12-24", read("-2026-12-24"));
}

TEST_F(Year, ADateMustBeInTheCalendar) {
  const auto read = [](const char* szText) {
    return RaisedError([&] { (void)YearSchedule::DateStringToDate(szText); });
  };
  EXPECT_EQ(TypeMismatchError, read("2026-13-01"));
  EXPECT_EQ(TypeMismatchError, read("2026-00-01"));
  EXPECT_EQ(TypeMismatchError, read("2026-02-29"));
  EXPECT_EQ(TypeMismatchError, read("2026-12-0"));
  EXPECT_EQ(TypeMismatchError, read("2026-x-01"));
  EXPECT_EQ(TypeMismatchError, read("--"));
  EXPECT_EQ(OverflowError, read("99999999999-1-1"));
}

TEST_F(Year, AddScheduleStoresUnderTheDatesText) {
  const auto schedule = std::make_shared<Schedule>();
  m_Year.AddSchedule(On(24, 18), schedule);
  EXPECT_EQ(Lines{"2026-12-24"}, Keys(m_Year));
  EXPECT_EQ(schedule, m_Year.DateSchedule(On(24, 23)));
  EXPECT_EQ(schedule, m_Year.ScheduleByKey("2026-12-24"));
  EXPECT_EQ(nullptr, m_Year.DateSchedule(On(25, 0)));
  EXPECT_TRUE(m_Year.Modified());
}

TEST_F(Year, ADateCannotBeAddedTwice) {
  const auto schedule = std::make_shared<Schedule>();
  m_Year.AddSchedule(On(24, 0), schedule);
  EXPECT_EQ(InvalidCallError,
            RaisedError([&] { m_Year.AddSchedule(On(24, 5), std::make_shared<Schedule>()); }));
  EXPECT_EQ(Lines{"2026-12-24"}, Keys(m_Year));
  EXPECT_EQ(schedule, m_Year.DateSchedule(On(24, 0)));
}

TEST_F(Year, KeysKeepTheOrderOfAdding) {
  EXPECT_EQ("nothing", Add(On(31, 18), On(31, 19)));
  EXPECT_EQ("nothing", Add(On(24, 18), On(24, 19)));
  EXPECT_EQ("nothing", Add(On(31, 20), On(31, 21)));
  EXPECT_EQ((Lines{"2026-12-31", "2026-12-24"}), Keys(m_Year));
}

TEST_F(Year, AShowIsFiledUnderTheDateOnWhichItStarts) {
  EXPECT_EQ("nothing", Add(On(24, 20), On(24, 22)));
  EXPECT_EQ((Lines{"Sun 0:00 - Thu 20:00", "Thu 20:00 - Thu 22:00 a", "Thu 22:00 - Sun 0:00"}),
            Chain(*m_Year.DateSchedule(On(24, 0))));
  EXPECT_TRUE(m_Year.Modified());
}

TEST_F(Year, AShowMayRunPastMidnightAndTheYearsEnd) {
  EXPECT_EQ("nothing", Add(On(31, 23), DateTime::FromParts(2027, 1, 1, 0, 30)));
  EXPECT_EQ(Lines{"2026-12-31"}, Keys(m_Year));
}

TEST_F(Year, AShowMayRunFromSaturdayIntoSunday) {
  EXPECT_EQ("nothing", Add(On(26, 22), On(27, 2)));
  EXPECT_EQ((Lines{"Sun 2:00 - Sat 22:00", "Sat 22:00 - Sun 2:00 a"}),
            Chain(*m_Year.DateSchedule(On(26, 0))));
}

TEST_F(Year, AnEndNotBehindTheStartIsErrorOneAndLeavesModifiedAsItWas) {
  const std::string szError = Refused("1/End time precedes start time");
  EXPECT_EQ(szError, Add(On(24, 20), On(24, 20)));
  EXPECT_EQ(szError, Add(On(24, 20), On(24, 19)));
  EXPECT_EQ(szError, Add(On(24, 20), On(23, 22)));
  EXPECT_FALSE(m_Year.Modified());
}

TEST_F(Year, MoreThanOneMidnightIsErrorTwoAndSetsModified) {
  const std::string szError = Refused("2/Event spans more than two days");
  EXPECT_EQ(szError, Add(On(25, 22), On(27, 1)));
  EXPECT_EQ(szError, Add(On(25, 22), On(27, 0)));
  EXPECT_EQ(szError, Add(On(1, 22), On(31, 0)));
  EXPECT_TRUE(m_Year.Modified());
  EXPECT_EQ(Lines{}, Keys(m_Year));
}

TEST_F(Year, AnEndInTheNextDatesFirstShowIsErrorThree) {
  Add(On(25, 1), On(25, 2));
  m_Year.Modified(false);
  EXPECT_EQ(Refused("3/End time conficts with event in next day"), Add(On(24, 23), On(25, 1, 1)));
  EXPECT_TRUE(m_Year.Modified());
  EXPECT_EQ(Lines{"2026-12-25"}, Keys(m_Year));
  EXPECT_EQ("nothing", Add(On(24, 23), On(25, 1)));
}

TEST_F(Year, AStartInItsOwnDatesLastShowIsErrorFourOfThePreviousDay) {
  Add(On(24, 20), On(24, 23));
  EXPECT_EQ(Refused("4/Start time conflicts with event in previous day"), Add(On(24, 22), On(25, 1)));
  EXPECT_EQ(Refused("4/Start time conflicts with event in previous day"), Add(On(24, 19), On(25, 1)));
  EXPECT_EQ("nothing", Add(On(24, 23), On(25, 1)));
}

TEST_F(Year, TheNextDayIsAskedBeforeTheOwnOne) {
  Add(On(24, 20), On(24, 23));
  Add(On(25, 1), On(25, 2));
  EXPECT_EQ(Refused("3/End time conficts with event in next day"), Add(On(24, 22), On(25, 3)));
}

TEST_F(Year, AConflictWithinTheDateIsErrorFour) {
  Add(On(24, 18), On(24, 20));
  EXPECT_EQ(Refused("4/Event conflict"), Add(On(24, 18), On(24, 19)));
  EXPECT_EQ(Refused("4/Event conflict"), Add(On(24, 17), On(24, 19)));
  EXPECT_EQ("nothing", Add(On(24, 20), On(24, 21), "b"));
  EXPECT_EQ(Lines{"2026-12-24"}, Keys(m_Year));
}

TEST_F(Year, OnASaturdayWithAShowAnotherOneIntoSundayIsRefused) {
  Add(On(26, 18), On(26, 20));
  EXPECT_EQ(Refused("4/Event conflict"), Add(On(26, 22), On(27, 2)));
}

TEST_F(Year, ADateWithoutAShowStandsInNobodysWay) {
  m_Year.AddSchedule(On(24, 0), std::make_shared<Schedule>());
  m_Year.AddSchedule(On(25, 0), std::make_shared<Schedule>());
  EXPECT_EQ("nothing", Add(On(24, 22), On(25, 2)));
}

TEST_F(Year, RemovingAShowKeepsItsDateWhileItHoldsAnother) {
  Add(On(24, 18), On(24, 20), "a");
  Add(On(24, 21), On(24, 22), "b");
  m_Year.Modified(false);
  const auto day = m_Year.DateSchedule(On(24, 0));
  m_Year.RemoveShowEvent(On(24, 12), day->GetNodeByTime(At(Thu, 19)));
  EXPECT_EQ(Lines{"2026-12-24"}, Keys(m_Year));
  EXPECT_EQ("b", day->FirstShowEvent()->Filename());
  EXPECT_TRUE(m_Year.Modified());
}

TEST_F(Year, RemovingTheOnlyShowRemovesTheDate) {
  Add(On(24, 18), On(24, 20));
  Add(On(25, 18), On(25, 20));
  m_Year.RemoveShowEvent(On(24, 0), m_Year.DateSchedule(On(24, 0))->GetNodeByTime(At(Thu, 19)));
  EXPECT_EQ(Lines{"2026-12-25"}, Keys(m_Year));
  EXPECT_EQ(nullptr, m_Year.DateSchedule(On(24, 0)));
  EXPECT_EQ("a 2026-12-25 18:00:00", First(TimeRange()));
}

TEST_F(Year, RemovingWhatIsNoShowFails) {
  Add(On(24, 18), On(24, 20));
  m_Year.Modified(false);
  const auto day = m_Year.DateSchedule(On(24, 0));
  EXPECT_EQ("1/Schedule.RemoveShowEvent/Can not remove non-show event",
            RaisedError([&] { m_Year.RemoveShowEvent(On(24, 0), day->FirstNode()); }));
  EXPECT_TRUE(m_Year.Modified());
  EXPECT_EQ(ObjectNotSetError, RaisedError([&] { m_Year.RemoveShowEvent(On(25, 0), day->FirstNode()); }));
  EXPECT_EQ(Lines{"2026-12-24"}, Keys(m_Year));
}

TEST_F(Year, FirstShowWithinRangeIsTheEarliestThatOverlaps) {
  Add(On(26, 18), On(26, 20), "c");
  Add(On(24, 18), On(24, 20), "a");
  Add(On(24, 21), On(24, 22), "b");
  EXPECT_EQ("a 2026-12-24 18:00:00", First(TimeRange()));
  EXPECT_EQ("a 2026-12-24 18:00:00", First(Between(On(24, 19), On(27, 0))));
  EXPECT_EQ("b 2026-12-24 21:00:00", First(Between(On(24, 20), On(27, 0))));
  EXPECT_EQ("c 2026-12-26 18:00:00", First(Between(On(24, 22), On(27, 0))));
  EXPECT_EQ("none", First(Between(On(24, 22), On(26, 18))));
  EXPECT_EQ("none", First(Between(On(26, 20), On(31, 18))));
}

TEST_F(Year, FirstShowWithinAnOpenRange) {
  Add(On(26, 18), On(26, 20), "c");
  Add(On(24, 18), On(24, 20), "a");
  TimeRange from, until;
  from.StartTime(On(24, 20));
  until.EndTime(On(24, 18));
  EXPECT_EQ("c 2026-12-26 18:00:00", First(from));
  EXPECT_EQ("none", First(until));
}

TEST_F(Year, FirstShowWithinRangeSeesWhatRunsPastMidnight) {
  Add(On(24, 23), On(25, 1), "a");
  EXPECT_EQ("a 2026-12-24 23:00:00", First(Between(On(25, 0, 30), On(25, 12))));
}

TEST_F(Year, FirstShowWithinRangeLeavesTheStartAloneWithoutAShow) {
  DateTime dtStart = On(1, 1);
  EXPECT_EQ(nullptr, m_Year.FirstShowWithinRange(TimeRange(), dtStart));
  EXPECT_EQ(On(1, 1), dtStart);
}

TEST_F(Year, OfShowsThatStartTogetherTheOneVisitedLastIsGiven) {
  // Each date's schedule is a whole week: a foreign weekday's show counts on the date on or after its own.
  const auto put = [&](int32_t lDay, const char* szName) {
    auto schedule = std::make_shared<Schedule>();
    schedule->AddShowEvent(ShowFrom(At(Fri, 18), At(Fri, 20), szName));
    m_Year.AddSchedule(On(lDay, 0), schedule);
  };
  put(24, "filed on Thursday");
  put(25, "filed on Friday");
  EXPECT_EQ("filed on Friday 2026-12-25 18:00:00", First(TimeRange()));
}

TEST_F(Year, ADateBehindTheBestStartIsSkippedAndOneBeforeItIsNot) {
  Add(On(26, 18), On(26, 20), "later");
  Add(On(25, 18), On(25, 20), "earlier");
  Add(On(27, 8), On(27, 9), "last");
  EXPECT_EQ("earlier 2026-12-25 18:00:00", First(TimeRange()));
}

TEST_F(Year, AWholeWeekShowHasNoStartAndIsNeverGiven) {
  auto schedule = std::make_shared<Schedule>();
  schedule->AddShowEvent(ShowFrom(At(Thu, 18), At(Thu, 18), "always"));
  m_Year.AddSchedule(On(24, 0), schedule);
  EXPECT_EQ("none", First(TimeRange()));
}

}  // namespace
}  // namespace vex
