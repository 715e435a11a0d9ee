#include "components/open/wire/UniversePacket.h"

#include <algorithm>
#include <cstring>

namespace vex {
namespace {

/// Writes a packet from its beginning to its end, numbers with the most significant byte first.
class PacketWriter {
 public:
  explicit PacketWriter(std::span<uint8_t> bytes) : m_Bytes(bytes) {}

  void Byte(uint32_t value) { m_Bytes[m_At++] = static_cast<uint8_t>(value); }
  void Word(uint32_t value) {
    Byte(value >> 8 & 0xFF);
    Byte(value & 0xFF);
  }
  void Long(uint32_t value) {
    Word(value >> 16);
    Word(value & 0xFFFF);
  }
  /// The text and as many zeros as fill the field.
  void Text(std::string_view szText, size_t fieldSize) {
    for (size_t i = 0; i < fieldSize; ++i) Byte(i < szText.size() ? static_cast<uint8_t>(szText[i]) : 0);
  }
  void Bytes(std::span<const uint8_t> bytes) {
    std::memcpy(m_Bytes.data() + m_At, bytes.data(), bytes.size());
    m_At += bytes.size();
  }
  /// Flags and the length of a block that begins here and reaches to the packet's end.
  void BlockToEnd() { Word(0x7000U | static_cast<uint32_t>(m_Bytes.size() - m_At)); }

 private:
  std::span<uint8_t> m_Bytes;
  size_t m_At = 0;
};

constexpr size_t NameField = 64;

/// What fits the field with a zero behind it, cut between characters.
std::string_view NameThatFits(std::string_view szName) {
  if (szName.size() < NameField) return szName;
  size_t size = NameField - 1;
  while (size > 0 && (static_cast<uint8_t>(szName[size]) & 0xC0) == 0x80) --size;
  return szName.substr(0, size);
}

/// The root layer, which both kinds of E1.31 packet begin with.
void RootLayer(PacketWriter& writer, const LightingSource& source, uint32_t vector) {
  writer.Word(0x0010);
  writer.Word(0);
  writer.Text("ASC-E1.17", 12);
  writer.BlockToEnd();
  writer.Long(vector);
  writer.Bytes(source.Cid);
}

}  // namespace

UniversePacket UniversePacket::E131(const LightingSource& source, uint16_t universe) {
  UniversePacket packet(E131HeaderSize, 111);
  PacketWriter writer(packet.m_Bytes);
  RootLayer(writer, source, 4);

  writer.BlockToEnd();
  writer.Long(2);
  writer.Text(NameThatFits(source.Name), NameField);
  writer.Byte(source.Priority);
  writer.Word(0);  // no synchronisation
  writer.Byte(0);  // sequence
  writer.Byte(0);  // options
  writer.Word(universe);

  writer.BlockToEnd();
  writer.Byte(2);
  writer.Byte(0xA1);
  writer.Word(0);
  writer.Word(1);
  writer.Word(SlotCount + 1);
  writer.Byte(0);  // start code
  return packet;
}

UniversePacket UniversePacket::ArtNet(uint16_t universe) {
  UniversePacket packet(ArtNetHeaderSize, 12);
  PacketWriter writer(packet.m_Bytes);
  writer.Text("Art-Net", 8);
  writer.Word(0x0050);  // the opcode alone stands low byte first
  writer.Word(14);
  writer.Byte(0);  // sequence
  writer.Byte(0);  // physical
  writer.Byte(universe & 0xFFU);
  writer.Byte(universe >> 8 & 0x7FU);
  writer.Word(SlotCount);
  return packet;
}

void UniversePacket::NextSequence() {
  uint8_t& sequence = m_Bytes[m_SequenceAt];
  ++sequence;
  // 0 would tell an Art-Net receiver that packets are not numbered.
  if (m_SlotsAt == ArtNetHeaderSize && sequence == 0) sequence = 1;
}

void UniversePacket::Terminated(bool boolTerminated) {
  if (m_SlotsAt == E131HeaderSize) m_Bytes[112] = boolTerminated ? 0x40 : 0;
}

std::vector<uint8_t> E131Discovery(const LightingSource& source, std::span<const uint16_t> universes,
                                   uint8_t page, uint8_t lastPage) {
  std::vector<uint8_t> bytes(120 + 2 * universes.size());
  PacketWriter writer(bytes);
  RootLayer(writer, source, 8);

  writer.BlockToEnd();
  writer.Long(2);
  writer.Text(NameThatFits(source.Name), NameField);
  writer.Long(0);

  writer.BlockToEnd();
  writer.Long(1);
  writer.Byte(page);
  writer.Byte(lastPage);
  for (const uint16_t universe : universes) writer.Word(universe);
  return bytes;
}

}  // namespace vex
