#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>

#include "host/Windows.h"
#include "host/win32/CopyDataSender.h"

namespace vex {

class Win32EventLoop;

/// The machine's own windows and WM_COPYDATA. The main form is a hidden top-level window of class
/// "VexMonitor"; its title, by which other programs find it, is "frmMonitor" from the moment on at which the
/// window is there and this program is the running player. Procedures are exchanged the machine's way: a
/// window with a procedure of this program's has one native procedure put before its former one, and calling
/// that former one goes through CallWindowProc.
///
/// The procedure that a window is made with does what the machine asks of every program: it hears that the
/// clock has been set, that the user logs off, and that the window is to be closed.
class Win32Windows : public Windows {
 public:
  static constexpr char MainClass[] = "VexMonitor";
  static constexpr char MainTitle[] = "frmMonitor";

  explicit Win32Windows(Win32EventLoop& loop);
  ~Win32Windows() override;
  Win32Windows(const Win32Windows&) = delete;
  Win32Windows& operator=(const Win32Windows&) = delete;

  [[nodiscard]] WindowHandle NewMainWindow() override;
  [[nodiscard]] WindowHandle NewWindow() override;
  void DestroyWindow(WindowHandle hWnd) override;
  WindowProcedureReference ExchangeProcedure(WindowHandle hWnd, WindowProcedureReference procedure) override;
  intptr_t CallProcedure(const WindowProcedureReference& procedure, const WindowMessage& message) override;
  [[nodiscard]] bool Exists(WindowHandle hWnd) const override;
  SendResult SendCopyData(WindowHandle sender, WindowHandle target, const CopyData& copy) override;
  [[nodiscard]] bool Unsent(WindowHandle target) const override { return m_Sender.Unsent(target); }

  /// This program is the running player: from now on others find its main window.
  void BecomePlayer();
  /// Runs when the machine asks the program to end; twice when it will not ask again.
  void OnTerminate(std::function<void()> handler) { m_OnTerminate = std::move(handler); }

  // For the native procedures.
  intptr_t HandleByDefault(const WindowMessage& message);
  intptr_t HandleHooked(const WindowMessage& message);

 private:
  WindowHandle NewWindowOf(const char* szClass, const char* szTitle);
  void Terminate(int32_t lTimes);

  Win32EventLoop& m_Loop;
  CopyDataSender m_Sender;
  std::set<WindowHandle> m_Own;
  std::map<WindowHandle, WindowProcedureReference> m_Hooked;
  std::function<void()> m_OnTerminate;
  WindowHandle m_MainWindow = 0;
  bool m_IsPlayer = false;
};

}  // namespace vex
