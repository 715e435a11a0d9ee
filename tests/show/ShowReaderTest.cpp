#include "show/ShowReader.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "show/ShowFunctions.h"
#include "tests/show/RaisedError.h"

namespace vex {
namespace {

const std::string Text =
    "((0,1,2,0,,,T,F,F),(0,1,2,0,,,T,F,F),(1,0,1,0,,(a.seq),T,F,F),(0,1,2,0,,,T,F,F),,(2,0,1,0,,,T,F,F),"
    "((1,,F,F,T,g,((s,(1,t,1,0),u)),T)),1,(1,t,1,0),F)\r\n";
const std::string OtherText =
    "((0,1,2,0,,,T,F,F),(0,1,2,0,,,T,F,F),(1,0,1,0,,(b.seq),T,F,F),(0,1,2,0,,,T,F,F),,(2,0,1,0,,,T,F,F),"
    ",0,,F)\r\n";
const std::string Unwritable =
    "((0,1,2,0,,,T,F,F),(0,1,2,0,,,T,F,F),(1,0,1,0,,,T,F,F),(0,1,2,0,,,T,F,F),,(2,0,1,0,,,T,F,F),"
    "((0,,F,F,T,g,,T)),0,,F)\r\n";

/// What can be seen of a show that was just read: the text of its contents and a new record.
void ExpectAsParsed(const Show& show, const std::string& szBytes) {
  EXPECT_EQ(ShowToText(*ShowFromText(szBytes)), ShowToText(show));
  EXPECT_TRUE(show.Monitoring()->MemberwiseEquals(nullptr));
}

TEST(ShowReader, GivesWhatTheTextHolds) {
  ShowReader reader;
  const auto show = reader.Read(Text);
  ASSERT_NE(nullptr, show);
  ExpectAsParsed(*show, Text);
}

TEST(ShowReader, TwoShowsFromTheSameBytesShareTheirContentsText) {
  ShowReader reader;
  const auto playing = reader.Read(Text);
  const auto handed = reader.Read(Text);
  EXPECT_NE(playing, handed);
  EXPECT_NE(nullptr, handed->SealedContents());
  EXPECT_EQ(playing->SealedContents(), handed->SealedContents());
  EXPECT_TRUE(playing->HasSameContents(handed.get()));
}

TEST(ShowReader, HandsOutTheSpareThatNobodyTookWithANewRecord) {
  ShowReader reader;
  const auto playing = reader.Read(Text);
  auto handed = reader.Read(Text);
  handed->Monitoring()->Filename("eve.shw");
  const Show* former = handed.get();
  handed.reset();
  handed = reader.Read(Text);
  EXPECT_EQ(former, handed.get());
  ExpectAsParsed(*handed, Text);
}

TEST(ShowReader, NeverHandsOutAShowThatSomebodyHolds) {
  ShowReader reader;
  const auto one = reader.Read(Text);
  const auto two = reader.Read(Text);
  const auto three = reader.Read(Text);
  EXPECT_NE(one, two);
  EXPECT_NE(two, three);
  EXPECT_NE(one, three);
}

TEST(ShowReader, NeverHandsOutAChangedShow) {
  ShowReader reader;
  auto show = reader.Read(Text);
  show->Main()->List().Add("x");
  show.reset();
  show = reader.Read(Text);
  ExpectAsParsed(*show, Text);
}

TEST(ShowReader, NeverHandsOutAShowWhoseRoundRobinHasMovedOn) {
  ShowReader reader;
  auto show = reader.Read(Text);
  EXPECT_EQ(0, show->InteractiveGroups().Item(1)->GetTriggeredSequences(0)->RoundRobinIndex());
  show.reset();
  show = reader.Read(Text);
  EXPECT_EQ(0, show->InteractiveGroups().Item(1)->GetTriggeredSequences(0)->RoundRobinIndex());
}

TEST(ShowReader, OtherBytesGiveAnotherShow) {
  ShowReader reader;
  const auto playing = reader.Read(Text);
  const auto handed = reader.Read(OtherText);
  ExpectAsParsed(*handed, OtherText);
  EXPECT_FALSE(playing->HasSameContents(handed.get()));
  const auto again = reader.Read(Text);
  ExpectAsParsed(*again, Text);
  EXPECT_TRUE(playing->HasSameContents(again.get()));
}

TEST(ShowReader, OtherBytesOfTheSameContentsAreTheSameContents) {
  ShowReader reader;
  const auto playing = reader.Read(Text);
  const auto handed = reader.Read("  " + Text);
  EXPECT_NE(playing->SealedContents(), handed->SealedContents());
  EXPECT_TRUE(playing->HasSameContents(handed.get()));
}

TEST(ShowReader, ATextThatYieldsNoShowGivesNoneEachTime) {
  ShowReader reader;
  EXPECT_EQ(nullptr, reader.Read(""));
  EXPECT_EQ(nullptr, reader.Read(""));
  EXPECT_NE(nullptr, reader.Read(Text));
  EXPECT_EQ(nullptr, reader.Read("(x)"));
  EXPECT_EQ(nullptr, reader.Read("(x)"));
  ExpectAsParsed(*reader.Read(Text), Text);
}

TEST(ShowReader, ATextThatCannotBeReadRaisesEachTimeAndForgetsNothingElse) {
  ShowReader reader;
  const auto playing = reader.Read(Text);
  EXPECT_EQ(ListError1, RaisedError([&] { (void)reader.Read("(x"); }));
  EXPECT_EQ(ListError1, RaisedError([&] { (void)reader.Read("(x"); }));
  EXPECT_TRUE(playing->HasSameContents(reader.Read(Text).get()));
}

TEST(ShowReader, AShowThatCannotBeWrittenIsNeverSealedAndAlwaysCountsAsChanged) {
  ShowReader reader;
  const auto playing = reader.Read(Unwritable);
  const auto handed = reader.Read(Unwritable);
  ASSERT_NE(nullptr, playing);
  EXPECT_EQ(nullptr, playing->SealedContents());
  EXPECT_NE(playing, handed);
  EXPECT_FALSE(playing->HasSameContents(handed.get()));
  EXPECT_FALSE(playing->HasSameContents(playing.get()));
}

}  // namespace
}  // namespace vex
