#pragma once

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace vex::bench {

inline sockaddr_in Loopback(uint16_t port, uint32_t at = INADDR_LOOPBACK) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(at);
  return address;
}

/// A lighting packet as it came: real time in nanoseconds by the kernel's stamp, its universe, and the number
/// that the sender put into its first two slots.
struct Arrival {
  int64_t AtNs = 0;
  int32_t Universe = 0;
  int32_t Number = 0;
};

/// Listens at an address of the loopback interface, on a thread of its own, for whole E1.31 universes of one
/// source; packets of other sources are passed over.
class PacketReceiver {
 public:
  PacketReceiver(uint16_t port, std::string szSource, uint32_t at = INADDR_LOOPBACK)
      : m_Source(std::move(szSource)), m_Socket(socket(AF_INET, SOCK_DGRAM, 0)) {
    const sockaddr_in address = Loopback(port, at);
    const int on = 1;
    const int room = 8 << 20;
    const timeval patience{0, 100'000};
    setsockopt(m_Socket, SOL_SOCKET, SO_RCVBUF, &room, sizeof room);
    setsockopt(m_Socket, SOL_SOCKET, SO_TIMESTAMPNS, &on, sizeof on);
    setsockopt(m_Socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    if (bind(m_Socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
      std::perror("the lighting port on the loopback interface");
      std::exit(1);
    }
    m_Arrivals.reserve(1 << 16);
    m_Thread = std::thread([this] { Listen(); });
  }
  ~PacketReceiver() {
    Stop();
    close(m_Socket);
  }
  PacketReceiver(const PacketReceiver&) = delete;
  PacketReceiver& operator=(const PacketReceiver&) = delete;

  /// What came until now; nothing more comes.
  const std::vector<Arrival>& Stop() {
    m_Stop = true;
    if (m_Thread.joinable()) m_Thread.join();
    return m_Arrivals;
  }

 private:
  static constexpr ssize_t WholeUniverse = 638;
  static constexpr size_t NameAt = 44;
  static constexpr size_t UniverseAt = 113;
  static constexpr size_t SlotsAt = 126;

  void Listen() {
    std::array<uint8_t, 2048> bytes{};
    std::array<char, 256> control{};
    while (!m_Stop) {
      iovec part{bytes.data(), bytes.size()};
      msghdr message{};
      message.msg_iov = &part;
      message.msg_iovlen = 1;
      message.msg_control = control.data();
      message.msg_controllen = control.size();
      if (recvmsg(m_Socket, &message, 0) != WholeUniverse) continue;
      if (m_Source != reinterpret_cast<const char*>(&bytes[NameAt])) continue;
      const cmsghdr* const first = CMSG_FIRSTHDR(&message);
      if (first == nullptr || first->cmsg_type != SCM_TIMESTAMPNS) continue;
      timespec stamp{};
      std::memcpy(&stamp, CMSG_DATA(first), sizeof stamp);
      m_Arrivals.push_back({stamp.tv_sec * 1'000'000'000LL + stamp.tv_nsec,
                            bytes[UniverseAt] << 8 | bytes[UniverseAt + 1],
                            bytes[SlotsAt] | bytes[SlotsAt + 1] << 8});
    }
  }

  std::string m_Source;
  int m_Socket;
  std::atomic<bool> m_Stop{false};
  std::vector<Arrival> m_Arrivals;
  std::thread m_Thread;
};

}  // namespace vex::bench
