#pragma once

#include <memory>

#include "host/Windows.h"

namespace vex {

/// Sends WM_COPYDATA to the windows of other programs on a thread of its own, in order: the machine's send
/// returns only when the receiver has handled the message, and a tray program that hangs must not stop the
/// show. What a receiver does not take waits here, at most 60000 bytes for each, the oldest messages dropped
/// first; a receiver that does not answer for seconds loses the message that it was offered.
class CopyDataSender {
 public:
  CopyDataSender() = default;
  /// Gives what is left a second to be taken.
  ~CopyDataSender();
  CopyDataSender(const CopyDataSender&) = delete;
  CopyDataSender& operator=(const CopyDataSender&) = delete;

  void Send(WindowHandle sender, WindowHandle target, const CopyData& copy);
  [[nodiscard]] bool Unsent(WindowHandle target) const;

 private:
  struct Outbox;

  std::shared_ptr<Outbox> m_Outbox;  // made with its thread when the first message comes
};

}  // namespace vex
