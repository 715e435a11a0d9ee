#pragma once

#include "player/devices/ShellCommandManager.h"

namespace vex {

/// Turns the shell command that an open sequence hands out into a command line and a window style.
class OpenShellCommandManager final : public ShellCommandManager {
 public:
  /// Empty for no value and for what is no command of an open sequence.
  [[nodiscard]] std::string CommandLineFor(const std::any& command) override;
  /// The normal style for the same.
  [[nodiscard]] int32_t WindowStyleFor(const std::any& command) override;
};

}  // namespace vex
