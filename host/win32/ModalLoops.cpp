#include "host/win32/ModalLoops.h"

#include <algorithm>
#include <utility>

#include "host/win32/SystemError.h"
// Behind the others: it wants the machine's words.
#include <mmsystem.h>

namespace vex {
namespace {

constexpr char ClassName[] = "VexMonitorModalLoops";
constexpr UINT AskedMessage = WM_APP + 1;

/// The one whose lookout stands on this thread, or null.
ModalLoops*& Noticing() {
  thread_local ModalLoops* noticing = nullptr;
  return noticing;
}

void RegisterClassOnce(WNDPROC procedure) {
  WNDCLASSEXA wanted{};
  wanted.cbSize = sizeof wanted;
  if (GetClassInfoExA(GetModuleHandleA(nullptr), ClassName, &wanted) != 0) return;
  wanted = {};
  wanted.cbSize = sizeof wanted;
  wanted.lpfnWndProc = procedure;
  wanted.hInstance = GetModuleHandleA(nullptr);
  wanted.lpszClassName = ClassName;
  RegisterClassExA(&wanted);
}

}  // namespace

ModalLoops::ModalLoops(std::function<void()> turn) : m_Turn(std::move(turn)) {
  RegisterClassOnce(&ModalLoops::Procedure);
  m_Window = CreateWindowExA(0, ClassName, "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                             GetModuleHandleA(nullptr), nullptr);
  if (m_Window == nullptr) throw SystemError("EventLoop", "");
  SetWindowLongPtrA(m_Window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

ModalLoops::~ModalLoops() {
  EndAll();
  DestroyWindow(m_Window);
}

void ModalLoops::Begin() {
  ++m_Depth;
  StartOrStop();
}

void ModalLoops::End() {
  m_Depth = std::max(m_Depth - 1, 0);
  StartOrStop();
}

void ModalLoops::EndAll() {
  m_Depth = 0;
  StartOrStop();
}

void ModalLoops::StartOrStop() {
  if (m_Depth > 0 && m_Timer == 0) {
    m_Timer = timeSetEvent(1, 0, &ModalLoops::Beat, reinterpret_cast<DWORD_PTR>(this),
                           TIME_PERIODIC | TIME_CALLBACK_FUNCTION | TIME_KILL_SYNCHRONOUS);
  } else if (m_Depth == 0 && m_Timer != 0) {
    timeKillEvent(std::exchange(m_Timer, 0));
  }
}

/// Runs on a thread of the machine's.
void CALLBACK ModalLoops::Beat(UINT /*timer*/, UINT /*message*/, DWORD_PTR self, DWORD_PTR, DWORD_PTR) {
  auto& loops = *reinterpret_cast<ModalLoops*>(self);
  if (loops.m_Asked.exchange(true)) return;
  if (PostMessageA(loops.m_Window, AskedMessage, 0, 0) == FALSE) loops.m_Asked = false;
}

LRESULT CALLBACK ModalLoops::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* const self = reinterpret_cast<ModalLoops*>(GetWindowLongPtrA(window, GWLP_USERDATA));
  if (message != AskedMessage || self == nullptr) return DefWindowProcA(window, message, wParam, lParam);
  self->Turn();
  return 0;
}

/// Handlers may pump, and then the program's own loop has had the thread; this one of the machine's goes on
/// behind them all the same.
void ModalLoops::Turn() {
  m_Asked = false;
  if (m_Depth == 0) return;
  const int depth = m_Depth;
  m_Turn();
  m_Depth = depth;
  StartOrStop();
}

LRESULT CALLBACK ModalLoops::LookAt(int code, WPARAM wParam, LPARAM lParam) {
  ModalLoops* const noticing = Noticing();
  if (code == HC_ACTION && noticing != nullptr) {
    switch (reinterpret_cast<const CWPSTRUCT*>(lParam)->message) {
      case WM_ENTERSIZEMOVE:
      case WM_ENTERMENULOOP:
        noticing->Begin();
        break;
      case WM_EXITSIZEMOVE:
      case WM_EXITMENULOOP:
        noticing->End();
        break;
      default:
        break;
    }
  }
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

ModalLoops::Lookout::Lookout(ModalLoops& loops)
    : m_Before(std::exchange(Noticing(), &loops)),
      m_Hook(SetWindowsHookExA(WH_CALLWNDPROC, &ModalLoops::LookAt, nullptr, GetCurrentThreadId())) {}

ModalLoops::Lookout::~Lookout() {
  if (m_Hook != nullptr) UnhookWindowsHookEx(m_Hook);
  Noticing() = m_Before;
}

}  // namespace vex
