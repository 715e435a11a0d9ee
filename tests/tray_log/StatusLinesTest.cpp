#include "tray/log/StatusLines.h"

#include <gtest/gtest.h>

namespace vex::test {
namespace {

const DateTime Now = DateTime::FromParts(2026, 12, 24, 18, 5, 33);

TEST(StatusLines, LineOfThisMinuteCameNow) {
  const auto lines = LinesOfStatus("18:05: Starting Musical: carol.vexseq", Now);
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0].Time, Now);
  EXPECT_EQ(lines[0].Text, "Starting Musical: carol.vexseq");
  EXPECT_EQ(lines[0].Level, 1);
}

TEST(StatusLines, BlockIsTakenApart) {
  const auto lines = LinesOfStatus("17:59: a\r\n18:01: b\r\n18:05: c", Now);
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0].Time, DateTime::FromParts(2026, 12, 24, 17, 59, 0));
  EXPECT_EQ(lines[1].Time, DateTime::FromParts(2026, 12, 24, 18, 1, 0));
  EXPECT_EQ(lines[2].Time, Now);
  EXPECT_EQ(lines[1].Text, "b");
}

TEST(StatusLines, TimeStillToComeIsYesterdays) {
  const auto lines = LinesOfStatus("23:59: a", Now);
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0].Time, DateTime::FromParts(2026, 12, 23, 23, 59, 0));
}

TEST(StatusLines, TextWithoutATimeIsKeptWhole) {
  for (const char* szText : {"hello", "24:00: x", "1a:00: x", "18:60: x", "18:05 x", "18:05:", "12:"}) {
    const auto lines = LinesOfStatus(szText, Now);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].Text, szText);
    EXPECT_EQ(lines[0].Time, Now);
  }
}

TEST(StatusLines, EmptyMessageHasNoLines) {
  EXPECT_TRUE(LinesOfStatus("", Now).empty());
  EXPECT_TRUE(LinesOfStatus("\r\n\r\n", Now).empty());
}

TEST(StatusLines, SingleByteTextBecomesUtf8) {
  EXPECT_EQ(LinesOfStatus("18:05: F\xFCr Elise", Now).at(0).Text, "F\xC3\xBCr Elise");
}

TEST(StatusLines, ErrorsAreKnownByTheirWords) {
  for (const char* szText :
       {"ERROR WITH SEQUENCE (File not found) Musical: carol.vexseq", "ERROR PLAYING SEQUENCE (lost):",
        "WINDOWS MEDIA PLAYER ERROR (codec not found): ", "Cannot read show file: eve.shw",
        "Show on demand error: Type mismatch", "tmrVexMsgQueue_Timer Error: x",
        "m_ShowTimer_Timer Error: Overflow", "Lighting network unreachable: Network is unreachable"})
    EXPECT_EQ(LevelOfLine(szText), 3) << szText;
}

TEST(StatusLines, OtherLinesAreCourse) {
  for (const char* szText : {"Schedule loaded", "Show Player starting", "Trigger detected: Front Error: door",
                             "Starting Musical: Error: x.vexseq", " Error: x", ""})
    EXPECT_EQ(LevelOfLine(szText), 1) << szText;
}

}  // namespace
}  // namespace vex::test
