#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "basic/DateTime.h"
#include "monitor/ShowsInForce.h"
#include "schedule/MonitoredShowEvent.h"

namespace vex {

/// A stretch of time, [From, To), in which the heartbeat decides the same at every second. Event is never
/// empty; its Filename is, where nothing is scheduled.
struct TimelineRow {
  DateTime From;
  DateTime To;
  std::shared_ptr<MonitoredShowEvent> Event;
};

/// What the schedules will have played, or would have: the decision of every second, found by stepping from
/// one boundary of the schedules to the next, so that a year costs no more than its shows. Nothing but a
/// boundary of the week, a boundary of a dated day or the midnights around such a day changes the decision.
/// There is no show on demand in it. The schedules outlive the timeline and stay as they are.
class Timeline {
 public:
  Timeline(const Schedule& weekly, const YearSchedule& year);

  /// Rows that touch and cover [from, to), neighbours differ; none unless from is before to.
  [[nodiscard]] std::vector<TimelineRow> Rows(DateTime from, DateTime to) const;
  /// What the heartbeat decides at that second.
  [[nodiscard]] std::shared_ptr<MonitoredShowEvent> At(DateTime dtTime) const;

 private:
  [[nodiscard]] int64_t SecondsToBoundary(DateTime dtTime) const;
  [[nodiscard]] int64_t SecondsToWeekBoundary(DateTime dtTime) const;
  void AddDatedBoundaries(DateTime dtDate, const Schedule& day);

  ShowsInForce m_ShowsInForce;
  std::vector<int32_t> m_WeekBoundaries;    // seconds of the week, rising
  std::vector<DateTime> m_DatedBoundaries;  // rising
};

}  // namespace vex
