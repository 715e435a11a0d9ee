#pragma once

#include <memory>
#include <string>

#include "player/devices/ProbedMedia.h"

namespace vex {

class Files;

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
