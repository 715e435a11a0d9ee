#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/player/PlayerRig.h"

namespace vex::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const char* const RegistryHead =
    "Windows Registry Editor Version 5.00\r\n[HKEY_CURRENT_USER\\Software\\Brillara\\Shared";

/// A show in which every phase has one sequence named after it; the letters say, playlist by playlist and
/// for the group, whether the lights go off at the end.
std::shared_ptr<Show> EveryPhase(PlayerRig& rig, const std::string& szLightsOff, int32_t lAnimationType) {
  rig.Sequences({"startup", "shutdown", "cleanup"}, 100);
  rig.Sequences({"background", "animation", "interactive"}, 5000);
  rig.Sequences({"musical"}, 9999, "song.ogg");
  const std::string szTail = "," + szLightsOff + ",F,F)";
  auto show = ShowFromText("((0,1,2,0,,(startup)" + szTail + ",(0,1,2,0,,(shutdown)" + szTail + ",(" +
                           std::to_string(lAnimationType) + ",0,1,0,,(animation)" + szTail +
                           ",(0,1,2,0,cleanup,(musical)" + szTail + ",,(1,0,1,0,,(background)" + szTail +
                           ",((1,,F,F,T,Buttons,((interactive,(3,Door,1,0)))," + szLightsOff + ")),0,,F)");
  show->Monitoring()->Filename("eve.shw");
  return show;
}

void PlayEveryPhase(PlayerRig& rig, const std::shared_ptr<Show>& show) {
  rig.Give(show);
  rig.Run(200);
  rig.Press(3);
  rig.Run(2000);
  rig.Give(nullptr);
  rig.Run(10000);
  ASSERT_TRUE(rig.Has("1 Finished show: eve.shw"));
}

TEST(PlayOptions, OnlyBackgroundAndAnimationsOfTypeTwoLoopAndTheLightsFollowTheirList) {
  PlayerRig rig;
  PlayEveryPhase(rig, EveryPhase(rig, "F", 2));
  EXPECT_TRUE(rig.Has("seq prepare background loop"));
  EXPECT_TRUE(rig.Has("seq prepare startup"));
  EXPECT_TRUE(rig.Has("seq prepare animation loop"));
  EXPECT_TRUE(rig.Has("seq prepare musical media"));
  EXPECT_TRUE(rig.Has("seq prepare cleanup lightsoff")) << "a clean-up keeps what a new sequence has";
  EXPECT_TRUE(rig.Has("seq prepare interactive"));
  EXPECT_TRUE(rig.Has("seq prepare shutdown"));
}

TEST(PlayOptions, AnimationsOfAnotherTypeDoNotLoopAndTheLightsGoOffWhereTheListSaysSo) {
  PlayerRig rig;
  PlayEveryPhase(rig, EveryPhase(rig, "T", 1));
  EXPECT_TRUE(rig.Has("seq prepare background loop lightsoff"));
  EXPECT_TRUE(rig.Has("seq prepare startup lightsoff"));
  EXPECT_TRUE(rig.Has("seq prepare animation lightsoff"));
  EXPECT_TRUE(rig.Has("seq prepare musical media lightsoff"));
  EXPECT_TRUE(rig.Has("seq prepare cleanup lightsoff"));
  EXPECT_TRUE(rig.Has("seq prepare interactive lightsoff"));
  EXPECT_TRUE(rig.Has("seq prepare shutdown lightsoff"));
}

TEST(PlayOptions, EverySequenceIsGivenItsPlayTypeItsGroupAndTheControl) {
  PlayerRig rig;
  const auto show = EveryPhase(rig, "T", 2);
  rig.Give(show);
  rig.Run(200);
  rig.Press(3);
  rig.Run(10);
  std::vector<int32_t> types;
  for (const auto& sequence : rig.Player->Playing()) {
    types.push_back(sequence->PlayType());
    EXPECT_EQ(sequence->Group(),
              sequence->PlayType() == PlayInteractive ? show->InteractiveGroups().Item(1) : nullptr);
  }
  EXPECT_THAT(types, ElementsAre(PlayBackground, PlayAnimation, PlayMusical, PlayInteractive));
}

// The file name is set before the preload flag, and only setting the name loads.
TEST(PlayOptions, AShowThatIsToBePreloadedLoadsNothingBeforeItStarts) {
  PlayerRig rig;
  rig.Sequences({"s", "a"}, 100);
  ShowText text;
  text.Startup = {"s"};
  text.Animation = {"a"};
  text.Preload = true;
  rig.Give(text);
  rig.Run(1);
  EXPECT_THAT(rig.LinesOf("seq load"), IsEmpty());
  rig.Run(1);
  EXPECT_THAT(rig.LinesOf("seq load"), ElementsAre("seq load s"));
  EXPECT_TRUE((*rig.Player->Playing().begin())->Preload());
}

TEST(PlayOptions, WithoutATriggerEveryStartupTypeStartsAtOnce) {
  for (const int32_t lType : {-1, 0, 1, 2, 3}) {
    PlayerRig rig;
    rig.Sequences({"bg", "a"}, 5000);
    ShowText text;
    text.Background = {"bg"};
    text.Animation = {"a"};
    text.StartupType = lType;
    rig.Give(text);
    rig.Run(10);
    EXPECT_TRUE(rig.Has("1 Starting Background: bg")) << lType;
    EXPECT_TRUE(rig.Has("1 Starting Animation: a")) << lType;
    EXPECT_FALSE(rig.Has("1 Registering startup trigger")) << lType;
  }
}

TEST(PlayOptions, TheStartupTriggerIsRegisteredBeforeTheBackgroundIsQueued) {
  PlayerRig rig;
  rig.Sequences({"bg"}, 5000);
  ShowText text;
  text.Background = {"bg"};
  text.StartupType = 2;
  text.StartupTrigger = "(3,Door,1,0)";
  rig.MakePlayer();
  rig.Forget();
  rig.Give(text);
  rig.Run(1);
  EXPECT_THAT(rig.Lines,
              ElementsAre("0 Starting next show", "report eve.shw", "1 Starting show: eve.shw",
                          "1 Registering startup trigger", "io registerTrigger 0 1 3",
                          "0 Queueing Background: bg", "1 Loading sequence: bg Background: bg", "seq load bg",
                          "seq prepare bg loop lightsoff", "1 Starting Background: bg", "seq start bg"));
}

TEST(PlayOptions, X10AndCourserAreOpenedAtTheirPorts) {
  PlayerRig rig;
  rig.Settings(std::string(RegistryHead) +
               "\\Network]\r\n\"NetworkX10\"=dword:00000005\r\n\"NetworkCourser\"=dword:00000006\r\n");
  rig.Sequences({"a"}, 100);
  rig.Library["a"].Networks = {NetworkKind::X10, NetworkKind::Courser};
  ShowText text;
  text.Animation = {"a"};
  rig.Give(text);
  rig.Run(10);
  EXPECT_THAT(rig.LinesOf("io openX10"), ElementsAre("io openX10 5"));
  EXPECT_THAT(rig.LinesOf("io openCourser"), ElementsAre("io openCourser 6"));
}

TEST(PlayOptions, MediaAreSoughtInTheMediaFolderUnlessTheirNameSaysWhere) {
  const std::vector<std::pair<std::string, std::string>> paths = {
      {"song.ogg", "D:\\Audio\\song.ogg"},
      {"\\xmas\\song.ogg", "D:\\Audio\\xmas\\song.ogg"},
      {"E:\\song.ogg", "E:\\song.ogg"},
      {"\\\\server\\song.ogg", "\\\\server\\song.ogg"}};
  for (const auto& [szName, szPath] : paths) {
    PlayerRig rig;
    rig.Settings(std::string(RegistryHead) + "]\r\n\"AudioPath\"=\"D:\\\\Audio\"\r\n");
    rig.Sequences({"m"}, 9999, szName);
    ShowText text;
    text.Songs = {"m"};
    rig.Give(text);
    rig.Run(10);
    EXPECT_THAT(rig.LinesOf("media open"), ElementsAre("media open " + szPath));
  }
}

TEST(PlayOptions, ASongWithoutMediaPlaysByItsOwnClockAndTakesNoMediaPlayer) {
  PlayerRig rig;
  rig.Settings(std::string(RegistryHead) + "]\r\n\"AudioPath\"=\"D:\\\\Audio\"\r\n");
  rig.Sequences({"m"}, 500);
  ShowText text;
  text.Songs = {"m"};
  rig.Give(text);
  rig.Run(600);
  EXPECT_THAT(rig.LinesOf("media"), IsEmpty());
  EXPECT_EQ(rig.TimeOf("1 Ending Musical: m"), 502);
}

TEST(PlayOptions, EachMediaItemIsSetToItsBeginning) {
  PlayerRig rig;
  rig.Sequences({"m"}, 9999, "song.ogg");
  ShowText text;
  text.Songs = {"m"};
  rig.Give(text);
  rig.Run(1500);
  EXPECT_THAT(rig.Media->PositionsSet, ElementsAre(0.0, 0.0));
}

// The music's position counts in whole milliseconds, rounded.
TEST(PlayOptions, ThePositionIsRoundedToMilliseconds) {
  const auto sent = [](double position) {
    PlayerRig rig;
    rig.Sequences({"m"}, 9999, "song.ogg");
    rig.Library["m"].Events = {{0, 1, 1, 0, 100, "fade", 1.0, 401, 500}};
    rig.Media->Position = position;
    ShowText text;
    text.Songs = {"m"};
    rig.Give(text);
    rig.Run(50);
    return rig.LinesOf("io send").size();
  };
  EXPECT_EQ(sent(0.4004), 0U);
  EXPECT_EQ(sent(0.4006), 1U);
  EXPECT_EQ(sent(0.401), 1U);
}

TEST(PlayOptions, AVideoWindowThatIsNotLoadedIsNotHidden) {
  PlayerRig rig;
  rig.Window->Show();
  rig.Window->IsLoaded = false;
  rig.Give(ShowText{});
  rig.Run(10);
  EXPECT_THAT(rig.LinesOf("window"), ElementsAre("window show"));
  rig.Window->IsLoaded = true;
  rig.Give(nullptr);
  rig.Run(10);
  EXPECT_THAT(rig.LinesOf("window"), ElementsAre("window show", "window hide"));
}

TEST(PlayOptions, VideoPreferencesAreThoseOfThePlayersBeginning) {
  PlayerRig rig;
  rig.MakePlayer();
  rig.Settings(std::string(RegistryHead) + "\\VideoPreferences]\r\n\"DisplayVideos\"=dword:00000000\r\n");
  rig.Sequences({"m"}, 9999, "clip.mp4");
  ShowText text;
  text.Songs = {"m"};
  rig.Give(text);
  rig.Run(10);
  std::static_pointer_cast<FakeMediaItem>(rig.Media->CurrentMedia())->Type = "video";
  rig.Media->OpenStateChange(MediaPlayer::OpenStateMediaOpen);
  EXPECT_THAT(rig.LinesOf("window show").size(), 1U);
}

TEST(NextShowGiven, WithoutAStartItIsTheSameShowAndItsRangeIsTakenOver) {
  PlayerRig rig;
  rig.Give(ShowText{});
  rig.Run(10);
  rig.Forget();
  const auto show = PlayerRig::MakeShow(ShowText{});
  PlayerRig::SetRange(*show, std::nullopt, DateTime::FromParts(2026, 12, 25, 1));
  rig.Give(show);
  EXPECT_THAT(rig.Lines, ElementsAre("1 Current show's time range has changed"));
  EXPECT_FALSE(rig.Player->CurrentShow()->Monitoring()->Range()->HasStart());
}

TEST(NextShowGiven, WithoutAShowItStartsAtTheNextTick) {
  PlayerRig rig;
  rig.Give(nullptr);
  rig.Run(100);
  rig.Forget();
  rig.Give(ShowText{});
  EXPECT_FALSE(rig.Player->CurrentShow());
  EXPECT_THAT(rig.Lines, IsEmpty());
  rig.Run(1);
  EXPECT_TRUE(rig.Player->CurrentShow());
  EXPECT_FALSE(rig.Player->NextShow());
}

TEST(NextShowGiven, WhereItsEventIsMarkedAlreadyItEndsWithoutALine) {
  PlayerRig rig;
  const auto show = PlayerRig::MakeShow(ShowText{});
  show->Monitoring()->ShuttingDown(true);
  rig.Give(show);
  rig.Run(10);
  rig.Forget();
  rig.Give(nullptr);
  EXPECT_THAT(rig.Lines, IsEmpty());
  rig.Run(1);
  EXPECT_TRUE(rig.Has("1 Finished show: eve.shw"));
}

}  // namespace
}  // namespace vex::test
