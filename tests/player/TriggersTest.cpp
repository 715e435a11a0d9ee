#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/player/PlayerRig.h"

namespace vex::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const char* const Door = "(3,Door,1,0)";
const char* const Bell = "(4,Bell,1,0)";

ShowText WithGroup(bool boolIndependent, bool boolInterruptible, const std::vector<GroupEntry>& entries) {
  ShowText text;
  text.Groups = "(" + GroupText(boolIndependent, boolInterruptible, entries) + ")";
  return text;
}

class Triggers : public testing::Test {
 protected:
  Triggers() { rig.Sequences({"x", "y", "z"}, 1000); }

  void Begin(const ShowText& text) {
    rig.Give(text);
    rig.Run(10);
    rig.Forget();
  }

  PlayerRig rig;
};

TEST_F(Triggers, InteractiveOnesAreRegisteredWhenTheMainPhaseFirstRuns) {
  rig.Sequences({"s"}, 500);
  ShowText text = WithGroup(false, false, {{Door, {"x"}}, {Bell, {"y"}}});
  text.Startup = {"s"};
  rig.Give(text);
  rig.Run(400);
  EXPECT_FALSE(rig.Has("1 Registering interactive triggers"));
  rig.Press(3, "Door");
  rig.Run(1000);
  EXPECT_TRUE(rig.Has("1 Trigger detected: Door"));
  EXPECT_FALSE(rig.Has("1 Starting Interactive: x"));
  EXPECT_EQ(rig.LinesOf("1 Registering").size(), 1U);
  EXPECT_THAT(rig.LinesOf("io registerTrigger"),
              ElementsAre("io registerTrigger 0 1 3", "io registerTrigger 0 1 4"));
}

TEST_F(Triggers, APressPlaysTheSequenceOfItsEntryOnly) {
  Begin(WithGroup(false, false, {{Door, {"x"}}, {Bell, {"y"}}}));
  rig.Press(4, "Bell");
  rig.Run(10);
  EXPECT_THAT(rig.Course(), ElementsAre("1 Trigger detected: Bell", "1 Loading sequence: y Interactive: y",
                                        "1 Starting Interactive: y"));
}

TEST_F(Triggers, ASecondPressInAJukeboxIsDroppedWhileItPlays) {
  Begin(WithGroup(false, false, {{Door, {"x", "y"}}}));
  rig.Press(3);
  rig.Run(100);
  rig.Press(3);
  rig.Run(100);
  EXPECT_EQ(rig.LinesOf("1 Starting").size(), 1U);
  EXPECT_EQ(rig.LinesOf("0 Queueing").size(), 2U);
  EXPECT_THAT(rig.LinesOf("seq stop"), IsEmpty());
  rig.Run(1000);
  rig.Press(3);
  rig.Run(10);
  EXPECT_EQ(rig.LinesOf("1 Starting I").back(), "1 Starting Interactive: x");
}

TEST_F(Triggers, ASecondPressInASoundboardStopsTheFirstAndTakesTheNextInTurn) {
  Begin(WithGroup(false, true, {{Door, {"x", "y"}}}));
  rig.Press(3);
  rig.Run(100);
  rig.Press(3);
  rig.Run(100);
  EXPECT_TRUE(rig.Has("seq stop x"));
  EXPECT_THAT(rig.LinesOf("1 Starting"),
              ElementsAre("1 Starting Interactive: x", "1 Starting Interactive: y"));
}

TEST_F(Triggers, TheSameSequencePressedAgainInASoundboardStartsAgain) {
  Begin(WithGroup(false, true, {{Door, {"x"}}}));
  rig.Press(3);
  rig.Run(100);
  rig.Press(3);
  rig.Run(5000);
  EXPECT_EQ(rig.LinesOf("1 Starting").size(), 2U);
  // It stood in the playing list twice, once for each start.
  EXPECT_EQ(rig.LinesOf("1 Ending").size(), 2U);
  EXPECT_EQ(rig.TimeOf("1 Ending Interactive: x"), 1111);
}

TEST_F(Triggers, AMagicToyPlaysAllOfATriggerAtOnceAndStopsTheRestOfItsGroup) {
  Begin(WithGroup(true, true, {{Door, {"x", "y"}}, {Bell, {"z"}}}));
  rig.Press(3);
  rig.Run(100);
  EXPECT_THAT(rig.LinesOf("1 Starting"),
              ElementsAre("1 Starting Interactive: x", "1 Starting Interactive: y"));
  rig.Forget();
  rig.Press(4);
  EXPECT_THAT(rig.LinesOf("seq stop"), ElementsAre("seq stop x", "seq stop y"));
  rig.Run(100);
  EXPECT_THAT(rig.Course(),
              ElementsAre("1 Trigger detected: Button", "1 Loading sequence: z Interactive: z",
                          "1 Starting Interactive: z", "1 Ending Interactive: x", "1 Ending Interactive: y"));
}

TEST_F(Triggers, AnIndependentGroupThatMayNotBeInterruptedDropsAllButTheFirst) {
  Begin(WithGroup(true, false, {{Door, {"x", "y"}}}));
  rig.Press(3);
  rig.Run(100);
  EXPECT_THAT(rig.LinesOf("1 Starting"), ElementsAre("1 Starting Interactive: x"));
}

TEST_F(Triggers, OfASequenceTwiceInOneListTheFirstRunIsStoppedByTheSecond) {
  Begin(WithGroup(true, true, {{Door, {"x", "y", "x"}}}));
  rig.Press(3);
  rig.Run(100);
  EXPECT_THAT(rig.LinesOf("1 Starting"), ElementsAre("1 Starting Interactive: x", "1 Starting Interactive: y",
                                                     "1 Starting Interactive: x"));
  EXPECT_THAT(rig.LinesOf("seq stop"), ElementsAre("seq stop x"));
}

// The song comes first in the playing list and has to go; the sequence of the group behind it may not.
TEST_F(Triggers, WhatHasBeenStoppedStaysStoppedWhenTheNewSequenceIsDroppedAfterAll) {
  rig.Sequences({"song"}, 9999, "song.ogg");
  rig.Sequences({"y"}, 9999, "jingle.ogg");
  rig.Media->Lengths["song.ogg"] = 60000;
  ShowText text = WithGroup(false, false, {{Door, {"x", "y"}}});
  text.Songs = {"song"};
  text.Delay = 30;
  Begin(text);
  rig.Press(3);
  rig.Run(100);
  ASSERT_TRUE(rig.Has("1 Starting Interactive: x"));
  rig.Forget();
  rig.Press(3);
  rig.Run(100);
  EXPECT_THAT(rig.Lines,
              ElementsAre("1 Trigger detected: Button", "0 Queueing Interactive: y",
                          "1 Loading sequence: y Interactive: y", "seq load y", "seq stop song", "media stop",
                          "1 Ending Musical: song", "1 Delaying between Musical sequences for 30 seconds"));
}

TEST_F(Triggers, AFailureInTheTriggersHandlerIsALine) {
  ShowText text;
  text.StartupType = 1;
  text.StartupTrigger = Door;
  Begin(text);
  rig.Lights->FailClear = "stuck";
  rig.Press(3);
  EXPECT_THAT(rig.LinesOf("3"), ElementsAre("3 m_CIO_TriggerDetected Error: stuck"));
  rig.Lights->FailClear.clear();
}

TEST_F(Triggers, GroupsDoNotStopEachOther) {
  ShowText text;
  text.Groups =
      "(" + GroupText(false, true, {{Door, {"x"}}}) + "," + GroupText(true, true, {{Bell, {"y"}}}) + ")";
  Begin(text);
  rig.Press(3);
  rig.Press(4);
  rig.Run(100);
  EXPECT_EQ(rig.Player->Playing().Count(), 2);
  EXPECT_THAT(rig.LinesOf("seq stop"), IsEmpty());
}

TEST_F(Triggers, AnInteractiveSequenceWithMediaLetsTheAnimationGoOn) {
  rig.Sequences({"a"}, 9999);
  rig.Sequences({"x"}, 9999, "jingle.ogg");
  ShowText text = WithGroup(false, false, {{Door, {"x"}}});
  text.Animation = {"a"};
  Begin(text);
  rig.Run(10);
  rig.Forget();
  rig.Press(3);
  rig.Run(500);
  EXPECT_EQ(rig.Player->MediaHolder()->Filename(), "x");
  EXPECT_THAT(rig.LinesOf("seq stop"), IsEmpty());
}

TEST_F(Triggers, OneInputMayServeSeveralGroups) {
  ShowText text;
  text.Groups =
      "(" + GroupText(false, false, {{Door, {"x"}}}) + "," + GroupText(false, false, {{Door, {"y"}}}) + ")";
  Begin(text);
  rig.Press(3);
  rig.Run(10);
  EXPECT_THAT(rig.LinesOf("1 Starting"),
              ElementsAre("1 Starting Interactive: x", "1 Starting Interactive: y"));
}

TEST_F(Triggers, AnInteractiveSequenceWithMediaTakesTheMediaPlayerFromTheSong) {
  rig.Sequences({"song"}, 9999, "song.ogg");
  rig.Sequences({"x"}, 9999, "jingle.ogg");
  rig.Media->Lengths["song.ogg"] = 60000;
  rig.Media->Lengths["jingle.ogg"] = 2000;
  ShowText text = WithGroup(false, false, {{Door, {"x"}}});
  text.Songs = {"song"};
  Begin(text);
  rig.Press(3);
  rig.Run(1500);
  EXPECT_TRUE(rig.Has("seq stop song"));
  EXPECT_TRUE(rig.Has("1 Ending Musical: song"));
  EXPECT_EQ(rig.Player->MediaHolder()->Filename(), "x");
  // Music counts as playing, so no new song starts until the jingle has ended.
  EXPECT_THAT(rig.LinesOf("1 Starting M"), IsEmpty());
  rig.Run(1000);
  EXPECT_THAT(rig.LinesOf("1 Starting M"), ElementsAre("1 Starting Musical: song"));
}

TEST_F(Triggers, AnInteractiveSequenceWithMediaTakesTheMediaPlayerFromAnotherGroup) {
  rig.Sequences({"x"}, 9999, "jingle.ogg");
  rig.Sequences({"y"}, 9999, "gong.ogg");
  rig.Media->Lengths["jingle.ogg"] = 60000;
  ShowText text;
  text.Groups =
      "(" + GroupText(false, false, {{Door, {"x"}}}) + "," + GroupText(false, false, {{Bell, {"y"}}}) + ")";
  Begin(text);
  rig.Press(3);
  rig.Run(100);
  rig.Press(4);
  rig.Run(100);
  EXPECT_TRUE(rig.Has("1 Ending Interactive: x"));
  EXPECT_EQ(rig.Player->MediaHolder()->Filename(), "y");
  EXPECT_THAT(rig.LinesOf("media"), ElementsAre("media open jingle.ogg", "media play", "media stop",
                                                "media open gong.ogg", "media play"));
}

TEST_F(Triggers, AnInteractiveSequenceWithoutMediaLetsTheSongGoOn) {
  rig.Sequences({"song"}, 9999, "song.ogg");
  rig.Media->Lengths["song.ogg"] = 60000;
  ShowText text = WithGroup(false, false, {{Door, {"x"}}});
  text.Songs = {"song"};
  Begin(text);
  rig.Press(3);
  rig.Run(1500);
  EXPECT_THAT(rig.LinesOf("seq stop"), IsEmpty());
  EXPECT_EQ(rig.Player->MediaHolder()->Filename(), "song");
}

TEST_F(Triggers, AnInterruptingSequenceThatNeedsTheNetworksOpensThem) {
  rig.Library["x"].Networks = {NetworkKind::Main};
  Begin(WithGroup(false, true, {{Door, {"x"}}, {Bell, {"y"}}}));
  rig.Press(4);
  rig.Run(100);
  rig.Press(3);
  rig.Run(100);
  EXPECT_EQ(rig.LinesOf("io openNetwork").size(), 4U);  // its media name was asked before, which loaded it
}

TEST_F(Triggers, TheStartupPressAlsoServesAnEqualInteractiveEntry) {
  ShowText text = WithGroup(false, false, {{Door, {"x"}}});
  text.StartupType = 1;
  text.StartupTrigger = Door;
  Begin(text);
  rig.Press(3);
  rig.Run(10);
  EXPECT_THAT(rig.Course(), ElementsAre("1 Startup trigger detected", "1 Clearing triggers",
                                        "1 Loading sequence: x Interactive: x", "1 Starting Interactive: x",
                                        "1 Registering interactive triggers"));
}

TEST_F(Triggers, OthersDoNothingWhileAShowWaits) {
  ShowText text = WithGroup(false, false, {{Bell, {"x"}}});
  text.StartupType = 1;
  text.StartupTrigger = Door;
  Begin(text);
  rig.Press(4, "Bell");
  rig.Run(100);
  EXPECT_THAT(rig.Lines, ElementsAre("1 Trigger detected: Bell"));
}

TEST_F(Triggers, AStartupTriggerPressedAfterInteractiveOnesWereRegisteredClearsNothing) {
  ShowText text = WithGroup(false, false, {{Bell, {"x"}}});
  text.StartupType = 5;
  text.StartupTrigger = Door;
  Begin(text);
  rig.Press(3);
  rig.Run(10);
  EXPECT_THAT(rig.Lines, ElementsAre("1 Startup trigger detected"));
}

TEST_F(Triggers, NothingHappensWithoutAShowOrInShutdown) {
  Begin(WithGroup(false, false, {{Door, {"x"}}}));
  rig.Give(nullptr);
  rig.Forget();
  rig.Press(3);
  EXPECT_THAT(rig.Lines, IsEmpty());
  rig.Run(100);
  rig.Forget();
  rig.Press(3);
  EXPECT_THAT(rig.Lines, IsEmpty());
}

TEST_F(Triggers, AnInputThatCannotBeReadIsPassedOver) {
  Begin(WithGroup(false, false, {{Door, {"x"}}}));
  for (const char* szProperty : {"Network", "UnitId", "InputNumber", "Name"}) {
    FakeInput input(0, 1, 3, "Door");
    input.Forget(szProperty);
    rig.Lights->TriggerDetected(input);
    EXPECT_THAT(rig.Lines, IsEmpty()) << szProperty;
  }
}

TEST_F(Triggers, AnotherNetworkOrUnitIsAnotherInput) {
  Begin(WithGroup(false, false, {{Door, {"x"}}}));
  rig.Lights->TriggerDetected(FakeInput(1, 1, 3, "a"));
  rig.Lights->TriggerDetected(FakeInput(0, 2, 3, "b"));
  rig.Run(100);
  EXPECT_THAT(rig.Lines, ElementsAre("1 Trigger detected: a", "1 Trigger detected: b"));
}

TEST_F(Triggers, PressesFasterThanTheyCanBeServedAreServedInOrder) {
  Begin(WithGroup(false, true, {{Door, {"x", "y", "z"}}}));
  for (int32_t lPress = 0; lPress < 30; ++lPress) rig.Press(3);
  rig.Run(10);
  const Transcript starts = rig.LinesOf("1 Starting");
  ASSERT_EQ(starts.size(), 30U);
  EXPECT_EQ(starts.back(), "1 Starting Interactive: z");
}

}  // namespace
}  // namespace vex::test
