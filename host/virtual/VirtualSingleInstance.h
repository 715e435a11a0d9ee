#pragma once

#include <memory>

#include "host/SingleInstance.h"

namespace vex {

/// The place on a virtual machine that one running player takes; empty at first.
using VirtualPlayerLock = std::shared_ptr<const void*>;

/// One program's view of whether a player runs. Several on the same lock are several programs.
class VirtualSingleInstance final : public vex::SingleInstance {
 public:
  explicit VirtualSingleInstance(VirtualPlayerLock lock = std::make_shared<const void*>(nullptr));
  ~VirtualSingleInstance() override;
  VirtualSingleInstance(const VirtualSingleInstance&) = delete;
  VirtualSingleInstance& operator=(const VirtualSingleInstance&) = delete;

  [[nodiscard]] bool AlreadyRunning() override;
  [[nodiscard]] const VirtualPlayerLock& Lock() const { return m_Lock; }

 private:
  VirtualPlayerLock m_Lock;
};

}  // namespace vex
