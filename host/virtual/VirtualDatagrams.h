#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "host/Clock.h"
#include "host/Datagrams.h"

namespace vex {

class VirtualDatagramReceiver;
class VirtualHostLookUp;

/// The network of a virtual machine: what is sent is written down with the moment of sending. It arrives
/// nowhere; what comes in is what Deliver is given. Sending can be made to fail, for all senders or for one
/// address.
class VirtualDatagrams final : public vex::Datagrams {
 public:
  struct SentDatagram {
    Elapsed At{0};
    uint32_t MulticastInterface = 0;
    DatagramAddress To;
    std::vector<uint8_t> Bytes;
  };

  /// The clock outlives the network, and the network its sockets.
  explicit VirtualDatagrams(const Clock& clock) : m_Clock(clock) {}

  [[nodiscard]] std::unique_ptr<DatagramSocket> NewSender(uint32_t multicastInterface) override;
  [[nodiscard]] std::unique_ptr<DatagramReceiver> NewReceiver(EventLoop& loop, const DatagramAddress& at,
                                                              DatagramHandler handler) override;
  [[nodiscard]] std::unique_ptr<DatagramReceiver> NewSharedReceiver(EventLoop& loop,
                                                                    const DatagramAddress& at,
                                                                    uint32_t multicastInterface,
                                                                    DatagramHandler handler) override;
  /// What Resolve says now, told at the loop's next turn or when look-ups are held no more.
  [[nodiscard]] std::unique_ptr<HostLookUp> LookUp(EventLoop& loop, const std::string& szHost,
                                                   HostLookUpHandler handler) override;
  /// Dotted addresses, "localhost" and the names that KnowHost told.
  [[nodiscard]] bool Resolve(const std::string& szHost, uint32_t& address) override;
  [[nodiscard]] std::string Describe(int32_t lCode) const override;

  [[nodiscard]] const std::vector<SentDatagram>& Sent() const { return m_Sent; }
  void ForgetSent() { m_Sent.clear(); }
  void KnowHost(const std::string& szHost, uint32_t address) { m_Hosts[szHost] = address; }

  /// A name service that does not answer, until it is held no more.
  void HoldLookUps(bool boolHold);
  /// How often the name service was asked.
  [[nodiscard]] int32_t LookUpCount() const { return m_LookUpCount; }

  /// A datagram comes in at a port, to all who share it, as a group's does; false where nobody has bound it
  /// for that address.
  bool Deliver(const DatagramAddress& to, const DatagramAddress& from, std::span<const uint8_t> bytes);
  /// Binding any port raises this code; 0 lets it succeed again.
  void FailNewReceiver(int32_t lCode) { m_NewReceiverCode = lCode; }

  /// Every send to any address fails with this code; 0 lets it succeed again.
  void FailSends(int32_t lCode) { m_SendCode = lCode; }
  /// The same for one address alone.
  void FailSendsTo(uint32_t address, int32_t lCode) { m_AddressCodes[address] = lCode; }
  /// NewSender raises this code; 0 lets it succeed again.
  void FailNewSender(int32_t lCode) { m_NewSenderCode = lCode; }

 private:
  friend class VirtualDatagramSocket;
  friend class VirtualDatagramReceiver;
  friend class VirtualHostLookUp;
  int32_t Send(uint32_t multicastInterface, const Datagram& datagram);
  std::unique_ptr<DatagramReceiver> Bind(const DatagramAddress& at, bool boolShared, DatagramHandler handler);

  const Clock& m_Clock;
  std::vector<SentDatagram> m_Sent;
  std::map<std::string, uint32_t> m_Hosts;
  std::map<uint32_t, int32_t> m_AddressCodes;
  int32_t m_SendCode = 0;
  int32_t m_NewSenderCode = 0;
  int32_t m_NewReceiverCode = 0;
  std::vector<VirtualDatagramReceiver*> m_Receivers;
  std::vector<VirtualHostLookUp*> m_LookUps;
  bool m_HoldLookUps = false;
  int32_t m_LookUpCount = 0;
};

}  // namespace vex
