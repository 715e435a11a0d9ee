#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "tests/faults/FaultEvening.h"

// Whatever fails once, the player lives on, tells it, plays the next show whole and ends when it is asked to.
// Every call of every seam fails in an evening of its own.

namespace vex::test {
namespace {

using testing::IsEmpty;
using testing::Not;

struct SeamCase {
  Seam Which;
  const char* Name;
};

class EveryCallFailsOnce : public testing::TestWithParam<SeamCase> {};

/// While the program starts, the papers of the machine and the control must be in order: there a failure is
/// a message box and the end of the program.
bool MayEndTheStart(Seam seam, const std::string& szCall) {
  switch (seam) {
    case Seam::Lights:
      return true;  // configuring and opening the networks, the link
    case Seam::GoneTray:
    case Seam::LongMessage:
      return szCall == "NewMainWindow" || szCall == "Exists";  // no window, or one that is gone at once
    case Seam::Loop:
      return true;  // a form without its timers, a media player without its timer
    case Seam::Instance:
      return true;  // another player runs, and that one plays
    default:
      return false;
  }
}

/// What fails without a line: settings have defaults, a tray that is gone is unknown again, a schedule that
/// cannot be read is empty, a show is looked for in two places, a status file is written again with the next
/// change, a file whose first bytes cannot be looked at is read as a whole, a line that cannot be sent is
/// lost, the status file says the sequence's name where it cannot learn the song's, a light that was not put
/// out at once is at the second try, and a hint is only a hint.
bool MayFailInSilence(Seam seam, const std::string& szCall) {
  switch (seam) {
    case Seam::Settings:
    case Seam::GoneTray:
    case Seam::LongMessage:
    case Seam::Log:
      return true;
    case Seam::FileSystem:
      return szCall.starts_with("ReadAt") || szCall.starts_with("Publish") || szCall.starts_with("Exists") ||
             szCall.starts_with("Remove") || szCall.find(".qsc") != std::string::npos ||
             szCall.starts_with("Read one.shw") || szCall.starts_with("Read two.shw") ||
             szCall.starts_with("Read three.shw") || szCall.starts_with("Read demand.shw");
    case Seam::Lights:
      return szCall == "acceptsUnit" || szCall == "acceptsCircuit" || szCall == "sendEvent";
    default:
      return szCall.starts_with("hint ") || szCall.starts_with("mediaFile");
  }
}

/// The first line in which a show is not as it should be.
std::string Difference(const std::vector<std::string>& seen, const std::vector<std::string>& expected) {
  const auto [was, should] = std::mismatch(seen.begin(), seen.end(), expected.begin(), expected.end());
  if (was == seen.end() && should == expected.end()) return "";
  return (was == seen.end() ? "(nothing more)" : *was) + " instead of " +
         (should == expected.end() ? "(nothing more)" : *should);
}

/// One evening for each call, on all processors: evenings share nothing.
std::vector<FaultOutcome> PlayFaultEvenings(Seam seam, int64_t calls) {
  std::vector<FaultOutcome> outcomes(static_cast<size_t>(calls));
  std::atomic<int64_t> next = 0;
  const auto play = [&] {
    for (int64_t n = next++; n < calls; n = next++)
      outcomes[static_cast<size_t>(n)] = PlayFaultEvening(seam, n + 1);
  };
  std::vector<std::thread> players(std::max(1U, std::thread::hardware_concurrency()));
  for (std::thread& player : players) player = std::thread(play);
  for (std::thread& player : players) player.join();
  return outcomes;
}

TEST_P(EveryCallFailsOnce, AndTheNextShowIsWhole) {
  const Seam seam = GetParam().Which;
  const FaultOutcome whole = PlayFaultEvening(seam, 0);
  ASSERT_TRUE(whole.Started);
  ASSERT_GT(whole.Calls, 0);
  ASSERT_THAT(whole.Raised, IsEmpty());
  ASSERT_TRUE(whole.Unloaded && !whole.EndedEarly && !whole.Told);
  ASSERT_GT(whole.Two.size(), 50U);
  ASSERT_GT(whole.Three.size(), 50U);
  const std::vector<FaultOutcome> outcomes = PlayFaultEvenings(seam, whole.Calls);
  for (size_t n = 0; n < outcomes.size(); ++n) {
    const FaultOutcome& outcome = outcomes[n];
    SCOPED_TRACE("call " + std::to_string(n + 1) + ": " + outcome.Struck + " at " +
                 std::to_string(outcome.StruckAt));
    ASSERT_THAT(outcome.Struck, Not(IsEmpty()));
    if (!outcome.Started) {
      EXPECT_TRUE(MayEndTheStart(seam, outcome.Struck));
      EXPECT_EQ(outcome.StruckAt, 0);
      continue;
    }
    EXPECT_THAT(outcome.Raised, IsEmpty());
    EXPECT_FALSE(outcome.EndedEarly);
    EXPECT_TRUE(outcome.Unloaded);
    EXPECT_TRUE(outcome.Told || outcome.StruckAt >= AskedToEnd || MayFailInSilence(seam, outcome.Struck));
    if (outcome.StruckAt < BeforeTwo) {
      EXPECT_EQ(Difference(outcome.Two, whole.Two), "");
    }
    if (outcome.StruckAt < BeforeThree) {
      EXPECT_EQ(Difference(outcome.Three, whole.Three), "");
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Seams, EveryCallFailsOnce,
    testing::Values(SeamCase{Seam::FileSystem, "FileSystem"}, SeamCase{Seam::Settings, "Settings"},
                    SeamCase{Seam::GoneTray, "GoneTray"}, SeamCase{Seam::LongMessage, "LongMessage"},
                    SeamCase{Seam::Programs, "Programs"}, SeamCase{Seam::Instance, "Instance"},
                    SeamCase{Seam::Loop, "Loop"}, SeamCase{Seam::Network, "Network"},
                    SeamCase{Seam::Lights, "Lights"}, SeamCase{Seam::Engine, "Engine"},
                    SeamCase{Seam::ShellCommands, "ShellCommands"}, SeamCase{Seam::Media, "Media"},
                    SeamCase{Seam::Window, "Window"}, SeamCase{Seam::Log, "Log"}),
    [](const testing::TestParamInfo<SeamCase>& one) { return one.param.Name; });

}  // namespace
}  // namespace vex::test
