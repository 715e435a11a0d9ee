#include "components/open/PacketPace.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <algorithm>

namespace vex {
namespace {

constexpr Elapsed Ms{1'000'000};

TEST(PacketPace, TwoChangesMayFollowAtOnce) {
  PacketPace pace(40);
  EXPECT_LE(pace.FreeAt(), 0 * Ms);
  pace.Sent(0 * Ms, true);
  EXPECT_LE(pace.FreeAt(), 0 * Ms);
  pace.Sent(0 * Ms, true);
  EXPECT_EQ(pace.FreeAt(), 25 * Ms);
}

TEST(PacketPace, AfterARestTwoMayFollowAgain) {
  PacketPace pace(40);
  pace.Sent(0 * Ms, true);
  pace.Sent(0 * Ms, true);
  pace.Sent(50 * Ms, true);
  EXPECT_LE(pace.FreeAt(), 50 * Ms);
}

TEST(PacketPace, RepeatsDoNotTakeAChangesPlace) {
  PacketPace pace(40);
  pace.Sent(0 * Ms, false);
  pace.Sent(0 * Ms, false);
  EXPECT_LE(pace.FreeAt(), 0 * Ms);
}

TEST(PacketPaceProperties, ASequenceOfJustThatRateIsNeverHeldBack) {
  EXPECT_TRUE(rc::check([] {
    const auto lRate = *rc::gen::elementOf(std::vector<int32_t>{1, 20, 25, 40, 44, 60});
    PacketPace pace(lRate);
    const auto jitters = *rc::gen::container<std::vector<int64_t>>(
        200, rc::gen::inRange<int64_t>(0, PacketPace::Jitter.count()));
    for (size_t i = 0; i < jitters.size(); ++i) {
      const Elapsed due = static_cast<int64_t>(i) * PacketPace::Second / lRate + Elapsed(jitters[i]);
      RC_ASSERT(pace.FreeAt() <= due);
      pace.Sent(due, true);
    }
  }));
}

TEST(PacketPaceProperties, NoSecondHoldsMoreThanTheRateWhateverIsAsked) {
  EXPECT_TRUE(rc::check([] {
    const auto lRate = *rc::gen::inRange<int32_t>(1, 60);
    PacketPace pace(lRate);
    std::vector<Elapsed> sent;
    Elapsed now{0};
    for (const auto pause : *rc::gen::container<std::vector<int32_t>>(300, rc::gen::inRange(0, 30))) {
      now += pause * Ms;
      const bool boolChange = *rc::gen::arbitrary<bool>();
      if (now < (boolChange ? pace.FreeAt() : pace.RoomAt())) continue;
      pace.Sent(now, boolChange);
      sent.push_back(now);
      const Elapsed from = now - (PacketPace::Second - PacketPace::Jitter);
      RC_ASSERT(std::count_if(sent.begin(), sent.end(), [&](Elapsed at) { return at > from; }) <= lRate);
    }
  }));
}

}  // namespace
}  // namespace vex
