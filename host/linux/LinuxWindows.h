#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/Windows.h"
#include "host/linux/CopyDataWire.h"
#include "host/linux/Descriptor.h"
#include "host/linux/LinuxEventLoop.h"
#include "host/linux/RuntimeFolder.h"
#include "host/linux/UnsentMessages.h"

namespace vex {

/// The message channel over Unix datagram sockets. A window is a bound socket of the runtime folder, named by
/// its handle, and a procedure; it exists when its socket accepts, so the window of a program that was killed
/// is gone without anybody cleaning up. A message is one datagram. Nobody waits for a receiver: what its
/// socket has no room for is kept here in order and goes out when the kernel tells of room. That is for a
/// few receivers; one more without room counts as gone.
///
/// The main window's handle stands in the file `player` from the moment on at which both the window is there
/// and this program is the running player.
class LinuxWindows : public Windows {
 public:
  /// Datagrams taken in one turn of the loop, and no more once they have so many bytes: a sender that never
  /// stops, and one with long messages, does not stop the show. Nor are more of those kept sent in one.
  static constexpr int MostPerTurn = 16;
  static constexpr size_t MostBytesPerTurn = 1 << 18;
  /// Receivers without room for which messages are kept: each takes a descriptor.
  static constexpr size_t MostReceivers = 32;

  LinuxWindows(LinuxEventLoop& loop, RuntimeFolder folder);
  ~LinuxWindows() override;

  [[nodiscard]] WindowHandle NewMainWindow() override;
  [[nodiscard]] WindowHandle NewWindow() override;
  void DestroyWindow(WindowHandle hWnd) override;
  WindowProcedureReference ExchangeProcedure(WindowHandle hWnd, WindowProcedureReference procedure) override;
  intptr_t CallProcedure(const WindowProcedureReference& procedure, const WindowMessage& message) override;
  [[nodiscard]] bool Exists(WindowHandle hWnd) const override;
  SendResult SendCopyData(WindowHandle sender, WindowHandle target, const CopyData& copy) override;
  void TakeMessages(WindowHandle hWnd, bool boolTake) override;
  [[nodiscard]] bool Unsent(WindowHandle target) const override { return m_Receivers.contains(target); }

  /// This program is the running player: from now on others find its main window.
  void BecomePlayer();
  /// Where handles for new windows come from; random numbers unless told otherwise.
  void HandleSource(std::function<WindowHandle()> source) { m_NextHandle = std::move(source); }

 private:
  struct Window {
    Descriptor Socket;
    WindowProcedureReference Procedure;
    std::unique_ptr<Watch> Incoming;  // none while messages are not taken up
  };
  /// A receiver without room: a socket connected to it, for the kernel tells of room only by such a one.
  struct Receiver {
    Descriptor Socket;
    UnsentMessages Messages;
    std::unique_ptr<Watch> Room;
  };

  bool Bind(const Descriptor& socket, WindowHandle hWnd) const;
  void RemoveLeftOvers() const;
  void WritePlayerFile() const;
  void RemovePlayerFile() const;
  void Receive(WindowHandle hWnd);
  bool ReceiveOne(WindowHandle hWnd);
  [[nodiscard]] size_t NextDatagram(int socket);
  void Deliver(WindowHandle hWnd, const ReceivedCopyData& received);
  [[nodiscard]] Descriptor Connect(WindowHandle hWnd) const;
  SendResult Keep(WindowHandle sender, WindowHandle target, const CopyData& copy, Descriptor socket);
  void SendKept(WindowHandle target);

  LinuxEventLoop& m_Loop;
  RuntimeFolder m_Folder;
  std::function<WindowHandle()> m_NextHandle;
  std::map<WindowHandle, Window> m_Windows;
  std::map<WindowHandle, Receiver> m_Receivers;
  WindowHandle m_MainWindow = 0;
  bool m_IsPlayer = false;
  std::vector<uint8_t> m_Buffer;
  uint64_t m_TurnOfBudget = 0;
  int m_TakenThisTurn = 0;
  size_t m_BytesThisTurn = 0;
};

}  // namespace vex
