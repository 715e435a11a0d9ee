#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "host/Host.h"
#include "tray/channel/TrayWindow.h"
#include "tray/history/HistoryWriter.h"
#include "tray/log/LogWriter.h"
#include "tray/truth/PacketWatch.h"
#include "tray/truth/SoundCard.h"
#include "tray/truth/StateLight.h"
#include "tray/watch/TrayState.h"

namespace vex {

/// By what the sound position is looked at.
enum class SoundBy { Auto, Card, Lights, Nothing };

struct WatchmanOptions {
  RotationLimits Log;
  bool Packets = true;
  SoundBy Sound = SoundBy::Auto;
  std::string OnTrouble;  ///< a command line, single-byte text; empty for none
};

/// What vextray is: hears the player, keeps log and history, looks at the network and the sound, and keeps
/// the state light. Everything here happens on the loop; who wants to know is told by the handlers.
class Watchman {
 public:
  /// The host outlives this. Raises Error where logs can be kept nowhere.
  Watchman(Host& host, WatchmanOptions options);

  std::function<void(const TrayState&)> StateLooked;  ///< twice a second, and when the colour changes
  /// A new line, or the last one with its new count; first the last ones of those who kept the log before.
  std::function<void(const LogLine&)> LineCame;
  std::function<void(const HistoryShelf&)> HistoryChanged;  ///< at most twice a second
  std::function<void(const HeardUniverse&)> LightsChanged;  ///< at most ten times a second for each universe
  std::function<void()> PlayerCame;

  /// Raises Error where the log cannot be written.
  void Begin();
  /// Writes what waits and waits for the disk.
  void End();
  [[nodiscard]] TrayWindow& Channel() { return m_Window; }
  [[nodiscard]] const HistoryShelf& History() const { return m_History.Shelf(); }

 private:
  struct PlayingSequence {
    std::optional<Elapsed> LightsDue;
  };

  void Turn();
  void Keep(const LogLine& line);
  void Note(int32_t lLevel, const std::string& szText);
  void StatusCame(const std::string& szMessage);
  void PlayerChanged(bool boolRuns);
  void ReadStatus();
  void TakeStatus(PlayerWord word);
  void NoteSilentFailure();
  void LookAtSound();
  void LookAtLight();
  void TellLights();
  void RunCommand(const char* szWord);
  [[nodiscard]] LightFacts Facts() const;
  [[nodiscard]] TrayState State() const;
  [[nodiscard]] bool ByCard() const;
  [[nodiscard]] bool LightsAreOnTheNetwork() const;

  Host& m_Host;
  WatchmanOptions m_Options;
  LogWriter m_Log;
  HistoryWriter m_History;
  TrayWindow m_Window;
  std::unique_ptr<PacketWatch> m_Packets;  // empty where packets are not to count
  SoundCard m_Card;
  StateLight m_Light;
  std::unique_ptr<Timer> m_Timer;
  uint64_t m_Turns = 0;
  bool m_Complained = false;
  uint64_t m_HistoryTold = 0;

  std::string m_Began;  // the wall clock's time, as the status file writes times
  std::string m_StatusText;
  PlayerWord m_Player;
  std::map<std::string, PlayingSequence> m_Playing;
  bool m_EverRan = false;
  std::optional<Elapsed> m_Farewell;  // when the player took leave
  bool m_GoneWell = false;
  std::optional<Elapsed> m_LastError;
  std::string m_ErrorText;
  std::deque<std::string> m_ErrorsHeard;  // the newest, to know which failures had a line
  std::optional<Elapsed> m_SongSince;
  Elapsed m_SoundMoved{0};
  std::map<uint32_t, Elapsed> m_LightsTold;
  uint64_t m_Lines = 0;
  uint64_t m_Errors = 0;
  uint64_t m_Troubles = 0;
};

}  // namespace vex
