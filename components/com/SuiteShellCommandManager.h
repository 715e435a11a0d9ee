#pragma once

#include <memory>

#include "components/com/Component.h"
#include "player/devices/ShellCommandManager.h"

namespace vex {

/// The suite's shell command manager: only it knows what the engine's stored command means.
class SuiteShellCommandManager final : public ShellCommandManager {
 public:
  /// What the manager is called, by the settings.
  [[nodiscard]] static std::shared_ptr<const ComponentNames> ReadNames(Registry& settings);

  /// Raises Error where the manager cannot be created.
  explicit SuiteShellCommandManager(std::shared_ptr<const ComponentNames> names);

  [[nodiscard]] std::string CommandLineFor(const std::any& command) override;
  [[nodiscard]] int32_t WindowStyleFor(const std::any& command) override;

 private:
  Component m_Manager;
};

}  // namespace vex
