#pragma once

#include <functional>
#include <string>

#include "host/Clock.h"
#include "host/EventLoop.h"
#include "player/devices/ProbedMedia.h"

namespace vex {

/// Looks into media files by the machine's media player control: it knows how long a file lasts only once it
/// plays it, so each is begun without a sound and stopped again. The control is made with the first file;
/// where there is none, every file is said to be unseen. The clock and the loop outlive what comes back.
[[nodiscard]] std::function<ProbedMedia(const std::string& szPath)> NewControlProbe(const Clock& clock,
                                                                                    EventLoop& loop);

}  // namespace vex
