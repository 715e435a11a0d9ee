#pragma once

#include <cstdint>
#include <string>

namespace vex {

using ProcessId = int32_t;  ///< 0 is none

/// The window styles in which a program may be started (the platform's numbers).
enum WindowStyle : int32_t {
  HideWindow = 0,
  NormalFocus = 1,
  MinimizedFocus = 2,
  MaximizedFocus = 3,
  NormalNoFocus = 4,
  MinimizedNoFocus = 6
};

/// Other programs. Starting one never waits for it; hosts without windows ignore the style.
class Processes {
 public:
  virtual ~Processes() = default;
  /// Starts a command line; raises Error with the system's code when it cannot be started.
  virtual ProcessId Start(const std::string& szCommandLine, int32_t lWindowStyle) = 0;
  /// Waits, without a limit, until the process has ended.
  virtual void WaitFor(ProcessId process) = 0;
  /// The running program itself; 0 on machines where it is no process of its own.
  [[nodiscard]] virtual ProcessId Current() const { return 0; }
};

}  // namespace vex
