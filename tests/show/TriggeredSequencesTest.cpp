#include "show/TriggeredSequences.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "show/TriggerFunctions.h"
#include "show/TriggeredSequencesFunctions.h"
#include "tests/show/RaisedError.h"

namespace vex {
namespace {

std::shared_ptr<TriggeredSequences> Entry(const std::vector<std::string>& names) {
  return NewTriggeredSequences(NewTrigger(0, 1, 3, "Door"), names);
}

TEST(TriggeredSequences, IsEmptyWhenNew) {
  TriggeredSequences entry;
  EXPECT_EQ(0, entry.NumSequences());
  EXPECT_EQ(nullptr, entry.Trig());
  EXPECT_EQ(0, entry.RoundRobinIndex());
  EXPECT_EQ(0, entry.RoundRobinIndex());
}

TEST(TriggeredSequences, AddSequencePutsTheNameAtTheNewLastIndex) {
  TriggeredSequences entry;
  entry.AddSequence("a");
  entry.AddSequence("b");
  EXPECT_EQ(2, entry.NumSequences());
  EXPECT_EQ("a", entry.Sequence(0));
  EXPECT_EQ("b", entry.Sequence(1));
}

TEST(TriggeredSequences, SequenceCanBeAssigned) {
  const auto entry = Entry({"a", "b"});
  entry->Sequence(1, "c");
  EXPECT_EQ("a", entry->Sequence(0));
  EXPECT_EQ("c", entry->Sequence(1));
}

TEST(TriggeredSequences, SequenceOutsideItsBoundsFails) {
  const auto entry = Entry({"a", "b"});
  EXPECT_EQ(SubscriptError, RaisedError([&] { (void)entry->Sequence(2); }));
  EXPECT_EQ(SubscriptError, RaisedError([&] { (void)entry->Sequence(-1); }));
  EXPECT_EQ(SubscriptError, RaisedError([&] { entry->Sequence(2, "c"); }));
}

TEST(TriggeredSequences, ClearSequencesLeavesNone) {
  const auto entry = Entry({"a", "b"});
  entry->ClearSequences();
  EXPECT_EQ(0, entry->NumSequences());
  EXPECT_NE(nullptr, entry->Trig());
}

TEST(TriggeredSequences, SetSequencesReplacesAll) {
  const auto entry = Entry({"a", "b"});
  entry->SetSequences(std::vector<std::string>{"c"});
  EXPECT_EQ(1, entry->NumSequences());
  EXPECT_EQ("c", entry->Sequence(0));
  EXPECT_EQ(1, entry->Sequences().Count());
}

TEST(TriggeredSequences, RoundRobinTakesTurns) {
  const auto entry = Entry({"a", "b", "c"});
  std::vector<int32_t> turns;
  for (int turn = 0; turn < 7; ++turn) turns.push_back(entry->RoundRobinIndex());
  EXPECT_EQ((std::vector<int32_t>{0, 1, 2, 0, 1, 2, 0}), turns);
}

TEST(TriggeredSequences, RoundRobinBeginsAgainWhenItsPositionIsGone) {
  const auto entry = Entry({"a", "b", "c"});
  (void)entry->RoundRobinIndex();
  (void)entry->RoundRobinIndex();
  entry->SetSequences(std::vector<std::string>{"a", "b"});
  EXPECT_EQ(0, entry->RoundRobinIndex());
  EXPECT_EQ(1, entry->RoundRobinIndex());
}

TEST(TriggeredSequences, CopyTakesTriggerAndNamesButNotThePosition) {
  const auto entry = Entry({"a", "b"});
  (void)entry->RoundRobinIndex();
  TriggeredSequences copy;
  copy.AddSequence("old");
  copy.Copy(*entry);
  EXPECT_EQ(2, copy.NumSequences());
  EXPECT_EQ("b", copy.Sequence(1));
  EXPECT_EQ(0, copy.RoundRobinIndex());
  ASSERT_NE(nullptr, copy.Trig());
  EXPECT_NE(entry->Trig(), copy.Trig());
  EXPECT_EQ("Door", copy.Trig()->Name());
}

TEST(TriggeredSequences, CopyOfAnEntryWithoutTriggerFails) {
  TriggeredSequences entry, copy;
  EXPECT_EQ(ObjectNotSetError, RaisedError([&] { copy.Copy(entry); }));
}

TEST(TriggeredSequences, TriggeredAsksItsTrigger) {
  const auto entry = Entry({"a"});
  EXPECT_TRUE(entry->Triggered(NewTrigger(0, 1, 3, "Other name").get()));
  EXPECT_FALSE(entry->Triggered(NewTrigger(0, 1, 4, "Door").get()));
  EXPECT_FALSE(entry->Triggered(nullptr));
}

TEST(TriggeredSequences, TriggeredWithoutATriggerFails) {
  const TriggeredSequences entry;
  EXPECT_EQ(ObjectNotSetError, RaisedError([&] { (void)entry.Triggered(nullptr); }));
}

TEST(TriggeredSequences, TrigCanBeAssigned) {
  TriggeredSequences entry;
  const auto trigger = NewTrigger(0, 1, 3, "Door");
  entry.Trig(trigger);
  EXPECT_EQ(trigger, entry.Trig());
}

TEST(TriggeredSequencesText, WritesTheTriggerAfterTheFirstName) {
  EXPECT_EQ("(a,(3,Door,1,0))", TriggeredSequencesToText(*Entry({"a"})));
  EXPECT_EQ("(a*S,(3,Door,1,0),b,c)", TriggeredSequencesToText(*Entry({"a,", "b", "c"})));
}

TEST(TriggeredSequencesText, WithoutSequencesOrTriggerItCannotBeWritten) {
  EXPECT_EQ(SubscriptError, RaisedError([] { (void)TriggeredSequencesToText(*Entry({})); }));
  TriggeredSequences entry;
  entry.AddSequence("a");
  EXPECT_EQ(ObjectNotSetError, RaisedError([&] { (void)TriggeredSequencesToText(entry); }));
}

TEST(TriggeredSequencesText, ReadsTheNamesInOrder) {
  const auto entry = TriggeredSequencesFromText("(a,(3,Door,1,0),b,c)");
  EXPECT_EQ(3, entry->NumSequences());
  EXPECT_EQ("a", entry->Sequence(0));
  EXPECT_EQ("b", entry->Sequence(1));
  EXPECT_EQ("c", entry->Sequence(2));
  EXPECT_EQ("Door", entry->Trig()->Name());
  EXPECT_EQ(0, entry->RoundRobinIndex());
}

TEST(TriggeredSequencesText, KeepsTheNamesEscaped) {
  const auto entry = TriggeredSequencesFromText(TriggeredSequencesToText(*Entry({"a,b", "c*d"})));
  EXPECT_EQ("a*Sb", entry->Sequence(0));
  EXPECT_EQ("c*Ed", entry->Sequence(1));
}

TEST(TriggeredSequencesText, FailsToReadWhatIsNoEntry) {
  EXPECT_EQ(SubscriptError, RaisedError([] { (void)TriggeredSequencesFromText(""); }));
  EXPECT_EQ(SubscriptError, RaisedError([] { (void)TriggeredSequencesFromText("()"); }));
  EXPECT_EQ(SubscriptError, RaisedError([] { (void)TriggeredSequencesFromText("(a)"); }));
  EXPECT_EQ(SubscriptError, RaisedError([] { (void)TriggeredSequencesFromText("(a,)"); }));
  EXPECT_EQ(TypeMismatchError, RaisedError([] { (void)TriggeredSequencesFromText("(a,(x,n,1,0))"); }));
  EXPECT_EQ(ListError1, RaisedError([] { (void)TriggeredSequencesFromText("(a"); }));
}

}  // namespace
}  // namespace vex
