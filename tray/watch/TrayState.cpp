#include "tray/watch/TrayState.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <sstream>

#include "basic/Error.h"
#include "host/CodePage.h"
#include "schedule/MonitoredShowEvent.h"
#include "time/TimeRange.h"

namespace vex {

namespace {

using Json = nlohmann::ordered_json;

Json TextOrNull(const std::string& szText) {
  return szText.empty() ? Json(nullptr) : Json(szText);
}

Json TimeOrNull(const std::optional<DateTime>& time) {
  return time ? Json(FormatDateTime(*time)) : Json(nullptr);
}

double Hundredths(double value) {
  constexpr double hundred = 100;
  return std::round(value * hundred) / hundred;
}

const char* ProtocolWord(LightProtocol protocol) {
  return protocol == LightProtocol::Sacn ? "sacn" : "artnet";
}

bool Read(const std::string& szReportUtf8, MonitoredShowEvent& event) {
  std::string szReport;
  if (szReportUtf8.empty() || !Utf8ToAnsi(szReportUtf8, szReport)) return false;
  try {
    event.Deserialize(szReport);
  } catch (const Error&) {
    return false;
  }
  return !event.Filename().empty();
}

Json ReportToJson(const std::string& szReportUtf8) {
  MonitoredShowEvent event;
  if (!Read(szReportUtf8, event)) return nullptr;
  const TimeRange& range = *event.Range();
  const int32_t lKind = event.ScheduleType();
  return {{"show", AnsiToUtf8(event.Filename())},
          {"from", range.HasStart() ? Json(FormatDateTime(range.StartTime())) : Json(nullptr)},
          {"to", range.HasEnd() ? Json(FormatDateTime(range.EndTime())) : Json(nullptr)},
          {"schedule", lKind == WeeklyScheduleType ? "week"
                       : lKind == YearScheduleType ? "year"
                                                   : "demand"},
          {"shuttingDown", event.ShuttingDown()}};
}

Json PlayerToJson(const TrayState& state) {
  const PlayerWord& player = state.Player;
  Json playing = Json::array();
  for (const auto& sequence : player.Playing)
    playing.push_back({{"play", sequence.Play}, {"file", sequence.File}});
  return {{"running", state.PlayerRuns},
          {"initialised", player.Ready},
          {"answers", state.PlayerAnswers},
          {"ok", state.Light.Player.Ok},
          {"since", TimeOrNull(state.Light.Player.Since)},
          {"show", TextOrNull(ShowOfReport(player.Current))},
          {"playing", std::move(playing)},
          {"media", TextOrNull(player.Media)},
          {"link", player.Link},
          {"noSchedule", player.NoSchedule},
          {"shuttingDown", player.ShuttingDown},
          {"started", TextOrNull(player.Started)},
          {"lastError", player.LastError
                            ? Json{{"time", player.LastError->Time}, {"text", player.LastError->Text}}
                            : Json(nullptr)}};
}

bool SeenWithinASecond(const TrayState& state) {
  return !state.Universes.empty() &&
         std::ranges::all_of(state.Universes, [](const auto& universe) { return universe.Last <= 1.0; });
}

Json PacketsToJson(const TrayState& state) {
  Json universes = Json::array();
  for (const auto& universe : state.Universes) {
    universes.push_back({{"universe", universe.Number},
                         {"protocol", ProtocolWord(universe.Protocol)},
                         {"perSecond", universe.PerSecond},
                         {"last", Hundredths(universe.Last)}});
  }
  return {{"needed", state.Light.Packets.Needed},
          {"watched", state.PacketsWatched},
          {"trouble", state.PacketsTrouble},
          {"ok", state.Light.Packets.Ok},
          {"since", TimeOrNull(state.Light.Packets.Since)},
          {"seen", SeenWithinASecond(state)},
          {"universes", std::move(universes)}};
}

Json SoundToJson(const TrayState& state) {
  return {{"needed", state.Light.Sound.Needed},
          {"ok", state.Light.Sound.Ok},
          {"since", TimeOrNull(state.Light.Sound.Since)},
          {"moving", state.SoundMoves},
          {"by", state.SoundBy},
          {"position", state.SoundPosition ? Json(Hundredths(*state.SoundPosition)) : Json(nullptr)}};
}

PlayerWord WordFrom(const Json& json) {
  PlayerWord word;
  word.Ready = json.at("ready").get<bool>();
  word.NoSchedule = json.at("noSchedule").get<bool>();
  word.ShuttingDown = json.at("shuttingDown").get<bool>();
  word.Link = json.at("link").get<bool>();
  word.Started = json.at("started").get<std::string>();
  word.Current = json.at("current").get<std::string>();
  word.Next = json.at("next").get<std::string>();
  for (const auto& sequence : json.at("playing"))
    word.Playing.push_back({sequence.at("play").get<std::string>(), sequence.at("file").get<std::string>()});
  if (json.at("media").is_string()) word.Media = json.at("media").get<std::string>();
  const auto& failure = json.at("lastError");
  if (failure.is_object())
    word.LastError =
        PlayerWord::Failure{failure.at("time").get<std::string>(), failure.at("text").get<std::string>()};
  return word;
}

/// A family of one or more values, with what it is.
class Metrics {
 public:
  void Family(const char* szName, const char* szKind, const char* szHelp) {
    m_Name = szName;
    m_Text << "# HELP " << szName << " " << szHelp << "\n# TYPE " << szName << " " << szKind << "\n";
  }
  template <class Value>
  void Put(Value value, const std::string& szLabels = {}) {
    m_Text << m_Name << (szLabels.empty() ? "" : "{" + szLabels + "}") << " " << value << "\n";
  }
  [[nodiscard]] std::string Text() const { return m_Text.str(); }

 private:
  std::ostringstream m_Text;
  const char* m_Name = "";
};

std::string UniverseLabels(const TrayState::Universe& universe) {
  return "universe=\"" + std::to_string(universe.Number) + "\",protocol=\"" +
         ProtocolWord(universe.Protocol) + "\"";
}

}  // namespace

std::optional<PlayerWord> PlayerWordFromJson(const std::string& szJson) {
  try {
    return WordFrom(Json::parse(szJson));
  } catch (const Json::exception&) {
    return std::nullopt;
  }
}

std::string ShowOfReport(const std::string& szReportUtf8) {
  MonitoredShowEvent event;
  return Read(szReportUtf8, event) ? AnsiToUtf8(event.Filename()) : std::string();
}

std::string StateToJson(const TrayState& state) {
  const Json json{{"time", FormatDateTime(state.Time)},
                  {"light", LightWord(state.Light.Colour)},
                  {"why", state.Light.Why()},
                  {"since", TimeOrNull(state.Light.Since)},
                  {"player", PlayerToJson(state)},
                  {"now", ReportToJson(state.Player.Current)},
                  {"next", ReportToJson(state.Player.Next)},
                  {"packets", PacketsToJson(state)},
                  {"sound", SoundToJson(state)}};
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string StateToMetrics(const TrayState& state) {
  Metrics metrics;
  metrics.Family("vexmonitor_player_running", "gauge", "Whether the player runs.");
  metrics.Put(state.PlayerRuns ? 1 : 0);
  metrics.Family("vexmonitor_light", "gauge", "The state light: 1 for its colour.");
  for (const auto colour : {LightColour::Off, LightColour::Idle, LightColour::Playing, LightColour::Trouble})
    metrics.Put(state.Light.Colour == colour ? 1 : 0, std::string("colour=\"") + LightWord(colour) + "\"");
  metrics.Family("vexmonitor_cause_ok", "gauge", "Whether nothing is missing, by cause.");
  metrics.Put(state.Light.Player.Ok ? 1 : 0, "cause=\"player\"");
  metrics.Put(state.Light.Packets.Ok ? 1 : 0, "cause=\"packets\"");
  metrics.Put(state.Light.Sound.Ok ? 1 : 0, "cause=\"sound\"");
  metrics.Family("vexmonitor_sequences_playing", "gauge", "Sequences that play.");
  metrics.Put(state.Player.Playing.size());
  metrics.Family("vexmonitor_universe_packets_per_second", "gauge",
                 "Lighting packets seen in the last whole second.");
  for (const auto& universe : state.Universes) metrics.Put(universe.PerSecond, UniverseLabels(universe));
  metrics.Family("vexmonitor_universe_packets_total", "counter", "Lighting packets seen.");
  for (const auto& universe : state.Universes) metrics.Put(universe.Packets, UniverseLabels(universe));
  metrics.Family("vexmonitor_universe_last_packet_seconds", "gauge",
                 "Seconds since the newest lighting packet.");
  for (const auto& universe : state.Universes)
    metrics.Put(Hundredths(universe.Last), UniverseLabels(universe));
  metrics.Family("vexmonitor_lines_total", "counter",
                 "Lines that the player has written since vextray started.");
  metrics.Put(state.Lines);
  metrics.Family("vexmonitor_errors_total", "counter", "Those of them of level 3.");
  metrics.Put(state.Errors);
  metrics.Family("vexmonitor_troubles_total", "counter",
                 "How often trouble has begun since vextray started.");
  metrics.Put(state.Troubles);
  return metrics.Text();
}

}  // namespace vex
