#include <benchmark/benchmark.h>
#include <sys/epoll.h>
#include <sys/resource.h>
#include <sys/timerfd.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

#include "host/linux/LinuxEventLoop.h"

// How evenly a 1 ms timer ticks through the event loop, beside a bare timerfd in the same run, and what the
// process costs while it ticks and while its timers are quiet.

namespace {

using vex::Elapsed;

constexpr size_t Ticks = 5000;

Elapsed Now() {
  return vex::LinuxClock().Elapsed();
}

double ProcessorSeconds() {
  timespec used{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
  return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) * 1e-9;
}

/// Measures one run of ticks: percentiles of the spacing in ms, and the processor in percent of one core.
class Spacing {
 public:
  Spacing() { m_Moments.reserve(Ticks + 1); }
  bool Tick() {
    m_Moments.push_back(Now());
    return m_Moments.size() <= Ticks;
  }
  void Report(benchmark::State& state) const {
    std::vector<double> spacing;
    for (size_t i = 1; i < m_Moments.size(); ++i)
      spacing.push_back(std::chrono::duration<double, std::milli>(m_Moments[i] - m_Moments[i - 1]).count());
    std::ranges::sort(spacing);
    const std::chrono::duration<double> took = m_Moments.back() - m_Moments.front();
    state.counters["p50_ms"] = spacing[spacing.size() / 2];
    state.counters["p99_ms"] = spacing[spacing.size() * 99 / 100];
    state.counters["max_ms"] = spacing.back();
    state.counters["cpu_%"] = 100 * (ProcessorSeconds() - m_Began) / took.count();
  }

 private:
  double m_Began = ProcessorSeconds();
  std::vector<Elapsed> m_Moments;
};

void BareTimerFd(benchmark::State& state) {
  const vex::Descriptor epoll(epoll_create1(0));
  const vex::Descriptor timer(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK));
  epoll_event event{};
  event.events = EPOLLIN;
  epoll_ctl(epoll.Get(), EPOLL_CTL_ADD, timer.Get(), &event);
  for ([[maybe_unused]] auto _ : state) {
    Spacing spacing;
    const itimerspec every{{0, 1'000'000}, {0, 1'000'000}};
    timerfd_settime(timer.Get(), 0, &every, nullptr);
    uint64_t expirations = 0;
    do {
      epoll_wait(epoll.Get(), &event, 1, -1);
      benchmark::DoNotOptimize(read(timer.Get(), &expirations, sizeof expirations));
    } while (spacing.Tick());
    spacing.Report(state);
  }
}

void LoopTimer(benchmark::State& state) {
  vex::LinuxEventLoop loop;
  if (state.range(0) != 0 && !loop.TrySharpTimers()) state.SkipWithError("real-time priority not granted");
  const auto timer = loop.NewTimer(vex::TimerOrder::tmrShowPlayer);
  for ([[maybe_unused]] auto _ : state) {
    Spacing spacing;
    timer->Tick([&] {
      if (!spacing.Tick()) loop.Quit();
    });
    timer->Enabled(true);
    loop.Run();
    timer->Enabled(false);
    spacing.Report(state);
  }
}

/// Six timers of 1 ms that are quiet until the end, as in a show between two events.
void QuietLoop(benchmark::State& state) {
  vex::LinuxEventLoop loop;
  std::vector<std::unique_ptr<vex::Timer>> timers;
  for (int i = 0; i < 6; ++i) {
    timers.push_back(loop.NewTimer(vex::TimerOrder::Component));
    timers.back()->Tick([timer = timers.back().get()] { timer->QuietUntil(Elapsed::max()); });
    timers.back()->Enabled(true);
  }
  const auto end = loop.NewTimer(vex::TimerOrder::tmrUnloadGracefully);
  end->Interval(5000);
  end->Tick([&] { loop.Quit(); });
  for ([[maybe_unused]] auto _ : state) {
    const uint64_t turns = loop.Turns();
    const double began = ProcessorSeconds();
    end->Enabled(true);
    loop.Run();
    end->Enabled(false);
    state.counters["turns"] = static_cast<double>(loop.Turns() - turns);
    state.counters["cpu_%"] = 100 * (ProcessorSeconds() - began) / 5;
  }
}

BENCHMARK(BareTimerFd)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(LoopTimer)->ArgName("sharp")->Arg(0)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(QuietLoop)->Iterations(1)->Unit(benchmark::kMillisecond);
// Last: the priority stays.
BENCHMARK(LoopTimer)->ArgName("sharp")->Arg(1)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
