#include "components/open/OpenShellCommandManager.h"

#include "components/open/OpenShellCommand.h"

namespace vex {

std::string OpenShellCommandManager::CommandLineFor(const std::any& command) {
  const auto* shellCommand = std::any_cast<OpenShellCommand>(&command);
  return shellCommand ? shellCommand->CommandLine : "";
}

int32_t OpenShellCommandManager::WindowStyleFor(const std::any& command) {
  const auto* shellCommand = std::any_cast<OpenShellCommand>(&command);
  return shellCommand ? shellCommand->WindowStyle : OpenShellCommand{}.WindowStyle;
}

}  // namespace vex
