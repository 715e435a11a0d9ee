#include "components/open/wire/OscTrigger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

namespace vex {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Bytes = std::vector<uint8_t>;

/// Built by hand, so that reading is not only held against our own writing.
class Packet {
 public:
  Packet& Text(const std::string& szText) {
    m_Bytes.insert(m_Bytes.end(), szText.begin(), szText.end());
    do m_Bytes.push_back(0);
    while (m_Bytes.size() % 4 != 0);
    return *this;
  }
  Packet& Number(uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8) m_Bytes.push_back(static_cast<uint8_t>(value >> shift));
    return *this;
  }
  Packet& Element(const Bytes& bytes) {
    Number(static_cast<uint32_t>(bytes.size()));
    m_Bytes.insert(m_Bytes.end(), bytes.begin(), bytes.end());
    return *this;
  }
  operator const Bytes&() const { return m_Bytes; }  // NOLINT(google-explicit-constructor)

 private:
  Bytes m_Bytes;
};

Bytes Press(uint32_t input = 3) {
  return Packet().Text("/trigger").Text(",iiis").Number(0).Number(1).Number(input).Text("Front door");
}

Bytes Bundle(const std::vector<Bytes>& elements) {
  Packet packet;
  packet.Text("#bundle").Number(0).Number(1);
  for (const Bytes& element : elements) packet.Element(element);
  return packet;
}

std::vector<OscTrigger> Read(const Bytes& packet, std::string* szWrong = nullptr) {
  std::string szSink;
  return ReadOscTriggers(packet, szWrong ? *szWrong : szSink);
}

std::string WrongIn(const Bytes& packet) {
  std::string szWrong;
  EXPECT_THAT(Read(packet, &szWrong), IsEmpty());
  return szWrong;
}

const OscTrigger FrontDoor{0, 1, 3, "Front door"};

TEST(OscTrigger, IsReadFromItsMessage) {
  std::string szWrong;
  EXPECT_THAT(Read(Press(), &szWrong), ElementsAre(FrontDoor));
  EXPECT_EQ(szWrong, "");
}

TEST(OscTrigger, IsWrittenAsTheStandardHasIt) {
  EXPECT_EQ(WriteOscTrigger(FrontDoor), Press());
}

TEST(OscTrigger, NumbersKeepTheirSigns) {
  EXPECT_THAT(Read(WriteOscTrigger({-1, 2147483647, -2147483647 - 1, ""})),
              ElementsAre(OscTrigger{-1, 2147483647, -2147483647 - 1, ""}));
}

TEST(OscTrigger, AnotherPathOrOtherTypesAreNone) {
  EXPECT_EQ(WrongIn(Packet().Text("/light").Text(",iiis").Number(0).Number(1).Number(3).Text("x")),
            "\"/light\" with types \"iiis\"");
  EXPECT_EQ(WrongIn(Packet().Text("/trigger").Text(",iiss").Number(0).Number(1).Text("3").Text("x")),
            "\"/trigger\" with types \"iiss\"");
  EXPECT_EQ(WrongIn(Packet().Text("/trigger").Text(",iii").Number(0).Number(1).Number(3)),
            "\"/trigger\" with types \"iii\"");
}

TEST(OscTrigger, BytesThatAreNoMessageAreNone) {
  EXPECT_EQ(WrongIn({}), "a message that cannot be read");
  EXPECT_EQ(WrongIn({1}), "a message that cannot be read");
  EXPECT_EQ(WrongIn(Bytes(700, 'x')), "a message that cannot be read");
}

TEST(OscTrigger, AMessageCutOffAnywhereIsNone) {
  const Bytes whole = Press();
  for (size_t size = 0; size < whole.size(); ++size)
    EXPECT_THAT(Read(Bytes(whole.begin(), whole.begin() + static_cast<long>(size))), IsEmpty()) << size;
}

TEST(OscTrigger, ABundleHoldsSeveralAndItsOtherElementsAreSkipped) {
  std::string szWrong;
  const Bytes other = Packet().Text("/light").Text(",");
  EXPECT_THAT(Read(Bundle({Press(1), other, Press(2), Bundle({Press(3)})}), &szWrong),
              ElementsAre(OscTrigger{0, 1, 1, "Front door"}, OscTrigger{0, 1, 2, "Front door"}, FrontDoor));
  EXPECT_EQ(szWrong, "\"/light\" with types \"\"");
}

TEST(OscTrigger, ABundleCutOffGivesWhatCameBefore) {
  Bytes bundle = Bundle({Press(1), Press(2)});
  bundle.pop_back();
  std::string szWrong;
  EXPECT_THAT(Read(bundle, &szWrong), ElementsAre(OscTrigger{0, 1, 1, "Front door"}));
  EXPECT_EQ(szWrong, "a bundle that is cut off");
  EXPECT_EQ(WrongIn(Packet().Text("#bundle").Number(0)), "a bundle without a time tag");
}

TEST(OscTrigger, BundlesDoNotNestWithoutEnd) {
  Bytes bytes = Press();
  for (int depth = 0; depth < 8; ++depth) bytes = Bundle({bytes});
  EXPECT_THAT(Read(bytes), ElementsAre(FrontDoor));
  EXPECT_EQ(WrongIn(Bundle({bytes})), "bundles within bundles go too deep");
}

}  // namespace
}  // namespace vex
