#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "player/RandomNumbers.h"
#include "tests/evenings/EveningRig.h"

namespace vex::test {
namespace {

using testing::ElementsAre;

// Thursday 18:00:00 to 18:01:00; 24 December 2026 is a Thursday.
const char* const Thursday = "((410460,2,(,0,eve.shw),410400))";

const char* const Eve =
    "((0,1,2,0,,(s.vexseq),T,F,F),(0,1,2,0,,(end.vexseq),T,F,F),(1,0,1,0,,(a1.vexseq,a2.vexseq),T,F,F),"
    "(0,1,2,2,c.vexseq,(m1.vexseq,m2.vexseq),T,F,F),,(2,0,1,0,,(bg.vexseq),T,F,F),,0,,F)";

void Furnish(EveningRig& rig) {
  rig.WeekSchedule(Thursday);
  rig.ShowFile("eve.shw", Eve);
  rig.Sequence("s.vexseq", 3);
  rig.Sequence("end.vexseq", 4);
  rig.Sequence("a1.vexseq", 5);
  rig.Sequence("a2.vexseq", 7);
  rig.Sequence("c.vexseq", 1.5);
  rig.Sequence("m1.vexseq", 20, "one.ogg");
  rig.Sequence("m2.vexseq", 25, "two.ogg");
  rig.Sequence("bg.vexseq", 2);
}

// Worked out by hand. The form is loaded at 17:59:50.000, initialised at :54.000, and beats from :55.000 on
// each full second. At 18:00:00.000 the show is given, the show timer ticks at .001 and begins it; what the
// tick queues starts at .002. Songs: m1 20 s, clean-up 1.5 s, delay 2 s rounded to a full second.
TEST(Evening, AScheduledShowPlaysFromStartupToShutdown) {
  EveningRig rig;
  Furnish(rig);
  rig.Start();
  rig.RunFor(100000);
  std::vector<std::string> course;
  for (const auto& szLine : rig.Log()) {
    if (szLine.find("Animation") == std::string::npos && szLine.find("Loading") == std::string::npos) {
      course.push_back(szLine);
    }
  }
  EXPECT_THAT(
      course,
      ElementsAre("17:59:50.000 Show Player starting", "17:59:50.000 Schedule loaded",
                  "17:59:54.000 Show Player initialized", "18:00:00.001 Starting show: eve.shw",
                  "18:00:00.001 Starting Background: bg.vexseq", "18:00:00.002 Starting Startup: s.vexseq",
                  "18:00:03.002 Ending Startup: s.vexseq", "18:00:03.003 Starting Musical: m1.vexseq",
                  "18:00:23.003 Ending Musical: m1.vexseq", "18:00:23.004 Starting Cleanup: c.vexseq",
                  "18:00:24.504 Ending Cleanup: c.vexseq",
                  "18:00:24.504 Delaying between Musical sequences for 2 seconds",
                  "18:00:27.001 Starting Musical: m2.vexseq", "18:00:52.001 Ending Musical: m2.vexseq",
                  "18:00:52.002 Starting Cleanup: c.vexseq", "18:00:53.502 Ending Cleanup: c.vexseq",
                  "18:00:53.502 Delaying between Musical sequences for 2 seconds",
                  "18:00:56.001 Starting Musical: m1.vexseq",
                  "18:01:00.000 Current show is entering shutdown mode",
                  "18:01:16.001 Ending Musical: m1.vexseq", "18:01:16.002 Starting Shutdown: end.vexseq",
                  "18:01:20.002 Ending Shutdown: end.vexseq", "18:01:20.002 Stopping Background: bg.vexseq",
                  "18:01:20.003 Ending Background: bg.vexseq", "18:01:20.003 Finished show: eve.shw"));
}

/// Everything seen in an evening in which a lot happens.
std::vector<std::string> Eventful(bool boolEveryTick,
                                  const std::vector<std::pair<int32_t, int32_t>>& happenings) {
  EveningRig rig;
  rig.Host.EventLoop().EveryTick(boolEveryTick);
  Furnish(rig);
  rig.Start();
  Elapsed at{0};
  for (const auto& [lWhat, lAfterMs] : happenings) {
    at += std::chrono::milliseconds(lAfterMs);
    rig.Host.EventLoop().At(at, [&rig, lWhat = lWhat] {
      switch (lWhat) {
        case 0:
          rig.Message(MessageTrayWindow);
          break;
        case 1:
          rig.Message(MessageReloadSchedules);
          break;
        case 2:
          rig.Message(MessageShowOnDemand, "(eve.shw,(F,,F,),2,F)");
          break;
        case 3:
          rig.Message(MessageShowOnDemand);
          break;
        case 4:
          rig.Media->InjectErrors({"codec not found"});
          break;
        case 5:
          rig.Faults->Inject("m1.vexseq", "sync", "lost");
          break;
        case 6:
          rig.ShowFile("eve.shw", std::string(Eve).replace(3, 1, "0"));
          break;
        case 7:
          rig.WeekSchedule("((410445,2,(,0,eve.shw),410400))");
          rig.Message(MessageReloadSchedules);
          break;
        default:
          rig.Host.Clock().SetWallClock(DateTime::FromParts(2026, 12, 24, 18, 0, 20));
      }
    });
  }
  rig.RunFor(60000);
  rig.Message(MessageGracefulShutdown);
  rig.RunFor(60000);
  return rig.Lines;
}

TEST(Evening, TicksLeftOutChangeNothingThatIsSeen) {
  constexpr int32_t kinds = 9;
  constexpr int32_t most = 20000;
  for (uint64_t seed = 1; seed <= 12; ++seed) {
    RandomNumbers random(seed);
    std::vector<std::pair<int32_t, int32_t>> happenings;
    const int32_t lCount = random.Pick(10);
    for (int32_t i = 0; i < lCount; ++i) happenings.emplace_back(random.Pick(kinds) - 1, random.Pick(most));
    const auto leftOut = Eventful(false, happenings);
    const auto all = Eventful(true, happenings);
    for (size_t i = 0; i < std::min(leftOut.size(), all.size()); ++i) {
      ASSERT_EQ(leftOut[i], all[i]) << "evening " << seed;
    }
    ASSERT_EQ(leftOut.size(), all.size()) << "evening " << seed;
  }
}

}  // namespace
}  // namespace vex::test
