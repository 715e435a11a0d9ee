#include "tools/authoring/DamagePlace.h"

#include <algorithm>
#include <array>

#include "schedule/Schedule.h"
#include "schedule/ScheduleFunctions.h"
#include "schedule/ShowEventFunctions.h"
#include "schedule/YearSchedule.h"
#include "show/InteractiveGroupFunctions.h"
#include "show/PlaylistFunctions.h"
#include "show/TriggerFunctions.h"
#include "show/lists/Serialize.h"
#include "tools/authoring/Moments.h"
#include "tools/authoring/Obstacles.h"

namespace vex {

namespace {

/// The fields of a show that are looked at here, counted from 1.
constexpr int32_t GroupsField = 7;
constexpr int32_t StartupTypeField = 8;
constexpr int32_t StartupTriggerField = 9;

template <class Statement>
bool Fails(Statement statement) {
  try {
    static_cast<void>(statement());
    return false;
  } catch (const Error&) {
    return true;
  }
}

std::string Quoted(std::string_view szPart) {
  constexpr size_t most = 60;
  return "\"" + std::string(szPart.substr(0, most)) + (szPart.size() > most ? "...\"" : "\"");
}

/// The text's own parentheses, where it cannot be split.
std::string ListDamage(std::string_view szText) {
  const auto opened = std::count(szText.begin(), szText.end(), '(');
  const auto closed = std::count(szText.begin(), szText.end(), ')');
  return "it has " + std::to_string(opened) + " \"(\" and " + std::to_string(closed) + " \")\"" +
         (opened == closed ? ", and one of them is misplaced" : "");
}

bool NoElements(const FieldViews& fields) {
  return fields.Length() == 1 && fields.Element(1).empty();
}

std::string WeekDamage(std::string_view szText) {
  if (Fails([&] { return SplitList(szText); })) return ListDamage(szText);
  const FieldViews fields = SplitList(szText);
  if (NoElements(fields)) return "";
  Schedule before;
  int32_t lNumber = 0;
  for (const std::string_view szField : fields) {
    const std::string szPlace = "event " + std::to_string(++lNumber) + ", ";
    std::shared_ptr<ShowEvent> event;
    if (Fails([&] { return event = ShowEventFromText(szField); }))
      return szPlace + Quoted(szField) + ", cannot be read";
    const auto add = [&] {
      before.AddShowEvent(event);
      return true;
    };
    if (Fails(add)) {
      const std::string szObstacles = WeekObstacles(before, event->StartTime(), event->EndTime());
      return (szPlace + ShowToWords(*event)).append(szObstacles.empty() ? "" : "; ").append(szObstacles);
    }
  }
  return "";
}

std::string YearDamage(std::string_view szText) {
  if (Fails([&] { return SplitList(szText); })) return ListDamage(szText);
  const FieldViews dates = SplitList(szText);
  if (NoElements(dates)) return "";
  YearSchedule before;
  int32_t lNumber = 0;
  for (const std::string_view szDate : dates) {
    const std::string szPlace = "date " + std::to_string(++lNumber) + ", ";
    if (Fails([&] { return SplitList(szDate).Element(2); }))
      return szPlace + Quoted(szDate) + ", is no date with its shows";
    const FieldViews pair = SplitList(szDate);
    const std::string szKey = UnescapeText(pair.Element(1));
    DateTime date;
    if (Fails([&] { return date = YearSchedule::DateStringToDate(szKey); }))
      return szPlace + Quoted(szKey) + ", is not on the calendar; write it as 2026-12-24";
    if (before.DateSchedule(date)) return szPlace + szKey + ", stands there twice";
    const std::string szShows = WeekDamage(pair.Element(2));
    if (!szShows.empty()) return (szPlace + szKey).append(": ").append(szShows);
    before.AddSchedule(date, std::make_shared<Schedule>());
  }
  return "";
}

std::string GroupsDamage(std::string_view szGroups) {
  int32_t lNumber = 0;
  for (const std::string_view szGroup : SplitList(szGroups)) {
    ++lNumber;
    std::shared_ptr<InteractiveGroup> group;
    if (Fails([&] { return group = InteractiveGroupFromText(szGroup); }) || group->Count() > 0) continue;
    return "interactive group " + std::to_string(lNumber) + ", " + Quoted(group->Name()) + ", has no inputs";
  }
  return "";
}

std::string ShowDamage(std::string_view szText) {
  constexpr std::array<const char*, 6> playlists = {"startup", "shutdown", "main",
                                                    "musical", "",         "background"};
  if (Fails([&] { return SplitList(szText); })) return ListDamage(szText);
  const FieldViews fields = SplitList(szText);
  if (fields.Length() == 0) return "there is no list in it; a show file begins with \"(\"";
  for (size_t index = 0; index < playlists.size(); ++index) {
    const auto lField = static_cast<int32_t>(index) + 1;
    const bool boolPlaylist = *playlists[index] != '\0';
    if (!boolPlaylist || (lField > fields.UpperBound() && lField > GroupsField - 3)) continue;
    const std::string_view szField = lField <= fields.UpperBound() ? fields.Element(lField) : "";
    if (Fails([&] { return PlaylistFromText(szField); }))
      return "field " + std::to_string(lField) + ", the " + playlists[index] + " playlist, is " +
             (szField.empty() ? "missing" : "damaged: " + Quoted(szField));
  }
  if (fields.UpperBound() < GroupsField) return "";
  const std::string_view szGroups = fields.Element(GroupsField);
  if (Fails([&] { return SplitList(szGroups); })) return "the interactive groups: " + ListDamage(szGroups);
  return GroupsDamage(szGroups);
}

}  // namespace

std::string DamagePlace(FileKind kind, std::string_view szText) {
  try {
    switch (kind) {
      case FileKind::List:
        return ListDamage(szText);
      case FileKind::Week:
        return WeekDamage(szText);
      case FileKind::Year:
        return YearDamage(szText);
      case FileKind::Show:
        return ShowDamage(szText);
    }
  } catch (const Error&) {
    // The file is refused with the reader's own words all the same.
  }
  return "";
}

std::vector<std::string> LeftOut(std::string_view szShowText) {
  std::vector<std::string> lines;
  const FieldViews fields = SplitList(szShowText);
  int32_t lNumber = 0;
  if (fields.UpperBound() >= GroupsField) {
    for (const std::string_view szGroup : SplitList(fields.Element(GroupsField))) {
      ++lNumber;
      if (Fails([&] { return InteractiveGroupFromText(szGroup); }))
        lines.push_back("interactive group " + std::to_string(lNumber) +
                        " cannot be read and is left out: " + Quoted(szGroup));
    }
  }
  if (fields.UpperBound() >= StartupTypeField &&
      Fails([&] { return IntFromText(fields.Element(StartupTypeField)); }))
    lines.push_back("the startup type cannot be read and counts as 0: " +
                    Quoted(fields.Element(StartupTypeField)));
  if (fields.UpperBound() >= StartupTriggerField && !fields.Element(StartupTriggerField).empty() &&
      Fails([&] { return TriggerFromText(fields.Element(StartupTriggerField)); }))
    lines.push_back("the startup trigger cannot be read and is left out: " +
                    Quoted(fields.Element(StartupTriggerField)));
  return lines;
}

}  // namespace vex
