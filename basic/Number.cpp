#include "basic/Number.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "basic/Error.h"

namespace vex {

namespace {

int32_t Fitting(int64_t value) {
  if (value < std::numeric_limits<int32_t>::min() || value > std::numeric_limits<int32_t>::max()) {
    throw PlatformError(ErrorOverflow);
  }
  return static_cast<int32_t>(value);
}

int32_t WholeToLong(double whole) {
  constexpr double smallest = std::numeric_limits<int32_t>::min();
  constexpr double greatest = std::numeric_limits<int32_t>::max();
  if (!(whole >= smallest && whole <= greatest)) throw PlatformError(ErrorOverflow);
  return static_cast<int32_t>(whole);
}

bool IsBlank(char character) {
  return character == ' ' || (character >= '\t' && character <= '\r');
}

bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

/// A decimal number at the front of a text: how many characters it takes (0 for none), and its value.
struct Leading {
  size_t Length = 0;
  double Value = 0;
  bool Overflows = false;
};

size_t DigitsFrom(std::string_view szText, size_t from) {
  size_t end = from;
  while (end < szText.size() && IsDigit(szText[end])) ++end;
  return end;
}

/// The end of the mantissa that starts at from, or from when there is none.
size_t MantissaEnd(std::string_view szText, size_t from) {
  const size_t whole = DigitsFrom(szText, from);
  size_t end = whole;
  size_t digits = whole - from;
  if (whole < szText.size() && szText[whole] == '.') {
    end = DigitsFrom(szText, whole + 1);
    digits += end - whole - 1;
  }
  return digits == 0 ? from : end;
}

Leading ReadLeading(std::string_view szText) {
  size_t from = 0;
  const bool boolSign = !szText.empty() && (szText[0] == '-' || szText[0] == '+');
  if (boolSign) from = 1;
  size_t end = MantissaEnd(szText, from);
  if (end == from) return {};
  if (end < szText.size() && (szText[end] == 'e' || szText[end] == 'E')) {
    size_t exponent = end + 1;
    if (exponent < szText.size() && (szText[exponent] == '-' || szText[exponent] == '+')) ++exponent;
    const size_t exponentEnd = DigitsFrom(szText, exponent);
    if (exponentEnd > exponent) end = exponentEnd;
  }
  Leading leading;
  leading.Length = end;
  const auto result = std::from_chars(szText.data() + from, szText.data() + end, leading.Value);
  // The library tells too great and too small apart by nothing; too small is 0.
  if (result.ec == std::errc::result_out_of_range) {
    const std::string_view szMantissa = szText.substr(from, end - from);
    leading.Overflows =
        szMantissa.find("e-") == std::string_view::npos && szMantissa.find("E-") == std::string_view::npos;
    leading.Value = 0;
  }
  if (boolSign && szText[0] == '-') leading.Value = -leading.Value;
  return leading;
}

}  // namespace

int32_t CheckedAdd(int32_t a, int32_t b) {
  return Fitting(int64_t{a} + b);
}
int32_t CheckedSubtract(int32_t a, int32_t b) {
  return Fitting(int64_t{a} - b);
}
int32_t CheckedMultiply(int32_t a, int32_t b) {
  return Fitting(int64_t{a} * b);
}

int32_t RoundToLong(double value) {
  double whole = std::floor(value);
  const double fraction = value - whole;
  constexpr double half = 0.5;
  const bool boolOdd = std::fmod(whole, 2) != 0;
  if (fraction > half || (fraction == half && boolOdd)) whole += 1;
  return WholeToLong(whole);
}

int32_t FloorToLong(double value) {
  return WholeToLong(std::floor(value));
}

double ParseNumber(std::string_view szText) {
  while (!szText.empty() && IsBlank(szText.front())) szText.remove_prefix(1);
  while (!szText.empty() && IsBlank(szText.back())) szText.remove_suffix(1);
  const Leading leading = ReadLeading(szText);
  if (leading.Length == 0 || leading.Length != szText.size()) throw PlatformError(ErrorTypeMismatch);
  if (leading.Overflows) throw PlatformError(ErrorOverflow);
  return leading.Value;
}

double LeadingNumber(std::string_view szText) {
  while (!szText.empty() && IsBlank(szText.front())) szText.remove_prefix(1);
  return ReadLeading(szText).Value;
}

std::string FormatNumber(int32_t lValue) {
  return std::to_string(lValue);
}

}  // namespace vex
