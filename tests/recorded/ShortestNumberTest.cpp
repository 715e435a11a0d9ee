#include "components/recorded/ShortestNumber.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>

namespace vex {
namespace {

/// What the standard library writes.
std::string Model(double value) {
  std::array<char, 64> text{};
  return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

TEST(ShortestNumber, IsPlainOrHasAnExponentWhicheverIsShorter) {
  EXPECT_EQ(ShortestNumber(0), "0");
  EXPECT_EQ(ShortestNumber(-0.0), "-0");
  EXPECT_EQ(ShortestNumber(0.1), "0.1");
  EXPECT_EQ(ShortestNumber(100), "100");
  EXPECT_EQ(ShortestNumber(100000), "1e+05");
  EXPECT_EQ(ShortestNumber(-12345.678), "-12345.678");
  EXPECT_EQ(ShortestNumber(0.001), "0.001");
  EXPECT_EQ(ShortestNumber(0.0001), "1e-04");
  EXPECT_EQ(ShortestNumber(100 / 2.55), Model(100 / 2.55));
}

TEST(ShortestNumber, HoldsTheEndsOfWhatANumberCanBe) {
  using Limits = std::numeric_limits<double>;
  for (const double value :
       {Limits::max(), Limits::min(), Limits::denorm_min(), Limits::lowest(), 1e22, 1e23})
    EXPECT_EQ(ShortestNumber(value), Model(value));
  EXPECT_EQ(ShortestNumber(Limits::denorm_min()), "5e-324");
  EXPECT_EQ(ShortestNumber(123456789012345680.0), "123456789012345680");
}

TEST(ShortestNumber, HoldsEveryPowerOfTwoWithItsNeighbours) {
  for (int exponent = -1074; exponent < 1024; ++exponent) {
    const double power = std::ldexp(1.0, exponent);
    for (const double value : {power, std::nextafter(power, 0), std::nextafter(power, 2 * power)})
      ASSERT_EQ(ShortestNumber(value), Model(value)) << exponent;
  }
}

TEST(ShortestNumber, HoldsEveryLevelOfAFrame) {
  for (int lByte = 0; lByte < 256; ++lByte) ASSERT_EQ(ShortestNumber(lByte / 2.55), Model(lByte / 2.55));
}

TEST(ShortestNumber, IsWhatTheStandardLibraryWritesForAnyBits) {
  EXPECT_TRUE(rc::check("any bits", [](uint64_t bits) {
    const auto value = std::bit_cast<double>(bits);
    RC_PRE(std::isfinite(value));
    RC_ASSERT(ShortestNumber(value) == Model(value));
  }));
}

TEST(ShortestNumber, IsWhatTheStandardLibraryWritesForDecimalsOfAllLengths) {
  EXPECT_TRUE(rc::check("decimals", [](int64_t number, uint8_t places) {
    const double value = static_cast<double>(number) / std::pow(10.0, places % 20);
    RC_ASSERT(ShortestNumber(value) == Model(value));
  }));
}

}  // namespace
}  // namespace vex
