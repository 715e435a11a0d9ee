#pragma once

#include <vector>

#include "tests/host/HostContract.h"

namespace vex::test {

/// What came through a window's procedure, copied.
struct ContractMessage {
  uint32_t uMsg = 0;
  uintptr_t wParam = 0;
  CopyData Copy;
  std::string Bytes;
};

inline WindowProcedureReference ContractProcedure(std::vector<ContractMessage>& messages,
                                                  intptr_t result = 0) {
  return std::make_shared<WindowProcedure>([&messages, result](const WindowMessage& message) {
    if (message.Copy != nullptr) {
      const CopyData& copy = *message.Copy;
      messages.push_back(
          {message.uMsg, message.wParam, copy, copy.Size == 0 ? "" : std::string(copy.Bytes, copy.Size)});
    }
    return result;
  });
}

TEST_P(HostContract, NewMainWindowExistsUntilItIsDestroyed) {
  const WindowHandle hWnd = m_Host->Windows().NewMainWindow();
  EXPECT_GT(hWnd, 0);
  EXPECT_TRUE(m_Host->Windows().Exists(hWnd));
  m_Host->Windows().DestroyWindow(hWnd);
  EXPECT_FALSE(m_Host->Windows().Exists(hWnd));
}

TEST_P(HostContract, CompanionWindowsAreDistinctAndTheMainWindowIsFound) {
  const WindowHandle first = m_Host->Windows().NewWindow();
  const WindowHandle second = m_Host->Windows().NewWindow();
  EXPECT_NE(first, second);
  EXPECT_TRUE(m_Host->Windows().Exists(first));
  EXPECT_EQ(m_Host->PlayerFinder().FindPlayer(), 0);
}

TEST_P(HostContract, HandleZeroIsNoWindow) {
  EXPECT_FALSE(m_Host->Windows().Exists(0));
}

TEST_P(HostContract, CopyDataReachesTheProcedureAsItWasSent) {
  const WindowHandle hWnd = m_Host->Windows().NewMainWindow();
  std::vector<ContractMessage> messages;
  m_Host->Windows().ExchangeProcedure(hWnd, ContractProcedure(messages));
  const std::string szPayload("09(eve.shw)\0", 12);
  const CopyData copy{3, 12, szPayload.data()};
  EXPECT_EQ(m_Host->Windows().SendCopyData(hWnd, hWnd, copy), SendResult::Sent);
  ASSERT_TRUE(RunUntil([&] { return !messages.empty(); }));
  EXPECT_EQ(messages[0].uMsg, WM_COPYDATA);
  EXPECT_EQ(messages[0].wParam, static_cast<uintptr_t>(hWnd));
  EXPECT_EQ(messages[0].Copy.Data, 3U);
  EXPECT_EQ(messages[0].Bytes, szPayload);
}

TEST_P(HostContract, EmptyCopyDataReachesTheProcedure) {
  const WindowHandle hWnd = m_Host->Windows().NewMainWindow();
  std::vector<ContractMessage> messages;
  m_Host->Windows().ExchangeProcedure(hWnd, ContractProcedure(messages));
  EXPECT_EQ(m_Host->Windows().SendCopyData(hWnd, hWnd, CopyData{}), SendResult::Sent);
  ASSERT_TRUE(RunUntil([&] { return !messages.empty(); }));
  EXPECT_EQ(messages[0].Copy.Size, 0U);
}

TEST_P(HostContract, MessagesKeepTheirOrder) {
  const WindowHandle hWnd = m_Host->Windows().NewMainWindow();
  std::vector<ContractMessage> messages;
  m_Host->Windows().ExchangeProcedure(hWnd, ContractProcedure(messages));
  for (char digit = '0'; digit <= '9'; ++digit) {
    const CopyData copy{3, 1, &digit};
    ASSERT_EQ(m_Host->Windows().SendCopyData(hWnd, hWnd, copy), SendResult::Sent);
  }
  ASSERT_TRUE(RunUntil([&] { return messages.size() >= 10; }));
  std::string szOrder;
  for (const ContractMessage& message : messages) szOrder += message.Bytes;
  EXPECT_EQ(szOrder, "0123456789");
  EXPECT_FALSE(m_Host->Windows().Unsent(hWnd));
}

TEST_P(HostContract, ExchangedProcedureStandsBeforeTheFormerOne) {
  vex::Windows& windows = m_Host->Windows();
  const WindowHandle hWnd = windows.NewMainWindow();
  std::vector<ContractMessage> messages;
  auto innermost = windows.ExchangeProcedure(hWnd, ContractProcedure(messages, 5));
  ASSERT_TRUE(innermost);
  EXPECT_EQ(windows.CallProcedure(innermost, WindowMessage{hWnd, 1, 0, 0, nullptr}), 0);
  WindowProcedureReference former;
  intptr_t result = 0;
  former =
      windows.ExchangeProcedure(hWnd, std::make_shared<WindowProcedure>([&](const WindowMessage& message) {
                                  result = windows.CallProcedure(former, message);
                                  return result;
                                }));
  ASSERT_TRUE(former);
  EXPECT_EQ(windows.SendCopyData(hWnd, hWnd, CopyData{}), SendResult::Sent);
  ASSERT_TRUE(RunUntil([&] { return !messages.empty(); }));
  EXPECT_EQ(result, 5);
}

TEST_P(HostContract, SendingToAWindowThatIsGoneSaysSo) {
  vex::Windows& windows = m_Host->Windows();
  const WindowHandle hWnd = windows.NewMainWindow();
  windows.DestroyWindow(hWnd);
  EXPECT_EQ(windows.SendCopyData(hWnd, hWnd, CopyData{}), SendResult::Gone);
  EXPECT_FALSE(windows.Unsent(hWnd));
}

}  // namespace vex::test
