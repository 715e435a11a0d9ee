#include <gtest/gtest.h>

#include "player/SequencePlayInfo.h"
#include "tests/monitor/MonitorRig.h"

namespace vex::test {
namespace {

using Lines = std::vector<std::string>;

class LogTest : public testing::Test {
 protected:
  void Say(int32_t lLevel, const std::string& szText, const SequencePlayInfo* playInfo = nullptr) {
    m_Rig.Monitor->LogMessage(lLevel, szText, playInfo);
  }

  MonitorRig m_Rig;
};

TEST_F(LogTest, LinesBeforeTheTrayIsKnownArriveAsOneMessage) {
  m_Rig.Load();
  m_Rig.KnowTray();
  EXPECT_EQ(m_Rig.Tray(7), Lines{"18:00: Show Player starting\r\n18:00: Schedule loaded"});
}

TEST_F(LogTest, LaterLinesArriveOneByOneBehindThem) {
  m_Rig.Load();
  m_Rig.KnowTray();
  m_Rig.ForgetTray();
  Say(1, "one");
  Say(3, "two");
  EXPECT_EQ(m_Rig.Tray(), (Lines{"0718:00: one", "0718:00: two"}));
}

TEST_F(LogTest, ALineCarriesTheTimeOfDay) {
  m_Rig.Load();
  m_Rig.KnowTray();
  m_Rig.ForgetTray();
  m_Rig.Host.Clock().SetWallClock(At("07:05:59"));
  Say(1, "early");
  EXPECT_EQ(m_Rig.Tray(7), Lines{"07:05: early"});
}

TEST_F(LogTest, AnEmptyTextLogsNothing) {
  m_Rig.Load();
  m_Rig.KnowTray();
  m_Rig.ForgetTray();
  Say(3, "");
  EXPECT_EQ(m_Rig.Tray(), Lines{});
}

TEST_F(LogTest, LinesOfLevelZeroAndBelowAreNeverSentNorKept) {
  m_Rig.Load();
  Say(0, "detail");
  Say(-1, "less");
  m_Rig.KnowTray();
  Say(0, "detail");
  Say(-1, "less");
  EXPECT_EQ(m_Rig.Tray(7), Lines{"18:00: Show Player starting\r\n18:00: Schedule loaded"});
  EXPECT_TRUE(m_Rig.Logged("0 detail"));
}

TEST_F(LogTest, ALineAboutASequenceNamesItsPhaseAndFile) {
  m_Rig.Load();
  m_Rig.KnowTray();
  m_Rig.ForgetTray();
  SequenceSurroundings surroundings{*m_Rig.Monitor, nullptr, nullptr, m_Rig.Host.Processes()};
  SequencePlayInfo sequence(surroundings);
  sequence.Filename("carol.vexseq");
  sequence.PlayType(PlayMusical);
  Say(1, "Starting", &sequence);
  sequence.PlayType(11);
  Say(1, "Ending", &sequence);
  EXPECT_EQ(m_Rig.Tray(7),
            (Lines{"18:00: Starting Musical: carol.vexseq", "18:00: Ending (11): carol.vexseq"}));
}

TEST_F(LogTest, ABufferThatOverflowsArrivesFromAWholeLineOn) {
  m_Rig.Load();
  for (int i = 0; i < 700; ++i) Say(1, std::string(93, 'x') + std::to_string(100 + i));
  m_Rig.KnowTray();
  ASSERT_EQ(m_Rig.Tray(7).size(), 1U);
  const std::string szBlock = m_Rig.Tray(7)[0];
  EXPECT_LT(szBlock.size(), 60000U);
  EXPECT_TRUE(szBlock.starts_with("18:00: xxx"));
  EXPECT_TRUE(szBlock.ends_with("799"));
}

TEST_F(LogTest, WhereTheTraysWindowIsGoneThatLineIsTheFirstOneKept) {
  m_Rig.Load();
  m_Rig.KnowTray();
  m_Rig.ForgetTray();
  m_Rig.Host.Windows().DestroyWindow(m_Rig.TrayHwnd);
  Say(1, "lost?");
  Say(1, "later");
  m_Rig.Host.Windows().NewForeignWindow(m_Rig.TrayHwnd);
  m_Rig.KnowTray();
  EXPECT_EQ(m_Rig.Tray(7), Lines{"18:00: lost?\r\n18:00: later"});
}

TEST_F(LogTest, AFlushThatFailsKeepsItsLines) {
  m_Rig.Load();
  m_Rig.Host.Windows().Answer(m_Rig.TrayHwnd, SendResult::Gone);
  m_Rig.KnowTray();
  Say(1, "more");
  m_Rig.Host.Windows().Answer(m_Rig.TrayHwnd, SendResult::Sent);
  m_Rig.KnowTray();
  EXPECT_EQ(m_Rig.Tray(7), Lines{"18:00: Show Player starting\r\n18:00: Schedule loaded\r\n18:00: more"});
}

TEST_F(LogTest, ALineThatIsTooLongIsLostAndNothingElse) {
  m_Rig.Load();
  m_Rig.KnowTray();
  m_Rig.ForgetTray();
  m_Rig.Host.Windows().LongestMessage(100);
  Say(1, std::string(200, 'x'));
  Say(1, "short");
  EXPECT_EQ(m_Rig.Tray(7), Lines{"18:00: short"});
}

TEST_F(LogTest, AnotherTrayGetsWhatComesFromThenOn) {
  m_Rig.Load();
  m_Rig.KnowTray();
  const WindowHandle other = m_Rig.Host.Windows().NewForeignWindow();
  m_Rig.Send(MessageTrayWindow, "", other);
  m_Rig.ForgetTray();
  Say(1, "to the other");
  EXPECT_EQ(m_Rig.Tray(), Lines{});
  EXPECT_EQ(m_Rig.Host.Windows().Received(other).back().Bytes, std::string("0718:00: to the other\0", 22));
}

TEST_F(LogTest, TheInitialisedNoticeIsSentOnceWhenTheTrayIsKnownFirst) {
  m_Rig.Load();
  m_Rig.KnowTray();
  m_Rig.RunUntil("18:00:04");
  EXPECT_EQ(m_Rig.Tray(10), Lines{});
  m_Rig.RunUntil("18:00:05");
  EXPECT_EQ(m_Rig.Tray(10), Lines{""});
  m_Rig.Run(5000);
  EXPECT_EQ(m_Rig.Tray(10), Lines{""});
}

TEST_F(LogTest, TheInitialisedNoticeIsSentOnceWhenTheTrayComesLater) {
  m_Rig.Start();
  m_Rig.Run(2500);
  m_Rig.KnowTray();
  EXPECT_EQ(m_Rig.Tray()[0].substr(0, 2), "07");
  EXPECT_EQ(m_Rig.Tray()[1], "10");
  const WindowHandle other = m_Rig.Host.Windows().NewForeignWindow();
  m_Rig.Send(MessageTrayWindow, "", other);
  m_Rig.Run(2000);
  for (const auto& message : m_Rig.Host.Windows().Received(other)) {
    EXPECT_NE(message.Bytes.substr(0, 2), "10");
  }
}

TEST_F(LogTest, ATraysSecondIntroductionSendsOnlyTheReport) {
  m_Rig.Start();
  m_Rig.KnowTray();
  m_Rig.ForgetTray();
  m_Rig.KnowTray();
  EXPECT_EQ(m_Rig.Tray().size(), 2U);
  EXPECT_EQ(m_Rig.Tray()[0].substr(0, 2), "04");
  EXPECT_EQ(m_Rig.Tray()[1].substr(0, 2), "03");
}

class ReportTest : public testing::Test {
 protected:
  ReportTest() {
    for (const char* szName : {"eve.shw", "late.shw", "xmas.shw", "demand.shw"}) m_Rig.Show(szName, {});
    m_Rig.Week({{"eve.shw", 4, "18:00:10", "18:00:20"}, {"late.shw", 4, "18:00:30", "18:00:40"}});
  }
  MonitorRig m_Rig;
};

constexpr char Gap[] = "(,(T,2026-12-17 18:00:40,T,2026-12-24 18:00:10),0,F)";
constexpr char Eve[] = "(eve.shw,(T,2026-12-24 18:00:10,T,2026-12-24 18:00:20),0,F)";
constexpr char EveShutting[] = "(eve.shw,(T,2026-12-24 18:00:10,T,2026-12-24 18:00:20),0,T)";
constexpr char Between[] = "(,(T,2026-12-24 18:00:20,T,2026-12-24 18:00:30),0,F)";

TEST_F(ReportTest, NextComesBeforeCurrent) {
  m_Rig.Load();
  m_Rig.KnowTray();
  EXPECT_EQ(m_Rig.Tray()[1], std::string("04") + Eve);
  EXPECT_EQ(m_Rig.Tray()[2], std::string("03") + Gap);
}

TEST_F(ReportTest, WithNothingChangedTheHeartbeatSendsNothing) {
  m_Rig.Start();
  m_Rig.KnowTray();
  m_Rig.ForgetTray();
  m_Rig.RunUntil("18:00:09");
  EXPECT_EQ(m_Rig.Tray(), Lines{});
}

TEST_F(ReportTest, AnIntroductionAlwaysBringsAFullReport) {
  m_Rig.Start();
  m_Rig.KnowTray();
  m_Rig.ForgetTray();
  m_Rig.KnowTray();
  EXPECT_EQ(m_Rig.Tray(), (Lines{std::string("04") + Eve, std::string("03") + Gap}));
}

// The show is handed over at 18:00:10 and reported by the same heartbeat as in force; the player takes it
// up a millisecond later, which changes nothing that is reported.
TEST_F(ReportTest, AShowIsReportedWhenItStartsWhileItShutsDownAndWhenItHasEnded) {
  m_Rig.Start();
  m_Rig.KnowTray();
  m_Rig.ForgetTray();
  m_Rig.RunUntil("18:00:21");
  EXPECT_EQ(m_Rig.Tray(4),
            (Lines{Between, Between, "(late.shw,(T,2026-12-24 18:00:30,T,2026-12-24 18:00:40),0,F)"}));
  EXPECT_EQ(m_Rig.Tray(3), (Lines{Eve, EveShutting, Between}));
}

TEST_F(ReportTest, NothingIsSentWhileTheTrayIsUnknown) {
  m_Rig.Start();
  m_Rig.Monitor->ReportShowsToTray(true);
  EXPECT_EQ(m_Rig.Tray(), Lines{});
}

TEST_F(ReportTest, AReportThatFoundNoWindowIsNotRemembered) {
  m_Rig.Start();
  m_Rig.KnowTray();
  m_Rig.ForgetTray();
  m_Rig.Host.Windows().Answer(m_Rig.TrayHwnd, SendResult::Gone);
  m_Rig.RunUntil("18:00:11");
  m_Rig.Host.Windows().Answer(m_Rig.TrayHwnd, SendResult::Sent);
  m_Rig.RunUntil("18:00:15");
  EXPECT_EQ(m_Rig.Tray(), Lines{});  // the tray is unknown until it comes again
  m_Rig.KnowTray();
  EXPECT_EQ(m_Rig.Tray(3), Lines{Eve});
}

TEST_F(ReportTest, WhileShuttingDownNothingIsNext) {
  m_Rig.Library["end"] = {};
  m_Rig.Show("eve.shw", {"", "", "", "end"});
  m_Rig.Start();
  m_Rig.KnowTray();
  m_Rig.RunUntil("18:00:12");
  m_Rig.ForgetTray();
  m_Rig.Send(MessageGracefulShutdown);
  // The player reports before it marks the event, the form afterwards.
  EXPECT_EQ(m_Rig.Tray(4), (Lines{"", ""}));
  EXPECT_EQ(m_Rig.Tray(3), (Lines{Eve, EveShutting}));
}

TEST_F(ReportTest, ADatedShowThatInterruptsIsNext) {
  m_Rig.Year({{"2026-12-24", {{"xmas.shw", 4, "18:00:15", "18:00:18"}}}});
  m_Rig.Load();
  m_Rig.KnowTray();
  m_Rig.RunUntil("18:00:12");
  EXPECT_EQ(m_Rig.Tray(4).back(), "(xmas.shw,(T,2026-12-24 18:00:15,T,2026-12-24 18:00:18),1,F)");
}

TEST_F(ReportTest, AShowOnDemandIsFollowedByWhatIsInForceAtItsEnd) {
  m_Rig.Start();
  m_Rig.KnowTray();
  m_Rig.Send(MessageShowOnDemand, "(demand.shw,(F,,T,2026-12-24 18:00:15),2,F)");
  m_Rig.Run(10);
  EXPECT_EQ(m_Rig.Tray(3).back(), "(demand.shw,(F,,T,2026-12-24 18:00:15),2,F)");
  EXPECT_EQ(m_Rig.Tray(4).back(), Eve);
}

TEST_F(ReportTest, AShowOnDemandWithoutEndIsFollowedByNothing) {
  m_Rig.Start();
  m_Rig.KnowTray();
  m_Rig.Send(MessageShowOnDemand, "(demand.shw,(F,,F,),2,F)");
  m_Rig.Run(10);
  EXPECT_EQ(m_Rig.Tray(4).back(), "");
}

TEST_F(ReportTest, WithoutSchedulesAnEmptyEventIsCurrentAndNothingNext) {
  m_Rig.CommandLine = "/noschedule";
  m_Rig.Start();
  m_Rig.KnowTray();
  EXPECT_EQ(m_Rig.Tray(3), Lines{"(,(F,,F,),0,F)"});
  EXPECT_EQ(m_Rig.Tray(4), Lines{""});
}

}  // namespace
}  // namespace vex::test
