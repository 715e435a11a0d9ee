#include "components/recorded/RecordedMediaPlayer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "basic/Error.h"
#include "components/recorded/RecordedMediaWindow.h"
#include "tests/recorded/RecordingRig.h"

namespace vex {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

class RecordedMediaPlayerTest : public testing::Test {
 protected:
  RecordedMediaPlayerTest() {
    Facts.Length = milliseconds(1500);
    Player.OpenStateChange = [this](int32_t lState) { Events.push_back("open " + std::to_string(lState)); };
    Player.ErrorEvent = [this] { Events.push_back("error in " + std::to_string(Player.PlayState())); };
  }
  void Load(const std::string& szPath = "C:\\songs\\carol.ogg") {
    Player.CurrentMedia(Player.NewMedia(szPath));
  }
  void Start() {
    Load();
    Player.Play();
    Rig.Host.EventLoop().Pump();
  }

  RecordingRig Rig;
  MediaFacts Facts;
  std::vector<std::string> Events;
  RecordedMediaPlayer Player{Rig.Host.Clock(), Rig.Host.EventLoop(), Rig.Recording,
                             [](const std::string& szPath) { return szPath.substr(szPath.rfind('\\') + 1); },
                             [this](const std::string&) { return Facts; }};
};

TEST_F(RecordedMediaPlayerTest, PlaysFromTheCallToTheMillisecondOfItsEnd) {
  Start();
  EXPECT_EQ(Player.PlayState(), MediaPlayer::StatePlaying);
  Rig.Advance(1499);
  EXPECT_EQ(Player.PlayState(), MediaPlayer::StatePlaying);
  EXPECT_DOUBLE_EQ(Player.CurrentPosition(), 1.499);
  Rig.Advance(1);
  EXPECT_EQ(Player.PlayState(), MediaPlayer::StateStopped);
  EXPECT_DOUBLE_EQ(Player.CurrentPosition(), 0);
  EXPECT_THAT(Rig.Lines,
              ElementsAre(R"({"kind":"media","call":"open","file":"carol.ogg"})",
                          R"({"kind":"media","call":"play"})", R"({"kind":"media","call":"ended"})"));
}

TEST_F(RecordedMediaPlayerTest, TellsTheMediaTypeOnceItIsOpen) {
  Facts.MediaType = "video";
  Load();
  Player.Play();
  EXPECT_EQ(Player.CurrentMedia()->GetItemInfo("MediaType"), "");
  EXPECT_THAT(Events, IsEmpty()) << "a player tells what happened after the call";
  Rig.Host.EventLoop().Pump();
  EXPECT_THAT(Events, ElementsAre("open 13"));
  EXPECT_EQ(Player.CurrentMedia()->GetItemInfo("MediaType"), "video");
  EXPECT_EQ(Player.CurrentMedia()->GetItemInfo("Title"), "");
}

TEST_F(RecordedMediaPlayerTest, StopsWhenToldAndIsToldAsOftenAsAsked) {
  Start();
  Player.Stop();
  Player.Stop();
  EXPECT_EQ(Player.PlayState(), MediaPlayer::StateStopped);
  Rig.Advance(5000);
  EXPECT_THAT(Rig.Lines, ElementsAre(R"({"kind":"media","call":"open","file":"carol.ogg"})",
                                     R"({"kind":"media","call":"play"})", R"({"kind":"media","call":"stop"})",
                                     R"({"kind":"media","call":"stop"})"));
}

TEST_F(RecordedMediaPlayerTest, MediaWithoutALengthLastUntilTheyAreStopped) {
  Facts.Length.reset();
  Start();
  Rig.Advance(100'000'000);
  EXPECT_EQ(Player.PlayState(), MediaPlayer::StatePlaying);
  EXPECT_TRUE(Player.NextStateChange().IsNever());
}

TEST_F(RecordedMediaPlayerTest, GoesOnFromThePositionThatIsSet) {
  Start();
  Rig.Advance(100);
  Player.CurrentPosition(1.2);
  EXPECT_DOUBLE_EQ(Player.CurrentPosition(), 1.2);
  Rig.Advance(299);
  EXPECT_EQ(Player.PlayState(), MediaPlayer::StatePlaying);
  Rig.Advance(1);
  EXPECT_EQ(Player.PlayState(), MediaPlayer::StateStopped);
}

TEST_F(RecordedMediaPlayerTest, ASecondPlayChangesNothing) {
  Start();
  Rig.Advance(700);
  Player.Play();
  EXPECT_DOUBLE_EQ(Player.CurrentPosition(), 0.7);
}

TEST_F(RecordedMediaPlayerTest, OtherMediaEndTheFormerOnesSilently) {
  Start();
  Load("C:\\songs\\bells.ogg");
  EXPECT_EQ(Player.PlayState(), MediaPlayer::StateStopped);
  EXPECT_EQ(Rig.Lines.back(), R"({"kind":"media","call":"open","file":"bells.ogg"})");
}

TEST_F(RecordedMediaPlayerTest, NothingLoadedPlaysNothing) {
  Player.Play();
  EXPECT_EQ(Player.PlayState(), MediaPlayer::StateStopped);
}

TEST_F(RecordedMediaPlayerTest, AnErrorComesBeforeTheStateBecomesStopped) {
  Facts.Errors = {"codec not found", "and more"};
  Start();
  EXPECT_THAT(Events, ElementsAre("error in 3"));
  EXPECT_EQ(Player.PlayState(), MediaPlayer::StateStopped);
  EXPECT_EQ(Player.ErrorCount(), 2);
  EXPECT_EQ(Player.ErrorDescription(1), "and more");
  EXPECT_THROW((void)Player.ErrorDescription(2), Error);
  EXPECT_THROW((void)Player.ErrorDescription(-1), Error);
  Player.ClearErrorQueue();
  EXPECT_EQ(Player.ErrorCount(), 0);
  EXPECT_EQ(Rig.Lines.back(), R"({"kind":"media","call":"error"})");
}

TEST(RecordedMediaWindow, WritesDownWhenItIsSeenAndWhenNoMore) {
  RecordingRig rig;
  RecordedMediaWindow window(rig.Recording);
  window.Hide();
  window.Show();
  window.Show();
  EXPECT_TRUE(window.Visible());
  window.Unload();
  EXPECT_FALSE(window.Loaded());
  window.Show();
  EXPECT_TRUE(window.Loaded());
  window.Hide();
  EXPECT_THAT(rig.Lines,
              ElementsAre(R"({"kind":"window","call":"show"})", R"({"kind":"window","call":"hide"})",
                          R"({"kind":"window","call":"show"})", R"({"kind":"window","call":"hide"})"));
}

}  // namespace
}  // namespace vex
