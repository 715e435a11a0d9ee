#include "host/linux/LinuxDatagrams.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "host/linux/LinuxEventLoop.h"
#include "tests/host/DatagramsContract.h"

namespace vex::test {
namespace {

INSTANTIATE_TEST_SUITE_P(Linux, DatagramsContract,
                         testing::Values(NetworkFamily{
                             "Linux", [] { return std::make_unique<LinuxEventLoop>(); },
                             [] { return std::make_unique<LinuxDatagrams>(); }, EADDRINUSE}));

TEST(LinuxDatagrams, AProgramEndsAtOnceWhileTheNameServiceIsSilent) {
  constexpr unsigned patience = 20;
  EXPECT_EXIT(
      {
        alarm(patience);  // a program that waits for its thread is killed
        {
          LinuxEventLoop loop;
          const auto silent = [](const std::string&, uint32_t&) {
            while (true) pause();
            return false;
          };
          const ThreadedLookUp lookUp(loop, "tree.local", silent, [](std::optional<uint32_t>) {});
          loop.Pump();
        }
        exit(0);
      },
      testing::ExitedWithCode(0), "");
}

class SharedReceiver : public testing::Test {
 protected:
  static constexpr uint32_t Loopback = 0x7F000001;
  static constexpr uint32_t Group = 0xEFFF2A17;  // 239.255.42.23
  static constexpr uint16_t Port = 47411;

  DatagramHandler Into(std::string& szWhat) {
    return [&szWhat](const DatagramAddress&, std::span<const uint8_t> bytes) {
      szWhat.append(bytes.begin(), bytes.end());
    };
  }
  void Send(uint32_t to, const std::string& szText) {
    const auto sender = m_Network.NewSender(Loopback);
    const Datagram datagram{{to, Port}, {reinterpret_cast<const uint8_t*>(szText.data()), szText.size()}};
    EXPECT_EQ(sender->Send({&datagram, 1}), 0);
  }

  LinuxEventLoop m_Loop;
  LinuxDatagrams m_Network;
};

TEST_F(SharedReceiver, EachMemberOfAGroupGetsItsOwn) {
  std::string szOne;
  std::string szOther;
  const auto one = m_Network.NewSharedReceiver(m_Loop, {Group, Port}, Loopback, Into(szOne));
  const auto other = m_Network.NewSharedReceiver(m_Loop, {Group, Port}, Loopback, Into(szOther));
  Send(Group, "x");
  m_Loop.Pump();
  EXPECT_EQ(szOne, "x");
  EXPECT_EQ(szOther, "x");
}

TEST_F(SharedReceiver, AGroupsMemberTakesNothingFromAnAddress) {
  std::string szGroup;
  std::string szAddress;
  const auto group = m_Network.NewSharedReceiver(m_Loop, {Group, Port}, Loopback, Into(szGroup));
  const auto address = m_Network.NewReceiver(m_Loop, {Loopback, Port}, Into(szAddress));
  Send(Loopback, "x");
  m_Loop.Pump();
  EXPECT_EQ(szGroup, "");
  EXPECT_EQ(szAddress, "x");
}

TEST_F(SharedReceiver, OneAddressIsHeardByOneOnly) {
  std::string szOne;
  std::string szOther;
  const auto one = m_Network.NewSharedReceiver(m_Loop, {Loopback, Port}, 0, Into(szOne));
  const auto other = m_Network.NewSharedReceiver(m_Loop, {Loopback, Port}, 0, Into(szOther));
  Send(Loopback, "x");
  m_Loop.Pump();
  EXPECT_EQ(szOne + szOther, "x");
}

TEST_F(SharedReceiver, WhoDoesNotShareKeepsOthersOut) {
  std::string szText;
  const auto one = m_Network.NewReceiver(m_Loop, {Loopback, Port}, Into(szText));
  EXPECT_THROW((void)m_Network.NewSharedReceiver(m_Loop, {Loopback, Port}, 0, Into(szText)), Error);
}

TEST_F(SharedReceiver, BroadcastIsHeardAtItsOwnAddress) {
  std::string szText;
  const auto one = m_Network.NewSharedReceiver(m_Loop, {0xFFFFFFFF, Port}, 0, Into(szText));
  const auto other = m_Network.NewReceiver(m_Loop, {Loopback, Port}, Into(szText));
  EXPECT_TRUE(one && other);
}

}  // namespace
}  // namespace vex::test
