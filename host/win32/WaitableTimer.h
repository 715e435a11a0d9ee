#pragma once

#include "host/win32/Handle.h"

namespace vex {

/// The timer that an event loop sleeps on. From Windows 10 1803 on there are waitable timers that are as fine
/// as the machine's clock; an older system refuses to make one, and then a plain one has to do, which goes by
/// the system's tick: the finest tick is asked for as long as this lives, and given back.
class WaitableTimer {
 public:
  static constexpr DWORD Sharp = 0x2;  // CREATE_WAITABLE_TIMER_HIGH_RESOLUTION

  /// What of the machine decides which kind it is.
  struct Calls {
    HANDLE(WINAPI* Create)(LPSECURITY_ATTRIBUTES attributes, LPCWSTR name, DWORD flags, DWORD access);
    UINT(WINAPI* BeginPeriod)(UINT milliseconds);
    UINT(WINAPI* EndPeriod)(UINT milliseconds);
  };
  [[nodiscard]] static Calls Native();

  /// Raises Error with the system's code where there is no timer of either kind.
  explicit WaitableTimer(const Calls& calls = Native());
  ~WaitableTimer();
  WaitableTimer(const WaitableTimer&) = delete;
  WaitableTimer& operator=(const WaitableTimer&) = delete;

  [[nodiscard]] HANDLE Get() const { return m_Timer.Get(); }
  /// Is signalled once after so many units of 100 nanoseconds, in place of what it was set to before.
  void Set(int64_t units);
  void Cancel();

 private:
  Calls m_Calls;
  Handle m_Timer;
  bool m_FineTick = false;
};

}  // namespace vex
