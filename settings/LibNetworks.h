#pragma once

#include <array>
#include <cstdint>

#include "host/Registry.h"

namespace vex {

/// The lighting networks as the suite's setup left them: four networks (0 the regular one, 1 to 3 AuxA to
/// AuxC) with speed and port, the ports of the Courser and X10 networks, and how units are addressed. There
/// is one for the process: the program makes it and hands it to whoever asks. It is filled on first use.
///
/// Speeds are 1 to 3. Ports are 0 (none) to 16 and each is used once, or else all of them are as if nothing
/// had been stored: regular port 1, no other. A port of 17 to 25 passes for a port but has no place in the
/// table of used ones, which ends the load there.
class Networks {
 public:
  static constexpr uint8_t NetworkCount = 4;

  /// The registry outlives the networks.
  explicit Networks(Registry& registry) : m_Registry(registry) {}

  /// Reads all settings; does nothing once loaded, unless forced. Never raises: a failure leaves what was
  /// read so far, and it counts as loaded.
  void LoadNetworks(bool boolForce);

  /// Of network i; an index above 3 stands for 0. Like all readers these load first.
  [[nodiscard]] int32_t NetworkSpeed(uint8_t i);
  [[nodiscard]] uint8_t NetworkPort(uint8_t i);
  [[nodiscard]] uint8_t CourserPort();
  [[nodiscard]] uint8_t X10Port();
  [[nodiscard]] bool UsesOldMCP();
  [[nodiscard]] bool ListNetworks();

 private:
  void ReadSpeeds();
  [[nodiscard]] bool ReadPorts();
  [[nodiscard]] bool ReadPort(const char* szName, const char* szSubkey, int32_t lDefault, uint8_t& port);
  [[nodiscard]] bool PortsClash() const;
  void ResetPorts();

  Registry& m_Registry;
  std::array<int32_t, NetworkCount> m_Speed{};
  std::array<uint8_t, NetworkCount> m_Port{};
  uint8_t m_CourserPort = 0;
  uint8_t m_X10Port = 0;
  bool m_OldMCP = false;
  bool m_ListNetworks = false;
  bool m_Loaded = false;
};

}  // namespace vex
