#pragma once

#include "host/Clock.h"

namespace vex {

/// The machine's clocks. Civil time follows the zone of TZ or /etc/localtime, also when either changes while
/// the player runs. Elapsed time is CLOCK_MONOTONIC, the clock of the event loop's timers: it stands still
/// while the machine sleeps, as the music and the lights do, so nothing is made up for after waking.
class LinuxClock : public Clock {
 public:
  [[nodiscard]] DateTime Now() const override;
  [[nodiscard]] double SecondsOfDay() const override;
  [[nodiscard]] std::string ShortTime() const override;
  [[nodiscard]] vex::Elapsed Elapsed() const override;
};

}  // namespace vex
