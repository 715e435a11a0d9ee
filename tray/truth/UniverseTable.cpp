#include "tray/truth/UniverseTable.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace vex {

namespace {

/// More than any player sends; whoever fills the network with others cannot fill our memory.
constexpr size_t MostUniverses = 512;
constexpr int64_t NanosecondsPerSecond = 1'000'000'000;

// Where things stand in E1.31 packets (ANSI E1.31-2018, chapters 4 to 8).
constexpr size_t RootVectorAt = 18;
constexpr size_t FramingVectorAt = 40;
constexpr size_t NameAt = 44;
constexpr size_t NameSize = 64;
constexpr size_t OptionsAt = 112;
constexpr size_t UniverseAt = 113;
constexpr size_t SlotCountAt = 123;
constexpr size_t StartCodeAt = 125;
constexpr size_t SacnHeader = 126;
constexpr uint8_t Preview = 0x80;
constexpr uint8_t Terminated = 0x40;
constexpr size_t DiscoveryVectorAt = 114;
constexpr size_t DiscoveryHeader = 120;
constexpr std::string_view SacnIdentifier(
    "\x00\x10\x00\x00"
    "ASC-E1.17\x00\x00\x00",
    16);

// And in Art-Net's (Art-Net 4, ArtDmx).
constexpr std::string_view ArtNetIdentifier("Art-Net\x00\x00\x50", 10);
constexpr size_t ArtNetUniverseAt = 14;
constexpr size_t ArtNetLengthAt = 16;
constexpr size_t ArtNetHeader = 18;

bool BeginsWith(std::span<const uint8_t> packet, std::string_view szBeginning) {
  return packet.size() >= szBeginning.size() &&
         std::equal(szBeginning.begin(), szBeginning.end(), packet.begin(),
                    [](char a, uint8_t b) { return static_cast<uint8_t>(a) == b; });
}

uint32_t Number(std::span<const uint8_t> packet, size_t at, size_t bytes) {
  uint32_t value = 0;
  for (size_t i = 0; i < bytes; ++i) value = value << 8U | packet[at + i];
  return value;
}

}  // namespace

int32_t HeardUniverse::PerSecond(Elapsed now) const {
  const int64_t behind = now.count() / NanosecondsPerSecond - m_Second;
  if (behind == 0) return m_InSecondBefore;
  return behind == 1 ? m_InSecond : 0;
}

void HeardUniverse::Count(Elapsed now) {
  const int64_t second = now.count() / NanosecondsPerSecond;
  if (second != m_Second) {
    m_InSecondBefore = second == m_Second + 1 ? m_InSecond : 0;
    m_InSecond = 0;
    m_Second = second;
  }
  ++m_InSecond;
  ++Packets;
}

UniverseTable::UniverseTable(std::string szSourceName) : m_SourceName(std::move(szSourceName)) {
  m_SourceName.resize(std::min(m_SourceName.size(), NameSize - 1));
}

bool UniverseTable::Take(std::span<const uint8_t> packet, Elapsed now) {
  if (BeginsWith(packet, SacnIdentifier)) return TakeSacn(packet, now);
  return BeginsWith(packet, ArtNetIdentifier) && TakeArtNet(packet, now);
}

void UniverseTable::ForgetBefore(Elapsed moment) {
  std::erase_if(m_Universes, [moment](const auto& entry) { return entry.second.Last < moment; });
}

// A name that did not fit was cut between characters by its sender, so the beginning counts.
bool UniverseTable::Counts(std::span<const uint8_t> nameField) const {
  if (m_SourceName.empty()) return true;
  const auto end = std::ranges::find(nameField, uint8_t{0});
  const std::string_view szName(reinterpret_cast<const char*>(nameField.data()),
                                static_cast<size_t>(end - nameField.begin()));
  constexpr size_t longestCharacter = 4;
  const bool boolCut = szName.size() + longestCharacter >= NameSize;
  return boolCut ? std::string_view(m_SourceName).starts_with(szName) : m_SourceName == szName;
}

bool UniverseTable::TakeSacn(std::span<const uint8_t> packet, Elapsed now) {
  constexpr uint32_t rootData = 4;
  constexpr uint32_t framingData = 2;
  if (packet.size() < DiscoveryHeader || !Counts(packet.subspan(NameAt, NameSize))) return false;
  if (Number(packet, RootVectorAt, 4) != rootData) return TakeDiscovery(packet);
  if (packet.size() < SacnHeader || Number(packet, FramingVectorAt, 4) != framingData) return false;
  if (packet[StartCodeAt] != 0 || (packet[OptionsAt] & Preview) != 0) return false;
  const size_t slots = Number(packet, SlotCountAt, 2);
  if (slots < 1 || SacnHeader + slots - 1 > packet.size()) return false;
  Heard(LightProtocol::Sacn, static_cast<uint16_t>(Number(packet, UniverseAt, 2)),
        packet.subspan(SacnHeader, slots - 1), now, (packet[OptionsAt] & Terminated) != 0);
  return true;
}

bool UniverseTable::TakeDiscovery(std::span<const uint8_t> packet) const {
  constexpr uint32_t rootExtended = 8;
  constexpr uint32_t framingDiscovery = 2;
  constexpr uint32_t listVector = 1;
  if (Number(packet, RootVectorAt, 4) != rootExtended ||
      Number(packet, FramingVectorAt, 4) != framingDiscovery ||
      Number(packet, DiscoveryVectorAt, 4) != listVector || !Discovered)
    return false;
  std::vector<uint16_t> universes;
  for (size_t at = DiscoveryHeader; at + 2 <= packet.size(); at += 2)
    universes.push_back(static_cast<uint16_t>(Number(packet, at, 2)));
  Discovered(universes);
  return true;
}

bool UniverseTable::TakeArtNet(std::span<const uint8_t> packet, Elapsed now) {
  if (packet.size() < ArtNetHeader) return false;
  const size_t slots = Number(packet, ArtNetLengthAt, 2);
  if (slots < 1 || ArtNetHeader + slots > packet.size()) return false;
  const uint32_t universe = packet[ArtNetUniverseAt] | (packet[ArtNetUniverseAt + 1] & 0x7FU) << 8U;
  Heard(LightProtocol::ArtNet, static_cast<uint16_t>(universe), packet.subspan(ArtNetHeader, slots), now,
        false);
  return true;
}

void UniverseTable::Heard(LightProtocol protocol, uint16_t universe, std::span<const uint8_t> slots,
                          Elapsed now, bool boolEnded) {
  const uint32_t key = static_cast<uint32_t>(protocol) << 16U | universe;
  if (m_Universes.size() >= MostUniverses && !m_Universes.contains(key)) return;
  const auto [entry, boolFirst] = m_Universes.try_emplace(key, HeardUniverse());
  HeardUniverse& heard = entry->second;
  heard.Protocol = protocol;
  heard.Universe = universe;
  heard.Last = now;
  heard.Ended = boolEnded;
  heard.Count(now);
  slots = slots.first(std::min(slots.size(), HeardUniverse::SlotCount));
  if (!boolFirst && std::ranges::equal(slots, std::span(heard.Slots).first(slots.size()))) return;
  std::ranges::copy(slots, heard.Slots.begin());
  heard.Changed = now;
}

}  // namespace vex
