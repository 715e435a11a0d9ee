#pragma once

#include <cstdint>
#include <string>

namespace vex {

/// The shell command of a sequence as the open engine hands it out: what SequenceEngine::ShellCommand holds
/// and what the open shell command manager reads. The command line is never empty; a sequence without one
/// hands out no value.
struct OpenShellCommand {
  std::string CommandLine;
  int32_t WindowStyle = 1;
};

}  // namespace vex
