#pragma once

#include <string>
#include <string_view>

#include "basic/DateTime.h"

namespace vex {

/// A span of the calendar whose start and end are each optional: without a start it reaches back without
/// limit, without an end it runs on, without both it is always. The event in force carries one, and every
/// test says of each bound whether it counts, so that shows which touch do not overlap.
///
/// Where both bounds are there, the end is not before the start: setting a bound so that it crosses the
/// other one drops the other one. A new range has neither.
class TimeRange {
 public:
  /// Raises number 37, "Time range has no start", without one.
  [[nodiscard]] DateTime StartTime() const;
  void StartTime(DateTime dtNewVal);
  /// Raises number 37, "Time range has no end", without one.
  [[nodiscard]] DateTime EndTime() const;
  void EndTime(DateTime dtNewVal);
  [[nodiscard]] bool HasStart() const { return m_HasStart; }
  [[nodiscard]] bool HasEnd() const { return m_HasEnd; }
  void ClearStart() { m_HasStart = false; }
  void ClearEnd() { m_HasEnd = false; }

  [[nodiscard]] bool Includes(DateTime dtTime, bool boolStartInclusive, bool boolEndInclusive) const;
  /// Whether a bound of another range lies in this one; a bound that does not count is moved by a second
  /// towards its own range's inside first.
  [[nodiscard]] bool IncludesAdjustable(DateTime dtToCheck, DateTime dtOtherBound, bool boolToCheckInclusive,
                                        bool boolOtherBoundInclusive, bool boolAdjustmentPositive,
                                        bool boolStartInclusive, bool boolEndInclusive) const;
  [[nodiscard]] bool Overlaps(const TimeRange& other, bool boolThisStartInclusive, bool boolThisEndInclusive,
                              bool boolOtherStartInclusive, bool boolOtherEndInclusive) const;
  /// True for an absent other, and where either bound is missing.
  [[nodiscard]] bool StartsBeforeOtherEnds(const TimeRange* other) const;
  /// False for an absent other.
  [[nodiscard]] bool Equals(const TimeRange* other) const;

  /// "(T,2026-12-24 18:00:00,F,)".
  [[nodiscard]] std::string Serialize() const;
  /// Raises number 37, "Unexpected number of fields in serialized time range: " and the count, unless
  /// there are four, and leaves the range as it was; the start is set before the end.
  void Deserialize(std::string_view szSerialized);
  /// An absent other counts as a new range.
  void CopyFrom(const TimeRange* other);

 private:
  [[nodiscard]] bool OverlapsBounded(const TimeRange& other, bool boolThisStartInclusive,
                                     bool boolThisEndInclusive, bool boolOtherStartInclusive,
                                     bool boolOtherEndInclusive) const;

  DateTime m_StartTime;
  DateTime m_EndTime;
  bool m_HasStart = false;
  bool m_HasEnd = false;
};

}  // namespace vex
