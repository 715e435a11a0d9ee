#pragma once

#include <concepts>
#include <cstdint>

#include "basic/Number.h"

namespace vex {

/// A flag as the system stores it: a 32-bit number of which only -1 counts as set and only 0 as clear.
/// Assigning a bool stores one of the two; FromStored keeps any other number as it is, so that a flag
/// holding 1 is neither set nor clear. Ask IsTrue or IsClear, whichever the rule speaks of.
class StoredBoolean {
 public:
  constexpr StoredBoolean() = default;
  /// From a bool and nothing that merely converts to one: a number given here would lose its value.
  template <std::same_as<bool> Bool>
  constexpr StoredBoolean(Bool boolValue) : m_Value(boolValue ? CanonicalTrue : CanonicalFalse) {}
  [[nodiscard]] static constexpr StoredBoolean FromStored(int32_t lStored) {
    StoredBoolean stored;
    stored.m_Value = lStored;
    return stored;
  }

  [[nodiscard]] constexpr int32_t Value() const { return m_Value; }
  [[nodiscard]] constexpr bool IsTrue() const { return m_Value == CanonicalTrue; }
  [[nodiscard]] constexpr bool IsClear() const { return m_Value == CanonicalFalse; }

  friend constexpr bool operator==(StoredBoolean, StoredBoolean) = default;

 private:
  int32_t m_Value = CanonicalFalse;
};

}  // namespace vex
