#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/player/PlayerRig.h"

namespace vex::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

ShowText WholeShow(PlayerRig& rig) {
  rig.Sequences({"song"}, 9999, "song.ogg");
  rig.Sequences({"a", "bg", "end1", "end2"}, 700);
  rig.Media->Lengths["song.ogg"] = 5000;
  ShowText text;
  text.Animation = {"a"};
  text.Songs = {"song"};
  text.Background = {"bg"};
  text.Shutdown = {"end1", "end2"};
  return text;
}

TEST(ShowPlayerShutdown, TheSongPlayingEndsWithAnimationsUnderItThenTheShutdownSequences) {
  PlayerRig rig;
  rig.Give(WholeShow(rig));
  rig.Run(1000);
  rig.Forget();
  rig.Give(nullptr);
  rig.Run(10000);
  EXPECT_EQ(rig.Course().front(), "1 Current show is entering shutdown mode");
  EXPECT_EQ(rig.LinesOf("1 Starting A").size(), 6U);
  EXPECT_EQ(rig.TimeOf("1 Ending Musical: song"), 5002);
  EXPECT_EQ(rig.TimeOf("1 Stopping Animation: a"), 5002);
  EXPECT_EQ(rig.TimeOf("1 Starting Shutdown: end1"), 5003);
  EXPECT_EQ(rig.TimeOf("1 Starting Shutdown: end2"), 5704);
  EXPECT_EQ(rig.TimeOf("1 Stopping Background: bg"), 6404);
  EXPECT_EQ(rig.TimeOf("1 Finished show: eve.shw"), 6405);
}

TEST(ShowPlayerShutdown, EnteringShutdownIsReportedBeforeTheEventIsMarked) {
  PlayerRig rig;
  rig.Give(ShowText{});
  rig.Run(10);
  rig.Forget();
  rig.Give(nullptr);
  EXPECT_THAT(rig.Lines, ElementsAre("1 Current show is entering shutdown mode", "report eve.shw"));
  EXPECT_TRUE(rig.Player->CurrentShow()->Monitoring()->ShuttingDown());
  rig.Forget();
  rig.Give(nullptr);
  EXPECT_THAT(rig.Lines, IsEmpty());
}

TEST(ShowPlayerShutdown, TheNextShowStartsWhenTheCurrentOneHasFinished) {
  PlayerRig rig;
  rig.Sequences({"a"}, 100);
  ShowText text;
  text.Animation = {"a"};
  rig.Give(text);
  rig.Run(1000);
  rig.Forget();
  rig.Give(text, "other.shw");
  EXPECT_TRUE(rig.Player->NextShow());
  rig.Run(100);
  EXPECT_THAT(rig.LinesOf("1 Finished").size(), 1U);
  EXPECT_TRUE(rig.Has("1 Starting show: other.shw"));
  EXPECT_THAT(rig.LinesOf("report"), ElementsAre("report eve.shw", "report", "report other.shw"));
  EXPECT_FALSE(rig.Player->NextShow());
}

TEST(ShowPlayerShutdown, WhatIsStoppedIsRemovedByTheNextWalkAndStoppedOnceMoreInBetween) {
  PlayerRig rig;
  rig.Sequences({"a"}, 100000);
  ShowText text;
  text.Animation = {"a"};
  rig.Give(text);
  rig.Run(1000);
  rig.Forget();
  rig.Give(nullptr);
  rig.Run(100);
  EXPECT_THAT(rig.Course(),
              ElementsAre("1 Current show is entering shutdown mode", "1 Stopping Animation: a",
                          "1 Stopping Animation: a", "1 Ending Animation: a", "1 Finished show: eve.shw"));
}

// A clean-up is music, but no song: it holds no media player, so it is not waited for.
TEST(ShowPlayerShutdown, ACleanUpThatPlaysIsStoppedAndNotWaitedFor) {
  PlayerRig rig;
  rig.Sequences({"song"}, 9999, "song.ogg");
  rig.Sequences({"c"}, 5000);
  rig.Media->Lengths["song.ogg"] = 500;
  ShowText text;
  text.Songs = {"song"};
  text.CleanUp = "c";
  rig.Give(text);
  rig.Run(1000);
  rig.Forget();
  rig.Give(nullptr);
  rig.Run(10);
  EXPECT_THAT(rig.Course(),
              ElementsAre("1 Current show is entering shutdown mode", "1 Stopping Cleanup: c",
                          "1 Stopping Cleanup: c", "1 Ending Cleanup: c", "1 Finished show: eve.shw"));
}

// Of all that is music the first in the list decides, here the clean-up.
TEST(ShowPlayerShutdown, AnInputsSongBehindACleanUpIsNotWaitedFor) {
  PlayerRig rig;
  rig.Sequences({"song"}, 9999, "song.ogg");
  rig.Sequences({"c"}, 5000);
  rig.Sequences({"x"}, 9999, "jingle.ogg");
  rig.Media->Lengths = {{"song.ogg", 500}, {"jingle.ogg", 60000}};
  ShowText text;
  text.Songs = {"song"};
  text.CleanUp = "c";
  text.Groups = "(" + GroupText(false, true, {{"(3,Door,1,0)", {"x"}}}) + ")";
  rig.Give(text);
  rig.Run(1000);
  rig.Press(3);
  rig.Run(10);
  EXPECT_EQ(rig.Player->MediaHolder()->Filename(), "x");
  rig.Give(nullptr);
  rig.Run(10);
  EXPECT_TRUE(rig.Has("1 Finished show: eve.shw"));
  EXPECT_FALSE(rig.Player->MediaHolder());
}

// The first stop pass is made once; what is slow to stop is stopped again by the second one, tick by tick.
TEST(ShowPlayerShutdown, WhatIsSlowToStopIsStoppedUntilItHasEnded) {
  PlayerRig rig;
  rig.Sequences({"a"}, 100000);
  rig.Library["a"].LingerMs = 3;
  ShowText text;
  text.Animation = {"a"};
  rig.Give(text);
  rig.Run(1000);
  rig.Forget();
  rig.Give(nullptr);
  rig.Run(100);
  EXPECT_THAT(rig.Course(),
              ElementsAre("1 Current show is entering shutdown mode", "1 Stopping Animation: a",
                          "1 Stopping Animation: a", "1 Stopping Animation: a", "1 Stopping Animation: a",
                          "1 Ending Animation: a", "1 Finished show: eve.shw"));
}

TEST(NextShow, TheSameShowAgainChangesNothing) {
  PlayerRig rig;
  rig.Give(ShowText{});
  rig.Run(10);
  rig.Forget();
  rig.Give(ShowText{});
  rig.Run(1000);
  EXPECT_THAT(rig.Lines, IsEmpty());
  EXPECT_FALSE(rig.Player->NextShow());
}

TEST(NextShow, AChangedRangeIsTakenOver) {
  PlayerRig rig;
  rig.Give(ShowText{});
  rig.Run(10);
  rig.Forget();
  auto show = PlayerRig::MakeShow(ShowText{});
  PlayerRig::SetRange(*show, DateTime::FromParts(2026, 12, 24, 18), DateTime::FromParts(2026, 12, 24, 23));
  rig.Give(show);
  rig.Run(1000);
  EXPECT_THAT(rig.Lines, ElementsAre("1 Current show's time range has changed"));
  EXPECT_EQ(rig.Player->CurrentShow()->Monitoring()->Range()->EndTime(),
            DateTime::FromParts(2026, 12, 24, 23));
  EXPECT_NE(rig.Player->CurrentShow(), show);
}

TEST(NextShow, ChangedContentsEndTheCurrentShow) {
  PlayerRig rig;
  rig.Give(ShowText{});
  rig.Run(10);
  rig.Forget();
  ShowText text;
  text.Preload = true;
  rig.Give(text);
  rig.Run(1000);
  EXPECT_THAT(rig.Course(), ElementsAre("1 Current show's contents have changed",
                                        "1 Current show is entering shutdown mode",
                                        "1 Finished show: eve.shw", "1 Starting show: eve.shw"));
}

TEST(NextShow, AnotherScheduleTypeIsAnotherShow) {
  PlayerRig rig;
  rig.Give(ShowText{});
  rig.Run(10);
  rig.Forget();
  rig.Give(PlayerRig::MakeShow(ShowText{}, "eve.shw", 1));
  rig.Run(10);
  EXPECT_THAT(rig.Course(), ElementsAre("1 Current show is entering shutdown mode",
                                        "1 Finished show: eve.shw", "1 Starting show: eve.shw"));
}

TEST(NextShow, ALaterOccurrenceOfTheSameShowIsAnotherShow) {
  PlayerRig rig;
  rig.Give(ShowText{});
  rig.Run(10);
  rig.Forget();
  auto show = PlayerRig::MakeShow(ShowText{});
  PlayerRig::SetRange(*show, DateTime::FromParts(2026, 12, 24, 22), DateTime::FromParts(2026, 12, 24, 23));
  rig.Give(show);
  rig.Run(10);
  EXPECT_EQ(rig.Course().front(), "1 Current show is entering shutdown mode");
  EXPECT_EQ(rig.Player->CurrentShow(), show);
}

TEST(NextShow, InShutdownModeTheLastShowGivenIsTheOneThatFollows) {
  PlayerRig rig;
  rig.Give(WholeShow(rig));
  rig.Run(1000);
  rig.Give(nullptr);
  rig.Run(100);
  rig.Give(WholeShow(rig));
  EXPECT_TRUE(rig.Player->NextShow());
  rig.Give(nullptr);
  EXPECT_FALSE(rig.Player->NextShow());
  EXPECT_EQ(rig.LinesOf("1 Current").size(), 1U);
}

TEST(NextShow, ClearsTheTriggersOfTheCurrentShow) {
  PlayerRig rig;
  rig.Sequences({"door"});
  ShowText text;
  text.Groups = "(" + GroupText(false, false, {{"(3,Door,1,0)", {"door"}}}) + ")";
  rig.Give(text);
  rig.Run(10);
  rig.Forget();
  rig.Give(nullptr);
  EXPECT_THAT(rig.Lines, ElementsAre("1 Clearing triggers", "io clearTriggers",
                                     "1 Current show is entering shutdown mode", "report eve.shw"));
  rig.Run(10);
  EXPECT_TRUE(rig.Has("1 Finished show: eve.shw"));
  EXPECT_EQ(rig.LinesOf("io clearTriggers").size(), 1U);
}

TEST(ShowPlayerEnd, DestroyingThePlayerReportsNoShowAndStopsTheMedia) {
  PlayerRig rig;
  rig.Give(WholeShow(rig));
  rig.Run(1000);
  rig.Forget();
  rig.Player.reset();
  EXPECT_THAT(rig.Lines, ElementsAre("report", "media stop"));
  EXPECT_FALSE(rig.ShowTimer->Enabled());
  rig.Run(1000);
}

}  // namespace
}  // namespace vex::test
