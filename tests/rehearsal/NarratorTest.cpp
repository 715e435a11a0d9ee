#include "tools/rehearsal/Narrator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vex {
namespace {

using testing::ElementsAre;

class NarratorTest : public testing::Test {
 protected:
  void Log(int32_t lLevel, const std::string& szText, const std::string& szPlay = "",
           const std::string& szFile = "") {
    Teller.Hear({"log", "", lLevel, szText, szPlay, szFile});
  }

  DateTime Now = DateTime::FromParts(2026, 12, 24, 18, 0, 0);
  std::vector<std::string> Lines;
  Narrator Teller{[this] { return Now; }, [this](const std::string& szLine) { Lines.push_back(szLine); }};
};

TEST_F(NarratorTest, TellsTheDayOnceAndWhatHappens) {
  Log(1, "Starting show: eve.shw");
  Log(1, "Starting", "Startup", "s.vexseq");
  Log(1, "Starting", "Background", "bg.vexseq");
  Log(1, "Loading sequence: m1.vexseq", "Musical", "m1.vexseq");
  Log(1, "Starting", "Musical", "m1.vexseq");
  Log(1, "Trigger detected: Front door");
  Log(1, "Registering interactive triggers");
  Log(0, "Queueing", "Musical", "m1.vexseq");
  Now = Now.PlusDays(1);
  Log(1, "Finished show: eve.shw");
  EXPECT_THAT(Lines, ElementsAre("Thursday 2026-12-24", "  18:00:00  show eve.shw begins",
                                 "  18:00:00    startup s.vexseq", "  18:00:00    song m1.vexseq",
                                 "  18:00:00    trigger \"Front door\"", "Friday 2026-12-25",
                                 "  18:00:00  show eve.shw is over"));
}

TEST_F(NarratorTest, AFailureThatRepeatsItselfIsToldOnce) {
  Log(3, "lost", "Musical", "m1.vexseq");
  for (int i = 0; i < 5; ++i) Log(3, "lost", "Musical", "m1.vexseq");
  Log(3, "other");
  Teller.Finish();
  EXPECT_THAT(Lines, ElementsAre("Thursday 2026-12-24", "  18:00:00  ERROR  lost (Musical: m1.vexseq)",
                                 "            the same 5 more times", "  18:00:00  ERROR  other"));
  EXPECT_EQ(Teller.Errors(), 7);
}

TEST_F(NarratorTest, FailuresThatTakeTurnsAreToldOnceEach) {
  for (int i = 0; i < 4; ++i) {
    Log(3, "lost", "Musical", "m1.vexseq");
    Log(3, "lost", "Musical", "m2.vexseq");
  }
  Log(1, "Finished show: eve.shw");
  Log(3, "lost", "Musical", "m2.vexseq");
  EXPECT_THAT(
      Lines, ElementsAre("Thursday 2026-12-24", "  18:00:00  ERROR  lost (Musical: m1.vexseq)",
                         "  18:00:00  ERROR  lost (Musical: m2.vexseq)", "            the same 6 more times",
                         "  18:00:00  show eve.shw is over", "  18:00:00  ERROR  lost (Musical: m2.vexseq)"));
}

TEST_F(NarratorTest, FaultsOnPurposeAreTold) {
  Teller.Hear({"fault", "load", 0, "", "", "a.vexseq"});
  Teller.Hear({"fault", "flush", 0, "", "", ""});
  EXPECT_THAT(Lines, ElementsAre("Thursday 2026-12-24", "  18:00:00    FAULT on purpose: load of a.vexseq",
                                 "  18:00:00    FAULT on purpose: flush"));
  EXPECT_NE(Teller.Summary(Now, Now).find("2 faults on purpose"), std::string::npos);
}

TEST_F(NarratorTest, SumsUp) {
  const DateTime from = Now;
  EXPECT_EQ(Teller.Summary(from, from.PlusSeconds(3600)),
            "0 shows played in 0:00 h of 1:00 h, 0 songs, 1 gap without a show, 0 triggers, 0 errors");
  Log(1, "Starting show: eve.shw");
  Log(1, "Starting", "Musical", "m1.vexseq");
  Log(1, "Startup trigger detected");
  Now = Now.PlusSeconds(1800);
  Log(1, "Finished show: eve.shw");
  Log(1, "Starting show: x.shw");
  Now = Now.PlusSeconds(600);
  Log(3, "lost");
  Teller.Hear({.Kind = "box", .Call = "", .Level = 0, .Text = "no", .Play = "", .File = ""});
  EXPECT_EQ(
      Teller.Summary(from, from.PlusSeconds(3600)),
      "2 shows played in 0:40 h of 1:00 h, 1 song, 2 gaps without a show, 1 trigger, 1 error, 1 message box");
}

}  // namespace
}  // namespace vex
