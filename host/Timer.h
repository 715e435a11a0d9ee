#pragma once

#include <functional>

#include "host/Clock.h"

namespace vex {

/// A timer of the form or of a component: Enabled, Interval and a tick. Enabled at t with interval i it
/// ticks at t + i, t + 2i, ...; disabling and enabling it starts anew, enabling an enabled timer changes
/// nothing. A tick never runs twice for one due time and never inside another handler unless that handler
/// pumps; one that comes late runs once, and the grid stays where it was.
///
/// The owner of a fast timer may say after a tick until when nothing can be due (QuietUntil). The timer may
/// then leave out the ticks before that moment; the first one not left out is the first grid point at or
/// after it. Any Wake, from any event that may have changed what is due, ends the quiet. Leaving ticks out
/// must not change what is seen. Destroying the timer disables it, also from inside its own tick.
class Timer {
 public:
  virtual ~Timer() = default;

  [[nodiscard]] virtual bool Enabled() const = 0;
  virtual void Enabled(bool boolEnabled) = 0;

  /// Milliseconds, 1 or more. Setting it on an enabled timer starts the grid anew.
  [[nodiscard]] virtual int32_t Interval() const = 0;
  virtual void Interval(int32_t lMilliseconds) = 0;

  virtual void Tick(std::function<void()> handler) = 0;

  /// Nothing is due before `until`; Elapsed::max() means nothing until a Wake. Lasts until the next tick.
  virtual void QuietUntil(Elapsed until) = 0;
  /// Ends the quiet: ticks come again from the next grid point on. No effect on a disabled timer.
  virtual void Wake() = 0;
};

}  // namespace vex
