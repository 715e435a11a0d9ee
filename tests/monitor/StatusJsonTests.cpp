#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/monitor/MonitorRig.h"

namespace vex::test {
namespace {

using nlohmann::json;

class StatusJsonTest : public testing::Test {
 protected:
  StatusJsonTest() {
    m_Rig.StatusFile = true;
    m_Rig.Library["tree"] = {};
    m_Rig.Library["carol"] = {};
    m_Rig.Library["carol"].Media = "D:\\carol.ogg";
    m_Rig.Show("eve.shw", {"", "tree", "carol", ""});
  }
  json Status() { return json::parse(m_Rig.Status()); }
  void PlayEve() {
    m_Rig.Week({{"eve.shw", 4, "17:00:00", "22:00:00"}});
    m_Rig.Start();
    m_Rig.Run(10);
  }

  MonitorRig m_Rig;
};

TEST_F(StatusJsonTest, IsThereOnceTheFormIsLoaded) {
  m_Rig.Load();
  m_Rig.Run(0);
  const json status = Status();
  EXPECT_EQ(status["pid"], 4711);
  EXPECT_EQ(status["started"], "2026-12-24 18:00:00");
  EXPECT_EQ(status["ready"], false);
  EXPECT_EQ(status["noSchedule"], false);
  EXPECT_EQ(status["shuttingDown"], false);
  EXPECT_EQ(status["link"], false);
}

TEST_F(StatusJsonTest, IsReadyAfterTheStartUpDelay) {
  m_Rig.Load();
  m_Rig.Run(3999);
  EXPECT_EQ(Status()["ready"], false);
  m_Rig.Run(1);
  EXPECT_EQ(Status()["ready"], true);
}

TEST_F(StatusJsonTest, TellsWhatPlaysThoughNoTrayIsKnown) {
  PlayEve();
  const json status = Status();
  EXPECT_EQ(status["current"], "(eve.shw,(T,2026-12-24 17:00:00,T,2026-12-24 22:00:00),0,F)");
  EXPECT_EQ(status["next"], "(,(T,2026-12-24 22:00:00,T,2026-12-31 17:00:00),0,F)");
  EXPECT_EQ(status["playing"],
            json::parse(R"([{"play":"Animation","file":"tree"},{"play":"Musical","file":"carol"}])"));
  EXPECT_EQ(status["media"], "D:\\carol.ogg");
  EXPECT_TRUE(status["lastError"].is_null());
}

TEST_F(StatusJsonTest, FollowsTheSequencesBetweenTwoHeartbeats) {
  m_Rig.Library["tree"].DurationMs = 300;
  m_Rig.Show("eve.shw", {"tree", "", "", ""});
  PlayEve();  // to 10 ms after a heartbeat
  EXPECT_EQ(Status()["playing"], json::parse(R"([{"play":"Startup","file":"tree"}])"));
  m_Rig.Run(300);
  EXPECT_EQ(Status()["playing"], json::array());
}

TEST_F(StatusJsonTest, MediaIsNullAgainWhenTheSongIsOver) {
  m_Rig.Show("eve.shw", {"carol", "", "", ""});
  PlayEve();
  EXPECT_EQ(Status()["media"], "D:\\carol.ogg");
  m_Rig.Run(1010);
  EXPECT_TRUE(Status()["media"].is_null());
  EXPECT_TRUE(Status()["playing"].empty());
}

TEST_F(StatusJsonTest, FollowsTheLink) {
  m_Rig.Start();
  m_Rig.Send(MessageNetworkLink, "ON");
  EXPECT_EQ(Status()["link"], true);
  m_Rig.Send(MessageNetworkLink, "OFF");
  EXPECT_EQ(Status()["link"], false);
}

TEST_F(StatusJsonTest, FollowsTheScheduleFreeMode) {
  m_Rig.CommandLine = "/noschedule";
  m_Rig.Start();
  EXPECT_EQ(Status()["noSchedule"], true);
  m_Rig.Send(MessageLeaveNoSchedule);
  EXPECT_EQ(Status()["noSchedule"], false);
}

TEST_F(StatusJsonTest, TellsTheLastFailure) {
  m_Rig.Start();
  m_Rig.Send(MessageShowOnDemand, "(gone.shw,(F,,F,),2,F)");
  EXPECT_EQ(Status()["lastError"]["text"], "Cannot read show file: gone.shw");
  EXPECT_EQ(Status()["lastError"]["time"], "2026-12-24 18:00:05");
  m_Rig.Monitor->LogMessage(2, "a warning is no failure", nullptr);
  m_Rig.Send(MessageShowOnDemand, "(");
  EXPECT_EQ(Status()["lastError"]["text"], "Show on demand error: Badly formatted list, enclosing parens");
}

TEST_F(StatusJsonTest, TellsThatTheShowShutsDown) {
  m_Rig.Library["end"] = {};
  m_Rig.Show("eve.shw", {"", "", "", "end"});
  PlayEve();
  m_Rig.Send(MessageGracefulShutdown);
  EXPECT_EQ(Status()["shuttingDown"], true);
  EXPECT_EQ(Status()["next"], "");
  EXPECT_EQ(Status()["current"], "(eve.shw,(T,2026-12-24 17:00:00,T,2026-12-24 22:00:00),0,T)");
}

TEST_F(StatusJsonTest, GoesWithTheForm) {
  PlayEve();
  m_Rig.Send(MessageShutdown);
  EXPECT_EQ(m_Rig.Status(), "none");
}

TEST_F(StatusJsonTest, IsLeftAloneWhileItSaysTheSame) {
  m_Rig.Show("eve.shw", {});
  PlayEve();
  m_Rig.Host.Files().Remove("C:\\run\\status.json");
  m_Rig.Run(20000);
  EXPECT_EQ(m_Rig.Status(), "none");
}

TEST_F(StatusJsonTest, AFolderThatCannotBeWrittenDoesNotDisturbTheShow) {
  m_Rig.Host.Files().FailWrites("C:\\run\\status.json");
  PlayEve();
  EXPECT_EQ(m_Rig.CurrentFilename(), "eve.shw");
  EXPECT_EQ(m_Rig.Status(), "none");
}

TEST_F(StatusJsonTest, ChangesNothingThatTheTrayHears) {
  const auto evening = [](bool boolStatusFile) {
    MonitorRig rig;
    rig.StatusFile = boolStatusFile;
    rig.Library["tree"] = {};
    rig.Show("eve.shw", {"", "tree", "", ""});
    rig.Week({{"eve.shw", 4, "18:00:10", "18:00:20"}});
    rig.Load();
    rig.KnowTray();
    rig.Run(30000);
    return rig.Tray();
  };
  EXPECT_EQ(evening(true), evening(false));
}

}  // namespace
}  // namespace vex::test
