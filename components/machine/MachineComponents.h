#pragma once

#include <functional>
#include <string>

#include "player/devices/ProbedMedia.h"

namespace vex {

class Clock;
class EventLoop;
class Registry;
struct Devices;

/// The components that only some machines have, as the linker chose the machine; a null maker is a component
/// that does not exist here. The component table looks here, so that it need not know what machine it is on.
struct MachineComponents {
  /// What stands for the settings "Lights" and "Media" where they are silent.
  const char* DefaultLights;
  const char* DefaultMedia;
  /// Fills in the suite's lighting components, or the machine's own media player and its window. Raises Error
  /// where they are not installed.
  void (*MakeSuiteLights)(Registry&, Devices&);
  void (*MakeMediaControl)(const Clock&, EventLoop&, Devices&);
  /// Whether the suite's lighting components are installed under the names that the settings give them. Null
  /// where there is no question.
  bool (*SuiteIsInstalled)(Registry&);
  /// Looks into media files, full paths of the system, by the machine's own media player; it waits for the
  /// answer, which it hears by the loop. The clock and the loop outlive what is made.
  std::function<ProbedMedia(const std::string&)> (*NewControlProbe)(const Clock&, EventLoop&);
};

[[nodiscard]] const MachineComponents& ComponentsOfThisMachine();

}  // namespace vex
