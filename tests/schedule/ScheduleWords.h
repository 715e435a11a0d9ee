#pragma once

#include <memory>
#include <string>
#include <vector>

#include "basic/Error.h"
#include "schedule/Schedule.h"
#include "schedule/ShowEventFunctions.h"
#include "time/TimeRange.h"
#include "time/WeekTimeFunctions.h"

namespace vex {

enum Day : int32_t { Sun, Mon, Tue, Wed, Thu, Fri, Sat };

inline WeekTime::Reference At(Day day, int32_t lHour, int32_t lMinute = 0, int32_t lSecond = 0) {
  return NewWeekTime(day, lHour, lMinute, lSecond);
}

inline std::shared_ptr<ShowEvent> ShowFrom(WeekTime::Reference start, WeekTime::Reference end,
                                           const std::string& szFilename = "a") {
  return NewShowEvent(szFilename, std::move(start), std::move(end));
}

/// "Mon 18:00".
inline std::string Words(const WeekTime& time) {
  const auto twoDigits = [](int32_t lValue) { return (lValue < 10 ? "0" : "") + std::to_string(lValue); };
  const std::string szSeconds = time.Second() == 0 ? "" : ":" + twoDigits(time.Second());
  return time.ToString().substr(0, 3) + " " + std::to_string(time.Hour()) + ":" + twoDigits(time.Minute()) +
         szSeconds;
}

/// "Mon 18:00 - Mon 22:00 eve.shw", a null event without a name.
inline std::string Words(const ShowEvent& event) {
  std::string szWords = Words(*event.StartTime()) + " - " + Words(*event.EndTime());
  if (event.EventType() == ShowFileEvent) szWords += " " + event.Filename();
  return szWords;
}

using Lines = std::vector<std::string>;

inline Lines Chain(const Schedule& schedule) {
  Lines lines;
  for (const auto* node = schedule.FirstNode(); node; node = node->NextNode()) {
    lines.push_back(Words(*node->Obj()));
  }
  return lines;
}

/// "2026-12-24 18:00:00 .. 2026-12-24 22:00:00", "..." where a bound is missing.
inline std::string Words(const TimeRange& range) {
  return (range.HasStart() ? FormatDateTime(range.StartTime()) : "...") + " .. " +
         (range.HasEnd() ? FormatDateTime(range.EndTime()) : "...");
}

/// What a statement raised, as "number/source/description"; "nothing" when it raised nothing.
template <class Statement>
std::string RaisedError(Statement statement) {
  try {
    statement();
  } catch (const Error& error) {
    return std::to_string(error.Number) + "/" + error.Source + "/" + error.Description;
  }
  return "nothing";
}

inline const std::string SubscriptError = "9//Subscript out of range";
inline const std::string TypeMismatchError = "13//Type mismatch";
inline const std::string OverflowError = "6//Overflow";
inline const std::string InvalidCallError = "5//Invalid procedure call or argument";
inline const std::string ObjectNotSetError = "91//Object variable not set";
inline const std::string ListError1 = "1/Serialize.ListFromText/Badly formatted list, enclosing parens";

}  // namespace vex
