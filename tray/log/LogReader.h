#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "host/Files.h"
#include "tray/log/LogLine.h"

namespace vex {

/// Calls for each whole line of a rotated file, the oldest first, through all its files. False when there is
/// not one of them. A line that was being written when the writer ended is given too, for what it is.
bool ReadRotatedLines(Files& files, const std::string& szPath,
                      const std::function<void(std::string_view)>& handler);

/// The log, read whole: each line once, with its count. What is damaged is passed over and counted.
class LogReader {
 public:
  /// The path of the newest file, as the system writes paths.
  LogReader(Files& files, std::string szPath) : m_Files(files), m_Path(std::move(szPath)) {}

  /// False when there is no log.
  bool Read(const std::function<void(const LogLine&)>& handler);
  /// The same for the lines in the last so many bytes, however long the log is.
  bool ReadEnd(uint64_t bytes, const std::function<void(const LogLine&)>& handler);
  [[nodiscard]] int64_t Damaged() const { return m_Damaged; }

 private:
  using Handler = std::function<void(const LogLine&)>;
  void Take(std::string_view szLine, const Handler& handler);
  void TakeLast(const Handler& handler);

  Files& m_Files;
  std::string m_Path;
  std::optional<LogLine> m_Newest;  // whose counts may still come
  int64_t m_Damaged = 0;
};

/// Reads on where a log grows: asked now and then, it gives what has come since it was asked last.
class LogFollower {
 public:
  /// Begins at the end that the log has now.
  LogFollower(Files& files, std::string szPath);

  /// Lines come once when they are new (count 1), and once more with their count each time that it has grown.
  void Look(const std::function<void(const LogLine&)>& handler);

 private:
  void TakeRest(const std::function<void(const LogLine&)>& handler);
  void Take(std::string_view szText, const std::function<void(const LogLine&)>& handler);

  Files& m_Files;
  std::string m_Path;
  uint64_t m_From = 0;  // the beginning of the last record where that is a count, else the end
  std::string m_First;  // by which the file is known again
  LogLine m_Newest;
};

}  // namespace vex
