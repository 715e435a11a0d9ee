#include "components/open/media/MpvMediaPlayer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "basic/Error.h"
#include "host/Host.h"

namespace vex::test {
namespace {

using testing::HasSubstr;
using namespace std::chrono_literals;

/// The real library on real files, with no sound card.
class Mpv : public testing::Test {
 protected:
  Mpv() {
    char pattern[] = "/tmp/vexmediaXXXXXX";
    m_Folder = mkdtemp(pattern);
    setenv("VEX_RUNTIME_DIR", (m_Folder + "/run").c_str(), 1);
    setenv("VEX_SETTINGS", (m_Folder + "/settings.reg").c_str(), 1);
    m_Host = NativeHost();
    m_Player = std::make_unique<MpvMediaPlayer>(m_Host->Clock(), m_Host->EventLoop(), m_Host->Files(),
                                                MpvSettings{0, "null"});
    m_Player->ErrorEvent = [this] {
      m_StateAtError = m_Player->PlayState();
      for (int32_t i = 0; i < m_Player->ErrorCount(); ++i) m_Errors += m_Player->ErrorDescription(i) + "|";
      ++m_ErrorEvents;
    };
    m_Player->OpenStateChange = [this](int32_t lState) {
      m_OpenStates.push_back(lState);
      m_MediaType = m_Player->CurrentMedia()->GetItemInfo("MediaType");
    };
    m_Player->Changed = [this] { ++m_Changes; };
  }
  ~Mpv() override {
    m_Player.reset();
    m_Host.reset();
    std::filesystem::remove_all(m_Folder);
  }

  std::string Path(const std::string& szName) const {
    return m_Host->Files().SystemPath(m_Folder + "/" + szName);
  }

  /// A real wave file: 8 kHz, 16 bit, one channel, a tone.
  std::string Wave(const std::string& szName, double seconds) const {
    constexpr uint32_t rate = 8000;
    const auto count = static_cast<uint32_t>(seconds * rate);
    std::ofstream file(m_Folder + "/" + szName, std::ios::binary);
    const auto number = [&file](uint32_t value, int bytes) {
      for (int i = 0; i < bytes; ++i) file.put(static_cast<char>(value >> (8 * i)));
    };
    file << "RIFF";
    number(36 + count * 2, 4);
    file << "WAVEfmt ";
    number(16, 4);
    number(1, 2);
    number(1, 2);
    number(rate, 4);
    number(rate * 2, 4);
    number(2, 2);
    number(16, 2);
    file << "data";
    number(count * 2, 4);
    for (uint32_t i = 0; i < count; ++i) {
      number(static_cast<uint32_t>(static_cast<int32_t>(8000 * std::sin(i * 0.3))) & 0xFFFF, 2);
    }
    return Path(szName);
  }

  void Play(const std::string& szPath) {
    m_Player->CurrentMedia(m_Player->NewMedia(szPath));
    m_Player->CurrentPosition(0);
    m_Player->Play();
  }

  /// Runs the loop until it is so, at the longest ten seconds.
  bool RunUntil(const std::function<bool()>& isSo) {
    const Elapsed end = m_Host->Clock().Elapsed() + 10s;
    const auto timer = m_Host->EventLoop().NewTimer(TimerOrder::Component);
    timer->Interval(2);
    timer->Tick([&] {
      if (isSo() || m_Host->Clock().Elapsed() > end) m_Host->EventLoop().Quit();
    });
    timer->Enabled(true);
    m_Host->EventLoop().Run();
    return isSo();
  }
  bool RunUntilStopped() {
    return RunUntil([this] { return m_Player->PlayState() == MediaPlayer::StateStopped; });
  }
  bool RunUntilPosition(double seconds) {
    return RunUntil([this, seconds] { return m_Player->CurrentPosition() >= seconds; });
  }

  std::string m_Folder;
  std::unique_ptr<Host> m_Host;
  std::unique_ptr<MpvMediaPlayer> m_Player;
  std::vector<int32_t> m_OpenStates;
  std::string m_MediaType;
  std::string m_Errors;
  int32_t m_ErrorEvents = 0;
  int32_t m_StateAtError = 0;
  int32_t m_Changes = 0;
};

TEST_F(Mpv, ASongPlaysToItsEndWithItsPosition) {
  Play(Wave("song.wav", 1.0));
  EXPECT_NE(m_Player->PlayState(), MediaPlayer::StateStopped);
  double last = 0;
  bool boolWentBack = false;
  ASSERT_TRUE(RunUntil([&] {
    const double position = m_Player->CurrentPosition();
    if (m_Player->PlayState() == MediaPlayer::StatePlaying) {
      boolWentBack = boolWentBack || position < last;
      last = position;
    }
    return m_Player->PlayState() == MediaPlayer::StateStopped;
  }));
  EXPECT_FALSE(boolWentBack);
  EXPECT_GT(last, 0.5);
  EXPECT_LT(last, 1.1);
  EXPECT_EQ(m_OpenStates, std::vector<int32_t>{MediaPlayer::OpenStateMediaOpen});
  EXPECT_EQ(m_MediaType, "audio");
  EXPECT_EQ(m_ErrorEvents, 0);
}

TEST_F(Mpv, TwoSongsPlayOneAfterTheOther) {
  const std::string szFirst = Wave("one.wav", 0.3);
  const std::string szSecond = Wave("two.wav", 0.3);
  Play(szFirst);
  ASSERT_TRUE(RunUntilStopped());
  Play(szSecond);
  EXPECT_EQ(m_Player->CurrentPosition(), 0);
  ASSERT_TRUE(RunUntilPosition(0.1));
  ASSERT_TRUE(RunUntilStopped());
  EXPECT_EQ(m_OpenStates.size(), 2U);
}

TEST_F(Mpv, AMissingFileIsAnErrorBeforeTheStateIsStopped) {
  Play(Path("missing.ogg"));
  ASSERT_TRUE(RunUntilStopped());
  EXPECT_EQ(m_ErrorEvents, 1);
  EXPECT_NE(m_StateAtError, MediaPlayer::StateStopped);
  EXPECT_THAT(m_Errors, HasSubstr("No such file"));
}

TEST_F(Mpv, GarbageIsAnErrorWithItsReason) {
  std::ofstream(m_Folder + "/text.mp3") << "this is no song at all\n";
  Play(Path("text.mp3"));
  ASSERT_TRUE(RunUntilStopped());
  EXPECT_EQ(m_ErrorEvents, 1);
  EXPECT_FALSE(m_Errors.empty());
}

TEST_F(Mpv, AfterAnErrorTheNextSongPlays) {
  Play(Path("missing.ogg"));
  ASSERT_TRUE(RunUntilStopped());
  m_Player->ClearErrorQueue();
  EXPECT_EQ(m_Player->ErrorCount(), 0);
  Play(Wave("song.wav", 0.3));
  ASSERT_TRUE(RunUntilPosition(0.1));
  ASSERT_TRUE(RunUntilStopped());
  EXPECT_EQ(m_ErrorEvents, 1);
}

TEST_F(Mpv, StopWhileOpeningAndWhilePlayingIsAtOnce) {
  const std::string szSong = Wave("song.wav", 5);
  Play(szSong);
  m_Player->Stop();
  EXPECT_EQ(m_Player->PlayState(), MediaPlayer::StateStopped);
  Play(szSong);
  ASSERT_TRUE(RunUntilPosition(0.1));
  m_Player->Stop();
  EXPECT_EQ(m_Player->PlayState(), MediaPlayer::StateStopped);
  Play(szSong);
  ASSERT_TRUE(RunUntilPosition(0.1));
  EXPECT_LT(m_Player->CurrentPosition(), 1.0);
}

TEST_F(Mpv, ANameWithAnUmlautIsFound) {
  Wave("F\xC3\xBCr Elise.wav", 0.3);
  Play(Path("") + "\\F\xFCr Elise.wav");
  ASSERT_TRUE(RunUntilPosition(0.1));
  EXPECT_EQ(m_ErrorEvents, 0);
}

TEST_F(Mpv, ASongDeletedWhileItPlaysEndsWithoutHangingTheShow) {
  const std::string szSong = Wave("song.wav", 0.6);
  Play(szSong);
  ASSERT_TRUE(RunUntilPosition(0.1));
  std::filesystem::remove(m_Folder + "/song.wav");
  EXPECT_TRUE(RunUntilStopped());
}

TEST_F(Mpv, ThePositionIsForetold) {
  Play(Wave("song.wav", 2));
  ASSERT_TRUE(RunUntilPosition(0.3));
  const NextDue due = m_Player->WhenPositionReaches(800);
  ASSERT_FALSE(due.IsNever());
  ASSERT_TRUE(RunUntil([&] { return m_Host->Clock().Elapsed().count() >= due.Value(); }));
  EXPECT_GE(m_Player->CurrentPosition(), 0.79);
}

TEST_F(Mpv, SoundThatIsLateMovesThePositionBack) {
  m_Player = std::make_unique<MpvMediaPlayer>(m_Host->Clock(), m_Host->EventLoop(), m_Host->Files(),
                                              MpvSettings{400, "null"});
  Play(Wave("song.wav", 1.0));
  double last = 0;
  ASSERT_TRUE(RunUntil([&] {
    if (m_Player->PlayState() == MediaPlayer::StatePlaying) last = m_Player->CurrentPosition();
    return m_Player->PlayState() == MediaPlayer::StateStopped;
  }));
  EXPECT_LT(last, 0.75);
}

TEST_F(Mpv, AnEmptyFileIsAnError) {
  std::ofstream(m_Folder + "/empty.ogg").flush();
  Play(Path("empty.ogg"));
  ASSERT_TRUE(RunUntilStopped());
  EXPECT_EQ(m_ErrorEvents, 1);
}

TEST_F(Mpv, WithoutMediaPlayIsAnError) {
  EXPECT_THROW(m_Player->Play(), Error);
}

TEST_F(Mpv, GoingWhileASongOpensOrPlaysHangsNothing) {
  Play(Wave("song.wav", 5));
  m_Player.reset();
}

}  // namespace
}  // namespace vex::test
