#include <iostream>
#include <memory>
#include <string>

#include "basic/Error.h"
#include "host/Host.h"
#include "programs/vexctl/LogCommands.h"
#include "tray/log/LogReader.h"

namespace vex {

namespace {

struct LogOptions {
  std::string Since;
  int32_t Level = LogLine::LevelCourse;
  bool Follow = false;
};

/// Prints what the options ask for.
class LogPrinter {
 public:
  LogPrinter(const CommandContext& context, const LogOptions& options)
      : m_Json(context.Json), m_Level(options.Level) {
    try {
      if (!options.Since.empty()) m_Since = ParseDateTime(options.Since);
    } catch (const Error&) {
      throw CommandFailure(ExitUsage,
                           "--since \"" + options.Since + "\" is no time; one is like \"2026-12-24 18:00\"");
    }
  }

  void Print(const LogLine& line) const {
    if (line.Level < m_Level || line.Last < m_Since) return;
    if (m_Json) {
      std::cout << LogLineToJson(line) << "\n";
      return;
    }
    std::cout << FormatDateTime(line.Time) << (line.Level >= LogLine::LevelError ? " ! " : "   ")
              << Printable(line.Text);
    if (line.Count > 1)
      std::cout << " (" << line.Count << " times, last " << FormatDateTime(line.Last) << ")";
    std::cout << "\n";
  }

 private:
  bool m_Json;
  int32_t m_Level;
  DateTime m_Since = DateTime::FromParts(100, 1, 1);
};

void Follow(Host& host, const std::string& szPath, const LogPrinter& printer) {
  constexpr int32_t lookMs = 250;
  LogFollower follower(host.Files(), szPath);
  EventLoop& loop = host.EventLoop();
  host.OnTerminate([&loop] { loop.Quit(); });
  const auto timer = loop.NewTimer(TimerOrder::Component);
  timer->Interval(lookMs);
  timer->Tick([&] {
    follower.Look([&](const LogLine& line) { printer.Print(line); });
    std::cout.flush();
    if (!std::cout) loop.Quit();
  });
  timer->Enabled(true);
  loop.Run();
}

void PrintLog(CommandContext& context, const LogOptions& options) {
  const LogPrinter printer(context, options);
  Host& host = context.Machine;
  const std::string szPath = StatePath(host, "log");
  LogReader reader(host.Files(), szPath);
  const bool boolAny = reader.Read([&](const LogLine& line) { printer.Print(line); });
  std::cout.flush();
  if (!boolAny && !options.Follow) {
    throw CommandFailure(ExitCannot, "there is no log at " + host.Files().HostPath(szPath) +
                                         "; vextray keeps it, from its first start on");
  }
  if (reader.Damaged() > 0) {
    std::cerr << "vexctl: " << reader.Damaged() << " damaged lines of the log were passed over\n";
  }
  if (options.Follow) Follow(host, szPath, printer);
}

}  // namespace

std::string StatePath(Host& host, const char* szName) {
  const std::string szFolder = host.StateFolder();
  if (szFolder.empty())
    throw CommandFailure(ExitCannot, "vextray is not for this machine, and nobody else keeps this");
  return szFolder + szName;
}

void AddLogCommand(CLI::App& app, CommandContext& context) {
  auto* const log = app.add_subcommand(
      "log",
      "The lines that vextray has kept\n\n"
      "Each with its full date and time; \"!\" marks errors, and a line that came several times in a row\n"
      "stands once with its count. vextray keeps them in $XDG_STATE_HOME/vexmonitor/log.\n\n"
      "Examples: vexctl log --since \"2026-12-24 18:00\" --level 3\n"
      "          vexctl log --follow            lines as they come; Ctrl-C ends it\n"
      "          vexctl --json log              a JSON object for each line");
  auto options = std::make_shared<LogOptions>();
  log->add_option("--since", options->Since, "only lines from then on, as 2026-12-24 18:00[:05]");
  log->add_option("--level", options->Level, "only lines of this level and above: 3 for errors");
  log->add_flag("--follow", options->Follow, "then wait for more");
  log->callback([&context, options] { PrintLog(context, *options); });
}

}  // namespace vex
