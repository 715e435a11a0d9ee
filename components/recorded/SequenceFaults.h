#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vex {

/// Failures that are to happen to sequences: the next call of that name on a sequence of that file raises an
/// Error with that text, once. Calls are named as in the lines ("load", "prepare", "start", "stop") and, for
/// those without a line, "attach", "rate", "options", "state", "media", "shell", "uses", "initSync", "sync"
/// and "event".
class SequenceFaults {
 public:
  void Inject(const std::string& szFile, const std::string& szCall, const std::string& szText);
  /// Raises the first failure that waits for this call, if any.
  void Check(const std::string& szFile, std::string_view szCall);
  /// True while any failure waits for that sequence: it must then be looked at every millisecond, for the
  /// failure strikes at the next call.
  [[nodiscard]] bool Wait(const std::string& szFile) const;

  /// Called after each Inject, so that what sleeps until something is due looks again.
  std::function<void()> Injected;

 private:
  struct Fault {
    std::string File;
    std::string Call;
    std::string Text;
  };
  std::vector<Fault> m_Faults;
};

}  // namespace vex
