#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "schedule/ShowEvent.h"

namespace vex {

[[nodiscard]] std::shared_ptr<ShowEvent> NewNullShowEvent(WeekTime::Reference startTime, int32_t lDuration);
/// An empty name gives a null event.
[[nodiscard]] std::shared_ptr<ShowEvent> NewShowEvent(const std::string& szFilename,
                                                      WeekTime::Reference startTime,
                                                      WeekTime::Reference endTime);
/// "(133507,2,(,0,eve.shw),129600)": end, type, file reference, start.
[[nodiscard]] std::string ShowEventToText(const ShowEvent& event);
/// Raises the list's errors, and ErrorSubscript for too few elements; the stored type gives way to
/// whether the file name is empty.
[[nodiscard]] std::shared_ptr<ShowEvent> ShowEventFromText(std::string_view szText);

}  // namespace vex
