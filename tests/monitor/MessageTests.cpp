#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "tests/monitor/MonitorRig.h"

namespace vex::test {
namespace {

using Lines = std::vector<std::string>;

class MessageTest : public testing::Test {
 protected:
  MessageTest() {
    m_Rig.Show("eve.shw", {});
    m_Rig.Show("demand.shw", {});
  }
  MonitorRig m_Rig;
};

TEST_F(MessageTest, TypesThatNobodyKnowsAreIgnored) {
  m_Rig.Start();
  m_Rig.KnowTray();
  m_Rig.ForgetTray();
  const Lines before = m_Rig.AllLines;
  for (const int32_t lType : {0, 3, 4, 7, 10, 12, 50, 99}) m_Rig.Send(lType, "ON");
  EXPECT_EQ(m_Rig.AllLines, before);
  EXPECT_EQ(m_Rig.Tray(), Lines{});
  EXPECT_FALSE(m_Rig.Monitor->Unloaded());
}

TEST_F(MessageTest, AMessageOfNoBytesIsIgnored) {
  m_Rig.Start();
  const CopyData copy{3, 0, nullptr};
  m_Rig.Host.Windows().SendCopyData(0, m_Rig.Monitor->hWnd(), copy);
  m_Rig.Run(1);
  EXPECT_EQ(m_Rig.Log().back(), "1 Show Player initialized");
}

TEST_F(MessageTest, OtherWindowMessagesAreNoMessagesOfTheSuite) {
  m_Rig.Start();
  const CopyData copy{3, 3, "08"};
  m_Rig.Host.Windows().Send({m_Rig.Monitor->hWnd(), 75, 0, 0, &copy});
  m_Rig.Run(10);
  EXPECT_FALSE(m_Rig.Monitor->Unloaded());
}

TEST_F(MessageTest, WhatIsSentIsHandledOutsideTheSendersCall) {
  m_Rig.Start();
  m_Rig.Post(MessageShutdown);
  EXPECT_FALSE(m_Rig.Monitor->Unloaded());
  m_Rig.Run(1);
  EXPECT_TRUE(m_Rig.Monitor->Unloaded());
}

TEST_F(MessageTest, MessagesAreHandledInTheirOrderWithinOneTick) {
  m_Rig.Start();
  m_Rig.Lines.clear();
  m_Rig.Post(MessageNetworkLink, "ON");
  m_Rig.Post(MessageNetworkLink, "OFF");
  m_Rig.Post(MessageReloadSchedules);
  m_Rig.Post(MessageNetworkLink, "ON");
  m_Rig.Run(1);
  EXPECT_EQ(m_Rig.Calls("link o"), (Transcript{"link on", "link off", "link on"}));
  EXPECT_EQ(m_Rig.Log().back(), "1 Schedule loaded");
}

TEST_F(MessageTest, OnlyOnInCapitalsSwitchesTheLinkOn) {
  m_Rig.Start();
  for (const char* szText : {"ON", "on", "On", "", "ON ", "OFF"}) {
    m_Rig.Lines.clear();
    m_Rig.Send(MessageNetworkLink, szText);
    EXPECT_EQ(m_Rig.Calls("link"),
              (Transcript{"link 127.0.0.1 3737 3738", "link special yes",
                          std::string("link ") + (std::string(szText) == "ON" ? "on" : "off")}))
        << szText;
  }
}

TEST_F(MessageTest, AnErrorIsALineAndTheNextTickGoesOnBehindIt) {
  m_Rig.Start();
  m_Rig.Lights->FailLink = "no network";
  m_Rig.Post(MessageNetworkLink, "ON");
  m_Rig.Post(MessageReloadSchedules);
  m_Rig.Run(1);
  EXPECT_EQ(m_Rig.Log().back(), "3 tmrVexMsgQueue_Timer Error: no network");
  m_Rig.Run(1);
  EXPECT_EQ(m_Rig.Log().back(), "1 Schedule loaded");
}

TEST_F(MessageTest, ReloadingTakesTheSchedulesUp) {
  m_Rig.Start();
  m_Rig.Week({{"eve.shw", 4, "17:00:00", "22:00:00"}});
  m_Rig.Run(2000);
  EXPECT_EQ(m_Rig.CurrentFilename(), "");
  m_Rig.Send(MessageReloadSchedules);
  m_Rig.Run(1001);
  EXPECT_EQ(m_Rig.CurrentFilename(), "eve.shw");
}

TEST_F(MessageTest, AScheduleFileThatIsGoneMakesThatScheduleEmpty) {
  m_Rig.Week({{"eve.shw", 4, "17:00:00", "22:00:00"}});
  m_Rig.Start();
  m_Rig.Run(10);
  m_Rig.Host.Files().Remove("D:\\Data\\weeksched.qsc");
  m_Rig.Send(MessageReloadSchedules);
  EXPECT_EQ(m_Rig.Log().back(), "1 Schedule loaded");
  EXPECT_EQ(m_Rig.Monitor->GetCurrentShowEvent(At("20:00:00"))->Filename(), "");
}

TEST_F(MessageTest, AScheduleFileThatCannotBeReadMakesThatScheduleEmpty) {
  m_Rig.Week({{"eve.shw", 4, "17:00:00", "22:00:00"}});
  m_Rig.Start();
  m_Rig.Run(10);
  m_Rig.Host.Files().FailReads("D:\\Data\\weeksched.qsc");
  m_Rig.Send(MessageReloadSchedules);
  EXPECT_EQ(m_Rig.Log().back(), "1 Schedule loaded");
  EXPECT_EQ(m_Rig.Monitor->GetCurrentShowEvent(At("20:00:00"))->Filename(), "");
}

TEST_F(MessageTest, AWeekThatCannotBeParsedStaysAsItWasAndTheYearIsNotLoaded) {
  m_Rig.Week({{"eve.shw", 4, "17:00:00", "22:00:00"}});
  m_Rig.Start();
  m_Rig.Run(10);
  m_Rig.Host.Files().Put("D:\\Data\\weeksched.qsc", "((3600,2,(,0,eve.shw)))");
  m_Rig.Year({{"2026-12-24", {{"xmas.shw", 4, "17:00:00", "22:00:00"}}}});
  const size_t lines = m_Rig.Log().size();
  m_Rig.Send(MessageReloadSchedules);
  ASSERT_EQ(m_Rig.Log().size(), lines + 1);
  EXPECT_EQ(m_Rig.Log().back(), "3 tmrVexMsgQueue_Timer Error: Subscript out of range");
  EXPECT_EQ(m_Rig.Monitor->GetCurrentShowEvent(At("20:00:00"))->Filename(), "eve.shw");
}

TEST_F(MessageTest, AYearThatCannotBeParsedStaysAsItWasAndTheWeekIsNew) {
  m_Rig.Year({{"2026-12-24", {{"xmas.shw", 4, "20:00:00", "22:00:00"}}}});
  m_Rig.Start();
  m_Rig.Week({{"eve.shw", 4, "17:00:00", "22:00:00"}});
  m_Rig.Host.Files().Put("D:\\Data\\yearsched.qsc", "((2026-12,()))");
  m_Rig.Send(MessageReloadSchedules);
  EXPECT_EQ(m_Rig.Log().back(), "3 tmrVexMsgQueue_Timer Error: Unexpected date string format: 2026-12");
  EXPECT_EQ(m_Rig.Monitor->GetCurrentShowEvent(At("19:00:00"))->Filename(), "eve.shw");
  EXPECT_EQ(m_Rig.Monitor->GetCurrentShowEvent(At("21:00:00"))->Filename(), "xmas.shw");
}

TEST_F(MessageTest, ImmediateShutdownDropsTheRestOfTheQueue) {
  m_Rig.Start();
  m_Rig.Post(MessageShutdown);
  m_Rig.Post(MessageReloadSchedules);
  m_Rig.Run(10);
  const Lines log = m_Rig.Log();
  ASSERT_GE(log.size(), 2U);
  EXPECT_EQ(log[log.size() - 2], "1 Immediate shutdown requested");
  EXPECT_EQ(log.back(), "1 Show Player shutting down");
}

// Whatever comes in whatever order, the link is switched in the order of the messages and nothing is lost.
TEST(MessageOrder, IsKeptWhateverComes) {
  EXPECT_TRUE(rc::check([] {
    const auto types = *rc::gen::container<std::vector<int>>(rc::gen::element(0, 3, 5, 6, 7, 9, 10, 11, 42));
    const auto gaps = *rc::gen::container<std::vector<int>>(types.size(), rc::gen::inRange(0, 3));
    MonitorRig rig;
    rig.Start();
    rig.Lines.clear();
    Transcript expected;
    for (size_t i = 0; i < types.size(); ++i) {
      const bool boolOn = i % 3 == 0;
      if (types[i] == MessageNetworkLink) expected.push_back(boolOn ? "link on" : "link off");
      rig.Post(types[i], types[i] == MessageNetworkLink && boolOn ? "ON" : "");
      rig.Run(gaps[i]);
    }
    rig.Run(1);
    RC_ASSERT(rig.Calls("link o") == expected);
    const auto loads = std::count(rig.AllLines.begin(), rig.AllLines.end(), "1 Schedule loaded");
    RC_ASSERT(loads == 1 + std::count(types.begin(), types.end(), 5));
  }));
}

}  // namespace
}  // namespace vex::test
