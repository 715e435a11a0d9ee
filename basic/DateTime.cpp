#include "basic/DateTime.h"

#include <array>
#include <cstdio>

#include "basic/Error.h"

namespace vex {

namespace {

constexpr int64_t SecondsPerMinute = 60;
constexpr int64_t SecondsPerHour = 3600;
constexpr int64_t SecondsPerDay = 86400;
constexpr int32_t FirstYear = 100;
constexpr int32_t LastYear = 9999;

struct Civil {
  int32_t Year;
  int32_t Month;
  int32_t Day;
};

constexpr int64_t FloorDivide(int64_t a, int64_t b) {
  return a / b - (a % b < 0 ? 1 : 0);
}

/// Days from 1 March of year 0 in the proleptic Gregorian calendar; a year then ends with its leap day.
constexpr int64_t DaysFromMarch(const Civil& date) {
  const int64_t year = date.Month > 2 ? date.Year : date.Year - 1;
  const int64_t month = date.Month > 2 ? date.Month - 3 : date.Month + 9;
  return year * 365 + FloorDivide(year, 4) - FloorDivide(year, 100) + FloorDivide(year, 400) +
         (month * 153 + 2) / 5 + date.Day - 1;
}

constexpr int64_t ZeroDay = DaysFromMarch({1899, 12, 30});

Civil CivilFromDays(int64_t daysFromMarch) {
  constexpr int64_t daysPerEra = 146097;  // 400 years
  const int64_t era = FloorDivide(daysFromMarch, daysPerEra);
  const int64_t dayOfEra = daysFromMarch - era * daysPerEra;
  const int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const int64_t month = (5 * dayOfYear + 2) / 153;
  const auto day = static_cast<int32_t>(dayOfYear - (153 * month + 2) / 5 + 1);
  const auto civilMonth = static_cast<int32_t>(month < 10 ? month + 3 : month - 9);
  const auto year = static_cast<int32_t>(yearOfEra + era * 400 + (civilMonth <= 2 ? 1 : 0));
  return {year, civilMonth, day};
}

int64_t DayNumber(int64_t seconds) {
  return FloorDivide(seconds, SecondsPerDay);
}

int64_t SecondOfDay(int64_t seconds) {
  return seconds - DayNumber(seconds) * SecondsPerDay;
}

Civil CivilOf(int64_t seconds) {
  return CivilFromDays(DayNumber(seconds) + ZeroDay);
}

bool IsLeap(int32_t lYear) {
  return (lYear % 4 == 0 && lYear % 100 != 0) || lYear % 400 == 0;
}

int32_t DaysInMonth(int32_t lYear, int32_t lMonth) {
  constexpr std::array<int32_t, 12> days = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return lMonth == 2 && IsLeap(lYear) ? 29 : days[static_cast<size_t>(lMonth - 1)];
}

/// Reads the parts of a date and time text one after another.
class PartsReader {
 public:
  explicit PartsReader(std::string_view szText) : m_Text(szText) {}

  [[nodiscard]] int32_t Number(size_t most) {
    int32_t lValue = 0;
    size_t digits = 0;
    while (digits < most && digits < m_Text.size() && m_Text[digits] >= '0' && m_Text[digits] <= '9') {
      lValue = lValue * 10 + (m_Text[digits] - '0');
      ++digits;
    }
    if (digits == 0) throw PlatformError(ErrorTypeMismatch);
    m_Text.remove_prefix(digits);
    return lValue;
  }
  [[nodiscard]] bool Take(char character) {
    if (m_Text.empty() || m_Text.front() != character) return false;
    m_Text.remove_prefix(1);
    return true;
  }
  void Expect(char character) {
    if (!Take(character)) throw PlatformError(ErrorTypeMismatch);
  }
  void SkipBlanks() {
    while (Take(' ')) {
    }
  }
  void ExpectEnd() const {
    if (!m_Text.empty()) throw PlatformError(ErrorTypeMismatch);
  }
  [[nodiscard]] bool AtEnd() const { return m_Text.empty(); }
  [[nodiscard]] size_t Left() const { return m_Text.size(); }

 private:
  std::string_view m_Text;
};

}  // namespace

DateTime DateTime::FromParts(int32_t lYear, int32_t lMonth, int32_t lDay, int32_t lHour, int32_t lMinute,
                             int32_t lSecond) {
  const bool boolDate = lYear >= FirstYear && lYear <= LastYear && lMonth >= 1 && lMonth <= 12 && lDay >= 1 &&
                        lDay <= DaysInMonth(lYear, lMonth);
  const bool boolTime =
      lHour >= 0 && lHour < 24 && lMinute >= 0 && lMinute < 60 && lSecond >= 0 && lSecond < 60;
  if (!boolDate || !boolTime) throw PlatformError(ErrorTypeMismatch);
  const int64_t days = DaysFromMarch({lYear, lMonth, lDay}) - ZeroDay;
  return DateTime(days * SecondsPerDay + lHour * SecondsPerHour + lMinute * SecondsPerMinute + lSecond);
}

int32_t DateTime::Year() const {
  return CivilOf(m_Seconds).Year;
}
int32_t DateTime::Month() const {
  return CivilOf(m_Seconds).Month;
}
int32_t DateTime::Day() const {
  return CivilOf(m_Seconds).Day;
}
int32_t DateTime::Hour() const {
  return static_cast<int32_t>(SecondOfDay(m_Seconds) / SecondsPerHour);
}
int32_t DateTime::Minute() const {
  return static_cast<int32_t>(SecondOfDay(m_Seconds) % SecondsPerHour / SecondsPerMinute);
}
int32_t DateTime::Second() const {
  return static_cast<int32_t>(SecondOfDay(m_Seconds) % SecondsPerMinute);
}

// The zero day, 30 December 1899, was a Saturday.
int32_t DateTime::WeekDay() const {
  constexpr int64_t daysPerWeek = 7;
  const int64_t day = DayNumber(m_Seconds) + 6;
  return static_cast<int32_t>(day - FloorDivide(day, daysPerWeek) * daysPerWeek) + 1;
}

DateTime DateTime::DatePart() const {
  return DateTime(DayNumber(m_Seconds) * SecondsPerDay);
}

DateTime DateTime::PlusDays(int64_t days) const {
  constexpr int64_t mostDays = int64_t{LastYear + 1} * 366;
  if (days > mostDays || days < -mostDays) throw PlatformError(ErrorInvalidCall);
  return PlusSeconds(days * SecondsPerDay);
}

DateTime DateTime::PlusSeconds(int64_t seconds) const {
  static const int64_t first = FromParts(FirstYear, 1, 1).m_Seconds;
  static const int64_t last = FromParts(LastYear, 12, 31, 23, 59, 59).m_Seconds;
  if (seconds > last - m_Seconds || seconds < first - m_Seconds) throw PlatformError(ErrorInvalidCall);
  return DateTime(m_Seconds + seconds);
}

int64_t DateTime::DaysSince(DateTime other) const {
  return DayNumber(m_Seconds) - DayNumber(other.m_Seconds);
}

std::string FormatDateTime(DateTime dtTime) {
  std::array<char, 32> buffer{};
  const int length =
      std::snprintf(buffer.data(), buffer.size(), "%04d-%02d-%02d %02d:%02d:%02d", dtTime.Year(),
                    dtTime.Month(), dtTime.Day(), dtTime.Hour(), dtTime.Minute(), dtTime.Second());
  return {buffer.data(), static_cast<size_t>(length)};
}

std::string FormatDate(DateTime dtTime) {
  return FormatDateTime(dtTime).substr(0, 10);
}

DateTime ParseDateTime(std::string_view szText) {
  PartsReader reader(szText);
  reader.SkipBlanks();
  const size_t before = reader.Left();
  const int32_t lYear = reader.Number(4);
  constexpr size_t yearDigits = 4;
  if (before - reader.Left() != yearDigits) throw PlatformError(ErrorTypeMismatch);
  reader.Expect('-');
  const int32_t lMonth = reader.Number(2);
  reader.Expect('-');
  const int32_t lDay = reader.Number(2);
  const size_t afterDay = reader.Left();
  reader.SkipBlanks();
  if (reader.AtEnd()) return DateTime::FromParts(lYear, lMonth, lDay);
  if (reader.Left() == afterDay) throw PlatformError(ErrorTypeMismatch);
  const int32_t lHour = reader.Number(2);
  reader.Expect(':');
  const int32_t lMinute = reader.Number(2);
  const int32_t lSecond = reader.Take(':') ? reader.Number(2) : 0;
  reader.SkipBlanks();
  reader.ExpectEnd();
  return DateTime::FromParts(lYear, lMonth, lDay, lHour, lMinute, lSecond);
}

}  // namespace vex
