#include "basic/Number.h"

#include <algorithm>
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

/// A decimal number at the front of a text: how many characters it takes (0 for none), and its value,
/// infinite where it is beyond a double's range.
struct Leading {
  size_t Length = 0;
  double Value = 0;
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

/// Of a number that no double holds: whether it is too great; else it is too near to 0. Both lie hundreds
/// of places away from the point, so the place of the first digit and the exponent tell.
bool IsGreat(std::string_view szNumber) {
  const size_t exponentAt = szNumber.find_first_of("eE");
  const std::string_view szMantissa = szNumber.substr(0, exponentAt);
  const auto point = static_cast<int64_t>(std::min(szMantissa.find('.'), szMantissa.size()));
  const auto firstDigit = static_cast<int64_t>(szMantissa.find_first_not_of("0."));
  int64_t exponent = 0;
  if (exponentAt != std::string_view::npos) {
    std::string_view szExponent = szNumber.substr(exponentAt + 1);
    const bool boolNegative = szExponent.front() == '-';
    if (boolNegative || szExponent.front() == '+') szExponent.remove_prefix(1);
    constexpr int64_t farAway = std::numeric_limits<int64_t>::max() / 2;
    const auto result = std::from_chars(szExponent.data(), szExponent.data() + szExponent.size(), exponent);
    if (result.ec != std::errc() || exponent > farAway) exponent = farAway;
    if (boolNegative) exponent = -exponent;
  }
  return point - firstDigit + exponent > 0;
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
  double value = 0;
  const auto result = std::from_chars(szText.data() + from, szText.data() + end, value);
  if (result.ec == std::errc::result_out_of_range) {
    value = IsGreat(szText.substr(from, end - from)) ? std::numeric_limits<double>::infinity() : 0;
  }
  return {end, szText.front() == '-' ? -value : value};
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
  if (std::isinf(leading.Value)) throw PlatformError(ErrorOverflow);
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
