#include "programs/vexctl/ScheduleFiles.h"

#include "basic/Error.h"
#include "monitor/Installation.h"
#include "schedule/ScheduleFunctions.h"
#include "schedule/YearScheduleFunctions.h"
#include "settings/LibFile.h"

namespace vex {
namespace {

/// The file given, which must be readable, or the one in the user data folder.
std::string FileToRead(Files& files, const std::string& szGiven, const std::string& szUserDataFile) {
  if (szGiven.empty()) return szUserDataFile;
  std::string szPath = files.SystemPath(szGiven);
  std::string szText;
  if (!ReadFile(files, szPath, szText))
    throw CommandFailure(ExitCannot, szGiven + ": the file is missing or cannot be read");
  return szPath;
}

template <class Load>
auto Understood(const std::string& szPath, Load load) {
  try {
    return load();
  } catch (const Error& error) {
    throw CommandFailure(ExitCannot, szPath + ": " + error.Description + " (number " +
                                         std::to_string(error.Number) + ", " + error.Source + ")");
  }
}

}  // namespace

std::string UserDataFolder(CommandContext& context) {
  Host& host = context.Machine;
  return Installation(host.Registry(), host.Files(), host.Processes(), host.MessageBoxes()).UserDataPath();
}

BothSchedules ReadSchedules(CommandContext& context, const std::string& szWeekFile,
                            const std::string& szYearFile) {
  Files& files = context.Machine.Files();
  BothSchedules schedules;
  schedules.UserDataPath = UserDataFolder(context);
  const std::string szWeek = FileToRead(files, szWeekFile, schedules.UserDataPath + WeekFilename);
  const std::string szYear = FileToRead(files, szYearFile, schedules.UserDataPath + YearFilename);
  schedules.Weekly = Understood(szWeek, [&] { return LoadSchedule(files, szWeek); });
  schedules.Year = Understood(szYear, [&] { return LoadYearSchedule(files, szYear); });
  return schedules;
}

DateTime ParseMoment(const std::string& szArgument, const std::string& szOption) {
  try {
    return ParseDateTime(szArgument);
  } catch (const Error&) {
    throw CommandFailure(ExitUsage, szOption + ": \"" + szArgument +
                                        "\" is no date and time; write it as 2026-12-24 18:00 or "
                                        "2026-12-24 18:00:05");
  }
}

}  // namespace vex
