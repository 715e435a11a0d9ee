#include <cstdlib>

#include "bench/windows/Spacing.h"
#include "host/win32/Handle.h"
#include "host/win32/Win32Host.h"

// How evenly a 1 ms timer ticks through the event loop of the Windows host, beside a bare loop around a
// waitable timer. The two take turns, two seconds each, so that both meet the same load.
//
//     TickBench [SECONDS]

namespace vex::bench {
namespace {

constexpr DWORD SharpTimer = 0x2;  // CREATE_WAITABLE_TIMER_HIGH_RESOLUTION
constexpr int TicksATurn = 2000;
constexpr double AskedMs = 2;

/// The least that waiting for the next whole millisecond takes here: one timer, armed anew each time.
void BareTurn(const Clock& clock, Spacing& spacing) {
  const Handle timer(CreateWaitableTimerExW(nullptr, nullptr, SharpTimer, TIMER_ALL_ACCESS));
  Elapsed before{0};
  for (int i = 0; i <= TicksATurn; ++i) {
    const Elapsed due =
        std::chrono::floor<std::chrono::milliseconds>(clock.Elapsed()) + std::chrono::milliseconds(1);
    while (clock.Elapsed() < due) {
      LARGE_INTEGER when{};
      when.QuadPart = -((due - clock.Elapsed()).count() + 99) / 100;
      SetWaitableTimer(timer.Get(), &when, 0, nullptr, nullptr, FALSE);
      WaitForSingleObject(timer.Get(), INFINITE);
    }
    const Elapsed now = clock.Elapsed();
    if (i > 0) spacing.Add(now - before);
    before = now;
  }
}

void LoopTurn(Win32Host& host, Spacing& spacing) {
  const auto timer = host.EventLoop().NewTimer(TimerOrder::tmrShowPlayer);
  int ticks = 0;
  Elapsed before{0};
  timer->Tick([&] {
    const Elapsed now = host.Clock().Elapsed();
    if (ticks++ > 0) spacing.Add(now - before);
    before = now;
    if (ticks > TicksATurn) host.EventLoop().Quit();
  });
  timer->Enabled(true);
  host.EventLoop().Run();
}

int Run(int seconds) {
  Win32Host host;
  (void)host.Windows().NewMainWindow();
  (void)host.SharpTimers();
  Spacing bare;
  Spacing loop;
  for (int turn = 0; turn < seconds; turn += 4) {
    BareTurn(host.Clock(), bare);
    LoopTurn(host, loop);
  }
  bare.Print("a bare waitable timer", AskedMs);
  loop.Print("a timer of the event loop", AskedMs);
  std::printf("p99 of the loop beside the bare timer: %.2f\n", loop.Quantile(0.99) / bare.Quantile(0.99));
  return 0;
}

}  // namespace
}  // namespace vex::bench

int main(int argc, char** argv) {
  return vex::bench::Run(argc > 1 ? std::atoi(argv[1]) : 20);
}
