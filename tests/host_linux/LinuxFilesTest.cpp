#include "host/linux/LinuxFiles.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/resource.h>

#include "host/linux/Descriptor.h"
#include "tests/host_linux/OtherProgram.h"

namespace vex::test {
namespace {

class LinuxFilesTest : public testing::Test {
 protected:
  /// The folder's file as the system writes it.
  [[nodiscard]] std::string System(const std::string& szName) {
    return m_Files.SystemPath(m_Folder / szName);
  }
  [[nodiscard]] std::string Contents(const std::string& szPath) {
    std::string szContents;
    return m_Files.Read(szPath, szContents, nullptr) ? szContents : "(not read)";
  }
  [[nodiscard]] size_t FilesInFolder() const {
    const auto all = std::filesystem::directory_iterator(m_Folder.Path());
    return static_cast<size_t>(std::distance(begin(all), end(all)));
  }
  void Drive(char letter, const std::string& szFolder) {
    m_Files.Drives([=](char asked) { return asked == letter ? szFolder : ""; });
  }

  TemporaryFolder m_Folder;
  LinuxFiles m_Files;
};

// Names.

TEST_F(LinuxFilesTest, DriveZIsTheRootUnlessSet) {
  EXPECT_EQ(m_Files.HostPath("Z:\\etc\\passwd"), "/etc/passwd");
  EXPECT_EQ(m_Files.HostPath("z:\\"), "/");
  Drive('Z', "/srv");
  EXPECT_EQ(m_Files.HostPath("Z:\\a.shw"), "/srv/a.shw");
}

TEST_F(LinuxFilesTest, DriveIsLookedUpInTheTable) {
  Drive('D', "/srv/shows");
  EXPECT_EQ(m_Files.HostPath("D:\\xmas\\eve.shw"), "/srv/shows/xmas/eve.shw");
  EXPECT_EQ(m_Files.HostPath("d:/xmas/eve.shw"), "/srv/shows/xmas/eve.shw");
  EXPECT_EQ(m_Files.HostPath("D:eve.shw"), "/srv/shows/eve.shw");
  Drive('D', "/srv/shows/");
  EXPECT_EQ(m_Files.HostPath("D:\\eve.shw"), "/srv/shows/eve.shw");
}

TEST_F(LinuxFilesTest, DriveFolderIsSingleByteText) {
  Drive('D', "/srv/F\xFCr");
  EXPECT_EQ(m_Files.HostPath("D:\\x"), "/srv/F\xC3\xBCr/x");
}

TEST_F(LinuxFilesTest, NothingIsReadFromOrWrittenToADriveThatIsNotSet) {
  const TemporaryFolder folder;
  std::string szReason;
  std::string szContents;
  EXPECT_FALSE(m_Files.Read("Q:\\eve.shw", szContents, &szReason));
  EXPECT_EQ(szReason, "File not found");
  EXPECT_FALSE(m_Files.Write("Q:\\eve.shw", "x", &szReason));
  EXPECT_EQ(szReason, "File not found");
  EXPECT_FALSE(m_Files.Publish("Q:\\eve.shw", "x"));
  EXPECT_FALSE(m_Files.MakeFolder("Q:\\shows"));
  EXPECT_FALSE(m_Files.Exists("Q:\\"));
  EXPECT_FALSE(m_Files.Remove("Q:\\eve.shw"));
  EXPECT_EQ(m_Files.Open("Q:\\eve.shw"), nullptr);
}

TEST_F(LinuxFilesTest, NetworkPathStaysOne) {
  EXPECT_EQ(m_Files.HostPath("\\\\srv\\shows\\a"), "//srv/shows/a");
}

TEST_F(LinuxFilesTest, RelativePathIsOfTheCurrentFolder) {
  EXPECT_EQ(m_Files.HostPath("shows\\eve.shw"), "shows/eve.shw");
  EXPECT_EQ(m_Files.SystemPath("shows/eve.shw"), "shows\\eve.shw");
}

TEST_F(LinuxFilesTest, NameWithAZeroOrEmptyIsNoFile) {
  EXPECT_FALSE(m_Files.Exists(""));
  EXPECT_FALSE(m_Files.Exists(System("") + std::string("\0x", 2)));
  EXPECT_FALSE(m_Files.Write("", "x", nullptr));
}

TEST_F(LinuxFilesTest, NameWithUmlautsIsFoundByItsUtf8Name) {
  WriteHostFile(m_Folder / "F\xC3\xBCr Elise \xE2\x82\xAC.ogg", "la");
  EXPECT_EQ(Contents(System("") + "F\xFCr Elise \x80.ogg"), "la");
}

TEST_F(LinuxFilesTest, CaseIsLookedPastInEveryPart) {
  std::filesystem::create_directories(m_Folder / "Shows/\xC3\x84pfel");
  WriteHostFile(m_Folder / "Shows/\xC3\x84pfel/Eve.SHW", "text");
  const std::string szPath = System("") + "SHOWS\\\xE4PFEL\\eve.shw";
  EXPECT_EQ(Contents(szPath), "text");
  EXPECT_EQ(m_Files.HostPath(szPath), m_Folder / "Shows/\xC3\x84pfel/Eve.SHW");
  EXPECT_TRUE(m_Files.Exists(szPath));
  EXPECT_NE(m_Files.Open(szPath), nullptr);
  EXPECT_TRUE(m_Files.Remove(szPath));
}

TEST_F(LinuxFilesTest, NameAsWrittenGoesBeforeOthersAndOfOthersTheFirst) {
  for (const char* szName : {"eve.shw", "EVE.shw", "Eve.shw"}) WriteHostFile(m_Folder / szName, szName);
  EXPECT_EQ(Contents(System("Eve.shw")), "Eve.shw");
  EXPECT_EQ(Contents(System("eve.SHW")), "EVE.shw");
}

TEST_F(LinuxFilesTest, WritingFindsTheFileInAnotherCase) {
  WriteHostFile(m_Folder / "WeekSched.qsc", "old");
  EXPECT_TRUE(m_Files.Write(System("weeksched.qsc"), "new", nullptr));
  EXPECT_EQ(ReadHostFile(m_Folder / "WeekSched.qsc"), "new");
  EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(LinuxFilesTest, NewFileLandsInTheFolderInAnotherCase) {
  std::filesystem::create_directory(m_Folder / "Data");
  EXPECT_TRUE(m_Files.Write(System("DATA\\New.shw"), "x", nullptr));
  EXPECT_EQ(ReadHostFile(m_Folder / "Data/New.shw"), "x");
  EXPECT_TRUE(m_Files.MakeFolder(System("data\\Sub\\Deep")));
  EXPECT_TRUE(std::filesystem::is_directory(m_Folder / "Data/Sub/Deep"));
}

TEST_F(LinuxFilesTest, SystemPathTakesTheDriveWithTheLongestFolder) {
  m_Files.Drives([](char letter) {
    return letter == 'D' ? "/srv" : letter == 'S' ? "/srv/shows/" : letter == 'T' ? "/srv/shows" : "";
  });
  EXPECT_EQ(m_Files.SystemPath("/srv/shows/eve.shw"), "S:\\eve.shw");
  EXPECT_EQ(m_Files.SystemPath("/srv/showsaway/eve.shw"), "D:\\showsaway\\eve.shw");
  EXPECT_EQ(m_Files.SystemPath("/srv"), "D:");
  EXPECT_EQ(m_Files.SystemPath("/etc/x"), "Z:\\etc\\x");
}

TEST_F(LinuxFilesTest, SystemPathOutsideEveryDriveBeginsAtTheRoot) {
  Drive('Z', "/srv");
  EXPECT_EQ(m_Files.SystemPath("/etc/x"), "\\etc\\x");
  EXPECT_EQ(m_Files.HostPath("\\etc\\x"), "/etc/x");
}

TEST_F(LinuxFilesTest, SystemPathOfANameOutsideTheCodePageIsEmpty) {
  EXPECT_EQ(m_Files.SystemPath("/srv/\xE2\x9C\x93.shw"), "");
  EXPECT_EQ(m_Files.SystemPath("/srv/\xFF.shw"), "");
}

TEST_F(LinuxFilesTest, ProgramFolderIsWhereThisProgramLies) {
  const std::string szProgram = std::filesystem::read_symlink("/proc/self/exe").parent_path().string();
  EXPECT_EQ(m_Files.ProgramFolder(), m_Files.SystemPath(szProgram));
  EXPECT_EQ(m_Files.ProgramSuffix(), "");
}

TEST_F(LinuxFilesTest, ProgramFolderOutsideTheCodePageIsToldAndEmpty) {
  const std::string szFolder = m_Folder / "\xE2\x9C\x93";
  std::filesystem::create_directory(szFolder);
  const std::string szCopy = szFolder + "/tests";
  std::filesystem::copy_file("/proc/self/exe", szCopy);
  const std::string szCommand =
      szCopy + " --gtest_filter=LinuxFilesTest.ProgramFolderIsWhereThisProgramLies 2>&1";
  FILE* const output = popen(szCommand.c_str(), "r");
  std::string szOutput;
  for (int character = std::fgetc(output); character != EOF; character = std::fgetc(output))
    szOutput += static_cast<char>(character);
  EXPECT_EQ(pclose(output), 0);
  EXPECT_NE(szOutput.find("The folder " + szFolder + " has a character outside Windows-1252\n"),
            std::string::npos)
      << szOutput;
}

// Reading.

TEST_F(LinuxFilesTest, FolderIsReadAsAFolder) {
  std::string szContents;
  std::string szReason;
  EXPECT_FALSE(m_Files.Read(System(""), szContents, &szReason));
  EXPECT_EQ(szReason, "Is a directory");
}

TEST_F(LinuxFilesTest, FileWithoutATrueSizeIsReadToItsEnd) {
  EXPECT_EQ(Contents("Z:\\proc\\self\\comm"), ReadHostFile("/proc/self/comm"));
  EXPECT_EQ(Contents("Z:\\dev\\null"), "");
}

TEST_F(LinuxFilesTest, EndlessFileIsRefused) {
  std::string szContents;
  std::string szReason;
  EXPECT_FALSE(m_Files.Read("Z:\\dev\\zero", szContents, &szReason));
  EXPECT_EQ(szReason, "File too large");
}

TEST_F(LinuxFilesTest, PipeWithoutAWriterIsEmptyAndNotWaitedFor) {
  ASSERT_EQ(mkfifo((m_Folder / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(Contents(System("pipe")), "");
  EXPECT_EQ(m_Files.Open(System("pipe")), nullptr);
}

TEST_F(LinuxFilesTest, OpenTakesNoFolder) {
  EXPECT_EQ(m_Files.Open(System("")), nullptr);
}

TEST_F(LinuxFilesTest, FileThatShrankIsNotReadBeyondItsEnd) {
  WriteHostFile(m_Folder / "tree.fseq", "0123456789");
  const auto file = m_Files.Open(System("tree.fseq"));
  std::filesystem::resize_file(m_Folder / "tree.fseq", 4);
  std::vector<uint8_t> bytes(4);
  EXPECT_TRUE(file->ReadAt(0, bytes));
  EXPECT_FALSE(file->ReadAt(2, bytes));
}

// Writing.

TEST_F(LinuxFilesTest, NewFileHasThePermissionsOfTheMaskAndAnOldOneKeepsItsOwn) {
  const mode_t mask = umask(027);
  EXPECT_TRUE(m_Files.Write(System("new"), "x", nullptr));
  umask(mask);
  EXPECT_EQ(ModeOf(m_Folder / "new"), 0640);
  chmod((m_Folder / "new").c_str(), 0604);
  EXPECT_TRUE(m_Files.Write(System("new"), "y", nullptr));
  EXPECT_EQ(ModeOf(m_Folder / "new"), 0604);
}

TEST_F(LinuxFilesTest, OwnerIsKept) {
  WriteHostFile(m_Folder / "eve.shw", "x");
  if (chown((m_Folder / "eve.shw").c_str(), 12345, 54321) != 0)
    GTEST_SKIP() << "only root can give files away";
  EXPECT_TRUE(m_Files.Write(System("eve.shw"), "y", nullptr));
  struct stat state {};
  ASSERT_EQ(stat((m_Folder / "eve.shw").c_str(), &state), 0);
  EXPECT_EQ(state.st_uid, 12345U);
  EXPECT_EQ(state.st_gid, 54321U);
}

TEST_F(LinuxFilesTest, LinkStaysALink) {
  std::filesystem::create_directory(m_Folder / "real");
  WriteHostFile(m_Folder / "real/eve.shw", "old");
  std::filesystem::create_symlink("real/eve.shw", m_Folder / "eve.shw");
  EXPECT_TRUE(m_Files.Write(System("eve.shw"), "new", nullptr));
  EXPECT_TRUE(std::filesystem::is_symlink(m_Folder / "eve.shw"));
  EXPECT_EQ(ReadHostFile(m_Folder / "real/eve.shw"), "new");
}

TEST_F(LinuxFilesTest, LinkThatLeadsNowhereYetStaysALink) {
  std::filesystem::create_directory(m_Folder / "real");
  std::filesystem::create_symlink("real/second", m_Folder / "eve.shw");
  std::filesystem::create_symlink("eve.shw", m_Folder / "real/second");
  EXPECT_TRUE(m_Files.Write(System("eve.shw"), "new", nullptr));
  EXPECT_TRUE(std::filesystem::is_symlink(m_Folder / "eve.shw"));
  EXPECT_TRUE(std::filesystem::is_symlink(m_Folder / "real/second"));
  EXPECT_EQ(ReadHostFile(m_Folder / "real/eve.shw"), "new");
}

TEST_F(LinuxFilesTest, LinkInACircleIsReplaced) {
  std::filesystem::create_symlink("eve.shw", m_Folder / "eve.shw");
  EXPECT_TRUE(m_Files.Write(System("eve.shw"), "new", nullptr));
  EXPECT_EQ(ReadHostFile(m_Folder / "eve.shw"), "new");
}

TEST_F(LinuxFilesTest, DeviceIsWrittenStraight) {
  EXPECT_TRUE(m_Files.Write("Z:\\dev\\null", "x", nullptr));
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST_F(LinuxFilesTest, NameOfFullLengthCanBeWritten) {
  const std::string szLong(255, 'n');
  EXPECT_TRUE(m_Files.Write(System(szLong), "x", nullptr));
  EXPECT_EQ(Contents(System(szLong)), "x");
  std::string szReason;
  EXPECT_FALSE(m_Files.Write(System(szLong + "n"), "x", &szReason));
  EXPECT_EQ(szReason, "File name too long");
}

/// Runs a write as another process under a limit, and says how it went.
std::string WriteElsewhere(LinuxFiles& files, const std::string& szPath, const std::string& szText,
                           const std::function<void()>& limit) {
  OtherProgram other([&](const auto& tell) {
    limit();
    std::string szReason;
    tell(files.Write(szPath, szText, &szReason) ? "written" : szReason);
  });
  return other.Line();
}

TEST_F(LinuxFilesTest, FileThatCannotGrowLeavesTheOldOneAndNoRest) {
  WriteHostFile(m_Folder / "eve.shw", "old");
  const auto limit = [] {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit size{1000, 1000};
    setrlimit(RLIMIT_FSIZE, &size);
  };
  EXPECT_EQ(WriteElsewhere(m_Files, System("eve.shw"), std::string(5000, 'x'), limit), "File too large");
  EXPECT_EQ(ReadHostFile(m_Folder / "eve.shw"), "old");
  EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(LinuxFilesTest, FullDiskLeavesTheOldFileAndNoRest) {
  std::filesystem::create_directory(m_Folder / "disk");
  if (mount("none", (m_Folder / "disk").c_str(), "tmpfs", 0, "size=16k") != 0)
    GTEST_SKIP() << "only root can mount a small disk";
  WriteHostFile(m_Folder / "disk/eve.shw", "old");
  std::string szReason;
  EXPECT_FALSE(m_Files.Write(System("disk\\eve.shw"), std::string(100000, 'x'), &szReason));
  EXPECT_EQ(szReason, "No space left on device");
  EXPECT_EQ(ReadHostFile(m_Folder / "disk/eve.shw"), "old");
  const auto all = std::filesystem::directory_iterator(m_Folder / "disk");
  EXPECT_EQ(std::distance(begin(all), end(all)), 1);
  umount((m_Folder / "disk").c_str());
}

TEST_F(LinuxFilesTest, FolderThatMayNotBeWrittenLeavesTheOldFile) {
  std::filesystem::create_directory(m_Folder / "locked");
  WriteHostFile(m_Folder / "locked/eve.shw", "old");
  chmod(m_Folder.Path().c_str(), 0755);
  chmod((m_Folder / "locked").c_str(), 0555);
  // Root may write everywhere: somebody else does it.
  const auto somebodyElse = [] {
    if (setuid(65534) != 0 && getuid() == 0) _exit(3);
  };
  EXPECT_EQ(WriteElsewhere(m_Files, System("locked\\eve.shw"), "new", somebodyElse), "Permission denied");
  EXPECT_EQ(ReadHostFile(m_Folder / "locked/eve.shw"), "old");
  chmod((m_Folder / "locked").c_str(), 0755);
}

// Locks.

TEST_F(LinuxFilesTest, AnotherProgramWaitsForTheLock) {
  const std::string szPath = System("weeksched.qsc");
  auto lock = m_Files.Lock(szPath, nullptr);
  ASSERT_NE(lock, nullptr);
  ASSERT_TRUE(m_Files.Write(szPath, "first", nullptr));
  OtherProgram other([&](const OtherProgram::Tell& tell) {
    lock.reset();  // a fork shares the lock; what it asks for now is its own
    LinuxFiles files;
    tell("asks");
    const auto own = files.Lock(szPath, nullptr);
    std::string szContents;
    (void)files.Read(szPath, szContents, nullptr);
    tell(szContents);
  });
  EXPECT_EQ(other.Line(), "asks");
  // Had it not waited, it would have read what stands there until the line below.
  usleep(50000);
  ASSERT_TRUE(m_Files.Write(szPath, "second", nullptr));
  lock.reset();
  EXPECT_EQ(other.Line(), "second");
}

TEST_F(LinuxFilesTest, ALockNeedsTheFolderAndNoFile) {
  EXPECT_NE(m_Files.Lock(System("none.qsc"), nullptr), nullptr);
  EXPECT_EQ(FilesInFolder(), 0u);
  std::string szReason;
  EXPECT_EQ(m_Files.Lock(System("gone\\none.qsc"), &szReason), nullptr);
  EXPECT_EQ(szReason, "File not found");
  EXPECT_EQ(m_Files.Lock("Q:\\none.qsc", &szReason), nullptr);
}

TEST_F(LinuxFilesTest, ALockBehindALinkIsThatOfTheFilesOwnFolder) {
  std::filesystem::create_directories(m_Folder / "real");
  WriteHostFile(m_Folder / "real/w.qsc", "()");
  std::filesystem::create_symlink(m_Folder / "real/w.qsc", m_Folder / "w.qsc");
  const auto lock = m_Files.Lock(System("w.qsc"), nullptr);
  ASSERT_NE(lock, nullptr);
  const Descriptor folder(open((m_Folder / "real").c_str(), O_RDONLY | O_DIRECTORY));
  EXPECT_NE(flock(folder.Get(), LOCK_EX | LOCK_NB), 0);
  const Descriptor linksFolder(open(m_Folder.Path().c_str(), O_RDONLY | O_DIRECTORY));
  EXPECT_EQ(flock(linksFolder.Get(), LOCK_EX | LOCK_NB), 0);
}

}  // namespace
}  // namespace vex::test
