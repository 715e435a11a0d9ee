#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/open/EngineRig.h"
#include "tests/wire/FrameFileBuilder.h"

// What an engine leaves out where nobody sees the events, and what it must not leave out.

namespace vex {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

const char* const Cues =
    R"({"format":"vexseq","version":1,"duration":2,"events":[
      {"kind":"main","network":0,"unit":1,"circuit":1,"start":0,"from":0,"to":100},
      {"kind":"main","network":0,"unit":1,"circuit":1,"start":1.5,"from":100,"to":0}]})";

/// Four frames of 25 ms in two blocks, the second one damaged where asked for.
std::string Frames(bool boolDamaged) {
  FrameFileBuilder builder;
  builder.Frames = {{51}, {102}, {255}, {51}};
  builder.Compression = FrameCompression::Zlib;
  builder.FramesPerBlock = 2;
  std::string szFile = builder.Build();
  if (boolDamaged) {
    for (const size_t fromEnd : {9, 10})
      szFile[szFile.size() - fromEnd] = static_cast<char>(~szFile[szFile.size() - fromEnd]);
  }
  return szFile;
}

struct UnseenTest : testing::Test {
  UnseenTest() { Rig.Lights->Seen = false; }
  EngineRig Rig;
};

TEST_F(UnseenTest, ASequenceEndsWhenItDoesAndSendsNothing) {
  Rig.Play(Cues, false, true);
  Rig.Advance(1999);
  EXPECT_EQ(Rig.Engine->PlayState(), 1);
  Rig.Advance(1);
  EXPECT_EQ(Rig.Engine->PlayState(), 0);
  EXPECT_THAT(Rig.Lights->Take(), IsEmpty());
  EXPECT_LT(Rig.Host.EventLoop().Ticks(), 3U);
}

TEST_F(UnseenTest, ALoopGoesOnUntilItIsStopped) {
  Rig.Play(Cues, true, true);
  Rig.Advance(3600 * 1000 + 1);
  EXPECT_EQ(Rig.Engine->PlayState(), 1);
  Rig.Engine->Stop();
  EXPECT_EQ(Rig.Engine->PlayState(), 0);
  EXPECT_THAT(Rig.Lights->Take(), IsEmpty());
}

TEST_F(UnseenTest, MusicHasNothingDue) {
  Rig.PlayMusic(Cues);
  EXPECT_TRUE(Rig.Engine->NextEventDue().IsNever());
  EXPECT_THAT(Rig.Sync(1600), IsEmpty());
  EXPECT_EQ(Rig.Engine->PlayState(), 1);
}

TEST_F(UnseenTest, FramesThatCanBeReadAreLeftOutToo) {
  Rig.Play(Frames(false));
  Rig.Advance(99);
  EXPECT_EQ(Rig.Engine->PlayState(), 1);
  Rig.Advance(1);
  EXPECT_EQ(Rig.Engine->PlayState(), 0);
  EXPECT_THAT(Rig.Lights->Take(), IsEmpty());
}

TEST_F(UnseenTest, ADamagedFrameFailsWhenItsTimeComes) {
  Rig.Play(Frames(true));
  Rig.Advance(49);
  EXPECT_EQ(Rig.Engine->PlayState(), 1);
  Rig.Advance(1);
  try {
    (void)Rig.Engine->PlayState();
    FAIL();
  } catch (const Error& error) {
    EXPECT_THAT(error.Description, HasSubstr("damaged at frame 2; "));
  }
  EXPECT_EQ(Rig.Engine->PlayState(), 0);
}

TEST_F(UnseenTest, ADamagedFrameFailsTheSyncThatReachesIt) {
  Rig.PlayMusic(Frames(true));
  EXPECT_NO_THROW((void)Rig.Sync(49));
  EXPECT_THROW((void)Rig.Sync(50), Error);
}

TEST_F(UnseenTest, AnotherSequenceIsLookedAtAnew) {
  Rig.Play(Frames(false));
  Rig.Play(Frames(true));
  Rig.Advance(50);
  EXPECT_THROW((void)Rig.Engine->PlayState(), Error);
}

}  // namespace
}  // namespace vex
