#include "host/win32/WaitableTimer.h"

#include "host/win32/SystemError.h"
// Behind the others: it wants the machine's words.
#include <mmsystem.h>

namespace vex {
namespace {

constexpr UINT FinestTickMs = 1;

}  // namespace

WaitableTimer::Calls WaitableTimer::Native() {
  return {CreateWaitableTimerExW, timeBeginPeriod, timeEndPeriod};
}

WaitableTimer::WaitableTimer(const Calls& calls)
    : m_Calls(calls), m_Timer(calls.Create(nullptr, nullptr, Sharp, TIMER_ALL_ACCESS)) {
  if (m_Timer.Open()) return;
  m_Timer = Handle(calls.Create(nullptr, nullptr, 0, TIMER_ALL_ACCESS));
  if (!m_Timer.Open()) throw SystemError("EventLoop", "timer");
  m_FineTick = calls.BeginPeriod(FinestTickMs) == TIMERR_NOERROR;
}

WaitableTimer::~WaitableTimer() {
  if (m_FineTick) m_Calls.EndPeriod(FinestTickMs);
}

void WaitableTimer::Set(int64_t units) {
  LARGE_INTEGER when{};
  when.QuadPart = -units;
  SetWaitableTimer(m_Timer.Get(), &when, 0, nullptr, nullptr, FALSE);
}

void WaitableTimer::Cancel() {
  CancelWaitableTimer(m_Timer.Get());
}

}  // namespace vex
