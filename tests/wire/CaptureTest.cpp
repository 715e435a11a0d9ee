#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>

#include "components/open/wire/UniversePacket.h"

namespace vex {
namespace {

/// Packets as an independent decoder sees them: a capture file (libpcap, link type 101, raw IP) is written
/// and handed to tshark.
class Capture {
 public:
  Capture() {
    Little(0xA1B2C3D4, 4), Little(2, 2), Little(4, 2), Little(0, 8), Little(65535, 4), Little(101, 4);
  }

  void Add(uint32_t to, uint16_t port, std::span<const uint8_t> bytes) {
    const size_t size = 28 + bytes.size();
    Little(m_Packets++, 4), Little(0, 4), Little(size, 4), Little(size, 4);
    std::string szHeader;
    Big(szHeader, 0x4500, 2), Big(szHeader, size, 2), Big(szHeader, 0, 4), Big(szHeader, 0x0111, 2);
    Big(szHeader, 0, 2), Big(szHeader, 0x0A000001, 4), Big(szHeader, to, 4);
    size_t sum = 0;
    for (size_t i = 0; i < 20; i += 2)
      sum +=
          static_cast<size_t>(static_cast<uint8_t>(szHeader[i])) << 8 | static_cast<uint8_t>(szHeader[i + 1]);
    sum = (sum & 0xFFFF) + (sum >> 16);
    szHeader[10] = static_cast<char>(~sum >> 8 & 0xFF);
    szHeader[11] = static_cast<char>(~sum & 0xFF);
    Big(szHeader, port, 2), Big(szHeader, port, 2), Big(szHeader, 8 + bytes.size(), 2), Big(szHeader, 0, 2);
    m_Text += szHeader;
    m_Text.append(bytes.begin(), bytes.end());
  }

  /// What tshark prints, a line for each packet.
  [[nodiscard]] std::string Decode(const std::string& szArguments) const {
    const std::string szFile =
        testing::TempDir() + "/capture" + std::to_string(std::random_device()()) + ".pcap";
    std::ofstream(szFile, std::ios::binary) << m_Text;
    const std::string szCommand = "tshark -r " + szFile + " " + szArguments + " 2>/dev/null";
    std::string szOutput;
    if (FILE* pipe = popen(szCommand.c_str(), "r")) {
      std::array<char, 4096> buffer{};
      while (fgets(buffer.data(), buffer.size(), pipe) != nullptr) szOutput += buffer.data();
      pclose(pipe);
    }
    std::remove(szFile.c_str());
    return szOutput;
  }

 private:
  void Little(size_t value, size_t size) {
    for (size_t i = 0; i < size; ++i)
      m_Text.push_back(i < 8 ? static_cast<char>(value >> (8 * i) & 0xFF) : '\0');
  }
  static void Big(std::string& szText, size_t value, size_t size) {
    for (size_t i = size; i-- > 0;) szText.push_back(static_cast<char>(value >> (8 * i) & 0xFF));
  }

  std::string m_Text;
  size_t m_Packets = 0;
};

bool HasTshark() {
  return std::system("tshark --version >/dev/null 2>&1") == 0;
}

constexpr const char* NoTshark = "tshark is not installed; the independent decoding was NOT tested";

TEST(Capture, IndependentDecoderReadsE131) {
  if (!HasTshark()) GTEST_SKIP() << NoTshark;
  LightingSource source;
  source.Cid = LightingSourceUuid("machine", "Porch");
  source.Name = "Porch";
  source.Priority = 120;
  Capture capture;
  UniversePacket packet = UniversePacket::E131(source, 513);
  packet.Slots()[0] = 255;
  packet.NextSequence();
  capture.Add(E131Group(513), E131Port, packet.Bytes());
  packet.NextSequence();
  packet.Terminated(true);
  capture.Add(E131Group(513), E131Port, packet.Bytes());

  const std::string szFields =
      "--enable-heuristic acn -o acn.dmx_enable:TRUE -T fields -E separator=, -e acn.dmx.universe -e "
      "acn.dmx.priority -e acn.dmx.seq_number -e acn.dmx.options -e acn.dmx.start_code2 -e acn.dmx.count "
      "-e acn.dmx.source_name -e _ws.malformed";
  EXPECT_EQ(capture.Decode(szFields), "513,120,1,0,0,513,Porch,\n513,120,2,64,0,513,Porch,\n");
}

TEST(Capture, IndependentDecoderReadsArtNet) {
  if (!HasTshark()) GTEST_SKIP() << NoTshark;
  Capture capture;
  UniversePacket packet = UniversePacket::ArtNet(0x0123);
  packet.NextSequence();
  capture.Add(0x0A0000FF, ArtNetPort, packet.Bytes());
  EXPECT_EQ(capture.Decode("-T fields -E separator=, -e artnet.header.opcode -e artnet.header.protver -e "
                           "artnet.output.sequence -e artnet.output.universe -e artnet.output.length "
                           "-e _ws.malformed"),
            "0x5000,14,1,291,512,\n");
}

}  // namespace
}  // namespace vex
