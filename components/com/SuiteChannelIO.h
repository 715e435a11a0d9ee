#pragma once

#include <memory>

#include "components/com/Component.h"
#include "components/com/ControlSeat.h"
#include "components/com/EventConnection.h"
#include "player/devices/ChannelIO.h"

namespace vex {

/// The suite's hardware I/O control. Every role is one call to it, with the argument types that it was built
/// for. It sits on no window, for it has nothing to show. A control that cannot say which units and circuits
/// it takes is sent everything.
class SuiteChannelIO final : public ChannelIO {
 public:
  /// What the control is called, by the settings.
  [[nodiscard]] static std::shared_ptr<const ComponentNames> ReadNames(Registry& settings);

  /// Raises Error where the control cannot be created.
  explicit SuiteChannelIO(std::shared_ptr<const ComponentNames> names);

  void ConfigureValue(int32_t lNetwork, int16_t value) override;
  void ConfigureFlag(int32_t lNetwork, bool boolFlag) override;
  void OpenNetwork(uint8_t network, uint8_t& port, std::optional<bool> boolForPlay) override;
  void OpenX10(uint8_t& port) override;
  void OpenCourser(uint8_t& port) override;
  void RegisterTrigger(const Trigger& trigger) override;
  void ClearTriggers() override { m_Control.Call("ClearTriggers"); }
  void KeepAlive() override { m_Control.Call("KeepAlive"); }
  [[nodiscard]] bool AcceptsUnit(int32_t lNetwork, int32_t lUnit) override;
  [[nodiscard]] bool AcceptsCircuit(int32_t lNetwork, int32_t lUnit, int32_t lCircuit) override;
  void SendEvent(int32_t lNetwork, int32_t lUnit, int32_t lCircuit, double startLevel, double endLevel,
                 const std::string& szCommand, double rate, int32_t lStartMs, int32_t lEndMs,
                 int32_t lDurationMs) override;
  void Flush() override { m_Control.Call("Flush"); }
  void SetLink(const std::string& szHost, int16_t localPort, int16_t remotePort) override;
  void SupportsSpecial(bool boolSupports) override;
  void LinkEnabled(bool boolEnabled) override;

  /// The control itself, as the suite's other components are handed it.
  [[nodiscard]] IDispatch* Object() const { return m_Control.Object(); }

 private:
  void EventRaised(const std::vector<VARIANT>& arguments);

  Component m_Control;
  ControlSeat m_Seat;
  EventConnection m_Events;
};

}  // namespace vex
