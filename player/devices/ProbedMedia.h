#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace vex {

/// What a media library or a media player knows of a file before a show plays it.
struct ProbedMedia {
  /// "audio", "video", or empty for what is neither, or where the player cannot tell. A picture of the cover
  /// is no video.
  std::string MediaType;
  std::optional<std::chrono::nanoseconds> Length;
  /// Not empty: why the file cannot be played.
  std::string Failure;
  /// Then it is not the file's fault: there is nothing here to look into it with.
  bool Blind = false;
};

}  // namespace vex
