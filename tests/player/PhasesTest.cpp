#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/player/PlayerRig.h"

namespace vex::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ShowPlayerPhases, AnEmptyShowStartsAndGoesOnUntilItIsReplaced) {
  PlayerRig rig;
  rig.Give(ShowText{});
  rig.Run(1000);
  EXPECT_THAT(rig.Course(), ElementsAre("1 Starting show: eve.shw"));
  EXPECT_TRUE(rig.Player->CurrentShow());
  rig.Give(nullptr);
  rig.Run(1000);
  EXPECT_THAT(rig.Course(),
              ElementsAre("1 Starting show: eve.shw", "1 Current show is entering shutdown mode",
                          "1 Finished show: eve.shw"));
  EXPECT_FALSE(rig.Player->CurrentShow());
}

TEST(ShowPlayerPhases, TheFirstTickThatFindsNoShowDisablesTheTimer) {
  PlayerRig rig;
  rig.Give(nullptr);
  EXPECT_TRUE(rig.ShowTimer->Enabled());
  rig.Run(1);
  EXPECT_FALSE(rig.ShowTimer->Enabled());
  EXPECT_THAT(rig.LinesOf("0"), ElementsAre("0 Starting next show", "0 No current show"));
  EXPECT_EQ(rig.Lights->ShowsEndedCount, 1);
}

TEST(ShowPlayerPhases, StartupSequencesPlayOneAfterAnother) {
  PlayerRig rig;
  rig.Sequences({"s1", "s2"}, 1000);
  rig.Sequences({"a"}, 500);
  ShowText text;
  text.Startup = {"s1", "s2"};
  text.Animation = {"a"};
  rig.Give(text);
  rig.Run(5000);
  EXPECT_EQ(rig.TimeOf("1 Starting Startup: s1"), 2);
  EXPECT_EQ(rig.TimeOf("1 Ending Startup: s1"), 1002);
  EXPECT_EQ(rig.TimeOf("1 Starting Startup: s2"), 1003);
  EXPECT_EQ(rig.TimeOf("1 Ending Startup: s2"), 2003);
  EXPECT_EQ(rig.TimeOf("1 Starting Animation: a"), 2004);
}

TEST(ShowPlayerPhases, AShowWithOnlyABackgroundLoopsItUntilShutdown) {
  PlayerRig rig;
  rig.Sequences({"bg"}, 100);
  ShowText text;
  text.Background = {"bg"};
  rig.Give(text);
  rig.Run(10000);
  rig.Give(nullptr);
  rig.Run(100);
  EXPECT_THAT(
      rig.Course(),
      ElementsAre("1 Starting show: eve.shw", "1 Loading sequence: bg Background: bg",
                  "1 Starting Background: bg", "1 Current show is entering shutdown mode",
                  "1 Stopping Background: bg", "1 Ending Background: bg", "1 Finished show: eve.shw"));
  EXPECT_TRUE(rig.Has("seq prepare bg loop lightsoff"));
}

TEST(ShowPlayerPhases, AnimationsCycleOneAfterAnother) {
  PlayerRig rig;
  rig.Sequences({"a1", "a2"}, 1000);
  ShowText text;
  text.Animation = {"a1", "a2"};
  rig.Give(text);
  rig.Run(3500);
  EXPECT_THAT(rig.LinesOf("1 Starting A"),
              ElementsAre("1 Starting Animation: a1", "1 Starting Animation: a2", "1 Starting Animation: a1",
                          "1 Starting Animation: a2"));
  EXPECT_THAT(rig.LinesOf("1 Loading"),
              ElementsAre("1 Loading sequence: a1 Animation: a1", "1 Loading sequence: a2 Animation: a2"));
}

TEST(ShowPlayerPhases, AnimationsOfTypeTwoLoopSideBySide) {
  PlayerRig rig;
  rig.Sequences({"a1", "a2"}, 1000);
  ShowText text;
  text.Animation = {"a1", "a2"};
  text.AnimationType = 2;
  rig.Give(text);
  rig.Run(5000);
  EXPECT_THAT(rig.LinesOf("1 Starting A"),
              ElementsAre("1 Starting Animation: a1", "1 Starting Animation: a2"));
  EXPECT_EQ(rig.Player->Playing().Count(), 2);
}

TEST(ShowPlayerPhases, SongsPlayInListOrderRoundAndRound) {
  PlayerRig rig;
  rig.Sequences({"m1", "m2"}, 9999, "song.ogg");
  ShowText text;
  text.Songs = {"m1", "m2"};
  rig.Give(text);
  rig.Run(3500);
  EXPECT_THAT(rig.LinesOf("1 Starting M"), ElementsAre("1 Starting Musical: m1", "1 Starting Musical: m2",
                                                       "1 Starting Musical: m1", "1 Starting Musical: m2"));
  EXPECT_THAT(rig.LinesOf("media").size(), 11U);  // open, play and stop of three songs, open and play of one
}

TEST(ShowPlayerPhases, AMediaSequenceIsTakenThroughItsStepsInOrder) {
  PlayerRig rig;
  rig.Sequences({"m1"}, 9999, "song.ogg");
  ShowText text;
  text.Songs = {"m1"};
  rig.Give(text);
  rig.Run(100);
  Transcript devices;
  for (const auto& szLine : rig.Lines) {
    if (szLine.rfind("io", 0) != 0 && szLine.rfind("report", 0) != 0) devices.push_back(szLine);
  }
  EXPECT_THAT(devices,
              ElementsAre("0 Starting next show", "1 Starting show: eve.shw", "0 Queueing Musical: m1",
                          "1 Loading sequence: m1 Musical: m1", "seq load m1",
                          "seq prepare m1 media lightsoff", "media open song.ogg", "seq sync from 0 m1",
                          "media play", "1 Starting Musical: m1", "seq start m1"));
}

TEST(ShowPlayerPhases, ASongEndsWithItsMediaAndIsStopped) {
  PlayerRig rig;
  rig.Sequences({"m1"}, 9999, "song.ogg");
  ShowText text;
  text.Songs = {"m1"};
  text.Delay = 100;
  rig.Give(text);
  rig.Run(100);
  rig.Forget();
  rig.Run(2000);
  EXPECT_THAT(rig.Lines, ElementsAre("seq stop m1", "media stop", "1 Ending Musical: m1",
                                     "1 Delaying between Musical sequences for 100 seconds"));
  EXPECT_FALSE(rig.Player->MediaHolder());
}

TEST(ShowPlayerPhases, CleanUpPlaysAfterEverySongThenTheDelay) {
  PlayerRig rig;
  rig.Sequences({"m1", "m2"}, 9999, "song.ogg");
  rig.Sequences({"c"}, 300);
  ShowText text;
  text.Songs = {"m1", "m2"};
  text.CleanUp = "c";
  text.Delay = 2;
  rig.Give(text);
  rig.Run(5000);
  EXPECT_THAT(rig.LinesOf("1 Starting "),
              ElementsAre("1 Starting show: eve.shw", "1 Starting Musical: m1", "1 Starting Cleanup: c",
                          "1 Starting Musical: m2", "1 Starting Cleanup: c"));
  EXPECT_EQ(rig.TimeOf("1 Delaying between Musical sequences for 2 seconds"), 1303);
  // 1.303 + 2 rounds to second 3.
  EXPECT_EQ(rig.TimeOf("0 Delay finished"), 3000);
  EXPECT_EQ(rig.TimeOf("1 Starting Musical: m2"), 3001);
}

TEST(ShowPlayerPhases, WithoutADelayTheNextSongIsQueuedInTheTickInWhichTheCleanUpEnds) {
  PlayerRig rig;
  rig.Sequences({"m1"}, 9999, "song.ogg");
  rig.Sequences({"c"}, 300);
  ShowText text;
  text.Songs = {"m1"};
  text.CleanUp = "c";
  rig.Give(text);
  rig.Run(1400);
  const auto& lines = rig.Lines;
  const auto end = std::find(lines.begin(), lines.end(), "1 Ending Cleanup: c");
  ASSERT_NE(end, lines.end());
  EXPECT_EQ(*(end + 1), "0 Queueing Musical: m1");
  EXPECT_EQ(rig.TimeOf("1 Ending Cleanup: c"), 1303);
}

TEST(ShowPlayerPhases, ANegativeDelayIsNone) {
  PlayerRig rig;
  rig.Sequences({"m1"}, 9999, "song.ogg");
  ShowText text;
  text.Songs = {"m1"};
  text.Delay = -5;
  rig.Give(text);
  rig.Run(2500);
  EXPECT_EQ(rig.LinesOf("1 Starting M").size(), 3U);
  EXPECT_THAT(rig.LinesOf("1 Delaying"), IsEmpty());
}

TEST(ShowPlayerPhases, TheDelaysEndIsRoundedHalvesToEven) {
  PlayerRig rig;
  rig.Sequences({"m1"}, 9999, "song.ogg");
  rig.Media->Lengths["song.ogg"] = 498;  // from 2 ms to 500 ms
  ShowText text;
  text.Songs = {"m1"};
  text.Delay = 2;
  rig.Give(text);
  rig.Run(4000);
  EXPECT_EQ(rig.TimeOf("1 Delaying between Musical sequences for 2 seconds"), 500);
  EXPECT_EQ(rig.TimeOf("0 Delay finished"), 2000);  // 64800.5 + 2 = 64802.5 becomes 64802
}

TEST(ShowPlayerPhases, TheDelaysEndIsNotCutOff) {
  PlayerRig rig;
  rig.Sequences({"m1"}, 9999, "song.ogg");
  rig.Media->Lengths["song.ogg"] = 1498;  // from 2 ms to 1500 ms
  ShowText text;
  text.Songs = {"m1"};
  text.Delay = 2;
  rig.Give(text);
  rig.Run(5000);
  EXPECT_EQ(rig.TimeOf("0 Delay finished"), 4000);  // 64801.5 + 2 = 64803.5 becomes 64804
}

TEST(ShowPlayerPhases, ADelayThatWouldEndAfterMidnightNeverEnds) {
  PlayerRig rig;
  rig.Host.Clock().SetWallClock(DateTime::FromParts(2026, 12, 24, 23, 59, 58));
  rig.Sequences({"m1"}, 9999, "song.ogg");
  rig.Sequences({"a"}, 600000);
  ShowText text;
  text.Songs = {"m1"};
  text.Animation = {"a"};
  text.Delay = 2;
  rig.Give(text);
  rig.Run(int64_t{23} * 3600 * 1000);
  EXPECT_EQ(rig.LinesOf("1 Starting M").size(), 1U);
  EXPECT_GT(rig.LinesOf("1 Starting A").size(), 100U);
  rig.Give(nullptr);
  rig.Run(1000);
  EXPECT_TRUE(rig.Has("1 Finished show: eve.shw"));
}

TEST(ShowPlayerPhases, ADelayWaitsForTheWallClockAlsoWhenItIsSet) {
  PlayerRig rig;
  rig.Sequences({"m1"}, 9999, "song.ogg");
  ShowText text;
  text.Songs = {"m1"};
  text.Delay = 600;
  rig.Give(text);
  rig.Run(10000);
  rig.Host.Clock().SetWallClock(DateTime::FromParts(2026, 12, 24, 18, 30, 0));
  rig.Run(5);
  EXPECT_EQ(rig.LinesOf("1 Starting M").size(), 2U);
}

TEST(ShowPlayerPhases, ADelayGetsLongerWhenTheClockIsSetBack) {
  PlayerRig rig;
  rig.Sequences({"m1"}, 9999, "song.ogg");
  ShowText text;
  text.Songs = {"m1"};
  text.Delay = 60;
  rig.Give(text);
  rig.Run(10000);
  rig.Host.Clock().SetWallClock(DateTime::FromParts(2026, 12, 24, 17, 30, 0));
  rig.Run(29 * 60 * 1000);
  EXPECT_EQ(rig.LinesOf("1 Starting M").size(), 1U);
  rig.Run(3 * 60 * 1000);
  EXPECT_EQ(rig.LinesOf("1 Starting M").size(), 2U);
}

TEST(ShowPlayerPhases, AnIndexBeyondTheEndWrapsToTheFirst) {
  PlayerRig rig;
  rig.Sequences({"a"}, 100);
  ShowText text;
  text.Animation = {"a"};
  rig.Give(text);
  rig.Run(1000);
  EXPECT_GE(rig.LinesOf("1 Starting A").size(), 9U);
}

TEST(ShowPlayerPhases, AMediaPlayerIsGotReadyForAShowWithSongsOnly) {
  PlayerRig rig;
  rig.Sequences({"a"}, 100);
  ShowText text;
  text.Animation = {"a"};
  rig.Give(text);
  rig.Run(10);
  EXPECT_EQ(rig.Media->ExpectedCount, 0);
  text.Songs = {"m"};
  rig.Give(text, "songs.shw");
  rig.Run(10);
  EXPECT_EQ(rig.Media->ExpectedCount, 1);
}

TEST(ShowPlayerStartMode, TypeOneWaitsWithoutBackground) {
  PlayerRig rig;
  rig.Sequences({"bg", "a"}, 100);
  ShowText text;
  text.Background = {"bg"};
  text.Animation = {"a"};
  text.StartupType = 1;
  text.StartupTrigger = "(3,Door,1,0)";
  rig.Give(text);
  rig.Run(5000);
  EXPECT_THAT(rig.Course(), ElementsAre("1 Starting show: eve.shw", "1 Registering startup trigger"));
  rig.Press(3);
  rig.Run(50);
  EXPECT_TRUE(rig.Has("1 Startup trigger detected"));
  EXPECT_TRUE(rig.Has("1 Starting Background: bg"));
  EXPECT_TRUE(rig.Has("1 Starting Animation: a"));
}

TEST(ShowPlayerStartMode, TypeTwoWaitsWithBackground) {
  PlayerRig rig;
  rig.Sequences({"bg", "a"}, 100);
  ShowText text;
  text.Background = {"bg"};
  text.Animation = {"a"};
  text.StartupType = 2;
  text.StartupTrigger = "(3,Door,1,0)";
  rig.Give(text);
  rig.Run(5000);
  EXPECT_TRUE(rig.Has("1 Starting Background: bg"));
  EXPECT_FALSE(rig.Has("1 Starting Animation: a"));
  rig.Press(3);
  rig.Run(50);
  EXPECT_EQ(rig.LinesOf("1 Starting B").size(), 1U);
  EXPECT_TRUE(rig.Has("1 Starting Animation: a"));
}

TEST(ShowPlayerStartMode, AnyOtherTypeStartsAtOnceAndStillKnowsItsTrigger) {
  PlayerRig rig;
  rig.Sequences({"a"}, 100);
  ShowText text;
  text.Animation = {"a"};
  text.StartupType = 7;
  text.StartupTrigger = "(3,Door,1,0)";
  rig.Give(text);
  rig.Run(50);
  EXPECT_TRUE(rig.Has("1 Registering startup trigger"));
  EXPECT_TRUE(rig.Has("1 Starting Animation: a"));
  rig.Press(3);
  EXPECT_TRUE(rig.Has("1 Startup trigger detected"));
}

TEST(ShowPlayerStartMode, TypeZeroDoesNotRegisterItsTrigger) {
  PlayerRig rig;
  ShowText text;
  text.StartupTrigger = "(3,Door,1,0)";
  rig.Give(text);
  rig.Run(50);
  EXPECT_FALSE(rig.Has("1 Registering startup trigger"));
}

TEST(ShowPlayerStartMode, ATypeWithoutTriggerStartsAtOnce) {
  PlayerRig rig;
  rig.Sequences({"a"}, 100);
  ShowText text;
  text.Animation = {"a"};
  text.StartupType = 1;
  rig.Give(text);
  rig.Run(50);
  EXPECT_TRUE(rig.Has("1 Starting Animation: a"));
}

TEST(ShowPlayerStartMode, AShowThatNeverSawItsTriggerEndsWithoutShutdownSequences) {
  PlayerRig rig;
  rig.Sequences({"bg", "end"}, 100);
  ShowText text;
  text.Background = {"bg"};
  text.Shutdown = {"end"};
  text.StartupType = 2;
  text.StartupTrigger = "(3,Door,1,0)";
  rig.Give(text);
  rig.Run(1000);
  rig.Give(nullptr);
  rig.Run(1000);
  EXPECT_TRUE(rig.Has("1 Clearing triggers"));
  EXPECT_TRUE(rig.Has("1 Finished show: eve.shw"));
  EXPECT_FALSE(rig.Has("1 Starting Shutdown: end"));
}

}  // namespace
}  // namespace vex::test
