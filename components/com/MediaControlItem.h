#pragma once

#include <string>
#include <utility>

#include "components/com/ComPointer.h"
#include "player/devices/MediaPlayer.h"
//
#include <wmp.h>

namespace vex {

/// A media file made known to the media player control. A control that cannot tell what kind of media it is
/// says nothing.
class MediaControlItem final : public MediaItem {
 public:
  explicit MediaControlItem(ComPointer<IWMPMedia> media) : m_Media(std::move(media)) {}

  [[nodiscard]] std::string GetItemInfo(const std::string& szName) override;
  [[nodiscard]] IWMPMedia* Media() const { return m_Media.Get(); }

 private:
  ComApartment m_Apartment;
  ComPointer<IWMPMedia> m_Media;
};

}  // namespace vex
