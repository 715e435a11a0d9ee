#include "programs/vexctl/PlayerChannel.h"

#include "monitor/Msg.h"
#include "programs/vexctl/Command.h"

namespace vex {

PlayerChannel::PlayerChannel(Host& host) : m_Host(host), m_Window(host.Windows().NewWindow()) {}

PlayerChannel::~PlayerChannel() {
  m_Host.Windows().DestroyWindow(m_Window);
}

WindowHandle PlayerChannel::Player() const {
  const WindowHandle player = m_Host.PlayerFinder().FindPlayer();
  if (player == 0) {
    throw CommandFailure(ExitCannot, m_Host.Places().NoPlayer);
  }
  return player;
}

void PlayerChannel::Send(int32_t lMessageType, const std::string& szText) {
  const WindowHandle player = Player();
  if (!SendVexMessage(m_Host.Windows(), m_Window, player, lMessageType, szText)) {
    throw CommandFailure(ExitCannot, "the player has just ended");
  }
  WaitUntilSent(player);
}

// A player that is stopped takes nothing for a while; what it has not taken would go with this program.
void PlayerChannel::WaitUntilSent(WindowHandle player) {
  constexpr int32_t patienceMs = 5000;
  constexpr int32_t lookMs = 10;
  if (!m_Host.Windows().Unsent(player)) return;
  EventLoop& loop = m_Host.EventLoop();
  int32_t lWaitedMs = 0;
  const auto timer = loop.NewTimer(TimerOrder::Component);
  timer->Interval(lookMs);
  timer->Tick([&] {
    lWaitedMs += lookMs;
    if (!m_Host.Windows().Unsent(player) || lWaitedMs >= patienceMs) loop.Quit();
  });
  timer->Enabled(true);
  loop.Run();
  if (m_Host.Windows().Unsent(player)) {
    throw CommandFailure(ExitCannot, "the player runs but has not taken the message for 5 seconds");
  }
}

}  // namespace vex
