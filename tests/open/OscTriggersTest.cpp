#include "components/open/OscTriggers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>

#include "components/open/wire/OscTrigger.h"
#include "host/virtual/VirtualHost.h"

namespace vex {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr uint32_t Loopback = 0x7F000001;
constexpr uint32_t Elsewhere = 0x0A000005;  // 10.0.0.5
constexpr uint16_t Port = 3737;

class OscTriggersTest : public testing::Test {
 protected:
  OscTriggersTest() {
    Triggers.Detected = [this](const NamedProperties& input) {
      Detected.push_back(std::to_string(input.Integer("Network")) + "." +
                         std::to_string(input.Integer("UnitId")) + "." +
                         std::to_string(input.Integer("InputNumber")) + " " + input.Text("Name"));
    };
    Triggers.Trouble = [this](const std::string& szText) { Troubles.push_back(szText); };
  }
  /// False where nobody listens at that address.
  bool Send(uint32_t from, uint32_t to = Loopback, const std::string& szName = "Door") {
    return Deliver(WriteOscTrigger({0, 1, 3, szName}), from, to);
  }
  bool Deliver(const std::vector<uint8_t>& bytes, uint32_t from = Loopback, uint32_t to = Loopback) {
    return Host.Datagrams().Deliver({to, Port}, {from, 40000}, bytes);
  }

  VirtualHost Host;
  OscTriggers Triggers{Host.EventLoop(), Host.Datagrams()};
  std::vector<std::string> Detected;
  std::vector<std::string> Troubles;
};

TEST_F(OscTriggersTest, AreHeardWhileTheLinkIsOn) {
  Triggers.SetLink("127.0.0.1", Port);
  EXPECT_FALSE(Send(Loopback));
  Triggers.Enabled(true);
  EXPECT_TRUE(Send(Loopback));
  Triggers.Enabled(false);
  EXPECT_FALSE(Send(Loopback));
  EXPECT_THAT(Detected, ElementsAre("0.1.3 Door"));
  EXPECT_THAT(Troubles, IsEmpty());
}

TEST_F(OscTriggersTest, FromThisMachineAloneStayOnTheLoopbackInterface) {
  Triggers.SetLink("127.0.0.1", Port);
  Triggers.Enabled(true);
  EXPECT_FALSE(Send(Elsewhere, Elsewhere));
}

TEST_F(OscTriggersTest, OnlyTheRemoteHostIsHeard) {
  Triggers.SetLink("10.0.0.5", Port);
  Triggers.Enabled(true);
  EXPECT_TRUE(Send(Loopback));
  EXPECT_THAT(Detected, IsEmpty());
  EXPECT_TRUE(Send(Elsewhere, 0x0A000001));
  EXPECT_THAT(Detected, ElementsAre("0.1.3 Door"));
  EXPECT_THAT(Troubles, IsEmpty());
}

TEST_F(OscTriggersTest, AHostGivenByNameIsHeardOnceItIsFound) {
  Host.Datagrams().KnowHost("porch.local", Elsewhere);
  Host.Datagrams().HoldLookUps(true);
  Triggers.SetLink("porch.local", Port);
  Triggers.Enabled(true);
  Triggers.SetLink("porch.local", Port);
  Triggers.Enabled(true);
  Host.EventLoop().Advance(60000);
  EXPECT_FALSE(Send(Elsewhere, 0x0A000001));
  EXPECT_EQ(Host.Datagrams().LookUpCount(), 1);
  Host.Datagrams().HoldLookUps(false);
  Host.EventLoop().Advance(0);
  EXPECT_TRUE(Send(Elsewhere, 0x0A000001));
  EXPECT_THAT(Detected, ElementsAre("0.1.3 Door"));
  EXPECT_THAT(Troubles, IsEmpty());
}

TEST_F(OscTriggersTest, ALinkSwitchedOffMeanwhileStaysOff) {
  Host.Datagrams().KnowHost("porch.local", Elsewhere);
  Triggers.SetLink("porch.local", Port);
  Triggers.Enabled(true);
  Triggers.Enabled(false);
  Host.EventLoop().Advance(0);
  EXPECT_FALSE(Send(Elsewhere, 0x0A000001));
  EXPECT_THAT(Troubles, IsEmpty());
}

TEST_F(OscTriggersTest, SwitchingWhileTheNameServiceIsSilentAsksOnce) {
  Host.Datagrams().KnowHost("porch.local", Elsewhere);
  Host.Datagrams().HoldLookUps(true);
  Triggers.SetLink("porch.local", Port);
  for (int i = 0; i < 1000; ++i) {
    Triggers.Enabled(true);
    Triggers.Enabled(false);
  }
  Triggers.Enabled(true);
  EXPECT_EQ(Host.Datagrams().LookUpCount(), 1);
  Host.Datagrams().HoldLookUps(false);
  Host.EventLoop().Advance(0);
  EXPECT_TRUE(Send(Elsewhere, 0x0A000001));
  EXPECT_THAT(Troubles, IsEmpty());
}

TEST_F(OscTriggersTest, AFailedQuestionOfALinkThatIsOffIsNotToldAndAskedAgainWhenItIsOn) {
  Triggers.SetLink("porch.local", Port);
  Triggers.Enabled(true);
  Triggers.Enabled(false);
  Host.EventLoop().Advance(0);
  EXPECT_THAT(Troubles, IsEmpty());
  Host.Datagrams().KnowHost("porch.local", Elsewhere);
  Triggers.Enabled(true);
  Host.EventLoop().Advance(0);
  EXPECT_TRUE(Send(Elsewhere, 0x0A000001));
}

TEST_F(OscTriggersTest, ANumericHostNeverTroublesTheNameService) {
  Triggers.SetLink("10.0.0.5", Port);
  Triggers.Enabled(true);
  EXPECT_EQ(Host.Datagrams().LookUpCount(), 0);
}

TEST_F(OscTriggersTest, AnySenderIsHeardWhereTheRemoteHostIsZero) {
  Triggers.SetLink("0.0.0.0", Port);
  Triggers.Enabled(true);
  Send(Loopback);
  Send(Elsewhere, 0x0A000001);
  EXPECT_EQ(Detected.size(), 2U);
}

TEST_F(OscTriggersTest, ANewLinkIsTakenOverWhileItIsOn) {
  Triggers.SetLink("127.0.0.1", 4000);
  Triggers.Enabled(true);
  Triggers.SetLink("127.0.0.1", Port);
  EXPECT_TRUE(Send(Loopback));
  EXPECT_FALSE(Host.Datagrams().Deliver({Loopback, 4000}, {Loopback, 1}, {}));
}

TEST_F(OscTriggersTest, APortThatIsTakenIsToldAndTriedAgain) {
  Host.Datagrams().FailNewReceiver(EADDRINUSE);
  Triggers.SetLink("127.0.0.1", Port);
  Triggers.Enabled(true);
  EXPECT_THAT(Troubles, ElementsAre(HasSubstr("No triggers from the link (port 3737): ")));
  Host.Datagrams().FailNewReceiver(0);
  Triggers.SetLink("127.0.0.1", Port);
  EXPECT_TRUE(Send(Loopback));
  EXPECT_EQ(Troubles.size(), 1U);
}

TEST_F(OscTriggersTest, AHostThatCannotBeFoundIsTold) {
  Triggers.SetLink("nowhere.example", Port);
  Triggers.Enabled(true);
  EXPECT_THAT(Troubles, IsEmpty());
  Host.EventLoop().Advance(0);
  EXPECT_THAT(Troubles, ElementsAre(HasSubstr("host \"nowhere.example\" cannot be found")));
}

TEST_F(OscTriggersTest, PortZeroIsTold) {
  Triggers.SetLink("127.0.0.1", 0);
  Triggers.Enabled(true);
  EXPECT_THAT(Troubles, ElementsAre(HasSubstr("LocalPort is 0")));
}

TEST_F(OscTriggersTest, WhatIsNoTriggerIsToldOnceWhileTheLinkStaysOn) {
  Triggers.SetLink("127.0.0.1", Port);
  Triggers.Enabled(true);
  for (int i = 0; i < 100; ++i) Deliver({1, 2, 3});
  Send(Loopback);
  EXPECT_THAT(Troubles,
              ElementsAre(HasSubstr("The link got what is no trigger: a message that cannot be read")));
  EXPECT_EQ(Detected.size(), 1U);
  Triggers.Enabled(false);
  Triggers.Enabled(true);
  Deliver({1, 2, 3});
  EXPECT_EQ(Troubles.size(), 2U);
}

TEST_F(OscTriggersTest, ANameIsSingleByteTextInside) {
  Triggers.SetLink("127.0.0.1", Port);
  Triggers.Enabled(true);
  Send(Loopback, Loopback, "T\xC3\xBCr");
  EXPECT_THAT(Detected, ElementsAre("0.1.3 T\xFCr"));
  Send(Loopback, Loopback, "\xE2\x98\x83");
  Send(Loopback, Loopback, "\xFF");
  EXPECT_EQ(Detected.size(), 1U);
  EXPECT_THAT(Troubles, ElementsAre(HasSubstr("a name that is not UTF-8 of characters of Windows-1252")));
}

}  // namespace
}  // namespace vex
