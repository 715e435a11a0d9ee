#include <cstdlib>
#include <string>

#include "bench/windows/Spacing.h"
#include "host/win32/Handle.h"
#include "host/win32/Win32Host.h"

// How long a start takes: from the moment at which the player's process is asked for until another program
// finds its main form. The player must be installed, and none may run.
//
//     StartBench COMMAND [RUNS]

namespace vex::bench {
namespace {

constexpr double AskedMs = 1000;
constexpr DWORD LongestMs = 30000;

HWND Form() {
  return FindWindowA(Win32Windows::MainClass, Win32Windows::MainTitle);
}

Handle StartProcess(std::string szCommand) {
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION started{};
  if (CreateProcessA(nullptr, szCommand.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                     &started) == 0)
    return Handle();
  CloseHandle(started.hThread);
  return Handle(started.hProcess);
}

void EndPlayer() {
  char szImmediately[] = "01";
  COPYDATASTRUCT copy{3, sizeof szImmediately, szImmediately};
  SendMessageA(Form(), WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&copy));
}

bool RunOnce(const std::string& szCommand, Spacing& spacing) {
  const Win32Clock clock;
  const Elapsed begin = clock.Elapsed();
  const Handle process = StartProcess(szCommand);
  if (!process.Open()) return false;
  while (Form() == nullptr) {
    if (clock.Elapsed() - begin > std::chrono::milliseconds(LongestMs)) return false;
    Sleep(1);
  }
  spacing.Add(clock.Elapsed() - begin);
  EndPlayer();
  return WaitForSingleObject(process.Get(), LongestMs) == WAIT_OBJECT_0;
}

int Run(const std::string& szCommand, int runs) {
  Spacing spacing;
  for (int run = 0; run < runs; ++run) {
    if (Form() == nullptr && RunOnce(szCommand, spacing)) continue;
    std::puts("the player does not start or does not end");
    return 1;
  }
  spacing.Print("from the start to the window", AskedMs);
  return 0;
}

}  // namespace
}  // namespace vex::bench

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  return vex::bench::Run(argv[1], argc > 2 ? std::atoi(argv[2]) : 20);
}
