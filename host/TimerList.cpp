#include "host/TimerList.h"

#include <algorithm>
#include <tuple>
#include <vector>

#include "basic/Error.h"

namespace vex {
namespace {

/// A timer of the list; every call that changes when it is due tells the list.
class ListedTimer : public Timer {
 public:
  ListedTimer(TimerList& list, std::shared_ptr<TimerState> state) : m_List(list), m_State(std::move(state)) {}
  ~ListedTimer() override { ListedTimer::Enabled(false); }

  [[nodiscard]] bool Enabled() const override { return m_State->m_Enabled; }
  void Enabled(bool boolEnabled) override {
    if (boolEnabled == m_State->m_Enabled) return;
    m_List.Change(m_State, [&] {
      m_State->m_Enabled = boolEnabled;
      if (boolEnabled) m_State->Start(m_List.Now());
    });
  }
  [[nodiscard]] int32_t Interval() const override {
    return static_cast<int32_t>(m_State->m_Interval.count());
  }
  void Interval(int32_t lMilliseconds) override {
    if (lMilliseconds < 1) throw PlatformError(ErrorInvalidCall);
    m_List.Change(m_State, [&] {
      m_State->m_Interval = std::chrono::milliseconds(lMilliseconds);
      if (m_State->m_Enabled) m_State->Start(m_List.Now());
    });
  }
  void Tick(std::function<void()> handler) override {
    m_State->m_Tick = handler ? std::make_shared<std::function<void()>>(std::move(handler)) : nullptr;
  }
  void QuietUntil(Elapsed until) override {
    if (m_State->m_Enabled) m_List.Change(m_State, [&] { m_State->QuietUntil(until); });
  }
  void Wake() override {
    if (m_State->m_Enabled) m_List.Change(m_State, [&] { m_State->Wake(m_List.Now()); });
  }

 private:
  TimerList& m_List;
  std::shared_ptr<TimerState> m_State;
};

}  // namespace

void TimerState::Start(Elapsed now) {
  m_Next = std::chrono::ceil<std::chrono::milliseconds>(now) + m_Interval;
  m_Due = m_Next;
}

void TimerState::PassTo(Elapsed now) {
  m_Next = GridPointFrom(now + Elapsed(1));
  m_Due = m_Next;
}

void TimerState::QuietUntil(Elapsed until) {
  m_Due = GridPointFrom(until);
}

void TimerState::Wake(Elapsed now) {
  m_Due = std::min(m_Due, GridPointFrom(now));
}

bool TimerState::Earlier(const TimerState& other) const {
  return std::tie(m_Due, m_Order, m_Creation) < std::tie(other.m_Due, other.m_Order, other.m_Creation);
}

/// The first grid point at or after the moment that has not ticked.
Elapsed TimerState::GridPointFrom(Elapsed moment) const {
  if (moment <= m_Next) return m_Next;
  const Elapsed interval = m_Interval;
  if (moment > Elapsed::max() - interval) return Elapsed::max();
  const auto steps = (moment - m_Next + interval - Elapsed(1)) / interval;
  return m_Next + steps * interval;
}

std::unique_ptr<Timer> TimerList::NewTimer(TimerOrder order) {
  return std::make_unique<ListedTimer>(*this, std::make_shared<TimerState>(order, ++m_Created));
}

Elapsed TimerList::FirstDue() const {
  return m_Due.empty() ? Elapsed::max() : (*m_Due.begin())->m_Due;
}

void TimerList::TickDue(const bool& boolStop) {
  const Elapsed now = Now();
  while (!boolStop && !m_Due.empty() && (*m_Due.begin())->m_Due <= now) TickFirst(now);
}

void TimerList::WakeAll() {
  const Elapsed now = Now();
  const std::vector<std::shared_ptr<TimerState>> timers(m_Due.begin(), m_Due.end());
  for (const auto& timer : timers) Change(timer, [&] { timer->Wake(now); });
}

void TimerList::TickFirst(Elapsed now) {
  auto node = m_Due.extract(m_Due.begin());
  const std::shared_ptr<TimerState> timer = node.value();
  timer->PassTo(now);
  const auto putBack = [&] {
    timer->m_Ticking = false;
    if (timer->m_Enabled) m_Due.insert(std::move(node));
  };
  timer->m_Ticking = true;
  try {
    if (const auto tick = timer->m_Tick) (*tick)();
  } catch (...) {
    putBack();
    throw;
  }
  putBack();
}

}  // namespace vex
