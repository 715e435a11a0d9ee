#include "tools/faults/RandomFaults.h"

#include <chrono>
#include <utility>

namespace vex {

RandomFaults::RandomFaults(const Clock& clock, uint64_t seed, Elapsed mean, Listener struck)
    : m_Clock(clock),
      m_Random(seed),
      m_LongestMs(2 * std::chrono::duration_cast<std::chrono::milliseconds>(mean).count()),
      m_Struck(std::move(struck)) {
  Plan(m_Clock.Elapsed());
}

void RandomFaults::Plan(Elapsed now) {
  m_Armed.clear();
  m_Next = now + std::chrono::milliseconds(1 + m_Random() % static_cast<uint64_t>(m_LongestMs));
}

bool RandomFaults::Strikes(std::string_view szCall, std::string_view szFile) {
  if (!m_Known.contains(szCall)) {
    m_Known.emplace(szCall);
    m_Calls.emplace_back(szCall);
  }
  const Elapsed now = m_Clock.Elapsed();
  if (now < m_Next) return false;
  if (m_Armed.empty() || now >= m_GiveUp) {
    m_Armed = m_Calls[static_cast<size_t>(m_Random() % m_Calls.size())];
    m_GiveUp = now + std::chrono::milliseconds(m_LongestMs);
  }
  if (szCall != m_Armed) return false;
  m_Struck(szCall, szFile);
  Plan(now);
  return true;
}

}  // namespace vex
