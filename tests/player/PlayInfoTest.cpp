#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/player/PlayerRig.h"

namespace vex::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(SequencePlayInfo, NewOneHasItsDefaults) {
  PlayerRig rig;
  SequenceSurroundings surroundings{rig, nullptr, nullptr, rig.Host.Processes()};
  SequencePlayInfo info(surroundings);
  EXPECT_EQ(info.Filename(), "");
  EXPECT_EQ(info.PlayType(), 0);
  EXPECT_TRUE(info.LightsOffAtEnd());
  EXPECT_FALSE(info.LoopAtEnd());
  EXPECT_FALSE(info.Preload());
  EXPECT_FALSE(info.Group());
  EXPECT_FALSE(info.ErrorOccurred());
  EXPECT_EQ(info.ErrorText(), "");
  EXPECT_EQ(info.SequencePlayState(), 0);
  EXPECT_FALSE(info.UsesVex());
  EXPECT_FALSE(info.UsesX10());
  EXPECT_FALSE(info.UsesCourser());
  LightingEvent event;
  EXPECT_FALSE(info.GetEvent(event));
  info.StartPlay();
  info.StopPlay();
  info.InitMusicSync(0);
  info.SyncToMusic(5);
  FakeShellCommands manager;
  info.ExecuteShellCommand(manager);
}

class SequencePlayInfoTest : public testing::Test {
 protected:
  SequencePlayInfoTest() {
    rig.Sequences({"s"}, 1000, "carol.ogg");
    info.CIO(rig.Lights);
  }
  PlayerRig rig;
  std::shared_ptr<FakeEngine> engine;
  SequenceSurroundings surroundings{
      rig,
      [this] {
        engine = std::make_shared<FakeEngine>(rig.Lines, rig.Host.Clock(), rig.Library);
        return engine;
      },
      [](const std::string& szName) { return "D:\\Audio\\" + szName; }, rig.Host.Processes()};
  SequencePlayInfo info{surroundings};
};

TEST_F(SequencePlayInfoTest, SettingAnEmptyErrorTextStillMarksTheError) {
  info.ErrorText("");
  EXPECT_TRUE(info.ErrorOccurred());
}

TEST_F(SequencePlayInfoTest, TheFileNameLoadsOnlyWhenPreloadIsSetBefore) {
  info.Filename("s");
  info.Preload(true);
  EXPECT_THAT(rig.Lines, IsEmpty());
  info.Filename("s");
  EXPECT_THAT(rig.Lines, ElementsAre("1 Loading sequence: s Null: s", "seq load s"));
  info.Filename("s");
  EXPECT_EQ(rig.Lines.size(), 2U);
}

TEST_F(SequencePlayInfoTest, AnEmptyNameIsNotPreloaded) {
  info.Preload(true);
  info.Filename("");
  EXPECT_THAT(rig.Lines, IsEmpty());
}

TEST_F(SequencePlayInfoTest, AFailedPreloadBecomesTheErrorText) {
  info.Preload(true);
  info.Filename("missing");
  EXPECT_TRUE(info.ErrorOccurred());
  EXPECT_EQ(info.ErrorText(), "File not found");
}

TEST_F(SequencePlayInfoTest, OnlySomePlayTypesHaveMedia) {
  info.Filename("s");
  for (const int32_t lType : {PlayNull, PlayBackground, PlayAnimation, PlayCleanup}) {
    info.PlayType(lType);
    EXPECT_EQ(info.MediaFilename(), "");
  }
  EXPECT_THAT(rig.Lines, IsEmpty());
  for (const int32_t lType : {PlayInteractive, PlayStartup, PlayMusical, PlayShutdown}) {
    info.PlayType(lType);
    EXPECT_EQ(info.MediaFilename(), "D:\\Audio\\carol.ogg");
  }
  EXPECT_THAT(rig.LinesOf("seq load"), ElementsAre("seq load s"));
}

TEST_F(SequencePlayInfoTest, TheEnginesKeepAliveReachesTheControl) {
  info.Filename("s");
  info.InitializeForPlay();
  engine->KeepAlive();
  EXPECT_EQ(rig.Lines.back(), "io keepAlive");
}

TEST_F(SequencePlayInfoTest, AKeepAliveThatFailsIsALineAndNoConcernOfTheEngine) {
  rig.Lights->FailKeepAlive = "no answer";
  info.Filename("s");
  info.InitializeForPlay();
  engine->KeepAlive();
  EXPECT_EQ(rig.Lines.back(), "3 m_Sequence_KeepAlive Error: no answer");
}

TEST_F(SequencePlayInfoTest, AKeepAliveWithoutControlIsPassedOver) {
  info.CIO(nullptr);
  info.Filename("s");
  info.InitializeForPlay();
  engine->KeepAlive();
  EXPECT_FALSE(rig.Has("io keepAlive"));
}

TEST_F(SequencePlayInfoTest, LoadingGivesTheControlAndTheFileAndTheRate) {
  info.Filename("s");
  info.InitializeForPlay();
  EXPECT_EQ(engine->Control(), rig.Lights);
  EXPECT_EQ(engine->Rate(), 1.0);
  EXPECT_THAT(rig.Lines,
              ElementsAre("1 Loading sequence: s Null: s", "seq load s", "seq prepare s lightsoff"));
}

TEST_F(SequencePlayInfoTest, PreparedAgainItIsNotLoadedAgain) {
  info.Filename("s");
  info.InitializeForPlay();
  const auto first = engine;
  info.InitializeForPlay();
  EXPECT_EQ(engine, first);
  EXPECT_EQ(rig.LinesOf("seq load").size(), 1U);
  EXPECT_EQ(rig.LinesOf("seq prepare").size(), 2U);
}

TEST_F(SequencePlayInfoTest, ItIsPreparedForMusicWhereItHasMedia) {
  info.Filename("s");
  info.PlayType(PlayAnimation);
  info.InitializeForPlay();
  info.PlayType(PlayMusical);
  info.InitializeForPlay();
  EXPECT_THAT(rig.LinesOf("seq prepare"),
              ElementsAre("seq prepare s lightsoff", "seq prepare s media lightsoff"));
}

TEST_F(SequencePlayInfoTest, WithoutANameItCannotBePreparedAndNothingIsLoaded) {
  info.InitializeForPlay();
  EXPECT_TRUE(info.ErrorOccurred());
  EXPECT_EQ(info.ErrorText(), "No filename specified");
  EXPECT_THAT(rig.Lines, IsEmpty());
}

TEST_F(SequencePlayInfoTest, AFailureWhilePreparingIsTheCallersAndMarksNothing) {
  info.Filename("missing");
  EXPECT_THROW(info.InitializeForPlay(), Error);
  EXPECT_FALSE(info.ErrorOccurred());
}

TEST_F(SequencePlayInfoTest, ALaterErrorTextReplacesTheFirstAndNothingClearsIt) {
  info.Filename("s");
  info.ErrorText("one");
  info.ErrorText("two");
  info.InitializeForPlay();
  info.StartPlay();
  EXPECT_TRUE(info.ErrorOccurred());
  EXPECT_EQ(info.ErrorText(), "two");
}

TEST_F(SequencePlayInfoTest, ThePlayStateIsTheEngines) {
  info.Filename("s");
  info.PlayType(PlayAnimation);
  info.InitializeForPlay();
  EXPECT_EQ(info.SequencePlayState(), 0);
  info.StartPlay();
  EXPECT_EQ(info.SequencePlayState(), 1);
  rig.Run(999);
  EXPECT_EQ(info.SequencePlayState(), 1);
  rig.Run(1);
  EXPECT_EQ(info.SequencePlayState(), 0);
  info.StartPlay();
  info.StopPlay();
  EXPECT_EQ(info.SequencePlayState(), 0);
}

TEST_F(SequencePlayInfoTest, DueEventsComeOnceEachUpToTheMusicsPosition) {
  rig.Library["s"].Events = {{0, 1, 1, 0, 100, "fade", 1.0, 100, 200},
                             {0, 1, 2, 0, 100, "fade", 1.0, 300, 400}};
  info.Filename("s");
  info.PlayType(PlayMusical);
  info.InitializeForPlay();
  info.InitMusicSync(0);
  LightingEvent event;
  EXPECT_FALSE(info.GetEvent(event));
  info.SyncToMusic(100);
  ASSERT_TRUE(info.GetEvent(event));
  EXPECT_EQ(event.Circuit, 1);
  EXPECT_FALSE(info.GetEvent(event));
  info.SyncToMusic(300);
  ASSERT_TRUE(info.GetEvent(event));
  EXPECT_EQ(event.Circuit, 2);
  EXPECT_FALSE(info.GetEvent(event));
}

TEST_F(SequencePlayInfoTest, EachNetworkIsAskedForByItsKind) {
  const auto uses = [this] { return std::vector<bool>{info.UsesVex(), info.UsesX10(), info.UsesCourser()}; };
  info.Filename("s");
  rig.Library["s"].Networks = {NetworkKind::Main, NetworkKind::X10, NetworkKind::Courser};
  EXPECT_THAT(uses(), ElementsAre(false, false, false)) << "before it is loaded";
  info.InitializeForPlay();
  for (const NetworkKind kind : {NetworkKind::Main, NetworkKind::X10, NetworkKind::Courser}) {
    rig.Library["s"].Networks = {kind};
    EXPECT_THAT(uses(), ElementsAre(kind == NetworkKind::Main, kind == NetworkKind::X10,
                                    kind == NetworkKind::Courser));
  }
  EXPECT_EQ(static_cast<int32_t>(NetworkKind::Main), 1);
  EXPECT_EQ(static_cast<int32_t>(NetworkKind::X10), 3);
  EXPECT_EQ(static_cast<int32_t>(NetworkKind::Courser), 4);
}

TEST_F(SequencePlayInfoTest, AShellCommandRunsOnlyOnceItIsLoadedAndIsNotWaitedFor) {
  rig.Library["s"].ShellCommand = std::string("notify-send lights");
  FakeShellCommands manager;
  info.Filename("s");
  info.ExecuteShellCommand(manager);
  EXPECT_TRUE(rig.Host.Processes().Starts().empty());
  info.InitializeForPlay();
  info.ExecuteShellCommand(manager);
  EXPECT_EQ(rig.Host.Processes().Starts().size(), 1U);
}

TEST_F(SequencePlayInfoTest, WithoutAShellCommandTheManagerIsNotAsked) {
  class NobodyAsks : public ShellCommandManager {
   public:
    std::string CommandLineFor(const std::any&) override { throw Error(1, "", "asked"); }
    int32_t WindowStyleFor(const std::any&) override { throw Error(1, "", "asked"); }
  } manager;
  info.Filename("s");
  info.InitializeForPlay();
  EXPECT_NO_THROW(info.ExecuteShellCommand(manager));
}

TEST(PlayTypeWord, NamesEveryTypeAndNumbersTheRest) {
  const std::vector<std::string> words = {"Null",      "Background", "Interactive", "Startup",
                                          "Animation", "Musical",    "Cleanup",     "Shutdown"};
  for (int32_t lType = 0; lType <= 7; ++lType)
    EXPECT_EQ(PlayTypeWord(lType), words[static_cast<size_t>(lType)]);
  EXPECT_EQ(PlayTypeWord(8), "(8)");
  EXPECT_EQ(PlayTypeWord(-1), "(-1)");
}

}  // namespace
}  // namespace vex::test
