#pragma once

#include "host/PlayerFinder.h"
#include "host/virtual/VirtualWindows.h"

namespace vex {

/// Finds the player of a virtual machine: the program under test itself.
class VirtualPlayerFinder final : public vex::PlayerFinder {
 public:
  explicit VirtualPlayerFinder(const VirtualWindows& windows) : m_Windows(windows) {}

  [[nodiscard]] WindowHandle FindPlayer() override { return m_Windows.MainWindow(); }
  [[nodiscard]] std::string StatusFile() override { return "Z:\\run\\vexmonitor\\status.json"; }

 private:
  const VirtualWindows& m_Windows;
};

}  // namespace vex
