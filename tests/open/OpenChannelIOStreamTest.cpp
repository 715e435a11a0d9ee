#include "components/open/OpenChannelIO.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "tests/open/OutputRig.h"

namespace vex {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST(OpenChannelIOStream, NothingGoesOutBeforeTheFlush) {
  OutputRig rig;
  rig.Set(1, 1, 100);
  EXPECT_THAT(rig.Packets(), IsEmpty());
  rig.Lights->Flush();
  EXPECT_THAT(rig.Times(), ElementsAre(0));
}

TEST(OpenChannelIOStream, AUniverseIsSentFromItsFirstChangeOn) {
  OutputRig rig;
  rig.Light(1, 1, 0);
  rig.Advance(5000);
  EXPECT_THAT(rig.Packets(), IsEmpty());
  rig.Light(2, 1, 50);
  rig.Advance(5000);
  EXPECT_THAT(rig.Packets(1), IsEmpty());
  EXPECT_FALSE(rig.Packets(2).empty());
}

TEST(OpenChannelIOStream, EachPacketHas512Slots) {
  OutputRig rig;
  rig.Light(1, 1, 100);
  EXPECT_THAT(rig.Packets()[0].Slots, SizeIs(512));
}

TEST(OpenChannelIOStream, AFlushWithoutChangeSendsNothing) {
  OutputRig rig;
  rig.Light(1, 1, 40);
  rig.Light(1, 1, 40);
  rig.Lights->Flush();
  EXPECT_THAT(rig.Packets(), SizeIs(1));
}

TEST(OpenChannelIOStream, AnUnchangedUniverseIsRepeatedThreeTimesAndThenKeptAlive) {
  OutputRig rig;
  rig.Light(1, 1, 40);
  rig.Advance(4000);
  EXPECT_THAT(rig.Times(), ElementsAre(0, 63, 126, 189, 1089, 1989, 2889, 3789));
  EXPECT_THAT(rig.Values(), Each(102));
}

TEST(OpenChannelIOStream, KeepAliveGoesOnWhileALateLoopCatchesUp) {
  OutputRig rig;
  rig.Light(1, 1, 40);
  rig.Advance(60000);
  const auto times = rig.Times();
  for (size_t i = 5; i < times.size(); ++i) {
    EXPECT_GE(times[i] - times[i - 1], 800);
    EXPECT_LE(times[i] - times[i - 1], 1000);
  }
}

TEST(OpenChannelIOStream, AChangeEndsTheRestAndIsRepeatedAnew) {
  OutputRig rig;
  rig.Light(1, 1, 40);
  rig.Advance(100);
  rig.Light(1, 1, 60);
  rig.Advance(300);
  EXPECT_THAT(rig.Times(), ElementsAre(0, 63, 100, 163, 226, 289));
}

TEST(OpenChannelIOStream, SequenceNumbersCountEachUniverse) {
  OutputRig rig;
  rig.Light(1, 1, 40);
  rig.Light(2, 1, 40);
  rig.Advance(300);
  std::vector<int32_t> numbers;
  for (const auto& packet : rig.Packets(2)) numbers.push_back(packet.Sequence);
  EXPECT_THAT(numbers, ElementsAre(1, 2, 3, 4));
}

TEST(OpenChannelIOStream, TwoChangesMayFollowAtOnceTheThirdWaitsWithTheNewestLevels) {
  OutputRig rig;
  rig.Light(1, 1, 10 / 2.55);
  rig.Light(1, 1, 20 / 2.55);
  rig.Light(1, 1, 30 / 2.55);
  rig.Advance(10);
  rig.Light(1, 1, 40 / 2.55);
  rig.Advance(50);
  EXPECT_THAT(rig.Times(), ElementsAre(0, 0, 25));
  EXPECT_THAT(rig.Values(), ElementsAre(10, 20, 40));
}

TEST(OpenChannelIOStream, WhatIsHeldBackInOneUniverseHoldsNoOtherBack) {
  OutputRig rig;
  for (int i = 1; i <= 3; ++i) rig.Light(1, 1, i * 10);
  rig.Light(2, 1, 50);
  EXPECT_THAT(rig.Times(2), ElementsAre(0));
}

TEST(OpenChannelIOStream, AMoveGoesOutOnTheFrameGrid) {
  OutputRig rig;
  rig.Advance(7);
  rig.Event(1, 1, 0, 100, 100);
  rig.Lights->Flush();
  rig.Advance(110);
  EXPECT_THAT(rig.Times(), ElementsAre(32, 57, 82, 107));
  EXPECT_THAT(rig.Values(), ElementsAre(64, 127, 191, 255));
}

TEST(OpenChannelIOStream, AMoveBeginsAtItsStartLevelAtOnce) {
  OutputRig rig;
  rig.Event(1, 1, 100, 0, 50);
  rig.Lights->Flush();
  rig.Advance(60);
  EXPECT_THAT(rig.Times(), ElementsAre(0, 25, 50));
  EXPECT_THAT(rig.Values(), ElementsAre(255, 127, 0));
}

TEST(OpenChannelIOStream, AMoveThatEndsBetweenFramesArrivesWithTheNextFrame) {
  OutputRig rig;
  rig.Event(1, 1, 100, 0, 30);
  rig.Lights->Flush();
  rig.Advance(60);
  EXPECT_THAT(rig.Times(), ElementsAre(0, 25, 50));
  EXPECT_EQ(rig.Values().back(), 0);
}

TEST(OpenChannelIOStream, AnEventOfOneMillisecondIsAJumpToItsEnd) {
  OutputRig rig;
  rig.Event(1, 1, 0, 100, 1);
  rig.Lights->Flush();
  EXPECT_THAT(rig.Values(), ElementsAre(255));
}

TEST(OpenChannelIOStream, ALaterEventTakesTheCircuitOver) {
  OutputRig rig;
  rig.Event(1, 1, 0, 100, 1000);
  rig.Lights->Flush();
  rig.Advance(60);
  rig.Light(1, 1, 20);
  rig.Advance(2000);
  EXPECT_EQ(rig.Values().back(), 51);
  const auto values = rig.Values();
  EXPECT_THAT(std::vector<int32_t>(values.begin() + 2, values.end()), Each(51));
}

TEST(OpenChannelIOStream, AMoveThatTakesOverAMoveGoesItsOwnWay) {
  OutputRig rig;
  rig.Event(1, 1, 0, 100, 1000);
  rig.Event(1, 2, 0, 100, 100);
  rig.Event(1, 1, 100, 0, 50);
  rig.Lights->Flush();
  rig.Advance(150);
  EXPECT_EQ(rig.Values(0).back(), 0);
  EXPECT_EQ(rig.Values(1).back(), 255);
}

TEST(OpenChannelIOStream, TheGridOfAnOddRateDoesNotDrift) {
  OutputSettings settings;
  settings.FrameRate = 30;
  OutputRig rig(settings);
  rig.Event(1, 1, 0, 100, 4000);
  rig.Lights->Flush();
  rig.Advance(4000);
  const auto times = rig.Times();
  for (size_t i = 0; i < times.size(); ++i) {
    const double frame = static_cast<double>(times[i]) * 30 / 1000;
    EXPECT_LT(frame - std::floor(frame), 0.031) << times[i];  // within a millisecond behind its place
  }
  EXPECT_GE(times.size(), 119U);
}

TEST(OpenChannelIOStream, AFrameLeavesOutWhatHasGoneOutSinceTheFrameBefore) {
  OutputRig rig;
  rig.Event(1, 1, 0, 100, 1000);
  rig.Event(2, 1, 0, 100, 1000);
  rig.Lights->Flush();
  rig.Advance(60);
  rig.Light(1, 2, 100);
  EXPECT_EQ(rig.Packets(1).back().Slots[0], std::lround(6 * 2.55))
      << "the packet holds the move's newest level";
  rig.Advance(60);
  EXPECT_THAT(rig.Times(1), ElementsAre(25, 50, 60, 100));
  EXPECT_THAT(rig.Times(2), ElementsAre(25, 50, 75, 100));
}

TEST(OpenChannelIOStream, AFrameWithoutChangeSendsNothing) {
  OutputRig rig;
  rig.Event(1, 1, 10, 10.5, 10000);  // one step of the byte in ten seconds
  rig.Lights->Flush();
  rig.Advance(10100);
  EXPECT_LT(rig.Packets().size(), 20U);
}

TEST(OpenChannelIOStream, ARepeatBetweenTwoFramesHoldsTheMovesNewestLevels) {
  OutputRig rig;
  rig.Light(1, 1, 1);
  rig.Advance(40);
  rig.Event(1, 2, 0, 100, 20);  // arrives at 60, its next frame is at 65
  rig.Lights->Flush();
  rig.Advance(24);
  EXPECT_THAT(rig.Times(), ElementsAre(0, 63));
  EXPECT_THAT(rig.Values(1), ElementsAre(0, 255));
}

TEST(OpenChannelIOStream, EventsOfMovesUnderWayDoNotWaitBehindFrames) {
  OutputRig rig;
  rig.Event(1, 1, 0, 100, 10000);
  rig.Lights->Flush();
  for (int i = 0; i < 40; ++i) {
    rig.Advance(240 + i % 7);
    const size_t before = rig.Packets().size();
    rig.Light(1, 2, i % 2 == 0 ? 100 : 0);
    EXPECT_EQ(rig.Packets().size(), before + 1) << i;
  }
}

TEST(OpenChannelIOStream, NothingRunsWhileNothingStreams) {
  OutputRig rig;
  rig.Lights->Flush();
  rig.Advance(3600000);
  EXPECT_EQ(rig.Host.EventLoop().Ticks(), 0U);
}

TEST(OpenChannelIOStream, AQuietStreamTicksOnlyToKeepAlive) {
  OutputRig rig;
  rig.Light(1, 1, 100);
  rig.Advance(90000);
  EXPECT_LE(rig.Host.EventLoop().Ticks(), 3U + 100U + 9U);
}

TEST(OpenChannelIOStream, TheStreamEndsWithThreeTerminatedPacketsWhenNoShowFollows) {
  OutputRig rig;
  rig.Light(1, 1, 100);
  rig.Light(2, 1, 100);
  rig.Advance(100);
  rig.Host.Datagrams().ForgetSent();
  rig.Lights->ShowsEnded();
  ASSERT_THAT(rig.Packets(1), SizeIs(3));
  ASSERT_THAT(rig.Packets(2), SizeIs(3));
  for (const auto& packet : rig.Packets()) EXPECT_TRUE(packet.Terminated);
  EXPECT_NE(rig.Packets(1)[0].Sequence, rig.Packets(1)[1].Sequence);
  rig.Host.Datagrams().ForgetSent();
  rig.Advance(60000);
  rig.Lights->ShowsEnded();
  EXPECT_THAT(rig.Host.Datagrams().Sent(), IsEmpty());
}

TEST(OpenChannelIOStream, AStreamThatBeginsAgainGoesOnCounting) {
  OutputRig rig;
  rig.Light(1, 1, 100);
  rig.Lights->ShowsEnded();
  rig.Advance(5000);
  rig.Light(1, 1, 50);
  const auto packets = rig.Packets(1);
  ASSERT_THAT(packets, SizeIs(5));
  for (size_t i = 0; i < packets.size(); ++i) EXPECT_EQ(packets[i].Sequence, static_cast<int32_t>(i) + 1);
  EXPECT_FALSE(packets.back().Terminated);
}

TEST(OpenChannelIOStream, WhatWasHeldBackGoesOutBeforeTheStreamEnds) {
  OutputRig rig;
  for (const double level : {100.0, 50.0, 0.0}) rig.Light(1, 1, level);
  rig.Lights->ShowsEnded();
  const auto packets = rig.Packets(1);
  ASSERT_THAT(packets, SizeIs(6));
  EXPECT_FALSE(packets[2].Terminated);
  EXPECT_EQ(packets[2].Slots[0], 0);
  EXPECT_TRUE(packets[3].Terminated);
}

TEST(OpenChannelIOStream, AMoveUnderWayArrivesBeforeTheStreamEnds) {
  OutputRig rig;
  rig.Event(1, 1, 100, 0, 10000);
  rig.Lights->Flush();
  rig.Lights->ShowsEnded();
  EXPECT_THAT(rig.Values(), ElementsAre(255, 0, 0, 0, 0));
}

TEST(OpenChannelIOStream, TheStreamEndsWhenTheControlGoes) {
  OutputRig rig;
  rig.Light(1, 1, 100);
  rig.Lights.reset();
  ASSERT_THAT(rig.Packets(), SizeIs(4));
  EXPECT_TRUE(rig.Packets().back().Terminated);
}

TEST(OpenChannelIOStream, ARestDoesNotEndTheStream) {
  OutputRig rig;
  rig.Light(1, 1, 100);
  rig.Light(1, 1, 0);
  rig.Advance(10000);
  for (const auto& packet : rig.Packets()) EXPECT_FALSE(packet.Terminated);
  EXPECT_GT(rig.Packets().size(), 10U);
}

}  // namespace
}  // namespace vex
