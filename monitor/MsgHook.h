#pragma once

#include <cstdint>
#include <functional>

#include "host/Windows.h"

namespace vex {

class HookRecords;

/// Stands before the procedure of one window of this program and sees its messages: before the former
/// procedure, which it can replace, and after it. The shell listens to its form's window with one. A hook
/// that is not Enabled lets everything pass unseen; one that is destroyed unhooks first.
class MsgHook {
 public:
  /// The records outlive the hook.
  explicit MsgHook(HookRecords& records) : m_Records(records) {}
  ~MsgHook() { StopSubclass(); }
  MsgHook(const MsgHook&) = delete;
  MsgHook& operator=(const MsgHook&) = delete;

  [[nodiscard]] bool Enabled() const { return m_Enabled; }
  void Enabled(bool boolEnabled) { m_Enabled = boolEnabled; }
  /// The hooked window, 0 for none.
  [[nodiscard]] WindowHandle hWnd() const { return m_hWnd; }

  /// Hooks the window in place of the one held so far; 0 hooks nothing. Raises error 1001, "Invalid window
  /// handle", for a handle that is no window, and holds on to what it held.
  void StartSubclass(WindowHandle hWnd);
  void StopSubclass();

  /// A handler that sets boolHandled supplies the result, and the former procedure is not called.
  std::function<void(const WindowMessage&, intptr_t& result, bool& boolHandled)> BeforeMessage;
  std::function<void(const WindowMessage&, intptr_t result)> AfterMessage;

 private:
  HookRecords& m_Records;
  WindowHandle m_hWnd = 0;
  bool m_Enabled = true;
};

}  // namespace vex
