#include <algorithm>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "programs/vexctl/AuthoringCommands.h"
#include "programs/vexctl/ScheduleChange.h"
#include "programs/vexctl/ScheduleFiles.h"
#include "programs/vexctl/ShowTroubles.h"
#include "tools/authoring/ChangeSchedule.h"
#include "tools/authoring/Moments.h"

namespace vex {
namespace {

struct YearOptions : ScheduleOptions {
  std::string Start;
  std::string End;
  std::string Show;
  std::string Time;
};

void AddRows(const std::string& szDate, const Schedule& day, std::vector<std::string>& rows) {
  constexpr size_t width = 14;
  const auto column = [](std::string szText) {
    szText.resize(width, ' ');
    return szText;
  };
  for (const auto* node = day.FirstNode(); node; node = node->NextNode()) {
    const ShowEvent& show = *node->Obj();
    if (show.EventType() != ShowFileEvent) continue;
    rows.push_back(szDate + "  " + column(WeekTimeToWords(*show.StartTime())) +
                   column(WeekTimeToWords(*show.EndTime())) + show.Filename());
  }
}

/// In the order of the calendar, whatever the file's.
std::string Table(const YearSchedule& year) {
  std::vector<std::string> rows;
  std::vector<std::string> dates(year.Keys().begin(), year.Keys().end());
  std::ranges::sort(dates);
  for (const std::string& szDate : dates) AddRows(szDate, *year.ScheduleByKey(szDate), rows);
  if (rows.empty()) return "the dated schedule holds no shows";
  std::string szTable = "date        from          to            show";
  for (const std::string& szRow : rows) szTable += "\n" + szRow;
  return szTable;
}

void List(CommandContext& context, const YearOptions& options) {
  const NamedFile file = ScheduleFile(context, options, YearFilename, ScheduleUse::Read);
  const YearOutcome year = ReadYear(context.Machine.Files(), file.Path);
  if (year.Failure)
    PrintFailure(context, file, FileKind::Year, year);
  else
    PrintDone(context, year, Table(*year.Shows));
}

void Add(CommandContext& context, const YearOptions& options) {
  const DateTime start = ParseMoment(options.Start, "START");
  const DateTime end = ParseMoment(options.End, "END");
  const std::string szShow = ShowFromArgument(options.Show);
  const NamedFile file = ScheduleFile(context, options, YearFilename, ScheduleUse::Write);
  const YearOutcome year = AddToYear(context.Machine.Files(), file.Path, start, end, szShow);
  PrintChange(context, options, file, FileKind::Year, year);
  if (!year.Failure && !context.Json) ShowTroubles(context, SongLook::Exists).Print(szShow);
}

void Remove(CommandContext& context, const YearOptions& options) {
  const DateTime dtTime = ParseMoment(options.Time, "TIME");
  const NamedFile file = ScheduleFile(context, options, YearFilename, ScheduleUse::Read);
  PrintChange(context, options, file, FileKind::Year,
              RemoveFromYear(context.Machine.Files(), file.Path, dtTime));
}

}  // namespace

void AddYearCommand(CLI::App& app, CommandContext& context) {
  auto* const year = app.add_subcommand(
      "year",
      "List and change the dated schedule, which goes before the weekly one\n\n"
      "A show stands under the date on which it starts and is cut off at midnight. The file is written\n"
      "whole or not at all, and a running player is asked to reload it.\n\n"
      "Examples: vexctl year add \"2026-12-24 16:00\" \"2026-12-24 23:00\" christmas.shw\n"
      "          vexctl year list\n"
      "          vexctl year remove \"2026-12-24 18:00\"");
  year->require_subcommand(1);
  auto options = std::make_shared<YearOptions>();
  AddScheduleOptions(*year, *options, YearFilename);
  auto* const list = year->add_subcommand("list", "The dated shows; with --json the text of the file");
  list->fallthrough()->callback([&context, options] { List(context, *options); });
  auto* const add = year->add_subcommand(
      "add",
      "Put a show on a date\n\n"
      "Example: vexctl year add \"2026-12-24 16:00\" \"2026-12-24 23:00\" christmas.shw");
  add->fallthrough();
  add->add_option("START", options->Start, "when it starts, as \"2026-12-24 18:00[:05]\"")->required();
  add->add_option("END", options->End, "when it ends, with its date")->required();
  add->add_option("SHOW", options->Show, "name of the show file; it lies in the user data folder")
      ->required();
  add->callback([&context, options] { Add(context, *options); });
  auto* const remove = year->add_subcommand("remove",
                                            "Take away the dated show in force at a time\n\n"
                                            "Example: vexctl year remove \"2026-12-24 18:00\"");
  remove->fallthrough();
  remove->add_option("TIME", options->Time, "any time at which it plays")->required();
  remove->callback([&context, options] { Remove(context, *options); });
}

}  // namespace vex
