#include "host/virtual/VirtualClock.h"

namespace vex {

namespace {

std::string TwoDigits(int32_t lValue) {
  return {static_cast<char>('0' + lValue / 10), static_cast<char>('0' + lValue % 10)};
}

}  // namespace

VirtualClock::VirtualClock(DateTime dtStart) : m_Set(dtStart) {}

int64_t VirtualClock::MillisecondsSinceSet() const {
  return std::chrono::duration_cast<std::chrono::milliseconds>(m_Elapsed - m_SetAt).count();
}

DateTime VirtualClock::Now() const {
  return m_Set.PlusSeconds(MillisecondsSinceSet() / 1000);
}

double VirtualClock::SecondsOfDay() const {
  const DateTime dtNow = Now();
  const int64_t seconds = dtNow.SecondsSince(dtNow.DatePart());
  return static_cast<double>(seconds * 1000 + MillisecondsSinceSet() % 1000) / 1000.0;
}

std::string VirtualClock::ShortTime() const {
  const DateTime dtNow = Now();
  return TwoDigits(dtNow.Hour()) + ":" + TwoDigits(dtNow.Minute());
}

std::string VirtualClock::Milliseconds() const {
  const auto fraction = static_cast<int32_t>(MillisecondsSinceSet() % 1000);
  return FormatDateTime(Now()) + "." + static_cast<char>('0' + fraction / 100) + TwoDigits(fraction % 100);
}

void VirtualClock::SetWallClock(DateTime dtTime) {
  m_Set = dtTime;
  m_SetAt = m_Elapsed;
  if (m_WallClockSet) m_WallClockSet();
}

void VirtualClock::MoveTo(vex::Elapsed elapsed) {
  if (elapsed > m_Elapsed) m_Elapsed = elapsed;
}

}  // namespace vex
