#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/player/PlayerRig.h"

namespace vex::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PlayerMedia : public testing::Test {
 protected:
  void Prefer(const std::string& szValues) {
    rig.Settings(
        "Windows Registry Editor Version 5.00\r\n"
        "[HKEY_CURRENT_USER\\Software\\Brillara\\Shared\\VideoPreferences]\r\n" +
        szValues);
  }
  void Begin() {
    rig.Sequences({"m1"}, 9999, "song.ogg");
    rig.Media->Lengths["song.ogg"] = 60000;
    ShowText text;
    text.Songs = {"m1"};
    text.Delay = 5;
    rig.Give(text);
    rig.Run(10);
    rig.Forget();
  }
  void Open(const std::string& szType) {
    std::static_pointer_cast<FakeMediaItem>(rig.Media->CurrentMedia())->Type = szType;
    rig.Media->OpenStateChange(MediaPlayer::OpenStateMediaOpen);
  }

  PlayerRig rig;
};

TEST_F(PlayerMedia, VideoShowsTheWindowAtItsPlace) {
  Prefer(
      "\"MonitorX\"=dword:00000064\r\n\"MonitorY\"=dword:00000032\r\n\"FullScreenVideo\"=dword:00000001\r\n");
  Begin();
  Open("video");
  EXPECT_THAT(rig.Lines, ElementsAre("window place 1500 750", "window show", "media fullscreen on"));
}

TEST_F(PlayerMedia, VideoStaysHiddenWhenVideosAreNotDisplayed) {
  Prefer("\"DisplayVideos\"=dword:00000000\r\n");
  Begin();
  Open("video");
  EXPECT_THAT(rig.Lines, IsEmpty());
}

TEST_F(PlayerMedia, AudioShowsTheWindowOnlyWithVisualizations) {
  Begin();
  Open("audio");
  EXPECT_THAT(rig.Lines, IsEmpty());
}

TEST_F(PlayerMedia, AudioIsVisualizedWhenAskedFor) {
  Prefer("\"DisplayVisualizations\"=dword:00000001\r\n");
  Begin();
  Open("audio");
  EXPECT_THAT(rig.Lines, ElementsAre("window place 0 0", "window show", "media fullscreen off"));
}

TEST_F(PlayerMedia, VideoInAnotherCaseIsNotVideo) {
  Begin();
  Open("Video");
  EXPECT_THAT(rig.Lines, IsEmpty());
}

TEST_F(PlayerMedia, AudioAfterVideoHidesTheWindow) {
  Begin();
  Open("video");
  rig.Forget();
  Open("audio");
  EXPECT_THAT(rig.Lines, ElementsAre("window hide"));
}

TEST_F(PlayerMedia, OtherOpenStatesAreNoConcern) {
  Begin();
  std::static_pointer_cast<FakeMediaItem>(rig.Media->CurrentMedia())->Type = "video";
  for (const int32_t lState : {0, 1, 8, 12, 21}) rig.Media->OpenStateChange(lState);
  EXPECT_THAT(rig.Lines, IsEmpty());
}

TEST_F(PlayerMedia, TheWindowIsHiddenInTheStopPassAndWithoutSongs) {
  Begin();
  Open("video");
  rig.Run(60000);
  rig.Forget();
  rig.Give(nullptr);
  rig.Run(10);
  EXPECT_EQ(rig.LinesOf("window"), Transcript{"window hide"});
}

TEST_F(PlayerMedia, AnErrorMarksTheHolderAndTheNextTickEndsIt) {
  Begin();
  rig.Media->Errors = {"codec not found", "disk gone"};
  rig.Media->ErrorEvent();
  EXPECT_THAT(
      rig.Lines,
      ElementsAre("3 WINDOWS MEDIA PLAYER ERROR (Error playing media file: codec not found / disk gone): "));
  EXPECT_TRUE(rig.Media->Errors.empty());
  rig.Run(10);
  EXPECT_TRUE(rig.Has("1 Ending Musical: m1"));
  EXPECT_TRUE(rig.Has("media stop"));
  EXPECT_TRUE(rig.Has("1 Delaying between Musical sequences for 5 seconds"));
}

TEST_F(PlayerMedia, ALaterErrorTakesThePlaceOfTheFirst) {
  Begin();
  for (const char* szError : {"first", "second"}) {
    rig.Media->Errors = {szError};
    rig.Media->ErrorEvent();
  }
  EXPECT_EQ(rig.LinesOf("3").size(), 2U);
  EXPECT_EQ(rig.Player->MediaHolder()->ErrorText(), "Error playing media file: second");
}

TEST_F(PlayerMedia, AVideoOfAnInputLeavesNoWindowWhereThereAreNoSongs) {
  rig.Sequences({"v"}, 9999, "clip.mp4");
  ShowText text;
  text.Groups = "(" + GroupText(false, false, {{"(3,Door,1,0)", {"v"}}}) + ")";
  rig.Give(text);
  rig.Run(10);
  rig.Press(3);
  rig.Run(10);
  Open("video");
  rig.Run(500);
  EXPECT_EQ(rig.LinesOf("window hide").size(), 0U);
  rig.Run(600);
  EXPECT_EQ(rig.LinesOf("window hide").size(), 1U);
}

TEST_F(PlayerMedia, AnErrorWithoutDescriptionsIsStillTold) {
  Begin();
  rig.Media->ErrorEvent();
  EXPECT_THAT(rig.Lines, ElementsAre("3 WINDOWS MEDIA PLAYER ERROR (Error playing media file): "));
}

TEST_F(PlayerMedia, AFailureWhileTheErrorIsReadIsUnexpectedAndWritesNoLine) {
  Begin();
  rig.Media->Errors = {"one"};
  rig.Media->FailErrors = true;
  rig.Media->ErrorEvent();
  EXPECT_THAT(rig.Lines, IsEmpty());
  EXPECT_EQ(rig.Player->MediaHolder()->ErrorText(), "Unexpected error playing media file");
}

TEST_F(PlayerMedia, AnErrorWhileNothingHoldsThePlayerWritesNothing) {
  rig.Give(ShowText{});
  rig.Run(10);
  rig.Forget();
  rig.Media->Errors = {"one"};
  rig.Media->ErrorEvent();
  EXPECT_THAT(rig.Lines, IsEmpty());
  EXPECT_EQ(rig.Media->Errors.size(), 1U);
}

TEST_F(PlayerMedia, ASongWhoseMediaFailedIsDroppedWhenItsTurnComesAgain) {
  Begin();
  rig.Media->Errors = {"bad"};
  rig.Media->ErrorEvent();
  rig.Run(6000);
  EXPECT_TRUE(rig.Has("3 ERROR WITH SEQUENCE (Error playing media file: bad) Musical: m1"));
}

TEST_F(PlayerMedia, APlayThatRaisesIsTheTicksErrorAndTheSongEnds) {
  rig.Media->FailPlay = "no device";
  Begin();
  rig.Run(10);
  rig.Forget();
  rig.Give(nullptr);
  rig.Run(100);
  EXPECT_TRUE(rig.Has("1 Finished show: eve.shw"));
}

TEST_F(PlayerMedia, AWindowThatFailsIsALineAndTheSongGoesOn) {
  Begin();
  rig.Window->FailPlace = "no display";
  Open("video");
  EXPECT_THAT(rig.Lines, ElementsAre("3 m_WMP_OpenStateChange Error: no display"));
  EXPECT_TRUE(rig.Player->MediaHolder());
}

TEST_F(PlayerMedia, WhatADeviceMustTellPeopleIsALineOfLevelThree) {
  Begin();
  rig.Lights->Trouble("network unreachable");
  rig.Media->Trouble("no display");
  EXPECT_THAT(rig.Lines, ElementsAre("3 network unreachable", "3 no display"));
}

}  // namespace
}  // namespace vex::test
