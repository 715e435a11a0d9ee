#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "components/recorded/MediaNames.h"
#include "host/Clock.h"

namespace vex {

class Files;

/// What an ideal media player must know of a file before it plays.
struct MediaFacts {
  /// "audio", "video", or empty for what is neither.
  std::string MediaType = "audio";
  /// No value: it lasts until it is stopped.
  std::optional<Elapsed> Length;
  /// Not empty: it cannot be played, and these are the reasons.
  std::vector<std::string> Errors;
};

/// Asked with the full path, each time that the file is played.
using MediaFactsSource = std::function<MediaFacts(const std::string& szPath)>;

/// Files need not exist: each lasts as long as the sequence that names it, and is video if its name says so.
[[nodiscard]] MediaFacts AssumedMediaFacts(const MediaNames& names, const std::string& szPath);
/// The length that the file's own header tells (a wave file's), else what is assumed.
[[nodiscard]] MediaFacts RecordedMediaFacts(Files& files, const MediaNames& names, const std::string& szPath);

/// True for names ending in .avi, .mp4, .wmv or .mpg, in any case.
[[nodiscard]] bool IsVideoName(std::string_view szName);
/// How long a wave file lasts by its header; no value for a file that is none, is cut short before its sound
/// begins, or cannot be read. Sound that the header promises and the file has not is not counted.
[[nodiscard]] std::optional<Elapsed> WaveLength(Files& files, const std::string& szPath);

}  // namespace vex
