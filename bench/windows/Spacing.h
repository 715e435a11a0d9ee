#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

#include "host/Clock.h"

namespace vex::bench {

/// Times in milliseconds, and what is printed of them.
class Spacing {
 public:
  void Add(Elapsed took) { m_Times.push_back(std::chrono::duration<double, std::milli>(took).count()); }

  [[nodiscard]] double Quantile(double part) {
    std::ranges::sort(m_Times);
    const auto last = static_cast<double>(m_Times.size() - 1);
    return m_Times.empty() ? 0 : m_Times[static_cast<size_t>(part * last)];
  }
  [[nodiscard]] double PercentUnder(double milliseconds) const {
    const auto under = std::ranges::count_if(m_Times, [=](double time) { return time < milliseconds; });
    return m_Times.empty() ? 0 : 100.0 * static_cast<double>(under) / static_cast<double>(m_Times.size());
  }
  void Print(const char* szWhat, double limit) {
    std::printf("%-34s %7zu  p50 %7.3f  p99 %7.3f  max %8.3f ms  %6.2f %% under %g ms\n", szWhat,
                m_Times.size(), Quantile(0.5), Quantile(0.99), Quantile(1), PercentUnder(limit), limit);
    std::fflush(stdout);
  }

 private:
  std::vector<double> m_Times;
};

}  // namespace vex::bench
