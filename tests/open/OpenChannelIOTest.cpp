#include "components/open/OpenChannelIO.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "components/open/wire/NameUuid.h"
#include "components/open/wire/OscTrigger.h"
#include "tests/open/OutputRig.h"

namespace vex {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr int32_t Unreachable = 101;  // what this machine calls ENETUNREACH

TEST(OpenChannelIO, AcceptsUnits1To64OfNetworks0To3) {
  OutputRig rig;
  EXPECT_TRUE(rig.Lights->AcceptsUnit(0, 1));
  EXPECT_TRUE(rig.Lights->AcceptsUnit(3, 64));
  EXPECT_FALSE(rig.Lights->AcceptsUnit(0, 0));
  EXPECT_FALSE(rig.Lights->AcceptsUnit(0, 65));
  EXPECT_FALSE(rig.Lights->AcceptsUnit(-1, 1));
  EXPECT_FALSE(rig.Lights->AcceptsUnit(4, 1));
}

TEST(OpenChannelIO, AcceptsCircuits1To512OfUnitsThatItTakes) {
  OutputRig rig;
  EXPECT_TRUE(rig.Lights->AcceptsCircuit(0, 1, 1));
  EXPECT_TRUE(rig.Lights->AcceptsCircuit(0, 1, 512));
  EXPECT_FALSE(rig.Lights->AcceptsCircuit(0, 1, 0));
  EXPECT_FALSE(rig.Lights->AcceptsCircuit(0, 1, 513));
  EXPECT_FALSE(rig.Lights->AcceptsCircuit(0, 65, 1));
}

TEST(OpenChannelIO, AnEventThatIsNotAcceptedDoesNothing) {
  OutputRig rig;
  rig.Light(65, 1, 100);
  rig.Light(1, 513, 100);
  rig.Light(1, 0, 100);
  rig.Event(1, 1, 100, 100, 1, 4);
  rig.Lights->Flush();
  EXPECT_THAT(rig.Packets(), IsEmpty());
}

TEST(OpenChannelIO, NetworkAndUnitGiveTheUniverse) {
  OutputSettings settings;
  settings.FirstUniverse = 1000;
  OutputRig rig(settings);
  rig.Event(1, 1, 100, 100, 1, 0);
  rig.Event(64, 1, 100, 100, 1, 0);
  rig.Event(1, 1, 100, 100, 1, 1);
  rig.Event(64, 1, 100, 100, 1, 3);
  rig.Lights->Flush();
  std::vector<int32_t> universes;
  for (const auto& packet : rig.Packets()) universes.push_back(packet.Universe);
  EXPECT_THAT(universes, ElementsAre(1000, 1063, 1064, 1255));
}

/// The product is the machine's: 50 times 2.55 is a little less than 127.5 there. Halves go to even.
TEST(OpenChannelIO, LevelTimes2_55RoundedIsTheSlot) {
  for (const auto& [level, byte] :
       {std::pair{0.2, 1}, {1.0, 3}, {30.0, 76}, {33.3, 85}, {50.0, 127}, {99.9, 255}, {100.0, 255}}) {
    OutputRig rig;
    rig.Light(1, 7, level);
    EXPECT_THAT(rig.Values(6), ElementsAre(byte)) << level;
  }
}

TEST(OpenChannelIO, AFramesByteGoesOutAsItIs) {
  for (int32_t lByte = 1; lByte <= 255; ++lByte) {
    OutputRig rig;
    rig.Light(1, 1, lByte / 2.55);
    EXPECT_THAT(rig.Values(), ElementsAre(lByte));
  }
}

TEST(OpenChannelIO, LevelsOutsideTheScaleBecomeItsEnds) {
  OutputRig rig;
  rig.Set(1, 1, 1e300);
  rig.Set(1, 2, -5);
  rig.Set(1, 3, std::nan(""));
  rig.Lights->Flush();
  ASSERT_THAT(rig.Packets(), SizeIs(1));
  EXPECT_EQ(rig.Packets()[0].Slots[0], 255);
  EXPECT_EQ(rig.Packets()[0].Slots[1], 0);
  EXPECT_EQ(rig.Packets()[0].Slots[2], 0);
}

TEST(OpenChannelIO, WithoutHostEachUniverseGoesToItsGroup) {
  OutputRig rig;
  rig.Event(1, 1, 100, 100, 1, 3);
  rig.Lights->Flush();
  EXPECT_EQ(rig.Packets()[0].To, (DatagramAddress{0xEFFF00C1, 5568}));
  EXPECT_EQ(rig.Host.Datagrams().Sent()[0].MulticastInterface, 0U);
}

TEST(OpenChannelIO, MulticastLeavesByTheInterfaceOfTheSettings) {
  OutputSettings settings;
  settings.Interface = "127.0.0.1";
  OutputRig rig(settings);
  rig.Light(1, 1, 100);
  EXPECT_EQ(rig.Host.Datagrams().Sent()[0].MulticastInterface, 0x7F000001U);
}

TEST(OpenChannelIO, AnInterfaceThatIsNoneIsToldOnce) {
  OutputSettings settings;
  settings.Interface = "eth0";
  OutputRig rig(settings);
  rig.Light(1, 1, 100);
  rig.Advance(5000);
  EXPECT_THAT(rig.Troubles, ElementsAre(HasSubstr("eth0")));
  EXPECT_THAT(rig.Packets(), IsEmpty());
}

TEST(OpenChannelIO, AnUnreachableNetworkIsOneLineUntilItWorksAgain) {
  OutputRig rig;
  rig.Host.Datagrams().FailSends(Unreachable);
  for (int i = 1; i < 20; ++i) {
    rig.Light(1, 1, i);
    rig.Advance(100);
  }
  ASSERT_THAT(rig.Troubles, SizeIs(1));
  EXPECT_EQ(rig.Troubles[0], "Lighting network unreachable: " + rig.Host.Datagrams().Describe(Unreachable));
  rig.Host.Datagrams().FailSends(0);
  rig.Host.Datagrams().ForgetSent();
  rig.Light(1, 1, 100);
  EXPECT_THAT(rig.Values(), ElementsAre(255));
  rig.Host.Datagrams().FailSends(Unreachable);
  rig.Advance(1000);
  EXPECT_THAT(rig.Troubles, SizeIs(2));
}

TEST(OpenChannelIO, ASocketThatCannotBeMadeIsOneLineAndTriedAgain) {
  OutputRig rig;
  rig.Host.Datagrams().FailNewSender(24);
  rig.Light(1, 1, 100);
  rig.Light(1, 1, 50);
  EXPECT_THAT(rig.Troubles, SizeIs(1));
  rig.Host.Datagrams().FailNewSender(0);
  rig.Advance(1000);
  EXPECT_FALSE(rig.Packets().empty());
}

TEST(OpenChannelIO, WhatFailsWhileTheControlGoesIsNotToldToAnybody) {
  OutputRig rig;
  rig.Light(1, 1, 100);
  rig.Host.Datagrams().FailSends(Unreachable);
  rig.Lights.reset();
  EXPECT_THAT(rig.Troubles, IsEmpty());
}

TEST(OpenChannelIO, SourcePriorityAndIdentityStandInEachPacket) {
  OutputSettings settings;
  settings.SourceName = "F\xFCr Elise";
  settings.Priority = 150;
  OutputRig rig(settings);
  rig.Light(1, 1, 100);
  const auto& bytes = rig.Host.Datagrams().Sent()[0].Bytes;
  EXPECT_EQ(std::string(bytes.begin() + 44, bytes.begin() + 55), std::string("F\xC3\xBCr Elise\0", 11));
  EXPECT_EQ(bytes[108], 150);
  const Uuid cid = LightingSourceUuid("machine", settings.SourceName);
  EXPECT_TRUE(std::equal(cid.begin(), cid.end(), bytes.begin() + 22));
}

TEST(OpenChannelIO, WhileStreamingTheUniversesAreDiscoveredEveryTenSeconds) {
  OutputRig rig;
  rig.Light(3, 1, 100);
  rig.Light(1, 1, 100);
  rig.Advance(35000);
  std::vector<int64_t> times;
  for (const auto& sent : rig.Host.Datagrams().Sent()) {
    if (sent.Bytes.size() == 638) continue;
    times.push_back(sent.At.count() / 1000000);
    EXPECT_EQ(sent.To, (DatagramAddress{0xEFFFFAD6, 5568}));
    EXPECT_EQ(std::vector<uint8_t>(sent.Bytes.begin() + 118, sent.Bytes.end()),
              (std::vector<uint8_t>{0, 0, 0, 1, 0, 3}));
  }
  EXPECT_THAT(times, ElementsAre(10000, 20000, 30000));
}

TEST(OpenChannelIO, ArtNetIsBroadcast) {
  OutputSettings settings;
  settings.Protocol = OutputProtocol::ArtNet;
  settings.FirstUniverse = 0;
  OutputRig rig(settings);
  rig.Event(2, 1, 100, 100, 1, 1);
  rig.Lights->Flush();
  rig.Advance(30000);
  ASSERT_FALSE(rig.Packets().empty());
  for (const auto& packet : rig.Packets()) EXPECT_EQ(packet.To, (DatagramAddress{0xFFFFFFFF, 6454}));
  EXPECT_EQ(rig.Packets()[0].Universe, 65);
  EXPECT_EQ(rig.Packets().size(), rig.Host.Datagrams().Sent().size()) << "no discovery";
}

TEST(OpenChannelIO, ArtNetStreamsJustStop) {
  OutputSettings settings;
  settings.Protocol = OutputProtocol::ArtNet;
  settings.Host = "10.0.0.9";
  OutputRig rig(settings);
  rig.Light(1, 1, 100);
  rig.Lights->ShowsEnded();
  rig.Advance(5000);
  EXPECT_THAT(rig.Packets(), SizeIs(1));
  EXPECT_EQ(rig.Packets()[0].To, (DatagramAddress{0x0A000009, 6454}));
}

TEST(OpenChannelIO, ProtocolNoneSendsNothing) {
  OutputSettings settings;
  settings.Protocol = OutputProtocol::None;
  OutputRig rig(settings);
  EXPECT_TRUE(rig.Lights->AcceptsCircuit(0, 1, 1));
  rig.Event(1, 1, 0, 100, 1000);
  rig.Light(1, 2, 100);
  rig.Advance(30000);
  rig.Lights->ShowsEnded();
  rig.Lights.reset();
  EXPECT_THAT(rig.Host.Datagrams().Sent(), IsEmpty());
  EXPECT_EQ(rig.Host.EventLoop().Ticks(), 0U);
}

TEST(OpenChannelIO, AnUnknownProtocolSendsNothingAndSaysSoOnce) {
  OutputSettings settings;
  settings.Protocol = OutputProtocol::Unknown;
  OutputRig rig(settings);
  EXPECT_THAT(rig.Troubles, IsEmpty());
  rig.Light(1, 2, 100);
  rig.Light(1, 2, 50);
  EXPECT_THAT(rig.Troubles, ElementsAre(HasSubstr("must be sacn, artnet or none")));
  EXPECT_THAT(rig.Host.Datagrams().Sent(), IsEmpty());
}

TEST(OpenChannelIO, InputsOfTheLinkAreItsTriggers) {
  OutputRig rig;
  std::vector<std::string> detected;
  rig.Lights->TriggerDetected = [&](const NamedProperties& input) { detected.push_back(input.Text("Name")); };
  rig.Lights->SetLink("127.0.0.1", -5536, 3738);  // port 60000, as 16 bits
  rig.Lights->LinkEnabled(true);
  const auto press = WriteOscTrigger({0, 1, 3, "Front door"});
  EXPECT_TRUE(rig.Host.Datagrams().Deliver({0x7F000001, 60000}, {0x7F000001, 9}, press));
  EXPECT_THAT(detected, ElementsAre("Front door"));
}

}  // namespace
}  // namespace vex
