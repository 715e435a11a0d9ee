#include "tray/web/Connection.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace vex {
namespace {

constexpr std::chrono::milliseconds RequestTime{5000};
constexpr std::chrono::milliseconds HurriedRequestTime{250};
constexpr std::chrono::milliseconds SendTime{5000};
constexpr std::chrono::milliseconds FinishTime{500};
constexpr size_t FinishBytes = size_t{256} * 1024;

/// -1 for a failure that ends the connection, as the library expects it.
constexpr ssize_t Broken = -1;

void AddressOf(const sockaddr_storage& address, socklen_t length, std::string& szAddress, int& port) {
  std::array<char, NI_MAXHOST> host{};
  std::array<char, NI_MAXSERV> service{};
  if (::getnameinfo(reinterpret_cast<const sockaddr*>(&address), length, host.data(), host.size(),
                    service.data(), service.size(), NI_NUMERICHOST | NI_NUMERICSERV) != 0) {
    return;
  }
  szAddress = host.data();
  port = std::atoi(service.data());
}

}  // namespace

int Connection::ReadHead() {
  std::string szRead;
  std::array<char, 2048> some{};
  size_t end = std::string::npos;
  while (end == std::string::npos) {
    if (szRead.size() > MostHeadBytes) return JudgeHead(szRead).Status;
    const auto count = Receive(some.data(), some.size());
    if (count <= 0) return szRead.empty() ? -1 : 408;
    const auto from = szRead.size() < 3 ? 0 : szRead.size() - 3;
    szRead.append(some.data(), static_cast<size_t>(count));
    end = szRead.find("\r\n\r\n", from);
  }
  const auto szHead = std::string_view(szRead).substr(0, end + 4);
  const auto verdict = JudgeHead(szHead);
  if (verdict.Status != 0) return verdict.Status;
  const auto szBody = std::string_view(szRead).substr(szHead.size()).substr(0, verdict.BodyBytes);
  m_BodyLeft = verdict.BodyBytes - szBody.size();
  m_Ready = WithoutRange(szHead).append(szBody);
  return 0;
}

ssize_t Connection::read(char* bytes, size_t size) {
  if (m_Taken < m_Ready.size()) {
    const auto count = std::min(size, m_Ready.size() - m_Taken);
    std::memcpy(bytes, m_Ready.data() + m_Taken, count);
    m_Taken += count;
    return static_cast<ssize_t>(count);
  }
  if (m_BodyLeft == 0) return 0;
  const auto count = Receive(bytes, std::min(size, m_BodyLeft));
  if (count > 0) m_BodyLeft -= static_cast<size_t>(count);
  return count;
}

SocketConnection::SocketConnection(socket_t socket, std::function<bool()> othersWait)
    : m_Socket(socket), m_OthersWait(std::move(othersWait)), m_Began(std::chrono::steady_clock::now()) {
  const timeval sending{SendTime.count() / 1000, SendTime.count() % 1000 * 1000};
  ::setsockopt(m_Socket, SOL_SOCKET, SO_SNDTIMEO, &sending, sizeof(sending));
  // Events are small and must not wait for each other.
  const int on = 1;
  ::setsockopt(m_Socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on));
}

void SocketConnection::WaitAtMost(std::chrono::milliseconds time) const {
  const auto count = std::max<int64_t>(time.count(), 1);  // 0 would be for ever
  const timeval receiving{count / 1000, count % 1000 * 1000};
  ::setsockopt(m_Socket, SOL_SOCKET, SO_RCVTIMEO, &receiving, sizeof(receiving));
}

ssize_t SocketConnection::Receive(char* bytes, size_t size) {
  for (;;) {
    const auto gone =
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - m_Began);
    const auto most = m_OthersWait() ? HurriedRequestTime : RequestTime;
    if (gone >= most) return Broken;
    WaitAtMost(std::min(most - gone, HurriedRequestTime));
    const auto count = ::recv(m_Socket, bytes, size, 0);
    if (count >= 0 || (errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR)) return count;
  }
}

ssize_t SocketConnection::write(const char* bytes, size_t size) {
  return ::send(m_Socket, bytes, size, MSG_NOSIGNAL);
}

bool SocketConnection::is_writable() const {
  char byte = 0;
  const auto count = ::recv(m_Socket, &byte, 1, MSG_PEEK | MSG_DONTWAIT);
  return count > 0 || (count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR));
}

void SocketConnection::get_remote_ip_and_port(std::string& szAddress, int& port) const {
  sockaddr_storage address{};
  socklen_t length = sizeof(address);
  if (::getpeername(m_Socket, reinterpret_cast<sockaddr*>(&address), &length) == 0) {
    AddressOf(address, length, szAddress, port);
  }
}

void SocketConnection::get_local_ip_and_port(std::string& szAddress, int& port) const {
  sockaddr_storage address{};
  socklen_t length = sizeof(address);
  if (::getsockname(m_Socket, reinterpret_cast<sockaddr*>(&address), &length) == 0) {
    AddressOf(address, length, szAddress, port);
  }
}

/// Closing with bytes unread would reset the connection, and the answer would be lost on its way.
void SocketConnection::Finish() {
  ::shutdown(m_Socket, SHUT_WR);
  WaitAtMost(FinishTime);
  const auto end = std::chrono::steady_clock::now() + FinishTime;
  std::array<char, 4096> some{};
  for (size_t drained = 0; drained < FinishBytes && std::chrono::steady_clock::now() < end;) {
    const auto count = ::recv(m_Socket, some.data(), some.size(), 0);
    if (count <= 0) return;
    drained += static_cast<size_t>(count);
  }
}

}  // namespace vex
