#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "basic/Collection.h"
#include "basic/DateTime.h"
#include "host/Files.h"
#include "schedule/Schedule.h"
#include "time/TimeRange.h"

namespace vex {

/// Shows for particular dates, beside the repeating week: one Schedule for each date that has shows, found
/// by the date's text. A show stands under the date on which it starts and may run past one midnight.
/// Within a date's schedule only the events of that date's weekday matter.
class YearSchedule {
 public:
  using ScheduleReference = std::shared_ptr<Schedule>;

  YearSchedule() = default;
  YearSchedule(const YearSchedule&) = delete;
  YearSchedule& operator=(const YearSchedule&) = delete;

  /// "yyyy-mm-dd".
  [[nodiscard]] static std::string DateToString(DateTime dtNewVal);
  /// Raises number 37, "Unexpected date string format: " and the text, unless there are three parts;
  /// ErrorTypeMismatch for parts that make no date.
  [[nodiscard]] static DateTime DateStringToDate(std::string_view szDateString);

  /// Empty when the date has none.
  [[nodiscard]] ScheduleReference DateSchedule(DateTime dtTime) const;
  [[nodiscard]] ScheduleReference ScheduleByKey(const std::string& szKey) const;
  /// Raises ErrorInvalidCall when the date has one already.
  void AddSchedule(DateTime dtTime, ScheduleReference schedule);
  /// The dates' texts in the order in which they were added.
  [[nodiscard]] const Collection<std::string>& Keys() const { return m_Keys; }
  [[nodiscard]] bool Modified() const { return m_Modified; }
  void Modified(bool boolModified) { m_Modified = boolModified; }

  /// Adds a dated show. Errors, with source "Schedule.AddShowEventByFile": 1 "End time precedes start
  /// time", 2 "Event spans more than two days", 3 "End time conficts with event in next day", 4 "Start
  /// time conflicts with event in previous day", 4 "Event conflict".
  void AddShowEventByFile(const std::string& szFilename, DateTime startTime, DateTime endTime);
  /// Removes a date's show, and the date with its last one.
  void RemoveShowEvent(DateTime dtTime, Schedule::ShowNode* node);

  /// The show whose occurrence overlaps the range and starts first (at equal starts the one found last),
  /// and its start; empty when there is none.
  [[nodiscard]] std::shared_ptr<ShowEvent> FirstShowWithinRange(const TimeRange& trRange,
                                                                DateTime& dtFirstShowStartTime) const;

  /// Writes the year's text and a line end; on failure as Schedule::Save.
  bool Save(Files& files, const std::string& szFilename, std::string* szReason = nullptr);

 private:
  /// A date with its schedule, for those who look at all of them.
  struct Day {
    DateTime Date;
    ScheduleReference Shows;
  };

  void CheckMidnight(DateTime startTime, DateTime endTime, const WeekTime::Reference& start,
                     const WeekTime::Reference& end) const;

  Collection<std::string> m_Keys;
  std::vector<Day> m_Days;  // in the order of m_Keys
  std::unordered_map<std::string, ScheduleReference> m_ByKey;
  bool m_Modified = false;
};

}  // namespace vex
