#include "host/win32/Win32Datagrams.h"

#include <array>
#include <utility>

#include "host/ThreadedLookUp.h"
#include "host/win32/SystemError.h"
#include "host/win32/SystemHeaders.h"

namespace vex {
namespace {

constexpr WORD SocketsVersion = 0x0202;
constexpr int WantedSendBuffer = 1 << 20;
constexpr int DatagramsATurn = 16;
constexpr DWORD ReportUnreachable = 0x9800000C;  // SIO_UDP_CONNRESET

[[nodiscard]] Error SocketError(const std::string& szSource, const std::string& szAbout) {
  return SystemError(szSource, szAbout, static_cast<uint32_t>(WSAGetLastError()));
}

sockaddr_in NativeAddress(const DatagramAddress& address) {
  sockaddr_in native{};
  native.sin_family = AF_INET;
  native.sin_port = htons(address.Port);
  native.sin_addr.s_addr = htonl(address.Address);
  return native;
}

/// A datagram socket that closes itself and never waits.
class Socket {
 public:
  explicit Socket(const std::string& szSource) : m_Socket(::socket(AF_INET, SOCK_DGRAM, 0)) {
    if (m_Socket == INVALID_SOCKET) throw SocketError(szSource, "socket");
    u_long yes = 1;
    ioctlsocket(m_Socket, static_cast<long>(FIONBIO), &yes);
    // An answer that nobody listens there is no failure of the next call.
    BOOL boolReport = FALSE;
    DWORD bytes = 0;
    WSAIoctl(m_Socket, ReportUnreachable, &boolReport, sizeof boolReport, nullptr, 0, &bytes, nullptr,
             nullptr);
  }
  ~Socket() {
    if (m_Socket != INVALID_SOCKET) closesocket(m_Socket);
  }
  Socket(Socket&& other) noexcept : m_Socket(std::exchange(other.m_Socket, INVALID_SOCKET)) {}
  Socket& operator=(Socket&&) = delete;

  [[nodiscard]] SOCKET Get() const { return m_Socket; }
  template <class Value>
  [[nodiscard]] bool Option(int level, int name, const Value& value) const {
    return setsockopt(m_Socket, level, name, reinterpret_cast<const char*>(&value), sizeof value) == 0;
  }

 private:
  SOCKET m_Socket;
};

class Win32DatagramSocket : public DatagramSocket {
 public:
  explicit Win32DatagramSocket(Socket socket) : m_Socket(std::move(socket)) {}

  int32_t Send(std::span<const Datagram> datagrams) override {
    int32_t lFirst = 0;
    for (const Datagram& datagram : datagrams) {
      const sockaddr_in to = NativeAddress(datagram.To);
      const int sent = sendto(m_Socket.Get(), reinterpret_cast<const char*>(datagram.Bytes.data()),
                              static_cast<int>(datagram.Bytes.size()), 0,
                              reinterpret_cast<const sockaddr*>(&to), sizeof to);
      if (sent == SOCKET_ERROR && lFirst == 0) lFirst = WSAGetLastError();
    }
    return lFirst;
  }

 private:
  Socket m_Socket;
};

class Win32DatagramReceiver : public DatagramReceiver {
 public:
  Win32DatagramReceiver(Socket socket, EventLoop& loop, DatagramHandler handler)
      : m_Socket(std::move(socket)), m_Event(WSACreateEvent()), m_Handler(std::move(handler)) {
    if (WSAEventSelect(m_Socket.Get(), m_Event, FD_READ) != 0) {
      WSACloseEvent(m_Event);
      throw SocketError("Datagrams.NewReceiver", "event");
    }
    m_Watch =
        loop.WatchReadable(static_cast<int64_t>(reinterpret_cast<intptr_t>(m_Event)), [this] { Take(); });
  }
  ~Win32DatagramReceiver() override {
    m_Watch.reset();
    WSACloseEvent(m_Event);
  }
  Win32DatagramReceiver(const Win32DatagramReceiver&) = delete;
  Win32DatagramReceiver& operator=(const Win32DatagramReceiver&) = delete;

 private:
  /// A flood leaves the loop its turns: every datagram taken sets the event again where more wait. The
  /// handler may let the receiver go, so it is not looked at afterwards.
  void Take() {
    const std::weak_ptr<bool> here = m_Here;
    WSAResetEvent(m_Event);
    for (int taken = 0; taken < DatagramsATurn && !here.expired(); ++taken) {
      sockaddr_in from{};
      int length = sizeof from;
      const int size =
          recvfrom(m_Socket.Get(), reinterpret_cast<char*>(m_Bytes.data()), static_cast<int>(m_Bytes.size()),
                   0, reinterpret_cast<sockaddr*>(&from), &length);
      if (size == SOCKET_ERROR) return;
      m_Handler({ntohl(from.sin_addr.s_addr), ntohs(from.sin_port)},
                std::span(m_Bytes).first(static_cast<size_t>(size)));
    }
  }

  Socket m_Socket;
  WSAEVENT m_Event;
  DatagramHandler m_Handler;
  std::array<uint8_t, 65536> m_Bytes{};
  std::shared_ptr<bool> m_Here = std::make_shared<bool>(true);
  std::unique_ptr<Watch> m_Watch;
};

/// Starts the socket library for itself, since it runs on a thread that may outlive the rest.
bool AskNameService(const std::string& szHost, uint32_t& address) {
  if (szHost.empty() || szHost.find('\0') != std::string::npos) return false;
  WSADATA data{};
  if (WSAStartup(SocketsVersion, &data) != 0) return false;
  addrinfo wanted{};
  wanted.ai_family = AF_INET;
  wanted.ai_socktype = SOCK_DGRAM;
  addrinfo* found = nullptr;
  const bool boolFound = getaddrinfo(szHost.c_str(), nullptr, &wanted, &found) == 0;
  if (boolFound) {
    address = ntohl(reinterpret_cast<const sockaddr_in*>(found->ai_addr)->sin_addr.s_addr);
    freeaddrinfo(found);
  }
  WSACleanup();
  return boolFound;
}

}  // namespace

Win32Datagrams::~Win32Datagrams() {
  if (m_Started) WSACleanup();
}

void Win32Datagrams::Start() {
  WSADATA data{};
  if (m_Started) return;
  if (const int code = WSAStartup(SocketsVersion, &data))
    throw SystemError("Datagrams", "", static_cast<uint32_t>(code));
  m_Started = true;
}

std::unique_ptr<DatagramSocket> Win32Datagrams::NewSender(uint32_t multicastInterface) {
  constexpr char source[] = "Datagrams.NewSender";
  Start();
  Socket socket(source);
  const DWORD one = 1;
  if (!socket.Option(SOL_SOCKET, SO_BROADCAST, one) || !socket.Option(IPPROTO_IP, IP_MULTICAST_TTL, one))
    throw SocketError(source, "");
  // As much as is granted: a burst of frames must fit.
  (void)socket.Option(SOL_SOCKET, SO_SNDBUF, WantedSendBuffer);
  if (multicastInterface != 0 && !socket.Option(IPPROTO_IP, IP_MULTICAST_IF, htonl(multicastInterface)))
    throw SocketError(source, "multicast interface");
  return std::make_unique<Win32DatagramSocket>(std::move(socket));
}

std::unique_ptr<DatagramReceiver> Win32Datagrams::NewReceiver(EventLoop& loop, const DatagramAddress& at,
                                                              DatagramHandler handler) {
  constexpr char source[] = "Datagrams.NewReceiver";
  Start();
  Socket socket(source);
  const sockaddr_in address = NativeAddress(at);
  // Nobody else may bind the same port and take what is meant for the show.
  (void)socket.Option(SOL_SOCKET, SO_EXCLUSIVEADDRUSE, BOOL{TRUE});
  if (bind(socket.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
    throw SocketError(source, "port " + std::to_string(at.Port));
  return std::make_unique<Win32DatagramReceiver>(std::move(socket), loop, std::move(handler));
}

std::unique_ptr<HostLookUp> Win32Datagrams::LookUp(EventLoop& loop, const std::string& szHost,
                                                   HostLookUpHandler handler) {
  return std::make_unique<ThreadedLookUp>(loop, szHost, AskNameService, std::move(handler));
}

bool Win32Datagrams::Resolve(const std::string& szHost, uint32_t& address) {
  return AddressFromText(szHost, address) || AskNameService(szHost, address);
}

std::string Win32Datagrams::Describe(int32_t lCode) const {
  return DescribeCode(static_cast<uint32_t>(lCode));
}

}  // namespace vex
