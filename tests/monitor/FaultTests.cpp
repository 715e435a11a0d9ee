#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/monitor/MonitorRig.h"

namespace vex::test {
namespace {

using Lines = std::vector<std::string>;

/// The host's windows with a channel that can misbehave.
class FaultyWindows : public Windows {
 public:
  explicit FaultyWindows(Windows& windows) : m_Windows(windows) {}

  WindowHandle NewMainWindow() override { return m_Windows.NewMainWindow(); }
  WindowHandle NewWindow() override { return m_Windows.NewWindow(); }
  void DestroyWindow(WindowHandle hWnd) override { m_Windows.DestroyWindow(hWnd); }
  WindowProcedureReference ExchangeProcedure(WindowHandle hWnd, WindowProcedureReference procedure) override {
    return m_Windows.ExchangeProcedure(hWnd, std::move(procedure));
  }
  intptr_t CallProcedure(const WindowProcedureReference& procedure, const WindowMessage& message) override {
    if (FailProcedure) throw std::runtime_error("procedure failed");
    return m_Windows.CallProcedure(procedure, message);
  }
  bool Exists(WindowHandle hWnd) const override { return m_Windows.Exists(hWnd); }
  SendResult SendCopyData(WindowHandle sender, WindowHandle target, const CopyData& copy) override {
    ++Sends;
    if (Sends == RaiseAtSend) throw std::runtime_error("send failed");
    if (Sends == TooLongAtSend) return SendResult::TooLong;
    if (Sends == GoneAtSend) return SendResult::Gone;
    return m_Windows.SendCopyData(sender, target, copy);
  }
  bool Unsent(WindowHandle) const override { return UnsentLooks > 0 && UnsentLooks-- > 0; }

  bool FailProcedure = false;
  int Sends = 0;
  int RaiseAtSend = 0;
  int TooLongAtSend = 0;
  int GoneAtSend = 0;
  mutable int UnsentLooks = 0;

 private:
  Windows& m_Windows;
};

class FaultTest : public testing::Test {
 protected:
  FaultTest() {
    m_Rig.Desktop = &m_Windows;
    m_Rig.Show("eve.shw", {});
    m_Rig.Show("late.shw", {});
    m_Rig.Week({{"eve.shw", 4, "18:00:10", "18:00:20"}, {"late.shw", 4, "18:00:25", "18:00:40"}});
  }

  ~FaultTest() override { m_Rig.Monitor.reset(); }  // before the windows it uses

  MonitorRig m_Rig;
  FaultyWindows m_Windows{m_Rig.Host.Windows()};
};

TEST_F(FaultTest, TheProgramWaitsALittleForWhatTheTrayHadNoRoomFor) {
  m_Rig.Make();
  m_Rig.Host.EventLoop().At(std::chrono::seconds(7), [this] {
    m_Rig.Post(MessageTrayWindow, "", m_Rig.TrayHwnd);
    m_Rig.Post(MessageShutdown);
    m_Windows.UnsentLooks = 5;
  });
  EXPECT_EQ(m_Rig.Monitor->Run(), 0);
  EXPECT_EQ(m_Windows.UnsentLooks, 0);
  EXPECT_EQ(m_Rig.Host.Clock().Elapsed(), std::chrono::milliseconds(7001 + 50));
}

TEST_F(FaultTest, ATrayThatTakesNothingDoesNotKeepTheProgram) {
  m_Rig.Make();
  m_Rig.Host.EventLoop().At(std::chrono::seconds(7), [this] {
    m_Rig.Post(MessageTrayWindow, "", m_Rig.TrayHwnd);
    m_Rig.Post(MessageShutdown);
    m_Windows.UnsentLooks = 1000000;
  });
  EXPECT_EQ(m_Rig.Monitor->Run(), 0);
  EXPECT_EQ(m_Rig.Host.Clock().Elapsed(), std::chrono::milliseconds(7001 + 500));
}

/// The shows of an evening as they were started, whatever went wrong on the way.
Lines StartedShows(const MonitorRig& rig) {
  Lines shows;
  for (const auto& szLine : rig.AllLines) {
    if (szLine.starts_with("1 Starting show: ")) shows.push_back(szLine.substr(17));
  }
  return shows;
}

const Lines BothShows{"eve.shw", "late.shw"};

// Each send of the evening fails once, in each way in which it can; both shows play all the same.
TEST_F(FaultTest, NoFailedSendKeepsAShowFromPlaying) {
  for (int send = 1; send <= 40; ++send) {
    for (int FaultyWindows::*fault :
         {&FaultyWindows::RaiseAtSend, &FaultyWindows::TooLongAtSend, &FaultyWindows::GoneAtSend}) {
      MonitorRig rig;
      FaultyWindows windows(rig.Host.Windows());
      windows.*fault = send;
      rig.Desktop = &windows;
      rig.Show("eve.shw", {});
      rig.Show("late.shw", {});
      rig.Week({{"eve.shw", 4, "18:00:10", "18:00:20"}, {"late.shw", 4, "18:00:25", "18:00:40"}});
      rig.Load();
      rig.KnowTray();
      rig.RunUntil("18:00:30");
      EXPECT_EQ(StartedShows(rig), BothShows) << send;
      rig.Monitor.reset();
    }
  }
}

// Each call of the registry fails once, from the first one of the load on.
TEST_F(FaultTest, NoFailedSettingKeepsTheProgramFromStarting) {
  for (int32_t call = 1; call <= 120; ++call) {
    MonitorRig rig;
    rig.Show("eve.shw", {});
    rig.Host.Registry().FailCall(call, RegistryAccessDenied);
    rig.Start();
    EXPECT_TRUE(rig.Monitor->Initialized()) << call;
    EXPECT_EQ(rig.Boxes(), Lines{}) << call;
  }
}

TEST_F(FaultTest, AReportThatIsTooLongEndsTheHeartbeatOnly) {
  m_Rig.Load();
  m_Rig.KnowTray();
  m_Rig.Host.Windows().LongestMessage(50);
  m_Rig.RunUntil("18:00:12");
  EXPECT_EQ(m_Rig.CurrentFilename(), "eve.shw");
  m_Rig.Host.Windows().LongestMessage(100000);
  m_Rig.ForgetTray();
  m_Rig.RunUntil("18:00:14");
  EXPECT_EQ(m_Rig.Tray(3).size(), 1U);
}

TEST_F(FaultTest, AGracefulShutdownThatFailsOnceIsAskedForAgain) {
  m_Rig.Host.Files().Put("D:\\Data\\eve.shw",
                         "((2,0,1,0,,),(2,0,1,0,,),(1,0,1,0,,),(2,0,1,0,,),,(2,0,1,0,,),,2,(3,Door,1,0),F)");
  m_Rig.Load();
  m_Rig.RunUntil("18:00:12");
  ASSERT_EQ(m_Rig.Calls("io registerTrigger").size(), 1U);
  m_Rig.Lights->FailClearTriggers = 2;
  m_Rig.Send(MessageGracefulShutdown);
  EXPECT_EQ(m_Rig.Log().back(), "3 tmrVexMsgQueue_Timer Error: triggers stuck");
  m_Rig.Run(100);
  EXPECT_EQ(m_Rig.Log().back(), "3 tmrUnloadGracefully_Timer Error: triggers stuck");
  m_Rig.Run(200);
  EXPECT_TRUE(m_Rig.Monitor->Unloaded());
}

TEST_F(FaultTest, AReportThatThePlayerAsksForNeverDisturbsIt) {
  m_Rig.StatusFile = true;
  m_Rig.Library["tree"] = {};
  m_Rig.Show("eve.shw", {"", "tree", "", ""});
  m_Rig.Load();
  m_Rig.KnowTray();
  m_Rig.RunUntil("18:00:09");
  m_Rig.Host.Windows().LongestMessage(50);
  m_Rig.RunUntil("18:00:11");
  EXPECT_TRUE(m_Rig.Logged("1 Starting Animation: tree"));
  EXPECT_NE(m_Rig.Status().find("is too long to be sent"), std::string::npos);
}

TEST_F(FaultTest, AShowFileThatFailsForAWhileIsPlayedWhenItCanBeReadAgain) {
  m_Rig.Host.Files().FailReads("D:\\Data\\eve.shw");
  m_Rig.Load();
  m_Rig.RunUntil("18:00:12");
  EXPECT_TRUE(m_Rig.Logged("3 Cannot read show file: eve.shw"));
  m_Rig.Host.Files().HealReads("D:\\Data\\eve.shw");
  m_Rig.RunUntil("18:00:15");
  EXPECT_EQ(m_Rig.CurrentFilename(), "eve.shw");
}

TEST_F(FaultTest, AProcedureThatFailsIsNoConcernOfTheQueue) {
  m_Rig.Start();
  m_Windows.FailProcedure = true;
  EXPECT_THROW(m_Rig.Post(MessageReloadSchedules), std::runtime_error);
  m_Windows.FailProcedure = false;
  m_Rig.Send(MessageReloadSchedules);
  EXPECT_EQ(m_Rig.Log().back(), "1 Schedule loaded");
}

/// A clock that fails when it is asked for the date.
class FailingClock : public Clock {
 public:
  explicit FailingClock(const Clock& clock) : m_Clock(clock) {}
  DateTime Now() const override {
    if (Fails) throw std::runtime_error("no time");
    return m_Clock.Now();
  }
  double SecondsOfDay() const override { return m_Clock.SecondsOfDay(); }
  std::string ShortTime() const override { return m_Clock.ShortTime(); }
  vex::Elapsed Elapsed() const override { return m_Clock.Elapsed(); }
  bool Fails = false;

 private:
  const Clock& m_Clock;
};

TEST_F(FaultTest, AHookHandlerThatFailsIsALine) {
  FailingClock clock(m_Rig.Host.Clock());
  m_Rig.Time = &clock;
  m_Rig.Start();
  clock.Fails = true;
  m_Rig.Post(MessageReloadSchedules);
  EXPECT_EQ(m_Rig.Log().back(), "3 m_FormHook_AfterMessage Error: no time");
  clock.Fails = false;
  m_Rig.KnowTray();
  EXPECT_TRUE(m_Rig.Tray(7)[0].ends_with("18:00: m_FormHook_AfterMessage Error: no time"));
  m_Rig.Monitor.reset();
}

}  // namespace
}  // namespace vex::test
