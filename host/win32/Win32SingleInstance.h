#pragma once

#include <functional>

#include "host/SingleInstance.h"
#include "host/win32/Handle.h"

namespace vex {

/// The running player holds a named mutex of the user's session, which goes with its process.
class Win32SingleInstance : public SingleInstance {
 public:
  /// onFirst runs when this program has become the running player.
  explicit Win32SingleInstance(std::function<void()> onFirst) : m_OnFirst(std::move(onFirst)) {}

  [[nodiscard]] bool AlreadyRunning() override;

 private:
  std::function<void()> m_OnFirst;
  Handle m_Mutex;
};

}  // namespace vex
