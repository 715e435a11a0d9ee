#include "components/open/media/MediaProbe.h"

#include <fstream>

#include "tests/media/MpvRig.h"

namespace vex::test {
namespace {

class Probe : public MpvRig {
 protected:
  ProbedMedia Look(const std::string& szName) { return m_Probe.Look(Path(szName)); }
  ProbedMedia LookAtTestFile(const std::string& szName) {
    return m_Probe.Look(m_Host->Files().SystemPath(VEX_MEDIA_FILES "/" + szName));
  }
  static double Seconds(const ProbedMedia& media) {
    return std::chrono::duration<double>(media.Length.value_or(-1s)).count();
  }

  MediaProbe m_Probe{m_Host->Files()};
};

TEST_F(Probe, TellsWhatAFileIsAndHowLong) {
  Wave("song.wav", 1.5);
  const ProbedMedia song = Look("song.wav");
  EXPECT_EQ(song.MediaType, "audio");
  EXPECT_NEAR(Seconds(song), 1.5, 0.01);
  EXPECT_EQ(song.Failure, "");
  const ProbedMedia video = LookAtTestFile("silent.mp4");
  EXPECT_EQ(video.MediaType, "video");
  EXPECT_NEAR(Seconds(video), 2.0, 0.01);
  EXPECT_EQ(LookAtTestFile("clip.mp4").MediaType, "video");
  EXPECT_EQ(LookAtTestFile("cover.mp3").MediaType, "audio");
}

TEST_F(Probe, SaysWhyAFileCannotBePlayed) {
  EXPECT_NE(Look("missing.ogg").Failure, "");
  std::ofstream(m_Folder + "/text.mp3") << "no song\n";
  EXPECT_NE(Look("text.mp3").Failure, "");
}

TEST_F(Probe, AListOrAFolderIsNoSongAndLeavesTheNextFileToItself) {
  Wave("song.wav", 1.5);
  std::filesystem::create_directory(m_Folder + "/album");
  Wave("album/first.wav", 9);
  std::ofstream(m_Folder + "/list.mp3") << "#EXTM3U\n" << m_Folder << "/missing.ogg\n";
  for (const char* szName : {"list.mp3", "album"}) {
    EXPECT_EQ(Look(szName).Failure, "it is a list of files or a folder") << szName;
    const ProbedMedia song = Look("song.wav");
    EXPECT_EQ(song.Failure, "") << szName;
    EXPECT_NEAR(Seconds(song), 1.5, 0.01) << szName;
  }
}

}  // namespace
}  // namespace vex::test
