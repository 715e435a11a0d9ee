#pragma once

#include "host/Datagrams.h"

namespace vex {

/// UDP by the machine's sockets. The socket library is loaded with the first use; where it cannot be had,
/// that use raises Error. A full send buffer is a failed datagram, not a wait, since the next frame makes up
/// for it.
class Win32Datagrams : public Datagrams {
 public:
  [[nodiscard]] std::unique_ptr<DatagramSocket> NewSender(uint32_t multicastInterface) override;
  [[nodiscard]] std::unique_ptr<DatagramReceiver> NewReceiver(EventLoop& loop, const DatagramAddress& at,
                                                              DatagramHandler handler) override;
  /// Asks on a thread of its own.
  [[nodiscard]] std::unique_ptr<HostLookUp> LookUp(EventLoop& loop, const std::string& szHost,
                                                   HostLookUpHandler handler) override;
  /// Asks the name service for anything but a dotted address, and waits for its answer.
  [[nodiscard]] bool Resolve(const std::string& szHost, uint32_t& address) override;
  [[nodiscard]] std::string Describe(int32_t lCode) const override;
};

}  // namespace vex
