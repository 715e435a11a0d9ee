#pragma once

#include <httplib.h>

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <set>
#include <string>

#include "tray/web/Connection.h"

namespace vex {

/// The library's server with bounds: so many threads and no more, so many connections waiting for one, one
/// request for each connection, and an end that comes at once, however many connections stand open. While
/// connections wait for a thread, those that have one are given little time to say what they want.
class HttpServer final : public httplib::Server {
 public:
  explicit HttpServer(size_t threads);

  /// Listens on the address; raises Error with the reason where it cannot. The port, for 0 was any.
  int Bind(const std::string& szAddress, int port);
  /// Serves until Close; returns when every thread is done.
  void Run();
  /// Returns when Run, on another thread, has begun to serve; the library would not hear a Close before that.
  void WaitUntilRunning();
  void Close();

  /// One request from its head to the end of its answer.
  void Serve(Connection& connection);

 private:
  bool process_and_close_socket(socket_t socket) override;
  bool Keep(socket_t socket);
  void Drop(socket_t socket);

  std::atomic<size_t> m_Waiting{0};  // connections without a thread
  std::mutex m_Mutex;
  std::set<socket_t> m_Open;
  bool m_Closed = false;
  std::condition_variable m_Began;
  bool m_Running = false;
};

}  // namespace vex
