#include <algorithm>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "host/CodePage.h"
#include "host/Files.h"
#include "programs/vexctl/ScheduleCommands.h"
#include "programs/vexctl/ScheduleFiles.h"
#include "programs/vexctl/ShowTroubles.h"
#include "settings/LibFile.h"
#include "time/TimeRange.h"
#include "tools/timeline/Timeline.h"
#include "tools/timeline/TimelinePicture.h"
#include "tools/timeline/TimelineWarnings.h"

namespace vex {
namespace {

struct TimelineOptions {
  std::string From;
  std::string To;
  std::string WeekFile;
  std::string YearFile;
  std::string Picture;
};

void PrintJson(const std::vector<TimelineRow>& rows) {
  for (const TimelineRow& row : rows) {
    const nlohmann::ordered_json line{{"from", FormatDateTime(row.From)},
                                      {"to", FormatDateTime(row.To)},
                                      {"event", AnsiToUtf8(row.Event->Serialize())}};
    std::cout << line.dump() << "\n";
  }
}

/// "5 h 30 min", the way people say it.
std::string Length(int64_t seconds) {
  std::string szText;
  const auto part = [&](int64_t value, const char* szUnit) {
    if (value != 0) szText += (szText.empty() ? "" : " ") + std::to_string(value) + " " + szUnit;
  };
  part(seconds / 86400, "d");
  part(seconds % 86400 / 3600, "h");
  part(seconds % 3600 / 60, "min");
  part(seconds % 60, "s");
  return szText;
}

void PrintTable(const std::vector<TimelineRow>& rows) {
  static const char* const days[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  const auto column = [](std::string szText, size_t width) {
    szText.resize(std::max(width, szText.size()), ' ');
    return szText + "  ";
  };
  const auto moment = [&](DateTime dtTime) {
    return std::string(days[dtTime.WeekDay() - 1]) + " " + FormatDateTime(dtTime);
  };
  std::cout << column("from", 23) << column("to", 23) << column("length", 16) << column("schedule", 8)
            << "show\n";
  for (const TimelineRow& row : rows) {
    const bool boolShow = !row.Event->Filename().empty();
    const char* const szSchedule = row.Event->ScheduleType() == YearScheduleType ? "dated" : "weekly";
    std::cout << column(moment(row.From), 23) << column(moment(row.To), 23)
              << column(Length(row.To.SecondsSince(row.From)), 16) << column(boolShow ? szSchedule : "-", 8)
              << (boolShow ? AnsiToUtf8(row.Event->Filename()) : "-") << "\n";
  }
}

void Warn(CommandContext& context, const BothSchedules& schedules, const std::vector<TimelineRow>& rows) {
  const auto warn = [](const std::string& szLine) {
    std::cerr << "vexctl: warning: " << AnsiToUtf8(szLine) << "\n";
  };
  for (const std::string& szLine :
       TimelineWarnings(*schedules.Weekly, *schedules.Year, rows.front().From, rows.back().To))
    warn(szLine);
  const ShowTroubles troubles(context, SongLook::Plays);
  std::set<std::string> seen;
  for (const TimelineRow& row : rows) {
    const std::string& szShow = row.Event->Filename();
    if (szShow.empty() || !seen.insert(szShow).second) continue;
    for (const std::string& szLine : troubles.Of(szShow)) warn(szLine);
  }
}

void PrintTimeline(CommandContext& context, const TimelineOptions& options) {
  const DateTime from = ParseMoment(options.From, "--from");
  const DateTime to = ParseMoment(options.To, "--to");
  const BothSchedules schedules = ReadSchedules(context, options.WeekFile, options.YearFile);
  const auto rows = Timeline(*schedules.Weekly, *schedules.Year).Rows(from, to);
  if (!options.Picture.empty()) {
    Files& files = context.Machine.Files();
    const std::string szPath = files.SystemPath(options.Picture);
    if (!WriteFile(files, szPath, TimelinePicture(rows)))
      throw CommandFailure(ExitCannot, options.Picture +
                                           ": the picture cannot be written; see whether the folder "
                                           "exists and may be written to");
  }
  if (rows.empty()) return;
  if (context.Json)
    PrintJson(rows);
  else
    PrintTable(rows);
  Warn(context, schedules, rows);
}

}  // namespace

void AddTimelineCommand(CLI::App& app, CommandContext& context) {
  auto* const timeline = app.add_subcommand(
      "timeline",
      "Which show the schedules have in force between two moments\n\n"
      "Prints a row for each stretch of time; warnings about shows that are missing, cut off or give way\n"
      "stand on standard error.\n\n"
      "Example: vexctl timeline --from \"2026-12-01 00:00\" --to \"2027-01-07 00:00\" --svg december.svg");
  auto options = std::make_shared<TimelineOptions>();
  timeline->add_option("--from", options->From, "first second, as 2026-12-24 18:00[:05]")->required();
  timeline->add_option("--to", options->To, "the second after the last")->required();
  timeline->add_option("--week", options->WeekFile,
                       "weekly schedule (default: the one in the user data folder)");
  timeline->add_option("--year", options->YearFile,
                       "dated schedule (default: the one in the user data folder)");
  timeline->add_option("--svg", options->Picture, "write a picture of the weeks to this file too");
  timeline->callback([&context, options] { PrintTimeline(context, *options); });
}

}  // namespace vex
