#include <gtest/gtest.h>

#include <algorithm>

#include "tests/monitor/MonitorRig.h"

// Heartbeats that rest where nobody sees them: what they cost, and what ends the rest.

namespace vex::test {
namespace {

struct RestTest : testing::Test {
  RestTest() {
    Rig.HeartbeatsRest = true;
    Rig.Show("eve.shw", {.Startup = "", .Animation = "a1", .Songs = "", .Shutdown = ""});
    Rig.Library["a1"].DurationMs = 600000;
  }
  [[nodiscard]] uint64_t TicksOf(int64_t seconds) {
    const uint64_t before = Rig.Host.EventLoop().Ticks();
    Rig.Run(seconds * 1000);
    return Rig.Host.EventLoop().Ticks() - before;
  }
  MonitorRig Rig;
};

TEST_F(RestTest, AnIdleDayCostsNextToNothing) {
  Rig.Week({{"eve.shw", 6, "18:00:00", "19:00:00"}});
  Rig.Start();
  EXPECT_LT(TicksOf(86400), 20U);
}

TEST_F(RestTest, WithoutTheSwitchEachSecondHasItsHeartbeat) {
  Rig.HeartbeatsRest = false;
  Rig.Start();
  EXPECT_GE(TicksOf(100), 100U);
}

TEST_F(RestTest, AShowBeginsAndEndsAtItsSecond) {
  Rig.Week({{"eve.shw", 4, "18:10:00", "18:20:00"}});
  Rig.Start();
  Rig.RunUntil("18:09:59");
  EXPECT_EQ(Rig.CurrentFilename(), "");
  Rig.Run(1002);
  EXPECT_EQ(Rig.CurrentFilename(), "eve.shw");
  Rig.RunUntil("18:19:59");
  EXPECT_EQ(Rig.CurrentFilename(), "eve.shw");
  Rig.Run(1002);
  EXPECT_EQ(Rig.CurrentFilename(), "");
}

TEST_F(RestTest, AChangedFileIsSeenAtTheNextBeatOfItsGrid) {
  Rig.Week({{"eve.shw", 4, "18:00:00", "18:20:00"}});
  Rig.Start();
  Rig.RunUntil("18:05:00");
  Rig.Run(300);
  Rig.Show("eve.shw", {.Startup = "", .Animation = "a1,a1", .Songs = "", .Shutdown = ""});
  Rig.Monitor->WakeHeartbeat();
  Rig.Run(699);
  EXPECT_FALSE(Rig.Logged("1 Current show's contents have changed"));
  Rig.Run(1);
  EXPECT_TRUE(Rig.Logged("1 Current show's contents have changed"));
}

TEST_F(RestTest, AMessageIsServedAsEver) {
  Rig.Start();
  Rig.RunUntil("18:05:00");
  Rig.Run(300);
  Rig.Week({{"eve.shw", 4, "18:00:00", "18:20:00"}});
  Rig.Send(MessageReloadSchedules);
  Rig.Run(698);
  EXPECT_EQ(Rig.CurrentFilename(), "");
  Rig.Run(3);
  EXPECT_EQ(Rig.CurrentFilename(), "eve.shw");
}

TEST_F(RestTest, AClockThatIsSetIsSeen) {
  Rig.Week({{"eve.shw", 4, "18:10:00", "18:20:00"}});
  Rig.Start();
  Rig.RunUntil("18:05:00");
  Rig.Host.Clock().SetWallClock(At("18:10:00"));
  Rig.Run(1002);
  EXPECT_EQ(Rig.CurrentFilename(), "eve.shw");
}

TEST_F(RestTest, AShowFileThatCannotBeReadIsToldEachSecond) {
  Rig.Week({{"gone.shw", 4, "18:00:00", "19:00:00"}});
  Rig.Start();
  Rig.AllLines.clear();
  Rig.Run(10000);
  EXPECT_EQ(std::count(Rig.AllLines.begin(), Rig.AllLines.end(), "3 Cannot read show file: gone.shw"), 10);
}

}  // namespace
}  // namespace vex::test
