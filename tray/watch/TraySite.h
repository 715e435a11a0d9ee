#pragma once

#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "host/Host.h"
#include "tray/history/History.h"
#include "tray/log/LogLine.h"
#include "tray/watch/TrayState.h"
#include "tray/web/Site.h"

namespace vex {

/// A line as pages take it: "count" always stands there, and "number" by which a page knows the line again
/// when it comes once more with a greater count.
[[nodiscard]] std::string LineForPage(const LogLine& line, uint64_t number);

/// What the web server's threads are told: the newest of everything, put here by the loop, which alone knows.
/// What they ask of the player goes to the loop and is waited for.
///
/// A state that is older than a few seconds is no truth any more: the loop stands still, and health says so.
class TraySite : public Site {
 public:
  /// The handler runs on the loop and does what is asked. The host outlives this.
  TraySite(Host& host, std::function<Outcome(const Action&)> handler);

  // On the loop.
  void Put(const TrayState& state);
  /// A new line, or the newest one with a greater count; its number.
  uint64_t Put(const LogLine& line);
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
  struct NumberedLine {
    LogLine Line;
    uint64_t Number;
  };
  /// A show of the history and its JSON, which is made anew only where the show has changed.
  struct Evening {
    std::string Key;
    std::string Json;
  };
  struct Asked {
    Action What;
    std::promise<Outcome> Answer;
  };
  void Serve();

  const class Clock& m_Clock;
  std::function<Outcome(const Action&)> m_Handler;
  std::mutex m_Mutex;
  TrayState m_State;
  Elapsed m_StateAt{0};
  std::deque<NumberedLine> m_Lines;
  uint64_t m_LastNumber = 0;
  std::vector<Evening> m_Evenings;
  std::string m_Week;
  std::vector<std::string> m_Shows;
  std::vector<std::shared_ptr<Asked>> m_Asked;
  bool m_Closed = false;
  std::unique_ptr<Signal> m_Signal;
};

}  // namespace vex
