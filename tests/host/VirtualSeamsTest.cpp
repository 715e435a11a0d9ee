#include <gtest/gtest.h>

#include "basic/Error.h"
#include "host/RegistryText.h"
#include "host/virtual/VirtualHost.h"

namespace vex::test {
namespace {

using std::chrono::milliseconds;

// Windows.

class VirtualWindowsTest : public testing::Test {
 protected:
  SendResult Send(WindowHandle target, const std::string& szBytes) {
    return Windows.SendCopyData(1, target, {3, static_cast<uint32_t>(szBytes.size()), szBytes.data()});
  }
  VirtualWindows Windows;
};

TEST_F(VirtualWindowsTest, ForeignWindowWritesDownWhatItGets) {
  const WindowHandle tray = Windows.NewForeignWindow();
  EXPECT_TRUE(Windows.Exists(tray));
  EXPECT_EQ(Send(tray, "07line"), SendResult::Sent);
  EXPECT_EQ(Send(tray, ""), SendResult::Sent);
  ASSERT_EQ(Windows.Received(tray).size(), 2U);
  EXPECT_EQ(Windows.Received(tray)[0].Sender, 1);
  EXPECT_EQ(Windows.Received(tray)[0].Data, 3U);
  EXPECT_EQ(Windows.Received(tray)[0].Bytes, "07line");
  EXPECT_EQ(Windows.Received(tray)[1].Bytes, "");
  Windows.ForgetReceived(tray);
  EXPECT_TRUE(Windows.Received(tray).empty());
}

TEST_F(VirtualWindowsTest, ForeignWindowMayChooseItsHandleAndStays) {
  EXPECT_EQ(Windows.NewForeignWindow(7), 7);
  EXPECT_EQ(Windows.NewForeignWindow(1001), 1001);
  EXPECT_NE(Windows.NewMainWindow(), 1001);
  EXPECT_EQ(Send(7, "x"), SendResult::Sent);
  Windows.NewForeignWindow(7);
  EXPECT_EQ(Windows.Received(7).size(), 1U);
}

TEST_F(VirtualWindowsTest, DestroyedForeignWindowIsGoneAndKeepsItsRecord) {
  const WindowHandle tray = Windows.NewForeignWindow();
  Send(tray, "x");
  Windows.DestroyWindow(tray);
  EXPECT_FALSE(Windows.Exists(tray));
  EXPECT_EQ(Send(tray, "y"), SendResult::Gone);
  EXPECT_EQ(Windows.Received(tray).size(), 1U);
}

TEST_F(VirtualWindowsTest, ForeignWindowAnswersAsTold) {
  const WindowHandle tray = Windows.NewForeignWindow();
  Windows.Answer(tray, SendResult::Gone);
  EXPECT_TRUE(Windows.Exists(tray));
  EXPECT_EQ(Send(tray, "x"), SendResult::Gone);
  EXPECT_TRUE(Windows.Received(tray).empty());
  Windows.Answer(tray, SendResult::Sent);
  EXPECT_EQ(Send(tray, "x"), SendResult::Sent);
}

TEST_F(VirtualWindowsTest, MessageLongerThanTheChannelCarriesIsTooLong) {
  const WindowHandle tray = Windows.NewForeignWindow();
  Windows.LongestMessage(3);
  EXPECT_EQ(Send(tray, "abc"), SendResult::Sent);
  EXPECT_EQ(Send(tray, "abcd"), SendResult::TooLong);
}

TEST_F(VirtualWindowsTest, SentTellsOfEachMessageToAForeignWindow) {
  std::string szSeen;
  Windows.Sent([&](WindowHandle, const VirtualWindows::Message& message) { szSeen += message.Bytes; });
  const WindowHandle tray = Windows.NewForeignWindow();
  Send(tray, "a");
  Send(tray, "b");
  EXPECT_EQ(szSeen, "ab");
}

TEST_F(VirtualWindowsTest, ProcedureMayTakeItselfOffItsWindowWhileItRuns) {
  const WindowHandle hWnd = Windows.NewMainWindow();
  WindowProcedureReference former;
  former = Windows.ExchangeProcedure(hWnd, std::make_shared<WindowProcedure>([&](const WindowMessage&) {
                                       Windows.ExchangeProcedure(hWnd, former);
                                       Windows.DestroyWindow(hWnd);
                                       return intptr_t{9};
                                     }));
  EXPECT_EQ(Windows.Send({hWnd, 1, 0, 0, nullptr}), 9);
  EXPECT_EQ(Windows.Send({hWnd, 1, 0, 0, nullptr}), 0);
  EXPECT_EQ(Windows.ExchangeProcedure(hWnd, nullptr), nullptr);
}

TEST_F(VirtualWindowsTest, NewWindowFailsWithTheCodeGiven) {
  Windows.FailNewWindow(13);
  try {
    (void)Windows.NewMainWindow();
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Number, 13);
  }
  EXPECT_EQ(Windows.MainWindow(), 0);
  Windows.FailNewWindow(0);
  const WindowHandle hWnd = Windows.NewMainWindow();
  EXPECT_EQ(Windows.MainWindow(), hWnd);
}

// Files.

TEST(VirtualFiles, PutMakesTheFolders) {
  VirtualFiles files;
  files.Put("D:\\shows\\eve\\tree.shw", "text");
  EXPECT_TRUE(files.FolderExists("d:\\SHOWS\\"));
  EXPECT_TRUE(files.Write("D:/shows/eve/other.shw", "x"));
  EXPECT_TRUE(files.Exists("D:\\shows\\eve\\other.shw"));
}

TEST(VirtualFiles, FilesWithoutAFolderLieInTheCurrentOne) {
  VirtualFiles files;
  EXPECT_TRUE(files.Write("eve.shw", "x"));
  EXPECT_TRUE(files.Write("D:\\eve.shw", "x"));
  EXPECT_TRUE(files.Write("\\eve.shw", "x"));
}

TEST(VirtualFiles, FailingReadsGiveTheirReasonUntilHealed) {
  VirtualFiles files;
  files.Put("eve.shw", "x");
  files.FailReads("EVE.shw");
  std::string szContents;
  std::string szReason;
  EXPECT_FALSE(files.Read("eve.shw", szContents, &szReason));
  EXPECT_EQ(szReason, "Permission denied");
  EXPECT_FALSE(files.Open("eve.shw"));
  EXPECT_TRUE(files.Exists("eve.shw"));
  files.HealReads("eve.shw");
  EXPECT_TRUE(files.Read("eve.shw", szContents, &szReason));
  EXPECT_EQ(files.Reads("eve.SHW"), 2);
}

TEST(VirtualFiles, FailingWritesLeaveTheOldFile) {
  VirtualFiles files;
  files.Put("eve.shw", "old");
  files.FailWrites("eve.shw", "No space left on device");
  std::string szReason;
  EXPECT_FALSE(files.Write("eve.shw", "new", &szReason));
  EXPECT_FALSE(files.Remove("eve.shw"));
  EXPECT_EQ(szReason, "No space left on device");
  std::string szContents;
  EXPECT_TRUE(files.Read("eve.shw", szContents));
  EXPECT_EQ(szContents, "old");
  files.HealWrites("eve.shw");
  EXPECT_TRUE(files.Write("eve.shw", "new"));
}

TEST(VirtualFiles, OpenFileStaysAsItWasWhenOpened) {
  VirtualFiles files;
  files.Put("tree.fseq", "old");
  const auto file = files.Open("tree.fseq");
  files.Put("tree.fseq", "longer");
  std::vector<uint8_t> bytes(3);
  EXPECT_EQ(file->Size(), 3U);
  EXPECT_TRUE(file->ReadAt(0, bytes));
  EXPECT_EQ(bytes[0], 'o');
}

TEST(VirtualFiles, ProgramFolderAndSuffixAreAsSet) {
  VirtualFiles files;
  EXPECT_EQ(files.ProgramSuffix(), "");
  files.ProgramFolder("C:\\Suite");
  files.ProgramSuffix(".exe");
  EXPECT_EQ(files.ProgramFolder(), "C:\\Suite");
  EXPECT_EQ(files.ProgramSuffix(), ".exe");
}

TEST(VirtualFiles, RealFilesAreReadOnceAndNeverWritten) {
  VirtualFiles real;
  real.Put("Z:\\eve.shw", "first");
  VirtualFiles files;
  files.FallThrough(&real);
  std::string szContents;
  EXPECT_TRUE(files.Read("Z:\\eve.shw", szContents));
  real.Put("Z:\\eve.shw", "second");
  EXPECT_TRUE(files.Read("Z:\\EVE.shw", szContents));
  EXPECT_EQ(szContents, "first");
  EXPECT_EQ(real.Reads("Z:\\eve.shw"), 1);
  EXPECT_TRUE(files.Write("Z:\\eve.shw", "mine"));
  EXPECT_TRUE(files.Read("Z:\\eve.shw", szContents));
  EXPECT_EQ(szContents, "mine");
  EXPECT_TRUE(real.Read("Z:\\eve.shw", szContents));
  EXPECT_EQ(szContents, "second");
}

TEST(VirtualFiles, RealFileThatWasMissingStaysMissingUntilItIsPut) {
  VirtualFiles real;
  VirtualFiles files;
  files.FallThrough(&real);
  std::string szContents;
  std::string szReason;
  EXPECT_FALSE(files.Read("eve.shw", szContents, &szReason));
  EXPECT_EQ(szReason, "File not found");
  EXPECT_FALSE(files.Exists("other.shw"));
  real.Put("eve.shw", "late");
  real.Put("other.shw", "late");
  EXPECT_FALSE(files.Read("eve.shw", szContents));
  EXPECT_FALSE(files.Exists("eve.shw"));
  EXPECT_FALSE(files.Exists("other.shw"));
  files.Put("eve.shw", "copied");
  EXPECT_TRUE(files.Exists("eve.shw"));
}

TEST(VirtualFiles, RemovedRealFileIsMissingHereAlone) {
  VirtualFiles real;
  real.Put("eve.shw", "x");
  VirtualFiles files;
  files.FallThrough(&real);
  EXPECT_TRUE(files.Remove("eve.shw"));
  EXPECT_FALSE(files.Open("eve.shw"));
  EXPECT_TRUE(real.Exists("eve.shw"));
}

// Registry.

TEST(VirtualRegistry, ValuesSetByATestReadBack) {
  VirtualRegistry registry;
  registry.SetLong("Software\\Brillara\\XLK", "LocalPort", 3737);
  registry.SetText("software\\brillara", "AppPath", "C:\\Suite");
  EXPECT_EQ(registry.Long("Software\\Brillara\\xlk", "localport"), 3737U);
  EXPECT_EQ(registry.Text("Software\\Brillara", "AppPath"), "C:\\Suite");
  EXPECT_EQ(registry.Long("Software\\Brillara", "AppPath"), std::nullopt);
  EXPECT_EQ(registry.Text("Software\\Brillara\\XLK", "LocalPort"), std::nullopt);
  EXPECT_EQ(registry.Text("Software\\Other", "AppPath"), std::nullopt);
  EXPECT_TRUE(registry.HasKey("Software"));
  registry.Remove("Software\\Brillara", "apppath");
  EXPECT_EQ(registry.Text("Software\\Brillara", "AppPath"), std::nullopt);
  registry.RemoveKey("Software\\Brillara");
  EXPECT_FALSE(registry.HasKey("Software\\Brillara\\XLK"));
  EXPECT_TRUE(registry.HasKey("Software"));
}

TEST(VirtualRegistry, TakesOverASettingsFile) {
  VirtualRegistry registry;
  registry.Load(
      RegistryText("REGEDIT4\n[HKEY_CURRENT_USER\\Software\\Brillara]\n\"PostInstallVer\"=dword:5\n"
                   "\"AppPath\"=\"C:\\\\Suite\"\n[HKEY_CURRENT_USER\\Software\\Empty]\n"));
  EXPECT_EQ(registry.Long("Software\\Brillara", "PostInstallVer"), 5U);
  EXPECT_EQ(registry.Text("Software\\Brillara", "AppPath"), "C:\\Suite");
  EXPECT_TRUE(registry.HasKey("Software\\Empty"));
}

TEST(VirtualRegistry, FaultComesOnceAtItsCall) {
  VirtualRegistry registry;
  RegistryKey key = 0;
  registry.FailCall(2, RegistryAccessDenied);
  EXPECT_EQ(registry.CreateKey(RegistryRoot::CurrentUser, "a", key), RegistrySuccess);
  EXPECT_EQ(registry.SetValue(key, "x", RegistryKind::DWord, {}), RegistryAccessDenied);
  EXPECT_EQ(registry.SetValue(key, "x", RegistryKind::DWord, {}), RegistrySuccess);
  EXPECT_EQ(registry.OpenKeys(), 1U);
  registry.CloseKey(key);
  EXPECT_EQ(registry.OpenKeys(), 0U);
}

TEST(VirtualRegistry, KeyOpenForWritingIsNotRead) {
  VirtualRegistry registry;
  registry.SetLong("a", "x", 1);
  RegistryKey key = 0;
  ASSERT_EQ(registry.OpenKey(RegistryRoot::CurrentUser, "a", KEY_WRITE_ACCESS, key), RegistrySuccess);
  RegistryKind kind{};
  uint32_t size = 0;
  EXPECT_EQ(registry.QueryValue(key, "x", kind, nullptr, size), RegistryAccessDenied);
}

// Datagrams.

TEST(VirtualDatagrams, WritesDownWhatIsSentAndWhen) {
  VirtualHost host;
  const auto socket = host.Datagrams().NewSender(0x0A000001);
  host.EventLoop().Advance(25);
  const std::vector<uint8_t> bytes{1, 2};
  EXPECT_EQ(socket->Send(std::vector<Datagram>{{{0xEFFF0001, 5568}, bytes}}), 0);
  ASSERT_EQ(host.Datagrams().Sent().size(), 1U);
  const auto& sent = host.Datagrams().Sent()[0];
  EXPECT_EQ(sent.At, milliseconds(25));
  EXPECT_EQ(sent.MulticastInterface, 0x0A000001U);
  EXPECT_EQ(sent.To, (DatagramAddress{0xEFFF0001, 5568}));
  EXPECT_EQ(sent.Bytes, bytes);
  host.Datagrams().ForgetSent();
  EXPECT_TRUE(host.Datagrams().Sent().empty());
}

TEST(VirtualDatagrams, OneFailureDoesNotStopTheOthers) {
  VirtualHost host;
  const auto socket = host.Datagrams().NewSender(0);
  host.Datagrams().FailSendsTo(1, 101);
  const std::vector<Datagram> datagrams{{{2, 9}, {}}, {{1, 9}, {}}, {{3, 9}, {}}};
  EXPECT_EQ(socket->Send(datagrams), 101);
  EXPECT_EQ(host.Datagrams().Sent().size(), 2U);
  EXPECT_NE(host.Datagrams().Describe(101), "");
  host.Datagrams().FailSends(5);
  EXPECT_EQ(socket->Send(datagrams), 5);
  EXPECT_EQ(host.Datagrams().Sent().size(), 2U);
}

TEST(VirtualDatagrams, SenderThatCannotBeMadeRaisesItsCode) {
  VirtualHost host;
  host.Datagrams().FailNewSender(24);
  EXPECT_THROW((void)host.Datagrams().NewSender(0), Error);
}

TEST(VirtualDatagrams, ResolvesDottedAddressesAndKnownNames) {
  VirtualHost host;
  uint32_t address = 5;
  for (const char* szBad :
       {"", "1.2.3", "1.2.3.4.5", "1.2.3.256", "1..2.3", "a.b.c.d", "1.2.3.4 ", "0001.2.3.4"}) {
    EXPECT_FALSE(host.Datagrams().Resolve(szBad, address)) << szBad;
  }
  EXPECT_EQ(address, 5U);
  EXPECT_TRUE(host.Datagrams().Resolve("255.0.10.1", address));
  EXPECT_EQ(address, 0xFF000A01U);
  EXPECT_TRUE(host.Datagrams().Resolve("localhost", address));
  EXPECT_EQ(address, 0x7F000001U);
  host.Datagrams().KnowHost("lights", 7);
  EXPECT_TRUE(host.Datagrams().Resolve("lights", address));
  EXPECT_EQ(address, 7U);
}

// Programs and message boxes.

TEST(VirtualProcesses, WritesDownStartsAndWaitsAndLetsATestStandIn) {
  VirtualProcesses processes;
  std::string szRun;
  processes.OnStart([&](const VirtualProcesses::Started& started) { szRun = started.CommandLine; });
  const ProcessId process = processes.Start("VexPostInstall", NormalFocus);
  processes.WaitFor(process);
  EXPECT_EQ(szRun, "VexPostInstall");
  ASSERT_EQ(processes.Starts().size(), 1U);
  EXPECT_EQ(processes.Starts()[0].WindowStyle, NormalFocus);
  EXPECT_EQ(processes.Waits(), std::vector<ProcessId>{process});
}

TEST(VirtualProcesses, FailingStartRaisesItsCodeAndStartsNothing) {
  VirtualProcesses processes;
  processes.FailStarts(2);
  try {
    processes.Start("none", HideWindow);
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Number, 2);
  }
  EXPECT_TRUE(processes.Starts().empty());
}

TEST(VirtualMessageBoxes, WritesDownAndMayPump) {
  VirtualHost host;
  int32_t lPumped = 0;
  host.EventLoop().At(Elapsed(0), [&] { ++lPumped; });
  host.MessageBoxes().OnShow([&](const VirtualMessageBoxes::Box&) { host.EventLoop().Pump(); });
  host.MessageBoxes().Show("text", "");
  EXPECT_EQ(lPumped, 1);
  EXPECT_EQ(host.MessageBoxes().Shown(), (std::vector<VirtualMessageBoxes::Box>{{"text", ""}}));
}

}  // namespace
}  // namespace vex::test
