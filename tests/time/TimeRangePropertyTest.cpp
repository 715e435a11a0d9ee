#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "time/TimeRange.h"

namespace vex::test {

namespace {

constexpr int FirstSecond = -3;
constexpr int LastSecond = 8;
constexpr int LastBound = 4;

DateTime Second(int second) {
  return DateTime::FromParts(2026, 12, 24, 18).PlusSeconds(second);
}

/// A range and whether its bounds count.
struct Flagged {
  std::optional<int> Start;
  std::optional<int> End;
  bool StartCounts = false;
  bool EndCounts = false;

  [[nodiscard]] TimeRange Range() const {
    TimeRange range;
    if (Start) range.StartTime(Second(*Start));
    if (End) range.EndTime(Second(*End));
    return range;
  }
  /// The plain meaning: a second counts when no bound keeps it out.
  [[nodiscard]] bool Holds(int second) const {
    const bool boolStart = !Start || second >= *Start + (StartCounts ? 0 : 1);
    const bool boolEnd = !End || second <= *End - (EndCounts ? 0 : 1);
    return boolStart && boolEnd;
  }
  [[nodiscard]] bool HoldsAny() const {
    for (int second = FirstSecond; second <= LastSecond; ++second) {
      if (Holds(second)) return true;
    }
    return false;
  }
};

std::vector<Flagged> EveryRange() {
  std::vector<std::optional<int>> bounds{std::nullopt};
  for (int bound = 0; bound <= LastBound; ++bound) bounds.emplace_back(bound);
  std::vector<Flagged> ranges;
  for (const auto& start : bounds) {
    for (const auto& end : bounds) {
      if (start && end && *end < *start) continue;
      for (const bool boolStart : {false, true}) {
        for (const bool boolEnd : {false, true}) ranges.push_back({start, end, boolStart, boolEnd});
      }
    }
  }
  return ranges;
}

bool ShareASecond(const Flagged& one, const Flagged& other) {
  for (int second = FirstSecond; second <= LastSecond; ++second) {
    if (one.Holds(second) && other.Holds(second)) return true;
  }
  return false;
}

bool SystemOverlaps(const Flagged& one, const Flagged& other) {
  return one.Range().Overlaps(other.Range(), one.StartCounts, one.EndCounts, other.StartCounts,
                              other.EndCounts);
}

/// An end and a start one second apart, neither counting: between them there is time, but no whole second.
bool OnlyPartOfASecond(const Flagged& ending, const Flagged& starting) {
  return ending.End && starting.Start && *starting.Start + 1 == *ending.End && !ending.EndCounts &&
         !starting.StartCounts;
}

bool BothBounded(const Flagged& range) {
  return range.Start && range.End;
}

/// The one place where a flag is not asked: an endless other that starts at this range's counting end.
bool StartFlagNotAsked(const Flagged& one, const Flagged& other) {
  return BothBounded(one) && other.Start && !other.End && *other.Start == *one.End && one.EndCounts;
}

}  // namespace

TEST(TimeRangeProperty, IncludesIsThePlainMeaning) {
  for (const Flagged& range : EveryRange()) {
    for (int second = FirstSecond; second <= LastSecond; ++second) {
      ASSERT_EQ(range.Range().Includes(Second(second), range.StartCounts, range.EndCounts),
                range.Holds(second));
    }
  }
}

TEST(TimeRangeProperty, OverlappingIsSharingASecond) {
  const std::vector<Flagged> ranges = EveryRange();
  size_t compared = 0;
  for (const Flagged& one : ranges) {
    for (const Flagged& other : ranges) {
      if (!one.HoldsAny() || !other.HoldsAny()) continue;
      const bool boolBounded = BothBounded(one) && BothBounded(other);
      if (!boolBounded && (OnlyPartOfASecond(one, other) || OnlyPartOfASecond(other, one))) continue;
      if (StartFlagNotAsked(one, other)) continue;
      ++compared;
      ASSERT_EQ(SystemOverlaps(one, other), ShareASecond(one, other))
          << one.Range().Serialize() << one.StartCounts << one.EndCounts << other.Range().Serialize()
          << other.StartCounts << other.EndCounts;
    }
  }
  EXPECT_GT(compared, 3000u);
}

TEST(TimeRangeProperty, PartOfASecondCountsAsOverlapWhereABoundIsMissing) {
  for (const Flagged& one : EveryRange()) {
    for (const Flagged& other : EveryRange()) {
      if (BothBounded(one) && BothBounded(other)) continue;
      if (!OnlyPartOfASecond(one, other) && !OnlyPartOfASecond(other, one)) continue;
      ASSERT_TRUE(SystemOverlaps(one, other));
    }
  }
}

TEST(TimeRangeProperty, OverlappingIsMutualButForTheStartFlagNotAsked) {
  for (const Flagged& one : EveryRange()) {
    for (const Flagged& other : EveryRange()) {
      if (StartFlagNotAsked(one, other) || StartFlagNotAsked(other, one)) continue;
      ASSERT_EQ(SystemOverlaps(one, other), SystemOverlaps(other, one));
    }
  }
}

TEST(TimeRangeProperty, SettersKeepTheEndBehindTheStartAndTextComesBack) {
  EXPECT_TRUE(rc::check("setters and text", [] {
    TimeRange range;
    for (const auto& [action, seconds] : *rc::gen::arbitrary<std::vector<std::pair<uint8_t, int32_t>>>()) {
      const DateTime dtTime = DateTime::FromParts(2026, 1, 1).PlusSeconds(seconds);
      if (action % 4 == 0) range.StartTime(dtTime);
      if (action % 4 == 1) range.EndTime(dtTime);
      if (action % 8 == 2) range.ClearStart();
      if (action % 8 == 3) range.ClearEnd();
      if (action % 4 == 0) RC_ASSERT(range.StartTime() == dtTime);
      if (action % 4 == 1) RC_ASSERT(range.EndTime() == dtTime);
      if (range.HasStart() && range.HasEnd()) RC_ASSERT(range.StartTime() <= range.EndTime());
      TimeRange again;
      again.Deserialize(range.Serialize());
      RC_ASSERT(again.Equals(&range));
      RC_ASSERT(again.Serialize() == range.Serialize());
      TimeRange copy;
      copy.CopyFrom(&range);
      RC_ASSERT(copy.Equals(&range));
    }
  }));
}

}  // namespace vex::test
