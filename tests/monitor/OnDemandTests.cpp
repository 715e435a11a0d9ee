#include <gtest/gtest.h>

#include "tests/monitor/MonitorRig.h"

namespace vex::test {
namespace {

using Lines = std::vector<std::string>;

constexpr char Always[] = "(demand.shw,(F,,F,),2,F)";

class OnDemandTest : public testing::Test {
 protected:
  OnDemandTest() {
    m_Rig.Show("eve.shw", {});
    m_Rig.Show("demand.shw", {});
  }
  void WeekOfOneShow() { m_Rig.Week({{"eve.shw", 4, "17:00:00", "22:00:00"}}); }

  MonitorRig m_Rig;
};

TEST_F(OnDemandTest, TakesEffectWithoutWaitingForTheHeartbeat) {
  m_Rig.Start();
  m_Rig.Run(200);
  m_Rig.Send(MessageShowOnDemand, Always);
  m_Rig.Run(1);
  EXPECT_TRUE(m_Rig.Logged("1 Request for show on demand received: demand.shw"));
  EXPECT_EQ(m_Rig.CurrentFilename(), "demand.shw");
}

TEST_F(OnDemandTest, ComesBeforeTheSchedules) {
  WeekOfOneShow();
  m_Rig.Start();
  m_Rig.Send(MessageShowOnDemand, Always);
  m_Rig.Run(10);
  EXPECT_EQ(m_Rig.CurrentFilename(), "demand.shw");
}

TEST_F(OnDemandTest, WhoseRangeIsOverIsPassedOverAndTheSchedulesApplyAgain) {
  WeekOfOneShow();
  m_Rig.Start();
  m_Rig.Send(MessageShowOnDemand, "(demand.shw,(F,,T,2026-12-24 18:00:10),2,F)");
  m_Rig.RunUntil("18:00:09");
  EXPECT_EQ(m_Rig.CurrentFilename(), "demand.shw");
  m_Rig.RunUntil("18:00:12");
  EXPECT_EQ(m_Rig.CurrentFilename(), "eve.shw");
}

TEST_F(OnDemandTest, WhollyInTheFutureIsKeptUntilItsStart) {
  WeekOfOneShow();
  m_Rig.Start();
  m_Rig.Send(MessageShowOnDemand, "(demand.shw,(T,2026-12-24 18:00:10,F,),2,F)");
  EXPECT_TRUE(m_Rig.Logged("1 Request for show on demand received: demand.shw"));
  m_Rig.RunUntil("18:00:09");
  EXPECT_EQ(m_Rig.CurrentFilename(), "eve.shw");
  m_Rig.RunUntil("18:00:12");
  EXPECT_EQ(m_Rig.CurrentFilename(), "demand.shw");
}

TEST_F(OnDemandTest, TheStartCountsAndTheEndDoesNot) {
  m_Rig.Start();
  m_Rig.Send(MessageShowOnDemand, "(demand.shw,(T,2026-12-24 19:00:00,T,2026-12-24 20:00:00),2,F)");
  EXPECT_EQ(m_Rig.Monitor->GetCurrentShowEvent(At("18:59:59"))->Filename(), "");
  EXPECT_EQ(m_Rig.Monitor->GetCurrentShowEvent(At("19:00:00"))->Filename(), "demand.shw");
  EXPECT_EQ(m_Rig.Monitor->GetCurrentShowEvent(At("19:59:59"))->Filename(), "demand.shw");
  EXPECT_EQ(m_Rig.Monitor->GetCurrentShowEvent(At("20:00:00"))->Filename(), "");
}

TEST_F(OnDemandTest, AskedForTwiceChangesNothing) {
  m_Rig.Start();
  m_Rig.Send(MessageShowOnDemand, Always);
  m_Rig.Run(100);
  m_Rig.Send(MessageShowOnDemand, Always);
  m_Rig.Run(100);
  EXPECT_EQ(std::count(m_Rig.AllLines.begin(), m_Rig.AllLines.end(), "1 Starting show: demand.shw"), 1);
}

TEST_F(OnDemandTest, AnotherRequestReplacesTheFirst) {
  m_Rig.Start();
  m_Rig.Send(MessageShowOnDemand, Always);
  m_Rig.Run(10);
  m_Rig.Send(MessageShowOnDemand, "(eve.shw,(F,,F,),2,F)");
  m_Rig.Run(10);
  EXPECT_EQ(m_Rig.CurrentFilename(), "eve.shw");
}

TEST_F(OnDemandTest, AnEmptyTextClears) {
  m_Rig.Start();
  m_Rig.Send(MessageShowOnDemand, Always);
  m_Rig.Run(10);
  m_Rig.Send(MessageShowOnDemand, "");
  m_Rig.Run(10);
  EXPECT_EQ(m_Rig.CurrentFilename(), "");
  EXPECT_TRUE(m_Rig.Logged("1 Request to clear show on demand received"));
}

TEST_F(OnDemandTest, ARecordWithoutFileNameClears) {
  m_Rig.Start();
  m_Rig.Send(MessageShowOnDemand, Always);
  m_Rig.Send(MessageShowOnDemand, "(,(F,,F,),2,F)");
  m_Rig.Run(10);
  EXPECT_EQ(m_Rig.CurrentFilename(), "");
}

TEST_F(OnDemandTest, ClearingNothingIsLoggedToo) {
  m_Rig.Start();
  m_Rig.Send(MessageShowOnDemand, "");
  EXPECT_EQ(m_Rig.Log().back(), "1 Request to clear show on demand received");
}

TEST_F(OnDemandTest, DuringTheStartUpDelayItIsKeptForTheFirstHeartbeat) {
  m_Rig.Load();
  m_Rig.Run(1000);
  m_Rig.Send(MessageShowOnDemand, Always);
  m_Rig.RunUntil("18:00:04");
  EXPECT_EQ(m_Rig.CurrentFilename(), "");
  m_Rig.RunUntil("18:00:05");
  m_Rig.Run(2);
  EXPECT_EQ(m_Rig.CurrentFilename(), "demand.shw");
}

TEST_F(OnDemandTest, WithoutSchedulesClearingLeavesNoShow) {
  WeekOfOneShow();
  m_Rig.CommandLine = "/noschedule";
  m_Rig.Start();
  m_Rig.Send(MessageShowOnDemand, Always);
  m_Rig.Run(10);
  EXPECT_EQ(m_Rig.CurrentFilename(), "demand.shw");
  m_Rig.Send(MessageShowOnDemand, "");
  m_Rig.Run(3000);
  EXPECT_EQ(m_Rig.CurrentFilename(), "");
}

TEST_F(OnDemandTest, ATextThatIsNoRecordIsALineAndChangesNothing) {
  m_Rig.Start();
  m_Rig.Send(MessageShowOnDemand, Always);
  m_Rig.Run(10);
  m_Rig.Send(MessageShowOnDemand, "(demand.shw,(F,,F,),2)");
  EXPECT_EQ(m_Rig.Log().back(),
            "3 Show on demand error: Unexpected number of fields in serialized monitored show event: 3");
  m_Rig.Send(MessageShowOnDemand, "(eve.shw,(F,,F),2,F)");
  EXPECT_EQ(m_Rig.Log().back(),
            "3 Show on demand error: Unexpected number of fields in serialized time range: 3");
  m_Rig.Run(2000);
  EXPECT_EQ(m_Rig.CurrentFilename(), "demand.shw");
}

TEST_F(OnDemandTest, AFileThatCannotBeReadIsToldAtOnce) {
  m_Rig.Start();
  m_Rig.Send(MessageShowOnDemand, "(gone.shw,(F,,F,),2,F)");
  EXPECT_EQ(m_Rig.Log().back(), "3 Cannot read show file: gone.shw");
}

TEST_F(OnDemandTest, ARequestStartsTheHeartbeatsSecondAnew) {
  m_Rig.Start();
  m_Rig.Run(600);
  m_Rig.Send(MessageShowOnDemand, Always);  // handled at 601
  const int32_t lReads = m_Rig.Host.Files().Reads("D:\\Data\\demand.shw");
  m_Rig.Run(999);
  EXPECT_EQ(m_Rig.Host.Files().Reads("D:\\Data\\demand.shw"), lReads);
  m_Rig.Run(1);
  EXPECT_EQ(m_Rig.Host.Files().Reads("D:\\Data\\demand.shw"), lReads + 1);
}

}  // namespace
}  // namespace vex::test
