#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "tests/player/PlayerRig.h"

namespace vex::test {
namespace {

/// What happens to a show in one evening.
struct Evening {
  uint64_t Seed;
  ShowText Show;
  std::vector<std::pair<int32_t, int32_t>> Happenings;  // what, and milliseconds after the one before
};

std::vector<std::string> SomeNames(const std::string& szKind) {
  std::vector<std::string> names;
  const int32_t lCount = *rc::gen::inRange(0, 4);
  for (int32_t i = 0; i < lCount; ++i) names.push_back(szKind + std::to_string(*rc::gen::inRange(1, 4)));
  return names;
}

Evening SomeEvening() {
  Evening evening;
  evening.Seed = *rc::gen::arbitrary<uint64_t>();
  ShowText& show = evening.Show;
  show.Startup = SomeNames("s");
  show.Shutdown = SomeNames("s");
  show.Animation = SomeNames("a");
  show.AnimationType = *rc::gen::inRange(1, 3);
  show.Songs = SomeNames("m");
  show.MusicalType = *rc::gen::inRange(1, 3);
  show.Delay = *rc::gen::inRange(0, 3);
  show.CleanUp = *rc::gen::element<std::string>("", "a1", "missing");
  show.WithReplacement = *rc::gen::arbitrary<bool>();
  show.BackToBack = *rc::gen::arbitrary<bool>();
  show.Background = SomeNames("a");
  show.Groups = "(" +
                GroupText(*rc::gen::arbitrary<bool>(), *rc::gen::arbitrary<bool>(),
                          {{"(3,Door,1,0)", {"a1", "m2"}}, {"(4,Bell,1,0)", {"m3", "a2"}}}) +
                ")";
  show.StartupType = *rc::gen::inRange(0, 3);
  show.StartupTrigger = *rc::gen::element<std::string>("", "(3,Door,1,0)", "(5,Gate,1,0)");
  const int32_t lCount = *rc::gen::inRange(0, 12);
  for (int32_t i = 0; i < lCount; ++i) {
    evening.Happenings.emplace_back(*rc::gen::inRange(0, 9), *rc::gen::inRange(0, 3000));
  }
  return evening;
}

void FillLibrary(PlayerRig& rig) {
  for (const int32_t i : {1, 2, 3}) {
    const std::string szNumber = std::to_string(i);
    rig.Library["s" + szNumber].DurationMs = 137 * i;
    rig.Library["a" + szNumber].DurationMs = 211 * i;
    SequenceScript& song = rig.Library["m" + szNumber];
    song.Media = "song" + szNumber + ".ogg";
    song.Networks = {NetworkKind::Main};
    rig.Media->Lengths[song.Media] = 389 * i;
    for (int32_t lAt = 0; lAt < 389 * i; lAt += 40 + i) {
      song.Events.push_back({0, 1, i, 0, 100, "fade", 1.0, lAt, lAt + 20});
    }
  }
  rig.Library["s3"].Media = "missing.ogg";
  rig.Library["m3"].FailSync = "";
}

void Happen(PlayerRig& rig, const Evening& evening, int32_t lWhat) {
  switch (lWhat) {
    case 0:
    case 1:
      rig.Press(3, "Door");
      break;
    case 2:
      rig.Press(4, "Bell");
      break;
    case 3:
      rig.Press(5, "Gate");
      break;
    case 4:
      rig.Give(evening.Show);
      break;
    case 5:
      rig.Give(nullptr);
      break;
    case 6:
      rig.Give(evening.Show, "other.shw");
      break;
    case 7:
      rig.Media->Errors = {"bad"};
      rig.Media->ErrorEvent();
      break;
    default:
      rig.Host.Clock().SetWallClock(DateTime::FromParts(2026, 12, 24, 18, 0, 30));
  }
}

std::vector<std::pair<int64_t, std::string>> Play(const Evening& evening, bool boolEveryTick,
                                                  uint64_t& ticks) {
  PlayerRig rig(evening.Seed);
  rig.Host.EventLoop().EveryTick(boolEveryTick);
  FillLibrary(rig);
  rig.Give(evening.Show);
  for (const auto& [lWhat, lAfter] : evening.Happenings) {
    rig.Run(lAfter);
    Happen(rig, evening, lWhat);
  }
  rig.Run(4000);
  rig.Give(nullptr);
  rig.Run(4000);
  ticks = rig.Host.EventLoop().Ticks();
  return rig.Timed;
}

TEST(Ticks, LeavingThemOutChangesNothingThatIsSeen) {
  EXPECT_TRUE(rc::check([] {
    const Evening evening = SomeEvening();
    uint64_t ticksLeftOut = 0;
    uint64_t ticksAll = 0;
    const auto leftOut = Play(evening, false, ticksLeftOut);
    const auto all = Play(evening, true, ticksAll);
    RC_ASSERT(leftOut == all);
    RC_ASSERT(ticksLeftOut <= ticksAll);
  }));
}

TEST(Ticks, AQuietHourCostsNextToNothing) {
  PlayerRig rig;
  rig.Sequences({"bg"}, 1000);
  ShowText text;
  text.Background = {"bg"};
  rig.Give(text);
  rig.Run(3600 * 1000);
  EXPECT_LT(rig.Host.EventLoop().Ticks(), 10U);
}

}  // namespace
}  // namespace vex::test
