#pragma once

#include <cstdint>

namespace vex {

/// The numbers by which songs are shuffled. The arithmetic is written out, so that one seed draws the same
/// songs with every compiler: SplitMix64 (G. Steele, D. Lea, C. Flood, "Fast Splittable Pseudorandom Number
/// Generators", OOPSLA 2014), the upper 53 bits taken as a fraction.
class RandomNumbers {
 public:
  explicit RandomNumbers(uint64_t seed) : m_State(seed) {}

  /// In [0, 1).
  double Next() {
    m_State += 0x9E3779B97F4A7C15U;
    uint64_t mixed = m_State;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9U;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
    mixed ^= mixed >> 31;
    return static_cast<double>(mixed >> 11) * 0x1.0p-53;
  }

  /// 1 to lCount.
  int32_t Pick(int32_t lCount) { return static_cast<int32_t>(Next() * lCount + 1); }

 private:
  uint64_t m_State;
};

}  // namespace vex
