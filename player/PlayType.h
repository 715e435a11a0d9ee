#pragma once

#include <cstdint>
#include <string>

namespace vex {

/// The phase for which a sequence plays; the numbers are shared with status lines and trigger dispatch.
enum PlayType : int32_t {
  PlayNull = 0,
  PlayBackground = 1,
  PlayInteractive = 2,
  PlayStartup = 3,
  PlayAnimation = 4,
  PlayMusical = 5,
  PlayCleanup = 6,
  PlayShutdown = 7,
};

/// The word of status lines: "Null", "Background", ... "Shutdown"; "(n)" for any other number.
[[nodiscard]] std::string PlayTypeWord(int32_t lPlayType);

}  // namespace vex
