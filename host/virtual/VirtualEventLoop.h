#pragma once

#include <compare>
#include <deque>
#include <map>
#include <mutex>
#include <vector>

#include "host/EventLoop.h"
#include "host/virtual/VirtualClock.h"
#include "host/virtual/VirtualTimer.h"

namespace vex {

/// The loop of a machine on which time moves when told. Within one millisecond first come the signals and
/// the calls asked for with At, then the timers that are due, in their fixed order; a signal raised by a
/// tick is handled before the next tick. Handlers take no time. Between two moments at which something is
/// due nothing runs, so a quiet hour costs nothing.
///
///     t:  signals, calls of At | tmCIODelay tmNextAction tmrVexMsgQueue tmrShowPlayer ... components
///
/// A handler may pump, and may even move time on (a message box that stands for a while): no tick then runs
/// inside itself, and one that was held up runs once afterwards. What a handler raises leaves the loop
/// through the call that moved time; the loop can be used on.
class VirtualEventLoop final : public EventLoop {
 public:
  explicit VirtualEventLoop(VirtualClock& clock);
  ~VirtualEventLoop() override;
  VirtualEventLoop(const VirtualEventLoop&) = delete;
  VirtualEventLoop& operator=(const VirtualEventLoop&) = delete;

  [[nodiscard]] std::unique_ptr<Timer> NewTimer(TimerOrder order) override;
  [[nodiscard]] std::unique_ptr<Signal> NewSignal(std::function<void()> handler) override;
  /// Raises ErrorInvalidCall: there are no handles here.
  [[nodiscard]] std::unique_ptr<Watch> WatchReadable(int64_t handle, std::function<void()> handler) override;

  /// Runs until Quit, or until nothing is left that time could bring.
  void Run() override;
  void Quit() override;
  /// Handles what is due at this very moment; time does not move.
  void Pump() override;

  /// Moves time to that moment and handles everything up to it, itself included. A Quit ends it early, at
  /// the moment at which it comes; then the result is false. One that came before ends it at once, as it
  /// does Run. Never goes back.
  bool AdvanceTo(Elapsed moment);
  bool Advance(int64_t milliseconds);

  /// One call at that moment, before its ticks; calls for the same moment run in the order in which they
  /// were asked for. A moment that has passed stands for now.
  void At(Elapsed moment, std::function<void()> handler);

  /// Ignores QuietUntil: every timer ticks at every grid point. For tests that run an evening both ways.
  void EveryTick(bool boolEveryTick) { m_EveryTick = boolEveryTick; }
  /// Ticks run so far.
  [[nodiscard]] uint64_t Ticks() const { return m_Ticks; }
  /// True once Quit has been called.
  [[nodiscard]] bool HasQuit() const { return m_HasQuit; }

 private:
  friend class VirtualTimer;
  friend class VirtualSignal;
  using TimerState = VirtualTimer::State;
  using TimerReference = std::shared_ptr<TimerState>;
  struct SignalState;
  class Nesting;
  class Ticking;

  /// Where a tick stands in the order of all ticks.
  struct Turn {
    int64_t Due;
    TimerOrder Order;
    uint64_t Serial;
    friend auto operator<=>(const Turn&, const Turn&) = default;
  };

  [[nodiscard]] int64_t Now() const;
  [[nodiscard]] int64_t NextMoment() const;
  /// Everything of the present moment; false when a Quit has come.
  bool HandleMoment();
  bool RunSignal();
  bool RunCall();
  bool RunTick();
  /// As AdvanceTo, in milliseconds; stays at the last moment at which something was due.
  bool MoveThrough(int64_t last);

  void StartGrid(const TimerReference& timer);
  void Quiet(const TimerReference& timer, Elapsed until);
  void Wake(const TimerReference& timer);
  void WakeAll();
  void Queue(const TimerReference& timer);
  void Unqueue(TimerState& timer);
  [[nodiscard]] static Turn LastTurnOf(int64_t moment);
  [[nodiscard]] bool TurnHasPassed(const TimerState& timer) const;

  VirtualClock& m_Clock;
  std::map<Turn, TimerReference> m_Due;
  std::vector<std::weak_ptr<TimerState>> m_Timers;
  std::multimap<int64_t, std::function<void()>> m_Calls;
  std::mutex m_SignalsMutex;
  std::deque<std::shared_ptr<SignalState>> m_Raised;  // guarded by m_SignalsMutex
  Turn m_LastTurn;                                    // the last one that has begun or been passed over
  uint64_t m_Serial = 0;
  uint64_t m_Ticks = 0;
  int32_t m_Depth = 0;
  bool m_EveryTick = false;
  bool m_Quit = false;
  bool m_HasQuit = false;
};

}  // namespace vex
