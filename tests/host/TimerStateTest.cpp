#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "host/TimerList.h"

namespace vex::test {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;

/// A timer started at one second with that interval.
TimerState Started(int milliseconds_) {
  TimerState timer(TimerOrder::Component, 1);
  timer.m_Interval = milliseconds(milliseconds_);
  timer.Start(milliseconds(1000));
  return timer;
}

TEST(TimerState, FirstTickIsOneIntervalAfterTheStart) {
  EXPECT_EQ(Started(10).m_Due, milliseconds(1010));
}

TEST(TimerState, GridLiesOnTheNextWholeMillisecond) {
  TimerState timer = Started(10);
  timer.Start(milliseconds(1000) + microseconds(1));
  EXPECT_EQ(timer.m_Due, milliseconds(1011));
}

TEST(TimerState, TickInTimePassesToTheNextGridPoint) {
  TimerState timer = Started(10);
  timer.PassTo(milliseconds(1010));
  EXPECT_EQ(timer.m_Due, milliseconds(1020));
}

TEST(TimerState, LateTickLeavesTheGridWhereItWas) {
  TimerState timer = Started(10);
  timer.PassTo(milliseconds(1034));
  EXPECT_EQ(timer.m_Due, milliseconds(1040));
}

TEST(TimerState, TickAsLateAsTheNextGridPointStandsForItToo) {
  TimerState timer = Started(10);
  timer.PassTo(milliseconds(1020));
  EXPECT_EQ(timer.m_Due, milliseconds(1030));
}

TEST(TimerState, QuietPutsOffToTheFirstGridPointAtOrAfterItsEnd) {
  TimerState timer = Started(10);
  timer.QuietUntil(milliseconds(1050));
  EXPECT_EQ(timer.m_Due, milliseconds(1050));
  timer.QuietUntil(milliseconds(1050) + Elapsed(1));
  EXPECT_EQ(timer.m_Due, milliseconds(1060));
}

TEST(TimerState, QuietThatIsOverPutsNothingOff) {
  TimerState timer = Started(10);
  timer.QuietUntil(milliseconds(3));
  EXPECT_EQ(timer.m_Due, milliseconds(1010));
}

TEST(TimerState, QuietWithoutEndIsNeverDue) {
  TimerState timer = Started(10);
  timer.QuietUntil(Elapsed::max());
  EXPECT_EQ(timer.m_Due, Elapsed::max());
  timer.QuietUntil(Elapsed::max() - Elapsed(1));
  EXPECT_EQ(timer.m_Due, Elapsed::max());
}

TEST(TimerState, WakeBringsBackTheNextGridPoint) {
  TimerState timer = Started(10);
  timer.QuietUntil(Elapsed::max());
  timer.Wake(milliseconds(1051));
  EXPECT_EQ(timer.m_Due, milliseconds(1060));
}

TEST(TimerState, WakeOnAGridPointThatHasNotTickedMeansThatOne) {
  TimerState timer = Started(10);
  timer.QuietUntil(Elapsed::max());
  timer.Wake(milliseconds(1050));
  EXPECT_EQ(timer.m_Due, milliseconds(1050));
}

TEST(TimerState, WakeOnAGridPointThatHasTickedMeansTheNext) {
  TimerState timer = Started(10);
  timer.PassTo(milliseconds(1010));
  timer.QuietUntil(Elapsed::max());
  timer.Wake(milliseconds(1010));
  EXPECT_EQ(timer.m_Due, milliseconds(1020));
}

TEST(TimerState, WakeDoesNotPutALateTickOff) {
  TimerState timer = Started(10);
  timer.Wake(milliseconds(1055));
  EXPECT_EQ(timer.m_Due, milliseconds(1010));
}

TEST(TimerState, EarlierGoesByDueThenOrderThenCreation) {
  const TimerState first(TimerOrder::tmCIODelay, 9);
  const TimerState second(TimerOrder::Component, 1);
  const TimerState third(TimerOrder::Component, 2);
  EXPECT_TRUE(first.Earlier(second));
  EXPECT_FALSE(second.Earlier(first));
  EXPECT_TRUE(second.Earlier(third));
  TimerState later(TimerOrder::tmCIODelay, 3);
  later.m_Due = Elapsed(1);
  EXPECT_TRUE(third.Earlier(later));
}

TEST(TimerState, WhateverHappensItIsDueOnItsGridAndNeverTwiceForOnePoint) {
  EXPECT_TRUE(rc::check([](const std::vector<std::pair<int, int>>& steps) {
    const auto interval = *rc::gen::inRange(1, 50);
    TimerState timer = Started(interval);
    Elapsed now = milliseconds(1000);
    Elapsed last = now;
    for (const auto& [kind, amount] : steps) {
      now += microseconds(std::abs(amount % 100000));
      switch (std::abs(kind % 3)) {
        case 0:
          if (timer.m_Due > now) break;
          RC_ASSERT(timer.m_Due > last);
          last = now;
          timer.PassTo(now);
          break;
        case 1:
          timer.QuietUntil(now + milliseconds(std::abs(amount % 77)));
          break;
        default:
          timer.Wake(now);
      }
      RC_ASSERT((timer.m_Due - milliseconds(1000)) % milliseconds(interval) == Elapsed(0));
      RC_ASSERT(timer.m_Due > last);
    }
  }));
}

}  // namespace
}  // namespace vex::test
