#include <gtest/gtest.h>

#include "player/ShowPlayer.h"
#include "show/Show.h"
#include "tests/monitor/MonitorRig.h"
#include "time/TimeRange.h"

namespace vex::test {
namespace {

using Lines = std::vector<std::string>;

class HeartbeatTest : public testing::Test {
 protected:
  HeartbeatTest() {
    m_Rig.Show("eve.shw", {});
    m_Rig.Show("xmas.shw", {});
    m_Rig.Show("demand.shw", {});
  }
  void WeekOfOneShow() { m_Rig.Week({{"eve.shw", 4, "18:00:10", "18:00:20"}}); }

  MonitorRig m_Rig;
};

TEST_F(HeartbeatTest, PlaysTheWeeklyShowFromItsStartToItsEnd) {
  WeekOfOneShow();
  m_Rig.Load();
  m_Rig.RunUntil("18:00:09");
  EXPECT_EQ(m_Rig.CurrentFilename(), "");
  m_Rig.RunUntil("18:00:10");
  m_Rig.Run(1);
  EXPECT_EQ(m_Rig.CurrentFilename(), "eve.shw");
  m_Rig.RunUntil("18:00:19");
  EXPECT_EQ(m_Rig.CurrentFilename(), "eve.shw");
  m_Rig.RunUntil("18:00:21");
  EXPECT_EQ(m_Rig.CurrentFilename(), "");
  EXPECT_TRUE(m_Rig.Logged("1 Finished show: eve.shw"));
}

TEST_F(HeartbeatTest, GivesThePlayerACopyOfTheEventInForce) {
  WeekOfOneShow();
  m_Rig.Load();
  m_Rig.RunUntil("18:00:11");
  const auto& monitoring = *m_Rig.Monitor->Player()->CurrentShow()->Monitoring();
  EXPECT_EQ(monitoring.Serialize(), "(eve.shw,(T,2026-12-24 18:00:10,T,2026-12-24 18:00:20),0,F)");
}

TEST_F(HeartbeatTest, ADatedShowComesBeforeTheWeeklyOne) {
  m_Rig.Week({{"eve.shw", 4, "17:00:00", "22:00:00"}});
  m_Rig.Year({{"2026-12-24", {{"xmas.shw", 4, "17:00:00", "22:00:00"}}}});
  m_Rig.Start();
  m_Rig.Run(2);
  EXPECT_EQ(m_Rig.CurrentFilename(), "xmas.shw");
}

TEST_F(HeartbeatTest, ADatedGapDoesNotHideTheWeeklyShow) {
  m_Rig.Week({{"eve.shw", 4, "17:00:00", "22:00:00"}});
  m_Rig.Year({{"2026-12-24", {{"xmas.shw", 4, "20:00:00", "22:00:00"}}}});
  m_Rig.Start();
  m_Rig.Run(2);
  EXPECT_EQ(m_Rig.CurrentFilename(), "eve.shw");
}

TEST_F(HeartbeatTest, WithoutSchedulesNeitherPlays) {
  m_Rig.CommandLine = "/noschedule";
  m_Rig.Week({{"eve.shw", 4, "17:00:00", "22:00:00"}});
  m_Rig.Year({{"2026-12-24", {{"xmas.shw", 4, "17:00:00", "22:00:00"}}}});
  m_Rig.Start();
  m_Rig.Run(2000);
  EXPECT_EQ(m_Rig.CurrentFilename(), "");
  m_Rig.Send(MessageLeaveNoSchedule);
  m_Rig.Run(1001);
  EXPECT_EQ(m_Rig.CurrentFilename(), "xmas.shw");
}

TEST_F(HeartbeatTest, AShowFileThatCannotBeReadIsLoggedAtEachTickAndNothingPlays) {
  m_Rig.Week({{"gone.shw", 4, "17:00:00", "22:00:00"}});
  m_Rig.Start();
  m_Rig.Run(2000);
  EXPECT_EQ(std::count(m_Rig.AllLines.begin(), m_Rig.AllLines.end(), "3 Cannot read show file: gone.shw"), 3);
  EXPECT_EQ(m_Rig.CurrentFilename(), "");
  m_Rig.Show("gone.shw", {});
  m_Rig.Run(1001);
  EXPECT_EQ(m_Rig.CurrentFilename(), "gone.shw");
}

TEST_F(HeartbeatTest, AShowThatLosesItsFileEnds) {
  m_Rig.Week({{"eve.shw", 4, "17:00:00", "22:00:00"}});
  m_Rig.Start();
  m_Rig.Run(2);
  ASSERT_EQ(m_Rig.CurrentFilename(), "eve.shw");
  m_Rig.Host.Files().Remove("D:\\Data\\eve.shw");
  m_Rig.Run(1010);
  EXPECT_EQ(m_Rig.CurrentFilename(), "");
  EXPECT_TRUE(m_Rig.Logged("1 Current show is entering shutdown mode"));
}

TEST_F(HeartbeatTest, AShowNameIsLookedForInTheCurrentFolderFirst) {
  m_Rig.Host.Files().Put("eve.shw", ShowFile{"", "here", "", ""}.Text());
  m_Rig.Week({{"eve.shw", 4, "17:00:00", "22:00:00"}});
  m_Rig.Start();
  m_Rig.Run(2);
  EXPECT_EQ(m_Rig.Calls("seq load"), Transcript{"seq load here"});
}

TEST_F(HeartbeatTest, AShowNameThatSaysItsPlaceIsLookedForThereAlone) {
  for (const char* szName : {"C:\\eve.shw", "\\eve.shw", "\\\\srv\\eve.shw"}) {
    MonitorRig rig;
    rig.Host.Files().Put(std::string("D:\\Data\\") + szName, ShowFile{}.Text());
    rig.Week({{szName, 4, "17:00:00", "22:00:00"}});
    rig.Start();
    EXPECT_TRUE(rig.Logged(std::string("3 Cannot read show file: ") + szName)) << szName;
    rig.Host.Files().Put(szName, ShowFile{}.Text());
    rig.Run(1001);
    EXPECT_EQ(rig.CurrentFilename(), szName);
  }
}

TEST_F(HeartbeatTest, AFileWithoutAShowEndsTheTickWithoutALineAndTheTimerGoesOn) {
  m_Rig.Week({{"eve.shw", 4, "17:00:00", "22:00:00"}});
  m_Rig.Host.Files().Put("D:\\Data\\eve.shw", "no list at all");
  m_Rig.StatusFile = true;
  m_Rig.Start();
  m_Rig.Run(1000);
  EXPECT_EQ(m_Rig.Log().back(), "1 Show Player initialized");
  EXPECT_NE(m_Rig.Status().find("\"text\":\"tmNextAction_Timer Error: Object variable not set\""),
            std::string::npos);
  EXPECT_NE(m_Rig.Status().find("\"current\":\"(eve.shw,"), std::string::npos);
  m_Rig.Show("eve.shw", {});
  m_Rig.Run(1001);
  EXPECT_EQ(m_Rig.CurrentFilename(), "eve.shw");
}

TEST_F(HeartbeatTest, AFileThatBreaksWhileItsShowPlaysLeavesThatShowPlaying) {
  m_Rig.Week({{"eve.shw", 4, "17:00:00", "22:00:00"}});
  m_Rig.Start();
  m_Rig.Run(2);
  m_Rig.Host.Files().Put("D:\\Data\\eve.shw", "((a),b),c)");
  m_Rig.Run(5000);
  EXPECT_EQ(m_Rig.CurrentFilename(), "eve.shw");
}

TEST_F(HeartbeatTest, AChangedFileStartsTheShowAnew) {
  m_Rig.Week({{"eve.shw", 4, "17:00:00", "22:00:00"}});
  m_Rig.Start();
  m_Rig.Run(2);
  m_Rig.Show("eve.shw", {"", "tree", "", ""});
  m_Rig.Run(1010);
  EXPECT_TRUE(m_Rig.Logged("1 Current show's contents have changed"));
  EXPECT_EQ(std::count(m_Rig.AllLines.begin(), m_Rig.AllLines.end(), "1 Starting show: eve.shw"), 2);
}

TEST_F(HeartbeatTest, AnUnchangedFileIsReadAtEachTickAndChangesNothing) {
  m_Rig.Week({{"eve.shw", 4, "17:00:00", "22:00:00"}});
  m_Rig.Start();
  m_Rig.Run(10000);
  EXPECT_EQ(m_Rig.Host.Files().Reads("D:\\Data\\eve.shw"), 11);
  EXPECT_EQ(std::count(m_Rig.AllLines.begin(), m_Rig.AllLines.end(), "1 Starting show: eve.shw"), 1);
}

TEST_F(HeartbeatTest, IdleTimeOverTheWeeksEndIsOneSpan) {
  WeekOfOneShow();
  m_Rig.Load();
  const auto event = m_Rig.Monitor->GetCurrentShowEvent(At("23:00:00", 27));
  EXPECT_EQ(event->Serialize(), "(,(T,2026-12-24 18:00:20,T,2026-12-31 18:00:10),0,F)");
}

TEST_F(HeartbeatTest, ADatedShowIsCutOffAtMidnight) {
  m_Rig.Year({{"2026-12-24", {{"xmas.shw", 4, "22:00:00", "02:00:00", 5}}}});
  m_Rig.Load();
  EXPECT_EQ(m_Rig.Monitor->GetCurrentShowEvent(At("23:59:59"))->Filename(), "xmas.shw");
  EXPECT_EQ(m_Rig.Monitor->GetCurrentShowEvent(At("00:00:00", 25))->Filename(), "");
}

TEST_F(HeartbeatTest, AClockThatIsSetBackChangesOnlyWhatIsInForce) {
  WeekOfOneShow();
  m_Rig.Load();
  m_Rig.RunUntil("18:00:12");
  m_Rig.Host.Clock().SetWallClock(At("17:00:00"));
  m_Rig.Run(1010);
  EXPECT_EQ(m_Rig.CurrentFilename(), "");
  EXPECT_TRUE(m_Rig.Logged("1 Finished show: eve.shw"));
}

}  // namespace
}  // namespace vex::test
