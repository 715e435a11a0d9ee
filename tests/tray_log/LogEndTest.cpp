#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/virtual/VirtualFiles.h"
#include "tray/log/LogReader.h"
#include "tray/log/LogWriter.h"

namespace vex::test {
namespace {

constexpr const char* Path = "Z:\\state\\vexmonitor\\log";
const DateTime Eve = DateTime::FromParts(2026, 12, 24, 18, 0, 0);

/// A log as a writer leaves it, and the end of it that is read.
class LogEnd : public testing::Test {
 protected:
  void Write(int first, int last) {
    LogWriter writer(m_Files, Path, m_Limits);
    for (int i = first; i <= last; ++i) writer.Add({Eve, 1, "line " + std::to_string(i), 1, Eve});
    ASSERT_TRUE(writer.Save());
  }
  [[nodiscard]] std::vector<LogLine> Read(uint64_t bytes) {
    std::vector<LogLine> lines;
    LogReader reader(m_Files, Path);
    m_Any = reader.ReadEnd(bytes, [&](const LogLine& line) { lines.push_back(line); });
    EXPECT_EQ(reader.Damaged(), 0);
    return lines;
  }

  VirtualFiles m_Files;
  RotationLimits m_Limits;
  bool m_Any = false;
};

TEST_F(LogEnd, IsTheWholeOfAShortLog) {
  Write(1, 3);
  const auto lines = Read(65536);
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines.front().Text, "line 1");
  EXPECT_EQ(lines.back().Text, "line 3");
}

TEST_F(LogEnd, IsNoLineThatIsCut) {
  Write(1, 1000);
  const auto lines = Read(1000);
  ASSERT_GT(lines.size(), 10u);
  EXPECT_LT(lines.size(), 20u);
  EXPECT_EQ(lines.back().Text, "line 1000");
}

TEST_F(LogEnd, GoesIntoTheFileBefore) {
  m_Limits = {5000, 5};
  Write(1, 1000);
  std::string szNewest;
  ASSERT_TRUE(m_Files.Read(Path, szNewest));
  const auto lines = Read(szNewest.size() + 500);
  EXPECT_GT(lines.size(), 6u);
  EXPECT_EQ(lines.back().Text, "line 1000");
  for (size_t i = 1; i < lines.size(); ++i)
    EXPECT_EQ(std::stoi(lines[i].Text.substr(5)), std::stoi(lines[i - 1].Text.substr(5)) + 1);
}

TEST_F(LogEnd, HasTheCountsOfItsLines) {
  LogWriter writer(m_Files, Path, {});
  for (int i = 0; i < 7; ++i) writer.Add({Eve.PlusSeconds(i), 3, "again", 1, Eve.PlusSeconds(i)});
  ASSERT_TRUE(writer.Save());
  const auto lines = Read(65536);
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0].Count, 7);
}

TEST_F(LogEnd, OfNoLogAtAllIsNone) {
  EXPECT_TRUE(Read(1000).empty());
  EXPECT_FALSE(m_Any);
}

TEST_F(LogEnd, WithoutALineEndIsNone) {
  m_Files.Put(Path, std::string(5000, 'x'));
  EXPECT_TRUE(Read(1000).empty());
}

TEST(Printable, LeavesTextAndShowsWhatWouldMoveTheTerminal) {
  EXPECT_EQ(Printable("F\xC3\xBCr Elise \xE2\x82\xAC <b>"), "F\xC3\xBCr Elise \xE2\x82\xAC <b>");
  EXPECT_EQ(Printable("a\x1b[2J\x07\x7f\t"), "a\\x1b[2J\\x07\\x7f\\x09");
  EXPECT_EQ(Printable("one\n18:00: two\r"), "one\\x0a18:00: two\\x0d");
  EXPECT_EQ(Printable("\xC2\x9D"
                      "0;owned\xC2\x90"),
            "\\x9d0;owned\\x90")
      << "control characters beyond ASCII";
  EXPECT_EQ(Printable("\xC2\xA0\xC2"), "\xC2\xA0\xC2");
  EXPECT_EQ(Printable(""), "");
}

}  // namespace
}  // namespace vex::test
