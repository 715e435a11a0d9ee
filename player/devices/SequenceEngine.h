#pragma once

#include <any>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "player/devices/NextDue.h"

namespace vex {

class ChannelIO;

/// One lighting event as the engine hands it out; times in milliseconds of the sequence.
struct LightingEvent {
  int32_t Network = 0;
  int32_t UnitId = 0;
  int32_t Circuit = 0;
  double StartLevel = 0;
  double EndLevel = 0;
  std::string Command;
  double Rate = 1.0;
  int32_t StartTime = 0;
  int32_t EndTime = 0;
};

/// The network kinds of the uses-network question.
enum class NetworkKind : int32_t { Main = 1, X10 = 3, Courser = 4 };

/// The engine object of one sequence. Prepared without media it plays by its own clock and sends its events
/// through the attached control itself; prepared with media it follows SyncToMusic and hands out what has
/// fallen due through GetEvent. Any call may raise Error.
class SequenceEngine {
 public:
  virtual ~SequenceEngine() = default;

  virtual void AttachControl(std::shared_ptr<ChannelIO> cio) = 0;
  /// The name as the show has it; the engine finds the file.
  virtual void Load(const std::string& szFilename) = 0;
  virtual void PlayRate(double rate) = 0;
  virtual void PlayOptions(bool boolLoopAtEnd, bool boolLightsOffAtEnd) = 0;
  virtual void PrepareForPlay(bool boolHasMedia) = 0;
  virtual void Start() = 0;
  virtual void Stop() = 0;
  /// 0 when not playing.
  [[nodiscard]] virtual int32_t PlayState() = 0;
  /// The media file's name as stored in the sequence, empty for none.
  [[nodiscard]] virtual std::string MediaFile() = 0;
  /// The stored shell command, in a form only the shell command manager knows; no value for none.
  [[nodiscard]] virtual std::any ShellCommand() = 0;
  [[nodiscard]] virtual bool UsesNetwork(NetworkKind kind) = 0;
  virtual void InitMusicSync(int32_t lMilliseconds) = 0;
  virtual void SyncToMusic(int32_t lMilliseconds) = 0;
  /// Fills the next event fallen due since the last sync; false when there are no more.
  [[nodiscard]] virtual bool GetEvent(LightingEvent& event) = 0;

  /// Hint: the position of the music, in milliseconds, at which GetEvent next has something.
  [[nodiscard]] virtual NextDue NextEventDue() { return NextDue::EveryTick(); }
  /// Hint: the clock's elapsed time, in nanoseconds, at which the play state next changes by itself.
  [[nodiscard]] virtual NextDue NextStateChange() { return NextDue::EveryTick(); }
  /// Hint: how long the loaded sequence lasts, in milliseconds; no value from an engine that cannot tell.
  [[nodiscard]] virtual std::optional<int32_t> Length() { return std::nullopt; }

  /// Raised when the engine asks for the control's keep-alive.
  std::function<void()> KeepAlive;
};

}  // namespace vex
