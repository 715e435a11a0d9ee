#include <cmath>
#include <filesystem>
#include <fstream>
#include <vector>

#include "basic/Error.h"
#include "components/com/MediaControl.h"
#include "tests/com/ComMachine.h"

// The machine's own control, playing real files.

namespace vex::test {
namespace {

/// A tone as a wav file.
void WriteWav(const std::string& szPath, double seconds) {
  constexpr uint32_t rate = 22050;
  const auto count = static_cast<uint32_t>(seconds * rate);
  std::string bytes = "RIFF";
  const auto word = [&bytes](uint32_t value, int size) {
    for (int i = 0; i < size; ++i) bytes += static_cast<char>(value >> (8 * i) & 0xFF);
  };
  word(36 + 2 * count, 4);
  bytes += "WAVEfmt ";
  word(16, 4);
  word(1, 2);
  word(1, 2);
  word(rate, 4);
  word(2 * rate, 4);
  word(2, 2);
  word(16, 2);
  bytes += "data";
  word(2 * count, 4);
  for (uint32_t i = 0; i < count; ++i)
    word(static_cast<uint32_t>(static_cast<int32_t>(3000 * std::sin(i * 0.1))) & 0xFFFF, 2);
  std::ofstream(szPath, std::ios::binary) << bytes;
}

class MediaControlTest : public testing::Test {
 protected:
  void Make() {
    m_Control = std::make_unique<MediaControl>(m_Host.Clock(), m_Host.EventLoop());
    m_Control->OpenStateChange = [this](int32_t lState) { m_Opened += lState == 13 ? 1 : 0; };
    m_Control->ErrorEvent = [this] {
      ++m_Errors;
      m_StateAtError = m_Control->PlayState();
    };
  }
  void Give(const std::string& szPath) {
    m_Control->CurrentMedia(m_Control->NewMedia(szPath));
    m_Control->CurrentPosition(0);
    m_Control->Play();
  }
  bool Ends() {
    return RunUntil(m_Host.EventLoop(), [this] {
      if (m_Control->PlayState() == MediaPlayer::StateStopped) return true;
      const double position = m_Control->CurrentPosition();
      EXPECT_GE(position, m_Furthest);
      m_Furthest = position;
      return false;
    });
  }

  Win32Host m_Host;
  TemporaryFolder m_Folder;
  std::unique_ptr<MediaControl> m_Control;
  int32_t m_Opened = 0;
  int32_t m_Errors = 0;
  int32_t m_StateAtError = 0;
  double m_Furthest = 0;
};

TEST_F(MediaControlTest, WavPlaysFromItsOpeningToItsEnd) {
  const std::string szFile = m_Folder.Path() + "F\xFCr.wav";
  WriteWav(szFile, 0.6);
  Make();
  Give(szFile);
  EXPECT_NE(m_Control->PlayState(), MediaPlayer::StateStopped);
  EXPECT_TRUE(Ends());
  EXPECT_GE(m_Opened, 1);
  EXPECT_EQ(m_Errors, 0);
  EXPECT_NEAR(m_Furthest, 0.6, 0.3);
}

TEST_F(MediaControlTest, NextFilePlaysAfterOneThatEndedAndOneThatWasStopped) {
  const std::string szFile = m_Folder.Path() + "a.wav";
  WriteWav(szFile, 0.3);
  Make();
  for (int32_t lTimes = 0; lTimes < 2; ++lTimes) {
    m_Furthest = 0;
    Give(szFile);
    EXPECT_TRUE(Ends());
    m_Control->Stop();
    Give(szFile);
    m_Control->Stop();
    EXPECT_EQ(m_Control->PlayState(), MediaPlayer::StateStopped);
  }
  EXPECT_EQ(m_Errors, 0);
}

TEST_F(MediaControlTest, MissingOrBadFileIsAnErrorBeforeItIsStoppedAndTheNextOnePlays) {
  const std::string szGood = m_Folder.Path() + "a.wav";
  const std::string szBad = m_Folder.Path() + "b.wav";
  WriteWav(szGood, 0.3);
  std::ofstream(szBad) << "no sound at all";
  Make();
  int32_t lErrors = 0;
  for (const std::string& szFile : {m_Folder.Path() + "none.wav", szBad, m_Folder.Path() + "none.wav"}) {
    Give(szFile);
    EXPECT_NE(m_Control->PlayState(), MediaPlayer::StateStopped);
    m_Furthest = 0;
    EXPECT_TRUE(Ends());
    EXPECT_EQ(m_Errors, ++lErrors);
    EXPECT_NE(m_StateAtError, MediaPlayer::StateStopped);
    ASSERT_EQ(m_Control->ErrorCount(), 1);
    EXPECT_NE(m_Control->ErrorDescription(0), "");
    m_Control->ClearErrorQueue();
    m_Control->Stop();
  }
  m_Furthest = 0;
  Give(szGood);
  EXPECT_TRUE(Ends());
  EXPECT_EQ(m_Errors, lErrors);
}

TEST_F(MediaControlTest, FailureThatWasStoppedIsNotTold) {
  Make();
  Give(m_Folder.Path() + "none.wav");
  m_Control->Stop();
  m_Host.EventLoop().Pump();
  EXPECT_EQ(m_Errors, 0);
}

TEST_F(MediaControlTest, OggPlaysToo) {
  Make();
  Give((std::filesystem::current_path() / "com_tests_song.ogg").string());
  EXPECT_TRUE(RunUntil(m_Host.EventLoop(), [this] {
    return m_Control->CurrentPosition() > 0.3 || m_Control->PlayState() == MediaPlayer::StateStopped;
  }));
  EXPECT_EQ(m_Control->PlayState(), MediaPlayer::StatePlaying);
  EXPECT_EQ(m_Errors, 0);
  m_Control->Stop();
  EXPECT_EQ(m_Control->PlayState(), MediaPlayer::StateStopped);
}

TEST_F(MediaControlTest, ControlFillsTheInsideOfItsWindow) {
  Make();
  ControlWindow& window = *m_Control->Window();
  const HWND child = GetWindow(window.Native(), GW_CHILD);
  ASSERT_NE(child, nullptr);
  window.MoveControl(0, 0, 320, 200);
  RECT place{};
  GetClientRect(child, &place);
  EXPECT_EQ(place.right, 320);
  EXPECT_EQ(place.bottom, 200);
}

TEST_F(MediaControlTest, ControlPlaysOnWhenItsWindowIsUnloaded) {
  const std::string szFile = m_Folder.Path() + "a.wav";
  WriteWav(szFile, 0.3);
  Make();
  m_Control->Window()->Unload();
  Give(szFile);
  EXPECT_TRUE(Ends());
  EXPECT_EQ(m_Errors, 0);
}

TEST_F(MediaControlTest, FullScreenThatTheControlLacksIsNoError) {
  Make();
  m_Control->FullScreen(true);
  m_Control->FullScreen(false);
}

}  // namespace
}  // namespace vex::test
