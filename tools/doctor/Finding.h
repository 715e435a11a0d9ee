#pragma once

#include <string>

namespace vex {

enum class FindingLevel { Good, Warning, Bad };

/// One line of an examination, for people: what was looked at, what was found, and what helps. UTF-8.
struct Finding {
  FindingLevel Level = FindingLevel::Good;
  std::string Subject;
  std::string Found;
  /// Empty for what is good.
  std::string Remedy;
};

/// "good", "warning", "bad".
[[nodiscard]] inline const char* LevelWord(FindingLevel level) {
  switch (level) {
    case FindingLevel::Good:
      return "good";
    case FindingLevel::Warning:
      return "warning";
    default:
      return "bad";
  }
}

}  // namespace vex
