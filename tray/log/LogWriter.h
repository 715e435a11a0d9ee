#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>

#include "tray/log/LogLine.h"
#include "tray/log/RotatedFile.h"

namespace vex {

/// Keeps the lines: takes them as they come, counts those that only say the line before again, and writes
/// what has gathered when it is told to. While the disk takes nothing they wait, up to four million bytes;
/// beyond that the oldest of them go, and a line says how many.
class LogWriter {
 public:
  LogWriter(Files& files, const std::string& szPath, RotationLimits limits);

  /// True for a line of its own, false for one that was counted.
  bool Add(const LogLine& line);
  /// Writes what waits; false when some of it still waits.
  bool Save();
  /// The same, and waits for the disk: what came before outlasts a power cut.
  bool Flush();

  /// The line added last, with its count by now.
  [[nodiscard]] const std::optional<LogLine>& Newest() const { return m_Newest; }

 private:
  struct Waiting {
    std::string Text;
    bool Amends;
  };
  void Put(std::string szText, bool boolAmends);
  bool SaveLost();

  RotatedFile m_File;
  std::optional<LogLine> m_Newest;
  std::deque<Waiting> m_Waiting;
  size_t m_WaitingBytes = 0;
  int64_t m_Lost = 0;
  DateTime m_LostAt;
};

}  // namespace vex
