#pragma once

#include <optional>
#include <string>

#include "tray/history/History.h"
#include "tray/log/LogLine.h"
#include "tray/log/RotatedFile.h"

namespace vex {

/// Makes the history of what the player tells: its lines say when a show begins and ends, which sequences
/// start and what goes wrong, its reports which show plays where the line of its beginning was not heard.
class HistoryWriter {
 public:
  /// Goes on with the history that is there: a show that it left playing may still play.
  HistoryWriter(Files& files, const std::string& szPath, RotationLimits limits);

  void Line(const LogLine& line);
  /// A report that this show plays, empty for none.
  void Report(const std::string& szShow, DateTime dtTime);
  /// The player is gone, or another one has come in its place.
  void PlayerGone(DateTime dtTime);

  /// False when something could not be written yet.
  bool Save();
  bool Flush() { return Save() && m_File.Flush(); }
  /// Grows with everything that happened to a show.
  [[nodiscard]] uint64_t Changes() const { return m_Changes; }
  /// The newest shows.
  [[nodiscard]] const HistoryShelf& Shelf() const { return m_Shelf; }

 private:
  void Happened(HistoryEvent::What what, DateTime dtTime, const std::string& szText);

  RotatedFile m_File;
  HistoryShelf m_Shelf;
  uint64_t m_Changes = 0;
  std::string m_Waiting;  // lines that could not be written yet
};

}  // namespace vex
