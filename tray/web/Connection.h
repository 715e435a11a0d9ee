#pragma once

#include <httplib.h>

#include <chrono>
#include <functional>
#include <string>

#include "tray/web/RequestHead.h"

namespace vex {

/// One request on its way in and its answer on the way out. The head is read whole, within a time and a
/// number of bytes, and judged before the library sees it; of the body the library sees as many bytes as were
/// announced. A connection carries one request: what follows it is never taken for another.
class Connection : public httplib::Stream {
 public:
  /// Reads the head. What has to be answered instead of handing it on: 0 for nothing, -1 where nobody is
  /// there to read an answer.
  [[nodiscard]] int ReadHead();

  ssize_t read(char* bytes, size_t size) override;

 protected:
  /// At least one byte; 0 at the end, less where the time is over or the connection broken.
  virtual ssize_t Receive(char* bytes, size_t size) = 0;

 private:
  std::string m_Ready;  // what is to be handed on, from m_Taken on
  size_t m_Taken = 0;
  size_t m_BodyLeft = 0;
};

/// The same over a socket. Receiving ends when the request as a whole has taken too long, however steadily
/// its bytes drip in; sending when the other side takes nothing for a while. Where others wait for their
/// turn, too long is soon: a request comes in one piece from whoever means it.
class SocketConnection final : public Connection {
 public:
  /// othersWait is asked a few times a second while nothing comes.
  SocketConnection(socket_t socket, std::function<bool()> othersWait);

  [[nodiscard]] bool is_readable() const override { return true; }
  [[nodiscard]] bool is_writable() const override;
  ssize_t write(const char* bytes, size_t size) override;
  void get_remote_ip_and_port(std::string& szAddress, int& port) const override;
  void get_local_ip_and_port(std::string& szAddress, int& port) const override;
  [[nodiscard]] socket_t socket() const override { return m_Socket; }

  /// Says that nothing more comes and lets the other side take what it was sent.
  void Finish();

 protected:
  ssize_t Receive(char* bytes, size_t size) override;

 private:
  void WaitAtMost(std::chrono::milliseconds time) const;

  socket_t m_Socket;
  std::function<bool()> m_OthersWait;
  std::chrono::steady_clock::time_point m_Began;
};

}  // namespace vex
