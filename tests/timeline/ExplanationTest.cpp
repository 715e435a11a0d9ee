#include "tools/timeline/Explanation.h"

#include <gtest/gtest.h>

#include <string>

#include "schedule/ScheduleFunctions.h"
#include "schedule/YearScheduleFunctions.h"
#include "time/TimeRange.h"

namespace vex {
namespace {

// 24 December 2026 is a Thursday; Thursday begins at second 345600 of the week.
const char* const ThursdayEvening = "((424800,2,(,0,eve.shw),410400))";     // 18:00 to 22:00
const char* const Dated = "((2026-12-24,((417600,2,(,0,x.shw),414000))))";  // 19:00 to 20:00

Explanation Why(const std::string& szWeek, const std::string& szYear, const std::string& szTime,
                const std::string& szOnDemand = "") {
  std::shared_ptr<MonitoredShowEvent> onDemand;
  if (!szOnDemand.empty()) {
    onDemand = std::make_shared<MonitoredShowEvent>();
    onDemand->Deserialize(szOnDemand);
  }
  return Explain(*ScheduleFromText(szWeek), *YearScheduleFromText(szYear), onDemand, ParseDateTime(szTime));
}

TEST(Explanation, AWeeklyShowPlaysWhereNoDatedOneStands) {
  const Explanation why = Why(ThursdayEvening, "()", "2026-12-24 18:30");
  EXPECT_EQ(why.Rule, RuleWeek);
  EXPECT_EQ(why.Event->Serialize(), "(eve.shw,(T,2026-12-24 18:00:00,T,2026-12-24 22:00:00),0,F)");
  EXPECT_EQ(
      why.Sentence,
      "\"eve.shw\" plays on 24 December 2026 at 18:30: the weekly schedule has it from 18:00 to 22:00, no "
      "dated schedule stands for 24 December.");
  ASSERT_EQ(why.Others.size(), 1U);
  EXPECT_EQ(why.Others[0].Rule, RuleYear);
  EXPECT_EQ(why.Others[0].Event, nullptr);
  EXPECT_EQ(why.Others[0].Because, "no dated schedule stands for 24 December");
}

TEST(Explanation, ADatedShowComesBeforeTheWeeklyOne) {
  const Explanation why = Why(ThursdayEvening, Dated, "2026-12-24 19:00:05");
  EXPECT_EQ(why.Rule, RuleYear);
  EXPECT_EQ(why.Event->Filename(), "x.shw");
  EXPECT_EQ(
      why.Sentence,
      "\"x.shw\" plays on 24 December 2026 at 19:00:05: the dated schedule has it from 19:00 to 20:00, the "
      "weekly show \"eve.shw\" gives way to the dated one.");
  ASSERT_EQ(why.Others.size(), 1U);
  EXPECT_EQ(why.Others[0].Rule, RuleWeek);
  EXPECT_EQ(why.Others[0].Event->Filename(), "eve.shw");
}

TEST(Explanation, NothingPlaysAfterBothHaveEnded) {
  const Explanation why = Why(ThursdayEvening, Dated, "2026-12-24 23:10");
  EXPECT_EQ(why.Rule, RuleNone);
  EXPECT_EQ(why.Event->Serialize(), "(,(T,2026-12-24 22:00:00,T,2026-12-31 18:00:00),0,F)");
  EXPECT_EQ(why.Sentence,
            "No show on 24 December 2026 at 23:10: the dated schedule has none for 24 December at 23:10, the "
            "weekly "
            "show \"eve.shw\" ended at 22:00.");
  ASSERT_EQ(why.Others.size(), 2U);
  EXPECT_EQ(why.Others[0].Event->Filename(), "x.shw");
  EXPECT_EQ(why.Others[1].Event->Filename(), "eve.shw");
}

TEST(Explanation, AShowYetToStartThatDayIsNamed) {
  EXPECT_EQ(Why(ThursdayEvening, "()", "2026-12-24 08:00").Sentence,
            "No show on 24 December 2026 at 08:00: no dated schedule stands for 24 December, the weekly show "
            "\"eve.shw\" starts at 18:00.");
}

TEST(Explanation, AShowOfAnotherDayIsNamedWithItsDay) {
  EXPECT_EQ(Why(ThursdayEvening, "()", "2026-12-27 08:00").Sentence,
            "No show on 27 December 2026 at 08:00: no dated schedule stands for 27 December, the weekly show "
            "\"eve.shw\" ended at 22:00 on 24 December.");
}

TEST(Explanation, AnEmptyWeekHoldsNoShows) {
  EXPECT_EQ(Why("()", "()", "2026-12-27 08:00").Sentence,
            "No show on 27 December 2026 at 08:00: no dated schedule stands for 27 December, the weekly "
            "schedule holds "
            "no shows.");
}

TEST(Explanation, ADatedShowIsCutOffAtMidnight) {
  const std::string szUntilOne =
      "((2026-12-24,((435600,2,(,0,x.shw),417600))))";  // Thursday 20:00 to Friday 1:00
  const Explanation why = Why("()", szUntilOne, "2026-12-25 00:30");
  EXPECT_EQ(why.Rule, RuleNone);
  EXPECT_EQ(why.Others[0].Because, "the dated show \"x.shw\" of the day before is cut off at midnight");
  EXPECT_EQ(why.Others[0].Event->Filename(), "x.shw");
}

TEST(Explanation, AShowOnDemandComesFirst) {
  const Explanation why =
      Why(ThursdayEvening, Dated, "2026-12-24 19:30", "(d.shw,(F,,T,2026-12-24 19:45:00),2,F)");
  EXPECT_EQ(why.Rule, RuleDemand);
  EXPECT_EQ(why.Event->Filename(), "d.shw");
  EXPECT_EQ(
      why.Sentence,
      "\"d.shw\" plays on 24 December 2026 at 19:30: a request on demand has it until 19:45, the dated show "
      "\"x.shw\" gives way to it, the weekly show \"eve.shw\" gives way to it.");
}

TEST(Explanation, AShowOnDemandThatIsOverIsPassedOver) {
  const Explanation why =
      Why(ThursdayEvening, "()", "2026-12-24 19:45", "(d.shw,(F,,T,2026-12-24 19:45:00),2,F)");
  EXPECT_EQ(why.Rule, RuleWeek);
  ASSERT_EQ(why.Others.size(), 2U);
  EXPECT_EQ(why.Others[0].Rule, RuleDemand);
  EXPECT_EQ(why.Others[0].Because, "the show on demand \"d.shw\" ended at 19:45");
}

TEST(Explanation, AShowOnDemandWithoutBoundsPlaysAtAllTimes) {
  EXPECT_EQ(Why("()", "()", "2026-12-24 19:45", "(d.shw,(F,,F,),2,F)").Sentence,
            "\"d.shw\" plays on 24 December 2026 at 19:45: a request on demand has it at all times.");
}

}  // namespace
}  // namespace vex
