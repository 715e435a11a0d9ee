#include "schedule/YearSchedule.h"

#include <array>
#include <utility>

#include "basic/Error.h"
#include "basic/Number.h"
#include "schedule/YearScheduleFunctions.h"
#include "time/WeekTimeFunctions.h"

namespace vex {

namespace {

[[noreturn]] void Refuse(int32_t lNumber, const char* szDescription) {
  throw Error(lNumber, "Schedule.AddShowEventByFile", szDescription);
}

/// From start, which counts, to end, which does not.
bool Overlap(const TimeRange& range, const TimeRange& other) {
  return range.Overlaps(other, true, false, true, false);
}

}  // namespace

std::string YearSchedule::DateToString(DateTime dtNewVal) {
  return FormatDate(dtNewVal);
}

DateTime YearSchedule::DateStringToDate(std::string_view szDateString) {
  constexpr size_t partCount = 3;
  std::array<std::string_view, partCount> parts;
  size_t count = 0;
  size_t from = 0;
  for (size_t dash = 0; dash != std::string_view::npos; from = dash + 1) {
    dash = szDateString.find('-', from);
    if (count < partCount)
      parts[count] = szDateString.substr(from, dash == std::string_view::npos ? dash : dash - from);
    ++count;
  }
  if (count != partCount) throw Error(37, "", "Unexpected date string format: " + std::string(szDateString));
  const auto number = [](std::string_view szPart) { return RoundToLong(ParseNumber(szPart)); };
  const int32_t lYear = number(parts[0]);
  const int32_t lMonth = number(parts[1]);
  return DateTime::FromParts(lYear, lMonth, number(parts[2]));
}

YearSchedule::ScheduleReference YearSchedule::DateSchedule(DateTime dtTime) const {
  return ScheduleByKey(DateToString(dtTime));
}

YearSchedule::ScheduleReference YearSchedule::ScheduleByKey(const std::string& szKey) const {
  const auto found = m_ByKey.find(szKey);
  return found == m_ByKey.end() ? nullptr : found->second;
}

void YearSchedule::AddSchedule(DateTime dtTime, ScheduleReference schedule) {
  m_Modified = true;
  const std::string szKey = DateToString(dtTime);
  if (!m_ByKey.try_emplace(szKey, schedule).second) throw PlatformError(ErrorInvalidCall);
  m_Keys.Add(szKey);
  m_Days.push_back({dtTime.DatePart(), std::move(schedule)});
}

void YearSchedule::AddShowEventByFile(const std::string& szFilename, DateTime startTime, DateTime endTime) {
  const WeekTime::Reference start = WeekTimeFromDate(startTime);
  const WeekTime::Reference end = WeekTimeFromDate(endTime);
  if (startTime >= endTime) Refuse(1, "End time precedes start time");
  m_Modified = true;
  const int64_t days = endTime.DaysSince(startTime);
  if (days == 1) CheckMidnight(startTime, endTime, start, end);
  if (days >= 2) Refuse(2, "Event spans more than two days");
  if (const ScheduleReference present = DateSchedule(startTime)) {
    if (present->CheckAdd(start, end) != 0) Refuse(4, "Event conflict");
    present->AddShowEventByFile(szFilename, start, end);
    return;
  }
  auto created = std::make_shared<Schedule>();
  created->AddShowEventByFile(szFilename, start, end);
  AddSchedule(startTime, std::move(created));
}

// A show that runs past midnight must be over before the next date's first show begins, and must not
// begin before its own date's last show is over.
void YearSchedule::CheckMidnight(DateTime startTime, DateTime endTime, const WeekTime::Reference& start,
                                 const WeekTime::Reference& end) const {
  if (const ScheduleReference next = DateSchedule(endTime)) {
    const auto first = next->FirstShowEvent();
    if (first && !end->BetweenEquals(start, first->StartTime())) {
      Refuse(3, "End time conficts with event in next day");
    }
  }
  if (const ScheduleReference same = DateSchedule(startTime)) {
    const auto last = same->LastShowEvent();
    if (last && !start->BetweenEquals(last->EndTime(), end)) {
      Refuse(4, "Start time conflicts with event in previous day");
    }
  }
}

void YearSchedule::RemoveShowEvent(DateTime dtTime, Schedule::ShowNode* node) {
  m_Modified = true;
  const std::string szKey = DateToString(dtTime);
  const ScheduleReference schedule = ScheduleByKey(szKey);
  Required(schedule).RemoveShowEvent(node);
  if (schedule->Count() != 1) return;
  m_ByKey.erase(szKey);
  for (int32_t lIndex = m_Keys.Count(); lIndex >= 1; --lIndex) {
    if (m_Keys.Item(lIndex) != szKey) continue;
    m_Keys.Remove(lIndex);
    m_Days.erase(m_Days.begin() + (lIndex - 1));
  }
}

std::shared_ptr<ShowEvent> YearSchedule::FirstShowWithinRange(const TimeRange& trRange,
                                                              DateTime& dtFirstShowStartTime) const {
  constexpr int64_t reach = 2;  // days: a show may run past one midnight
  std::shared_ptr<ShowEvent> best;
  DateTime bestStart;
  for (const Day& day : m_Days) {
    if (best && bestStart < day.Date) continue;
    TimeRange days;
    days.StartTime(day.Date);
    days.EndTime(day.Date.PlusDays(reach));
    if (!Overlap(days, trRange)) continue;
    for (const auto* node = day.Shows->FirstNode(); node; node = node->NextNode()) {
      if (node->Obj()->EventType() != ShowFileEvent) continue;
      const TimeRange range = node->Obj()->Range(day.Date);
      if (!range.HasStart() || (best && range.StartTime() > bestStart) || !Overlap(range, trRange)) continue;
      best = node->Obj();
      bestStart = range.StartTime();
    }
  }
  if (best) dtFirstShowStartTime = bestStart;
  return best;
}

bool YearSchedule::Save(Files& files, const std::string& szFilename, std::string* szReason) {
  if (!files.Write(szFilename, YearScheduleToText(*this) + "\r\n", szReason)) return false;
  m_Modified = false;
  return true;
}

}  // namespace vex
