#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "show/PlaylistFunctions.h"
#include "show/Show.h"
#include "show/ShowFunctions.h"
#include "show/TriggerFunctions.h"
#include "show/TriggeredSequencesFunctions.h"
#include "tests/show/RaisedError.h"

namespace vex {
namespace {

const std::string EmptyShow =
    "((0,1,2,0,,,T,F,F),(0,1,2,0,,,T,F,F),(1,0,1,0,,,T,F,F),(0,1,2,0,,,T,F,F),,(2,0,1,0,,,T,F,F),,0,,F)";
const std::string FullShow =
    "((0,1,2,0,,(start.seq),T,F,F),(0,1,2,0,,(end.seq),F,F,F),(1,0,1,0,,(a.seq,b*Sc.seq),T,F,F),"
    "(0,2,2,15,sweep.seq,(carol.seq,bells.seq),T,T,T),,(2,0,1,0,,(glow.seq),T,F,F),"
    "((1,desc,T,T,F,Porch,((x.seq,(3,Door,1,0),y.seq)),T),(1,,F,F,T,,((z.seq,(4,,1,0))),F)),"
    "2,(5,Start*Sbutton,1,0),T)";

const std::string P = "(1,0,1,0,,)";  // an animation playlist
const std::string M = "(0,1,2,0,,)";  // a musical one
const std::string Group = "(1,,F,F,T,g,((s,(1,t,1,0))),T)";

/// Ten fields with one of them replaced.
std::string ShowWith(size_t field, const std::string& szText) {
  std::vector<std::string> fields = {M, M, P, M, "", P, "", "0", "", "F"};
  fields[field - 1] = szText;
  std::string szShow = "(";
  for (const auto& szField : fields) szShow += (szShow.size() > 1 ? "," : "") + szField;
  return szShow + ")";
}

std::shared_ptr<Playlist> Any() {
  return std::make_shared<Playlist>();
}

TEST(ShowText, ANewShowIsWrittenWithItsDefaults) {
  EXPECT_EQ(EmptyShow, ShowToText(Show()));
}

TEST(ShowText, IsReadAndWrittenToTheByte) {
  for (const auto& szText : {EmptyShow, FullShow}) {
    const auto show = ShowFromText(szText);
    ASSERT_NE(nullptr, show);
    EXPECT_EQ(szText, ShowToText(*show));
  }
}

TEST(ShowText, APartOutlivesItsShow) {
  std::shared_ptr<TriggeredSequences> entry;
  {
    const auto show = ShowFromText(FullShow);
    entry = show->InteractiveGroups().Item(1)->GetTriggeredSequences(0);
  }
  EXPECT_EQ("x.seq", entry->Sequence(0));
  EXPECT_EQ("Door", entry->Trig()->Name());
  entry->AddSequence("added.seq");
  EXPECT_EQ("added.seq", entry->Sequence(2));
  TriggeredSequences copy;
  copy.Copy(*entry);
  entry.reset();
  EXPECT_EQ("added.seq", copy.Sequence(2));
}

TEST(ShowText, ReadsEveryField) {
  const auto show = ShowFromText(FullShow);
  ASSERT_NE(nullptr, show);
  EXPECT_EQ("start.seq", show->Startup()->List().Item(1));
  EXPECT_EQ("end.seq", show->Shutdown()->List().Item(1));
  EXPECT_FALSE(show->Shutdown()->LightsOffAtEnd());
  EXPECT_EQ("b,c.seq", show->Main()->List().Item(2));
  EXPECT_EQ(15, show->Musical()->Delay());
  EXPECT_EQ("sweep.seq", show->Musical()->CleanUp());
  EXPECT_EQ("glow.seq", show->Background()->List().Item(1));
  ASSERT_EQ(2, show->InteractiveGroups().Count());
  EXPECT_EQ("Magic Toy", show->InteractiveGroups().Item(1)->TypeName());
  EXPECT_EQ("Jukebox", show->InteractiveGroups().Item(2)->TypeName());
  EXPECT_EQ(2, show->StartupType());
  ASSERT_NE(nullptr, show->StartupTrigger());
  EXPECT_EQ("Start,button", show->StartupTrigger()->Name());
  EXPECT_TRUE(show->PreloadSequences());
  EXPECT_EQ("", show->Monitoring()->Filename());
}

TEST(ShowText, WhatStandsAroundTheParenthesesIsPassedOver) {
  const auto show = ShowFromText("mark " + EmptyShow + "\r\n");
  ASSERT_NE(nullptr, show);
  EXPECT_EQ(EmptyShow, ShowToText(*show));
}

TEST(ShowText, FiveFieldsOfAnOldFileGetTheDefaults) {
  const auto show = ShowFromText("(" + M + "," + M + "," + P + "," + M + ",)");
  ASSERT_NE(nullptr, show);
  EXPECT_EQ(1, show->Background()->PlaylistType());
  EXPECT_EQ(2, show->Background()->AnimationType());
  EXPECT_EQ(0, show->Background()->Count());
  EXPECT_TRUE(show->Background()->ShuffleAllowsBackToBack());
  EXPECT_EQ(0, show->InteractiveGroups().Count());
  EXPECT_EQ(0, show->StartupType());
  EXPECT_EQ(nullptr, show->StartupTrigger());
  EXPECT_FALSE(show->PreloadSequences());
}

TEST(ShowText, EachFieldMissingAtTheEndGetsItsDefault) {
  const std::string szFour = M + "," + M + "," + P + "," + M;
  EXPECT_NE(nullptr, ShowFromText("(" + szFour + ")"));
  EXPECT_EQ(1, ShowFromText("(" + szFour + ",," + P + ")")->Background()->AnimationType());
  EXPECT_EQ(1, ShowFromText("(" + szFour + ",," + P + ",(" + Group + "))")->InteractiveGroups().Count());
  EXPECT_EQ(2, ShowFromText("(" + szFour + ",," + P + ",,2)")->StartupType());
  const auto show = ShowFromText("(" + szFour + ",," + P + ",,2,(1,t,1,0))");
  EXPECT_NE(nullptr, show->StartupTrigger());
  EXPECT_FALSE(show->PreloadSequences());
}

TEST(ShowText, FewerThanFourFieldsYieldNoShow) {
  EXPECT_EQ(nullptr, ShowFromText("(" + M + "," + M + "," + P + ")"));
  EXPECT_EQ(nullptr, ShowFromText("(" + M + ")"));
  EXPECT_EQ(nullptr, ShowFromText("()"));
}

TEST(ShowText, ATextWithNoListAtAllYieldsNoShow) {
  EXPECT_EQ(nullptr, ShowFromText(""));
  EXPECT_EQ(nullptr, ShowFromText("no show"));
}

TEST(ShowText, FieldFiveIsNeverReadAndComesBackEmpty) {
  EXPECT_EQ(ShowToText(*ShowFromText(ShowWith(5, ""))), ShowToText(*ShowFromText(ShowWith(5, "(x,y)"))));
}

TEST(ShowText, MoreFieldsThanKnownAreNotRead) {
  const auto show = ShowFromText(EmptyShow.substr(0, EmptyShow.size() - 1) + ",more,(and more))");
  ASSERT_NE(nullptr, show);
  EXPECT_EQ(EmptyShow, ShowToText(*show));
}

TEST(ShowText, AShowWithoutGroupsWritesFieldSevenEmpty) {
  EXPECT_EQ(ShowToText(*ShowFromText(ShowWith(7, ""))), ShowToText(*ShowFromText(ShowWith(7, "()"))));
}

TEST(ShowText, AFileCannotGiveAPlaylistAnotherKind) {
  const auto main = ShowFromText(ShowWith(3, "(0,3,2,9,,)"))->Main();
  EXPECT_EQ(1, main->PlaylistType());
  EXPECT_EQ(1, main->AnimationType());
  EXPECT_EQ(0, main->MusicalType());
  EXPECT_EQ(0, main->Delay());
  EXPECT_EQ(1, ShowFromText(ShowWith(6, "(0,3,2,9,,)"))->Background()->PlaylistType());
  for (const size_t field : {1, 2, 4}) {
    const auto show = ShowFromText(ShowWith(field, "(2,0,1,0,,)"));
    const auto list = field == 1 ? show->Startup() : field == 2 ? show->Shutdown() : show->Musical();
    EXPECT_EQ(2, list->PlaylistType());
    EXPECT_EQ(0, list->AnimationType());
    EXPECT_EQ(1, list->MusicalType());
  }
}

TEST(ShowTextErrors, OfTheWholeTextAreRaised) {
  EXPECT_EQ(ListError1, RaisedError([] { (void)ShowFromText("(a,b"); }));
  EXPECT_EQ(ListError1, RaisedError([] { (void)ShowFromText(")("); }));
  EXPECT_EQ(ListError3, RaisedError([] { (void)ShowFromText("(a),b),c)"); }));
  EXPECT_EQ(ListError2, RaisedError([] { (void)ShowFromText("((a,b)"); }));
  EXPECT_EQ(ListError4, RaisedError([] { (void)ShowFromText("(x,(a(b),c)"); }));
}

TEST(ShowTextErrors, OfTheListOfGroupsAreRaised) {
  // Sound as a field of the show, but the list between its first and its last parenthesis is not.
  EXPECT_EQ(ListError3, RaisedError([] { (void)ShowFromText(ShowWith(7, "(a)(b,c)")); }));
}

TEST(ShowTextErrors, OfTheListOfGroupsAreRaisedEvenWhereThereWouldBeNoShow) {
  EXPECT_EQ(ListError3, RaisedError([] { (void)ShowFromText("(bad,bad,bad,bad,,bad,(a)(b,c),0,,F)"); }));
}

TEST(ShowTextErrors, OfOtherInnerListsAreNot) {
  EXPECT_EQ(nullptr, ShowFromText(ShowWith(1, "(a)(b,c)")));
  EXPECT_EQ(nullptr, ShowFromText(ShowWith(4, "(1,0,1,0,,(a)(b,c))")));
  EXPECT_EQ(nullptr, ShowFromText(ShowWith(9, "(a)(b,c)"))->StartupTrigger());
}

TEST(ShowTextErrors, APlaylistThatCannotBeReadYieldsNoShow) {
  for (const size_t field : {1, 2, 3, 4, 6}) {
    EXPECT_EQ(nullptr, ShowFromText(ShowWith(field, ""))) << field;
    EXPECT_EQ(nullptr, ShowFromText(ShowWith(field, "bad"))) << field;
    EXPECT_EQ(nullptr, ShowFromText(ShowWith(field, "(1,0,1,0,)"))) << field;
    EXPECT_EQ(nullptr, ShowFromText(ShowWith(field, "(x,0,1,0,,)"))) << field;
    EXPECT_EQ(nullptr, ShowFromText(ShowWith(field, "(1,0,1,99999999999,,)"))) << field;
  }
}

TEST(ShowTextErrors, AGroupThatCannotBeReadIsDropped) {
  const auto show = ShowFromText(
      ShowWith(7, "(bad," + Group + ",,(1,,F,F,T),(1,,F,F,T,g,((s,(x,t,1,0))),T)," + Group + ")"));
  ASSERT_NE(nullptr, show);
  EXPECT_EQ(2, show->InteractiveGroups().Count());
}

TEST(ShowTextErrors, ATriggerThatCannotBeReadStaysEmpty) {
  for (const char* szTrigger : {"bad", "(1,t,1)", "(x,t,1,0)", "()"}) {
    const auto show = ShowFromText(ShowWith(9, szTrigger));
    ASSERT_NE(nullptr, show) << szTrigger;
    EXPECT_EQ(nullptr, show->StartupTrigger()) << szTrigger;
  }
}

TEST(ShowTextErrors, AStartupTypeThatCannotBeReadStaysZero) {
  for (const char* szType : {"", "x", "99999999999", "()"}) {
    const auto show = ShowFromText(ShowWith(8, szType));
    ASSERT_NE(nullptr, show) << szType;
    EXPECT_EQ(0, show->StartupType()) << szType;
  }
  EXPECT_EQ(1, ShowFromText(ShowWith(8, "1.9"))->StartupType());
  EXPECT_EQ(-2, ShowFromText(ShowWith(8, "-1.1"))->StartupType());
}

TEST(ShowTextErrors, PreloadIsSetByTOnly) {
  EXPECT_TRUE(ShowFromText(ShowWith(10, "t"))->PreloadSequences());
  EXPECT_FALSE(ShowFromText(ShowWith(10, ""))->PreloadSequences());
  EXPECT_FALSE(ShowFromText(ShowWith(10, "yes"))->PreloadSequences());
}

TEST(ShowTextErrors, AShowCanBeReadThatCannotBeWritten) {
  const auto show = ShowFromText(ShowWith(7, "((0,,F,F,T,g,,T))"));
  ASSERT_NE(nullptr, show);
  EXPECT_EQ(1, show->InteractiveGroups().Count());
  EXPECT_EQ(SubscriptError, RaisedError([&] { (void)ShowToText(*show); }));
}

TEST(ShowTextErrors, AShowThatLacksAPartCannotBeWritten) {
  Show show;
  show.Musical(nullptr);
  EXPECT_EQ(ObjectNotSetError, RaisedError([&] { (void)ShowToText(show); }));
}

TEST(NewShow, ForcesTheKindOfEachPlaylist) {
  const auto show = NewShow(Any(), Any(), NewMusicalPlaylist(3, 4), Any(), NewMusicalPlaylist(3, 4), {}, 1,
                            NewTrigger(0, 1, 2, "t"), true);
  EXPECT_EQ(2, show->Startup()->PlaylistType());
  EXPECT_EQ(2, show->Shutdown()->PlaylistType());
  EXPECT_EQ(1, show->Main()->PlaylistType());
  EXPECT_EQ(2, show->Musical()->PlaylistType());
  EXPECT_EQ(1, show->Background()->PlaylistType());
  EXPECT_EQ(1, show->StartupType());
  EXPECT_EQ("t", show->StartupTrigger()->Name());
  EXPECT_TRUE(show->PreloadSequences());
}

TEST(NewShow, TakesEmptyEntriesOutOfTheGroups) {
  InteractiveGroupCollection groups;
  const auto first = std::make_shared<InteractiveGroup>(), last = std::make_shared<InteractiveGroup>();
  groups.Add(nullptr);
  groups.Add(first);
  groups.Add(nullptr);
  groups.Add(last);
  groups.Add(nullptr);
  const auto show = NewShow(Any(), Any(), Any(), Any(), Any(), groups, 0, nullptr, false);
  ASSERT_EQ(2, show->InteractiveGroups().Count());
  EXPECT_EQ(first, show->InteractiveGroups().Item(1));
  EXPECT_EQ(last, show->InteractiveGroups().Item(2));
}

TEST(NewShow, WithoutAPlaylistFails) {
  EXPECT_EQ(ObjectNotSetError,
            RaisedError([] { (void)NewShow(nullptr, Any(), Any(), Any(), Any(), {}, 0, nullptr, false); }));
  EXPECT_EQ(ObjectNotSetError,
            RaisedError([] { (void)NewShow(Any(), Any(), Any(), nullptr, Any(), {}, 0, nullptr, false); }));
}

}  // namespace
}  // namespace vex
