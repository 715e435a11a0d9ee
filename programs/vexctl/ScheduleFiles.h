#pragma once

#include <memory>
#include <string>

#include "programs/vexctl/Command.h"
#include "schedule/Schedule.h"
#include "schedule/YearSchedule.h"

namespace vex {

/// The names of the schedule files in the user data folder.
inline constexpr const char* WeekFilename = "weeksched.qsc";
inline constexpr const char* YearFilename = "yearsched.qsc";

/// The user data folder with its trailing "\", as the settings name it; empty where they name none.
[[nodiscard]] std::string UserDataFolder(CommandContext& context);

/// Both schedules as the player would load them.
struct BothSchedules {
  std::shared_ptr<Schedule> Weekly;
  std::shared_ptr<YearSchedule> Year;
  std::string UserDataPath;
};

/// Reads the schedules from the files given, each a path of this machine, and those not given from the user
/// data folder, where a file that is not there is an empty schedule. Raises CommandFailure for a file that
/// was given and cannot be read, and for one that cannot be understood.
[[nodiscard]] BothSchedules ReadSchedules(CommandContext& context, const std::string& szWeekFile,
                                          const std::string& szYearFile);

/// "2026-12-24 18:00[:05]" as given on a command line; raises CommandFailure for anything else.
[[nodiscard]] DateTime ParseMoment(const std::string& szArgument, const std::string& szOption);

}  // namespace vex
