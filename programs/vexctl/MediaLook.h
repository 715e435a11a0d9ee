#pragma once

#include <functional>
#include <memory>
#include <string>

#include "player/devices/ProbedMedia.h"
#include "programs/vexctl/Command.h"

namespace vex {

/// Looks into media files with what would play them: the media library, or the machine's own media player
/// where there is one and the setting "Media" (subkey Components) does not name another.
class MediaLook {
 public:
  /// As the player's settings have it.
  explicit MediaLook(CommandContext& context);
  MediaLook(CommandContext& context, const std::string& szMediaSetting);

  [[nodiscard]] ProbedMedia Look(const std::string& szPath) const { return m_Look(szPath); }

 private:
  std::function<ProbedMedia(const std::string&)> m_Look;
};

}  // namespace vex
