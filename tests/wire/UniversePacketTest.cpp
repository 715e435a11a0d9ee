#include "components/open/wire/UniversePacket.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace vex {
namespace {

using Bytes = std::vector<uint8_t>;

LightingSource TestSource() {
  LightingSource source;
  for (size_t i = 0; i < source.Cid.size(); ++i) source.Cid[i] = static_cast<uint8_t>(0xA0 + i);
  source.Name = "Porch";
  source.Priority = 150;
  return source;
}

void Append(Bytes& bytes, std::initializer_list<int> values) {
  for (const int value : values) bytes.push_back(static_cast<uint8_t>(value));
}

void AppendText(Bytes& bytes, const std::string& szText, size_t field) {
  bytes.insert(bytes.end(), szText.begin(), szText.end());
  bytes.insert(bytes.end(), field - szText.size(), 0);
}

Bytes Of(const UniversePacket& packet) {
  return {packet.Bytes().begin(), packet.Bytes().end()};
}

Bytes ExpectedE131(uint8_t sequence, uint8_t options) {
  Bytes expected;
  Append(expected, {0x00, 0x10, 0x00, 0x00});
  AppendText(expected, "ASC-E1.17", 12);
  Append(expected, {0x72, 0x6E, 0, 0, 0, 4});  // 0x7000 + 622
  for (int i = 0; i < 16; ++i) expected.push_back(static_cast<uint8_t>(0xA0 + i));
  Append(expected, {0x72, 0x58, 0, 0, 0, 2});  // 0x7000 + 600
  AppendText(expected, "Porch", 64);
  Append(expected, {150, 0, 0, sequence, options, 0x01, 0x02});
  Append(expected, {0x72, 0x0B, 0x02, 0xA1, 0, 0, 0, 1, 0x02, 0x01, 0});  // 0x7000 + 523, 513 values
  for (int i = 0; i < 512; ++i) expected.push_back(static_cast<uint8_t>(i & 0xFF));
  return expected;
}

TEST(UniversePacket, E131IsByteForByteWhatTheStandardSays) {
  UniversePacket packet = UniversePacket::E131(TestSource(), 0x0102);
  for (size_t i = 0; i < 512; ++i) packet.Slots()[i] = static_cast<uint8_t>(i & 0xFF);
  EXPECT_EQ(Of(packet), ExpectedE131(0, 0));
  EXPECT_EQ(packet.Bytes().size(), 638U);
}

TEST(UniversePacket, E131CountsThroughZeroAndMarksTheEnd) {
  UniversePacket packet = UniversePacket::E131(TestSource(), 0x0102);
  for (size_t i = 0; i < 512; ++i) packet.Slots()[i] = static_cast<uint8_t>(i & 0xFF);
  for (int i = 0; i < 255; ++i) packet.NextSequence();
  packet.Terminated(true);
  EXPECT_EQ(Of(packet), ExpectedE131(255, 0x40));
  packet.NextSequence();
  packet.Terminated(false);
  EXPECT_EQ(Of(packet), ExpectedE131(0, 0));
}

TEST(UniversePacket, ArtNetIsByteForByteWhatTheProtocolSays) {
  UniversePacket packet = UniversePacket::ArtNet(0x1234);
  packet.Slots()[0] = 7;
  packet.Slots()[511] = 9;
  packet.NextSequence();
  Bytes expected;
  AppendText(expected, "Art-Net", 8);
  Append(expected, {0x00, 0x50, 0x00, 0x0E, 1, 0, 0x34, 0x12, 0x02, 0x00});
  expected.resize(18 + 512);
  expected[18] = 7;
  expected[529] = 9;
  EXPECT_EQ(Of(packet), expected);
}

TEST(UniversePacket, ArtNetSequenceLeavesZeroOut) {
  UniversePacket packet = UniversePacket::ArtNet(1);
  for (int i = 0; i < 255; ++i) packet.NextSequence();
  EXPECT_EQ(packet.Bytes()[12], 255);
  packet.NextSequence();
  EXPECT_EQ(packet.Bytes()[12], 1);
}

TEST(UniversePacket, ArtNetKnowsNoTerminatedMark) {
  UniversePacket packet = UniversePacket::ArtNet(1);
  const Bytes before = Of(packet);
  packet.Terminated(true);
  EXPECT_EQ(Of(packet), before);
}

TEST(UniversePacket, LongNameIsCutBetweenCharactersWithAZeroBehindIt) {
  LightingSource source = TestSource();
  source.Name = std::string(62, 'a') + "\xC3\xBC" + "z";  // the two-byte letter would end in the last byte
  const UniversePacket packet = UniversePacket::E131(source, 1);
  EXPECT_EQ(packet.Bytes()[44 + 61], 'a');
  EXPECT_EQ(packet.Bytes()[44 + 62], 0);
  EXPECT_EQ(packet.Bytes()[44 + 63], 0);
}

TEST(UniversePacket, NameOf63BytesIsKeptWhole) {
  LightingSource source = TestSource();
  source.Name = std::string(63, 'b');
  const UniversePacket packet = UniversePacket::E131(source, 1);
  EXPECT_EQ(packet.Bytes()[44 + 62], 'b');
  EXPECT_EQ(packet.Bytes()[44 + 63], 0);
}

TEST(E131Discovery, IsByteForByteWhatTheStandardSays) {
  const std::vector<uint16_t> universes{1, 2, 0x1234};
  Bytes expected;
  Append(expected, {0x00, 0x10, 0x00, 0x00});
  AppendText(expected, "ASC-E1.17", 12);
  Append(expected, {0x70, 110, 0, 0, 0, 8});  // 104 + 2 * 3
  for (int i = 0; i < 16; ++i) expected.push_back(static_cast<uint8_t>(0xA0 + i));
  Append(expected, {0x70, 88, 0, 0, 0, 2});  // 82 + 2 * 3
  AppendText(expected, "Porch", 64);
  Append(expected, {0, 0, 0, 0});
  Append(expected, {0x70, 14, 0, 0, 0, 1, 3, 4, 0, 1, 0, 2, 0x12, 0x34});  // 8 + 2 * 3
  EXPECT_EQ(E131Discovery(TestSource(), universes, 3, 4), expected);
}

TEST(E131Group, IsMadeOfTheUniversesTwoBytes) {
  EXPECT_EQ(E131Group(0x0102), 0xEFFF0102U);
  EXPECT_EQ(E131Group(E131DiscoveryUniverse), 0xEFFFFAD6U);
}

}  // namespace
}  // namespace vex
