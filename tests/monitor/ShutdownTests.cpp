#include <gtest/gtest.h>

#include "tests/monitor/MonitorRig.h"

namespace vex::test {
namespace {

using Lines = std::vector<std::string>;

class ShutdownTest : public testing::Test {
 protected:
  ShutdownTest() {
    m_Rig.Library["end"] = {};
    m_Rig.Library["tree"] = {};
    m_Rig.Show("eve.shw", {"", "tree", "", "end"});
  }
  void StartShow() {
    m_Rig.Week({{"eve.shw", 4, "17:00:00", "22:00:00"}});
    m_Rig.Start();
    m_Rig.Run(500);
    ASSERT_EQ(m_Rig.CurrentFilename(), "eve.shw");
    m_Rig.AllLines.clear();
  }

  MonitorRig m_Rig;
};

TEST_F(ShutdownTest, GracefulWithoutAShowUnloadsAtOnceAndDropsTheRestOfTheQueue) {
  m_Rig.Start();
  m_Rig.AllLines.clear();
  m_Rig.Post(MessageGracefulShutdown);
  m_Rig.Post(MessageReloadSchedules);
  m_Rig.Run(100);
  EXPECT_EQ(m_Rig.Log(), (Lines{"1 Graceful shutdown requested", "1 Show Player shutting down"}));
  EXPECT_TRUE(m_Rig.Monitor->Unloaded());
  EXPECT_TRUE(m_Rig.Host.EventLoop().HasQuit());
}

TEST_F(ShutdownTest, GracefulWithAShowWaitsForItsShutdownSequences) {
  StartShow();
  m_Rig.Send(MessageGracefulShutdown);
  EXPECT_TRUE(m_Rig.Monitor->ShuttingDown());
  m_Rig.Run(900);
  EXPECT_FALSE(m_Rig.Monitor->Unloaded());
  EXPECT_TRUE(m_Rig.Logged("1 Starting Shutdown: end"));
  m_Rig.Run(300);
  EXPECT_TRUE(m_Rig.Monitor->Unloaded());
  const Lines log = m_Rig.Log();
  EXPECT_EQ(log[0], "1 Graceful shutdown requested");
  EXPECT_EQ(log[1], "1 Current show is entering shutdown mode");
  EXPECT_EQ(log[log.size() - 2], "1 Finished show: eve.shw");
  EXPECT_EQ(log.back(), "1 Show Player shutting down");
}

// The show ends about 1003 ms after the request; the form looks every 100 ms.
TEST_F(ShutdownTest, GracefulUnloadsOnTheFirstLookAfterTheShowHasEnded) {
  StartShow();
  m_Rig.Send(MessageGracefulShutdown);
  m_Rig.Run(1099);
  EXPECT_EQ(m_Rig.CurrentFilename(), "");
  EXPECT_FALSE(m_Rig.Monitor->Unloaded());
  m_Rig.Run(1);
  EXPECT_TRUE(m_Rig.Monitor->Unloaded());
}

TEST_F(ShutdownTest, WhileShuttingDownTheHeartbeatDoesNothing) {
  StartShow();
  m_Rig.Send(MessageGracefulShutdown);
  const int32_t lReads = m_Rig.Host.Files().Reads("D:\\Data\\eve.shw");
  m_Rig.Send(MessageShowOnDemand, "(eve.shw,(F,,F,),2,F)");
  m_Rig.Run(700);
  EXPECT_EQ(m_Rig.Host.Files().Reads("D:\\Data\\eve.shw"), lReads);
  m_Rig.Run(1000);
  EXPECT_TRUE(m_Rig.Monitor->Unloaded());
}

TEST_F(ShutdownTest, AGracefulRequestCanBeRepeated) {
  StartShow();
  m_Rig.Send(MessageGracefulShutdown);
  m_Rig.Run(500);
  m_Rig.Send(MessageGracefulShutdown);
  m_Rig.Run(600);
  EXPECT_TRUE(m_Rig.Monitor->Unloaded());
  EXPECT_EQ(std::count(m_Rig.AllLines.begin(), m_Rig.AllLines.end(), "1 Show Player shutting down"), 1);
}

TEST_F(ShutdownTest, ImmediateCutsAGracefulOneShort) {
  StartShow();
  m_Rig.Send(MessageGracefulShutdown);
  m_Rig.Run(100);
  m_Rig.Send(MessageShutdown);
  EXPECT_TRUE(m_Rig.Monitor->Unloaded());
}

TEST_F(ShutdownTest, ImmediateWorksDuringTheStartUpDelay) {
  m_Rig.Load();
  m_Rig.Send(MessageShutdown);
  EXPECT_TRUE(m_Rig.Monitor->Unloaded());
  m_Rig.Run(10000);
  EXPECT_FALSE(m_Rig.Logged("1 Show Player initialized"));
}

TEST_F(ShutdownTest, UnloadingReleasesThePlayerTheHookAndTheVideoWindow) {
  StartShow();
  const WindowHandle hWnd = m_Rig.Monitor->hWnd();
  m_Rig.Lines.clear();
  m_Rig.Send(MessageShutdown);
  EXPECT_EQ(m_Rig.Monitor->Player(), nullptr);
  EXPECT_FALSE(m_Rig.Host.Windows().Exists(hWnd));
  EXPECT_EQ(m_Rig.Calls("media stop"), Transcript{"media stop"});
  EXPECT_EQ(m_Rig.Lines.back(), "window unload");
  m_Rig.Run(10000);
  EXPECT_EQ(m_Rig.Lines.back(), "window unload");
}

TEST_F(ShutdownTest, UnloadingAgainDoesNothing) {
  m_Rig.Start();
  m_Rig.Monitor->Unload();
  m_Rig.AllLines.clear();
  m_Rig.Monitor->Unload();
  EXPECT_EQ(m_Rig.AllLines, Lines{});
}

TEST_F(ShutdownTest, ADeviceThatFailsWhileUnloadingDoesNotKeepTheForm) {
  StartShow();
  m_Rig.Lights->FailLink = "gone";
  m_Rig.Host.Windows().DestroyWindow(m_Rig.Monitor->hWnd());
  m_Rig.Monitor->RequestImmediateShutdown();
  EXPECT_TRUE(m_Rig.Monitor->Unloaded());
}

// The schedules are released before the player, so its last report finds nothing to tell.
TEST_F(ShutdownTest, WithSchedulesTheTrayHearsTheLineOfTheUnloadLast) {
  StartShow();
  m_Rig.KnowTray();
  m_Rig.ForgetTray();
  m_Rig.Send(MessageShutdown);
  EXPECT_EQ(m_Rig.Tray(),
            (Lines{"0718:00: Immediate shutdown requested", "0718:00: Show Player shutting down"}));
}

TEST_F(ShutdownTest, WithoutSchedulesTheTrayHearsThatTheShowHasGone) {
  m_Rig.CommandLine = "/noschedule";
  m_Rig.Start();
  m_Rig.Send(MessageShowOnDemand, "(eve.shw,(F,,F,),2,F)");
  m_Rig.Run(10);
  m_Rig.KnowTray();
  m_Rig.ForgetTray();
  m_Rig.Send(MessageShutdown);
  EXPECT_EQ(m_Rig.Tray(3), Lines{"(,(F,,F,),0,F)"});
  EXPECT_EQ(m_Rig.Tray(4), Lines{""});
}

TEST_F(ShutdownTest, TheProgramEndsWithStatusZero) {
  m_Rig.Make();
  m_Rig.Host.EventLoop().At(std::chrono::seconds(7), [this] { m_Rig.Post(MessageGracefulShutdown); });
  EXPECT_EQ(m_Rig.Monitor->Run(), 0);
  EXPECT_EQ(m_Rig.Host.Clock().Now(), At("18:00:07"));
}

}  // namespace
}  // namespace vex::test
