#include "tools/authoring/Obstacles.h"

#include <algorithm>
#include <vector>

#include "time/TimeRange.h"
#include "time/WeekTimeFunctions.h"
#include "tools/authoring/Moments.h"

namespace vex {

namespace {

constexpr int32_t EndPrecedesStart = 1;
constexpr int32_t SpansTwoDays = 2;

/// `A stands in the way`, `A and B stand in the way`, `A, B and 3 more stand in the way`.
std::string StandInTheWay(const std::vector<std::string>& shows) {
  constexpr size_t most = 3;
  if (shows.empty()) return "";
  if (shows.size() == 1) return shows.front() + " stands in the way";
  const size_t named = shows.size() > most ? most - 1 : shows.size() - 1;
  std::string szWords = shows.front();
  for (size_t index = 1; index < named; ++index) szWords += ", " + shows[index];
  szWords += " and " + (shows.size() > most ? std::to_string(shows.size() - named) + " more" : shows[named]);
  return szWords + " stand in the way";
}

/// Shows of a date that overlap the span from start to end.
void CollectOverlapping(const YearSchedule& year, DateTime dtDate, DateTime start, DateTime end,
                        std::vector<std::string>& shows) {
  const auto day = year.DateSchedule(dtDate);
  if (!day) return;
  for (const auto* node = day->FirstNode(); node; node = node->NextNode()) {
    const ShowEvent& show = *node->Obj();
    if (show.EventType() != ShowFileEvent) continue;
    const TimeRange range = show.Range(dtDate.DatePart().PlusSeconds(show.StartTime()->DaySecond()));
    if (!range.HasStart() || !range.HasEnd() || range.StartTime() >= end || range.EndTime() <= start)
      continue;
    shows.push_back(ShowToWords(show.Filename(), range.StartTime(), range.EndTime()));
  }
}

}  // namespace

std::string WeekObstacles(const Schedule& schedule, const WeekTime::Reference& start,
                          const WeekTime::Reference& end) {
  if (Required(start).Equals(end)) return "the show ends when it starts; give it another end";
  std::vector<std::string> shows;
  for (const auto* node = schedule.FirstNode(); node; node = node->NextNode()) {
    const ShowEvent& show = *node->Obj();
    if (show.EventType() != ShowFileEvent) continue;
    if (start->InRange(show.StartTime(), show.EndTime()) || show.StartTime()->InRange(start, end))
      shows.push_back(ShowToWords(show));
  }
  return StandInTheWay(shows);
}

std::string YearObstacles(const YearSchedule& year, DateTime start, DateTime end, const Error& error) {
  if (error.Number == EndPrecedesStart) return "give an end after the start, with its date";
  if (error.Number == SpansTwoDays)
    return "a dated show may run past one midnight and is cut off there; add one for each date";
  std::vector<std::string> shows;
  CollectOverlapping(year, start, start, end, shows);
  if (end.DaysSince(start) == 1) CollectOverlapping(year, end, start, end, shows);
  if (!shows.empty()) return StandInTheWay(shows);
  const bool boolWeekEnd = end.DaysSince(start) == 1 && end.WeekDay() == 1;
  if (!boolWeekEnd) return "";
  return "beside another show of its date a show may not run past Saturday's midnight; let it end at " +
         MomentToWords(end.DatePart()) + ", where dated shows are cut off anyway";
}

}  // namespace vex
