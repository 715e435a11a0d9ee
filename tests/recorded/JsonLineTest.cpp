#include "components/recorded/JsonLine.h"

#include <gtest/gtest.h>

#include <limits>

#include "host/virtual/VirtualHost.h"

namespace vex {
namespace {

class JsonLineTest : public testing::Test {
 protected:
  /// What stands behind the time and the kind.
  [[nodiscard]] std::string Written(const JsonValue& value) const {
    const std::string szLine = JsonLine(m_Host.Clock(), "log").Add("v", value).Text();
    const std::string szKey = "\"v\":";
    const size_t at = szLine.find(szKey) + szKey.size();
    return szLine.substr(at, szLine.size() - at - 1);
  }

  mutable VirtualHost m_Host{DateTime::FromParts(2026, 12, 24, 18, 0, 5)};
};

TEST_F(JsonLineTest, BeginsWithTheWallClockAndTheKind) {
  EXPECT_EQ(JsonLine(m_Host.Clock(), "io").Text(), R"({"t":"2026-12-24 18:00:05.000","kind":"io"})");
  m_Host.EventLoop().Advance(1234);
  const JsonLine line(m_Host.Clock(), "seq");
  EXPECT_EQ(line.Text(), R"({"t":"2026-12-24 18:00:06.234","kind":"seq"})");
  EXPECT_EQ(line.Kind(), "seq");
}

TEST_F(JsonLineTest, EveryMillisecondOfASecondIsTold) {
  for (int ms = 0; ms < 1000; ++ms) {
    const std::string szDigits = std::to_string(1000 + ms).substr(1);
    ASSERT_EQ(WallClockText(m_Host.Clock()), "2026-12-24 18:00:05." + szDigits);
    m_Host.EventLoop().Advance(1);
  }
}

TEST_F(JsonLineTest, TextIsEscapedAndBecomesUtf8) {
  EXPECT_EQ(Written(std::string("a\"b\\c")), R"("a\"b\\c")");
  EXPECT_EQ(Written(std::string("one\r\ntwo\tthree")), R"("one\r\ntwo\tthree")");
  EXPECT_EQ(Written(std::string("\x01\x1F")), R"("\u0001\u001f")");
  EXPECT_EQ(Written(std::string("F\xFCr \x80")), "\"F\xC3\xBCr \xE2\x82\xAC\"");
  EXPECT_EQ(Written(std::string()), "\"\"");
}

TEST_F(JsonLineTest, NumbersAreWrittenTheShortestWay) {
  EXPECT_EQ(Written(int32_t{-7}), "-7");
  EXPECT_EQ(Written(std::numeric_limits<int32_t>::min()), "-2147483648");
  EXPECT_EQ(Written(2.5), "2.5");
  EXPECT_EQ(Written(100.0), "100");
  EXPECT_EQ(Written(0.1), "0.1");
}

TEST_F(JsonLineTest, WhatIsNoNumberIsNull) {
  EXPECT_EQ(Written(std::numeric_limits<double>::quiet_NaN()), "null");
  EXPECT_EQ(Written(std::numeric_limits<double>::infinity()), "null");
  EXPECT_EQ(Written(nullptr), "null");
}

TEST_F(JsonLineTest, YesAndNoAreWords) {
  EXPECT_EQ(Written(true), "true");
  EXPECT_EQ(Written(false), "false");
}

TEST_F(JsonLineTest, SeveralValuesAreAList) {
  JsonLine line(m_Host.Clock(), "io");
  line.Add("args", std::vector<JsonValue>{int32_t{0}, std::string("x"), nullptr})
      .Add("none", std::vector<JsonValue>());
  EXPECT_EQ(line.Text(), R"({"t":"2026-12-24 18:00:05.000","kind":"io","args":[0,"x",null],"none":[]})");
}

}  // namespace
}  // namespace vex
