#include <cstdlib>

#include "bench/windows/Spacing.h"
#include "host/win32/Win32Host.h"

// How long a program waits that sends the running player a WM_COPYDATA: until SendMessage returns. The
// messages have a type that the player takes up and ignores. They come at odd times, so that they meet the
// show's ticks anywhere.
//
//     MessageBench [MESSAGES]

namespace vex::bench {
namespace {

constexpr double AskedMs = 1;
constexpr int LongestPauseMs = 7;

int Run(int messages) {
  const HWND player = FindWindowA(Win32Windows::MainClass, Win32Windows::MainTitle);
  if (player == nullptr) {
    std::puts("there is no player");
    return 1;
  }
  const Win32Clock clock;
  Spacing spacing;
  char szIgnored[] = "99A line of a status report, as long as such lines are";
  for (int i = 0; i < messages; ++i) {
    COPYDATASTRUCT copy{3, sizeof szIgnored, szIgnored};
    const Elapsed begin = clock.Elapsed();
    SendMessageA(player, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&copy));
    spacing.Add(clock.Elapsed() - begin);
    Sleep(static_cast<DWORD>(1 + i % LongestPauseMs));
  }
  spacing.Print("answer to a WM_COPYDATA", AskedMs);
  return 0;
}

}  // namespace
}  // namespace vex::bench

int main(int argc, char** argv) {
  return vex::bench::Run(argc > 1 ? std::atoi(argv[1]) : 2000);
}
