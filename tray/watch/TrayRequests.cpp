#include "tray/watch/TrayRequests.h"

#include <set>

#include "basic/Error.h"
#include "host/CodePage.h"
#include "monitor/Installation.h"
#include "monitor/VexMessage.h"
#include "schedule/MonitoredShowEvent.h"
#include "schedule/ScheduleFunctions.h"
#include "schedule/YearScheduleFunctions.h"
#include "time/TimeRange.h"
#include "tools/timeline/Timeline.h"
#include "tools/timeline/TimelinePicture.h"

namespace vex {

namespace {

constexpr const char* WeekFile = "weeksched.qsc";
constexpr const char* YearFile = "yearsched.qsc";

std::string UserDataFolder(Host& host) {
  return Installation(host.Registry(), host.Files(), host.Processes(), host.MessageBoxes()).UserDataPath();
}

std::vector<TimelineRow> Rows(Host& host, const std::string& szFolder, int64_t days) {
  const auto week = LoadSchedule(host.Files(), szFolder + WeekFile);
  const auto year = LoadYearSchedule(host.Files(), szFolder + YearFile);
  const DateTime today = host.Clock().Now().DatePart();
  return Timeline(*week, *year).Rows(today, today.PlusDays(days));
}

Outcome Asked(bool boolSent, const std::string& szDone) {
  if (boolSent) return {true, szDone};
  return {false, "No player runs."};
}

Outcome AskForShow(TrayWindow& channel, Host& host, const Action& action) {
  MonitoredShowEvent event;
  std::string szShow;
  if (action.Show.empty() || !Utf8ToAnsi(action.Show, szShow))
    return {false, "The show's name is empty or holds a character outside Windows-1252."};
  event.Filename(szShow);
  event.ScheduleType(OnDemandScheduleType);
  if (action.Seconds > 0) event.Range()->EndTime(host.Clock().Now().PlusSeconds(action.Seconds));
  return Asked(channel.Send(MessageShowOnDemand, event.Serialize()), "Asked to play " + action.Show + ".");
}

}  // namespace

Outcome AskPlayer(TrayWindow& channel, Host& host, const Action& action) {
  try {
    switch (action.Kind) {
      case Action::What::Play:
        return AskForShow(channel, host, action);
      case Action::What::Clear:
        return Asked(channel.Send(MessageShowOnDemand, ""), "Asked to clear the show on demand.");
      case Action::What::Reload:
        return Asked(channel.Send(MessageReloadSchedules, ""), "Asked to reload the schedules.");
      case Action::What::LinkOn:
        return Asked(channel.Send(MessageNetworkLink, "ON"), "Asked to switch the link on.");
      case Action::What::LinkOff:
        return Asked(channel.Send(MessageNetworkLink, "OFF"), "Asked to switch the link off.");
      case Action::What::Stop:
        return Asked(channel.Send(MessageGracefulShutdown, ""), "Asked to end after the shutdown sequences.");
    }
  } catch (const Error& error) {
    return {false, AnsiToUtf8(error.Description)};
  }
  return {false, "vextray does not know how to ask that."};
}

std::string WeekPicture(Host& host) {
  constexpr int64_t days = 7;
  try {
    return TimelinePicture(Rows(host, UserDataFolder(host), days));
  } catch (const Error&) {
    return {};
  }
}

std::vector<std::string> ShowNames(Host& host) {
  constexpr int64_t days = 366;
  const std::string szFolder = UserDataFolder(host);
  std::set<std::string> names;
  for (const std::string& szName : host.Files().FilesIn(szFolder)) {
    if (FoldCase(szName).ends_with(".shw")) names.insert(AnsiToUtf8(szName));
  }
  try {
    for (const TimelineRow& row : Rows(host, szFolder, days)) {
      if (!row.Event->Filename().empty()) names.insert(AnsiToUtf8(row.Event->Filename()));
    }
  } catch (const Error&) {
    return {names.begin(), names.end()};
  }
  return {names.begin(), names.end()};
}

}  // namespace vex
