#include "basic/Number.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cmath>
#include <limits>
#include <string>

#include "tests/basic/Raises.h"

namespace vex::test {

namespace {

constexpr int32_t Smallest = std::numeric_limits<int32_t>::min();
constexpr int32_t Greatest = std::numeric_limits<int32_t>::max();

}  // namespace

TEST(Number, ArithmeticGoesToTheBoundsAndNotBeyond) {
  EXPECT_EQ(CheckedAdd(Greatest - 1, 1), Greatest);
  EXPECT_EQ(CheckedSubtract(Smallest + 1, 1), Smallest);
  EXPECT_EQ(CheckedMultiply(-65536, 32768), Smallest);
  ExpectPlatformError([] { return CheckedAdd(Greatest, 1); }, ErrorOverflow);
  ExpectPlatformError([] { return CheckedAdd(Smallest, -1); }, ErrorOverflow);
  ExpectPlatformError([] { return CheckedSubtract(Smallest, 1); }, ErrorOverflow);
  ExpectPlatformError([] { return CheckedSubtract(0, Smallest); }, ErrorOverflow);
  ExpectPlatformError([] { return CheckedMultiply(65536, 32768); }, ErrorOverflow);
  ExpectPlatformError([] { return CheckedMultiply(Smallest, -1); }, ErrorOverflow);
}

TEST(Number, RoundsHalvesToTheEvenNeighbour) {
  EXPECT_EQ(RoundToLong(0.5), 0);
  EXPECT_EQ(RoundToLong(1.5), 2);
  EXPECT_EQ(RoundToLong(2.5), 2);
  EXPECT_EQ(RoundToLong(-0.5), 0);
  EXPECT_EQ(RoundToLong(-1.5), -2);
  EXPECT_EQ(RoundToLong(-2.5), -2);
  EXPECT_EQ(RoundToLong(2.4999), 2);
  EXPECT_EQ(RoundToLong(2.5001), 3);
  EXPECT_EQ(RoundToLong(-2.5001), -3);
}

TEST(Number, RoundsUpToTheBoundsOf32Bits) {
  EXPECT_EQ(RoundToLong(2147483647.4), Greatest);
  EXPECT_EQ(RoundToLong(-2147483648.5), Smallest);
  ExpectPlatformError([] { return RoundToLong(2147483647.5); }, ErrorOverflow);
  ExpectPlatformError([] { return RoundToLong(-2147483648.6); }, ErrorOverflow);
  ExpectPlatformError([] { return RoundToLong(1e300); }, ErrorOverflow);
  ExpectPlatformError([] { return RoundToLong(std::nan("")); }, ErrorOverflow);
  ExpectPlatformError([] { return RoundToLong(std::numeric_limits<double>::infinity()); }, ErrorOverflow);
}

TEST(Number, FloorsToTheNextNotGreater) {
  EXPECT_EQ(FloorToLong(2.7), 2);
  EXPECT_EQ(FloorToLong(-2.5), -3);
  EXPECT_EQ(FloorToLong(2147483647.9), Greatest);
  EXPECT_EQ(FloorToLong(-2147483648.0), Smallest);
  ExpectPlatformError([] { return FloorToLong(2147483648.0); }, ErrorOverflow);
  ExpectPlatformError([] { return FloorToLong(-2147483648.1); }, ErrorOverflow);
}

TEST(Number, ParsesSignFractionExponentAndBlanksAround) {
  EXPECT_EQ(ParseNumber("42"), 42);
  EXPECT_EQ(ParseNumber(" \t+42\r\n "), 42);
  EXPECT_EQ(ParseNumber("-2.5"), -2.5);
  EXPECT_EQ(ParseNumber(".5"), 0.5);
  EXPECT_EQ(ParseNumber("5."), 5);
  EXPECT_EQ(ParseNumber("1e3"), 1000);
  EXPECT_EQ(ParseNumber("1E+3"), 1000);
  EXPECT_EQ(ParseNumber("25e-1"), 2.5);
  EXPECT_EQ(ParseNumber("007"), 7);
  EXPECT_EQ(ParseNumber("0e999"), 0);
}

TEST(Number, ParsingRefusesWhatIsNoNumber) {
  for (const char* szText : {"", " ", "a", "1a", "1 2", "--1", "+-1", "- 1", ".", "-", "+", "e3", "1e", "1e+",
                             "0x10", "inf", "nan", "1,5", "1.2.3"}) {
    SCOPED_TRACE(szText);
    ExpectPlatformError([&] { return ParseNumber(szText); }, ErrorTypeMismatch);
  }
  ExpectPlatformError([] { return ParseNumber(std::string_view("1\0", 2)); }, ErrorTypeMismatch);
}

TEST(Number, BeyondADoubleGreatOverflowsAndTinyIsZero) {
  const std::string szZeros(400, '0');
  for (const std::string& szText :
       {std::string("1e309"), std::string("-1e309"), "1" + szZeros, "1" + szZeros + "e-10",
        std::string("1e99999999999999999999"), "0." + szZeros + "1e800"}) {
    SCOPED_TRACE(szText);
    ExpectPlatformError([&] { return ParseNumber(szText); }, ErrorOverflow);
    EXPECT_TRUE(std::isinf(LeadingNumber(szText)));
  }
  for (const std::string& szText :
       {std::string("1e-400"), std::string("-1e-400"), "0." + szZeros + "1", "0." + szZeros + "1e10",
        std::string("1e-99999999999999999999"), "1" + szZeros + "e-800"}) {
    SCOPED_TRACE(szText);
    EXPECT_EQ(ParseNumber(szText), 0);
    EXPECT_EQ(LeadingNumber(szText), 0);
  }
}

TEST(Number, LeadingNumberTakesWhatItCan) {
  EXPECT_EQ(LeadingNumber("12 monkeys"), 12);
  EXPECT_EQ(LeadingNumber("  -3.5x"), -3.5);
  EXPECT_EQ(LeadingNumber("1e"), 1);
  EXPECT_EQ(LeadingNumber("1e+"), 1);
  EXPECT_EQ(LeadingNumber("1e2e3"), 100);
  EXPECT_EQ(LeadingNumber("1.2.3"), 1.2);
  EXPECT_EQ(LeadingNumber("7)"), 7);
  for (const char* szText : {"", "  ", "x1", "-", ".", "-.e3", "inf"})
    EXPECT_EQ(LeadingNumber(szText), 0) << szText;
}

TEST(Number, FormatsWithoutPaddingOrPlus) {
  EXPECT_EQ(FormatNumber(0), "0");
  EXPECT_EQ(FormatNumber(-7), "-7");
  EXPECT_EQ(FormatNumber(Greatest), "2147483647");
  EXPECT_EQ(FormatNumber(Smallest), "-2147483648");
}

TEST(NumberProperty, WhatIsFormattedParsesAgain) {
  EXPECT_TRUE(rc::check("format and parse", [](int32_t lValue) {
    RC_ASSERT(FloorToLong(ParseNumber(FormatNumber(lValue))) == lValue);
    RC_ASSERT(LeadingNumber(FormatNumber(lValue) + "x") == lValue);
  }));
}

TEST(NumberProperty, AnyTextIsReadOrRefusedAlikeByBothReaders) {
  EXPECT_TRUE(rc::check("parse agrees with leading", [] {
    const auto szText = *rc::gen::container<std::string>(rc::gen::elementOf(std::string(" +-.eE019x")));
    try {
      const double value = ParseNumber(szText);
      RC_ASSERT(LeadingNumber(szText) == value);
    } catch (const Error& error) {
      RC_ASSERT(error.Number == ErrorTypeMismatch || std::isinf(LeadingNumber(szText)));
    }
  }));
}

TEST(NumberProperty, RoundingIsNearestAndEvenAtHalves) {
  EXPECT_TRUE(rc::check("nearest", [] {
    const auto lQuarters = *rc::gen::inRange(-4'000'000, 4'000'000);
    const double value = lQuarters / 4.0;
    const int32_t lRounded = RoundToLong(value);
    const double distance = std::abs(lRounded - value);
    RC_ASSERT(distance <= 0.5);
    RC_ASSERT(distance < 0.5 || lRounded % 2 == 0);
  }));
}

}  // namespace vex::test
