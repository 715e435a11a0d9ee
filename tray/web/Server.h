#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "tray/web/Guards.h"
#include "tray/web/Site.h"

namespace vex {

/// The web server of the tray: serves the page, what programs ask of the player's state, and the events by
/// which open pages stay live. It runs on threads of its own, a bounded number, and never makes the one who
/// publishes wait: an open page that cannot keep up loses old pictures of the lights first and old lines
/// next.
///
/// - Start raises Error where the address cannot be listened on, or where the guards forbid it.
/// - The site outlives the server's last thread: it is held until Stop has returned.
class Server {
 public:
  explicit Server(std::shared_ptr<Site> site);
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  /// Listens at once, so the page can be opened when this returns. Port 0 takes any free one.
  void Start(const std::string& szAddress, int port, const Guards& guards);
  /// Ends every connection and returns when no thread is left. A second call does nothing.
  void Stop();
  /// The port listened on; 0 while stopped.
  [[nodiscard]] int Port() const;

  /// Sends an event to every open page, from any thread, without waiting. Names are "state", "line" and
  /// "lights". A state replaces one that has not gone out yet; so do lights with the same key (the
  /// universe's).
  void Publish(const std::string& szEvent, const std::string& szJson, const std::string& szKey = {});
  /// How many pages are open and listening.
  [[nodiscard]] size_t Listeners() const;

 private:
  class House;
  [[nodiscard]] std::shared_ptr<House> Now() const;

  std::shared_ptr<Site> m_Site;
  mutable std::mutex m_Mutex;
  std::shared_ptr<House> m_House;  // empty while stopped
};

}  // namespace vex
