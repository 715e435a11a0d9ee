#pragma once

#include <cstdint>
#include <functional>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/Clock.h"
#include "tools/faults/FaultPlan.h"

namespace vex {

/// Faults at random moments, by a seed: after a while that is drawn, a kind of call is drawn among all that
/// have been made so far, and the next call of that kind fails. So what is called once a show fails as often
/// as what is called a thousand times a second. The same calls at the same moments fail in the same way.
class RandomFaults final : public FaultPlan {
 public:
  /// Told of each fault before the call fails.
  using Listener = std::function<void(std::string_view szCall, std::string_view szFile)>;

  /// The whiles between faults lie evenly between a millisecond and twice the mean.
  RandomFaults(const Clock& clock, uint64_t seed, Elapsed mean, Listener struck);

  [[nodiscard]] bool Strikes(std::string_view szCall, std::string_view szFile) override;

 private:
  void Plan(Elapsed now);

  const Clock& m_Clock;
  std::mt19937_64 m_Random;
  int64_t m_LongestMs;
  Listener m_Struck;
  Elapsed m_Next;
  Elapsed m_GiveUp{0};  // when a call that does not come is waited for no longer
  std::string m_Armed;  // the call that fails next; empty while none is drawn
  std::set<std::string, std::less<>> m_Known;
  std::vector<std::string> m_Calls;  // the known ones, in the order of their first call
};

}  // namespace vex
