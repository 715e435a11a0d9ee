#include "schedule/ShowEvent.h"

#include <utility>

#include "basic/Error.h"
#include "time/WeekTimeFunctions.h"

namespace vex {

ShowEvent::ShowEvent() : m_StartTime(std::make_shared<WeekTime>()), m_EndTime(std::make_shared<WeekTime>()) {}

void ShowEvent::EventType(int32_t lEventType) {
  m_EventType = lEventType;
  if (lEventType == NullEvent) m_Filename.clear();
}

void ShowEvent::Filename(const std::string& szFilename) {
  m_Filename = szFilename;
  m_EventType = szFilename.empty() ? NullEvent : ShowFileEvent;
}

void ShowEvent::StartTime(WeekTime::Reference newStart) {
  static_cast<void>(Required(newStart));
  m_StartTime = std::move(newStart);
  m_Duration = m_EndTime->Minus(m_StartTime);
}

void ShowEvent::EndTime(WeekTime::Reference newEnd) {
  static_cast<void>(Required(newEnd));
  m_EndTime = std::move(newEnd);
  m_Duration = m_EndTime->Minus(m_StartTime);
}

void ShowEvent::SetDuration(int32_t lDuration) {
  m_EndTime = m_StartTime->PlusDuration(lDuration);
  m_Duration = lDuration;
}

TimeRange ShowEvent::Range(DateTime dtReference) const {
  constexpr int64_t week = 7;
  TimeRange range;
  if (m_StartTime->TimeVal() == m_EndTime->TimeVal()) return range;
  DateTime start = WeekTimeToDate(m_StartTime, dtReference);
  DateTime end = WeekTimeToDate(m_EndTime, dtReference);
  if (start >= end) {
    if (end >= dtReference) {
      start = start.PlusDays(-week);
    } else {
      end = end.PlusDays(week);
    }
  }
  if (start < end && end < dtReference) {
    start = start.PlusDays(week);
    end = end.PlusDays(week);
  }
  range.StartTime(start);
  range.EndTime(end);
  return range;
}

}  // namespace vex
