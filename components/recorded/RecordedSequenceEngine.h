#pragma once

#include <functional>
#include <memory>
#include <string>

#include "components/recorded/MediaNames.h"
#include "components/recorded/Recorder.h"
#include "components/recorded/SequenceFaults.h"
#include "player/devices/SequenceEngine.h"

namespace vex {

/// What the recorded engines of one run share. Lines is empty where only the media are recorded, Faults where
/// nothing is to fail; Names and FullMediaPath are always set.
struct SequenceRecording {
  std::shared_ptr<Recorder> Lines;
  std::shared_ptr<MediaNames> Names;
  std::shared_ptr<SequenceFaults> Faults;
  /// FullSequencePath(name, true).
  std::function<std::string(const std::string&)> FullMediaPath;
};

/// The engine object of one sequence with somebody writing beside it: the sequence is read and played by the
/// engine behind it; load, prepare, start and stop are written down, and calls fail where that was asked for.
class RecordedSequenceEngine final : public SequenceEngine {
 public:
  RecordedSequenceEngine(std::shared_ptr<SequenceEngine> engine, SequenceRecording recording);
  ~RecordedSequenceEngine() override;

  void AttachControl(std::shared_ptr<ChannelIO> cio) override;
  void Load(const std::string& szFilename) override;
  void PlayRate(double rate) override;
  void PlayOptions(bool boolLoopAtEnd, bool boolLightsOffAtEnd) override;
  void PrepareForPlay(bool boolHasMedia) override;
  void Start() override;
  void Stop() override;
  [[nodiscard]] int32_t PlayState() override;
  [[nodiscard]] std::string MediaFile() override;
  [[nodiscard]] std::any ShellCommand() override;
  [[nodiscard]] bool UsesNetwork(NetworkKind kind) override;
  void InitMusicSync(int32_t lMilliseconds) override;
  void SyncToMusic(int32_t lMilliseconds) override;
  [[nodiscard]] bool GetEvent(LightingEvent& event) override;
  [[nodiscard]] NextDue NextEventDue() override;
  [[nodiscard]] NextDue NextStateChange() override;
  [[nodiscard]] std::optional<int32_t> Length() override { return m_Engine->Length(); }

 private:
  [[nodiscard]] bool FailureWaits() const;
  void Note(std::string_view szCall);
  void Check(std::string_view szCall);

  std::shared_ptr<SequenceEngine> m_Engine;
  SequenceRecording m_Recording;
  std::string m_Filename;
};

}  // namespace vex
