#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "basic/Error.h"
#include "host/CodePage.h"
#include "programs/vexctl/ScheduleCommands.h"
#include "programs/vexctl/ScheduleFiles.h"
#include "time/TimeRange.h"
#include "tools/timeline/Explanation.h"

namespace vex {
namespace {

struct WhyOptions {
  std::string At;
  std::string WeekFile;
  std::string YearFile;
};

std::string Serialised(const std::shared_ptr<MonitoredShowEvent>& event) {
  return event ? AnsiToUtf8(event->Serialize()) : std::string();
}

/// The show on demand that the running player plays now; empty when none runs or it plays none. It speaks
/// of now and of what is to come, not of the past.
std::shared_ptr<MonitoredShowEvent> RunningOnDemand(Host& host) {
  std::string szStatus;
  if (host.PlayerFinder().FindPlayer() == 0) return nullptr;
  if (!host.Files().Read(host.PlayerFinder().StatusFile(), szStatus)) return nullptr;
  const auto status = nlohmann::ordered_json::parse(szStatus, nullptr, false);
  if (!status.is_object() || !status.contains("current") || !status["current"].is_string()) return nullptr;
  std::string szCurrent;
  if (!Utf8ToAnsi(status["current"].get<std::string>(), szCurrent) || szCurrent.empty()) return nullptr;
  auto event = std::make_shared<MonitoredShowEvent>();
  try {
    event->Deserialize(szCurrent);
  } catch (const Error&) {
    return nullptr;
  }
  return event->ScheduleType() == OnDemandScheduleType ? event : nullptr;
}

void PrintJson(const Explanation& explanation) {
  auto passedOver = nlohmann::ordered_json::array();
  for (const PassedOver& other : explanation.Others) {
    passedOver.push_back(
        {{"rule", other.Rule}, {"event", Serialised(other.Event)}, {"because", AnsiToUtf8(other.Because)}});
  }
  const nlohmann::ordered_json line{{"at", FormatDateTime(explanation.At)},
                                    {"event", Serialised(explanation.Event)},
                                    {"rule", explanation.Rule},
                                    {"passedOver", passedOver},
                                    {"sentence", AnsiToUtf8(explanation.Sentence)}};
  std::cout << line.dump() << "\n";
}

void PrintWhy(CommandContext& context, const WhyOptions& options) {
  const DateTime dtNow = context.Machine.Clock().Now();
  const DateTime dtTime = options.At.empty() ? dtNow : ParseMoment(options.At, "T");
  const BothSchedules schedules = ReadSchedules(context, options.WeekFile, options.YearFile);
  const bool boolOfThisPlayer = options.WeekFile.empty() && options.YearFile.empty() && dtTime >= dtNow;
  const auto onDemand = boolOfThisPlayer ? RunningOnDemand(context.Machine) : nullptr;
  const Explanation explanation = Explain(*schedules.Weekly, *schedules.Year, onDemand, dtTime);
  if (context.Json)
    PrintJson(explanation);
  else
    std::cout << AnsiToUtf8(explanation.Sentence) << "\n";
}

}  // namespace

void AddWhyCommand(CLI::App& app, CommandContext& context) {
  auto* const why =
      app.add_subcommand("why",
                         "What is in force at a moment, past or future, and why nothing else is\n\n"
                         "Example: vexctl why \"2026-12-24 23:10\"");
  auto options = std::make_shared<WhyOptions>();
  why->add_option("T", options->At, "the moment, as 2026-12-24 18:00[:05] (default: now)");
  why->add_option("--week", options->WeekFile, "weekly schedule (default: the one in the user data folder)");
  why->add_option("--year", options->YearFile, "dated schedule (default: the one in the user data folder)");
  why->callback([&context, options] { PrintWhy(context, *options); });
}

}  // namespace vex
