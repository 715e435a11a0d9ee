#include "programs/vexctl/ScheduleFiles.h"

#include "basic/Error.h"
#include "monitor/Installation.h"
#include "programs/vexctl/FileAnswer.h"
#include "schedule/ScheduleFunctions.h"
#include "schedule/YearScheduleFunctions.h"
#include "settings/LibFile.h"
#include "tools/authoring/DamagePlace.h"

namespace vex {
namespace {

/// The file given, which must be readable, or the one in the user data folder.
std::string FileToRead(CommandContext& context, const std::string& szGiven,
                       const std::string& szUserDataFile) {
  if (szGiven.empty()) return szUserDataFile;
  const NamedFile file = FileFromArgument(context, szGiven);
  std::string szText;
  if (!ReadFile(context.Machine.Files(), file.Path, szText))
    throw CommandFailure(ExitCannot, szGiven + ": the file is missing or cannot be read");
  return file.Path;
}

template <class Load>
auto Understood(Files& files, const std::string& szPath, FileKind kind, Load load) {
  try {
    return load();
  } catch (const Error& error) {
    std::string szText;
    const std::string szPlace = ReadFile(files, szPath, szText) ? DamagePlace(kind, szText) : std::string();
    throw CommandFailure(ExitCannot, FailureLine(files.HostPath(szPath), error, szPlace));
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
  const std::string szWeek = FileToRead(context, szWeekFile, schedules.UserDataPath + WeekFilename);
  const std::string szYear = FileToRead(context, szYearFile, schedules.UserDataPath + YearFilename);
  schedules.Weekly = Understood(files, szWeek, FileKind::Week, [&] { return LoadSchedule(files, szWeek); });
  schedules.Year = Understood(files, szYear, FileKind::Year, [&] { return LoadYearSchedule(files, szYear); });
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
