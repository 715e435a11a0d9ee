#pragma once

#include <functional>
#include <memory>

#include "player/devices/ChannelIO.h"
#include "player/devices/MediaPlayer.h"
#include "player/devices/SequenceEngine.h"
#include "player/devices/ShellCommandManager.h"

namespace vex {

/// The devices of one run, as the component table made them. Every member is set.
struct Devices {
  std::shared_ptr<ChannelIO> Lights;
  /// Makes the engine object of one sequence; raises Error where it cannot.
  std::function<std::shared_ptr<SequenceEngine>()> NewSequence;
  std::shared_ptr<ShellCommandManager> ShellCommands;
  std::shared_ptr<MediaPlayer> Media;
  /// On which the form of the media player stands.
  std::shared_ptr<MediaWindow> Window;
};

}  // namespace vex
