#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/Processes.h"

namespace vex {

/// Other programs of a virtual machine: they are written down and not run. A test may stand in for one.
class VirtualProcesses final : public vex::Processes {
 public:
  struct Started {
    std::string CommandLine;
    int32_t WindowStyle = 0;
    ProcessId Process = 0;
  };

  ProcessId Start(const std::string& szCommandLine, int32_t lWindowStyle) override;
  /// Returns at once: every program has ended when it is waited for.
  void WaitFor(ProcessId process) override;

  [[nodiscard]] const std::vector<Started>& Starts() const { return m_Starts; }
  void ForgetStarts() { m_Starts.clear(); }
  [[nodiscard]] const std::vector<ProcessId>& Waits() const { return m_Waits; }

  /// Called for each start: the program's work, done by the test.
  void OnStart(std::function<void(const Started&)> handler) { m_OnStart = std::move(handler); }
  /// Each start raises Error with this code of the system; 0 lets it succeed again.
  void FailStarts(int32_t lCode) { m_StartCode = lCode; }

 private:
  std::vector<Started> m_Starts;
  std::vector<ProcessId> m_Waits;
  std::function<void(const Started&)> m_OnStart;
  int32_t m_StartCode = 0;
  ProcessId m_LastProcess = 0;
};

}  // namespace vex
