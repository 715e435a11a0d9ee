#include "player/PlayType.h"

#include <array>

namespace vex {

std::string PlayTypeWord(int32_t lPlayType) {
  static constexpr std::array<const char*, 8> words = {"Null",      "Background", "Interactive", "Startup",
                                                       "Animation", "Musical",    "Cleanup",     "Shutdown"};
  if (lPlayType < 0 || lPlayType >= static_cast<int32_t>(words.size())) {
    return "(" + std::to_string(lPlayType) + ")";
  }
  return words[static_cast<size_t>(lPlayType)];
}

}  // namespace vex
