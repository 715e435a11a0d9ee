#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vex {

/// Numbers as the system has them: 32-bit signed with overflow an error, rounding halves to the even
/// neighbour, and the platform's two ways of reading text. Every function is independent of the locale.

/// a + b, a - b and a * b; raise ErrorOverflow where the result does not fit.
[[nodiscard]] int32_t CheckedAdd(int32_t a, int32_t b);
[[nodiscard]] int32_t CheckedSubtract(int32_t a, int32_t b);
[[nodiscard]] int32_t CheckedMultiply(int32_t a, int32_t b);

/// The nearest whole number, halves to even; ErrorOverflow beyond 32 bits or for no number.
[[nodiscard]] int32_t RoundToLong(double value);
/// The next whole number not greater (-2.5 gives -3); ErrorOverflow beyond 32 bits.
[[nodiscard]] int32_t FloorToLong(double value);

/// The whole text as a decimal number: blanks around it, a sign, fractions and an exponent are allowed;
/// ErrorTypeMismatch for anything else (an empty text too), ErrorOverflow beyond a double's range.
[[nodiscard]] double ParseNumber(std::string_view szText);
/// The number that the text begins with (leading blanks skipped), 0 when there is none, infinite beyond a
/// double's range; never fails.
[[nodiscard]] double LeadingNumber(std::string_view szText);

/// Decimal text, "-" before a negative value.
[[nodiscard]] std::string FormatNumber(int32_t lValue);

/// The system's stored booleans: -1 is the one canonical true.
constexpr int32_t CanonicalTrue = -1;
constexpr int32_t CanonicalFalse = 0;

}  // namespace vex
