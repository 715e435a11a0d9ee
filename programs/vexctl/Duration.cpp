#include "programs/vexctl/Duration.h"

#include <string_view>

#include "programs/vexctl/Command.h"

namespace vex {
namespace {

constexpr int64_t LongestSeconds = 1'000'000'000;  // more than thirty years; keeps sums small
constexpr std::string_view Units = "dhms";

int64_t SecondsOf(char unit) {
  switch (unit) {
    case 'd':
      return 86400;
    case 'h':
      return 3600;
    case 'm':
      return 60;
    default:
      return 1;
  }
}

bool IsDigit(char letter) {
  return letter >= '0' && letter <= '9';
}

/// Negative for a text that is no duration.
int64_t Seconds(std::string_view szText) {
  int64_t total = 0;
  size_t nextUnit = 0;
  if (szText.empty()) return -1;
  while (!szText.empty()) {
    int64_t number = 0;
    size_t digits = 0;
    for (; digits < szText.size() && IsDigit(szText[digits]); ++digits) {
      number = number * 10 + (szText[digits] - '0');
      if (number > LongestSeconds) return -1;
    }
    const bool boolAlone = digits == szText.size() && nextUnit == 0;
    const size_t unit = boolAlone                ? Units.size() - 1
                        : digits < szText.size() ? Units.find(szText[digits], nextUnit)
                                                 : std::string_view::npos;
    if (digits == 0 || unit == std::string_view::npos) return -1;
    total += number * SecondsOf(Units[unit]);
    if (total > LongestSeconds) return -1;
    nextUnit = unit + 1;
    szText.remove_prefix(boolAlone ? digits : digits + 1);
  }
  return total;
}

}  // namespace

int64_t ParseDuration(const std::string& szArgument, const std::string& szOption) {
  const int64_t seconds = Seconds(szArgument);
  if (seconds > 0) return seconds;
  throw CommandFailure(
      ExitUsage, szOption + ": \"" + szArgument + "\" is no duration; write seconds, or like 1h30m or 45s");
}

}  // namespace vex
