#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <thread>

#include "basic/Error.h"
#include "host/linux/LinuxSingleInstance.h"
#include "tests/host_linux/OtherProgram.h"

namespace vex::test {
namespace {

class LinuxProgramsTest : public testing::Test {
 protected:
  /// What a command line writes to the file named $OUT.
  std::string OutputOf(const std::string& szCommand) {
    const std::string szFile = m_Machine.Folder() / "out";
    m_Host->Processes().WaitFor(m_Host->Processes().Start("(" + szCommand + ") > " + szFile, NormalFocus));
    return ReadHostFile(szFile);
  }

  LinuxMachine m_Machine;
  std::unique_ptr<LinuxHost> m_Host = m_Machine.NewHost();
};

// Starting programs.

TEST_F(LinuxProgramsTest, ShellRunsTheCommandLineInUtf8) {
  EXPECT_EQ(OutputOf("printf %s 'F\xFCr Elise' | tr a-z A-Z"), "F\xC3\xBCR ELISE");
}

TEST_F(LinuxProgramsTest, StandardInputIsEmpty) {
  EXPECT_EQ(OutputOf("cat; echo done"), "done\n");
}

TEST_F(LinuxProgramsTest, ProgramIsInASessionOfItsOwn) {
  const pid_t session = getsid(0);
  const std::string szSession = OutputOf("ps -o sid= -p $$ || cut -d' ' -f6 /proc/self/stat");
  EXPECT_NE(std::stoi(szSession), session);
}

TEST_F(LinuxProgramsTest, ProgramInheritsNoFiles) {
  const Descriptor leaking(dup(0));  // without close-on-exec, as a library may have it
  const Descriptor leakingHigh(dup2(0, 200));
  EXPECT_EQ(OutputOf("ls /proc/$$/fd"), "0\n1\n2\n");
}

TEST_F(LinuxProgramsTest, ProgramHasNoSignalBlockedOrIgnored) {
  OtherProgram other([&](const auto& tell) {
    signal(SIGPIPE, SIG_IGN);
    const auto host = m_Machine.NewHost();
    host->OnTerminate([] {});
    host->Processes().WaitFor(host->Processes().Start(
        "sed -n 's/^Sig[BI][lg][kn]:.//p' /proc/self/status > " + (m_Machine.Folder() / "signals"),
        NormalFocus));
    tell("done");
  });
  ASSERT_EQ(other.Line(), "done");
  std::istringstream masks(ReadHostFile(m_Machine.Folder() / "signals"));
  uint64_t blocked = 1;
  uint64_t ignored = 1;
  masks >> std::hex >> blocked >> ignored;
  EXPECT_EQ(blocked, 0U);
  // The C library keeps 32 and 33 to itself.
  EXPECT_EQ(ignored & ~(uint64_t{3} << 31), 0U);
}

TEST_F(LinuxProgramsTest, EndedProgramIsCollectedByTheLoop) {
  const ProcessId process = m_Host->Processes().Start("exit 3", HideWindow);
  EXPECT_TRUE(RunUntil(m_Host->EventLoop(), [&] { return kill(process, 0) != 0; }));
  m_Host->Processes().WaitFor(process);
}

TEST_F(LinuxProgramsTest, WaitingForNoneOfOursReturns) {
  m_Host->Processes().WaitFor(0);
  m_Host->Processes().WaitFor(1);
}

TEST_F(LinuxProgramsTest, ProgramOutlivesTheHost) {
  const ProcessId process = m_Host->Processes().Start("exec sleep 60", NormalFocus);
  m_Host.reset();
  EXPECT_EQ(kill(process, 0), 0);
  kill(process, SIGKILL);
  waitpid(process, nullptr, 0);
}

TEST_F(LinuxProgramsTest, CommandThatLooksLikeAnOptionIsACommand) {
  EXPECT_EQ(OutputOf("true; echo reached"), "reached\n");
  const ProcessId process = m_Host->Processes().Start("-c true 2> /dev/null", NormalFocus);
  EXPECT_GT(process, 0);
  m_Host->Processes().WaitFor(process);
}

// The player's place.

TEST_F(LinuxProgramsTest, KilledPlayerLeavesItsPlaceAndIsNotFound) {
  OtherProgram player([&](const auto& tell) {
    const auto host = m_Machine.NewHost();
    const bool boolRunning = host->SingleInstance().AlreadyRunning();
    tell(std::to_string(boolRunning ? 0 : host->Windows().NewMainWindow()));
    host->EventLoop().Run();
  });
  const std::string szHandle = player.Line();
  EXPECT_GT(std::stoi(szHandle), 0);
  EXPECT_TRUE(m_Host->SingleInstance().AlreadyRunning());
  EXPECT_EQ(std::to_string(m_Host->PlayerFinder().FindPlayer()), szHandle);
  player.Kill();
  EXPECT_EQ(ReadHostFile(m_Machine.RuntimePath() + "/player"), szHandle);
  EXPECT_EQ(m_Host->PlayerFinder().FindPlayer(), 0);
  EXPECT_FALSE(m_Host->SingleInstance().AlreadyRunning());
}

TEST_F(LinuxProgramsTest, PlayersProgramsDoNotKeepItsPlace) {
  ASSERT_FALSE(m_Host->SingleInstance().AlreadyRunning());
  const ProcessId process = m_Host->Processes().Start("exec sleep 60", NormalFocus);
  m_Host.reset();
  EXPECT_FALSE(m_Machine.NewHost()->SingleInstance().AlreadyRunning());
  kill(process, SIGKILL);
  waitpid(process, nullptr, 0);
}

TEST_F(LinuxProgramsTest, LookingForAPlayerMakesNothing) {
  EXPECT_EQ(m_Host->PlayerFinder().FindPlayer(), 0);
  EXPECT_FALSE(std::filesystem::exists(m_Machine.RuntimePath()));
}

TEST_F(LinuxProgramsTest, PlayerFileWithoutAHandleIsNoPlayer) {
  ASSERT_FALSE(m_Host->SingleInstance().AlreadyRunning());
  const auto companion = m_Machine.NewHost();
  EXPECT_EQ(companion->PlayerFinder().FindPlayer(), 0);
  for (const char* szText : {"", "x", "-5", "0", "12x", "99999999999"}) {
    WriteHostFile(m_Machine.RuntimePath() + "/player", szText);
    EXPECT_EQ(companion->PlayerFinder().FindPlayer(), 0) << szText;
  }
  WriteHostFile(m_Machine.RuntimePath() + "/player", "4711\n");
  EXPECT_EQ(companion->PlayerFinder().FindPlayer(), 4711);
}

TEST_F(LinuxProgramsTest, PlayerStartsWhileCompanionsLookForIt) {
  std::filesystem::create_directory(m_Machine.RuntimePath());
  WriteHostFile(m_Machine.RuntimePath() + "/player.lock", "");
  OtherProgram companion([&](const auto& tell) {
    tell("looking");
    while (true) (void)PlayerLockHeld(RuntimeFolder(m_Machine.RuntimePath()));
  });
  ASSERT_EQ(companion.Line(), "looking");
  for (int i = 0; i < 50; ++i) EXPECT_FALSE(m_Machine.NewHost()->SingleInstance().AlreadyRunning());
}

TEST_F(LinuxProgramsTest, StatusFileLiesInTheRuntimeFolder) {
  EXPECT_EQ(m_Host->Files().HostPath(m_Host->PlayerFinder().StatusFile()),
            m_Machine.RuntimePath() + "/status.json");
}

TEST_F(LinuxProgramsTest, RuntimeFolderOutsideTheCodePageIsRefusedForTheStatus) {
  LinuxFiles files;
  LinuxPlayerFinder finder(RuntimeFolder("/tmp/\xE2\x9C\x93"), files);
  try {
    (void)finder.StatusFile();
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Description, "The folder /tmp/\xE2\x9C\x93 has a character outside Windows-1252");
  }
}

TEST_F(LinuxProgramsTest, MessageBoxIsALineOnStandardError) {
  testing::internal::CaptureStderr();
  m_Host->MessageBoxes().Show("Br\xFC", "");
  m_Host->MessageBoxes().Show("text", "Brillara");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "VexMonitor: Br\xC3\xBC\nBrillara: text\n");
}

// The network.

TEST_F(LinuxProgramsTest, DatagramsArriveAndOneThatFailsDoesNotHoldUpTheOthers) {
  const Descriptor receiver(socket(AF_INET, SOCK_DGRAM, 0));
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  ASSERT_EQ(bind(receiver.Get(), reinterpret_cast<sockaddr*>(&address), length), 0);
  ASSERT_EQ(getsockname(receiver.Get(), reinterpret_cast<sockaddr*>(&address), &length), 0);
  const DatagramAddress to{INADDR_LOOPBACK, ntohs(address.sin_port)};
  const std::vector<uint8_t> one{1};
  const std::vector<uint8_t> tooLong(70000);
  std::vector<Datagram> datagrams{{to, one}, {to, tooLong}, {to, one}};
  for (int i = 0; i < 100; ++i) datagrams.push_back({to, one});
  EXPECT_EQ(m_Host->Datagrams().NewSender(0)->Send(datagrams), EMSGSIZE);
  int received = 0;
  char byte = 0;
  while (recv(receiver.Get(), &byte, 1, MSG_DONTWAIT) == 1) ++received;
  EXPECT_EQ(received, 102);
}

TEST_F(LinuxProgramsTest, InterfaceThatIsNotHereIsAnError) {
  try {
    (void)m_Host->Datagrams().NewSender(0xC0000201);  // 192.0.2.1, kept for examples
    FAIL();
  } catch (const Error& error) {
    EXPECT_NE(error.Number, 0);
    EXPECT_EQ(error.Source, "Datagrams.NewSender");
  }
  EXPECT_EQ(m_Host->Datagrams().Describe(ENETUNREACH), "Network is unreachable");
}

TEST_F(LinuxProgramsTest, MulticastGoesOutByTheChosenInterface) {
  const auto sender = m_Host->Datagrams().NewSender(INADDR_LOOPBACK);
  const std::vector<uint8_t> one{1};
  const std::vector<Datagram> datagrams{{{0xEFFF0001, 5568}, one}};
  EXPECT_EQ(sender->Send(datagrams), 0);
}

TEST_F(LinuxProgramsTest, NamesResolve) {
  uint32_t address = 0;
  EXPECT_TRUE(m_Host->Datagrams().Resolve("10.1.2.3", address));
  EXPECT_EQ(address, 0x0A010203U);
  EXPECT_TRUE(m_Host->Datagrams().Resolve("localhost", address));
  EXPECT_EQ(address, INADDR_LOOPBACK);
  EXPECT_FALSE(m_Host->Datagrams().Resolve("no such host.invalid", address));
}

// The clock.

TEST_F(LinuxProgramsTest, ZoneThatChangesWhileRunningCounts) {
  const char* const szZone = std::getenv("TZ");
  const std::string szOld = szZone == nullptr ? "" : szZone;
  DateTime dtNow;
  int64_t ahead = 0;
  do {
    setenv("TZ", "UTC0", 1);
    dtNow = m_Host->Clock().Now();
    setenv("TZ", "IST-5:30", 1);
    ahead = m_Host->Clock().Now().SecondsSince(dtNow);
    setenv("TZ", "UTC0", 1);
  } while (m_Host->Clock().Now() != dtNow);
  EXPECT_EQ(ahead, 5 * 3600 + 1800);
  if (szZone == nullptr)
    unsetenv("TZ");
  else
    setenv("TZ", szOld.c_str(), 1);
}

}  // namespace
}  // namespace vex::test
