#pragma once

#include <any>
#include <cstdint>
#include <string>

namespace vex {

/// Turns the shell command stored in a sequence into a command line and a window style. Any call may raise.
class ShellCommandManager {
 public:
  virtual ~ShellCommandManager() = default;
  /// Empty for no command.
  [[nodiscard]] virtual std::string CommandLineFor(const std::any& command) = 0;
  [[nodiscard]] virtual int32_t WindowStyleFor(const std::any& command) = 0;
};

}  // namespace vex
