#include "host/linux/LinuxRegistry.h"

#include <sys/stat.h>

#include <algorithm>

#include "tests/host_linux/OtherProgram.h"

namespace vex::test {
namespace {

constexpr char Product[] = "Software\\Brillara";
const std::string Head = "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Software\\Brillara]\n";

class LinuxRegistryTest : public testing::Test {
 protected:
  [[nodiscard]] RegistryKey Open(uint32_t access = KEY_READ_ACCESS) {
    RegistryKey key = 0;
    return m_Registry.OpenKey(RegistryRoot::CurrentUser, Product, access, key) == RegistrySuccess ? key : 0;
  }
  /// A text value as it is now; "(none)" for anything else.
  [[nodiscard]] std::string Text(const std::string& szName) {
    RegistryKind kind{};
    uint32_t size = 0;
    const RegistryKey key = Open();
    if (m_Registry.QueryValue(key, szName, kind, nullptr, size) != RegistrySuccess) return "(none)";
    std::vector<uint8_t> data(size);
    EXPECT_EQ(m_Registry.QueryValue(key, szName, kind, &data, size), RegistrySuccess);
    m_Registry.CloseKey(key);
    return {data.begin(), data.end() - 1};
  }
  int32_t Set(const std::string& szName, const std::string& szText) {
    RegistryKey key = 0;
    const int32_t lResult = m_Registry.CreateKey(RegistryRoot::CurrentUser, Product, key);
    if (lResult != RegistrySuccess) return lResult;
    std::vector<uint8_t> data(szText.begin(), szText.end());
    data.push_back(0);
    return m_Registry.SetValue(key, szName, RegistryKind::String, data);
  }

  TemporaryFolder m_Folder;
  std::string m_Path = m_Folder / "config/vexmonitor/settings.reg";
  LinuxRegistry m_Registry{m_Path};
};

TEST_F(LinuxRegistryTest, MissingFileHasNoKeys) {
  EXPECT_EQ(Open(), 0U);
  EXPECT_FALSE(std::filesystem::exists(m_Folder / "config"));
}

TEST_F(LinuxRegistryTest, FirstValueMakesTheFileForItsUserAloneWithItsFolders) {
  EXPECT_EQ(Set("AppPath", "C:\\F\xFCr"), RegistrySuccess);
  EXPECT_EQ(ModeOf(m_Path), 0600);
  EXPECT_EQ(Text("AppPath"), "C:\\F\xFCr");
  LinuxRegistry again(m_Path);
  RegistryKey key = 0;
  EXPECT_EQ(again.OpenKey(RegistryRoot::CurrentUser, "software\\BRILLARA\\", KEY_READ_ACCESS, key),
            RegistrySuccess);
  EXPECT_NE(ReadHostFile(m_Path).find("\"AppPath\"=\"C:\\\\F\xC3\xBCr\""), std::string::npos);
}

TEST_F(LinuxRegistryTest, ChangedFileCountsAtTheNextOpening) {
  EXPECT_EQ(Set("AppPath", "one"), RegistrySuccess);
  WriteHostFile(m_Path, Head + "\"AppPath\"=\"two\"\n");
  EXPECT_EQ(Text("AppPath"), "two");
  std::filesystem::remove(m_Path);
  EXPECT_EQ(Open(), 0U);
  WriteHostFile(m_Path, Head + "\"AppPath\"=\"three\"\n");
  EXPECT_EQ(Text("AppPath"), "three");
}

TEST_F(LinuxRegistryTest, OpenKeyKeepsWhatItSawUntilTheNextOpening) {
  EXPECT_EQ(Set("AppPath", "one"), RegistrySuccess);
  const RegistryKey key = Open();
  WriteHostFile(m_Path, Head);
  RegistryKind kind{};
  uint32_t size = 0;
  EXPECT_EQ(m_Registry.QueryValue(key, "AppPath", kind, nullptr, size), RegistrySuccess);
}

TEST_F(LinuxRegistryTest, LineThatCannotBeReadIsToldOnceAndTheRestHolds) {
  std::filesystem::create_directories(m_Folder / "config/vexmonitor");
  WriteHostFile(m_Path, Head + "\"AppPath\"=\"one\"\nnonsense\n\"UserDataPath\"=\"two\"\n");
  testing::internal::CaptureStderr();
  EXPECT_EQ(Text("AppPath"), "one");
  EXPECT_EQ(Text("UserDataPath"), "two");
  const std::string szTold = testing::internal::GetCapturedStderr();
  EXPECT_TRUE(szTold.starts_with(m_Path + ":5: ")) << szTold;
  EXPECT_EQ(std::ranges::count(szTold, '\n'), 1);
}

TEST_F(LinuxRegistryTest, SettingAValueKeepsTheRestOfTheFileAndItsPermissions) {
  std::filesystem::create_directories(m_Folder / "config/vexmonitor");
  const std::string szRest = "; a comment\n\"Blob\"=hex:01,02\n\n[HKEY_LOCAL_MACHINE\\Other]\n\"x\"=\"y\"\n";
  WriteHostFile(m_Path, Head + szRest);
  chmod(m_Path.c_str(), 0644);
  EXPECT_EQ(Set("On", "yes"), RegistrySuccess);
  EXPECT_EQ(ModeOf(m_Path), 0644);
  const std::string szNow = ReadHostFile(m_Path);
  for (const char* szPart :
       {"; a comment", "\"Blob\"=hex:01,02", "[HKEY_LOCAL_MACHINE\\Other]", "\"x\"=\"y\""})
    EXPECT_NE(szNow.find(szPart), std::string::npos) << szPart;
}

TEST_F(LinuxRegistryTest, ChangeOfAnotherProgramIsNotLostBySettingAValue) {
  EXPECT_EQ(Set("AppPath", "one"), RegistrySuccess);
  const RegistryKey key = Open(KEY_WRITE_ACCESS);
  LinuxRegistry other(m_Path);
  RegistryKey othersKey = 0;
  ASSERT_EQ(other.CreateKey(RegistryRoot::CurrentUser, Product, othersKey), RegistrySuccess);
  ASSERT_EQ(other.SetValue(othersKey, "Theirs", RegistryKind::String, {'t', 0}), RegistrySuccess);
  EXPECT_EQ(m_Registry.SetValue(key, "Ours", RegistryKind::String, {'o', 0}), RegistrySuccess);
  EXPECT_EQ(Text("Theirs"), "t");
  EXPECT_EQ(Text("Ours"), "o");
}

TEST_F(LinuxRegistryTest, KeyOpenForWritingIsNotRead) {
  EXPECT_EQ(Set("AppPath", "one"), RegistrySuccess);
  RegistryKind kind{};
  uint32_t size = 0;
  EXPECT_EQ(m_Registry.QueryValue(Open(KEY_WRITE_ACCESS), "AppPath", kind, nullptr, size),
            RegistryAccessDenied);
}

TEST_F(LinuxRegistryTest, ValueThatTheFileCannotHoldIsRefused) {
  EXPECT_EQ(Set("AppPath", "one"), RegistrySuccess);
  const RegistryKey key = Open(KEY_WRITE_ACCESS);
  EXPECT_EQ(m_Registry.SetValue(key, "x", RegistryKind::DWord, {1, 2}), EINVAL);
  EXPECT_EQ(m_Registry.SetValue(key, "x", RegistryKind::Binary, {1, 2, 3, 4}), EINVAL);
  EXPECT_NE(Set("x", "two\nlines"), RegistrySuccess);
  EXPECT_EQ(Text("x"), "(none)");
}

TEST_F(LinuxRegistryTest, FileThatCannotBeWrittenIsAnAccessDenied) {
  std::filesystem::create_directories(m_Path);
  testing::internal::CaptureStderr();
  EXPECT_EQ(Set("AppPath", "one"), EISDIR);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), m_Path + ": Is a directory\n");
  std::filesystem::remove(m_Path);
  chmod(m_Folder.Path().c_str(), 0755);
  chmod((m_Folder / "config").c_str(), 0755);
  chmod((m_Folder / "config/vexmonitor").c_str(), 0555);
  OtherProgram somebodyElse([&](const auto& tell) {
    if (setuid(65534) != 0 && getuid() == 0) _exit(3);
    tell(std::to_string(Set("AppPath", "one")));
  });
  EXPECT_EQ(somebodyElse.Line(), std::to_string(RegistryAccessDenied));
}

TEST(LinuxRegistryPath, ComesFromTheEnvironment) {
  setenv("VEX_SETTINGS", "/etc/vex.reg", 1);
  EXPECT_EQ(LinuxRegistry::PathFromEnvironment(), "/etc/vex.reg");
  setenv("VEX_SETTINGS", "", 1);
  setenv("XDG_CONFIG_HOME", "/conf", 1);
  EXPECT_EQ(LinuxRegistry::PathFromEnvironment(), "/conf/vexmonitor/settings.reg");
  unsetenv("XDG_CONFIG_HOME");
  setenv("HOME", "/home/eve", 1);
  EXPECT_EQ(LinuxRegistry::PathFromEnvironment(), "/home/eve/.config/vexmonitor/settings.reg");
  unsetenv("VEX_SETTINGS");
}

}  // namespace
}  // namespace vex::test
