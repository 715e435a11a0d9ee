#pragma once

#include <chrono>
#include <string>

#include "basic/DateTime.h"

namespace vex {

/// Time since some fixed moment before the program's start, at nanosecond grain; it never jumps.
using Elapsed = std::chrono::nanoseconds;

/// What time it is, in the three ways the system asks. The wall clock (Now, SecondsOfDay, ShortTime) is the
/// user's local civil time and jumps: summer time begins, somebody sets the clock. Elapsed time does not.
/// Only the host's clock converts between zones.
class Clock {
 public:
  virtual ~Clock() = default;

  /// The wall clock's date and time, cut to the whole second.
  [[nodiscard]] virtual DateTime Now() const = 0;
  /// Seconds since the wall clock's midnight with their fraction, 0 up to below 86400.
  [[nodiscard]] virtual double SecondsOfDay() const = 0;
  /// The time of day as the system writes it for people ("18:05"), from the same moment as Now.
  [[nodiscard]] virtual std::string ShortTime() const = 0;
  [[nodiscard]] virtual vex::Elapsed Elapsed() const = 0;
};

}  // namespace vex
