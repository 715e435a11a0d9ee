#pragma once

#include <memory>
#include <string>
#include <vector>

#include "basic/DateTime.h"
#include "monitor/ShowsInForce.h"
#include "schedule/MonitoredShowEvent.h"

namespace vex {

/// Where a decision comes from, in the order in which they are asked. The words are part of the companion's
/// output.
inline constexpr const char* RuleDemand = "demand";
inline constexpr const char* RuleYear = "year";
inline constexpr const char* RuleWeek = "week";
inline constexpr const char* RuleNone = "none";

/// A rule that was asked and did not decide. Event is the show that it had or comes nearest to having; empty
/// where it has none.
struct PassedOver {
  std::string Rule;
  std::shared_ptr<MonitoredShowEvent> Event;
  std::string Because;
};

/// Why a show plays at a moment, or why none does, in the words of a person who can read the schedules.
/// Event is the heartbeat's decision and never empty.
struct Explanation {
  DateTime At;
  std::shared_ptr<MonitoredShowEvent> Event;
  std::string Rule;
  std::vector<PassedOver> Others;
  std::string Sentence;
};

/// The show on demand may be empty. Text is single-byte.
[[nodiscard]] Explanation Explain(const Schedule& weekly, const YearSchedule& year,
                                  const std::shared_ptr<MonitoredShowEvent>& onDemand, DateTime dtTime);

/// "18:00", or "18:00:05" where the seconds count.
[[nodiscard]] std::string TimeInWords(DateTime dtTime);
/// "24 December 2026".
[[nodiscard]] std::string DateInWords(DateTime dtTime);

}  // namespace vex
