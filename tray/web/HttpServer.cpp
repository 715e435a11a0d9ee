#include "tray/web/HttpServer.h"

#include <cerrno>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <thread>
#include <vector>

#include "basic/Error.h"

namespace vex {
namespace {

constexpr size_t MostWaiting = 128;
constexpr int Backlog = 128;

/// Set while a connection is only to be closed, because too many wait already.
thread_local bool t_Full = false;

/// Threads that take connections in the order of their coming.
class BoundedPool final : public httplib::TaskQueue {
 public:
  /// Keeps in waitingCount how many wait; it outlives this.
  BoundedPool(size_t threads, std::atomic<size_t>& waitingCount) : m_WaitingCount(waitingCount) {
    for (size_t i = 0; i < threads; i++) m_Threads.emplace_back([this] { Work(); });
  }

  void enqueue(std::function<void()> task) override {
    {
      const std::lock_guard lock(m_Mutex);
      if (m_Waiting.size() < MostWaiting) {
        m_Waiting.push_back(std::move(task));
        m_WaitingCount = m_Waiting.size();
        m_Wake.notify_one();
        return;
      }
    }
    t_Full = true;
    task();
    t_Full = false;
  }

  void shutdown() override {
    {
      const std::lock_guard lock(m_Mutex);
      m_Ending = true;
    }
    m_Wake.notify_all();
    for (auto& thread : m_Threads) thread.join();
  }

 private:
  void Work() {
    for (;;) {
      std::function<void()> task;
      {
        std::unique_lock lock(m_Mutex);
        m_Wake.wait(lock, [this] { return m_Ending || !m_Waiting.empty(); });
        if (m_Waiting.empty()) return;
        task = std::move(m_Waiting.front());
        m_Waiting.pop_front();
        m_WaitingCount = m_Waiting.size();
      }
      task();
    }
  }

  std::mutex m_Mutex;
  std::condition_variable m_Wake;
  std::deque<std::function<void()>> m_Waiting;
  std::atomic<size_t>& m_WaitingCount;
  std::vector<std::thread> m_Threads;
  bool m_Ending = false;
};

void Refuse(Connection& connection, int status) {
  const std::string szText = "This request is not one of the page's.\n";
  connection.httplib::Stream::write(
      "HTTP/1.1 " + std::to_string(status) +
      " Refused\r\nContent-Type: text/plain; charset=utf-8\r\nContent-Length: " +
      std::to_string(szText.size()) + "\r\nConnection: close\r\n\r\n" + szText);
}

}  // namespace

HttpServer::HttpServer(size_t threads) {
  // The library makes its queue when it has begun to listen for the end.
  new_task_queue = [this, threads] {
    auto* pool = new BoundedPool(threads, m_Waiting);
    const std::lock_guard lock(m_Mutex);
    m_Running = true;
    m_Began.notify_all();
    return pool;
  };
}

int HttpServer::Bind(const std::string& szAddress, int port) {
  // Without SO_REUSEPORT, which the library sets by itself: two trays on one port would share the visitors.
  set_socket_options([](socket_t socket) {
    const int on = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof(on));
  });
  errno = 0;
  const int bound = port == 0 ? bind_to_any_port(szAddress) : (bind_to_port(szAddress, port) ? port : -1);
  if (bound <= 0) {
    const std::string szWhy = errno != 0 ? std::strerror(errno) : "no such address here";
    throw Error(1, "Server.Start",
                "Can't listen on " + szAddress + " port " + std::to_string(port) + ": " + szWhy +
                    "; choose another with --listen ADDRESS:PORT");
  }
  // The library lets five wait to be accepted; a sixth would come a second late.
  ::listen(svr_sock_, Backlog);
  return bound;
}

void HttpServer::Run() {
  listen_after_bind();
}

void HttpServer::WaitUntilRunning() {
  std::unique_lock lock(m_Mutex);
  m_Began.wait(lock, [this] { return m_Running; });
}

void HttpServer::Close() {
  {
    const std::lock_guard lock(m_Mutex);
    m_Closed = true;
    for (const auto socket : m_Open) ::shutdown(socket, SHUT_RDWR);
  }
  stop();
}

bool HttpServer::Keep(socket_t socket) {
  const std::lock_guard lock(m_Mutex);
  if (m_Closed || t_Full) return false;
  m_Open.insert(socket);
  return true;
}

void HttpServer::Drop(socket_t socket) {
  const std::lock_guard lock(m_Mutex);
  m_Open.erase(socket);
  ::close(socket);
}

void HttpServer::Serve(Connection& connection) {
  const int refusal = connection.ReadHead();
  if (refusal > 0) Refuse(connection, refusal);
  if (refusal != 0) return;
  bool boolClosed = false;
  process_request(connection, true, boolClosed, nullptr);
}

bool HttpServer::process_and_close_socket(socket_t socket) {
  if (!Keep(socket)) {
    ::close(socket);
    return false;
  }
  SocketConnection connection(socket, [this] { return m_Waiting > 0; });
  Serve(connection);
  connection.Finish();
  Drop(socket);
  return true;
}

}  // namespace vex
