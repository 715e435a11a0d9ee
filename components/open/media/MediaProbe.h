#pragma once

#include <memory>
#include <optional>
#include <string>

#include "host/Clock.h"

namespace vex {

class Files;

/// What the media library knows of a file without playing it.
struct ProbedMedia {
  /// "audio", "video", or empty for what is neither. A picture of the cover is no video.
  std::string MediaType;
  std::optional<Elapsed> Length;
  /// Not empty: why the file cannot be played.
  std::string Failure;
};

/// Looks into media files, one after the other, and waits for the answer: for programs that prepare a show,
/// not for the one that plays it. The library is loaded with the first file.
class MediaProbe {
 public:
  /// The files outlive the probe.
  explicit MediaProbe(Files& files);
  ~MediaProbe();
  MediaProbe(const MediaProbe&) = delete;
  MediaProbe& operator=(const MediaProbe&) = delete;

  [[nodiscard]] ProbedMedia Look(const std::string& szPath);

 private:
  class Core;
  Files& m_Files;
  std::unique_ptr<Core> m_Core;
};

}  // namespace vex
