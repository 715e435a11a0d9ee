#include "tests/com/StandInControl.h"

#include <gtest/gtest.h>

#include "basic/Error.h"
#include "components/com/MediaControl.h"
#include "host/virtual/VirtualHost.h"

namespace vex::test {
namespace {

constexpr int32_t Transitioning = 9;

class StandInControlTest : public testing::Test {
 protected:
  StandInControlTest() { Make(); }
  ~StandInControlTest() override { m_Control.reset(); }

  void Make() {
    m_Control.reset();
    m_Control = std::make_unique<MediaControl>(m_Host.Clock(), m_Host.EventLoop());
    m_Control->ErrorEvent = [this] {
      ++m_Errors;
      m_StateAtError = m_Control->PlayState();
    };
    m_Control->Changed = [this] { ++m_Changes; };
    m_Control->OpenStateChange = [this](int32_t lState) { m_OpenStates.push_back(lState); };
  }
  void Play() {
    m_Control->CurrentMedia(m_Control->NewMedia("D:\\F\xFCr Elise.wav"));
    m_Control->CurrentPosition(0);
    m_Control->Play();
  }

  ComApartment m_Apartment;
  VirtualHost m_Host;
  StandInControl m_StandIn;
  std::unique_ptr<MediaControl> m_Control;
  int32_t m_Errors = 0;
  int32_t m_StateAtError = 0;
  int32_t m_Changes = 0;
  std::vector<int32_t> m_OpenStates;
};

TEST_F(StandInControlTest, StartingMediaIsAskedInTheSystemsOrder) {
  EXPECT_EQ(m_StandIn.TakeCalls(), "autoStart = 0\n");
  Play();
  EXPECT_EQ(m_StandIn.TakeCalls(),
            "newMedia(D:\\F\xFCr Elise.wav)\n"
            "currentMedia = D:\\F\xFCr Elise.wav\n"
            "currentPosition = 0.000000\n"
            "play\n");
  m_Control->Stop();
  EXPECT_EQ(m_StandIn.TakeCalls(), "stop\n");
}

TEST_F(StandInControlTest, PlayStateIsTheControlsOwn) {
  m_StandIn.State = 1;
  Play();
  EXPECT_EQ(m_Control->PlayState(), Transitioning) << "what is left of the media before";
  m_StandIn.State = 6;
  EXPECT_EQ(m_Control->PlayState(), Transitioning);
  m_StandIn.State = 3;
  EXPECT_EQ(m_Control->PlayState(), 3);
  m_StandIn.State = 2;
  EXPECT_EQ(m_Control->PlayState(), 2);
  m_StandIn.State = 1;
  EXPECT_EQ(m_Control->PlayState(), 1);
  EXPECT_EQ(m_Changes, 1);
  m_StandIn.State = 3;
  EXPECT_EQ(m_Control->PlayState(), 1) << "over is over";
}

TEST_F(StandInControlTest, ControlThatOnlyRaisesEventsIsFollowedByThem) {
  m_StandIn.StatesOfPlay = {1, 9, 3};
  Play();
  EXPECT_EQ(m_Control->PlayState(), 3);
  m_StandIn.TellState(8);
  EXPECT_EQ(m_Control->PlayState(), 8);
  m_StandIn.TellState(9);
  EXPECT_EQ(m_Control->PlayState(), 9);
  m_StandIn.TellState(1);
  EXPECT_EQ(m_Control->PlayState(), 1);
}

TEST_F(StandInControlTest, MediaThatEndWithoutBeingSeenToPlayAreOver) {
  Play();
  m_StandIn.TellState(8);
  m_StandIn.TellState(10);
  EXPECT_EQ(m_Control->PlayState(), 1);
}

TEST_F(StandInControlTest, LateEventOfTheMediaBeforeDoesNotEndTheNext) {
  m_StandIn.StatesOfPlay = {3};
  Play();
  m_Control->Stop();
  m_StandIn.StatesOfPlay = {};
  Play();
  m_StandIn.TellState(1);
  EXPECT_EQ(m_Control->PlayState(), Transitioning);
  m_StandIn.TellState(3);
  EXPECT_EQ(m_Control->PlayState(), 3);
}

TEST_F(StandInControlTest, ErrorsAreTheControlsOwn) {
  m_StandIn.Errors = {L"one", L"zw\x00F6lf"};
  Play();
  m_StandIn.TellError();
  EXPECT_EQ(m_Errors, 1);
  EXPECT_EQ(m_StateAtError, Transitioning) << "the error comes before the end";
  EXPECT_EQ(m_Control->PlayState(), 1);
  ASSERT_EQ(m_Control->ErrorCount(), 2);
  EXPECT_EQ(m_Control->ErrorDescription(0), "one");
  EXPECT_EQ(m_Control->ErrorDescription(1), "zw\xF6lf");
  m_Control->ClearErrorQueue();
  EXPECT_EQ(m_Control->ErrorCount(), 0);
}

TEST_F(StandInControlTest, ErrorEventOfAControlWithoutAListRaisesWhenTheListIsWanted) {
  Play();
  m_StandIn.TellError();
  EXPECT_EQ(m_Errors, 1);
  EXPECT_THROW((void)m_Control->ErrorCount(), Error);
}

TEST_F(StandInControlTest, FailedPlayIsAnErrorEventFromTheLoop) {
  m_StandIn.PlayResult = HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);
  Play();
  EXPECT_EQ(m_Errors, 0);
  EXPECT_EQ(m_Control->PlayState(), Transitioning);
  m_Host.EventLoop().Pump();
  EXPECT_EQ(m_Errors, 1);
  EXPECT_EQ(m_StateAtError, Transitioning);
  EXPECT_EQ(m_Control->PlayState(), 1);
  ASSERT_EQ(m_Control->ErrorCount(), 1);
  EXPECT_NE(m_Control->ErrorDescription(0), "");
  m_Control->ClearErrorQueue();
  EXPECT_THROW((void)m_Control->ErrorCount(), Error);
}

TEST_F(StandInControlTest, FailedPlayOfAControlWithAListHasOnlyWhatStandsThere) {
  m_StandIn.Errors.emplace();
  m_StandIn.PlayResult = E_FAIL;
  Play();
  m_Host.EventLoop().Pump();
  EXPECT_EQ(m_Errors, 1);
  EXPECT_EQ(m_Control->ErrorCount(), 0);
}

TEST_F(StandInControlTest, AfterAFailureTheControlIsStoppedAndGivenItsMediaBeforeItPlaysAgain) {
  m_StandIn.PlayResult = E_FAIL;
  Play();
  m_Host.EventLoop().Pump();
  (void)m_StandIn.TakeCalls();
  m_StandIn.PlayResult = S_OK;
  m_Control->Play();
  EXPECT_EQ(m_StandIn.TakeCalls(), "stop\ncurrentMedia = D:\\F\xFCr Elise.wav\nplay\n");
}

TEST_F(StandInControlTest, MediaThatNeverBeginAreAnErrorAfterAWhile) {
  Play();
  m_Host.EventLoop().Advance(29000);
  EXPECT_EQ(m_Control->PlayState(), Transitioning);
  m_Host.EventLoop().Advance(2000);
  EXPECT_EQ(m_Control->PlayState(), Transitioning);
  m_Host.EventLoop().Advance(1);
  EXPECT_EQ(m_Errors, 1);
  EXPECT_EQ(m_Control->PlayState(), 1);
}

TEST_F(StandInControlTest, OpenStateAndMediaTypeAreTheControlsOwn) {
  m_StandIn.MediaType = L"Video";
  Play();
  m_StandIn.TellOpenState(21);
  m_StandIn.TellOpenState(13);
  EXPECT_EQ(m_OpenStates, (std::vector<int32_t>{21, 13}));
  ASSERT_TRUE(m_Control->CurrentMedia());
  EXPECT_EQ(m_Control->CurrentMedia()->GetItemInfo("MediaType"), "Video");
  m_StandIn.MediaType.reset();
  EXPECT_EQ(m_Control->CurrentMedia()->GetItemInfo("MediaType"), "");
}

TEST_F(StandInControlTest, PositionNeverGoesBackWhileMediaPlay) {
  m_StandIn.State = 3;
  Play();
  m_StandIn.Position = 1.5;
  EXPECT_EQ(m_Control->CurrentPosition(), 1.5);
  m_StandIn.Position = 1.4;
  EXPECT_EQ(m_Control->CurrentPosition(), 1.5);
  m_StandIn.Position = 0.1;
  Play();
  EXPECT_EQ(m_Control->CurrentPosition(), 0.1);
}

TEST_F(StandInControlTest, FullScreenIsPutAndOnlyItsLackIsForgiven) {
  (void)m_StandIn.TakeCalls();
  m_Control->FullScreen(true);
  m_Control->FullScreen(false);
  EXPECT_EQ(m_StandIn.TakeCalls(), "fullScreen = -1\nfullScreen = 0\n");
  m_StandIn.FullScreenResult = E_NOTIMPL;
  m_Control->FullScreen(true);
  m_StandIn.FullScreenResult = E_FAIL;
  EXPECT_THROW(m_Control->FullScreen(true), Error);
}

TEST_F(StandInControlTest, MediaThatAreRefusedAreRaised) {
  m_StandIn.MediaResult = E_ACCESSDENIED;
  try {
    Play();
    FAIL();
  } catch (const Error& error) {
    EXPECT_TRUE(error.Description.starts_with("currentMedia: ")) << error.Description;
  }
}

TEST_F(StandInControlTest, WhatListenersThrowStaysInside) {
  m_Control->OpenStateChange = [](int32_t) { throw Error(1, "", "thrown"); };
  m_StandIn.TellOpenState(13);
  m_Control->OpenStateChange = nullptr;
  EXPECT_TRUE(m_StandIn.Listened());
  m_Control.reset();
  EXPECT_FALSE(m_StandIn.Listened());
}

}  // namespace
}  // namespace vex::test
