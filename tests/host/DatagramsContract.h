#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "basic/Error.h"
#include "host/Datagrams.h"
#include "host/EventLoop.h"
#include "host/ThreadedLookUp.h"
#include "host/Timer.h"

namespace vex::test {

/// A real machine's network: one on which what is sent to itself arrives.
struct NetworkFamily {
  std::string Name;
  std::function<std::unique_ptr<EventLoop>()> NewLoop;
  std::function<std::unique_ptr<Datagrams>()> NewNetwork;
  int32_t PortIsTaken = 0;  ///< the system's code
};

inline void PrintTo(const NetworkFamily& family, std::ostream* out) {
  *out << family.Name;
}

/// What the network of every real machine keeps, on a port of the loopback interface that is free. When a
/// datagram that was sent is there to be taken is the machine's affair, so the cases wait for the first.
class DatagramsContract : public testing::TestWithParam<NetworkFamily> {
 protected:
  static constexpr uint32_t Loopback = 0x7F000001;

  DatagramsContract() {
    for (bool boolTaken = true; boolTaken && Port < 47400;) {
      try {
        Receive(++Port).reset();
        boolTaken = false;
      } catch (const Error&) {
        continue;  // by another program
      }
    }
  }

  std::unique_ptr<DatagramReceiver> Receive(uint16_t port, uint32_t at = Loopback) {
    return Network->NewReceiver(*Loop, {at, port}, [this](const DatagramAddress& from, auto bytes) {
      EXPECT_NE(from.Port, 0);
      Senders.push_back(from.Address);
      Received.emplace_back(bytes.begin(), bytes.end());
      if (Received.back() == "end") Loop->Quit();
    });
  }
  std::unique_ptr<DatagramReceiver> Receive() { return Receive(Port); }

  int32_t Send(const std::vector<std::string>& texts, uint32_t to = Loopback) {
    std::vector<std::vector<uint8_t>> bytes;
    for (const std::string& szText : texts) bytes.emplace_back(szText.begin(), szText.end());
    std::vector<Datagram> datagrams;
    datagrams.reserve(bytes.size());
    for (const auto& one : bytes) datagrams.push_back({{to, Port}, one});
    return Network->NewSender(0)->Send(datagrams);
  }
  void Send(const std::string& szText) { EXPECT_EQ(Send(std::vector{szText}), 0); }

  void PumpUntilSomethingCame() {
    while (Received.empty()) Loop->Pump();
  }

  std::unique_ptr<EventLoop> Loop = GetParam().NewLoop();
  std::unique_ptr<Datagrams> Network = GetParam().NewNetwork();
  uint16_t Port = 47300;
  std::vector<std::string> Received;
  std::vector<uint32_t> Senders;
};

TEST_P(DatagramsContract, WhatComesIsHandedOverInOrderAndWhole) {
  const auto receiver = Receive();
  std::vector<std::string> sent{"", std::string(40000, 'x')};
  for (int i = 0; i < 40; ++i) sent.push_back(std::to_string(i));
  sent.emplace_back("end");
  for (const std::string& szText : sent) Send(szText);
  Loop->Run();
  EXPECT_EQ(Received, sent);
  EXPECT_EQ(Senders, std::vector<uint32_t>(sent.size(), Loopback));
}

TEST_P(DatagramsContract, ManyAreSentInOneGoInOrder) {
  const auto receiver = Receive();
  std::vector<std::string> sent;
  for (int i = 0; i < 150; ++i) sent.push_back(std::to_string(i));
  sent.emplace_back("end");
  EXPECT_EQ(Send(sent), 0);
  Loop->Run();
  EXPECT_EQ(Received, sent);
}

TEST_P(DatagramsContract, OneThatCannotBeSentHoldsUpNoOther) {
  const auto receiver = Receive();
  const int32_t lCode = Send({"one", std::string(70000, 'x'), "two", "end"});
  EXPECT_NE(lCode, 0);
  EXPECT_NE(Network->Describe(lCode), "");
  Loop->Run();
  EXPECT_EQ(Received, (std::vector<std::string>{"one", "two", "end"}));
}

TEST_P(DatagramsContract, NobodyListeningIsNoFailure) {
  const auto receiver = Receive();
  const auto sender = Network->NewSender(0);
  const std::vector<uint8_t> bytes{'e', 'n', 'd'};
  const std::vector<Datagram> toNobody{{{Loopback, 1}, bytes}};
  for (int i = 0; i < 3; ++i) EXPECT_EQ(sender->Send(toNobody), 0);
  EXPECT_EQ(sender->Send(std::vector<Datagram>{{{Loopback, Port}, bytes}}), 0);
  Loop->Run();
  EXPECT_EQ(Received.size(), 1U);
}

TEST_P(DatagramsContract, BroadcastIsAllowed) {
  constexpr uint32_t everyoneHere = 0x7FFFFFFF;
  const auto receiver = Receive(Port, 0);
  EXPECT_EQ(Send({"end"}, everyoneHere), 0);
  Loop->Run();
  EXPECT_EQ(Received.size(), 1U);
}

TEST_P(DatagramsContract, MulticastGoesOutByAnInterfaceOfThisMachineAlone) {
  EXPECT_NE(Network->NewSender(Loopback), nullptr);
  constexpr uint32_t nobodysHere = 0xC0000201;  // 192.0.2.1, kept free for examples
  try {
    (void)Network->NewSender(nobodysHere);
    FAIL() << "an interface that is not there was taken";
  } catch (const Error& error) {
    EXPECT_NE(error.Number, 0);
    EXPECT_EQ(error.Source, "Datagrams.NewSender");
  }
}

TEST_P(DatagramsContract, AFloodIsTakenInPartsInOrder) {
  const auto receiver = Receive();
  std::vector<std::string> sent;
  for (int i = 0; i < 100; ++i) {
    sent.push_back(std::to_string(i));
    Send(sent.back());
  }
  PumpUntilSomethingCame();
  EXPECT_EQ(Received.size(), 16U);
  Loop->Pump();
  EXPECT_LE(Received.size(), 32U);
  sent.emplace_back("end");
  Send("end");
  Loop->Run();
  EXPECT_EQ(Received, sent);
}

TEST_P(DatagramsContract, ALongDatagramEndsATurn) {
  const auto receiver = Receive();
  for (int i = 0; i < 3; ++i) Send(std::string(20000, 'x'));
  PumpUntilSomethingCame();
  EXPECT_EQ(Received.size(), 1U);
  Send("end");
  Loop->Run();
  EXPECT_EQ(Received.size(), 4U);
}

TEST_P(DatagramsContract, AReceiverThatRestsMayGo) {
  auto receiver = Receive();
  for (int i = 0; i < 40; ++i) Send("x");
  PumpUntilSomethingCame();
  receiver.reset();
  receiver = Receive();
  Send("end");
  Loop->Run();
  EXPECT_EQ(Received.size(), 17U);
}

TEST_P(DatagramsContract, APortThatIsTakenRaisesTheSystemsCode) {
  const auto receiver = Receive();
  try {
    const auto second = Receive();
    FAIL() << "the port was had twice";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number, GetParam().PortIsTaken);
    EXPECT_EQ(error.Source, "Datagrams.NewReceiver");
    EXPECT_NE(Network->Describe(error.Number), "");
  }
}

TEST_P(DatagramsContract, APortIsGivenBack) {
  Receive().reset();
  EXPECT_NE(Receive(), nullptr);
}

TEST_P(DatagramsContract, AReceiverMayGoInItsHandler) {
  std::unique_ptr<DatagramReceiver> receiver;
  int count = 0;
  receiver = Network->NewReceiver(*Loop, {Loopback, Port}, [&](const DatagramAddress&, auto) {
    ++count;
    Loop->Quit();
    receiver.reset();
  });
  Send("one");
  Send("two");
  Loop->Run();
  EXPECT_EQ(count, 1);
}

TEST_P(DatagramsContract, AHandlerThatRaisesLosesItsDatagramOnly) {
  int count = 0;
  const auto receiver = Network->NewReceiver(*Loop, {Loopback, Port}, [&](const DatagramAddress&, auto) {
    if (++count == 1) throw PlatformError(ErrorInvalidCall);
    Loop->Quit();
  });
  Send("one");
  Send("two");
  EXPECT_THROW(Loop->Run(), Error);
  Loop->Run();
  EXPECT_EQ(count, 2);
}

// The name service.

TEST_P(DatagramsContract, TheMachinesOwnNameServiceIsAsked) {
  std::optional<uint32_t> found;
  const auto lookUp = Network->LookUp(*Loop, "localhost", [&](std::optional<uint32_t> address) {
    found = address;
    Loop->Quit();
  });
  EXPECT_EQ(found, std::nullopt);
  Loop->Run();
  EXPECT_EQ(found, Loopback);
}

TEST_P(DatagramsContract, NamesThatCannotBeAreNotKnown) {
  uint32_t address = 0;
  EXPECT_FALSE(Network->Resolve("", address));
  EXPECT_FALSE(Network->Resolve(std::string("local\0host", 10), address));
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

/// A question that a case asks the slow service, on the machine's own loop.
class SlowQuestion {
 public:
  SlowQuestion(EventLoop& loop, bool boolFound)
      : m_LookUp(std::make_unique<ThreadedLookUp>(loop, "tree.local", Service.Resolver(boolFound),
                                                  [this, &loop](std::optional<uint32_t> address) {
                                                    m_LookUp.reset();
                                                    Answers.push_back(address);
                                                    loop.Quit();
                                                  })) {}
  void LetGo() { m_LookUp.reset(); }

  SlowNameService Service;
  std::vector<std::optional<uint32_t>> Answers;

 private:
  std::unique_ptr<HostLookUp> m_LookUp;
};

TEST_P(DatagramsContract, TheLoopTicksOnWhileTheNameServiceTakesItsTime) {
  SlowQuestion question(*Loop, true);
  int ticks = 0;
  const auto timer = Loop->NewTimer(TimerOrder::Component);
  timer->Tick([&] {
    if (++ticks == 20) question.Service.Answer();
  });
  timer->Enabled(true);
  Loop->Run();
  EXPECT_GE(ticks, 20);
  EXPECT_EQ(question.Answers, (std::vector<std::optional<uint32_t>>{0x0A000005}));
}

TEST_P(DatagramsContract, ANameThatIsNotKnownIsAnAnswerToo) {
  SlowQuestion question(*Loop, false);
  question.Service.Answer();
  Loop->Run();
  EXPECT_EQ(question.Answers, (std::vector<std::optional<uint32_t>>{std::nullopt}));
}

TEST_P(DatagramsContract, AQuestionThatIsLetGoIsNotAnswered) {
  SlowQuestion question(*Loop, true);
  question.LetGo();
  question.Service.Answer();
  question.Service.WaitUntilAnswered();
  Loop->Pump();
  EXPECT_TRUE(question.Answers.empty());
}

TEST_P(DatagramsContract, AQuestionMayBeLetGoAtAnyMomentOfItsAnswer) {
  constexpr int rounds = 300;
  int answers = 0;
  for (int round = 0; round < rounds; ++round) {
    const auto resolve = [](const std::string&, uint32_t& address) {
      address = 0x0A000005;
      return true;
    };
    ThreadedLookUp lookUp(*Loop, "tree.local", resolve, [&](std::optional<uint32_t> address) {
      EXPECT_EQ(address, 0x0A000005U);
      ++answers;
    });
    for (int turn = 0; turn < round % 20; ++turn) Loop->Pump();
  }
  EXPECT_LE(answers, rounds);
}

}  // namespace vex::test
