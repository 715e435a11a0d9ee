#pragma once

#include <cstdint>
#include <string>

#include "host/Windows.h"

namespace vex {

/// The codes that stand in front of a message between the programs of the suite.
enum VexMessageType : int32_t {
  MessageShutdown = 1,          ///< to the player: end at once
  MessageTrayWindow = 2,        ///< to the player: the sender is the tray
  MessageCurrentShow = 3,       ///< to the tray
  MessageNextShow = 4,          ///< to the tray
  MessageReloadSchedules = 5,   ///< to the player
  MessageNetworkLink = 6,       ///< to the player: "ON" or anything else
  MessageStatus = 7,            ///< to the tray: status lines
  MessageGracefulShutdown = 8,  ///< to the player
  MessageShowOnDemand = 9,      ///< to the player: a monitored show event, or empty
  MessageInitialized = 10,      ///< to the tray, once
  MessageLeaveNoSchedule = 11,  ///< to the player
};

/// One message as it was received: its type code, the window that sent it and the text behind the code.
/// The values are as they came; a type that nobody knows is ignored when the message is handled.
class VexMessage {
 public:
  [[nodiscard]] int32_t MessageType() const { return m_MessageType; }
  void MessageType(int32_t lMessageType) { m_MessageType = lMessageType; }
  [[nodiscard]] WindowHandle SenderHwnd() const { return m_SenderHwnd; }
  void SenderHwnd(WindowHandle hWnd) { m_SenderHwnd = hWnd; }
  [[nodiscard]] const std::string& Text() const { return m_Text; }
  void Text(std::string szText) { m_Text = std::move(szText); }

 private:
  int32_t m_MessageType = 0;
  WindowHandle m_SenderHwnd = 0;
  std::string m_Text;
};

}  // namespace vex
