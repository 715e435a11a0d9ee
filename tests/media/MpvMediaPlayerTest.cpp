#include <fstream>

#include "basic/Error.h"
#include "tests/media/MpvRig.h"

namespace vex::test {
namespace {

using testing::HasSubstr;

using Mpv = MpvRig;

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
  m_Player = std::make_shared<MpvMediaPlayer>(m_Host->Clock(), m_Host->EventLoop(), m_Host->Files(),
                                              MpvSettings{400, "null", 30000});
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

TEST_F(Mpv, AFailedSongLeavesNoErrorForTheNextOne) {
  Play(Path("missing.ogg"));
  ASSERT_TRUE(RunUntilStopped());
  std::ofstream(m_Folder + "/text.mp3") << "this is no song at all\n";
  m_Player->ClearErrorQueue();
  m_Errors.clear();
  Play(Path("text.mp3"));
  ASSERT_TRUE(RunUntilStopped());
  EXPECT_THAT(m_Errors, testing::Not(HasSubstr("missing.ogg")));
}

TEST_F(Mpv, StoppedInItsOwnOpenEventASongLetsTheNextOnePlay) {
  const std::string szSong = Wave("song.wav", 0.3);
  m_Player->OpenStateChange = [this](int32_t) { m_Player->Stop(); };
  Play(szSong);
  ASSERT_TRUE(RunUntilStopped());
  m_Player->OpenStateChange = nullptr;
  Play(szSong);
  EXPECT_TRUE(RunUntilPosition(0.1));
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
