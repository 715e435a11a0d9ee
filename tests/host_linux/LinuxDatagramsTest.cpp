#include "host/linux/LinuxDatagrams.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <future>
#include <string>
#include <vector>

#include "basic/Error.h"
#include "host/linux/LinuxEventLoop.h"
#include "host/ThreadedLookUp.h"

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

TEST_F(LinuxDatagramsTest, AFloodIsTakenInPartsInOrder) {
  const auto receiver = Receive(Port);
  std::vector<std::string> sent;
  for (int i = 0; i < 100; ++i) {
    sent.push_back(std::to_string(i));
    Send(sent.back());
  }
  Loop.Pump();
  EXPECT_EQ(Received.size(), 16U);
  Loop.Pump();
  EXPECT_LE(Received.size(), 32U);
  sent.emplace_back("end");
  Send("end");
  Loop.Run();
  EXPECT_EQ(Received, sent);
}

TEST_F(LinuxDatagramsTest, ALongDatagramEndsATurn) {
  const auto receiver = Receive(Port);
  for (int i = 0; i < 3; ++i) Send(std::string(40000, 'x'));
  Loop.Pump();
  EXPECT_EQ(Received.size(), 1U);
  Send("end");
  Loop.Run();
  EXPECT_EQ(Received.size(), 4U);
}

TEST_F(LinuxDatagramsTest, AReceiverThatRestsMayGo) {
  auto receiver = Receive(Port);
  for (int i = 0; i < 40; ++i) Send("x");
  Loop.Pump();
  receiver.reset();
  receiver = Receive(Port);
  Send("end");
  Loop.Run();
  EXPECT_EQ(Received.size(), 17U);
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

/// A name service that takes its time: it answers when it is told to.
class SlowNameService {
 public:
  [[nodiscard]] ThreadedLookUp::Resolver Resolver(bool boolFound) const {
    return [wait = m_Answer.get_future().share(), asked = m_Asked, boolFound](const std::string&,
                                                                              uint32_t& address) {
      wait.wait();
      address = 0x0A000005;
      asked->set_value();
      return boolFound;
    };
  }
  void Answer() { m_Answer.set_value(); }
  /// Until the other thread has got its answer.
  void WaitUntilAnswered() { m_Asked->get_future().wait(); }

 private:
  mutable std::promise<void> m_Answer;
  std::shared_ptr<std::promise<void>> m_Asked = std::make_shared<std::promise<void>>();
};

class ThreadedLookUpTest : public LinuxDatagramsTest {
 protected:
  void Ask(bool boolFound) {
    m_LookUp = std::make_unique<ThreadedLookUp>(Loop, "tree.local", m_Service.Resolver(boolFound),
                                                 [this](std::optional<uint32_t> address) {
                                                   m_LookUp.reset();
                                                   m_Answers.push_back(address);
                                                   Loop.Quit();
                                                 });
  }

  SlowNameService m_Service;
  std::unique_ptr<HostLookUp> m_LookUp;
  std::vector<std::optional<uint32_t>> m_Answers;
};

TEST_F(ThreadedLookUpTest, TheLoopTicksOnWhileTheNameServiceTakesItsTime) {
  int ticks = 0;
  const auto timer = Loop.NewTimer(TimerOrder::Component);
  timer->Tick([&] {
    if (++ticks == 20) m_Service.Answer();
  });
  timer->Enabled(true);
  Ask(true);
  Loop.Run();
  EXPECT_GE(ticks, 20);
  EXPECT_EQ(m_Answers, (std::vector<std::optional<uint32_t>>{0x0A000005}));
}

TEST_F(ThreadedLookUpTest, ANameThatIsNotKnownIsAnAnswerToo) {
  Ask(false);
  m_Service.Answer();
  Loop.Run();
  EXPECT_EQ(m_Answers, (std::vector<std::optional<uint32_t>>{std::nullopt}));
}

TEST_F(ThreadedLookUpTest, AQuestionThatIsLetGoIsNotAnswered) {
  Ask(true);
  m_LookUp.reset();
  m_Service.Answer();
  m_Service.WaitUntilAnswered();
  Loop.Pump();
  EXPECT_TRUE(m_Answers.empty());
}

TEST_F(ThreadedLookUpTest, MayBeLetGoAtAnyMomentOfItsAnswer) {
  constexpr int rounds = 300;
  int answers = 0;
  for (int round = 0; round < rounds; ++round) {
    const auto resolve = [](const std::string&, uint32_t& address) {
      address = 0x0A000005;
      return true;
    };
    ThreadedLookUp lookUp(Loop, "tree.local", resolve, [&](std::optional<uint32_t> address) {
      EXPECT_EQ(address, 0x0A000005U);
      ++answers;
    });
    for (int turn = 0; turn < round % 20; ++turn) Loop.Pump();
  }
  EXPECT_LE(answers, rounds);
}

TEST_F(ThreadedLookUpTest, AProgramEndsAtOnceWhileTheNameServiceIsSilent) {
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

TEST_F(ThreadedLookUpTest, TheMachinesOwnNameServiceIsAsked) {
  std::optional<uint32_t> found;
  const auto lookUp = Network.LookUp(Loop, "localhost", [&](std::optional<uint32_t> address) {
    found = address;
    Loop.Quit();
  });
  Loop.Run();
  EXPECT_EQ(found, Loopback);
}

}  // namespace
}  // namespace vex
