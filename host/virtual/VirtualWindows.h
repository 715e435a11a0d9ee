#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/Windows.h"

namespace vex {

/// The windows of a virtual machine: those of the program under test, and windows of other programs, which
/// stay until they are destroyed and write down what they are sent.
class VirtualWindows final : public vex::Windows {
 public:
  /// One WM_COPYDATA as another program's window got it.
  struct Message {
    WindowHandle Sender = 0;
    uint32_t Data = 0;
    std::string Bytes;  ///< with its zero byte, as sent
  };

  [[nodiscard]] WindowHandle NewMainWindow() override;
  [[nodiscard]] WindowHandle NewWindow() override;
  void DestroyWindow(WindowHandle hWnd) override;
  WindowProcedureReference ExchangeProcedure(WindowHandle hWnd, WindowProcedureReference procedure) override;
  intptr_t CallProcedure(const WindowProcedureReference& procedure, const WindowMessage& message) override;
  [[nodiscard]] bool Exists(WindowHandle hWnd) const override;
  SendResult SendCopyData(WindowHandle sender, WindowHandle target, const CopyData& copy) override;
  /// Always false: what is sent is there at once.
  [[nodiscard]] bool Unsent(WindowHandle /*target*/) const override { return false; }

  /// The window that NewMainWindow made last, 0 for none.
  [[nodiscard]] WindowHandle MainWindow() const { return m_MainWindow; }
  /// Any message to a window of this program; 0 where there is none.
  intptr_t Send(const WindowMessage& message);

  /// A window of another program, with a handle of its own choice where one is given.
  WindowHandle NewForeignWindow(std::optional<WindowHandle> handle = std::nullopt);
  /// What the window got so far, oldest first; empty for a window that is none of NewForeignWindow's.
  [[nodiscard]] const std::vector<Message>& Received(WindowHandle hWnd) const;
  void ForgetReceived(WindowHandle hWnd);
  /// Sends to the window end so, and it gets nothing; Sent makes it take messages again.
  void Answer(WindowHandle hWnd, SendResult result);
  /// The most bytes that one message carries; there is no limit at first.
  void LongestMessage(size_t bytes) { m_LongestMessage = bytes; }
  /// Called for each message that a foreign window gets.
  void Sent(std::function<void(WindowHandle, const Message&)> handler) { m_Sent = std::move(handler); }
  /// Makes NewMainWindow fail with this code of the system; 0 lets it succeed.
  void FailNewWindow(int32_t lCode) { m_NewWindowCode = lCode; }

 private:
  struct ForeignWindow {
    bool Present = true;
    SendResult Result = SendResult::Sent;
    std::vector<Message> Received;
  };

  [[nodiscard]] WindowHandle FreeHandle();

  std::map<WindowHandle, WindowProcedureReference> m_Own;
  std::map<WindowHandle, ForeignWindow> m_Foreign;
  WindowHandle m_MainWindow = 0;
  WindowHandle m_LastHandle = 1000;
  size_t m_LongestMessage = SIZE_MAX;
  int32_t m_NewWindowCode = 0;
  std::function<void(WindowHandle, const Message&)> m_Sent;
};

}  // namespace vex
