#pragma once

#include <cstdint>
#include <string>

namespace vex {

class SequencePlayInfo;

/// What the player tells its owner: lines for the log and that current and next show may have changed.
/// The shell fulfils it.
class StatusReport {
 public:
  static constexpr int32_t LevelDetail = 0;
  static constexpr int32_t LevelCourse = 1;
  static constexpr int32_t LevelError = 3;

  virtual ~StatusReport() = default;
  /// One line; playInfo is the sequence concerned, or null. Never raises.
  virtual void LogMessage(int32_t lLevel, const std::string& szText, const SequencePlayInfo* playInfo) = 0;
  virtual void ReportShowsToTray(bool boolForce) = 0;
};

}  // namespace vex
