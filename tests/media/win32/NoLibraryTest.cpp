#include <gtest/gtest.h>

#include "components/open/media/MediaProbe.h"
#include "components/open/media/MpvLibrary.h"
#include "host/virtual/VirtualFiles.h"

// The media library is a file that the user puts beside the program. Where it is not there, that must be said
// with the name of the file, and nothing else may happen.

namespace vex::test {
namespace {

TEST(NoMediaLibrary, SaysWhichFileToPutWhere) {
  const std::string& szFailure = MpvLibrary::Loaded().Failure;
  EXPECT_NE(szFailure.find("put libmpv-2.dll beside the program"), std::string::npos) << szFailure;
}

TEST(NoMediaLibrary, AProbeTellsItOfEveryFile) {
  VirtualFiles files;
  files.Put("D:\\song.ogg", "x");
  MediaProbe probe(files);
  for (const char* szSong : {"D:\\song.ogg", "D:\\none.ogg"}) {
    const ProbedMedia media = probe.Look(szSong);
    EXPECT_EQ(media.Failure, MpvLibrary::Loaded().Failure);
    EXPECT_FALSE(media.Length.has_value());
    EXPECT_EQ(media.MediaType, "");
  }
}

}  // namespace
}  // namespace vex::test
