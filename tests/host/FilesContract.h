#pragma once

#include <vector>

#include "tests/host/HostContract.h"

namespace vex::test {

TEST_P(HostContract, FileComesBackToTheByte) {
  std::string szAllBytes;
  for (int byte = 0; byte < 256; ++byte) szAllBytes += static_cast<char>(byte);
  const std::string szPath = m_Machine->Folder() + "eve.shw";
  ASSERT_TRUE(m_Host->Files().Write(szPath, szAllBytes));
  std::string szContents = "what the buffer held before, and more of it than the file is long" + szAllBytes;
  ASSERT_TRUE(m_Host->Files().Read(szPath, szContents));
  EXPECT_EQ(szContents, szAllBytes);
}

TEST_P(HostContract, WritingAgainReplacesTheWholeFile) {
  const std::string szPath = m_Machine->Folder() + "eve.shw";
  ASSERT_TRUE(m_Host->Files().Write(szPath, "a long text"));
  ASSERT_TRUE(m_Host->Files().Write(szPath, "short"));
  ASSERT_TRUE(m_Host->Files().Publish(szPath, ""));
  std::string szContents = "x";
  ASSERT_TRUE(m_Host->Files().Read(szPath, szContents));
  EXPECT_EQ(szContents, "");
}

TEST_P(HostContract, MissingFileIsFileNotFound) {
  std::string szContents;
  std::string szReason;
  const std::string szPath = m_Machine->Folder() + "none.shw";
  EXPECT_FALSE(m_Host->Files().Read(szPath, szContents, &szReason));
  EXPECT_EQ(szReason, "File not found");
  EXPECT_FALSE(m_Host->Files().Read(szPath, szContents));
  EXPECT_FALSE(m_Host->Files().Exists(szPath));
  EXPECT_FALSE(m_Host->Files().Open(szPath));
  EXPECT_FALSE(m_Host->Files().Remove(szPath));
}

TEST_P(HostContract, NamesCompareWithoutCase) {
  Files& files = m_Host->Files();
  ASSERT_TRUE(files.MakeFolder(m_Machine->Folder() + "Shows"));
  ASSERT_TRUE(files.Write(m_Machine->Folder() + "Shows\\Eve.SHW", "text"));
  std::string szContents;
  EXPECT_TRUE(files.Read(m_Machine->Folder() + "SHOWS\\eve.shw", szContents));
  EXPECT_EQ(szContents, "text");
  EXPECT_TRUE(files.Exists(m_Machine->Folder() + "shows\\EVE.shw"));
}

TEST_P(HostContract, NameOutsideAsciiIsFoundAgain) {
  const std::string szPath = m_Machine->Folder() + "F\xFCr Elise \x80.ogg";
  ASSERT_TRUE(m_Host->Files().Write(szPath, "la"));
  EXPECT_TRUE(m_Host->Files().Exists(szPath));
  EXPECT_EQ(m_Host->Files().SystemPath(m_Host->Files().HostPath(szPath)), szPath);
}

TEST_P(HostContract, FolderIsNoFile) {
  Files& files = m_Host->Files();
  const std::string szFolder = m_Machine->Folder() + "data";
  ASSERT_TRUE(files.MakeFolder(szFolder));
  std::string szContents;
  std::string szReason;
  EXPECT_FALSE(files.Exists(szFolder));
  EXPECT_FALSE(files.Read(szFolder, szContents, &szReason));
  EXPECT_NE(szReason, "");
  EXPECT_FALSE(files.Write(szFolder, "text"));
}

TEST_P(HostContract, MakeFolderTakesOneThatIsThereAndNoFile) {
  Files& files = m_Host->Files();
  EXPECT_TRUE(files.MakeFolder(m_Machine->Folder() + "data\\"));
  EXPECT_TRUE(files.MakeFolder(m_Machine->Folder() + "data"));
  ASSERT_TRUE(files.Write(m_Machine->Folder() + "data\\weeksched.qsc", "()"));
  EXPECT_FALSE(files.MakeFolder(m_Machine->Folder() + "data\\weeksched.qsc"));
  EXPECT_TRUE(files.MakeFolder(m_Machine->Folder() + "with\\those\\above"));
  EXPECT_TRUE(files.Write(m_Machine->Folder() + "with\\those\\above\\it.txt", "x"));
}

TEST_P(HostContract, WritingIntoAMissingFolderFailsAndSaysWhy) {
  std::string szReason;
  const std::string szPath = m_Machine->Folder() + "none\\eve.shw";
  EXPECT_FALSE(m_Host->Files().Write(szPath, "text", &szReason));
  EXPECT_NE(szReason, "");
  EXPECT_FALSE(m_Host->Files().Exists(szPath));
}

TEST_P(HostContract, RemovedFileIsGone) {
  const std::string szPath = m_Machine->Folder() + "eve.shw";
  ASSERT_TRUE(m_Host->Files().Write(szPath, "text"));
  EXPECT_TRUE(m_Host->Files().Remove(szPath));
  EXPECT_FALSE(m_Host->Files().Exists(szPath));
}

TEST_P(HostContract, OpenFileIsReadAtAnyPlaceAndNotBeyondItsEnd) {
  const std::string szPath = m_Machine->Folder() + "tree.fseq";
  ASSERT_TRUE(m_Host->Files().Write(szPath, "0123456789"));
  const auto file = m_Host->Files().Open(szPath);
  ASSERT_TRUE(file);
  EXPECT_EQ(file->Size(), 10U);
  std::vector<uint8_t> bytes(3);
  EXPECT_TRUE(file->ReadAt(7, bytes));
  EXPECT_EQ(bytes, (std::vector<uint8_t>{'7', '8', '9'}));
  EXPECT_FALSE(file->ReadAt(8, bytes));
  EXPECT_FALSE(file->ReadAt(UINT64_MAX, bytes));
  EXPECT_TRUE(file->ReadAt(10, {}));
}

}  // namespace vex::test
