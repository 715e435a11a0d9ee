#include "settings/LibNetworks.h"

#include <string>
#include <vector>

#include "basic/Error.h"
#include "settings/LibRegistryVexShared.h"

namespace vex {

namespace {

constexpr int32_t SlowestSpeed = 1;
constexpr int32_t FastestSpeed = 3;
constexpr int32_t UsualSpeed = 2;
constexpr int32_t HighestPort = 25;
/// Kept on purpose: the table of used ports ends below the highest port that is read.
constexpr size_t TablePorts = 16;

constexpr size_t Regular = 0;
constexpr size_t AuxA = 1;
constexpr size_t AuxB = 2;
constexpr size_t AuxC = 3;
constexpr std::array<const char*, Networks::NetworkCount> Subkeys = {"Network", "Network\\AuxA",
                                                                     "Network\\AuxB", "Network\\AuxC"};

size_t IndexOf(uint8_t i) {
  return i < Networks::NetworkCount ? i : Regular;
}

}  // namespace

void Networks::LoadNetworks(bool boolForce) {
  if (m_Loaded && !boolForce) return;
  m_Loaded = true;
  m_Speed.fill(UsualSpeed);
  m_OldMCP = true;
  m_ListNetworks = false;
  try {
    ReadSpeeds();
    m_OldMCP = GetSharedBool(m_Registry, "VexOldMCP", "Network", true);
    m_ListNetworks = GetSharedBool(m_Registry, "ListNetworks", "Network", false);
    if (!ReadPorts() || PortsClash()) ResetPorts();
  } catch (const std::exception&) {
    // What was read so far stands; a show goes on with it.
  }
}

void Networks::ReadSpeeds() {
  for (size_t i = 0; i < NetworkCount; ++i) {
    const int32_t lSpeed = GetSharedLong(m_Registry, "VexSpeed", Subkeys[i], UsualSpeed);
    m_Speed[i] = lSpeed < SlowestSpeed || lSpeed > FastestSpeed ? UsualSpeed : lSpeed;
  }
}

bool Networks::ReadPorts() {
  for (size_t i = 0; i < NetworkCount; ++i) {
    if (!ReadPort("NetworkBrillara", Subkeys[i], i == Regular ? 1 : 0, m_Port[i])) return false;
  }
  return ReadPort("NetworkCourser", "Network", 0, m_CourserPort) &&
         ReadPort("NetworkX10", "Network", 0, m_X10Port);
}

bool Networks::ReadPort(const char* szName, const char* szSubkey, int32_t lDefault, uint8_t& port) {
  const int32_t lPort = GetSharedLong(m_Registry, szName, szSubkey, lDefault);
  if (lPort < 0 || lPort > HighestPort) return false;
  port = static_cast<uint8_t>(lPort);
  return true;
}

bool Networks::PortsClash() const {
  std::array<bool, TablePorts + 1> used{};
  for (const uint8_t port :
       {m_Port[AuxA], m_Port[Regular], m_Port[AuxB], m_Port[AuxC], m_CourserPort, m_X10Port}) {
    if (port == 0) continue;
    if (port > TablePorts) throw PlatformError(ErrorSubscript);
    if (used[port]) return true;
    used[port] = true;
  }
  return false;
}

void Networks::ResetPorts() {
  m_Port = {1, 0, 0, 0};
  m_CourserPort = 0;
  m_X10Port = 0;
}

int32_t Networks::NetworkSpeed(uint8_t i) {
  LoadNetworks(false);
  return m_Speed[IndexOf(i)];
}

uint8_t Networks::NetworkPort(uint8_t i) {
  LoadNetworks(false);
  return m_Port[IndexOf(i)];
}

uint8_t Networks::CourserPort() {
  LoadNetworks(false);
  return m_CourserPort;
}

uint8_t Networks::X10Port() {
  LoadNetworks(false);
  return m_X10Port;
}

bool Networks::UsesOldMCP() {
  LoadNetworks(false);
  return m_OldMCP;
}

bool Networks::ListNetworks() {
  LoadNetworks(false);
  return m_ListNetworks;
}

}  // namespace vex
