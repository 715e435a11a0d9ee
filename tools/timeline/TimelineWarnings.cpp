#include "tools/timeline/TimelineWarnings.h"

#include <algorithm>

#include "basic/Error.h"
#include "schedule/Schedule.h"
#include "schedule/YearSchedule.h"
#include "time/TimeRange.h"
#include "time/WeekTimeFunctions.h"
#include "tools/timeline/Explanation.h"

namespace vex {
namespace {

struct Warning {
  DateTime At;
  std::string Text;
};

bool NamesShow(const TimelineRow& row) {
  return !row.Event->Filename().empty();
}

std::string DatedShow(const std::string& szName, DateTime dtDate) {
  return "dated show \"" + szName + "\" of " + DateInWords(dtDate);
}

void WarnOfDay(DateTime dtDate, const Schedule& day, std::vector<Warning>& warnings) {
  const int32_t lDay = WeekTimeFromDate(dtDate)->Day();
  for (const auto* node = day.FirstNode(); node != nullptr; node = node->NextNode()) {
    const ShowEvent& show = *node->Obj();
    if (show.EventType() != ShowFileEvent) continue;
    if (show.StartTime()->Day() != lDay) {
      warnings.push_back({dtDate, DatedShow(show.Filename(), dtDate) + " starts on another weekday (" +
                                      show.StartTime()->WeekTimeToString() +
                                      ") and does not play from there"});
      continue;
    }
    const TimeRange range = show.Range(dtDate.PlusSeconds(show.StartTime()->DaySecond()));
    if (range.HasEnd() && range.EndTime() > dtDate.PlusDays(1))
      warnings.push_back({dtDate, DatedShow(show.Filename(), dtDate) + " ends at " +
                                      TimeInWords(range.EndTime()) +
                                      " the next day; it is cut off at midnight"});
  }
}

/// Where a weekly show would play and a dated one does.
void WarnOfShadows(const std::vector<TimelineRow>& weekly, const std::vector<TimelineRow>& decided,
                   std::vector<Warning>& warnings) {
  auto covered = weekly.begin();
  for (const TimelineRow& row : decided) {
    if (row.Event->ScheduleType() != YearScheduleType) continue;
    while (covered != weekly.end() && covered->To <= row.From) ++covered;
    for (auto show = covered; show != weekly.end() && show->From < row.To; ++show) {
      if (!NamesShow(*show)) continue;
      const DateTime from = std::max(show->From, row.From);
      warnings.push_back({from, "weekly show \"" + show->Event->Filename() + "\" gives way to dated show \"" +
                                    row.Event->Filename() + "\" on " + DateInWords(from) + " from " +
                                    TimeInWords(from) + " to " + TimeInWords(std::min(show->To, row.To))});
    }
  }
}

}  // namespace

std::vector<std::string> TimelineWarnings(const Schedule& weekly, const YearSchedule& year, DateTime from,
                                          DateTime to) {
  if (from >= to) return {};
  std::vector<Warning> warnings;
  for (const std::string& szDate : year.Keys()) {
    const DateTime dtDate = YearSchedule::DateStringToDate(szDate);
    if (dtDate >= from.DatePart() && dtDate < to)
      WarnOfDay(dtDate, Required(year.ScheduleByKey(szDate)), warnings);
  }
  const YearSchedule none;
  WarnOfShadows(Timeline(weekly, none).Rows(from, to), Timeline(weekly, year).Rows(from, to), warnings);
  std::stable_sort(warnings.begin(), warnings.end(),
                   [](const Warning& a, const Warning& b) { return a.At < b.At; });
  std::vector<std::string> lines;
  lines.reserve(warnings.size());
  for (Warning& warning : warnings) lines.push_back(std::move(warning.Text));
  return lines;
}

}  // namespace vex
