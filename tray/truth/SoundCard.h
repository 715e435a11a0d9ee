#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/Files.h"

namespace vex {

/// The machine's sound cards as the kernel tells of them: whether there is one to play on, and how far what
/// is played on any of them has come. The counter moves while sound leaves the card, whichever program plays,
/// and stands when it does not.
class SoundCard {
 public:
  /// szFolder is where the kernel tells of them, with its "\".
  explicit SoundCard(Files& files, std::string szFolder = "Z:\\proc\\asound\\");

  /// Whether this machine has a card to play on.
  [[nodiscard]] bool Exists() const { return !m_Status.empty(); }
  /// True when any card has played on since the last time.
  bool Moved();

 private:
  Files& m_Files;
  std::vector<std::string> m_Status;  // the status file of each playing device
  std::vector<std::string> m_Positions;
};

}  // namespace vex
