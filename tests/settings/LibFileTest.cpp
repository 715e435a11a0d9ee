#include "settings/LibFile.h"

#include <gtest/gtest.h>

#include "host/virtual/VirtualFiles.h"
#include "host/virtual/VirtualRegistry.h"
#include "settings/VideoPreferences.h"

namespace vex::test {
namespace {

const std::string Shared = "Software\\Brillara\\Shared";

class LibFileTest : public testing::Test {
 protected:
  void Audio(const std::string& szFolder) { Registry.SetText(Shared, "AudioPath", szFolder); }
  void NonAudio(const std::string& szFolder) { Registry.SetText(Shared, "NonAudioPath", szFolder); }
  VirtualRegistry Registry;
  VirtualFiles Files;
};

TEST_F(LibFileTest, FoldersAreEmptyWithoutSettings) {
  EXPECT_EQ(AudioPath(Registry), "");
  EXPECT_EQ(NonAudioPath(Registry), "");
}

TEST_F(LibFileTest, FoldersHaveOneTrailingBackslash) {
  Audio("D:\\Music");
  NonAudio("D:\\Seq\\");
  EXPECT_EQ(AudioPath(Registry), "D:\\Music\\");
  EXPECT_EQ(NonAudioPath(Registry), "D:\\Seq\\");
  Audio("");
  EXPECT_EQ(AudioPath(Registry), "");
}

TEST_F(LibFileTest, FoldersAreReadAtEveryCall) {
  Audio("D:\\Music");
  EXPECT_EQ(FullSequencePath(Registry, "carol", true), "D:\\Music\\carol");
  Audio("E:\\");
  EXPECT_EQ(FullSequencePath(Registry, "carol", true), "E:\\carol");
}

TEST_F(LibFileTest, EmptyNameStaysEmpty) {
  Audio("D:\\Music");
  EXPECT_EQ(FullSequencePath(Registry, "", true), "");
}

TEST_F(LibFileTest, FullPathsComeBackUnchanged) {
  Audio("D:\\Music");
  NonAudio("D:\\Seq");
  for (const char* szName : {"C:\\tree", "tree:x", ":", "\\\\srv\\tree", "\\\\"}) {
    EXPECT_EQ(FullSequencePath(Registry, szName, true), szName);
    EXPECT_EQ(FullSequencePath(Registry, szName, false), szName);
  }
}

TEST_F(LibFileTest, OtherNamesStandBehindTheirFolder) {
  Audio("D:\\Music");
  NonAudio("D:\\Seq");
  EXPECT_EQ(FullSequencePath(Registry, "\\Show\\tree", false), "D:\\Seq\\Show\\tree");
  EXPECT_EQ(FullSequencePath(Registry, "Show\\tree", false), "D:\\Seq\\Show\\tree");
  EXPECT_EQ(FullSequencePath(Registry, "\\", false), "D:\\Seq\\");
  EXPECT_EQ(FullSequencePath(Registry, "carol", true), "D:\\Music\\carol");
  EXPECT_EQ(FullSequencePath(Registry, "a\\\\b", true), "D:\\Music\\a\\\\b");
}

TEST_F(LibFileTest, EmptyFolderLeavesNamesUntouched) {
  NonAudio("D:\\Seq");
  Audio("");
  EXPECT_EQ(FullSequencePath(Registry, "\\Show\\tree", true), "\\Show\\tree");
  EXPECT_EQ(FullSequencePath(Registry, "tree", true), "tree");
}

TEST_F(LibFileTest, FileExistsForFilesAlone) {
  Files.Put("D:\\shows\\eve.shw", "x");
  EXPECT_TRUE(FileExists(Files, "D:\\shows\\eve.shw"));
  EXPECT_FALSE(FileExists(Files, "D:\\shows"));
  EXPECT_FALSE(FileExists(Files, "D:\\shows\\none.shw"));
  EXPECT_FALSE(FileExists(Files, ""));
}

TEST_F(LibFileTest, WholeFilesAreReadAndWritten) {
  EXPECT_TRUE(WriteFile(Files, "eve.shw", std::string("a\0b\r\n", 5)));
  std::string szContents;
  EXPECT_TRUE(ReadFile(Files, "eve.shw", szContents));
  EXPECT_EQ(szContents, std::string("a\0b\r\n", 5));
  EXPECT_FALSE(ReadFile(Files, "none.shw", szContents));
  Files.FailReads("eve.shw");
  EXPECT_FALSE(ReadFile(Files, "eve.shw", szContents));
  Files.FailWrites("eve.shw");
  EXPECT_FALSE(WriteFile(Files, "eve.shw", "x"));
}

TEST(VideoPreferences, DefaultsWithoutSettings) {
  VirtualRegistry registry;
  EXPECT_EQ(GetVideoPreferences(registry), (VideoPreferences{true, false, false, 0, 0}));
}

TEST(VideoPreferences, EachSettingIsReadAfresh) {
  VirtualRegistry registry;
  const std::string szKey = Shared + "\\VideoPreferences";
  registry.SetLong(szKey, "DisplayVideos", 0);
  registry.SetLong(szKey, "DisplayVisualizations", 1);
  registry.SetLong(szKey, "FullScreenVideo", 2);
  registry.SetLong(szKey, "MonitorX", 0xFFFFF880);
  registry.SetLong(szKey, "MonitorY", 100);
  EXPECT_EQ(GetVideoPreferences(registry), (VideoPreferences{false, true, true, -1920, 100}));
  registry.RemoveKey(szKey);
  EXPECT_EQ(GetVideoPreferences(registry), VideoPreferences());
}

}  // namespace
}  // namespace vex::test
