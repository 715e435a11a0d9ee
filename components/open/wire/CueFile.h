#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vex {

/// What an event of a cue file speaks to; the numbers are those of the uses-network question.
enum class CueKind : uint8_t { Main = 1, X10 = 3, Courser = 4 };

/// One move of one circuit. Times count from the sequence's beginning; levels are 0 to 100.
struct CueEvent {
  std::chrono::nanoseconds Start{0};
  std::chrono::nanoseconds End{0};  ///< never before Start
  double From = 0;
  double To = 0;
  double Rate = 1;
  int32_t Network = 0;
  int32_t Unit = 1;
  int32_t Circuit = 1;
  uint32_t Command = 0;  ///< index into CueFile::Commands
  CueKind Kind = CueKind::Main;
};

/// A cue file read from its JSON: events in the order in which they stand there, texts in UTF-8. What is
/// left out has the values of a new CueFile and CueEvent; an event without "end" ends where it starts, one
/// without "to" stays at its "from".
struct CueFile {
  std::optional<std::chrono::nanoseconds> Duration;  ///< only missing where Frames is not empty
  std::string Media;
  std::string Frames;
  std::string CommandLine;
  int32_t WindowStyle = 1;
  std::vector<CueEvent> Events;
  std::vector<std::string> Commands{""};  ///< each command text once
};

/// Reads a cue file's text. Raises Error from "Sequence.Load" that says which file, which place in it and
/// what to do, when the text is no JSON or a known member has the wrong type or an impossible value; members
/// that are not known are passed over. szName is the file's name for people. Takes time and memory in
/// proportion to the text, whatever stands in it.
[[nodiscard]] CueFile ParseCueFile(std::string_view szText, const std::string& szName);

}  // namespace vex
