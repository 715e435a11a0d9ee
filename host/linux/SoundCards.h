#pragma once

#include <string>

namespace vex {

/// The sound cards of this machine that can play: one that this account may use and one that it may not,
/// by the words of the kernel; empty for none.
struct SoundCards {
  std::string Usable;
  std::string Locked;
};

/// The kernel tells its cards in one folder and lists them in another; tests have folders of their own.
[[nodiscard]] SoundCards FindSoundCards(const std::string& szDevices = "/dev/snd",
                                        const std::string& szNames = "/proc/asound");

}  // namespace vex
