#include "time/WeekTimeFunctions.h"

#include "basic/Error.h"
#include "basic/Number.h"
#include "show/lists/Serialize.h"

namespace vex {

WeekTime::Reference NewWeekTime(int32_t lNewDay, int32_t lNewHour, int32_t lNewMinute, int32_t lNewSecond) {
  auto time = std::make_shared<WeekTime>();
  time->Day(lNewDay);
  time->Hour(lNewHour);
  time->Minute(lNewMinute);
  time->Second(lNewSecond);
  return time;
}

WeekTime::Reference WeekTimeFromDate(DateTime dtTime) {
  return NewWeekTime(dtTime.WeekDay() - 1, dtTime.Hour(), dtTime.Minute(), dtTime.Second());
}

DateTime WeekTimeToDate(const WeekTime::Reference& time, DateTime dtReference) {
  const WeekTime& weekTime = Required(time);
  const DateTime sunday = dtReference.DatePart().PlusDays(1 - dtReference.WeekDay());
  return sunday.PlusDays(weekTime.Day()).PlusSeconds(weekTime.DaySecond());
}

std::string WeekTimeToText(const WeekTime::Reference& time) {
  return FormatNumber(Required(time).TimeVal());
}

WeekTime::Reference WeekTimeFromText(std::string_view szText) {
  auto time = std::make_shared<WeekTime>();
  time->TimeVal(RoundToLong(LeadingNumber(UnescapeText(szText))));
  return time;
}

}  // namespace vex
