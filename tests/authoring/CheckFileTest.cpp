#include "tools/authoring/CheckFile.h"

#include <gmock/gmock.h>

#include "tests/authoring/Told.h"

namespace vex {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string Playlists =
    "(0,1,2,0,,,T,F,F),(0,1,2,0,,,T,F,F),(1,0,1,0,,(a),T,F,F),(0,1,2,0,,,T,F,F),,(2,0,1,0,,,T,F,F)";
const std::string SoundShow = "(" + Playlists + ",,0,,F)";

class CheckFileTest : public testing::Test {
 protected:
  [[nodiscard]] CheckedFile Check(FileKind kind, const std::string& szText) {
    m_Files.Put("C:\\f", szText);
    return CheckFile(m_Files, "C:\\f", kind);
  }
  /// The failure with its place.
  [[nodiscard]] std::string Wrong(FileKind kind, const std::string& szText) {
    const CheckedFile checked = Check(kind, szText);
    return Told(checked) + " | " + checked.Words;
  }
  VirtualFiles m_Files;
};

TEST_F(CheckFileTest, TheNameTellsTheKind) {
  EXPECT_EQ(KindOfFile("D:\\shows\\weeksched.qsc"), FileKind::Week);
  EXPECT_EQ(KindOfFile("/srv/WeekSched.QSC"), FileKind::Week);
  EXPECT_EQ(KindOfFile("D:yearsched.qsc"), FileKind::Year);
  EXPECT_EQ(KindOfFile("yearsched.qsc"), FileKind::Year);
  EXPECT_EQ(KindOfFile("weeksched.qsc.old"), FileKind::Show);
  EXPECT_EQ(KindOfFile("weeksched.qsc\\a"), FileKind::Show);
  EXPECT_EQ(KindOfFile(""), FileKind::Show);
}

TEST_F(CheckFileTest, ASoundFileGivesTheTextThatWouldBeWritten) {
  EXPECT_EQ(Check(FileKind::Week, "xx" + MondayShow + "\r\n").Text, MondayShow);
  EXPECT_EQ(Check(FileKind::Week, "").Text, "()");
  EXPECT_EQ(Check(FileKind::Year, ChristmasEve + "\r\n").Text, ChristmasEve);
  EXPECT_EQ(Check(FileKind::Year, "()").Text, "()");
  EXPECT_EQ(Check(FileKind::Show, SoundShow).Text, SoundShow);
  EXPECT_EQ(Check(FileKind::Show, SoundShow).Words, "");
}

TEST_F(CheckFileTest, AnOldShowIsWrittenWithAllItsFields) {
  EXPECT_EQ(
      Check(FileKind::Show, "((0,1,2,0,,),(0,1,2,0,,),(1,0,1,0,,),(0,1,2,0,,),)").Text,
      "((0,1,2,0,,,T,T,T),(0,1,2,0,,,T,T,T),(1,0,1,0,,,T,T,T),(0,1,2,0,,,T,T,T),,(2,0,1,0,,,T,T,T),,0,,F)");
}

TEST_F(CheckFileTest, AListGivesItsFieldsAsTheyStand) {
  EXPECT_THAT(Check(FileKind::List, "(a,(b,c),*S)").Fields, ElementsAre("a", "(b,c)", "*S"));
  EXPECT_THAT(Check(FileKind::List, "()").Fields, ElementsAre(""));
  EXPECT_THAT(Check(FileKind::List, "none").Fields, IsEmpty());
  EXPECT_EQ(Wrong(FileKind::List, "(a,b"),
            "1/Serialize.ListFromText/Badly formatted list, enclosing parens | it has 1 \"(\" and 0 \")\"");
  EXPECT_EQ(
      Wrong(FileKind::List, "(a),b),c)"),
      "3/Serialize.ListFromText/Badly formatted list, unexpected closing paren | it has 1 \"(\" and 3 \")\"");
  EXPECT_THAT(Wrong(FileKind::List, ")a("), HasSubstr("1 \"(\" and 1 \")\", and one of them is misplaced"));
}

TEST_F(CheckFileTest, AFileThatCannotBeReadIsNumber53) {
  EXPECT_EQ(Told(CheckFile(m_Files, "C:\\gone.shw", FileKind::Show)), "53//File not found");
  m_Files.Put("C:\\f", SoundShow);
  m_Files.FailReads("C:\\f", "Permission denied");
  EXPECT_EQ(Told(CheckFile(m_Files, "C:\\f", FileKind::Show)), "53//Permission denied");
  EXPECT_EQ(CheckFile(m_Files, "C:\\f", FileKind::Show).Words, "");
}

TEST_F(CheckFileTest, AConflictInAWeekIsNamedWithItsEvents) {
  EXPECT_EQ(
      Wrong(FileKind::Week, "((165600,2,(,0,eve.shw),151200),(165600,2,(,0,b.shw),140000))"),
      "2" + Conflict +
          " | event 2, \"b.shw\" from Mon 14:53:20 to Mon 22:00; \"eve.shw\" from Mon 18:00 to Mon 22:00 "
          "stands in the way");
}

TEST_F(CheckFileTest, AnEventThatCannotBeReadIsNamed) {
  EXPECT_EQ(Wrong(FileKind::Week, "((165600,2,(,0,eve.shw),151200),(1,2))"),
            "9//Subscript out of range | event 2, \"(1,2)\", cannot be read");
  EXPECT_THAT(Wrong(FileKind::Week, "((1,2"), HasSubstr(" | it has 2 \"(\" and 0 \")\""));
}

TEST_F(CheckFileTest, ADateThatIsWrongIsNamed) {
  EXPECT_EQ(Wrong(FileKind::Year, "((2026-12-24,()),(2026-13-24,()))"),
            "13//Type mismatch | date 2, \"2026-13-24\", is not on the calendar; write it as 2026-12-24");
  EXPECT_EQ(
      Wrong(FileKind::Year, "((2026-12,()))"),
      "37//Unexpected date string format: 2026-12 | date 1, \"2026-12\", is not on the calendar; write it "
      "as 2026-12-24");
  EXPECT_EQ(Wrong(FileKind::Year, "((2026-12-24,()),(2026-12-24,()))"),
            "5//Invalid procedure call or argument | date 2, 2026-12-24, stands there twice");
  EXPECT_EQ(Wrong(FileKind::Year, "((2026-12-24))"),
            "9//Subscript out of range | date 1, \"(2026-12-24)\", is no date with its shows");
  EXPECT_EQ(Wrong(FileKind::Year, "((2026-12-24,((1))))"),
            "9//Subscript out of range | date 1, 2026-12-24: event 1, \"(1)\", cannot be read");
}

TEST_F(CheckFileTest, ATextWithoutAShowIsNumber91) {
  EXPECT_EQ(Wrong(FileKind::Show, ""),
            "91//Object variable not set | there is no list in it; a show file begins with \"(\"");
  EXPECT_EQ(Wrong(FileKind::Show, "((0,1,2,0,,),(0,1,2,0,,),(1,0,1,0,,),,)"),
            "91//Object variable not set | field 4, the musical playlist, is missing");
  EXPECT_EQ(Wrong(FileKind::Show, "((0,1,2,0,,),(0,1,2,0,,),(1,x,1,0,,),(0,1,2,0,,),)"),
            "91//Object variable not set | field 3, the main playlist, is damaged: \"(1,x,1,0,,)\"");
  EXPECT_EQ(Wrong(FileKind::Show, "((0,1,2,0,,))"),
            "91//Object variable not set | field 2, the shutdown playlist, is missing");
  EXPECT_EQ(Wrong(FileKind::Show, "((0,1,2,0,,),(0,1,2,0,,),(1,0,1,0,,),(0,1,2,0,,),,(1))"),
            "91//Object variable not set | field 6, the background playlist, is damaged: \"(1)\"");
}

TEST_F(CheckFileTest, AShowThatCannotBeWrittenIsNumber9) {
  EXPECT_EQ(Wrong(FileKind::Show, "(" + Playlists + ",((0,,F,F,T,Door,,T)),0,,F)"),
            "9//Subscript out of range | interactive group 1, \"Door\", has no inputs");
}

TEST_F(CheckFileTest, DamagedGroupsOfAShowAreTheListsErrors) {
  EXPECT_EQ(Wrong(FileKind::Show, "(" + Playlists + ",x,0,,F)"), "done | ");
  EXPECT_EQ(
      Wrong(FileKind::Show, "(" + Playlists + ",(x)(,),0,,F)"),
      "3/Serialize.ListFromText/Badly formatted list, unexpected closing paren | the interactive groups: it "
      "has 2 \"(\" and 2 \")\", and one of them is misplaced");
}

TEST_F(CheckFileTest, WhatIsLeftOutOfASoundShowIsTold) {
  const CheckedFile checked =
      Check(FileKind::Show, "(" + Playlists + ",((1,,F,F,T,Door,((a,(1,b,2,3))),T),(1,2)),x,(1,2),F)");
  EXPECT_EQ(Told(checked), "done");
  EXPECT_THAT(checked.LeftOut, ElementsAre("interactive group 2 cannot be read and is left out: \"(1,2)\"",
                                           "the startup type cannot be read and counts as 0: \"x\"",
                                           "the startup trigger cannot be read and is left out: \"(1,2)\""));
  EXPECT_THAT(Check(FileKind::Show, SoundShow).LeftOut, IsEmpty());
}

TEST_F(CheckFileTest, ALongPieceIsCutShort) {
  EXPECT_THAT(Wrong(FileKind::Week, "((" + std::string(1000, '1') + "))"),
              HasSubstr("event 1, \"(" + std::string(59, '1') + "...\", cannot be read"));
}

}  // namespace
}  // namespace vex
