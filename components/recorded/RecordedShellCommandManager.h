#pragma once

#include <memory>

#include "components/recorded/Recorder.h"
#include "player/devices/ShellCommandManager.h"

namespace vex {

/// The shell command manager of the engine, with each command line that it gives written down.
class RecordedShellCommandManager final : public ShellCommandManager {
 public:
  RecordedShellCommandManager(std::shared_ptr<ShellCommandManager> manager,
                              std::shared_ptr<Recorder> recorder);

  [[nodiscard]] std::string CommandLineFor(const std::any& command) override;
  [[nodiscard]] int32_t WindowStyleFor(const std::any& command) override;

 private:
  std::shared_ptr<ShellCommandManager> m_Manager;
  std::shared_ptr<Recorder> m_Recorder;
};

}  // namespace vex
