#include "components/open/OpenSequenceEngine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/open/EngineRig.h"

namespace vex {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(OpenSequenceEngineMusic, WithMediaItHandsOutWhatTheMusicHasReached) {
  EngineRig rig;
  rig.PlayMusic(Two);
  EXPECT_THAT(rig.Sync(0), ElementsAre("1.1 10>10@0"));
  EXPECT_THAT(rig.Sync(49), IsEmpty());
  EXPECT_THAT(rig.Sync(50), ElementsAre("1.2 20>20@50"));
  EXPECT_THAT(rig.Sync(1000), IsEmpty());
  EXPECT_THAT(rig.Lights->Take(), IsEmpty());
}

TEST(OpenSequenceEngineMusic, WithMediaAPositionGoingBackHandsNothingOutTwice) {
  EngineRig rig;
  rig.PlayMusic(Two);
  EXPECT_EQ(rig.Sync(60).size(), 2U);
  EXPECT_THAT(rig.Sync(0), IsEmpty());
  EXPECT_THAT(rig.Sync(70), IsEmpty());
}

TEST(OpenSequenceEngineMusic, InitMusicSyncBeginsAgain) {
  EngineRig rig;
  rig.PlayMusic(Two);
  (void)rig.Sync(60);
  rig.Engine->InitMusicSync(0);
  EXPECT_EQ(rig.Sync(60).size(), 2U);
  rig.Engine->InitMusicSync(50);
  EXPECT_THAT(rig.Sync(60), ElementsAre("1.2 20>20@50"));
  rig.Engine->InitMusicSync(-5);
  EXPECT_EQ(rig.Sync(60).size(), 2U);
}

TEST(OpenSequenceEngineMusic, WithMediaItPlaysUntilItIsStopped) {
  EngineRig rig;
  rig.PlayMusic(Two, true);
  (void)rig.Sync(60);
  rig.Advance(100000);
  EXPECT_EQ(rig.Engine->PlayState(), 1);
  EXPECT_TRUE(rig.Engine->NextStateChange().IsNever());
  rig.Engine->Stop();
  EXPECT_EQ(rig.Engine->PlayState(), 0);
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("100000: 1.1 0>0 1", "100000: 1.2 0>0 1", "100000: flush"));
  EXPECT_THAT(rig.Sync(1000), IsEmpty());
}

TEST(OpenSequenceEngineMusic, WithMediaNothingIsHandedOutBeforeStart) {
  EngineRig rig;
  rig.Load(Two);
  rig.Engine->PrepareForPlay(true);
  EXPECT_EQ(rig.Engine->PlayState(), 0);
  EXPECT_THAT(rig.Sync(1000), IsEmpty());
}

TEST(OpenSequenceEngineMusic, TellsWhenItIsNextDue) {
  EngineRig rig;
  rig.PlayMusic(R"({"duration":1,"events":[{"start":0.0505},{"start":0.7}]})");
  EXPECT_EQ(rig.Engine->NextEventDue(), NextDue::At(51));
  (void)rig.Sync(51);
  EXPECT_EQ(rig.Engine->NextEventDue(), NextDue::At(700));
  rig.Engine->SyncToMusic(800);
  EXPECT_EQ(rig.Engine->NextEventDue(), NextDue::At(700)) << "due already";
  (void)rig.Sync(800);
  EXPECT_TRUE(rig.Engine->NextEventDue().IsNever());
}

TEST(OpenSequenceEngineMusic, ByItsOwnClockOnlyTheEndIsForeseen) {
  EngineRig rig;
  rig.Advance(7);
  rig.Play(Two);
  EXPECT_TRUE(rig.Engine->NextEventDue().IsNever());
  EXPECT_EQ(rig.Engine->NextStateChange(), NextDue::At(107000000));
}

}  // namespace
}  // namespace vex
