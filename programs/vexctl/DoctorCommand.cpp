#include <algorithm>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <string>

#include "programs/vexctl/AuthoringCommands.h"
#include "programs/vexctl/MediaLook.h"
#include "tools/doctor/Doctor.h"

namespace vex {
namespace {

void PrintJson(const Finding& finding) {
  const nlohmann::ordered_json line{{"level", LevelWord(finding.Level)},
                                    {"subject", finding.Subject},
                                    {"found", finding.Found},
                                    {"remedy", finding.Remedy}};
  std::cout << line.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << "\n";
}

void PrintWords(const Finding& finding) {
  std::cout << LevelWord(finding.Level) << "  " << finding.Subject << ": " << finding.Found;
  if (!finding.Remedy.empty()) std::cout << " — " << finding.Remedy;
  std::cout << "\n";
}

/// Each song is looked into once, however many shows name it.
class Songs {
 public:
  explicit Songs(CommandContext& context) : m_Look(context) {}
  const std::string& Trouble(const std::string& szPath) {
    const auto [found, boolNew] = m_Troubles.try_emplace(szPath);
    if (boolNew) found->second = m_Look.Look(szPath).Failure;
    return found->second;
  }

 private:
  MediaLook m_Look;
  std::map<std::string, std::string> m_Troubles;
};

void RunDoctor(CommandContext& context) {
  Host& host = context.Machine;
  Songs songs(context);
  const auto findings = Examine(
      {host.Clock(), host.EventLoop(), host.Files(), host.Registry(), host.Datagrams(), host.Facilities(),
       host.Processes(), host.MessageBoxes(), host.SettingsFile(), host.PlayerFinder().FindPlayer(),
       [&songs](const std::string& szPath) { return songs.Trouble(szPath); }, host.Places()});
  for (const Finding& finding : findings) context.Json ? PrintJson(finding) : PrintWords(finding);
  const auto bad = std::ranges::count(findings, FindingLevel::Bad, &Finding::Level);
  if (bad == 0) return;
  std::cout << std::flush;
  throw CommandFailure(ExitCannot, std::to_string(bad) + (bad == 1 ? " line is bad" : " lines are bad"));
}

}  // namespace

void AddDoctorCommand(CLI::App& app, CommandContext& context) {
  app.add_subcommand(
         "doctor",
         "Whether this machine is ready for the season\n\n"
         "Looks at account, installation, settings, folders, schedules, shows and every file that they\n"
         "name, who may change them, components, the lights' network, link, sound, display, clock, disk\n"
         "space, meeting place and player. Each line is good, warning or bad, and says what helps;\n"
         "nothing is changed, played or sent. Run it as the account that plays. Status 1 when a line\n"
         "is bad.\n\n"
         "Example: vexctl doctor | grep -v ^good")
      ->callback([&context] { RunDoctor(context); });
}

}  // namespace vex
