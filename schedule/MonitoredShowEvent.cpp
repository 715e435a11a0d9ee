#include "schedule/MonitoredShowEvent.h"

#include <utility>

#include "basic/Error.h"
#include "basic/Number.h"
#include "show/lists/Serialize.h"
#include "time/TimeRange.h"

namespace vex {

MonitoredShowEvent::MonitoredShowEvent() : m_Range(std::make_shared<TimeRange>()) {}

void MonitoredShowEvent::Range(std::shared_ptr<TimeRange> range) {
  m_Range = range ? std::move(range) : std::make_shared<TimeRange>();
}

std::string MonitoredShowEvent::Serialize() const {
  FieldArray fields;
  fields.Append(EscapeText(m_Filename));
  fields.Append(m_Range->Serialize());
  fields.Append(IntToText(m_ScheduleType));
  fields.Append(BoolToText(m_ShuttingDown));
  return ListToText(fields);
}

void MonitoredShowEvent::Deserialize(std::string_view szSerialized) {
  constexpr int32_t number = 37;
  constexpr int32_t fieldCount = 4;
  const FieldViews fields = SplitList(szSerialized);
  if (fields.Length() != fieldCount) {
    throw Error(
        number, "",
        "Unexpected number of fields in serialized monitored show event: " + FormatNumber(fields.Length()));
  }
  std::string szFilename = UnescapeText(fields.Element(1));
  auto range = std::make_shared<TimeRange>();
  range->Deserialize(fields.Element(2));
  const int32_t lScheduleType = IntFromText(fields.Element(3));
  const bool boolShuttingDown = BoolFromText(fields.Element(4));
  Filename(std::move(szFilename));
  Range(std::move(range));
  ScheduleType(lScheduleType);
  ShuttingDown(boolShuttingDown);
}

// Without the way through text, which would give the same: every name survives being escaped and every
// date-time being written.
void MonitoredShowEvent::CopyFrom(const MonitoredShowEvent* other) {
  const MonitoredShowEvent none;
  const MonitoredShowEvent& source = other ? *other : none;
  auto range = std::make_shared<TimeRange>();
  range->CopyFrom(source.m_Range.get());
  m_Filename = source.m_Filename;
  m_Range = std::move(range);
  m_ScheduleType = source.m_ScheduleType;
  m_ShuttingDown = source.m_ShuttingDown;
}

bool MonitoredShowEvent::MemberwiseEquals(const MonitoredShowEvent* other) const {
  const MonitoredShowEvent none;
  const MonitoredShowEvent& compared = other ? *other : none;
  return m_Filename == compared.m_Filename && m_Range->Equals(compared.m_Range.get()) &&
         m_ScheduleType == compared.m_ScheduleType && m_ShuttingDown == compared.m_ShuttingDown;
}

}  // namespace vex
