#include "components/machine/MachineComponents.h"

namespace vex {

const MachineComponents& ComponentsOfThisMachine() {
  static constexpr MachineComponents components{"open", "mpv", nullptr, nullptr, nullptr, nullptr};
  return components;
}

}  // namespace vex
