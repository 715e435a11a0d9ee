#include <gtest/gtest.h>

#include "host/virtual/VirtualHost.h"

namespace vex::test {
namespace {

using std::chrono::milliseconds;

TEST(VirtualClock, StandsAtItsStartUntilMoved) {
  VirtualClock clock(DateTime::FromParts(2026, 12, 24, 18, 5, 9));
  EXPECT_EQ(clock.Now(), DateTime::FromParts(2026, 12, 24, 18, 5, 9));
  EXPECT_EQ(clock.Elapsed(), Elapsed(0));
  EXPECT_EQ(clock.ShortTime(), "18:05");
  EXPECT_EQ(clock.Milliseconds(), "2026-12-24 18:05:09.000");
}

TEST(VirtualClock, SecondsOfDayCarryTheFractionAndNowDoesNot) {
  VirtualClock clock(DateTime::FromParts(2026, 12, 24, 18, 0, 0));
  clock.MoveTo(milliseconds(5002));
  EXPECT_EQ(clock.Now(), DateTime::FromParts(2026, 12, 24, 18, 0, 5));
  EXPECT_DOUBLE_EQ(clock.SecondsOfDay(), 64805.002);
  EXPECT_EQ(clock.Milliseconds(), "2026-12-24 18:00:05.002");
}

TEST(VirtualClock, CrossesMidnight) {
  VirtualClock clock(DateTime::FromParts(2026, 12, 31, 23, 59, 59));
  clock.MoveTo(milliseconds(999));
  EXPECT_DOUBLE_EQ(clock.SecondsOfDay(), 86399.999);
  clock.MoveTo(milliseconds(1000));
  EXPECT_EQ(clock.Now(), DateTime::FromParts(2027, 1, 1));
  EXPECT_DOUBLE_EQ(clock.SecondsOfDay(), 0);
  EXPECT_EQ(clock.ShortTime(), "00:00");
}

TEST(VirtualClock, SettingTheWallClockLeavesElapsedTimeAlone) {
  VirtualClock clock(DateTime::FromParts(2026, 10, 25, 2, 59, 59));
  clock.MoveTo(milliseconds(250));
  clock.SetWallClock(DateTime::FromParts(2026, 10, 25, 2, 0, 0));
  EXPECT_EQ(clock.Elapsed(), milliseconds(250));
  EXPECT_EQ(clock.Milliseconds(), "2026-10-25 02:00:00.000");
  clock.MoveTo(milliseconds(1251));
  EXPECT_EQ(clock.Milliseconds(), "2026-10-25 02:00:01.001");
}

TEST(VirtualClock, NeverMovesBack) {
  VirtualClock clock(DateTime::FromParts(2026, 12, 24));
  clock.MoveTo(milliseconds(10));
  clock.MoveTo(milliseconds(5));
  EXPECT_EQ(clock.Elapsed(), milliseconds(10));
}

}  // namespace
}  // namespace vex::test
