#include "host/linux/LinuxDatagrams.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <optional>

#include "host/CodePage.h"
#include "host/DatagramTurns.h"
#include "host/ThreadedLookUp.h"
#include "host/linux/Descriptor.h"
#include "host/linux/LinuxClock.h"
#include "host/linux/SystemError.h"

namespace vex {
namespace {

constexpr char Source[] = "Datagrams.NewSender";
constexpr char Receiving[] = "Datagrams.NewReceiver";
constexpr int WantedSendBuffer = 1 << 20;
constexpr size_t BatchSize = 64;

class LinuxDatagramSocket : public DatagramSocket {
 public:
  explicit LinuxDatagramSocket(Descriptor socket) : m_Socket(std::move(socket)) {}

  int32_t Send(std::span<const Datagram> datagrams) override {
    int32_t lFirst = 0;
    while (!datagrams.empty()) {
      const auto batch = datagrams.first(std::min(datagrams.size(), BatchSize));
      const int32_t lCode = SendBatch(batch);
      if (lFirst == 0) lFirst = lCode;
      datagrams = datagrams.subspan(batch.size());
    }
    return lFirst;
  }

 private:
  int32_t SendBatch(std::span<const Datagram> batch) {
    for (size_t i = 0; i < batch.size(); ++i) Describe(batch[i], i);
    int32_t lFirst = 0;
    for (size_t sent = 0; sent < batch.size();) {
      const int count = sendmmsg(m_Socket.Get(), m_Messages.data() + sent,
                                 static_cast<unsigned>(batch.size() - sent), MSG_DONTWAIT | MSG_NOSIGNAL);
      if (count > 0) {
        sent += static_cast<size_t>(count);
      } else if (errno != EINTR) {
        // The call stops before a datagram that fails; the ones behind it may have another way out.
        if (lFirst == 0) lFirst = errno;
        ++sent;
      }
    }
    return lFirst;
  }

  void Describe(const Datagram& datagram, size_t i) {
    m_Addresses[i] = {};
    m_Addresses[i].sin_family = AF_INET;
    m_Addresses[i].sin_port = htons(datagram.To.Port);
    m_Addresses[i].sin_addr.s_addr = htonl(datagram.To.Address);
    // The kernel only reads what it sends.
    m_Parts[i] = {const_cast<uint8_t*>(datagram.Bytes.data()), datagram.Bytes.size()};
    m_Messages[i] = {};
    m_Messages[i].msg_hdr.msg_name = &m_Addresses[i];
    m_Messages[i].msg_hdr.msg_namelen = sizeof m_Addresses[i];
    m_Messages[i].msg_hdr.msg_iov = &m_Parts[i];
    m_Messages[i].msg_hdr.msg_iovlen = 1;
  }

  Descriptor m_Socket;
  std::array<sockaddr_in, BatchSize> m_Addresses{};
  std::array<iovec, BatchSize> m_Parts{};
  std::array<mmsghdr, BatchSize> m_Messages{};
};

class LinuxDatagramReceiver : public DatagramReceiver {
 public:
  LinuxDatagramReceiver(Descriptor socket, EventLoop& loop, DatagramHandler handler)
      : m_Socket(std::move(socket)),
        m_Turns(
            loop, m_Clock, m_Socket.Get(),
            [this](std::span<uint8_t> room, DatagramAddress& from) { return Take(room, from); },
            std::move(handler)) {}

 private:
  [[nodiscard]] std::optional<size_t> Take(std::span<uint8_t> room, DatagramAddress& from) const {
    sockaddr_in native{};
    socklen_t length = sizeof native;
    const ssize_t size = recvfrom(m_Socket.Get(), room.data(), room.size(), MSG_DONTWAIT,
                                  reinterpret_cast<sockaddr*>(&native), &length);
    if (size < 0) return std::nullopt;
    from = {ntohl(native.sin_addr.s_addr), ntohs(native.sin_port)};
    return static_cast<size_t>(size);
  }

  LinuxClock m_Clock;
  Descriptor m_Socket;
  DatagramTurns m_Turns;
};

Descriptor NewSocket(const char* szSource) {
  Descriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  if (!socket.Open()) throw SystemError(szSource, "socket");
  return socket;
}

void Bind(const Descriptor& socket, const DatagramAddress& at) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(at.Port);
  address.sin_addr.s_addr = htonl(at.Address);
  if (bind(socket.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
    throw SystemError(Receiving, "port " + std::to_string(at.Port));
}

bool AskNameService(const std::string& szHost, uint32_t& address) {
  if (szHost.empty() || szHost.find('\0') != std::string::npos) return false;
  addrinfo wanted{};
  wanted.ai_family = AF_INET;
  wanted.ai_socktype = SOCK_DGRAM;
  addrinfo* found = nullptr;
  if (getaddrinfo(AnsiToUtf8(szHost).c_str(), nullptr, &wanted, &found) != 0) return false;
  address = ntohl(reinterpret_cast<const sockaddr_in*>(found->ai_addr)->sin_addr.s_addr);
  freeaddrinfo(found);
  return true;
}

}  // namespace

std::unique_ptr<DatagramReceiver> LinuxDatagrams::NewReceiver(EventLoop& loop, const DatagramAddress& at,
                                                              DatagramHandler handler) {
  Descriptor socket = NewSocket(Receiving);
  Bind(socket, at);
  return std::make_unique<LinuxDatagramReceiver>(std::move(socket), loop, std::move(handler));
}

std::unique_ptr<DatagramReceiver> LinuxDatagrams::NewSharedReceiver(EventLoop& loop,
                                                                    const DatagramAddress& at,
                                                                    uint32_t multicastInterface,
                                                                    DatagramHandler handler) {
  Descriptor socket = NewSocket(Receiving);
  const int one = 1;
  if (setsockopt(socket.Get(), SOL_SOCKET, SO_REUSEADDR, &one, sizeof one) != 0)
    throw SystemError(Receiving, "");
  Bind(socket, at);
  if (IN_MULTICAST(at.Address)) {
    const ip_mreq group{{htonl(at.Address)}, {htonl(multicastInterface)}};
    if (setsockopt(socket.Get(), IPPROTO_IP, IP_ADD_MEMBERSHIP, &group, sizeof group) != 0)
      throw SystemError(Receiving, "multicast");
  }
  return std::make_unique<LinuxDatagramReceiver>(std::move(socket), loop, std::move(handler));
}

std::unique_ptr<DatagramSocket> LinuxDatagrams::NewSender(uint32_t multicastInterface) {
  Descriptor socket = NewSocket(Source);
  const int one = 1;
  if (setsockopt(socket.Get(), SOL_SOCKET, SO_BROADCAST, &one, sizeof one) != 0 ||
      setsockopt(socket.Get(), IPPROTO_IP, IP_MULTICAST_TTL, &one, sizeof one) != 0)
    throw SystemError(Source, "");
  // As much as is granted: a burst of frames must fit.
  setsockopt(socket.Get(), SOL_SOCKET, SO_SNDBUF, &WantedSendBuffer, sizeof WantedSendBuffer);
  if (multicastInterface != 0) {
    const in_addr interface { htonl(multicastInterface) };
    if (setsockopt(socket.Get(), IPPROTO_IP, IP_MULTICAST_IF, &interface, sizeof interface) != 0)
      throw SystemError(Source, inet_ntoa(interface));
  }
  return std::make_unique<LinuxDatagramSocket>(std::move(socket));
}

std::unique_ptr<HostLookUp> LinuxDatagrams::LookUp(EventLoop& loop, const std::string& szHost,
                                                   HostLookUpHandler handler) {
  return std::make_unique<ThreadedLookUp>(loop, szHost, AskNameService, std::move(handler));
}

bool LinuxDatagrams::Resolve(const std::string& szHost, uint32_t& address) {
  return AddressFromText(szHost, address) || AskNameService(szHost, address);
}

std::string LinuxDatagrams::Describe(int32_t lCode) const {
  return DescribeCode(lCode);
}

}  // namespace vex
