#pragma once

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "tests/host_linux/LinuxMachine.h"

// Messages to windows, by the channel and past it.

namespace vex::test {

inline CopyData Copy(const std::string& szPayload) {
  return {3, static_cast<uint32_t>(szPayload.size() + 1), szPayload.c_str()};
}

/// Every payload that reaches the window, without its zero.
inline void Collect(LinuxHost& host, WindowHandle hWnd, std::vector<std::string>& payloads) {
  host.Windows().ExchangeProcedure(
      hWnd, std::make_shared<WindowProcedure>([&payloads](const WindowMessage& message) -> intptr_t {
        payloads.emplace_back(message.Copy->Bytes == nullptr ? "" : message.Copy->Bytes);
        return 0;
      }));
}

inline sockaddr_un AddressOf(const std::string& szPath) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::memcpy(address.sun_path, szPath.data(), szPath.size());
  return address;
}

inline void SendBytes(const std::string& szPath, const std::vector<uint8_t>& bytes) {
  const Descriptor socket(::socket(AF_UNIX, SOCK_DGRAM, 0));
  const sockaddr_un address = AddressOf(szPath);
  ASSERT_EQ(sendto(socket.Get(), bytes.data(), bytes.size(), 0, reinterpret_cast<const sockaddr*>(&address),
                   sizeof address),
            static_cast<ssize_t>(bytes.size()));
}

}  // namespace vex::test
