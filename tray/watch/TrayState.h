#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "basic/DateTime.h"
#include "tray/truth/StateLight.h"
#include "tray/truth/UniverseTable.h"

namespace vex {

/// What the player says of itself in status.json. Texts are UTF-8, as they stand there.
struct PlayerWord {
  struct Sequence {
    std::string Play;
    std::string File;
  };
  struct Failure {
    std::string Time;
    std::string Text;
  };

  bool Ready = false;
  bool NoSchedule = false;
  bool ShuttingDown = false;
  bool Link = false;
  std::string Started;
  std::string Current;  ///< serialised, empty for none
  std::string Next;
  std::vector<Sequence> Playing;
  std::string Media;
  std::optional<Failure> LastError;
};

/// None for a text that is no such file.
[[nodiscard]] std::optional<PlayerWord> PlayerWordFromJson(const std::string& szJson);
/// The name of the show in a serialised report, UTF-8; empty for none.
[[nodiscard]] std::string ShowOfReport(const std::string& szReportUtf8);

/// All that there is to tell at one moment.
struct TrayState {
  struct Universe {
    uint16_t Number = 0;
    LightProtocol Protocol = LightProtocol::Sacn;
    int32_t PerSecond = 0;
    double Last = 0;  ///< seconds ago
    uint64_t Packets = 0;
  };

  DateTime Time;
  StateLight::State Light;
  bool PlayerRuns = false;
  bool PlayerAnswers = true;
  PlayerWord Player;  ///< new while no player runs

  bool PacketsWatched = false;
  std::string PacketsTrouble;
  std::vector<Universe> Universes;

  bool SoundMoves = false;
  const char* SoundBy = "none";
  std::optional<double> SoundPosition;

  uint64_t Lines = 0;
  uint64_t Errors = 0;
  uint64_t Troubles = 0;
};

/// The object of /api/state, as docs/vextray.md has it.
[[nodiscard]] std::string StateToJson(const TrayState& state);
/// Prometheus text, version 0.0.4.
[[nodiscard]] std::string StateToMetrics(const TrayState& state);

}  // namespace vex
