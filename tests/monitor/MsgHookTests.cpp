#include "monitor/MsgHook.h"

#include <gtest/gtest.h>

#include "basic/Error.h"
#include "host/virtual/VirtualWindows.h"
#include "monitor/Msg.h"

namespace vex {
namespace {

constexpr uint32_t SomeMessage = 1025;
constexpr intptr_t FormersResult = 42;

class MsgHookTest : public testing::Test {
 protected:
  MsgHookTest() : m_Window(m_Windows.NewMainWindow()) {
    m_Windows.ExchangeProcedure(
        m_Window, std::make_shared<WindowProcedure>([this](const WindowMessage& message) -> intptr_t {
          m_Seen += "former";
          m_Last = message;
          return FormersResult;
        }));
    m_Hook.BeforeMessage = [this](const WindowMessage&, intptr_t&, bool&) { m_Seen += "before "; };
    m_Hook.AfterMessage = [this](const WindowMessage&, intptr_t result) {
      m_Seen += " after";
      m_AfterResult = result;
    };
  }

  intptr_t Send(WindowHandle hWnd) { return m_Windows.Send({hWnd, SomeMessage, 3, 4, nullptr}); }

  VirtualWindows m_Windows;
  WindowHandle m_Window;
  HookRecords m_Records{m_Windows};
  MsgHook m_Hook{m_Records};
  std::string m_Seen;
  WindowMessage m_Last;
  intptr_t m_AfterResult = 0;
};

TEST_F(MsgHookTest, IsNewEnabledAndWithoutWindow) {
  EXPECT_TRUE(m_Hook.Enabled());
  EXPECT_EQ(m_Hook.hWnd(), 0);
  Send(m_Window);
  EXPECT_EQ(m_Seen, "former");
}

TEST_F(MsgHookTest, SeesAMessageBeforeAndAfterTheFormerProcedure) {
  m_Hook.StartSubclass(m_Window);
  EXPECT_EQ(m_Hook.hWnd(), m_Window);
  EXPECT_EQ(Send(m_Window), FormersResult);
  EXPECT_EQ(m_Seen, "before former after");
  EXPECT_EQ(m_AfterResult, FormersResult);
  EXPECT_EQ(m_Last.uMsg, SomeMessage);
  EXPECT_EQ(m_Last.wParam, 3U);
  EXPECT_EQ(m_Last.lParam, 4);
}

TEST_F(MsgHookTest, AHandledMessageNeverReachesTheFormerProcedure) {
  m_Hook.StartSubclass(m_Window);
  m_Hook.BeforeMessage = [](const WindowMessage&, intptr_t& result, bool& boolHandled) {
    result = 7;
    boolHandled = true;
  };
  EXPECT_EQ(Send(m_Window), 7);
  EXPECT_EQ(m_Seen, "");
}

TEST_F(MsgHookTest, AResultWithoutHandledIsNotTaken) {
  m_Hook.StartSubclass(m_Window);
  m_Hook.BeforeMessage = [](const WindowMessage&, intptr_t& result, bool&) { result = 7; };
  EXPECT_EQ(Send(m_Window), FormersResult);
}

TEST_F(MsgHookTest, WhenNotEnabledMessagesPassUnseen) {
  m_Hook.StartSubclass(m_Window);
  m_Hook.Enabled(false);
  EXPECT_FALSE(m_Hook.Enabled());
  EXPECT_EQ(Send(m_Window), FormersResult);
  EXPECT_EQ(m_Seen, "former");
  m_Hook.Enabled(true);
  Send(m_Window);
  EXPECT_EQ(m_Seen, "formerbefore former after");
}

TEST_F(MsgHookTest, NeedsNoHandlers) {
  m_Hook.BeforeMessage = nullptr;
  m_Hook.AfterMessage = nullptr;
  m_Hook.StartSubclass(m_Window);
  EXPECT_EQ(Send(m_Window), FormersResult);
}

TEST_F(MsgHookTest, StopSubclassGivesTheWindowItsFormerProcedureBack) {
  m_Hook.StartSubclass(m_Window);
  m_Hook.StopSubclass();
  EXPECT_EQ(m_Hook.hWnd(), 0);
  EXPECT_EQ(m_Records.Count(), 0);
  Send(m_Window);
  EXPECT_EQ(m_Seen, "former");
  m_Hook.StopSubclass();
  EXPECT_EQ(m_Records.Count(), 0);
}

TEST_F(MsgHookTest, StartSubclassOfZeroUnhooksAndHooksNothing) {
  m_Hook.StartSubclass(m_Window);
  m_Hook.StartSubclass(0);
  EXPECT_EQ(m_Hook.hWnd(), 0);
  EXPECT_EQ(m_Records.Count(), 0);
  Send(m_Window);
  EXPECT_EQ(m_Seen, "former");
}

TEST_F(MsgHookTest, AHandleOfADestroyedWindowIsInvalid) {
  const WindowHandle destroyed = m_Windows.NewWindow();
  m_Windows.DestroyWindow(destroyed);
  m_Hook.StartSubclass(m_Window);
  try {
    m_Hook.StartSubclass(destroyed);
    FAIL() << "hooked";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number, 1001);
    EXPECT_EQ(error.Description, "Invalid window handle");
  }
  EXPECT_EQ(m_Hook.hWnd(), m_Window);
}

TEST_F(MsgHookTest, StartingAgainMovesToTheOtherWindow) {
  const WindowHandle other = m_Windows.NewWindow();
  m_Hook.StartSubclass(m_Window);
  m_Hook.StartSubclass(other);
  EXPECT_EQ(m_Records.Count(), 1);
  Send(m_Window);
  EXPECT_EQ(m_Seen, "former");
  m_Seen.clear();
  Send(other);
  EXPECT_EQ(m_Seen, "before  after");
}

TEST_F(MsgHookTest, EachWindowHasItsOwnHook) {
  const WindowHandle other = m_Windows.NewWindow();
  MsgHook otherHook(m_Records);
  otherHook.AfterMessage = [this](const WindowMessage&, intptr_t) { m_Seen += "other"; };
  m_Hook.StartSubclass(m_Window);
  otherHook.StartSubclass(other);
  EXPECT_EQ(m_Records.Count(), 2);
  Send(other);
  EXPECT_EQ(m_Seen, "other");
  m_Hook.StopSubclass();
  Send(other);
  EXPECT_EQ(m_Seen, "otherother");
}

TEST_F(MsgHookTest, AHookThatIsDestroyedUnhooks) {
  {
    MsgHook hook(m_Records);
    hook.StartSubclass(m_Window);
    EXPECT_EQ(m_Records.Count(), 1);
  }
  EXPECT_EQ(m_Records.Count(), 0);
  EXPECT_EQ(Send(m_Window), FormersResult);
}

TEST_F(MsgHookTest, AHandlerMayUnhookItsWindow) {
  m_Hook.StartSubclass(m_Window);
  m_Hook.BeforeMessage = [this](const WindowMessage&, intptr_t&, bool&) { m_Hook.StopSubclass(); };
  EXPECT_EQ(Send(m_Window), FormersResult);
  EXPECT_EQ(m_Seen, "former");
}

TEST_F(MsgHookTest, AHandlerMayDestroyItsHook) {
  auto hook = std::make_unique<MsgHook>(m_Records);
  hook->StartSubclass(m_Window);
  hook->AfterMessage = [&](const WindowMessage&, intptr_t) { hook.reset(); };
  EXPECT_EQ(Send(m_Window), FormersResult);
  EXPECT_EQ(m_Records.Count(), 0);
}

TEST_F(MsgHookTest, AWindowThatWasDestroyedIsJustForgotten) {
  m_Hook.StartSubclass(m_Window);
  m_Windows.DestroyWindow(m_Window);
  m_Hook.StopSubclass();
  EXPECT_EQ(m_Records.Count(), 0);
}

}  // namespace
}  // namespace vex
