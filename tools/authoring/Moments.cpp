#include "tools/authoring/Moments.h"

#include <array>

#include "basic/Error.h"
#include "host/CodePage.h"
#include "time/WeekTimeFunctions.h"

namespace vex {

namespace {

constexpr std::array<std::string_view, 7> Days = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
constexpr size_t DayLength = 3;

/// A Sunday, to put a week time on a calendar.
DateTime AnySunday() {
  return DateTime::FromParts(2000, 1, 2);
}

std::string TimeToWords(DateTime dtTime) {
  constexpr size_t date = 11;
  constexpr size_t hourAndMinute = 5;
  return FormatDateTime(dtTime).substr(date, dtTime.Second() == 0 ? hourAndMinute : std::string::npos);
}

}  // namespace

WeekTime::Reference ParseWeekTime(std::string_view szText) {
  const std::string szDay = FoldCase(szText.substr(0, DayLength));
  const bool boolTime =
      szText.size() > DayLength && szText[DayLength] == ' ' && szText.find(':') != std::string_view::npos;
  for (size_t day = 0; boolTime && day < Days.size(); ++day) {
    if (szDay != FoldCase(Days[day])) continue;
    const DateTime date = AnySunday().PlusDays(static_cast<int64_t>(day));
    return WeekTimeFromDate(ParseDateTime(FormatDate(date) + std::string(szText.substr(DayLength))));
  }
  throw PlatformError(ErrorTypeMismatch);
}

std::string WeekTimeToWords(const WeekTime& time) {
  // A damaged file may hold a time before the week; its day is that of the calendar too.
  const DateTime moment = AnySunday().PlusSeconds(time.TimeVal());
  return std::string(Days.at(static_cast<size_t>(moment.WeekDay() - 1))) + " " + TimeToWords(moment);
}

std::string MomentToWords(DateTime dtTime) {
  return FormatDate(dtTime) + " " + TimeToWords(dtTime);
}

std::string ShowToWords(const ShowEvent& show) {
  return "\"" + show.Filename() + "\" from " + WeekTimeToWords(Required(show.StartTime())) + " to " +
         WeekTimeToWords(Required(show.EndTime()));
}

std::string ShowToWords(const std::string& szShow, DateTime start, DateTime end) {
  return "\"" + szShow + "\" from " + MomentToWords(start) + " to " + MomentToWords(end);
}

}  // namespace vex
