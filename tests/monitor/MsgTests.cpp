#include "monitor/Msg.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "basic/Error.h"
#include "host/virtual/VirtualWindows.h"

namespace vex {
namespace {

CopyData Copied(const std::string& szBytes) {
  return {VexMessageData, static_cast<uint32_t>(szBytes.size()), szBytes.data()};
}

CopyData Copied(std::string&&) = delete;  // it would outlive the bytes

TEST(Msg, TypesOfOneDigitAreWrittenWithAZero) {
  EXPECT_EQ(MessageTypeText(1), "01");
  EXPECT_EQ(MessageTypeText(9), "09");
}

TEST(Msg, TypesOfTwoDigitsAreWrittenAsTheyAre) {
  EXPECT_EQ(MessageTypeText(10), "10");
  EXPECT_EQ(MessageTypeText(99), "99");
}

TEST(Msg, AnyOtherTypeIsWrittenAsTwoZeros) {
  for (const int32_t lType : {0, -1, 100, 2147483647, -2147483647 - 1})
    EXPECT_EQ(MessageTypeText(lType), "00");
}

TEST(Msg, AMessageIsTypeAndTextAndOneZeroByte) {
  VirtualWindows windows;
  const WindowHandle player = windows.NewMainWindow();
  const WindowHandle tray = windows.NewForeignWindow();
  EXPECT_TRUE(SendVexMessage(windows, player, tray, MessageStatus, "18:00: Starting"));
  ASSERT_EQ(windows.Received(tray).size(), 1U);
  EXPECT_EQ(windows.Received(tray)[0].Sender, player);
  EXPECT_EQ(windows.Received(tray)[0].Data, 3U);
  EXPECT_EQ(windows.Received(tray)[0].Bytes, std::string("0718:00: Starting\0", 18));
}

TEST(Msg, AMessageOfTypeZeroIsSentAsTwoZeros) {
  VirtualWindows windows;
  const WindowHandle tray = windows.NewForeignWindow();
  EXPECT_TRUE(SendVexMessage(windows, 1, tray, 100, "x"));
  EXPECT_EQ(windows.Received(tray)[0].Bytes, std::string("00x\0", 4));
}

TEST(Msg, SendingToAWindowThatIsGoneIsNoError) {
  VirtualWindows windows;
  EXPECT_FALSE(SendVexMessage(windows, 1, 4711, MessageStatus, "x"));
}

TEST(Msg, AMessageThatIsTooLongIsAnErrorThatSaysSo) {
  VirtualWindows windows;
  windows.LongestMessage(10);
  const WindowHandle tray = windows.NewForeignWindow();
  try {
    SendVexMessage(windows, 1, tray, MessageStatus, "longer than that");
    FAIL() << "sent";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number, ErrorInvalidCall);
    EXPECT_EQ(error.Source, "Msg.SendVexMessage");
    EXPECT_EQ(error.Description, "Message of 18 characters is too long to be sent");
  }
}

TEST(Msg, CopyDataIsCutBeforeItsFirstZeroByte) {
  const std::string szBytes("09eve\0night\0", 12);
  const CopyData copy = Copied(szBytes);
  EXPECT_EQ(CopyDataToString(&copy), "09eve");
}

TEST(Msg, CopyDataWithoutZeroByteIsTakenWhole) {
  const std::string szBytes = "06ON";
  const CopyData copy = Copied(szBytes);
  EXPECT_EQ(CopyDataToString(&copy), "06ON");
}

TEST(Msg, CopyDataOfNoBytesIsEmptyAndItsPointerIsNeverRead) {
  const CopyData copy{VexMessageData, 0, nullptr};
  EXPECT_EQ(CopyDataToString(&copy), "");
  EXPECT_EQ(CopyDataToString(nullptr), "");
}

TEST(Msg, TheTypeIsTheNumberOfTheFirstTwoCharacters) {
  EXPECT_EQ(MessageTypeOf("01"), 1);
  EXPECT_EQ(MessageTypeOf("11text"), 11);
  EXPECT_EQ(MessageTypeOf("123"), 12);
  EXPECT_EQ(MessageTypeOf(" 8"), 8);
  EXPECT_EQ(MessageTypeOf("8"), 8);
}

TEST(Msg, ATypeThatIsNoNumberIsZero) {
  for (const char* szMessage : {"", "x", "xx9", "ON", "--", "()"}) EXPECT_EQ(MessageTypeOf(szMessage), 0);
}

TEST(Msg, TheTextIsAllBehindTheFirstTwoCharacters) {
  EXPECT_EQ(MessageTextOf("06ON"), "ON");
  EXPECT_EQ(MessageTextOf("06"), "");
  EXPECT_EQ(MessageTextOf("0"), "");
  EXPECT_EQ(MessageTextOf(""), "");
}

TEST(Msg, AReceivedMessageIsQueuedWithItsSender) {
  Queue<VexMessage> queue;
  const std::string szBytes("09(eve.shw,(F,,F,),2,F)\0", 24);
  const CopyData copy = Copied(szBytes);
  ReceiveVexMessage(4711, &copy, queue);
  ASSERT_EQ(queue.Count(), 1);
  EXPECT_EQ(queue.Peek().MessageType(), MessageShowOnDemand);
  EXPECT_EQ(queue.Peek().SenderHwnd(), 4711);
  EXPECT_EQ(queue.Peek().Text(), "(eve.shw,(F,,F,),2,F)");
}

TEST(Msg, AMessageOfNoBytesIsQueuedAsTypeZeroWithoutText) {
  Queue<VexMessage> queue;
  const CopyData copy{VexMessageData, 0, nullptr};
  ReceiveVexMessage(1, &copy, queue);
  ASSERT_EQ(queue.Count(), 1);
  EXPECT_EQ(queue.Peek().MessageType(), 0);
  EXPECT_EQ(queue.Peek().Text(), "");
}

TEST(Msg, WhatIsSentIsWhatIsReceived) {
  EXPECT_TRUE(rc::check([](std::string szText) {
    szText = szText.substr(0, szText.find('\0'));
    const auto lType = *rc::gen::inRange<int32_t>(1, 100);
    VirtualWindows windows;
    const WindowHandle tray = windows.NewForeignWindow();
    SendVexMessage(windows, 5, tray, lType, szText);
    const CopyData copy = Copied(windows.Received(tray)[0].Bytes);
    Queue<VexMessage> queue;
    ReceiveVexMessage(5, &copy, queue);
    RC_ASSERT(queue.Peek().MessageType() == lType);
    RC_ASSERT(queue.Peek().Text() == szText);
  }));
}

TEST(Msg, AnyBytesAreReceivedAsSomeMessage) {
  EXPECT_TRUE(rc::check([](const std::string& szBytes) {
    const CopyData copy = Copied(szBytes);
    Queue<VexMessage> queue;
    ReceiveVexMessage(1, &copy, queue);
    RC_ASSERT(queue.Count() == 1);
    RC_ASSERT(queue.Peek().MessageType() > -10);
    RC_ASSERT(queue.Peek().MessageType() < 100);
    RC_ASSERT(queue.Peek().Text().find('\0') == std::string::npos);
  }));
}

}  // namespace
}  // namespace vex
