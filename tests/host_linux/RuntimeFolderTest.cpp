#include "host/linux/RuntimeFolder.h"

#include <sys/stat.h>
#include <unistd.h>

#include <optional>

#include "basic/Error.h"
#include "tests/host_linux/LinuxMachine.h"

namespace vex::test {
namespace {

/// An environment variable for the time of one case.
class Environment {
 public:
  Environment(const char* szName, const char* szValue) : m_Name(szName) {
    if (const char* const szOld = std::getenv(szName)) m_Old = szOld;
    if (szValue != nullptr)
      setenv(szName, szValue, 1);
    else
      unsetenv(szName);
  }
  ~Environment() {
    if (m_Old)
      setenv(m_Name, m_Old->c_str(), 1);
    else
      unsetenv(m_Name);
  }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

 private:
  const char* m_Name;
  std::optional<std::string> m_Old;
};

Error ErrorOf(const RuntimeFolder& folder) {
  try {
    folder.Prepare();
  } catch (const Error& error) {
    return error;
  }
  return {0, "", ""};
}

TEST(RuntimeFolder, ComesFromItsVariable) {
  const Environment own("VEX_RUNTIME_DIR", "/somewhere/else/");
  const Environment base("XDG_RUNTIME_DIR", "/run/user/7");
  EXPECT_EQ(RuntimeFolder::FromEnvironment().Path(), "/somewhere/else");
}

TEST(RuntimeFolder, LiesBelowTheUsersRuntimeFolderOtherwise) {
  const Environment own("VEX_RUNTIME_DIR", "");
  const Environment base("XDG_RUNTIME_DIR", "/run/user/7");
  EXPECT_EQ(RuntimeFolder::FromEnvironment().Path(), "/run/user/7/vexmonitor");
}

TEST(RuntimeFolder, LiesInTheTemporaryFolderWithTheUsersNumberLast) {
  const Environment own("VEX_RUNTIME_DIR", nullptr);
  const Environment base("XDG_RUNTIME_DIR", nullptr);
  EXPECT_EQ(RuntimeFolder::FromEnvironment().Path(), "/tmp/vexmonitor-" + std::to_string(getuid()));
}

TEST(RuntimeFolder, IsMadeForItsUserAloneWithTheFoldersAbove) {
  const TemporaryFolder base;
  const RuntimeFolder folder(base / "a/b");
  EXPECT_EQ(ErrorOf(folder).Number, 0);
  EXPECT_EQ(ModeOf(base / "a/b"), 0700);
  EXPECT_EQ(ErrorOf(folder).Number, 0);
}

TEST(RuntimeFolder, OwnFolderThatIsOpenToOthersIsClosed) {
  const TemporaryFolder base;
  std::filesystem::create_directory(base / "run");
  chmod((base / "run").c_str(), 0755);
  EXPECT_EQ(ErrorOf(RuntimeFolder(base / "run")).Number, 0);
  EXPECT_EQ(ModeOf(base / "run"), 0700);
}

TEST(RuntimeFolder, FolderSharedByTheMachineIsRefusedAndLeftAsItIs) {
  const TemporaryFolder base;
  std::filesystem::create_directory(base / "tmp");
  chmod((base / "tmp").c_str(), 01777);
  const Error error = ErrorOf(RuntimeFolder(base / "tmp"));
  EXPECT_EQ(error.Number, EACCES);
  EXPECT_EQ(error.Source, "RuntimeFolder.Prepare");
  EXPECT_EQ(error.Description, "The folder " + (base / "tmp") + " is open to other users");
  EXPECT_EQ(ModeOf(base / "tmp"), 01777);
}

TEST(RuntimeFolder, RootIsRefused) {
  EXPECT_EQ(ErrorOf(RuntimeFolder("/")).Number, EACCES);
}

TEST(RuntimeFolder, AnotherUsersFolderIsRefused) {
  const TemporaryFolder base;
  std::filesystem::create_directory(base / "run");
  if (chown((base / "run").c_str(), getuid() + 1, getgid()) != 0)
    GTEST_SKIP() << "only root can give folders away";
  const Error error = ErrorOf(RuntimeFolder(base / "run"));
  EXPECT_EQ(error.Number, EACCES);
  EXPECT_EQ(error.Description, "The folder " + (base / "run") + " belongs to another user");
}

TEST(RuntimeFolder, LinkAndFileAreRefused) {
  const TemporaryFolder base;
  std::filesystem::create_directory(base / "real");
  std::filesystem::create_symlink(base / "real", base / "link");
  EXPECT_NE(ErrorOf(RuntimeFolder(base / "link")).Number, 0);
  WriteHostFile(base / "file", "");
  EXPECT_EQ(ErrorOf(RuntimeFolder(base / "file")).Number, ENOTDIR);
}

TEST(RuntimeFolder, LongestNameThatASocketTakesWorks) {
  const TemporaryFolder base;
  const std::string szLongest = base / std::string(96 - base.Path().size() - 1, 'x');
  ASSERT_EQ(szLongest.size(), 96U);
  LinuxEventLoop loop;
  LinuxWindows windows(loop, RuntimeFolder(szLongest));
  windows.HandleSource([] { return 2147483647; });
  EXPECT_EQ(windows.NewWindow(), 2147483647);
}

TEST(RuntimeFolder, LongerNameIsRefusedAndNotMade) {
  const TemporaryFolder base;
  const std::string szTooLong = base / std::string(97 - base.Path().size() - 1, 'x');
  const Error error = ErrorOf(RuntimeFolder(szTooLong));
  EXPECT_EQ(error.Number, ENAMETOOLONG);
  EXPECT_EQ(error.Description,
            "The folder " + szTooLong + " is too long for a socket's name (at most 96 bytes)");
  EXPECT_FALSE(std::filesystem::exists(szTooLong));
}

}  // namespace
}  // namespace vex::test
