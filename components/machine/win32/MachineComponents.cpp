#include "components/machine/MachineComponents.h"

#include "components/com/ControlProbe.h"
#include "components/com/SuiteDevices.h"

namespace vex {

const MachineComponents& ComponentsOfThisMachine() {
  static constexpr MachineComponents components{
      "suite", "wmp", MakeSuiteLights, MakeMediaControl, SuiteIsInstalled, NewControlProbe};
  return components;
}

}  // namespace vex
