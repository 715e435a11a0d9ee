#pragma once

#include <memory>

#include "host/EventLoop.h"

namespace vex {

class VirtualEventLoop;

/// A timer of the virtual event loop. All of its times are whole milliseconds of elapsed time; the loop
/// keeps the moment of its next tick and is told of every change.
class VirtualTimer final : public Timer {
 public:
  VirtualTimer(VirtualEventLoop& loop, TimerOrder order, uint64_t serial);
  ~VirtualTimer() override;
  VirtualTimer(const VirtualTimer&) = delete;
  VirtualTimer& operator=(const VirtualTimer&) = delete;

  [[nodiscard]] bool Enabled() const override;
  void Enabled(bool boolEnabled) override;
  [[nodiscard]] int32_t Interval() const override;
  /// Raises ErrorInvalidCall below 1.
  void Interval(int32_t lMilliseconds) override;
  void Tick(std::function<void()> handler) override;
  void QuietUntil(Elapsed until) override;
  void Wake() override;

 private:
  friend class VirtualEventLoop;

  /// What outlives the timer when it is destroyed inside its own tick.
  struct State {
    TimerOrder Order;
    uint64_t Serial;
    bool Enabled = false;
    bool Ticking = false;
    bool Queued = false;
    int64_t Interval = 1;
    int64_t Next = 0;  // the first grid point that has not ticked; the grid goes on from it
    int64_t Due = 0;   // Next, or the grid point at which the quiet ends
    bool Quiet = false;
    std::function<void()> Handler;
  };

  void StartGrid();

  VirtualEventLoop& m_Loop;
  std::shared_ptr<State> m_State;
};

}  // namespace vex
