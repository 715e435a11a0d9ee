#pragma once

#include <memory>
#include <string>
#include <vector>

#include "components/recorded/Recorder.h"
#include "player/devices/ChannelIO.h"

namespace vex {

/// An ideal hardware I/O control: it writes down every call and never fails. It takes the units and circuits
/// that the open control takes (1 to 64, 1 to 512). Inputs are pressed by whoever holds it and reach the
/// player while the link is on.
class RecordedChannelIO final : public ChannelIO {
 public:
  static constexpr int32_t LastUnit = 64;
  static constexpr int32_t LastCircuit = 512;

  /// Where nobody reads the lighting events, they need not be sent.
  explicit RecordedChannelIO(std::shared_ptr<Recorder> recorder, bool boolEventsAreSeen = true);

  void ConfigureValue(int32_t lNetwork, int16_t value) override;
  void ConfigureFlag(int32_t lNetwork, bool boolFlag) override;
  void OpenNetwork(uint8_t network, uint8_t& port, std::optional<bool> boolForPlay) override;
  void OpenX10(uint8_t& port) override;
  void OpenCourser(uint8_t& port) override;
  void RegisterTrigger(const Trigger& trigger) override;
  void ClearTriggers() override;
  void KeepAlive() override;
  [[nodiscard]] bool AcceptsUnit(int32_t lNetwork, int32_t lUnit) override;
  [[nodiscard]] bool AcceptsCircuit(int32_t lNetwork, int32_t lUnit, int32_t lCircuit) override;
  void SendEvent(int32_t lNetwork, int32_t lUnit, int32_t lCircuit, double startLevel, double endLevel,
                 const std::string& szCommand, double rate, int32_t lStartMs, int32_t lEndMs,
                 int32_t lDurationMs) override;
  void Flush() override;
  [[nodiscard]] bool EventsAreSeen() const override { return m_EventsAreSeen; }
  void SetLink(const std::string& szHost, int16_t localPort, int16_t remotePort) override;
  void SupportsSpecial(bool boolSupports) override;
  void LinkEnabled(bool boolEnabled) override;

  /// An input fires; nothing happens while the link is off.
  void Press(int32_t lNetwork, int32_t lUnitId, int32_t lInputNumber, const std::string& szName);

 private:
  std::shared_ptr<Recorder> m_Recorder;
  bool m_EventsAreSeen;
  bool m_LinkEnabled = false;
};

}  // namespace vex
