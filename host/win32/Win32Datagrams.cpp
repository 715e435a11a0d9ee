#include "host/win32/Win32Datagrams.h"

#include <optional>
#include <utility>

#include "host/DatagramTurns.h"
#include "host/ThreadedLookUp.h"
#include "host/win32/Handle.h"
#include "host/win32/SocketLibrary.h"
#include "host/win32/SystemError.h"
#include "host/win32/Win32Clock.h"

namespace vex {
namespace {

constexpr int WantedSendBuffer = 1 << 20;
constexpr DWORD ReportUnreachable = 0x9800000C;  // SIO_UDP_CONNRESET

[[nodiscard]] Error SocketError(const std::string& szSource, const std::string& szAbout) {
  return SystemError(szSource, szAbout, static_cast<uint32_t>(SocketLibrary::Loaded().LastError()));
}

// The network's order is the other way round than this machine's. The library's own functions for it would
// have to be imported.
constexpr uint16_t Swapped(uint16_t value) {
  return __builtin_bswap16(value);
}
constexpr uint32_t Swapped(uint32_t value) {
  return __builtin_bswap32(value);
}

sockaddr_in NativeAddress(const DatagramAddress& address) {
  sockaddr_in native{};
  native.sin_family = AF_INET;
  native.sin_port = Swapped(address.Port);
  native.sin_addr.s_addr = Swapped(address.Address);
  return native;
}

uint32_t AddressOf(const sockaddr_in& native) {
  return Swapped(static_cast<uint32_t>(native.sin_addr.s_addr));
}

/// A datagram socket that closes itself and never waits.
class Socket {
 public:
  explicit Socket(const std::string& szSource)
      : m_Library(SocketLibrary::Loaded()), m_Socket(m_Library.NewSocket(AF_INET, SOCK_DGRAM, 0)) {
    if (m_Socket == INVALID_SOCKET) throw SocketError(szSource, "socket");
    u_long yes = 1;
    m_Library.ControlSocket(m_Socket, static_cast<long>(FIONBIO), &yes);
    // An answer that nobody listens there is no failure of the next call.
    BOOL boolReport = FALSE;
    DWORD bytes = 0;
    m_Library.Control(m_Socket, ReportUnreachable, &boolReport, sizeof boolReport, nullptr, 0, &bytes,
                      nullptr, nullptr);
  }
  ~Socket() {
    if (m_Socket != INVALID_SOCKET) m_Library.CloseSocket(m_Socket);
  }
  Socket(Socket&& other) noexcept
      : m_Library(other.m_Library), m_Socket(std::exchange(other.m_Socket, INVALID_SOCKET)) {}
  Socket& operator=(Socket&&) = delete;

  template <class Value>
  [[nodiscard]] bool Option(int level, int name, const Value& value) const {
    return m_Library.SetOption(m_Socket, level, name, reinterpret_cast<const char*>(&value), sizeof value) ==
           0;
  }
  [[nodiscard]] bool Bind(const DatagramAddress& at) const {
    const sockaddr_in address = NativeAddress(at);
    return m_Library.Bind(m_Socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  }
  /// The event is set whenever a datagram comes, and again by each Receive behind which more wait.
  [[nodiscard]] bool SetWhenReadable(HANDLE event) const {
    return m_Library.EventSelect(m_Socket, event, FD_READ) == 0;
  }
  /// 0 or the system's code.
  [[nodiscard]] int32_t Send(const Datagram& datagram) const {
    const sockaddr_in to = NativeAddress(datagram.To);
    const int sent = m_Library.SendTo(m_Socket, reinterpret_cast<const char*>(datagram.Bytes.data()),
                                      static_cast<int>(datagram.Bytes.size()), 0,
                                      reinterpret_cast<const sockaddr*>(&to), sizeof to);
    return sent == SOCKET_ERROR ? m_Library.LastError() : 0;
  }
  [[nodiscard]] std::optional<size_t> Receive(std::span<uint8_t> room, DatagramAddress& from) const {
    sockaddr_in native{};
    int length = sizeof native;
    const int size =
        m_Library.ReceiveFrom(m_Socket, reinterpret_cast<char*>(room.data()), static_cast<int>(room.size()),
                              0, reinterpret_cast<sockaddr*>(&native), &length);
    if (size == SOCKET_ERROR) return std::nullopt;
    from = {AddressOf(native), Swapped(native.sin_port)};
    return static_cast<size_t>(size);
  }

 private:
  const SocketLibrary& m_Library;
  SOCKET m_Socket;
};

class Win32DatagramSocket : public DatagramSocket {
 public:
  explicit Win32DatagramSocket(Socket socket) : m_Socket(std::move(socket)) {}

  int32_t Send(std::span<const Datagram> datagrams) override {
    int32_t lFirst = 0;
    for (const Datagram& datagram : datagrams) {
      const int32_t lCode = m_Socket.Send(datagram);
      if (lFirst == 0) lFirst = lCode;
    }
    return lFirst;
  }

 private:
  Socket m_Socket;
};

class Win32DatagramReceiver : public DatagramReceiver {
 public:
  /// The event stays set until a datagram is taken.
  Win32DatagramReceiver(Socket socket, EventLoop& loop, DatagramHandler handler)
      : m_Readable(CreateEventA(nullptr, TRUE, FALSE, nullptr)),
        m_Socket(std::move(socket)),
        m_Turns(
            loop, m_Clock, static_cast<int64_t>(reinterpret_cast<intptr_t>(m_Readable.Get())),
            [this](std::span<uint8_t> room, DatagramAddress& from) {
              ResetEvent(m_Readable.Get());
              return m_Socket.Receive(room, from);
            },
            std::move(handler)) {
    if (!m_Readable.Open()) throw SystemError("Datagrams.NewReceiver", "event");
    if (!m_Socket.SetWhenReadable(m_Readable.Get())) throw SocketError("Datagrams.NewReceiver", "event");
  }

 private:
  Win32Clock m_Clock;
  Handle m_Readable;
  Socket m_Socket;
  DatagramTurns m_Turns;
};

bool AskNameService(const std::string& szHost, uint32_t& address) {
  if (szHost.empty() || szHost.find('\0') != std::string::npos) return false;
  try {
    const SocketLibrary& library = SocketLibrary::Loaded();
    addrinfo wanted{};
    wanted.ai_family = AF_INET;
    wanted.ai_socktype = SOCK_DGRAM;
    addrinfo* found = nullptr;
    if (library.AddressInfo(szHost.c_str(), nullptr, &wanted, &found) != 0) return false;
    address = AddressOf(*reinterpret_cast<const sockaddr_in*>(found->ai_addr));
    library.FreeAddressInfo(found);
    return true;
  } catch (const Error&) {
    return false;  // a machine without a network knows no names
  }
}

}  // namespace

std::unique_ptr<DatagramSocket> Win32Datagrams::NewSender(uint32_t multicastInterface) {
  constexpr char source[] = "Datagrams.NewSender";
  Socket socket(source);
  const DWORD one = 1;
  if (!socket.Option(SOL_SOCKET, SO_BROADCAST, one) || !socket.Option(IPPROTO_IP, IP_MULTICAST_TTL, one))
    throw SocketError(source, "");
  // As much as is granted: a burst of frames must fit.
  (void)socket.Option(SOL_SOCKET, SO_SNDBUF, WantedSendBuffer);
  if (multicastInterface != 0 && !socket.Option(IPPROTO_IP, IP_MULTICAST_IF, Swapped(multicastInterface)))
    throw SocketError(source, "multicast interface");
  return std::make_unique<Win32DatagramSocket>(std::move(socket));
}

std::unique_ptr<DatagramReceiver> Win32Datagrams::NewReceiver(EventLoop& loop, const DatagramAddress& at,
                                                              DatagramHandler handler) {
  constexpr char source[] = "Datagrams.NewReceiver";
  Socket socket(source);
  // Nobody else may bind the same port and take what is meant for the show.
  (void)socket.Option(SOL_SOCKET, SO_EXCLUSIVEADDRUSE, BOOL{TRUE});
  if (!socket.Bind(at)) throw SocketError(source, "port " + std::to_string(at.Port));
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
