#include "components/open/OscTriggers.h"

#include "basic/Error.h"
#include "components/open/wire/OscTrigger.h"
#include "host/CodePage.h"
#include "player/devices/InputProperties.h"

namespace vex {
namespace {

constexpr uint32_t Loopback = 0x7F000001;
constexpr uint32_t LoopbackNet = 127;
constexpr int NetShift = 24;

}  // namespace

OscTriggers::OscTriggers(EventLoop& loop, Datagrams& datagrams) : m_Loop(loop), m_Datagrams(datagrams) {}

void OscTriggers::SetLink(const std::string& szHost, uint16_t localPort) {
  const bool boolSame = szHost == m_Host && localPort == m_LocalPort && (m_Receiver || m_LookUp);
  if (boolSame) return;
  m_Host = szHost;
  m_LocalPort = localPort;
  m_LookUp.reset();
  m_Receiver.reset();
  if (m_Enabled) Open();
}

void OscTriggers::Enabled(bool boolEnabled) {
  m_Enabled = boolEnabled;
  if (!boolEnabled)
    m_Receiver.reset();
  else if (!m_Receiver && !m_LookUp)
    Open();
}

void OscTriggers::Open() {
  m_ToldOfWrong = false;
  uint32_t remote = 0;
  if (m_LocalPort == 0) {
    CannotOpen("LocalPort is 0");
  } else if (AddressFromText(m_Host, remote)) {
    Bind(remote);
  } else {
    m_LookUp = m_Datagrams.LookUp(m_Loop, m_Host, [this](std::optional<uint32_t> address) {
      m_LookUp.reset();
      if (!m_Enabled) return;
      if (address)
        Bind(*address);
      else
        CannotOpen("host \"" + m_Host + "\" cannot be found");
    });
  }
}

void OscTriggers::Bind(uint32_t remote) {
  m_Remote = remote;
  try {
    const uint32_t at = m_Remote >> NetShift == LoopbackNet ? Loopback : 0;
    m_Receiver = m_Datagrams.NewReceiver(
        m_Loop, {at, m_LocalPort},
        [this](const DatagramAddress& from, std::span<const uint8_t> bytes) { Received(from, bytes); });
  } catch (const Error& error) {
    CannotOpen(error.Description);
  }
}

void OscTriggers::CannotOpen(const std::string& szWhy) {
  if (Trouble)
    Trouble("No triggers from the link (port " + std::to_string(m_LocalPort) + "): " + szWhy +
            "; see the settings in XLK, then switch the link on again");
}

void OscTriggers::Received(const DatagramAddress& from, std::span<const uint8_t> bytes) {
  if (!Known(from.Address)) return;
  std::string szWrong;
  const auto triggers = ReadOscTriggers(bytes, szWrong);
  if (!szWrong.empty()) Wrong(szWrong);
  for (const OscTrigger& trigger : triggers) {
    std::string szName;
    if (!Utf8ToAnsi(trigger.Name, szName)) {
      Wrong("a name that is not UTF-8 of characters of " + CodePageName());
      continue;
    }
    if (Detected) Detected(InputProperties(trigger.Network, trigger.Unit, trigger.Input, szName));
  }
}

void OscTriggers::Wrong(const std::string& szWhat) {
  if (m_ToldOfWrong) return;
  m_ToldOfWrong = true;
  if (Trouble)
    Trouble("The link got what is no trigger: " + szWhat +
            "; wanted is \"/trigger\" with types \"iiis\" (network, unit, input, name)");
}

}  // namespace vex
