#pragma once

#include <memory>

#include "components/com/Component.h"
#include "components/com/EventConnection.h"
#include "player/devices/SequenceEngine.h"

namespace vex {

/// The suite's engine object of one sequence. It finds and reads its files by itself and drives the suite's
/// own control where it plays by its own clock, so it is handed that control and nothing of ours. It cannot
/// tell when something is due and is asked at every tick.
class SuiteSequenceEngine final : public SequenceEngine {
 public:
  /// What the engine is called, by the settings.
  [[nodiscard]] static std::shared_ptr<const ComponentNames> ReadNames(Registry& settings);

  /// Raises Error where the engine cannot be created.
  explicit SuiteSequenceEngine(std::shared_ptr<const ComponentNames> names);

  /// A control that is not the suite's is no object to the engine.
  void AttachControl(std::shared_ptr<ChannelIO> cio) override;
  void Load(const std::string& szFilename) override;
  void PlayRate(double rate) override;
  /// An engine without play options plays as the sequence says.
  void PlayOptions(bool boolLoopAtEnd, bool boolLightsOffAtEnd) override;
  void PrepareForPlay(bool boolHasMedia) override;
  void Start() override { m_Engine.Call("Start"); }
  void Stop() override { m_Engine.Call("Stop"); }
  [[nodiscard]] int32_t PlayState() override { return m_Engine.Call("PlayState").AsLong(); }
  [[nodiscard]] std::string MediaFile() override { return m_Engine.Call("MediaFile").AsText(); }
  /// A Variant, as the engine gives it.
  [[nodiscard]] std::any ShellCommand() override;
  [[nodiscard]] bool UsesNetwork(NetworkKind kind) override;
  void InitMusicSync(int32_t lMilliseconds) override;
  void SyncToMusic(int32_t lMilliseconds) override;
  [[nodiscard]] bool GetEvent(LightingEvent& event) override;

 private:
  Component m_Engine;
  EventConnection m_Events;
};

}  // namespace vex
