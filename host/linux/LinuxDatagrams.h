#pragma once

#include "host/Datagrams.h"

namespace vex {

/// UDP by the kernel's batch call: a frame of many universes is one system call. A full send buffer is a
/// failed datagram, not a wait, since the next frame makes up for it.
class LinuxDatagrams : public Datagrams {
 public:
  [[nodiscard]] std::unique_ptr<DatagramSocket> NewSender(uint32_t multicastInterface) override;
  [[nodiscard]] std::unique_ptr<DatagramReceiver> NewReceiver(EventLoop& loop, const DatagramAddress& at,
                                                              DatagramHandler handler) override;
  [[nodiscard]] std::unique_ptr<DatagramReceiver> NewSharedReceiver(EventLoop& loop,
                                                                    const DatagramAddress& at,
                                                                    uint32_t multicastInterface,
                                                                    DatagramHandler handler) override;
  /// Asks on a thread of its own.
  [[nodiscard]] std::unique_ptr<HostLookUp> LookUp(EventLoop& loop, const std::string& szHost,
                                                   HostLookUpHandler handler) override;
  /// Asks the name service for anything but a dotted address, and waits for its answer.
  [[nodiscard]] bool Resolve(const std::string& szHost, uint32_t& address) override;
  [[nodiscard]] std::string Describe(int32_t lCode) const override;
};

}  // namespace vex
