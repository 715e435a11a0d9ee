#include <vector>

#include "basic/Error.h"
#include "tests/host_win32/WindowsMachine.h"

namespace vex::test {
namespace {

/// A window of this program that writes down what it is sent.
class Listener {
 public:
  explicit Listener(Win32Host& host) : m_Host(host), hWnd(host.Windows().NewWindow()) {
    host.Windows().ExchangeProcedure(
        hWnd, std::make_shared<WindowProcedure>([this](const WindowMessage& message) {
          if (message.Copy == nullptr) return intptr_t{0};
          Sender = static_cast<WindowHandle>(message.wParam);
          Texts.emplace_back(message.Copy->Bytes == nullptr ? "" : message.Copy->Bytes, message.Copy->Size);
          return intptr_t{1};
        }));
  }
  void Send(WindowHandle to, const std::string& szText) const {
    EXPECT_EQ(
        m_Host.Windows().SendCopyData(hWnd, to, {3, static_cast<uint32_t>(szText.size()), szText.data()}),
        SendResult::Sent);
  }
  [[nodiscard]] bool Wait(size_t count) {
    return RunUntil(m_Host.EventLoop(), [&] { return Texts.size() >= count; });
  }
  [[nodiscard]] std::string Number() const { return std::to_string(hWnd); }

 private:
  Win32Host& m_Host;

 public:
  WindowHandle hWnd;
  WindowHandle Sender = 0;
  std::vector<std::string> Texts;
};

class Win32WindowsTest : public testing::Test {
 protected:
  WNDPROC ProcedureOf(WindowHandle hWnd) {
    return reinterpret_cast<WNDPROC>(GetWindowLongPtrA(WindowOf(hWnd), GWLP_WNDPROC));
  }

  Win32Host m_Host;
};

TEST_F(Win32WindowsTest, MessagesGoToAnotherProgramAndBackToTheByte) {
  Listener listener(m_Host);
  const OtherProgram other("echo", listener.Number());
  ASSERT_TRUE(listener.Wait(1));
  EXPECT_EQ(listener.Texts[0], "hello");
  EXPECT_NE(listener.Sender, listener.hWnd);
  std::string szEveryByte;
  for (int byte = 0; byte < 256; ++byte) szEveryByte += static_cast<char>(byte);
  listener.Send(listener.Sender, szEveryByte);
  listener.Send(listener.Sender, "");
  listener.Send(listener.Sender, std::string(59000, 'x'));
  ASSERT_TRUE(listener.Wait(4));
  EXPECT_EQ(listener.Texts[1], szEveryByte);
  EXPECT_EQ(listener.Texts[2], "");
  EXPECT_EQ(listener.Texts[3], std::string(59000, 'x'));
}

TEST_F(Win32WindowsTest, OrderHoldsBetweenPrograms) {
  Listener listener(m_Host);
  const OtherProgram other("echo", listener.Number());
  ASSERT_TRUE(listener.Wait(1));
  for (int i = 0; i < 200; ++i) listener.Send(listener.Sender, std::to_string(i));
  ASSERT_TRUE(listener.Wait(201));
  for (size_t i = 0; i < 200; ++i) EXPECT_EQ(listener.Texts[i + 1], std::to_string(i));
}

TEST_F(Win32WindowsTest, ReceiverThatHangsHoldsNobodyUpAndLosesNothing) {
  Listener listener(m_Host);
  const OtherProgram other("echo", listener.Number());
  ASSERT_TRUE(listener.Wait(1));
  listener.Send(listener.Sender, "hang");
  listener.Send(listener.Sender, "after");
  EXPECT_TRUE(m_Host.Windows().Unsent(listener.Sender));
  int32_t lTicks = 0;
  const auto timer = m_Host.EventLoop().NewTimer(TimerOrder::tmrShowPlayer);
  timer->Tick([&] { ++lTicks; });
  timer->Enabled(true);
  ASSERT_TRUE(RunUntil(m_Host.EventLoop(), [&] { return lTicks > 50; }));
  EXPECT_EQ(listener.Texts.size(), 1U);
  ASSERT_TRUE(listener.Wait(3));
  EXPECT_EQ(listener.Texts[2], "after");
  EXPECT_TRUE(RunUntil(m_Host.EventLoop(), [&] { return !m_Host.Windows().Unsent(listener.Sender); }));
}

TEST_F(Win32WindowsTest, WindowOfAProgramThatWasKilledIsGone) {
  Listener listener(m_Host);
  OtherProgram other("echo", listener.Number());
  ASSERT_TRUE(listener.Wait(1));
  EXPECT_TRUE(m_Host.Windows().Exists(listener.Sender));
  other.End();
  EXPECT_TRUE(RunUntil(m_Host.EventLoop(), [&] { return !m_Host.Windows().Exists(listener.Sender); }));
  EXPECT_EQ(m_Host.Windows().SendCopyData(listener.hWnd, listener.Sender, {}), SendResult::Gone);
}

TEST_F(Win32WindowsTest, MainFormIsFoundByClassAndTitleWhenThisIsThePlayer) {
  Win32Host companion;
  const WindowHandle hWnd = m_Host.Windows().NewMainWindow();
  EXPECT_EQ(companion.PlayerFinder().FindPlayer(), 0);
  ASSERT_FALSE(m_Host.SingleInstance().AlreadyRunning());
  EXPECT_EQ(companion.PlayerFinder().FindPlayer(), hWnd);
  EXPECT_EQ(FindWindowA("VexMonitor", "frmMonitor"), WindowOf(hWnd));
  EXPECT_FALSE(IsWindowVisible(WindowOf(hWnd)));
  m_Host.Windows().DestroyWindow(hWnd);
  EXPECT_EQ(companion.PlayerFinder().FindPlayer(), 0);
}

TEST_F(Win32WindowsTest, MainFormMadeByTheRunningPlayerIsFoundAtOnce) {
  ASSERT_FALSE(m_Host.SingleInstance().AlreadyRunning());
  const WindowHandle hWnd = m_Host.Windows().NewMainWindow();
  EXPECT_EQ(Win32Host().PlayerFinder().FindPlayer(), hWnd);
}

TEST_F(Win32WindowsTest, ProceduresAreExchangedTheMachinesWay) {
  const WindowHandle hWnd = m_Host.Windows().NewMainWindow();
  const WNDPROC before = ProcedureOf(hWnd);
  const auto former = m_Host.Windows().ExchangeProcedure(
      hWnd, std::make_shared<WindowProcedure>([](const WindowMessage&) { return intptr_t{77}; }));
  EXPECT_NE(ProcedureOf(hWnd), before);
  EXPECT_EQ(SendMessageA(WindowOf(hWnd), WM_APP, 0, 0), 77);
  m_Host.Windows().ExchangeProcedure(hWnd, former);
  EXPECT_EQ(ProcedureOf(hWnd), before);
  EXPECT_EQ(SendMessageA(WindowOf(hWnd), WM_APP, 0, 0), 0);
}

TEST_F(Win32WindowsTest, FormerProcedureHasItsTurnThroughTheHook) {
  const WindowHandle hWnd = m_Host.Windows().NewMainWindow();
  WindowProcedureReference former;
  int32_t lSeen = 0;
  former = m_Host.Windows().ExchangeProcedure(
      hWnd, std::make_shared<WindowProcedure>([&](const WindowMessage& message) {
        ++lSeen;
        return m_Host.Windows().CallProcedure(former, message);
      }));
  SetWindowTextA(WindowOf(hWnd), "a title");
  char szTitle[20] = {};
  GetWindowTextA(WindowOf(hWnd), szTitle, sizeof szTitle);
  EXPECT_EQ(std::string(szTitle), "a title");
  EXPECT_GE(lSeen, 2);
}

TEST_F(Win32WindowsTest, CopyDataWithoutBytesIsEmptyWhateverItsSizeSays) {
  Listener listener(m_Host);
  COPYDATASTRUCT copy{3, 5, nullptr};
  SendMessageA(WindowOf(listener.hWnd), WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&copy));
  copy = {3, 0, &copy};
  SendMessageA(WindowOf(listener.hWnd), WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&copy));
  EXPECT_EQ(listener.Texts, (std::vector<std::string>{"", ""}));
}

TEST_F(Win32WindowsTest, ExceptionOfAProcedureLeavesThroughRunAndTheLoopRunsOn) {
  const WindowHandle hWnd = m_Host.Windows().NewMainWindow();
  m_Host.Windows().ExchangeProcedure(
      hWnd, std::make_shared<WindowProcedure>([](const WindowMessage& message) -> intptr_t {
        if (message.uMsg == WM_APP) throw Error(7, "there", "what");
        return 0;
      }));
  PostMessageA(WindowOf(hWnd), WM_APP, 0, 0);
  EXPECT_THROW(m_Host.EventLoop().Run(), Error);
  const auto quit = m_Host.EventLoop().NewTimer(TimerOrder::Component);
  quit->Tick([&] { m_Host.EventLoop().Quit(); });
  quit->Enabled(true);
  m_Host.EventLoop().Run();
}

TEST_F(Win32WindowsTest, ClosingTheMainFormAsksTheProgramToEndAndLeavesTheWindow) {
  const WindowHandle hWnd = m_Host.Windows().NewMainWindow();
  int32_t lAsked = 0;
  m_Host.OnTerminate([&] { ++lAsked; });
  SendMessageA(WindowOf(hWnd), WM_CLOSE, 0, 0);
  EXPECT_EQ(lAsked, 1);
  EXPECT_TRUE(m_Host.Windows().Exists(hWnd));
}

TEST_F(Win32WindowsTest, LoggingOffAsksTwiceForThereIsNoLater) {
  const WindowHandle hWnd = m_Host.Windows().NewMainWindow();
  int32_t lAsked = 0;
  m_Host.OnTerminate([&] { ++lAsked; });
  EXPECT_EQ(SendMessageA(WindowOf(hWnd), WM_QUERYENDSESSION, 0, 0), TRUE);
  SendMessageA(WindowOf(hWnd), WM_ENDSESSION, FALSE, 0);
  EXPECT_EQ(lAsked, 0);
  SendMessageA(WindowOf(hWnd), WM_ENDSESSION, TRUE, 0);
  EXPECT_EQ(lAsked, 2);
}

TEST_F(Win32WindowsTest, SettingTheClockWakesQuietTimers) {
  const WindowHandle hWnd = m_Host.Windows().NewMainWindow();
  int32_t lTicks = 0;
  const auto timer = m_Host.EventLoop().NewTimer(TimerOrder::tmrShowPlayer);
  timer->Tick([&] {
    if (++lTicks == 1) timer->QuietUntil(Elapsed::max());
  });
  timer->Enabled(true);
  ASSERT_TRUE(RunUntil(m_Host.EventLoop(), [&] { return lTicks == 1; }));
  PostMessageA(WindowOf(hWnd), WM_TIMECHANGE, 0, 0);
  EXPECT_TRUE(RunUntil(m_Host.EventLoop(), [&] { return lTicks > 1; }));
}

}  // namespace
}  // namespace vex::test
