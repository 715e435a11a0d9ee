#include "settings/LibNetworks.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <algorithm>
#include <array>
#include <set>

#include "host/virtual/VirtualRegistry.h"

namespace vex::test {
namespace {

const std::string Shared = "Software\\Brillara\\Shared\\";
const std::array<std::string, 4> Subkeys = {"Network", "Network\\AuxA", "Network\\AuxB", "Network\\AuxC"};

class LibNetworksTest : public testing::Test {
 protected:
  void Speed(size_t i, uint32_t value) { Registry.SetLong(Shared + Subkeys[i], "VexSpeed", value); }
  void Port(size_t i, uint32_t value) { Registry.SetLong(Shared + Subkeys[i], "NetworkBrillara", value); }
  void Courser(uint32_t value) { Registry.SetLong(Shared + "Network", "NetworkCourser", value); }
  void X10(uint32_t value) { Registry.SetLong(Shared + "Network", "NetworkX10", value); }

  /// Regular, AuxA, AuxB, AuxC, Courser, X10.
  using PortList = std::vector<int32_t>;
  [[nodiscard]] PortList Ports() {
    return {Networks.NetworkPort(0), Networks.NetworkPort(1), Networks.NetworkPort(2),
            Networks.NetworkPort(3), Networks.CourserPort(),  Networks.X10Port()};
  }
  const PortList Reset{1, 0, 0, 0, 0, 0};

  VirtualRegistry Registry;
  vex::Networks Networks{Registry};
};

TEST_F(LibNetworksTest, DefaultsWithoutAnySetting) {
  for (uint8_t i = 0; i < 4; ++i) EXPECT_EQ(Networks.NetworkSpeed(i), 2);
  EXPECT_EQ(Ports(), Reset);
  EXPECT_TRUE(Networks.UsesOldMCP());
  EXPECT_FALSE(Networks.ListNetworks());
}

TEST_F(LibNetworksTest, EverySettingIsReadFromItsPlace) {
  for (const uint32_t i : {0, 1, 2, 3}) {
    Speed(i, i == 0 ? 3 : i);
    Port(i, 10 + i);
  }
  Courser(14);
  X10(16);
  Registry.SetLong(Shared + "Network", "VexOldMCP", 0);
  Registry.SetLong(Shared + "Network", "ListNetworks", 1);
  EXPECT_EQ(Networks.NetworkSpeed(0), 3);
  EXPECT_EQ(Networks.NetworkSpeed(1), 1);
  EXPECT_EQ(Networks.NetworkSpeed(2), 2);
  EXPECT_EQ(Networks.NetworkSpeed(3), 3);
  EXPECT_EQ(Ports(), (PortList{10, 11, 12, 13, 14, 16}));
  EXPECT_FALSE(Networks.UsesOldMCP());
  EXPECT_TRUE(Networks.ListNetworks());
}

TEST_F(LibNetworksTest, SpeedOutsideOneToThreeIsTwo) {
  Speed(0, 0);
  Speed(1, 4);
  Speed(2, 0xFFFFFFFF);
  Speed(3, 1);
  for (uint8_t i = 0; i < 3; ++i) EXPECT_EQ(Networks.NetworkSpeed(i), 2);
  EXPECT_EQ(Networks.NetworkSpeed(3), 1);
}

TEST_F(LibNetworksTest, IndexAboveThreeStandsForZero) {
  Speed(0, 3);
  Port(0, 5);
  for (const int i : {4, 255}) {
    EXPECT_EQ(Networks.NetworkSpeed(static_cast<uint8_t>(i)), 3);
    EXPECT_EQ(Networks.NetworkPort(static_cast<uint8_t>(i)), 5);
  }
}

TEST_F(LibNetworksTest, PortOfTwentySixOnAnyNetworkResetsAll) {
  for (const uint32_t bad : {26U, 0xFFFFFFFFU}) {
    for (const uint32_t place : {0, 1, 2, 3, 4, 5}) {
      for (const uint32_t i : {0, 1, 2, 3}) Port(i, place == i ? bad : i + 2);
      Courser(place == 4 ? bad : 7);
      X10(place == 5 ? bad : 8);
      Networks.LoadNetworks(true);
      EXPECT_EQ(Ports(), Reset) << place;
    }
  }
}

TEST_F(LibNetworksTest, EveryClashResetsAll) {
  for (size_t first = 0; first < 6; ++first) {
    for (size_t second = first + 1; second < 6; ++second) {
      std::array<uint32_t, 6> ports{2, 3, 4, 5, 6, 7};
      ports[second] = ports[first];
      for (size_t i = 0; i < 4; ++i) Port(i, ports[i]);
      Courser(ports[4]);
      X10(ports[5]);
      Networks.LoadNetworks(true);
      EXPECT_EQ(Ports(), Reset) << first << " and " << second;
    }
  }
}

TEST_F(LibNetworksTest, NoPortNeverClashes) {
  Port(0, 0);
  EXPECT_EQ(Ports(), (PortList{0, 0, 0, 0, 0, 0}));
}

TEST_F(LibNetworksTest, DefaultRegularPortClashesToo) {
  Port(1, 1);
  EXPECT_EQ(Ports(), Reset);
}

TEST_F(LibNetworksTest, PortWithoutAPlaceInTheTableEndsTheLoadWithWhatWasRead) {
  for (const uint32_t port : {17U, 25U}) {
    Port(0, 2);
    Port(1, port);
    Port(2, 3);
    Port(3, 3);  // would clash, had the check come so far
    X10(9);
    Speed(0, 1);
    Networks.LoadNetworks(true);
    EXPECT_EQ(Ports(), (PortList{2, static_cast<int32_t>(port), 3, 3, 0, 9}));
    EXPECT_EQ(Networks.NetworkSpeed(0), 1);
  }
}

TEST_F(LibNetworksTest, ClashFoundBeforeAPortWithoutAPlaceResets) {
  Port(0, 3);
  Port(1, 3);
  X10(20);
  EXPECT_EQ(Ports(), Reset);
}

TEST_F(LibNetworksTest, ReadingStopsAtTheFirstPortOutOfRangeBeforeAnyCheck) {
  Port(0, 20);
  Port(1, 26);
  EXPECT_EQ(Ports(), Reset);
}

TEST_F(LibNetworksTest, LoadsOnceUnlessForced) {
  EXPECT_EQ(Networks.NetworkPort(0), 1);
  Port(0, 5);
  Speed(0, 3);
  Networks.LoadNetworks(false);
  EXPECT_EQ(Networks.NetworkPort(0), 1);
  Networks.LoadNetworks(true);
  EXPECT_EQ(Networks.NetworkPort(0), 5);
  EXPECT_EQ(Networks.NetworkSpeed(0), 3);
  Registry.RemoveKey("Software");
  Networks.LoadNetworks(true);
  EXPECT_EQ(Ports(), Reset);
  EXPECT_EQ(Networks.NetworkSpeed(0), 2);
}

TEST_F(LibNetworksTest, ValuesOfAnotherKindAreDefaults) {
  Registry.SetText(Shared + "Network", "VexSpeed", "3");
  Registry.SetText(Shared + "Network", "NetworkBrillara", "5");
  Registry.SetText(Shared + "Network", "VexOldMCP", "0");
  EXPECT_EQ(Networks.NetworkSpeed(0), 2);
  EXPECT_EQ(Networks.NetworkPort(0), 1);
  EXPECT_TRUE(Networks.UsesOldMCP());
}

TEST(LibNetworksProperty, PortsFollowTheRule) {
  EXPECT_TRUE(rc::check("against the rule written with a set", [] {
    const auto ports = *rc::gen::container<std::vector<uint32_t>>(6, rc::gen::inRange<uint32_t>(0, 28));
    VirtualRegistry registry;
    for (size_t i = 0; i < 4; ++i) registry.SetLong(Shared + Subkeys[i], "NetworkBrillara", ports[i]);
    registry.SetLong(Shared + "Network", "NetworkCourser", ports[4]);
    registry.SetLong(Shared + "Network", "NetworkX10", ports[5]);
    bool boolReset = std::ranges::any_of(ports, [](uint32_t port) { return port > 25; });
    std::set<uint32_t> used;
    for (const size_t i : {1, 0, 2, 3, 4, 5}) {
      if (boolReset || ports[i] > 16) break;
      boolReset = ports[i] != 0 && !used.insert(ports[i]).second;
    }
    const std::vector<uint32_t> expected = boolReset ? std::vector<uint32_t>{1, 0, 0, 0, 0, 0} : ports;
    Networks networks(registry);
    const std::vector<uint32_t> read{networks.NetworkPort(0), networks.NetworkPort(1),
                                     networks.NetworkPort(2), networks.NetworkPort(3),
                                     networks.CourserPort(),  networks.X10Port()};
    RC_ASSERT(read == expected);
  }));
}

}  // namespace
}  // namespace vex::test
