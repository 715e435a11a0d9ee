#include "components/com/SuiteDevices.h"

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

}  // namespace vex
