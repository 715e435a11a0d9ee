#pragma once

#include <memory>
#include <string>

#include "host/EventLoop.h"
#include "host/ServiceManager.h"

namespace vex {

struct PlayerStatus;

/// What the player tells the service manager: that start-up is over, one line of what it plays, and from its
/// own loop, twice in each time that the manager waits, that the loop still turns. A loop that is stuck says
/// nothing any more and is started anew.
class ServiceReport {
 public:
  /// Both outlive the report.
  ServiceReport(EventLoop& loop, ServiceManager& manager);

  /// Tells what has changed; the first status that is ready ends the start-up.
  void Update(const PlayerStatus& status);

 private:
  ServiceManager& m_Manager;
  std::unique_ptr<Timer> m_Alive;
  std::string m_Line;
  bool m_Ready = false;
  bool m_Stopping = false;
};

/// "Playing eve.shw until 2026-12-24 22:00:00", "No show; next eve.shw at 2026-12-24 18:00:00"; UTF-8.
[[nodiscard]] std::string StatusLine(const PlayerStatus& status);

}  // namespace vex
