#include "tray/watch/TraySite.h"

#include <thread>

#include "tests/tray_watch/Evening.h"
#include "tray/watch/TrayRequests.h"

namespace vex::test {
namespace {

using nlohmann::json;

const DateTime Eve = DateTime::FromParts(2026, 12, 24, 18, 0, 0);

class Site : public testing::Test {
 protected:
  static LogLine Line(const std::string& szText, int64_t lCount = 1) {
    return {Eve, LogLine::LevelCourse, szText, lCount, Eve.PlusSeconds(lCount - 1)};
  }
  [[nodiscard]] json Lines(size_t most = 2000) { return json::parse(TheSite.Lines(most)); }
  [[nodiscard]] bool Healthy() {
    Why.clear();
    return TheSite.Healthy(Why);
  }
  static TrayState Of(LightColour colour) {
    TrayState state;
    state.Time = Eve;
    state.Light.Colour = colour;
    return state;
  }

  VirtualHost Host;
  std::vector<Action> Done;
  std::string Why;
  TraySite TheSite{Host, [this](const Action& action) {
                     Done.push_back(action);
                     return Outcome{true, "Asked."};
                   }};
};

TEST_F(Site, LinesHaveNumbersAndACountKeepsItsOwn) {
  EXPECT_EQ(TheSite.Put(Line("a")), 1u);
  EXPECT_EQ(TheSite.Put(Line("b")), 2u);
  const json again = json::parse(LineForPage(Line("b", 2), TheSite.Put(Line("b", 2))));
  EXPECT_EQ(again["number"], 2);
  EXPECT_EQ(again["count"], 2);
  EXPECT_EQ(again["last"], "2026-12-24 18:00:01");
  ASSERT_EQ(Lines().size(), 2u);
  EXPECT_EQ(Lines()[1], again);
}

TEST_F(Site, ALineOfTheLogThatWasCountedBeforeIsALineOfItsOwn) {
  (void)TheSite.Put(Line("a", 3));
  (void)TheSite.Put(Line("b", 7));
  EXPECT_EQ(Lines().size(), 2u);
}

TEST_F(Site, AMillionLinesTakeNoMoreRoomThanTwoThousand) {
  for (int i = 0; i < 1'000'000; ++i) (void)TheSite.Put(Line("line " + std::to_string(i)));
  const json lines = Lines(999'999);
  ASSERT_EQ(lines.size(), 2000u);
  EXPECT_EQ(lines.front()["text"], "line 998000");
  EXPECT_EQ(lines.back()["number"], 1'000'000);
  EXPECT_EQ(Lines(3).size(), 3u);
  EXPECT_EQ(Lines(3)[0]["text"], "line 999997");
  EXPECT_EQ(Lines(0).size(), 0u);
}

TEST_F(Site, HostileTextIsOneLineOfJson) {
  const std::string szText =
      "<img src=x onerror=alert(1)> \"quoted\" \\ \r\n18:00: not a line\x1b[2J\xff\xe2\x80\xae end";
  const std::string szJson = LineForPage(Line(szText), 1);
  EXPECT_EQ(szJson.find('\n'), std::string::npos);
  EXPECT_EQ(szJson.find('\x1b'), std::string::npos);
  const std::string szRead = json::parse(szJson)["text"];
  EXPECT_EQ(szRead.find("<img src=x onerror=alert(1)> \"quoted\" \\ \r\n18:00: not a line\x1b[2J"), 0u);
}

TEST_F(Site, IsHealthyWhilePlayingOrIdleAndTellsWhyNot) {
  TheSite.Put(Of(LightColour::Playing));
  EXPECT_TRUE(Healthy());
  TheSite.Put(Of(LightColour::Idle));
  EXPECT_TRUE(Healthy());
  TheSite.Put(Of(LightColour::Off));
  EXPECT_FALSE(Healthy());
  EXPECT_EQ(Why, "no player runs");
  TrayState trouble = Of(LightColour::Trouble);
  trouble.Light.Packets = {true, false, Eve, "no packets"};
  trouble.Light.Sound = {true, false, Eve, "no sound"};
  TheSite.Put(trouble);
  EXPECT_FALSE(Healthy());
  EXPECT_EQ(Why, "no packets; no sound");
}

TEST_F(Site, AStateOfLongAgoIsNoHealth) {
  TheSite.Put(Of(LightColour::Playing));
  Host.EventLoop().Advance(9'000);
  EXPECT_TRUE(Healthy());
  Host.EventLoop().Advance(2'000);
  EXPECT_FALSE(Healthy());
  EXPECT_EQ(Why, "vextray itself has not looked for a while");
  TheSite.Put(Of(LightColour::Playing));
  EXPECT_TRUE(Healthy());
}

TEST_F(Site, TheHistoryOfAYearIsGivenWholeAndChangesWithItsNewestShow) {
  HistoryShelf shelf;
  for (int day = 0; day < 365; ++day) {
    const DateTime time = Eve.PlusDays(day - 365);
    shelf.Add({HistoryEvent::What::Begin, time, "eve.shw"});
    for (int song = 0; song < 20; ++song)
      shelf.Add({HistoryEvent::What::Song, time.PlusSeconds(song * 180), "song.vexseq"});
    shelf.Add({HistoryEvent::What::End, time.PlusSeconds(14400), ""});
  }
  shelf.Add({HistoryEvent::What::Begin, Eve, "christmas.shw"});
  TheSite.Put(shelf);
  json all = json::parse(TheSite.History());
  ASSERT_EQ(all.size(), 366u);
  EXPECT_EQ(all[0]["songs"].size(), 20u);
  EXPECT_EQ(all[365]["to"], nullptr);
  shelf.Add({HistoryEvent::What::Error, Eve.PlusSeconds(5), "ERROR"});
  shelf.Add({HistoryEvent::What::Error, Eve.PlusSeconds(6), "ERROR"});
  TheSite.Put(shelf);
  all = json::parse(TheSite.History());
  EXPECT_EQ(all[365]["errors"][0]["count"], 2);
  shelf.Add({HistoryEvent::What::End, Eve.PlusSeconds(60), ""});
  shelf.Keep(100);
  TheSite.Put(shelf);
  all = json::parse(TheSite.History());
  ASSERT_EQ(all.size(), 100u);
  EXPECT_EQ(all[99]["to"], "2026-12-24 18:01:00");
}

TEST_F(Site, WhatIsAskedIsDoneOnTheLoopAndWaitedFor) {
  Outcome outcome;
  std::thread visitor([&] { outcome = TheSite.Do({Action::What::Reload, {}, 0}); });
  while (Done.empty()) Host.EventLoop().Pump();
  visitor.join();
  EXPECT_TRUE(outcome.Done);
  EXPECT_EQ(Done[0].Kind, Action::What::Reload);
}

TEST_F(Site, ALoopThatIsBusyIsToldAndNothingIsWaitedForAfterTheEnd) {
  const Outcome busy = TheSite.Do({Action::What::Reload, {}, 0});
  EXPECT_FALSE(busy.Done);
  EXPECT_NE(busy.Text.find("busy"), std::string::npos);
  TheSite.Close();
  EXPECT_FALSE(TheSite.Do({Action::What::Reload, {}, 0}).Done);
}

TEST_F(Site, StateAndMetricsTellTheSame) {
  TrayState state = Of(LightColour::Trouble);
  state.Light.Packets = {true, false, Eve, "no packets"};
  state.PlayerRuns = true;
  for (uint16_t universe = 1; universe <= 64; ++universe)
    state.Universes.push_back({universe, LightProtocol::Sacn, 40, 0.02, 400});
  state.Lines = 7;
  TheSite.Put(state);
  const json told = json::parse(TheSite.State());
  EXPECT_EQ(told["light"], "trouble");
  EXPECT_EQ(told["why"], json::array({"no packets"}));
  EXPECT_EQ(told["packets"]["universes"].size(), 64u);
  EXPECT_EQ(told["now"], nullptr);
  const std::string szMetrics = TheSite.Metrics();
  for (const char* szLine :
       {"vexmonitor_light{colour=\"trouble\"} 1\n", "vexmonitor_light{colour=\"playing\"} 0\n",
        "vexmonitor_cause_ok{cause=\"packets\"} 0\n", "vexmonitor_cause_ok{cause=\"sound\"} 1\n",
        "vexmonitor_universe_packets_total{universe=\"64\",protocol=\"sacn\"} 400\n",
        "vexmonitor_lines_total 7\n"})
    EXPECT_NE(szMetrics.find(szLine), std::string::npos) << szLine;
}

/// What the buttons become in the player's window.
TEST_F(Evening, ButtonsAreMessagesToThePlayer) {
  Begin();
  const auto ask = [this](Action action) { return AskPlayer(TheWatchman->Channel(), Host, action); };
  EXPECT_FALSE(ask({Action::What::Clear, {}, 0}).Done);
  EXPECT_EQ(ask({Action::What::Clear, {}, 0}).Text, "No player runs.");
  StartPlayer();
  Seconds(2);
  Asked.clear();
  EXPECT_TRUE(ask({Action::What::Clear, {}, 0}).Done);
  EXPECT_TRUE(ask({Action::What::Reload, {}, 0}).Done);
  EXPECT_TRUE(ask({Action::What::LinkOn, {}, 0}).Done);
  EXPECT_TRUE(ask({Action::What::LinkOff, {}, 0}).Done);
  EXPECT_TRUE(ask({Action::What::Stop, {}, 0}).Done);
  EXPECT_TRUE(ask({Action::What::Play, "F\xC3\xBCr Elise, (laut).shw", 0}).Done);
  EXPECT_TRUE(ask({Action::What::Play, "eve.shw", 90}).Done);
  EXPECT_EQ(Asked, (std::vector<std::string>{"09", "05", "06ON", "06OFF", "08",
                                             "09(F\xFCr Elise*S *Olaut*C.shw,(F,,F,),2,F)",
                                             "09(eve.shw,(F,,T,2026-12-24 18:01:32),2,F)"}));
}

TEST_F(Evening, AShowWhoseNameThePlayerCannotReadIsRefused) {
  Begin();
  StartPlayer();
  Seconds(2);
  Asked.clear();
  for (const std::string szShow : {"", "\xE2\x80\xAE.shw", "\xE4\xB8\xAD.shw", "\xff.shw"}) {
    const Outcome outcome = AskPlayer(TheWatchman->Channel(), Host, {Action::What::Play, szShow, 0});
    EXPECT_FALSE(outcome.Done) << szShow;
  }
  EXPECT_TRUE(Asked.empty());
}

TEST_F(Evening, ShowsAreThoseOfTheFolderAndOfTheSchedules) {
  Begin();
  for (int i = 0; i < 500; ++i) Host.Files().Put("Z:\\shows\\show" + std::to_string(i) + ".shw", "x");
  Host.Files().Put("Z:\\shows\\notes.txt", "x");
  Host.Files().Put("Z:\\shows\\weeksched.qsc", "((590400,2,(,0,scheduled.shw),504000))\r\n");
  const auto names = ShowNames(Host);
  EXPECT_EQ(names.size(), 501u);
  EXPECT_NE(std::ranges::find(names, "scheduled.shw"), names.end());
  EXPECT_NE(WeekPicture(Host).find("<svg"), std::string::npos);
}

TEST_F(Evening, AScheduleThatCannotBeReadLeavesTheShowsOfTheFolder) {
  Begin();
  Host.Files().Put("Z:\\shows\\a.shw", "x");
  Host.Files().Put("Z:\\shows\\weeksched.qsc", "((((nonsense\r\n");
  EXPECT_EQ(ShowNames(Host), std::vector<std::string>{"a.shw"});
}

}  // namespace
}  // namespace vex::test
