#include <fcntl.h>

#include <csignal>
#include <cstdio>
#include <string>

#include "player/devices/frmMediaPlayer.h"
#include "tests/media/MpvRig.h"
#include "tests/media/XServer.h"

namespace vex::test {
namespace {

using testing::HasSubstr;

constexpr const char* Caption = "Brillara Video";
constexpr int32_t Twips = MediaWindow::TwipsPerPixel;

std::string TestFile(const std::string& szName) {
  return VEX_MEDIA_FILES "/" + szName;
}

/// The decision of the show player is made by the test: whatever opens is shown, or not.
class MpvFormRig : public MpvRig {
 protected:
  /// The library must be gone before its display: it ends the program when that breaks away.
  ~MpvFormRig() override {
    m_Form.reset();
    m_Player.reset();
  }
  void Watch(bool boolShow, bool boolFullScreen = false) {
    m_Player->Trouble = [this](const std::string& szLine) { m_Troubles.push_back(szLine); };
    m_Form = std::make_unique<frmMediaPlayer>(m_Player->Window(), m_Player);
    m_Player->OpenStateChange = [this, boolShow, boolFullScreen](int32_t) {
      m_MediaType = m_Player->CurrentMedia()->GetItemInfo("MediaType");
      if (!boolShow) return m_Form->Hide();
      m_Form->Position(101 * Twips, 57 * Twips);
      m_Form->Show();
      m_Player->FullScreen(boolFullScreen);
    };
  }
  void PlayTestFile(const std::string& szName) { Play(m_Host->Files().SystemPath(TestFile(szName))); }
  /// Plays for that long, whatever happens.
  void RunFor(Elapsed time) {
    const Elapsed end = m_Host->Clock().Elapsed() + time;
    RunUntil([&] { return m_Host->Clock().Elapsed() >= end; });
  }

  std::unique_ptr<frmMediaPlayer> m_Form;
  std::vector<std::string> m_Troubles;
};

/// A real window on a display of its own.
class VideoWindow : public MpvFormRig {
 protected:
  void SetUp() override {
    std::signal(SIGPIPE, SIG_IGN);  // as the player does: a display that breaks away is a pipe that does
    const std::string szMissing = XServer::MissingPrograms();
    if (!szMissing.empty()) GTEST_SKIP() << "no display can be made and looked at without" << szMissing;
  }
  /// One display for all tests, as a machine has one.
  const XServer& Display(bool boolWithManager = false) {
    static XServer display;
    EXPECT_TRUE(display.Runs());
    display.Use(boolWithManager);
    return display;
  }
  bool RunUntilSeen(const XServer& display) {
    return RunUntil([&] { return !display.Find(Caption).Id.empty(); });
  }
  bool RunUntilGone(const XServer& display) {
    return RunUntil([&] { return display.Find(Caption).Id.empty(); });
  }
  /// Takes photographs until one shows more than an empty window.
  bool RunUntilDrawn(const XServer& display, size_t colours) {
    return RunUntil([&] { return display.Colours(display.Find(Caption)) >= colours; });
  }
};

/// A machine without a display.
class NoDisplay : public MpvFormRig {
 protected:
  NoDisplay() {
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
  }
};

TEST_F(VideoWindow, AVideoIsSeenInItsPlaceWithItsCaption) {
  const XServer& display = Display();
  Watch(true);
  PlayTestFile("clip.mp4");
  ASSERT_TRUE(RunUntilSeen(display));
  const XServer::Window window = display.Find(Caption);
  EXPECT_EQ(window.Left, 101);
  EXPECT_EQ(window.Top, 57);
  EXPECT_EQ(window.Width, 640);
  EXPECT_EQ(window.Height, 360);
  EXPECT_TRUE(RunUntilDrawn(display, 50));
  EXPECT_EQ(m_MediaType, "video");
  EXPECT_TRUE(m_Troubles.empty());
}

TEST_F(VideoWindow, APlaceLeftOfTheScreenIsTaken) {
  const XServer& display = Display();
  Watch(true);
  m_Player->OpenStateChange = [this](int32_t) {
    m_Form->Position(-30 * Twips, -20 * Twips);
    m_Form->Show();
  };
  PlayTestFile("clip.mp4");
  ASSERT_TRUE(RunUntilSeen(display));
  EXPECT_EQ(display.Find(Caption).Left, -30);
  EXPECT_EQ(display.Find(Caption).Top, -20);
}

TEST_F(VideoWindow, ASecondPlayerOfTheSameRunShowsItsOwn) {
  const XServer& display = Display();
  for (int32_t lTime = 0; lTime < 2; ++lTime) {
    Watch(true);
    PlayTestFile("clip.mp4");
    ASSERT_TRUE(RunUntilSeen(display)) << lTime;
    ASSERT_TRUE(RunUntilPosition(0.2)) << lTime;
    m_Form.reset();
    m_Player.reset();
    MakePlayer();
    ASSERT_TRUE(RunUntilGone(display)) << lTime;
  }
}

TEST_F(VideoWindow, TheWindowStaysBetweenTwoVideosAndGoesWhenHidden) {
  const XServer& display = Display();
  Watch(true);
  PlayTestFile("clip.mp4");
  ASSERT_TRUE(RunUntilSeen(display));
  const std::string szWindow = display.Find(Caption).Id;
  m_Player->Stop();
  RunFor(200ms);
  PlayTestFile("clip.mp4");
  ASSERT_TRUE(RunUntilPosition(0.2));
  EXPECT_EQ(display.Find(Caption).Id, szWindow);
  m_Player->Stop();
  m_Form->Hide();
  EXPECT_TRUE(RunUntilGone(display));
}

TEST_F(VideoWindow, HiddenWhileAVideoPlaysItsSoundGoesOn) {
  const XServer& display = Display();
  Watch(true);
  PlayTestFile("clip.mp4");
  ASSERT_TRUE(RunUntilSeen(display));
  ASSERT_TRUE(RunUntilPosition(0.3));
  m_Form->Hide();
  EXPECT_TRUE(RunUntilGone(display));
  EXPECT_TRUE(RunUntilPosition(1.5));
  EXPECT_EQ(m_Player->PlayState(), MediaPlayer::StatePlaying);
}

TEST_F(VideoWindow, AHiddenVideoOpensNoWindowAndPlaysItsSound) {
  const XServer& display = Display();
  Watch(false);
  PlayTestFile("clip.mp4");
  ASSERT_TRUE(RunUntilPosition(0.5));
  EXPECT_EQ(display.Find(Caption).Id, "");
  EXPECT_EQ(m_MediaType, "video");
}

TEST_F(VideoWindow, AVideoWithoutSoundPlaysToItsEndSeenOrNot) {
  const XServer& display = Display();
  for (const bool boolSeen : {false, true}) {
    Watch(boolSeen);
    PlayTestFile("silent.mp4");
    ASSERT_TRUE(RunUntilPosition(0.5)) << boolSeen;
    EXPECT_EQ(!display.Find(Caption).Id.empty(), boolSeen);
    EXPECT_TRUE(RunUntilStopped());
    EXPECT_EQ(m_ErrorEvents, 0);
  }
}

TEST_F(VideoWindow, AVideoWithoutSoundIsHiddenAndGoesOn) {
  const XServer& display = Display();
  Watch(true);
  PlayTestFile("silent.mp4");
  ASSERT_TRUE(RunUntilSeen(display));
  m_Form->Hide();
  EXPECT_TRUE(RunUntilGone(display));
  EXPECT_TRUE(RunUntilPosition(1.0));
}

TEST_F(VideoWindow, AVideoWhoseSoundIsOverGoesOnInItsTime) {
  const XServer& display = Display();
  MakePlayer(1500);
  Watch(true);
  PlayTestFile("short-sound.mp4");
  ASSERT_TRUE(RunUntilSeen(display));
  ASSERT_TRUE(RunUntilPosition(0.2));
  const Elapsed began = m_Host->Clock().Elapsed();
  ASSERT_TRUE(RunUntilPosition(2.2));
  EXPECT_NEAR(std::chrono::duration<double>(m_Host->Clock().Elapsed() - began).count(), 2.0, 0.7);
  EXPECT_TRUE(RunUntilStopped());
  EXPECT_EQ(m_ErrorEvents, 0);
}

TEST_F(VideoWindow, ASongIsVisualizedInTheWindow) {
  const XServer& display = Display();
  Watch(true);
  Play(Wave("song.wav", 6));
  ASSERT_TRUE(RunUntilSeen(display));
  EXPECT_EQ(display.Find(Caption).Left, 101);
  EXPECT_TRUE(RunUntilDrawn(display, 3));
  EXPECT_EQ(m_MediaType, "audio");
  m_Form->Hide();
  EXPECT_TRUE(RunUntilGone(display));
  const double position = m_Player->CurrentPosition();
  EXPECT_TRUE(RunUntilPosition(position + 0.5));
}

TEST_F(VideoWindow, ASongNeverShowsTheWindowWithoutVisualization) {
  const XServer& display = Display();
  Watch(false);
  PlayTestFile("cover.mp3");
  ASSERT_TRUE(RunUntilPosition(0.5));
  EXPECT_EQ(display.Find(Caption).Id, "");
  EXPECT_EQ(m_MediaType, "audio");  // the picture of its cover makes no video of it
}

TEST_F(VideoWindow, ASongWithACoverIsVisualized) {
  const XServer& display = Display();
  Watch(true);
  PlayTestFile("cover.mp3");
  ASSERT_TRUE(RunUntilDrawn(display, 3));
  EXPECT_EQ(m_MediaType, "audio");
}

TEST_F(VideoWindow, ASongAfterAVideoTakesTheWindowAway) {
  const XServer& display = Display();
  Watch(true);
  PlayTestFile("clip.mp4");
  ASSERT_TRUE(RunUntilSeen(display));
  Watch(false);
  Play(Wave("song.wav", 3));
  EXPECT_TRUE(RunUntilGone(display));
  EXPECT_TRUE(RunUntilPosition(0.3));
}

TEST_F(VideoWindow, TheCloseBoxDoesNothing) {
  const XServer& display = Display(true);
  Watch(true);
  PlayTestFile("clip.mp4");
  ASSERT_TRUE(RunUntilSeen(display));
  ASSERT_TRUE(RunUntilPosition(0.2));
  int32_t lAsked = 0;
  m_Player->Window()->MayClose = [&] {
    ++lAsked;
    return !m_Form->QueryUnload(frmMediaPlayer::ControlMenu);
  };
  display.Close(Caption);
  ASSERT_TRUE(RunUntil([&] { return lAsked > 0; }));
  EXPECT_TRUE(RunUntilPosition(1.0));
  EXPECT_FALSE(display.Find(Caption).Id.empty());
  EXPECT_EQ(m_Player->PlayState(), MediaPlayer::StatePlaying);
}

TEST_F(VideoWindow, FullScreenFillsTheScreen) {
  const XServer& display = Display(true);
  Watch(true, true);
  PlayTestFile("clip.mp4");
  EXPECT_TRUE(RunUntil([&] { return display.Find(Caption).Width == 1280; }));
  EXPECT_EQ(display.Find(Caption).Height, 800);
  EXPECT_TRUE(RunUntilDrawn(display, 50));
}

TEST_F(NoDisplay, TheSoundOfAVideoPlaysAndItIsToldOnce) {
  Watch(true);
  for (int32_t lTime = 0; lTime < 2; ++lTime) {
    PlayTestFile("clip.mp4");
    ASSERT_TRUE(RunUntilPosition(0.3));
    m_Player->Stop();
  }
  EXPECT_EQ(m_Troubles.size(), 1U);
  EXPECT_EQ(m_ErrorEvents, 0);
}

TEST_F(NoDisplay, ASongSaysNothing) {
  Watch(false);
  Play(Wave("song.wav", 0.5));
  ASSERT_TRUE(RunUntilPosition(0.1));
  ASSERT_TRUE(RunUntilStopped());
  EXPECT_TRUE(m_Troubles.empty());
}

// Where the library looks for other displays in vain it has been seen to close descriptors that are not its
// own.
TEST_F(VideoWindow, NothingOfTheProgramIsClosedWithTheWindow) {
  const XServer& display = Display();
  std::vector<int> before;
  for (int descriptor = 0; descriptor < 32; ++descriptor)
    if (fcntl(descriptor, F_GETFD) >= 0) before.push_back(descriptor);
  Watch(true);
  PlayTestFile("clip.mp4");
  ASSERT_TRUE(RunUntilSeen(display));
  m_Form->Hide();
  ASSERT_TRUE(RunUntilGone(display));
  for (const int descriptor : before) EXPECT_GE(fcntl(descriptor, F_GETFD), 0) << descriptor;
}

TEST_F(VideoWindow, ADisplayThatBreaksAwayEndsTheSongAndNothingElse) {
  const auto display = std::make_unique<XServer>();
  ASSERT_TRUE(display->Runs());
  display->Use(false);
  Watch(true);
  PlayTestFile("clip.mp4");
  ASSERT_TRUE(RunUntilSeen(*display));
  ASSERT_TRUE(RunUntilPosition(0.3));
  display->BreakAway();
  ASSERT_TRUE(RunUntilStopped());
  EXPECT_EQ(m_ErrorEvents, 1);
  EXPECT_THAT(m_Errors, HasSubstr("broken away"));
  PlayTestFile("clip.mp4");
  ASSERT_TRUE(RunUntilPosition(0.3));
  EXPECT_EQ(m_Troubles.size(), 1U);
}

TEST_F(VideoWindow, ADisplayThatBreaksAwayBetweenTwoVideosIsDoneWithout) {
  const auto display = std::make_unique<XServer>();
  ASSERT_TRUE(display->Runs());
  display->Use(false);
  Watch(true);
  PlayTestFile("clip.mp4");
  ASSERT_TRUE(RunUntilSeen(*display));
  m_Player->Stop();
  display->BreakAway();
  RunFor(200ms);
  PlayTestFile("clip.mp4");
  EXPECT_TRUE(RunUntilPosition(0.3));
  EXPECT_EQ(m_ErrorEvents, 0);
  EXPECT_EQ(m_Troubles.size(), 1U);
}

TEST_F(VideoWindow, UnloadedTheWindowIsGone) {
  const XServer& display = Display();
  Watch(true);
  PlayTestFile("clip.mp4");
  ASSERT_TRUE(RunUntilSeen(display));
  m_Form->Unload();
  EXPECT_FALSE(m_Player->Window()->Loaded());
  EXPECT_TRUE(RunUntilGone(display));
}

}  // namespace
}  // namespace vex::test
