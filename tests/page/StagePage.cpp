// The tray's web server with a stage for a site, for the tests of the page in a browser: what the page is to
// show comes in as JSON on standard input, a line each, and what is asked of the player goes out in the same
// way.
//
//   StagePage [PORT [PASSWORD-FILE]]      port 0, where none is given, takes any
//   StagePage --hash control|view PASSWORD
//
//   in   {"state": ..., "lines": ..., "shows": ..., "history": ..., "week": "<svg.../>", "why": "...",
//         "answer": {"done": true, "text": "..."}, "still": false, "publish": [["line", {...}, ""], ...]}
//   out  {"port": 40123}            {"do": "play", "show": "eve.shw", "seconds": 0}
#include <chrono>
#include <condition_variable>
#include <iostream>
#include <mutex>
#include <nlohmann/json.hpp>
#include <thread>

#include "basic/DateTime.h"
#include "basic/Error.h"
#include "tray/web/Passwords.h"
#include "tray/web/Server.h"

namespace {

using nlohmann::json;

class Stage final : public vex::Site {
 public:
  void Set(const json& told) {
    const std::lock_guard lock(m_Mutex);
    for (const auto& [szName, value] : told.items()) m_Told[szName] = value;
    if (told.contains("state")) m_StateSet = std::chrono::steady_clock::now();
  }

  /// With a clock that goes on, unless the stage is told to stand still.
  std::string State() override {
    auto state = Get("state", json{{"light", "off"}, {"why", json::array()}});
    const bool boolStill = Get("still", false);
    const std::lock_guard lock(m_Mutex);
    const auto gone =
        std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - m_StateSet);
    if (!boolStill && state.contains("time"))
      state["time"] =
          vex::FormatDateTime(vex::ParseDateTime(state["time"].get<std::string>()).PlusSeconds(gone.count()));
    return state.dump();
  }
  std::string Metrics() override { return "vextray_up 1\n"; }
  bool Healthy(std::string& szWhy) override {
    szWhy = Get("why", "");
    return szWhy.empty();
  }
  std::string Week() override {
    return Get("week", "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 10 10\"></svg>");
  }
  std::string Lines(size_t most) override {
    auto lines = Get("lines", json::array());
    if (lines.size() > most) lines.erase(lines.begin(), lines.end() - static_cast<std::ptrdiff_t>(most));
    return lines.dump();
  }
  std::string History() override { return Get("history", json::array()).dump(); }
  std::string Shows() override { return Get("shows", json::array()).dump(); }
  vex::Outcome Do(const vex::Action& action) override {
    static constexpr const char* Words[] = {"play", "clear", "reload", "link on", "link off", "stop"};
    const auto answer = Get("answer", json{{"done", true}, {"text", "Asked."}});
    const std::lock_guard lock(m_Mutex);
    std::cout << json{{"do", Words[static_cast<size_t>(action.Kind)]},
                      {"show", action.Show},
                      {"seconds", action.Seconds}}
                     .dump()
              << std::endl;
    return {answer["done"], answer["text"]};
  }

 private:
  json Get(const char* szName, json otherwise) {
    const std::lock_guard lock(m_Mutex);
    return m_Told.value(szName, std::move(otherwise));
  }

  std::mutex m_Mutex;
  json m_Told = json::object();
  std::chrono::steady_clock::time_point m_StateSet = std::chrono::steady_clock::now();
};

/// Tells the state twice a second, as the tray does.
class Teller {
 public:
  Teller(Stage& stage, vex::Server& server) : m_Thread([this, &stage, &server] { Tell(stage, server); }) {}
  ~Teller() {
    {
      const std::lock_guard lock(m_Mutex);
      m_Ends = true;
    }
    m_Wake.notify_one();
    m_Thread.join();
  }
  Teller(const Teller&) = delete;
  Teller& operator=(const Teller&) = delete;

 private:
  void Tell(Stage& stage, vex::Server& server) {
    std::unique_lock lock(m_Mutex);
    while (!m_Wake.wait_for(lock, std::chrono::milliseconds(500), [this] { return m_Ends; }))
      server.Publish("state", stage.State());
  }

  std::mutex m_Mutex;
  std::condition_variable m_Wake;
  bool m_Ends = false;
  std::thread m_Thread;
};

void Publish(vex::Server& server, const json& told) {
  const auto all = told.find("publish");
  if (all == told.end()) return;
  for (const auto& one : *all) server.Publish(one[0], one[1].dump(), one.size() > 2 ? one[2] : "");
}

}  // namespace

int main(int argc, char** argv) {
  try {
    if (argc == 4 && std::string(argv[1]) == "--hash") {
      const bool boolControl = std::string(argv[2]) == "control";
      std::cout << vex::Passwords::Line(boolControl ? vex::Role::Control : vex::Role::View, argv[3])
                << std::endl;
      return 0;
    }
    const auto stage = std::make_shared<Stage>();
    vex::Server server(stage);
    server.Start("127.0.0.1", argc > 1 ? std::stoi(argv[1]) : 0, {argc > 2 ? argv[2] : "", {}});
    std::cout << json{{"port", server.Port()}}.dump() << std::endl;
    const Teller teller(*stage, server);
    for (std::string szLine; std::getline(std::cin, szLine);) {
      const auto told = json::parse(szLine);
      stage->Set(told);
      if (told.contains("state")) server.Publish("state", stage->State());
      Publish(server, told);
    }
  } catch (const vex::Error& error) {
    std::cerr << error.Description << std::endl;
    return 1;
  }
}
