#include "tray/channel/TrayWindow.h"

#include <gtest/gtest.h>

#include <vector>

#include "host/virtual/VirtualHost.h"
#include "monitor/Msg.h"

namespace vex::test {
namespace {

/// A machine on which the test is the player: its main window gets what the tray sends.
class Tray : public testing::Test {
 protected:
  Tray() {
    m_Tray.Status = [this](const std::string& szText) { m_Heard.push_back("status " + szText); };
    m_Tray.CurrentShow = [this](const std::string& szText) { m_Heard.push_back("current " + szText); };
    m_Tray.NextShow = [this](const std::string& szText) { m_Heard.push_back("next " + szText); };
    m_Tray.Initialized = [this] { m_Heard.push_back("initialised"); };
    m_Tray.Player = [this](bool boolRuns) { m_Heard.push_back(boolRuns ? "came" : "went"); };
  }

  void StartPlayer() {
    m_Player = m_Host.Windows().NewMainWindow();
    auto procedure = std::make_shared<WindowProcedure>([this](const WindowMessage& message) {
      m_Got.push_back(CopyDataToString(message.Copy));
      m_TrayHandle = static_cast<WindowHandle>(message.wParam);
      if (m_Answers) Answer();
      return intptr_t{1};
    });
    m_Host.Windows().ExchangeProcedure(m_Player, procedure);
  }
  void EndPlayer() { m_Host.Windows().DestroyWindow(m_Player); }
  void Tell(int32_t lType, const std::string& szText) {
    SendVexMessage(m_Host.Windows(), m_Player, m_TrayHandle, lType, szText);
  }
  void Answer() {
    Tell(MessageNextShow, "");
    Tell(MessageCurrentShow, "");
  }

  VirtualHost m_Host;
  WindowHandle m_Player = 0;
  WindowHandle m_TrayHandle = 0;
  bool m_Answers = true;
  std::vector<std::string> m_Got;
  std::vector<std::string> m_Heard;
  TrayWindow m_Tray{m_Host};
};

using Texts = std::vector<std::string>;

TEST_F(Tray, RegistersWithThePlayerThatRuns) {
  StartPlayer();
  m_Tray.Begin();
  EXPECT_EQ(m_Got, Texts{"02"});
  EXPECT_EQ(m_Heard, (Texts{"came", "next ", "current "}));
  EXPECT_TRUE(m_Tray.PlayerRuns());
}

TEST_F(Tray, WaitsForAPlayer) {
  m_Tray.Begin();
  m_Host.EventLoop().Advance(60'000);
  EXPECT_TRUE(m_Heard.empty());
  StartPlayer();
  m_Host.EventLoop().Advance(1000);
  EXPECT_EQ(m_Got, Texts{"02"});
}

TEST_F(Tray, RegistersAgainWhenAnotherPlayerComes) {
  StartPlayer();
  m_Tray.Begin();
  EndPlayer();
  m_Host.EventLoop().Advance(1000);
  EXPECT_FALSE(m_Tray.PlayerRuns());
  StartPlayer();
  m_Host.EventLoop().Advance(1000);
  EXPECT_EQ(m_Got, (Texts{"02", "02"}));
  EXPECT_EQ(m_Heard, (Texts{"came", "next ", "current ", "went", "came", "next ", "current "}));
}

TEST_F(Tray, HandsOnWhatThePlayerSays) {
  StartPlayer();
  m_Tray.Begin();
  m_Heard.clear();
  Tell(MessageStatus, "18:00: a\r\n18:00: b");
  Tell(MessageInitialized, "");
  Tell(MessageCurrentShow, "(eve.shw,(F,,F,),0,F)");
  Tell(MessageNextShow, "");
  Tell(99, "x");
  EXPECT_EQ(m_Heard,
            (Texts{"status 18:00: a\r\n18:00: b", "initialised", "current (eve.shw,(F,,F,),0,F)", "next "}));
}

TEST_F(Tray, TakesItsPlaceBackEveryThirtySeconds) {
  StartPlayer();
  m_Tray.Begin();
  m_Host.EventLoop().Advance(91'000);
  EXPECT_EQ(m_Got.size(), 4u);
}

TEST_F(Tray, PlayerThatOwesAReportDoesNotAnswer) {
  StartPlayer();
  m_Tray.Begin();
  m_Answers = false;
  m_Host.EventLoop().Advance(34'900);
  EXPECT_TRUE(m_Tray.PlayerAnswers());
  m_Host.EventLoop().Advance(200);
  EXPECT_FALSE(m_Tray.PlayerAnswers());
  m_Host.EventLoop().Advance(60'000);
  EXPECT_FALSE(m_Tray.PlayerAnswers());
  Answer();
  EXPECT_TRUE(m_Tray.PlayerAnswers());
}

TEST_F(Tray, NewPlayerOwesNothingForTheOldOne) {
  StartPlayer();
  m_Answers = false;
  m_Tray.Begin();
  m_Host.EventLoop().Advance(6000);
  EXPECT_FALSE(m_Tray.PlayerAnswers());
  EndPlayer();
  m_Host.EventLoop().Advance(1000);
  EXPECT_TRUE(m_Tray.PlayerAnswers());
}

TEST_F(Tray, SendsWhatIsAskedOfThePlayer) {
  EXPECT_FALSE(m_Tray.Send(MessageReloadSchedules, ""));
  StartPlayer();
  m_Tray.Begin();
  EXPECT_TRUE(m_Tray.Send(MessageReloadSchedules, ""));
  EXPECT_EQ(m_Got.back(), "05");
}

}  // namespace
}  // namespace vex::test
