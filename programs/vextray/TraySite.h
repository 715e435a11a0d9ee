#pragma once

#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "host/Host.h"
#include "programs/vextray/TrayState.h"
#include "tray/history/History.h"
#include "tray/log/LogLine.h"
#include "tray/web/Site.h"

namespace vex {

/// A line as pages take it: "count" always stands there.
[[nodiscard]] std::string LineForPage(const LogLine& line);

/// What the web server's threads are told: the newest of everything, put here by the loop, which alone knows.
/// What they ask of the player goes to the loop and is waited for.
class TraySite : public Site {
 public:
  /// The handler runs on the loop and does what is asked. The loop outlives this.
  TraySite(EventLoop& loop, std::function<Outcome(const Action&)> handler);

  // On the loop.
  void Put(const TrayState& state);
  void Put(const LogLine& line);
  void Put(const HistoryShelf& history);
  void PutWeek(std::string szPicture, std::vector<std::string> shows);
  /// Nothing is waited for from now on.
  void Close();

  // On any thread.
  std::string State() override;
  std::string Metrics() override;
  bool Healthy(std::string& szWhy) override;
  std::string Week() override;
  std::string Lines(size_t most) override;
  std::string History() override;
  std::string Shows() override;
  Outcome Do(const Action& action) override;

 private:
  struct Asked {
    Action What;
    std::promise<Outcome> Answer;
  };
  void Serve();

  std::function<Outcome(const Action&)> m_Handler;
  std::mutex m_Mutex;
  TrayState m_State;
  std::deque<LogLine> m_Lines;
  std::string m_History = "[]";
  std::string m_Week;
  std::vector<std::string> m_Shows;
  std::vector<std::shared_ptr<Asked>> m_Asked;
  bool m_Closed = false;
  std::unique_ptr<Signal> m_Signal;
};

}  // namespace vex
