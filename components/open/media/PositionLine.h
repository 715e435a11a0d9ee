#pragma once

#include <array>
#include <cstddef>
#include <optional>

#include "host/Clock.h"

namespace vex {

/// Where the music is between two answers of the media library. The library is asked every so often; an
/// answer says that at some moment between question and answer the sound stood at a position. Moment minus
/// position is the same for all answers while the sound runs evenly, so the median of the last ones is a
/// straight line along which the position is told, to a fraction of a millisecond:
///
///     position  |            .·´      . answers
///               |        .·´          the line goes through their middle; one late answer
///               |    .·´              does not bend it
///               |.·´
///               +------------------ elapsed time
///
/// The position told never goes back: where the line turns out to run later, the position waits for it.
class PositionLine {
 public:
  /// Forgets all answers; until the first one the position stands here.
  void Begin(Elapsed position);

  /// An answer to a question. One that was long under way says little and counts only while there is no
  /// other. True when the line is new or has moved by more than 0.2 ms since that was last said.
  bool Add(Elapsed asked, Elapsed answered, Elapsed position);

  [[nodiscard]] bool Runs() const { return m_Count > 0; }
  [[nodiscard]] Elapsed At(Elapsed now);
  /// When the line reaches the position; no value while there is no line.
  [[nodiscard]] std::optional<Elapsed> Reaches(Elapsed position) const;

 private:
  static constexpr size_t Kept = 32;
  static constexpr size_t Agreeing = 5;

  [[nodiscard]] Elapsed Newest(size_t back) const { return m_Starts[(m_Count - 1 - back) % Kept]; }
  [[nodiscard]] bool HasJumped() const;
  void KeepNewest();
  void FindMedian();

  std::array<Elapsed, Kept> m_Starts{};  // moments at which the position would have been 0
  size_t m_Count = 0;                    // answers ever added
  bool m_OnlySlow = false;
  Elapsed m_Start{0};      // the median
  Elapsed m_SaidStart{0};  // the median when Add last said true
  Elapsed m_Told{0};
};

}  // namespace vex
