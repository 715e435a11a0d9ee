#pragma once

#include <string>

#include "host/Windows.h"

namespace vex {

/// Where the programs of one user meet: companions find the running player here, and the file in which it
/// says what it is doing. Asking changes nothing and never takes the player's place.
class PlayerFinder {
 public:
  virtual ~PlayerFinder() = default;
  /// The running player's main window; 0 when none runs or it has no window yet.
  [[nodiscard]] virtual WindowHandle FindPlayer() = 0;
  /// The player's status file as the system writes paths; it exists only while a player runs. Raises Error
  /// when the place cannot be told.
  [[nodiscard]] virtual std::string StatusFile() = 0;
};

}  // namespace vex
