#include "tools/authoring/ChangeSchedule.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <set>

#include "show/lists/Serialize.h"
#include "tests/authoring/Told.h"
#include "tools/authoring/Moments.h"

namespace vex {
namespace {

const std::string Week = "C:\\d\\weeksched.qsc";
const std::string Year = "C:\\d\\yearsched.qsc";

class ChangeScheduleTest : public testing::Test {
 protected:
  void SetUp() override { m_Files.MakeFolder("C:\\d"); }
  WeekOutcome Add(const char* szStart, const char* szEnd, const std::string& szShow = "b.shw") {
    return AddToWeek(m_Files, Week, ParseWeekTime(szStart), ParseWeekTime(szEnd), szShow);
  }
  WeekOutcome Remove(const char* szTime) { return RemoveFromWeek(m_Files, Week, ParseWeekTime(szTime)); }
  YearOutcome AddDated(const char* szStart, const char* szEnd) {
    return AddToYear(m_Files, Year, ParseDateTime(szStart), ParseDateTime(szEnd), "y.shw");
  }
  YearOutcome RemoveDated(const char* szTime) { return RemoveFromYear(m_Files, Year, ParseDateTime(szTime)); }
  VirtualFiles m_Files;
};

// The week.

TEST_F(ChangeScheduleTest, AddingToAFileThatDoesNotExistCreatesIt) {
  const WeekOutcome week = Add("Mon 18:00", "Mon 22:00", "eve.shw");
  EXPECT_EQ(Told(week), "done");
  EXPECT_EQ(week.Words, "added \"eve.shw\" from Mon 18:00 to Mon 22:00");
  EXPECT_EQ(week.Text, MondayShow);
  EXPECT_EQ(Contents(m_Files, Week), MondayShow + "\r\n");
}

TEST_F(ChangeScheduleTest, AnUnknownFileIsAnEmptySchedule) {
  EXPECT_EQ(ReadWeek(m_Files, Week).Text, "()");
  EXPECT_EQ(ReadYear(m_Files, Year).Text, "()");
  EXPECT_EQ(Told(Remove("Mon 18:00")), NoShowEvent);
  EXPECT_EQ(Told(RemoveDated("2026-12-24 18:00")), NoShowEvent);
  EXPECT_EQ(Told(RemoveFromWeek(m_Files, "C:\\no\\w.qsc", ParseWeekTime("Mon 18:00"))), NoShowEvent);
  EXPECT_FALSE(m_Files.Exists(Week) || m_Files.Exists(Year));
}

TEST_F(ChangeScheduleTest, AConflictNamesTheShowsInTheWayAndLeavesTheFile) {
  m_Files.Put(Week, MondayShow);
  WeekOutcome week = Add("Mon 20:00", "Mon 23:00");
  EXPECT_EQ(Told(week), "1" + Conflict);
  EXPECT_EQ(week.Words, "\"eve.shw\" from Mon 18:00 to Mon 22:00 stands in the way");
  week = Add("Mon 17:00", "Mon 19:00");
  EXPECT_EQ(Told(week), "2" + Conflict);
  EXPECT_EQ(week.Words, "\"eve.shw\" from Mon 18:00 to Mon 22:00 stands in the way");
  EXPECT_EQ(Contents(m_Files, Week), MondayShow);
}

TEST_F(ChangeScheduleTest, AShowRoundTheWholeWeekIsInEverybodysWay) {
  m_Files.Put(Week, MondayShow);
  const WeekOutcome week = Add("Tue 10:00", "Tue 09:00");
  EXPECT_EQ(Told(week), "3/Schedule.AddShowEvent/Internal error");
  EXPECT_EQ(week.Words, "\"eve.shw\" from Mon 18:00 to Mon 22:00 stands in the way");
}

TEST_F(ChangeScheduleTest, ManyShowsInTheWayAreCounted) {
  for (const char* szDay : {"Mon", "Tue", "Wed", "Thu", "Fri"})
    Add((std::string(szDay) + " 18:00").c_str(), (std::string(szDay) + " 22:00").c_str(), szDay);
  EXPECT_EQ(Add("Mon 12:00", "Wed 12:00").Words,
            "\"Mon\" from Mon 18:00 to Mon 22:00 and \"Tue\" from Tue 18:00 to Tue 22:00 stand in the way");
  EXPECT_EQ(
      Add("Mon 12:00", "Fri 23:00").Words,
      "\"Mon\" from Mon 18:00 to Mon 22:00, \"Tue\" from Tue 18:00 to Tue 22:00 and 3 more stand in the way");
}

TEST_F(ChangeScheduleTest, AnEndThatIsTheStartIsRefused) {
  const WeekOutcome week = Add("Mon 18:00", "Mon 18:00");
  EXPECT_EQ(Told(week), "1" + Conflict);
  EXPECT_EQ(week.Words, "the show ends when it starts; give it another end");
  EXPECT_FALSE(m_Files.Exists(Week));
}

TEST_F(ChangeScheduleTest, AShowMayRunOverTheWeeksEnd) {
  EXPECT_EQ(Add("Sat 22:00", "Sun 02:00").Text, "((7200,2,(,0,b.shw),597600))");
  EXPECT_EQ(Add("Mon 18:00", "Mon 22:00", "eve.shw").Text,
            "((165600,2,(,0,eve.shw),151200),(7200,2,(,0,b.shw),597600))");
  EXPECT_EQ(Remove("Sun 01:59:59").Text, MondayShow);
}

TEST_F(ChangeScheduleTest, RemovingTakesTheShowInForce) {
  m_Files.Put(Week, MondayShow);
  EXPECT_EQ(Told(Remove("Mon 22:00")), NoShowEvent);
  EXPECT_EQ(Remove("Mon 17:59:59").Words, "no show is in force at Mon 17:59:59; see vexctl week list");
  const WeekOutcome week = Remove("Mon 18:00");
  EXPECT_EQ(week.Words, "removed \"eve.shw\" from Mon 18:00 to Mon 22:00");
  EXPECT_EQ(Contents(m_Files, Week), "()\r\n");
}

TEST_F(ChangeScheduleTest, AFileThatCannotBeReadIsNotTakenForAnEmptyOne) {
  m_Files.Put(Week, MondayShow);
  m_Files.FailReads(Week);
  EXPECT_EQ(Told(Add("Tue 18:00", "Tue 22:00")), "53//Permission denied");
  EXPECT_EQ(Told(ReadWeek(m_Files, Week)), "53//Permission denied");
  m_Files.HealReads(Week);
  EXPECT_EQ(Contents(m_Files, Week), MondayShow);
}

TEST_F(ChangeScheduleTest, ADamagedFileIsLeftAsItIsAndThePlaceIsTold) {
  m_Files.Put(Week, "((1,2))");
  const WeekOutcome week = Add("Tue 18:00", "Tue 22:00");
  EXPECT_EQ(Told(week), "9//Subscript out of range");
  EXPECT_EQ(week.Words, "event 1, \"(1,2)\", cannot be read");
  EXPECT_EQ(week.Shows, nullptr);
  EXPECT_EQ(Contents(m_Files, Week), "((1,2))");
}

TEST_F(ChangeScheduleTest, NothingIsWrittenThatCannotBeReadBack) {
  const std::string szWithoutLength = "((0,2,(,0,a),0),(7,2,(,0,b),0),(547400,2,(,0,n),5976))";
  m_Files.Put(Week, szWithoutLength);
  ASSERT_EQ(Told(ReadWeek(m_Files, Week)), "done");
  const WeekOutcome week = Remove("Mon 19:00");
  EXPECT_EQ(Told(week), "1" + Conflict);
  EXPECT_EQ(week.Words.substr(0, 50), "what would be written cannot be read back: event 2");
  EXPECT_EQ(Contents(m_Files, Week), szWithoutLength);
}

TEST_F(ChangeScheduleTest, AFileThatCannotBeWrittenIsAsItWas) {
  m_Files.Put(Week, MondayShow);
  m_Files.FailWrites(Week, "No space left on device");
  const WeekOutcome week = Add("Tue 18:00", "Tue 22:00");
  EXPECT_EQ(Told(week), "75//No space left on device");
  EXPECT_EQ(week.Words,
            "the file is as it was; see whether its folder may be written to and its disk has room");
  EXPECT_EQ(Contents(m_Files, Week), MondayShow);
}

TEST_F(ChangeScheduleTest, WithoutItsFolderAScheduleCannotBeWritten) {
  const WeekOutcome week =
      AddToWeek(m_Files, "C:\\no\\w.qsc", ParseWeekTime("Mon 18:00"), ParseWeekTime("Mon 19:00"), "a");
  EXPECT_EQ(Told(week), "76//Path not found");
  EXPECT_EQ(week.Words, "the folder does not exist; make it first");
}

/// The events of a schedule's text. Which of them comes first in a full week depends on how it came about.
std::multiset<std::string> Events(const std::string& szText) {
  const FieldArray fields = ListFromText(szText);
  return {fields.begin(), fields.end()};
}

TEST_F(ChangeScheduleTest, WhatIsAddedAndRemovedAgainLeavesNoTrace) {
  EXPECT_TRUE(rc::check("add, remove", [] {
    VirtualFiles files;
    files.MakeFolder("C:\\d");
    const auto any = [] {
      auto time = std::make_shared<WeekTime>();
      time->TimeVal(*rc::gen::inRange(0, 168) * 3600);
      return time;
    };
    for (int tries = 0; tries < 6; ++tries) {
      const std::string szBefore = ReadWeek(files, Week).Text;
      const auto start = any();
      const WeekOutcome added = AddToWeek(files, Week, start, any(), "s");
      if (added.Failure) {
        RC_ASSERT(ReadWeek(files, Week).Text == szBefore);
        RC_ASSERT(!added.Words.empty());
        continue;
      }
      RC_ASSERT(Contents(files, Week) == added.Text + "\r\n");
      RC_ASSERT(Events(ReadWeek(files, Week).Text) == Events(added.Text));
      RC_ASSERT(Events(RemoveFromWeek(files, Week, start).Text) == Events(szBefore));
      files.Put(Week, added.Text);
    }
  }));
}

// The year.

TEST_F(ChangeScheduleTest, ADatedShowIsAddedUnderItsDate) {
  const YearOutcome year = AddDated("2026-12-24 16:00", "2026-12-24 23:00");
  EXPECT_EQ(year.Words, "added \"y.shw\" from 2026-12-24 16:00 to 2026-12-24 23:00");
  EXPECT_EQ(Contents(m_Files, Year), "((2026-12-24,((428400,2,(,0,y.shw),403200))))\r\n");
}

TEST_F(ChangeScheduleTest, WhoeverRunsPastMidnightHearsThatItIsCutOff) {
  EXPECT_EQ(AddDated("2026-12-24 22:00", "2026-12-25 00:00").Words,
            "added \"y.shw\" from 2026-12-24 22:00 to 2026-12-25 00:00");
  EXPECT_EQ(
      AddDated("2026-12-28 22:00", "2026-12-29 00:00:01").Words,
      "added \"y.shw\" from 2026-12-28 22:00 to 2026-12-29 00:00:01; a dated show is cut off at midnight");
}

TEST_F(ChangeScheduleTest, EachRefusalOfADatedShowIsExplained) {
  m_Files.Put(Year, ChristmasEve);
  const std::string szSource = "/Schedule.AddShowEventByFile/";
  const std::string szEve = "\"x.shw\" from 2026-12-24 16:00 to 2026-12-24 23:00 stands in the way";
  const auto told = [](const YearOutcome& year) { return Told(year) + " | " + year.Words; };
  EXPECT_EQ(told(AddDated("2026-12-24 20:00", "2026-12-24 20:00")),
            "1" + szSource + "End time precedes start time | give an end after the start, with its date");
  EXPECT_EQ(
      told(AddDated("2026-12-25 22:00", "2026-12-27 01:00")),
      "2" + szSource +
          "Event spans more than two days | a dated show may run past one midnight and is cut off there; "
          "add one for each date");
  EXPECT_EQ(told(AddDated("2026-12-23 22:00", "2026-12-24 17:00")),
            "3" + szSource + "End time conficts with event in next day | " + szEve);
  EXPECT_EQ(told(AddDated("2026-12-24 22:00", "2026-12-25 01:00")),
            "4" + szSource + "Start time conflicts with event in previous day | " + szEve);
  EXPECT_EQ(told(AddDated("2026-12-24 15:00", "2026-12-24 17:00")),
            "4" + szSource + "Event conflict | " + szEve);
  EXPECT_EQ(Contents(m_Files, Year), ChristmasEve);
}

TEST_F(ChangeScheduleTest, PastSaturdaysMidnightBesideAnotherShowThereIsARemedy) {
  ASSERT_EQ(Told(AddDated("2026-12-26 10:00", "2026-12-26 12:00")), "done");
  const YearOutcome year = AddDated("2026-12-26 22:00", "2026-12-27 01:00");
  EXPECT_EQ(Told(year), "4/Schedule.AddShowEventByFile/Event conflict");
  EXPECT_EQ(year.Words,
            "beside another show of its date a show may not run past Saturday's midnight; let it end at "
            "2026-12-27 00:00, where dated shows are cut off anyway");
  EXPECT_EQ(Told(AddDated("2026-12-26 22:00", "2026-12-27 00:00")), "done");
}

TEST_F(ChangeScheduleTest, RemovingTheOnlyShowOfADateRemovesTheDate) {
  m_Files.Put(Year, ChristmasEve);
  const YearOutcome year = RemoveDated("2026-12-24 22:59:59");
  EXPECT_EQ(year.Words, "removed \"x.shw\" from Thu 16:00 to Thu 23:00 of 2026-12-24");
  EXPECT_EQ(Contents(m_Files, Year), "()\r\n");
}

TEST_F(ChangeScheduleTest, AfterMidnightTheShowOfTheDateBeforeIsNotInForce) {
  ASSERT_EQ(Told(AddDated("2026-12-24 22:00", "2026-12-25 02:00")), "done");
  ASSERT_EQ(Told(RemoveDated("2026-12-25 01:00")), NoShowEvent);
  ASSERT_EQ(Told(AddDated("2026-12-25 10:00", "2026-12-25 12:00")), "done");
  EXPECT_EQ(Told(RemoveDated("2026-12-25 01:00")), NoShowEvent);
  EXPECT_EQ(RemoveDated("2026-12-25 09:00").Words,
            "no dated show is in force at 2026-12-25 09:00; see vexctl year list");
  EXPECT_EQ(Told(RemoveDated("2026-12-24 23:00")), "done");
}

TEST_F(ChangeScheduleTest, AYearFileIsTreatedWithTheSameCare) {
  m_Files.Put(Year, "((2026-13-24,()))");
  EXPECT_EQ(Told(AddDated("2026-12-24 16:00", "2026-12-24 23:00")), "13//Type mismatch");
  m_Files.Put(Year, ChristmasEve);
  m_Files.FailReads(Year);
  EXPECT_EQ(Told(RemoveDated("2026-12-24 18:00")), "53//Permission denied");
  m_Files.HealReads(Year);
  m_Files.FailWrites(Year);
  EXPECT_EQ(Told(RemoveDated("2026-12-24 18:00")), "75//Permission denied");
  EXPECT_EQ(Contents(m_Files, Year), ChristmasEve);
}

}  // namespace
}  // namespace vex
