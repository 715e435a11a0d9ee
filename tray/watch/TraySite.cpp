#include "tray/watch/TraySite.h"

#include <algorithm>
#include <chrono>
#include <nlohmann/json.hpp>
#include <utility>

namespace vex {

namespace {

constexpr size_t LinesKept = 2000;
constexpr Elapsed StateLasts{10'000'000'000};

/// Changes whenever something of the show does: all that is in it only grows.
std::string KeyOf(const PlayedShow& show) {
  int64_t lCounts = 0;
  for (const auto& error : show.Errors) lCounts += error.Count;
  return show.Show + "\n" + FormatDateTime(show.From) + (show.To ? FormatDateTime(*show.To) : "") +
         (show.Broken ? "!" : " ") + std::to_string(show.Songs.size()) + " " +
         std::to_string(show.Errors.size()) + " " + std::to_string(lCounts) +
         (show.Songs.empty() ? "" : FormatDateTime(show.Songs.back().Time));
}

}  // namespace

std::string LineForPage(const LogLine& line, uint64_t number) {
  const nlohmann::ordered_json json{{"number", number},    {"time", FormatDateTime(line.Time)},
                                    {"level", line.Level}, {"text", line.Text},
                                    {"count", line.Count}, {"last", FormatDateTime(line.Last)}};
  return json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

TraySite::TraySite(Host& host, std::function<Outcome(const Action&)> handler)
    : m_Clock(host.Clock()),
      m_Handler(std::move(handler)),
      m_Signal(host.EventLoop().NewSignal([this] { Serve(); })) {}

void TraySite::Put(const TrayState& state) {
  const std::lock_guard lock(m_Mutex);
  m_State = state;
  m_StateAt = m_Clock.Elapsed();
}

uint64_t TraySite::Put(const LogLine& line) {
  const std::lock_guard lock(m_Mutex);
  if (line.Count > 1 && !m_Lines.empty() && m_Lines.back().Line.Text == line.Text)
    m_Lines.back().Line = line;
  else
    m_Lines.push_back({line, ++m_LastNumber});
  if (m_Lines.size() > LinesKept) m_Lines.pop_front();
  return m_Lines.back().Number;
}

void TraySite::Put(const HistoryShelf& history) {
  std::vector<Evening> evenings;
  evenings.reserve(history.Shows().size());
  // The former ones are touched by this thread alone; old shows leave at the front.
  auto former = m_Evenings.begin();
  for (const PlayedShow& show : history.Shows()) {
    const std::string szKey = KeyOf(show);
    const auto same = std::find_if(former, m_Evenings.end(),
                                   [&szKey](const Evening& evening) { return evening.Key == szKey; });
    if (same != m_Evenings.end()) former = same + 1;
    evenings.push_back({szKey, same != m_Evenings.end() ? same->Json : PlayedShowToJson(show)});
  }
  const std::lock_guard lock(m_Mutex);
  m_Evenings = std::move(evenings);
}

void TraySite::PutWeek(std::string szPicture, std::vector<std::string> shows) {
  const std::lock_guard lock(m_Mutex);
  m_Week = std::move(szPicture);
  m_Shows = std::move(shows);
}

void TraySite::Close() {
  const std::lock_guard lock(m_Mutex);
  m_Closed = true;
  for (const auto& asked : m_Asked) asked->Answer.set_value({false, "vextray ends"});
  m_Asked.clear();
}

std::string TraySite::State() {
  const std::lock_guard lock(m_Mutex);
  return StateToJson(m_State);
}

std::string TraySite::Metrics() {
  const std::lock_guard lock(m_Mutex);
  return StateToMetrics(m_State);
}

bool TraySite::Healthy(std::string& szWhy) {
  const std::lock_guard lock(m_Mutex);
  if (m_Clock.Elapsed() - m_StateAt >= StateLasts) {
    szWhy = "vextray itself has not looked for a while";
    return false;
  }
  if (m_State.Light.Colour == LightColour::Off) szWhy = "no player runs";
  for (const std::string& szCause : m_State.Light.Why()) szWhy += (szWhy.empty() ? "" : "; ") + szCause;
  return m_State.Light.Colour == LightColour::Idle || m_State.Light.Colour == LightColour::Playing;
}

std::string TraySite::Week() {
  const std::lock_guard lock(m_Mutex);
  return m_Week;
}

std::string TraySite::Lines(size_t most) {
  const std::lock_guard lock(m_Mutex);
  std::string szJson = "[";
  for (size_t i = m_Lines.size() - std::min(most, m_Lines.size()); i < m_Lines.size(); ++i)
    szJson += (szJson.size() > 1 ? "," : "") + LineForPage(m_Lines[i].Line, m_Lines[i].Number);
  return szJson + "]";
}

std::string TraySite::History() {
  const std::lock_guard lock(m_Mutex);
  std::string szJson = "[";
  for (const Evening& evening : m_Evenings) szJson += (szJson.size() > 1 ? "," : "") + evening.Json;
  return szJson + "]";
}

std::string TraySite::Shows() {
  const std::lock_guard lock(m_Mutex);
  return nlohmann::json(m_Shows).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

Outcome TraySite::Do(const Action& action) {
  constexpr std::chrono::seconds patience{3};
  const auto asked = std::make_shared<Asked>();
  asked->What = action;
  auto answer = asked->Answer.get_future();
  {
    const std::lock_guard lock(m_Mutex);
    if (m_Closed) return {false, "vextray ends"};
    m_Asked.push_back(asked);
    m_Signal->Raise();
  }
  if (answer.wait_for(patience) == std::future_status::ready) return answer.get();
  return {false, "vextray is busy and has not asked the player yet; look whether it comes"};
}

void TraySite::Serve() {
  std::vector<std::shared_ptr<Asked>> all;
  {
    const std::lock_guard lock(m_Mutex);
    all.swap(m_Asked);
  }
  for (const auto& asked : all) asked->Answer.set_value(m_Handler(asked->What));
}

}  // namespace vex
