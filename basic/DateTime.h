#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <string_view>

namespace vex {

/// A calendar date-time as the wall clock tells it: whole civil seconds of the Gregorian calendar, without
/// zone. Nothing is converted through UTC: 18:00:00 is when the clock on the wall says so, also on the
/// night when summer time begins. Range: 1 January 100 to 31 December 9999; leaving it raises
/// ErrorInvalidCall. A new DateTime is the platform's zero date, 30 December 1899 0:00:00.
class DateTime {
 public:
  constexpr DateTime() = default;

  /// Parts as written on a calendar; raises ErrorTypeMismatch when there is no such day or time.
  static DateTime FromParts(int32_t lYear, int32_t lMonth, int32_t lDay, int32_t lHour = 0,
                            int32_t lMinute = 0, int32_t lSecond = 0);

  [[nodiscard]] int32_t Year() const;
  [[nodiscard]] int32_t Month() const;
  [[nodiscard]] int32_t Day() const;
  [[nodiscard]] int32_t Hour() const;
  [[nodiscard]] int32_t Minute() const;
  [[nodiscard]] int32_t Second() const;
  /// 1 Sunday to 7 Saturday.
  [[nodiscard]] int32_t WeekDay() const;

  /// Midnight of the same date.
  [[nodiscard]] DateTime DatePart() const;
  [[nodiscard]] DateTime PlusDays(int64_t days) const;
  [[nodiscard]] DateTime PlusSeconds(int64_t seconds) const;
  /// Seconds from other to this; negative when this is earlier.
  [[nodiscard]] int64_t SecondsSince(DateTime other) const { return m_Seconds - other.m_Seconds; }
  /// Whole days from other's date to this date.
  [[nodiscard]] int64_t DaysSince(DateTime other) const;

  friend constexpr auto operator<=>(DateTime, DateTime) = default;

 private:
  explicit constexpr DateTime(int64_t seconds) : m_Seconds(seconds) {}

  int64_t m_Seconds = 0;  // since 30 December 1899 0:00:00
};

/// "yyyy-mm-dd hh:mm:ss", 24-hour clock.
[[nodiscard]] std::string FormatDateTime(DateTime dtTime);
/// "yyyy-mm-dd".
[[nodiscard]] std::string FormatDate(DateTime dtTime);
/// Reads "yyyy-mm-dd hh:mm:ss", also without the seconds or without the time, blanks around it allowed;
/// only the year needs all its digits. Raises ErrorTypeMismatch for anything else.
[[nodiscard]] DateTime ParseDateTime(std::string_view szText);

}  // namespace vex
