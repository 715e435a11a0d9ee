#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

#include "host/Clock.h"
#include "tools/faults/FaultPlan.h"

namespace vex {

/// One call fails: the n-th one, counted from 1; 0 for none. It keeps what was struck and when.
class NthFault final : public FaultPlan {
 public:
  NthFault(const Clock& clock, int64_t failAt) : m_Clock(clock), m_FailAt(failAt) {}

  [[nodiscard]] bool Strikes(std::string_view szCall, std::string_view szFile) override {
    if (++m_Calls != m_FailAt) return false;
    Struck = szCall;
    if (!szFile.empty()) Struck.append(" ").append(szFile);
    StruckAt = std::chrono::duration_cast<std::chrono::milliseconds>(m_Clock.Elapsed()).count();
    return true;
  }
  [[nodiscard]] int64_t Calls() const { return m_Calls; }

  std::string Struck;
  int64_t StruckAt = -1;  ///< milliseconds since the start; -1 while nothing was struck

 private:
  const Clock& m_Clock;
  int64_t m_FailAt;
  int64_t m_Calls = 0;
};

}  // namespace vex
