#pragma once

#include <memory>
#include <string>

#include "basic/DateTime.h"
#include "schedule/Schedule.h"
#include "schedule/YearSchedule.h"
#include "time/WeekTime.h"
#include "tools/authoring/FileOutcome.h"

namespace vex {

/// Changes to the schedule files. Each reads the file under its lock, makes one change and writes the whole
/// file or leaves the old one, so that two programs at once lose no change and the player never reads half
/// a file. A file that does not exist is an empty schedule. Failures are those of reading, of the change, of
/// reading back what would be written, and number 75 or 76 where the file cannot be written; then the file
/// is as it was.

struct WeekOutcome : FileOutcome {
  /// The schedule as it was read or written; empty after a failure.
  std::shared_ptr<Schedule> Shows;
};

struct YearOutcome : FileOutcome {
  std::shared_ptr<YearSchedule> Shows;
};

[[nodiscard]] WeekOutcome ReadWeek(Files& files, const std::string& szPath);
/// Fails with number 1, "Schedule.AddShowEvent", "Can't add event -- event conflict" for an end that is the
/// start too: the schedule would take it for the whole week.
[[nodiscard]] WeekOutcome AddToWeek(Files& files, const std::string& szPath,
                                    const WeekTime::Reference& startTime, const WeekTime::Reference& endTime,
                                    const std::string& szShow);
/// Takes away the show in force at that time.
[[nodiscard]] WeekOutcome RemoveFromWeek(Files& files, const std::string& szPath,
                                         const WeekTime::Reference& time);

[[nodiscard]] YearOutcome ReadYear(Files& files, const std::string& szPath);
[[nodiscard]] YearOutcome AddToYear(Files& files, const std::string& szPath, DateTime startTime,
                                    DateTime endTime, const std::string& szShow);
/// Takes away the dated show in force at that time. What runs past midnight is not in force there: number
/// 1, "Schedule.RemoveShowEvent", "Can not remove non-show event".
[[nodiscard]] YearOutcome RemoveFromYear(Files& files, const std::string& szPath, DateTime dtTime);

}  // namespace vex
