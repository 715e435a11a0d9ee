#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "components/open/OutputSettings.h"
#include "host/Clock.h"
#include "host/Datagrams.h"
#include "host/EventLoop.h"
#include "tray/truth/UniverseTable.h"

namespace vex {

/// Listens where the player sends to, beside whoever else listens there. What the settings say decides where:
///
///     sacn, no host      the groups of the first universes, and of those that the player's discovery names
///     artnet, no host    broadcast
///     a group or broadcast address as host   there
///     an address of this machine as host     there, where nobody else has the port: only one program hears
///     what
///                                            is sent to one address, and that is not to be taken from a
///                                            receiver
///     another address                        it passes this machine's listeners by: cannot be watched
///
/// Listening at a group or by broadcast takes nothing from anybody. Where a port cannot be had it is tried
/// again every ten seconds.
class PacketWatch {
 public:
  /// The references outlive this.
  PacketWatch(const Clock& clock, EventLoop& loop, Datagrams& datagrams, const OutputSettings& settings);

  /// True while the player's packets would be heard.
  [[nodiscard]] bool Watching() const { return m_Trouble.empty() && !m_Receivers.empty(); }
  /// Whether the settings have the player send anything at all.
  [[nodiscard]] bool Sends() const;
  /// Why they cannot be heard and what to do, UTF-8; empty while they can.
  [[nodiscard]] const std::string& Trouble() const { return m_Trouble; }
  [[nodiscard]] UniverseTable& Table() { return m_Table; }

 private:
  void Listen();
  void ListenAtHost();
  void ListenAtHost(uint32_t address);
  void ListenAtGroups();
  void ListenAt(uint32_t address);
  void Discovered(const std::vector<uint16_t>& universes);
  void Failed(uint32_t address, const std::string& szWhy);
  [[nodiscard]] bool Multicasts() const;

  const Clock& m_Clock;
  EventLoop& m_Loop;
  Datagrams& m_Datagrams;
  OutputSettings m_Settings;
  uint16_t m_Port;
  uint32_t m_Interface = 0;
  UniverseTable m_Table;
  std::string m_Trouble;
  std::map<uint32_t, std::unique_ptr<DatagramReceiver>> m_Receivers;
  std::unique_ptr<HostLookUp> m_LookUp;
  std::unique_ptr<Timer> m_Again;
};

}  // namespace vex
