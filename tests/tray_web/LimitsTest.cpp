#include <gtest/gtest.h>

#include "tray/web/Addresses.h"
#include "tray/web/LoginLimits.h"
#include "tray/web/Sessions.h"

namespace vex {
namespace {

using std::chrono::hours;
using std::chrono::seconds;

const LoginLimits::Clock::time_point Noon{hours{1000}};

TEST(LoginLimits, FiveAreFreeThenTheWaitDoublesToAQuarterOfAnHour) {
  LoginLimits limits;
  auto now = Noon;
  for (int i = 0; i < 4; i++) limits.Failed("192.0.2.1", now);
  EXPECT_EQ(limits.Wait("192.0.2.1", now), seconds{0});
  for (const int expected : {30, 60, 120, 240, 480, 900, 900}) {
    limits.Failed("192.0.2.1", now);
    EXPECT_EQ(limits.Wait("192.0.2.1", now), seconds{expected});
    now += seconds{expected};
    EXPECT_EQ(limits.Wait("192.0.2.1", now), seconds{0});
  }
}

TEST(LoginLimits, OneSourceDoesNotSlowAnother) {
  LoginLimits limits;
  for (int i = 0; i < 9; i++) limits.Failed("192.0.2.1", Noon);
  EXPECT_EQ(limits.Wait("192.0.2.2", Noon), seconds{0});
}

TEST(LoginLimits, ManySourcesTogetherAreSlowed) {
  LoginLimits limits;
  for (int i = 0; i < 50; i++) limits.Failed("192.0.2." + std::to_string(i), Noon);
  EXPECT_EQ(limits.Wait("198.51.100.1", Noon), seconds{30});
}

TEST(LoginLimits, AnHourIsForgottenAndARightOneForgives) {
  LoginLimits limits;
  for (int i = 0; i < 4; i++) limits.Failed("192.0.2.1", Noon);
  limits.Succeeded("192.0.2.1");
  for (int i = 0; i < 4; i++) limits.Failed("192.0.2.1", Noon);
  EXPECT_EQ(limits.Wait("192.0.2.1", Noon), seconds{0});
  limits.Failed("192.0.2.1", Noon + hours{1});
  EXPECT_EQ(limits.Wait("192.0.2.1", Noon + hours{1}), seconds{0});
}

TEST(LoginLimits, AWholeNetworkOfVersion6IsOneSource) {
  EXPECT_EQ(SourceOf("2001:db8:1:2::1"), SourceOf("2001:db8:1:2:ffff::9"));
  EXPECT_NE(SourceOf("2001:db8:1:2::1"), SourceOf("2001:db8:1:3::1"));
  EXPECT_NE(SourceOf("::ffff:192.0.2.1"), SourceOf("::ffff:192.0.2.2"));
  EXPECT_EQ(SourceOf("192.0.2.1"), "192.0.2.1");
}

TEST(LoginLimits, SoManySourcesAreRememberedAndNoMore) {
  LoginLimits limits;
  for (int i = 0; i < 5000; i++) limits.Failed("source " + std::to_string(i), Noon + seconds{i});
  EXPECT_EQ(limits.Sources(), 1024U);
}

TEST(Sessions, EndWhenUnusedForHalfADay) {
  Sessions sessions;
  const auto szName = sessions.Open(Role::View, Noon);
  EXPECT_EQ(sessions.Find(szName, Noon + hours{11}).May, Role::View);
  EXPECT_EQ(sessions.Find(szName, Noon + hours{22}).May, Role::View) << "used in between";
  EXPECT_EQ(sessions.Find(szName, Noon + hours{34}).May, Role::None);
  EXPECT_EQ(sessions.Count(), 0U);
}

TEST(Sessions, EndAfterAWeekHoweverMuchTheyAreUsed) {
  Sessions sessions;
  const auto szName = sessions.Open(Role::Control, Noon);
  for (int hour = 6; hour < 168; hour += 6)
    EXPECT_EQ(sessions.Find(szName, Noon + hours{hour}).May, Role::Control);
  EXPECT_EQ(sessions.Find(szName, Noon + hours{168}).May, Role::None);
}

TEST(Sessions, TheOneUnusedForLongestMakesRoom) {
  Sessions sessions;
  const auto szFirst = sessions.Open(Role::View, Noon);
  const auto szSecond = sessions.Open(Role::View, Noon + seconds{1});
  EXPECT_EQ(sessions.Find(szFirst, Noon + seconds{2}).May, Role::View);
  for (int i = 0; i < 255; i++) sessions.Open(Role::View, Noon + seconds{3});
  EXPECT_EQ(sessions.Count(), 256U);
  EXPECT_EQ(sessions.Find(szSecond, Noon + seconds{4}).May, Role::None);
  EXPECT_EQ(sessions.Find(szFirst, Noon + seconds{4}).May, Role::View);
}

TEST(Sessions, NamesAndTokensAreTheirOwn) {
  Sessions sessions;
  const auto szFirst = sessions.Open(Role::View, Noon);
  const auto szSecond = sessions.Open(Role::View, Noon);
  EXPECT_EQ(szFirst.size(), 64U);
  EXPECT_NE(szFirst, szSecond);
  EXPECT_NE(sessions.Find(szFirst, Noon).Token, sessions.Find(szSecond, Noon).Token);
  EXPECT_EQ(sessions.Find("", Noon).May, Role::None);
  sessions.End(szFirst);
  EXPECT_EQ(sessions.Find(szFirst, Noon).May, Role::None);
  EXPECT_EQ(sessions.Find(szSecond, Noon).May, Role::View);
}

}  // namespace
}  // namespace vex
