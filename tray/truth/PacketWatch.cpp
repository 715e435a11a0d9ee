#include "tray/truth/PacketWatch.h"

#include <algorithm>

#include "basic/Error.h"
#include "components/open/wire/UniversePacket.h"
#include "host/CodePage.h"

namespace vex {

namespace {

constexpr uint32_t Broadcast = 0xFFFFFFFF;
/// Listened to before anybody has said which there are.
constexpr int32_t FirstUniverses = 16;
constexpr size_t MostGroups = 300;
constexpr int32_t AgainMs = 10'000;

bool IsMulticast(uint32_t address) {
  return address >> 28U == 0xE;
}

std::string Dotted(uint32_t address) {
  std::string szText;
  for (int32_t lShift = 24; lShift >= 0; lShift -= 8)
    szText += (szText.empty() ? "" : ".") + std::to_string(address >> static_cast<uint32_t>(lShift) & 0xFFU);
  return szText;
}

}  // namespace

PacketWatch::PacketWatch(const Clock& clock, EventLoop& loop, Datagrams& datagrams,
                         const OutputSettings& settings)
    : m_Clock(clock),
      m_Loop(loop),
      m_Datagrams(datagrams),
      m_Settings(settings),
      m_Port(settings.Protocol == OutputProtocol::ArtNet ? ArtNetPort : E131Port),
      m_Table(AnsiToUtf8(settings.SourceName)),
      m_Again(loop.NewTimer(TimerOrder::Component)) {
  m_Table.Discovered = [this](const std::vector<uint16_t>& universes) { Discovered(universes); };
  m_Again->Interval(AgainMs);
  m_Again->Tick([this] {
    m_Again->Enabled(false);
    Listen();
  });
  if (!m_Settings.Interface.empty()) (void)AddressFromText(m_Settings.Interface, m_Interface);
  Listen();
}

bool PacketWatch::Sends() const {
  return m_Settings.Protocol == OutputProtocol::E131 || m_Settings.Protocol == OutputProtocol::ArtNet;
}

bool PacketWatch::Multicasts() const {
  return m_Settings.Host.empty() && m_Settings.Protocol == OutputProtocol::E131;
}

void PacketWatch::Listen() {
  m_Trouble.clear();
  if (!Sends()) return;
  if (!m_Settings.Host.empty())
    ListenAtHost();
  else if (Multicasts())
    ListenAtGroups();
  else
    ListenAt(Broadcast);
}

void PacketWatch::ListenAtHost() {
  if (uint32_t address = 0; AddressFromText(m_Settings.Host, address)) {
    ListenAtHost(address);
    return;
  }
  m_Trouble = "the address of \"" + AnsiToUtf8(m_Settings.Host) + "\" is not known yet";
  m_LookUp = m_Datagrams.LookUp(m_Loop, m_Settings.Host, [this](std::optional<uint32_t> address) {
    m_LookUp.reset();
    m_Trouble.clear();
    if (address)
      ListenAtHost(*address);
    else
      Failed(0, "nobody knows the address of \"" + AnsiToUtf8(m_Settings.Host) + "\"");
  });
}

// What is sent to one address goes to the program that came last: a receiver that is there already would
// stand in the dark because somebody looks on. So the port is tried for oneself alone first, which fails
// where anybody has it. One that comes later and shares takes the packets over.
void PacketWatch::ListenAtHost(uint32_t address) {
  const bool boolForAll = IsMulticast(address) || address == Broadcast;
  if (!boolForAll && !m_Receivers.contains(address)) {
    try {
      m_Datagrams
          .NewReceiver(m_Loop, {address, m_Port}, [](const DatagramAddress&, std::span<const uint8_t>) {})
          .reset();
    } catch (const Error& error) {
      Failed(address, error.Description);
      return;
    }
  }
  ListenAt(address);
}

void PacketWatch::ListenAtGroups() {
  ListenAt(E131Group(E131DiscoveryUniverse));
  const int32_t lLast = std::min(m_Settings.FirstUniverse + FirstUniverses, int32_t{E131HighestUniverse} + 1);
  for (int32_t lUniverse = m_Settings.FirstUniverse; lUniverse < lLast && m_Trouble.empty(); ++lUniverse)
    ListenAt(E131Group(static_cast<uint16_t>(lUniverse)));
}

void PacketWatch::Discovered(const std::vector<uint16_t>& universes) {
  if (!Multicasts()) return;
  for (const uint16_t universe : universes) {
    if (m_Receivers.size() < MostGroups) ListenAt(E131Group(universe));
  }
}

void PacketWatch::ListenAt(uint32_t address) {
  if (m_Receivers.contains(address)) return;
  try {
    m_Receivers[address] =
        m_Datagrams.NewSharedReceiver(m_Loop, {address, m_Port}, m_Interface,
                                      [this](const DatagramAddress&, std::span<const uint8_t> bytes) {
                                        m_Table.Take(bytes, m_Clock.Elapsed());
                                      });
  } catch (const Error& error) {
    m_Receivers.erase(address);
    Failed(address, error.Description);
  }
}

void PacketWatch::Failed(uint32_t address, const std::string& szWhy) {
  const bool boolOneAddress = !m_Settings.Host.empty() && !IsMulticast(address) && address != Broadcast;
  m_Trouble = "the packets to " + (address == 0 ? AnsiToUtf8(m_Settings.Host) : Dotted(address)) + " port " +
              std::to_string(m_Port) + " cannot be watched (" + szWhy + "); ";
  m_Trouble += boolOneAddress
                   ? "leave \"Host\" in the player's settings empty, which lets several programs listen, "
                     "or start vextray with --packets off"
                   : "see that the network is up and that no program keeps the port to itself, or start "
                     "vextray with --packets off";
  m_Again->Enabled(true);
}

}  // namespace vex
