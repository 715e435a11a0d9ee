#include "components/open/OpenSequenceEngine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/open/EngineRig.h"

namespace vex {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

TEST(OpenSequenceEngineLoad, LoadedAnewItIsTheNewSequence) {
  EngineRig rig;
  rig.Play(Two, true, true);
  rig.Lights->Take();
  rig.Load(R"({"duration":7,"media":"b.ogg"})");
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("0: 1.1 0>0 1", "0: flush"));
  EXPECT_EQ(rig.Engine->MediaFile(), "b.ogg");
  EXPECT_EQ(rig.Engine->PlayState(), 0);
  EXPECT_EQ(rig.Engine->Length(), 7000);
}

TEST(OpenSequenceEngineLoad, AFailedLoadLeavesNothingLoaded) {
  EngineRig rig;
  rig.Load(Two);
  rig.Put("{}");
  EXPECT_THAT(rig.LoadFailure(), HasSubstr("duration"));
  EXPECT_FALSE(rig.Engine->UsesNetwork(NetworkKind::Main));
  rig.Engine->Start();
  EXPECT_EQ(rig.Engine->PlayState(), 0);
}

TEST(OpenSequenceEngineLoad, AMissingFileIsNamed) {
  EngineRig rig;
  EXPECT_THAT(rig.LoadFailure("no.vexseq"),
              AllOf(HasSubstr("Sequence.Load 53: "), HasSubstr("\"no.vexseq\": File not found; put it")));
}

TEST(OpenSequenceEngineLoad, TheSequenceFolderComesBeforeTheMediaFolder) {
  EngineRig rig;
  rig.Host.Files().Put("C:\\media\\a.vexseq", R"({"duration":2})");
  rig.Engine->Load("a.vexseq");
  EXPECT_EQ(rig.Engine->Length(), 2000);
  rig.Put(R"({"duration":1})");
  rig.Engine->Load("a.vexseq");
  EXPECT_EQ(rig.Engine->Length(), 1000);
}

TEST(OpenSequenceEngineLoad, AFileThatCannotBeOpenedSaysWhat) {
  EngineRig rig;
  rig.Put(Two);
  rig.Host.Files().FailReads("C:\\seq\\a.vexseq");
  EXPECT_THAT(rig.LoadFailure(), HasSubstr("a.vexseq"));
}

TEST(OpenSequenceEngineLoad, ACharacterOutsideTheCodePageIsRefusedByName) {
  EngineRig rig;
  rig.Put(R"({"duration":1,"media":"\u2603.ogg"})");
  EXPECT_THAT(rig.LoadFailure(), AllOf(HasSubstr("\"media\""), HasSubstr("Windows-1252")));
  rig.Put(R"({"duration":1,"shellCommand":{"commandLine":"\u2603"}})");
  EXPECT_THAT(rig.LoadFailure(), HasSubstr("\"shellCommand.commandLine\""));
  rig.Put(R"({"duration":1,"events":[{"command":"\u2603"}]})");
  EXPECT_THAT(rig.LoadFailure(), HasSubstr("\"command\""));
}

TEST(OpenSequenceEngineLoad, NothingAtAllIsNoSequence) {
  EngineRig rig;
  rig.Put("");
  EXPECT_THAT(rig.LoadFailure(), HasSubstr("not valid JSON"));
}

}  // namespace
}  // namespace vex
