#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <iostream>
#include <thread>

#include "host/ThreadedLookUp.h"
#include "tests/host_win32/WindowsMachine.h"

// The tests' program plays other parts as well: the programs that the tests talk to.

namespace vex::test {
namespace {

constexpr DWORD HangMs = 700;
constexpr int TextId = 0xFFFF;  // of the text in a message box

WindowHandle HandleOf(const char* szNumber) {
  return static_cast<WindowHandle>(std::atol(szNumber));
}

void Send(Win32Host& host, WindowHandle from, WindowHandle to, const std::string& szText) {
  host.Windows().SendCopyData(from, to, {7, static_cast<uint32_t>(szText.size()), szText.data()});
}

/// Says hello to a window and then gives back all that it is sent; "hang" makes it deaf for a while, "end"
/// ends it.
int Echo(WindowHandle partner) {
  Win32Host host;
  const WindowHandle own = host.Windows().NewWindow();
  host.Windows().ExchangeProcedure(own, std::make_shared<WindowProcedure>([&](const WindowMessage& message) {
                                     if (message.Copy == nullptr) return intptr_t{0};
                                     const std::string szText(
                                         message.Copy->Bytes == nullptr ? "" : message.Copy->Bytes,
                                         message.Copy->Size);
                                     if (szText == "hang") Sleep(HangMs);
                                     if (szText == "end") host.EventLoop().Quit();
                                     Send(host, own, static_cast<WindowHandle>(message.wParam), szText);
                                     return intptr_t{1};
                                   }));
  Send(host, own, partner, "hello");
  host.EventLoop().Run();
  return 0;
}

/// Writes the style that it was started with into a file, late.
int TellStyle(const std::string& szFile) {
  Sleep(HangMs / 4);
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  GetStartupInfoA(&startup);
  return Win32Files().Write(szFile, std::to_string(startup.wShowWindow), nullptr) ? 0 : 1;
}

/// Asks a name service that never answers, and does not wait for it.
int AskInVain() {
  Win32EventLoop loop;
  const auto silent = [](const std::string&, uint32_t&) {
    Sleep(INFINITE);
    return false;
  };
  const ThreadedLookUp lookUp(loop, "tree.local", silent, [](std::optional<uint32_t>) {});
  loop.Pump();
  return 0;
}

/// Waits for the message box with that title, whosever it is, tells what it says, and presses OK if it is
/// asked to.
int ReadBox(const std::string& szTitle, bool boolPress) {
  constexpr int patience = 6000;
  HWND box = nullptr;
  for (int look = 0; look < patience && box == nullptr; ++look) {
    Sleep(10);
    box = FindWindowA("#32770", szTitle.c_str());
    if (box != nullptr && GetDlgItem(box, TextId) == nullptr) box = nullptr;  // still being made
  }
  if (box == nullptr) return 1;
  std::string szText(4096, '\0');
  szText.resize(static_cast<size_t>(
      SendDlgItemMessageA(box, TextId, WM_GETTEXT, szText.size(), reinterpret_cast<LPARAM>(szText.data()))));
  std::cout << szText << std::flush;
  if (boolPress) PostMessageA(box, WM_COMMAND, IDOK, 0);
  return 0;
}

/// Presses OK in every message box of this program, as a person would, unless a test does so itself.
class BoxCloser : public testing::Environment {
 public:
  void SetUp() override {
    m_Thread = std::thread([this] {
      for (; !m_Stop; Sleep(5)) EnumWindows(Press, 0);
    });
  }
  void TearDown() override {
    m_Stop = true;
    m_Thread.join();
  }

 private:
  static BOOL CALLBACK Press(HWND window, LPARAM) {
    char szClass[16] = {};
    DWORD process = 0;
    if (PersonIsAway()) return FALSE;
    GetClassNameA(window, szClass, sizeof szClass);
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId() && std::string(szClass) == "#32770")
      PostMessageA(window, WM_COMMAND, IDOK, 0);
    return TRUE;
  }

  std::atomic<bool> m_Stop = false;
  std::thread m_Thread;
};

}  // namespace
}  // namespace vex::test

int main(int argc, char** argv) {
  const std::string szPart = argc > 1 ? argv[1] : "";
  if (szPart == "echo") return vex::test::Echo(vex::test::HandleOf(argv[2]));
  if (szPart == "style") return vex::test::TellStyle(argv[2]);
  if (szPart == "silent") return vex::test::AskInVain();
  if (szPart == "nothing") return 0;
  if (szPart == "box") return vex::test::ReadBox(argv[2], argc > 3);
  testing::InitGoogleTest(&argc, argv);
  testing::AddGlobalTestEnvironment(new vex::test::BoxCloser);
  return RUN_ALL_TESTS();
}
