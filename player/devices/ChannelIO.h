#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace vex {

class Trigger;

/// One object of a component, read by property name at run time; a property that is missing or of another
/// type raises.
class NamedProperties {
 public:
  virtual ~NamedProperties() = default;
  [[nodiscard]] virtual int32_t Integer(std::string_view szName) const = 0;
  [[nodiscard]] virtual std::string Text(std::string_view szName) const = 0;
};

/// The hardware I/O control: the lighting networks, the inputs wired to them and the link to other
/// machines. One instance is owned by the shell and handed to the player. Any call may raise Error; the
/// caller's handler logs it and the show goes on.
///
/// A lighting event is a move of one circuit from a start to an end level (0 to 100) that takes durationMs;
/// events gathered since the last Flush go out together at the Flush.
class ChannelIO {
 public:
  virtual ~ChannelIO() = default;

  virtual void ConfigureValue(int32_t lNetwork, int16_t value) = 0;
  virtual void ConfigureFlag(int32_t lNetwork, bool boolFlag) = 0;
  /// Network 0 to 3; boolForPlay is left out at start-up and true when a sequence needs the network.
  virtual void OpenNetwork(uint8_t network, uint8_t& port, std::optional<bool> boolForPlay) = 0;
  virtual void OpenX10(uint8_t& port) = 0;
  virtual void OpenCourser(uint8_t& port) = 0;

  virtual void RegisterTrigger(const Trigger& trigger) = 0;
  virtual void ClearTriggers() = 0;
  virtual void KeepAlive() = 0;

  /// The two questions before a lighting event: does the control take this unit, then this circuit of it.
  [[nodiscard]] virtual bool AcceptsUnit(int32_t lNetwork, int32_t lUnit) = 0;
  [[nodiscard]] virtual bool AcceptsCircuit(int32_t lNetwork, int32_t lUnit, int32_t lCircuit) = 0;
  virtual void SendEvent(int32_t lNetwork, int32_t lUnit, int32_t lCircuit, double startLevel,
                         double endLevel, const std::string& szCommand, double rate, int32_t lStartMs,
                         int32_t lEndMs, int32_t lDurationMs) = 0;
  virtual void Flush() = 0;
  /// A hint, not a role: false where nobody can see lighting events, as when only a rehearsal's course
  /// counts; what is sent may then be left out, flushes with it. Stays as it is.
  [[nodiscard]] virtual bool EventsAreSeen() const { return true; }

  virtual void SetLink(const std::string& szHost, int16_t localPort, int16_t remotePort) = 0;
  virtual void SupportsSpecial(bool boolSupports) = 0;
  virtual void LinkEnabled(bool boolEnabled) = 0;

  /// A hint, not a role: the last show has ended and nothing follows it now, so streams to the network may
  /// be ended.
  virtual void ShowsEnded() {}

  /// Raised when an input fires: one object with "Network", "UnitId", "InputNumber" (integers), "Name".
  std::function<void(const NamedProperties&)> TriggerDetected;
  /// Raised when the device has something that people must know: one line for the log, level 3.
  std::function<void(const std::string&)> Trouble;
};

}  // namespace vex
