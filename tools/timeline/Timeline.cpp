#include "tools/timeline/Timeline.h"

#include <algorithm>
#include <limits>

#include "basic/Error.h"
#include "schedule/Schedule.h"
#include "schedule/YearSchedule.h"
#include "time/WeekTimeFunctions.h"

namespace vex {
namespace {

constexpr int64_t SecondsOfWeek = 604800;
constexpr int64_t Never = std::numeric_limits<int64_t>::max();

template <class T>
void SortOnce(std::vector<T>& values) {
  std::sort(values.begin(), values.end());
  values.erase(std::unique(values.begin(), values.end()), values.end());
}

}  // namespace

Timeline::Timeline(const Schedule& weekly, const YearSchedule& year)
    : m_ShowsInForce(&weekly, &year, nullptr, false) {
  for (const auto* node = weekly.FirstNode(); node != nullptr; node = node->NextNode()) {
    m_WeekBoundaries.push_back(node->Obj()->StartTime()->TimeVal());
    m_WeekBoundaries.push_back(node->Obj()->EndTime()->TimeVal());
  }
  for (const std::string& szDate : year.Keys())
    AddDatedBoundaries(YearSchedule::DateStringToDate(szDate), Required(year.ScheduleByKey(szDate)));
  SortOnce(m_WeekBoundaries);
  SortOnce(m_DatedBoundaries);
}

void Timeline::AddDatedBoundaries(DateTime dtDate, const Schedule& day) {
  const int32_t lDay = WeekTimeFromDate(dtDate)->Day();
  m_DatedBoundaries.push_back(dtDate);
  if (dtDate < DateTime::FromParts(9999, 12, 31)) m_DatedBoundaries.push_back(dtDate.PlusDays(1));
  for (const auto* node = day.FirstNode(); node != nullptr; node = node->NextNode()) {
    for (const auto& boundary : {node->Obj()->StartTime(), node->Obj()->EndTime()}) {
      if (boundary->Day() == lDay) m_DatedBoundaries.push_back(dtDate.PlusSeconds(boundary->DaySecond()));
    }
  }
}

std::vector<TimelineRow> Timeline::Rows(DateTime from, DateTime to) const {
  std::vector<TimelineRow> rows;
  for (DateTime at = from; at < to;) {
    const auto event = At(at);
    const DateTime next = at.PlusSeconds(std::min(SecondsToBoundary(at), to.SecondsSince(at)));
    if (!rows.empty() && rows.back().Event->MemberwiseEquals(event.get()))
      rows.back().To = next;
    else
      rows.push_back({at, next, event});
    at = next;
  }
  return rows;
}

std::shared_ptr<MonitoredShowEvent> Timeline::At(DateTime dtTime) const {
  return m_ShowsInForce.GetCurrentShowEvent(dtTime);
}

/// Seconds until the next moment after this one at which the decision may change.
int64_t Timeline::SecondsToBoundary(DateTime dtTime) const {
  const auto dated = std::upper_bound(m_DatedBoundaries.begin(), m_DatedBoundaries.end(), dtTime);
  const int64_t toDated = dated == m_DatedBoundaries.end() ? Never : dated->SecondsSince(dtTime);
  return std::min(SecondsToWeekBoundary(dtTime), toDated);
}

int64_t Timeline::SecondsToWeekBoundary(DateTime dtTime) const {
  const int32_t lNow = WeekTimeFromDate(dtTime)->TimeVal();
  const auto next = std::upper_bound(m_WeekBoundaries.begin(), m_WeekBoundaries.end(), lNow);
  if (next != m_WeekBoundaries.end()) return *next - lNow;
  return m_WeekBoundaries.front() + SecondsOfWeek - lNow;
}

}  // namespace vex
