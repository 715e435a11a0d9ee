#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <optional>

#include "tests/open/EngineRig.h"
#include "tests/open/OutputRig.h"

namespace vex {
namespace {

/// One event of a random cue file, in milliseconds.
struct Cue {
  int32_t Circuit = 1;
  int64_t Start = 0;
  int64_t Duration = 0;
  double From = 0;
  double To = 0;
  double Rate = 1;
};

constexpr int64_t LengthMs = 2000;
constexpr int32_t Circuits = 4;

std::vector<Cue> AnyCues(int64_t grain) {
  std::vector<Cue> cues(*rc::gen::inRange<size_t>(0, 12));
  for (Cue& cue : cues) {
    cue.Circuit = *rc::gen::inRange(1, Circuits + 1);
    cue.Start = *rc::gen::inRange<int64_t>(0, LengthMs / grain) * grain;
    cue.Duration = *rc::gen::elementOf(std::vector<int64_t>{0, 1, 2, 10, 25, 30, 100, 777});
    cue.From = *rc::gen::inRange(0, 101);
    cue.To = *rc::gen::oneOf(rc::gen::just(cue.From), rc::gen::map(rc::gen::inRange(0, 101), [](int level) {
                               return static_cast<double>(level);
                             }));
    cue.Rate = *rc::gen::elementOf(std::vector<double>{0.5, 1, 1, 1, 2});
  }
  std::stable_sort(cues.begin(), cues.end(), [](const Cue& a, const Cue& b) { return a.Start < b.Start; });
  return cues;
}

std::string CueFileOf(const std::vector<Cue>& cues, bool boolShuffle) {
  nlohmann::json events = nlohmann::json::array();
  for (const Cue& cue : cues)
    events.push_back({{"circuit", cue.Circuit},
                      {"start", static_cast<double>(cue.Start) / 1000},
                      {"end", static_cast<double>(cue.Start + cue.Duration) / 1000},
                      {"from", cue.From},
                      {"to", cue.To},
                      {"rate", cue.Rate}});
  // Out of order, but not those that begin together: of them the later in the file has the last word.
  if (boolShuffle && events.size() > 1 && cues[0].Start != cues[1].Start)
    std::rotate(events.begin(), events.begin() + 1, events.end());
  return nlohmann::json{{"duration", static_cast<double>(LengthMs) / 1000}, {"events", events}}.dump();
}

/// The level that a circuit should have at a moment, from the words alone: the last event that has begun
/// has the circuit; it moves evenly for as long as it takes.
double LevelAt(const std::vector<Cue>& cues, int32_t lCircuit, double moment) {
  double level = 0;
  for (const Cue& cue : cues) {
    if (cue.Circuit != lCircuit || static_cast<double>(cue.Start) > moment) continue;
    const double takes = std::max(1.0, std::nearbyint(static_cast<double>(cue.Duration) / cue.Rate));
    const double part = takes <= 1 ? 1 : std::min((moment - static_cast<double>(cue.Start)) / takes, 1.0);
    level = cue.From + (cue.To - cue.From) * part;
  }
  return level;
}

int32_t ByteAt(const std::vector<Cue>& cues, int32_t lCircuit, int64_t ms) {
  return static_cast<int32_t>(std::nearbyint(LevelAt(cues, lCircuit, static_cast<double>(ms)) * 2.55));
}

/// Slots within one of the model's: the order of additions may tip a rounding.
bool Shows(const std::vector<uint8_t>& slots, const std::vector<Cue>& cues, int64_t ms) {
  for (int32_t lCircuit = 1; lCircuit <= Circuits; ++lCircuit)
    if (std::abs(slots[static_cast<size_t>(lCircuit) - 1] - ByteAt(cues, lCircuit, ms)) > 1) return false;
  return true;
}

struct Played {
  OutputRig Output;
  VirtualFiles Files;
  std::unique_ptr<OpenSequenceEngine> Engine;

  explicit Played(const std::string& szText) {
    Files.Put("C:\\a.vexseq", szText);
    Engine =
        std::make_unique<OpenSequenceEngine>(Output.Host.Clock(), Output.Host.EventLoop(), Files,
                                             [](const std::string& szName, bool) { return "C:\\" + szName; });
    Engine->AttachControl(std::shared_ptr<ChannelIO>(Output.Lights.get(), [](ChannelIO*) {}));
    Engine->Load("a.vexseq");
    Engine->PlayOptions(false, true);
    Engine->PrepareForPlay(false);
  }
};

TEST(LevelsProperties, EveryPacketHoldsTheLevelsOfItsMoment) {
  EXPECT_TRUE(rc::check([] {
    const auto cues = AnyCues(1);
    Played played(CueFileOf(cues, *rc::gen::arbitrary<bool>()));
    played.Engine->Start();
    played.Output.Advance(LengthMs - 1);
    for (const auto& packet : played.Output.Packets(1)) {
      // Within one millisecond the move's frame may come before an event of the same moment.
      RC_ASSERT(
          Shows(packet.Slots, cues, packet.AtMs) || Shows(packet.Slots, cues, packet.AtMs - 1) ||
          std::any_of(cues.begin(), cues.end(), [&](const Cue& cue) { return cue.Start == packet.AtMs; }));
    }
  }));
}

TEST(LevelsProperties, AnEventThatFindsRoomIsSeenInItsMillisecond) {
  EXPECT_TRUE(rc::check([] {
    auto cues = AnyCues(100);  // never more than the pace lets through
    std::erase_if(cues, [](const Cue& cue) { return cue.From != cue.To; });
    Played played(CueFileOf(cues, false));
    played.Engine->Start();
    played.Output.Advance(LengthMs - 1);
    const auto packets = played.Output.Packets(1);
    for (const Cue& cue : cues) {
      std::vector<uint8_t> seen(512);
      for (const auto& packet : packets)
        if (packet.AtMs <= cue.Start) seen = packet.Slots;
      RC_ASSERT(Shows(seen, cues, cue.Start));
    }
  }));
}

TEST(LevelsProperties, WhatIsSeenIsNeverOlderThanTwoFrames) {
  EXPECT_TRUE(rc::check([] {
    const auto cues = AnyCues(1);
    Played played(CueFileOf(cues, false));
    played.Engine->Start();
    played.Output.Advance(LengthMs - 1);
    const auto packets = played.Output.Packets(1);
    constexpr int64_t TwoFrames = 50;
    std::vector<uint8_t> seen(512);
    size_t next = 0;
    int64_t stale = 0;
    for (int64_t ms = 0; ms < LengthMs; ++ms) {
      for (; next < packets.size() && packets[next].AtMs <= ms; ++next) seen = packets[next].Slots;
      stale = Shows(seen, cues, ms) ? 0 : stale + 1;
      // A slow move may be one step behind while a frame is due; a burst may have to wait its turn.
      RC_ASSERT(stale <= TwoFrames + 25);
    }
  }));
}

TEST(LevelsProperties, InTheEndAllIsDark) {
  EXPECT_TRUE(rc::check([] {
    const auto cues = AnyCues(1);
    Played played(CueFileOf(cues, false));
    played.Engine->Start();
    played.Output.Advance(LengthMs + 1000);
    const auto packets = played.Output.Packets(1);
    if (!packets.empty()) RC_ASSERT(packets.back().Slots == std::vector<uint8_t>(512));
  }));
}

/// What is handed out with a look every millisecond, and what with looks only when they are asked for.
std::vector<std::string> HandedOut(const std::string& szText, bool boolEveryMillisecond) {
  EngineRig rig;
  rig.PlayMusic(szText);
  std::vector<std::string> all;
  for (int32_t lMs = 0; lMs <= LengthMs; ++lMs) {
    const NextDue due = rig.Engine->NextEventDue();
    if (!boolEveryMillisecond && (due.IsNever() || due.Value() > lMs)) continue;
    for (const std::string& szEvent : rig.Sync(lMs)) all.push_back(std::to_string(lMs) + " " + szEvent);
  }
  return all;
}

TEST(LevelsProperties, LookingOnlyWhenDueMissesNothing) {
  EXPECT_TRUE(rc::check([] {
    const std::string szText = CueFileOf(AnyCues(1), true);
    RC_ASSERT(HandedOut(szText, false) == HandedOut(szText, true));
  }));
}

TEST(LevelsProperties, TicksLeftOutChangeNothingThatIsSent) {
  EXPECT_TRUE(rc::check([] {
    const std::string szText = CueFileOf(AnyCues(1), false);
    std::vector<std::vector<uint8_t>> runs[2];
    for (const bool boolEveryTick : {false, true}) {
      Played played(szText);
      played.Output.Host.EventLoop().EveryTick(boolEveryTick);
      played.Engine->Start();
      played.Output.Advance(LengthMs + 3000);
      for (const auto& sent : played.Output.Host.Datagrams().Sent()) {
        runs[boolEveryTick].push_back(sent.Bytes);
        runs[boolEveryTick].back().push_back(static_cast<uint8_t>(sent.At.count() / 1000000 % 251));
      }
    }
    RC_ASSERT(runs[0] == runs[1]);
  }));
}

/// Any storm of events; each universe stays within its pace, and the last word comes through.
TEST(LevelsProperties, NoStormOfEventsLeavesThePaceOrLosesTheLastWord) {
  EXPECT_TRUE(rc::check([] {
    OutputRig rig;
    double last = 0;
    for (int i = 0; i < 200; ++i) {
      rig.Advance(*rc::gen::inRange(0, 12));
      last = *rc::gen::inRange(0, 101);
      if (*rc::gen::inRange(0, 4) == 0) {
        rig.Event(1, 1, 100 - last, last, *rc::gen::inRange(2, 200));
        rig.Lights->Flush();
      } else {
        rig.Light(1, 1, last);
      }
    }
    rig.Advance(1000);
    const auto times = rig.Times(1);
    for (size_t i = 40; i < times.size(); ++i) RC_ASSERT(times[i] - times[i - 40] >= 990);
    if (!times.empty()) RC_ASSERT(rig.Values().back() == static_cast<int32_t>(std::nearbyint(last * 2.55)));
  }));
}

}  // namespace
}  // namespace vex
