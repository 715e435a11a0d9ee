#pragma once

#include <cstdint>

#include "host/Registry.h"

namespace vex {

/// Whether and where the media window shows pictures. The player asks when it is created.
struct VideoPreferences {
  bool DisplayVideos = true;
  bool DisplayVisualizations = false;
  bool FullScreenVideo = false;
  int32_t MonitorX = 0;
  int32_t MonitorY = 0;
  friend bool operator==(const VideoPreferences&, const VideoPreferences&) = default;
};

/// Read afresh from the registry at every call; missing values are as above.
[[nodiscard]] VideoPreferences GetVideoPreferences(Registry& registry);

}  // namespace vex
