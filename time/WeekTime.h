#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace vex {

/// A moment of the repeating week, to the second and without a date: Monday 13:05:07 of every week. The
/// schedules order their events by it and ask which one is on now. References to one WeekTime are shared,
/// so a boundary between two events moves for both; arithmetic makes new objects.
///
/// TimeVal = Day * 86400 + Hour * 3600 + Minute * 60 + Second at all times. TimeVal and Day wrap around,
/// while Hour, Minute and Second stop at their bounds. Arguments that are absent raise ErrorObjectNotSet;
/// arithmetic beyond 32 bits raises ErrorOverflow.
class WeekTime {
 public:
  using Reference = std::shared_ptr<WeekTime>;

  /// Seconds since Sunday 0:00:00, 0 to 604799.
  [[nodiscard]] int32_t TimeVal() const { return m_TimeVal; }
  /// Taken round the week: -1 is Saturday 23:59:59, 604800 Sunday 0:00:00. Below -604800 it stays negative.
  void TimeVal(int32_t lTimeVal);
  /// 0 Sunday to 6 Saturday.
  [[nodiscard]] int32_t Day() const { return m_Day; }
  void Day(int32_t lDay);
  [[nodiscard]] int32_t Hour() const { return m_Hour; }
  void Hour(int32_t lHour);
  [[nodiscard]] int32_t Minute() const { return m_Minute; }
  void Minute(int32_t lMinute);
  [[nodiscard]] int32_t Second() const { return m_Second; }
  void Second(int32_t lSecond);

  /// Seconds since that day's midnight.
  [[nodiscard]] int32_t DaySecond() const;
  /// All five fields alike; false for an absent other.
  [[nodiscard]] bool MemberwiseEquals(const Reference& other) const;
  [[nodiscard]] bool Equals(const Reference& other) const;
  [[nodiscard]] bool Precedes(const Reference& other) const;
  [[nodiscard]] bool PrecedesEq(const Reference& other) const;

  /// Whether this lies between the bounds, going forward from the lower one, over the week's end if need
  /// be. Equal bounds stand for the whole week. Both bounds excluded / both included / upper one excluded.
  [[nodiscard]] bool Between(const Reference& lowerBound, const Reference& upperBound) const;
  [[nodiscard]] bool BetweenEquals(const Reference& lowerBound, const Reference& upperBound) const;
  [[nodiscard]] bool InRange(const Reference& lowerBound, const Reference& upperBound) const;

  [[nodiscard]] Reference PlusTime(const Reference& other) const;
  [[nodiscard]] Reference PlusDuration(int32_t lDuration) const;
  /// Seconds from the other time forward to this one, 0 to 604799.
  [[nodiscard]] int32_t Minus(const Reference& otherTime) const;
  /// Kept on purpose: it never had a result to give, and raises ErrorObjectNotSet at every call.
  [[nodiscard]] Reference MinusDuration(int32_t lDuration) const;

  /// A short key for traces, without padding: "Mon1357" for Monday 13:05:07.
  [[nodiscard]] std::string ToString() const;
  /// "1:05:07 PM".
  [[nodiscard]] std::string DayTimeToString() const;
  /// "Mon 1:05:07 PM".
  [[nodiscard]] std::string WeekTimeToString() const;

 private:
  void Recompute();

  int32_t m_TimeVal = 0;
  int32_t m_Day = 0;
  int32_t m_Hour = 0;
  int32_t m_Minute = 0;
  int32_t m_Second = 0;
};

}  // namespace vex
