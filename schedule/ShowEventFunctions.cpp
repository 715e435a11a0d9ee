#include "schedule/ShowEventFunctions.h"

#include <utility>

#include "basic/Number.h"
#include "show/lists/Serialize.h"
#include "time/WeekTimeFunctions.h"

namespace vex {

std::shared_ptr<ShowEvent> NewNullShowEvent(WeekTime::Reference startTime, int32_t lDuration) {
  auto event = std::make_shared<ShowEvent>();
  event->EventType(NullEvent);
  event->StartTime(std::move(startTime));
  event->SetDuration(lDuration);
  return event;
}

std::shared_ptr<ShowEvent> NewShowEvent(const std::string& szFilename, WeekTime::Reference startTime,
                                        WeekTime::Reference endTime) {
  auto event = std::make_shared<ShowEvent>();
  event->EventType(ShowFileEvent);
  event->Filename(szFilename);
  event->StartTime(std::move(startTime));
  event->EndTime(std::move(endTime));
  return event;
}

std::string ShowEventToText(const ShowEvent& event) {
  FieldArray file;
  file.Append("");
  file.Append("0");
  file.Append(EscapeText(event.Filename()));
  FieldArray fields;
  fields.Append(WeekTimeToText(event.EndTime()));
  fields.Append(FormatNumber(event.EventType()));
  fields.Append(ListToText(file));
  fields.Append(WeekTimeToText(event.StartTime()));
  return ListToText(fields);
}

std::shared_ptr<ShowEvent> ShowEventFromText(std::string_view szText) {
  const FieldViews fields = SplitList(szText);
  auto event = std::make_shared<ShowEvent>();
  event->EndTime(WeekTimeFromText(fields.Element(1)));
  event->EventType(RoundToLong(LeadingNumber(UnescapeText(fields.Element(2)))));
  const FieldViews file = SplitList(fields.Element(3));
  event->Filename(UnescapeText(file.Element(3)));
  event->StartTime(WeekTimeFromText(fields.Element(4)));
  return event;
}

}  // namespace vex
