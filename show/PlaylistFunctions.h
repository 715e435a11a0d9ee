#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "show/Playlist.h"

namespace vex {

[[nodiscard]] std::shared_ptr<Playlist> NewAnimationPlaylist(int32_t lAnimationType);
[[nodiscard]] std::shared_ptr<Playlist> NewMusicalPlaylist(int32_t lMusicalType, int32_t lDelay);

[[nodiscard]] std::string PlaylistToText(const Playlist& playlist);
/// Raises the list's errors (the list of names included), ErrorSubscript for fewer than six fields, and
/// ErrorTypeMismatch or ErrorOverflow for a number that is none or too large. Older texts: without field 7
/// lights go off at the end, without fields 8 and 9 both shuffle options are set.
[[nodiscard]] std::shared_ptr<Playlist> PlaylistFromText(std::string_view szText);

}  // namespace vex
