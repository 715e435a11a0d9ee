#include "show/ShowFunctions.h"

#include <algorithm>
#include <array>
#include <utility>

#include "basic/Error.h"
#include "show/InteractiveGroupFunctions.h"
#include "show/PlainShow.h"
#include "show/PlaylistFunctions.h"
#include "show/TriggerFunctions.h"
#include "show/lists/Serialize.h"

namespace vex {

namespace {

/// The fields of a show file, counted from 1. Field 5 is reserved: written empty, never read.
enum ShowField : int32_t {
  FieldStartup = 1,
  FieldShutdown = 2,
  FieldMain = 3,
  FieldMusical = 4,
  FieldBackground = 6,
  FieldInteractiveGroups = 7,
  FieldStartupType = 8,
  FieldStartupTrigger = 9,
  FieldPreloadSequences = 10,
  ShowFieldCount = 10
};

/// What older files lack at their end. The playlists of fields 1 to 4 have no default: without one of
/// them there is no show.
constexpr std::array<std::string_view, ShowFieldCount> DefaultFields = {"", "",  "", "", "", "(2,0,1,0,,)",
                                                                        "", "0", "", "F"};

TextArray<std::string_view> SplitShow(std::string_view szText) {
  TextArray<std::string_view> fields;
  for (const std::string_view szField : SplitList(szText)) fields.Append(szField);
  while (fields.Length() < ShowFieldCount) {
    fields.Append(DefaultFields[static_cast<size_t>(fields.Length())]);
  }
  return fields;
}

/// One statement of a reader that reads on whatever happens: a failure leaves what it assigns as it was.
template <class Statement>
void IgnoringErrors(Statement statement) {
  try {
    statement();
  } catch (const Error&) {
    // Older players have read damaged shows this way; the part that failed is simply missing.
  }
}

std::string GroupsToText(const InteractiveGroupCollection& groups) {
  if (groups.Empty()) return "";
  FieldArray fields;
  for (const auto& group : groups) fields.Append(InteractiveGroupToText(Required(group)));
  return ListToText(fields);
}

InteractiveGroupCollection WithoutEmptyEntries(InteractiveGroupCollection groups) {
  if (std::find(groups.begin(), groups.end(), nullptr) == groups.end()) return groups;
  InteractiveGroupCollection kept;
  for (const auto& group : groups) {
    if (group) kept.Add(group);
  }
  return kept;
}

}  // namespace

std::string ShowToText(const Show& show) {
  FieldArray fields;
  fields.Append(PlaylistToText(Required(show.Startup())));
  fields.Append(PlaylistToText(Required(show.Shutdown())));
  fields.Append(PlaylistToText(Required(show.Main())));
  fields.Append(PlaylistToText(Required(show.Musical())));
  fields.Append(EscapeText(""));
  fields.Append(PlaylistToText(Required(show.Background())));
  fields.Append(GroupsToText(show.InteractiveGroups()));
  fields.Append(IntToText(show.StartupType()));
  fields.Append(show.StartupTrigger() ? TriggerToText(*show.StartupTrigger()) : "");
  fields.Append(BoolToText(show.PreloadSequences()));
  return ListToText(fields);
}

std::shared_ptr<Show> ShowFromText(std::string_view szText) {
  if (auto show = PlainShowFromText(szText)) return show;
  const TextArray<std::string_view> fields = SplitShow(szText);
  const FieldViews groupFields = SplitList(fields.Element(FieldInteractiveGroups));

  // The list is sound and so is the list of groups. From here on nothing fails: each statement that goes
  // wrong leaves its result as it was, and the next one runs.
  InteractiveGroupCollection groups;
  for (std::string_view szGroup : groupFields) {
    std::shared_ptr<InteractiveGroup> group;
    IgnoringErrors([&] { group = InteractiveGroupFromText(szGroup); });
    groups.Add(std::move(group));
  }
  std::shared_ptr<Trigger> trigger;
  if (!fields.Element(FieldStartupTrigger).empty()) {
    IgnoringErrors([&] { trigger = TriggerFromText(fields.Element(FieldStartupTrigger)); });
  }
  std::shared_ptr<Playlist> startup, shutdown, main, musical, background;
  IgnoringErrors([&] { startup = PlaylistFromText(fields.Element(FieldStartup)); });
  IgnoringErrors([&] { shutdown = PlaylistFromText(fields.Element(FieldShutdown)); });
  IgnoringErrors([&] { main = PlaylistFromText(fields.Element(FieldMain)); });
  IgnoringErrors([&] { musical = PlaylistFromText(fields.Element(FieldMusical)); });
  IgnoringErrors([&] { background = PlaylistFromText(fields.Element(FieldBackground)); });
  int32_t lStartupType = 0;
  IgnoringErrors([&] { lStartupType = IntFromText(fields.Element(FieldStartupType)); });
  const bool boolPreload = BoolFromText(fields.Element(FieldPreloadSequences));

  std::shared_ptr<Show> show;
  IgnoringErrors([&] {
    show = NewShow(startup, shutdown, main, musical, background, groups, lStartupType, trigger, boolPreload);
  });
  return show;
}

std::shared_ptr<Show> NewShow(std::shared_ptr<Playlist> startup, std::shared_ptr<Playlist> shutdown,
                              std::shared_ptr<Playlist> main, std::shared_ptr<Playlist> musical,
                              std::shared_ptr<Playlist> background, InteractiveGroupCollection groups,
                              int32_t lStartupType, std::shared_ptr<Trigger> startupTrigger,
                              bool boolPreloadSequences) {
  auto show = std::make_shared<Show>();
  show->Startup(std::move(startup));
  show->Shutdown(std::move(shutdown));
  show->Main(std::move(main));
  show->Musical(std::move(musical));
  show->InteractiveGroups(WithoutEmptyEntries(std::move(groups)));
  show->Background(std::move(background));
  show->StartupType(lStartupType);
  show->StartupTrigger(std::move(startupTrigger));
  show->PreloadSequences(boolPreloadSequences);

  // A file cannot make the main playlist musical.
  Required(show->Startup()).PlaylistType(MusicalPlaylist);
  Required(show->Shutdown()).PlaylistType(MusicalPlaylist);
  Required(show->Main()).PlaylistType(AnimationPlaylist);
  Required(show->Background()).PlaylistType(AnimationPlaylist);
  Required(show->Musical()).PlaylistType(MusicalPlaylist);
  return show;
}

}  // namespace vex
