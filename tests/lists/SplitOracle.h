#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vex::test {

/// What splitting a text comes to: the fields, or the number and words of the failure.
struct SplitOutcome {
  std::vector<std::string> Fields;
  int32_t ErrorNumber = 0;
  std::string ErrorSource;
  std::string ErrorDescription;

  friend bool operator==(const SplitOutcome&, const SplitOutcome&) = default;
};

/// Splits by searching for the next "(", ")" and "," before every step, in quadratic time, with the rules
/// one after another as they are told; it remembers every state to see when it would never end.
SplitOutcome SplitBySearching(const std::string& szText);

/// What the system's splitter comes to.
SplitOutcome SplitBySystem(const std::string& szText);

}  // namespace vex::test
