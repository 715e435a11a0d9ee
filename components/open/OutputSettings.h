#pragma once

#include <cstdint>
#include <string>

namespace vex {

class Registry;

/// Unknown sends nothing, as None does, but says so: whoever meant another protocol must not wonder why the
/// lights stay dark.
enum class OutputProtocol : uint8_t { None, E131, ArtNet, Unknown };

/// How lighting data leave the machine: the product subkey "Output". Texts are single-byte.
struct OutputSettings {
  OutputProtocol Protocol = OutputProtocol::E131;
  /// A name or dotted address to which everything is sent; empty for the protocol's own way of reaching
  /// all receivers, multicast for E1.31 and broadcast for Art-Net.
  std::string Host;
  /// The dotted address of the network interface by which multicast leaves; empty for the system's choice.
  std::string Interface;
  int32_t FirstUniverse = 1;
  std::string SourceName = "VexMonitor";
  int32_t Priority = 100;
  /// The most packets of a universe in a second, and the frames a second in which levels move.
  int32_t FrameRate = 40;
  /// Milliseconds by which sound is later than the position that the media library tells.
  int32_t MediaOffset = 0;
};

/// What the settings say; a number beyond what the network can carry becomes the nearest one that it can.
[[nodiscard]] OutputSettings ReadOutputSettings(Registry& registry);

/// The settings with every number within its bounds.
[[nodiscard]] OutputSettings Bounded(OutputSettings settings);

}  // namespace vex
