#include "tray/truth/StateLight.h"

#include <gtest/gtest.h>

#include <chrono>

namespace vex::test {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

/// A show that plays a song with lights, everything seen; each case takes something away.
class Light : public testing::Test {
 protected:
  Light() {
    m_Facts.Now = seconds(1000);
    m_Facts.Wall = DateTime::FromParts(2026, 12, 24, 18, 0, 0);
    m_Facts.PlayerRuns = m_Facts.PlayerEverRan = true;
    m_Facts.Plays = true;
    m_Facts.LightsDue = seconds(900);
    m_Facts.Universes = {{1, seconds(1000)}, {2, seconds(1000)}};
    m_Facts.SongSince = seconds(990);
    m_Facts.SoundIsSeen = true;
    m_Facts.SoundMoved = seconds(1000);
    m_Facts.SoundPatience = seconds(3);
  }

  /// Time passes, with everything seen that is not held.
  void Pass(milliseconds time) {
    m_Facts.Now += time;
    m_Facts.Wall = m_Facts.Wall.PlusSeconds(std::chrono::duration_cast<seconds>(time).count());
    for (auto& universe : m_Facts.Universes) {
      if (universe.Number != m_Held) universe.Last = m_Facts.Now;
    }
    if (!m_SoundHeld) m_Facts.SoundMoved = m_Facts.Now;
  }
  LightColour Look() {
    m_Light.Look(m_Facts);
    return m_Light.Now().Colour;
  }
  std::string Why() {
    std::string szAll;
    for (const std::string& szWhy : m_Light.Now().Why()) szAll += (szAll.empty() ? "" : "; ") + szWhy;
    return szAll;
  }

  LightFacts m_Facts;
  StateLight m_Light;
  uint16_t m_Held = 0;
  bool m_SoundHeld = false;
};

TEST_F(Light, IsPlayingWhenAllIsSeen) {
  EXPECT_EQ(Look(), LightColour::Playing);
  EXPECT_EQ(Why(), "");
}

TEST_F(Light, IsOffWithoutAPlayer) {
  m_Facts = {};
  EXPECT_EQ(Look(), LightColour::Off);
  EXPECT_EQ(Why(), "");
}

TEST_F(Light, IsOffAfterAFarewell) {
  Look();
  m_Facts.PlayerRuns = m_Facts.Plays = false;
  m_Facts.Farewell = true;
  EXPECT_EQ(Look(), LightColour::Off);
}

TEST_F(Light, IsTroubleWhenThePlayerGoesWithoutAFarewell) {
  Look();
  m_Facts.PlayerRuns = m_Facts.Plays = false;
  EXPECT_EQ(Look(), LightColour::Trouble);
  EXPECT_EQ(Why(), "the player has gone without a farewell, since 2026-12-24 18:00:00");
  EXPECT_TRUE(m_Light.Now().Packets.Ok);
  EXPECT_TRUE(m_Light.Now().Sound.Ok);
}

TEST_F(Light, IsIdleWhenNothingPlays) {
  m_Facts.Plays = false;
  m_Facts.LightsDue.reset();
  m_Facts.SongSince.reset();
  m_Facts.Universes.clear();
  EXPECT_EQ(Look(), LightColour::Idle);
}

TEST_F(Light, IsTroubleWhenThePlayerDoesNotAnswer) {
  m_Facts.Answers = false;
  EXPECT_EQ(Look(), LightColour::Trouble);
  EXPECT_EQ(Why(), "the player runs and does not answer, since 2026-12-24 18:00:00");
}

TEST_F(Light, ErrorIsTroubleForHalfAMinute) {
  m_Facts.LastError = m_Facts.Now;
  m_Facts.ErrorText = "Cannot read show file: eve.shw";
  EXPECT_EQ(Look(), LightColour::Trouble);
  Pass(milliseconds(29'999));
  EXPECT_EQ(Look(), LightColour::Trouble);
  EXPECT_EQ(Why(), "the player says: Cannot read show file: eve.shw, since 2026-12-24 18:00:00");
  Pass(milliseconds(1));
  EXPECT_EQ(Look(), LightColour::Playing);
}

TEST_F(Light, OneUniverseThatIsMissingIsNamed) {
  Look();
  m_Held = 2;
  Pass(milliseconds(2499));
  EXPECT_EQ(Look(), LightColour::Playing);
  Pass(milliseconds(1));
  EXPECT_EQ(Look(), LightColour::Trouble);
  EXPECT_NE(Why().find("no packets are seen of universe 2, since 2026-12-24 "), std::string::npos);
  EXPECT_EQ(Why().find("universe 1"), std::string::npos);
  m_Held = 0;
  Pass(milliseconds(100));
  EXPECT_EQ(Look(), LightColour::Playing);
}

TEST_F(Light, SinceStaysWhileItIsMissing) {
  m_Held = 1;
  Pass(seconds(10));
  Look();
  const auto since = m_Light.Now().Packets.Since;
  EXPECT_EQ(since, DateTime::FromParts(2026, 12, 24, 18, 0, 0));
  Pass(seconds(60));
  Look();
  EXPECT_EQ(m_Light.Now().Packets.Since, since);
  EXPECT_EQ(m_Light.Now().Since, DateTime::FromParts(2026, 12, 24, 18, 0, 10));
}

TEST_F(Light, NoPacketAtAllHasItsPatience) {
  m_Facts.Universes.clear();
  m_Facts.LightsDue = m_Facts.Now;
  EXPECT_EQ(Look(), LightColour::Playing);
  Pass(milliseconds(2500));
  EXPECT_EQ(Look(), LightColour::Trouble);
  EXPECT_NE(Why().find("no lighting packet is seen"), std::string::npos);
}

TEST_F(Light, PacketsAreNotMissedBeforeTheyAreDue) {
  m_Facts.Universes.clear();
  m_Facts.LightsDue = m_Facts.Now + seconds(20);
  Pass(seconds(22));
  EXPECT_EQ(Look(), LightColour::Playing);
}

TEST_F(Light, PacketsOfASongWithoutLightsAreNotNeeded) {
  m_Facts.LightsDue.reset();
  m_Facts.Universes.clear();
  EXPECT_EQ(Look(), LightColour::Playing);
  EXPECT_FALSE(m_Light.Now().Packets.Needed);
}

TEST_F(Light, PacketsThatCannotBeWatchedAreTrouble) {
  m_Facts.PacketsTrouble = "the port is taken";
  EXPECT_EQ(Look(), LightColour::Trouble);
  m_Facts.PacketsCount = false;
  EXPECT_EQ(Look(), LightColour::Playing);
}

TEST_F(Light, SoundThatStandsIsTrouble) {
  Look();
  m_SoundHeld = true;
  Pass(milliseconds(2999));
  EXPECT_EQ(Look(), LightColour::Playing);
  Pass(milliseconds(1));
  EXPECT_EQ(Look(), LightColour::Trouble);
  EXPECT_NE(Why().find("the sound position stands still, since "), std::string::npos);
}

TEST_F(Light, SongThatHasJustBegunMayStand) {
  m_Facts.SoundMoved = Elapsed(0);
  m_Facts.SongSince = m_Facts.Now;
  EXPECT_EQ(Look(), LightColour::Playing);
}

TEST_F(Light, SoundIsNotNeededWithoutASong) {
  m_Facts.SongSince.reset();
  m_Facts.SoundMoved = Elapsed(0);
  EXPECT_EQ(Look(), LightColour::Playing);
}

TEST_F(Light, CausesAreShownApart) {
  m_Facts.Answers = false;
  m_Facts.Universes.clear();
  m_Facts.SoundMoved = seconds(991);
  Look();
  EXPECT_EQ(m_Light.Now().Why().size(), 3u);
  EXPECT_FALSE(m_Light.Now().Player.Ok);
  EXPECT_FALSE(m_Light.Now().Packets.Ok);
  EXPECT_FALSE(m_Light.Now().Sound.Ok);
}

TEST_F(Light, TellsWhenItsColourChanges) {
  EXPECT_TRUE(m_Light.Look(m_Facts));
  EXPECT_FALSE(m_Light.Look(m_Facts));
  m_Facts.Answers = false;
  EXPECT_TRUE(m_Light.Look(m_Facts));
  m_Facts.Universes.clear();
  EXPECT_FALSE(m_Light.Look(m_Facts));
}

}  // namespace
}  // namespace vex::test
