#pragma once

#include <cstdint>
#include <vector>

#include "host/Clock.h"

namespace vex {

/// How fast packets of one universe may follow each other. The frame rate bounds their number and is no
/// spacing: after a rest two may follow at once, and in any second there are no more than the rate, give or
/// take Jitter, so that a sequence of just that rate is never held back because its last second ran a little
/// fast.
///
///     rate 40:   change change ..25 ms.. change ..25 ms.. change      (a burst spreads out)
class PacketPace {
 public:
  static constexpr Elapsed Second{1'000'000'000};
  static constexpr Elapsed Jitter{10'000'000};

  explicit PacketPace(int32_t lPerSecond)
      : m_Period(Second / lPerSecond), m_Last(static_cast<size_t>(lPerSecond), -Second) {}

  /// The earliest moment for the next packet that carries a change.
  [[nodiscard]] Elapsed FreeAt() const { return std::max(m_Expected - m_Period, RoomAt()); }
  /// The earliest moment for the next packet that only repeats what is known: it may use what is left of
  /// the second, but not the place of a change that may come.
  [[nodiscard]] Elapsed RoomAt() const { return m_Last[m_Oldest] + Second - Jitter; }

  /// A packet goes out now.
  void Sent(Elapsed now, bool boolChange) {
    if (boolChange) m_Expected = std::max(m_Expected, now) + m_Period;
    m_Last[m_Oldest] = now;
    m_Oldest = m_Oldest + 1 == m_Last.size() ? 0 : m_Oldest + 1;
  }

 private:
  Elapsed m_Period;
  Elapsed m_Expected{0};        // when the next change is due if changes come evenly at the rate
  std::vector<Elapsed> m_Last;  // when the last packets went, as many as one second may hold
  size_t m_Oldest = 0;
};

}  // namespace vex
