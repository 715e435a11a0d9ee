#include "components/ComponentTable.h"

#include <memory>
#include <vector>

#include "basic/Error.h"
#include "components/machine/MachineComponents.h"
#include "components/open/OpenChannelIO.h"
#include "components/open/OpenSequenceEngine.h"
#include "components/open/OpenShellCommandManager.h"
#include "components/open/OutputSettings.h"
#include "components/open/media/MpvMediaPlayer.h"
#include "components/recorded/MediaFacts.h"
#include "components/recorded/RecordedChannelIO.h"
#include "components/recorded/RecordedMediaPlayer.h"
#include "components/recorded/RecordedMediaWindow.h"
#include "components/recorded/RecordedSequenceEngine.h"
#include "components/recorded/RecordedShellCommandManager.h"
#include "components/recorded/Recorder.h"
#include "host/CodePage.h"
#include "settings/LibRegistryVex.h"

namespace vex {

namespace {

constexpr const char* Subkey = "Components";

/// What the parts of one set of devices share while they are put together.
struct Making {
  const ComponentNeeds& Needs;
  Devices Made;
  std::shared_ptr<Recorder> Lines;
  std::shared_ptr<MediaNames> Names = std::make_shared<MediaNames>();
  bool MediaLearnFromSequences = false;
  std::function<std::shared_ptr<SequenceEngine>()> Engines = nullptr;  // without a recorder around them

  const std::shared_ptr<Recorder>& Recording() {
    if (!Lines) {
      const std::string szFile = GetProductString(Needs.Settings, "Recording", Subkey, "");
      if (szFile.empty()) {
        throw Error(ErrorInvalidCall, "ComponentTable",
                    "Recorded devices need a file to write to: set \"Recording\" in the subkey Components.");
      }
      Lines = std::make_shared<Recorder>(Needs.Time, FileSink(Needs.FileSystem, szFile));
    }
    return Lines;
  }
};

std::function<std::shared_ptr<SequenceEngine>()> OpenEngines(const ComponentNeeds& needs) {
  return [&time = needs.Time, &loop = needs.Loop, &files = needs.FileSystem, find = needs.FullSequencePath] {
    return std::make_shared<OpenSequenceEngine>(time, loop, files, find);
  };
}

/// Engines that tell the recorded media player what they know of their media, and the lines where wanted.
std::function<std::shared_ptr<SequenceEngine>()> RecordedEngines(Making& making,
                                                                 std::shared_ptr<Recorder> lines) {
  const SequenceRecording recording{
      std::move(lines), making.Names, nullptr,
      [find = making.Needs.FullSequencePath](const std::string& szName) { return find(szName, true); }};
  return [recording, engines = making.Engines] {
    return std::make_shared<RecordedSequenceEngine>(engines(), recording);
  };
}

void OpenLights(Making& making) {
  const ComponentNeeds& needs = making.Needs;
  making.Made.Lights = std::make_shared<OpenChannelIO>(needs.Time, needs.Loop, needs.Network,
                                                       ReadOutputSettings(needs.Settings), needs.MachineId);
  making.Made.ShellCommands = std::make_shared<OpenShellCommandManager>();
  making.Engines = OpenEngines(needs);
  making.Made.NewSequence = making.Engines;
}

void SuiteLights(Making& making) {
  ComponentsOfThisMachine().MakeSuiteLights(making.Needs.Settings, making.Made);
  making.Engines = making.Made.NewSequence;
}

void RecordedLights(Making& making) {
  making.Made.Lights = std::make_shared<RecordedChannelIO>(making.Recording());
  making.Made.ShellCommands = std::make_shared<RecordedShellCommandManager>(
      std::make_shared<OpenShellCommandManager>(), making.Recording());
  making.Engines = OpenEngines(making.Needs);
  making.Made.NewSequence = RecordedEngines(making, making.Recording());
}

void LibraryMedia(Making& making) {
  const ComponentNeeds& needs = making.Needs;
  const auto media = std::make_shared<MpvMediaPlayer>(needs.Time, needs.Loop, needs.FileSystem,
                                                      ReadMpvSettings(needs.Settings));
  making.Made.Media = media;
  making.Made.Window = media->Window();
}

void ControlMedia(Making& making) {
  ComponentsOfThisMachine().MakeMediaControl(making.Needs.Time, making.Needs.Loop, making.Made);
}

void RecordedMedia(Making& making) {
  const ComponentNeeds& needs = making.Needs;
  making.Made.Media = std::make_shared<RecordedMediaPlayer>(
      needs.Time, needs.Loop, making.Recording(),
      [names = making.Names](const std::string& szPath) { return names->NameOf(szPath); },
      [&files = needs.FileSystem, names = making.Names](const std::string& szPath) {
        return RecordedMediaFacts(files, *names, szPath);
      });
  making.Made.Window = std::make_shared<RecordedMediaWindow>(making.Recording());
  making.MediaLearnFromSequences = true;
}

/// One row for each name that a setting may have; a row without a maker is known, but not in this program.
struct Row {
  const char* Name;
  void (*Make)(Making&);
};

std::vector<Row> LightsRows() {
  const auto suite = ComponentsOfThisMachine().MakeSuiteLights != nullptr ? SuiteLights : nullptr;
  return {{"open", OpenLights}, {"suite", suite}, {"recorded", RecordedLights}};
}

std::vector<Row> MediaRows() {
  const auto control = ComponentsOfThisMachine().MakeMediaControl != nullptr ? ControlMedia : nullptr;
  return {{"mpv", LibraryMedia}, {"wmp", control}, {"recorded", RecordedMedia}};
}

/// What a setting chooses; raises Error where there is nothing of that name here.
const Row& Chosen(Registry& registry, const char* szSetting, const std::string& szDefault,
                  const std::vector<Row>& rows) {
  const std::string szName = GetProductString(registry, szSetting, Subkey, szDefault);
  std::string szPossible;
  for (const Row& row : rows) {
    if (row.Make && FoldCase(szName) == row.Name) return row;
    if (row.Make) szPossible += (szPossible.empty() ? "\"" : ", \"") + std::string(row.Name) + "\"";
  }
  throw Error(ErrorInvalidCall, "ComponentTable",
              "There is no component \"" + szName + "\" for \"" + szSetting +
                  "\" (subkey Components of the settings) in this program; possible are " + szPossible + ".");
}

}  // namespace

ChosenComponents ComponentsChosen(Registry& registry) {
  return {Chosen(registry, "Lights", ComponentsOfThisMachine().DefaultLights, LightsRows()).Name,
          Chosen(registry, "Media", ComponentsOfThisMachine().DefaultMedia, MediaRows()).Name};
}

Devices NewDevices(const ComponentNeeds& needs) {
  Making making{needs, {}, nullptr};
  const auto make = [&](const char* szSetting, const char* szDefault, const std::vector<Row>& rows) {
    Chosen(needs.Settings, szSetting, szDefault, rows).Make(making);
  };
  make("Lights", ComponentsOfThisMachine().DefaultLights, LightsRows());
  // Lines about sequences belong to recorded lights; recorded media alone write only their own.
  const std::shared_ptr<Recorder> lines = making.Lines;
  make("Media", ComponentsOfThisMachine().DefaultMedia, MediaRows());
  if (making.MediaLearnFromSequences) making.Made.NewSequence = RecordedEngines(making, lines);
  return std::move(making.Made);
}

}  // namespace vex
