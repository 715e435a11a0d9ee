#pragma once

#include <map>
#include <memory>

#include "host/Processes.h"
#include "host/linux/Descriptor.h"
#include "host/linux/LinuxEventLoop.h"

namespace vex {

/// Starts command lines with the shell, each in a session of its own, with nothing on standard input and none
/// of the player's files, so that it lives on whatever becomes of the player. The loop collects what has
/// ended.
class LinuxProcesses : public Processes {
 public:
  explicit LinuxProcesses(LinuxEventLoop& loop) : m_Loop(loop) {}

  ProcessId Start(const std::string& szCommandLine, int32_t lWindowStyle) override;
  /// Returns at once for a process that was not started here or has been collected.
  void WaitFor(ProcessId process) override;
  [[nodiscard]] ProcessId Current() const override;

 private:
  struct Child {
    Descriptor PidFd;
    std::unique_ptr<Watch> Ended;
  };

  void CollectUnwatched();

  LinuxEventLoop& m_Loop;
  std::map<ProcessId, Child> m_Children;
};

}  // namespace vex
