#include <iostream>
#include <nlohmann/json.hpp>
#include <string>

#include "basic/DateTime.h"
#include "basic/Error.h"
#include "host/CodePage.h"
#include "programs/vexctl/ControlCommands.h"
#include "schedule/MonitoredShowEvent.h"
#include "time/TimeRange.h"

namespace vex {

namespace {

std::string ReadStatus(Host& host) {
  std::string szText;
  const bool boolRunning = host.PlayerFinder().FindPlayer() != 0;
  if (!boolRunning || !host.Files().Read(host.PlayerFinder().StatusFile(), szText)) {
    throw CommandFailure(ExitCannot, host.Places().NoPlayer);
  }
  return szText;
}

/// "eve.shw, 2026-12-24 18:00:00 to 2026-12-24 22:00:00, weekly schedule".
std::string Describe(const std::string& szSerialisedUtf8) {
  if (szSerialisedUtf8.empty()) return "no show";
  std::string szSerialised;
  MonitoredShowEvent event;
  if (!Utf8ToAnsi(szSerialisedUtf8, szSerialised)) return szSerialisedUtf8;
  event.Deserialize(szSerialised);
  if (event.Filename().empty()) return "no show";
  const TimeRange& range = *event.Range();
  std::string szText = AnsiToUtf8(event.Filename());
  if (range.HasStart()) szText += ", from " + FormatDateTime(range.StartTime());
  if (range.HasEnd()) szText += (range.HasStart() ? " to " : ", until ") + FormatDateTime(range.EndTime());
  switch (event.ScheduleType()) {
    case WeeklyScheduleType:
      szText += ", weekly schedule";
      break;
    case YearScheduleType:
      szText += ", dated schedule";
      break;
    default:
      szText += ", on demand";
  }
  if (event.ShuttingDown()) szText += ", shutting down";
  return szText;
}

std::string Uptime(int64_t seconds) {
  constexpr int64_t perMinute = 60;
  constexpr int64_t perHour = 3600;
  constexpr int64_t perDay = 86400;
  std::string szText;
  if (seconds >= perDay) szText += std::to_string(seconds / perDay) + "d ";
  if (seconds >= perHour) szText += std::to_string(seconds % perDay / perHour) + "h ";
  if (seconds >= perMinute) szText += std::to_string(seconds % perHour / perMinute) + "m ";
  return szText + std::to_string(seconds % perMinute) + "s";
}

void PrintStatus(const nlohmann::ordered_json& status, DateTime dtNow) {
  std::string szState = status.at("ready").get<bool>() ? "running" : "starting";
  if (status.at("shuttingDown").get<bool>()) szState = "shutting down";
  if (status.at("noSchedule").get<bool>()) szState += ", shows on demand only";
  const DateTime started = ParseDateTime(status.at("started").get<std::string>());
  std::cout << "player   " << szState << ", pid " << status.at("pid") << ", up "
            << Uptime(dtNow.SecondsSince(started)) << " since " << FormatDateTime(started) << "\n"
            << "now      " << Describe(status.at("current").get<std::string>()) << "\n"
            << "next     " << Describe(status.at("next").get<std::string>()) << "\n";
  for (const auto& sequence : status.at("playing")) {
    std::cout << "playing  " << sequence.at("play").get<std::string>() << ": "
              << sequence.at("file").get<std::string>() << "\n";
  }
  if (status.at("media").is_string())
    std::cout << "media    " << status.at("media").get<std::string>() << "\n";
  std::cout << "link     " << (status.at("link").get<bool>() ? "on" : "off") << "\n";
  const auto& failure = status.at("lastError");
  if (failure.is_object()) {
    std::cout << "failure  " << failure.at("time").get<std::string>() << " "
              << failure.at("text").get<std::string>() << "\n";
  }
}

}  // namespace

void AddStatusCommand(CLI::App& app, CommandContext& context) {
  app.add_subcommand("status", "What plays, what is next, link and uptime")->callback([&context] {
    const std::string szText = ReadStatus(context.Machine);
    if (context.Json) {
      std::cout << szText;
      return;
    }
    try {
      PrintStatus(nlohmann::ordered_json::parse(szText), context.Machine.Clock().Now());
    } catch (const nlohmann::ordered_json::exception& error) {
      throw CommandFailure(ExitCannot, std::string("the player's status file is damaged: ") + error.what());
    }
  });
}

}  // namespace vex
