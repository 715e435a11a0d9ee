#include "host/virtual/VirtualEventLoop.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <algorithm>

namespace vex::test {
namespace {

using std::chrono::milliseconds;

/// A worker that has something to do at certain moments, wakes its fellow, and tells its timer truthfully
/// until when it has nothing to do. What is done must not depend on whether ticks are left out.
struct Worker {
  int32_t Interval;
  TimerOrder Order;
  std::vector<int32_t> Work;      // moments, ascending
  std::vector<int32_t> Enabling;  // moments at which an input disables and enables the timer
};

std::vector<std::string> WorkDone(const std::vector<Worker>& workers, bool boolEveryTick, uint64_t& ticks) {
  VirtualClock clock(DateTime::FromParts(2026, 12, 24));
  VirtualEventLoop loop(clock);
  loop.EveryTick(boolEveryTick);
  const auto now = [&] { return static_cast<int32_t>(clock.Elapsed() / milliseconds(1)); };
  std::vector<std::string> done;
  std::vector<std::unique_ptr<Timer>> timers(workers.size());
  std::vector<size_t> next(workers.size());
  std::vector<int32_t> asked(workers.size());  // work that the fellow hands over
  for (size_t i = 0; i < workers.size(); ++i) {
    timers[i] = loop.NewTimer(workers[i].Order);
    timers[i]->Interval(workers[i].Interval);
    timers[i]->Tick([&, i] {
      const size_t fellow = (i + 1) % workers.size();
      if (asked[i] > 0) done.push_back(std::to_string(now()) + " asked " + std::to_string(i));
      asked[i] = 0;
      for (; next[i] < workers[i].Work.size() && workers[i].Work[next[i]] <= now(); ++next[i]) {
        done.push_back(std::to_string(now()) + " work " + std::to_string(i));
        ++asked[fellow];
        timers[fellow]->Wake();
      }
      const bool boolMore = next[i] < workers[i].Work.size();
      if (asked[i] == 0)
        timers[i]->QuietUntil(boolMore ? Elapsed(milliseconds(workers[i].Work[next[i]])) : Elapsed::max());
    });
    timers[i]->Enabled(true);
    for (const int32_t lMoment : workers[i].Enabling) {
      loop.At(milliseconds(lMoment), [&, i] {
        timers[i]->Enabled(false);
        timers[i]->Enabled(true);
      });
    }
  }
  loop.AdvanceTo(milliseconds(400));
  ticks = loop.Ticks();
  return done;
}

TEST(VirtualEventLoopProperty, LeavingOutTicksChangesNothing) {
  EXPECT_TRUE(rc::check("work is done in the same milliseconds and order", [] {
    std::vector<Worker> workers(*rc::gen::inRange<size_t>(1, 5));
    for (Worker& worker : workers) {
      worker.Interval = *rc::gen::inRange(1, 20);
      worker.Order = static_cast<TimerOrder>(*rc::gen::inRange(0, 6));
      worker.Work = *rc::gen::container<std::vector<int32_t>>(rc::gen::inRange(0, 300));
      std::ranges::sort(worker.Work);
      worker.Enabling = *rc::gen::container<std::vector<int32_t>>(*rc::gen::inRange<size_t>(0, 3),
                                                                  rc::gen::inRange(0, 300));
    }
    uint64_t everyTicks = 0;
    uint64_t fewTicks = 0;
    const auto every = WorkDone(workers, true, everyTicks);
    RC_ASSERT(WorkDone(workers, false, fewTicks) == every);
    RC_ASSERT(fewTicks <= everyTicks);
  }));
}

TEST(VirtualEventLoopProperty, TicksAreThoseOfTheGridSortedByMomentAndOrder) {
  EXPECT_TRUE(rc::check("compared with all grid points written out and sorted", [] {
    const auto intervals = *rc::gen::container<std::vector<int32_t>>(rc::gen::inRange(1, 30));
    VirtualClock clock(DateTime::FromParts(2026, 12, 24));
    VirtualEventLoop loop(clock);
    std::vector<std::pair<int64_t, size_t>> ticked;
    std::vector<std::pair<int64_t, size_t>> expected;
    std::vector<std::unique_ptr<Timer>> timers;
    for (size_t i = 0; i < intervals.size(); ++i) {
      timers.push_back(loop.NewTimer(TimerOrder::Component));
      timers[i]->Interval(intervals[i]);
      timers[i]->Tick([&ticked, &clock, i] { ticked.emplace_back(clock.Elapsed() / milliseconds(1), i); });
      timers[i]->Enabled(true);
      for (int64_t moment = intervals[i]; moment <= 100; moment += intervals[i])
        expected.emplace_back(moment, i);
    }
    std::ranges::sort(expected);
    while (clock.Elapsed() < milliseconds(100)) loop.Advance(*rc::gen::inRange(1, 100) % 7 + 1);
    std::erase_if(ticked, [](const auto& tick) { return tick.first > 100; });
    RC_ASSERT(ticked == expected);
  }));
}

}  // namespace
}  // namespace vex::test
