#include "components/open/OutputNetwork.h"

#include <algorithm>

#include "basic/Error.h"
#include "components/open/OutputUniverse.h"
#include "host/CodePage.h"

namespace vex {
namespace {

constexpr uint32_t Broadcast = 0xFFFFFFFF;
/// A name that fails is not asked for at every frame.
constexpr Elapsed LookUpPause{30'000'000'000};

}  // namespace

OutputNetwork::OutputNetwork(Clock& clock, EventLoop& loop, Datagrams& datagrams,
                             const OutputSettings& settings, const std::string& szMachineId)
    : m_Clock(clock),
      m_Loop(loop),
      m_Datagrams(datagrams),
      m_Settings(settings),
      m_Source{LightingSourceUuid(szMachineId, settings.SourceName), AnsiToUtf8(settings.SourceName),
               static_cast<uint8_t>(settings.Priority)},
      m_Port(settings.Protocol == OutputProtocol::ArtNet ? ArtNetPort : E131Port),
      m_HostIsWanted(!settings.Host.empty()) {
  if (!Sends()) return;
  m_Gathered.reserve(OutputUniverse::MostUniverses);
  if (m_HostIsWanted)
    LookUpHost();
  else if (settings.Protocol == OutputProtocol::ArtNet)
    m_Host = Broadcast;
}

UniversePacket OutputNetwork::NewPacket(int32_t lUniverse) const {
  const auto universe = static_cast<uint16_t>(lUniverse);
  return m_Settings.Protocol == OutputProtocol::ArtNet ? UniversePacket::ArtNet(universe)
                                                       : UniversePacket::E131(m_Source, universe);
}

void OutputNetwork::Add(int32_t lUniverse, const UniversePacket& packet) {
  m_Gathered.push_back({AddressOf(lUniverse), packet.Bytes()});
}

void OutputNetwork::Send() {
  if (m_Gathered.empty()) return;
  if (Ready()) {
    for (Datagram& datagram : m_Gathered)
      if (m_Host) datagram.To.Address = *m_Host;  // found only now, perhaps
    Deliver(m_Gathered);
  }
  m_Gathered.clear();
}

void OutputNetwork::SendDiscovery(std::span<const uint16_t> universes) {
  if (!Ready()) return;
  const size_t pages = (universes.size() + E131DiscoveryPage - 1) / E131DiscoveryPage;
  for (size_t page = 0; page < pages; ++page) {
    const auto part = universes.subspan(page * E131DiscoveryPage);
    const auto bytes = E131Discovery(m_Source, part.first(std::min(part.size(), E131DiscoveryPage)),
                                     static_cast<uint8_t>(page), static_cast<uint8_t>(pages - 1));
    const Datagram datagram{AddressOf(E131DiscoveryUniverse), bytes};
    Deliver({&datagram, 1});
  }
}

void OutputNetwork::ExplainSilence() {
  if (m_Settings.Protocol == OutputProtocol::Unknown)
    Failed("setting \"Protocol\" in \"Output\" must be sacn, artnet or none");
}

void OutputNetwork::LookUpHost() {
  m_LookedUp = m_Clock.Elapsed();
  if (uint32_t address = 0; AddressFromText(m_Settings.Host, address)) {
    m_Host = address;
    return;
  }
  m_LookUp = m_Datagrams.LookUp(m_Loop, m_Settings.Host, [this](std::optional<uint32_t> address) {
    m_LookUp.reset();
    if (address) m_Host = address;
  });
}

/// Asks anew where that may help. What is known goes on being used until a new answer has come.
bool OutputNetwork::HostIsKnown() {
  if (!m_HostIsWanted) return true;
  const bool boolAsk = !m_LookUp && (!m_Host || m_LookUpAgain);
  if (boolAsk && m_Clock.Elapsed() >= m_LookedUp + LookUpPause) {
    m_LookUpAgain = false;
    LookUpHost();
  }
  if (!m_Host && !m_LookUp) Failed("host \"" + m_Settings.Host + "\" cannot be found");
  return m_Host.has_value();
}

bool OutputNetwork::Ready() {
  if (!HostIsKnown()) return false;
  if (m_Socket) return true;
  try {
    if (!m_Settings.Interface.empty() && !AddressFromText(m_Settings.Interface, m_Interface)) {
      Failed("no network interface \"" + m_Settings.Interface + "\"");
      return false;
    }
    m_Socket = m_Datagrams.NewSender(m_Interface);
  } catch (const Error& error) {
    Failed(error.Description);
  }
  return m_Socket != nullptr;
}

DatagramAddress OutputNetwork::AddressOf(int32_t lUniverse) const {
  return {m_Host.value_or(E131Group(static_cast<uint16_t>(lUniverse))), m_Port};
}

void OutputNetwork::Deliver(std::span<const Datagram> datagrams) {
  const int32_t lCode = m_Socket->Send(datagrams);
  if (lCode != 0)
    Failed(m_Datagrams.Describe(lCode));
  else
    m_Unreachable = false;
}

void OutputNetwork::Failed(const std::string& szWhy) {
  m_LookUpAgain = m_HostIsWanted;
  if (m_Unreachable) return;
  m_Unreachable = true;
  if (Trouble) Trouble("Lighting network unreachable: " + szWhy);
}

}  // namespace vex
