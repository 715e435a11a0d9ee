#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "components/open/OscTriggers.h"
#include "components/open/OutputNetwork.h"
#include "components/open/OutputSettings.h"
#include "components/open/OutputUniverse.h"
#include "host/EventLoop.h"
#include "player/devices/ChannelIO.h"

namespace vex {

/// The I/O control of the open components: lighting events become levels, levels become E1.31 or Art-Net
/// packets. Network n's unit u is universe FirstUniverse + 64 n + u - 1, a circuit is a slot.
///
/// What a flush has changed goes out at that flush, all universes in one send. Moves go on by themselves: as
/// long as one is under way its universes go out on a grid of the frame rate that begins with the first
/// move and never drifts; a frame of the grid leaves out a universe that has gone out since the frame
/// before, for that packet held the moves' newest levels. The pace bounds both; what it holds back goes out
/// at the next free moment with the levels of that moment.
///
///     events ──► slots, moves ──flush──► packets ──pace──► network
///                   └──── one timer: grid, held back, repeats, keep-alive, discovery
///
/// A universe's stream begins with its first change. Without a change three more packets follow, then one
/// every 900 ms. It ends, told by three terminated packets, when no show follows and when the control goes.
class OpenChannelIO final : public ChannelIO {
 public:
  OpenChannelIO(Clock& clock, EventLoop& eventLoop, Datagrams& datagrams, const OutputSettings& settings,
                const std::string& szMachineId);
  ~OpenChannelIO() override;
  OpenChannelIO(const OpenChannelIO&) = delete;
  OpenChannelIO& operator=(const OpenChannelIO&) = delete;

  void ConfigureValue(int32_t, int16_t) override {}  // an Ethernet universe has no speed
  void ConfigureFlag(int32_t, bool) override {}
  void OpenNetwork(uint8_t, uint8_t&, std::optional<bool>) override {}  // always open: no port is held
  void OpenX10(uint8_t&) override {}
  void OpenCourser(uint8_t&) override {}

  void RegisterTrigger(const Trigger&) override {}  // every input is told while the link is on
  void ClearTriggers() override {}
  void KeepAlive() override {}  // streams keep themselves alive

  [[nodiscard]] bool AcceptsUnit(int32_t lNetwork, int32_t lUnit) override;
  [[nodiscard]] bool AcceptsCircuit(int32_t lNetwork, int32_t lUnit, int32_t lCircuit) override;
  /// An event that takes 1 ms or less is a jump to its end level; an event that is not accepted does nothing.
  void SendEvent(int32_t lNetwork, int32_t lUnit, int32_t lCircuit, double startLevel, double endLevel,
                 const std::string& szCommand, double rate, int32_t lStartMs, int32_t lEndMs,
                 int32_t lDurationMs) override;
  void Flush() override;

  void SetLink(const std::string& szHost, int16_t localPort, int16_t remotePort) override;
  void SupportsSpecial(bool) override {}
  void LinkEnabled(bool boolEnabled) override;

  void ShowsEnded() override;

 private:
  void m_Timer_Tick();

  [[nodiscard]] OutputUniverse& Universe(int32_t lNetwork, int32_t lUnit);
  [[nodiscard]] Elapsed PassTime();
  [[nodiscard]] Elapsed FrameTime(int64_t frame) const;
  void SendFrame(Elapsed now);
  void SendWaiting(OutputUniverse& universe, Elapsed now);
  void SendUnchanged(OutputUniverse& universe, Elapsed now);
  void SendOrWait(OutputUniverse& universe, Elapsed now);
  void Emit(OutputUniverse& universe, Elapsed now);
  void BeginStream(OutputUniverse& universe, Elapsed now);
  void Discover(Elapsed now);
  void EndStreams() noexcept;
  [[nodiscard]] Elapsed NextDue() const;
  [[nodiscard]] Elapsed UnchangedDue(const OutputUniverse& universe) const;
  void Schedule();

  Clock& m_Clock;
  OutputSettings m_Settings;
  OutputNetwork m_Network;
  std::array<std::unique_ptr<OutputUniverse>, OutputUniverse::MostUniverses> m_Universes;
  std::vector<OutputUniverse*> m_Used;  // in the order of their numbers
  std::unique_ptr<Timer> m_Timer;

  std::optional<Elapsed> m_PassTime;   // when the first move since the last flush came
  std::optional<Elapsed> m_GridStart;  // none while nothing moves
  int64_t m_NextFrame = 0;
  std::optional<Elapsed> m_DiscoveryDue;
  OscTriggers m_Triggers;
};

}  // namespace vex
