#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace vex {

class TimeRange;

/// Where a show that plays comes from.
enum ScheduleKind : int32_t { WeeklyScheduleType = 0, YearScheduleType = 1, OnDemandScheduleType = 2 };

/// A record of what should play or is playing: file, concrete span of the calendar, the schedule it came
/// from, and whether the show is winding down. It travels between programs as text, and two records are
/// equal when their texts are. Range is never empty.
class MonitoredShowEvent {
 public:
  MonitoredShowEvent();
  MonitoredShowEvent(const MonitoredShowEvent&) = delete;
  MonitoredShowEvent& operator=(const MonitoredShowEvent&) = delete;

  /// Empty when no show is in force.
  [[nodiscard]] const std::string& Filename() const { return m_Filename; }
  void Filename(std::string szFilename) { m_Filename = std::move(szFilename); }
  [[nodiscard]] const std::shared_ptr<TimeRange>& Range() const { return m_Range; }
  /// A new unbounded range in place of an empty reference.
  void Range(std::shared_ptr<TimeRange> range);
  [[nodiscard]] int32_t ScheduleType() const { return m_ScheduleType; }
  void ScheduleType(int32_t lScheduleType) { m_ScheduleType = lScheduleType; }
  [[nodiscard]] bool ShuttingDown() const { return m_ShuttingDown; }
  void ShuttingDown(bool boolShuttingDown) { m_ShuttingDown = boolShuttingDown; }

  /// "(eve.shw,(T,2026-12-24 18:00:00,F,),0,F)".
  [[nodiscard]] std::string Serialize() const;
  /// Replaces all fields or, on an error, none. Raises number 37 unless there are exactly four fields,
  /// else the errors of the list, the range and the number.
  void Deserialize(std::string_view szSerialized);
  /// A copy of all fields that shares nothing; no record counts as a new one.
  void CopyFrom(const MonitoredShowEvent* other);
  /// No record counts as a new one.
  [[nodiscard]] bool MemberwiseEquals(const MonitoredShowEvent* other) const;

 private:
  std::string m_Filename;
  std::shared_ptr<TimeRange> m_Range;
  int32_t m_ScheduleType = WeeklyScheduleType;
  bool m_ShuttingDown = false;
};

}  // namespace vex
