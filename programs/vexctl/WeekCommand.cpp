#include <iostream>
#include <memory>
#include <string>

#include "basic/Error.h"
#include "host/CodePage.h"
#include "programs/vexctl/AuthoringCommands.h"
#include "programs/vexctl/ScheduleChange.h"
#include "programs/vexctl/ScheduleFiles.h"
#include "programs/vexctl/ShowTroubles.h"
#include "schedule/ShowEventFunctions.h"
#include "tools/authoring/ChangeSchedule.h"
#include "tools/authoring/Moments.h"
#include "tools/authoring/Obstacles.h"

namespace vex {
namespace {

struct WeekOptions : ScheduleOptions {
  std::string Start;
  std::string End;
  std::string Show;
  std::string Time;
};

WeekTime::Reference WeekTimeFromArgument(const std::string& szArgument, const std::string& szWhat) {
  try {
    return ParseWeekTime(szArgument);
  } catch (const Error&) {
    throw CommandFailure(ExitUsage, szWhat + ": \"" + szArgument +
                                        "\" is no time of the week; write it as \"Mon 18:00\" or "
                                        "\"Mon 18:00:05\", Sun to Sat; midnight is 00:00 of the next day");
  }
}

std::string Table(const Schedule& schedule) {
  constexpr size_t width = 14;
  const auto column = [](std::string szText) {
    szText.resize(width, ' ');
    return szText;
  };
  std::string szTable = column("from") + column("to") + "show";
  for (const auto* node = schedule.FirstNode(); node; node = node->NextNode()) {
    const ShowEvent& show = *node->Obj();
    if (show.EventType() != ShowFileEvent) continue;
    szTable += "\n" + column(WeekTimeToWords(*show.StartTime())) + column(WeekTimeToWords(*show.EndTime())) +
               show.Filename();
  }
  return schedule.FirstShowEvent() ? szTable : "the weekly schedule holds no shows";
}

void List(CommandContext& context, const WeekOptions& options) {
  const NamedFile file = ScheduleFile(context, options, WeekFilename, ScheduleUse::Read);
  const WeekOutcome week = ReadWeek(context.Machine.Files(), file.Path);
  if (week.Failure)
    PrintFailure(context, file, FileKind::Week, week);
  else
    PrintDone(context, week, Table(*week.Shows));
}

void Add(CommandContext& context, const WeekOptions& options) {
  const auto start = WeekTimeFromArgument(options.Start, "START");
  const auto end = WeekTimeFromArgument(options.End, "END");
  const std::string szShow = ShowFromArgument(options.Show);
  const NamedFile file = ScheduleFile(context, options, WeekFilename, ScheduleUse::Write);
  const WeekOutcome week = AddToWeek(context.Machine.Files(), file.Path, start, end, szShow);
  PrintChange(context, options, file, FileKind::Week, week);
  if (!week.Failure && !context.Json) ShowTroubles(context, SongLook::Exists).Print(szShow);
}

void Remove(CommandContext& context, const WeekOptions& options) {
  const auto time = WeekTimeFromArgument(options.Time, "TIME");
  const NamedFile file = ScheduleFile(context, options, WeekFilename, ScheduleUse::Read);
  PrintChange(context, options, file, FileKind::Week,
              RemoveFromWeek(context.Machine.Files(), file.Path, time));
}

/// Adding takes one layout that the check does not, a show laid over the week's end.
bool AddTakes(Schedule& schedule, const WeekTime::Reference& start, const WeekTime::Reference& end) {
  try {
    schedule.AddShowEvent(NewShowEvent("?", start, end));
    return true;
  } catch (const Error&) {
    return false;
  }
}

std::string FitsWords(int32_t lCode, Schedule& schedule, const WeekTime::Reference& start,
                      const WeekTime::Reference& end) {
  const std::string szObstacles = WeekObstacles(schedule, start, end);
  if (lCode == 0 && szObstacles.empty()) return "fits";
  const std::string szCode = "does not fit (code " + std::to_string(lCode) + ")";
  if (!szObstacles.empty()) return szCode + ": " + szObstacles;
  return szCode + (AddTakes(schedule, start, end)
                       ? ": it runs over the week's end, from Saturday to Sunday; week add takes it"
                       : "");
}

void Fits(CommandContext& context, const WeekOptions& options) {
  const auto start = WeekTimeFromArgument(options.Start, "START");
  const auto end = WeekTimeFromArgument(options.End, "END");
  const NamedFile file = ScheduleFile(context, options, WeekFilename, ScheduleUse::Read);
  const WeekOutcome week = ReadWeek(context.Machine.Files(), file.Path);
  if (week.Failure) {
    PrintFailure(context, file, FileKind::Week, week);
    return;
  }
  const int32_t lCode = week.Shows->CheckAdd(start, end);
  if (context.Json)
    std::cout << nlohmann::ordered_json{{"ok", true}, {"code", lCode}}.dump() << "\n";
  else
    std::cout << AnsiToUtf8(FitsWords(lCode, *week.Shows, start, end)) << "\n";
}

CLI::App* AddWord(CLI::App& week, const char* szName, const char* szDescription) {
  auto* const word = week.add_subcommand(szName, szDescription);
  word->fallthrough();
  return word;
}

}  // namespace

void AddWeekCommand(CLI::App& app, CommandContext& context) {
  auto* const week = app.add_subcommand(
      "week",
      "List and change the weekly schedule\n\n"
      "Times are a day and a time of day, \"Mon 18:00\" or \"Mon 18:00:05\"; midnight at the end of a day "
      "is\n"
      "00:00 of the next. A show may run past midnight, and over Saturday's into Sunday too. The file is\n"
      "written whole or not at all, and a running player is asked to reload it.\n\n"
      "Examples: vexctl week add \"Fri 17:30\" \"Fri 22:00\" eve.shw\n"
      "          vexctl week list\n"
      "          vexctl week remove \"Fri 18:00\"\n"
      "          vexctl week fits \"Sat 17:30\" \"Sun 01:00\"");
  week->require_subcommand(1);
  auto options = std::make_shared<WeekOptions>();
  AddScheduleOptions(*week, *options, WeekFilename);
  AddWord(*week, "list", "The week's shows; with --json the text of the file")->callback([&context, options] {
    List(context, *options);
  });
  auto* const add = AddWord(*week, "add",
                            "Put a show into free time\n\n"
                            "Example: vexctl week add \"Fri 17:30\" \"Fri 22:00\" eve.shw");
  add->add_option("START", options->Start, "when it starts, as \"Mon 18:00[:05]\"")->required();
  add->add_option("END", options->End, "when it ends")->required();
  add->add_option("SHOW", options->Show, "name of the show file; it lies in the user data folder")
      ->required();
  add->callback([&context, options] { Add(context, *options); });
  auto* const remove = AddWord(*week, "remove",
                               "Take away the show in force at a time\n\n"
                               "Example: vexctl week remove \"Fri 18:00\"");
  remove->add_option("TIME", options->Time, "any time at which it plays, as \"Mon 18:00[:05]\"")->required();
  remove->callback([&context, options] { Remove(context, *options); });
  auto* const fits = AddWord(*week, "fits",
                             "Whether a show would fit into free time; changes nothing\n\n"
                             "The code is 0 where it fits, else 1, 2 or 3. The status is 0 either way.\n\n"
                             "Example: vexctl week fits \"Sat 17:30\" \"Sat 23:00\"");
  fits->add_option("START", options->Start, "when it would start, as \"Mon 18:00[:05]\"")->required();
  fits->add_option("END", options->End, "when it would end")->required();
  fits->callback([&context, options] { Fits(context, *options); });
}

}  // namespace vex
