#include "schedule/ScheduleFunctions.h"

#include "schedule/ShowEventFunctions.h"
#include "show/lists/Serialize.h"

namespace vex {

std::string ScheduleToText(const Schedule& schedule) {
  FieldArray fields;
  for (const auto* node = schedule.FirstNode(); node; node = node->NextNode()) {
    if (node->Obj()->EventType() == ShowFileEvent) fields.Append(ShowEventToText(*node->Obj()));
  }
  return ListToText(fields);
}

std::shared_ptr<Schedule> ScheduleFromText(std::string_view szText) {
  auto schedule = std::make_shared<Schedule>();
  const FieldViews fields = SplitList(szText);
  const bool boolNoShows = fields.Length() == 1 && fields.Element(fields.LowerBound()).empty();
  if (boolNoShows) return schedule;
  for (const std::string_view szField : fields) schedule->AddShowEvent(ShowEventFromText(szField));
  return schedule;
}

std::shared_ptr<Schedule> LoadSchedule(Files& files, const std::string& szFilename) {
  std::string szText;
  if (!files.Read(szFilename, szText)) return std::make_shared<Schedule>();
  auto schedule = ScheduleFromText(szText);
  schedule->Modified(false);
  return schedule;
}

}  // namespace vex
