#include "time/TimeRange.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/basic/Raises.h"

namespace vex::test {

namespace {

/// A time of one evening.
DateTime At(int32_t lHour, int32_t lMinute = 0, int32_t lSecond = 0) {
  return DateTime::FromParts(2026, 12, 24, lHour, lMinute, lSecond);
}

TimeRange From(DateTime dtStart) {
  TimeRange range;
  range.StartTime(dtStart);
  return range;
}

TimeRange Until(DateTime dtEnd) {
  TimeRange range;
  range.EndTime(dtEnd);
  return range;
}

TimeRange Between(DateTime dtStart, DateTime dtEnd) {
  TimeRange range = From(dtStart);
  range.EndTime(dtEnd);
  return range;
}

bool OverlapsInclusive(const TimeRange& one, const TimeRange& other) {
  return one.Overlaps(other, true, true, true, true);
}

}  // namespace

TEST(TimeRange, ANewOneIsAlways) {
  const TimeRange always;
  EXPECT_FALSE(always.HasStart());
  EXPECT_FALSE(always.HasEnd());
  EXPECT_TRUE(always.Includes(At(0), false, false));
  EXPECT_TRUE(always.Includes(DateTime(), true, true));
  EXPECT_TRUE(always.Overlaps(Between(At(20), At(21)), false, false, false, false));
  EXPECT_TRUE(Between(At(20), At(21)).Overlaps(always, false, false, false, false));
  const TimeRange another;
  EXPECT_TRUE(always.Equals(&another));
}

TEST(TimeRange, ReadingAnAbsentBoundFails) {
  ExpectError([] { return TimeRange().StartTime(); }, 37, "", "Time range has no start");
  ExpectError([] { return TimeRange().EndTime(); }, 37, "", "Time range has no end");
}

TEST(TimeRange, BoundsAreReadAndCleared) {
  TimeRange range = Between(At(20), At(22));
  EXPECT_EQ(range.StartTime(), At(20));
  EXPECT_EQ(range.EndTime(), At(22));
  range.ClearStart();
  EXPECT_FALSE(range.HasStart());
  ExpectError([&] { return range.StartTime(); }, 37, "", "Time range has no start");
  EXPECT_EQ(range.EndTime(), At(22));
  range.ClearEnd();
  EXPECT_FALSE(range.HasEnd());
}

TEST(TimeRange, SettingEndBeforeStartClearsStart) {
  TimeRange range = From(At(20));
  range.EndTime(At(19));
  EXPECT_FALSE(range.HasStart());
  EXPECT_EQ(range.EndTime(), At(19));
}

TEST(TimeRange, SettingStartAfterEndClearsEnd) {
  TimeRange range = Until(At(20));
  range.StartTime(At(21));
  EXPECT_EQ(range.StartTime(), At(21));
  EXPECT_FALSE(range.HasEnd());
}

TEST(TimeRange, StartAndEndMayBeTheSame) {
  TimeRange range = Between(At(20), At(20));
  EXPECT_TRUE(range.HasStart());
  EXPECT_TRUE(range.HasEnd());
  range.StartTime(At(20));
  EXPECT_TRUE(range.HasEnd());
}

TEST(TimeRange, AClearedBoundCrossesNothing) {
  TimeRange range = Between(At(20), At(22));
  range.ClearEnd();
  range.StartTime(At(23));
  EXPECT_EQ(range.StartTime(), At(23));
  range.ClearStart();
  range.EndTime(At(1));
  EXPECT_EQ(range.EndTime(), At(1));
}

TEST(TimeRange, IncludesItsBoundsAsTheFlagsSay) {
  const TimeRange range = Between(At(20), At(22));
  EXPECT_FALSE(range.Includes(At(22), true, false));
  EXPECT_TRUE(range.Includes(At(22), true, true));
  EXPECT_TRUE(range.Includes(At(20), true, false));
  EXPECT_FALSE(range.Includes(At(20), false, true));
  EXPECT_TRUE(range.Includes(At(21), false, false));
  EXPECT_FALSE(range.Includes(At(19, 59, 59), true, true));
  EXPECT_FALSE(range.Includes(At(22, 0, 1), true, true));
}

TEST(TimeRange, IncludesWithoutABoundReachesOn) {
  EXPECT_TRUE(Until(At(22)).Includes(DateTime(), false, false));
  EXPECT_FALSE(Until(At(22)).Includes(At(22), true, false));
  EXPECT_TRUE(From(At(20)).Includes(DateTime::FromParts(9999, 12, 31), false, false));
  EXPECT_FALSE(From(At(20)).Includes(At(20), false, true));
}

TEST(TimeRange, IncludesAdjustableMovesABoundThatDoesNotCount) {
  const TimeRange range = Between(At(20), At(22));
  EXPECT_TRUE(range.IncludesAdjustable(At(20), At(23), true, true, true, true, true));
  EXPECT_TRUE(range.IncludesAdjustable(At(19, 59, 59), At(23), false, true, true, true, true));
  EXPECT_FALSE(range.IncludesAdjustable(At(19, 59, 59), At(23), true, true, true, true, true));
  EXPECT_TRUE(range.IncludesAdjustable(At(22, 0, 1), At(19), false, true, false, true, true));
  EXPECT_FALSE(range.IncludesAdjustable(At(22), At(23), false, true, true, true, true));
  EXPECT_FALSE(range.IncludesAdjustable(At(20), At(19), false, true, false, true, true));
}

TEST(TimeRange, IncludesAdjustableFindsNothingInAnotherOfOneSecondWithoutItsBounds) {
  const TimeRange range = Between(At(20), At(22));
  const DateTime dtNext = At(21, 0, 1);
  EXPECT_FALSE(range.IncludesAdjustable(At(21), dtNext, false, false, true, true, true));
  EXPECT_TRUE(range.IncludesAdjustable(At(21), dtNext, false, true, true, true, true));
  EXPECT_TRUE(range.IncludesAdjustable(At(21), dtNext, true, false, true, true, true));
  EXPECT_FALSE(range.IncludesAdjustable(dtNext, At(21), false, false, false, true, true));
}

TEST(TimeRange, RangesThatTouchOverlapOnlyWithBothBounds) {
  const TimeRange early = Between(At(20), At(22));
  const TimeRange late = Between(At(22), At(23));
  EXPECT_FALSE(early.Overlaps(late, true, false, true, true));
  EXPECT_FALSE(early.Overlaps(late, true, true, false, true));
  EXPECT_TRUE(OverlapsInclusive(early, late));
  EXPECT_TRUE(OverlapsInclusive(late, early));
  EXPECT_FALSE(late.Overlaps(early, true, true, true, false));
}

TEST(TimeRange, OneRangeWithinTheOtherOverlaps) {
  const TimeRange inner = Between(At(20, 30), At(21));
  const TimeRange outer = Between(At(20), At(22));
  EXPECT_TRUE(inner.Overlaps(outer, false, false, false, false));
  EXPECT_TRUE(outer.Overlaps(inner, false, false, false, false));
}

TEST(TimeRange, TwoWithoutStartOrTwoWithoutEndOverlap) {
  EXPECT_TRUE(Until(At(1)).Overlaps(Until(At(22)), false, false, false, false));
  EXPECT_TRUE(From(At(22)).Overlaps(From(At(1)), false, false, false, false));
}

TEST(TimeRange, WithoutStartItOverlapsWhatStartsBeforeItsEnd) {
  const TimeRange range = Until(At(20));
  for (const TimeRange& other : {From(At(20)), Between(At(20), At(21))}) {
    EXPECT_TRUE(range.Overlaps(other, false, true, true, false));
    EXPECT_FALSE(range.Overlaps(other, true, false, true, true));
    EXPECT_FALSE(range.Overlaps(other, true, true, false, true));
  }
  EXPECT_TRUE(range.Overlaps(From(At(19, 59, 59)), false, false, false, false));
  EXPECT_FALSE(OverlapsInclusive(range, From(At(20, 0, 1))));
}

TEST(TimeRange, WithBothBoundsItOverlapsAnEndlessOtherWhateverTheOthersStartFlagSays) {
  const TimeRange range = Between(At(18), At(20));
  const TimeRange other = From(At(20));
  EXPECT_TRUE(range.Overlaps(other, false, true, true, false));
  EXPECT_TRUE(range.Overlaps(other, false, true, false, false));
  EXPECT_FALSE(range.Overlaps(other, true, false, true, true));
  EXPECT_FALSE(other.Overlaps(range, false, false, false, true));
  EXPECT_TRUE(range.Overlaps(From(At(19, 59, 59)), false, false, false, false));
  EXPECT_FALSE(OverlapsInclusive(range, From(At(20, 0, 1))));
}

TEST(TimeRange, WithAStartItOverlapsAnOtherThatEndsBehindIt) {
  const TimeRange other = Until(At(20));
  for (const TimeRange& range : {From(At(20)), Between(At(20), At(21))}) {
    EXPECT_TRUE(range.Overlaps(other, true, false, false, true));
    EXPECT_FALSE(range.Overlaps(other, false, true, true, true));
    EXPECT_FALSE(range.Overlaps(other, true, true, true, false));
  }
  EXPECT_TRUE(From(At(19, 59, 59)).Overlaps(other, false, false, false, false));
  EXPECT_TRUE(OverlapsInclusive(From(At(20)), Between(At(18), At(20))));
  EXPECT_FALSE(OverlapsInclusive(From(At(20, 0, 1)), Between(At(18), At(20))));
}

TEST(TimeRange, StartsBeforeOtherEndsIsStrictAndToleratesWhatIsMissing) {
  const TimeRange other = Until(At(20));
  EXPECT_TRUE(From(At(19, 59, 59)).StartsBeforeOtherEnds(&other));
  EXPECT_FALSE(From(At(20)).StartsBeforeOtherEnds(&other));
  EXPECT_TRUE(From(At(20)).StartsBeforeOtherEnds(nullptr));
  EXPECT_TRUE(Until(At(23)).StartsBeforeOtherEnds(&other));
  const TimeRange endless = From(At(1));
  EXPECT_TRUE(From(At(20)).StartsBeforeOtherEnds(&endless));
}

TEST(TimeRange, EqualsComparesTheBoundsThatAreThere) {
  const TimeRange range = Between(At(20), At(22));
  const TimeRange same = Between(At(20), At(22));
  const TimeRange laterStart = Between(At(21), At(22));
  const TimeRange laterEnd = Between(At(20), At(23));
  const TimeRange noStart = Until(At(22));
  const TimeRange noEnd = From(At(20));
  EXPECT_TRUE(range.Equals(&same));
  EXPECT_FALSE(range.Equals(nullptr));
  EXPECT_FALSE(TimeRange().Equals(nullptr));
  for (const TimeRange* other : {&laterStart, &laterEnd, &noStart, &noEnd}) {
    EXPECT_FALSE(range.Equals(other));
    EXPECT_FALSE(other->Equals(&range));
  }
  TimeRange cleared = laterEnd;
  cleared.ClearEnd();
  EXPECT_TRUE(cleared.Equals(&noEnd));
}

TEST(TimeRange, SerializesFourFields) {
  EXPECT_EQ(TimeRange().Serialize(), "(F,,F,)");
  EXPECT_EQ(From(At(18)).Serialize(), "(T,2026-12-24 18:00:00,F,)");
  EXPECT_EQ(Until(At(18)).Serialize(), "(F,,T,2026-12-24 18:00:00)");
  EXPECT_EQ(Between(At(18), At(22)).Serialize(), "(T,2026-12-24 18:00:00,T,2026-12-24 22:00:00)");
}

TEST(TimeRange, DeserializeReplacesAllFourFields) {
  TimeRange range = Between(At(1), At(2));
  range.Deserialize("(F,,F,)");
  EXPECT_EQ(range.Serialize(), "(F,,F,)");
  range.Deserialize("(t,2026-12-24 18:00:00,T,2026-12-24 22:00:00)");
  EXPECT_EQ(range.StartTime(), At(18));
  EXPECT_EQ(range.EndTime(), At(22));
  range.Deserialize("(F,no date,T,2026-12-24 10:00:00)");
  EXPECT_FALSE(range.HasStart());
  EXPECT_EQ(range.EndTime(), At(10));
}

TEST(TimeRange, DeserializeOfCrossedBoundsKeepsTheEnd) {
  TimeRange range;
  range.Deserialize("(T,2026-12-24 22:00:00,T,2026-12-24 18:00:00)");
  EXPECT_FALSE(range.HasStart());
  EXPECT_EQ(range.EndTime(), At(18));
}

TEST(TimeRange, DeserializeOfAnotherCountFailsAndChangesNothing) {
  TimeRange range = Between(At(20), At(22));
  const auto deserialize = [&](const char* szText) {
    return [&range, szText] {
      range.Deserialize(szText);
      return 0;
    };
  };
  const std::string szWords = "Unexpected number of fields in serialized time range: ";
  ExpectError(deserialize("(F,,F)"), 37, "", szWords + "3");
  ExpectError(deserialize("(F,,F,,)"), 37, "", szWords + "5");
  ExpectError(deserialize(""), 37, "", szWords + "0");
  ExpectError(deserialize("()"), 37, "", szWords + "1");
  ExpectError(deserialize("(F,"), 1, "Serialize.ListFromText", "Badly formatted list, enclosing parens");
  EXPECT_EQ(range.Serialize(), Between(At(20), At(22)).Serialize());
}

TEST(TimeRange, DeserializeOfATextThatIsNoDateIsATypeMismatch) {
  for (const char* szText : {"(T,soon,F,)", "(T,,F,)", "(F,,T,2026-12-32 00:00:00)"}) {
    ExpectPlatformError(
        [&] {
          TimeRange().Deserialize(szText);
          return 0;
        },
        ErrorTypeMismatch);
  }
}

TEST(TimeRange, CopyFromTakesBothBounds) {
  const TimeRange range = Between(At(20), At(22));
  TimeRange copy = From(At(1));
  copy.CopyFrom(&range);
  EXPECT_TRUE(copy.Equals(&range));
  copy.CopyFrom(&copy);
  EXPECT_TRUE(copy.Equals(&range));
  copy.CopyFrom(nullptr);
  EXPECT_FALSE(copy.HasStart());
  EXPECT_FALSE(copy.HasEnd());
}

}  // namespace vex::test
