#include "components/recorded/RecordedShellCommandManager.h"

#include <utility>

namespace vex {

RecordedShellCommandManager::RecordedShellCommandManager(std::shared_ptr<ShellCommandManager> manager,
                                                         std::shared_ptr<Recorder> recorder)
    : m_Manager(std::move(manager)), m_Recorder(std::move(recorder)) {}

std::string RecordedShellCommandManager::CommandLineFor(const std::any& command) {
  std::string szCommandLine = m_Manager->CommandLineFor(command);
  if (!szCommandLine.empty()) m_Recorder->Shell(szCommandLine);
  return szCommandLine;
}

int32_t RecordedShellCommandManager::WindowStyleFor(const std::any& command) {
  return m_Manager->WindowStyleFor(command);
}

}  // namespace vex
