#include "host/virtual/VirtualTimer.h"

#include <utility>

#include "basic/Error.h"
#include "host/virtual/VirtualEventLoop.h"

namespace vex {

VirtualTimer::VirtualTimer(VirtualEventLoop& loop, std::shared_ptr<State> state)
    : m_Loop(loop), m_State(std::move(state)) {}

VirtualTimer::~VirtualTimer() {
  Enabled(false);
}

bool VirtualTimer::Enabled() const {
  return m_State->Enabled;
}

void VirtualTimer::Enabled(bool boolEnabled) {
  if (m_State->Enabled == boolEnabled) return;
  m_State->Enabled = boolEnabled;
  m_Loop.StartGrid(m_State);
}

int32_t VirtualTimer::Interval() const {
  return static_cast<int32_t>(m_State->Interval);
}

void VirtualTimer::Interval(int32_t lMilliseconds) {
  if (lMilliseconds < 1) throw PlatformError(ErrorInvalidCall);
  m_State->Interval = lMilliseconds;
  m_Loop.StartGrid(m_State);
}

void VirtualTimer::Tick(std::function<void()> handler) {
  m_State->Handler = std::make_shared<std::function<void()>>(std::move(handler));
}

void VirtualTimer::QuietUntil(Elapsed until) {
  m_Loop.Quiet(m_State, until);
}

void VirtualTimer::Wake() {
  m_Loop.Wake(m_State);
}

}  // namespace vex
