#pragma once

#include <functional>
#include <string>

#include "host/Clock.h"

namespace vex {

/// The clock of a machine on which time stands still until the event loop moves it. Wall clock and elapsed
/// time are apart: the wall clock runs along with elapsed time from where it was last set, so it can be set
/// back, across midnight or by an hour, and elapsed time goes on. Grain is one millisecond.
class VirtualClock final : public vex::Clock {
 public:
  explicit VirtualClock(DateTime dtStart);

  [[nodiscard]] DateTime Now() const override;
  [[nodiscard]] double SecondsOfDay() const override;
  /// "HH:MM".
  [[nodiscard]] std::string ShortTime() const override;
  /// 0 at the start.
  [[nodiscard]] vex::Elapsed Elapsed() const override { return m_Elapsed; }

  /// The wall clock with its milliseconds, "yyyy-mm-dd hh:mm:ss.mmm".
  [[nodiscard]] std::string Milliseconds() const;

  /// Sets the wall clock to exactly that second; elapsed time goes on as if nothing had happened.
  void SetWallClock(DateTime dtTime);
  /// Called after each SetWallClock; the event loop stands here, for waits for the wall clock look again.
  void WallClockSet(std::function<void()> handler) { m_WallClockSet = std::move(handler); }

  /// For the event loop alone: moves elapsed time, forwards only.
  void MoveTo(vex::Elapsed elapsed);

 private:
  [[nodiscard]] int64_t MillisecondsSinceSet() const;

  DateTime m_Set;
  vex::Elapsed m_SetAt{0};
  vex::Elapsed m_Elapsed{0};
  std::function<void()> m_WallClockSet;
};

}  // namespace vex
