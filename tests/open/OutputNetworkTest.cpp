#include "components/open/OutputNetwork.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>

#include "tests/open/OutputRig.h"

namespace vex {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr int32_t Unreachable = ENETUNREACH;

TEST(OutputNetwork, WithAHostEverythingGoesThere) {
  OutputSettings settings;
  settings.Host = "127.0.0.1";
  OutputRig rig(settings);
  rig.Light(1, 1, 100);
  rig.Light(9, 1, 100);
  rig.Advance(10000);
  for (const auto& sent : rig.Host.Datagrams().Sent())
    EXPECT_EQ(sent.To, (DatagramAddress{0x7F000001, 5568}));
}

TEST(OutputNetwork, AHostNameIsLookedUpAtTheStart) {
  OutputRig rig;
  rig.Host.Datagrams().KnowHost("tree.local", 0x0A000005);
  rig.Settings.Host = "tree.local";
  rig.Make();
  rig.Advance(0);
  rig.Host.Datagrams().KnowHost("tree.local", 0x0A000006);
  rig.Light(1, 1, 100);
  ASSERT_FALSE(rig.Packets().empty());
  EXPECT_EQ(rig.Packets()[0].To.Address, 0x0A000005U);
}

TEST(OutputNetwork, ANumericHostNeverTroublesTheNameService) {
  OutputSettings settings;
  settings.Host = "10.0.0.9";
  settings.Interface = "10.0.0.1";
  OutputRig rig(settings);
  rig.Light(1, 1, 100);
  rig.Host.Datagrams().FailSends(Unreachable);
  rig.Advance(100000);
  EXPECT_EQ(rig.Host.Datagrams().LookUpCount(), 0);
  EXPECT_EQ(rig.Packets()[0].To.Address, 0x0A000009U);
}

TEST(OutputNetwork, WhileTheNameServiceIsSilentNothingWaitsAndNothingIsTold) {
  OutputRig rig;
  rig.Host.Datagrams().KnowHost("tree.local", 0x0A000005);
  rig.Host.Datagrams().HoldLookUps(true);
  rig.Settings.Host = "tree.local";
  rig.Make();
  rig.Light(1, 1, 100);
  rig.Advance(120000);
  EXPECT_THAT(rig.Packets(), IsEmpty());
  EXPECT_THAT(rig.Troubles, IsEmpty());
  EXPECT_EQ(rig.Host.Datagrams().LookUpCount(), 1);
  rig.Host.Datagrams().HoldLookUps(false);
  rig.Advance(1000);
  ASSERT_FALSE(rig.Packets().empty());
  EXPECT_EQ(rig.Packets()[0].To.Address, 0x0A000005U);
  EXPECT_EQ(rig.Values().back(), 255);
}

TEST(OutputNetwork, AQuestionThatIsUnderWayEndsWithTheControl) {
  OutputRig rig;
  rig.Host.Datagrams().HoldLookUps(true);
  rig.Settings.Host = "tree.local";
  rig.Make();
  rig.Lights.reset();
  rig.Host.Datagrams().HoldLookUps(false);
  rig.Advance(1000);
  EXPECT_THAT(rig.Troubles, IsEmpty());
}

TEST(OutputNetwork, AHostThatIsNotFoundIsToldOnceAndLookedUpAgain) {
  OutputSettings settings;
  settings.Host = "tree.local";
  OutputRig rig(settings);
  rig.Advance(0);
  rig.Light(1, 1, 100);
  rig.Advance(20000);
  EXPECT_THAT(rig.Troubles, ElementsAre("Lighting network unreachable: host \"tree.local\" cannot be found"));
  EXPECT_THAT(rig.Packets(), IsEmpty());
  rig.Host.Datagrams().KnowHost("tree.local", 0x0A000005);
  rig.Advance(20000);
  ASSERT_FALSE(rig.Packets().empty());
  EXPECT_EQ(rig.Packets()[0].To.Address, 0x0A000005U);
  EXPECT_EQ(rig.Values().back(), 255);
}

TEST(OutputNetwork, AfterAFailureTheHostIsLookedUpAgain) {
  OutputRig rig;
  rig.Host.Datagrams().KnowHost("tree.local", 0x0A000005);
  rig.Settings.Host = "tree.local";
  rig.Make();
  rig.Host.Datagrams().FailSendsTo(0x0A000005, Unreachable);
  rig.Host.Datagrams().KnowHost("tree.local", 0x0A000006);
  rig.Light(1, 1, 100);
  rig.Advance(40000);
  EXPECT_THAT(rig.Troubles, SizeIs(1));
  ASSERT_FALSE(rig.Packets().empty());
  EXPECT_EQ(rig.Packets().back().To.Address, 0x0A000006U);
}

}  // namespace
}  // namespace vex
