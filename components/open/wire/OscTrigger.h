#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace vex {

/// An input that fires, as it comes over the network: the Open Sound Control message "/trigger" with the
/// types iiis (Open Sound Control 1.0). The name is UTF-8.
struct OscTrigger {
  int32_t Network = 0;
  int32_t Unit = 0;
  int32_t Input = 0;
  std::string Name;
  friend bool operator==(const OscTrigger&, const OscTrigger&) = default;
};

/// All triggers of one datagram, in its order; of a bundle those of its elements, at once and whatever its
/// time tag. What is no trigger is passed over, and szWrong tells of the first such thing; it is left as it
/// was when there is none.
[[nodiscard]] std::vector<OscTrigger> ReadOscTriggers(std::span<const uint8_t> packet, std::string& szWrong);

/// The datagram for one trigger.
[[nodiscard]] std::vector<uint8_t> WriteOscTrigger(const OscTrigger& trigger);

}  // namespace vex
