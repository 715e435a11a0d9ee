#include <cstdlib>
#include <string>

#include "bench/windows/Spacing.h"
#include "host/win32/Handle.h"
#include "host/win32/Win32Host.h"

// How long a program waits that sends the running player a WM_COPYDATA: until SendMessage returns. The
// messages have a type that the player takes up and ignores. They come at odd times, so that they meet the
// show's ticks anywhere. In turn with it another program is asked that has nothing but a window and does
// nothing but answer, with the priority of the player: what that takes is the machine's.
//
//     MessageBench [MESSAGES]
//     MessageBench answer          the other program

namespace vex::bench {
namespace {

constexpr double AskedMs = 1;
constexpr int LongestPauseMs = 7;
constexpr DWORD LongestStartMs = 10000;
constexpr char BareClass[] = "VexMonitorBareWindow";

LRESULT CALLBACK Answer(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_COPYDATA) return 0;
  if (message == WM_CLOSE) PostQuitMessage(0);
  return DefWindowProcA(window, message, wParam, lParam);
}

int AnswerUntilClosed() {
  SetPriorityClass(GetCurrentProcess(), ABOVE_NORMAL_PRIORITY_CLASS);
  SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_TIME_CRITICAL);
  WNDCLASSA bare{};
  bare.lpfnWndProc = Answer;
  bare.hInstance = GetModuleHandleA(nullptr);
  bare.lpszClassName = BareClass;
  RegisterClassA(&bare);
  CreateWindowA(BareClass, "", 0, 0, 0, 0, 0, nullptr, nullptr, bare.hInstance, nullptr);
  MSG message{};
  while (GetMessageA(&message, nullptr, 0, 0) > 0) DispatchMessageA(&message);
  return 0;
}

/// The window of the other program, which ends with this object.
class BareProgram {
 public:
  BareProgram() {
    std::string szPath(MAX_PATH, '\0');
    szPath.resize(GetModuleFileNameA(nullptr, szPath.data(), MAX_PATH));
    std::string szCommand = "\"" + szPath + "\" answer";
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    if (CreateProcessA(nullptr, szCommand.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                       &started) == 0)
      return;
    CloseHandle(started.hThread);
    m_Process = Handle(started.hProcess);
    const DWORD begin = GetTickCount();
    while (m_Window == nullptr && GetTickCount() - begin < LongestStartMs) {
      Sleep(1);
      m_Window = FindWindowA(BareClass, nullptr);
    }
  }
  ~BareProgram() {
    if (m_Window != nullptr) SendMessageA(m_Window, WM_CLOSE, 0, 0);
    if (m_Process.Open()) WaitForSingleObject(m_Process.Get(), LongestStartMs);
  }
  BareProgram(const BareProgram&) = delete;
  BareProgram& operator=(const BareProgram&) = delete;

  [[nodiscard]] HWND Window() const { return m_Window; }

 private:
  Handle m_Process;
  HWND m_Window = nullptr;
};

void Ask(HWND window, const Clock& clock, Spacing& spacing) {
  char szIgnored[] = "99A line of a status report, as long as such lines are";
  COPYDATASTRUCT copy{3, sizeof szIgnored, szIgnored};
  const Elapsed begin = clock.Elapsed();
  SendMessageA(window, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&copy));
  spacing.Add(clock.Elapsed() - begin);
}

int Run(int messages) {
  const HWND player = FindWindowA(Win32Windows::MainClass, Win32Windows::MainTitle);
  const BareProgram bare;
  if (player == nullptr || bare.Window() == nullptr) {
    std::puts(player == nullptr ? "there is no player" : "the bare window does not come");
    return 1;
  }
  const Win32Clock clock;
  Spacing bareAnswers;
  Spacing answers;
  for (int i = 0; i < messages; ++i) {
    Ask(bare.Window(), clock, bareAnswers);
    Sleep(static_cast<DWORD>(1 + i % LongestPauseMs));
    Ask(player, clock, answers);
    Sleep(static_cast<DWORD>(1 + i % LongestPauseMs));
  }
  bareAnswers.Print("answer of a bare window", AskedMs);
  answers.Print("answer to a WM_COPYDATA", AskedMs);
  return 0;
}

}  // namespace
}  // namespace vex::bench

int main(int argc, char** argv) {
  if (argc > 1 && argv[1] == std::string("answer")) return vex::bench::AnswerUntilClosed();
  return vex::bench::Run(argc > 1 ? std::atoi(argv[1]) : 2000);
}
