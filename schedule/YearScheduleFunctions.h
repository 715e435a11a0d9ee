#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "host/Files.h"
#include "schedule/YearSchedule.h"

namespace vex {

/// A list of pairs, date text and the date's schedule text, in the order of Keys.
[[nodiscard]] std::string YearScheduleToText(const YearSchedule& schedule);
/// Raises the errors of the list, of the date, of the date's schedule, and ErrorInvalidCall for a date that
/// stands twice.
[[nodiscard]] std::shared_ptr<YearSchedule> YearScheduleFromText(std::string_view szText);
/// An empty schedule for a file that cannot be read; what is read and cannot be parsed raises.
[[nodiscard]] std::shared_ptr<YearSchedule> LoadYearSchedule(Files& files, const std::string& szFilename);

}  // namespace vex
