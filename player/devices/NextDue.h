#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

namespace vex {

/// When a device must be looked at again: at a value on the scale that the asking method names, never
/// before an event of its own, or, for a device that cannot tell, at every tick.
class NextDue {
 public:
  static constexpr NextDue EveryTick() { return NextDue(std::numeric_limits<int64_t>::min()); }
  static constexpr NextDue Never() { return NextDue(std::numeric_limits<int64_t>::max()); }
  static constexpr NextDue At(int64_t value) { return NextDue(value); }

  [[nodiscard]] constexpr bool IsEveryTick() const { return *this == EveryTick(); }
  [[nodiscard]] constexpr bool IsNever() const { return *this == Never(); }
  [[nodiscard]] constexpr int64_t Value() const { return m_Value; }

  friend constexpr bool operator==(NextDue, NextDue) = default;
  /// The one that comes first.
  [[nodiscard]] static constexpr NextDue Sooner(NextDue a, NextDue b) {
    return NextDue(std::min(a.m_Value, b.m_Value));
  }

 private:
  explicit constexpr NextDue(int64_t value) : m_Value(value) {}
  int64_t m_Value;
};

}  // namespace vex
