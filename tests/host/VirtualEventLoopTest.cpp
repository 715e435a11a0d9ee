#include "host/virtual/VirtualEventLoop.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "basic/Error.h"

namespace vex::test {
namespace {

using std::chrono::hours;
using std::chrono::microseconds;
using std::chrono::milliseconds;

class VirtualEventLoopTest : public testing::Test {
 protected:
  std::unique_ptr<Timer> NewTimer(int32_t lInterval, std::function<void()> handler,
                                  TimerOrder order = TimerOrder::Component) {
    auto timer = Loop.NewTimer(order);
    timer->Interval(lInterval);
    timer->Tick(std::move(handler));
    return timer;
  }
  [[nodiscard]] int64_t Now() const { return Clock.Elapsed() / milliseconds(1); }
  /// A handler that writes down the moment at which it runs.
  std::function<void()> Note() {
    return [this] { Moments.push_back(Now()); };
  }
  using Times = std::vector<int64_t>;

  VirtualClock Clock{DateTime::FromParts(2026, 12, 24, 18, 0, 0)};
  VirtualEventLoop Loop{Clock};
  Times Moments;
};

TEST_F(VirtualEventLoopTest, TicksStandOnTheGridOfTheEnabling) {
  Loop.Advance(7);
  auto timer = NewTimer(10, Note());
  timer->Enabled(true);
  Loop.Advance(35);
  EXPECT_EQ(Moments, (Times{17, 27, 37}));
  EXPECT_EQ(Now(), 42);
}

TEST_F(VirtualEventLoopTest, AdvanceIncludesItsLastMoment) {
  auto timer = NewTimer(10, Note());
  timer->Enabled(true);
  Loop.Advance(9);
  EXPECT_EQ(Moments, Times{});
  Loop.Advance(1);
  EXPECT_EQ(Moments, Times{10});
  Loop.AdvanceTo(milliseconds(10));
  EXPECT_EQ(Moments, Times{10});
}

TEST_F(VirtualEventLoopTest, AdvanceNeverGoesBack) {
  Loop.Advance(10);
  EXPECT_TRUE(Loop.AdvanceTo(milliseconds(5)));
  EXPECT_EQ(Now(), 10);
}

TEST_F(VirtualEventLoopTest, DisablingAndEnablingStartsAnew) {
  auto timer = NewTimer(10, Note());
  timer->Enabled(true);
  Loop.Advance(4);
  timer->Enabled(false);
  timer->Enabled(true);
  Loop.Advance(30);
  EXPECT_EQ(Moments, (Times{14, 24, 34}));
}

TEST_F(VirtualEventLoopTest, EnablingAnEnabledTimerChangesNothing) {
  auto timer = NewTimer(10, Note());
  timer->Enabled(true);
  Loop.Advance(4);
  timer->Enabled(true);
  Loop.Advance(10);
  EXPECT_EQ(Moments, Times{10});
}

TEST_F(VirtualEventLoopTest, SettingTheIntervalStartsAnew) {
  auto timer = NewTimer(10, Note());
  timer->Enabled(true);
  Loop.Advance(4);
  timer->Interval(20);
  Loop.Advance(40);
  EXPECT_EQ(Moments, (Times{24, 44}));
}

TEST_F(VirtualEventLoopTest, IntervalBelowOneIsRefused) {
  auto timer = Loop.NewTimer(TimerOrder::Component);
  for (const int32_t lInterval : {0, -1}) {
    try {
      timer->Interval(lInterval);
      FAIL();
    } catch (const Error& error) {
      EXPECT_EQ(error.Number, ErrorInvalidCall);
    }
  }
  EXPECT_EQ(timer->Interval(), 1);
}

TEST_F(VirtualEventLoopTest, HeartbeatThatDisablesItselfBeatsEverySecond) {
  std::unique_ptr<Timer> timer;
  timer = NewTimer(1000, [&] {
    timer->Enabled(false);
    Moments.push_back(Now());
    timer->Enabled(true);
  });
  timer->Enabled(true);
  Loop.Advance(3500);
  EXPECT_EQ(Moments, (Times{1000, 2000, 3000}));
}

TEST_F(VirtualEventLoopTest, SameMomentTicksInFixedOrderWhateverWasEnabledFirst) {
  std::vector<int32_t> ticked;
  std::vector<std::unique_ptr<Timer>> timers;
  for (const int32_t i : {0, 1, 2, 3, 4, 5, 6}) {
    timers.push_back(NewTimer(
        5, [&ticked, i] { ticked.push_back(i); }, static_cast<TimerOrder>(std::min(i, 5))));
  }
  std::for_each(timers.rbegin(), timers.rend(), [](auto& timer) { timer->Enabled(true); });
  Loop.Advance(5);
  EXPECT_EQ(ticked, (std::vector<int32_t>{0, 1, 2, 3, 4, 5, 6}));
}

TEST_F(VirtualEventLoopTest, CallsComeBeforeTheTicksOfTheirMomentInTheOrderOfAsking) {
  std::vector<std::string> happened;
  auto timer = NewTimer(
      5, [&] { happened.push_back("tick"); }, TimerOrder::tmCIODelay);
  timer->Enabled(true);
  Loop.At(milliseconds(5), [&] { happened.push_back("first"); });
  Loop.At(milliseconds(5), [&] { happened.push_back("second"); });
  Loop.At(milliseconds(4), [&] { happened.push_back("earlier"); });
  Loop.Advance(5);
  EXPECT_EQ(happened, (std::vector<std::string>{"earlier", "first", "second", "tick"}));
}

TEST_F(VirtualEventLoopTest, CallForAPastMomentRunsNow) {
  Loop.Advance(10);
  Loop.At(milliseconds(3), Note());
  Loop.At(microseconds(10500), Note());  // and a fraction is rounded up
  Loop.Advance(5);
  EXPECT_EQ(Moments, (Times{10, 11}));
}

TEST_F(VirtualEventLoopTest, SignalRaisedByATickRunsBeforeTheNextTickOfTheSameMoment) {
  std::vector<std::string> happened;
  auto signal = Loop.NewSignal([&] { happened.push_back("signal"); });
  auto first = NewTimer(
      5, [&] { signal->Raise(); }, TimerOrder::tmCIODelay);
  auto second = NewTimer(
      5, [&] { happened.push_back("tick"); }, TimerOrder::tmNextAction);
  first->Enabled(true);
  second->Enabled(true);
  Loop.Advance(5);
  EXPECT_EQ(happened, (std::vector<std::string>{"signal", "tick"}));
}

TEST_F(VirtualEventLoopTest, HeldUpTicksRunOnceAndTheGridStays) {
  std::unique_ptr<Timer> slow;
  slow = NewTimer(
      10,
      [&] {
        slow->Enabled(false);
        Loop.Advance(25);  // a message box stands for a while
      },
      TimerOrder::tmCIODelay);
  auto late = NewTimer(4, Note(), TimerOrder::tmNextAction);
  late->Enabled(true);
  slow->Enabled(true);
  Loop.AdvanceTo(milliseconds(44));
  EXPECT_EQ(Moments, (Times{4, 8, 12, 16, 20, 24, 28, 32, 36, 40, 44}));

  Moments.clear();
  std::unique_ptr<Timer> own;
  own = NewTimer(10, [&] {
    Moments.push_back(Now());
    if (Moments.size() == 1) Loop.Advance(35);
  });
  late->Enabled(false);
  own->Enabled(true);
  Loop.AdvanceTo(milliseconds(110));
  EXPECT_EQ(Moments, (Times{54, 89, 94, 104}));
}

TEST_F(VirtualEventLoopTest, TickThatStartsItselfAnewAndIsHeldUpDoesNotRunInsideItself) {
  int32_t lDepth = 0;
  std::unique_ptr<Timer> timer;
  timer = NewTimer(10, [&] {
    EXPECT_EQ(++lDepth, 1);
    Note()();
    timer->Enabled(false);
    timer->Enabled(true);
    if (Moments.size() == 1) Loop.Advance(25);
    --lDepth;
  });
  timer->Enabled(true);
  Loop.AdvanceTo(milliseconds(50));
  EXPECT_EQ(Moments, (Times{10, 35, 45}));
}

TEST_F(VirtualEventLoopTest, RunEndsWhenNothingIsLeft) {
  std::unique_ptr<Timer> timer;
  timer = NewTimer(4000, [&] {
    Note()();
    timer->Enabled(false);
  });
  timer->Enabled(true);
  Loop.At(hours(1), Note());
  Loop.Run();
  EXPECT_EQ(Moments, (Times{4000, 3600000}));
  EXPECT_EQ(Now(), 3600000);
}

TEST_F(VirtualEventLoopTest, TimerThatIsQuietForEverIsNothingLeft) {
  auto timer = NewTimer(1, Note());
  timer->Enabled(true);
  timer->QuietUntil(Elapsed::max());
  Loop.Run();
  EXPECT_EQ(Now(), 0);
}

TEST_F(VirtualEventLoopTest, QuitEndsAdvanceAtItsMomentAndIsOver) {
  auto timer = NewTimer(10, [&] { Loop.Quit(); });
  timer->Enabled(true);
  EXPECT_FALSE(Loop.HasQuit());
  EXPECT_FALSE(Loop.Advance(100));
  EXPECT_EQ(Now(), 10);
  EXPECT_TRUE(Loop.HasQuit());
  timer->Enabled(false);
  EXPECT_TRUE(Loop.Advance(5));
  EXPECT_EQ(Now(), 15);
}

TEST_F(VirtualEventLoopTest, QuitInsideANestedAdvanceEndsAll) {
  auto timer = NewTimer(10, [&] { Loop.Advance(100); });
  auto quitting = NewTimer(20, [&] { Loop.Quit(); });
  timer->Enabled(true);
  quitting->Enabled(true);
  EXPECT_FALSE(Loop.Advance(1000));
  EXPECT_EQ(Now(), 20);
}

TEST_F(VirtualEventLoopTest, LoopIsUsableAfterAHandlerRaised) {
  bool boolRaise = true;
  auto timer = NewTimer(10, [&] {
    if (boolRaise) throw PlatformError(ErrorOverflow);
    Moments.push_back(Now());
  });
  timer->Enabled(true);
  EXPECT_THROW(Loop.Advance(100), Error);
  EXPECT_EQ(Now(), 10);
  boolRaise = false;
  Loop.Advance(20);
  EXPECT_EQ(Moments, (Times{20, 30}));
}

TEST_F(VirtualEventLoopTest, ThereAreNoHandlesToWatch) {
  EXPECT_THROW((void)Loop.WatchReadable(0, [] {}), Error);
}

// Ticks left out.

TEST_F(VirtualEventLoopTest, QuietLeavesOutTicksUpToTheFirstGridPointNotBeforeItsEnd) {
  auto timer = NewTimer(10, Note());
  timer->Enabled(true);
  timer->QuietUntil(milliseconds(31));
  Loop.Advance(60);
  EXPECT_EQ(Moments, (Times{40, 50, 60}));
  Moments.clear();
  timer->QuietUntil(microseconds(80001));
  Loop.Advance(40);
  EXPECT_EQ(Moments, (Times{90, 100}));
}

TEST_F(VirtualEventLoopTest, QuietInThePastLeavesNothingOut) {
  auto timer = NewTimer(1, Note());
  timer->Enabled(true);
  Loop.Advance(3);
  timer->QuietUntil(milliseconds(1));
  Loop.Advance(2);
  EXPECT_EQ(Moments, (Times{1, 2, 3, 4, 5}));
}

TEST_F(VirtualEventLoopTest, QuietHourCostsNothing) {
  std::unique_ptr<Timer> timer;
  timer = NewTimer(1, [&] { timer->QuietUntil(Clock.Elapsed() + hours(1)); });
  timer->Enabled(true);
  Loop.AdvanceTo(hours(24));
  EXPECT_EQ(Loop.Ticks(), 24U);
}

TEST_F(VirtualEventLoopTest, WakeBeforeItsTurnTicksInTheSameMillisecond) {
  auto timer = NewTimer(1, Note(), TimerOrder::tmrShowPlayer);
  timer->Enabled(true);
  timer->QuietUntil(Elapsed::max());
  Loop.At(milliseconds(5), [&] { timer->Wake(); });
  Loop.Advance(6);
  EXPECT_EQ(Moments, (Times{5, 6}));
}

TEST_F(VirtualEventLoopTest, WakeByAnEarlierTimerTicksInTheSameMillisecondByALaterOneInTheNext) {
  auto timer = NewTimer(1, Note(), TimerOrder::tmrShowPlayer);
  auto earlier = NewTimer(
      5, [&] { timer->Wake(); }, TimerOrder::tmNextAction);
  timer->Enabled(true);
  timer->QuietUntil(Elapsed::max());
  earlier->Enabled(true);
  Loop.Advance(5);
  EXPECT_EQ(Moments, Times{5});
  earlier->Enabled(false);

  Moments.clear();
  auto later = NewTimer(
      5, [&] { timer->Wake(); }, TimerOrder::Component);
  timer->QuietUntil(Elapsed::max());
  later->Enabled(true);
  Loop.Advance(6);
  EXPECT_EQ(Moments, Times{11});
}

TEST_F(VirtualEventLoopTest, WakeKeepsTheGrid) {
  auto timer = NewTimer(10, Note());
  timer->Enabled(true);
  timer->QuietUntil(Elapsed::max());
  Loop.Advance(23);
  timer->Wake();
  Loop.Advance(20);
  EXPECT_EQ(Moments, (Times{30, 40}));
}

TEST_F(VirtualEventLoopTest, WakeAfterAMomentHasBeenHandledTicksInTheNext) {
  auto timer = NewTimer(1, Note());
  timer->Enabled(true);
  timer->QuietUntil(Elapsed::max());
  Loop.Advance(5);
  timer->Wake();
  Loop.Advance(1);
  EXPECT_EQ(Moments, Times{6});
}

TEST_F(VirtualEventLoopTest, SettingTheWallClockWakesEveryTimer) {
  auto one = NewTimer(1, Note());
  auto two = NewTimer(1, Note());
  for (Timer* timer : {one.get(), two.get()}) {
    timer->Enabled(true);
    timer->QuietUntil(Elapsed::max());
  }
  Loop.At(milliseconds(5), [&] { Clock.SetWallClock(DateTime::FromParts(2026, 12, 25)); });
  Loop.Advance(5);
  EXPECT_EQ(Moments, (Times{5, 5}));
}

TEST_F(VirtualEventLoopTest, EveryTickIgnoresTheQuiet) {
  Loop.EveryTick(true);
  auto timer = NewTimer(1, Note());
  timer->Enabled(true);
  timer->QuietUntil(Elapsed::max());
  Loop.Advance(3);
  EXPECT_EQ(Moments, (Times{1, 2, 3}));
}

}  // namespace
}  // namespace vex::test
