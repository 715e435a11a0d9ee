#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "components/open/PacketPace.h"
#include "tests/open/OutputRig.h"

namespace vex {
namespace {

OutputSettings ArtNet(int32_t lFirstUniverse, int32_t lFrameRate) {
  OutputSettings settings;
  settings.Protocol = OutputProtocol::ArtNet;
  settings.Host = "10.0.0.9";
  settings.FirstUniverse = lFirstUniverse;
  settings.FrameRate = lFrameRate;
  return settings;
}

TEST(ArtNetOutput, TheRateBoundsTheUniversesPacketsInAnySecond) {
  OutputRig rig(ArtNet(7, 20));
  for (int32_t lStep = 0; lStep < 4000; lStep += 3) {
    rig.Light(1, 1, lStep % 100);
    rig.Advance(3);
  }
  const auto times = rig.Times(7);
  ASSERT_GE(times.size(), 70U);
  constexpr int64_t second = (PacketPace::Second - PacketPace::Jitter) / std::chrono::milliseconds(1);
  for (size_t i = 20; i < times.size(); ++i) EXPECT_GE(times[i] - times[i - 20], second) << i;
}

TEST(ArtNetOutput, AQuietStreamIsKeptAlive) {
  OutputRig rig(ArtNet(7, 40));
  rig.Light(1, 1, 100);
  rig.Advance(9000);
  const auto packets = rig.Packets(7);
  ASSERT_GE(packets.size(), 10U);
  for (size_t i = 1; i < packets.size(); ++i) {
    EXPECT_LE(packets[i].AtMs - packets[i - 1].AtMs, 900);
    EXPECT_EQ(packets[i].Slots, packets[0].Slots);
  }
}

TEST(ArtNetOutput, UniversesBeginAtZeroWhereTheSettingsSaySo) {
  OutputRig rig(ArtNet(0, 40));
  for (int32_t lNetwork = 0; lNetwork < 4; ++lNetwork) rig.Event(64, 512, 100, 100, 1, lNetwork);
  rig.Set(1, 1, 100);
  rig.Lights->Flush();
  std::vector<int32_t> universes;
  for (const auto& packet : rig.Packets()) universes.push_back(packet.Universe);
  EXPECT_THAT(universes, testing::ElementsAre(0, 63, 127, 191, 255));
}

TEST(ArtNetOutput, NumbersRunFrom1To255AndLeaveOut0) {
  OutputRig rig(ArtNet(7, 250));
  for (int32_t lStep = 0; lStep < 600; ++lStep) {
    rig.Light(1, 1, lStep % 2 == 0 ? 100 : 0);
    rig.Advance(5);
  }
  const auto packets = rig.Packets(7);
  ASSERT_GT(packets.size(), 510U);
  for (size_t i = 0; i < packets.size(); ++i)
    EXPECT_EQ(packets[i].Sequence, static_cast<int32_t>(1 + i % 255));
}

}  // namespace
}  // namespace vex
