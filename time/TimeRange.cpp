#include "time/TimeRange.h"

#include "basic/Error.h"
#include "basic/Number.h"
#include "show/lists/Serialize.h"

namespace vex {

namespace {

constexpr int32_t TimeError = 37;

}  // namespace

DateTime TimeRange::StartTime() const {
  if (!m_HasStart) throw Error(TimeError, "", "Time range has no start");
  return m_StartTime;
}

void TimeRange::StartTime(DateTime dtNewVal) {
  m_StartTime = dtNewVal;
  m_HasStart = true;
  if (m_HasEnd && m_EndTime < dtNewVal) m_HasEnd = false;
}

DateTime TimeRange::EndTime() const {
  if (!m_HasEnd) throw Error(TimeError, "", "Time range has no end");
  return m_EndTime;
}

void TimeRange::EndTime(DateTime dtNewVal) {
  m_EndTime = dtNewVal;
  m_HasEnd = true;
  if (m_HasStart && dtNewVal < m_StartTime) m_HasStart = false;
}

bool TimeRange::Includes(DateTime dtTime, bool boolStartInclusive, bool boolEndInclusive) const {
  const bool boolStart = !m_HasStart || dtTime > m_StartTime || (dtTime == m_StartTime && boolStartInclusive);
  const bool boolEnd = !m_HasEnd || dtTime < m_EndTime || (dtTime == m_EndTime && boolEndInclusive);
  return boolStart && boolEnd;
}

bool TimeRange::IncludesAdjustable(DateTime dtToCheck, DateTime dtOtherBound, bool boolToCheckInclusive,
                                   bool boolOtherBoundInclusive, bool boolAdjustmentPositive,
                                   bool boolStartInclusive, bool boolEndInclusive) const {
  if (!boolToCheckInclusive) {
    dtToCheck = dtToCheck.PlusSeconds(boolAdjustmentPositive ? 1 : -1);
    if (!boolOtherBoundInclusive && dtToCheck == dtOtherBound) return false;
  }
  return Includes(dtToCheck, boolStartInclusive, boolEndInclusive);
}

bool TimeRange::Overlaps(const TimeRange& other, bool boolThisStartInclusive, bool boolThisEndInclusive,
                         bool boolOtherStartInclusive, bool boolOtherEndInclusive) const {
  if (!m_HasStart && !m_HasEnd) return true;
  if (!other.m_HasStart && !other.m_HasEnd) return true;
  if (!m_HasStart && !other.m_HasStart) return true;
  if (!m_HasEnd && !other.m_HasEnd) return true;
  if (!m_HasStart) {
    return other.m_StartTime < m_EndTime ||
           (other.m_StartTime == m_EndTime && boolThisEndInclusive && boolOtherStartInclusive);
  }
  if (other.m_HasStart && m_HasEnd) {
    // Kept on purpose: here the other's start counts whatever its flag says.
    if (!other.m_HasEnd) {
      return other.m_StartTime < m_EndTime || (other.m_StartTime == m_EndTime && boolThisEndInclusive);
    }
    return OverlapsBounded(other, boolThisStartInclusive, boolThisEndInclusive, boolOtherStartInclusive,
                           boolOtherEndInclusive);
  }
  return m_StartTime < other.m_EndTime ||
         (m_StartTime == other.m_EndTime && boolOtherEndInclusive && boolThisStartInclusive);
}

// Both ranges have both bounds: they overlap when a bound of one lies in the other.
bool TimeRange::OverlapsBounded(const TimeRange& other, bool boolThisStartInclusive,
                                bool boolThisEndInclusive, bool boolOtherStartInclusive,
                                bool boolOtherEndInclusive) const {
  return other.IncludesAdjustable(m_StartTime, m_EndTime, boolThisStartInclusive, boolThisEndInclusive, true,
                                  boolOtherStartInclusive, boolOtherEndInclusive) ||
         other.IncludesAdjustable(m_EndTime, m_StartTime, boolThisEndInclusive, boolThisStartInclusive, false,
                                  boolOtherStartInclusive, boolOtherEndInclusive) ||
         IncludesAdjustable(other.m_StartTime, other.m_EndTime, boolOtherStartInclusive,
                            boolOtherEndInclusive, true, boolThisStartInclusive, boolThisEndInclusive) ||
         IncludesAdjustable(other.m_EndTime, other.m_StartTime, boolOtherEndInclusive,
                            boolOtherStartInclusive, false, boolThisStartInclusive, boolThisEndInclusive);
}

bool TimeRange::StartsBeforeOtherEnds(const TimeRange* other) const {
  if (!other || !m_HasStart || !other->m_HasEnd) return true;
  return m_StartTime < other->m_EndTime;
}

bool TimeRange::Equals(const TimeRange* other) const {
  if (!other || m_HasStart != other->m_HasStart || m_HasEnd != other->m_HasEnd) return false;
  return (!m_HasStart || m_StartTime == other->m_StartTime) && (!m_HasEnd || m_EndTime == other->m_EndTime);
}

std::string TimeRange::Serialize() const {
  FieldArray fields;
  fields.Append(BoolToText(m_HasStart));
  fields.Append(m_HasStart ? DateToText(m_StartTime) : "");
  fields.Append(BoolToText(m_HasEnd));
  fields.Append(m_HasEnd ? DateToText(m_EndTime) : "");
  return ListToText(fields);
}

void TimeRange::Deserialize(std::string_view szSerialized) {
  constexpr int32_t fieldCount = 4;
  const FieldViews fields = SplitList(szSerialized);
  if (fields.Length() != fieldCount) {
    throw Error(TimeError, "",
                "Unexpected number of fields in serialized time range: " + FormatNumber(fields.Length()));
  }
  if (BoolFromText(fields.Element(1))) {
    StartTime(DateFromText(fields.Element(2)));
  } else {
    ClearStart();
  }
  if (BoolFromText(fields.Element(3))) {
    EndTime(DateFromText(fields.Element(4)));
  } else {
    ClearEnd();
  }
}

void TimeRange::CopyFrom(const TimeRange* other) {
  Deserialize((other ? *other : TimeRange()).Serialize());
}

}  // namespace vex
