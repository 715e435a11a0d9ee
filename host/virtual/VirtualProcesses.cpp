#include "host/virtual/VirtualProcesses.h"

#include "basic/Error.h"

namespace vex {

ProcessId VirtualProcesses::Start(const std::string& szCommandLine, int32_t lWindowStyle) {
  if (m_StartCode != 0) throw Error(m_StartCode, "Processes.Start", "Cannot start: " + szCommandLine);
  const Started started{szCommandLine, lWindowStyle, ++m_LastProcess};
  m_Starts.push_back(started);
  if (m_OnStart) m_OnStart(started);
  return started.Process;
}

void VirtualProcesses::WaitFor(ProcessId process) {
  m_Waits.push_back(process);
}

}  // namespace vex
