#pragma once

#include "host/PlayerFinder.h"
#include "host/linux/LinuxFiles.h"
#include "host/linux/RuntimeFolder.h"

namespace vex {

/// Reads the player's handle where it is published. What a killed player left there does not count: a player
/// runs only while its lock is held.
class LinuxPlayerFinder : public PlayerFinder {
 public:
  LinuxPlayerFinder(RuntimeFolder folder, LinuxFiles& files) : m_Folder(std::move(folder)), m_Files(files) {}

  [[nodiscard]] WindowHandle FindPlayer() override;
  [[nodiscard]] std::string StatusFile() override;

 private:
  RuntimeFolder m_Folder;
  LinuxFiles& m_Files;
};

}  // namespace vex
