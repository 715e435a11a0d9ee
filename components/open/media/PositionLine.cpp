#include "components/open/media/PositionLine.h"

#include <algorithm>

namespace vex {

namespace {

constexpr Elapsed kSlow = std::chrono::milliseconds(4);
constexpr Elapsed kJump = std::chrono::milliseconds(15);
constexpr Elapsed kWorthSaying = std::chrono::microseconds(200);

Elapsed Distance(Elapsed a, Elapsed b) {
  return a > b ? a - b : b - a;
}

}  // namespace

void PositionLine::Begin(Elapsed position) {
  m_Count = 0;
  m_OnlySlow = false;
  m_Told = position;
}

bool PositionLine::Add(Elapsed asked, Elapsed answered, Elapsed position) {
  const bool boolSlow = answered - asked > kSlow;
  if (boolSlow && Runs() && !m_OnlySlow) return false;
  const bool boolFirst = !Runs();
  if (!boolSlow && m_OnlySlow) m_Count = 0;
  m_OnlySlow = boolSlow;

  m_Starts[m_Count % Kept] = asked + (answered - asked) / 2 - position;
  ++m_Count;
  if (HasJumped()) KeepNewest();
  FindMedian();
  if (!boolFirst && Distance(m_Start, m_SaidStart) <= kWorthSaying) return false;
  m_SaidStart = m_Start;
  return true;
}

/// An interruption of the sound moves every later answer; the median alone would follow it only after half of
/// its answers had been replaced.
bool PositionLine::HasJumped() const {
  if (m_Count <= Agreeing) return false;
  for (size_t back = 0; back < Agreeing; ++back)
    if (Distance(Newest(back), m_Start) < kJump || Distance(Newest(back), Newest(0)) > kJump / 3)
      return false;
  return true;
}

void PositionLine::KeepNewest() {
  std::array<Elapsed, Agreeing> newest;
  for (size_t back = 0; back < Agreeing; ++back) newest[back] = Newest(back);
  std::copy(newest.begin(), newest.end(), m_Starts.begin());
  m_Count = Agreeing;
}

void PositionLine::FindMedian() {
  const size_t held = std::min(m_Count, Kept);
  std::array<Elapsed, Kept> sorted = m_Starts;
  const auto middle = sorted.begin() + static_cast<std::ptrdiff_t>(held / 2);
  std::nth_element(sorted.begin(), middle, sorted.begin() + static_cast<std::ptrdiff_t>(held));
  m_Start = *middle;
}

Elapsed PositionLine::At(Elapsed now) {
  if (Runs()) m_Told = std::max(m_Told, now - m_Start);
  return m_Told;
}

std::optional<Elapsed> PositionLine::Reaches(Elapsed position) const {
  if (!Runs()) return std::nullopt;
  return position + m_Start;
}

}  // namespace vex
