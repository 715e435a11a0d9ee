#pragma once

#include <atomic>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "host/TimerList.h"
#include "host/win32/Handle.h"
#include "host/win32/ModalLoops.h"
#include "host/win32/WaitableTimer.h"
#include "host/win32/Win32Clock.h"

namespace vex {

/// The one thread's loop: it sleeps for a window message, for one of the handles watched and for the
/// waitable timer that is armed for whichever timer is due first; there is no polling. Messages of the
/// machine's own timers come ten milliseconds late and more, hence the waitable one.
///
/// While the machine runs a loop of its own on this thread (a window is held by hand, a message box stands),
/// that one takes the messages, and all else goes on inside it; Quit ends such a loop too.
///
/// A turn of the loop takes some messages, each handle that is signalled and each signal once, and then ticks
/// what is due. Belongs to the thread that made it. An exception must not cross the machine's own code: what
/// escapes a window procedure is kept and leaves through Run or Pump, like that of any other handler.
class Win32EventLoop : public EventLoop {
 public:
  /// Raises Error with the system's code where the machine refuses a handle.
  explicit Win32EventLoop(const WaitableTimer::Calls& calls = WaitableTimer::Native());
  ~Win32EventLoop() override = default;
  Win32EventLoop(const Win32EventLoop&) = delete;
  Win32EventLoop& operator=(const Win32EventLoop&) = delete;

  [[nodiscard]] std::unique_ptr<Timer> NewTimer(TimerOrder order) override;
  [[nodiscard]] std::unique_ptr<Signal> NewSignal(std::function<void()> handler) override;
  /// A handle that can be waited for; one that stays signalled has its handler run in every turn. Raises
  /// ErrorInvalidCall for more handles than the machine waits for at once.
  [[nodiscard]] std::unique_ptr<Watch> WatchReadable(int64_t handle, std::function<void()> handler) override;

  void Run() override;
  void Quit() override { m_Quit = true; }
  void Pump() override;

  /// Wakes every timer; called when the wall clock has been set.
  void ClockWasSet() { m_Timers.WakeAll(); }
  /// Keeps what is being thrown until the machine's code has been left.
  void KeepException() { m_Kept = std::current_exception(); }
  /// To be told of by whoever makes the machine run a loop of its own, a message box.
  [[nodiscard]] ModalLoops& Modal() { return m_Modal; }

 private:
  struct SignalState;
  struct Source;
  class LoopSignal;
  class LoopWatch;

  void Raise(const std::shared_ptr<SignalState>& state);
  void Arm();
  /// The watched handle that ended the sleep, or null.
  [[nodiscard]] HANDLE Sleep(bool boolWait);
  void Turn(bool boolWait);
  void TurnInsideModalLoop();
  void EndModalLoop();
  void TakeBackEnd();
  void HandleMessages();
  void HandleWatches(HANDLE signalled);
  void HandleSignals();
  void Rethrow();

  Win32Clock m_Clock;
  TimerList m_Timers{m_Clock};
  WaitableTimer m_WaitableTimer;
  Handle m_Raised;
  std::vector<std::shared_ptr<Source>> m_Sources;
  std::mutex m_SignalsGuard;
  std::vector<std::weak_ptr<SignalState>> m_Signals;  // raised, not yet handled
  std::exception_ptr m_Kept;
  Elapsed m_Armed{0};  // 0: for nothing
  bool m_Quit = false;
  bool m_EndPosted = false;
  ModalLoops m_Modal{[this] { TurnInsideModalLoop(); }};
};

}  // namespace vex
