#pragma once

#include <memory>

#include "basic/DateTime.h"
#include "schedule/MonitoredShowEvent.h"

namespace vex {

class Schedule;
class ShowEvent;
class TimeRange;
class YearSchedule;

/// Which show is in force at a moment and which one follows: the on-demand event while its range includes
/// the moment, else what the year schedule holds for the date, else the weekly schedule. A view of the
/// schedules for one question; they outlive it.
///
/// Without schedules (boolNoSchedule) only the on-demand event counts, and where there is none the event in
/// force is an empty one. With them the weekly schedule must be there: ErrorObjectNotSet if not.
class ShowsInForce {
 public:
  using EventReference = std::shared_ptr<MonitoredShowEvent>;

  ShowsInForce(const Schedule* weekly, const YearSchedule* year, EventReference onDemand,
               bool boolNoSchedule);

  /// Never empty; its Filename is, where nothing is scheduled.
  [[nodiscard]] EventReference GetCurrentShowEvent(DateTime dtNow) const;
  /// Empty when the on-demand event's range does not include the moment.
  [[nodiscard]] EventReference GetOnDemandShowEvent(DateTime dtNow) const;
  /// Empty when the date has no schedule of its own.
  [[nodiscard]] EventReference GetYearShowEvent(DateTime dtNow) const;
  [[nodiscard]] EventReference GetWeeklyShowEvent(DateTime dtNow) const;

  /// What follows current, or will interrupt it; empty for nothing. Scheduled is what is in force now.
  [[nodiscard]] EventReference GetNextShowEvent(const EventReference& current,
                                                const EventReference& scheduled, DateTime dtNow) const;

  /// Up to that moment, at most the next midnight, every second gets the answers that dtNow gets, as long as
  /// schedules, on-demand event and current event stay as they are.
  [[nodiscard]] DateTime SameUntil(DateTime dtNow) const;

  /// The first dated show that starts later than the moment and before the end (open without one).
  [[nodiscard]] EventReference FirstYearShowWithin(const TimeRange& span) const;
  /// The same of the weekly schedule.
  [[nodiscard]] EventReference FirstWeeklyShowWithin(const TimeRange& span) const;

 private:
  [[nodiscard]] EventReference FirstShowWithin(const MonitoredShowEvent& current, DateTime dtNow) const;

  const Schedule* m_Schedule;
  const YearSchedule* m_YearSchedule;
  EventReference m_OnDemandEvent;
  bool m_NoSchedule;
};

/// The record of a show event's occurrence that is current at, or next after, the moment. An event without
/// a show has an empty name and the span of its gap; no event at all gives a new record.
[[nodiscard]] std::shared_ptr<MonitoredShowEvent> ToMonitoredShowEvent(const ShowEvent* showEvent,
                                                                       int32_t lScheduleType, DateTime dtNow);

}  // namespace vex
