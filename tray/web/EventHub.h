#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <set>
#include <string>

namespace vex {

/// Hands what happens to every open page. Each page has a bounded queue of its own, emptied by the thread
/// that serves it, so that nobody waits for a page that is slow: of each kind of state and of each universe's
/// lights it gets the newest, and where too many lines wait the oldest are left out and the page is told how
/// many.
///
/// All methods may be called on any thread.
class EventHub {
 public:
  class Listener {
   public:
    /// Waits for something to happen, at most so long, and takes all of it as server-sent events: empty where
    /// nothing did. False once the hub is closed and everything taken.
    bool Next(std::string& szEvents, std::chrono::milliseconds longest);

   private:
    friend class EventHub;
    struct Entry {
      std::string Key;  // of what a newer one replaces; empty for a line
      std::shared_ptr<const std::string> Text;
    };
    void Add(const std::string& szKey, const std::shared_ptr<const std::string>& text);
    void Close();
    void LeaveOutOldest();

    std::mutex m_Mutex;
    std::condition_variable m_Wake;
    std::deque<Entry> m_Waiting;
    size_t m_Lines = 0;
    size_t m_Lost = 0;
    bool m_Closed = false;
  };

  explicit EventHub(size_t mostListeners) : m_Most(mostListeners) {}

  /// A new page; empty where as many as there may be listen already, or the hub is closed.
  [[nodiscard]] std::shared_ptr<Listener> Join();
  void Leave(const std::shared_ptr<Listener>& listener);
  void Publish(const std::string& szEvent, const std::string& szJson, const std::string& szKey);
  void Close();
  [[nodiscard]] size_t Count() const;

 private:
  const size_t m_Most;
  mutable std::mutex m_Mutex;
  std::set<std::shared_ptr<Listener>> m_Listeners;
  bool m_Closed = false;
};

/// One server-sent event. JSON goes on one line.
[[nodiscard]] std::string AsEvent(const std::string& szEvent, const std::string& szJson);

}  // namespace vex
