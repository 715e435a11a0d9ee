#pragma once

#include <cstdint>
#include <string>

namespace vex {

/// Seconds of a duration as given on a command line: a whole number of seconds, or numbers with d, h, m and
/// s in this order, "1h30m" say. Raises CommandFailure for anything else and for nothing at all.
[[nodiscard]] int64_t ParseDuration(const std::string& szArgument, const std::string& szOption);

}  // namespace vex
