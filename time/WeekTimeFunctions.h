#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "basic/DateTime.h"
#include "time/WeekTime.h"

namespace vex {

/// Parts set in the order day, hour, minute, second, with the setters' rules.
[[nodiscard]] WeekTime::Reference NewWeekTime(int32_t lNewDay, int32_t lNewHour, int32_t lNewMinute,
                                              int32_t lNewSecond);
[[nodiscard]] WeekTime::Reference WeekTimeFromDate(DateTime dtTime);
/// This week time in the Sunday-based week that holds dtReference.
[[nodiscard]] DateTime WeekTimeToDate(const WeekTime::Reference& time, DateTime dtReference);
/// TimeVal in decimal.
[[nodiscard]] std::string WeekTimeToText(const WeekTime::Reference& time);
/// The leading number of the unescaped text, rounded (halves to even), as TimeVal; 0 for no number.
[[nodiscard]] WeekTime::Reference WeekTimeFromText(std::string_view szText);

}  // namespace vex
