#pragma once

#include <string>
#include <string_view>

#include "basic/DateTime.h"
#include "schedule/ShowEvent.h"
#include "time/WeekTime.h"

namespace vex {

/// Times as people write them on a command line, so that what is printed can be typed again.

/// "Mon 18:00" or "Mon 18:00:05", the day in either case; raises ErrorTypeMismatch for anything else.
[[nodiscard]] WeekTime::Reference ParseWeekTime(std::string_view szText);
/// "Mon 18:00", with the seconds unless they are 0.
[[nodiscard]] std::string WeekTimeToWords(const WeekTime& time);
/// "2026-12-24 18:00", with the seconds unless they are 0.
[[nodiscard]] std::string MomentToWords(DateTime dtTime);

/// `"eve.shw" from Mon 18:00 to Mon 22:00`.
[[nodiscard]] std::string ShowToWords(const ShowEvent& show);
/// `"eve.shw" from 2026-12-24 18:00 to 2026-12-24 22:00`.
[[nodiscard]] std::string ShowToWords(const std::string& szShow, DateTime start, DateTime end);

}  // namespace vex
