#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "basic/DateTime.h"
#include "host/virtual/VirtualHost.h"
#include "tools/faults/RandomFaults.h"

namespace vex::test {
namespace {

using testing::AllOf;
using testing::Ge;
using testing::Le;

constexpr std::chrono::minutes Mean{2};

/// Calls one thing a thousand times a second and another once a minute, for some hours.
struct Busy {
  explicit Busy(uint64_t seed, int64_t hours = 10) {
    VirtualHost host(DateTime::FromParts(2026, 12, 24));
    RandomFaults faults(host.Clock(), seed, Mean, [&](std::string_view szCall, std::string_view szFile) {
      Struck.push_back(std::to_string(host.Clock().Elapsed().count()) + " " + std::string(szCall) + " " +
                       std::string(szFile));
      ++Counts[std::string(szCall)];
    });
    for (int64_t second = 0; second < hours * 3600; ++second) {
      host.EventLoop().Advance(1000);
      for (int32_t call = 0; call < 5; ++call) failed += faults.Strikes("often", "") ? 1 : 0;
      if (second % 60 == 0) failed += faults.Strikes("seldom", "a.vexseq") ? 1 : 0;
    }
  }
  int64_t failed = 0;
  std::vector<std::string> Struck;
  std::map<std::string, int64_t> Counts;
};

TEST(RandomFaults, TheSameSeedStrikesTheSame) {
  EXPECT_EQ(Busy(7, 2).Struck, Busy(7, 2).Struck);
  EXPECT_NE(Busy(7, 2).Struck, Busy(8, 2).Struck);
}

TEST(RandomFaults, EachStrikeFailsOneCallAndIsTold) {
  const Busy busy(1);
  EXPECT_EQ(busy.failed, static_cast<int64_t>(busy.Struck.size()));
}

TEST(RandomFaults, WhatIsCalledSeldomFailsAboutAsOften) {
  const Busy busy(1);
  EXPECT_THAT(busy.Counts.at("seldom"), AllOf(Ge(60), Le(220)));
  EXPECT_THAT(busy.Counts.at("often"), AllOf(Ge(60), Le(220)));
}

TEST(RandomFaults, ACallThatNeverComesAgainIsGivenUp) {
  VirtualHost host(DateTime::FromParts(2026, 12, 24));
  int64_t struck = 0;
  RandomFaults faults(host.Clock(), 1, Mean, [&](std::string_view, std::string_view) { ++struck; });
  for (const char* szCall : {"once", "twice", "thrice"}) EXPECT_FALSE(faults.Strikes(szCall, ""));
  for (int64_t second = 0; second < 36000; ++second) {
    host.EventLoop().Advance(1000);
    static_cast<void>(faults.Strikes("again", ""));
  }
  EXPECT_GE(struck, 40);
}

TEST(RandomFaults, AFailedCallRaisesWithItsName) {
  VirtualHost host(DateTime::FromParts(2026, 12, 24));
  RandomFaults faults(host.Clock(), 1, Mean, [](std::string_view, std::string_view) {});
  std::string szDescription;
  for (int64_t second = 0; second < 600 && szDescription.empty(); ++second) {
    host.EventLoop().Advance(1000);
    try {
      faults.Check("load", "a.vexseq");
    } catch (const Error& error) {
      szDescription = error.Description;
    }
  }
  EXPECT_EQ(szDescription, "load failed");
}

}  // namespace
}  // namespace vex::test
