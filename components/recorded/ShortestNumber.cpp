#include "components/recorded/ShortestNumber.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <string_view>

namespace vex {
namespace {

constexpr double FirstWithoutUnits = 9007199254740992;  // 2^53, from where on neighbours are 2 apart
// Whatever has no more digits is read back by printing as many.
constexpr int SafeDigits = std::numeric_limits<double>::digits10;
constexpr int EnoughDigits = std::numeric_limits<double>::max_digits10;

/// d.ddd times ten to the power of the exponent; no zeros at the end.
struct Decimal {
  std::string Digits;
  int Exponent = 0;
};

std::string Printed(const char* szFormat, int places, double value) {
  std::array<char, 32> text{};
  const int length = std::snprintf(text.data(), text.size(), szFormat, places, value);
  return {text.data(), static_cast<size_t>(length)};
}

std::string WithExponent(const Decimal& decimal) {
  std::string szText = decimal.Digits.substr(0, 1);
  if (decimal.Digits.size() > 1) szText += "." + decimal.Digits.substr(1);
  const std::string szExponent = std::to_string(std::abs(decimal.Exponent));
  return szText + (decimal.Exponent < 0 ? "e-" : "e+") + (szExponent.size() < 2 ? "0" : "") + szExponent;
}

std::string Plain(const Decimal& decimal) {
  const auto digits = static_cast<int>(decimal.Digits.size());
  if (decimal.Exponent < 0) return "0." + std::string(-decimal.Exponent - 1, '0') + decimal.Digits;
  if (digits <= decimal.Exponent + 1) return decimal.Digits + std::string(decimal.Exponent + 1 - digits, '0');
  return decimal.Digits.substr(0, decimal.Exponent + 1) + "." + decimal.Digits.substr(decimal.Exponent + 1);
}

Decimal Stripped(std::string szDigits, int exponent) {
  szDigits.erase(szDigits.find_last_not_of('0') + 1);
  return {std::move(szDigits), exponent};
}

Decimal Rounded(double value, int digits) {
  const std::string szText = Printed("%.*e", digits - 1, value);
  const size_t mark = szText.find('e');
  std::string szDigits = szText.substr(0, 1);
  if (digits > 1) szDigits.append(szText, 2, mark - 2);
  return {std::move(szDigits), std::atoi(szText.c_str() + mark + 1)};
}

bool ReadsBack(const Decimal& decimal, double value) {
  const std::string szText = WithExponent(decimal);
  double read = 0;
  return std::from_chars(szText.data(), szText.data() + szText.size(), read).ec == std::errc() &&
         read == value;
}

/// Below a power of two the numbers lie twice as close as above it, so what is read back may be the next
/// above the nearest and not the nearest.
Decimal NextAbove(const Decimal& decimal) {
  return {std::to_string(std::stoull(decimal.Digits) + 1), decimal.Exponent};
}

Decimal Shortest(double value) {
  if (value < FirstWithoutUnits && value == std::floor(value)) {
    const std::string szDigits = std::to_string(static_cast<uint64_t>(value));
    return Stripped(szDigits, static_cast<int>(szDigits.size()) - 1);
  }
  // The smallest numbers of all have fewer digits than others.
  for (int digits = value < std::numeric_limits<double>::min() ? 1 : SafeDigits; digits < EnoughDigits;
       ++digits) {
    const Decimal nearest = Rounded(value, digits);
    if (ReadsBack(nearest, value)) return Stripped(nearest.Digits, nearest.Exponent);
    Decimal above = NextAbove(nearest);
    if (digits > SafeDigits && ReadsBack(above, value)) return above;
  }
  return Rounded(value, EnoughDigits);
}

}  // namespace

std::string ShortestNumber(double value) {
  if (value == 0) return std::signbit(value) ? "-0" : "0";
  if (value < 0) return "-" + ShortestNumber(-value);
  const Decimal decimal = Shortest(value);
  std::string szWithExponent = WithExponent(decimal);
  // Far more zeros than an exponent has characters need not be written to be counted.
  if (std::abs(decimal.Exponent) > 2 * EnoughDigits) return szWithExponent;
  std::string szPlain = Plain(decimal);
  if (szPlain.size() > szWithExponent.size()) return szWithExponent;
  // Plain numbers tell every digit, also those that reading back does not need.
  return value < FirstWithoutUnits ? szPlain : Printed("%.*f", 0, value);
}

}  // namespace vex
