#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <algorithm>

#include "host/RegistryText.h"
#include "host/virtual/VirtualFiles.h"
#include "tools/rehearsal/Narrator.h"
#include "tools/rehearsal/Rehearsal.h"

// A rehearsal leaves out what nobody reads: ticks, heartbeats, lighting events. Here evenings made by chance
// are played with everything and without, and every line that is left must be the same.

namespace vex {
namespace {

const char* const Settings = R"(REGEDIT4

[HKEY_CURRENT_USER\Software\Brillara]
"UserDataPath"="D:\\data\\"
[HKEY_CURRENT_USER\Software\Brillara\Shared]
"AudioPath"="D:\\data\\"
"NonAudioPath"="D:\\data\\"
[HKEY_CURRENT_USER\Software\Brillara\XLK]
"On"=dword:00000001
)";

struct Season {
  VirtualFiles Files;
  std::vector<RehearsalInput> Inputs;
  DateTime From;
  DateTime Until;
  bool NoSchedule = false;
};

struct Heard {
  std::vector<std::string> Lines;
  std::vector<std::string> Told;
  std::string Summary;
};

struct Ways {
  bool EveryTick = false;
  bool Detail = true;
  bool Lighting = true;
};

/// Lines of level 0 are never among those heard.
Heard Play(Season& season, Ways ways) {
  RehearsalOptions options;
  options.From = season.From;
  options.Until = season.Until;
  options.NoSchedule = season.NoSchedule;
  options.AssumeMedia = true;
  options.EveryTick = ways.EveryTick;
  options.DetailIsRead = ways.Detail;
  options.LightingIsRead = ways.Lighting;
  Rehearsal rehearsal(season.Files, RegistryText(Settings), options, season.Inputs, nullptr);
  Heard heard;
  Narrator narrator([&] { return rehearsal.Now(); },
                    [&](const std::string& szLine) { heard.Told.push_back(szLine); });
  rehearsal.Write(
      [&](const RehearsalEvent& event) {
        narrator.Hear(event);
        return event.Kind != "log" || event.Level > 0;
      },
      [&](const JsonLine& line) { heard.Lines.push_back(line.Text()); });
  rehearsal.Run();
  narrator.Finish();
  heard.Summary = narrator.Summary(season.From, season.Until);
  return heard;
}

Heard WithoutLighting(Heard heard) {
  std::erase_if(heard.Lines, [](const std::string& szLine) {
    return szLine.find(R"("call":"send")") != std::string::npos ||
           szLine.find(R"("call":"flush")") != std::string::npos;
  });
  return heard;
}

std::string Cue(double duration, const std::string& szMedia = "") {
  return "{\"format\":\"vexseq\",\"version\":1,\"duration\":" + std::to_string(duration) +
         (szMedia.empty() ? "" : ",\"media\":\"" + szMedia + "\"") +
         ",\"events\":[{\"kind\":\"main\",\"network\":0,\"unit\":1,\"circuit\":1,\"start\":0,\"from\":0,"
         "\"to\":100},"
         "{\"kind\":\"main\",\"network\":0,\"unit\":1,\"circuit\":2,\"start\":0.731,\"from\":0,\"to\":9}]}";
}

/// Two frames of 25 ms in a file that is a byte too short for the second one.
std::string DamagedFrames() {
  std::string szFile("PSEQ\x1C\0\0\1\x1C\0\2\0\0\0\2\0\0\0\x19\0\0\0\0\0\0\0\0\0", 28);
  return szFile + "\1\2\3";
}

/// Everything lasts as often as long as slow says.
void Furnish(VirtualFiles& files, double slow) {
  const auto put = [&](const std::string& szName, const std::string& szText) {
    files.Put("D:\\data\\" + szName, szText);
  };
  put("s.vexseq", Cue(slow * 3));
  put("end.vexseq", Cue(slow * 2.25));
  put("a1.vexseq", Cue(slow * 1.7));
  put("a2.vexseq", Cue(slow * 2.2));
  put("bg.vexseq", Cue(slow * 2));
  put("m1.vexseq", Cue(slow * 6, "one.ogg"));
  put("m2.vexseq", Cue(slow * 4.123, "two.avi"));
  put("bad.fseq", DamagedFrames());
  put("eve.shw",
      "((0,1,2,0,,(s.vexseq),T,F,F),(0,1,2,0,,(end.vexseq),T,F,F),(1,0,1,0,,(a1.vexseq,a2.vexseq),T,F,F),"
      "(0,2,2,1,a1.vexseq,(m1.vexseq,m2.vexseq),T,F,F),,(2,0,1,0,,(bg.vexseq),T,F,F),"
      "((1,,F,T,F,Door,((a2.vexseq,(3,Door,1,0))),T)),0,,F)");
  put("x.shw",
      "((0,1,2,0,,,T,F,F),(0,1,2,0,,,T,F,F),(2,0,1,0,,(a1.vexseq,bad.fseq),T,F,F),(0,1,2,0,,,T,F,F),,(2,0,1,"
      "0,,,T,F,F),,0,,F)");
  put("wait.shw",
      "((0,1,2,0,,,T,F,F),(0,1,2,0,,,T,F,F),(1,0,1,0,,,T,F,F),(0,1,2,0,,(m2.vexseq),T,F,F),,(2,0,1,0,,,T,F,F)"
      ",,1,(3,Door,1,0),F)");
  put("broken.shw", "((0,1,2");
}

std::string SomeShow() {
  return *rc::gen::weightedElement<std::string>(
      {{6, "eve.shw"}, {3, "x.shw"}, {2, "wait.shw"}, {1, "broken.shw"}, {1, "gone.shw"}});
}

/// Shows of that week one after the other, with gaps or without; second 0 is the first day's midnight.
std::string SomeSchedule(int32_t lFirst, int32_t lSpan) {
  constexpr int32_t week = 7 * 86400;
  std::string szText;
  int32_t lAt = lFirst + *rc::gen::inRange(0, lSpan / 2);
  const int32_t lCount = *rc::gen::inRange(0, 4);
  for (int32_t i = 0; i < lCount; ++i) {
    const int32_t lEnd = lAt + *rc::gen::inRange(1, lSpan);
    szText += (szText.empty() ? "" : ",") + std::string("(") + std::to_string(lEnd % week) + ",2,(,0," +
              SomeShow() + ")," + std::to_string(lAt % week) + ")";
    lAt = lEnd + *rc::gen::element(0, 1, lSpan / 5);
  }
  return "(" + szText + ")";
}

std::string SomeRequest(DateTime dtFrom, int32_t lSpan) {
  const auto bound = [&] {
    if (*rc::gen::arbitrary<bool>()) return std::string("F,");
    return "T," + FormatDateTime(dtFrom.PlusSeconds(*rc::gen::inRange(0, lSpan)));
  };
  return "(" + SomeShow() + ",(" + bound() + "," + bound() + "),2,F)";
}

decltype(RehearsalInput::What) SomethingHappens(DateTime dtFrom, int32_t lSpan) {
  switch (*rc::gen::inRange(0, 12)) {
    case 0:
      return InputMessage{2, "", 7};  // a tray
    case 1:
      return InputMessage{5, "", 0};  // schedules are to be read again
    case 2:
    case 3:
      return InputMessage{9, SomeRequest(dtFrom, lSpan), 7};
    case 4:
      return InputMessage{9, "", 7};
    case 5:
      return InputMessage{11, "", 7};  // leave "no schedule"
    case 6:
    case 7:
      return InputTrigger{0, 1, 3, "Door"};
    case 8:
      return InputCopy{"D:\\data\\" + SomeShow(), "D:\\data\\eve.shw"};
    case 9:
      return InputMediaError{{"codec not found"}};
    case 10:
      return InputSequenceError{"m1.vexseq", "sync", "lost"};
    default:
      return InputClock{dtFrom.PlusSeconds(*rc::gen::inRange(0, lSpan))};
  }
}

/// Some seconds, or days, around a midnight, from a Thursday on.
void MakeSeason(Season& season, int32_t lSpan, int32_t lBeforeMidnight, double slow) {
  constexpr int32_t friday = 5 * 86400;
  Furnish(season.Files, slow);
  season.From = DateTime::FromParts(2026, 12, 25).PlusSeconds(-lBeforeMidnight);
  season.Until = season.From.PlusSeconds(lSpan);
  season.NoSchedule = *rc::gen::inRange(0, 6) == 0;
  season.Files.Put("D:\\data\\weeksched.qsc", SomeSchedule(friday - lBeforeMidnight, lSpan));
  season.Files.Put("D:\\data\\yearsched.qsc", "((2026-12-24," +
                                                  SomeSchedule(friday - lBeforeMidnight, lSpan) +
                                                  "),(2026-12-25," + SomeSchedule(friday, lSpan) + "))");
  std::vector<int64_t> moments(*rc::gen::inRange<size_t>(0, 9));
  // Many happen just where a heartbeat is, or a tick beside it.
  for (int64_t& moment : moments)
    moment = *rc::gen::inRange(0, lSpan) * int64_t{1000} + *rc::gen::element(0, 0, 1, 999, 500);
  std::sort(moments.begin(), moments.end());
  for (const int64_t moment : moments)
    season.Inputs.push_back({moment, SomethingHappens(season.From, lSpan)});
}

/// The first place at which the two go apart, for people to read.
std::string Apart(const std::vector<std::string>& one, const std::vector<std::string>& other) {
  const auto [here, there] = std::mismatch(one.begin(), one.end(), other.begin(), other.end());
  const std::string szBefore = here == one.begin() ? "" : "after " + *(here - 1) + "\n";
  if (here == one.end() && there == other.end()) return "";
  return szBefore + (here == one.end() ? "nothing more" : *here) + "\n" +
         (there == other.end() ? "nothing more" : *there);
}

void Same(const Heard& one, const Heard& other) {
  RC_ASSERT(Apart(one.Lines, other.Lines) == "");
  RC_ASSERT(Apart(one.Told, other.Told) == "");
  RC_ASSERT(one.Summary == other.Summary);
}

/// How far the evenings of a property went, so that it is known to have looked at shows at all.
int64_t Shows(const Heard& heard) {
  return std::count_if(heard.Told.begin(), heard.Told.end(),
                       [](const std::string& szLine) { return szLine.ends_with(" begins"); });
}

TEST(LeftOut, EveningsAreTheSameAsWithEveryTick) {
  int64_t shows = 0;
  EXPECT_TRUE(rc::check([&shows] {
    constexpr int32_t span = 30;
    Season season;
    MakeSeason(season, span, *rc::gen::element(20, 86000), 1);
    const Heard all = Play(season, {.EveryTick = true});
    Same(all, Play(season, {.Detail = false, .Lighting = true}));
    const Heard unlit = WithoutLighting(all);
    Same(unlit, WithoutLighting(Play(season, {.Detail = false, .Lighting = false})));
    Same(unlit, WithoutLighting(Play(season, {.Detail = true, .Lighting = false})));
    shows += Shows(all);
  }));
  EXPECT_GT(shows, 20);
}

TEST(LeftOut, AShowEditedWhileItPlaysIsSeenAtTheNextHeartbeat) {
  Season season;
  Furnish(season.Files, 1);
  season.From = DateTime::FromParts(2026, 12, 24, 18, 0, 0);
  season.Until = season.From.PlusSeconds(60);
  season.Files.Put("D:\\data\\weeksched.qsc", "((411000,2,(,0,eve.shw),410400))");
  season.Inputs.push_back({30300, InputCopy{"D:\\data\\x.shw", "D:\\data\\eve.shw"}});
  const Heard heard = Play(season, {.Detail = false, .Lighting = false});
  EXPECT_TRUE(std::any_of(heard.Lines.begin(), heard.Lines.end(), [](const std::string& szLine) {
    return szLine.starts_with(R"({"t":"2026-12-24 18:00:31.000")") &&
           szLine.find("Current show's contents have changed") != std::string::npos;
  }));
}

TEST(LeftOut, HoursAreTheSameAsWithEveryHeartbeat) {
  int64_t shows = 0;
  EXPECT_TRUE(rc::check([&shows] {
    constexpr int32_t span = 1200;
    constexpr double slow = 8;
    Season season;
    MakeSeason(season, span, *rc::gen::element(600, span - 1, 3), slow);
    const Heard all = Play(season, {});
    Same(all, Play(season, {.Detail = false, .Lighting = true}));
    Same(WithoutLighting(all), WithoutLighting(Play(season, {.Detail = false, .Lighting = false})));
    shows += Shows(all);
  }));
  EXPECT_GT(shows, 20);
}

}  // namespace
}  // namespace vex
