#include "time/WeekTime.h"

#include <algorithm>
#include <array>

#include "basic/Error.h"
#include "basic/Number.h"

namespace vex {

namespace {

constexpr int32_t MinuteSeconds = 60;
constexpr int32_t HourSeconds = 3600;
constexpr int32_t DaySeconds = 86400;
constexpr int32_t WeekSeconds = 604800;
constexpr int32_t WeekDays = 7;
constexpr int32_t HalfDayHours = 12;

std::string TwoDigits(int32_t lValue) {
  return (lValue < 10 ? "0" : "") + FormatNumber(lValue);
}

const char* DayName(int32_t lDay) {
  constexpr std::array<const char*, WeekDays> names = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  if (lDay < 0 || lDay >= WeekDays) throw PlatformError(ErrorSubscript);
  return names[static_cast<size_t>(lDay)];
}

}  // namespace

void WeekTime::TimeVal(int32_t lTimeVal) {
  m_TimeVal = CheckedAdd(lTimeVal, WeekSeconds) % WeekSeconds;
  m_Day = m_TimeVal / DaySeconds;
  m_Hour = m_TimeVal % DaySeconds / HourSeconds;
  m_Minute = m_TimeVal % HourSeconds / MinuteSeconds;
  m_Second = m_TimeVal % MinuteSeconds;
}

void WeekTime::Day(int32_t lDay) {
  m_Day = CheckedAdd(lDay, WeekDays) % WeekDays;
  Recompute();
}

void WeekTime::Hour(int32_t lHour) {
  m_Hour = std::clamp(lHour, 0, 23);
  Recompute();
}

void WeekTime::Minute(int32_t lMinute) {
  m_Minute = std::clamp(lMinute, 0, 59);
  Recompute();
}

void WeekTime::Second(int32_t lSecond) {
  m_Second = std::clamp(lSecond, 0, 59);
  Recompute();
}

void WeekTime::Recompute() {
  m_TimeVal = m_Day * DaySeconds + m_Hour * HourSeconds + m_Minute * MinuteSeconds + m_Second;
}

int32_t WeekTime::DaySecond() const {
  return m_TimeVal - m_Day * DaySeconds;
}

bool WeekTime::MemberwiseEquals(const Reference& other) const {
  return other && m_TimeVal == other->m_TimeVal && m_Second == other->m_Second &&
         m_Minute == other->m_Minute && m_Hour == other->m_Hour && m_Day == other->m_Day;
}

bool WeekTime::Equals(const Reference& other) const {
  return m_TimeVal == Required(other).m_TimeVal;
}

bool WeekTime::Precedes(const Reference& other) const {
  return m_TimeVal < Required(other).m_TimeVal;
}

bool WeekTime::PrecedesEq(const Reference& other) const {
  return m_TimeVal <= Required(other).m_TimeVal;
}

bool WeekTime::Between(const Reference& lowerBound, const Reference& upperBound) const {
  const int32_t lLower = Required(lowerBound).m_TimeVal;
  const int32_t lUpper = Required(upperBound).m_TimeVal;
  if (lLower == lUpper) return true;
  if (lLower < lUpper) return lLower < m_TimeVal && m_TimeVal < lUpper;
  return m_TimeVal > lLower || m_TimeVal < lUpper;
}

bool WeekTime::BetweenEquals(const Reference& lowerBound, const Reference& upperBound) const {
  const int32_t lLower = Required(lowerBound).m_TimeVal;
  const int32_t lUpper = Required(upperBound).m_TimeVal;
  if (lLower == lUpper) return true;
  if (lLower < lUpper) return lLower <= m_TimeVal && m_TimeVal <= lUpper;
  return m_TimeVal >= lLower || m_TimeVal <= lUpper;
}

bool WeekTime::InRange(const Reference& lowerBound, const Reference& upperBound) const {
  const int32_t lLower = Required(lowerBound).m_TimeVal;
  const int32_t lUpper = Required(upperBound).m_TimeVal;
  if (lLower == lUpper) return true;
  if (lLower < lUpper) return lLower <= m_TimeVal && m_TimeVal < lUpper;
  return m_TimeVal >= lLower || m_TimeVal < lUpper;
}

WeekTime::Reference WeekTime::PlusTime(const Reference& other) const {
  return PlusDuration(Required(other).m_TimeVal);
}

WeekTime::Reference WeekTime::PlusDuration(int32_t lDuration) const {
  auto sum = std::make_shared<WeekTime>();
  sum->TimeVal(CheckedAdd(m_TimeVal, lDuration));
  return sum;
}

int32_t WeekTime::Minus(const Reference& otherTime) const {
  return (m_TimeVal - Required(otherTime).m_TimeVal + WeekSeconds) % WeekSeconds;
}

WeekTime::Reference WeekTime::MinusDuration(int32_t /*lDuration*/) const {
  throw PlatformError(ErrorObjectNotSet);
}

std::string WeekTime::ToString() const {
  return DayName(m_Day) + FormatNumber(m_Hour) + FormatNumber(m_Minute) + FormatNumber(m_Second);
}

std::string WeekTime::DayTimeToString() const {
  const int32_t lHour = m_Hour % HalfDayHours == 0 ? HalfDayHours : m_Hour % HalfDayHours;
  return FormatNumber(lHour) + ":" + TwoDigits(m_Minute) + ":" + TwoDigits(m_Second) +
         (m_Hour / HalfDayHours == 0 ? " AM" : " PM");
}

std::string WeekTime::WeekTimeToString() const {
  return std::string(DayName(m_Day)) + " " + DayTimeToString();
}

}  // namespace vex
