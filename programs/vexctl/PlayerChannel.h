#pragma once

#include <cstdint>
#include <string>

#include "host/Host.h"
#include "host/Windows.h"

namespace vex {

/// The way from this program to the running player: a window of our own, and messages to the player's.
class PlayerChannel {
 public:
  explicit PlayerChannel(Host& host);
  ~PlayerChannel();
  PlayerChannel(const PlayerChannel&) = delete;
  PlayerChannel& operator=(const PlayerChannel&) = delete;

  /// The running player's window; raises CommandFailure when none runs.
  [[nodiscard]] WindowHandle Player() const;
  [[nodiscard]] WindowHandle Own() const { return m_Window; }
  /// Sends one message and sees it on its way; raises CommandFailure when it cannot get there.
  void Send(int32_t lMessageType, const std::string& szText);

 private:
  void WaitUntilSent(WindowHandle player);

  Host& m_Host;
  WindowHandle m_Window;
};

}  // namespace vex
