#pragma once

#include <stdexcept>
#include <string>

#include "host/Host.h"

namespace vex {

/// How vexctl ends: 0 done; 1 what was asked cannot be done; 2 the words of the command are wrong.
enum ExitStatus : int { ExitDone = 0, ExitCannot = 1, ExitUsage = 2 };

/// Ends the command with one line on standard error.
class CommandFailure : public std::runtime_error {
 public:
  CommandFailure(ExitStatus status, const std::string& szWhy) : std::runtime_error(szWhy), Status(status) {}
  ExitStatus Status;
};

/// What every command is given: the machine, and whether to answer in JSON.
struct CommandContext {
  Host& Machine;
  bool Json = false;
  /// For a command that has done what was asked and still has bad news.
  int Status = ExitDone;
};

/// A command-line argument, UTF-8, as the system's single-byte text; wrong usage where it holds a character
/// that the system does not know.
[[nodiscard]] std::string SystemText(const std::string& szArgument, const std::string& szWhat);

}  // namespace vex
