#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "basic/DateTime.h"

namespace vex {

/// A line of the log: what the player said, or what was noted about it, with its full date and time. A line
/// that came several times in a row is one line with a count and the time of the last one. Text is UTF-8.
struct LogLine {
  static constexpr int32_t LevelCourse = 1;
  static constexpr int32_t LevelError = 3;

  DateTime Time;
  int32_t Level = LevelCourse;
  std::string Text;
  int64_t Count = 1;
  DateTime Last;  ///< the same as Time where Count is 1

  friend bool operator==(const LogLine&, const LogLine&) = default;
};

/// How often the line in front of it has come by now, and when last; the last such record before the next
/// line counts.
struct LogRepeat {
  int64_t Count = 1;
  DateTime Last;
};

/// {"time":"2026-12-24 18:00:05","level":1,"text":"..."} without a line end; with "count" and "last" behind
/// where the line came several times.
[[nodiscard]] std::string LogLineToJson(const LogLine& line);
/// {"count":3,"last":"2026-12-24 18:00:07"} without a line end; never shorter than one with a smaller count.
[[nodiscard]] std::string LogRepeatToJson(const LogRepeat& repeat);

/// The text for a terminal: control characters as "\x1b", so that no name moves the cursor, clears the
/// screen or begins a line of its own.
[[nodiscard]] std::string Printable(std::string_view szUtf8);

/// One record of a log file, whichever it is; neither for a record that is damaged.
struct LogRecord {
  std::optional<LogLine> Line;
  std::optional<LogRepeat> Repeat;
};
[[nodiscard]] LogRecord LogRecordFromJson(std::string_view szJson);

}  // namespace vex
