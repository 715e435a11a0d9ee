#include "components/com/SuiteShellCommandManager.h"

#include <utility>

namespace vex {
namespace {

/// What the suite's engine gave; a command of another engine means nothing to the manager.
const Variant& CommandIn(const std::any& command) {
  const auto* const given = std::any_cast<Variant>(&command);
  if (given == nullptr) throw PlatformError(ErrorTypeMismatch);
  return *given;
}

}  // namespace

std::shared_ptr<const ComponentNames> SuiteShellCommandManager::ReadNames(Registry& settings) {
  return std::make_shared<const ComponentNames>(settings, "ShellCommandManager",
                                                "VEXSHELLCMDMGRLib.ShellCmdManager",
                                                std::vector<std::string>{"CommandLineFor", "WindowStyleFor"});
}

SuiteShellCommandManager::SuiteShellCommandManager(std::shared_ptr<const ComponentNames> names)
    : m_Manager(std::move(names)) {}

std::string SuiteShellCommandManager::CommandLineFor(const std::any& command) {
  return m_Manager.Call("CommandLineFor", {CommandIn(command)}).AsText();
}

int32_t SuiteShellCommandManager::WindowStyleFor(const std::any& command) {
  return m_Manager.Call("WindowStyleFor", {CommandIn(command)}).AsLong();
}

}  // namespace vex
