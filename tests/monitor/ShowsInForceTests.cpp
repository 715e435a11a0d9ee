#include "monitor/ShowsInForce.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "basic/Error.h"
#include "schedule/Schedule.h"
#include "schedule/ShowEventFunctions.h"
#include "schedule/YearSchedule.h"
#include "time/TimeRange.h"
#include "time/WeekTimeFunctions.h"

namespace vex {
namespace {

constexpr int32_t Thursday = 4;

DateTime On(int32_t lDay, int32_t lHour, int32_t lMinute = 0, int32_t lSecond = 0) {
  return DateTime::FromParts(2026, 12, lDay, lHour, lMinute, lSecond);  // the 24th is a Thursday
}

std::shared_ptr<MonitoredShowEvent> Event(const std::string& szText) {
  auto event = std::make_shared<MonitoredShowEvent>();
  event->Deserialize(szText);
  return event;
}

class ShowsInForceTest : public testing::Test {
 protected:
  void Weekly(const std::string& szFilename, int32_t lDay, int32_t lFrom, int32_t lUntilDay, int32_t lUntil) {
    m_Week.AddShowEventByFile(szFilename, NewWeekTime(lDay, lFrom, 0, 0),
                              NewWeekTime(lUntilDay, lUntil, 0, 0));
  }
  void Dated(const std::string& szFilename, DateTime start, DateTime end) {
    m_Year.AddShowEventByFile(szFilename, start, end);
  }
  [[nodiscard]] ShowsInForce Shows() const { return {&m_Week, &m_Year, m_OnDemand, m_NoSchedule}; }
  [[nodiscard]] std::string Current(DateTime dtNow) const {
    return Shows().GetCurrentShowEvent(dtNow)->Filename();
  }
  /// What follows what is in force now, if that is what plays.
  [[nodiscard]] std::string Next(DateTime dtNow) const {
    const auto current = Shows().GetCurrentShowEvent(dtNow);
    return Next(current, dtNow);
  }
  [[nodiscard]] std::string Next(const std::shared_ptr<MonitoredShowEvent>& current, DateTime dtNow) const {
    const auto next = Shows().GetNextShowEvent(current, Shows().GetCurrentShowEvent(dtNow), dtNow);
    return next ? next->Serialize() : "none";
  }

  Schedule m_Week;
  YearSchedule m_Year;
  std::shared_ptr<MonitoredShowEvent> m_OnDemand;
  bool m_NoSchedule = false;
};

TEST_F(ShowsInForceTest, OnDemandComesBeforeDatedBeforeWeekly) {
  Weekly("week", Thursday, 18, Thursday, 22);
  Dated("dated", On(24, 19), On(24, 21));
  m_OnDemand = Event("(demand,(T,2026-12-24 20:00:00,T,2026-12-24 20:30:00),2,F)");
  EXPECT_EQ(Current(On(24, 17)), "");
  EXPECT_EQ(Current(On(24, 18)), "week");
  EXPECT_EQ(Current(On(24, 19)), "dated");
  EXPECT_EQ(Current(On(24, 20)), "demand");
  EXPECT_EQ(Current(On(24, 20, 30)), "dated");
  EXPECT_EQ(Current(On(24, 21)), "week");
  EXPECT_EQ(Current(On(24, 22)), "");
}

TEST_F(ShowsInForceTest, AnOnDemandEventWithoutFileNameDoesNotCount) {
  Weekly("week", Thursday, 18, Thursday, 22);
  m_OnDemand = Event("(,(F,,F,),2,F)");
  EXPECT_EQ(Current(On(24, 19)), "week");
}

TEST_F(ShowsInForceTest, TheOnDemandEventItselfIsTheAnswer) {
  m_OnDemand = Event("(demand,(F,,F,),2,F)");
  EXPECT_EQ(Shows().GetCurrentShowEvent(On(24, 19)), m_OnDemand);
  m_OnDemand = Event("(demand,(F,,T,2026-12-24 19:00:00),2,F)");
  EXPECT_EQ(Shows().GetOnDemandShowEvent(On(24, 19)), nullptr);
}

TEST_F(ShowsInForceTest, EachKindSaysWhereItCameFrom) {
  Weekly("week", Thursday, 18, Thursday, 22);
  Dated("dated", On(25, 19), On(25, 21));
  EXPECT_EQ(Shows().GetCurrentShowEvent(On(24, 19))->Serialize(),
            "(week,(T,2026-12-24 18:00:00,T,2026-12-24 22:00:00),0,F)");
  EXPECT_EQ(Shows().GetCurrentShowEvent(On(25, 20))->Serialize(),
            "(dated,(T,2026-12-25 19:00:00,T,2026-12-25 21:00:00),1,F)");
}

TEST_F(ShowsInForceTest, AGapOfTheYearIsAnEventWithoutFile) {
  Dated("dated", On(24, 19), On(24, 21));
  EXPECT_EQ(Shows().GetYearShowEvent(On(24, 18))->Filename(), "");
  EXPECT_EQ(Shows().GetYearShowEvent(On(24, 18))->ScheduleType(), YearScheduleType);
  EXPECT_EQ(Shows().GetYearShowEvent(On(25, 19)), nullptr);
}

TEST_F(ShowsInForceTest, AnEmptyWeekIsOneEventWithoutBounds) {
  EXPECT_EQ(Shows().GetCurrentShowEvent(On(24, 19))->Serialize(), "(,(F,,F,),0,F)");
}

TEST_F(ShowsInForceTest, WithoutYearScheduleTheWeekApplies) {
  Weekly("week", Thursday, 18, Thursday, 22);
  const ShowsInForce shows(&m_Week, nullptr, nullptr, false);
  EXPECT_EQ(shows.GetYearShowEvent(On(24, 19)), nullptr);
  EXPECT_EQ(shows.FirstYearShowWithin(TimeRange()), nullptr);
  EXPECT_EQ(shows.GetCurrentShowEvent(On(24, 19))->Filename(), "week");
}

TEST_F(ShowsInForceTest, WithoutWeeklyScheduleAskingForItIsAnError) {
  const ShowsInForce shows(nullptr, nullptr, nullptr, false);
  try {
    (void)shows.GetCurrentShowEvent(On(24, 19));
    FAIL() << "answered";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number, ErrorObjectNotSet);
  }
}

TEST_F(ShowsInForceTest, WithoutSchedulesTheAnswerIsAnEmptyEvent) {
  Weekly("week", Thursday, 18, Thursday, 22);
  Dated("dated", On(24, 19), On(24, 21));
  m_NoSchedule = true;
  EXPECT_EQ(Shows().GetCurrentShowEvent(On(24, 19))->Serialize(), "(,(F,,F,),0,F)");
  m_OnDemand = Event("(demand,(F,,F,),2,F)");
  EXPECT_EQ(Current(On(24, 19)), "demand");
}

TEST_F(ShowsInForceTest, NextIsWhatIsScheduledWhenNothingIsCurrent) {
  Weekly("week", Thursday, 18, Thursday, 22);
  EXPECT_EQ(Next(nullptr, On(24, 19)), "(week,(T,2026-12-24 18:00:00,T,2026-12-24 22:00:00),0,F)");
}

TEST_F(ShowsInForceTest, NextIsWhatIsScheduledWhenTheCurrentShowIsShuttingDown) {
  Weekly("week", Thursday, 18, Thursday, 20);  // nothing is scheduled at the old show's end
  EXPECT_EQ(Next(Event("(old,(T,2026-12-24 18:00:00,T,2026-12-24 20:00:00),0,T)"), On(24, 19)),
            "(week,(T,2026-12-24 18:00:00,T,2026-12-24 20:00:00),0,F)");
}

TEST_F(ShowsInForceTest, NextIsWhatIsInForceWhenTheCurrentRangeIsOver) {
  Weekly("week", Thursday, 18, Thursday, 22);
  EXPECT_EQ(Next(Event("(old,(F,,T,2026-12-24 19:00:00),0,F)"), On(24, 19)),
            "(week,(T,2026-12-24 18:00:00,T,2026-12-24 22:00:00),0,F)");
}

TEST_F(ShowsInForceTest, NextIsWhatIsInForceWhenTheCurrentRangeHasNotBegun) {
  EXPECT_EQ(Next(Event("(old,(T,2026-12-24 20:00:00,F,),0,F)"), On(24, 19)), "(,(F,,F,),0,F)");
}

TEST_F(ShowsInForceTest, NextIsWhatIsInForceAtTheEnd) {
  Weekly("one", Thursday, 18, Thursday, 20);
  Weekly("two", Thursday, 20, Thursday, 22);
  EXPECT_EQ(Next(On(24, 19)), "(two,(T,2026-12-24 20:00:00,T,2026-12-24 22:00:00),0,F)");
  EXPECT_EQ(Next(On(24, 21)), "(,(T,2026-12-24 22:00:00,T,2026-12-31 18:00:00),0,F)");
}

TEST_F(ShowsInForceTest, NextAfterAGapIsTheShowThatEndsIt) {
  Weekly("week", Thursday, 18, Thursday, 22);
  EXPECT_EQ(Next(On(24, 17)), "(week,(T,2026-12-24 18:00:00,T,2026-12-24 22:00:00),0,F)");
}

TEST_F(ShowsInForceTest, ADatedShowInterruptsAWeeklyOne) {
  Weekly("week", Thursday, 18, Thursday, 22);
  Dated("dated", On(24, 19), On(24, 21));
  EXPECT_EQ(Next(On(24, 18, 30)), "(dated,(T,2026-12-24 19:00:00,T,2026-12-24 21:00:00),1,F)");
}

TEST_F(ShowsInForceTest, ADatedShowThatStartsNowIsNoCandidate) {
  Weekly("week", Thursday, 18, Thursday, 22);
  Dated("dated", On(24, 19), On(24, 21));
  const auto week = Event("(week,(T,2026-12-24 18:00:00,T,2026-12-24 22:00:00),0,F)");
  EXPECT_EQ(Next(week, On(24, 19)), "(,(T,2026-12-24 22:00:00,T,2026-12-31 18:00:00),0,F)");
  EXPECT_EQ(Next(week, On(24, 18, 59, 59)), "(dated,(T,2026-12-24 19:00:00,T,2026-12-24 21:00:00),1,F)");
}

TEST_F(ShowsInForceTest, ADatedShowThatIsOnDoesNotHideALaterOne) {
  Dated("first", On(24, 18), On(24, 20));
  Dated("second", On(24, 21), On(24, 22));
  const auto open = Event("(week,(F,,F,),0,F)");
  EXPECT_EQ(Next(open, On(24, 19)), "(second,(T,2026-12-24 21:00:00,T,2026-12-24 22:00:00),1,F)");
}

TEST_F(ShowsInForceTest, ADatedShowThatStartsAtTheEndIsNoCandidate) {
  Weekly("week", Thursday, 18, Thursday, 22);
  Dated("dated", On(24, 22), On(24, 23));
  EXPECT_EQ(Next(On(24, 19)), "(dated,(T,2026-12-24 22:00:00,T,2026-12-24 23:00:00),1,F)");
  const auto longer = Event("(week,(T,2026-12-24 18:00:00,T,2026-12-24 21:59:59),0,F)");
  EXPECT_EQ(Next(longer, On(24, 19)), "(week,(T,2026-12-24 18:00:00,T,2026-12-24 22:00:00),0,F)");
}

TEST_F(ShowsInForceTest, TheFirstDatedShowCountsWhateverTheOrderOfTheDates) {
  Dated("late", On(30, 18), On(30, 20));
  Dated("early", On(26, 18), On(26, 20));
  Dated("latest", On(31, 18), On(31, 20));
  EXPECT_EQ(Next(Event("(x,(F,,F,),0,F)"), On(24, 19)),
            "(early,(T,2026-12-26 18:00:00,T,2026-12-26 20:00:00),1,F)");
}

TEST_F(ShowsInForceTest, ADatedShowOverMidnightIsACandidateOnItsOwnDateOnly) {
  Dated("night", On(24, 23), On(25, 2));
  const auto open = Event("(x,(F,,F,),0,F)");
  EXPECT_EQ(Next(open, On(24, 19)), "(night,(T,2026-12-24 23:00:00,T,2026-12-25 02:00:00),1,F)");
  EXPECT_EQ(Next(open, On(24, 23)), "none");
}

TEST_F(ShowsInForceTest, EventsOfOtherWeekdaysInADatesScheduleAreNoCandidates) {
  auto day = std::make_shared<Schedule>();
  day->AddShowEventByFile("friday", NewWeekTime(5, 18, 0, 0), NewWeekTime(5, 20, 0, 0));
  m_Year.AddSchedule(On(24, 0), day);
  EXPECT_EQ(Next(Event("(x,(F,,F,),0,F)"), On(24, 1)), "none");
}

TEST_F(ShowsInForceTest, AWeeklyShowIsACandidateForAWeeklyOneOnly) {
  Weekly("week", Thursday, 20, Thursday, 22);
  EXPECT_EQ(Next(Event("(x,(F,,F,),0,F)"), On(24, 19)),
            "(week,(T,2026-12-24 20:00:00,T,2026-12-24 22:00:00),0,F)");
  EXPECT_EQ(Next(Event("(x,(F,,F,),1,F)"), On(24, 19)), "none");
  EXPECT_EQ(Next(Event("(x,(F,,F,),2,F)"), On(24, 19)), "none");
}

TEST_F(ShowsInForceTest, AWeeklyShowThatIsOnComesAgainNextWeek) {
  Weekly("week", Thursday, 18, Thursday, 22);
  const auto open = Event("(x,(F,,F,),0,F)");
  EXPECT_EQ(Next(open, On(24, 19)), "(week,(T,2026-12-31 18:00:00,T,2026-12-31 22:00:00),0,F)");
  EXPECT_EQ(Next(open, On(24, 18)), "(week,(T,2026-12-31 18:00:00,T,2026-12-31 22:00:00),0,F)");
  EXPECT_EQ(Next(open, On(24, 22)), "(week,(T,2026-12-31 18:00:00,T,2026-12-31 22:00:00),0,F)");
  EXPECT_EQ(Next(open, On(24, 17)), "(week,(T,2026-12-24 18:00:00,T,2026-12-24 22:00:00),0,F)");
}

TEST_F(ShowsInForceTest, AShowOfTheWholeWeekIsNoCandidate) {
  m_Week.FirstNode()->Obj()->Filename("always");
  EXPECT_EQ(Next(Event("(x,(F,,F,),0,F)"), On(24, 19)), "none");
}

TEST_F(ShowsInForceTest, OfBothCandidatesTheEarlierOneCounts) {
  Weekly("week", Thursday, 20, Thursday, 22);
  Dated("dated", On(24, 19), On(24, 20));
  const auto open = Event("(x,(F,,F,),0,F)");
  EXPECT_EQ(Next(open, On(24, 18)), "(dated,(T,2026-12-24 19:00:00,T,2026-12-24 20:00:00),1,F)");
  EXPECT_EQ(Next(open, On(24, 19)), "(week,(T,2026-12-24 20:00:00,T,2026-12-24 22:00:00),0,F)");
}

TEST_F(ShowsInForceTest, AtEqualStartsTheDatedOneCounts) {
  Weekly("week", Thursday, 20, Thursday, 22);
  Dated("dated", On(24, 20), On(24, 21));
  EXPECT_EQ(Next(Event("(x,(F,,F,),0,F)"), On(24, 18)),
            "(dated,(T,2026-12-24 20:00:00,T,2026-12-24 21:00:00),1,F)");
}

TEST_F(ShowsInForceTest, WithoutSchedulesThereAreNoCandidates) {
  Weekly("week", Thursday, 20, Thursday, 22);
  Dated("dated", On(24, 20), On(24, 21));
  m_NoSchedule = true;
  EXPECT_EQ(Next(Event("(x,(F,,F,),0,F)"), On(24, 18)), "none");
  EXPECT_EQ(Next(Event("(x,(F,,T,2026-12-24 23:00:00),0,F)"), On(24, 18)), "(,(F,,F,),0,F)");
}

TEST_F(ShowsInForceTest, AShowOnDemandHasNoCandidatesAndIsFollowedByWhatIsInForceAtItsEnd) {
  Weekly("week", Thursday, 20, Thursday, 22);
  Dated("dated", On(24, 19), On(24, 20));
  EXPECT_EQ(Next(Event("(x,(F,,T,2026-12-24 21:00:00),2,F)"), On(24, 18)),
            "(week,(T,2026-12-24 20:00:00,T,2026-12-24 22:00:00),0,F)");
}

TEST_F(ShowsInForceTest, AWeeklyShowOverTheWeeksEndIsInForceOnBothSides) {
  Weekly("night", 6, 22, 0, 2);
  EXPECT_EQ(Shows().GetCurrentShowEvent(On(26, 23))->Serialize(),
            "(night,(T,2026-12-26 22:00:00,T,2026-12-27 02:00:00),0,F)");
  EXPECT_EQ(Shows().GetCurrentShowEvent(On(27, 1))->Serialize(),
            "(night,(T,2026-12-26 22:00:00,T,2026-12-27 02:00:00),0,F)");
}

TEST(ToMonitoredShowEvent, NoShowEventGivesANewRecord) {
  EXPECT_EQ(ToMonitoredShowEvent(nullptr, YearScheduleType, On(24, 19))->Serialize(), "(,(F,,F,),0,F)");
}

TEST(ToMonitoredShowEvent, OnlyAShowEventHasAFileName) {
  auto event = NewShowEvent("eve.shw", NewWeekTime(4, 18, 0, 0), NewWeekTime(4, 22, 0, 0));
  EXPECT_EQ(ToMonitoredShowEvent(event.get(), WeeklyScheduleType, On(24, 19))->Filename(), "eve.shw");
  event->EventType(7);
  EXPECT_EQ(ToMonitoredShowEvent(event.get(), WeeklyScheduleType, On(24, 19))->Filename(), "");
}

// Whatever the schedules hold, a candidate starts later than the moment and before the current event's end.
TEST_F(ShowsInForceTest, ACandidateAlwaysStartsWithinItsSpan) {
  EXPECT_TRUE(rc::check([] {
    Schedule week;
    YearSchedule year;
    const auto day = rc::gen::inRange(0, 7);
    const auto hour = rc::gen::inRange(0, 24);
    for (int i = 0; i < 6; ++i) {
      try {
        week.AddShowEventByFile("w" + std::to_string(i), NewWeekTime(*day, *hour, 0, 0),
                                NewWeekTime(*day, *hour, 0, 0));
        const DateTime start = On(20 + *day, *hour);
        year.AddShowEventByFile("y" + std::to_string(i), start, start.PlusSeconds(3600 * (1 + *hour)));
      } catch (const Error&) {
        continue;  // they conflict
      }
    }
    const DateTime dtNow = On(20 + *day, *hour);
    const DateTime dtEnd = dtNow.PlusSeconds(3600 * (1 + *hour));
    TimeRange span;
    span.StartTime(dtNow);
    span.EndTime(dtEnd);
    const ShowsInForce shows(&week, &year, nullptr, false);
    for (const auto& candidate : {shows.FirstYearShowWithin(span), shows.FirstWeeklyShowWithin(span)}) {
      if (!candidate) continue;
      RC_ASSERT(candidate->Range()->StartTime() > dtNow);
      RC_ASSERT(candidate->Range()->StartTime() < dtEnd);
      RC_ASSERT(!candidate->Filename().empty());
    }
    // Nothing in the span is passed over: at each hour in between nothing starts before the candidate.
    const auto dated = shows.FirstYearShowWithin(span);
    for (DateTime hourNow = dtNow.PlusSeconds(3600); hourNow < dtEnd; hourNow = hourNow.PlusSeconds(3600)) {
      const auto event = shows.GetYearShowEvent(hourNow);
      if (!event || event->Filename().empty() || event->Range()->StartTime() != hourNow) continue;
      RC_ASSERT(dated && dated->Range()->StartTime() <= hourNow);
    }
  }));
}

// From a moment to the one that SameUntil tells, every second has the same decision and the same next show.
TEST_F(ShowsInForceTest, NothingChangesBeforeTheNextMoment) {
  EXPECT_TRUE(rc::check([] {
    Schedule week;
    YearSchedule year;
    std::shared_ptr<MonitoredShowEvent> onDemand;
    const auto day = rc::gen::inRange(0, 4);
    const auto second = rc::gen::inRange(0, 86400);
    const auto weekTime = [&] { return NewWeekTime(Thursday - 1 + *day, 0, 0, *second); };
    for (int i = 0; i < 5; ++i) {
      try {
        week.AddShowEventByFile("w" + std::to_string(i), weekTime(), weekTime());
        const DateTime start = On(23 + *day, 0).PlusSeconds(*second);
        year.AddShowEventByFile("y" + std::to_string(i), start, start.PlusSeconds(1 + *second));
      } catch (const Error&) {
        continue;  // they conflict
      }
    }
    const bool boolNoSchedule = *rc::gen::inRange(0, 5) == 0;
    if (*rc::gen::arbitrary<bool>()) {
      onDemand = Event("(od,(F,,F,),2,F)");
      if (*rc::gen::arbitrary<bool>()) onDemand->Range()->StartTime(On(23 + *day, 0).PlusSeconds(*second));
      if (*rc::gen::arbitrary<bool>()) onDemand->Range()->EndTime(On(23 + *day, 0).PlusSeconds(*second));
    }
    const ShowsInForce shows(&week, &year, onDemand, boolNoSchedule);
    const auto answers = [&](DateTime dtTime, const std::shared_ptr<MonitoredShowEvent>& current) {
      const auto scheduled = shows.GetCurrentShowEvent(dtTime);
      const auto next = shows.GetNextShowEvent(current, scheduled, dtTime);
      return scheduled->Serialize() + (next ? next->Serialize() : " none");
    };
    DateTime dtNow = On(23 + *day, 0).PlusSeconds(*second);
    for (int moments = 0; moments < 8; ++moments) {
      const DateTime dtUntil = shows.SameUntil(dtNow);
      RC_ASSERT(dtUntil > dtNow);
      RC_ASSERT(dtUntil <= dtNow.DatePart().PlusDays(1));
      const auto current = shows.GetCurrentShowEvent(dtNow);
      const std::string szFirst = answers(dtNow, current);
      const auto span = static_cast<int32_t>(dtUntil.SecondsSince(dtNow));
      RC_ASSERT(answers(dtUntil.PlusSeconds(-1), current) == szFirst);
      for (int looks = 0; looks < 20; ++looks)
        RC_ASSERT(answers(dtNow.PlusSeconds(*rc::gen::inRange(0, span)), current) == szFirst);
      dtNow = dtUntil;
    }
  }));
}

// Bounds that fall together with midnight, or with each other, are moments too.
TEST_F(ShowsInForceTest, TheNextMomentIsABoundTheSecondAfterItOrMidnight) {
  Weekly("eve", Thursday, 18, Thursday, 22);
  Dated("noon", On(24, 12), On(24, 13));
  const auto until = [this](DateTime dtNow) { return FormatDateTime(Shows().SameUntil(dtNow)); };
  EXPECT_EQ(until(On(24, 0)), "2026-12-24 00:00:01");
  EXPECT_EQ(until(On(24, 0, 0, 1)), "2026-12-24 12:00:00");
  EXPECT_EQ(until(On(24, 12)), "2026-12-24 12:00:01");
  EXPECT_EQ(until(On(24, 12, 0, 1)), "2026-12-24 13:00:00");
  EXPECT_EQ(until(On(24, 17, 59, 59)), "2026-12-24 18:00:00");
  EXPECT_EQ(until(On(24, 22, 0, 1)), "2026-12-25 00:00:00");
  m_OnDemand = Event("(od,(F,,T,2026-12-24 23:00:00),2,F)");
  EXPECT_EQ(until(On(24, 22, 0, 1)), "2026-12-24 23:00:00");
}

}  // namespace
}  // namespace vex
