#include "tray/truth/PacketWatch.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <chrono>

#include "components/open/wire/UniversePacket.h"
#include "host/virtual/VirtualHost.h"
#include "tray/truth/SoundCard.h"

namespace vex::test {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr uint32_t Broadcast = 0xFFFFFFFF;
constexpr uint32_t Loopback = 0x7F000001;

UniversePacket Sacn(uint16_t universe, const std::string& szName = "VexMonitor") {
  return UniversePacket::E131({Uuid{}, szName, 100}, universe);
}

const HeardUniverse* Only(UniverseTable& table) {
  return table.Universes().size() == 1 ? &table.Universes().begin()->second : nullptr;
}

TEST(UniverseTable, KeepsTheNewestSlots) {
  UniverseTable table("VexMonitor");
  UniversePacket packet = Sacn(7);
  packet.Slots()[0] = 10;
  packet.Slots()[511] = 20;
  EXPECT_TRUE(table.Take(packet.Bytes(), seconds(5)));
  const HeardUniverse* const heard = Only(table);
  ASSERT_NE(heard, nullptr);
  EXPECT_EQ(heard->Universe, 7);
  EXPECT_EQ(heard->Slots[0], 10);
  EXPECT_EQ(heard->Slots[511], 20);
  EXPECT_EQ(heard->Last, seconds(5));
  EXPECT_EQ(heard->Changed, seconds(5));
  EXPECT_TRUE(table.Take(packet.Bytes(), seconds(6)));
  EXPECT_EQ(heard->Last, seconds(6));
  EXPECT_EQ(heard->Changed, seconds(5));
  packet.Slots()[1] = 1;
  EXPECT_TRUE(table.Take(packet.Bytes(), seconds(7)));
  EXPECT_EQ(heard->Changed, seconds(7));
}

TEST(UniverseTable, HearsArtNet) {
  UniverseTable table("");
  UniversePacket packet = UniversePacket::ArtNet(0x1234);
  packet.Slots()[3] = 9;
  EXPECT_TRUE(table.Take(packet.Bytes(), seconds(1)));
  ASSERT_NE(Only(table), nullptr);
  EXPECT_EQ(Only(table)->Universe, 0x1234);
  EXPECT_EQ(Only(table)->Protocol, LightProtocol::ArtNet);
  EXPECT_EQ(Only(table)->Slots[3], 9);
}

TEST(UniverseTable, OtherSourcesDoNotCount) {
  UniverseTable table("VexMonitor");
  EXPECT_FALSE(table.Take(Sacn(1, "Console").Bytes(), seconds(1)));
  EXPECT_FALSE(table.Take(Sacn(1, "VexMonitor 2").Bytes(), seconds(1)));
  EXPECT_TRUE(table.Universes().empty());
}

TEST(UniverseTable, LongNameIsKnownByItsBeginning) {
  const std::string szName = std::string(60, 'x') + "\xC3\xBC\xC3\xBC\xC3\xBC";
  UniverseTable table(szName);
  EXPECT_TRUE(table.Take(Sacn(1, szName).Bytes(), seconds(1)));
}

TEST(UniverseTable, SoManyUniversesAreKeptAndNoMore) {
  UniverseTable table("");
  for (uint16_t universe = 0; universe < 0x7000; ++universe)
    (void)table.Take(UniversePacket::ArtNet(universe).Bytes(), seconds(1));
  EXPECT_EQ(table.Universes().size(), 512u);
  UniversePacket packet = UniversePacket::ArtNet(0);
  packet.Slots()[0] = 9;
  EXPECT_TRUE(table.Take(packet.Bytes(), seconds(2)));
  EXPECT_EQ(table.Universes().begin()->second.Slots[0], 9) << "the ones that are there go on";
}

TEST(UniverseTable, EndedStreamIsNoted) {
  UniverseTable table("VexMonitor");
  UniversePacket packet = Sacn(1);
  table.Take(packet.Bytes(), seconds(1));
  EXPECT_FALSE(Only(table)->Ended);
  packet.Terminated(true);
  table.Take(packet.Bytes(), seconds(1));
  EXPECT_TRUE(Only(table)->Ended);
}

TEST(UniverseTable, CountsPacketsOfTheLastWholeSecond) {
  UniverseTable table("VexMonitor");
  const UniversePacket packet = Sacn(1);
  for (int i = 0; i < 40; ++i) table.Take(packet.Bytes(), seconds(10) + milliseconds(25 * i));
  EXPECT_EQ(Only(table)->PerSecond(seconds(10) + milliseconds(990)), 0);
  EXPECT_EQ(Only(table)->PerSecond(seconds(11)), 40);
  table.Take(packet.Bytes(), seconds(11));
  EXPECT_EQ(Only(table)->PerSecond(seconds(11)), 40);
  EXPECT_EQ(Only(table)->PerSecond(seconds(12)), 1);
  EXPECT_EQ(Only(table)->PerSecond(seconds(13)), 0);
}

TEST(UniverseTable, ForgetsWhatIsNotHeard) {
  UniverseTable table("VexMonitor");
  table.Take(Sacn(1).Bytes(), seconds(1));
  table.Take(Sacn(2).Bytes(), seconds(5));
  table.ForgetBefore(seconds(5));
  ASSERT_NE(Only(table), nullptr);
  EXPECT_EQ(Only(table)->Universe, 2);
}

TEST(UniverseTable, CutPacketsChangeNothing) {
  for (const UniversePacket& packet : {Sacn(1), UniversePacket::ArtNet(1)}) {
    const auto whole = packet.Bytes();
    UniverseTable table("");
    for (size_t size = 0; size < whole.size(); ++size)
      EXPECT_FALSE(table.Take(whole.first(size), seconds(1)));
    EXPECT_TRUE(table.Universes().empty());
  }
}

TEST(UniverseTableProperty, AnyBytesAreTaken) {
  rc::check([](std::vector<uint8_t> noise, bool boolSacn, uint16_t at, uint8_t value) {
    UniverseTable table("");
    table.Discovered = [](const std::vector<uint16_t>&) {};
    table.Take(noise, seconds(1));
    UniversePacket packet = boolSacn ? Sacn(1) : UniversePacket::ArtNet(1);
    std::vector<uint8_t> bytes(packet.Bytes().begin(), packet.Bytes().end());
    bytes[at % bytes.size()] = value;
    bytes.insert(bytes.end(), noise.begin(), noise.end());
    table.Take(bytes, seconds(1));
    RC_ASSERT(table.Universes().size() <= 1u);
  });
}

class Watching : public testing::Test {
 protected:
  PacketWatch& Watch() {
    m_Watch =
        std::make_unique<PacketWatch>(m_Host.Clock(), m_Host.EventLoop(), m_Host.Datagrams(), m_Settings);
    return *m_Watch;
  }
  bool Deliver(uint32_t to, uint16_t port, std::span<const uint8_t> bytes) {
    return m_Host.Datagrams().Deliver({to, port}, {Loopback, 1}, bytes);
  }

  VirtualHost m_Host;
  OutputSettings m_Settings;
  std::unique_ptr<PacketWatch> m_Watch;
};

TEST_F(Watching, HearsTheFirstUniversesGroups) {
  PacketWatch& watch = Watch();
  EXPECT_TRUE(watch.Watching());
  EXPECT_TRUE(Deliver(E131Group(1), E131Port, Sacn(1).Bytes()));
  EXPECT_TRUE(Deliver(E131Group(16), E131Port, Sacn(16).Bytes()));
  EXPECT_FALSE(Deliver(E131Group(17), E131Port, Sacn(17).Bytes()));
  EXPECT_EQ(watch.Table().Universes().size(), 2u);
}

TEST_F(Watching, HearsTheUniversesThatDiscoveryNames) {
  Watch();
  const std::vector<uint16_t> universes{1, 65, 129};
  const auto page = E131Discovery({Uuid{}, "VexMonitor", 100}, universes, 0, 0);
  ASSERT_TRUE(Deliver(E131Group(E131DiscoveryUniverse), E131Port, page));
  EXPECT_TRUE(Deliver(E131Group(129), E131Port, Sacn(129).Bytes()));
  EXPECT_EQ(m_Watch->Table().Universes().size(), 1u);
}

TEST_F(Watching, DiscoveryOfOthersIsNotFollowed) {
  Watch();
  const std::vector<uint16_t> universes{65};
  const auto page = E131Discovery({Uuid{}, "Console", 100}, universes, 0, 0);
  ASSERT_TRUE(Deliver(E131Group(E131DiscoveryUniverse), E131Port, page));
  EXPECT_FALSE(Deliver(E131Group(65), E131Port, Sacn(65).Bytes()));
}

TEST_F(Watching, HearsArtNetBroadcast) {
  m_Settings.Protocol = OutputProtocol::ArtNet;
  EXPECT_TRUE(Watch().Watching());
  EXPECT_TRUE(Deliver(Broadcast, ArtNetPort, UniversePacket::ArtNet(1).Bytes()));
}

TEST_F(Watching, HearsAnAddressOfThisMachine) {
  m_Settings.Host = "127.0.0.1";
  EXPECT_TRUE(Watch().Watching());
  EXPECT_TRUE(Deliver(Loopback, E131Port, Sacn(1).Bytes()));
  EXPECT_EQ(m_Watch->Table().Universes().size(), 1u);
}

TEST_F(Watching, TakesNothingFromAReceiverThatIsThere) {
  m_Settings.Host = "127.0.0.1";
  int32_t lHeard = 0;
  const auto other = m_Host.Datagrams().NewSharedReceiver(
      m_Host.EventLoop(), {Loopback, E131Port}, 0,
      [&](const DatagramAddress&, std::span<const uint8_t>) { ++lHeard; });
  EXPECT_FALSE(Watch().Watching());
  EXPECT_NE(m_Watch->Trouble().find("127.0.0.1 port 5568 cannot be watched"), std::string::npos);
  EXPECT_NE(m_Watch->Trouble().find("--packets off"), std::string::npos);
  Deliver(Loopback, E131Port, Sacn(1).Bytes());
  EXPECT_EQ(lHeard, 1);
}

TEST_F(Watching, TriesAgainWhatCouldNotBeHad) {
  m_Host.Datagrams().FailNewReceiver(98);
  EXPECT_FALSE(Watch().Watching());
  m_Host.Datagrams().FailNewReceiver(0);
  m_Host.EventLoop().Advance(10'000);
  EXPECT_TRUE(m_Watch->Watching());
  EXPECT_EQ(m_Watch->Trouble(), "");
}

TEST_F(Watching, HostNameIsLookedUp) {
  m_Settings.Host = "tree.local";
  m_Host.Datagrams().KnowHost("tree.local", Loopback);
  Watch();
  EXPECT_FALSE(m_Watch->Watching());
  m_Host.EventLoop().Advance(1);
  EXPECT_TRUE(m_Watch->Watching());
}

TEST_F(Watching, UnknownHostIsTrouble) {
  m_Settings.Host = "nowhere.local";
  Watch();
  m_Host.EventLoop().Advance(1);
  EXPECT_NE(m_Watch->Trouble().find("nobody knows the address of \"nowhere.local\""), std::string::npos);
}

TEST_F(Watching, NothingIsListenedForWhereNothingIsSent) {
  m_Settings.Protocol = OutputProtocol::None;
  EXPECT_FALSE(Watch().Sends());
  EXPECT_FALSE(m_Watch->Watching());
  EXPECT_EQ(m_Watch->Trouble(), "");
}

class Card : public testing::Test {
 protected:
  static constexpr const char* Status = "Z:\\proc\\asound\\card1\\pcm0p\\sub0\\status";
  void Devices(const char* szText) { m_Files.Put("Z:\\proc\\asound\\pcm", szText); }
  void Position(const char* szPosition, const char* szState = "RUNNING") {
    m_Files.Put(Status, std::string("state: ") + szState + "\nowner_pid   : 7\nhw_ptr      : " + szPosition +
                            "\nappl_ptr    : 9\n");
  }
  VirtualFiles m_Files;
};

TEST_F(Card, MachineWithoutOneHasNone) {
  EXPECT_FALSE(SoundCard(m_Files).Exists());
}

TEST_F(Card, MicrophoneIsNone) {
  Devices("00-00: USB Audio : USB Audio : capture 1\n");
  EXPECT_FALSE(SoundCard(m_Files).Exists());
}

TEST_F(Card, MovesWhileItsCounterDoes) {
  Devices("00-00: Mic : Mic : capture 1\n01-00: ALC256 Analog : ALC256 Analog : playback 1 : capture 1\n");
  SoundCard card(m_Files);
  ASSERT_TRUE(card.Exists());
  EXPECT_FALSE(card.Moved());
  Position("4800");
  EXPECT_TRUE(card.Moved());
  EXPECT_FALSE(card.Moved());
  Position("9600");
  EXPECT_TRUE(card.Moved());
}

TEST_F(Card, StandsWhileItDoesNotRun) {
  Devices("01-00: ALC256 Analog : ALC256 Analog : playback 1\n");
  SoundCard card(m_Files);
  Position("4800", "PREPARED");
  EXPECT_FALSE(card.Moved());
  m_Files.Put(Status, "closed\n");
  EXPECT_FALSE(card.Moved());
}

}  // namespace
}  // namespace vex::test
