#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/host_linux/OtherProgram.h"
#include "tests/host_linux/WindowMessages.h"

namespace vex::test {
namespace {

class LinuxWindowsFloodTest : public testing::Test {
 protected:
  [[nodiscard]] SendResult Send(WindowHandle target, const std::string& szPayload) {
    return m_Host->Windows().SendCopyData(m_hWnd, target, Copy(szPayload));
  }
  [[nodiscard]] std::string PathOf(WindowHandle hWnd) const {
    return m_Machine.RuntimePath() + "/" + std::to_string(hWnd);
  }

  LinuxMachine m_Machine;
  std::unique_ptr<LinuxHost> m_Host = m_Machine.NewHost();
  WindowHandle m_hWnd = m_Host->Windows().NewWindow();
};

TEST_F(LinuxWindowsFloodTest, LongMessagesLeaveATurnSooner) {
  std::vector<std::string> payloads;
  Collect(*m_Host, m_hWnd, payloads);
  const std::string szLong = "07" + std::string(100000, 'x');
  for (int i = 0; i < 5; ++i) ASSERT_EQ(Send(m_hWnd, szLong), SendResult::Sent);
  m_Host->EventLoop().Pump();
  const size_t first = payloads.size();
  EXPECT_GE(first, 1U);
  EXPECT_LE(first, 3U);
  EXPECT_TRUE(RunUntil(m_Host->EventLoop(), [&] { return payloads.size() == 5; }));
}

TEST_F(LinuxWindowsFloodTest, WhatIsNotTakenUpWaitsInOrder) {
  constexpr int Count = 200;
  std::vector<std::string> payloads;
  Collect(*m_Host, m_hWnd, payloads);
  m_Host->Windows().TakeMessages(m_hWnd, false);
  m_Host->Windows().TakeMessages(m_hWnd, false);
  std::vector<std::string> sent;
  for (int i = 0; i < Count; ++i) {
    sent.push_back("07line " + std::to_string(i));
    ASSERT_EQ(Send(m_hWnd, sent.back()), SendResult::Sent);
  }
  for (int i = 0; i < 100; ++i) m_Host->EventLoop().Pump();
  EXPECT_TRUE(payloads.empty());
  m_Host->Windows().TakeMessages(m_hWnd, true);
  m_Host->Windows().TakeMessages(m_hWnd, true);
  EXPECT_TRUE(RunUntil(m_Host->EventLoop(), [&] { return payloads.size() >= Count; }));
  EXPECT_EQ(payloads, sent);
}

TEST_F(LinuxWindowsFloodTest, NoneIsTakenBehindTheOneThatAskedForIt) {
  std::vector<std::string> payloads;
  m_Host->Windows().ExchangeProcedure(
      m_hWnd, std::make_shared<WindowProcedure>([&](const WindowMessage& message) -> intptr_t {
        payloads.emplace_back(message.Copy->Bytes);
        m_Host->Windows().TakeMessages(m_hWnd, false);
        return 0;
      }));
  for (const char* szPayload : {"07a", "07b", "07c"}) ASSERT_EQ(Send(m_hWnd, szPayload), SendResult::Sent);
  m_Host->EventLoop().Pump();
  EXPECT_EQ(payloads, (std::vector<std::string>{"07a"}));
  m_Host->EventLoop().Pump();
  EXPECT_EQ(payloads.size(), 1U);
  m_Host->Windows().TakeMessages(m_hWnd, true);
  m_Host->EventLoop().Pump();
  EXPECT_EQ(payloads, (std::vector<std::string>{"07a", "07b"}));
}

TEST_F(LinuxWindowsFloodTest, TakingUpForNoWindowIsNothing) {
  m_Host->Windows().TakeMessages(m_hWnd + 1, false);
  m_Host->Windows().TakeMessages(0, true);
  EXPECT_TRUE(m_Host->Windows().Exists(m_hWnd));
}

TEST_F(LinuxWindowsFloodTest, AFloodFromAnotherProgramComesWholeAndInOrder) {
  constexpr int Count = 100000;
  std::vector<std::string> payloads;
  Collect(*m_Host, m_hWnd, payloads);
  const OtherProgram other([&](const auto&) {
    const Descriptor socket(::socket(AF_UNIX, SOCK_DGRAM, 0));
    const sockaddr_un address = AddressOf(PathOf(m_hWnd));
    if (connect(socket.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) _exit(1);
    for (int i = 0; i < Count; ++i) {
      const std::string szPayload = "99" + std::to_string(i);
      const auto bytes = EncodeCopyData(1, Copy(szPayload));
      if (send(socket.Get(), bytes.data(), bytes.size(), 0) < 0) _exit(2);
    }
  });
  bool boolPaused = false;
  EXPECT_TRUE(RunUntil(m_Host->EventLoop(), [&] {
    boolPaused = !boolPaused;
    m_Host->Windows().TakeMessages(m_hWnd, !boolPaused);
    return payloads.size() >= Count;
  }));
  ASSERT_EQ(payloads.size(), static_cast<size_t>(Count));
  for (int i = 0; i < Count; ++i) ASSERT_EQ(payloads[static_cast<size_t>(i)], "99" + std::to_string(i));
}

TEST_F(LinuxWindowsFloodTest, ReceiversWithoutRoomBeyondAFewAreGone) {
  constexpr size_t Count = LinuxWindows::MostReceivers + 5;
  std::vector<WindowHandle> deaf;
  for (size_t i = 0; i < Count; ++i) deaf.push_back(m_Host->Windows().NewWindow());
  for (const WindowHandle hWnd : deaf) m_Host->Windows().TakeMessages(hWnd, false);
  size_t gone = 0;
  for (const WindowHandle hWnd : deaf) {
    SendResult result = SendResult::Sent;
    for (int i = 0; i < 2000 && result == SendResult::Sent && !m_Host->Windows().Unsent(hWnd); ++i)
      result = Send(hWnd, "07line");
    gone += result == SendResult::Gone ? 1 : 0;
  }
  EXPECT_EQ(gone, 5U);
  for (const WindowHandle hWnd : deaf) m_Host->Windows().TakeMessages(hWnd, true);
  EXPECT_TRUE(RunUntil(m_Host->EventLoop(), [&] {
    return std::none_of(deaf.begin(), deaf.end(),
                        [&](WindowHandle hWnd) { return m_Host->Windows().Unsent(hWnd); });
  }));
  EXPECT_EQ(Send(deaf.back(), "07line"), SendResult::Sent);
}

}  // namespace
}  // namespace vex::test
