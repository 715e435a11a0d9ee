#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <span>
#include <utility>

namespace vex {

/// What a lighting receiver knows from the packets alone: the slots of every universe that it has heard, and
/// how well the stream arrived. Packets are E1.31 data packets; anything else on the port counts as malformed
/// and changes nothing. Packets older than the last one are dropped, gaps in the sequence numbers are losses,
/// and a source that ends its stream leaves its universe dark.
class Receiver {
 public:
  static constexpr size_t SlotCount = 512;

  struct Universe {
    std::array<uint8_t, SlotCount> Slots{};
    uint64_t Packets = 0;
    bool Ended = false;
  };

  void Take(std::span<const uint8_t> packet);

  /// 0 for a universe or slot (from 1) that was never heard of.
  [[nodiscard]] uint8_t Level(uint16_t universe, int32_t lSlot) const;
  [[nodiscard]] const std::map<uint16_t, Universe>& Universes() const { return m_Universes; }

  [[nodiscard]] uint64_t Packets() const { return m_Packets; }
  [[nodiscard]] uint64_t Lost() const { return m_Lost; }
  [[nodiscard]] uint64_t Malformed() const { return m_Malformed; }
  /// How often a slot has changed its level.
  [[nodiscard]] uint64_t Changes() const { return m_Changes; }

 private:
  using SourceId = std::array<uint8_t, 16>;

  [[nodiscard]] static bool WellFormed(std::span<const uint8_t> packet);
  [[nodiscard]] static bool Extended(std::span<const uint8_t> packet);
  [[nodiscard]] bool InOrder(const SourceId& source, uint16_t universe, uint8_t sequence);
  void Store(Universe& universe, std::span<const uint8_t> slots);

  std::map<uint16_t, Universe> m_Universes;
  std::map<std::pair<SourceId, uint16_t>, uint8_t> m_LastSequence;
  uint64_t m_Packets = 0;
  uint64_t m_Lost = 0;
  uint64_t m_Malformed = 0;
  uint64_t m_Changes = 0;
};

}  // namespace vex
