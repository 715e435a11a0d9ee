#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <cstring>

#include "basic/Error.h"
#include "host/linux/UnsentMessages.h"
#include "tests/host_linux/OtherProgram.h"
#include "tests/host_linux/WindowMessages.h"

namespace vex::test {
namespace {

/// A socket's file without anybody behind it, as a killed program leaves it.
void LeaveSocket(const std::string& szPath, bool boolOld) {
  const Descriptor socket(::socket(AF_UNIX, SOCK_DGRAM, 0));
  const sockaddr_un address = AddressOf(szPath);
  ASSERT_EQ(bind(socket.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  const timespec times[2] = {{1000000000, 0}, {1000000000, 0}};
  if (boolOld) utimensat(AT_FDCWD, szPath.c_str(), times, 0);
}

/// A program with a window that tells its handle, then each payload until "09end".
void Receiver(const LinuxMachine& machine, const OtherProgram::Tell& tell) {
  const auto host = machine.NewHost();
  const WindowHandle hWnd = host->Windows().NewWindow();
  std::vector<std::string> payloads;
  Collect(*host, hWnd, payloads);
  tell(std::to_string(hWnd));
  RunUntil(host->EventLoop(), [&] { return !payloads.empty() && payloads.back() == "09end"; });
  for (const std::string& szPayload : payloads) tell(szPayload);
}

class LinuxWindowsTest : public testing::Test {
 protected:
  [[nodiscard]] SendResult Send(WindowHandle target, const std::string& szPayload) {
    return m_Host->Windows().SendCopyData(m_hWnd, target, Copy(szPayload));
  }
  [[nodiscard]] std::string PathOf(WindowHandle hWnd) const {
    return m_Machine.RuntimePath() + "/" + std::to_string(hWnd);
  }
  [[nodiscard]] std::string PlayerPath() const { return m_Machine.RuntimePath() + "/player"; }

  LinuxMachine m_Machine;
  std::unique_ptr<LinuxHost> m_Host = m_Machine.NewHost();
  WindowHandle m_hWnd = m_Host->Windows().NewWindow();
};

TEST_F(LinuxWindowsTest, WindowIsASocketNamedByItsHandleInAFolderForItsUserAlone) {
  EXPECT_TRUE(std::filesystem::is_socket(PathOf(m_hWnd)));
  EXPECT_EQ(ModeOf(m_Machine.RuntimePath()), 0700);
  m_Host->Windows().DestroyWindow(m_hWnd);
  EXPECT_FALSE(std::filesystem::exists(PathOf(m_hWnd)));
}

TEST_F(LinuxWindowsTest, TwoProgramsExchangeMessages) {
  OtherProgram other([&](const auto& tell) { Receiver(m_Machine, tell); });
  const auto target = static_cast<WindowHandle>(std::stoi(other.Line()));
  EXPECT_TRUE(m_Host->Windows().Exists(target));
  EXPECT_EQ(Send(target, "07F\xFCr Elise"), SendResult::Sent);
  EXPECT_EQ(Send(target, "09end"), SendResult::Sent);
  EXPECT_EQ(other.Line(), "07F\xFCr Elise");
  EXPECT_EQ(other.Line(), "09end");
}

TEST_F(LinuxWindowsTest, StoppedReceiverHoldsNobodyUpAndGetsTheNewestWholeLinesInOrder) {
  constexpr int Count = 100000;
  OtherProgram other([&](const auto& tell) { Receiver(m_Machine, tell); });
  const auto target = static_cast<WindowHandle>(std::stoi(other.Line()));
  other.Stop();
  for (int i = 0; i < Count; ++i) ASSERT_EQ(Send(target, "07line " + std::to_string(i)), SendResult::Sent);
  ASSERT_EQ(Send(target, "09end"), SendResult::Sent);
  EXPECT_TRUE(m_Host->Windows().Unsent(target));
  other.Continue();
  ASSERT_TRUE(RunUntil(m_Host->EventLoop(), [&] { return !m_Host->Windows().Unsent(target); }));
  std::vector<int> numbers;
  size_t characters = 0;
  for (std::string szLine = other.Line(); szLine != "09end"; szLine = other.Line()) {
    ASSERT_TRUE(szLine.starts_with("07line ")) << szLine;
    numbers.push_back(std::stoi(szLine.substr(7)));
    const bool boolInKernel = numbers.back() == static_cast<int>(numbers.size()) - 1;
    if (!boolInKernel) characters += szLine.size();
  }
  ASSERT_FALSE(numbers.empty());
  EXPECT_EQ(numbers.back(), Count - 1);
  EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
  EXPECT_LE(characters + 5, UnsentMessages::MostCharacters);
  EXPECT_GT(characters + 5 + 12, UnsentMessages::MostCharacters);
}

TEST_F(LinuxWindowsTest, StoppedReceiverDoesNotHoldUpAnother) {
  OtherProgram stopped([&](const auto& tell) { Receiver(m_Machine, tell); });
  const auto stoppedTarget = static_cast<WindowHandle>(std::stoi(stopped.Line()));
  stopped.Stop();
  const std::string szLong = "07" + std::string(50000, 'x');
  for (int i = 0; i < 50; ++i) ASSERT_EQ(Send(stoppedTarget, szLong), SendResult::Sent);
  OtherProgram other([&](const auto& tell) { Receiver(m_Machine, tell); });
  const auto target = static_cast<WindowHandle>(std::stoi(other.Line()));
  EXPECT_EQ(Send(target, "09end"), SendResult::Sent);
  EXPECT_FALSE(m_Host->Windows().Unsent(target));
  EXPECT_EQ(other.Line(), "09end");
}

TEST_F(LinuxWindowsTest, ReceiverThatDiesWithMessagesWaitingIsGone) {
  OtherProgram other([&](const auto& tell) { Receiver(m_Machine, tell); });
  const auto target = static_cast<WindowHandle>(std::stoi(other.Line()));
  other.Stop();
  for (int i = 0; i < 100; ++i) ASSERT_EQ(Send(target, "07line"), SendResult::Sent);
  EXPECT_TRUE(m_Host->Windows().Unsent(target));
  other.Kill();
  EXPECT_TRUE(RunUntil(m_Host->EventLoop(), [&] { return !m_Host->Windows().Unsent(target); }));
  EXPECT_FALSE(m_Host->Windows().Exists(target));
  EXPECT_EQ(Send(target, "07line"), SendResult::Gone);
}

TEST_F(LinuxWindowsTest, SendingToNothingIsGone) {
  EXPECT_EQ(Send(0, "07x"), SendResult::Gone);
  EXPECT_EQ(Send(-5, "07x"), SendResult::Gone);
  EXPECT_EQ(Send(m_hWnd == 4711 ? 4712 : 4711, "07x"), SendResult::Gone);
  WriteHostFile(PathOf(77), "no socket");
  EXPECT_EQ(Send(77, "07x"), SendResult::Gone);
  EXPECT_FALSE(m_Host->Windows().Exists(77));
}

TEST_F(LinuxWindowsTest, MessageLongerThanADatagramIsTooLong) {
  EXPECT_EQ(Send(m_hWnd, "09" + std::string(16 << 20, 'x')), SendResult::TooLong);
}

TEST_F(LinuxWindowsTest, LongMessageComesThroughWhole) {
  std::vector<std::string> payloads;
  Collect(*m_Host, m_hWnd, payloads);
  const std::string szLong = "07" + std::string(150000, 'x');
  EXPECT_EQ(Send(m_hWnd, szLong), SendResult::Sent);
  ASSERT_TRUE(RunUntil(m_Host->EventLoop(), [&] { return !payloads.empty(); }));
  EXPECT_EQ(payloads[0], szLong);
}

TEST_F(LinuxWindowsTest, LongRequestWithoutRoomIsTooLong) {
  for (int i = 0; i < 100; ++i) ASSERT_EQ(Send(m_hWnd, "07line"), SendResult::Sent);
  EXPECT_EQ(Send(m_hWnd, "09" + std::string(70000, 'x')), SendResult::TooLong);
}

TEST_F(LinuxWindowsTest, OtherShapesAreDroppedAndTheNextMessageArrives) {
  std::vector<std::string> payloads;
  Collect(*m_Host, m_hWnd, payloads);
  SendBytes(PathOf(m_hWnd), {});
  SendBytes(PathOf(m_hWnd), {74, 0, 0});
  SendBytes(PathOf(m_hWnd), {75, 0, 0, 0, 1, 0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0});
  SendBytes(PathOf(m_hWnd), {74, 0, 0, 0, 1, 0, 0, 0, 3, 0, 0, 0, 9, 0, 0, 0, 'x'});
  SendBytes(PathOf(m_hWnd), {74, 0, 0, 0, 1, 0, 0, 0, 9, 9, 9, 9, 3, 0, 0, 0, '0', '5', 0});
  ASSERT_TRUE(RunUntil(m_Host->EventLoop(), [&] { return !payloads.empty(); }));
  EXPECT_EQ(payloads, std::vector<std::string>{"05"});
}

TEST_F(LinuxWindowsTest, ProcedureGetsTheSenderAndTheBlock) {
  WindowMessage seen;
  std::string szBytes;
  m_Host->Windows().ExchangeProcedure(
      m_hWnd, std::make_shared<WindowProcedure>([&](const WindowMessage& message) -> intptr_t {
        seen = message;
        const auto* const copy = reinterpret_cast<const CopyData*>(message.lParam);
        szBytes.assign(copy->Bytes, copy->Size);
        return 0;
      }));
  m_Host->Windows().SendCopyData(1234, m_hWnd, Copy("08"));
  ASSERT_TRUE(RunUntil(m_Host->EventLoop(), [&] { return seen.hWnd != 0; }));
  EXPECT_EQ(seen.hWnd, m_hWnd);
  EXPECT_EQ(seen.uMsg, WM_COPYDATA);
  EXPECT_EQ(seen.wParam, 1234U);
  EXPECT_EQ(szBytes, std::string("08\0", 3));
}

TEST_F(LinuxWindowsTest, AtMostSixteenDatagramsAreTakenInATurn) {
  // The kernel keeps fewer than that for one window, so the senders refill it while it is read.
  std::vector<std::string> payloads;
  m_Host->Windows().ExchangeProcedure(
      m_hWnd, std::make_shared<WindowProcedure>([&](const WindowMessage&) -> intptr_t {
        payloads.emplace_back();
        SendBytes(PathOf(m_hWnd), EncodeCopyData(1, Copy("07x")));
        return 0;
      }));
  SendBytes(PathOf(m_hWnd), EncodeCopyData(1, Copy("07x")));
  m_Host->EventLoop().Pump();
  EXPECT_EQ(payloads.size(), 16U);
  m_Host->EventLoop().Pump();
  EXPECT_EQ(payloads.size(), 32U);
}

TEST_F(LinuxWindowsTest, WindowMayBeDestroyedByItsProcedure) {
  int messages = 0;
  m_Host->Windows().ExchangeProcedure(
      m_hWnd, std::make_shared<WindowProcedure>([&](const WindowMessage& message) -> intptr_t {
        m_Host->Windows().DestroyWindow(message.hWnd);
        return ++messages;
      }));
  SendBytes(PathOf(m_hWnd), EncodeCopyData(1, Copy("07x")));
  SendBytes(PathOf(m_hWnd), EncodeCopyData(1, Copy("07x")));
  m_Host->EventLoop().Pump();
  m_Host->EventLoop().Pump();
  EXPECT_EQ(messages, 1);
}

TEST_F(LinuxWindowsTest, ProcedureThatPumpsKeepsItsBytes) {
  std::vector<std::string> payloads;
  m_Host->Windows().ExchangeProcedure(
      m_hWnd, std::make_shared<WindowProcedure>([&](const WindowMessage& message) -> intptr_t {
        m_Host->EventLoop().Pump();
        payloads.emplace_back(message.Copy->Bytes);
        return 0;
      }));
  for (const char* szPayload : {"07one", "07two", "07three"})
    SendBytes(PathOf(m_hWnd), EncodeCopyData(1, Copy(szPayload)));
  ASSERT_TRUE(RunUntil(m_Host->EventLoop(), [&] { return payloads.size() >= 3; }));
  EXPECT_EQ(payloads, (std::vector<std::string>{"07one", "07two", "07three"}));
}

TEST_F(LinuxWindowsTest, HandleOfALivingWindowIsPassedOver) {
  int asked = 0;
  m_Host->Windows().HandleSource([&] { return ++asked == 1 ? m_hWnd : 815; });
  EXPECT_EQ(m_Host->Windows().NewWindow(), 815);
}

TEST_F(LinuxWindowsTest, SocketLeftOverByADeadProgramIsTakenOver) {
  LeaveSocket(PathOf(815), false);
  EXPECT_FALSE(m_Host->Windows().Exists(815));
  m_Host->Windows().HandleSource([] { return 815; });
  EXPECT_EQ(m_Host->Windows().NewWindow(), 815);
  EXPECT_TRUE(m_Host->Windows().Exists(815));
  EXPECT_EQ(Send(815, "07x"), SendResult::Sent);
}

TEST_F(LinuxWindowsTest, NoFreeHandleIsAnError) {
  m_Host->Windows().HandleSource([&] { return m_hWnd; });
  try {
    (void)m_Host->Windows().NewWindow();
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Number, EADDRINUSE);
    EXPECT_EQ(error.Source, "Windows.NewWindow");
  }
}

TEST_F(LinuxWindowsTest, MainWindowSweepsWhatWasLeftOverLongAgo) {
  LeaveSocket(PathOf(815), true);
  LeaveSocket(PathOf(816), false);
  LeaveSocket(m_Machine.RuntimePath() + "/other", true);
  (void)m_Host->Windows().NewMainWindow();
  EXPECT_FALSE(std::filesystem::exists(PathOf(815)));
  EXPECT_TRUE(std::filesystem::exists(PathOf(816)));
  EXPECT_TRUE(std::filesystem::exists(m_Machine.RuntimePath() + "/other"));
  EXPECT_TRUE(m_Host->Windows().Exists(m_hWnd));
}

TEST_F(LinuxWindowsTest, PlayerFileStandsOnceTheWindowAndTheLockAreThere) {
  const WindowHandle hWnd = m_Host->Windows().NewMainWindow();
  EXPECT_FALSE(std::filesystem::exists(PlayerPath()));
  ASSERT_FALSE(m_Host->SingleInstance().AlreadyRunning());
  EXPECT_EQ(ReadHostFile(PlayerPath()), std::to_string(hWnd));
  m_Host.reset();
  EXPECT_FALSE(std::filesystem::exists(PlayerPath()));
}

TEST_F(LinuxWindowsTest, PlayerFileStandsAlsoWhenTheLockCameFirst) {
  ASSERT_FALSE(m_Host->SingleInstance().AlreadyRunning());
  EXPECT_FALSE(std::filesystem::exists(PlayerPath()));
  const WindowHandle hWnd = m_Host->Windows().NewMainWindow();
  EXPECT_EQ(ReadHostFile(PlayerPath()), std::to_string(hWnd));
  m_Host->Windows().DestroyWindow(hWnd);
  EXPECT_FALSE(std::filesystem::exists(PlayerPath()));
}

TEST_F(LinuxWindowsTest, SecondPlayerDoesNotTouchThePlayerFile) {
  const WindowHandle hWnd = m_Host->Windows().NewMainWindow();
  ASSERT_FALSE(m_Host->SingleInstance().AlreadyRunning());
  {
    const auto second = m_Machine.NewHost();
    (void)second->Windows().NewMainWindow();
    EXPECT_TRUE(second->SingleInstance().AlreadyRunning());
  }
  EXPECT_EQ(ReadHostFile(PlayerPath()), std::to_string(hWnd));
}

}  // namespace
}  // namespace vex::test
