#include "host/win32/WaitableTimer.h"

#include <vector>

#include "basic/Error.h"
#include "tests/host_win32/WindowsMachine.h"

namespace vex::test {
namespace {

/// A machine's answers, and what it has been asked.
struct Machine {
  bool HasSharpTimers = false;
  bool HasTimers = true;
  bool GrantsTicks = true;
  std::vector<DWORD> Made;
  std::vector<UINT> Begun;
  std::vector<UINT> Ended;
};
Machine s_Machine;

HANDLE WINAPI Create(LPSECURITY_ATTRIBUTES attributes, LPCWSTR name, DWORD flags, DWORD access) {
  s_Machine.Made.push_back(flags);
  const bool boolRefused = (flags & WaitableTimer::Sharp) != 0 && !s_Machine.HasSharpTimers;
  if (!s_Machine.HasTimers || boolRefused) {
    SetLastError(ERROR_INVALID_PARAMETER);  // as every system before Windows 10 1803 does
    return nullptr;
  }
  return CreateWaitableTimerExW(attributes, name, 0, access);
}

UINT WINAPI BeginPeriod(UINT milliseconds) {
  s_Machine.Begun.push_back(milliseconds);
  constexpr UINT cannot = 97;  // TIMERR_NOCANDO
  return s_Machine.GrantsTicks ? 0 : cannot;
}

UINT WINAPI EndPeriod(UINT milliseconds) {
  s_Machine.Ended.push_back(milliseconds);
  return 0;
}

using Periods = std::vector<UINT>;
using Kinds = std::vector<DWORD>;

class WaitableTimerTest : public testing::Test {
 protected:
  WaitableTimerTest() { s_Machine = {}; }
  const WaitableTimer::Calls m_Calls{Create, BeginPeriod, EndPeriod};
};

TEST_F(WaitableTimerTest, AnOlderSystemIsAskedForItsFinestTickWhileTheTimerLives) {
  {
    const WaitableTimer timer(m_Calls);
    EXPECT_EQ(s_Machine.Made, (Kinds{WaitableTimer::Sharp, 0}));
    EXPECT_EQ(s_Machine.Begun, Periods{1});
    EXPECT_EQ(s_Machine.Ended, Periods());
  }
  EXPECT_EQ(s_Machine.Ended, Periods{1});
}

TEST_F(WaitableTimerTest, AFineTickThatWasNotGrantedIsNotGivenBack) {
  s_Machine.GrantsTicks = false;
  { const WaitableTimer timer(m_Calls); }
  EXPECT_EQ(s_Machine.Begun, Periods{1});
  EXPECT_EQ(s_Machine.Ended, Periods());
}

TEST_F(WaitableTimerTest, ASharpTimerNeedsNoFineTick) {
  s_Machine.HasSharpTimers = true;
  { const WaitableTimer timer(m_Calls); }
  EXPECT_EQ(s_Machine.Made, Kinds{WaitableTimer::Sharp});
  EXPECT_EQ(s_Machine.Begun, Periods());
  EXPECT_EQ(s_Machine.Ended, Periods());
}

TEST_F(WaitableTimerTest, NoTimerAtAllIsAnErrorAndLeavesTheTickAlone) {
  s_Machine.HasTimers = false;
  EXPECT_THROW(Win32EventLoop loop(m_Calls), Error);
  EXPECT_EQ(s_Machine.Begun, Periods());
  EXPECT_EQ(s_Machine.Ended, Periods());
}

TEST_F(WaitableTimerTest, TimersFallDueOnAnOlderSystem) {
  {
    Win32EventLoop loop(m_Calls);
    const Win32Clock clock;
    const Elapsed begin = clock.Elapsed();
    constexpr int wanted = 20;
    int fast = 0;
    int slow = 0;
    const auto fastTimer = loop.NewTimer(TimerOrder::tmrShowPlayer);
    const auto slowTimer = loop.NewTimer(TimerOrder::tmNextAction);
    slowTimer->Interval(5);
    fastTimer->Tick([&] { ++fast; });
    slowTimer->Tick([&] {
      if (++slow == wanted / 5) loop.Quit();
    });
    fastTimer->Enabled(true);
    slowTimer->Enabled(true);
    loop.Run();
    EXPECT_EQ(slow, wanted / 5);
    EXPECT_GT(fast, 0);
    EXPECT_LE(fast, (clock.Elapsed() - begin) / std::chrono::milliseconds(1) + 1);  // never before their time
    EXPECT_GE(clock.Elapsed() - begin, std::chrono::milliseconds(wanted - 1));
  }
  EXPECT_EQ(s_Machine.Begun, Periods{1});
  EXPECT_EQ(s_Machine.Ended, Periods{1});
}

TEST_F(WaitableTimerTest, ATimerThatIsCancelledIsNotSignalled) {
  WaitableTimer timer(m_Calls);
  timer.Set(1);
  EXPECT_EQ(WaitForSingleObject(timer.Get(), INFINITE), WAIT_OBJECT_0);
  timer.Set(100000);
  timer.Cancel();
  EXPECT_EQ(WaitForSingleObject(timer.Get(), 20), WAIT_TIMEOUT);
}

}  // namespace
}  // namespace vex::test
