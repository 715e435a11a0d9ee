#pragma once

#include <functional>
#include <memory>
#include <set>

#include "host/EventLoop.h"

namespace vex {

/// What a machine's event loop knows of one timer. It outlives the Timer while its tick runs, so that a timer
/// may be destroyed inside its own tick. Grid points are m_Next, m_Next + m_Interval, ...; m_Next is the
/// first one that has not ticked, and m_Due the one that will: m_Next or, in quiet, a later one. Grids lie on
/// whole milliseconds, so that timers due in the same one tick in their fixed order and out of one sleep.
class TimerState {
 public:
  TimerState(TimerOrder order, uint64_t creation) : m_Order(order), m_Creation(creation) {}

  /// Starts the grid anew.
  void Start(Elapsed now);
  /// The tick of this moment is under way: the next one is the first grid point after now.
  void PassTo(Elapsed now);
  void QuietUntil(Elapsed until);
  void Wake(Elapsed now);

  bool m_Enabled = false;
  bool m_Ticking = false;  ///< then the list does not hold it
  std::chrono::milliseconds m_Interval{1};
  Elapsed m_Due{0};
  std::shared_ptr<std::function<void()>> m_Tick;

  [[nodiscard]] bool Earlier(const TimerState& other) const;

 private:
  [[nodiscard]] Elapsed GridPointFrom(Elapsed moment) const;

  TimerOrder m_Order;
  uint64_t m_Creation;
  Elapsed m_Next{0};
};

/// The timers of one event loop, the earliest first: what the loops of all machines share. The loop asks when
/// the next one is due, sleeps its own way and comes back to let the due ones tick. Outlives its timers.
class TimerList {
 public:
  explicit TimerList(const Clock& clock) : m_Clock(clock) {}

  [[nodiscard]] std::unique_ptr<Timer> NewTimer(TimerOrder order);

  /// When the first timer is due; Elapsed::max() when none ever is.
  [[nodiscard]] Elapsed FirstDue() const;
  /// Lets each timer that is due tick once, in their order, until boolStop is set.
  void TickDue(const bool& boolStop);
  /// Wakes every timer: the wall clock has been set.
  void WakeAll();

  // For the timers themselves.
  [[nodiscard]] Elapsed Now() const { return m_Clock.Elapsed(); }
  /// Applies a change to when or whether a timer is due.
  template <class Action>
  void Change(const std::shared_ptr<TimerState>& state, Action action) {
    m_Due.erase(state);
    action();
    if (state->m_Enabled && !state->m_Ticking) m_Due.insert(state);
  }

 private:
  struct EarlierTimer {
    bool operator()(const std::shared_ptr<TimerState>& a, const std::shared_ptr<TimerState>& b) const {
      return a->Earlier(*b);
    }
  };

  void TickFirst(Elapsed now);

  const Clock& m_Clock;
  std::set<std::shared_ptr<TimerState>, EarlierTimer> m_Due;
  uint64_t m_Created = 0;
};

}  // namespace vex
