#include "host/linux/LinuxTimer.h"

#include <algorithm>
#include <tuple>

#include "basic/Error.h"
#include "host/linux/LinuxEventLoop.h"

namespace vex {

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

LinuxTimer::LinuxTimer(LinuxEventLoop& loop, std::shared_ptr<TimerState> state)
    : m_Loop(loop), m_State(std::move(state)) {}

LinuxTimer::~LinuxTimer() {
  Enabled(false);
}

void LinuxTimer::Enabled(bool boolEnabled) {
  if (boolEnabled == m_State->m_Enabled) return;
  m_Loop.Change(m_State, [&] {
    m_State->m_Enabled = boolEnabled;
    if (boolEnabled) m_State->Start(m_Loop.Now());
  });
}

int32_t LinuxTimer::Interval() const {
  return static_cast<int32_t>(m_State->m_Interval.count());
}

void LinuxTimer::Interval(int32_t lMilliseconds) {
  if (lMilliseconds < 1) throw PlatformError(ErrorInvalidCall);
  m_Loop.Change(m_State, [&] {
    m_State->m_Interval = std::chrono::milliseconds(lMilliseconds);
    if (m_State->m_Enabled) m_State->Start(m_Loop.Now());
  });
}

void LinuxTimer::Tick(std::function<void()> handler) {
  m_State->m_Tick = handler ? std::make_shared<std::function<void()>>(std::move(handler)) : nullptr;
}

void LinuxTimer::QuietUntil(Elapsed until) {
  if (m_State->m_Enabled) m_Loop.Change(m_State, [&] { m_State->QuietUntil(until); });
}

void LinuxTimer::Wake() {
  if (m_State->m_Enabled) m_Loop.Change(m_State, [&] { m_State->Wake(m_Loop.Now()); });
}

}  // namespace vex
