#include "tests/tray_watch/Evening.h"

namespace vex::test {
namespace {

TEST_F(Evening, WithoutAPlayerTheLightIsOff) {
  Begin();
  Seconds(5);
  EXPECT_EQ(State.Light.Colour, LightColour::Off);
  EXPECT_TRUE(State.Light.Why().empty());
  EXPECT_FALSE(State.PlayerRuns);
}

TEST_F(Evening, APlayerThatComesIsHeardAndItsFarewellIsNoTrouble) {
  Begin();
  Seconds(3);
  StartPlayer();
  Seconds(2);
  EXPECT_EQ(Asked.front(), "02");
  EXPECT_EQ(State.Light.Colour, LightColour::Idle);
  Tell("18:00: Show Player shutting down");
  EndPlayer();
  Seconds(2);
  EXPECT_EQ(State.Light.Colour, LightColour::Off);
  EXPECT_TRUE(Said("The player has ended"));
}

TEST_F(Evening, APlayerThatIsGoneWithoutAFarewellIsTroubleFromThen) {
  Options.OnTrouble = "ring";
  BeginBesideAPlayer();
  EndPlayer();
  Seconds(2);
  EXPECT_EQ(State.Light.Colour, LightColour::Trouble);
  ASSERT_EQ(State.Light.Why().size(), 1u);
  EXPECT_EQ(State.Light.Why()[0].find("the player has gone without a farewell, since 2026-12-24 18:00:0"),
            0u);
  EXPECT_EQ(State.Troubles, 1u);
}

/// A trigger may have any name, line ends included, and so make a line that looks like the player's own.
TEST_F(Evening, ALineThatLooksLikeAFarewellExcusesNoEndMinutesLater) {
  BeginBesideAPlayer();
  Tell("18:00: Trigger detected: x\r\n18:00: Show Player shutting down");
  Seconds(120);
  EndPlayer();
  Seconds(2);
  EXPECT_EQ(State.Light.Colour, LightColour::Trouble);
}

TEST_F(Evening, AShowPlaysOnlyWhileItsLightsAreSeen) {
  Options.Sound = SoundBy::Nothing;
  BeginBesideAPlayer();
  Says({"carol.vexseq"});
  Shine(5);
  EXPECT_EQ(State.Light.Colour, LightColour::Playing);
  ASSERT_EQ(State.Universes.size(), 1u);
  EXPECT_EQ(State.Universes[0].PerSecond, 10);
  Seconds(2);
  EXPECT_EQ(State.Light.Colour, LightColour::Playing) << "receivers wait for 2.5 seconds too";
  Seconds(1);
  EXPECT_EQ(State.Light.Colour, LightColour::Trouble);
  EXPECT_EQ(State.Light.Why()[0].find("no packets are seen of universe 1, since 2026-12-24 18:00:0"), 0u);
  Shine(1);
  EXPECT_EQ(State.Light.Colour, LightColour::Playing);
}

TEST_F(Evening, LightsThatNeverComeAreMissedFromWhenTheyWereDue) {
  BeginBesideAPlayer();
  Says({"carol.vexseq"});
  Seconds(3);
  EXPECT_EQ(State.Light.Colour, LightColour::Playing) << "the first light is due a second in";
  Seconds(2);
  EXPECT_EQ(State.Light.Colour, LightColour::Trouble);
  EXPECT_EQ(State.Light.Why()[0].find("no lighting packet is seen, since"), 0u);
}

TEST_F(Evening, LightsOfSomebodyElseAreNotTheShows) {
  BeginBesideAPlayer();
  Says({"carol.vexseq"});
  for (int i = 0; i < 60; ++i) {
    Light(200, 1, "Console");
    Host.EventLoop().Advance(100);
  }
  EXPECT_EQ(State.Light.Colour, LightColour::Trouble);
}

TEST_F(Evening, ASongThatStandsStillIsTrouble) {
  Options.Sound = SoundBy::Lights;
  BeginBesideAPlayer();
  Says({"carol.vexseq"}, "carol.ogg");
  Shine(40);
  EXPECT_EQ(State.Light.Colour, LightColour::Playing);
  EXPECT_TRUE(State.SoundMoves);
  for (int i = 0; i < 400; ++i) {
    Light(7);
    Host.EventLoop().Advance(100);
  }
  EXPECT_EQ(State.Light.Colour, LightColour::Trouble);
  EXPECT_EQ(State.Light.Why()[0].find("the sound position stands still, since 2026-12-24 18:00:4"), 0u);
}

TEST_F(Evening, ASoundCardThatStopsIsTroubleWithinSeconds) {
  const std::string szStatus = "Z:\\proc\\asound\\card0\\pcm0p\\sub0\\status";
  Host.Files().Put("Z:\\proc\\asound\\pcm", "00-00: Speaker : Speaker : playback 1\n");
  Options.Packets = false;
  BeginBesideAPlayer();
  Says({"carol.vexseq"}, "carol.ogg");
  for (int i = 0; i < 20; ++i) {
    Host.Files().Put(szStatus, "state: RUNNING\nhw_ptr      : " + std::to_string(48000 * i) + "\n");
    Seconds(1);
  }
  EXPECT_EQ(State.Light.Colour, LightColour::Playing);
  EXPECT_STREQ(State.SoundBy, "card");
  Seconds(4);
  EXPECT_EQ(State.Light.Colour, LightColour::Trouble);
  EXPECT_FALSE(State.SoundMoves);
}

TEST_F(Evening, TheCommandIsRunOnceAtTheBeginningAndOnceAtTheEnd) {
  Options.Sound = SoundBy::Nothing;
  Options.OnTrouble = "ring";
  BeginBesideAPlayer();
  Says({"carol.vexseq"});
  Shine(3);
  EXPECT_TRUE(Commands().empty());
  Seconds(60);
  ASSERT_EQ(Commands().size(), 1u) << "trouble that goes on is no new one";
  EXPECT_EQ(Commands()[0].find("ring begin 'no packets are seen of universe 1, since 2026-12-24 18:0"), 0u);
  Shine(60);
  EXPECT_EQ(Commands().size(), 2u);
  EXPECT_EQ(Commands()[1], "ring end ''");
}

TEST_F(Evening, ACauseIsOneArgumentWhateverStandsInIt) {
  Options.OnTrouble = "ring";
  BeginBesideAPlayer();
  Tell("18:00: Cannot read show file: '; rm -rf ~; echo $(id) `id` \\'\".shw");
  Seconds(1);
  ASSERT_EQ(Commands().size(), 1u);
  EXPECT_EQ(Commands()[0].find(
                "ring begin 'the player says: Cannot read show file: '\\''; rm -rf ~; echo $(id) `id` "
                "\\'\\''\".shw, since "),
            0u)
      << Commands()[0];
}

TEST_F(Evening, ACommandThatCannotBeStartedIsNotedAndTheWatchGoesOn) {
  Host.Processes().FailStarts(2);
  Options.OnTrouble = "ring";
  BeginBesideAPlayer();
  EndPlayer();
  Seconds(2);
  EXPECT_TRUE(Said("The command for trouble cannot be started: "));
  EXPECT_EQ(State.Light.Colour, LightColour::Trouble);
}

TEST_F(Evening, AnErrorLineIsTroubleForHalfAMinute) {
  BeginBesideAPlayer();
  Tell("18:00: Cannot read show file: eve.shw");
  Seconds(1);
  EXPECT_EQ(State.Light.Colour, LightColour::Trouble);
  EXPECT_EQ(State.Errors, 1u);
  Seconds(31);
  EXPECT_EQ(State.Light.Colour, LightColour::Idle);
}

TEST_F(Evening, AHeartbeatThatFailedWithoutALineIsNotedOnce) {
  BeginBesideAPlayer();
  Says({}, {}, "Timer Error: Overflow");
  Seconds(3);
  EXPECT_TRUE(Said("Timer Error: Overflow"));
  EXPECT_EQ(State.Errors, 1u);
  Says({}, "a.ogg", "Timer Error: Overflow");
  Seconds(3);
  EXPECT_EQ(State.Errors, 1u);
}

TEST_F(Evening, AHeartbeatThatFailedBeforeTheWatchBeganIsNoNews) {
  Host.EventLoop().Advance(3'600'000);
  BeginBesideAPlayer();
  Says({}, {}, "Timer Error: Overflow");
  Seconds(3);
  EXPECT_FALSE(Said("Timer Error: Overflow"));
  EXPECT_EQ(State.Light.Colour, LightColour::Idle);
}

TEST_F(Evening, SongsWithoutALoudspeakerAreAnErrorOfTheLog) {
  BeginBesideAPlayer();
  Says({}, {}, "No sound output can be opened: media play without sound");
  Seconds(3);
  EXPECT_TRUE(Said("No sound output can be opened: media play without sound"));
  EXPECT_EQ(Lines.back().Level, LogLine::LevelError);
  EXPECT_EQ(State.Light.Colour, LightColour::Idle);
}

TEST_F(Evening, AStatusFileThatIsNoneChangesNothing) {
  BeginBesideAPlayer();
  for (const char* szText : {"", "{", "[]", "{\"ready\":1}", "null"}) {
    Host.Files().Put(Host.PlayerFinder().StatusFile(), szText);
    Seconds(1);
    EXPECT_EQ(State.Light.Colour, LightColour::Idle) << szText;
  }
}

TEST_F(Evening, APlayerThatDoesNotAnswerIsTrouble) {
  BeginBesideAPlayer();
  Answers = false;
  Seconds(40);
  EXPECT_EQ(State.Light.Colour, LightColour::Trouble);
  EXPECT_EQ(State.Light.Why()[0].find("the player runs and does not answer"), 0u);
}

TEST_F(Evening, PicturesOfLightsComeAFewTimesASecondHoweverManyPackets) {
  BeginBesideAPlayer();
  Says({"carol.vexseq"});
  for (int i = 0; i < 2000; ++i) {
    Light(static_cast<uint8_t>(i));
    Host.EventLoop().Advance(1);
  }
  EXPECT_LE(Lights.size(), 20u);
  EXPECT_GE(Lights.size(), 6u);
}

TEST_F(Evening, TheHistoryIsToldOnlyWhenItHasChanged) {
  BeginBesideAPlayer();
  Tell("18:00: Starting show: eve.shw");
  Seconds(2);
  EXPECT_EQ(HistoryTold, 1);
  for (int i = 0; i < 50; ++i) {
    Tell("18:00: Checking sequences " + std::to_string(i));
    Seconds(1);
  }
  EXPECT_EQ(HistoryTold, 1);
  Tell("18:00: Starting Musical: carol.vexseq");
  Seconds(2);
  EXPECT_EQ(HistoryTold, 2);
}

TEST_F(Evening, WhoComesBackBeginsWithTheLastLinesOfTheLog) {
  BeginBesideAPlayer();
  for (int i = 0; i < 5000; ++i) Tell("18:00: line " + std::to_string(i));
  TheWatchman->End();
  TheWatchman.reset();
  Lines.clear();
  Begin();
  ASSERT_GT(Lines.size(), 200u);
  EXPECT_LT(Lines.size(), 1500u) << "not the whole log";
  EXPECT_TRUE(Said("line 4999"));
  EXPECT_EQ(Lines.back().Text, "A player has come");
}

TEST_F(Evening, ALogThatCannotBeWrittenIsToldAtTheBeginning) {
  Host.Files().FailWrites("Z:\\state\\vexmonitor\\log");
  try {
    Begin();
    FAIL() << "nothing is kept";
  } catch (const Error& error) {
    EXPECT_NE(error.Description.find("XDG_STATE_HOME"), std::string::npos) << error.Description;
  }
}

TEST_F(Evening, ADiskThatIsFullForAWhileCostsNoLine) {
  BeginBesideAPlayer();
  Host.Files().FailWrites("Z:\\state\\vexmonitor\\log", "No space left on device");
  for (int i = 0; i < 100; ++i) Tell("18:00: line " + std::to_string(i));
  Seconds(60);
  EXPECT_EQ(State.Light.Colour, LightColour::Idle) << "the watch goes on";
  Host.Files().HealWrites("Z:\\state\\vexmonitor\\log");
  Seconds(2);
  std::vector<std::string> kept;
  LogReader(Host.Files(), "Z:\\state\\vexmonitor\\log").Read([&](const LogLine& line) {
    kept.push_back(line.Text);
  });
  for (int i = 0; i < 100; ++i)
    EXPECT_NE(std::ranges::find(kept, "line " + std::to_string(i)), kept.end()) << i;
}

}  // namespace
}  // namespace vex::test
