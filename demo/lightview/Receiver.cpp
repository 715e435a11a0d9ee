#include "demo/lightview/Receiver.h"

#include <algorithm>
#include <string_view>

namespace vex {

namespace {

// Where things stand in a data packet (ANSI E1.31-2018, chapters 5 to 7).
constexpr size_t HeaderSize = 126;
constexpr size_t RootLengthAt = 16;
constexpr size_t RootVectorAt = 18;
constexpr size_t SourceAt = 22;
constexpr size_t FramingLengthAt = 38;
constexpr size_t FramingVectorAt = 40;
constexpr size_t SequenceAt = 111;
constexpr size_t OptionsAt = 112;
constexpr size_t UniverseAt = 113;
constexpr size_t DataLengthAt = 115;
constexpr size_t DataVectorAt = 117;
constexpr size_t SlotCountAt = 123;
constexpr size_t StartCodeAt = 125;
constexpr uint8_t PreviewOption = 0x80;
constexpr uint8_t TerminatedOption = 0x40;
constexpr std::string_view Identifier(
    "\x00\x10\x00\x00"
    "ASC-E1.17\x00\x00\x00",
    16);

uint32_t Number(std::span<const uint8_t> packet, size_t at, size_t bytes) {
  uint32_t value = 0;
  for (size_t i = 0; i < bytes; ++i) value = value << 8U | packet[at + i];
  return value;
}

/// A layer's flags and length: 0x7 and the bytes from there to the packet's end.
bool LengthFits(std::span<const uint8_t> packet, size_t at) {
  return Number(packet, at, 2) == (0x7000U | static_cast<uint32_t>(packet.size() - at));
}

}  // namespace

bool Receiver::WellFormed(std::span<const uint8_t> packet) {
  if (packet.size() < HeaderSize || packet.size() > HeaderSize + SlotCount) return false;
  const bool boolIdentified = std::equal(Identifier.begin(), Identifier.end(), packet.begin(),
                                         [](char a, uint8_t b) { return static_cast<uint8_t>(a) == b; });
  return boolIdentified && Number(packet, RootVectorAt, 4) == 4 && Number(packet, FramingVectorAt, 4) == 2 &&
         packet[DataVectorAt] == 2 && LengthFits(packet, RootLengthAt) &&
         LengthFits(packet, FramingLengthAt) && LengthFits(packet, DataLengthAt) &&
         Number(packet, SlotCountAt, 2) == packet.size() - StartCodeAt;
}

/// Synchronisation and discovery travel on the same port and say nothing about levels.
bool Receiver::Extended(std::span<const uint8_t> packet) {
  return packet.size() >= SourceAt && Number(packet, RootVectorAt, 4) == 8 &&
         LengthFits(packet, RootLengthAt);
}

void Receiver::Take(std::span<const uint8_t> packet) {
  if (Extended(packet)) return;
  if (!WellFormed(packet)) {
    ++m_Malformed;
    return;
  }
  if (packet[StartCodeAt] != 0 || (packet[OptionsAt] & PreviewOption) != 0) return;
  SourceId source{};
  std::copy_n(packet.begin() + SourceAt, source.size(), source.begin());
  const auto number = static_cast<uint16_t>(Number(packet, UniverseAt, 2));
  if (!InOrder(source, number, packet[SequenceAt])) return;
  ++m_Packets;
  Universe& universe = m_Universes[number];
  ++universe.Packets;
  universe.Ended = (packet[OptionsAt] & TerminatedOption) != 0;
  Store(universe, universe.Ended ? std::span<const uint8_t>() : packet.subspan(HeaderSize));
}

// Packets up to 20 behind the last one are late and dropped; one further back is a source that began anew.
bool Receiver::InOrder(const SourceId& source, uint16_t universe, uint8_t sequence) {
  constexpr int32_t mostLate = 20;
  const auto [last, boolFirst] = m_LastSequence.try_emplace({source, universe}, sequence);
  if (boolFirst) return true;
  int32_t lStep = static_cast<uint8_t>(sequence - last->second);
  if (lStep > 127) lStep -= 256;
  if (lStep <= 0 && lStep > -mostLate) return false;
  if (lStep > 0) m_Lost += static_cast<uint64_t>(lStep - 1);
  last->second = sequence;
  return true;
}

void Receiver::Store(Universe& universe, std::span<const uint8_t> slots) {
  for (size_t i = 0; i < SlotCount; ++i) {
    const uint8_t level = i < slots.size() ? slots[i] : uint8_t{0};
    m_Changes += universe.Slots[i] == level ? 0U : 1U;
    universe.Slots[i] = level;
  }
}

uint8_t Receiver::Level(uint16_t universe, int32_t lSlot) const {
  const auto found = m_Universes.find(universe);
  if (found == m_Universes.end() || lSlot < 1 || lSlot > static_cast<int32_t>(SlotCount)) return 0;
  return found->second.Slots[static_cast<size_t>(lSlot) - 1];
}

}  // namespace vex
