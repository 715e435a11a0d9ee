#include "tray/web/Server.h"

#include <thread>

#include "tray/web/Addresses.h"
#include "tray/web/Desk.h"
#include "tray/web/Doorman.h"
#include "tray/web/EventHub.h"
#include "tray/web/HttpServer.h"

namespace vex {
namespace {

constexpr size_t MostPages = 64;
constexpr size_t OtherThreads = 24;

}  // namespace

/// All that stands while the server listens.
class Server::House {
 public:
  House(std::shared_ptr<Site> site, const std::string& szAddress, int port, const Guards& guards)
      : m_Doorman(std::make_shared<Doorman>(guards, IsLoopback(szAddress))),
        m_Hub(std::make_shared<EventHub>(MostPages)),
        m_Desk(std::move(site), m_Doorman, m_Hub),
        m_Http(MostPages + OtherThreads) {
    m_Desk.Serve(m_Http);
    m_Port = m_Http.Bind(szAddress, port);
    m_Thread = std::thread([this] { m_Http.Run(); });
    m_Http.WaitUntilRunning();
  }

  ~House() { End(); }

  void End() {
    m_Hub->Close();
    m_Http.Close();
    if (m_Thread.joinable()) m_Thread.join();
  }

  House(const House&) = delete;
  House& operator=(const House&) = delete;

  [[nodiscard]] int Port() const { return m_Port; }
  [[nodiscard]] EventHub& Hub() const { return *m_Hub; }

 private:
  std::shared_ptr<Doorman> m_Doorman;
  std::shared_ptr<EventHub> m_Hub;
  Desk m_Desk;
  HttpServer m_Http;
  int m_Port = 0;
  std::thread m_Thread;
};

Server::Server(std::shared_ptr<Site> site) : m_Site(std::move(site)) {}

Server::~Server() {
  Stop();
}

void Server::Start(const std::string& szAddress, int port, const Guards& guards) {
  RequireGuards(szAddress, guards);
  Stop();
  auto house = std::make_shared<House>(m_Site, szAddress, port, guards);
  const std::lock_guard lock(m_Mutex);
  m_House = std::move(house);
}

void Server::Stop() {
  std::shared_ptr<House> house;
  {
    const std::lock_guard lock(m_Mutex);
    house.swap(m_House);
  }
  if (house) house->End();
}

std::shared_ptr<Server::House> Server::Now() const {
  const std::lock_guard lock(m_Mutex);
  return m_House;
}

int Server::Port() const {
  const auto house = Now();
  return house ? house->Port() : 0;
}

void Server::Publish(const std::string& szEvent, const std::string& szJson, const std::string& szKey) {
  const auto house = Now();
  if (house) house->Hub().Publish(szEvent, szJson, szKey);
}

size_t Server::Listeners() const {
  const auto house = Now();
  return house ? house->Hub().Count() : 0;
}

}  // namespace vex
