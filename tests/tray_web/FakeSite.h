#pragma once

#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

#include "tray/web/Site.h"

namespace vex {

/// A site that says what a test lets it say and writes down what was asked of it.
class FakeSite final : public Site {
 public:
  std::string StateText = R"({"light":"idle","why":[]})";
  std::string WeekText = R"(<svg xmlns="http://www.w3.org/2000/svg" width="10" height="10"></svg>)";
  std::string LinesText = "[]";
  std::string ShowsText = R"(["eve.shw","a <b> & \"c\".shw"])";
  std::string Why;
  bool Throws = false;
  Outcome Answer{true, "Done."};

  std::string State() override {
    const std::lock_guard lock(m_Mutex);
    if (Throws) throw std::runtime_error("secret words");
    return StateText;
  }
  std::string Metrics() override { return "vextray_up 1\n"; }
  bool Healthy(std::string& szWhy) override {
    const std::lock_guard lock(m_Mutex);
    szWhy = Why;
    return Why.empty();
  }
  std::string Week() override { return WeekText; }
  std::string Lines(size_t most) override {
    const std::lock_guard lock(m_Mutex);
    m_Most = most;
    return LinesText;
  }
  std::string History() override { return "[]"; }
  std::string Shows() override {
    const std::lock_guard lock(m_Mutex);
    return ShowsText;
  }
  Outcome Do(const Action& action) override {
    const std::lock_guard lock(m_Mutex);
    m_Done.push_back(action);
    return Answer;
  }

  [[nodiscard]] std::vector<Action> Done() {
    const std::lock_guard lock(m_Mutex);
    return m_Done;
  }
  [[nodiscard]] size_t Most() {
    const std::lock_guard lock(m_Mutex);
    return m_Most;
  }
  template <class Change>
  void Alter(Change change) {
    const std::lock_guard lock(m_Mutex);
    change(*this);
  }

 private:
  std::mutex m_Mutex;
  std::vector<Action> m_Done;
  size_t m_Most = 0;
};

}  // namespace vex
