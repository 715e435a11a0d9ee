#pragma once

#include <memory>

#include "host/EventLoop.h"

namespace vex {

class LinuxEventLoop;

/// What the event loop knows of one timer. It outlives the Timer while its tick runs, so that a timer may be
/// destroyed inside its own tick. Grid points are m_Next, m_Next + m_Interval, ...; m_Next is the first one
/// that has not ticked, and m_Due the one that will: m_Next or, in quiet, a later one. Grids lie on whole
/// milliseconds, so that timers due in the same one tick in their fixed order and out of one sleep.
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
  bool m_Ticking = false;  ///< then the loop's list does not hold it
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

/// A timer of the loop; every call that changes when it is due tells the loop.
class LinuxTimer : public Timer {
 public:
  LinuxTimer(LinuxEventLoop& loop, std::shared_ptr<TimerState> state);
  ~LinuxTimer() override;

  [[nodiscard]] bool Enabled() const override { return m_State->m_Enabled; }
  void Enabled(bool boolEnabled) override;
  [[nodiscard]] int32_t Interval() const override;
  void Interval(int32_t lMilliseconds) override;
  void Tick(std::function<void()> handler) override;
  void QuietUntil(Elapsed until) override;
  void Wake() override;

 private:
  LinuxEventLoop& m_Loop;
  std::shared_ptr<TimerState> m_State;
};

}  // namespace vex
