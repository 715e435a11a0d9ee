#include "monitor/Installation.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "host/virtual/VirtualHost.h"

namespace vex {
namespace {

constexpr char Product[] = "Software\\Brillara";
constexpr char Link[] = "Software\\Brillara\\XLK";

class InstallationTest : public testing::Test {
 protected:
  void RecordInstallation(uint32_t version = 5, uint32_t done = 1) {
    m_Host.Registry().SetLong(Product, "PostInstallVer", version);
    m_Host.Registry().SetLong(Product, "PostInstall", done);
    m_Host.Registry().SetText(Product, "AppPath", m_Host.Files().ProgramFolder());
  }

  VirtualHost m_Host;
  Installation m_Installation{m_Host.Registry(), m_Host.Files(), m_Host.Processes(), m_Host.MessageBoxes()};
};

TEST(EnsureTrailingBackslash, AppendsOneWhereThereIsNone) {
  EXPECT_EQ(EnsureTrailingBackslash("C:\\Shows"), "C:\\Shows\\");
}

TEST(EnsureTrailingBackslash, LeavesAPathThatEndsInOne) {
  EXPECT_EQ(EnsureTrailingBackslash("C:\\Shows\\"), "C:\\Shows\\");
  EXPECT_EQ(EnsureTrailingBackslash("\\"), "\\");
}

TEST(EnsureTrailingBackslash, AnEmptyPathStaysEmpty) {
  EXPECT_EQ(EnsureTrailingBackslash(""), "");
}

TEST(EnsureTrailingBackslash, TwiceIsAsOnce) {
  EXPECT_TRUE(rc::check([](const std::string& szPath) {
    const std::string szOnce = EnsureTrailingBackslash(szPath);
    RC_ASSERT(EnsureTrailingBackslash(szOnce) == szOnce);
  }));
}

TEST_F(InstallationTest, AppPathIsTheSameWithAndWithoutTrailingBackslash) {
  m_Host.Registry().SetText(Product, "AppPath", "C:\\Vex");
  EXPECT_EQ(m_Installation.AppPath(), "C:\\Vex\\");
  m_Host.Registry().SetText(Product, "AppPath", "C:\\Vex\\");
  EXPECT_EQ(m_Installation.AppPath(), "C:\\Vex\\");
}

TEST_F(InstallationTest, AppPathIsReadAtEveryCall) {
  EXPECT_EQ(m_Installation.AppPath(), "");
  m_Host.Registry().SetText(Product, "AppPath", "C:\\One");
  EXPECT_EQ(m_Installation.AppPath(), "C:\\One\\");
  m_Host.Registry().SetText(Product, "AppPath", "C:\\Two");
  EXPECT_EQ(m_Installation.AppPath(), "C:\\Two\\");
}

TEST_F(InstallationTest, UserDataPathIsReadUntilThereIsOne) {
  EXPECT_EQ(m_Installation.UserDataPath(), "");
  m_Host.Registry().SetText(Product, "UserDataPath", "D:\\Data");
  EXPECT_EQ(m_Installation.UserDataPath(), "D:\\Data\\");
  m_Host.Registry().SetText(Product, "UserDataPath", "E:\\Other");
  EXPECT_EQ(m_Installation.UserDataPath(), "D:\\Data\\");
}

TEST_F(InstallationTest, ProgramFolderEndsInABackslash) {
  m_Host.Files().ProgramFolder("C:\\Vex");
  EXPECT_EQ(m_Installation.ProgramFolder(), "C:\\Vex\\");
}

TEST_F(InstallationTest, AProgramIsTakenFromTheProgramFolderIfItIsThere) {
  m_Host.Files().ProgramFolder("C:\\Here");
  m_Host.Registry().SetText(Product, "AppPath", "C:\\Vex");
  EXPECT_EQ(m_Installation.ProgramFile("VexPostInstall"), "C:\\Vex\\VexPostInstall");
  m_Host.Files().Put("C:\\Here\\VexPostInstall", "");
  EXPECT_EQ(m_Installation.ProgramFile("VexPostInstall"), "C:\\Here\\VexPostInstall");
}

TEST_F(InstallationTest, AProgramFileEndsAsThisMachinesProgramsDo) {
  m_Host.Files().ProgramSuffix(".exe");
  m_Host.Files().Put("C:\\VexMonitor\\VexPostInstall.exe", "");
  EXPECT_EQ(m_Installation.ProgramFile("VexPostInstall"), "C:\\VexMonitor\\VexPostInstall.exe");
}

TEST_F(InstallationTest, IsValidFromVersionFiveOn) {
  RecordInstallation(5);
  EXPECT_TRUE(m_Installation.InstallationValid(false));
  RecordInstallation(6);
  EXPECT_TRUE(m_Installation.InstallationValid(false));
  RecordInstallation(4);
  EXPECT_FALSE(m_Installation.InstallationValid(false));
}

TEST_F(InstallationTest, IsInvalidWithoutTheRecord) {
  EXPECT_FALSE(m_Installation.InstallationValid(false));
  RecordInstallation(5, 0);
  EXPECT_FALSE(m_Installation.InstallationValid(false));
}

TEST_F(InstallationTest, TheFolderCountsOnlyWhenItIsAskedFor) {
  RecordInstallation();
  m_Host.Registry().SetText(Product, "AppPath", "C:\\Elsewhere");
  EXPECT_TRUE(m_Installation.InstallationValid(false));
  EXPECT_FALSE(m_Installation.InstallationValid(true));
}

TEST_F(InstallationTest, AFolderThatDiffersOnlyInLetterCaseIsAnotherFolder) {
  RecordInstallation();
  m_Host.Files().ProgramFolder("C:\\VexMonitor");
  m_Host.Registry().SetText(Product, "AppPath", "C:\\vexmonitor");
  EXPECT_FALSE(m_Installation.InstallationValid(true));
  m_Host.Registry().SetText(Product, "AppPath", "C:\\VexMonitor");
  EXPECT_TRUE(m_Installation.InstallationValid(true));
}

TEST_F(InstallationTest, AValidInstallationStartsNothing) {
  RecordInstallation();
  EXPECT_TRUE(m_Installation.CheckInstallation());
  EXPECT_TRUE(m_Host.Processes().Starts().empty());
  EXPECT_TRUE(m_Host.MessageBoxes().Shown().empty());
}

TEST_F(InstallationTest, ThePostInstallationProgramIsRunOnceAndWaitedFor) {
  m_Host.Files().Put("C:\\VexMonitor\\VexPostInstall", "");
  m_Host.Processes().OnStart([this](const auto&) { RecordInstallation(); });
  EXPECT_TRUE(m_Installation.CheckInstallation());
  ASSERT_EQ(m_Host.Processes().Starts().size(), 1U);
  const auto& started = m_Host.Processes().Starts()[0];
  EXPECT_EQ(started.CommandLine, "C:\\VexMonitor\\VexPostInstall");
  EXPECT_EQ(started.WindowStyle, NormalFocus);
  EXPECT_EQ(m_Host.Processes().Waits(), std::vector<ProcessId>{started.Process});
  EXPECT_TRUE(m_Host.MessageBoxes().Shown().empty());
}

TEST_F(InstallationTest, AProgramWithABlankInItsPathIsQuoted) {
  m_Host.Files().ProgramFolder("C:\\Program Files\\Vex");
  m_Host.Files().Put("C:\\Program Files\\Vex\\VexPostInstall", "");
  (void)m_Installation.CheckInstallation();
  EXPECT_EQ(m_Host.Processes().Starts()[0].CommandLine, "\"C:\\Program Files\\Vex\\VexPostInstall\"");
}

TEST_F(InstallationTest, WhereAShellTakesTheCommandItIsQuotedForTheShell) {
  class UnixFiles : public Files {
   public:
    explicit UnixFiles(std::string szHostPath) : m_HostPath(std::move(szHostPath)) {}
    bool Read(const std::string&, std::string&, std::string*) override { return false; }
    bool Write(const std::string&, const std::string&, std::string*) override { return false; }
    std::unique_ptr<FileLock> Lock(const std::string&, std::string*) override { return nullptr; }
    std::unique_ptr<OpenFile> Open(const std::string&) override { return nullptr; }
    bool Exists(const std::string&) override { return true; }
    bool MakeFolder(const std::string&) override { return false; }
    bool Remove(const std::string&) override { return false; }
    std::string HostPath(const std::string&) override { return m_HostPath; }
    std::string SystemPath(const std::string& szHostPath) override { return szHostPath; }
    std::string ProgramFolder() override { return "Z:\\opt"; }
    std::string ProgramSuffix() const override { return ""; }

   private:
    std::string m_HostPath;
  };
  const auto started = [](const std::string& szHostPath) {
    VirtualHost host;
    UnixFiles files(szHostPath);
    (void)Installation(host.Registry(), files, host.Processes(), host.MessageBoxes()).CheckInstallation();
    return host.Processes().Starts().empty() ? "nothing" : host.Processes().Starts()[0].CommandLine;
  };
  EXPECT_EQ(started("/opt/vex/VexPostInstall"), "/opt/vex/VexPostInstall");
  EXPECT_EQ(started("/opt/my vex/VexPostInstall"), "'/opt/my vex/VexPostInstall'");
  EXPECT_EQ(started("/opt/$it's/VexPostInstall"), "'/opt/$it'\\''s/VexPostInstall'");
  EXPECT_EQ(started("/opt/\xe5\xa4\x9c/VexPostInstall"), "nothing");  // a character outside the code page
}

TEST_F(InstallationTest, AnInstallationThatStaysInvalidIsAMessageBoxAndFailure) {
  EXPECT_FALSE(m_Installation.CheckInstallation());
  EXPECT_EQ(m_Host.Processes().Starts().size(), 1U);
  const std::vector<VirtualMessageBoxes::Box> expected{{"Brillara is not correctly installed.", "Brillara"}};
  EXPECT_EQ(m_Host.MessageBoxes().Shown(), expected);
}

TEST_F(InstallationTest, AProgramThatCannotBeStartedIsFailureWithoutAMessageBox) {
  m_Host.Processes().FailStarts(2);
  EXPECT_FALSE(m_Installation.CheckInstallation());
  EXPECT_TRUE(m_Host.MessageBoxes().Shown().empty());
}

TEST_F(InstallationTest, TheLinkHasItsDefaultsWithoutAnyKey) {
  EXPECT_EQ(m_Installation.LocalPort(), 3737);
  EXPECT_EQ(m_Installation.RemotePort(), 3738);
  EXPECT_EQ(m_Installation.RemoteHost(), "127.0.0.1");
  EXPECT_TRUE(m_Installation.SupportsSpecial());
  EXPECT_FALSE(m_Installation.On());
}

TEST_F(InstallationTest, TheLinkIsAsItIsStored) {
  m_Host.Registry().SetLong(Link, "LocalPort", 4000);
  m_Host.Registry().SetLong(Link, "RemotePort", 4001);
  m_Host.Registry().SetText(Link, "RemoteHost", "10.0.0.7");
  m_Host.Registry().SetLong(Link, "SupportsSpecial", 0);
  m_Host.Registry().SetLong(Link, "On", 0xFFFFFFFF);
  EXPECT_EQ(m_Installation.LocalPort(), 4000);
  EXPECT_EQ(m_Installation.RemotePort(), 4001);
  EXPECT_EQ(m_Installation.RemoteHost(), "10.0.0.7");
  EXPECT_FALSE(m_Installation.SupportsSpecial());
  EXPECT_TRUE(m_Installation.On());
}

TEST_F(InstallationTest, APortAboveFifteenBitsIsTheNumberOfTheSameBits) {
  m_Host.Registry().SetLong(Link, "LocalPort", 32767);
  EXPECT_EQ(m_Installation.LocalPort(), 32767);
  m_Host.Registry().SetLong(Link, "LocalPort", 32768);
  EXPECT_EQ(m_Installation.LocalPort(), -32768);
  m_Host.Registry().SetLong(Link, "LocalPort", 65535);
  EXPECT_EQ(m_Installation.LocalPort(), -1);
}

TEST_F(InstallationTest, APortBeyondSixteenBitsIsTheDefault) {
  m_Host.Registry().SetLong(Link, "LocalPort", 65536);
  EXPECT_EQ(m_Installation.LocalPort(), 3737);
  m_Host.Registry().SetLong(Link, "RemotePort", 0x7FFFFFFF);
  EXPECT_EQ(m_Installation.RemotePort(), 3738);
}

TEST_F(InstallationTest, ARegistryThatFailsGivesTheDefaults) {
  RecordInstallation();
  m_Host.Registry().SetLong(Link, "LocalPort", 4000);
  m_Host.Registry().FailCall(1, RegistryAccessDenied);
  EXPECT_EQ(m_Installation.LocalPort(), 3737);
  EXPECT_EQ(m_Installation.LocalPort(), 4000);
  EXPECT_EQ(m_Host.Registry().OpenKeys(), 0U);
}

}  // namespace
}  // namespace vex
