#pragma once

#include <cstdint>
#include <string>

#include "time/TimeRange.h"
#include "time/WeekTime.h"

namespace vex {

/// Types of a schedule's entry.
enum ShowEventType : int32_t { NullEvent = 1, ShowFileEvent = 2 };

/// One entry of a schedule: from this week time to that one, play this file; or nothing, for the gaps.
/// Start and end are shared references, never empty, for neighbours share their boundary. An empty file
/// name and the null type go together: setting one sets the other. A new one is a null event whose start
/// and end are both Sunday 0:00:00, of unknown duration.
class ShowEvent {
 public:
  static constexpr int32_t UnknownDuration = -1;

  ShowEvent();

  [[nodiscard]] int32_t EventType() const { return m_EventType; }
  /// Setting 1 empties the file name.
  void EventType(int32_t lEventType);
  [[nodiscard]] const std::string& Filename() const { return m_Filename; }
  /// Sets the type too: 1 for an empty name, else 2.
  void Filename(const std::string& szFilename);
  [[nodiscard]] const WeekTime::Reference& StartTime() const { return m_StartTime; }
  /// The end stays, the duration follows.
  void StartTime(WeekTime::Reference newStart);
  [[nodiscard]] const WeekTime::Reference& EndTime() const { return m_EndTime; }
  void EndTime(WeekTime::Reference newEnd);
  /// Seconds, -1 while unknown.
  [[nodiscard]] int32_t Duration() const { return m_Duration; }
  /// A new end so far behind the start; the duration is kept as given, 604800 too.
  void SetDuration(int32_t lDuration);

  /// The occurrence that is on at dtReference or comes next after it; without bounds where start and end
  /// are equal, for that is the whole week.
  [[nodiscard]] TimeRange Range(DateTime dtReference) const;

 private:
  int32_t m_EventType = NullEvent;
  std::string m_Filename;
  WeekTime::Reference m_StartTime;
  WeekTime::Reference m_EndTime;
  int32_t m_Duration = UnknownDuration;
};

}  // namespace vex
