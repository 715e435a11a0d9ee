#include "host/linux/UnsentMessages.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <string>

#include "host/linux/CopyDataWire.h"

namespace vex::test {
namespace {

bool Add(UnsentMessages& messages, const std::string& szPayload, WindowHandle sender = 1) {
  const std::string szWithZero = szPayload + '\0';
  return messages.Add(sender, {3, static_cast<uint32_t>(szWithZero.size()), szWithZero.data()});
}

std::vector<std::string> Drain(UnsentMessages& messages) {
  std::vector<std::string> payloads;
  while (!messages.Empty()) {
    const std::vector<uint8_t> datagram = messages.FirstDatagram();
    ReceivedCopyData received;
    EXPECT_TRUE(DecodeCopyData(datagram, received));
    payloads.emplace_back(received.Copy.Bytes, received.Copy.Size - 1);
    EXPECT_EQ(received.Copy.Bytes[received.Copy.Size - 1], '\0');
    messages.RemoveFirst();
  }
  EXPECT_EQ(messages.Characters(), 0U);
  return payloads;
}

/// A status message with a text of that many characters, its type among them.
std::string Status(char letter, size_t characters) {
  return "07" + std::string(characters - 2, letter);
}

TEST(UnsentMessages, KeepsOrderSenderAndData) {
  UnsentMessages messages;
  EXPECT_TRUE(messages.Empty());
  Add(messages, "07one", 5);
  Add(messages, "04(next)", 6);
  const std::vector<uint8_t> first = messages.FirstDatagram();
  EXPECT_EQ(first[4], 5);
  EXPECT_EQ(first[8], 3);
  EXPECT_EQ(Drain(messages), (std::vector<std::string>{"07one", "04(next)"}));
}

TEST(UnsentMessages, MessageWithoutEndingZeroIsKeptAsItIs) {
  UnsentMessages messages;
  messages.Add(1, {3, 4, "07ab"});
  EXPECT_EQ(messages.Characters(), 4U);
  EXPECT_EQ(messages.FirstDatagram().size(), CopyDataHeaderSize + 4);
}

TEST(UnsentMessages, EmptyMessageIsKept) {
  UnsentMessages messages;
  EXPECT_TRUE(messages.Add(1, {3, 0, nullptr}));
  EXPECT_EQ(messages.FirstDatagram().size(), CopyDataHeaderSize);
}

TEST(UnsentMessages, ExactlyTheMostIsKept) {
  UnsentMessages messages;
  Add(messages, Status('a', 30000));
  Add(messages, Status('b', 30000));
  EXPECT_EQ(messages.Characters(), UnsentMessages::MostCharacters);
  EXPECT_EQ(Drain(messages).size(), 2U);
}

TEST(UnsentMessages, OneCharacterMoreDropsTheOldestLine) {
  UnsentMessages messages;
  Add(messages, Status('a', 30000));
  Add(messages, Status('b', 30001));
  EXPECT_EQ(Drain(messages), std::vector<std::string>{Status('b', 30001)});
}

TEST(UnsentMessages, BlockLosesItsOldestLinesAndKeepsItsType) {
  UnsentMessages messages;
  Add(messages, "07first\r\nsecond\r\nthird");
  Add(messages, Status('x', UnsentMessages::MostCharacters - 15));
  EXPECT_EQ(Drain(messages)[0], "07second\r\nthird");
}

TEST(UnsentMessages, BlockLosesItsLastLineWithTheMessage) {
  UnsentMessages messages;
  Add(messages, "07first\r\nsecond");
  Add(messages, Status('x', UnsentMessages::MostCharacters));
  EXPECT_EQ(Drain(messages).size(), 1U);
}

TEST(UnsentMessages, BlockThatIsTooLongAloneLosesItsOldestLines) {
  UnsentMessages messages;
  const std::string szLine(29997, 'y');
  EXPECT_TRUE(Add(messages, "07old\r\n" + szLine + "\r\n" + szLine + "\r\n"));
  EXPECT_EQ(Drain(messages), std::vector<std::string>{"07" + szLine + "\r\n" + szLine + "\r\n"});
}

TEST(UnsentMessages, ReportsStayWhileThereAreLinesToDrop) {
  UnsentMessages messages;
  Add(messages, "04(next)");
  Add(messages, Status('a', 40000));
  Add(messages, "03(current)");
  Add(messages, Status('b', 40000));
  EXPECT_EQ(Drain(messages), (std::vector<std::string>{"04(next)", "03(current)", Status('b', 40000)}));
}

TEST(UnsentMessages, WithoutLinesTheOldestMessageGoes) {
  UnsentMessages messages;
  const std::string szLong = "09" + std::string(39998, 'x');
  Add(messages, "03(first)");
  Add(messages, szLong);
  Add(messages, szLong);
  EXPECT_EQ(Drain(messages), std::vector<std::string>{szLong});
}

TEST(UnsentMessages, RequestLongerThanTheMostIsRefused) {
  UnsentMessages messages;
  EXPECT_FALSE(Add(messages, "09" + std::string(UnsentMessages::MostCharacters, 'x')));
  EXPECT_TRUE(messages.Empty());
}

TEST(UnsentMessages, WhatRemainsIsTheNewestInOrderAndNeverMoreThanTheMost) {
  EXPECT_TRUE(rc::check([] {
    UnsentMessages messages;
    const auto lengths = *rc::gen::container<std::vector<int>>(rc::gen::inRange(1, 9000));
    std::vector<std::string> sent;
    for (const int length : lengths) {
      sent.push_back("07" + std::to_string(sent.size()) + std::string(static_cast<size_t>(length), '.'));
      RC_ASSERT(Add(messages, sent.back()));
      RC_ASSERT(messages.Characters() <= UnsentMessages::MostCharacters);
    }
    const std::vector<std::string> kept = Drain(messages);
    RC_ASSERT(std::equal(kept.rbegin(), kept.rend(), sent.rbegin()));
    size_t total = 0;
    for (const std::string& szPayload : kept) total += szPayload.size();
    const bool boolAll = kept.size() == sent.size();
    // And no more is dropped than must be.
    if (!boolAll)
      RC_ASSERT(total + sent[sent.size() - kept.size() - 1].size() > UnsentMessages::MostCharacters);
  }));
}

}  // namespace
}  // namespace vex::test
