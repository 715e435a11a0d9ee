#include <gtest/gtest.h>

#include "host/virtual/VirtualFiles.h"
#include "schedule/DebugTrace.h"
#include "schedule/ScheduleFunctions.h"
#include "schedule/YearScheduleFunctions.h"
#include "tests/schedule/ScheduleWords.h"

namespace vex {
namespace {

const std::string Path = "C:\\Data\\weeksched.qsc";

std::string ReadWeek(const std::string& szText) {
  return RaisedError([&] { (void)ScheduleFromText(szText); });
}
std::string ReadYear(const std::string& szText) {
  return RaisedError([&] { (void)YearScheduleFromText(szText); });
}

TEST(ScheduleText, AWeekWithoutShowsIsAnEmptyList) {
  EXPECT_EQ("()", ScheduleToText(Schedule()));
  EXPECT_EQ(Lines{"Sun 0:00 - Sun 0:00"}, Chain(*ScheduleFromText("()")));
  EXPECT_EQ(Lines{"Sun 0:00 - Sun 0:00"}, Chain(*ScheduleFromText("")));
}

TEST(ScheduleText, ShowsStandInTheOrderOfTheChainWithoutTheGaps) {
  Schedule schedule;
  schedule.AddShowEvent(ShowFrom(At(Tue, 18), At(Tue, 22), "b"));
  schedule.AddShowEvent(ShowFrom(At(Sat, 22), At(Sun, 2), "c"));
  schedule.AddShowEvent(ShowFrom(At(Mon, 18), At(Mon, 22), "a"));
  const std::string szText = "((165600,2,(,0,a),151200),(252000,2,(,0,b),237600),(7200,2,(,0,c),597600))";
  EXPECT_EQ(szText, ScheduleToText(schedule));
  const auto read = ScheduleFromText(szText);
  EXPECT_EQ(Chain(schedule), Chain(*read));
  EXPECT_EQ(szText, ScheduleToText(*read));
}

TEST(ScheduleText, AShowOverTheWeeksEndComesBackWithItsTrimmedGaps) {
  Schedule schedule;
  schedule.AddShowEvent(ShowFrom(At(Mon, 18), At(Mon, 22), "a"));
  schedule.AddShowEvent(ShowFrom(At(Sat, 22), At(Sun, 2), "c"));
  EXPECT_EQ((Lines{"Sun 2:00 - Mon 18:00", "Mon 18:00 - Mon 22:00 a", "Mon 22:00 - Sat 22:00",
                   "Sat 22:00 - Sun 2:00 c"}),
            Chain(*ScheduleFromText(ScheduleToText(schedule))));
}

TEST(ScheduleText, StoredShowsAreAddedInFileOrderUnderTheFullRules) {
  EXPECT_EQ("1/Schedule.AddShowEvent/Can't add event -- event conflict",
            ReadWeek("((165600,2,(,0,a),151200),(165600,2,(,0,b),151200))"));
  EXPECT_EQ("2/Schedule.AddShowEvent/Can't add event -- event conflict",
            ReadWeek("((165600,2,(,0,a),151200),(165600,2,(,0,b),151199))"));
  EXPECT_EQ("3/Schedule.AddShowEvent/Internal error",
            ReadWeek("((165600,2,(,0,a),151200),(200000,2,(,0,b),200001))"));
}

TEST(ScheduleText, WhatIsNoScheduleFails) {
  EXPECT_EQ(ListError1, ReadWeek("((1,2"));
  EXPECT_EQ(SubscriptError, ReadWeek("((165600,2,(,0,a)))"));
  EXPECT_EQ(SubscriptError, ReadWeek("(,)"));
  EXPECT_EQ(SubscriptError, ReadWeek("(x)"));
}

TEST(ScheduleText, AStoredNullEventIsLaidInAndNeverWrittenAgain) {
  const auto schedule = ScheduleFromText("((7200,1,(,0,),3600))");
  EXPECT_EQ((Lines{"Sun 0:00 - Sun 1:00", "Sun 1:00 - Sun 2:00", "Sun 2:00 - Sun 0:00"}), Chain(*schedule));
  EXPECT_EQ("()", ScheduleToText(*schedule));
}

TEST(ScheduleText, ReadingSetsModified) {
  EXPECT_TRUE(ScheduleFromText("((165600,2,(,0,a),151200))")->Modified());
  EXPECT_FALSE(ScheduleFromText("()")->Modified());
}

TEST(ScheduleFile, SaveWritesTheTextWithALineEndAndClearsModified) {
  VirtualFiles files;
  files.Put(Path, "old");
  Schedule schedule;
  schedule.AddShowEvent(ShowFrom(At(Mon, 18), At(Mon, 22)));
  EXPECT_TRUE(schedule.Save(files, Path));
  std::string szContents;
  ASSERT_TRUE(files.Read(Path, szContents));
  EXPECT_EQ("((165600,2,(,0,a),151200))\r\n", szContents);
  EXPECT_FALSE(schedule.Modified());
}

TEST(ScheduleFile, SaveDumpsToTheTrace) {
  VirtualFiles files;
  files.Put(Path, "old");
  Lines lines;
  DebugTraceTo([&](const std::string& szLine) { lines.push_back(szLine); });
  EXPECT_TRUE(Schedule().Save(files, Path));
  DebugTraceTo({});
  EXPECT_EQ((Lines{"BEGIN SCHEDULE DUMP", "Sun000 - Sun000", "END SCHEDULE DUMP"}), lines);
}

TEST(ScheduleFile, AFailingSaveSaysWhyAndLeavesModified) {
  VirtualFiles files;
  files.Put(Path, "old");
  files.FailWrites(Path, "No space left on device");
  Schedule schedule;
  schedule.Modified(true);
  std::string szReason;
  EXPECT_FALSE(schedule.Save(files, Path, &szReason));
  EXPECT_EQ("No space left on device", szReason);
  EXPECT_TRUE(schedule.Modified());
  EXPECT_FALSE(schedule.Save(files, Path));
}

TEST(ScheduleFile, LoadReadsTheWholeFileAndClearsModified) {
  VirtualFiles files;
  files.Put(Path, "((165600,2,(,0,a),151200))\r\n");
  const auto schedule = LoadSchedule(files, Path);
  EXPECT_EQ("a", schedule->FirstShowEvent()->Filename());
  EXPECT_FALSE(schedule->Modified());
}

TEST(ScheduleFile, AFileThatIsMissingOrCannotBeReadGivesAnEmptyWeek) {
  VirtualFiles files;
  EXPECT_EQ(Lines{"Sun 0:00 - Sun 0:00"}, Chain(*LoadSchedule(files, Path)));
  files.Put(Path, "((165600,2,(,0,a),151200))");
  files.FailReads(Path);
  EXPECT_EQ(Lines{"Sun 0:00 - Sun 0:00"}, Chain(*LoadSchedule(files, Path)));
}

TEST(ScheduleFile, AFileThatCannotBeParsedRaises) {
  VirtualFiles files;
  files.Put(Path, "((165600,2");
  EXPECT_EQ(ListError1, RaisedError([&] { (void)LoadSchedule(files, Path); }));
}

TEST(YearText, AYearWithoutDatesIsAnEmptyList) {
  EXPECT_EQ("()", YearScheduleToText(YearSchedule()));
  EXPECT_EQ(0, YearScheduleFromText("()")->Keys().Count());
  EXPECT_EQ(0, YearScheduleFromText("")->Keys().Count());
}

TEST(YearText, DatesKeepTheOrderInWhichTheyWereAdded) {
  YearSchedule year;
  year.AddShowEventByFile("b", DateTime::FromParts(2026, 12, 25, 18), DateTime::FromParts(2026, 12, 25, 20));
  year.AddShowEventByFile("a", DateTime::FromParts(2026, 12, 24, 18), DateTime::FromParts(2026, 12, 24, 20));
  const std::string szText =
      "((2026-12-25,((504000,2,(,0,b),496800))),(2026-12-24,((417600,2,(,0,a),410400))))";
  EXPECT_EQ(szText, YearScheduleToText(year));
  const auto read = YearScheduleFromText(szText);
  EXPECT_EQ("2026-12-25", read->Keys().Item(1));
  EXPECT_EQ("2026-12-24", read->Keys().Item(2));
  EXPECT_EQ(szText, YearScheduleToText(*read));
}

TEST(YearText, ADateIsWrittenInFullHoweverItWasRead) {
  EXPECT_EQ("((2026-01-05,()))", YearScheduleToText(*YearScheduleFromText("((2026-1-5,()))")));
}

TEST(YearText, MoreThanAPairIsNotRead) {
  EXPECT_EQ("((2026-01-05,()))", YearScheduleToText(*YearScheduleFromText("((2026-01-05,(),more))")));
}

TEST(YearText, WhatIsNoYearFails) {
  EXPECT_EQ("37//Unexpected date string format: 2026-12", ReadYear("((2026-12,()))"));
  EXPECT_EQ(TypeMismatchError, ReadYear("((2026-13-01,()))"));
  EXPECT_EQ(TypeMismatchError, ReadYear("((2026-02-30,()))"));
  EXPECT_EQ(InvalidCallError, ReadYear("((2026-12-24,()),(2026-12-24,()))"));
  EXPECT_EQ(SubscriptError, ReadYear("((2026-12-24))"));
  EXPECT_EQ(SubscriptError, ReadYear("(,)"));
  EXPECT_EQ(SubscriptError, ReadYear("((2026-12-24,((1,2,(,0,a)))))"));
  EXPECT_EQ("1/Schedule.AddShowEvent/Can't add event -- event conflict",
            ReadYear("((2026-12-24,((9,2,(,0,a),1),(9,2,(,0,a),1))))"));
  EXPECT_EQ(ListError1, ReadYear("((2026-12-24"));
}

TEST(YearText, TheDateIsReadBeforeItsSchedule) {
  EXPECT_EQ(TypeMismatchError, ReadYear("((2026-13-01,(x)))"));
}

TEST(YearFile, SavesAndLoads) {
  VirtualFiles files;
  const std::string szPath = "C:\\Data\\yearsched.qsc";
  files.Put(szPath, "old");
  YearSchedule year;
  year.AddShowEventByFile("a", DateTime::FromParts(2026, 12, 24, 18), DateTime::FromParts(2026, 12, 24, 20));
  EXPECT_TRUE(year.Save(files, szPath));
  EXPECT_FALSE(year.Modified());
  std::string szContents;
  ASSERT_TRUE(files.Read(szPath, szContents));
  EXPECT_EQ("((2026-12-24,((417600,2,(,0,a),410400))))\r\n", szContents);
  const auto read = LoadYearSchedule(files, szPath);
  EXPECT_FALSE(read->Modified());
  EXPECT_EQ(1, read->Keys().Count());
}

TEST(YearFile, AFailingSaveSaysWhyAndLeavesModified) {
  VirtualFiles files;
  files.Put(Path, "old");
  files.FailWrites(Path, "No space left on device");
  YearSchedule year;
  year.Modified(true);
  std::string szReason;
  EXPECT_FALSE(year.Save(files, Path, &szReason));
  EXPECT_EQ("No space left on device", szReason);
  EXPECT_TRUE(year.Modified());
}

TEST(YearFile, AFileThatIsMissingGivesAnEmptyYearAndOneThatCannotBeParsedRaises) {
  VirtualFiles files;
  EXPECT_EQ(0, LoadYearSchedule(files, Path)->Keys().Count());
  files.Put(Path, "((2026-12,()))");
  EXPECT_EQ("37//Unexpected date string format: 2026-12",
            RaisedError([&] { (void)LoadYearSchedule(files, Path); }));
}

}  // namespace
}  // namespace vex
