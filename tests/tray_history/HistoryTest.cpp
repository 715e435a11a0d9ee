#include <gtest/gtest.h>

#include <string>

#include "host/virtual/VirtualFiles.h"
#include "tray/history/HistoryWriter.h"
#include "tray/log/StatusLines.h"

namespace vex::test {
namespace {

const DateTime Eve = DateTime::FromParts(2026, 12, 24, 18, 0, 0);

class History : public testing::Test {
 protected:
  static constexpr const char* Path = "Z:\\state\\vexmonitor\\history";

  void Line(const std::string& szText, int64_t second) {
    const DateTime time = Eve.PlusSeconds(second);
    m_Writer->Line({time, LevelOfLine(szText), szText, 1, time});
  }
  void Restart() {
    ASSERT_TRUE(m_Writer->Flush());
    m_Writer = std::make_unique<HistoryWriter>(m_Files, Path, RotationLimits{});
  }
  [[nodiscard]] std::vector<PlayedShow> Shows() {
    EXPECT_TRUE(m_Writer->Flush());
    HistoryShelf shelf;
    ReadHistory(m_Files, Path, shelf);
    return shelf.Shows();
  }

  VirtualFiles m_Files;
  std::unique_ptr<HistoryWriter> m_Writer = std::make_unique<HistoryWriter>(m_Files, Path, RotationLimits{});
};

TEST_F(History, TellsAnEvening) {
  Line("Starting show: eve.shw", 0);
  Line("Starting Startup: hello.vexseq", 1);
  Line("Starting Musical: carol.vexseq", 5);
  Line("ERROR WITH SEQUENCE (File not found) Musical: bells.vexseq", 190);
  Line("Starting Musical: noel.vexseq", 200);
  Line("Finished show: eve.shw", 3600);
  const auto shows = Shows();
  ASSERT_EQ(shows.size(), 1u);
  EXPECT_EQ(PlayedShowToJson(shows[0]),
            "{\"show\":\"eve.shw\",\"from\":\"2026-12-24 18:00:00\",\"to\":\"2026-12-24 "
            "19:00:00\",\"broken\":false,"
            "\"songs\":[{\"time\":\"2026-12-24 18:00:05\",\"file\":\"carol.vexseq\"},"
            "{\"time\":\"2026-12-24 18:03:20\",\"file\":\"noel.vexseq\"}],"
            "\"errors\":[{\"time\":\"2026-12-24 18:03:10\",\"text\":\"ERROR WITH SEQUENCE (File not found) "
            "Musical: "
            "bells.vexseq\",\"count\":1}]}");
}

TEST_F(History, ShowThatPlaysForAYearIsNotKeptWholeInMemory) {
  Line("Starting show: eve.shw", 0);
  for (int song = 0; song < 20'000; ++song) {
    Line("Starting Musical: carol.vexseq", song * 180);
    Line("Cannot read show file: " + std::to_string(song), song * 180 + 1);
    if (song % 1000 == 0) (void)m_Writer->Flush();
  }
  const PlayedShow& show = m_Writer->Shelf().Shows().back();
  EXPECT_LE(show.Songs.size(), 2000u);
  EXPECT_GE(show.Songs.size(), 1000u);
  EXPECT_LE(show.Errors.size(), 2000u);
  EXPECT_EQ(show.Songs.back().Time, Eve.PlusSeconds(19'999 * 180));
}

TEST_F(History, ShowThatPlaysHasNoEnd) {
  Line("Starting show: eve.shw", 0);
  const auto shows = Shows();
  ASSERT_EQ(shows.size(), 1u);
  EXPECT_FALSE(shows[0].To);
  EXPECT_NE(PlayedShowToJson(shows[0]).find("\"to\":null"), std::string::npos);
}

TEST_F(History, SameErrorAgainIsCounted) {
  Line("Starting show: eve.shw", 0);
  for (int64_t second = 1; second <= 5; ++second) Line("m_ShowTimer_Timer Error: Overflow", second);
  const auto shows = Shows();
  ASSERT_EQ(shows.at(0).Errors.size(), 1u);
  EXPECT_EQ(shows[0].Errors[0].Count, 5);
}

TEST_F(History, ReportBeginsAShowWhoseBeginningWasNotHeard) {
  m_Writer->Report("eve.shw", Eve);
  m_Writer->Report("eve.shw", Eve.PlusSeconds(30));
  Line("Finished show: eve.shw", 60);
  const auto shows = Shows();
  ASSERT_EQ(shows.size(), 1u);
  EXPECT_EQ(shows[0].From, Eve);
  EXPECT_EQ(shows[0].To, Eve.PlusSeconds(60));
  EXPECT_FALSE(shows[0].Broken);
}

TEST_F(History, ReportOfAShowThatEndsBreaksNothing) {
  Line("Starting show: eve.shw", 0);
  Line("Finished show: eve.shw", 10);
  m_Writer->Report("", Eve.PlusSeconds(11));
  EXPECT_EQ(Shows().size(), 1u);
  EXPECT_FALSE(Shows()[0].Broken);
}

TEST_F(History, GoesOnAfterItsWriterHasBeenAway) {
  Line("Starting show: eve.shw", 0);
  Restart();
  m_Writer->Report("eve.shw", Eve.PlusSeconds(100));
  Line("Starting Musical: carol.vexseq", 101);
  Line("Finished show: eve.shw", 200);
  const auto shows = Shows();
  ASSERT_EQ(shows.size(), 1u);
  EXPECT_EQ(shows[0].From, Eve);
  EXPECT_EQ(shows[0].Songs.size(), 1u);
}

TEST_F(History, PlayerThatGoesBreaksItsShow) {
  Line("Starting show: eve.shw", 0);
  m_Writer->PlayerGone(Eve.PlusSeconds(50));
  const auto shows = Shows();
  EXPECT_TRUE(shows.at(0).Broken);
  EXPECT_EQ(shows[0].To, Eve.PlusSeconds(50));
  m_Writer->PlayerGone(Eve.PlusSeconds(60));
  EXPECT_EQ(Shows().at(0).To, Eve.PlusSeconds(50));
}

TEST_F(History, SameShowAgainIsAnother) {
  Line("Starting show: eve.shw", 0);
  Line("Starting show: eve.shw", 50);
  const auto shows = Shows();
  ASSERT_EQ(shows.size(), 2u);
  EXPECT_TRUE(shows[0].Broken);
  EXPECT_FALSE(shows[1].To);
}

TEST_F(History, NothingOutsideAShowIsKept) {
  Line("Starting Musical: carol.vexseq", 0);
  Line("Cannot read show file: eve.shw", 1);
  Line("Finished show: eve.shw", 2);
  m_Writer->Report("", Eve);
  EXPECT_TRUE(Shows().empty());
}

TEST_F(History, DamagedLinesArePassedOver) {
  m_Files.Put(Path, "x\n{}\n{\"time\":\"2026-12-24 18:00:00\",\"what\":\"dance\",\"text\":\"\"}\n" +
                        HistoryEventToJson({HistoryEvent::What::Begin, Eve, "eve.shw"}) + "\n");
  EXPECT_EQ(Shows().size(), 1u);
}

TEST_F(History, FullDiskKeepsWhatHappenedWaiting) {
  m_Files.FailWrites(Path, "Disk full");
  Line("Starting show: eve.shw", 0);
  EXPECT_FALSE(m_Writer->Save());
  Line("Finished show: eve.shw", 9);
  m_Files.HealWrites(Path);
  EXPECT_EQ(Shows().at(0).To, Eve.PlusSeconds(9));
}

}  // namespace
}  // namespace vex::test
