#pragma once

#include "host/Clock.h"

namespace vex {

/// The machine's wall clock in the user's zone, and its performance counter for elapsed time.
class Win32Clock : public Clock {
 public:
  Win32Clock();

  [[nodiscard]] DateTime Now() const override;
  [[nodiscard]] double SecondsOfDay() const override;
  /// As the user has it in the regional settings.
  [[nodiscard]] std::string ShortTime() const override;
  [[nodiscard]] vex::Elapsed Elapsed() const override;

 private:
  int64_t m_Frequency = 1;  // counts a second
};

}  // namespace vex
