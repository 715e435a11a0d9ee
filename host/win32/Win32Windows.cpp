#include "host/win32/Win32Windows.h"

#include <utility>

#include "host/win32/SystemError.h"
#include "host/win32/Win32EventLoop.h"
#include "host/win32/WindowNumber.h"

namespace vex {
namespace {

constexpr char CompanionClass[] = "VexMonitorCompanion";

/// Which object looks after which window of this program.
std::map<HWND, std::pair<Win32Windows*, Win32EventLoop*>>& Keepers() {
  static std::map<HWND, std::pair<Win32Windows*, Win32EventLoop*>> keepers;
  return keepers;
}

/// What a WM_COPYDATA points at, in the system's terms. The pointer of an empty one is never followed.
CopyData CopyDataAt(LPARAM lParam) {
  CopyData copy;
  const auto* const native = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
  if (native == nullptr) return copy;
  copy.Data = static_cast<uint32_t>(native->dwData);
  if (native->cbData == 0 || native->lpData == nullptr) return copy;
  copy.Size = native->cbData;
  copy.Bytes = static_cast<const char*>(native->lpData);
  return copy;
}

/// No exception may leave this: the machine's code stands between here and the handler's caller.
template <intptr_t (Win32Windows::*Handle)(const WindowMessage&)>
LRESULT CALLBACK NativeProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto keeper = Keepers().find(window);
  if (keeper == Keepers().end()) return DefWindowProcA(window, message, wParam, lParam);
  const auto [windows, loop] = keeper->second;
  try {
    const CopyData copy = message == WM_COPYDATA ? CopyDataAt(lParam) : CopyData{};
    return (windows->*Handle)(
        {NumberOf(window), message, wParam, lParam, message == WM_COPYDATA ? &copy : nullptr});
  } catch (...) {
    loop->KeepException();
    return 0;
  }
}

constexpr auto DefaultProcedure = &NativeProcedure<&Win32Windows::HandleByDefault>;
constexpr auto HookedProcedure = &NativeProcedure<&Win32Windows::HandleHooked>;

/// A former procedure of the machine's, as the system holds it.
struct FormerProcedure {
  WNDPROC Procedure = nullptr;
  intptr_t operator()(const WindowMessage& message) const {
    return CallWindowProcA(Procedure, WindowOf(message.hWnd), message.uMsg, message.wParam, message.lParam);
  }
};

void RegisterClassOnce(const char* szClass) {
  WNDCLASSEXA wanted{};
  wanted.cbSize = sizeof wanted;
  if (GetClassInfoExA(GetModuleHandleA(nullptr), szClass, &wanted) != 0) return;
  wanted = {};
  wanted.cbSize = sizeof wanted;
  wanted.lpfnWndProc = DefaultProcedure;
  wanted.hInstance = GetModuleHandleA(nullptr);
  wanted.lpszClassName = szClass;
  if (RegisterClassExA(&wanted) == 0) throw SystemError("Windows.NewWindow", "window class");
}

}  // namespace

Win32Windows::Win32Windows(Win32EventLoop& loop) : m_Loop(loop) {}

Win32Windows::~Win32Windows() {
  while (!m_Own.empty()) DestroyWindow(*m_Own.begin());
}

WindowHandle Win32Windows::NewMainWindow() {
  m_MainWindow = NewWindowOf(MainClass, m_IsPlayer ? MainTitle : "");
  return m_MainWindow;
}

WindowHandle Win32Windows::NewWindow() {
  return NewWindowOf(CompanionClass, "");
}

/// Top-level, so that what the machine tells all programs reaches it, and never shown.
WindowHandle Win32Windows::NewWindowOf(const char* szClass, const char* szTitle) {
  RegisterClassOnce(szClass);
  const HWND window = CreateWindowExA(0, szClass, szTitle, WS_OVERLAPPEDWINDOW, 0, 0, 0, 0, nullptr, nullptr,
                                      GetModuleHandleA(nullptr), nullptr);
  if (window == nullptr) throw SystemError("Windows.NewWindow", "");
  Keepers()[window] = {this, &m_Loop};
  m_Own.insert(NumberOf(window));
  return NumberOf(window);
}

void Win32Windows::DestroyWindow(WindowHandle hWnd) {
  if (m_Own.erase(hWnd) == 0) return;
  // A window that goes tells nobody: whoever hooked it may have gone before it.
  m_Hooked.erase(hWnd);
  ::DestroyWindow(WindowOf(hWnd));
  Keepers().erase(WindowOf(hWnd));
  if (hWnd == m_MainWindow) m_MainWindow = 0;
}

WindowProcedureReference Win32Windows::ExchangeProcedure(WindowHandle hWnd,
                                                         WindowProcedureReference procedure) {
  const HWND window = WindowOf(hWnd);
  WindowProcedureReference former;
  if (const auto hooked = m_Hooked.find(hWnd); hooked != m_Hooked.end()) former = hooked->second;
  const auto* const native = procedure ? procedure->target<FormerProcedure>() : nullptr;
  Keepers()[window] = {this, &m_Loop};
  const auto next = native != nullptr ? native->Procedure : HookedProcedure;
  const LONG_PTR before = SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(next));
  if (!former) former = std::make_shared<WindowProcedure>(FormerProcedure{reinterpret_cast<WNDPROC>(before)});
  if (native != nullptr) {
    m_Hooked.erase(hWnd);
  } else {
    m_Hooked[hWnd] = std::move(procedure);
  }
  return former;
}

intptr_t Win32Windows::CallProcedure(const WindowProcedureReference& procedure,
                                     const WindowMessage& message) {
  return procedure && *procedure ? (*procedure)(message) : 0;
}

bool Win32Windows::Exists(WindowHandle hWnd) const {
  return hWnd != 0 && IsWindow(WindowOf(hWnd)) != 0;
}

/// To a window of this thread at once, as the machine would; to others without waiting.
SendResult Win32Windows::SendCopyData(WindowHandle sender, WindowHandle target, const CopyData& copy) {
  if (!Exists(target)) return SendResult::Gone;
  if (GetWindowThreadProcessId(WindowOf(target), nullptr) != GetCurrentThreadId()) {
    m_Sender.Send(sender, target, copy);
    return SendResult::Sent;
  }
  COPYDATASTRUCT native{};
  native.dwData = copy.Data;
  native.cbData = copy.Size;
  native.lpData = const_cast<char*>(copy.Bytes);
  SendMessageA(WindowOf(target), WM_COPYDATA, reinterpret_cast<WPARAM>(WindowOf(sender)),
               reinterpret_cast<LPARAM>(&native));
  return SendResult::Sent;
}

void Win32Windows::BecomePlayer() {
  m_IsPlayer = true;
  if (m_MainWindow != 0) SetWindowTextA(WindowOf(m_MainWindow), MainTitle);
}

intptr_t Win32Windows::HandleHooked(const WindowMessage& message) {
  const auto hooked = m_Hooked.find(message.hWnd);
  if (hooked == m_Hooked.end()) return HandleByDefault(message);
  const WindowProcedureReference procedure = hooked->second;
  return CallProcedure(procedure, message);
}

intptr_t Win32Windows::HandleByDefault(const WindowMessage& message) {
  const bool boolTerminates = message.hWnd == m_MainWindow && m_OnTerminate;
  switch (message.uMsg) {
    case WM_TIMECHANGE:
      m_Loop.ClockWasSet();
      break;
    case WM_CLOSE:
      if (!boolTerminates) break;
      Terminate(1);
      return 0;
    case WM_ENDSESSION:
      if (!boolTerminates || message.wParam == 0) break;
      Terminate(2);
      return 0;
    default:
      break;
  }
  return DefWindowProcA(WindowOf(message.hWnd), message.uMsg, message.wParam, message.lParam);
}

void Win32Windows::Terminate(int32_t lTimes) {
  const auto handler = m_OnTerminate;
  for (int32_t lTime = 0; lTime < lTimes; ++lTime) handler();
}

}  // namespace vex
