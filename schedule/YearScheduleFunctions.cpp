#include "schedule/YearScheduleFunctions.h"

#include "schedule/ScheduleFunctions.h"
#include "show/lists/Serialize.h"

namespace vex {

std::string YearScheduleToText(const YearSchedule& schedule) {
  FieldArray dates;
  for (const std::string& szKey : schedule.Keys()) {
    FieldArray pair;
    pair.Append(EscapeText(szKey));
    pair.Append(ScheduleToText(*schedule.ScheduleByKey(szKey)));
    dates.Append(ListToText(pair));
  }
  return ListToText(dates);
}

std::shared_ptr<YearSchedule> YearScheduleFromText(std::string_view szText) {
  auto schedule = std::make_shared<YearSchedule>();
  const FieldViews dates = SplitList(szText);
  const bool boolNoDates = dates.Length() == 1 && dates.Element(dates.LowerBound()).empty();
  if (boolNoDates) return schedule;
  for (const std::string_view szDate : dates) {
    const FieldViews pair = SplitList(szDate);
    const DateTime date = YearSchedule::DateStringToDate(UnescapeText(pair.Element(1)));
    schedule->AddSchedule(date, ScheduleFromText(pair.Element(2)));
  }
  return schedule;
}

std::shared_ptr<YearSchedule> LoadYearSchedule(Files& files, const std::string& szFilename) {
  std::string szText;
  if (!files.Read(szFilename, szText)) return std::make_shared<YearSchedule>();
  auto schedule = YearScheduleFromText(szText);
  schedule->Modified(false);
  return schedule;
}

}  // namespace vex
