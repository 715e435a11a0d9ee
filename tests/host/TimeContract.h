#pragma once

#include <thread>
#include <vector>

#include "tests/host/HostContract.h"

namespace vex::test {

// The clock.

TEST_P(HostContract, NowAndSecondsOfDayTellTheSameTime) {
  DateTime dtBefore;
  double seconds = 0;
  do {
    dtBefore = Clock().Now();
    seconds = Clock().SecondsOfDay();
  } while (Clock().Now() != dtBefore);
  EXPECT_EQ(static_cast<int64_t>(seconds), dtBefore.SecondsSince(dtBefore.DatePart()));
}

TEST_P(HostContract, ShortTimeIsTheHourAndMinuteOfNow) {
  DateTime dtBefore;
  std::string szTime;
  do {
    dtBefore = Clock().Now();
    szTime = Clock().ShortTime();
  } while (Clock().Now() != dtBefore);
  EXPECT_EQ(szTime, FormatDateTime(dtBefore).substr(11, 5));
}

TEST_P(HostContract, ElapsedTimeNeverGoesBackAndPassesWithTicks) {
  const Elapsed before = Clock().Elapsed();
  RunFor(5);
  EXPECT_GE(Clock().Elapsed() - before, Milliseconds(5));
}

// Timers.

TEST_P(HostContract, NewTimerIsDisabledWithIntervalOne) {
  auto timer = Loop().NewTimer(TimerOrder::tmrShowPlayer);
  EXPECT_FALSE(timer->Enabled());
  EXPECT_EQ(timer->Interval(), 1);
}

TEST_P(HostContract, EnabledAndIntervalReadBack) {
  auto timer = NewTimer(4000, [] {});
  EXPECT_EQ(timer->Interval(), 4000);
  timer->Enabled(true);
  EXPECT_TRUE(timer->Enabled());
  timer->Enabled(false);
  EXPECT_FALSE(timer->Enabled());
}

TEST_P(HostContract, EnabledTimerTicksAgainAndAgain) {
  int32_t lTicks = 0;
  auto timer = NewTimer(2, [&] { ++lTicks; });
  timer->Enabled(true);
  EXPECT_TRUE(RunUntil([&] { return lTicks >= 3; }));
}

TEST_P(HostContract, TimerWithoutHandlerDoesNoHarm) {
  auto timer = Loop().NewTimer(TimerOrder::Component);
  timer->Enabled(true);
  RunFor(5);
  EXPECT_TRUE(timer->Enabled());
}

TEST_P(HostContract, TickNeverComesBeforeItsTime) {
  const Elapsed enabled = Clock().Elapsed();
  std::vector<Elapsed> ticks;
  auto timer = NewTimer(3, [&] { ticks.push_back(Clock().Elapsed()); });
  timer->Enabled(true);
  ASSERT_TRUE(RunUntil([&] { return ticks.size() >= 4; }));
  for (size_t i = 0; i < 4; ++i) EXPECT_GE(ticks[i] - enabled, Milliseconds(3 * (i + 1)));
}

TEST_P(HostContract, TimerThatDisablesItselfInItsTickTicksOnce) {
  int32_t lTicks = 0;
  std::unique_ptr<Timer> timer;
  timer = NewTimer(1, [&] {
    ++lTicks;
    timer->Enabled(false);
  });
  timer->Enabled(true);
  RunFor(20);
  EXPECT_EQ(lTicks, 1);
}

TEST_P(HostContract, TimerDisabledBeforeItsTickDoesNotTick) {
  int32_t lTicks = 0;
  auto timer = NewTimer(5, [&] { ++lTicks; });
  timer->Enabled(true);
  timer->Enabled(false);
  RunFor(20);
  EXPECT_EQ(lTicks, 0);
}

TEST_P(HostContract, TimerDisabledAndEnabledInItsTickTicksOn) {
  int32_t lTicks = 0;
  std::unique_ptr<Timer> timer;
  timer = NewTimer(2, [&] {
    timer->Enabled(false);
    ++lTicks;
    timer->Enabled(true);
  });
  timer->Enabled(true);
  EXPECT_TRUE(RunUntil([&] { return lTicks >= 3; }));
}

TEST_P(HostContract, TimerDestroyedInItsTickIsGone) {
  int32_t lTicks = 0;
  std::unique_ptr<Timer> timer;
  timer = NewTimer(1, [&lTicks, &timer] {
    timer.reset();
    ++lTicks;  // what the handler holds stays until it returns
  });
  timer->Enabled(true);
  RunFor(20);
  EXPECT_EQ(lTicks, 1);
}

TEST_P(HostContract, TimerDestroyedByAnothersTickDoesNotTick) {
  int32_t lTicks = 0;
  auto later = NewTimer(
      5, [&] { ++lTicks; }, TimerOrder::tmrUnloadGracefully);
  auto first = NewTimer(
      5, [&] { later.reset(); }, TimerOrder::tmCIODelay);
  first->Enabled(true);
  later->Enabled(true);
  RunFor(20);
  EXPECT_EQ(lTicks, 0);
}

TEST_P(HostContract, TimersTickInTheirFixedOrder) {
  std::vector<int32_t> ticked;
  std::vector<std::unique_ptr<Timer>> timers;
  for (int32_t i = 0; i < 8; ++i) {
    const auto order = static_cast<TimerOrder>(std::min(i, 5));
    timers.push_back(NewTimer(
        10,
        [&ticked, &timers, i] {
          ticked.push_back(i);
          timers[static_cast<size_t>(i)]->Enabled(false);
        },
        order));
  }
  for (auto& timer : timers) timer->Enabled(true);
  m_Machine->HoldUp(*m_Host, 15);
  ASSERT_TRUE(RunUntil([&] { return ticked.size() >= 8; }));
  EXPECT_EQ(ticked, (std::vector<int32_t>{0, 1, 2, 3, 4, 5, 6, 7}));
}

TEST_P(HostContract, TickThatComesLateRunsOnce) {
  int32_t lTicks = 0;
  auto timer = NewTimer(200, [&] { ++lTicks; });
  timer->Enabled(true);
  m_Machine->HoldUp(*m_Host, 500);
  Loop().Pump();
  EXPECT_EQ(lTicks, 1);
}

TEST_P(HostContract, TickNeverRunsInsideItself) {
  int32_t lTicks = 0;
  int32_t lDepth = 0;
  int32_t lDeepest = 0;
  auto timer = NewTimer(1, [&] {
    lDeepest = std::max(lDeepest, ++lDepth);
    m_Machine->HoldUp(*m_Host, 5);
    Loop().Pump();
    ++lTicks;
    --lDepth;
  });
  timer->Enabled(true);
  EXPECT_TRUE(RunUntil([&] { return lTicks >= 3; }));
  EXPECT_EQ(lDeepest, 1);
}

TEST_P(HostContract, PumpInsideATickRunsTheOtherTimers) {
  bool boolInside = false;
  bool boolSeenInside = false;
  auto other = NewTimer(1, [&] { boolSeenInside = boolSeenInside || boolInside; });
  std::unique_ptr<Timer> pumping;
  pumping = NewTimer(1, [&] {
    boolInside = true;
    m_Machine->HoldUp(*m_Host, 5);
    Loop().Pump();
    boolInside = false;
  });
  other->Enabled(true);
  pumping->Enabled(true);
  EXPECT_TRUE(RunUntil([&] { return boolSeenInside; }));
}

TEST_P(HostContract, EnablingAnEnabledTimerDoesNotPutItsTickOff) {
  int32_t lTicks = 0;
  auto timer = NewTimer(30, [&] { ++lTicks; });
  auto nudge = NewTimer(1, [&] { timer->Enabled(true); });
  timer->Enabled(true);
  nudge->Enabled(true);
  EXPECT_TRUE(RunUntil([&] { return lTicks >= 1; }));
}

TEST_P(HostContract, DisablingAndEnablingStartsTheGridAnew) {
  int32_t lTicks = 0;
  auto timer = NewTimer(400, [&] { ++lTicks; });
  auto nudge = NewTimer(5, [&] {
    timer->Enabled(false);
    timer->Enabled(true);
  });
  timer->Enabled(true);
  nudge->Enabled(true);
  RunFor(600);
  EXPECT_EQ(lTicks, 0);
}

TEST_P(HostContract, SettingTheIntervalStartsTheGridAnew) {
  int32_t lTicks = 0;
  auto timer = NewTimer(400, [&] { ++lTicks; });
  auto nudge = NewTimer(5, [&] { timer->Interval(400); });
  timer->Enabled(true);
  nudge->Enabled(true);
  RunFor(600);
  EXPECT_EQ(lTicks, 0);
  EXPECT_TRUE(timer->Enabled());
}

// Ticks left out.

TEST_P(HostContract, QuietTimerDoesNotTick) {
  int32_t lTicks = 0;
  std::unique_ptr<Timer> timer;
  timer = NewTimer(1, [&] {
    ++lTicks;
    timer->QuietUntil(Elapsed::max());
  });
  timer->Enabled(true);
  RunFor(30);
  EXPECT_EQ(lTicks, 1);
}

TEST_P(HostContract, QuietEndsByItselfAtItsMoment) {
  int32_t lTicks = 0;
  Elapsed quietUntil{};
  Elapsed second{};
  std::unique_ptr<Timer> timer;
  timer = NewTimer(1, [&] {
    if (++lTicks == 1) timer->QuietUntil(quietUntil = Clock().Elapsed() + Milliseconds(10));
    if (lTicks == 2) second = Clock().Elapsed();
  });
  timer->Enabled(true);
  ASSERT_TRUE(RunUntil([&] { return lTicks >= 4; }));  // it lasts until the next tick and no longer
  EXPECT_GE(second, quietUntil);
}

TEST_P(HostContract, WakeEndsTheQuiet) {
  int32_t lTicks = 0;
  std::unique_ptr<Timer> timer;
  timer = NewTimer(1, [&] {
    if (++lTicks == 1) timer->QuietUntil(Elapsed::max());
  });
  auto waking = NewTimer(5, [&] { timer->Wake(); });
  timer->Enabled(true);
  waking->Enabled(true);
  EXPECT_TRUE(RunUntil([&] { return lTicks >= 3; }));
}

TEST_P(HostContract, EnablingAnewEndsTheQuiet) {
  int32_t lTicks = 0;
  std::unique_ptr<Timer> timer;
  timer = NewTimer(1, [&] { ++lTicks; });
  timer->Enabled(true);
  timer->QuietUntil(Elapsed::max());
  timer->Enabled(false);
  timer->Enabled(true);
  EXPECT_TRUE(RunUntil([&] { return lTicks >= 1; }));
}

TEST_P(HostContract, QuietAndWakeOnADisabledTimerDoNothing) {
  int32_t lTicks = 0;
  auto timer = NewTimer(1, [&] { ++lTicks; });
  timer->QuietUntil(Elapsed::max());
  timer->Wake();
  RunFor(10);
  EXPECT_EQ(lTicks, 0);
  timer->QuietUntil(Elapsed::max());
  timer->Enabled(true);
  EXPECT_TRUE(RunUntil([&] { return lTicks >= 1; }));
}

// The loop and its signals.

TEST_P(HostContract, QuitLetsTheHandlerFinishAndNoOtherRun) {
  bool boolFinished = false;
  int32_t lTicks = 0;
  auto quitting = NewTimer(
      1,
      [&] {
        Loop().Quit();
        boolFinished = true;
      },
      TimerOrder::tmCIODelay);
  auto other = NewTimer(
      1, [&] { ++lTicks; }, TimerOrder::tmNextAction);
  quitting->Enabled(true);
  other->Enabled(true);
  Loop().Run();
  EXPECT_TRUE(boolFinished);
  EXPECT_EQ(lTicks, 0);
}

TEST_P(HostContract, QuitBeforeRunMakesRunReturn) {
  Loop().Quit();
  auto keepsBusy = NewTimer(1, [] {});
  keepsBusy->Enabled(true);
  Loop().Run();
  RunFor(2);  // and only that one
}

TEST_P(HostContract, SeveralRaisesBeforeTheHandlerRunsAreOne) {
  int32_t lRuns = 0;
  auto signal = Loop().NewSignal([&] { ++lRuns; });
  signal->Raise();
  signal->Raise();
  signal->Raise();
  EXPECT_EQ(lRuns, 0);
  RunFor(5);
  EXPECT_EQ(lRuns, 1);
}

TEST_P(HostContract, SignalRaisedByAnotherThreadRunsOnTheLoopsOwn) {
  std::thread::id ranOn;
  auto signal = Loop().NewSignal([&] { ranOn = std::this_thread::get_id(); });
  std::thread([&] { signal->Raise(); }).join();
  EXPECT_TRUE(RunUntil([&] { return ranOn != std::thread::id(); }));
  EXPECT_EQ(ranOn, std::this_thread::get_id());
}

TEST_P(HostContract, SignalRaisedInItsHandlerRunsAgain) {
  int32_t lRuns = 0;
  std::unique_ptr<Signal> signal;
  signal = Loop().NewSignal([&] {
    if (++lRuns < 3) signal->Raise();
  });
  signal->Raise();
  EXPECT_TRUE(RunUntil([&] { return lRuns >= 3; }));
}

TEST_P(HostContract, DestroyedSignalDoesNotRun) {
  int32_t lRuns = 0;
  auto signal = Loop().NewSignal([&] { ++lRuns; });
  signal->Raise();
  signal.reset();
  RunFor(5);
  EXPECT_EQ(lRuns, 0);
}

TEST_P(HostContract, SignalMayBeDestroyedByItsHandler) {
  int32_t lRuns = 0;
  std::unique_ptr<Signal> signal;
  signal = Loop().NewSignal([&lRuns, &signal] {
    signal.reset();
    ++lRuns;
  });
  signal->Raise();
  RunFor(5);
  EXPECT_EQ(lRuns, 1);
}

TEST_P(HostContract, PumpHandlesASignalAndReturns) {
  int32_t lRuns = 0;
  auto signal = Loop().NewSignal([&] { ++lRuns; });
  signal->Raise();
  Loop().Pump();
  EXPECT_EQ(lRuns, 1);
}

}  // namespace vex::test
