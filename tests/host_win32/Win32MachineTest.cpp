#include <thread>
#include <vector>

#include "basic/Error.h"
#include "settings/LibRegistry.h"
#include "tests/host_win32/WindowsMachine.h"

namespace vex::test {
namespace {

TEST(BehindProgramName, IsEverythingBehindTheFirstWord) {
  EXPECT_EQ(BehindProgramName("\"C:\\a b\\VexMonitor.exe\" /noschedule"), "/noschedule");
  EXPECT_EQ(BehindProgramName("VexMonitor.exe   /noschedule"), "/noschedule");
  EXPECT_EQ(BehindProgramName("VexMonitor.exe /noschedule "), "/noschedule ");
  EXPECT_EQ(BehindProgramName("VexMonitor.exe a \"b c\""), "a \"b c\"");
  EXPECT_EQ(BehindProgramName("VexMonitor.exe"), "");
  EXPECT_EQ(BehindProgramName("\"VexMonitor.exe\" "), "");
  EXPECT_EQ(BehindProgramName("\"unfinished"), "");
}

TEST(Win32Registry, FailuresAreRaisedWithTheSystemsCodeAndWords) {
  const EmptyUserKey user;
  Win32Registry registry;
  try {
    (void)OpenKey(registry, RegistryRoot::CurrentUser, "Software\\Brillara\\none", KEY_READ_ACCESS);
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Number, RegistryFileNotFound);
    EXPECT_EQ(error.Description, "RegOpenKeyEx failure");
  }
  try {
    CreateKey(registry, RegistryRoot::CurrentUser, std::string(300, 'k'));
    FAIL();
  } catch (const Error& error) {
    EXPECT_NE(error.Number, 0);
    EXPECT_EQ(error.Description, "RegCreateKeyEx failure");
  }
}

TEST(Win32Registry, OpeningForWritingMakesTheKeyWithItsClass) {
  const EmptyUserKey user;
  Win32Registry registry;
  const RegistryKey key =
      OpenKey(registry, RegistryRoot::CurrentUser, "Software\\Brillara\\Shared", KEY_WRITE_ACCESS);
  registry.CloseKey(key);
  HKEY opened = nullptr;
  ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\Brillara\\Shared", 0, KEY_READ, &opened),
            ERROR_SUCCESS);
  char szClass[8] = {};
  DWORD length = sizeof szClass;
  RegQueryInfoKeyA(opened, szClass, &length, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                   nullptr, nullptr);
  RegCloseKey(opened);
  EXPECT_EQ(std::string(szClass), "0");
}

TEST(Win32Registry, ReadersTakeWhatTheMachinesOwnCallsWrote) {
  const EmptyUserKey user;
  const DWORD number = 40000;
  RegSetKeyValueA(HKEY_CURRENT_USER, "Software\\Brillara\\XLK", "LocalPort", REG_DWORD, &number,
                  sizeof number);
  RegSetKeyValueA(HKEY_CURRENT_USER, "Software\\Brillara\\XLK", "RemoteHost", REG_SZ, "F\xFCr", 4);
  Win32Registry registry;
  const auto root = RegistryRoot::CurrentUser;
  EXPECT_EQ(QueryLong(registry, root, "Software\\Brillara\\XLK", "LocalPort", 1), 40000);
  EXPECT_EQ(QueryString(registry, root, "Software\\Brillara\\XLK", "RemoteHost", ""), "F\xFCr");
  EXPECT_EQ(QueryLong(registry, root, "Software\\Brillara\\XLK", "none", 5), 5);
  EXPECT_EQ(QueryString(registry, root, "none", "none", "default"), "default");
}

TEST(Win32Processes, StartedProgramHasTheStyleAndIsWaitedForToItsEnd) {
  const TemporaryFolder folder;
  Win32Processes processes;
  Win32Files files;
  for (const int32_t lStyle : {HideWindow, NormalFocus, MinimizedNoFocus}) {
    const std::string szFile = folder.Path() + "style" + std::to_string(lStyle);
    const ProcessId process = processes.Start(CommandForPart("style " + szFile), lStyle);
    processes.WaitFor(process);
    std::string szStyle;
    ASSERT_TRUE(files.Read(szFile, szStyle, nullptr));
    EXPECT_EQ(szStyle, std::to_string(lStyle));
  }
}

TEST(Win32Processes, ProgramThatIsNotThereIsAnErrorWithTheSystemsCode) {
  try {
    Win32Processes().Start("Z:\\none\\none.exe", NormalFocus);
    FAIL();
  } catch (const Error& error) {
    EXPECT_TRUE(error.Number == ERROR_FILE_NOT_FOUND || error.Number == ERROR_PATH_NOT_FOUND) << error.Number;
    EXPECT_NE(error.Description, "");
  }
}

TEST(Win32EventLoop, HandleThatIsSignalledRunsItsHandlerUntilItIsLetGo) {
  Win32EventLoop loop;
  const Handle event(CreateEventA(nullptr, TRUE, FALSE, nullptr));
  int32_t lRuns = 0;
  auto watch = loop.WatchReadable(static_cast<int64_t>(reinterpret_cast<intptr_t>(event.Get())), [&] {
    if (++lRuns == 3) loop.Quit();
  });
  SetEvent(event.Get());
  loop.Run();
  EXPECT_EQ(lRuns, 3);
  watch.reset();
  loop.Pump();
  EXPECT_EQ(lRuns, 3);
}

TEST(Win32EventLoop, HandleThatASleepResetsIsNotLost) {
  Win32EventLoop loop;
  const Handle event(CreateEventA(nullptr, FALSE, FALSE, nullptr));
  int32_t lRuns = 0;
  const auto watch = loop.WatchReadable(static_cast<int64_t>(reinterpret_cast<intptr_t>(event.Get())), [&] {
    ++lRuns;
    loop.Quit();
  });
  SetEvent(event.Get());
  loop.Run();
  loop.Pump();
  EXPECT_EQ(lRuns, 1);
}

TEST(Win32EventLoop, MoreHandlesThanTheMachineWaitsForAreRefused) {
  Win32EventLoop loop;
  const Handle event(CreateEventA(nullptr, TRUE, FALSE, nullptr));
  const auto number = static_cast<int64_t>(reinterpret_cast<intptr_t>(event.Get()));
  std::vector<std::unique_ptr<Watch>> watches;
  try {
    while (watches.size() < 100) watches.push_back(loop.WatchReadable(number, [] {}));
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Number, ErrorInvalidCall);
  }
  loop.Pump();
}

TEST(Win32Files, PathsOfTheMachineAreUtf8Outside) {
  Win32Files files;
  EXPECT_EQ(files.HostPath("C:\\F\xFCr Elise \x80.ogg"), "C:\\F\xC3\xBCr Elise \xE2\x82\xAC.ogg");
  EXPECT_EQ(files.SystemPath("C:/F\xC3\xBCr/\xE2\x82\xAC.ogg"), "C:\\F\xFCr\\\x80.ogg");
  EXPECT_EQ(files.SystemPath("C:/\xE4\xB8\xAD.ogg"), "");
  EXPECT_EQ(files.SystemPath("\xFF"), "");
}

TEST(Win32Files, ProgramFolderIsWhereThisProgramLies) {
  Win32Files files;
  EXPECT_TRUE(files.Exists(files.ProgramFolder() + "\\host_win32_tests" + files.ProgramSuffix()));
}

TEST(Win32Files, NothingIsLeftBesideAFileThatCouldNotBeWritten) {
  const TemporaryFolder folder;
  Win32Files files;
  const std::string szFile = folder.Path() + "eve.shw";
  ASSERT_TRUE(files.Write(szFile, "old", nullptr));
  {
    const Handle reader(CreateFileA(szFile.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(reader.Open());
    std::string szReason;
    EXPECT_FALSE(files.Write(szFile, "new", &szReason));
    EXPECT_NE(szReason, "");
  }
  std::string szContents;
  ASSERT_TRUE(files.Read(szFile, szContents, nullptr));
  EXPECT_EQ(szContents, "old");
  size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder.Path()))
    count += entry.exists() ? 1 : 0;
  EXPECT_EQ(count, 1U);
}

TEST(Win32Files, FileThatIsWrittenAnewStaysHidden) {
  const TemporaryFolder folder;
  Win32Files files;
  const std::string szFile = folder.Path() + "eve.shw";
  ASSERT_TRUE(files.Write(szFile, "old", nullptr));
  constexpr DWORD attributes = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
  ASSERT_TRUE(SetFileAttributesA(szFile.c_str(), attributes));
  ASSERT_EQ(GetFileAttributesA(szFile.c_str()) & attributes, attributes);
  ASSERT_TRUE(files.Write(szFile, "new", nullptr));
  EXPECT_EQ(GetFileAttributesA(szFile.c_str()) & attributes, attributes);
  std::string szContents;
  ASSERT_TRUE(files.Read(szFile, szContents, nullptr));
  EXPECT_EQ(szContents, "new");
}

TEST(Win32Files, FileThatSomebodyHasMadeReadOnlyStaysAsItIs) {
  const TemporaryFolder folder;
  Win32Files files;
  const std::string szFile = folder.Path() + "eve.shw";
  ASSERT_TRUE(files.Write(szFile, "old", nullptr));
  ASSERT_TRUE(SetFileAttributesA(szFile.c_str(), FILE_ATTRIBUTE_READONLY));
  std::string szReason;
  EXPECT_FALSE(files.Write(szFile, "new", &szReason));
  EXPECT_NE(szReason, "");
  EXPECT_NE(GetFileAttributesA(szFile.c_str()) & FILE_ATTRIBUTE_READONLY, 0U);
  std::string szContents;
  ASSERT_TRUE(files.Read(szFile, szContents, nullptr));
  EXPECT_EQ(szContents, "old");
  ASSERT_TRUE(SetFileAttributesA(szFile.c_str(), FILE_ATTRIBUTE_NORMAL));
}

TEST(Win32Files, LockIsOneForAllFilesOfAFolder) {
  const TemporaryFolder folder;
  Win32Files files;
  std::string szReason;
  EXPECT_TRUE(files.Lock(folder.Path() + "weeksched.qsc", &szReason));
  EXPECT_TRUE(files.Lock(folder.Path() + "weeksched.qsc", &szReason));
  EXPECT_FALSE(files.Lock(folder.Path() + "none\\weeksched.qsc", &szReason));
  EXPECT_EQ(szReason, "File not found");
}

TEST(Win32Host, SharpTimersAreForTheLoopsThreadAlone) {
  Win32Host host;
  EXPECT_TRUE(host.SharpTimers());
  EXPECT_EQ(GetThreadPriority(GetCurrentThread()), THREAD_PRIORITY_TIME_CRITICAL);
  int other = THREAD_PRIORITY_ERROR_RETURN;
  std::thread([&] { other = GetThreadPriority(GetCurrentThread()); }).join();
  EXPECT_EQ(other, THREAD_PRIORITY_NORMAL);
  SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_NORMAL);
  SetPriorityClass(GetCurrentProcess(), NORMAL_PRIORITY_CLASS);
}

TEST(Win32Host, MachineTellsWhoItIsAndWhereUserDataBelong) {
  Win32Host host;
  EXPECT_EQ(host.MachineId(), host.MachineId());
  EXPECT_TRUE(host.UserDataFolder().ends_with("\\VexMonitor\\"));
  EXPECT_TRUE(host.PlayerFinder().StatusFile().ends_with("\\VexMonitor\\status.json"));
}

}  // namespace
}  // namespace vex::test
