#include <sys/stat.h>

#include <fstream>

#include "tests/media/MpvRig.h"

namespace vex::test {
namespace {

using testing::HasSubstr;

/// Files that people put beside their songs, and what becomes of the show.
class BadMedia : public MpvRig {
 protected:
  void Write(const std::string& szName, const std::string& szContent) const {
    std::ofstream(m_Folder + "/" + szName, std::ios::binary) << szContent;
  }
  void Copy(const std::string& szTestFile, const std::string& szName) const {
    std::filesystem::copy_file(VEX_MEDIA_FILES "/" + szTestFile, m_Folder + "/" + szName);
  }
  /// One error event with a text, told before the play state is that of a song that is over.
  void ExpectOneError(const std::string& szName) {
    Play(Path(szName));
    EXPECT_TRUE(RunUntilStopped()) << szName;
    EXPECT_EQ(m_ErrorEvents, 1) << szName;
    EXPECT_NE(m_StateAtError, MediaPlayer::StateStopped) << szName;
    EXPECT_THAT(m_Errors, testing::Not(testing::AnyOf("", "|", HasSubstr("\n")))) << szName;
  }
  void ExpectTheNextSongToPlay() {
    m_Player->ClearErrorQueue();
    m_ErrorEvents = 0;
    Play(Wave("next.wav", 0.3));
    EXPECT_TRUE(RunUntilPosition(0.1));
    EXPECT_TRUE(RunUntilStopped());
    EXPECT_EQ(m_ErrorEvents, 0);
  }
};

TEST_F(BadMedia, ATextNamedAsASong) {
  std::string szText;
  for (int line = 0; line < 2000; ++line) szText += "Silent night, holy night, all is calm, all is bright.\n";
  Write("text.mp3", szText);
  ExpectOneError("text.mp3");
  ExpectTheNextSongToPlay();
}

TEST_F(BadMedia, OneWordNamedAsASong) {
  Write("word.mp3", "later\n");
  ExpectOneError("word.mp3");
  ExpectTheNextSongToPlay();
}

// The library would play what stands in it, for as long as that lasts and beside the show.
TEST_F(BadMedia, AListOfSongsNamedAsASong) {
  Wave("listed.wav", 5);
  Write("list.mp3", "#EXTM3U\n" + m_Folder + "/listed.wav\n" + m_Folder + "/listed.wav\n");
  ExpectOneError("list.mp3");
  EXPECT_THAT(m_Errors, HasSubstr("list of"));
  EXPECT_TRUE(m_OpenStates.empty());
  ExpectTheNextSongToPlay();
}

TEST_F(BadMedia, AFolderNamedAsASong) {
  std::filesystem::create_directory(m_Folder + "/album.mp3");
  Wave("album.mp3/first.wav", 5);
  ExpectOneError("album.mp3");
  ExpectTheNextSongToPlay();
}

TEST_F(BadMedia, ASongThatMayNotBeRead) {
  std::filesystem::create_symlink("loop.mp3", m_Folder + "/loop.mp3");  // not even root reads that
  ExpectOneError("loop.mp3");
  ExpectTheNextSongToPlay();
}

// As a disk that never answers does; a pipe is as patient.
TEST_F(BadMedia, AFileThatNeverOpensIsGivenUp) {
  MakePlayer(500);
  ASSERT_EQ(mkfifo((m_Folder + "/pipe.mp3").c_str(), 0600), 0);
  ExpectOneError("pipe.mp3");
  EXPECT_THAT(m_Errors, HasSubstr("does not open"));
  ExpectTheNextSongToPlay();
}

// Nobody sees that its pictures would go on.
TEST_F(BadMedia, AHiddenVideoEndsWithItsSound) {
  Copy("short-sound.mp4", "video.mp4");
  Play(Path("video.mp4"));
  ASSERT_TRUE(RunUntilPosition(0.2));
  const Elapsed began = m_Host->Clock().Elapsed();
  EXPECT_TRUE(RunUntilStopped());
  EXPECT_LT(m_Host->Clock().Elapsed() - began, 2s);
  EXPECT_EQ(m_ErrorEvents, 0);
}

TEST_F(BadMedia, AVideoWithoutSoundPlaysInItsTime) {
  Copy("silent.mp4", "silent.mp4");
  Play(Path("silent.mp4"));
  ASSERT_TRUE(RunUntilPosition(0.2));
  const Elapsed began = m_Host->Clock().Elapsed();
  ASSERT_TRUE(RunUntilPosition(1.2));
  EXPECT_NEAR(std::chrono::duration<double>(m_Host->Clock().Elapsed() - began).count(), 1.0, 0.5);
  EXPECT_EQ(m_MediaType, "video");
  EXPECT_TRUE(RunUntilStopped());
  EXPECT_EQ(m_ErrorEvents, 0);
}

TEST_F(BadMedia, ASongWithItsCoverIsASong) {
  Copy("cover.mp3", "cover.mp3");
  Play(Path("cover.mp3"));
  EXPECT_TRUE(RunUntilStopped());
  EXPECT_EQ(m_MediaType, "audio");
  EXPECT_EQ(m_ErrorEvents, 0);
}

TEST_F(BadMedia, APictureNamedAsASongHoldsTheShowUpForNoLongerThanItSays) {
  Copy("cover.mp3", "song.mp3");
  std::filesystem::resize_file(m_Folder + "/song.mp3", 4000);  // cut off within its picture or soon after
  Play(Path("song.mp3"));
  EXPECT_TRUE(RunUntilStopped());
  ExpectTheNextSongToPlay();
}

TEST_F(BadMedia, ASongDeletedWhileItPlaysIsMissedTheNextTime) {
  const std::string szSong = Wave("song.wav", 0.8);
  Play(szSong);
  ASSERT_TRUE(RunUntilPosition(0.1));
  std::filesystem::remove(m_Folder + "/song.wav");
  EXPECT_TRUE(RunUntilStopped());
  EXPECT_EQ(m_ErrorEvents, 0);
  ExpectOneError("song.wav");
  EXPECT_THAT(m_Errors, HasSubstr("song.wav"));
  ExpectTheNextSongToPlay();
}

}  // namespace
}  // namespace vex::test
