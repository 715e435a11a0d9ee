#pragma once

#include "host/Datagrams.h"

namespace vex {

/// UDP by the machine's sockets. The socket library is started with the first use and kept.
class Win32Datagrams : public Datagrams {
 public:
  ~Win32Datagrams() override;

  [[nodiscard]] std::unique_ptr<DatagramSocket> NewSender(uint32_t multicastInterface) override;
  [[nodiscard]] std::unique_ptr<DatagramReceiver> NewReceiver(EventLoop& loop, const DatagramAddress& at,
                                                              DatagramHandler handler) override;
  [[nodiscard]] std::unique_ptr<HostLookUp> LookUp(EventLoop& loop, const std::string& szHost,
                                                   HostLookUpHandler handler) override;
  [[nodiscard]] bool Resolve(const std::string& szHost, uint32_t& address) override;
  [[nodiscard]] std::string Describe(int32_t lCode) const override;

 private:
  void Start();

  bool m_Started = false;
};

}  // namespace vex
