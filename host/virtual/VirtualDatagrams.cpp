#include "host/virtual/VirtualDatagrams.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

#include "basic/Error.h"
#include "host/EventLoop.h"

namespace vex {

class VirtualDatagramReceiver final : public DatagramReceiver {
 public:
  VirtualDatagramReceiver(VirtualDatagrams& network, const DatagramAddress& at, bool boolShared,
                          DatagramHandler handler)
      : At(at), Shared(boolShared), Handler(std::move(handler)), m_Network(network) {
    m_Network.m_Receivers.push_back(this);
  }
  ~VirtualDatagramReceiver() override { std::erase(m_Network.m_Receivers, this); }
  VirtualDatagramReceiver(const VirtualDatagramReceiver&) = delete;
  VirtualDatagramReceiver& operator=(const VirtualDatagramReceiver&) = delete;

  const DatagramAddress At;
  const bool Shared;
  const DatagramHandler Handler;

 private:
  VirtualDatagrams& m_Network;
};

class VirtualDatagramSocket final : public DatagramSocket {
 public:
  VirtualDatagramSocket(VirtualDatagrams& network, uint32_t multicastInterface)
      : m_Network(network), m_MulticastInterface(multicastInterface) {}

  int32_t Send(std::span<const Datagram> datagrams) override {
    int32_t lFirst = 0;
    for (const Datagram& datagram : datagrams) {
      const int32_t lCode = m_Network.Send(m_MulticastInterface, datagram);
      if (lFirst == 0) lFirst = lCode;
    }
    return lFirst;
  }

 private:
  VirtualDatagrams& m_Network;
  uint32_t m_MulticastInterface;
};

class VirtualHostLookUp final : public HostLookUp {
 public:
  VirtualHostLookUp(VirtualDatagrams& network, std::unique_ptr<Signal> answered)
      : m_Network(network), m_Answered(std::move(answered)) {
    m_Network.m_LookUps.push_back(this);
    if (!m_Network.m_HoldLookUps) Answer();
  }
  ~VirtualHostLookUp() override { std::erase(m_Network.m_LookUps, this); }
  VirtualHostLookUp(const VirtualHostLookUp&) = delete;
  VirtualHostLookUp& operator=(const VirtualHostLookUp&) = delete;

  void Answer() { m_Answered->Raise(); }

 private:
  VirtualDatagrams& m_Network;
  std::unique_ptr<Signal> m_Answered;
};

std::unique_ptr<DatagramSocket> VirtualDatagrams::NewSender(uint32_t multicastInterface) {
  if (m_NewSenderCode != 0) throw Error(m_NewSenderCode, "Datagrams.NewSender", Describe(m_NewSenderCode));
  return std::make_unique<VirtualDatagramSocket>(*this, multicastInterface);
}

std::unique_ptr<HostLookUp> VirtualDatagrams::LookUp(EventLoop& loop, const std::string& szHost,
                                                     HostLookUpHandler handler) {
  ++m_LookUpCount;
  uint32_t address = 0;
  const bool boolFound = Resolve(szHost, address);
  const auto answer = boolFound ? std::optional(address) : std::nullopt;
  return std::make_unique<VirtualHostLookUp>(
      *this, loop.NewSignal([handler = std::move(handler), answer] { handler(answer); }));
}

void VirtualDatagrams::HoldLookUps(bool boolHold) {
  m_HoldLookUps = boolHold;
  if (boolHold) return;
  for (auto* lookUp : m_LookUps) lookUp->Answer();
}

bool VirtualDatagrams::Resolve(const std::string& szHost, uint32_t& address) {
  if (const auto known = m_Hosts.find(szHost); known != m_Hosts.end()) {
    address = known->second;
    return true;
  }
  return AddressFromText(szHost == "localhost" ? "127.0.0.1" : szHost, address);
}

std::string VirtualDatagrams::Describe(int32_t lCode) const {
  return std::generic_category().message(lCode);
}

int32_t VirtualDatagrams::Send(uint32_t multicastInterface, const Datagram& datagram) {
  if (m_SendCode != 0) return m_SendCode;
  const auto code = m_AddressCodes.find(datagram.To.Address);
  if (code != m_AddressCodes.end() && code->second != 0) return code->second;
  m_Sent.push_back({m_Clock.Elapsed(), multicastInterface, datagram.To,
                    std::vector<uint8_t>(datagram.Bytes.begin(), datagram.Bytes.end())});
  return 0;
}

std::unique_ptr<DatagramReceiver> VirtualDatagrams::NewReceiver(EventLoop&, const DatagramAddress& at,
                                                                DatagramHandler handler) {
  return Bind(at, false, std::move(handler));
}

std::unique_ptr<DatagramReceiver> VirtualDatagrams::NewSharedReceiver(EventLoop&, const DatagramAddress& at,
                                                                      uint32_t /*multicastInterface*/,
                                                                      DatagramHandler handler) {
  return Bind(at, true, std::move(handler));
}

std::unique_ptr<DatagramReceiver> VirtualDatagrams::Bind(const DatagramAddress& at, bool boolShared,
                                                         DatagramHandler handler) {
  constexpr int32_t addressInUse = EADDRINUSE;
  const bool boolTaken = std::any_of(m_Receivers.begin(), m_Receivers.end(), [&](const auto* receiver) {
    return receiver->At.Port == at.Port && !(boolShared && receiver->Shared);
  });
  const int32_t lCode = boolTaken ? addressInUse : m_NewReceiverCode;
  if (lCode != 0) throw Error(lCode, "Datagrams.NewReceiver", Describe(lCode));
  return std::make_unique<VirtualDatagramReceiver>(*this, at, boolShared, std::move(handler));
}

bool VirtualDatagrams::Deliver(const DatagramAddress& to, const DatagramAddress& from,
                               std::span<const uint8_t> bytes) {
  bool boolTaken = false;
  const std::vector<VirtualDatagramReceiver*> receivers = m_Receivers;  // a handler may make others
  for (const auto* receiver : receivers) {
    const bool boolBound = receiver->At.Address == 0 || receiver->At.Address == to.Address;
    if (receiver->At.Port != to.Port || !boolBound) continue;
    receiver->Handler(from, bytes);
    boolTaken = true;
    if (!receiver->Shared) break;
  }
  return boolTaken;
}

}  // namespace vex
