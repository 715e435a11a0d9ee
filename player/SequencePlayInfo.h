#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "player/PlayType.h"
#include "player/StatusReport.h"
#include "player/devices/ChannelIO.h"
#include "player/devices/SequenceEngine.h"
#include "player/devices/ShellCommandManager.h"

namespace vex {

class InteractiveGroup;
class Processes;

/// What every sequence object of one player is given once: where lines go, how an engine object is made,
/// how a media name becomes a full path, who starts shell commands. Outlives the sequence objects.
struct SequenceSurroundings {
  StatusReport& Report;
  std::function<std::shared_ptr<SequenceEngine>()> NewSequence;
  /// FullSequencePath(name, true).
  std::function<std::string(const std::string&)> FullMediaPath;
  Processes& Programs;
};

/// One lighting sequence as the show player handles it: what the show says about it (file, phase, options,
/// group), the engine object that plays it once it is loaded, and the error that stopped it, if any. The
/// player makes one for every entry of every playlist at show start and forgets it with the show. Every
/// operation that needs the engine object does nothing (and gives false, 0, "" or none) until it is loaded.
class SequencePlayInfo {
 public:
  explicit SequencePlayInfo(const SequenceSurroundings& surroundings);
  ~SequencePlayInfo();
  SequencePlayInfo(const SequencePlayInfo&) = delete;
  SequencePlayInfo& operator=(const SequencePlayInfo&) = delete;

  [[nodiscard]] const std::string& Filename() const { return m_Filename; }
  /// Loads at once when Preload is already set and the name is not empty; a failure then becomes ErrorText.
  void Filename(const std::string& szFilename);
  [[nodiscard]] int32_t PlayType() const { return m_PlayType; }
  void PlayType(int32_t lPlayType) { m_PlayType = lPlayType; }
  [[nodiscard]] bool LightsOffAtEnd() const { return m_LightsOffAtEnd; }
  void LightsOffAtEnd(bool boolLightsOff) { m_LightsOffAtEnd = boolLightsOff; }
  [[nodiscard]] bool LoopAtEnd() const { return m_LoopAtEnd; }
  void LoopAtEnd(bool boolLoop) { m_LoopAtEnd = boolLoop; }
  [[nodiscard]] bool Preload() const { return m_Preload; }
  void Preload(bool boolPreload) { m_Preload = boolPreload; }
  [[nodiscard]] const std::shared_ptr<InteractiveGroup>& Group() const { return m_Group; }
  void Group(std::shared_ptr<InteractiveGroup> group) { m_Group = std::move(group); }
  void CIO(std::shared_ptr<ChannelIO> cio) { m_CIO = std::move(cio); }

  [[nodiscard]] bool ErrorOccurred() const { return m_ErrorOccurred; }
  [[nodiscard]] const std::string& ErrorText() const { return m_ErrorText; }
  /// Marks the sequence failed, with an empty text too; nothing clears it.
  void ErrorText(const std::string& szText);

  /// Loads if need be and prepares for play; ErrorText "No filename specified" without a name.
  void InitializeForPlay();
  void StartPlay();
  void StopPlay();
  /// 0 when not playing.
  [[nodiscard]] int32_t SequencePlayState();
  /// Full path of the media file for play types 2, 3, 5 and 7 (loads first), else empty.
  [[nodiscard]] std::string MediaFilename();
  void InitMusicSync(int32_t lPosition);
  void SyncToMusic(int32_t lMilliseconds);
  [[nodiscard]] bool GetEvent(LightingEvent& event);
  [[nodiscard]] bool UsesVex();
  [[nodiscard]] bool UsesX10();
  [[nodiscard]] bool UsesCourser();
  /// Runs the sequence's shell command, if it has one, without waiting for it.
  void ExecuteShellCommand(ShellCommandManager& manager);

  /// The engine's hints; a sequence that is not loaded changes by itself never.
  [[nodiscard]] NextDue NextEventDue();
  [[nodiscard]] NextDue NextStateChange();

 private:
  void Load();
  void m_Sequence_KeepAlive();
  [[nodiscard]] bool UsesNetwork(NetworkKind kind);

  const SequenceSurroundings& m_Surroundings;
  std::string m_Filename;
  int32_t m_PlayType = PlayNull;
  bool m_LightsOffAtEnd = true;
  bool m_LoopAtEnd = false;
  bool m_Preload = false;
  std::shared_ptr<InteractiveGroup> m_Group;
  std::shared_ptr<ChannelIO> m_CIO;
  bool m_ErrorOccurred = false;
  std::string m_ErrorText;
  std::shared_ptr<SequenceEngine> m_Sequence;
};

}  // namespace vex
