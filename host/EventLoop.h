#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "host/Timer.h"

namespace vex {

/// The place in which timers due at the same moment tick: the form's five first, in this order, then the
/// timers of the components in the order in which they were made.
enum class TimerOrder : int32_t {
  tmCIODelay = 0,
  tmNextAction = 1,
  tmrVexMsgQueue = 2,
  tmrShowPlayer = 3,
  tmrUnloadGracefully = 4,
  Component = 5,
};

/// A call that another thread may ask for: Raise may come from any thread, the handler then runs once on
/// the loop's own thread (several raises before it runs are one). The handler does not run after the
/// Signal has been destroyed.
class Signal {
 public:
  virtual ~Signal() = default;
  virtual void Raise() = 0;
};

/// Watches one operating-system handle; the handler runs on the loop's thread whenever the handle can be
/// read, until the Watch is destroyed.
class Watch {
 public:
  virtual ~Watch() = default;
};

/// The one thread's loop: everything that happens in the system happens in a handler that it calls.
/// The loop outlives all timers, signals and watches made by it.
class EventLoop {
 public:
  virtual ~EventLoop() = default;

  /// A disabled timer with interval 1.
  [[nodiscard]] virtual std::unique_ptr<Timer> NewTimer(TimerOrder order) = 0;
  [[nodiscard]] virtual std::unique_ptr<Signal> NewSignal(std::function<void()> handler) = 0;
  /// Families without such handles raise ErrorInvalidCall.
  [[nodiscard]] virtual std::unique_ptr<Watch> WatchReadable(int64_t handle,
                                                             std::function<void()> handler) = 0;

  /// Runs until Quit; messages and ticks are handled one at a time.
  virtual void Run() = 0;
  /// Makes Run return once the present handler has.
  virtual void Quit() = 0;
  /// Handles what waits now and returns; for a handler that may pump messages.
  virtual void Pump() = 0;
};

}  // namespace vex
