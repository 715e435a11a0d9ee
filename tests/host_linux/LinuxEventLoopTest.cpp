#include "host/linux/LinuxEventLoop.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/timex.h>

#include <thread>

#include "basic/Error.h"
#include "tests/host_linux/OtherProgram.h"

namespace vex::test {
namespace {

using std::chrono::milliseconds;

class LinuxEventLoopTest : public testing::Test {
 protected:
  [[nodiscard]] std::unique_ptr<Timer> NewTimer(int32_t lInterval, std::function<void()> handler) {
    auto timer = m_Loop.NewTimer(TimerOrder::Component);
    timer->Interval(lInterval);
    timer->Tick(std::move(handler));
    return timer;
  }
  void SetUp() override {
    ASSERT_EQ(pipe2(m_Ends, O_CLOEXEC | O_NONBLOCK), 0);
    m_Read = Descriptor(m_Ends[0]);
    m_Write = Descriptor(m_Ends[1]);
  }

  LinuxEventLoop m_Loop;
  int m_Ends[2] = {-1, -1};
  Descriptor m_Read;
  Descriptor m_Write;
};

TEST_F(LinuxEventLoopTest, WatchRunsWhileItsHandleCanBeRead) {
  int runs = 0;
  const auto watch = m_Loop.WatchReadable(m_Read.Get(), [&] { ++runs; });
  m_Loop.Pump();
  EXPECT_EQ(runs, 0);
  ASSERT_EQ(write(m_Write.Get(), "x", 1), 1);
  m_Loop.Pump();
  m_Loop.Pump();
  EXPECT_EQ(runs, 2);
}

TEST_F(LinuxEventLoopTest, DestroyedWatchDoesNotRun) {
  int runs = 0;
  auto watch = m_Loop.WatchReadable(m_Read.Get(), [&] { ++runs; });
  ASSERT_EQ(write(m_Write.Get(), "x", 1), 1);
  watch.reset();
  m_Loop.Pump();
  EXPECT_EQ(runs, 0);
}

TEST_F(LinuxEventLoopTest, WatchMayBeDestroyedByItsHandlerOrByAnothers) {
  int runs = 0;
  std::unique_ptr<Watch> readable;
  std::unique_ptr<Watch> writable;
  const auto destroyBoth = [&] {
    readable.reset();
    writable.reset();
    ++runs;
  };
  readable = m_Loop.WatchReadable(m_Read.Get(), destroyBoth);
  writable = m_Loop.WatchWritable(m_Write.Get(), destroyBoth);
  ASSERT_EQ(write(m_Write.Get(), "x", 1), 1);
  m_Loop.Pump();
  m_Loop.Pump();
  EXPECT_EQ(runs, 1);
}

TEST_F(LinuxEventLoopTest, HandlerThatPumpsIsNotRunInsideItself) {
  int depth = 0;
  int deepest = 0;
  const auto watch = m_Loop.WatchReadable(m_Read.Get(), [&] {
    deepest = std::max(deepest, ++depth);
    m_Loop.Pump();
    --depth;
  });
  ASSERT_EQ(write(m_Write.Get(), "x", 1), 1);
  m_Loop.Pump();
  EXPECT_EQ(deepest, 1);
}

TEST_F(LinuxEventLoopTest, HandleThatCannotBeWatchedIsAnError) {
  try {
    (void)m_Loop.WatchReadable(-1, [] {});
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Number, EBADF);
    EXPECT_EQ(error.Source, "EventLoop.Watch");
  }
}

TEST_F(LinuxEventLoopTest, BusyHandleDoesNotShutTimersOut) {
  int ticks = 0;
  ASSERT_EQ(write(m_Write.Get(), "x", 1), 1);
  const auto busy = m_Loop.WatchReadable(m_Read.Get(), [] {});
  const auto timer = NewTimer(1, [&] {
    if (++ticks == 3) m_Loop.Quit();
  });
  timer->Enabled(true);
  m_Loop.Run();
  EXPECT_EQ(ticks, 3);
}

TEST_F(LinuxEventLoopTest, BusyTimerDoesNotShutHandlesOut) {
  const auto timer = NewTimer(1, [] { std::this_thread::sleep_for(milliseconds(3)); });
  timer->Enabled(true);
  bool boolRead = false;
  const auto watch = m_Loop.WatchReadable(m_Read.Get(), [&] {
    boolRead = true;
    m_Loop.Quit();
  });
  ASSERT_EQ(write(m_Write.Get(), "x", 1), 1);
  m_Loop.Run();
  EXPECT_TRUE(boolRead);
}

TEST_F(LinuxEventLoopTest, ExceptionThatEscapesAHandlerLeavesRunAndTheLoopGoesOn) {
  int ticks = 0;
  const auto timer = NewTimer(1, [&] {
    if (++ticks == 1) throw PlatformError(ErrorOverflow);
    m_Loop.Quit();
  });
  timer->Enabled(true);
  EXPECT_THROW(m_Loop.Run(), Error);
  m_Loop.Run();
  EXPECT_EQ(ticks, 2);
}

TEST_F(LinuxEventLoopTest, IntervalBelowOneIsRefused) {
  const auto timer = NewTimer(5, [] {});
  EXPECT_THROW(timer->Interval(0), Error);
  EXPECT_EQ(timer->Interval(), 5);
}

TEST_F(LinuxEventLoopTest, NewTimerIsDisabledWithIntervalOne) {
  const auto timer = m_Loop.NewTimer(TimerOrder::tmrShowPlayer);
  EXPECT_FALSE(timer->Enabled());
  EXPECT_EQ(timer->Interval(), 1);
}

TEST_F(LinuxEventLoopTest, TimerWithoutATickDoesNoHarm) {
  const auto empty = m_Loop.NewTimer(TimerOrder::tmCIODelay);
  empty->Enabled(true);
  const auto timer = NewTimer(3, [&] { m_Loop.Quit(); });
  timer->Enabled(true);
  m_Loop.Run();
}

/// While nothing is due the loop sleeps through, however often timers are due in principle.
TEST_F(LinuxEventLoopTest, QuietTimersCauseNoTurns) {
  std::unique_ptr<Timer> quiet;
  quiet = NewTimer(1, [&] { quiet->QuietUntil(Elapsed::max()); });
  quiet->Enabled(true);
  const auto disabled = NewTimer(1, [] {});
  const auto end = NewTimer(60, [&] { m_Loop.Quit(); });
  end->Enabled(true);
  const uint64_t before = m_Loop.Turns();
  m_Loop.Run();
  EXPECT_LE(m_Loop.Turns() - before, 4U);
}

TEST_F(LinuxEventLoopTest, TimersOfOneMillisecondTickOutOfOneTurn) {
  std::vector<uint64_t> turns;
  std::vector<std::unique_ptr<Timer>> timers;
  for (int i = 0; i < 5; ++i) {
    timers.push_back(NewTimer(20, [&] {
      turns.push_back(m_Loop.Turns());
      if (turns.size() == 5) m_Loop.Quit();
    }));
  }
  // Enabled within one millisecond, unless the machine is held up just here: then once more.
  Elapsed began{};
  do {
    for (auto& timer : timers) timer->Enabled(false);
    began = m_Loop.Now();
    for (auto& timer : timers) timer->Enabled(true);
  } while (std::chrono::ceil<milliseconds>(began) != std::chrono::ceil<milliseconds>(m_Loop.Now()));
  m_Loop.Run();
  EXPECT_EQ(turns, std::vector<uint64_t>(5, turns.at(0)));
}

TEST_F(LinuxEventLoopTest, SettingTheClockWakesQuietTimers) {
  int ticks = 0;
  std::unique_ptr<Timer> timer;
  timer = NewTimer(1, [&] {
    ++ticks;
    timer->QuietUntil(Elapsed::max());
  });
  timer->Enabled(true);
  ASSERT_TRUE(RunUntil(m_Loop, [&] { return ticks == 1; }));
  m_Loop.ClockWasSet();
  EXPECT_TRUE(RunUntil(m_Loop, [&] { return ticks == 2; }));
}

/// Moves the wall clock by one nanosecond, there and back; false where that is not allowed.
bool SetClock(bool boolForward) {
  timex by{};
  by.modes = ADJ_SETOFFSET | ADJ_NANO;
  by.time.tv_sec = boolForward ? 0 : -1;
  by.time.tv_usec = boolForward ? 1 : 999999999;
  return adjtimex(&by) >= 0;
}

TEST_F(LinuxEventLoopTest, KernelTellsWhenTheClockIsSet) {
  int ticks = 0;
  std::unique_ptr<Timer> timer;
  timer = NewTimer(1, [&] {
    ++ticks;
    timer->QuietUntil(Elapsed::max());
  });
  timer->Enabled(true);
  for (int setting = 1; setting <= 4; ++setting) {
    ASSERT_TRUE(RunUntil(m_Loop, [&] { return ticks == setting; }));
    if (!SetClock(setting % 2 == 1)) GTEST_SKIP() << "only root can set the clock";
  }
  EXPECT_TRUE(RunUntil(m_Loop, [&] { return ticks == 5; }));
}

TEST_F(LinuxEventLoopTest, TerminationInterruptAndHangUpRunTheHandler) {
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    OtherProgram other([&](const auto& tell) {
      signal(SIGINT, SIG_IGN);  // as a shell starts a background program
      LinuxEventLoop loop;
      loop.OnTerminate([&] {
        tell("terminated");
        loop.Quit();
      });
      tell("ready");
      loop.Run();
      tell("done");
    });
    ASSERT_EQ(other.Line(), "ready");
    other.Raise(number);
    EXPECT_EQ(other.Line(), "terminated");
    EXPECT_EQ(other.Line(), "done");
  }
}

TEST_F(LinuxEventLoopTest, HangUpThatIsIgnoredStaysSo) {
  OtherProgram other([&](const auto& tell) {
    signal(SIGHUP, SIG_IGN);
    LinuxEventLoop loop;
    loop.OnTerminate([&] { tell("terminated"); });
    raise(SIGHUP);
    loop.Pump();
    tell("done");
  });
  EXPECT_EQ(other.Line(), "done");
}

TEST_F(LinuxEventLoopTest, SharpTimersAreForThisThreadAlone) {
  OtherProgram other([&](const auto& tell) {
    LinuxEventLoop loop;
    const bool boolGranted = loop.TrySharpTimers();
    tell(boolGranted ? "granted" : "refused");
    tell(sched_getscheduler(0) == (boolGranted ? SCHED_FIFO | SCHED_RESET_ON_FORK : SCHED_OTHER) ? "as told"
                                                                                                 : "not");
    int policy = -1;
    std::thread([&] { policy = sched_getscheduler(0); }).join();
    tell(policy == SCHED_OTHER ? "others not" : "others too");
  });
  EXPECT_NE(other.Line(), "");
  EXPECT_EQ(other.Line(), "as told");
  EXPECT_EQ(other.Line(), "others not");
}

TEST_F(LinuxEventLoopTest, NoDescriptorsLeftIsAnError) {
  OtherProgram other([&](const auto& tell) {
    const rlimit none{static_cast<rlim_t>(dup(0)), 1024};
    setrlimit(RLIMIT_NOFILE, &none);
    try {
      const LinuxEventLoop loop;
      tell("made");
    } catch (const Error& error) {
      tell(error.Source + " " + std::to_string(error.Number));
    }
  });
  EXPECT_EQ(other.Line(), "EventLoop " + std::to_string(EMFILE));
}

}  // namespace
}  // namespace vex::test
