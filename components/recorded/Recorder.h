#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "components/recorded/JsonLine.h"

namespace vex {

class Files;

/// Where the recorded devices write down what was asked of them, a line for each call in the order of the
/// calls, whether or not the call changes anything. All devices of one run share one recorder.
class Recorder {
 public:
  /// What becomes of a line; szCall is its "call", empty for a shell command.
  using Sink = std::function<void(std::string_view szKind, std::string_view szCall, const JsonLine& line)>;

  /// Whether a call is to be written down at all; a line that nobody wants is not even made.
  using Filter = std::function<bool(std::string_view szKind, std::string_view szCall)>;

  /// Without a filter every call is wanted.
  Recorder(const Clock& clock, Sink sink, Filter wanted = nullptr);

  void Sequence(std::string_view szCall, const std::string& szFile);
  void MediaOpen(const std::string& szFile);
  void Media(std::string_view szCall);
  void InputOutput(std::string_view szCall, const std::vector<JsonValue>& arguments);
  /// For a call that comes so often that its arguments, too, are to cost nothing.
  [[nodiscard]] bool WantsInputOutput(std::string_view szCall) const { return Wanted("io", szCall); }
  void Window(std::string_view szCall);
  void Shell(const std::string& szCommandLine);

 private:
  [[nodiscard]] bool Wanted(std::string_view szKind, std::string_view szCall) const {
    return !m_Wanted || m_Wanted(szKind, szCall);
  }
  [[nodiscard]] JsonLine CallLine(std::string_view szKind, std::string_view szCall) const;

  const Clock& m_Clock;
  Sink m_Sink;
  Filter m_Wanted;
};

/// A sink that writes each line to a file of that path, begun anew with the first line; a line is in the file
/// when the call returns. Lines that cannot be written are lost, for the show goes on.
[[nodiscard]] Recorder::Sink FileSink(Files& files, const std::string& szPath);

}  // namespace vex
