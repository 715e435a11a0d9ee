#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <string>
#include <vector>

#include "schedule/MonitoredShowEvent.h"
#include "schedule/ScheduleFunctions.h"
#include "schedule/YearScheduleFunctions.h"
#include "show/lists/Serialize.h"
#include "tests/schedule/ScheduleWords.h"

namespace vex {
namespace {

/// Numbers, dates and scraps of lists that stand at some edge: of the week, of 32 bits, of the calendar.
std::string AnyScrap() {
  static const std::vector<std::string> scraps = {"0",
                                                  "-1",
                                                  "1",
                                                  "2",
                                                  "604799",
                                                  "604800",
                                                  "-604800",
                                                  "-604801",
                                                  "2147483647",
                                                  "-2147483648",
                                                  "2146878847",
                                                  "99999999999",
                                                  "1e400",
                                                  "0.5",
                                                  "*O",
                                                  "*",
                                                  "",
                                                  "T",
                                                  "F",
                                                  "2026-12-24",
                                                  "100-1-1",
                                                  "9999-12-31",
                                                  "2026-12-24 18:00:00",
                                                  "9999-12-31 23:59:59",
                                                  "0100-01-01 00:00:00",
                                                  "()",
                                                  "(,0,eve.shw)",
                                                  "(,0,)",
                                                  "(,)",
                                                  "(",
                                                  ")",
                                                  ","};
  if (*rc::gen::inRange(0, 10) == 0) return *rc::gen::string<std::string>();
  return *rc::gen::elementOf(scraps);
}

/// A list of scraps and of lists, mostly of the count of fields that the reader looks for.
std::string AnyList(int32_t lDepth, int32_t lFields) {
  const int32_t lCount = *rc::gen::inRange(0, 8) == 0 ? *rc::gen::inRange(0, 7) : lFields;
  FieldArray fields;
  for (int32_t lLeft = lCount; lLeft > 0; --lLeft) {
    const bool boolScrap = lDepth == 0 || *rc::gen::inRange(0, 3) == 0;
    fields.Append(boolScrap ? AnyScrap() : AnyList(lDepth - 1, 4));
  }
  return ListToText(fields);
}

/// An event whose shape is sound, whatever its times.
std::string AnyEvent() {
  return "(" + AnyScrap() + "," + *rc::gen::element<std::string>("1", "2", "x") + ",(,0," +
         *rc::gen::element<std::string>("", "a.shw", "b*Sc.shw") + ")," + AnyScrap() + ")";
}

std::string AnyWeek() {
  FieldArray events;
  for (int32_t lLeft = *rc::gen::inRange(0, 6); lLeft > 0; --lLeft) {
    events.Append(*rc::gen::inRange(0, 5) == 0 ? AnyList(2, 4) : AnyEvent());
  }
  return ListToText(events);
}

/// Asks everything that the heartbeat and the companion ask of a schedule; only the system's own errors.
void UseWholly(Schedule& schedule) {
  const auto asked = [](auto ask) {
    try {
      ask();
    } catch (const Error&) {
      // refused, as it may be
    }
  };
  for (int32_t lHour = 0; lHour < 168; lHour += 7) {
    const auto time = std::make_shared<WeekTime>()->PlusDuration(lHour * 3600);
    asked([&] {
      const auto* node = schedule.GetNodeByTime(time);
      const auto event = schedule.AmalgamatedShowEvent(node ? node->Obj() : nullptr);
      if (event) (void)event->Range(DateTime::FromParts(2026, 12, 24));
    });
    asked([&] { (void)schedule.CheckAdd(time, time->PlusDuration(3600)); });
  }
  asked([&] { schedule.DebugDump(); });
  asked([&] { (void)ScheduleFromText(ScheduleToText(schedule)); });
  for (int32_t lLeft = schedule.Count(); lLeft > 0; --lLeft) {
    asked([&] { schedule.RemoveShowEvent(schedule.FirstNode()); });
    asked([&] { schedule.RemoveShowEvent(schedule.LastNode()); });
  }
  asked([&] { schedule.AddShowEvent(ShowFrom(At(Mon, 1), At(Mon, 2))); });
}

TEST(DamagedText, AnyWeekIsReadAndUsedOrRefused) {
  EXPECT_TRUE(rc::check("week", [] {
    const std::string szText = AnyWeek();
    try {
      UseWholly(*ScheduleFromText(szText));
    } catch (const Error& error) {
      RC_ASSERT(error.Number != 0);
    }
  }));
}

TEST(DamagedText, AnyYearIsReadAndUsedOrRefused) {
  EXPECT_TRUE(rc::check("year", [] {
    FieldArray dates;
    for (int32_t lLeft = *rc::gen::inRange(0, 4); lLeft > 0; --lLeft) {
      dates.Append("(" + (AnyScrap() + ",").append(AnyWeek()) + ")");
    }
    try {
      const auto year = YearScheduleFromText(ListToText(dates));
      (void)YearScheduleFromText(YearScheduleToText(*year));
      TimeRange range;
      range.StartTime(DateTime::FromParts(2026, 12, 24, 18));
      DateTime dtStart;
      (void)year->FirstShowWithinRange(range, dtStart);
      for (const std::string& szKey : year->Keys()) UseWholly(*year->ScheduleByKey(szKey));
    } catch (const Error& error) {
      RC_ASSERT(error.Number != 0);
    }
  }));
}

TEST(DamagedText, AnyRecordIsReadToWhatItWritesOrRefused) {
  EXPECT_TRUE(rc::check("record", [] {
    const std::string szText = AnyList(1, 4);
    MonitoredShowEvent event;
    try {
      event.Deserialize(szText);
    } catch (const Error&) {
      RC_ASSERT(event.MemberwiseEquals(nullptr));
      return;
    }
    MonitoredShowEvent again;
    again.Deserialize(event.Serialize());
    RC_ASSERT(again.MemberwiseEquals(&event));
    RC_ASSERT(again.Serialize() == event.Serialize());
  }));
}

}  // namespace
}  // namespace vex
