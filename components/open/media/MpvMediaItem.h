#pragma once

#include <string>
#include <utility>

#include "player/devices/MediaPlayer.h"

namespace vex {

/// A media file made known to the library's player: its path, and its type once it is open.
class MpvMediaItem final : public MediaItem {
 public:
  explicit MpvMediaItem(std::string szPath) : m_Path(std::move(szPath)) {}

  [[nodiscard]] std::string GetItemInfo(const std::string& szName) override {
    return szName == "MediaType" ? m_MediaType : "";
  }
  [[nodiscard]] const std::string& Path() const { return m_Path; }
  void MediaType(const std::string& szMediaType) { m_MediaType = szMediaType; }

 private:
  std::string m_Path;
  std::string m_MediaType;
};

}  // namespace vex
