#include "player/devices/frmMediaPlayer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/virtual/VirtualHost.h"
#include "tests/player/FakeDevices.h"

namespace vex::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A window as the machine makes it, with a close box and a size.
class PlainWindow : public FakeWindow {
 public:
  explicit PlainWindow(Transcript& transcript) : FakeWindow(transcript), m_Lines(transcript) {}
  void Caption(const std::string& szCaption) override { m_Lines.push_back("window caption " + szCaption); }
  void MoveControl(int32_t lLeft, int32_t lTop, int32_t lWidth, int32_t lHeight) override {
    m_Lines.push_back("window control " + std::to_string(lLeft) + " " + std::to_string(lTop) + " " +
                      std::to_string(lWidth) + " " + std::to_string(lHeight));
  }
  void Unload() override { m_Lines.push_back("window unload"); }

 private:
  Transcript& m_Lines;
};

class FormMediaPlayer : public testing::Test {
 protected:
  VirtualHost host;
  Transcript lines;
  std::shared_ptr<PlainWindow> window = std::make_shared<PlainWindow>(lines);
  std::shared_ptr<FakeMediaPlayer> control = std::make_shared<FakeMediaPlayer>(lines, host.Clock());
  std::unique_ptr<frmMediaPlayer> form = std::make_unique<frmMediaPlayer>(window, control);
};

TEST_F(FormMediaPlayer, HasItsCaptionAndItsControlAndNoPlaceYet) {
  EXPECT_THAT(lines, ElementsAre("window caption Brillara Video"));
  EXPECT_EQ(form->wmp(), control);
  EXPECT_FALSE(form->Placed());
  EXPECT_FALSE(window->Visible());
}

TEST_F(FormMediaPlayer, AGivenPlaceMarksItAsPlaced) {
  lines.clear();
  form->Position(1500, -750);
  EXPECT_TRUE(form->Placed());
  EXPECT_THAT(lines, ElementsAre("window place 1500 -750"));
}

TEST_F(FormMediaPlayer, AWindowThatCannotBePlacedLeavesItUnplaced) {
  window->FailPlace = "no display";
  EXPECT_THROW(form->Position(0, 0), Error);
  EXPECT_FALSE(form->Placed());
}

TEST_F(FormMediaPlayer, ItsCloseBoxDoesNothing) {
  form->Show();
  ASSERT_TRUE(window->MayClose);
  EXPECT_FALSE(window->MayClose());
  EXPECT_TRUE(form->QueryUnload(frmMediaPlayer::ControlMenu));
  EXPECT_TRUE(window->Visible());
}

TEST_F(FormMediaPlayer, EverybodyElseMayCloseIt) {
  for (const int32_t lMode : {frmMediaPlayer::FormCode, frmMediaPlayer::SystemEnds,
                              frmMediaPlayer::TaskManager, frmMediaPlayer::FormOwner})
    EXPECT_FALSE(form->QueryUnload(lMode)) << lMode;
  lines.clear();
  form->Unload();
  EXPECT_THAT(lines, ElementsAre("window unload"));
}

TEST_F(FormMediaPlayer, TheControlFillsTheInsideAtEverySize) {
  lines.clear();
  window->Resized(640, 480);
  window->Resized(1, 1);
  EXPECT_THAT(lines, ElementsAre("window control 0 0 640 480", "window control 0 0 1 1"));
}

TEST_F(FormMediaPlayer, ASizeOfNothingIsNoSize) {
  lines.clear();
  window->Resized(0, 480);
  window->Resized(640, 0);
  window->Resized(-1, -1);
  EXPECT_THAT(lines, IsEmpty());
}

TEST_F(FormMediaPlayer, ShowsAndHidesItsWindow) {
  lines.clear();
  form->Show();
  EXPECT_TRUE(window->Visible());
  form->Hide();
  EXPECT_FALSE(window->Visible());
  EXPECT_THAT(lines, ElementsAre("window show", "window hide"));
}

TEST_F(FormMediaPlayer, WhatIsNotLoadedIsNeitherHiddenNorUnloaded) {
  form->Show();
  window->IsLoaded = false;
  lines.clear();
  form->Hide();
  form->Unload();
  EXPECT_THAT(lines, IsEmpty());
}

TEST_F(FormMediaPlayer, LetsItsWindowGo) {
  form.reset();
  EXPECT_FALSE(window->MayClose);
  EXPECT_FALSE(window->Resized);
}

}  // namespace
}  // namespace vex::test
