#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "player/devices/Devices.h"

namespace vex {

class Clock;
class Datagrams;
class EventLoop;
class Files;
class Registry;

/// What devices may be made of: the seams of the host, how names become full paths, who this machine is.
/// The references outlive the devices.
struct ComponentNeeds {
  vex::Clock& Time;
  vex::EventLoop& Loop;
  vex::Files& FileSystem;
  vex::Datagrams& Network;
  vex::Registry& Settings;
  /// FullSequencePath(name, is audio).
  std::function<std::string(const std::string&, bool)> FullSequencePath;
  /// Stays the same for this machine; the lighting streams' identity is made from it.
  std::string MachineId;
};

/// Which components are used stands in the product subkey "Components": "Lights" ("open", "suite",
/// "recorded") and "Media" ("mpv", "wmp", "recorded"), compared without case; what stands for a silent
/// setting is the machine's. Recorded devices write to the file named by "Recording". The table never falls
/// back silently: a name that it does not know, or that this build of the program has not, raises Error with
/// the setting and what is possible.
[[nodiscard]] Devices NewDevices(const ComponentNeeds& needs);

/// What the settings choose, by the table's names, without making anything. Raises the same errors for a
/// name.
struct ChosenComponents {
  std::string Lights;
  std::string Media;
};
[[nodiscard]] ChosenComponents ComponentsChosen(Registry& registry);

}  // namespace vex
