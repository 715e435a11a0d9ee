#include "components/com/ControlWindow.h"

#include <utility>

#include "components/com/ComFailure.h"

namespace vex {
namespace {

constexpr char ClassName[] = "VexMonitorVideo";
// The inside before anybody has sized the window, in pixels.
constexpr int FirstWidth = 640;
constexpr int FirstHeight = 480;

void RegisterClassOnce(WNDPROC procedure) {
  WNDCLASSEXA wanted{};
  wanted.cbSize = sizeof wanted;
  if (GetClassInfoExA(GetModuleHandleA(nullptr), ClassName, &wanted) != 0) return;
  wanted = {};
  wanted.cbSize = sizeof wanted;
  wanted.lpfnWndProc = procedure;
  wanted.hInstance = GetModuleHandleA(nullptr);
  wanted.hCursor = LoadCursorA(nullptr, IDC_ARROW);
  wanted.hbrBackground = static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH));
  wanted.lpszClassName = ClassName;
  RegisterClassExA(&wanted);
}

}  // namespace

ControlWindow::ControlWindow() {
  RegisterClassOnce(&ControlWindow::Procedure);
  RECT outside{0, 0, FirstWidth, FirstHeight};
  constexpr DWORD style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
  AdjustWindowRect(&outside, style, FALSE);
  m_Window =
      CreateWindowExA(0, ClassName, "", style, 0, 0, outside.right - outside.left,
                      outside.bottom - outside.top, nullptr, nullptr, GetModuleHandleA(nullptr), nullptr);
  if (m_Window == nullptr)
    throw ComError(HRESULT_FROM_WIN32(GetLastError()), "frmMediaPlayer", "The video window cannot be made");
  SetWindowLongPtrA(m_Window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

ControlWindow::~ControlWindow() {
  MayClose = nullptr;
  Resized = nullptr;
  Unload();
}

void ControlWindow::Seat(const ComPointer<IUnknown>& control) {
  if (m_Window != nullptr) m_Seat.Take(control, m_Window);
}

void ControlWindow::Place(int32_t lLeftTwips, int32_t lTopTwips) {
  SetWindowPos(m_Window, nullptr, lLeftTwips / TwipsPerPixel, lTopTwips / TwipsPerPixel, 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void ControlWindow::Show() {
  if (m_Window == nullptr) return;
  TellSize();
  ShowWindow(m_Window, IsIconic(m_Window) != FALSE ? SW_RESTORE : SW_SHOW);
}

void ControlWindow::Hide() {
  ShowWindow(m_Window, SW_HIDE);
}

bool ControlWindow::Visible() const {
  return IsWindowVisible(m_Window) != FALSE;
}

void ControlWindow::Unload() {
  if (m_Window != nullptr) DestroyWindow(m_Window);
}

void ControlWindow::Caption(const std::string& szCaption) {
  SetWindowTextA(m_Window, szCaption.c_str());
}

void ControlWindow::MoveControl(int32_t lLeft, int32_t lTop, int32_t lWidth, int32_t lHeight) {
  m_Seat.Move({lLeft, lTop, lLeft + lWidth, lTop + lHeight});
}

void ControlWindow::TellSize() {
  RECT inside{};
  if (Resized && GetClientRect(m_Window, &inside) != FALSE) Resized(inside.right, inside.bottom);
}

/// No exception may leave this: the machine's code stands between here and whoever could catch it.
LRESULT CALLBACK ControlWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  auto* const self = reinterpret_cast<ControlWindow*>(GetWindowLongPtrA(window, GWLP_USERDATA));
  try {
    if (self != nullptr) return self->Handle(message, wParam, lParam);
  } catch (...) {
    return 0;
  }
  return DefWindowProcA(window, message, wParam, lParam);
}

LRESULT ControlWindow::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  const HWND window = m_Window;
  switch (message) {
    case WM_SIZE:
      TellSize();
      return 0;
    case WM_CLOSE:
      if (MayClose && MayClose()) Unload();
      return 0;
    case WM_DESTROY:
      m_Seat.Leave();
      SetWindowLongPtrA(window, GWLP_USERDATA, 0);
      m_Window = nullptr;
      return 0;
    default:
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

}  // namespace vex
