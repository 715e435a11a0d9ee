#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tests/host/HostContract.h"

namespace vex::test {

// What the families keep on whose machines programs write logs; a family that runs the cases of HostContract
// includes this file to have these among them.

TEST_P(HostContract, GrowingFileIsMadeAndReadWhileItIsWritten) {
  Files& files = m_Host->Files();
  const std::string szPath = m_Machine->Folder() + "log";
  const auto file = files.Grow(szPath);
  ASSERT_TRUE(file);
  EXPECT_EQ(file->Size(), 0u);
  ASSERT_TRUE(file->WriteAt(0, "one\n"));
  ASSERT_TRUE(file->WriteAt(4, "two\n"));
  EXPECT_EQ(file->Size(), 8u);
  std::string szContents;
  ASSERT_TRUE(files.Read(szPath, szContents));
  EXPECT_EQ(szContents, "one\ntwo\n");
  EXPECT_TRUE(file->Flush());
}

TEST_P(HostContract, GrowingFileIsWrittenOverItsLastBytes) {
  Files& files = m_Host->Files();
  const std::string szPath = m_Machine->Folder() + "log";
  const auto file = files.Grow(szPath);
  ASSERT_TRUE(file);
  ASSERT_TRUE(file->WriteAt(0, "one\n9\n"));
  ASSERT_TRUE(file->WriteAt(4, "10\n"));
  EXPECT_EQ(file->Size(), 7u);
  std::string szContents;
  ASSERT_TRUE(files.Read(szPath, szContents));
  EXPECT_EQ(szContents, "one\n10\n");
}

TEST_P(HostContract, GrowingFileHasNoHoles) {
  const auto file = m_Host->Files().Grow(m_Machine->Folder() + "log");
  ASSERT_TRUE(file);
  EXPECT_FALSE(file->WriteAt(1, "x"));
  EXPECT_EQ(file->Size(), 0u);
}

TEST_P(HostContract, GrowingFileGoesOnWhereItWas) {
  Files& files = m_Host->Files();
  const std::string szPath = m_Machine->Folder() + "log";
  ASSERT_TRUE(files.Write(szPath, "old\n"));
  const auto file = files.Grow(szPath);
  ASSERT_TRUE(file);
  EXPECT_EQ(file->Size(), 4u);
  ASSERT_TRUE(file->WriteAt(4, "new\n"));
  std::string szContents;
  ASSERT_TRUE(files.Read(szPath, szContents));
  EXPECT_EQ(szContents, "old\nnew\n");
}

TEST_P(HostContract, FolderIsNoGrowingFile) {
  ASSERT_TRUE(m_Host->Files().MakeFolder(m_Machine->Folder() + "log"));
  EXPECT_FALSE(m_Host->Files().Grow(m_Machine->Folder() + "log"));
  EXPECT_FALSE(m_Host->Files().Grow(m_Machine->Folder() + "none\\log"));
}

TEST_P(HostContract, RenamedFileTakesTheOtherOnesPlace) {
  Files& files = m_Host->Files();
  ASSERT_TRUE(files.Write(m_Machine->Folder() + "log", "new"));
  ASSERT_TRUE(files.Write(m_Machine->Folder() + "log.1", "old"));
  ASSERT_TRUE(files.Rename(m_Machine->Folder() + "log", m_Machine->Folder() + "log.1"));
  EXPECT_FALSE(files.Exists(m_Machine->Folder() + "log"));
  std::string szContents;
  ASSERT_TRUE(files.Read(m_Machine->Folder() + "log.1", szContents));
  EXPECT_EQ(szContents, "new");
  EXPECT_FALSE(files.Rename(m_Machine->Folder() + "log", m_Machine->Folder() + "log.2"));
}

TEST_P(HostContract, GrowingFileKeepsItsFileUnderAnotherName) {
  Files& files = m_Host->Files();
  const std::string szPath = m_Machine->Folder() + "log";
  const auto file = files.Grow(szPath);
  ASSERT_TRUE(file);
  ASSERT_TRUE(file->WriteAt(0, "one\n"));
  ASSERT_TRUE(files.Rename(szPath, szPath + ".1"));
  ASSERT_TRUE(file->WriteAt(4, "two\n"));
  std::string szContents;
  ASSERT_TRUE(files.Read(szPath + ".1", szContents));
  EXPECT_EQ(szContents, "one\ntwo\n");
}

TEST_P(HostContract, FilesInAFolderAreNamed) {
  Files& files = m_Host->Files();
  const std::string szFolder = m_Machine->Folder();
  ASSERT_TRUE(files.Write(szFolder + "b.shw", "x"));
  ASSERT_TRUE(files.Write(szFolder + "a.shw", "x"));
  ASSERT_TRUE(files.MakeFolder(szFolder + "c.shw"));
  ASSERT_TRUE(files.Write(szFolder + "c.shw\\d.shw", "x"));
  EXPECT_EQ(files.FilesIn(szFolder), (std::vector<std::string>{"a.shw", "b.shw"}));
  EXPECT_TRUE(files.FilesIn(szFolder + "none").empty());
}

}  // namespace vex::test
