#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "schedule/ScheduleFunctions.h"
#include "schedule/YearScheduleFunctions.h"
#include "tests/schedule/ScheduleWords.h"

namespace vex {
namespace {

/// The plain model: what plays in each stretch of the week. Times are whole stretches, so that shows touch,
/// overlap and end together often; a stretch's length does not divide the day.
constexpr int32_t Stretches = 48;
constexpr int32_t Stretch = 604800 / Stretches;

class PlainWeek {
 public:
  [[nodiscard]] bool Fits(int32_t lStart, int32_t lEnd) const {
    for (int32_t lAt = lStart; lAt != lEnd; lAt = (lAt + 1) % Stretches) {
      if (!m_Plays[static_cast<size_t>(lAt)].empty()) return false;
    }
    return true;
  }
  void Put(int32_t lStart, int32_t lEnd, const std::string& szName) {
    for (int32_t lAt = lStart; lAt != lEnd; lAt = (lAt + 1) % Stretches) {
      m_Plays[static_cast<size_t>(lAt)] = szName;
    }
  }
  void Remove(const std::string& szName) {
    for (auto& szPlays : m_Plays) {
      if (szPlays == szName) szPlays.clear();
    }
  }
  [[nodiscard]] const std::string& Plays(int32_t lAt) const { return m_Plays[static_cast<size_t>(lAt)]; }

 private:
  std::vector<std::string> m_Plays = std::vector<std::string>(Stretches);
};

WeekTime::Reference TimeOf(int32_t lStretch) {
  return std::make_shared<WeekTime>()->PlusDuration(lStretch * Stretch);
}

/// What every chain keeps: it covers the week once, neighbours touch, null events do so only
/// across the end of the chain.
void CheckChain(const Schedule& schedule) {
  int64_t total = 0;
  int32_t lCount = 0;
  const Schedule::ShowNode* previous = nullptr;
  for (const auto* node = schedule.FirstNode(); node; previous = node, node = node->NextNode()) {
    const ShowEvent& event = *node->Obj();
    const int32_t lSpan = event.EndTime()->Minus(event.StartTime());
    RC_ASSERT((lSpan > 0 || schedule.Count() == 1));
    total += lSpan > 0 ? lSpan : 604800;
    ++lCount;
    RC_ASSERT(node->PreviousNode() == previous);
    if (!previous) continue;
    RC_ASSERT(previous->Obj()->EndTime()->Equals(event.StartTime()));
    RC_ASSERT(!(previous->Obj()->EventType() == NullEvent && event.EventType() == NullEvent));
  }
  RC_ASSERT(total == 604800);
  RC_ASSERT(lCount == schedule.Count());
  RC_ASSERT(previous == schedule.LastNode());
  RC_ASSERT(schedule.LastNode()->Obj()->EndTime()->Equals(schedule.FirstNode()->Obj()->StartTime()));
}

void CheckPlays(const Schedule& schedule, const PlainWeek& model) {
  for (int32_t lAt = 0; lAt < Stretches; ++lAt) {
    for (const int32_t lInside : {0, 1, Stretch - 1}) {
      const auto time = TimeOf(lAt)->PlusDuration(lInside);
      RC_ASSERT(Required(schedule.GetNodeByTime(time)).Obj()->Filename() == model.Plays(lAt));
    }
  }
}

void AddToBoth(Schedule& schedule, PlainWeek& model, const std::string& szName) {
  const int32_t lStart = *rc::gen::inRange(0, Stretches);
  const int32_t lEnd = (lStart + *rc::gen::inRange(1, *rc::gen::element(4, 12, Stretches))) % Stretches;
  const Lines before = Chain(schedule);
  const bool boolFits = model.Fits(lStart, lEnd);
  const bool boolWasModified = schedule.Modified();
  const int32_t lCheck = schedule.CheckAdd(TimeOf(lStart), TimeOf(lEnd));
  try {
    schedule.AddShowEvent(ShowFrom(TimeOf(lStart), TimeOf(lEnd), szName));
    RC_ASSERT(boolFits);
    model.Put(lStart, lEnd, szName);
    RC_ASSERT(schedule.Modified());
  } catch (const Error& error) {
    RC_ASSERT(!boolFits);
    RC_ASSERT(Chain(schedule) == before);
    RC_ASSERT(error.Source == "Schedule.AddShowEvent");
    RC_ASSERT((error.Number == 1) == !model.Plays(lStart).empty());
    RC_ASSERT(schedule.Modified() == (boolWasModified || error.Number != 1));
    RC_ASSERT((lCheck != 0 || error.Number == 3));
  }
  RC_ASSERT((lCheck != 1 || !boolFits));
}

void RemoveFromBoth(Schedule& schedule, PlainWeek& model) {
  const int32_t lAt = *rc::gen::inRange(0, Stretches);
  auto* const node = schedule.GetNodeByTime(TimeOf(lAt));
  const std::string szName = model.Plays(lAt);
  const Lines before = Chain(schedule);
  try {
    schedule.RemoveShowEvent(node);
    RC_ASSERT(!szName.empty());
    model.Remove(szName);
  } catch (const Error& error) {
    RC_ASSERT(szName.empty());
    RC_ASSERT((error.Number == 1 && error.Source == "Schedule.RemoveShowEvent"));
    RC_ASSERT(Chain(schedule) == before);
  }
}

TEST(ScheduleProperty, BehavesAsAPlainWeekUnderAnyAddsAndRemoves) {
  EXPECT_TRUE(rc::check("chain == plain week", [] {
    Schedule schedule;
    PlainWeek model;
    const int32_t lSteps = *rc::gen::inRange(1, 40);
    for (int32_t lStep = 0; lStep < lSteps; ++lStep) {
      if (*rc::gen::inRange(0, 3) == 0) {
        RemoveFromBoth(schedule, model);
      } else {
        AddToBoth(schedule, model, "s" + std::to_string(lStep));
      }
      CheckChain(schedule);
      CheckPlays(schedule, model);
    }
  }));
}

TEST(ScheduleProperty, TheFilePlaysWhatWasSaved) {
  EXPECT_TRUE(rc::check("read(write(schedule)) plays the same", [] {
    Schedule schedule;
    PlainWeek model;
    const int32_t lSteps = *rc::gen::inRange(1, 30);
    for (int32_t lStep = 0; lStep < lSteps; ++lStep) {
      AddToBoth(schedule, model, *rc::gen::nonEmpty(rc::gen::string<std::string>()) + std::to_string(lStep));
      if (*rc::gen::inRange(0, 4) == 0) RemoveFromBoth(schedule, model);
    }
    const auto read = ScheduleFromText(ScheduleToText(schedule));
    CheckChain(*read);
    CheckPlays(*read, model);
  }));
}

bool StartsAtZero(const Schedule& schedule) {
  for (const auto* node = schedule.FirstNode(); node; node = node->NextNode()) {
    if (node->Obj()->StartTime()->TimeVal() == 0) return true;
  }
  return false;
}

TEST(ScheduleProperty, NullTimeSeenAcrossTheWeeksEndHoldsTheTimeAndNoShow) {
  EXPECT_TRUE(rc::check("amalgamated", [] {
    Schedule schedule;
    PlainWeek model;
    const int32_t lSteps = *rc::gen::inRange(0, 12);
    for (int32_t lStep = 0; lStep < lSteps; ++lStep) AddToBoth(schedule, model, "s" + std::to_string(lStep));
    // A chain that begins behind a show at Sunday 0:00 is told apart in ScheduleAmalgamated.
    if (schedule.FirstNode()->Obj()->StartTime()->TimeVal() != 0 && StartsAtZero(schedule)) return;
    for (int32_t lAt = 0; lAt < Stretches; ++lAt) {
      const auto seen = schedule.AmalgamatedShowEvent(schedule.GetNodeByTime(TimeOf(lAt))->Obj());
      RC_ASSERT(TimeOf(lAt)->InRange(seen->StartTime(), seen->EndTime()));
      RC_ASSERT(seen->Filename() == model.Plays(lAt));
      if (!seen->Filename().empty()) continue;
      for (int32_t lOther = 0; lOther < Stretches; ++lOther) {
        if (!TimeOf(lOther)->InRange(seen->StartTime(), seen->EndTime())) continue;
        RC_ASSERT(model.Plays(lOther).empty());
      }
    }
  }));
}

struct PlainShow {
  DateTime Start;
  DateTime End;
  std::string Name;
};

/// Of the plain list of shows the earliest that overlaps; names of those that start together.
std::vector<std::string> Earliest(const std::vector<PlainShow>& shows, DateTime dtFrom, DateTime dtUntil) {
  std::optional<DateTime> best;
  std::vector<std::string> names;
  for (const auto& show : shows) {
    if (show.End <= dtFrom || show.Start >= dtUntil) continue;
    if (best && show.Start > *best) continue;
    if (!best || show.Start < *best) names.clear();
    best = show.Start;
    names.push_back(show.Name);
  }
  return names;
}

TEST(YearProperty, FindsWhatAPlainListFinds) {
  EXPECT_TRUE(rc::check("FirstShowWithinRange == plain search", [] {
    const DateTime dtBase = DateTime::FromParts(2026, 12, 20);
    const auto anyTime = [&] { return dtBase.PlusSeconds(*rc::gen::inRange(0, 240) * 3600); };
    YearSchedule year;
    std::vector<PlainShow> shows;
    const int32_t lSteps = *rc::gen::inRange(0, 25);
    for (int32_t lStep = 0; lStep < lSteps; ++lStep) {
      const PlainShow show = {anyTime(), anyTime(), "s" + std::to_string(lStep)};
      try {
        year.AddShowEventByFile(show.Name, show.Start, show.End);
        shows.push_back(show);
      } catch (const Error& error) {
        RC_ASSERT(error.Source == "Schedule.AddShowEventByFile");
        RC_ASSERT((error.Number >= 1 && error.Number <= 4));
      }
    }
    const auto reread = YearScheduleFromText(YearScheduleToText(year));
    for (int32_t lTry = 0; lTry < 20; ++lTry) {
      const DateTime dtFrom = anyTime();
      TimeRange range;
      range.StartTime(dtFrom);
      range.EndTime(dtFrom.PlusSeconds(*rc::gen::inRange(1, 72) * 3600));
      DateTime dtStart;
      const auto found = year.FirstShowWithinRange(range, dtStart);
      DateTime dtRereadStart;
      const auto rereadFound = reread->FirstShowWithinRange(range, dtRereadStart);
      RC_ASSERT((rereadFound == nullptr) == (found == nullptr));
      if (found) RC_ASSERT(rereadFound->Filename() == found->Filename());
      if (found) RC_ASSERT(dtRereadStart == dtStart);
      const auto expected = Earliest(shows, range.StartTime(), range.EndTime());
      RC_ASSERT((found == nullptr) == expected.empty());
      if (!found) continue;
      RC_ASSERT(std::find(expected.begin(), expected.end(), found->Filename()) != expected.end());
    }
  }));
}

}  // namespace
}  // namespace vex
