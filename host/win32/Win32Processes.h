#pragma once

#include "host/Processes.h"

namespace vex {

/// Programs of the machine. A style is handed on as it is: the numbers are the machine's own.
class Win32Processes : public Processes {
 public:
  ProcessId Start(const std::string& szCommandLine, int32_t lWindowStyle) override;
  void WaitFor(ProcessId process) override;
  [[nodiscard]] ProcessId Current() const override;
};

}  // namespace vex
