#include "settings/VideoPreferences.h"

#include "settings/LibRegistryVexShared.h"

namespace vex {

VideoPreferences GetVideoPreferences(Registry& registry) {
  const char* szSubkey = "VideoPreferences";
  VideoPreferences preferences;
  preferences.DisplayVideos = GetSharedBool(registry, "DisplayVideos", szSubkey, true);
  preferences.DisplayVisualizations = GetSharedBool(registry, "DisplayVisualizations", szSubkey, false);
  preferences.FullScreenVideo = GetSharedBool(registry, "FullScreenVideo", szSubkey, false);
  preferences.MonitorX = GetSharedLong(registry, "MonitorX", szSubkey, 0);
  preferences.MonitorY = GetSharedLong(registry, "MonitorY", szSubkey, 0);
  return preferences;
}

}  // namespace vex
