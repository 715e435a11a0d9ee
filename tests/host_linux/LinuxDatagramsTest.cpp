#include "host/linux/LinuxDatagrams.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

#include "basic/Error.h"
#include "host/linux/LinuxEventLoop.h"

namespace vex {
namespace {

constexpr uint32_t Loopback = 0x7F000001;
constexpr uint16_t Port = 47301;

class LinuxDatagramsTest : public testing::Test {
 protected:
  std::unique_ptr<DatagramReceiver> Receive(uint16_t port) {
    return Network.NewReceiver(Loop, {Loopback, port}, [this](const DatagramAddress& from, auto bytes) {
      EXPECT_EQ(from.Address, Loopback);
      Received.emplace_back(bytes.begin(), bytes.end());
      if (Received.back() == "end") Loop.Quit();
    });
  }
  void Send(const std::string& szText) {
    const std::vector<uint8_t> bytes(szText.begin(), szText.end());
    const Datagram datagram{{Loopback, Port}, bytes};
    EXPECT_EQ(Network.NewSender(0)->Send({&datagram, 1}), 0);
  }

  LinuxEventLoop Loop;
  LinuxDatagrams Network;
  std::vector<std::string> Received;
};

TEST_F(LinuxDatagramsTest, WhatComesIsHandedOverInOrderAndWhole) {
  const auto receiver = Receive(Port);
  std::vector<std::string> sent{"", std::string(60000, 'x')};
  for (int i = 0; i < 40; ++i) sent.push_back(std::to_string(i));
  sent.emplace_back("end");
  for (const std::string& szText : sent) Send(szText);
  Loop.Run();
  EXPECT_EQ(Received, sent);
}

TEST_F(LinuxDatagramsTest, APortThatIsTakenRaisesTheSystemsCode) {
  const auto receiver = Receive(Port);
  try {
    const auto second = Receive(Port);
    FAIL() << "the port was had twice";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number, EADDRINUSE);
    EXPECT_EQ(error.Source, "Datagrams.NewReceiver");
  }
}

TEST_F(LinuxDatagramsTest, APortIsGivenBack) {
  Receive(Port).reset();
  EXPECT_NE(Receive(Port), nullptr);
}

TEST_F(LinuxDatagramsTest, AReceiverMayGoInItsHandler) {
  std::unique_ptr<DatagramReceiver> receiver;
  int count = 0;
  receiver = Network.NewReceiver(Loop, {Loopback, Port}, [&](const DatagramAddress&, auto) {
    ++count;
    Loop.Quit();
    receiver.reset();
  });
  Send("one");
  Send("two");
  Loop.Run();
  EXPECT_EQ(count, 1);
}

}  // namespace
}  // namespace vex
