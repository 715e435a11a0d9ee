#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "host/Files.h"
#include "schedule/Schedule.h"

namespace vex {

/// A list of the show events in week order; null events follow from the gaps and are never written.
[[nodiscard]] std::string ScheduleToText(const Schedule& schedule);
/// Adds every stored show with the full conflict rules, in the text's order; raises the errors of the
/// list, of the event and of AddShowEvent. A list whose only element is empty holds no shows.
[[nodiscard]] std::shared_ptr<Schedule> ScheduleFromText(std::string_view szText);
/// An empty schedule for a file that cannot be read; what is read and cannot be parsed raises.
[[nodiscard]] std::shared_ptr<Schedule> LoadSchedule(Files& files, const std::string& szFilename);

}  // namespace vex
