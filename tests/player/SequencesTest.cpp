#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/player/PlayerRig.h"

namespace vex::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(InitControls, ConfiguresAndOpensTheNetworksAndClearsTheTriggers) {
  PlayerRig rig;
  rig.Settings(
      "Windows Registry Editor Version 5.00\r\n"
      "[HKEY_CURRENT_USER\\Software\\Brillara\\Shared\\Network]\r\n"
      "\"VexSpeed\"=dword:00000003\r\n\"VexOldMCP\"=dword:00000000\r\n\"NetworkBrillara\"=dword:00000004\r\n"
      "[HKEY_CURRENT_USER\\Software\\Brillara\\Shared\\Network\\AuxB]\r\n\"NetworkBrillara\"=dword:"
      "00000009\r\n");
  rig.MakePlayer();
  EXPECT_THAT(rig.Lines, ElementsAre("io configureValue 0 3", "io configureFlag 0 1", "io openNetwork 0 4",
                                     "io configureValue 1 2", "io configureFlag 1 1", "io openNetwork 1 0",
                                     "io configureValue 2 2", "io configureFlag 2 1", "io openNetwork 2 9",
                                     "io configureValue 3 2", "io configureFlag 3 1", "io openNetwork 3 0",
                                     "io clearTriggers"));
  EXPECT_EQ(rig.ShowTimer->Interval(), 1);
  EXPECT_FALSE(rig.ShowTimer->Enabled());
}

TEST(InitControls, PassesOnWhatTheControlRaises) {
  PlayerRig rig;
  rig.Lights->FailOpen = "port in use";
  try {
    rig.MakePlayer();
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Number, 8005);
  }
}

TEST(StartNextQueued, TheMainNetworksAreOpenedByTheSecondStartOfASequence) {
  PlayerRig rig;
  rig.Sequences({"a"}, 1000);
  rig.Library["a"].Networks = {NetworkKind::Main};
  ShowText text;
  text.Animation = {"a"};
  rig.Give(text);
  rig.Run(500);
  EXPECT_THAT(rig.LinesOf("io openNetwork 0 1 1"), IsEmpty());
  rig.Run(5000);
  EXPECT_THAT(rig.LinesOf("io openNetwork 0 1 1").size(), 1U);
  EXPECT_THAT(rig.LinesOf("io openNetwork 3 0 1").size(), 1U);
}

TEST(StartNextQueued, X10AndCourserAreOpenedByTheFirstThatUsesThemOnceARun) {
  PlayerRig rig;
  rig.Sequences({"a"}, 1000);
  rig.Library["a"].Networks = {NetworkKind::X10, NetworkKind::Courser};
  ShowText text;
  text.Animation = {"a"};
  rig.Give(text);
  rig.Run(500);
  EXPECT_THAT(rig.LinesOf("io openX10"), ElementsAre("io openX10 0"));
  EXPECT_THAT(rig.LinesOf("io openCourser"), ElementsAre("io openCourser 0"));
  rig.Give(text, "again.shw");
  rig.Run(5000);
  EXPECT_EQ(rig.LinesOf("io openX10").size(), 1U);
}

TEST(StartNextQueued, TheMainNetworksAreOpenedForPlayOnceARun) {
  PlayerRig rig;
  rig.Sequences({"a"}, 100);
  rig.Library["a"].Networks = {NetworkKind::Main};
  ShowText text;
  text.Animation = {"a"};
  rig.Give(text);
  rig.Run(500);
  rig.Give(text, "again.shw");
  rig.Run(1000);
  EXPECT_TRUE(rig.Has("1 Starting show: again.shw"));
  EXPECT_EQ(rig.LinesOf("io openNetwork 0 1 1").size(), 1U);
}

TEST(StartNextQueued, RunsTheShellCommandWithItsWindowStyle) {
  PlayerRig rig;
  rig.Sequences({"a"}, 100000);
  rig.Library["a"].ShellCommand = std::string("notify-send lights");
  ShowText text;
  text.Animation = {"a"};
  rig.Give(text);
  rig.Run(500);
  ASSERT_EQ(rig.Host.Processes().Starts().size(), 1U);
  EXPECT_EQ(rig.Host.Processes().Starts()[0].CommandLine, "notify-send lights");
  EXPECT_EQ(rig.Host.Processes().Starts()[0].WindowStyle, 4);
}

TEST(StartNextQueued, AnEmptyCommandLineRunsNothing) {
  PlayerRig rig;
  rig.Sequences({"a"}, 100000);
  rig.Library["a"].ShellCommand = std::string();
  ShowText text;
  text.Animation = {"a"};
  rig.Give(text);
  rig.Run(500);
  EXPECT_TRUE(rig.Host.Processes().Starts().empty());
}

TEST(StartNextQueued, ASequenceThatCannotBeLoadedEndsTheTickAndIsGoneByTheNext) {
  PlayerRig rig;
  ShowText text;
  text.Startup = {"missing"};
  rig.Give(text);
  rig.Run(100);
  EXPECT_THAT(rig.Course(),
              ElementsAre("1 Starting show: eve.shw", "1 Loading sequence: missing Startup: missing",
                          "3 m_ShowTimer_Timer Error: File not found", "1 Ending Startup: missing"));
}

TEST(StartNextQueued, ASequenceThatFailedToLoadIsNeverLoadedAgainAndEndsInTheTickThatStartsIt) {
  PlayerRig rig;
  rig.Sequences({"good"}, 1000);
  ShowText text;
  text.Animation = {"missing", "good"};
  rig.Give(text);
  rig.Run(1100);
  rig.Forget();
  rig.Run(50);
  EXPECT_THAT(rig.LinesOf("1"), IsEmpty());  // "good" plays on
  rig.Run(1000);
  EXPECT_THAT(rig.LinesOf("1 Loading"), IsEmpty());
  EXPECT_THAT(rig.Lines,
              ElementsAre("1 Ending Animation: good", "0 Queueing Animation: missing",
                          "seq prepare missing lightsoff", "1 Starting Animation: missing",
                          "seq start missing", "1 Ending Animation: missing", "0 Queueing Animation: good",
                          "seq prepare good lightsoff", "1 Starting Animation: good", "seq start good"));
}

TEST(StartNextQueued, AMissingEngineFailsEachLoad) {
  PlayerRig rig;
  rig.FailNewSequence = true;
  ShowText text;
  text.Startup = {"a"};
  text.Animation = {"b"};
  rig.Give(text);
  rig.Run(10);
  EXPECT_EQ(rig.LinesOf("3")[0], "3 m_ShowTimer_Timer Error: ActiveX component can't create object");
  EXPECT_TRUE(rig.Has("1 Ending Startup: a"));
}

TEST(StartNextQueued, AFailedSongIsLoggedDroppedAndTheNextOneIsPicked) {
  PlayerRig rig;
  rig.Sequences({"m1", "m2"}, 9999, "song.ogg");
  rig.Sequences({"c"}, 100);
  rig.Library["m1"].FailSync = "lost";
  ShowText text;
  text.Songs = {"m1", "m2"};
  text.CleanUp = "c";
  rig.Give(text);
  rig.Run(2500);
  EXPECT_TRUE(rig.Has("3 ERROR PLAYING SEQUENCE (lost):"));
  EXPECT_TRUE(rig.Has("1 Starting Musical: m2"));
  EXPECT_TRUE(rig.Has("3 ERROR WITH SEQUENCE (lost) Musical: m1"));
  // Dropped, so without a clean-up in between the next song follows.
  const auto dropped =
      std::find(rig.Lines.begin(), rig.Lines.end(), "3 ERROR WITH SEQUENCE (lost) Musical: m1");
  EXPECT_EQ(*(dropped + 1), "0 Queueing Musical: m2");
}

TEST(StartNextQueued, ASequenceWithoutANameIsMarkedAndEnds) {
  PlayerRig rig;
  rig.Sequences({"a"}, 100);
  ShowText text;
  text.Animation = {"", "a"};
  rig.Give(text);
  rig.Run(150);
  EXPECT_TRUE(rig.Has("1 Starting Animation: "));
  EXPECT_TRUE(rig.Has("1 Ending Animation: "));
  EXPECT_TRUE(rig.Has("1 Starting Animation: a"));
  EXPECT_TRUE(rig.Has("3 ERROR WITH SEQUENCE (No filename specified) Animation: "));
}

TEST(StartNextQueued, AFailingPrepareIsTheTicksError) {
  PlayerRig rig;
  rig.Sequences({"a"}, 100);
  rig.Library["a"].FailPrepare = "cannot prepare";
  ShowText text;
  text.Startup = {"a"};
  rig.Give(text);
  rig.Run(10);
  EXPECT_THAT(rig.LinesOf("3"), ElementsAre("3 m_ShowTimer_Timer Error: cannot prepare"));
}

TEST(CheckSequence, AFailureWhilePlayingIsLoggedWithoutTheSequenceAndEndsIt) {
  PlayerRig rig;
  rig.Sequences({"m1"}, 9999, "song.ogg");
  rig.Library["m1"].FailSync = "lost";
  ShowText text;
  text.Songs = {"m1"};
  text.Delay = 10;
  rig.Give(text);
  rig.Run(100);
  EXPECT_TRUE(rig.Has("3 ERROR PLAYING SEQUENCE (lost):"));
  EXPECT_TRUE(rig.Has("1 Ending Musical: m1"));
  EXPECT_TRUE(rig.Has("media stop"));
  EXPECT_FALSE(rig.Player->MediaHolder());
}

TEST(CheckSequence, DueEventsGoToTheLightsAndAreFlushedOnceAPass) {
  PlayerRig rig;
  rig.Sequences({"m1"}, 9999, "song.ogg");
  rig.Library["m1"].Events = {{0, 1, 3, 0, 100, "fade", 1.0, 0, 500},
                              {0, 1, 4, 100, 0, "fade", 2.0, 0, 500},
                              {0, 2, 1, 50, 50, "set", 0.0, 250, 250},
                              {0, 7, 1, 50, 50, "set", 1.0, 300, 300},
                              {0, 1, 9, 50, 50, "set", 1.0, 300, 300}};
  rig.Lights->RefusedUnit = 7;
  rig.Lights->RefusedCircuit = 9;
  ShowText text;
  text.Songs = {"m1"};
  rig.Give(text);
  rig.Run(900);
  EXPECT_THAT(rig.LinesOf("io "),
              ElementsAre("io configureValue 0 2", "io configureFlag 0 0", "io openNetwork 0 1",
                          "io configureValue 1 2", "io configureFlag 1 0", "io openNetwork 1 0",
                          "io configureValue 2 2", "io configureFlag 2 0", "io openNetwork 2 0",
                          "io configureValue 3 2", "io configureFlag 3 0", "io openNetwork 3 0",
                          "io clearTriggers", "io send 0 1 3 0->100 fade 100% 0..500 takes 500",
                          "io send 0 1 4 100->0 fade 200% 0..500 takes 250", "io flush",
                          "io send 0 2 1 50->50 set 0% 250..250 takes 1", "io flush", "io flush"));
}

TEST(CheckSequence, ANegativeRateTakesItsPlaceByItsSize) {
  PlayerRig rig;
  rig.Sequences({"m1"}, 9999, "song.ogg");
  rig.Library["m1"].Events = {{0, 1, 1, 0, 100, "fade", 0.000001, 0, 100}};
  ShowText text;
  text.Songs = {"m1"};
  rig.Give(text);
  rig.Run(900);
  EXPECT_TRUE(rig.Has("io send 0 1 1 0->100 fade 0% 0..100 takes 10000000"));
}

// Letting go of the media player is part of the check, and fails as the rest of it.
TEST(CheckSequence, AMediaPlayerThatCannotBeStoppedIsAFailureOfTheSequence) {
  PlayerRig rig;
  rig.Sequences({"m1"}, 9999, "song.ogg");
  rig.Media->FailStop = "stuck";
  ShowText text;
  text.Songs = {"m1"};
  text.Delay = 10;
  rig.Give(text);
  rig.Run(900);
  rig.Forget();
  rig.Run(300);
  EXPECT_THAT(rig.Lines, ElementsAre("seq stop m1", "media stop",
                                     "3 ERROR PLAYING SEQUENCE (stuck):", "1 Ending Musical: m1",
                                     "1 Delaying between Musical sequences for 10 seconds"));
  EXPECT_FALSE(rig.Player->MediaHolder());
  rig.Media->FailStop.clear();
}

// A device that cannot say when it must be looked at is looked at in every tick.
TEST(CheckSequence, AHintThatFailsIsNoFailure) {
  PlayerRig rig;
  rig.Sequences({"a"}, 1000);
  rig.Library["a"].FailHint = "cannot tell";
  ShowText text;
  text.Animation = {"a"};
  rig.Give(text);
  rig.Run(1500);
  EXPECT_EQ(rig.TimeOf("1 Ending Animation: a"), 1002);
  EXPECT_THAT(rig.LinesOf("3"), IsEmpty());
}

}  // namespace
}  // namespace vex::test
