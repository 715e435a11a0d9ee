#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "show/Show.h"

namespace vex {

/// The ten fields of a show file, without line end. Raises ErrorSubscript for a group without entries or
/// an entry without sequences, ErrorObjectNotSet for a part that is missing.
[[nodiscard]] std::string ShowToText(const Show& show);

/// Reads a show as leniently as shows have always been read. Raises only the list errors of the whole text
/// and of its list of groups. After that a group that cannot be read is dropped, a trigger that cannot be
/// read stays empty, a startup type that cannot be read stays 0; a playlist that cannot be read makes the
/// result an empty reference. Fields missing at the end, as in older files, get their defaults; a text
/// with no list at all gives an empty reference.
[[nodiscard]] std::shared_ptr<Show> ShowFromText(std::string_view szText);

/// Builds a show from its parts and forces each playlist's kind. Empty entries leave the groups. Raises
/// ErrorObjectNotSet for an empty playlist.
[[nodiscard]] std::shared_ptr<Show> NewShow(std::shared_ptr<Playlist> startup,
                                            std::shared_ptr<Playlist> shutdown,
                                            std::shared_ptr<Playlist> main, std::shared_ptr<Playlist> musical,
                                            std::shared_ptr<Playlist> background,
                                            InteractiveGroupCollection groups, int32_t lStartupType,
                                            std::shared_ptr<Trigger> startupTrigger,
                                            bool boolPreloadSequences);

}  // namespace vex
