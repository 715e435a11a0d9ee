#pragma once

#include <string>

namespace vex {

/// A finite number in the fewest digits that read back the same, and of those the nearest to it; plain or
/// with an exponent, whichever is shorter. It is what std::to_chars writes, without the tables that the
/// standard library brings along for it, which would be a fifteenth of a Windows program.
[[nodiscard]] std::string ShortestNumber(double value);

}  // namespace vex
