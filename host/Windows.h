#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace vex {

/// A window as other programs name it: a positive 32-bit number, 0 for none.
using WindowHandle = int32_t;

/// The message that carries a block of bytes between programs (winuser.h, WM_COPYDATA).
constexpr uint32_t WM_COPYDATA = 74;

/// What a WM_COPYDATA points at: three fields as the sender gave them. Bytes may be null when Size is 0
/// and is never read then. Valid only while the message is handled.
struct CopyData {
  uint32_t Data = 0;
  uint32_t Size = 0;
  const char* Bytes = nullptr;
};

/// One message on its way through a window's procedures. Copy is set for WM_COPYDATA, whose wParam is the
/// sender's window.
struct WindowMessage {
  WindowHandle hWnd = 0;
  uint32_t uMsg = 0;
  uintptr_t wParam = 0;
  intptr_t lParam = 0;
  const CopyData* Copy = nullptr;
};

using WindowProcedure = std::function<intptr_t(const WindowMessage&)>;
/// Shared, so that a former procedure can be kept and called; empty for none.
using WindowProcedureReference = std::shared_ptr<WindowProcedure>;

/// How a send ended.
enum class SendResult {
  Sent,     ///< handled, or on its way in order
  Gone,     ///< no such window (any more)
  TooLong,  ///< more than the channel carries in one message
};

/// The windows of the message channel: hidden ones of this program and the handles of others. A procedure
/// belongs to exactly one window and runs on the loop's thread.
class Windows {
 public:
  virtual ~Windows() = default;

  /// Makes the program's hidden main window with a procedure that does nothing, and lets other programs
  /// find it. Raises Error with the system's code when it cannot be made.
  [[nodiscard]] virtual WindowHandle NewMainWindow() = 0;
  /// The same for a companion program: others reach the window only by its handle.
  [[nodiscard]] virtual WindowHandle NewWindow() = 0;
  virtual void DestroyWindow(WindowHandle hWnd) = 0;

  /// Puts a procedure before a window of this program and returns the former one.
  virtual WindowProcedureReference ExchangeProcedure(WindowHandle hWnd,
                                                     WindowProcedureReference procedure) = 0;
  /// Calls a former procedure.
  virtual intptr_t CallProcedure(const WindowProcedureReference& procedure, const WindowMessage& message) = 0;

  /// True for a window of this or another program that exists now.
  [[nodiscard]] virtual bool Exists(WindowHandle hWnd) const = 0;

  /// Sends a WM_COPYDATA. Never waits for a receiver in another program on hosts where that can be helped.
  virtual SendResult SendCopyData(WindowHandle sender, WindowHandle target, const CopyData& copy) = 0;
  /// Whether messages of other programs to this window are taken up. Those that are not wait, in order, with
  /// the machine and with their senders, so a flood costs this program no memory. At first they are; on a
  /// host that cannot leave them waiting they always are.
  virtual void TakeMessages(WindowHandle /*hWnd*/, bool /*boolTake*/) {}
  /// True while something sent to that window is kept in this program because the receiver has no room; it
  /// goes out as the loop runs, and a program that ended now would lose it.
  [[nodiscard]] virtual bool Unsent(WindowHandle target) const = 0;
};

}  // namespace vex
