#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "schedule/ScheduleFunctions.h"
#include "schedule/ShowEventFunctions.h"
#include "schedule/YearScheduleFunctions.h"
#include "show/lists/Serialize.h"

namespace {

using namespace vex;

void Expect(bool boolHolds) {
  if (!boolHolds) std::abort();
}

/// Events of no length, which stand for the whole week, and times far before the week are beyond the rules
/// of the chain; a file may hold them all the same.
bool IsOrdinary(std::string_view szText) {
  const FieldViews fields = SplitList(szText);
  if (fields.Length() == 1 && fields.Element(1).empty()) return true;
  for (const std::string_view szEvent : fields) {
    const auto event = ShowEventFromText(szEvent);
    if (event->StartTime()->TimeVal() < 0 || event->EndTime()->TimeVal() < 0) return false;
    if (event->StartTime()->Equals(event->EndTime())) return false;
  }
  return true;
}

void CheckChain(const Schedule& schedule) {
  int64_t total = 0;
  for (const auto* node = schedule.FirstNode(); node; node = node->NextNode()) {
    const ShowEvent& event = *node->Obj();
    const int32_t lSpan = event.EndTime()->Minus(event.StartTime());
    total += lSpan == 0 ? 604800 : lSpan;
    const auto* next = node->NextNode() ? node->NextNode() : schedule.FirstNode();
    Expect(event.EndTime()->Equals(next->Obj()->StartTime()));
  }
  Expect(total == 604800);
}

void RemoveAllShows(Schedule& schedule) {
  while (const auto show = schedule.FirstShowEvent()) {
    schedule.RemoveShowEvent(schedule.GetNodeByTime(show->StartTime()));
    CheckChain(schedule);
  }
}

void ReadWeek(std::string_view szText) {
  const auto schedule = ScheduleFromText(szText);
  if (!IsOrdinary(szText)) return;
  CheckChain(*schedule);
  const auto again = ScheduleFromText(ScheduleToText(*schedule));
  CheckChain(*again);
  for (const auto* node = schedule->FirstNode(); node; node = node->NextNode()) {
    const auto& event = *node->Obj();
    Expect(again->GetNodeByTime(event.StartTime())->Obj()->Filename() == event.Filename());
  }
  RemoveAllShows(*schedule);
}

void ReadYear(std::string_view szText) {
  const auto year = YearScheduleFromText(szText);
  DateTime dtStart;
  static_cast<void>(year->FirstShowWithinRange(TimeRange(), dtStart));
  for (const auto& szKey : year->Keys()) {
    Expect(year->DateSchedule(YearSchedule::DateStringToDate(szKey)) == year->ScheduleByKey(szKey));
  }
}

/// Every error is one of ours or the platform's; no other exception, and no crash.
template <class Reader>
void Run(Reader reader, std::string_view szText) {
  try {
    reader(szText);
  } catch (const Error& error) {
    Expect(error.Number != 0 && !error.Description.empty());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view szText(reinterpret_cast<const char*>(data), size);
  Run(ReadWeek, szText);
  Run(ReadYear, szText);
  return 0;
}
