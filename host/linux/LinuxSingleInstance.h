#pragma once

#include <functional>

#include "host/SingleInstance.h"
#include "host/linux/Descriptor.h"
#include "host/linux/RuntimeFolder.h"

namespace vex {

/// The player's place is a lock on a file of the runtime folder, which the kernel takes back when the
/// process ends, however it ends. The file itself stays: removing it would let two players hold two files.
class LinuxSingleInstance : public SingleInstance {
 public:
  /// onFirst is called once, when this program becomes the running player.
  LinuxSingleInstance(RuntimeFolder folder, std::function<void()> onFirst)
      : m_Folder(std::move(folder)), m_OnFirst(std::move(onFirst)) {}

  /// Raises Error with the system's code when the folder or the lock cannot be used.
  [[nodiscard]] bool AlreadyRunning() override;

 private:
  RuntimeFolder m_Folder;
  std::function<void()> m_OnFirst;
  Descriptor m_Lock;
};

/// Whether some process holds the player's lock.
[[nodiscard]] bool PlayerLockHeld(const RuntimeFolder& folder);

}  // namespace vex
