#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "components/open/OutputSettings.h"
#include "components/open/wire/UniversePacket.h"
#include "host/Clock.h"
#include "host/Datagrams.h"

namespace vex {

/// The road from the universes to the receivers: where each packet goes, and the socket. A network that
/// cannot be reached is told once, and again only after it has worked in between; sending is tried on all
/// the while, so the lights come back by themselves. A host given by name is looked up at the start and,
/// after a failure, again now and then; nobody waits for the answer, and until the first one has come
/// nothing is sent and nothing told.
class OutputNetwork {
 public:
  /// The settings are Bounded; the machine's id makes the source's identity.
  OutputNetwork(Clock& clock, EventLoop& loop, Datagrams& datagrams, const OutputSettings& settings,
                const std::string& szMachineId);

  /// False for protocol "none" and one that is not known.
  [[nodiscard]] bool Sends() const {
    return m_Settings.Protocol == OutputProtocol::E131 || m_Settings.Protocol == OutputProtocol::ArtNet;
  }
  /// Tells once that nothing is sent because the protocol is not known.
  void ExplainSilence();
  /// Only E1.31 has universe discovery and a mark for the end of a stream.
  [[nodiscard]] bool IsE131() const { return m_Settings.Protocol == OutputProtocol::E131; }

  [[nodiscard]] UniversePacket NewPacket(int32_t lUniverse) const;

  /// Packets are gathered and go out together; their bytes stay where they are until Send.
  void Add(int32_t lUniverse, const UniversePacket& packet);
  void Send();
  /// Tells receivers which universes are sent; sorted.
  void SendDiscovery(std::span<const uint16_t> universes);

  /// Raised with a line for people.
  std::function<void(const std::string&)> Trouble;

 private:
  void LookUpHost();
  [[nodiscard]] bool HostIsKnown();
  [[nodiscard]] bool Ready();
  [[nodiscard]] DatagramAddress AddressOf(int32_t lUniverse) const;
  void Deliver(std::span<const Datagram> datagrams);
  void Failed(const std::string& szWhy);

  Clock& m_Clock;
  EventLoop& m_Loop;
  Datagrams& m_Datagrams;
  OutputSettings m_Settings;
  LightingSource m_Source;
  uint16_t m_Port;
  std::optional<uint32_t> m_Host;  // where everything goes; none until found, or where there is no one place
  bool m_HostIsWanted;
  bool m_LookUpAgain = false;
  Elapsed m_LookedUp{0};
  std::unique_ptr<HostLookUp> m_LookUp;  // while a question is under way
  uint32_t m_Interface = 0;
  std::unique_ptr<DatagramSocket> m_Socket;
  std::vector<Datagram> m_Gathered;
  bool m_Unreachable = false;
};

}  // namespace vex
