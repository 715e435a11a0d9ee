#include "tray/web/Desk.h"

#include <charconv>
#include <nlohmann/json.hpp>

#include "tray/web/Answers.h"
#include "tray/web/PageFiles.h"

namespace vex {
namespace {

using nlohmann::json;

constexpr size_t UsualLines = 200;
constexpr size_t MostLines = 2000;
constexpr std::chrono::seconds Heartbeat{10};

constexpr int Unauthorized = 401;
constexpr int Forbidden = 403;
constexpr int NotFound = 404;
constexpr int MethodNotAllowed = 405;
constexpr int Misdirected = 421;
constexpr int Failed = 500;
constexpr int Unavailable = 503;

constexpr const char* Json = "application/json";
constexpr const char* Plain = "text/plain; charset=utf-8";

std::string TypeOf(std::string_view szName) {
  if (szName.ends_with(".html")) return "text/html; charset=utf-8";
  if (szName.ends_with(".css")) return "text/css; charset=utf-8";
  if (szName.ends_with(".js")) return "text/javascript; charset=utf-8";
  return szName.ends_with(".svg") ? "image/svg+xml" : Plain;
}

bool GiveFile(const std::string& szPath, httplib::Response& response) {
  const std::string_view szName =
      szPath == "/" ? std::string_view("index.html") : std::string_view(szPath).substr(1);
  for (const auto& file : PageFiles()) {
    if (file.Name == szName) {
      response.set_content(file.Bytes.data(), file.Bytes.size(), TypeOf(file.Name));
      return true;
    }
  }
  return false;
}

const char* WordOf(Role role) {
  switch (role) {
    case Role::Control:
      return "control";
    case Role::View:
      return "view";
    default:
      return "none";
  }
}

}  // namespace

Desk::Desk(std::shared_ptr<Site> site, std::shared_ptr<Doorman> doorman, std::shared_ptr<EventHub> hub)
    : m_Site(std::move(site)), m_Doorman(std::move(doorman)), m_Hub(std::move(hub)) {}

const std::map<std::string, Desk::Place>& Desk::Places() {
  static const std::map<std::string, Place> places{
      {"/healthz", {Role::None, &Desk::GiveHealth}},      {"/api/session", {Role::None, &Desk::GiveSession}},
      {"/api/state", {Role::View, &Desk::GiveState}},     {"/api/lines", {Role::View, &Desk::GiveLines}},
      {"/api/history", {Role::View, &Desk::GiveHistory}}, {"/api/shows", {Role::View, &Desk::GiveShows}},
      {"/api/week", {Role::View, &Desk::GiveWeek}},       {"/metrics", {Role::View, &Desk::GiveMetrics}},
      {"/api/events", {Role::View, &Desk::GiveEvents}},
  };
  return places;
}

void Desk::Serve(HttpServer& server) {
  server.set_default_headers(SafeHeaders());
  server.set_exception_handler([](const Request&, Response& response, const std::exception_ptr&) {
    Deny(response, Failed, "This went wrong.");
  });
  server.set_pre_routing_handler([this](const Request& request, Response& response) {
    return Receive(request, response) ? httplib::Server::HandlerResponse::Handled
                                      : httplib::Server::HandlerResponse::Unhandled;
  });
  server.Post("/api/do", [this](const Request& request, Response& response) { Do(request, response); });
  server.Post("/api/login", [this](const Request& request, Response& response) { LogIn(request, response); });
  server.Post("/api/logout",
              [this](const Request& request, Response& response) { LogOut(request, response); });
}

bool Desk::Receive(const Request& request, Response& response) {
  if (!m_Doorman->HostFits(request)) {
    Deny(response, Misdirected, "This server has no page of that name; ask for it by its address.");
    return true;
  }
  if (request.method != "POST" && GiveFile(request.path, response)) return true;
  const Visitor visitor = m_Doorman->Look(request);
  if (request.method == "POST") return ReceiveChange(request, response, visitor);
  const auto place = Places().find(request.path);
  if (place != Places().end() && Doorman::FromElsewhere(request)) {
    Deny(response, Forbidden, "This is for the page of this server alone.");
  } else if (place != Places().end()) {
    Give(place->second, request, response, visitor);
  } else {
    Deny(response, NotFound, "There is no such page.");
  }
  return true;
}

/// Before a byte of the body is read: false where the change may go on.
bool Desk::ReceiveChange(const Request& request, Response& response, const Visitor& visitor) {
  const bool boolDo = request.path == "/api/do";
  if (!boolDo && request.path != "/api/login" && request.path != "/api/logout") {
    Deny(response, Places().count(request.path) != 0 ? MethodNotAllowed : NotFound,
         "Nothing can be changed here.");
    return true;
  }
  const auto szForged = m_Doorman->Forged(request, visitor);
  if (!szForged.empty()) {
    Deny(response, Forbidden, szForged);
  } else if (boolDo && visitor.May == Role::None) {
    Deny(response, Unauthorized, "Log in first.");
  } else if (boolDo && visitor.May != Role::Control) {
    Deny(response, Forbidden, "With this password one may look only.");
  } else {
    return false;
  }
  return true;
}

void Desk::Give(const Place& place, const Request& request, Response& response, const Visitor& visitor) {
  if (place.May != Role::None && visitor.May == Role::None) {
    // No "WWW-Authenticate": browsers would ask by themselves, and send the password along from then on.
    Deny(response, Unauthorized, "Log in first.");
    return;
  }
  (this->*place.Give)(request, response, visitor);
}

void Desk::GiveState(const Request&, Response& response, const Visitor&) {
  response.set_content(m_Site->State(), Json);
}

void Desk::GiveLines(const Request& request, Response& response, const Visitor&) {
  const auto szMost = request.get_param_value("most");
  size_t most = UsualLines;
  std::from_chars(szMost.data(), szMost.data() + szMost.size(), most);
  response.set_content(m_Site->Lines(std::min(most, MostLines)), Json);
}

void Desk::GiveHistory(const Request&, Response& response, const Visitor&) {
  response.set_content(m_Site->History(), Json);
}

void Desk::GiveShows(const Request&, Response& response, const Visitor&) {
  response.set_content(m_Site->Shows(), Json);
}

void Desk::GiveWeek(const Request&, Response& response, const Visitor&) {
  response.set_content(m_Site->Week(), "image/svg+xml");
}

void Desk::GiveMetrics(const Request&, Response& response, const Visitor&) {
  response.set_content(m_Site->Metrics(), "text/plain; version=0.0.4; charset=utf-8");
}

void Desk::GiveHealth(const Request&, Response& response, const Visitor& visitor) {
  std::string szWhy;
  const bool boolHealthy = m_Site->Healthy(szWhy);
  response.status = boolHealthy ? 200 : Unavailable;
  const bool boolTell = !boolHealthy && visitor.May != Role::None && !szWhy.empty();
  response.set_content(std::string(boolHealthy ? "ok" : "trouble") + (boolTell ? ": " + szWhy : "") + "\n",
                       Plain);
}

void Desk::GiveSession(const Request&, Response& response, const Visitor& visitor) {
  response.set_content(
      json{{"role", WordOf(visitor.May)}, {"passwords", m_Doorman->HasPasswords()}, {"token", visitor.Token}}
          .dump(),
      Json);
}

void Desk::GiveEvents(const Request&, Response& response, const Visitor& visitor) {
  const auto listener = m_Hub->Join();
  if (!listener) {
    response.set_header("Retry-After", "10");
    Deny(response, Unavailable, "Too many pages are open; close one.");
    return;
  }
  response.set_header("X-Accel-Buffering", "no");  // proxies are not to collect events
  const auto doorman = m_Doorman;
  response.set_chunked_content_provider(
      "text/event-stream",
      [listener, doorman, visitor, szFirst = "retry: 2000\n\n" + AsEvent("state", m_Site->State())](
          size_t, httplib::DataSink& sink) mutable {
        std::string szEvents;
        const bool boolOpen = !szFirst.empty() || listener->Next(szEvents, Heartbeat);
        if (!boolOpen || !doorman->StillIn(visitor)) {
          sink.done();
          return true;
        }
        if (!szFirst.empty()) szEvents.swap(szFirst);
        if (szEvents.empty()) szEvents = ": still here\n\n";
        return sink.write(szEvents.data(), szEvents.size());
      },
      [hub = m_Hub, listener](bool) { hub->Leave(listener); });
}

}  // namespace vex
