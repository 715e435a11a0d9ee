#include "show/InteractiveGroup.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "show/InteractiveGroupFunctions.h"
#include "show/TriggerFunctions.h"
#include "show/TriggeredSequencesFunctions.h"
#include "tests/show/RaisedError.h"

namespace vex {
namespace {

const std::string MagicToy =
    "Any unit/circuit in this group can be associated with any number of sequences, all of which will play "
    "simultaneously whenever that Unit/circuit is triggered.  If any sequences from this group were already "
    "playing, they will immediately stop.\r\n\r\nOnly animation sequences can be used in this group - "
    "musical sequences cannot be used.";
const std::string Soundboard =
    "Only one sequence from this group can be playing at any given time.  If a unit/circuit from this group "
    "is triggered, but a sequence from this group is already playing, the playing sequence will immediately "
    "stop, and the sequence associated with the triggered unit/circuit will be played.\r\n\r\nIf a "
    "unit/circuit in this group is associated with more than once sequence, then every time it is triggered, "
    "the next such sequence will be played, in a round-robin fashion.";
const std::string Jukebox =
    "Only one sequence from this group can be playing at any given time.  If a unit/circuit from this group "
    "is triggered, but a sequence from this group is already playing, the trigger will be "
    "ignored.\r\n\r\nIf a unit/circuit in this group is associated with more than one sequence, then every "
    "time it is triggered, the next such sequence will be played, in a round-robin fashion (unless it is "
    "ignored because a sequence from this group is already playing).";

const StoredBoolean One = StoredBoolean::FromStored(1);

std::shared_ptr<TriggeredSequences> Entry(int32_t lInput, const std::vector<std::string>& names = {"a"}) {
  return NewTriggeredSequences(NewTrigger(0, 1, lInput, "Input"), names);
}

TEST(InteractiveGroup, HasItsDefaultsWhenNew) {
  const InteractiveGroup group;
  EXPECT_EQ(0, group.Count());
  EXPECT_TRUE(group.Independent().IsClear());
  EXPECT_TRUE(group.Interruptible().IsClear());
  EXPECT_TRUE(group.MusicalAllowed().IsTrue());
  EXPECT_TRUE(group.LightsOffAtEnd().IsTrue());
  EXPECT_EQ("", group.Name());
  EXPECT_EQ("", group.Description());
  EXPECT_EQ("", group.TypeName());
  EXPECT_EQ("", group.TypeDesc());
}

TEST(InteractiveGroup, PlainPropertiesTakeWhatIsGivenAndDeriveNoType) {
  InteractiveGroup group;
  group.Name("Porch");
  group.Description("Left of the door");
  group.LightsOffAtEnd(false);
  EXPECT_EQ("Porch", group.Name());
  EXPECT_EQ("Left of the door", group.Description());
  EXPECT_TRUE(group.LightsOffAtEnd().IsClear());
  EXPECT_EQ("", group.TypeName());
}

TEST(InteractiveGroup, BothFlagsSetMakeAMagicToy) {
  InteractiveGroup group;
  group.Interruptible(true);
  group.Independent(true);
  EXPECT_EQ("Magic Toy", group.TypeName());
  EXPECT_EQ(MagicToy, group.TypeDesc());
}

TEST(InteractiveGroup, InterruptibleAloneMakesASoundboard) {
  InteractiveGroup group;
  group.Interruptible(true);
  EXPECT_EQ("Soundboard", group.TypeName());
  EXPECT_EQ(Soundboard, group.TypeDesc());
}

TEST(InteractiveGroup, NoFlagMakesAJukebox) {
  InteractiveGroup group;
  group.Interruptible(false);
  EXPECT_EQ("Jukebox", group.TypeName());
  EXPECT_EQ(Jukebox, group.TypeDesc());
}

TEST(InteractiveGroup, IndependentAloneKeepsTheDescriptionOfTheTypeBefore) {
  InteractiveGroup group;
  group.Independent(false);
  group.Independent(true);
  EXPECT_EQ("Interactive Group", group.TypeName());
  EXPECT_EQ(Jukebox, group.TypeDesc());
  group.Interruptible(true);
  EXPECT_EQ(MagicToy, group.TypeDesc());
  group.Interruptible(false);
  EXPECT_EQ("Interactive Group", group.TypeName());
  EXPECT_EQ(MagicToy, group.TypeDesc());
}

TEST(InteractiveGroup, AssigningMusicalAllowedDerivesTheTypeToo) {
  InteractiveGroup group;
  group.MusicalAllowed(false);
  EXPECT_TRUE(group.MusicalAllowed().IsClear());
  EXPECT_EQ("Jukebox", group.TypeName());
}

TEST(InteractiveGroup, AFlagHoldingOneIsNeitherSetNorClear) {
  InteractiveGroup group;
  group.Independent(One);
  EXPECT_EQ(1, group.Independent().Value());
  EXPECT_EQ("Interactive Group", group.TypeName());
  EXPECT_EQ("", group.TypeDesc());
  group.Interruptible(true);
  EXPECT_EQ("Interactive Group", group.TypeName());
  group.Independent(true);
  group.Interruptible(One);
  EXPECT_EQ("Interactive Group", group.TypeName());
  group.Independent(false);
  EXPECT_EQ("Interactive Group", group.TypeName());
  EXPECT_EQ(MagicToy, group.TypeDesc());
}

TEST(InteractiveGroup, EntriesCountFromZero) {
  InteractiveGroup group;
  const auto first = Entry(1), second = Entry(2);
  group.AddTriggeredSequences(first);
  group.AddTriggeredSequences(second);
  EXPECT_EQ(2, group.Count());
  EXPECT_EQ(first, group.GetTriggeredSequences(0));
  EXPECT_EQ(second, group.GetTriggeredSequences(1));
  EXPECT_EQ(SubscriptError, RaisedError([&] { (void)group.GetTriggeredSequences(2); }));
  EXPECT_EQ(SubscriptError, RaisedError([&] { (void)group.GetTriggeredSequences(-1); }));
}

TEST(InteractiveGroup, SeveralEntriesCanBeAddedAtOnce) {
  InteractiveGroup group;
  const std::vector<std::shared_ptr<TriggeredSequences>> entries = {Entry(1), Entry(2)};
  group.AddTriggeredSequences(Entry(0));
  group.AddTriggeredSequences(entries);
  ASSERT_EQ(3, group.Count());
  EXPECT_EQ(entries[1], group.GetTriggeredSequences(2));
}

TEST(InteractiveGroup, DeletingAnEntryMovesTheLaterOnesDown) {
  InteractiveGroup group;
  const auto first = Entry(1), second = Entry(2), third = Entry(3);
  for (const auto& entry : {first, second, third}) group.AddTriggeredSequences(entry);
  group.DeleteTriggeredSequence(1);
  EXPECT_EQ(2, group.Count());
  EXPECT_EQ(first, group.GetTriggeredSequences(0));
  EXPECT_EQ(third, group.GetTriggeredSequences(1));
  group.DeleteTriggeredSequence(1);
  group.DeleteTriggeredSequence(0);
  EXPECT_EQ(0, group.Count());
  EXPECT_EQ(SubscriptError, RaisedError([&] { group.DeleteTriggeredSequence(0); }));
}

TEST(InteractiveGroup, IsTriggeredByTheInputOfAnyEntry) {
  InteractiveGroup group;
  group.AddTriggeredSequences(Entry(1));
  group.AddTriggeredSequences(Entry(2));
  EXPECT_TRUE(group.Triggered(NewTrigger(0, 1, 2, "").get()));
  EXPECT_FALSE(group.Triggered(NewTrigger(0, 1, 3, "").get()));
}

TEST(InteractiveGroup, IsNeverTriggeredWithoutEntries) {
  EXPECT_FALSE(InteractiveGroup().Triggered(NewTrigger(0, 1, 1, "").get()));
}

TEST(InteractiveGroup, TheFirstMatchEndsTheSearch) {
  InteractiveGroup group;
  group.AddTriggeredSequences(Entry(1));
  group.AddTriggeredSequences(std::make_shared<TriggeredSequences>());  // would fail: it has no trigger
  EXPECT_TRUE(group.Triggered(NewTrigger(0, 1, 1, "").get()));
  EXPECT_EQ(ObjectNotSetError, RaisedError([&] { (void)group.Triggered(NewTrigger(0, 1, 2, "").get()); }));
}

TEST(InteractiveGroup, CopyIsDeep) {
  InteractiveGroup group;
  group.Description("d");
  group.Independent(One);
  group.Interruptible(true);
  group.MusicalAllowed(false);
  group.Name("n");
  group.LightsOffAtEnd(false);
  group.AddTriggeredSequences(Entry(1, {"a", "b"}));
  group.AddTriggeredSequences(Entry(2));
  InteractiveGroup copy;
  copy.AddTriggeredSequences(Entry(9));
  copy.Copy(group);
  EXPECT_EQ("d", copy.Description());
  EXPECT_EQ(1, copy.Independent().Value());
  EXPECT_TRUE(copy.Interruptible().IsTrue());
  EXPECT_TRUE(copy.MusicalAllowed().IsClear());
  EXPECT_EQ("n", copy.Name());
  EXPECT_TRUE(copy.LightsOffAtEnd().IsClear());
  ASSERT_EQ(2, copy.Count());
  EXPECT_EQ("b", copy.GetTriggeredSequences(0)->Sequence(1));
  EXPECT_EQ(2, copy.GetTriggeredSequences(1)->Trig()->InputNumber());
  EXPECT_NE(group.GetTriggeredSequences(0), copy.GetTriggeredSequences(0));
  EXPECT_NE(group.GetTriggeredSequences(0)->Trig(), copy.GetTriggeredSequences(0)->Trig());
}

TEST(InteractiveGroupText, WritesEightFields) {
  InteractiveGroup group;
  group.Description("a,b");
  group.Independent(true);
  group.MusicalAllowed(false);
  group.Name("Porch (left)");
  group.AddTriggeredSequences(Entry(1));
  group.AddTriggeredSequences(Entry(2, {"a", "b"}));
  EXPECT_EQ("(2,a*Sb,T,F,F,Porch *Oleft*C,((a,(1,Input,1,0)),(a,(2,Input,1,0),b)),T)",
            InteractiveGroupToText(group));
}

TEST(InteractiveGroupText, AFlagHoldingOneIsWrittenAsClear) {
  InteractiveGroup group;
  group.Independent(One);
  group.LightsOffAtEnd(One);
  group.AddTriggeredSequences(Entry(1));
  EXPECT_EQ("(1,,F,F,T,,((a,(1,Input,1,0))),F)", InteractiveGroupToText(group));
}

TEST(InteractiveGroupText, AGroupWithoutEntriesCannotBeWritten) {
  EXPECT_EQ(SubscriptError, RaisedError([] { (void)InteractiveGroupToText(InteractiveGroup()); }));
}

TEST(InteractiveGroupText, ReadsItsFieldsAndTakesTheCountFromTheEntries) {
  const auto group = InteractiveGroupFromText("(x,a*Sb,T,T,F,n,((a,(1,Input,1,0)),(b,(2,Input,1,0))),F)");
  EXPECT_EQ(2, group->Count());
  EXPECT_EQ("a,b", group->Description());
  EXPECT_EQ("n", group->Name());
  EXPECT_EQ("Magic Toy", group->TypeName());
  EXPECT_TRUE(group->MusicalAllowed().IsClear());
  EXPECT_TRUE(group->LightsOffAtEnd().IsClear());
  EXPECT_EQ("b", group->GetTriggeredSequences(1)->Sequence(0));
}

TEST(InteractiveGroupText, WithoutFieldEightLightsGoOff) {
  EXPECT_TRUE(InteractiveGroupFromText("(1,,F,F,T,n,((a,(1,I,1,0))))")->LightsOffAtEnd().IsTrue());
}

TEST(InteractiveGroupText, IndependentAloneIsReadWithoutADescription) {
  const auto group = InteractiveGroupFromText("(1,,T,F,T,n,((a,(1,I,1,0))),T)");
  EXPECT_EQ("Interactive Group", group->TypeName());
  EXPECT_EQ("", group->TypeDesc());
}

TEST(InteractiveGroupText, NamesWithEscapesAreKeptUnchanged) {
  const auto group = InteractiveGroupFromText("(1,,T,F,T,n,((a*Eb,(1,I,1,0))),T)");
  EXPECT_EQ("a*Eb", group->GetTriggeredSequences(0)->Sequence(0));
}

TEST(InteractiveGroupText, ATextWithoutListOfEntriesIsReadAsAGroupWithoutAny) {
  EXPECT_EQ(0, InteractiveGroupFromText("(0,,F,F,T,n,,T)")->Count());
}

TEST(InteractiveGroupText, FailsToReadWhatIsNoGroup) {
  EXPECT_EQ(SubscriptError, RaisedError([] { (void)InteractiveGroupFromText("(1,,T,F,T,n)"); }));
  EXPECT_EQ(SubscriptError, RaisedError([] { (void)InteractiveGroupFromText(""); }));
  EXPECT_EQ(SubscriptError, RaisedError([] { (void)InteractiveGroupFromText("(1,,T,F,T,n,(),T)"); }));
  EXPECT_EQ(ListError1, RaisedError([] { (void)InteractiveGroupFromText("(1,,T,F,T,n,(a,T"); }));
}

}  // namespace
}  // namespace vex
