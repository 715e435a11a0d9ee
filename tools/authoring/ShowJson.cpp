#include "tools/authoring/ShowJson.h"

#include <algorithm>
#include <functional>
#include <nlohmann/json.hpp>
#include <set>
#include <utility>
#include <vector>

#include "basic/Error.h"
#include "host/CodePage.h"
#include "show/PlaylistFunctions.h"
#include "show/ShowFunctions.h"
#include "show/TriggerFunctions.h"
#include "show/TriggeredSequencesFunctions.h"
#include "tools/authoring/CheckFile.h"
#include "tools/authoring/DamagePlace.h"
#include "tools/authoring/JsonObject.h"

namespace vex {

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* Format = "vexshow";
constexpr int32_t Version = 1;

Json NamesToJson(const StringCollection& names) {
  Json list = Json::array();
  for (const std::string_view szName : names) list.push_back(AnsiToUtf8(szName));
  return list;
}

/// Only what belongs to the kind: the rest is what the kind makes of it.
Json PlaylistToJson(const Playlist& playlist) {
  Json json;
  if (playlist.PlaylistType() == MusicalPlaylist) {
    json["musicalType"] = playlist.MusicalType();
    json["delay"] = playlist.Delay();
  } else {
    json["animationType"] = playlist.AnimationType();
  }
  json["cleanUp"] = AnsiToUtf8(playlist.CleanUp());
  json["sequences"] = NamesToJson(playlist.List());
  json["lightsOffAtEnd"] = playlist.LightsOffAtEnd();
  json["shuffleAllowsBackToBack"] = playlist.ShuffleAllowsBackToBack();
  json["shuffleWithReplacement"] = playlist.ShuffleWithReplacement();
  return json;
}

Json TriggerToJson(const Trigger& trigger) {
  return {{"network", trigger.Network()},
          {"unit", trigger.UnitId()},
          {"input", trigger.InputNumber()},
          {"name", AnsiToUtf8(trigger.Name())}};
}

Json GroupToJson(const InteractiveGroup& group) {
  Json inputs = Json::array();
  for (int32_t lIndex = 0; lIndex < group.Count(); ++lIndex) {
    const TriggeredSequences& entry = Required(group.GetTriggeredSequences(lIndex));
    inputs.push_back(
        {{"trigger", TriggerToJson(Required(entry.Trig()))}, {"sequences", NamesToJson(entry.Sequences())}});
  }
  return {{"name", AnsiToUtf8(group.Name())},
          {"description", AnsiToUtf8(group.Description())},
          {"independent", group.Independent().IsTrue()},
          {"interruptible", group.Interruptible().IsTrue()},
          {"musicalAllowed", group.MusicalAllowed().IsTrue()},
          {"lightsOffAtEnd", group.LightsOffAtEnd().IsTrue()},
          {"inputs", std::move(inputs)}};
}

std::shared_ptr<Playlist> PlaylistFromJson(JsonObject& show, const char* szName,
                                           const std::shared_ptr<Playlist>& fresh) {
  const nlohmann::ordered_json* const value = show.Value(szName);
  if (!value) return fresh;
  JsonObject json(*value, szName);
  Playlist& playlist = *fresh;
  if (playlist.PlaylistType() == MusicalPlaylist) {
    playlist.MusicalType(json.Number("musicalType", playlist.MusicalType()));
    playlist.Delay(json.Number("delay", playlist.Delay()));
  } else {
    playlist.AnimationType(json.Number("animationType", playlist.AnimationType()));
  }
  playlist.CleanUp(json.Text("cleanUp"));
  for (const std::string& szSequence : json.Texts("sequences")) playlist.List().Add(szSequence);
  playlist.LightsOffAtEnd(json.Flag("lightsOffAtEnd", playlist.LightsOffAtEnd()));
  playlist.ShuffleAllowsBackToBack(json.Flag("shuffleAllowsBackToBack", playlist.ShuffleAllowsBackToBack()));
  playlist.ShuffleWithReplacement(json.Flag("shuffleWithReplacement", playlist.ShuffleWithReplacement()));
  json.NothingElse();
  return fresh;
}

/// Empty where none is named.
std::shared_ptr<Trigger> TriggerFromJson(JsonObject& owner, const char* szName) {
  const nlohmann::ordered_json* const value = owner.Value(szName);
  if (!value) return nullptr;
  JsonObject json(*value, owner.PlaceOf(szName));
  const int32_t lNetwork = json.Number("network", 0);
  const int32_t lUnit = json.Number("unit", 0);
  const int32_t lInput = json.Number("input", 0);
  auto trigger = NewTrigger(lNetwork, lUnit, lInput, json.Text("name"));
  json.NothingElse();
  return trigger;
}

std::shared_ptr<TriggeredSequences> InputFromJson(JsonObject& json) {
  auto trigger = TriggerFromJson(json, "trigger");
  if (!trigger) RefuseJson(json.PlaceOf("trigger"), "is missing");
  const std::vector<std::string> names = json.Texts("sequences");
  if (names.empty()) RefuseJson(json.PlaceOf("sequences"), "an input needs a sequence at least");
  json.NothingElse();
  return NewTriggeredSequences(std::move(trigger), names);
}

std::shared_ptr<InteractiveGroup> GroupFromJson(JsonObject& json) {
  auto group = std::make_shared<InteractiveGroup>();
  group->Name(json.Text("name"));
  group->Description(json.Text("description"));
  group->Independent(json.Flag("independent", false));
  group->Interruptible(json.Flag("interruptible", false));
  group->MusicalAllowed(json.Flag("musicalAllowed", true));
  group->LightsOffAtEnd(json.Flag("lightsOffAtEnd", true));
  for (JsonObject& input : json.Objects("inputs")) group->AddTriggeredSequences(InputFromJson(input));
  if (group->Count() == 0) RefuseJson(json.PlaceOf("inputs"), "a group needs an input at least");
  json.NothingElse();
  return group;
}

/// "line 3, column 14" of the byte at which a text goes wrong, counted from 1.
std::string LineAndColumn(std::string_view szText, size_t byte) {
  const std::string_view before = szText.substr(0, byte == 0 ? 0 : byte - 1);
  const size_t lastLine = before.rfind('\n');
  const size_t column = before.size() - (lastLine == std::string_view::npos ? 0 : lastLine + 1) + 1;
  return "line " + std::to_string(std::count(before.begin(), before.end(), '\n') + 1) + ", column " +
         std::to_string(column);
}

/// Refuses a name that an object has twice: the parser would keep the last and lose the others.
class NamesOnce {
 public:
  bool operator()(int, nlohmann::ordered_json::parse_event_t event, const nlohmann::ordered_json& parsed) {
    using Event = nlohmann::ordered_json::parse_event_t;
    if (event == Event::object_start) m_Names.emplace_back();
    if (event == Event::object_end) m_Names.pop_back();
    if (event == Event::key && !m_Names.back().insert(parsed.get<std::string>()).second)
      RefuseJson(parsed.get<std::string>(), "stands twice in one object");
    return true;
  }

 private:
  std::vector<std::set<std::string>> m_Names;
};

nlohmann::ordered_json Parsed(std::string_view szJson) {
  NamesOnce namesOnce;
  try {
    return nlohmann::ordered_json::parse(szJson, std::ref(namesOnce));
  } catch (const nlohmann::ordered_json::parse_error& error) {
    RefuseJson(LineAndColumn(szJson, error.byte), "the text is no JSON from here on");
  } catch (const nlohmann::ordered_json::out_of_range&) {
    RefuseJson("the show", "holds a number beyond all bounds, like 1e999");
  }
}

}  // namespace

std::string ShowToJson(const Show& show, bool boolLines) {
  Json groups = Json::array();
  for (const auto& group : show.InteractiveGroups()) groups.push_back(GroupToJson(Required(group)));
  const auto& trigger = show.StartupTrigger();
  const Json json = {{"format", Format},
                     {"version", Version},
                     {"startup", PlaylistToJson(Required(show.Startup()))},
                     {"shutdown", PlaylistToJson(Required(show.Shutdown()))},
                     {"main", PlaylistToJson(Required(show.Main()))},
                     {"musical", PlaylistToJson(Required(show.Musical()))},
                     {"background", PlaylistToJson(Required(show.Background()))},
                     {"interactiveGroups", std::move(groups)},
                     {"startupType", show.StartupType()},
                     {"startupTrigger", trigger ? TriggerToJson(*trigger) : Json()},
                     {"preloadSequences", show.PreloadSequences()}};
  constexpr int indent = 2;
  return json.dump(boolLines ? indent : -1);
}

std::shared_ptr<Show> ShowFromJson(std::string_view szJson) {
  const nlohmann::ordered_json parsed = Parsed(szJson);
  JsonObject json(parsed, "");
  if (json.Text("format") != Format) RefuseJson("format", "must be \"vexshow\"");
  if (json.Number("version", Version) != Version) RefuseJson("version", "must be 1");
  auto startup = PlaylistFromJson(json, "startup", NewMusicalPlaylist(1, 0));
  auto shutdown = PlaylistFromJson(json, "shutdown", NewMusicalPlaylist(1, 0));
  auto main = PlaylistFromJson(json, "main", NewAnimationPlaylist(1));
  auto musical = PlaylistFromJson(json, "musical", NewMusicalPlaylist(1, 0));
  auto background = PlaylistFromJson(json, "background", NewAnimationPlaylist(2));
  InteractiveGroupCollection groups;
  for (JsonObject& group : json.Objects("interactiveGroups")) groups.Add(GroupFromJson(group));
  const int32_t lStartupType = json.Number("startupType", 0);
  auto trigger = TriggerFromJson(json, "startupTrigger");
  const bool boolPreload = json.Flag("preloadSequences", false);
  json.NothingElse();
  return NewShow(std::move(startup), std::move(shutdown), std::move(main), std::move(musical),
                 std::move(background), std::move(groups), lStartupType, std::move(trigger), boolPreload);
}

FileOutcome ExportShow(Files& files, const std::string& szPath, bool boolLines) {
  FileOutcome outcome;
  std::string szText;
  bool boolRead = false;
  try {
    szText = ReadText(files, szPath);
    boolRead = true;
    const auto show = RequiredShow(szText);
    static_cast<void>(ShowToText(*show));
    outcome.Text = ShowToJson(*show, boolLines);
  } catch (const Error& error) {
    outcome.Failure = error;
    if (boolRead) outcome.Words = DamagePlace(FileKind::Show, szText);
  }
  return outcome;
}

ShowImport ImportShow(Files& files, const std::string& szJsonPath, const std::string& szPath) {
  ShowImport import;
  try {
    import.Text = ShowToText(*ShowFromJson(ReadText(files, szJsonPath)));
    import.JsonRead = true;
  } catch (const Error& error) {
    import.Failure = error;
    return import;
  }
  std::string szReason;
  if (!files.Write(szPath, import.Text + "\r\n", &szReason))
    static_cast<FileOutcome&>(import) = NotWritten(szReason);
  return import;
}

}  // namespace vex
