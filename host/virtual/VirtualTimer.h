#pragma once

#include <memory>

#include "host/EventLoop.h"

namespace vex {

class VirtualEventLoop;

/// A timer of the virtual event loop. All of its times are whole milliseconds of elapsed time; the loop
/// keeps the moment of its next tick and is told of every change.
class VirtualTimer final : public Timer {
 public:
  /// What outlives the timer when it is destroyed inside its own tick. The loop's alone to read.
  struct State {
    TimerOrder Order;
    uint64_t Serial;
    bool Enabled = false;
    bool Ticking = false;
    bool Queued = false;
    bool Quiet = false;
    int64_t Interval = 1;
    int64_t Next = 0;      ///< the first grid point that has not ticked; the grid goes on from it
    int64_t QuietEnd = 0;  ///< while Quiet: the grid point that is not left out
    int64_t Due = 0;       ///< while Queued: the moment under which it stands
    std::shared_ptr<std::function<void()>> Handler;
  };

  VirtualTimer(VirtualEventLoop& loop, std::shared_ptr<State> state);
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
  VirtualEventLoop& m_Loop;
  std::shared_ptr<State> m_State;
};

}  // namespace vex
