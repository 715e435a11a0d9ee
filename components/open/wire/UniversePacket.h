#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "components/open/wire/NameUuid.h"

namespace vex {

/// Who sends: the same in every packet of a run.
struct LightingSource {
  Uuid Cid{};
  std::string Name;  ///< UTF-8; at most 63 bytes of it go out, cut between characters
  uint8_t Priority = 100;
};

/// One universe's packet as it goes over the network, built once; afterwards only the slots, the sequence
/// number and the terminated mark change, in place, so that sending a frame copies and allocates nothing.
/// It always holds 512 slots.
class UniversePacket {
 public:
  static constexpr size_t SlotCount = 512;

  /// Streaming ACN (ANSI E1.31). universe is 1 to 63999.
  static UniversePacket E131(const LightingSource& source, uint16_t universe);
  /// ArtDmx of Art-Net 4. The universe is the 15-bit port address: net, sub-net and universe in one number.
  static UniversePacket ArtNet(uint16_t universe);

  [[nodiscard]] std::span<uint8_t, SlotCount> Slots() {
    return std::span<uint8_t, SlotCount>(m_Bytes.data() + m_SlotsAt, SlotCount);
  }
  [[nodiscard]] std::span<const uint8_t> Bytes() const { return {m_Bytes.data(), m_SlotsAt + SlotCount}; }

  /// Numbers the packet: one more than the last one of this universe, as each protocol counts.
  void NextSequence();
  /// Marks the packet as one of the stream's last; Art-Net knows no such mark, and nothing changes.
  void Terminated(bool boolTerminated);

 private:
  static constexpr size_t E131HeaderSize = 126;
  static constexpr size_t ArtNetHeaderSize = 18;

  UniversePacket(size_t slotsAt, size_t sequenceAt) : m_SlotsAt(slotsAt), m_SequenceAt(sequenceAt) {}

  std::array<uint8_t, E131HeaderSize + SlotCount> m_Bytes{};
  size_t m_SlotsAt;
  size_t m_SequenceAt;
};

constexpr uint16_t E131Port = 5568;
constexpr uint16_t ArtNetPort = 6454;
constexpr uint16_t E131LowestUniverse = 1;
constexpr uint16_t E131HighestUniverse = 63999;
constexpr uint16_t ArtNetHighestUniverse = 32767;

/// The universe to which a source tells what it sends.
constexpr uint16_t E131DiscoveryUniverse = 64214;
/// One page of the discovery list holds so many universes.
constexpr size_t E131DiscoveryPage = 512;

/// The group to which a universe is multicast: 239.255 and the universe's two bytes.
[[nodiscard]] constexpr uint32_t E131Group(uint16_t universe) {
  return 0xEFFF0000U | universe;
}

/// One page of universe discovery: sorted universes, at most E131DiscoveryPage of them.
[[nodiscard]] std::vector<uint8_t> E131Discovery(const LightingSource& source,
                                                 std::span<const uint16_t> universes, uint8_t page,
                                                 uint8_t lastPage);

}  // namespace vex
