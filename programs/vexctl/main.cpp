#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "basic/Error.h"
#include "host/CodePage.h"
#include "host/Host.h"
#include "programs/vexctl/AuthoringCommands.h"
#include "programs/vexctl/Command.h"
#include "programs/vexctl/ControlCommands.h"
#include "programs/vexctl/LogCommands.h"
#include "programs/vexctl/ScheduleCommands.h"
#include "settings/LibRegistryVex.h"

namespace {

const std::string Description =
    "Plan shows for VexMonitor, the unattended show player, and control a running one.\n\n"
    "Plan:\n"
    "  vexctl show import eve.json eve.shw\n"
    "  vexctl week add \"Fri 17:30\" \"Fri 22:00\" eve.shw\n"
    "  vexctl year add \"2026-12-24 16:00\" \"2026-12-24 23:00\" eve.shw\n"
    "  vexctl check *.shw         whether shows and schedules are sound\n"
    "  vexctl doctor              whether this machine is ready for the season\n"
    "  vexctl timeline --from \"2026-12-01 00:00\" --to \"2026-12-31 00:00\"\n"
    "  vexctl why                 what is in force now, and why nothing else is\n"
    "  vexctl rehearse --from \"2026-12-24 17:00\" --until \"2026-12-25 00:00\"\n\n"
    "Control:\n"
    "  vexctl status              what plays and what is next\n"
    "  vexctl --json status       the same for a script\n"
    "  vexctl watch               status lines as they come; Ctrl-C ends it\n"
    "  vexctl log --level 3       what went wrong, as vextray has kept it\n"
    "  vexctl history             which shows have played, with their songs\n"
    "  vexctl play party.shw --for 1h30m\n"
    "  vexctl clear               end the show on demand\n"
    "  vexctl trigger 0 1 3       press an input\n"
    "  vexctl reload              after a schedule file has been changed\n"
    "  vexctl shutdown            end after the show's shutdown sequences\n\n"
    "vexctl COMMAND --help teaches each of them.\n";
constexpr const char* ExitWords = "\nExit status: 0 done, 1 cannot be done, 2 wrong usage.";

/// The overview has a line for each command; the rest of what there is to say stands in its own help.
class Overview : public CLI::Formatter {
 public:
  std::string make_subcommand(const CLI::App* command) const override {
    const std::string szDescription = command->get_description();
    std::stringstream lines;
    CLI::detail::format_help(lines, command->get_display_name(true),
                             szDescription.substr(0, szDescription.find('\n')), column_width_);
    return lines.str();
  }
};

/// As the parser takes them: without the program's name, the last one first.
std::vector<std::string> Reversed(std::vector<std::string> arguments) {
  if (!arguments.empty()) arguments.erase(arguments.begin());
  std::ranges::reverse(arguments);
  return arguments;
}

int Run(int argc, char** argv) {
  const auto host = vex::NativeHost();
  host->DriveTable([&registry = host->Registry()](char letter) {
    return vex::GetProductString(registry, std::string(1, letter), "Drives", "");
  });
  vex::CommandContext context{*host};
  CLI::App app(Description + host->Places().Player + ExitWords, "vexctl");
  app.add_flag("--json", context.Json, "answer in JSON; stands before the command");
  app.require_subcommand(1);
  app.formatter(std::make_shared<Overview>());
  app.failure_message([](const CLI::App*, const CLI::Error& error) {
    const bool boolTooMany = error.get_exit_code() == static_cast<int>(CLI::ExitCodes::ExtrasError);
    return std::string("vexctl: ") + error.what() +
           (boolTooMany ? " (a time with a blank in it stands in quotes, as \"Mon 18:00\")" : "") +
           "; see vexctl --help\n";
  });
  vex::AddStatusCommand(app, context);
  vex::AddWatchCommand(app, context);
  vex::AddLogCommand(app, context);
  vex::AddHistoryCommand(app, context);
  vex::AddControlCommands(app, context);
  vex::AddDemandCommands(app, context);
  vex::AddTriggerCommand(app, context);
  vex::AddCheckCommand(app, context);
  vex::AddDoctorCommand(app, context);
  vex::AddWeekCommand(app, context);
  vex::AddYearCommand(app, context);
  vex::AddShowCommand(app, context);
  vex::AddTimelineCommand(app, context);
  vex::AddWhyCommand(app, context);
  vex::AddRehearseCommand(app, context);
  try {
    app.parse(Reversed(host->Arguments(argc, argv)));
    return context.Status;
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? vex::ExitDone : vex::ExitUsage;
  }
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const vex::CommandFailure& failure) {
    std::cerr << "vexctl: " << failure.what() << "\n";
    return failure.Status;
  } catch (const std::exception& error) {
    std::cerr << "vexctl: " << vex::WordsToUtf8(error.what()) << "\n";
    return vex::ExitCannot;
  }
}
