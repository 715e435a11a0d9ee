#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>

#include "host/Datagrams.h"
#include "host/EventLoop.h"
#include "player/devices/ChannelIO.h"

namespace vex {

/// Inputs that come over the network: while the link is on, Open Sound Control messages at its local port
/// become inputs of the I/O control. Only datagrams from the link's remote host are taken; a remote host of
/// this very machine (127.x.x.x) binds the port to the loopback interface, 0.0.0.0 takes any sender. A host
/// given by name is heard once the name service has answered; nobody waits for that.
///
/// What comes and is no trigger is passed over, and one line tells so for as long as the link stays on; so
/// does one about a port that cannot be had, which is tried again when the link is set or switched on.
class OscTriggers {
 public:
  /// Both outlive the triggers.
  OscTriggers(EventLoop& loop, Datagrams& datagrams);

  void SetLink(const std::string& szHost, uint16_t localPort);
  void Enabled(bool boolEnabled);

  std::function<void(const NamedProperties&)> Detected;
  std::function<void(const std::string&)> Trouble;

 private:
  void Open();
  void Bind(uint32_t remote);
  void CannotOpen(const std::string& szWhy);
  void Received(const DatagramAddress& from, std::span<const uint8_t> bytes);
  void Wrong(const std::string& szWhat);
  [[nodiscard]] bool Known(uint32_t sender) const { return m_Remote == 0 || sender == m_Remote; }

  EventLoop& m_Loop;
  Datagrams& m_Datagrams;
  std::string m_Host;
  uint16_t m_LocalPort = 0;
  uint32_t m_Remote = 0;
  bool m_Enabled = false;
  bool m_ToldOfWrong = false;
  // While the remote host's name is being asked for; a link that is switched off and on meanwhile goes on
  // waiting for that answer, so that no switching makes more than one question.
  std::unique_ptr<HostLookUp> m_LookUp;
  std::unique_ptr<DatagramReceiver> m_Receiver;
};

}  // namespace vex
