#pragma once

#include <string>
#include <vector>

#include "tools/timeline/Timeline.h"

namespace vex {

/// What users trip over between two moments: a dated show that runs past its day's midnight and is cut off
/// there, one whose times lie on another weekday than its date and that never plays, and a weekly show that
/// gives way to a dated one. One line each, single-byte, in the order of time.
[[nodiscard]] std::vector<std::string> TimelineWarnings(const Schedule& weekly, const YearSchedule& year,
                                                        DateTime from, DateTime to);

}  // namespace vex
