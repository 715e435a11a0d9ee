#pragma once

#include <string>

#include "basic/DateTime.h"
#include "basic/Error.h"
#include "schedule/Schedule.h"
#include "schedule/YearSchedule.h"

namespace vex {

/// Why a show did not fit, for people: the schedules say "event conflict" and nothing else. A clause that
/// names the shows in the way or what else the rules do not take, and what helps; empty where nothing can
/// be said.

[[nodiscard]] std::string WeekObstacles(const Schedule& schedule, const WeekTime::Reference& start,
                                        const WeekTime::Reference& end);
/// `error` is what adding the show raised.
[[nodiscard]] std::string YearObstacles(const YearSchedule& year, DateTime start, DateTime end,
                                        const Error& error);

}  // namespace vex
