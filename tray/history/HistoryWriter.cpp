#include "tray/history/HistoryWriter.h"

#include <string_view>
#include <utility>

namespace vex {

namespace {

constexpr size_t ShowsKept = 500;
constexpr size_t MostWaiting = 1'000'000;
constexpr std::string_view Starting = "Starting show: ";
constexpr std::string_view Finished = "Finished show: ";
constexpr std::string_view Song = "Starting Musical: ";

}  // namespace

HistoryWriter::HistoryWriter(Files& files, const std::string& szPath, RotationLimits limits)
    : m_File(files, szPath, limits) {
  (void)ReadHistory(files, szPath, m_Shelf);
  m_Shelf.Keep(ShowsKept);
}

void HistoryWriter::Line(const LogLine& line) {
  const std::string_view szText = line.Text;
  const PlayedShow* const playing = m_Shelf.Playing();
  if (szText.starts_with(Starting)) {
    // The player's own word that it begins anew: what was left playing is not this one.
    if (playing != nullptr) Happened(HistoryEvent::What::Broken, line.Time, "");
    Happened(HistoryEvent::What::Begin, line.Time, line.Text.substr(Starting.size()));
  } else if (szText.starts_with(Finished)) {
    if (playing != nullptr) Happened(HistoryEvent::What::End, line.Time, "");
  } else if (szText.starts_with(Song)) {
    if (playing != nullptr) Happened(HistoryEvent::What::Song, line.Time, line.Text.substr(Song.size()));
  } else if (line.Level >= LogLine::LevelError && playing != nullptr) {
    Happened(HistoryEvent::What::Error, line.Time, line.Text);
  }
}

void HistoryWriter::Report(const std::string& szShow, DateTime dtTime) {
  const PlayedShow* const playing = m_Shelf.Playing();
  if (playing != nullptr && playing->Show == szShow) return;
  if (playing != nullptr) Happened(HistoryEvent::What::Broken, dtTime, "");
  if (!szShow.empty()) Happened(HistoryEvent::What::Begin, dtTime, szShow);
}

void HistoryWriter::PlayerGone(DateTime dtTime) {
  if (m_Shelf.Playing() != nullptr) Happened(HistoryEvent::What::Broken, dtTime, "");
}

void HistoryWriter::Happened(HistoryEvent::What what, DateTime dtTime, const std::string& szText) {
  const HistoryEvent event{what, dtTime, szText};
  ++m_Changes;
  m_Shelf.Add(event);
  m_Shelf.Keep(ShowsKept);
  const std::string szJson = HistoryEventToJson(event);
  if (m_Waiting.size() + szJson.size() > MostWaiting) return;
  if (!m_Waiting.empty()) m_Waiting += "\n";
  m_Waiting += szJson;
}

bool HistoryWriter::Save() {
  if (m_Waiting.empty()) return true;
  if (!m_File.Append(m_Waiting)) return false;
  m_Waiting.clear();
  return true;
}

}  // namespace vex
