#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/Windows.h"
#include "monitor/Queue.h"
#include "monitor/VexMessage.h"

namespace vex {

class MsgHook;

/// The wire between the programs of the suite. A message is one WM_COPYDATA whose payload is two decimal
/// digits, the type, and the text right behind them:
///
///     dwData 3 | cbData 8 | "09(...)\0"
///
/// Receiving only copies and queues; what a message asks for is done later, outside the sender's call.

/// The dwData of every message sent; nobody looks at it on receipt.
constexpr uint32_t VexMessageData = 3;

/// Exactly two digits; any type outside 1 to 99 becomes "00".
[[nodiscard]] std::string MessageTypeText(int32_t lMessageType);

/// Sends one message. Raises ErrorInvalidCall, source "Msg.SendVexMessage", for a message that is longer
/// than the channel carries; false when the target is gone.
bool SendVexMessage(Windows& windows, WindowHandle senderHwnd, WindowHandle targetHwnd, int32_t lMessageType,
                    const std::string& szText);

/// Appends the message to the queue. A message without copy data counts as an empty one.
void ReceiveVexMessage(uintptr_t wParam, const CopyData* copy, Queue<VexMessage>& queue);
/// The payload, cut before its first zero byte.
[[nodiscard]] std::string CopyDataToString(const CopyData* copy);
/// The number that the first two characters begin with, 0 when there is none.
[[nodiscard]] int32_t MessageTypeOf(std::string_view szMessage);
/// Everything behind the first two characters.
[[nodiscard]] std::string MessageTextOf(std::string_view szMessage);

/// Who hooks which window: one record for each hooked window with its former procedure. All hooked windows
/// share one procedure, which finds the record and lets the hook see the message before and after the
/// former procedure. Outlives its hooks.
class HookRecords {
 public:
  explicit HookRecords(Windows& windows);
  /// Hooks that are left get no messages any more.
  ~HookRecords();
  HookRecords(const HookRecords&) = delete;
  HookRecords& operator=(const HookRecords&) = delete;

  [[nodiscard]] bool IsWindow(WindowHandle hWnd) const { return m_Windows.Exists(hWnd); }
  /// Puts the shared procedure before the window.
  void Add(WindowHandle hWnd, MsgHook& hook);
  /// Gives the window its former procedure back; does nothing for a hook without a record.
  void Remove(const MsgHook& hook);
  [[nodiscard]] int32_t Count() const { return static_cast<int32_t>(m_Records.size()); }

 private:
  struct Record {
    WindowHandle hWnd;
    WindowProcedureReference Previous;
    MsgHook* Hook;
  };

  [[nodiscard]] const Record* Find(WindowHandle hWnd) const;
  [[nodiscard]] bool Holds(WindowHandle hWnd, const MsgHook* hook) const;
  intptr_t WindowProcedure(const WindowMessage& message);

  Windows& m_Windows;
  WindowProcedureReference m_Procedure;
  std::vector<Record> m_Records;
};

}  // namespace vex
