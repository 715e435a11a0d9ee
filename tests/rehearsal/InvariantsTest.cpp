#include "tools/rehearsal/Invariants.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/virtual/VirtualHost.h"
#include "show/ShowFunctions.h"

namespace vex {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class InvariantsTest : public testing::Test {
 protected:
  void Log(const std::string& szText, const std::string& szPlay = "", const std::string& szFile = "") {
    Watch.Hear({"log", "", 1, szText, szPlay, szFile}, [&] { return "log " + szText; });
  }
  void Media(const std::string& szCall) {
    Watch.Hear({"media", szCall, 0, "", "", ""}, [&] { return "media " + szCall; });
  }
  void Send(int circuit, double level) {
    Watch.Hear({"io", "send", 0, "", "", ""}, [&] {
      return R"({"kind":"io","call":"send","args":[0,1,)" + std::to_string(circuit) + ",0," +
             std::to_string(level) + R"(,"",1,0,0,1]})";
    });
  }
  void Play(const std::string& szPlay, const std::string& szFile) {
    Log("Queueing", szPlay, szFile);
    Log("Starting", szPlay, szFile);
  }
  void Later() { Host.EventLoop().Advance(1); }

  VirtualHost Host{DateTime::FromParts(2026, 12, 24)};
  bool LightsOff = true;
  Invariants Watch{Host.Clock(), [this](const std::string&) { return LightsOff; }};
};

TEST_F(InvariantsTest, AWholeEveningBreaksNothing) {
  for (int evening = 0; evening < 2; ++evening) {
    Log("Starting show: eve.shw");
    Log("Loading sequence: m.vexseq", "Musical", "m.vexseq");
    for (int round = 0; round < 2; ++round) {
      Play("Animation", "a.vexseq");
      Play("Musical", "m.vexseq");
      Media("open");
      Media("play");
      Send(1, 100);
      Media("ended");
      Media("stop");
      Send(1, 0);
      Log("Ending", "Musical", "m.vexseq");
      Log("Ending", "Animation", "a.vexseq");
    }
    Log("Finished show: eve.shw");
    Later();
  }
  Watch.Finish();
  EXPECT_THAT(Watch.Broken(), IsEmpty());
  EXPECT_EQ(Watch.Finished(), 2);
}

TEST_F(InvariantsTest, NothingNewWhileMediaPlay) {
  Media("open");
  Media("play");
  Media("open");
  EXPECT_THAT(Watch.Broken(),
              ElementsAre("the media player is given something new while it plays: media open"));
}

TEST_F(InvariantsTest, ASequenceThatIsStoppedHandsTheMediaPlayerOn) {
  Log("Starting show: eve.shw");
  Log("Queueing", "Startup", "s.vexseq");
  Media("open");
  Media("play");
  Log("Starting", "Startup", "s.vexseq");
  Play("Animation", "a.vexseq");
  Log("Stopping", "Animation", "a.vexseq");
  Log("Stopping", "Startup", "s.vexseq");
  Media("open");
  Media("play");
  EXPECT_THAT(Watch.Broken(), IsEmpty());
  Log("Ending", "Startup", "s.vexseq");
  Media("open");
  EXPECT_THAT(Watch.Broken(),
              ElementsAre("the media player is given something new while it plays: media open"));
}

TEST_F(InvariantsTest, MediaThatFailedPlayNoLonger) {
  Media("open");
  Media("play");
  Media("error");
  Media("open");
  EXPECT_THAT(Watch.Broken(), IsEmpty());
}

TEST_F(InvariantsTest, OneMusicalSequenceAtATime) {
  Log("Starting show: eve.shw");
  Play("Musical", "m1.vexseq");
  Play("Interactive", "x.vexseq");
  EXPECT_THAT(Watch.Broken(), IsEmpty());
  Play("Musical", "m2.vexseq");
  EXPECT_THAT(Watch.Broken(), ElementsAre("two musical sequences play: log Starting"));
}

TEST_F(InvariantsTest, AMusicalSequenceThatNeverBeganDoesNotCount) {
  Log("Starting show: eve.shw");
  Log("Queueing", "Musical", "m1.vexseq");
  Log("Ending", "Musical", "m1.vexseq");
  Play("Musical", "m2.vexseq");
  EXPECT_THAT(Watch.Broken(), IsEmpty());
}

TEST_F(InvariantsTest, AShowThatStartsFinishesBeforeTheNext) {
  Log("Starting show: eve.shw");
  Log("Starting show: night.shw");
  EXPECT_THAT(Watch.Broken(),
              ElementsAre("a show starts before \"eve.shw\" has finished: log Starting show: night.shw"));
}

TEST_F(InvariantsTest, AShowThatNeverStartedDoesNotFinish) {
  Log("Finished show: eve.shw");
  EXPECT_THAT(Watch.Broken(),
              ElementsAre("a show finishes that had not started: log Finished show: eve.shw"));
}

TEST_F(InvariantsTest, OfASequenceThatHasEndedNothingIsSaid) {
  Log("Starting show: eve.shw");
  Play("Startup", "s.vexseq");
  Log("Stopping", "Startup", "s.vexseq");
  Log("Ending", "Startup", "s.vexseq");
  EXPECT_THAT(Watch.Broken(), IsEmpty());
  Log("Stopping", "Startup", "s.vexseq");
  EXPECT_THAT(Watch.Broken(), ElementsAre("a sequence is spoken of that has ended: log Stopping"));
}

TEST_F(InvariantsTest, ASequenceThatFailedToLoadHasEnded) {
  Log("Starting show: eve.shw");
  Log("Queueing", "Startup", "s.vexseq");
  Log("ERROR WITH SEQUENCE (gone)", "Startup", "s.vexseq");
  EXPECT_THAT(Watch.Broken(), IsEmpty());
  Log("Starting", "Startup", "s.vexseq");
  EXPECT_THAT(Watch.Broken(), ElementsAre("a sequence is spoken of that has ended: log Starting"));
}

TEST_F(InvariantsTest, ChannelsAreDarkFromTheMomentAfterTheEnd) {
  Log("Starting show: eve.shw");
  Send(1, 100);
  Send(2, 50);
  Log("Finished show: eve.shw");
  Send(2, 0);
  EXPECT_THAT(Watch.Broken(), IsEmpty());
  Later();
  Log("No current show");
  EXPECT_THAT(Watch.Broken(), ElementsAre(StartsWith("1 channels are lit when the show has finished (network "
                                                     "0, unit 1, circuit 1)")));
}

TEST_F(InvariantsTest, TheLastShowIsLookedAtToo) {
  Log("Starting show: eve.shw");
  Send(1, 100);
  Log("Finished show: eve.shw");
  Watch.Finish();
  EXPECT_THAT(Watch.Broken(), ElementsAre(StartsWith("1 channels are lit")));
}

TEST_F(InvariantsTest, AShowMayLeaveItsLightsOn) {
  LightsOff = false;
  Log("Starting show: eve.shw");
  Send(1, 100);
  Log("Finished show: eve.shw");
  LightsOff = true;
  Log("Starting show: night.shw");
  Log("Finished show: night.shw");
  Watch.Finish();
  EXPECT_THAT(Watch.Broken(), IsEmpty());
}

TEST(PutsItsLightsOut, IsSoWhenEveryListAndGroupDoes) {
  const std::string szList = "(0,1,0,0,,,T,F,F)";
  const auto show = [&](const std::string& szMusical, const std::string& szGroups) {
    return ShowFromText("(" + szList + "," + szList + ",(1,0,1,0,,,T,F,F)," + szMusical +
                        ",,(2,0,0,0,,,T,F,F)," + szGroups + ",0,,F)");
  };
  const std::string szGroup = "((1,,F,T,T,Buttons,((x.vexseq,(3,Door,1,0))),T))";
  const std::string szLitGroup = "((1,,F,T,T,Buttons,((x.vexseq,(3,Door,1,0))),F))";
  EXPECT_TRUE(PutsItsLightsOut(*show(szList, "")));
  EXPECT_TRUE(PutsItsLightsOut(*show(szList, szGroup)));
  EXPECT_FALSE(PutsItsLightsOut(*show("(0,1,0,0,,,F,F,F)", "")));
  EXPECT_FALSE(PutsItsLightsOut(*show(szList, szLitGroup)));
}

}  // namespace
}  // namespace vex
