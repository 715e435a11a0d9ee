#include "host/virtual/VirtualWindows.h"

#include <utility>

#include "basic/Error.h"

namespace vex {

WindowHandle VirtualWindows::FreeHandle() {
  do ++m_LastHandle;
  while (m_Own.contains(m_LastHandle) || m_Foreign.contains(m_LastHandle));
  return m_LastHandle;
}

WindowHandle VirtualWindows::NewMainWindow() {
  m_MainWindow = NewWindow();
  return m_MainWindow;
}

WindowHandle VirtualWindows::NewWindow() {
  if (m_NewWindowCode != 0) throw Error(m_NewWindowCode, "Windows.NewWindow", "Cannot make the window");
  const WindowHandle hWnd = FreeHandle();
  m_Own[hWnd] = std::make_shared<WindowProcedure>([](const WindowMessage&) { return intptr_t{0}; });
  return hWnd;
}

void VirtualWindows::DestroyWindow(WindowHandle hWnd) {
  m_Own.erase(hWnd);
  if (hWnd == m_MainWindow) m_MainWindow = 0;
  if (const auto foreign = m_Foreign.find(hWnd); foreign != m_Foreign.end()) foreign->second.Present = false;
}

WindowProcedureReference VirtualWindows::ExchangeProcedure(WindowHandle hWnd,
                                                           WindowProcedureReference procedure) {
  const auto window = m_Own.find(hWnd);
  if (window == m_Own.end()) return nullptr;
  return std::exchange(window->second, std::move(procedure));
}

intptr_t VirtualWindows::CallProcedure(const WindowProcedureReference& procedure,
                                       const WindowMessage& message) {
  // The copy keeps a procedure alive that takes itself off its window while it runs.
  const WindowProcedureReference held = procedure;
  return held && *held ? (*held)(message) : 0;
}

bool VirtualWindows::Exists(WindowHandle hWnd) const {
  if (m_Own.contains(hWnd)) return true;
  const auto foreign = m_Foreign.find(hWnd);
  return foreign != m_Foreign.end() && foreign->second.Present;
}

intptr_t VirtualWindows::Send(const WindowMessage& message) {
  const auto window = m_Own.find(message.hWnd);
  return window == m_Own.end() ? 0 : CallProcedure(window->second, message);
}

SendResult VirtualWindows::SendCopyData(WindowHandle sender, WindowHandle target, const CopyData& copy) {
  if (!Exists(target)) return SendResult::Gone;
  if (copy.Size > m_LongestMessage) return SendResult::TooLong;
  const auto foreign = m_Foreign.find(target);
  if (foreign == m_Foreign.end()) {
    // The sender stands in wParam as the platform widens a handle: by its sign.
    Send({target, WM_COPYDATA, static_cast<uintptr_t>(static_cast<intptr_t>(sender)), 0, &copy});
    return SendResult::Sent;
  }
  if (foreign->second.Result != SendResult::Sent) return foreign->second.Result;
  Message message{sender, copy.Data, copy.Size == 0 ? "" : std::string(copy.Bytes, copy.Size)};
  foreign->second.Received.push_back(message);
  if (m_Sent) m_Sent(target, message);
  return SendResult::Sent;
}

WindowHandle VirtualWindows::NewForeignWindow(std::optional<WindowHandle> handle) {
  const WindowHandle hWnd = handle ? *handle : FreeHandle();
  m_Foreign[hWnd].Present = true;
  return hWnd;
}

const std::vector<VirtualWindows::Message>& VirtualWindows::Received(WindowHandle hWnd) const {
  static const std::vector<Message> none;
  const auto foreign = m_Foreign.find(hWnd);
  return foreign == m_Foreign.end() ? none : foreign->second.Received;
}

void VirtualWindows::ForgetReceived(WindowHandle hWnd) {
  m_Foreign.at(hWnd).Received.clear();
}

void VirtualWindows::Answer(WindowHandle hWnd, SendResult result) {
  m_Foreign.at(hWnd).Result = result;
}

}  // namespace vex
