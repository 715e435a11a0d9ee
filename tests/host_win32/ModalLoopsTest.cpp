#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "tests/host_win32/WindowsMachine.h"

namespace vex::test {
namespace {

constexpr int EnoughTicks = 20;

/// A window that people see and hold: it writes down when the machine's loop around it begins and ends.
class HeldWindow {
 public:
  HeldWindow() {
    WNDCLASSEXA own{};
    own.cbSize = sizeof own;
    own.lpfnWndProc = &HeldWindow::Procedure;
    own.hInstance = GetModuleHandleA(nullptr);
    own.lpszClassName = "VexMonitorTestsHeld";
    RegisterClassExA(&own);
    m_Window = CreateWindowExA(0, own.lpszClassName, "held", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300, 200,
                               nullptr, nullptr, own.hInstance, nullptr);
    SetWindowLongPtrA(m_Window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  }
  ~HeldWindow() { Destroy(); }
  HeldWindow(const HeldWindow&) = delete;
  HeldWindow& operator=(const HeldWindow&) = delete;

  /// Takes hold of its corner, or opens its menu; what is to happen comes through the messages.
  void TakeCorner() { PostMessageA(m_Window, WM_SYSCOMMAND, SC_SIZE | 8, 0); }
  void OpenMenu() { PostMessageA(m_Window, WM_SYSCOMMAND, SC_KEYMENU, ' '); }
  void LetGo() { PostMessageA(m_Window, WM_KEYDOWN, VK_ESCAPE, 0); }
  void CloseMenu() { EndMenu(); }
  void Destroy() {
    if (m_Window != nullptr) DestroyWindow(std::exchange(m_Window, nullptr));
  }

  bool Held = false;
  int Begun = 0;

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* const self = reinterpret_cast<HeldWindow*>(GetWindowLongPtrA(window, GWLP_USERDATA));
    if (self != nullptr) {
      if (message == WM_ENTERSIZEMOVE || message == WM_ENTERMENULOOP) self->Held = ++self->Begun > 0;
      if (message == WM_EXITSIZEMOVE || message == WM_EXITMENULOOP) self->Held = false;
    }
    return DefWindowProcA(window, message, wParam, lParam);
  }

  HWND m_Window = nullptr;
};

class ModalLoopsTest : public testing::Test {
 protected:
  ModalLoopsTest() {
    PersonIsAway() = true;
    m_Limit->Tick([this] {
      if (++m_Ticks < 10000) return;
      ADD_FAILURE() << "nothing comes of it";
      Loop().Quit();
    });
    m_Limit->Enabled(true);
  }
  ~ModalLoopsTest() override { PersonIsAway() = false; }

  Win32EventLoop& Loop() { return m_Host.EventLoop(); }
  std::unique_ptr<Timer> EveryMillisecond(std::function<void()> tick,
                                          TimerOrder order = TimerOrder::Component) {
    auto timer = Loop().NewTimer(order);
    timer->Tick(std::move(tick));
    timer->Enabled(true);
    return timer;
  }
  /// A message box with that title among this program's, or null.
  static HWND Box(const char* szTitle) { return FindWindowA("#32770", szTitle); }
  static void PressOk(const char* szTitle) { PostMessageA(Box(szTitle), WM_COMMAND, IDOK, 0); }

  Win32Host m_Host;

 private:
  std::unique_ptr<Timer> m_Limit = m_Host.EventLoop().NewTimer(TimerOrder::Component);
  int m_Ticks = 0;
};

TEST_F(ModalLoopsTest, TimersTickWhileAWindowIsHeldByItsCorner) {
  HeldWindow window;
  int lHeldTicks = 0;
  const auto timer = EveryMillisecond([&] {
    if (window.Begun > 0 && !window.Held) Loop().Quit();
    if (window.Held && ++lHeldTicks == EnoughTicks) window.LetGo();
  });
  window.TakeCorner();
  Loop().Run();
  EXPECT_EQ(window.Begun, 1);
  EXPECT_GE(lHeldTicks, EnoughTicks);
}

TEST_F(ModalLoopsTest, TimersTickWhileAMenuIsOpen) {
  HeldWindow window;
  int lHeldTicks = 0;
  const auto timer = EveryMillisecond([&] {
    if (window.Begun > 0 && !window.Held) Loop().Quit();
    if (window.Held && ++lHeldTicks == EnoughTicks) window.CloseMenu();
  });
  window.OpenMenu();
  Loop().Run();
  EXPECT_EQ(window.Begun, 1);
  EXPECT_GE(lHeldTicks, EnoughTicks);
}

TEST_F(ModalLoopsTest, TimersTickInTheirOrderWhileAMessageBoxStands) {
  std::vector<int> order;
  int lTicks = 0;
  const auto component = EveryMillisecond([&] { order.push_back(2); });
  const auto form = EveryMillisecond(
      [&] {
        order.push_back(1);
        if (Box("order") != nullptr && ++lTicks == EnoughTicks) PressOk("order");
      },
      TimerOrder::tmNextAction);
  m_Host.MessageBoxes().Show("text", "order");
  EXPECT_GE(lTicks, EnoughTicks);
  ASSERT_FALSE(order.empty());
  for (size_t i = 0; i < order.size(); ++i) EXPECT_EQ(order[i], i % 2 == 0 ? 1 : 2) << i;
}

TEST_F(ModalLoopsTest, TickThatShowsTheBoxIsNotEnteredAgainAndTheOthersGoOn) {
  bool boolInside = false;
  bool boolEntered = false;
  int lOthers = 0;
  const auto other = EveryMillisecond([&] {
    if (Box("inside") != nullptr && ++lOthers == EnoughTicks) PressOk("inside");
  });
  const auto showing = EveryMillisecond([&] {
    boolEntered = boolEntered || boolInside;
    boolInside = true;
    m_Host.MessageBoxes().Show("text", "inside");
    boolInside = false;
    Loop().Quit();
  });
  Loop().Run();
  EXPECT_FALSE(boolEntered);
  EXPECT_GE(lOthers, EnoughTicks);
}

TEST_F(ModalLoopsTest, BoxWithinABoxLeavesTheOuterOneItsTicks) {
  int lAfterInner = 0;
  bool boolInnerShown = false;
  bool boolInnerGone = false;
  const auto presser = EveryMillisecond([&] {
    if (Box("inner") != nullptr) PressOk("inner");
    if (boolInnerGone && ++lAfterInner == EnoughTicks) PressOk("outer");
  });
  const auto showing = EveryMillisecond([&] {
    if (std::exchange(boolInnerShown, true)) return;
    m_Host.MessageBoxes().Show("text", "inner");
    boolInnerGone = true;
  });
  m_Host.MessageBoxes().Show("text", "outer");
  EXPECT_GE(lAfterInner, EnoughTicks);
}

TEST_F(ModalLoopsTest, HandlerThatPumpsWhileAWindowIsHeldDoesNotStopTheRest) {
  HeldWindow window;
  int lHeldTicks = 0;
  const auto pumping = EveryMillisecond([&] { Loop().Pump(); });
  const auto timer = EveryMillisecond([&] {
    if (window.Begun > 0 && !window.Held) Loop().Quit();
    if (window.Held && ++lHeldTicks == EnoughTicks) window.LetGo();
  });
  window.TakeCorner();
  Loop().Run();
  EXPECT_GE(lHeldTicks, EnoughTicks);
}

TEST_F(ModalLoopsTest, SignalsAndHandlesAreServedWhileAMessageBoxStands) {
  const Handle event(CreateEventA(nullptr, FALSE, FALSE, nullptr));
  const auto watch = Loop().WatchReadable(static_cast<int64_t>(reinterpret_cast<intptr_t>(event.Get())),
                                          [&] { PressOk("signals"); });
  const auto signal = Loop().NewSignal([&] { SetEvent(event.Get()); });
  const auto timer = EveryMillisecond([&] {
    if (Box("signals") != nullptr) signal->Raise();
  });
  m_Host.MessageBoxes().Show("text", "signals");
  EXPECT_EQ(Box("signals"), nullptr);
}

TEST_F(ModalLoopsTest, QuitEndsTheMessageBoxAndTheNextRunIsWhole) {
  const auto timer = EveryMillisecond([&] {
    if (Box("quit") != nullptr) Loop().Quit();
  });
  bool boolBack = false;
  const auto showing = EveryMillisecond([&] {
    m_Host.MessageBoxes().Show("text", "quit");
    boolBack = true;
  });
  Loop().Run();
  EXPECT_TRUE(boolBack);
  showing->Enabled(false);
  int lTicks = 0;
  EXPECT_TRUE(RunUntil(Loop(), [&] { return ++lTicks > EnoughTicks; })) << "a stale end was left behind";
}

TEST_F(ModalLoopsTest, QuitEndsTheHoldOfAWindowAndTheNextRunIsWhole) {
  HeldWindow window;
  const auto timer = EveryMillisecond([&] {
    if (window.Held) Loop().Quit();
  });
  window.TakeCorner();
  Loop().Run();
  EXPECT_EQ(window.Begun, 1);
  timer->Enabled(false);
  int lTicks = 0;
  EXPECT_TRUE(RunUntil(Loop(), [&] { return ++lTicks > EnoughTicks; })) << "a stale end was left behind";
}

TEST_F(ModalLoopsTest, WhatATickThrowsEndsTheMessageBoxAndLeavesByTheLoop) {
  const auto timer = EveryMillisecond([&] {
    if (Box("thrown") != nullptr) throw std::runtime_error("thrown");
  });
  const auto showing = EveryMillisecond([&] { m_Host.MessageBoxes().Show("text", "thrown"); });
  EXPECT_THROW(Loop().Run(), std::runtime_error);
}

TEST_F(ModalLoopsTest, HeldWindowThatWentLeavesNoTurnsBehind) {
  HeldWindow window;
  const auto timer = EveryMillisecond([&] {
    if (!window.Held) return;
    window.Destroy();
    Loop().Quit();
  });
  window.TakeCorner();
  Loop().Run();
  ASSERT_EQ(window.Begun, 1);
  // Messages of this thread are handled by hand now, in no loop: no turn may come of them.
  timer->Enabled(false);
  int lTicks = 0;
  const auto none = EveryMillisecond([&] { ++lTicks; });
  Loop().Pump();
  lTicks = 0;
  MSG message{};
  for (int i = 0; i < EnoughTicks; ++i) {
    Sleep(1);
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) DispatchMessageA(&message);
  }
  EXPECT_EQ(lTicks, 0);
}

}  // namespace
}  // namespace vex::test
