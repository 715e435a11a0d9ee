#include "basic/DateTime.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <string>
#include <tuple>

#include "tests/basic/Raises.h"

namespace vex::test {

namespace {

std::string Text(DateTime dtTime) {
  return FormatDateTime(dtTime);
}

DateTime First() {
  return DateTime::FromParts(100, 1, 1);
}

DateTime Last() {
  return DateTime::FromParts(9999, 12, 31, 23, 59, 59);
}

rc::Gen<DateTime> AnyDateTime() {
  return rc::gen::map(rc::gen::inRange<int64_t>(0, Last().SecondsSince(First()) + 1),
                      [](int64_t seconds) { return First().PlusSeconds(seconds); });
}

}  // namespace

TEST(DateTime, ANewOneIsTheZeroDate) {
  EXPECT_EQ(Text(DateTime()), "1899-12-30 00:00:00");
  EXPECT_EQ(DateTime(), DateTime::FromParts(1899, 12, 30));
}

TEST(DateTime, TellsItsParts) {
  const DateTime dtTime = DateTime::FromParts(2026, 12, 24, 18, 5, 9);
  EXPECT_EQ(dtTime.Year(), 2026);
  EXPECT_EQ(dtTime.Month(), 12);
  EXPECT_EQ(dtTime.Day(), 24);
  EXPECT_EQ(dtTime.Hour(), 18);
  EXPECT_EQ(dtTime.Minute(), 5);
  EXPECT_EQ(dtTime.Second(), 9);
  EXPECT_EQ(dtTime.DatePart(), DateTime::FromParts(2026, 12, 24));
}

TEST(DateTime, PartsBeforeTheZeroDateCountForward) {
  const DateTime dtTime = DateTime::FromParts(1899, 12, 29, 23, 0, 1);
  EXPECT_EQ(Text(dtTime), "1899-12-29 23:00:01");
  EXPECT_EQ(dtTime.DatePart(), DateTime::FromParts(1899, 12, 29));
  EXPECT_LT(dtTime, DateTime());
  EXPECT_EQ(DateTime().SecondsSince(dtTime), 3599);
  EXPECT_EQ(DateTime().DaysSince(dtTime), 1);
}

TEST(DateTime, KnowsWeekDays) {
  EXPECT_EQ(DateTime().WeekDay(), 7);
  EXPECT_EQ(DateTime::FromParts(2026, 12, 27).WeekDay(), 1);
  EXPECT_EQ(DateTime::FromParts(2026, 12, 24, 23, 59, 59).WeekDay(), 5);
  EXPECT_EQ(DateTime::FromParts(1582, 10, 15).WeekDay(), 6);
  EXPECT_EQ(DateTime::FromParts(100, 1, 1).WeekDay(), 6);
}

TEST(DateTime, LeapYearsFollowTheGregorianRule) {
  EXPECT_EQ(Text(DateTime::FromParts(2024, 2, 28).PlusDays(1)), "2024-02-29 00:00:00");
  EXPECT_EQ(Text(DateTime::FromParts(2023, 2, 28).PlusDays(1)), "2023-03-01 00:00:00");
  EXPECT_EQ(Text(DateTime::FromParts(2000, 2, 28).PlusDays(1)), "2000-02-29 00:00:00");
  EXPECT_EQ(Text(DateTime::FromParts(1900, 2, 28).PlusDays(1)), "1900-03-01 00:00:00");
}

TEST(DateTime, RefusesWhatIsOnNoCalendarOrClock) {
  const std::tuple<int, int, int, int, int, int> bad[] = {
      {99, 12, 31, 0, 0, 0},  {10000, 1, 1, 0, 0, 0}, {2026, 0, 1, 0, 0, 0},  {2026, 13, 1, 0, 0, 0},
      {2026, 1, 0, 0, 0, 0},  {2026, 1, 32, 0, 0, 0}, {2026, 4, 31, 0, 0, 0}, {2026, 2, 29, 0, 0, 0},
      {2026, 1, 1, -1, 0, 0}, {2026, 1, 1, 24, 0, 0}, {2026, 1, 1, 0, -1, 0}, {2026, 1, 1, 0, 60, 0},
      {2026, 1, 1, 0, 0, -1}, {2026, 1, 1, 0, 0, 60}};
  for (const auto& [y, m, d, h, min, s] : bad) {
    SCOPED_TRACE(std::to_string(y) + "-" + std::to_string(m) + "-" + std::to_string(d));
    ExpectPlatformError(
        [&, y = y, m = m, d = d, h = h, min = min, s = s] { return DateTime::FromParts(y, m, d, h, min, s); },
        ErrorTypeMismatch);
  }
}

TEST(DateTime, ReachesFromYear100ToYear9999) {
  EXPECT_EQ(Text(First()), "0100-01-01 00:00:00");
  EXPECT_EQ(Text(Last()), "9999-12-31 23:59:59");
  EXPECT_EQ(First().PlusSeconds(Last().SecondsSince(First())), Last());
  ExpectPlatformError([] { return First().PlusSeconds(-1); }, ErrorInvalidCall);
  ExpectPlatformError([] { return Last().PlusSeconds(1); }, ErrorInvalidCall);
  ExpectPlatformError([] { return First().PlusDays(-1); }, ErrorInvalidCall);
  ExpectPlatformError([] { return Last().PlusDays(1); }, ErrorInvalidCall);
  ExpectPlatformError([] { return DateTime().PlusDays(INT64_MAX); }, ErrorInvalidCall);
  ExpectPlatformError([] { return DateTime().PlusDays(INT64_MIN); }, ErrorInvalidCall);
  ExpectPlatformError([] { return DateTime().PlusSeconds(INT64_MAX); }, ErrorInvalidCall);
  ExpectPlatformError([] { return DateTime().PlusSeconds(INT64_MIN); }, ErrorInvalidCall);
}

TEST(DateTime, Formats) {
  const DateTime dtTime = DateTime::FromParts(2009, 1, 4, 3, 2, 1);
  EXPECT_EQ(FormatDateTime(dtTime), "2009-01-04 03:02:01");
  EXPECT_EQ(FormatDate(dtTime), "2009-01-04");
}

TEST(DateTime, ParsesThePictureAndShorterForms) {
  const DateTime dtDate = DateTime::FromParts(2026, 2, 4);
  EXPECT_EQ(ParseDateTime("2026-02-04 18:30:05"), dtDate.PlusSeconds(18 * 3600 + 30 * 60 + 5));
  EXPECT_EQ(ParseDateTime("2026-02-04 18:30"), dtDate.PlusSeconds(18 * 3600 + 30 * 60));
  EXPECT_EQ(ParseDateTime("2026-02-04"), dtDate);
  EXPECT_EQ(ParseDateTime("  2026-02-04  "), dtDate);
  EXPECT_EQ(ParseDateTime(" 2026-2-4  8:30:05 "), dtDate.PlusSeconds(8 * 3600 + 30 * 60 + 5));
  EXPECT_EQ(ParseDateTime("2026-2-4 0:0:0"), dtDate);
}

TEST(DateTime, ParsingRefusesWhatIsNoDate) {
  for (const char* szText : {"",
                             "  ",
                             "x",
                             "2026",
                             "2026-02",
                             "26-02-04",
                             "02026-02-04",
                             "2026-02-30",
                             "2026-13-01",
                             "2026-02-04x",
                             "2026-02-0418:30",
                             "2026-02-04 18",
                             "2026-02-04 24:00",
                             "2026-02-04 18:60",
                             "2026-02-04 18:30:60",
                             "2026-02-04 18:30:",
                             "2026-02-04 18:30:05x",
                             "2026-02-04T18:30:05",
                             "-2026-02-04",
                             "2026--2-04",
                             "0000-01-01",
                             "2026-02-004",
                             "2026-02-04 018:30"}) {
    SCOPED_TRACE(szText);
    ExpectPlatformError([&] { return ParseDateTime(szText); }, ErrorTypeMismatch);
  }
}

TEST(DateTimeProperty, ThePictureRoundTripsForEveryDate) {
  int32_t lWeekDay = First().WeekDay();
  size_t differing = 0;
  for (DateTime dtDay = First();; dtDay = dtDay.PlusDays(1)) {
    if (ParseDateTime(FormatDate(dtDay)) != dtDay || dtDay.WeekDay() != lWeekDay) ++differing;
    lWeekDay = lWeekDay % 7 + 1;
    if (dtDay.DaysSince(Last()) == 0) break;
  }
  EXPECT_EQ(differing, 0u);
}

TEST(DateTimeProperty, ThePictureRoundTripsForEverySecond) {
  EXPECT_TRUE(rc::check("format and parse", [] {
    const auto dtTime = *AnyDateTime();
    RC_ASSERT(ParseDateTime(FormatDateTime(dtTime)) == dtTime);
    RC_ASSERT(DateTime::FromParts(dtTime.Year(), dtTime.Month(), dtTime.Day(), dtTime.Hour(), dtTime.Minute(),
                                  dtTime.Second()) == dtTime);
  }));
}

TEST(DateTimeProperty, TheTextSortsAsTheTimeDoes) {
  EXPECT_TRUE(rc::check("order", [] {
    const auto dtOne = *AnyDateTime();
    const auto dtTwo = *AnyDateTime();
    RC_ASSERT((dtOne < dtTwo) == (FormatDateTime(dtOne) < FormatDateTime(dtTwo)));
    RC_ASSERT(dtTwo.PlusSeconds(dtOne.SecondsSince(dtTwo)) == dtOne);
    RC_ASSERT(dtTwo.DatePart().PlusDays(dtOne.DaysSince(dtTwo)) == dtOne.DatePart());
  }));
}

}  // namespace vex::test
