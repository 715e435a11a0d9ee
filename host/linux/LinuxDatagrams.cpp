#include "host/linux/LinuxDatagrams.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <chrono>

#include "host/CodePage.h"
#include "host/EventLoop.h"
#include "host/linux/Descriptor.h"
#include "host/ThreadedLookUp.h"
#include "host/linux/LinuxClock.h"
#include "host/linux/SystemError.h"

namespace vex {
namespace {

constexpr char Source[] = "Datagrams.NewSender";
constexpr int WantedSendBuffer = 1 << 20;
constexpr size_t BatchSize = 64;
constexpr int DatagramsATurn = 16;
constexpr size_t BytesATurn = 16384;
constexpr int64_t LongestRestMs = 100;

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
      : m_Loop(loop),
        m_Socket(std::move(socket)),
        m_Handler(std::move(handler)),
        m_Rest(loop.NewTimer(TimerOrder::Component)) {
    m_Rest->Tick([this] { WatchAgain(); });
    StartWatch();
  }

 private:
  void StartWatch() {
    m_Watch = m_Loop.WatchReadable(m_Socket.Get(), [this] { Take(); });
  }

  /// The handler may let the receiver go, so it is not looked at afterwards.
  void Take() {
    const std::weak_ptr<bool> here = m_Here;
    const Elapsed begin = m_Clock.Elapsed();
    if (TakeSome(here) || here.expired()) return;
    // A flood: the thread goes to others for as long as it was here.
    m_Watch.reset();
    const auto worked = std::chrono::ceil<std::chrono::milliseconds>(m_Clock.Elapsed() - begin);
    m_Rest->Interval(static_cast<int32_t>(std::clamp<int64_t>(worked.count(), 1, LongestRestMs)));
    m_Rest->Enabled(true);
  }

  /// Where the machine refuses for now, the next tick tries again.
  void WatchAgain() {
    try {
      StartWatch();
    } catch (const Error&) {
      return;
    }
    m_Rest->Enabled(false);
  }

  /// True once nothing waits any more.
  bool TakeSome(const std::weak_ptr<bool>& here) {
    size_t bytes = 0;
    for (int taken = 0; taken < DatagramsATurn && bytes < BytesATurn && !here.expired(); ++taken) {
      sockaddr_in from{};
      socklen_t length = sizeof from;
      const ssize_t size = recvfrom(m_Socket.Get(), m_Bytes.data(), m_Bytes.size(), MSG_DONTWAIT,
                                    reinterpret_cast<sockaddr*>(&from), &length);
      if (size < 0) return true;
      bytes += static_cast<size_t>(size);
      m_Handler({ntohl(from.sin_addr.s_addr), ntohs(from.sin_port)},
                std::span(m_Bytes).first(static_cast<size_t>(size)));
    }
    return false;
  }

  EventLoop& m_Loop;
  LinuxClock m_Clock;
  Descriptor m_Socket;
  DatagramHandler m_Handler;
  std::unique_ptr<Timer> m_Rest;
  std::array<uint8_t, 65536> m_Bytes{};
  std::shared_ptr<bool> m_Here = std::make_shared<bool>(true);
  std::unique_ptr<Watch> m_Watch;
};

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
  constexpr char source[] = "Datagrams.NewReceiver";
  Descriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  if (!socket.Open()) throw SystemError(source, "socket");
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(at.Port);
  address.sin_addr.s_addr = htonl(at.Address);
  if (bind(socket.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
    throw SystemError(source, "port " + std::to_string(at.Port));
  return std::make_unique<LinuxDatagramReceiver>(std::move(socket), loop, std::move(handler));
}

std::unique_ptr<DatagramSocket> LinuxDatagrams::NewSender(uint32_t multicastInterface) {
  Descriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  if (!socket.Open()) throw SystemError(Source, "socket");
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
