#include "monitor/MsgHook.h"

#include "basic/Error.h"
#include "monitor/Msg.h"

namespace vex {

namespace {

constexpr int32_t ErrorInvalidWindow = 1001;

}  // namespace

void MsgHook::StartSubclass(WindowHandle hWnd) {
  if (hWnd != 0 && !m_Records.IsWindow(hWnd)) {
    throw Error(ErrorInvalidWindow, "MsgHook.StartSubclass", "Invalid window handle");
  }
  if (m_hWnd != 0) StopSubclass();
  m_hWnd = hWnd;
  if (m_hWnd != 0) m_Records.Add(m_hWnd, *this);
}

void MsgHook::StopSubclass() {
  if (m_hWnd == 0) return;
  m_Records.Remove(*this);
  m_hWnd = 0;
}

}  // namespace vex
