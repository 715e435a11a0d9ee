#include "host/linux/CopyDataWire.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <string>

namespace vex::test {
namespace {

std::vector<uint8_t> Encoded(const std::string& szPayload) {
  return EncodeCopyData(0x01020304, {3, static_cast<uint32_t>(szPayload.size()), szPayload.data()});
}

bool Accepted(const std::vector<uint8_t>& datagram) {
  ReceivedCopyData received;
  return DecodeCopyData(datagram, received);
}

TEST(CopyDataWire, HeaderIsFourLittleEndianWords) {
  EXPECT_EQ(Encoded("09"), (std::vector<uint8_t>{74, 0, 0, 0, 4, 3, 2, 1, 3, 0, 0, 0, 2, 0, 0, 0, '0', '9'}));
}

TEST(CopyDataWire, PayloadPointsIntoTheDatagram) {
  const std::vector<uint8_t> datagram = Encoded(std::string("05\0", 3));
  ReceivedCopyData received;
  ASSERT_TRUE(DecodeCopyData(datagram, received));
  EXPECT_EQ(received.Sender, 0x01020304U);
  EXPECT_EQ(received.Copy.Data, 3U);
  EXPECT_EQ(received.Copy.Size, 3U);
  EXPECT_EQ(static_cast<const void*>(received.Copy.Bytes), datagram.data() + CopyDataHeaderSize);
}

TEST(CopyDataWire, HeaderAloneIsAnEmptyMessage) {
  const std::vector<uint8_t> datagram = EncodeCopyData(7, {3, 0, nullptr});
  ReceivedCopyData received;
  ASSERT_TRUE(DecodeCopyData(datagram, received));
  EXPECT_EQ(received.Copy.Size, 0U);
  EXPECT_EQ(received.Copy.Bytes, nullptr);
}

TEST(CopyDataWire, ShorterThanTheHeaderIsDropped) {
  std::vector<uint8_t> datagram = EncodeCopyData(7, {3, 0, nullptr});
  while (!datagram.empty()) {
    datagram.pop_back();
    EXPECT_FALSE(Accepted(datagram)) << datagram.size();
  }
}

TEST(CopyDataWire, AnotherMessageNumberIsDropped) {
  std::vector<uint8_t> datagram = Encoded("09");
  datagram[0] = 75;
  EXPECT_FALSE(Accepted(datagram));
  datagram[0] = 74;
  datagram[3] = 1;
  EXPECT_FALSE(Accepted(datagram));
}

TEST(CopyDataWire, AnotherLengthIsDropped) {
  std::vector<uint8_t> datagram = Encoded("09text");
  datagram.push_back(0);
  EXPECT_FALSE(Accepted(datagram));
  datagram.resize(datagram.size() - 2);
  EXPECT_FALSE(Accepted(datagram));
}

TEST(CopyDataWire, DataWordAndEndingZeroAreNotLookedAt) {
  std::vector<uint8_t> datagram = Encoded("09");
  datagram[8] = 99;
  EXPECT_TRUE(Accepted(datagram));
}

TEST(CopyDataWire, EverythingEncodedComesBack) {
  EXPECT_TRUE(rc::check([](int32_t sender, uint32_t data, const std::string& szPayload) {
    const auto datagram =
        EncodeCopyData(sender, {data, static_cast<uint32_t>(szPayload.size()), szPayload.data()});
    ReceivedCopyData received;
    RC_ASSERT(DecodeCopyData(datagram, received));
    RC_ASSERT(static_cast<int32_t>(received.Sender) == sender);
    RC_ASSERT(received.Copy.Data == data);
    RC_ASSERT(szPayload.empty() || std::string(received.Copy.Bytes, received.Copy.Size) == szPayload);
    RC_ASSERT(received.Copy.Size == szPayload.size());
  }));
}

}  // namespace
}  // namespace vex::test
