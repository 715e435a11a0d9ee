#include <cstdint>
#include <iostream>
#include <memory>
#include <string>

#include "basic/Error.h"
#include "monitor/VexMessage.h"
#include "programs/vexctl/ControlCommands.h"
#include "programs/vexctl/Duration.h"
#include "programs/vexctl/PlayerChannel.h"
#include "programs/vexctl/ScheduleFiles.h"
#include "schedule/MonitoredShowEvent.h"
#include "time/TimeRange.h"

namespace vex {
namespace {

struct PlayOptions {
  std::string Show;
  std::string From;
  std::string Until;
  std::string For;
};

/// The span in which the show is wanted; without --from it begins at once, without an end it runs on.
std::shared_ptr<TimeRange> WantedRange(const PlayOptions& options, DateTime dtNow) {
  auto range = std::make_shared<TimeRange>();
  DateTime start = dtNow;
  if (!options.From.empty()) {
    start = ParseMoment(options.From, "--from");
    range->StartTime(start);
  }
  DateTime end;
  if (!options.Until.empty())
    end = ParseMoment(options.Until, "--until");
  else if (!options.For.empty())
    end = start.PlusSeconds(ParseDuration(options.For, "--for"));
  else
    return range;
  if (end <= start)
    throw CommandFailure(ExitUsage, "the show would end before it starts: " + FormatDateTime(end) +
                                        " is not after " + FormatDateTime(start));
  range->EndTime(end);
  return range;
}

void PrintAsked(const CommandContext& context, const std::string& szWhat) {
  std::cout << (context.Json ? "{\"ok\":true}" : szWhat) << "\n";
}

void Play(CommandContext& context, const PlayOptions& options) {
  MonitoredShowEvent event;
  event.Filename(SystemText(options.Show, "the show's name"));
  if (event.Filename().empty())
    throw CommandFailure(ExitUsage, "the show's name is empty; to end a show, see clear");
  event.ScheduleType(OnDemandScheduleType);
  event.Range(WantedRange(options, context.Machine.Clock().Now()));
  PlayerChannel(context.Machine).Send(MessageShowOnDemand, event.Serialize());
  PrintAsked(context,
             "asked to play \"" + options.Show + "\"" +
                 (event.Range()->HasStart() ? " from " + FormatDateTime(event.Range()->StartTime()) : "") +
                 (event.Range()->HasEnd() ? " until " + FormatDateTime(event.Range()->EndTime())
                                          : ", until it is cleared"));
}

}  // namespace

void AddDemandCommands(CLI::App& app, CommandContext& context) {
  auto* const play = app.add_subcommand(
      "play",
      "Have a show played on demand, ahead of the schedules\n\n"
      "It begins at once, or at --from, and goes on until --until, for the time of --for, or until it is\n"
      "cleared. The name is as in a schedule: without a folder the show lies in the user data folder.\n\n"
      "Examples: vexctl play party.shw --for 1h30m\n"
      "          vexctl play eve.shw --from \"2026-12-24 18:00\" --until \"2026-12-24 22:00\"");
  auto options = std::make_shared<PlayOptions>();
  play->add_option("SHOW", options->Show, "name of the show file")->required();
  play->add_option("--from", options->From, "when it begins, as 2026-12-24 18:00[:05] (default: now)");
  auto* const until = play->add_option("--until", options->Until, "when it ends");
  play->add_option("--for", options->For, "how long it plays: seconds, or like 1h30m")->excludes(until);
  play->callback([&context, options] { Play(context, *options); });

  app.add_subcommand("clear", "Withdraw the show on demand; the schedules apply again")->callback([&context] {
    PlayerChannel(context.Machine).Send(MessageShowOnDemand, "");
    PrintAsked(context, "asked to clear the show on demand");
  });
}

}  // namespace vex
