#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "host/Clock.h"

namespace vex {

enum class LightProtocol : uint8_t { Sacn, ArtNet };

/// What has been heard of one universe.
struct HeardUniverse {
  static constexpr size_t SlotCount = 512;

  LightProtocol Protocol = LightProtocol::Sacn;
  uint16_t Universe = 0;
  std::array<uint8_t, SlotCount> Slots{};  ///< as the newest packet has them
  Elapsed Last{0};                         ///< when that came
  Elapsed Changed{0};                      ///< when a slot last changed
  bool Ended = false;                      ///< its source has said so
  uint64_t Packets = 0;

  /// Packets of the last whole second.
  [[nodiscard]] int32_t PerSecond(Elapsed now) const;

 private:
  friend class UniverseTable;
  void Count(Elapsed now);

  int64_t m_Second = 0;
  int32_t m_InSecond = 0;
  int32_t m_InSecondBefore = 0;
};

/// The universes on the network as their packets tell of them, E1.31 and Art-Net. A packet costs a look-up
/// and a comparison; only the first one of a universe takes memory. What is no packet of either kind,
/// preview, and E1.31 of sources with another name changes nothing.
class UniverseTable {
 public:
  /// Only E1.31 sources of this name count, UTF-8; empty for all.
  explicit UniverseTable(std::string szSourceName);

  /// True for a packet that counted.
  bool Take(std::span<const uint8_t> packet, Elapsed now);
  /// Drops what has not been heard since.
  void ForgetBefore(Elapsed moment);
  [[nodiscard]] const std::map<uint32_t, HeardUniverse>& Universes() const { return m_Universes; }

  /// Called with the universes of a page of discovery, of a source that counts.
  std::function<void(const std::vector<uint16_t>&)> Discovered;

 private:
  bool TakeSacn(std::span<const uint8_t> packet, Elapsed now);
  bool TakeArtNet(std::span<const uint8_t> packet, Elapsed now);
  bool TakeDiscovery(std::span<const uint8_t> packet) const;
  [[nodiscard]] bool Counts(std::span<const uint8_t> nameField) const;
  void Heard(LightProtocol protocol, uint16_t universe, std::span<const uint8_t> slots, Elapsed now,
             bool boolEnded);

  std::string m_SourceName;
  std::map<uint32_t, HeardUniverse> m_Universes;  // by protocol and universe
};

}  // namespace vex
