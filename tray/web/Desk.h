#pragma once

#include <map>
#include <memory>
#include <string>

#include "tray/web/Doorman.h"
#include "tray/web/EventHub.h"
#include "tray/web/HttpServer.h"
#include "tray/web/Site.h"

namespace vex {

/// Answers the requests that the doorman lets in: which path gives what, and who may ask for it. Every answer
/// carries the headers that keep a browser from running or framing anything that is not ours.
///
/// | path | may | gives |
/// |---|---|---|
/// | / /page.css /page.js /icon.svg | everybody | the page itself, without anything that is known |
/// | /healthz | everybody | 200 or 503; why not, to those who may look |
/// | /api/session | everybody | who one is, and the token for changes |
/// | /api/login /api/logout (POST) | everybody | a session, or its end |
/// | /api/state /api/lines /api/history /api/shows /api/week /api/events /metrics | who may look | what the
/// site says | | /api/do (POST) | who may change | asks it of the player; to stop it takes two requests |
class Desk {
 public:
  Desk(std::shared_ptr<Site> site, std::shared_ptr<Doorman> doorman, std::shared_ptr<EventHub> hub);

  /// Registers itself; the desk outlives the server.
  void Serve(HttpServer& server);

 private:
  using Request = httplib::Request;
  using Response = httplib::Response;
  using Answer = void (Desk::*)(const Request&, Response&, const Visitor&);
  struct Place {
    Role May;
    Answer Give;
  };
  static const std::map<std::string, Place>& Places();

  bool Receive(const Request& request, Response& response);
  bool ReceiveChange(const Request& request, Response& response, const Visitor& visitor);
  void Give(const Place& place, const Request& request, Response& response, const Visitor& visitor);

  void GiveState(const Request& request, Response& response, const Visitor& visitor);
  void GiveLines(const Request& request, Response& response, const Visitor& visitor);
  void GiveHistory(const Request& request, Response& response, const Visitor& visitor);
  void GiveShows(const Request& request, Response& response, const Visitor& visitor);
  void GiveWeek(const Request& request, Response& response, const Visitor& visitor);
  void GiveMetrics(const Request& request, Response& response, const Visitor& visitor);
  void GiveHealth(const Request& request, Response& response, const Visitor& visitor);
  void GiveSession(const Request& request, Response& response, const Visitor& visitor);
  void GiveEvents(const Request& request, Response& response, const Visitor& visitor);

  void LogIn(const Request& request, Response& response);
  void LogOut(const Request& request, Response& response);
  void Do(const Request& request, Response& response);
  bool AskedTwice(const std::string& szAgain, const Visitor& visitor, Response& response);

  std::shared_ptr<Site> m_Site;
  std::shared_ptr<Doorman> m_Doorman;
  std::shared_ptr<EventHub> m_Hub;

  struct Question {
    std::string Again;
    Sessions::Clock::time_point Until;
  };
  std::mutex m_Mutex;
  std::map<std::string, Question> m_Questions;  // by the token of who asked: to stop, once
};

}  // namespace vex
