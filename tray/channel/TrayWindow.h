#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "host/Host.h"

namespace vex {

/// The tray's end of the message channel: registers with the player, again whenever a player comes back, and
/// hands on what it says. Every 30 seconds it registers once more. The player answers that with a report, so
/// one that has stopped is found out, and a tray that had taken this one's place gives it back.
///
/// Texts are the system's single-byte ones. Handlers run on the loop, never inside a call of this class but
/// Begin.
class TrayWindow {
 public:
  /// The host outlives this.
  explicit TrayWindow(Host& host);
  ~TrayWindow();
  TrayWindow(const TrayWindow&) = delete;
  TrayWindow& operator=(const TrayWindow&) = delete;

  std::function<void(const std::string&)> Status;       ///< a block of lines
  std::function<void(const std::string&)> CurrentShow;  ///< serialised, empty for none
  std::function<void(const std::string&)> NextShow;
  std::function<void()> Initialized;
  /// A player has come, or the one that was there has gone.
  std::function<void(bool boolRuns)> Player;

  /// Looks for a player now, and from now on once a second.
  void Begin();
  /// False when no player takes the message.
  bool Send(int32_t lMessageType, const std::string& szText);
  [[nodiscard]] bool PlayerRuns() const { return m_Player != 0; }
  /// False while the player owes a report for longer than it should take.
  [[nodiscard]] bool PlayerAnswers() const;

 private:
  void Look();
  void Register();
  void Take(const std::string& szMessage);

  Host& m_Host;
  WindowHandle m_Window;
  WindowHandle m_Player = 0;
  std::unique_ptr<Timer> m_Timer;
  Elapsed m_Registered{0};
  std::optional<Elapsed> m_Owes;  // since when
};

}  // namespace vex
