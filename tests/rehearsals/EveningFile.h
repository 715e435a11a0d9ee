#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tools/rehearsal/Rehearsal.h"

namespace vex::test {

/// A whole evening in one file: what it shows, the options, the files that it needs, what happens from
/// outside, and every line that must come of it, worked out by hand. See tests/rehearsals/README.md.
struct EveningFile {
  RehearsalOptions Options;
  std::vector<std::string> Only;
  std::string Inputs;
  std::vector<std::string> Expected;
  /// Log lines below it are not looked at.
  int32_t LowestLevel = 0;
  /// A file that this machine could not lay out, because no file may have such a name there.
  std::string Impossible;
};

/// Reads the file and lays out what it holds in the folder, with a settings file "settings.reg" for which
/// that folder is drive D. Throws std::runtime_error where the file is wrong.
[[nodiscard]] EveningFile LayOutEvening(const std::filesystem::path& file,
                                        const std::filesystem::path& folder);

}  // namespace vex::test
