#pragma once

#include "host/win32/SystemHeaders.h"

namespace vex {

/// Window handles have 32 bits that count on every Windows, so that programs of both widths name the same
/// window by the same number.
[[nodiscard]] inline HWND WindowOf(WindowHandle hWnd) {
  return reinterpret_cast<HWND>(static_cast<intptr_t>(hWnd));
}
[[nodiscard]] inline WindowHandle NumberOf(HWND window) {
  return static_cast<WindowHandle>(reinterpret_cast<intptr_t>(window));
}

}  // namespace vex
