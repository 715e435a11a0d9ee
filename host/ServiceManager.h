#pragma once

#include <string>

#include "host/Clock.h"

namespace vex {

/// Whoever started the player as a service and looks after it: it is told when the show can begin, what is
/// being done, and again and again that the loop still turns; when that stops coming it starts the player
/// anew. Where nobody looks after the program nothing happens, as here. No call raises or waits.
class ServiceManager {
 public:
  virtual ~ServiceManager() = default;

  /// The longest time between two signs of life; 0 where none is wanted.
  [[nodiscard]] virtual Elapsed WatchdogTime() const { return Elapsed(0); }
  /// Start-up is over.
  virtual void Ready() {}
  /// One line for people, UTF-8.
  virtual void Status(const std::string& /*szLine*/) {}
  /// A sign of life.
  virtual void Alive() {}
  /// The program is about to end, as it was asked to.
  virtual void Stopping() {}
};

}  // namespace vex
