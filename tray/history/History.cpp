#include "tray/history/History.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

#include "basic/Error.h"
#include "tray/log/LogReader.h"

namespace vex {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::array<const char*, 5> Words = {"begin", "song", "error", "end", "broken"};

/// A thousand; twice as many are let come before any goes, so that not each one moves all others.
template <class Entry>
void KeepNewest(std::vector<Entry>& entries) {
  constexpr size_t most = 1000;
  if (entries.size() > 2 * most) entries.erase(entries.begin(), entries.end() - most);
}

std::string Dump(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace

std::string HistoryEventToJson(const HistoryEvent& event) {
  return Dump(Json{{"time", FormatDateTime(event.Time)},
                   {"what", Words.at(static_cast<size_t>(event.Kind))},
                   {"text", event.Text}});
}

std::optional<HistoryEvent> HistoryEventFromJson(std::string_view szJson) {
  try {
    const Json json = Json::parse(szJson);
    const auto szWhat = json.at("what").get<std::string>();
    const auto word = std::ranges::find(Words, szWhat);
    if (word == Words.end()) return std::nullopt;
    return HistoryEvent{static_cast<HistoryEvent::What>(word - Words.begin()),
                        ParseDateTime(json.at("time").get<std::string>()),
                        json.at("text").get<std::string>()};
  } catch (const Json::exception&) {
    return std::nullopt;
  } catch (const Error&) {
    return std::nullopt;
  }
}

const PlayedShow* HistoryShelf::Playing() const {
  return m_Shows.empty() || m_Shows.back().To ? nullptr : &m_Shows.back();
}

void HistoryShelf::Keep(size_t most) {
  if (m_Shows.size() > most)
    m_Shows.erase(m_Shows.begin(), m_Shows.end() - static_cast<std::ptrdiff_t>(most));
  for (PlayedShow& show : m_Shows) {
    KeepNewest(show.Songs);
    KeepNewest(show.Errors);
  }
}

void HistoryShelf::End(DateTime dtTime, bool boolBroken) {
  if (Playing() == nullptr) return;
  m_Shows.back().To = dtTime;
  m_Shows.back().Broken = boolBroken;
}

void HistoryShelf::AddError(const HistoryEvent& event) {
  auto& errors = m_Shows.back().Errors;
  if (!errors.empty() && errors.back().Text == event.Text)
    ++errors.back().Count;
  else
    errors.push_back({event.Time, event.Text, 1});
}

void HistoryShelf::Add(const HistoryEvent& event) {
  const PlayedShow* const playing = Playing();
  switch (event.Kind) {
    case HistoryEvent::What::Begin:
      if (playing != nullptr && playing->Show == event.Text) break;
      End(event.Time, true);
      m_Shows.push_back({event.Text, event.Time, std::nullopt, false, {}, {}});
      break;
    case HistoryEvent::What::Song:
      if (playing != nullptr) m_Shows.back().Songs.push_back({event.Time, event.Text});
      break;
    case HistoryEvent::What::Error:
      if (playing != nullptr) AddError(event);
      break;
    case HistoryEvent::What::End:
      End(event.Time, false);
      break;
    case HistoryEvent::What::Broken:
      End(event.Time, true);
      break;
  }
}

bool ReadHistory(Files& files, const std::string& szPath, HistoryShelf& shelf) {
  return ReadRotatedLines(files, szPath, [&](std::string_view szLine) {
    if (const auto event = HistoryEventFromJson(szLine)) shelf.Add(*event);
  });
}

std::string PlayedShowToJson(const PlayedShow& show) {
  Json songs = Json::array();
  for (const auto& song : show.Songs)
    songs.push_back({{"time", FormatDateTime(song.Time)}, {"file", song.File}});
  Json errors = Json::array();
  for (const auto& error : show.Errors)
    errors.push_back({{"time", FormatDateTime(error.Time)}, {"text", error.Text}, {"count", error.Count}});
  return Dump(Json{{"show", show.Show},
                   {"from", FormatDateTime(show.From)},
                   {"to", show.To ? Json(FormatDateTime(*show.To)) : Json(nullptr)},
                   {"broken", show.Broken},
                   {"songs", std::move(songs)},
                   {"errors", std::move(errors)}});
}

}  // namespace vex
