#include "components/com/SuiteDevices.h"

#include <algorithm>

#include "components/com/ComText.h"
#include "components/com/MediaControl.h"
#include "components/com/SuiteChannelIO.h"
#include "components/com/SuiteSequenceEngine.h"
#include "components/com/SuiteShellCommandManager.h"
#include "player/devices/Devices.h"

namespace vex {

void MakeSuiteLights(Registry& settings, Devices& devices) {
  const auto engineNames = SuiteSequenceEngine::ReadNames(settings);
  devices.Lights = std::make_shared<SuiteChannelIO>(SuiteChannelIO::ReadNames(settings));
  devices.ShellCommands =
      std::make_shared<SuiteShellCommandManager>(SuiteShellCommandManager::ReadNames(settings));
  devices.NewSequence = [engineNames] { return std::make_shared<SuiteSequenceEngine>(engineNames); };
}

bool SuiteIsInstalled(Registry& settings) {
  const auto names = {SuiteChannelIO::ReadNames(settings), SuiteSequenceEngine::ReadNames(settings),
                      SuiteShellCommandManager::ReadNames(settings)};
  return std::ranges::all_of(names, [](const auto& component) {
    CLSID id{};
    return SUCCEEDED(CLSIDFromProgID(WideOf(component->ProgramId).c_str(), &id));
  });
}

void MakeMediaControl(const Clock& clock, EventLoop& loop, Devices& devices) {
  const auto control = std::make_shared<MediaControl>(clock, loop);
  devices.Media = control;
  devices.Window = control->Window();
}

}  // namespace vex
